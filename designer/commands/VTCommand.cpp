#include "VTCommand.h"

#include "VTBreakpointBuilder.h"
#include "VTDeleteBuilder.h"
#include "VTGroupLayoutBuilder.h"
#include "VTKeyframeBuilder.h"
#include "VTSelectionBuilder.h"
#include "VTSymbolBuilder.h"

#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QSet>
#include <QSignalBlocker>
#include <QUuid>

#include <algorithm>

namespace {

void walkSelectedElements(const VTElement* pParent, QList<VTElement*>& lstSelected)
{
    for (VTElement* pChild : pParent->getChildren()) {
        if (pChild->isSelected())
            lstSelected.append(pChild);
        walkSelectedElements(pChild, lstSelected);
    }
}

// Every selected element of the tree below pParent, whatever the selection of its ancestors.
// Undoing a long run of commands asks this of the same scene once per command, and nothing in
// between changes a tree unless an action ran, so the last walk is kept while no element anywhere
// has changed its selection or its place.
void collectSelectedElements(const VTElement* pParent, QList<VTElement*>& lstSelected)
{
    struct LastWalk
    {
        const VTElement* pRoot = nullptr;
        quint64 nEpoch = 0;
        QList<VTElement*> lstSelected;
    };
    static LastWalk last;
    if (last.pRoot != pParent || last.nEpoch != VTElement::getTreeEpoch()) {
        last.lstSelected.clear();
        walkSelectedElements(pParent, last.lstSelected);
        last.pRoot = pParent;
        last.nEpoch = VTElement::getTreeEpoch();
    }
    lstSelected += last.lstSelected;
}

VTSceneManager* currentSceneManager(VTDocument* pDocument)
{
    VTSymbol* pSymbol = pDocument ? pDocument->getCurrentSymbol() : nullptr;
    return pSymbol ? pSymbol->getSceneManager() : nullptr;
}

// Moving the user around (selection, current timeline, edited symbol), records for the views and
// changes of what all symbols share (resources, functions) leave a symbol's own content as it was.
bool isChangingAction(int nId)
{
    switch (nId) {
    case VTCommandAction::SelectScene:
    case VTCommandAction::SetCurrentTimeline:
    case VTCommandAction::SelectElement:
    case VTCommandAction::RestoreResource:
    case VTCommandAction::DeleteResource:
    case VTCommandAction::CommandFinished:
    case VTCommandAction::ChangeCurrentSymbol:
    case VTCommandAction::ChangeResourceUuid:
    case VTCommandAction::ResourceChanged:
        return false;
    default:
        return nId < VTCommandAction::EditingSymbolChanged || nId > VTCommandAction::MediaInfoChanged;
    }
}

} // namespace

// ---- framework: constructor, destructor, redo/undo/doCmd, actions, navigation context ----

VTCommand::VTCommand(VTDocument* pDocument, const QString& strText, QObject* pSender, QUndoCommand* pParent)
    : QUndoCommand(strText, pParent)
    , m_pDocument(pDocument)
    , m_pSender(pSender)
{}

VTCommand::~VTCommand()
{
    qDeleteAll(m_lstActions);
}

void VTCommand::redo()
{
    run(false);
    // Commands nested under this one follow it, as in any undo command.
    QUndoCommand::redo();
}

void VTCommand::undo()
{
    QUndoCommand::undo();
    run(true);
}

void VTCommand::doCmd()
{
    redo();
}

void VTCommand::addAction(VTCommandAction* pAction)
{
    if (!pAction)
        return;
    pAction->setDocument(m_pDocument);
    m_lstActions.append(pAction);
}

void VTCommand::addActions(const QList<VTCommandAction*>& lstActions)
{
    for (VTCommandAction* pAction : lstActions)
        addAction(pAction);
}

void VTCommand::setActions(const QList<VTCommandAction*>& lstActions)
{
    clearActions();
    addActions(lstActions);
}

QList<VTCommandAction*> VTCommand::detachActions()
{
    QList<VTCommandAction*> lstActions;
    lstActions.swap(m_lstActions);
    return lstActions;
}

void VTCommand::clearActions()
{
    const QList<VTCommandAction*> lstActions = detachActions();
    qDeleteAll(lstActions);
}

void VTCommand::setDocument(VTDocument* pDocument)
{
    m_pDocument = pDocument;
    for (VTCommandAction* pAction : qAsConst(m_lstActions))
        pAction->setDocument(pDocument);
}

void VTCommand::genereateNavigationContext()
{
    m_bHasNavigationContext = true;
    m_lstSymbols.clear();
    m_lstScenes.clear();
    m_lstTimelines.clear();
    m_lstElements.clear();
    if (!m_pDocument)
        return;
    m_lstSymbols = m_pDocument->getEditingSymbolStack();
    VTSceneManager* pScenes = currentSceneManager(m_pDocument);
    if (!pScenes)
        return;
    m_lstScenes = pScenes->getSelectedScenes();
    for (const VTScene* pScene : qAsConst(m_lstScenes))
        m_lstTimelines.append(pScene->getTimelineManager()->getCurrentTimeline());
    if (const VTScene* pCurrent = pScenes->getCurrentScene())
        collectSelectedElements(pCurrent, m_lstElements);
}

void VTCommand::setNavigationContext(const QList<VTSymbol*>& lstSymbols, const QList<VTScene*>& lstScenes,
                                     const QList<VTElement*>& lstElements)
{
    m_bHasNavigationContext = true;
    m_lstSymbols = lstSymbols;
    m_lstScenes = lstScenes;
    m_lstElements = lstElements;
    m_lstTimelines.clear();
    for (const VTScene* pScene : lstScenes)
        m_lstTimelines.append(pScene ? pScene->getTimelineManager()->getCurrentTimeline() : nullptr);
}

bool VTCommand::changeCurrentSymbolUuidIfNeeded()
{
    VTSymbol* pSymbol = m_pDocument ? m_pDocument->getCurrentSymbol() : nullptr;
    if (!pSymbol || pSymbol == static_cast<VTSymbol*>(m_pDocument))
        return false;
    const bool bChanges =
        std::any_of(m_lstActions.cbegin(), m_lstActions.cend(),
                    [](const VTCommandAction* pAction) { return isChangingAction(pAction->getId()); });
    VTResourceManager* pManager =
        pSymbol->getResourceManager() ? pSymbol->getResourceManager() : m_pDocument->getResourceManager();
    VTResource* pResource = pManager ? pManager->getResourceForSymbol(pSymbol) : nullptr;
    if (!bChanges || !pResource)
        return false;
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeResourceUuid, m_pDocument, 2);
    pAction->addParam(pResource);
    pAction->addParam(QUuid::createUuid().toString());
    addAction(pAction);
    return true;
}

bool VTCommand::shouldUpdateTimeline(int nId)
{
    switch (nId) {
    case VTCommandAction::AddPlaybackListener:
    case VTCommandAction::RemovePlaybackListener:
    case VTCommandAction::ChangePlaybackListener:
    case VTCommandAction::SetAutoOrient:
    case VTCommandAction::ChangeAllKeyValues:
    case VTCommandAction::InvertAnchorPoints:
    case VTCommandAction::ChangeCurrentBreakpoint:
        return true;
    default:
        return nId >= VTCommandAction::AddAnimation && nId <= VTCommandAction::SetAnchorPointData;
    }
}

void VTCommand::emitDataChanged(VTUpdateViewInfo* pInfo)
{
    if (m_pDocument && pInfo)
        emit m_pDocument->dataChanged(pInfo);
}

VTCommandAction* VTCommand::getElementActionById(int nId, VTElement* pElement, int nParamIndex) const
{
    for (VTCommandAction* pAction : m_lstActions) {
        if (pAction->getId() != nId)
            continue;
        const VTCmdParam* pParam = pAction->getParam(nParamIndex);
        const bool bElementParam =
            pParam && (pParam->getType() == VTCmdParam::Element || pParam->getType() == VTCmdParam::Scene);
        if (bElementParam ? pParam->getAsElement() == pElement : !pElement)
            return pAction;
    }
    return nullptr;
}

void VTCommand::run(bool bUndo)
{
    if (m_bNeedPauseTimeline && m_pDocument)
        m_pDocument->pause();
    VTUpdateViewInfo info;
    info.setUndoCmd(bUndo);
    info.setSender(m_pSender);
    m_pSender = nullptr;
    if (m_bHasNavigationContext)
        restoreNavigationContext(info);

    bool bUpdateTimeline = false;
    bool bFontsChanged = false;
    const bool bInOrder = bUndo ? m_bReverseUndoOrder : !m_bReverseRedoOrder;
    const int nCount = m_lstActions.size();
    for (int i = 0; i < nCount; ++i) {
        VTCommandAction* pAction = m_lstActions.at(bInOrder ? i : nCount - 1 - i);
        if (bUndo) {
            pAction->undo();
        } else if (pAction->isSkipNextRedo()) {
            // The change was made when the command was built; the views still hear of it.
            pAction->setSkipNextRedo(false);
        } else {
            pAction->redo();
        }
        const int nId = pAction->getId();
        info.setId(nId);
        info.setParams(&pAction->getParams());
        emitDataChanged(&info);
        bUpdateTimeline = bUpdateTimeline || shouldUpdateTimeline(nId);
        bFontsChanged = bFontsChanged || nId == VTCommandAction::RestoreResource ||
                        nId == VTCommandAction::DeleteResource;
    }
    info.setParams(nullptr);
    if (nCount > 0) {
        if (bUpdateTimeline)
            refreshTimelines(info);
        if (bFontsChanged && m_pDocument)
            m_pDocument->regApplicationFont();
    }
    info.setId(VTCommandAction::CommandFinished);
    info.setParams(nullptr);
    emitDataChanged(&info);
}

void VTCommand::restoreNavigationContext(VTUpdateViewInfo& info)
{
    if (!m_pDocument)
        return;
    // Each step runs a temporary action, so the model changes the way any command changes it and
    // the views hear of it the same way.
    const auto runStep = [this, &info](VTCommandAction& action) {
        action.redo();
        info.setId(action.getId());
        info.setParams(&action.getParams());
        emitDataChanged(&info);
        info.setParams(nullptr);
    };

    // What the command's own selection actions (scene, current timeline, element) change stays
    // theirs to change: they swap, so each needs the state its previous run left, and putting the
    // state from before the command back first would hand an undo the old state for its new one.
    QSet<const void*> setOwnTargets;
    for (const VTCommandAction* pAction : qAsConst(m_lstActions)) {
        const int nId = pAction->getId();
        if ((nId == VTCommandAction::SelectScene || nId == VTCommandAction::SetCurrentTimeline ||
             nId == VTCommandAction::SelectElement) &&
            pAction->getParam(0))
            setOwnTargets.insert(pAction->getParam(0)->getObject());
    }

    if (m_pDocument->getEditingSymbolStack() != m_lstSymbols) {
        m_pDocument->setEditingSymbolStack(m_lstSymbols);
        info.setId(VTCommandAction::EditingSymbolChanged);
        info.setParams(nullptr);
        emitDataChanged(&info);
    }
    VTSceneManager* pScenes = currentSceneManager(m_pDocument);
    if (!pScenes)
        return;
    const QList<VTScene*> lstScenes = pScenes->getScenes();
    for (VTScene* pScene : lstScenes) {
        const bool bStored = m_lstScenes.contains(pScene);
        if (pScene->isSelected() == bStored || setOwnTargets.contains(pScene))
            continue;
        VTCommandAction action(VTCommandAction::SelectScene, m_pDocument, 2);
        action.addParam(pScene);
        action.addParam(bStored);
        runStep(action);
    }
    for (int i = 0; i < m_lstScenes.size(); ++i) {
        VTScene* pScene = m_lstScenes.at(i);
        VTTimeline* pTimeline = m_lstTimelines.value(i, nullptr);
        if (!pTimeline || !lstScenes.contains(pScene))
            continue;
        VTTimelineManager* pManager = pScene->getTimelineManager();
        // A timeline that this command or a later one removed is not in the scene to be made current.
        if (pManager->getCurrentTimeline() == pTimeline || !pManager->getTimelines().contains(pTimeline) ||
            setOwnTargets.contains(pManager))
            continue;
        VTCommandAction action(VTCommandAction::SetCurrentTimeline, m_pDocument, 2);
        action.addParam(pManager);
        action.addParam(pTimeline);
        runStep(action);
    }

    // The stored selection is that of the scene that was current when the command was made (the
    // first of the selected scenes); while another scene is current, for one that this command or a
    // later one removed, that scene's selection is not the command's to change.
    const VTScene* pCurrent = pScenes->getCurrentScene();
    if (!pCurrent || pCurrent != m_lstScenes.value(0, nullptr))
        return;
    QList<VTElement*> lstSelected;
    collectSelectedElements(pCurrent, lstSelected);
    if (lstSelected == m_lstElements)
        return;
    for (VTElement* pElement : qAsConst(lstSelected)) {
        if (m_lstElements.contains(pElement) || setOwnTargets.contains(pElement))
            continue;
        VTCommandAction action(VTCommandAction::SelectElement, m_pDocument, 2);
        action.addParam(pElement);
        action.addParam(false);
        runStep(action);
    }
    for (VTElement* pElement : qAsConst(m_lstElements)) {
        // An element that sits in another scene now is not the user's to select here.
        const VTElement* pScene = pElement->getScene();
        if (pElement->isSelected() || (pScene && pScene != pCurrent) || setOwnTargets.contains(pElement))
            continue;
        VTCommandAction action(VTCommandAction::SelectElement, m_pDocument, 2);
        action.addParam(pElement);
        action.addParam(true);
        runStep(action);
    }
}

void VTCommand::refreshTimelines(VTUpdateViewInfo& info)
{
    VTSceneManager* pScenes = currentSceneManager(m_pDocument);
    if (!pScenes)
        return;
    const VTScene* pCurrent = pScenes->getCurrentScene();
    const QList<VTScene*> lstScenes = pScenes->getScenes();
    for (const VTScene* pScene : lstScenes) {
        VTTimeline* pTimeline = pScene->getTimelineManager()->getCurrentTimeline();
        if (!pTimeline)
            continue;
        const int nTime = pTimeline->getCurrentTime();
        {
            // A seek past the end first makes every animated property start from a clean run,
            // whatever Qt considered applied before the change.
            const QSignalBlocker blocker(pTimeline);
            pTimeline->setCurrentTime(pTimeline->duration() + 1);
            pTimeline->setCurrentTime(nTime);
        }
        if (pScene != pCurrent)
            continue;
        VTCmdParam time(nTime);
        VTCmdParam paused(false);
        QList<VTCmdParam*> lstParams{&time, &paused};
        info.setId(VTCommandAction::TimeChanged);
        info.setParams(&lstParams);
        emitDataChanged(&info);
        info.setParams(nullptr);
    }
}

// ---- builders: the gesture logic lives in the builder classes, one per family ----

void VTCommand::createActionsForVisibleCmd(VTElement* pElement, bool bVisible, bool bApplyParent)
{
    VTSelectionBuilder::createActionsForVisibleCmd(*this, pElement, bVisible, bApplyParent);
}

void VTCommand::createActionsForVisibleParentCmd(VTElement* pElement, bool bVisible)
{
    VTSelectionBuilder::createActionsForVisibleParentCmd(*this, pElement, bVisible);
}

void VTCommand::createActionsForLockCmd(VTElement* pElement, bool bLock, bool bApplyParent)
{
    VTSelectionBuilder::createActionsForLockCmd(*this, pElement, bLock, bApplyParent);
}

void VTCommand::createActionsForLockParentCmd(VTElement* pElement, bool bLock)
{
    VTSelectionBuilder::createActionsForLockParentCmd(*this, pElement, bLock);
}

void VTCommand::createActionForDeselectAllSceneButCurrent()
{
    VTSelectionBuilder::createActionForDeselectAllSceneButCurrent(*this);
}

void VTCommand::createActionsForDeselectAll(const QList<VTElement*>& lstElements, VTElement* pExcept)
{
    VTSelectionBuilder::createActionsForDeselectAll(*this, lstElements, pExcept);
}

void VTCommand::createActionsForSelectElement(VTElement* pElement, bool bSelect)
{
    VTSelectionBuilder::createActionsForSelectElement(*this, pElement, bSelect);
}

void VTCommand::createActionsForDeleteElement(VTElement* pElement, VTScene* pScene, bool bToGroups,
                                              bool bWholeGroups)
{
    VTDeleteBuilder::createActionsForDeleteElements(*this, {pElement}, pScene, bToGroups, bWholeGroups);
}

void VTCommand::createActionsForDeleteElements(const QList<VTElement*>& lstElements, VTScene* pScene,
                                               bool bToGroups, bool bWholeGroups)
{
    VTDeleteBuilder::createActionsForDeleteElements(*this, lstElements, pScene, bToGroups, bWholeGroups);
}

void VTCommand::replaceElementsByGroupParent(QList<VTElement*>& lstElements)
{
    VTDeleteBuilder::replaceElementsByGroupParent(lstElements);
}

void VTCommand::createActionsForDeleteAnimationGroup(VTElement* pElement, VTTimeline* pTimeline)
{
    VTDeleteBuilder::createActionsForDeleteAnimationGroup(*this, pElement, pTimeline);
}

void VTCommand::createActionsForDeleteAnimation(VTAnimation* pAnimation, VTTimeline* pTimeline,
                                                const VTLayoutKey& key)
{
    VTDeleteBuilder::createActionsForDeleteAnimation(*this, pAnimation, pTimeline, key);
}

void VTCommand::createActionsForChangeCurrentSymbol(VTSymbol* pSymbol)
{
    VTSymbolBuilder::createActionsForChangeCurrentSymbol(*this, pSymbol);
}

void VTCommand::createActionsToUpdateContainerSizeAndCurrentBreakpoint(VTSymbol* pSymbol, int nWidth,
                                                                       int nHeight)
{
    VTSymbolBuilder::createActionsToUpdateContainerSizeAndCurrentBreakpoint(*this, pSymbol, nWidth, nHeight);
}

void VTCommand::createActionsForAddResource(VTResource* pResource, bool bSkipFirstRedo)
{
    VTSymbolBuilder::createActionsForAddResource(*this, pResource, bSkipFirstRedo);
}

void VTCommand::createActionsToUpdateHtmlWidgetFromResource(VTSymbol* pSymbol, const VTResource* pResource)
{
    VTSymbolBuilder::createActionsToUpdateHtmlWidgetFromResource(*this, pSymbol, pResource);
}

void VTCommand::prepairToDeleteAnchorPoint(VTMotionPathKeyframe* pKeyframe, int nIndex)
{
    VTKeyframeBuilder::prepairToDeleteAnchorPoint(*this, pKeyframe, nIndex);
}

void VTCommand::createActionsToDeleteAnchorPoint(VTTimeline* pTimeline, VTMotionPathKeyframe* pKeyframe,
                                                 int nIndex, const VTLayoutKey& key)
{
    VTKeyframeBuilder::createActionsToDeleteAnchorPoint(*this, pTimeline, pKeyframe, nIndex, key);
}

void VTCommand::createActionsToAddKeyAnchorPoint(VTMotionPathKeyframe* pKeyframe, VTAnchorPoint* pAnchor,
                                                 int nIndex)
{
    VTKeyframeBuilder::createActionsToAddKeyAnchorPoint(*this, pKeyframe, pAnchor, nIndex);
}

void VTCommand::createActionsToDeleteKeyValues(VTTimeline* pTimeline, VTKeyframe* pKeyframe,
                                               const QList<VTKeyValue*>& lstKeys, const VTLayoutKey& key)
{
    VTKeyframeBuilder::createActionsToDeleteKeyValues(*this, pTimeline, pKeyframe, lstKeys, key);
}

void VTCommand::createActionsToRemoveKeyframe(VTTimeline* pTimeline, VTKeyframe* pKeyframe,
                                              const VTLayoutKey& key)
{
    VTKeyframeBuilder::createActionsToRemoveKeyframe(*this, pTimeline, pKeyframe, key);
}

void VTCommand::createActionsToSaveCurrentElementPropValue(VTElement* pElement, VT::ElementProperty property,
                                                           const VTLayoutKey& key)
{
    VTKeyframeBuilder::createActionsToSaveCurrentElementPropValue(*this, pElement, property, key);
}

void VTCommand::createActionsToChangeAnimationInherit(VTAnimation* pAnimation, const VTLayoutKey& key,
                                                      VT::ElementProperty property, bool bInherit)
{
    VTKeyframeBuilder::createActionsToChangeAnimationInherit(*this, pAnimation, key, property, bInherit);
}

void VTCommand::createActionsToAddBreakpoint(int nDirection, int nValue)
{
    VTBreakpointBuilder::createActionsToAddBreakpoint(*this, nDirection, nValue);
}

void VTCommand::createActionsToRemoveBreakpoint(int nDirection, int nValue)
{
    VTBreakpointBuilder::createActionsToRemoveBreakpoint(*this, nDirection, nValue);
}

void VTCommand::createActionsToChangeCurrentBreakpoint(VTSymbol* pSymbol, int nH, int nV, bool bResponsive,
                                                       bool bSkipFirstRedo)
{
    VTBreakpointBuilder::createActionsToChangeCurrentBreakpoint(*this, pSymbol, nH, nV, bResponsive,
                                                                bSkipFirstRedo);
}

void VTCommand::createActionsToLayoutElementWhenGrouping(VTElement* pElement,
                                                         QMap<int, double>& mapBaseValues,
                                                         const QSizeF& oldParentSize,
                                                         const QSizeF& newParentSize,
                                                         const QMap<int, double>& mapValues)
{
    VTGroupLayoutBuilder::createActionsToLayoutElementWhenGrouping(*this, pElement, mapBaseValues,
                                                                   oldParentSize, newParentSize, mapValues);
}

void VTCommand::createActionsToLayoutElementWhenGrouping(VTElement* pElement,
                                                         QMap<int, double>& mapBaseValues,
                                                         const QSizeF& oldParentSize,
                                                         const QSizeF& newParentSize, const QPointF* pOffset,
                                                         const QSizeF* pSize, const VTMatrix4x4* pMatrix)
{
    VTGroupLayoutBuilder::createActionsToLayoutElementWhenGrouping(
        *this, pElement, mapBaseValues, oldParentSize, newParentSize, pOffset, pSize, pMatrix);
}

void VTCommand::createActionsToDragElement(QList<VTElement*> lstElements, VTElement* pTarget, int nPosition)
{
    VTGroupLayoutBuilder::createActionsToDragElement(*this, lstElements, pTarget, nPosition);
}
