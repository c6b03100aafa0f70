#include "VTElementGeometry.h"

#include "VTElement.h"
#include "VTElementProperty.h"
#include "VTTypes.h"

#include <cmath>

namespace {

// Below this a reference size counts as none: dividing by it would only blow up rounding noise.
constexpr double kMinimumSize = 1e-5;

bool hasSize(double dSize)
{
    return std::abs(dSize) > kMinimumSize;
}

bool countsFromRight(int nCoordinateType)
{
    return nCoordinateType == VT::RightTop || nCoordinateType == VT::RightBottom;
}

bool countsFromBottom(int nCoordinateType)
{
    return nCoordinateType == VT::RightBottom || nCoordinateType == VT::LeftBottom;
}

// Where an element sits in its parent's frame and the point it transforms about.
struct Placement
{
    double dLeft = 0.0;
    double dTop = 0.0;
    double dPivotX = 0.0;
    double dPivotY = 0.0;
    double dOriginZ = 0.0;
};

Placement placementOf(const VTElement& element, const VTElementProperty& block, const VTLayoutKey& key)
{
    const double dOffset = element.getParent()->getContentBoxOffset(key);
    Placement placement;
    placement.dLeft = dOffset + element.getComputedLeft(key);
    placement.dTop = dOffset + element.getComputedTop(key);
    placement.dPivotX = block.getOriginRatioX() * element.getComputedTotalW(key);
    placement.dPivotY = block.getOriginRatioY() * element.getComputedTotalH(key);
    placement.dOriginZ = block.getOriginZ();
    return placement;
}

} // namespace

// Sizes and positions. Width and height, left and top follow the same rules on their own axis.

namespace {

struct PositionAxis
{
    int (VTElementProperty::*unit)() const;
    double (VTElementProperty::*position)() const;
    void (VTElementProperty::*setPosition)(double);
    double (VTElement::*parentSize)(const VTLayoutKey&) const;
};

const PositionAxis kAxisX{&VTElementProperty::getUnitX, &VTElementProperty::getPositionX,
                          &VTElementProperty::setPositionX, &VTElement::getParentComputedW};
const PositionAxis kAxisY{&VTElementProperty::getUnitY, &VTElementProperty::getPositionY,
                          &VTElementProperty::setPositionY, &VTElement::getParentComputedH};

struct SizeAxis
{
    int (VTElementProperty::*unit)() const;
    double (VTElementProperty::*size)() const;
    void (VTElementProperty::*setSize)(double);
    int (VTElementProperty::*otherUnit)() const;
    double (VTElementProperty::*otherSize)() const;
    double (VTElement::*parentSize)(const VTLayoutKey&) const;
    double (*otherComputed)(const VTElement&, const VTLayoutKey&);
};

const SizeAxis kAxisW{&VTElementProperty::getUnitW,    &VTElementProperty::getSizeW,
                      &VTElementProperty::setSizeW,    &VTElementProperty::getUnitH,
                      &VTElementProperty::getSizeH,    &VTElement::getParentComputedW,
                      &VTElementGeometry::getComputedH};
const SizeAxis kAxisH{&VTElementProperty::getUnitH,    &VTElementProperty::getSizeH,
                      &VTElementProperty::setSizeH,    &VTElementProperty::getUnitW,
                      &VTElementProperty::getSizeW,    &VTElement::getParentComputedH,
                      &VTElementGeometry::getComputedW};

double computedPosition(const VTElement& element, const VTLayoutKey& key, const PositionAxis& axis)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElementProperty* pBlock = element.getLayoutProperty(layout);
    if (!pBlock)
        return 0.0;
    if ((pBlock->*axis.unit)() == VT::Percent)
        return (pBlock->*axis.position)() * (element.*axis.parentSize)(layout);
    return (pBlock->*axis.position)();
}

void applyComputedPosition(VTElement& element, double dValue, const VTLayoutKey& key,
                           const PositionAxis& axis)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    VTElementProperty* pBlock = element.getLayoutProperty(layout);
    if (!pBlock)
        return;
    if ((pBlock->*axis.unit)() != VT::Percent) {
        (pBlock->*axis.setPosition)(dValue);
        return;
    }
    const double dParent = (element.*axis.parentSize)(layout);
    if (hasSize(dParent))
        (pBlock->*axis.setPosition)(dValue / dParent);
}

// A ratio refers to the other side; should both sides claim to be ratios, which reading refuses,
// the other side's stored number is taken as pixels so that the two never ask each other.
double ratioReference(const VTElement& element, const VTElementProperty& block, const VTLayoutKey& layout,
                      const SizeAxis& axis)
{
    return (block.*axis.otherUnit)() == VT::Ratio ? (block.*axis.otherSize)()
                                                  : axis.otherComputed(element, layout);
}

double computedSize(const VTElement& element, const VTLayoutKey& key, const SizeAxis& axis)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElementProperty* pBlock = element.getLayoutProperty(layout);
    if (!pBlock)
        return 0.0;
    switch ((pBlock->*axis.unit)()) {
    case VT::Percent:
        return (pBlock->*axis.size)() * (element.*axis.parentSize)(layout);
    case VT::Ratio:
        return (pBlock->*axis.size)() * ratioReference(element, *pBlock, layout, axis);
    default:
        return (pBlock->*axis.size)();
    }
}

void applyComputedSize(VTElement& element, double dValue, const VTLayoutKey& key, const SizeAxis& axis)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    VTElementProperty* pBlock = element.getLayoutProperty(layout);
    if (!pBlock)
        return;
    double dReference = 1.0;
    switch ((pBlock->*axis.unit)()) {
    case VT::Percent:
        dReference = (element.*axis.parentSize)(layout);
        break;
    case VT::Ratio:
        dReference = ratioReference(element, *pBlock, layout, axis);
        break;
    default:
        (pBlock->*axis.setSize)(dValue);
        return;
    }
    if (hasSize(dReference))
        (pBlock->*axis.setSize)(dValue / dReference);
}

} // namespace

double VTElementGeometry::getComputedX(const VTElement& element, const VTLayoutKey& key)
{
    return computedPosition(element, key, kAxisX);
}

void VTElementGeometry::applyComputedX(VTElement& element, double dValue, const VTLayoutKey& key)
{
    applyComputedPosition(element, dValue, key, kAxisX);
}

double VTElementGeometry::getComputedY(const VTElement& element, const VTLayoutKey& key)
{
    return computedPosition(element, key, kAxisY);
}

void VTElementGeometry::setComputedY(VTElement& element, double dValue, const VTLayoutKey& key)
{
    applyComputedPosition(element, dValue, key, kAxisY);
}

double VTElementGeometry::getComputedW(const VTElement& element, const VTLayoutKey& key)
{
    return computedSize(element, key, kAxisW);
}

void VTElementGeometry::setComputedW(VTElement& element, double dValue, const VTLayoutKey& key)
{
    applyComputedSize(element, dValue, key, kAxisW);
}

double VTElementGeometry::getComputedH(const VTElement& element, const VTLayoutKey& key)
{
    return computedSize(element, key, kAxisH);
}

void VTElementGeometry::setComputedH(VTElement& element, double dValue, const VTLayoutKey& key)
{
    applyComputedSize(element, dValue, key, kAxisH);
}

double VTElementGeometry::getComputedLeft(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (!countsFromRight(element.getCoordinateType(layout)))
        return getComputedX(element, layout);
    return element.getParentComputedW(layout) - getComputedX(element, layout) -
           element.getComputedTotalW(layout);
}

void VTElementGeometry::setComputedLeft(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (countsFromRight(element.getCoordinateType(layout)))
        dValue = element.getParentComputedW(layout) - dValue - element.getComputedTotalW(layout);
    element.setComputedX(dValue, layout);
}

double VTElementGeometry::getComputedTop(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (!countsFromBottom(element.getCoordinateType(layout)))
        return getComputedY(element, layout);
    return element.getParentComputedH(layout) - getComputedY(element, layout) -
           element.getComputedTotalH(layout);
}

void VTElementGeometry::setComputedTop(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (countsFromBottom(element.getCoordinateType(layout)))
        dValue = element.getParentComputedH(layout) - dValue - element.getComputedTotalH(layout);
    element.setComputedY(dValue, layout);
}

double VTElementGeometry::getAbsoluteLeft(const VTElement& element, const VTLayoutKey& key,
                                          bool bIncludeTranslate)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    double dLeft = 0.0;
    for (const VTElement* pElement = &element; pElement; pElement = pElement->getParent()) {
        dLeft += pElement->getComputedLeft(layout);
        if (bIncludeTranslate)
            dLeft += pElement->getTranslateX(layout);
    }
    return dLeft;
}

void VTElementGeometry::setAbsoluteLeft(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElement* pParent = element.getParent();
    element.setComputedLeft(dValue - (pParent ? getAbsoluteLeft(*pParent, layout, false) : 0.0), layout);
}

double VTElementGeometry::getAbsoluteTop(const VTElement& element, const VTLayoutKey& key,
                                         bool bIncludeTranslate)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    double dTop = 0.0;
    for (const VTElement* pElement = &element; pElement; pElement = pElement->getParent()) {
        dTop += pElement->getComputedTop(layout);
        if (bIncludeTranslate)
            dTop += pElement->getTranslateY(layout);
    }
    return dTop;
}

void VTElementGeometry::setAbsoluteTop(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElement* pParent = element.getParent();
    element.setComputedTop(dValue - (pParent ? getAbsoluteTop(*pParent, layout, false) : 0.0), layout);
}

// The parents' part of a global position is always summed in pixels: a parent in percent would
// otherwise add a share of the root to pixels of its child.

double VTElementGeometry::getGlobalPositionX(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const double dPixels = getAbsoluteLeft(element, layout, false);
    if (element.getUnitX(layout) != VT::Percent)
        return dPixels;
    const double dRootW = element.getRoot()->getComputedW(layout);
    return hasSize(dRootW) ? dPixels / dRootW : 0.0;
}

void VTElementGeometry::setGlobalPositionX(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (element.getUnitX(layout) == VT::Percent)
        dValue *= element.getRoot()->getComputedW(layout);
    setAbsoluteLeft(element, dValue, layout);
}

double VTElementGeometry::getGlobalPositionY(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const double dPixels = getAbsoluteTop(element, layout, false);
    if (element.getUnitY(layout) != VT::Percent)
        return dPixels;
    const double dRootH = element.getRoot()->getComputedH(layout);
    return hasSize(dRootH) ? dPixels / dRootH : 0.0;
}

void VTElementGeometry::setGlobalPositionY(VTElement& element, double dValue, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (element.getUnitY(layout) == VT::Percent)
        dValue *= element.getRoot()->getComputedH(layout);
    setAbsoluteTop(element, dValue, layout);
}

// Transforms

VTMatrix4x4 VTElementGeometry::getTransformMatrix(const VTElementProperty* pBlock)
{
    VTMatrix4x4 matrix;
    if (!pBlock)
        return matrix;
    matrix.translate(pBlock->getTranslateX(), pBlock->getTranslateY(), pBlock->getTranslateZ());
    matrix.rotateX(pBlock->getRotateX());
    matrix.rotateY(pBlock->getRotateY());
    matrix.rotateZ(pBlock->getRotateZ());
    matrix.skewX(pBlock->getSkewX());
    matrix.skewY(pBlock->getSkewY());
    matrix.scale(pBlock->getScaleX(), pBlock->getScaleY(), pBlock->getScaleZ());
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getInversedTransformMatrix(const VTElementProperty* pBlock)
{
    VTMatrix4x4 matrix;
    if (!pBlock || pBlock->getScaleX() == 0.0 || pBlock->getScaleY() == 0.0 || pBlock->getScaleZ() == 0.0)
        return matrix;
    matrix.scale(1.0 / pBlock->getScaleX(), 1.0 / pBlock->getScaleY(), 1.0 / pBlock->getScaleZ());
    matrix.skewY(-pBlock->getSkewY());
    matrix.skewX(-pBlock->getSkewX());
    matrix.rotateZ(-pBlock->getRotateZ());
    matrix.rotateY(-pBlock->getRotateY());
    matrix.rotateX(-pBlock->getRotateX());
    matrix.translate(-pBlock->getTranslateX(), -pBlock->getTranslateY(), -pBlock->getTranslateZ());
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getTransformToParent(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElementProperty* pBlock = element.getLayoutProperty(layout);
    VTMatrix4x4 matrix;
    if (!element.getParent() || !pBlock)
        return matrix;
    const Placement placement = placementOf(element, *pBlock, layout);
    matrix.translate(placement.dLeft + placement.dPivotX, placement.dTop + placement.dPivotY,
                     placement.dOriginZ);
    matrix.multiply(getTransformMatrix(pBlock));
    matrix.translate(-placement.dPivotX, -placement.dPivotY, -placement.dOriginZ);
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getTransformFromParent(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElementProperty* pBlock = element.getLayoutProperty(layout);
    VTMatrix4x4 matrix;
    if (!element.getParent() || !pBlock)
        return matrix;
    const Placement placement = placementOf(element, *pBlock, layout);
    matrix.translate(placement.dPivotX, placement.dPivotY, placement.dOriginZ);
    matrix.multiply(getInversedTransformMatrix(pBlock));
    matrix.translate(-(placement.dLeft + placement.dPivotX), -(placement.dTop + placement.dPivotY),
                     -placement.dOriginZ);
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getChainTo(const VTElement* pElement, const VTElement* pStop,
                                          const VTLayoutKey& key)
{
    VTMatrix4x4 matrix;
    for (const VTElement* p = pElement; p && p != pStop && p->getParent(); p = p->getParent())
        matrix.premultiply(getTransformToParent(*p, key));
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getChainFrom(const VTElement* pElement, const VTElement* pStop,
                                            const VTLayoutKey& key)
{
    VTMatrix4x4 matrix;
    for (const VTElement* p = pElement; p && p != pStop && p->getParent(); p = p->getParent())
        matrix.multiply(getTransformFromParent(*p, key));
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getTransformToScene(const VTElement& element, const VTLayoutKey& key)
{
    return getChainTo(&element, element.getScene(), element.resolveLayoutKey(key));
}

VTMatrix4x4 VTElementGeometry::getTransformFromScene(const VTElement& element, const VTLayoutKey& key)
{
    return getChainFrom(&element, element.getScene(), element.resolveLayoutKey(key));
}

VTMatrix4x4 VTElementGeometry::getTransformToElement(const VTElement& element, const VTElement* pTarget,
                                                     const VTLayoutKey& key, const VTElement* pCommonAncestor)
{
    if (!pTarget)
        return VTMatrix4x4();
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const VTElement* pAncestor = pCommonAncestor ? pCommonAncestor : element.getCommonAncestor(pTarget);
    VTMatrix4x4 matrix = getChainFrom(pTarget, pAncestor, layout);
    matrix.multiply(getChainTo(&element, pAncestor, layout));
    return matrix;
}

VTMatrix4x4 VTElementGeometry::getTransformMatrixWhenReparent(const VTElement& element,
                                                              const VTElement* pNewParent,
                                                              const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    if (!pNewParent)
        return getChainTo(&element, nullptr, layout);
    const VTElement* pOldParent = element.getParent();
    if (!pOldParent)
        return getChainFrom(pNewParent, nullptr, layout);
    VTMatrix4x4 matrix = getTransformToElement(*pOldParent, pNewParent, layout, nullptr);
    matrix.multiply(getTransformToParent(element, layout));
    return matrix;
}

QRectF VTElementGeometry::getBoundaryRect(const VTElement& element, const VTLayoutKey& key)
{
    const VTLayoutKey layout = element.resolveLayoutKey(key);
    const QRectF box(0.0, 0.0, element.getComputedTotalW(layout), element.getComputedTotalH(layout));
    return getTransformToScene(element, layout).mapRect(box);
}
