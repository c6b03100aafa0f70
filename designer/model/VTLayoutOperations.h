#pragma once

#include "VTLayoutKey.h"

#include <QList>

class VTElement;
class VTSymbol;

// Questions about one element in one responsive layout that the inspector and the stage ask
// before they build their commands. Nothing here changes the model for longer than a call.
//
// A key of (-1, -1) stands for the element's current layout.
namespace VTLayoutOperations {

// The computed width (height) of the parent in that layout, which percent values of the element
// refer to; the symbol's stage size for an element without parent, such as a scene; 0 when there
// is neither.
double getParentWidth(const VTElement* pElement, const VTSymbol* pSymbol, const VTLayoutKey& key);
double getParentHeight(const VTElement* pElement, const VTSymbol* pSymbol, const VTLayoutKey& key);

// The element's position in that layout as measured from the opposite edges, in the element's
// own position units: dX from the other side horizontally, dY vertically. An axis in a unit that
// is neither pixels nor percent, or in percent of a parent without size, leaves its value as the
// caller passed it.
void updatePositionWhenChangeCoordinate(VTElement* pElement, const VTSymbol* pSymbol, VTLayoutKey key,
                                        double& dX, double& dY);

// For two coordinate types (VT::CoordinateType): whether they differ in the horizontal side
// only, in the vertical side only, or in both.
bool isDifferentOnlyX(int nTypeA, int nTypeB);
bool isDifferentOnlyY(int nTypeA, int nTypeB);
bool isDifferentBothXY(int nTypeA, int nTypeB);

// The layouts of the element that an edit of the property (VT::ElementProperty) writes to. In
// responsive mode that is the symbol's current layout alone. Otherwise the user sees the base:
// the edit goes there and to every other layout that still inherits the property, and layouts
// that override it keep their own value. Only layouts in which the element has a block count;
// without a symbol there is no responsive mode.
QList<VTLayoutKey> getLayoutsReachedByEdit(const VTElement* pElement, const VTSymbol* pSymbol, int nProperty);

} // namespace VTLayoutOperations
