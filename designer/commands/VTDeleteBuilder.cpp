#include "VTDeleteBuilder.h"

#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <algorithm>

namespace {

QList<VTLayoutKey> allLayouts(const VTBreakpointManager* pBreakpoints)
{
    return pBreakpoints ? pBreakpoints->getAllBreakpointIds(true) : QList<VTLayoutKey>{VTLayoutKey::base()};
}

} // namespace

void VTDeleteBuilder::createActionsForDeleteElements(VTCommand& command, const QList<VTElement*>& lstElements,
                                                     VTScene* pScene, bool bToGroups, bool bWholeGroups)
{
    if (!pScene)
        return;
    QList<VTElement*> lstDeleted = lstElements;
    lstDeleted.removeAll(nullptr);
    if (bToGroups)
        replaceElementsByGroupParent(lstDeleted);
    const QList<VTLayoutKey> lstLayouts = allLayouts(VTBuilderSupport::breakpointsOf(command, pScene));
    const QList<VTTimeline*> lstTimelines = pScene->getTimelineManager()->getTimelines();
    for (VTElement* pElement : qAsConst(lstDeleted)) {
        auto* pDeselect = new VTCommandAction(VTCommandAction::SelectElement, command.getDocument(), 2);
        pDeselect->addParam(pElement, false);
        pDeselect->addParam(false);
        command.addAction(pDeselect);
        for (VTTimeline* pTimeline : lstTimelines) {
            if (bWholeGroups) {
                createActionsForDeleteAnimationGroup(command, pElement, pTimeline);
                continue;
            }
            for (const VTLayoutKey& key : lstLayouts)
                createActionsForDeleteAnimation(command, pTimeline->getAnimation(pElement, key), pTimeline,
                                                key);
        }
        VTElement* pParent = pElement->getParent();
        auto* pRemove = new VTCommandAction(VTCommandAction::RemoveElement, command.getDocument(), 4);
        pRemove->addParam(pElement, false);
        pRemove->addParam(-1);
        pRemove->addParam(pScene, false);
        if (pParent)
            pRemove->addParam(pParent, false);
        command.addAction(pRemove);
    }
}

void VTDeleteBuilder::replaceElementsByGroupParent(QList<VTElement*>& lstElements)
{
    // A group whose children are all going goes itself instead; repeating lets a fully chosen
    // nest of groups fold into its outermost group.
    bool bChanged = true;
    while (bChanged) {
        bChanged = false;
        QList<VTElement*> lstGroups;
        for (const VTElement* pElement : qAsConst(lstElements)) {
            VTElement* pParent = pElement ? pElement->getParent() : nullptr;
            if (pParent && pParent->getType() == VT::GroupElement && !lstGroups.contains(pParent))
                lstGroups.append(pParent);
        }
        for (VTElement* pGroup : qAsConst(lstGroups)) {
            const QList<VTElement*>& lstChildren = pGroup->getChildren();
            const bool bAllListed =
                !lstChildren.isEmpty() &&
                std::all_of(lstChildren.cbegin(), lstChildren.cend(),
                            [&](VTElement* pChild) { return lstElements.contains(pChild); });
            if (!bAllListed)
                continue;
            for (VTElement* pChild : lstChildren)
                lstElements.removeAll(pChild);
            if (!lstElements.contains(pGroup))
                lstElements.append(pGroup);
            bChanged = true;
        }
    }
}

void VTDeleteBuilder::createActionsForDeleteAnimationGroup(VTCommand& command, VTElement* pElement,
                                                           VTTimeline* pTimeline)
{
    if (!pElement || !pTimeline)
        return;
    // Every element that holds others takes their animations along, a div as much as a group: an
    // animation left behind would animate an element that is no longer in the scene.
    for (VTElement* pChild : pElement->getChildren())
        createActionsForDeleteAnimationGroup(command, pChild, pTimeline);
    for (const VTLayoutKey& key : allLayouts(VTBuilderSupport::currentBreakpoints(command)))
        createActionsForDeleteAnimation(command, pTimeline->getAnimation(pElement, key), pTimeline, key);
}

void VTDeleteBuilder::createActionsForDeleteAnimation(VTCommand& command, VTAnimation* pAnimation,
                                                      VTTimeline* pTimeline, const VTLayoutKey& key)
{
    if (!pAnimation || !pTimeline)
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::RemoveAnimation, command.getDocument(), 3);
    pAction->addParam(pAnimation, false);
    pAction->addParam(pTimeline, false);
    pAction->addParam(key);
    command.addAction(pAction);
}
