#include "VTSelectionBuilder.h"

#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"

namespace {

bool isScene(const VTElement* pElement)
{
    return pElement && pElement->getType() == VT::SceneElement;
}

void addSelect(VTCommand& command, VTElement* pElement, bool bSelect)
{
    auto* pAction = new VTCommandAction(VTCommandAction::SelectElement, command.getDocument(), 2);
    pAction->addParam(pElement, false);
    pAction->addParam(bSelect);
    command.addAction(pAction);
}

void addFlag(VTCommand& command, VTElementCommandAction::ElementActionId nId, VTElement* pElement,
             bool bValue)
{
    auto* pAction = new VTElementCommandAction(nId, command.getDocument(), 2);
    pAction->addParam(pElement, false);
    pAction->addParam(bValue);
    command.addAction(pAction);
}

} // namespace

void VTSelectionBuilder::createActionsForVisibleCmd(VTCommand& command, VTElement* pElement, bool bVisible,
                                                    bool bApplyParent)
{
    if (!pElement)
        return;
    // Nothing hidden stays selected: the stage could not show the handles of what it hides.
    if (!bVisible && !isScene(pElement) && pElement->isVisible() && pElement->isSelected())
        addSelect(command, pElement, false);
    addFlag(command, VTElementCommandAction::SetVisible, pElement, bVisible);
    for (VTElement* pChild : pElement->getChildren()) {
        if (pChild->isVisible() != bVisible)
            createActionsForVisibleCmd(command, pChild, bVisible, false);
    }
    VTElement* pParent = pElement->getParent();
    if (bApplyParent && pParent && bVisible && !pParent->isVisible())
        createActionsForVisibleParentCmd(command, pParent, true);
}

void VTSelectionBuilder::createActionsForVisibleParentCmd(VTCommand& command, VTElement* pElement,
                                                          bool bVisible)
{
    // Only the chain up to the shown element comes back; its siblings keep their own state.
    for (VTElement* pParent = pElement; pParent; pParent = pParent->getParent()) {
        addFlag(command, VTElementCommandAction::SetVisible, pParent, bVisible);
        VTElement* pNext = pParent->getParent();
        if (!pNext || pNext->isVisible() == bVisible)
            break;
    }
}

void VTSelectionBuilder::createActionsForLockCmd(VTCommand& command, VTElement* pElement, bool bLock,
                                                 bool bApplyParent)
{
    if (!pElement)
        return;
    if (!isScene(pElement) && pElement->isSelected() && bLock)
        addSelect(command, pElement, false);
    addFlag(command, VTElementCommandAction::SetLocked, pElement, bLock);
    for (VTElement* pChild : pElement->getChildren()) {
        if (pChild->isLocked() != bLock)
            createActionsForLockCmd(command, pChild, bLock, false);
    }
    VTElement* pParent = pElement->getParent();
    if (bApplyParent && pParent && !bLock && pParent->isLocked())
        createActionsForLockParentCmd(command, pParent, false);
}

void VTSelectionBuilder::createActionsForLockParentCmd(VTCommand& command, VTElement* pElement, bool bLock)
{
    for (VTElement* pParent = pElement; pParent; pParent = pParent->getParent()) {
        addFlag(command, VTElementCommandAction::SetLocked, pParent, bLock);
        VTElement* pNext = pParent->getParent();
        if (!pNext || pNext->isLocked() == bLock)
            break;
    }
}

void VTSelectionBuilder::createActionForDeselectAllSceneButCurrent(VTCommand& command)
{
    const VTSymbol* pSymbol = VTBuilderSupport::currentSymbol(command);
    const VTSceneManager* pScenes = pSymbol ? pSymbol->getSceneManager() : nullptr;
    if (!pScenes || pScenes->getSelectedScenes().size() < 2)
        return;
    // The manager's list changes under the loop, so the loop runs over a copy.
    const QList<VTScene*> lstSelected = pScenes->getSelectedScenes();
    const VTScene* pCurrent = pScenes->getCurrentScene();
    for (VTScene* pScene : lstSelected) {
        if (pScene == pCurrent)
            continue;
        // The scene is deselected now, so the first redo only tells the views. The action swaps:
        // it holds the state that its undo writes back, as it would after a redo of its own. (The
        // navigation context cannot give it back: it is taken at submission, after this change.)
        pScene->setSelected(false);
        auto* pAction = new VTCommandAction(VTCommandAction::SelectScene, command.getDocument(), 2, true);
        pAction->addParam(pScene, false);
        pAction->addParam(true);
        command.addAction(pAction);
    }
}

void VTSelectionBuilder::createActionsForDeselectAll(VTCommand& command, const QList<VTElement*>& lstElements,
                                                     VTElement* pExcept)
{
    for (VTElement* pElement : lstElements) {
        if (!pElement)
            continue;
        createActionsForDeselectAll(command, pElement->getSelectedElements(true), pExcept);
        if (pElement != pExcept && !pElement->isParentOf(pExcept))
            addSelect(command, pElement, false);
    }
}

void VTSelectionBuilder::createActionsForSelectElement(VTCommand& command, VTElement* pElement, bool bSelect)
{
    if (!pElement || pElement->isLocked() || pElement->isSelected() == bSelect)
        return;
    VTElement* pParent = pElement->getParent();
    if (pParent && !isScene(pParent) && pParent->isSelected() != bSelect)
        createActionsForSelectElement(command, pParent, bSelect);
    if (isScene(pElement))
        return;
    createActionForDeselectAllSceneButCurrent(command);
    addSelect(command, pElement, bSelect);
}
