#include "VTDivProperty.h"

#include "VTCorner.h"
#include "VTJsonReader.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

const QString kCorner = QStringLiteral("corner");

} // namespace

VTDivProperty::VTDivProperty(QObject* parent)
    : VTTextProperty(parent)
    , m_pCorner(new VTCorner(this))
{}

VTDivProperty::VTDivProperty(const VTDivProperty& other)
    : VTTextProperty(other)
    , m_pCorner(new VTCorner(*other.m_pCorner))
{
    m_pCorner->setParent(this);
}

VTElementProperty* VTDivProperty::clone() const
{
    return new VTDivProperty(*this);
}

int VTDivProperty::getPropertyUnit(int nProperty) const
{
    switch (nProperty) {
    case VT::PropTopLeftRadius:
        return m_pCorner->getUnitTopLeft();
    case VT::PropTopRightRadius:
        return m_pCorner->getUnitTopRight();
    case VT::PropBottomLeftRadius:
        return m_pCorner->getUnitBottomLeft();
    case VT::PropBottomRightRadius:
        return m_pCorner->getUnitBottomRight();
    default:
        return VTTextProperty::getPropertyUnit(nProperty);
    }
}

void VTDivProperty::serialize(QJsonObject& json) const
{
    VTTextProperty::serialize(json);
    QJsonObject corner;
    m_pCorner->serialize(corner);
    json.insert(kCorner, corner);
}

bool VTDivProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTJsonReader reader(json, tr("layout properties"), &lstProblems);
    m_pCorner->parse(reader.readObject(kCorner), &lstProblems);
    VTTextProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QStringList VTDivProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop = VTTextProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (isGroupWritten(bOverride, {VT::PropTopLeftRadius, VT::PropTopRightRadius, VT::PropBottomLeftRadius,
                                   VT::PropBottomRightRadius})) {
        QJsonArray corner;
        m_pCorner->serializeToExport(corner);
        if (corner.isEmpty())
            lstDrop << QStringLiteral("lr");
        else
            json.insert(QStringLiteral("lr"), corner);
    }
    return lstDrop;
}
