#pragma once

#include "VTLayoutKey.h"
#include "VTMatrix4x4.h"

#include <QRectF>

class VTElement;
class VTElementProperty;

// The arithmetic behind an element's computed geometry: stored values in their units become
// pixels through the parent, positions count from the edges the coordinate type names, and the
// transforms of the tree chain up to the scene. VTElement offers all of it as its own calls; it
// lives here so that the tree and file handling stay readable.
//
// Frames. An element's frame has its origin at the top left corner of its box, border included.
// Its children are placed from its content box, that is, moved in by the border width. A
// transform to the parent maps a point of the element's frame to the parent's frame.
//
// A key of (-1, -1) stands for the element's current layout and is resolved once on entry; the
// parent is then asked about the same layout. A layout without a block computes as 0, and its
// setters do nothing. A percent or ratio value whose reference size is 0 cannot be solved for, so
// setting it leaves the stored value as it was.
class VTElementGeometry final
{
public:
    VTElementGeometry() = delete;

    static double getComputedX(const VTElement& element, const VTLayoutKey& key);
    // The stored setter, without the virtual dispatch of VTElement::setComputedX.
    static void applyComputedX(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getComputedY(const VTElement& element, const VTLayoutKey& key);
    static void setComputedY(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getComputedW(const VTElement& element, const VTLayoutKey& key);
    static void setComputedW(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getComputedH(const VTElement& element, const VTLayoutKey& key);
    static void setComputedH(VTElement& element, double dValue, const VTLayoutKey& key);

    static double getComputedLeft(const VTElement& element, const VTLayoutKey& key);
    static void setComputedLeft(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getComputedTop(const VTElement& element, const VTLayoutKey& key);
    static void setComputedTop(VTElement& element, double dValue, const VTLayoutKey& key);

    static double getAbsoluteLeft(const VTElement& element, const VTLayoutKey& key, bool bIncludeTranslate);
    static void setAbsoluteLeft(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getAbsoluteTop(const VTElement& element, const VTLayoutKey& key, bool bIncludeTranslate);
    static void setAbsoluteTop(VTElement& element, double dValue, const VTLayoutKey& key);

    // The absolute position, divided by the root's computed size when the position unit is
    // percent (0 when the root has no size).
    static double getGlobalPositionX(const VTElement& element, const VTLayoutKey& key);
    static void setGlobalPositionX(VTElement& element, double dValue, const VTLayoutKey& key);
    static double getGlobalPositionY(const VTElement& element, const VTLayoutKey& key);
    static void setGlobalPositionY(VTElement& element, double dValue, const VTLayoutKey& key);

    // Translate, rotate X, Y, Z, skew X, Y, scale, in the order the player applies them; the
    // identity without a block.
    static VTMatrix4x4 getTransformMatrix(const VTElementProperty* pBlock);
    // The same steps undone in reverse order. A scale of 0 has no inverse; the result is then the
    // identity, as VTMatrix4x4::inverted gives for any singular matrix.
    static VTMatrix4x4 getInversedTransformMatrix(const VTElementProperty* pBlock);
    // Moves to the element's place in the parent's content box, turns about the transform origin
    // and moves back. The identity without parent or block.
    static VTMatrix4x4 getTransformToParent(const VTElement& element, const VTLayoutKey& key);
    static VTMatrix4x4 getTransformFromParent(const VTElement& element, const VTLayoutKey& key);
    // The chain up to the scene, the scene's own place left out; up to the root outside a scene.
    static VTMatrix4x4 getTransformToScene(const VTElement& element, const VTLayoutKey& key);
    static VTMatrix4x4 getTransformFromScene(const VTElement& element, const VTLayoutKey& key);
    // Up to the common ancestor and down to pTarget. Elements without one are related through
    // their roots, as if both roots shared one frame. The identity for a null target.
    static VTMatrix4x4 getTransformToElement(const VTElement& element, const VTElement* pTarget,
                                             const VTLayoutKey& key, const VTElement* pCommonAncestor);
    // The transform to the parent the element would need under pNewParent to stay in place on the
    // stage. An element without parent counts as placed in its root's frame.
    static VTMatrix4x4 getTransformMatrixWhenReparent(const VTElement& element, const VTElement* pNewParent,
                                                      const VTLayoutKey& key);
    static QRectF getBoundaryRect(const VTElement& element, const VTLayoutKey& key);

private:
    // The product of the transforms to the parent from pElement up to, not including, pStop (or
    // the root when pStop is not an ancestor).
    static VTMatrix4x4 getChainTo(const VTElement* pElement, const VTElement* pStop, const VTLayoutKey& key);
    static VTMatrix4x4 getChainFrom(const VTElement* pElement, const VTElement* pStop,
                                    const VTLayoutKey& key);
};
