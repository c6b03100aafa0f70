#pragma once

#include <QList>
#include <QMap>
#include <QPointF>
#include <QSizeF>

class VTCommand;
class VTElement;
class VTMatrix4x4;

// Re-laying out an element for a new parent (grouping, dragging in the tree) in every layout,
// moving its animations by the same offsets, and the tree drag itself.
class VTGroupLayoutBuilder final
{
public:
    static void createActionsToLayoutElementWhenGrouping(VTCommand& command, VTElement* pElement,
                                                         QMap<int, double>& mapBaseValues,
                                                         const QSizeF& oldParentSize,
                                                         const QSizeF& newParentSize,
                                                         const QMap<int, double>& mapValues);
    static void createActionsToLayoutElementWhenGrouping(VTCommand& command, VTElement* pElement,
                                                         QMap<int, double>& mapBaseValues,
                                                         const QSizeF& oldParentSize,
                                                         const QSizeF& newParentSize, const QPointF* pOffset,
                                                         const QSizeF* pSize, const VTMatrix4x4* pMatrix);
    static void createActionsToDragElement(VTCommand& command, QList<VTElement*> lstElements,
                                           VTElement* pTarget, int nPosition);
};
