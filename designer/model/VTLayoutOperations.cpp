#include "VTLayoutOperations.h"

#include "VTElement.h"
#include "VTSymbol.h"
#include "VTTypes.h"

namespace VTLayoutOperations {

namespace {

// The position on the other side of the parent: what is left of the parent once the position and
// the element's own extent (border included) are taken off.
void flipPosition(int nUnit, double dPosition, double dExtent, double dParentExtent, double& dResult)
{
    if (nUnit == VT::Pixel)
        dResult = dParentExtent - dPosition - dExtent;
    else if (nUnit == VT::Percent && dParentExtent != 0.0)
        dResult = 1.0 - dPosition - dExtent / dParentExtent;
}

bool isPair(int nTypeA, int nTypeB, int nFirst, int nSecond)
{
    return (nTypeA == nFirst && nTypeB == nSecond) || (nTypeA == nSecond && nTypeB == nFirst);
}

} // namespace

double getParentWidth(const VTElement* pElement, const VTSymbol* pSymbol, const VTLayoutKey& key)
{
    const VTElement* pParent = pElement ? pElement->getParent() : nullptr;
    if (pParent)
        return pParent->getComputedW(pElement->resolveLayoutKey(key));
    return pSymbol ? pSymbol->getWidth() : 0.0;
}

double getParentHeight(const VTElement* pElement, const VTSymbol* pSymbol, const VTLayoutKey& key)
{
    const VTElement* pParent = pElement ? pElement->getParent() : nullptr;
    if (pParent)
        return pParent->getComputedH(pElement->resolveLayoutKey(key));
    return pSymbol ? pSymbol->getHeight() : 0.0;
}

void updatePositionWhenChangeCoordinate(VTElement* pElement, const VTSymbol* pSymbol, VTLayoutKey key,
                                        double& dX, double& dY)
{
    if (!pElement)
        return;
    key = pElement->resolveLayoutKey(key);
    // Kinds that size themselves from their content read the current layout; the element is put
    // into the asked one for the time of the reading.
    const VTLayoutKey previous = pElement->getCurrentLayoutID();
    pElement->setCurrentLayoutID(key);
    flipPosition(pElement->getUnitX(key), pElement->getPositionX(key), pElement->getComputedTotalW(key),
                 getParentWidth(pElement, pSymbol, key), dX);
    flipPosition(pElement->getUnitY(key), pElement->getPositionY(key), pElement->getComputedTotalH(key),
                 getParentHeight(pElement, pSymbol, key), dY);
    pElement->setCurrentLayoutID(previous);
}

bool isDifferentOnlyX(int nTypeA, int nTypeB)
{
    return isPair(nTypeA, nTypeB, VT::LeftTop, VT::RightTop) ||
           isPair(nTypeA, nTypeB, VT::RightBottom, VT::LeftBottom);
}

bool isDifferentOnlyY(int nTypeA, int nTypeB)
{
    return isPair(nTypeA, nTypeB, VT::LeftTop, VT::LeftBottom) ||
           isPair(nTypeA, nTypeB, VT::RightTop, VT::RightBottom);
}

bool isDifferentBothXY(int nTypeA, int nTypeB)
{
    return isPair(nTypeA, nTypeB, VT::LeftTop, VT::RightBottom) ||
           isPair(nTypeA, nTypeB, VT::RightTop, VT::LeftBottom);
}

QList<VTLayoutKey> getLayoutsReachedByEdit(const VTElement* pElement, const VTSymbol* pSymbol, int nProperty)
{
    QList<VTLayoutKey> lstKeys;
    if (!pElement)
        return lstKeys;
    if (pSymbol && pSymbol->isResponsiveMode()) {
        const VTLayoutKey current = pSymbol->getCurrentLayoutId(true);
        if (pElement->getLayoutProperty(current))
            lstKeys.append(current);
        return lstKeys;
    }
    // Nothing copies values between layouts by itself: a layout inherits because every edit of
    // the base is written to it as well.
    if (pElement->getLayoutProperty(VTLayoutKey::base()))
        lstKeys.append(VTLayoutKey::base());
    const QList<VTLayoutKey> lstLayouts = pElement->getAllLayoutIds();
    for (const VTLayoutKey& key : lstLayouts) {
        if (!key.isBase() && pElement->isInherit(nProperty, key))
            lstKeys.append(key);
    }
    return lstKeys;
}

} // namespace VTLayoutOperations
