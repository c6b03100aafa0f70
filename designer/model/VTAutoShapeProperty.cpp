#include "VTAutoShapeProperty.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

const QString kAdjustments = QStringLiteral("adjustments");

} // namespace

VTAutoShapeProperty::VTAutoShapeProperty(QObject* parent)
    : VTTextProperty(parent)
{}

VTAutoShapeProperty::VTAutoShapeProperty(const VTAutoShapeProperty& other)
    : VTTextProperty(other)
    , m_vecAdjustments(other.m_vecAdjustments)
    , m_nAutoShapeType(other.m_nAutoShapeType)
    , m_strAutoShapeName(other.m_strAutoShapeName)
    , m_nAutoShapeGroup(other.m_nAutoShapeGroup)
{}

VTElementProperty* VTAutoShapeProperty::clone() const
{
    return new VTAutoShapeProperty(*this);
}

void VTAutoShapeProperty::setAutoShapeType(int nType)
{
    if (nType >= 0)
        m_nAutoShapeType = nType;
}

void VTAutoShapeProperty::serialize(QJsonObject& json) const
{
    VTTextProperty::serialize(json);
    QJsonArray adjustments;
    for (double dValue : m_vecAdjustments)
        adjustments.append(dValue);
    json.insert(kAdjustments, adjustments);
    json.insert(QStringLiteral("adjustmentCount"), m_vecAdjustments.size());
    json.insert(QStringLiteral("autoshapeType"), m_nAutoShapeType);
}

bool VTAutoShapeProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("layout properties"), &lstProblems);

    m_vecAdjustments.clear();
    const QJsonArray adjustments = reader.readArray(kAdjustments);
    if (adjustments.size() > kMaxAdjustmentCount)
        reader.report(tr("\"adjustments\" holds %1 values; only the first %2 are kept.")
                          .arg(adjustments.size())
                          .arg(kMaxAdjustmentCount));
    const int nCount = std::min(adjustments.size(), kMaxAdjustmentCount);
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue value = adjustments.at(i);
        if (!value.isDouble() || !std::isfinite(value.toDouble())) {
            // The values are positional: dropping one would move the rest into the wrong places,
            // so the shape goes back to the stage's defaults instead.
            reader.report(tr("\"adjustments\" item %1 is %2 where a finite number belongs; the shape "
                             "takes its default adjustments.")
                              .arg(i)
                              .arg(VTJsonReader::describeType(value)));
            m_vecAdjustments.clear();
            break;
        }
        m_vecAdjustments.append(value.toDouble());
    }
    m_nAutoShapeType = reader.readInt(QStringLiteral("autoshapeType"), 0, 0);

    VTTextProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QStringList VTAutoShapeProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop = VTTextProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (!isGroupWritten(bOverride, {VT::PropShape}))
        return lstDrop;
    QJsonArray shape{m_nAutoShapeType};
    if (!m_vecAdjustments.isEmpty()) {
        QJsonArray adjustments;
        for (double dValue : m_vecAdjustments)
            adjustments.append(dValue);
        shape.append(adjustments);
    }
    json.insert(QStringLiteral("s"), shape);
    return lstDrop;
}
