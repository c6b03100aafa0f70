#include "VTFreeFormShape.h"

#include "VTAutoShapeTypes.h"
#include "VTBezierPath.h"
#include "VTFreeFormArrowStyle.h"

#include <QJsonObject>

VTFreeFormShape::VTFreeFormShape(const VTFreeFormShape& other)
    : VTAutoShape(other)
{}

VTElement* VTFreeFormShape::clone() const
{
    return new VTFreeFormShape(*this);
}

void VTFreeFormShape::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    VTAutoShape::serializeToExport(json, bSingleLayout, bWithEvents);
    json.insert(QStringLiteral("editPoint"), m_bEditPoint);
}

VTFreeFormShapeProperty* VTFreeFormShape::getFreeFormProperty(const VTLayoutKey& key) const
{
    return qobject_cast<VTFreeFormShapeProperty*>(getLayoutProperty(key));
}

VTBezierPath* VTFreeFormShape::getPath(const VTLayoutKey& key) const
{
    const VTFreeFormShapeProperty* pBlock = getFreeFormProperty(key);
    return pBlock ? pBlock->getPath() : nullptr;
}

VTFreeFormArrowStyle* VTFreeFormShape::getArrowStyle(const VTLayoutKey& key) const
{
    const VTFreeFormShapeProperty* pBlock = getFreeFormProperty(key);
    return pBlock ? pBlock->getArrowStyle() : nullptr;
}

std::unique_ptr<VTBezierPath> VTFreeFormShape::replacePath(std::unique_ptr<VTBezierPath> pPath,
                                                           const VTLayoutKey& key)
{
    VTFreeFormShapeProperty* pBlock = getFreeFormProperty(key);
    return pBlock ? pBlock->replacePath(std::move(pPath)) : std::move(pPath);
}

std::unique_ptr<VTFreeFormArrowStyle>
VTFreeFormShape::replaceArrowStyle(std::unique_ptr<VTFreeFormArrowStyle> pStyle, const VTLayoutKey& key)
{
    VTFreeFormShapeProperty* pBlock = getFreeFormProperty(key);
    return pBlock ? pBlock->replaceArrowStyle(std::move(pStyle)) : std::move(pStyle);
}

bool VTFreeFormShape::isLine(const VTLayoutKey& key) const
{
    const int nType = getAutoShapeType(key);
    return nType >= VTAutoShapeTypes::Line && nType <= VTAutoShapeTypes::DoubleArrow;
}
