#include "Aggregate.h"

namespace Aggregation {

QHash<QObject*, Aggregate*> Aggregate::s_mapAggregates;

Aggregate::Aggregate(QObject* parent)
    : QObject(parent)
{
    s_mapAggregates.insert(this, this);
}

Aggregate::~Aggregate()
{
    const QList<QObject*> components = m_lstComponents;
    for (QObject* p : components) {
        disconnect(p, &QObject::destroyed, this, nullptr);
        s_mapAggregates.remove(p);
    }
    m_lstComponents.clear();
    s_mapAggregates.remove(this);
    qDeleteAll(components);
}

void Aggregate::add(QObject* pComponent)
{
    if (!pComponent || m_lstComponents.contains(pComponent))
        return;
    // A component belongs to one aggregate only.
    if (Aggregate* pOther = s_mapAggregates.value(pComponent); pOther && pOther != this)
        return;
    m_lstComponents.append(pComponent);
    connect(pComponent, &QObject::destroyed, this, [this, pComponent] { deleteSelf(pComponent); });
    s_mapAggregates.insert(pComponent, this);
}

void Aggregate::remove(QObject* pComponent)
{
    if (!pComponent || !m_lstComponents.removeOne(pComponent))
        return;
    disconnect(pComponent, &QObject::destroyed, this, nullptr);
    s_mapAggregates.remove(pComponent);
}

Aggregate* Aggregate::parentAggregate(QObject* pObject)
{
    return s_mapAggregates.value(pObject, nullptr);
}

void Aggregate::deleteSelf(QObject* pObject)
{
    s_mapAggregates.remove(pObject);
    m_lstComponents.removeAll(pObject);
    delete this;
}

} // namespace Aggregation
