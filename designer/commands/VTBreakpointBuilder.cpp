#include "VTBreakpointBuilder.h"

#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTElementProperty.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QVector>

// Both builders change the model as they go and flag every action they add with skip next redo:
// each action is added in the state its own redo would have left it in, so that undo and every
// later redo work as for any other action.

namespace {

using Direction = VTBreakpointManager::Direction;

struct Context
{
    VTSymbol* pSymbol = nullptr;
    VTBreakpointManager* pManager = nullptr;
    QList<VTScene*> lstScenes;
    QList<VTElement*> lstElements;
};

bool makeContext(const VTCommand& command, Context& context)
{
    context.pSymbol = VTBuilderSupport::currentSymbol(command);
    context.pManager = context.pSymbol ? context.pSymbol->getBreakpointManager() : nullptr;
    if (!command.getDocument() || !context.pManager)
        return false;
    context.lstScenes = context.pSymbol->getSceneManager()->getScenes();
    for (VTScene* pScene : qAsConst(context.lstScenes))
        context.lstElements += VTBuilderSupport::collectSubtree(pScene);
    return true;
}

VTCommandAction* newAction(const VTCommand& command, int nId, int nReserve)
{
    return new VTCommandAction(nId, command.getDocument(), nReserve, true);
}

// The key with the id of one direction replaced.
VTLayoutKey withId(const VTLayoutKey& key, Direction direction, int nId)
{
    return direction == VTBreakpointManager::Horizontal ? VTLayoutKey(nId, key.getVerticalId())
                                                        : VTLayoutKey(key.getHorizontalId(), nId);
}

// The layout of an id of one direction and an id of the other.
VTLayoutKey makeKey(Direction direction, int nOwnId, int nCrossId)
{
    return direction == VTBreakpointManager::Horizontal ? VTLayoutKey(nOwnId, nCrossId)
                                                        : VTLayoutKey(nCrossId, nOwnId);
}

int idOf(const VTLayoutKey& key, Direction direction)
{
    return direction == VTBreakpointManager::Horizontal ? key.getHorizontalId() : key.getVerticalId();
}

void copyBlock(VTCommand& command, VTElement* pElement, const VTLayoutKey& source, const VTLayoutKey& target)
{
    const VTElementProperty* pSource = pElement->getLayoutProperty(source);
    if (!pSource)
        return;
    VTElementProperty* pCopy = pSource->clone();
    if (!pElement->addLayoutProperty(pCopy, target)) {
        delete pCopy;
        return;
    }
    VTCommandAction* pAction = newAction(command, VTCommandAction::AddLayoutProperty, 4);
    pAction->addParam(pElement, false);
    pAction->addParam(target.getHorizontalId());
    pAction->addParam(target.getVerticalId());
    pAction->addParam(pCopy, false);
    command.addAction(pAction);
}

void dropBlock(VTCommand& command, VTElement* pElement, const VTLayoutKey& key)
{
    VTElementProperty* pBlock = pElement->removeLayoutProperty(key);
    if (!pBlock)
        return;
    VTCommandAction* pAction = newAction(command, VTCommandAction::RemoveLayoutProperty, 4);
    pAction->addParam(pElement, false);
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    pAction->addParam(pBlock, true);
    command.addAction(pAction);
}

void addAnimationsAction(VTCommand& command, int nId, VTTimeline* pTimeline, const VTLayoutKey& key,
                         const QVector<VTAnimation*>& vecAnimations, bool bOwned)
{
    VTCommandAction* pAction = newAction(command, nId, 4 + vecAnimations.size());
    pAction->addParam(pTimeline, false);
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    pAction->addParam(vecAnimations.size());
    for (VTAnimation* pAnimation : vecAnimations)
        pAction->addParam(pAnimation, bOwned);
    command.addAction(pAction);
}

void copyAnimations(VTCommand& command, const Context& context, const VTLayoutKey& source,
                    const VTLayoutKey& target)
{
    for (VTScene* pScene : context.lstScenes) {
        for (VTTimeline* pTimeline : pScene->getTimelineManager()->getTimelines()) {
            const QVector<VTAnimation*> vecSource = pTimeline->getLayoutAnimations(source);
            if (vecSource.isEmpty())
                continue;
            QVector<VTAnimation*> vecCopies;
            for (const VTAnimation* pAnimation : vecSource) {
                if (VTAnimation* pCopy = pAnimation->clone(pTimeline, target))
                    vecCopies.append(pCopy);
            }
            pTimeline->addLayoutAnimations(vecCopies, target);
            addAnimationsAction(command, VTCommandAction::AddLayoutAnimations, pTimeline, target, vecCopies,
                                false);
        }
    }
}

void dropAnimations(VTCommand& command, const Context& context, const VTLayoutKey& key)
{
    for (VTScene* pScene : context.lstScenes) {
        for (VTTimeline* pTimeline : pScene->getTimelineManager()->getTimelines()) {
            if (!pTimeline->getAllLayoutAnimations().contains(key))
                continue;
            const QVector<VTAnimation*> vecRemoved = pTimeline->removeLayoutAnimations(key);
            addAnimationsAction(command, VTCommandAction::RemoveLayoutAnimations, pTimeline, key, vecRemoved,
                                true);
        }
    }
}

// Symbol, direction and two numbers: value and id for adding and removing, id and value for
// updating.
void addBreakpointAction(VTCommand& command, int nId, VTSymbol* pSymbol, Direction direction, int nFirst,
                         int nSecond)
{
    VTCommandAction* pAction = newAction(command, nId, 4);
    pAction->addParam(pSymbol, false);
    pAction->addParam(static_cast<int>(direction));
    pAction->addParam(nFirst);
    pAction->addParam(nSecond);
    command.addAction(pAction);
}

// The stage takes a size that lies in the layout now shown.
void fitSize(VTCommand& command, VTSymbol* pSymbol, const QSize& size)
{
    const auto resize = [&](int nId, int nOld) {
        VTCommandAction* pAction = newAction(command, nId, 2);
        pAction->addParam(pSymbol, false);
        pAction->addParam(nOld);
        command.addAction(pAction);
    };
    if (size.width() != pSymbol->getWidth()) {
        resize(VTCommandAction::SetSymbolWidth, pSymbol->getWidth());
        pSymbol->setWidth(size.width());
    }
    if (size.height() != pSymbol->getHeight()) {
        resize(VTCommandAction::SetSymbolHeight, pSymbol->getHeight());
        pSymbol->setHeight(size.height());
    }
}

// Records the pair and mode in force and then shows another layout.
void showLayout(VTCommand& command, VTSymbol* pSymbol, const VTLayoutKey& key, bool bResponsive)
{
    const VTLayoutKey current = pSymbol->getCurrentLayoutId(false);
    VTBreakpointBuilder::createActionsToChangeCurrentBreakpoint(command, pSymbol, current.getHorizontalId(),
                                                                current.getVerticalId(),
                                                                pSymbol->isResponsiveMode(), true);
    pSymbol->setCurrentLayoutId(key);
    pSymbol->setResponsiveMode(bResponsive);
}

} // namespace

void VTBreakpointBuilder::createActionsToAddBreakpoint(VTCommand& command, int nDirection, int nValue)
{
    Context context;
    if ((nDirection != VTBreakpointManager::Horizontal && nDirection != VTBreakpointManager::Vertical) ||
        !makeContext(command, context))
        return;
    const auto direction = static_cast<Direction>(nDirection);
    const auto cross = direction == VTBreakpointManager::Horizontal ? VTBreakpointManager::Vertical
                                                                    : VTBreakpointManager::Horizontal;
    VTBreakpointManager* pManager = context.pManager;
    const VTLayoutKey cur = pManager->getCurrentId(false);
    const VTBreakpointManager::EntryList& lstOwn = pManager->getBreakpoints(direction);
    for (const VTBreakpointManager::Entry& entry : lstOwn) {
        if (entry.second == nValue)
            return;
    }

    // The first breakpoint of a direction opens it: the layouts with id 0 there give way to the
    // new ones, which start as their copies.
    QList<VTLayoutKey> lstDying;
    const bool bFirst = lstOwn.isEmpty();
    if (bFirst) {
        for (int nCrossId : cross == VTBreakpointManager::Vertical ? pManager->getVerticalIds()
                                                                   : pManager->getHorizontalIds())
            lstDying.append(makeKey(direction, 0, nCrossId));
    }
    QVector<VTBreakpointManager::Entry> vecAdded;
    if (bFirst && nValue != 0) {
        const VTBreakpointManager::Entry base = pManager->add(direction, 0);
        if (base.first < 0)
            return;
        vecAdded.append(base);
    }
    const VTBreakpointManager::Entry added = pManager->add(direction, nValue);
    if (added.first < 0) {
        for (const VTBreakpointManager::Entry& entry : qAsConst(vecAdded))
            pManager->remove(direction, entry.first);
        return;
    }
    vecAdded.append(added);
    const VTLayoutKey next = withId(cur, direction, added.first);

    QVector<int> vecAddedIds;
    for (const VTBreakpointManager::Entry& entry : qAsConst(vecAdded))
        vecAddedIds.append(entry.first);
    for (const VTLayoutKey& key : pManager->getBreakpointsFromDirection(direction, vecAddedIds)) {
        const VTLayoutKey source = withId(key, direction, idOf(cur, direction));
        for (VTElement* pElement : qAsConst(context.lstElements))
            copyBlock(command, pElement, source, key);
        copyAnimations(command, context, source, key);
    }
    for (const VTBreakpointManager::Entry& entry : qAsConst(vecAdded))
        addBreakpointAction(command, VTCommandAction::AddBreakpoint, context.pSymbol, direction, entry.second,
                            entry.first);
    fitSize(command, context.pSymbol, context.pSymbol->getBestSize(next));
    showLayout(command, context.pSymbol, next, true);
    for (const VTLayoutKey& key : qAsConst(lstDying)) {
        for (VTElement* pElement : qAsConst(context.lstElements))
            dropBlock(command, pElement, key);
        dropAnimations(command, context, key);
    }
}

void VTBreakpointBuilder::createActionsToRemoveBreakpoint(VTCommand& command, int nDirection, int nValue)
{
    Context context;
    if ((nDirection != VTBreakpointManager::Horizontal && nDirection != VTBreakpointManager::Vertical) ||
        !makeContext(command, context))
        return;
    const auto direction = static_cast<Direction>(nDirection);
    VTBreakpointManager* pManager = context.pManager;
    const int nRemovedId = direction == VTBreakpointManager::Horizontal ? pManager->getHorizontalId(nValue)
                                                                        : pManager->getVerticalId(nValue);
    if (nRemovedId < 0)
        return;
    const VTLayoutKey cur = pManager->getCurrentId(false);
    showLayout(command, context.pSymbol, VTLayoutKey::base(), false);

    QVector<VTBreakpointManager::Entry> vecRemoved{pManager->remove(direction, nRemovedId)};
    // A direction is never left with its base entry alone: that one goes too, and its layouts
    // live on under id 0 when the other direction still has breakpoints.
    int nSurvivor = -1;
    if (pManager->getBreakpoints(direction).size() == 1) {
        const VTBreakpointManager::Entry last = pManager->getBreakpoints(direction).first();
        vecRemoved.append(pManager->remove(direction, last.first));
        const int nCrossCount = direction == VTBreakpointManager::Horizontal ? pManager->countVBreakpoints()
                                                                             : pManager->countHBreakpoints();
        if (nCrossCount > 0)
            nSurvivor = last.first;
    }

    const VTBreakpointManager::EntryList& lstLeft = pManager->getBreakpoints(direction);
    int nCurrentId = 0;
    if (!lstLeft.isEmpty()) {
        if (nValue < lstLeft.first().second) {
            nCurrentId = lstLeft.first().first;
        } else {
            for (const VTBreakpointManager::Entry& entry : lstLeft) {
                if (entry.second < nValue)
                    nCurrentId = entry.first;
            }
        }
    }
    const int nNewBaseId = nValue == 0 && !lstLeft.isEmpty() ? lstLeft.first().first : -1;

    if (nSurvivor >= 0) {
        const QVector<int> vecCrossIds = direction == VTBreakpointManager::Horizontal
                                             ? pManager->getVerticalIds()
                                             : pManager->getHorizontalIds();
        for (int nCrossId : vecCrossIds) {
            const VTLayoutKey source = makeKey(direction, nSurvivor, nCrossId);
            const VTLayoutKey target = makeKey(direction, 0, nCrossId);
            for (VTElement* pElement : qAsConst(context.lstElements))
                copyBlock(command, pElement, source, target);
            copyAnimations(command, context, source, target);
        }
        nCurrentId = 0;
    }

    QVector<int> vecRemovedIds;
    for (const VTBreakpointManager::Entry& entry : qAsConst(vecRemoved))
        vecRemovedIds.append(entry.first);
    for (const VTLayoutKey& key : pManager->getBreakpointsFromDirection(direction, vecRemovedIds)) {
        for (VTElement* pElement : qAsConst(context.lstElements))
            dropBlock(command, pElement, key);
        dropAnimations(command, context, key);
    }
    for (const VTBreakpointManager::Entry& entry : qAsConst(vecRemoved))
        addBreakpointAction(command, VTCommandAction::RemoveBreakpoint, context.pSymbol, direction,
                            entry.second, entry.first);

    if (nNewBaseId >= 0) {
        // The lowest breakpoint left takes over the range from 0.
        const int nOldValue = direction == VTBreakpointManager::Horizontal
                                  ? pManager->getHBreakpoint(nNewBaseId)
                                  : pManager->getVBreakpoint(nNewBaseId);
        addBreakpointAction(command, VTCommandAction::UpdateBreakpoint, context.pSymbol, direction,
                            nNewBaseId, nOldValue);
        pManager->update(direction, nNewBaseId, 0);
    }

    const VTLayoutKey newCurrent = withId(cur, direction, nCurrentId);
    if (!newCurrent.isBase())
        showLayout(command, context.pSymbol, newCurrent, true);
    fitSize(command, context.pSymbol,
            context.pSymbol->getBestSize(context.pSymbol->getCurrentLayoutId(true)));
}

void VTBreakpointBuilder::createActionsToChangeCurrentBreakpoint(VTCommand& command, VTSymbol* pSymbol,
                                                                 int nH, int nV, bool bResponsive,
                                                                 bool bSkipFirstRedo)
{
    if (!pSymbol)
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeCurrentBreakpoint, command.getDocument(), 4,
                                        bSkipFirstRedo);
    pAction->addParam(pSymbol, false);
    pAction->addParam(nH);
    pAction->addParam(nV);
    pAction->addParam(bResponsive);
    command.addAction(pAction);
}
