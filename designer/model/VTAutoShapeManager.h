#pragma once

#include "ISingleton.h"
#include "VTAutoShapeTypes.h"

#include <QMap>
#include <QString>

#include <memory>

class VTAutoShape;

// The prototype of every shape the menus offer, one per type number. The menus list each group
// by number, so lookups go in ascending type order whatever the order of registration.
class VTAutoShapeManager final : public ISingleton<VTAutoShapeManager>
{
    friend class ISingleton<VTAutoShapeManager>;

public:
    // Takes ownership. A null shape is ignored and a negative type is refused (the shape is
    // deleted); a type registered already is replaced.
    void registerShape(VTAutoShape* pShape, int nType, const QString& name, int nGroup);

    VTAutoShape* findShapeByShapeType(int nType) const;
    VTAutoShape* findShapeByIndex(int nIndex) const;
    int getIndex(int nType) const;
    QString getName(int nType) const;
    QMap<int, VTAutoShape*> getAutoShapes(int nGroup) const;
    int getCount() const { return static_cast<int>(m_mapShapes.size()); }

private:
    // Registers the whole table of shapes.
    VTAutoShapeManager();
    ~VTAutoShapeManager();

    QMap<int, VTAutoShape*> m_mapShapes;
};
