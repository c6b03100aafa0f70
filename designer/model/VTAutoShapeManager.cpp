#include "VTAutoShapeManager.h"

#include "VTAutoShape.h"
#include "VTFreeFormShape.h"

VTAutoShapeManager::VTAutoShapeManager()
{
    const QVector<VTAutoShapeTypes::ShapeInfo>& shapes = VTAutoShapeTypes::getShapes();
    for (const VTAutoShapeTypes::ShapeInfo& info : shapes) {
        VTAutoShape* pShape =
            VTAutoShapeTypes::isFreeFormType(info.nType) ? new VTFreeFormShape() : new VTAutoShape();
        pShape->initDefault();
        registerShape(pShape, info.nType, VTAutoShapeTypes::getName(info.nType), info.group);
    }
}

VTAutoShapeManager::~VTAutoShapeManager()
{
    qDeleteAll(m_mapShapes);
}

void VTAutoShapeManager::registerShape(VTAutoShape* pShape, int nType, const QString& name, int nGroup)
{
    if (!pShape)
        return;
    std::unique_ptr<VTAutoShape> pOwned(pShape);
    pShape->setAutoShapeType(nType);
    if (nType < 0)
        return;
    pShape->setAutoShapeName(name);
    pShape->setAutoShapeGroup(nGroup);
    delete m_mapShapes.value(nType);
    m_mapShapes.insert(nType, pOwned.release());
}

VTAutoShape* VTAutoShapeManager::findShapeByShapeType(int nType) const
{
    return m_mapShapes.value(nType);
}

VTAutoShape* VTAutoShapeManager::findShapeByIndex(int nIndex) const
{
    if (nIndex < 0 || nIndex >= m_mapShapes.size())
        return nullptr;
    return std::next(m_mapShapes.cbegin(), nIndex).value();
}

int VTAutoShapeManager::getIndex(int nType) const
{
    const auto it = m_mapShapes.constFind(nType);
    return it == m_mapShapes.cend() ? -1 : static_cast<int>(std::distance(m_mapShapes.cbegin(), it));
}

QString VTAutoShapeManager::getName(int nType) const
{
    const VTAutoShape* pShape = m_mapShapes.value(nType);
    return pShape ? pShape->getAutoShapeName() : QString();
}

QMap<int, VTAutoShape*> VTAutoShapeManager::getAutoShapes(int nGroup) const
{
    QMap<int, VTAutoShape*> shapes;
    for (auto it = m_mapShapes.cbegin(); it != m_mapShapes.cend(); ++it) {
        if (it.value()->getAutoShapeGroup() == nGroup)
            shapes.insert(it.key(), it.value());
    }
    return shapes;
}
