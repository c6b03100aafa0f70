#pragma once

#include <QHash>
#include <QObject>
#include <QList>

namespace Aggregation {

// Bundles several QObjects into one logical object: a query for an interface on any member
// finds it on whichever member implements it. Deleting any member deletes the whole bundle.
class Aggregate final : public QObject
{
    Q_OBJECT
public:
    explicit Aggregate(QObject* parent = nullptr);
    ~Aggregate() override;

    void add(QObject* pComponent);
    void remove(QObject* pComponent);
    QList<QObject*> components() const { return m_lstComponents; }

    template <typename T> T* component() const
    {
        for (QObject* p : m_lstComponents) {
            if (T* pResult = qobject_cast<T*>(p))
                return pResult;
        }
        return nullptr;
    }

    static Aggregate* parentAggregate(QObject* pObject);

private:
    void deleteSelf(QObject* pObject);

    QList<QObject*> m_lstComponents;
    static QHash<QObject*, Aggregate*> s_mapAggregates;
};

// The component of type T of obj's aggregate, or obj itself when it is a T.
template <typename T> T* query(QObject* pObject)
{
    if (!pObject)
        return nullptr;
    if (T* pResult = qobject_cast<T*>(pObject))
        return pResult;
    if (Aggregate* pAggregate = Aggregate::parentAggregate(pObject))
        return pAggregate->component<T>();
    return nullptr;
}

} // namespace Aggregation
