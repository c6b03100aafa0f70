#include "VTLayoutActions.h"

#include "VTActionParams.h"
#include "VTBreakpointManager.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTSymbol.h"

namespace {

VTLayoutKey layoutKeyOf(const VTCommandAction& action)
{
    return VTLayoutKey(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
}

// The breakpoint manager of the symbol parameter and the direction parameter; null for a
// direction other than horizontal or vertical.
VTBreakpointManager* breakpointsOf(const VTCommandAction& action, VTBreakpointManager::Direction& direction)
{
    VTSymbol* pSymbol = action.getParam(0)->getAsSymbol();
    const int nDirection = action.getParam(1)->getAsInt();
    if (!pSymbol ||
        (nDirection != VTBreakpointManager::Horizontal && nDirection != VTBreakpointManager::Vertical))
        return nullptr;
    direction = static_cast<VTBreakpointManager::Direction>(nDirection);
    return pSymbol->getBreakpointManager();
}

// The parameter holds a block the element gave up; it owns it from now on.
void holdBlock(VTCmdParam* pParam, VTElementProperty* pBlock)
{
    pParam->release();
    pParam->setValue(pBlock, true);
}

} // namespace

bool VTLayoutActions::handles(int nId)
{
    switch (nId) {
    case VTCommandAction::AddLayoutProperty:
    case VTCommandAction::RemoveLayoutProperty:
    case VTCommandAction::UpdateLayoutProperty:
    case VTCommandAction::AddBreakpoint:
    case VTCommandAction::RemoveBreakpoint:
    case VTCommandAction::UpdateBreakpoint:
    case VTCommandAction::ChangeCurrentBreakpoint:
    case VTCommandAction::ChangeElementInherits:
        return true;
    default:
        return false;
    }
}

void VTLayoutActions::run(VTCommandAction& action, bool bUndo)
{
    if (!VTActionParams::hasCount(action, 4))
        return;
    switch (action.getId()) {
    case VTCommandAction::AddLayoutProperty:
        addLayoutProperty(action, !bUndo);
        break;
    case VTCommandAction::RemoveLayoutProperty:
        addLayoutProperty(action, bUndo);
        break;
    case VTCommandAction::UpdateLayoutProperty:
        updateLayoutProperty(action);
        break;
    case VTCommandAction::AddBreakpoint:
        addBreakpoint(action, !bUndo);
        break;
    case VTCommandAction::RemoveBreakpoint:
        removeBreakpoint(action, !bUndo);
        break;
    case VTCommandAction::UpdateBreakpoint:
        updateBreakpoint(action);
        break;
    case VTCommandAction::ChangeCurrentBreakpoint:
        changeCurrentBreakpoint(action);
        break;
    case VTCommandAction::ChangeElementInherits:
        changeElementInherits(action);
        break;
    default:
        break;
    }
}

void VTLayoutActions::addLayoutProperty(VTCommandAction& action, bool bAdd)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    if (!pElement)
        return;
    VTCmdParam* pParam = action.getParam(3);
    const VTLayoutKey key = layoutKeyOf(action);
    if (bAdd) {
        // A refused block stays with the parameter, owned as before.
        if (pElement->addLayoutProperty(pParam->getAsElementProperty(), key))
            pParam->release();
    } else if (VTElementProperty* pBlock = pElement->removeLayoutProperty(key)) {
        holdBlock(pParam, pBlock);
    }
}

void VTLayoutActions::updateLayoutProperty(VTCommandAction& action)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    if (!pElement)
        return;
    VTCmdParam* pParam = action.getParam(3);
    VTElementProperty* pBlock = pParam->getAsElementProperty();
    const VTLayoutKey key = layoutKeyOf(action);
    // Swapping in "no block" is taking the block out; a layout that had none before the update
    // is left without one again by the undo.
    if (!pBlock) {
        holdBlock(pParam, pElement->removeLayoutProperty(key));
        return;
    }
    VTElementProperty* pOld = pElement->updateLayoutProperty(pBlock, key);
    if (pElement->getLayoutProperty(key) != pBlock)
        return;
    holdBlock(pParam, pOld);
}

void VTLayoutActions::addBreakpoint(VTCommandAction& action, bool bAdd)
{
    VTBreakpointManager::Direction direction = VTBreakpointManager::Horizontal;
    VTBreakpointManager* pManager = breakpointsOf(action, direction);
    if (!pManager)
        return;
    if (!bAdd) {
        pManager->remove(direction, action.getParam(3)->getAsInt());
        return;
    }
    const VTBreakpointManager::Entry entry =
        pManager->add(direction, action.getParam(2)->getAsInt(), action.getParam(3)->getAsInt());
    if (entry.first >= 0)
        action.getParam(3)->setValue(entry.first);
}

void VTLayoutActions::removeBreakpoint(VTCommandAction& action, bool bRemove)
{
    VTBreakpointManager::Direction direction = VTBreakpointManager::Horizontal;
    VTBreakpointManager* pManager = breakpointsOf(action, direction);
    if (!pManager)
        return;
    const int nValue = action.getParam(2)->getAsInt();
    if (!bRemove) {
        pManager->add(direction, nValue, action.getParam(3)->getAsInt());
        return;
    }
    const int nId = direction == VTBreakpointManager::Vertical ? pManager->getVerticalId(nValue)
                                                               : pManager->getHorizontalId(nValue);
    if (nId < 0)
        return;
    pManager->remove(direction, nId);
    action.getParam(3)->setValue(nId);
}

void VTLayoutActions::updateBreakpoint(VTCommandAction& action)
{
    VTBreakpointManager::Direction direction = VTBreakpointManager::Horizontal;
    VTBreakpointManager* pManager = breakpointsOf(action, direction);
    if (!pManager)
        return;
    const int nId = action.getParam(2)->getAsInt();
    const int nOldValue = direction == VTBreakpointManager::Vertical ? pManager->getVBreakpoint(nId)
                                                                     : pManager->getHBreakpoint(nId);
    if (!pManager->update(direction, nId, action.getParam(3)->getAsInt()))
        return;
    action.getParam(3)->setValue(nOldValue);
}

void VTLayoutActions::changeCurrentBreakpoint(VTCommandAction& action)
{
    VTSymbol* pSymbol = action.getParam(0)->getAsSymbol();
    if (!pSymbol)
        return;
    // The stored pair, not the one shown: it is what the symbol returns to in responsive mode.
    const VTLayoutKey oldKey = pSymbol->getCurrentLayoutId(false);
    const bool bOldResponsive = pSymbol->isResponsiveMode();
    pSymbol->setResponsiveMode(action.getParam(3)->getAsBool());
    pSymbol->setCurrentLayoutId(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
    action.getParam(1)->setValue(oldKey.getHorizontalId());
    action.getParam(2)->setValue(oldKey.getVerticalId());
    action.getParam(3)->setValue(bOldResponsive);
}

void VTLayoutActions::changeElementInherits(VTCommandAction& action)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    if (!pElement)
        return;
    VTCmdParam* pParam = action.getParam(3);
    pParam->setValue(pElement->addInherits(pParam->getAsMapInherits(), layoutKeyOf(action)));
}
