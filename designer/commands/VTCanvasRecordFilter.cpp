#include "VTCanvasRecordFilter.h"

#include "VTAnimation.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTElementCommandAction.h"
#include "VTKeyframe.h"
#include "VTMotionPath.h"
#include "VTResource.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

namespace {

using Action = VTCommandAction;
using ElementAction = VTElementCommandAction;

// What the page shows: one scene, its current timeline and layout, the symbol that holds it.
struct Shown
{
    const VTScene* pScene = nullptr;
    const VTTimeline* pTimeline = nullptr;
    VTLayoutKey layout;
    const VTSymbol* pSymbol = nullptr;
};

// Records the page uses whatever they concern: resources it lists, the project's style sheet and
// the freeform edits, which it always has on screen when it is the one editing.
bool isAlwaysShown(int nId)
{
    switch (nId) {
    case Action::RestoreResource:
    case Action::DeleteResource:
    case Action::ChangeMediaFormat:
    case Action::SetIncludeResource:
    case Action::SetCanvasLoaderProps:
    case Action::SetUseLoadingIndicator:
    case Action::SetCssOutput:
    case ElementAction::ChangeFreeFormPath:
    case ElementAction::SetFreeFormEditPoint:
    case ElementAction::ChangeArrowStyle:
        return true;
    default:
        return false;
    }
}

// Where an element record carries the layout it changed, as two int parameters (h, v); -1 for
// records that carry none.
int layoutParamIndex(int nId)
{
    switch (nId) {
    case ElementAction::ChangeGeometry:
        return 1;
    case ElementAction::ChangeBorder:
        return 5;
    case ElementAction::ChangeBackground:
        return 14;
    case ElementAction::ChangeOpacity:
    case ElementAction::ChangeAdjustments:
    case ElementAction::ChangeClassName:
    case ElementAction::ChangeDisplay:
    case ElementAction::ChangeCursor:
        return 3;
    case ElementAction::ChangeText:
    case ElementAction::ChangeClip:
        return 17;
    case ElementAction::ChangeOverflow:
        return 4;
    case ElementAction::ChangeBgImage:
    case ElementAction::ChangeCorner:
    case ElementAction::ChangeFilter:
        return 10;
    case ElementAction::ChangeShadow:
        return 7;
    default:
        return -1;
    }
}

bool isInScene(const VTElement* pElement, const Shown& shown)
{
    return pElement && pElement->getScene() == shown.pScene;
}

// Whether the animation runs in the timeline now: animations of other layouts are parked outside
// the timeline's group, and the page shows only the current layout.
bool isInTimeline(const QAbstractAnimation* pAnimation, const VTTimeline* pTimeline)
{
    if (!pAnimation || !pTimeline)
        return false;
    for (const QAbstractAnimation* pGroup = pAnimation->group(); pGroup; pGroup = pGroup->group()) {
        if (pGroup == pTimeline)
            return true;
    }
    return false;
}

class Params
{
public:
    explicit Params(const QList<VTCmdParam*>& lstParams)
        : m_lstParams(lstParams)
    {}

    int count() const { return m_lstParams.size(); }
    const VTCmdParam* at(int nIndex) const { return m_lstParams.value(nIndex, nullptr); }
    int intAt(int nIndex) const { return at(nIndex) ? at(nIndex)->getAsInt() : 0; }
    VTElement* elementAt(int nIndex) const { return at(nIndex) ? at(nIndex)->getAsElement() : nullptr; }
    VTTimeline* timelineAt(int nIndex) const { return at(nIndex) ? at(nIndex)->getAsTimeline() : nullptr; }
    VTKeyframe* keyframeAt(int nIndex) const
    {
        return at(nIndex) ? at(nIndex)->getAsKeyframeAnimation() : nullptr;
    }
    VTAnimation* animationAt(int nIndex) const { return at(nIndex) ? at(nIndex)->getAsAnimation() : nullptr; }
    // Absent parameters never match: (-1, -1) is no layout the scene can show.
    VTLayoutKey pairAt(int nIndex) const
    {
        return at(nIndex) && at(nIndex)->getType() == VTCmdParam::IntPair ? at(nIndex)->getAsIntPair()
                                                                          : VTLayoutKey::current();
    }
    VTLayoutKey intsAt(int nIndex) const
    {
        return at(nIndex) && at(nIndex + 1) ? VTLayoutKey(intAt(nIndex), intAt(nIndex + 1))
                                            : VTLayoutKey::current();
    }

private:
    const QList<VTCmdParam*>& m_lstParams;
};

bool isAddOrRemoveShown(const Params& params, const Shown& shown)
{
    if (params.count() == 4)
        return isInScene(params.elementAt(3), shown);
    if (params.count() == 3)
        return params.at(2) && params.at(2)->getAsScene() == shown.pScene;
    return false;
}

bool isKeyframeShown(const VTKeyframe* pKeyframe, const Shown& shown)
{
    return isInTimeline(pKeyframe, shown.pTimeline);
}

bool isMotionPathShown(const VTCmdParam* pParam, const Shown& shown)
{
    const VTMotionPath* pPath = pParam ? pParam->getAsMotionPath() : nullptr;
    return pPath && isKeyframeShown(qobject_cast<const VTKeyframe*>(pPath->getParent()), shown);
}

bool isOrientShown(const VTAnimation* pAnimation, const Shown& shown)
{
    if (!isInTimeline(pAnimation, shown.pTimeline))
        return false;
    const VTKeyframe* pLocation = pAnimation->getKeyframe(VT::PropLocation);
    return pLocation && !pLocation->getKeyValues().isEmpty();
}

bool isShown(int nId, const Params& params, const Shown& shown)
{
    if (isAlwaysShown(nId))
        return true;
    const int nLayoutIndex = layoutParamIndex(nId);
    if (nLayoutIndex >= 0)
        return isInScene(params.elementAt(0), shown) && params.intsAt(nLayoutIndex) == shown.layout;

    switch (nId) {
    case Action::AddElement:
    case Action::RemoveElement:
        return isAddOrRemoveShown(params, shown);
    case Action::ReparentElement:
    case Action::ChangeElementOrder:
    case Action::SelectElement:
    case ElementAction::SetLocked:
    case ElementAction::SetVisible:
    case ElementAction::ChangeImageResource:
    case ElementAction::ChangeVolume:
    case ElementAction::SetMediaLoop:
    case ElementAction::SetMediaControls:
    case ElementAction::ChangeHtmlWidgetSource:
    case ElementAction::ChangeHtmlWidgetCode:
    case ElementAction::UpdateHtmlWidgetFromResource:
    case ElementAction::SetLockAspectRatio:
        return isInScene(params.elementAt(0), shown);
    case Action::SetCurrentTimeline: {
        const VTTimeline* pTimeline = params.timelineAt(1);
        return pTimeline && pTimeline->getScene() == shown.pScene;
    }
    case Action::AddLabel:
    case Action::RemoveLabel:
    case Action::RenameLabel:
    case Action::MoveLabel:
        return shown.pTimeline && params.timelineAt(0) == shown.pTimeline;
    case Action::AddAnimation:
    case Action::RemoveAnimation:
        return shown.pTimeline && params.timelineAt(1) == shown.pTimeline && params.pairAt(2) == shown.layout;
    case Action::AddKeyframe:
    case Action::RemoveKeyframe:
        return shown.pTimeline && params.timelineAt(2) == shown.pTimeline && params.pairAt(3) == shown.layout;
    case Action::ChangeAllKeyValues:
    case Action::ChangeUnitSign:
        return isKeyframeShown(params.keyframeAt(0), shown);
    case Action::InvertAnchorPoints:
        return isMotionPathShown(params.at(0), shown);
    case Action::ChangeResourceOrder:
    case Action::ChangeResourcePath:
    case Action::ResourceChanged: {
        const VTResource* pResource = params.at(0) ? params.at(0)->getAsResource() : nullptr;
        return pResource && pResource->getUsageCount() >= 1;
    }
    case Action::AddPlaybackListener:
    case Action::RemovePlaybackListener:
    case Action::ChangePlaybackListener:
        return isInTimeline(params.animationAt(0), shown.pTimeline);
    case Action::SetSymbolWidth:
    case Action::SetSymbolHeight:
    case Action::SetSymbolAlignment:
    case Action::AddBreakpoint:
    case Action::RemoveBreakpoint:
    case Action::UpdateBreakpoint:
    case Action::ChangeCurrentBreakpoint:
        return shown.pSymbol && params.at(0) && params.at(0)->getAsSymbol() == shown.pSymbol;
    case Action::SetAutoOrient:
        return isOrientShown(params.animationAt(0), shown);
    case ElementAction::SetPropertyValue:
        return isInScene(params.elementAt(0), shown) && params.pairAt(2) == shown.layout;
    case ElementAction::ChangePerspective:
        return params.at(0) && params.at(0)->getAsScene() == shown.pScene && params.intsAt(2) == shown.layout;
    default:
        break;
    }
    if (nId >= Action::MoveKeyframe && nId <= Action::MoveKeyValue)
        return isKeyframeShown(params.keyframeAt(0), shown);
    if (nId >= Action::AddAnchorPoint && nId <= Action::SetAnchorPointData)
        return isMotionPathShown(params.at(0), shown);
    return false;
}

} // namespace

bool VTCanvasRecordFilter::shouldNotifyActionToJS(const VTUpdateViewInfo* pInfo, const QObject* pCanvas,
                                                  const VTScene* pScene)
{
    if (!pInfo || !pScene || (pCanvas && pInfo->getSender() == pCanvas))
        return false;
    const QList<VTCmdParam*>* pParams = pInfo->getParams();
    if (!pParams || pParams->isEmpty())
        return false;
    Shown shown;
    shown.pScene = pScene;
    shown.pTimeline = pScene->getTimelineManager()->getCurrentTimeline();
    shown.layout = pScene->getCurrentLayoutID();
    shown.pSymbol = pScene->getSceneManager() ? pScene->getSceneManager()->getSymbol() : nullptr;
    return isShown(pInfo->getId(), Params(*pParams), shown);
}

bool VTCanvasRecordFilter::shouldRepaintWhenFinishedCommand(int nId)
{
    switch (nId) {
    case Action::AddElement:
    case Action::RemoveElement:
    case Action::ReparentElement:
    case Action::SetCurrentTimeline:
    case Action::SetAnchorPointData:
    case Action::SelectElement:
    case Action::AddPlaybackListener:
    case Action::RemovePlaybackListener:
    case Action::ChangePlaybackListener:
    case Action::SetSymbolWidth:
    case Action::SetSymbolHeight:
    case Action::SetSymbolAlignment:
    case Action::SetAutoOrient:
    case Action::TimelinePaused:
    case Action::TimeChanged:
    case Action::ChangeAllKeyValues:
    case Action::InvertAnchorPoints:
    case Action::AddBreakpoint:
    case Action::RemoveBreakpoint:
    case Action::UpdateBreakpoint:
    case Action::ChangeCurrentBreakpoint:
    case ElementAction::ChangeGeometry:
    case ElementAction::ChangeBorder:
    case ElementAction::SetLocked:
    case ElementAction::SetVisible:
    case ElementAction::ChangeAdjustments:
    case ElementAction::ChangeFreeFormPath:
    case ElementAction::SetFreeFormEditPoint:
    case ElementAction::ChangeArrowStyle:
        return true;
    default:
        // Animations, keyframes, key values and the first anchor actions.
        return nId >= Action::AddAnimation && nId <= Action::RemoveAnchorPoint;
    }
}

bool VTCanvasRecordFilter::shouldUpdateScenePosWhenFinishedCommand(int nId)
{
    switch (nId) {
    case Action::AddElement:
    case Action::RemoveElement:
    case Action::SetCurrentTimeline:
    case Action::AddAnimation:
    case Action::RemoveAnimation:
    case Action::AddKeyframe:
    case Action::RemoveKeyframe:
    case Action::SetTransition:
    case Action::InvertKeyValues:
    case Action::AddKeyValue:
    case Action::RemoveKeyValue:
    case Action::AddAnchorPoint:
    case Action::RemoveAnchorPoint:
    case Action::SetAnchorPointData:
    case Action::SetSymbolWidth:
    case Action::SetSymbolHeight:
    case Action::SetSymbolAlignment:
    case Action::InvertAnchorPoints:
    case ElementAction::ChangeGeometry:
    case ElementAction::ChangeFreeFormPath:
    case ElementAction::SetFreeFormEditPoint:
    case ElementAction::ChangeArrowStyle:
        return true;
    default:
        return false;
    }
}
