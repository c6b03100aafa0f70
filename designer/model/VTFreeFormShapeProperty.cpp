#include "VTFreeFormShapeProperty.h"

#include "VTBezierPath.h"
#include "VTFreeFormArrowStyle.h"
#include "VTJsonReader.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

const QString kPath = QStringLiteral("bzpath");
const QString kArrow = QStringLiteral("arrow");

} // namespace

VTFreeFormShapeProperty::VTFreeFormShapeProperty(QObject* parent)
    : VTAutoShapeProperty(parent)
    , m_pArrowStyle(std::make_unique<VTFreeFormArrowStyle>())
    , m_pPath(std::make_unique<VTBezierPath>())
{}

VTFreeFormShapeProperty::VTFreeFormShapeProperty(const VTFreeFormShapeProperty& other)
    : VTAutoShapeProperty(other)
    , m_pArrowStyle(other.m_pArrowStyle->clone())
    , m_pPath(other.m_pPath->clone())
{}

// Out of line: the owned classes are only declared in the header.
VTFreeFormShapeProperty::~VTFreeFormShapeProperty() = default;

VTElementProperty* VTFreeFormShapeProperty::clone() const
{
    return new VTFreeFormShapeProperty(*this);
}

std::unique_ptr<VTBezierPath> VTFreeFormShapeProperty::replacePath(std::unique_ptr<VTBezierPath> pPath)
{
    if (!pPath)
        pPath = std::make_unique<VTBezierPath>();
    m_pPath.swap(pPath);
    return pPath;
}

std::unique_ptr<VTFreeFormArrowStyle>
VTFreeFormShapeProperty::replaceArrowStyle(std::unique_ptr<VTFreeFormArrowStyle> pStyle)
{
    if (!pStyle)
        pStyle = std::make_unique<VTFreeFormArrowStyle>();
    m_pArrowStyle.swap(pStyle);
    return pStyle;
}

void VTFreeFormShapeProperty::serialize(QJsonObject& json) const
{
    VTAutoShapeProperty::serialize(json);
    QJsonObject path;
    m_pPath->serialize(path);
    json.insert(kPath, path);
    QJsonObject arrow;
    m_pArrowStyle->serialize(arrow);
    json.insert(kArrow, arrow);
}

bool VTFreeFormShapeProperty::parse(const QJsonObject& json, VTResourceManager* pManager,
                                    QStringList* pProblems)
{
    QStringList lstProblems;
    const VTJsonReader reader(json, tr("layout properties"), &lstProblems);

    const QJsonValue pathValue = json.value(kPath);
    if (pathValue.isObject()) {
        // What the path can read of a damaged list is still the author's outline; the path notes
        // what it left out.
        auto pPath = std::make_unique<VTBezierPath>();
        pPath->parse(pathValue.toObject(), &lstProblems);
        m_pPath = std::move(pPath);
    } else if (!pathValue.isUndefined()) {
        reader.reportWrongType(kPath, VTJsonReader::tr("an object"), tr("the present path"));
    }

    const QJsonValue arrowValue = json.value(kArrow);
    if (arrowValue.isObject())
        m_pArrowStyle->parse(arrowValue.toObject(), &lstProblems);
    else if (!arrowValue.isUndefined())
        reader.reportWrongType(kArrow, VTJsonReader::tr("an object"), tr("the present arrow style"));

    VTAutoShapeProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QStringList VTFreeFormShapeProperty::serializeToExport(QJsonObject& json, bool bFirstBlock,
                                                       bool bOverride) const
{
    // The text part and below; the shape key of the parent would only be replaced here.
    QStringList lstDrop = VTTextProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (!isGroupWritten(bOverride, {VT::PropShape, VT::PropFreeFormPath, VT::PropArrowStartType,
                                    VT::PropArrowStartSize, VT::PropArrowEndType, VT::PropArrowEndSize}))
        return lstDrop;

    QJsonArray points;
    m_pPath->serializeToExport(points);
    QJsonArray shape{getAutoShapeType(), points};
    if (m_pArrowStyle->hasArrow()) {
        // The player reads the end first: most lines have a head at the end only.
        shape.append(m_pArrowStyle->getEndArrowType());
        shape.append(m_pArrowStyle->getEndArrowSize());
        if (m_pArrowStyle->getStartArrowType() != VTFreeFormArrowStyle::NoArrow) {
            shape.append(m_pArrowStyle->getStartArrowType());
            shape.append(m_pArrowStyle->getStartArrowSize());
        }
    }
    json.insert(QStringLiteral("s"), shape);
    return lstDrop;
}
