#include "VTTreeActions.h"

#include "VTActionParams.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbolElement.h"

namespace {

// The element that an add or remove of elements works in: the parent parameter when the action
// has one, the scene otherwise.
VTElement* containerOf(const VTCommandAction& action, VTScene* pScene)
{
    VTElement* pParent = action.paramCount() == 4 ? action.getParam(3)->getAsElement() : nullptr;
    return pParent ? pParent : pScene;
}

int putElement(VTCommandAction& action, bool bAsAddAction)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    VTScene* pScene = action.getParam(2)->getAsScene();
    if (!pElement || !pScene)
        return -1;
    const int nIndex = action.getParam(1)->getAsInt();
    int nAdded = -1;
    if (bAsAddAction && action.paramCount() == 3) {
        pElement->setSelected(true);
        nAdded = pScene->addElement(pElement, nIndex, nullptr);
        // The new element takes the scene's lock and visibility. A pass over the whole scene would
        // also hide or lock other elements shown under a hidden parent, and nothing in the command
        // would give that back on undo.
        pElement->updateLockAndVisibility();
    } else {
        VTElement* pParent = action.paramCount() == 4 ? action.getParam(3)->getAsElement() : nullptr;
        nAdded = pScene->addElement(pElement, nIndex, pParent);
    }
    if (nAdded < 0)
        return -1;
    action.getParam(0)->setOwned(false);
    pElement->attachResources();
    if (auto* pSymbolElement = qobject_cast<VTSymbolElement*>(pElement))
        pSymbolElement->updateSymbolLayoutId();
    return nAdded;
}

void takeElement(VTCommandAction& action, bool bAsAddAction)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    VTScene* pScene = action.getParam(2)->getAsScene();
    if (!pElement || !pScene)
        return;
    const int nIndex = containerOf(action, pScene)->detachChild(pElement);
    if (nIndex < 0)
        return;
    action.getParam(1)->setValue(nIndex);
    action.getParam(0)->setOwned(true);
    pElement->detachResources();
    // The insert selected the new element; taken out again it is selected no more.
    if (bAsAddAction && action.paramCount() == 3)
        pElement->setSelected(false);
}

} // namespace

bool VTTreeActions::handles(int nId)
{
    return (nId >= VTCommandAction::AddElement && nId <= VTCommandAction::MoveScene) ||
           nId == VTCommandAction::SelectElement;
}

void VTTreeActions::run(VTCommandAction& action, bool bUndo)
{
    switch (action.getId()) {
    case VTCommandAction::AddElement:
        if (VTActionParams::hasCount(action, 3, 4))
            addElement(action, !bUndo);
        break;
    case VTCommandAction::RemoveElement:
        if (VTActionParams::hasCount(action, 3, 4)) {
            if (bUndo)
                putElement(action, false);
            else
                takeElement(action, false);
        }
        break;
    case VTCommandAction::ReparentElement:
        if (VTActionParams::hasCount(action, 5))
            reparentElement(action, bUndo);
        break;
    case VTCommandAction::ChangeElementOrder:
        if (VTActionParams::hasCount(action, 3))
            changeElementOrder(action, bUndo);
        break;
    case VTCommandAction::AddScene:
        if (VTActionParams::hasCount(action, 3))
            addScene(action, !bUndo);
        break;
    case VTCommandAction::RemoveScene:
        if (VTActionParams::hasCount(action, 3))
            addScene(action, bUndo);
        break;
    case VTCommandAction::SelectScene:
        if (VTActionParams::hasCount(action, 2))
            selectScene(action);
        break;
    case VTCommandAction::MoveScene:
        if (VTActionParams::hasCount(action, 3))
            moveScene(action);
        break;
    case VTCommandAction::SelectElement:
        if (VTActionParams::hasCount(action, 2))
            selectElement(action);
        break;
    default:
        break;
    }
}

void VTTreeActions::addElement(VTCommandAction& action, bool bAdd)
{
    if (bAdd)
        putElement(action, true);
    else
        takeElement(action, true);
}

void VTTreeActions::reparentElement(VTCommandAction& action, bool bUndo)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    if (!pElement || !pElement->getScene())
        return;
    // Redo moves from the old place (1, 2) to the new one (3, 4); undo the other way round.
    VTCmdParam* pFromParent = action.getParam(bUndo ? 3 : 1);
    VTCmdParam* pFromIndex = action.getParam(bUndo ? 4 : 2);
    VTCmdParam* pToParent = action.getParam(bUndo ? 1 : 3);
    VTCmdParam* pToIndex = action.getParam(bUndo ? 2 : 4);
    VTElement* pFrom = pFromParent->getAsElement();
    VTElement* pTo = pToParent->getAsElement();
    if (!pFrom || !pTo || pElement->getParent() != pFrom)
        return;
    // An element cannot go into itself or into its own subtree; leaving it where it is keeps
    // the tree whole.
    if (pTo == pElement || pElement->isParentOf(pTo))
        return;
    const int nOldIndex = pFrom->detachChild(pElement);
    if (nOldIndex < 0)
        return;
    pFromIndex->setValue(nOldIndex);
    const int nNewIndex = pTo->addChild(pElement, pToIndex->getAsInt());
    if (nNewIndex >= 0)
        pToIndex->setValue(nNewIndex);
}

void VTTreeActions::changeElementOrder(VTCommandAction& action, bool bUndo)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    VTElement* pParent = pElement ? pElement->getParent() : nullptr;
    if (!pParent)
        return;
    pParent->detachChild(pElement);
    pParent->addChild(pElement, action.getParam(bUndo ? 1 : 2)->getAsInt());
}

void VTTreeActions::addScene(VTCommandAction& action, bool bAdd)
{
    VTScene* pScene = action.getParam(0)->getAsScene();
    VTSceneManager* pManager = action.getParam(2)->getAsSceneManager();
    if (!pScene || !pManager)
        return;
    if (bAdd) {
        if (pManager->addScene(pScene, action.getParam(1)->getAsInt()) < 0)
            return;
        action.getParam(0)->setOwned(false);
        pScene->attachResources();
    } else {
        const int nIndex = pManager->detachScene(pScene);
        if (nIndex < 0)
            return;
        action.getParam(1)->setValue(nIndex);
        action.getParam(0)->setOwned(true);
        pScene->detachResources();
    }
}

void VTTreeActions::selectScene(VTCommandAction& action)
{
    VTScene* pScene = action.getParam(0)->getAsScene();
    if (!pScene)
        return;
    VTActionParams::swap<bool>(
        action.getParam(1), [pScene] { return pScene->isSelected(); },
        [pScene](bool bSelected) { pScene->setSelected(bSelected); });
}

void VTTreeActions::moveScene(VTCommandAction& action)
{
    VTSceneManager* pManager = action.getParam(0)->getAsSceneManager();
    if (!pManager)
        return;
    const int nFrom = action.getParam(1)->getAsInt();
    const int nTo = action.getParam(2)->getAsInt();
    if (!pManager->moveSceneToIndex(nFrom, nTo))
        return;
    // The pair that moves the scene back: it now stands at to - 1 when it moved down, and its
    // old place is one further down when it moved up past it.
    action.getParam(1)->setValue(nTo - (nFrom < nTo ? 1 : 0));
    action.getParam(2)->setValue(nFrom + (nTo < nFrom ? 1 : 0));
}

void VTTreeActions::selectElement(VTCommandAction& action)
{
    VTElement* pElement = action.getParam(0)->getAsElement();
    if (!pElement)
        return;
    // A scene keeps its manager's selection list in step; a plain element has only its flag.
    auto* pScene = qobject_cast<VTScene*>(pElement);
    VTActionParams::swap<bool>(
        action.getParam(1), [pElement] { return pElement->isSelected(); },
        [pElement, pScene](bool bSelected) {
            if (pScene)
                pScene->setSelected(bSelected);
            else
                pElement->setSelected(bSelected);
        });
}
