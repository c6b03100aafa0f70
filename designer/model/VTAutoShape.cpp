#include "VTAutoShape.h"

#include "VTDiv.h"

VTElement* VTAutoShape::clone() const
{
    return new VTAutoShape(*this);
}

void VTAutoShape::initDefault()
{
    const bool bHadBase = getLayoutProperty(VTLayoutKey::base()) != nullptr;
    VTText::initDefault();
    if (bHadBase)
        return;
    if (VTElementProperty* pBlock = getLayoutProperty(VTLayoutKey::base()))
        VTDiv::applyBoxLook(*pBlock);
}

double VTAutoShape::getContentBoxOffset(const VTLayoutKey& key) const
{
    Q_UNUSED(key)
    return 0.0;
}

QPainterPath VTAutoShape::generatePath(const QRectF& rect, const QVector<double>& adjustments) const
{
    Q_UNUSED(rect)
    Q_UNUSED(adjustments)
    return QPainterPath();
}

QRectF VTAutoShape::getTextRect(const QRectF& rect, const QVector<double>& adjustments) const
{
    Q_UNUSED(adjustments)
    return rect;
}

QPointF VTAutoShape::getAdjustmentPoint(const QRectF& rect, int nIndex) const
{
    Q_UNUSED(rect)
    Q_UNUSED(nIndex)
    return QPointF(0.0, 0.0);
}

void VTAutoShape::setAdjustmentPoint(const QPointF& point, int nIndex)
{
    Q_UNUSED(point)
    Q_UNUSED(nIndex)
}

VTAutoShapeProperty* VTAutoShape::getAutoShapeProperty(const VTLayoutKey& key) const
{
    return qobject_cast<VTAutoShapeProperty*>(getLayoutProperty(key));
}

QString VTAutoShape::getAutoShapeName(const VTLayoutKey& key) const
{
    const VTAutoShapeProperty* pBlock = getAutoShapeProperty(key);
    return pBlock ? pBlock->getAutoShapeName() : QString();
}

void VTAutoShape::setAutoShapeName(const QString& name, const VTLayoutKey& key)
{
    if (VTAutoShapeProperty* pBlock = getAutoShapeProperty(key))
        pBlock->setAutoShapeName(name);
}

int VTAutoShape::getAutoShapeGroup(const VTLayoutKey& key) const
{
    const VTAutoShapeProperty* pBlock = getAutoShapeProperty(key);
    return pBlock ? pBlock->getAutoShapeGroup() : 0;
}

void VTAutoShape::setAutoShapeGroup(int nGroup, const VTLayoutKey& key)
{
    if (VTAutoShapeProperty* pBlock = getAutoShapeProperty(key))
        pBlock->setAutoShapeGroup(nGroup);
}

int VTAutoShape::getAutoShapeType(const VTLayoutKey& key) const
{
    const VTAutoShapeProperty* pBlock = getAutoShapeProperty(key);
    return pBlock ? pBlock->getAutoShapeType() : 0;
}

void VTAutoShape::setAutoShapeType(int nType, const VTLayoutKey& key)
{
    if (VTAutoShapeProperty* pBlock = getAutoShapeProperty(key))
        pBlock->setAutoShapeType(nType);
}

int VTAutoShape::getAdjustmentCount(const VTLayoutKey& key) const
{
    const VTAutoShapeProperty* pBlock = getAutoShapeProperty(key);
    return pBlock ? pBlock->getAdjustmentCount() : 0;
}

const QVector<double>& VTAutoShape::getAdjustments(const VTLayoutKey& key) const
{
    static const QVector<double> s_empty;
    const VTAutoShapeProperty* pBlock = getAutoShapeProperty(key);
    return pBlock ? pBlock->getAdjustments() : s_empty;
}

void VTAutoShape::setAdjustments(const QVector<double>& adjustments, const VTLayoutKey& key)
{
    if (VTAutoShapeProperty* pBlock = getAutoShapeProperty(key))
        pBlock->setAdjustments(adjustments);
}
