#include "VTTimelineActions.h"

#include "VTActionParams.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTKeyframe.h"
#include "VTPlayback.h"
#include "VTPlaybackAnimation.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QVector>

namespace {

constexpr int kFirstLayoutAnimation = 4;

VTLayoutKey layoutKeyOf(const VTCommandAction& action, int nHorizontalIndex)
{
    return VTLayoutKey(action.getParam(nHorizontalIndex)->getAsInt(),
                       action.getParam(nHorizontalIndex + 1)->getAsInt());
}

// Writes a plain value into the property that a keyframe animates, in the keyframe's layout.
// Values the element carries itself are written through its current layout, so the element is
// switched there for the write; only its own tree follows, not its timelines.
void writeBoundValue(VTKeyframe* pKeyframe, VTElement* pElement, const VTLayoutKey& key,
                     const QVariant& value)
{
    const QByteArray propertyName = pKeyframe->getPropertyName();
    if (!value.isValid() || propertyName.isEmpty() || key.isCurrent())
        return;
    const VTLayoutKey oldKey = pElement->getCurrentLayoutID();
    if (oldKey != key)
        pElement->VTElement::setCurrentLayoutID(key);
    if (QObject* pTarget = VTAnimatedProperty::getTargetObject(pElement, pKeyframe->getType(), key))
        pTarget->setProperty(propertyName.constData(), value);
    if (oldKey != key)
        pElement->VTElement::setCurrentLayoutID(oldKey);
}

bool isInPlayback(VTPlaybackAnimation* pAnimation, const VTEventListener* pListener)
{
    const VTPlayback* pPlayback = pAnimation->getPlayback();
    return pPlayback && pPlayback->getEventListenerList()->getEventListenerIndex(pListener) >= 0;
}

// The n animations that follow the count parameter; false when a parameter is missing or null.
bool collectLayoutAnimations(const VTCommandAction& action, QVector<VTAnimation*>& vecAnimations)
{
    const int nCount = action.getParam(3)->getAsInt();
    if (nCount < 0 || action.paramCount() != kFirstLayoutAnimation + nCount)
        return false;
    for (int i = 0; i < nCount; ++i) {
        VTAnimation* pAnimation = action.getParam(kFirstLayoutAnimation + i)->getAsAnimation();
        if (!pAnimation)
            return false;
        vecAnimations.append(pAnimation);
    }
    return true;
}

// The animation parameters hand their objects to the model...
void releaseLayoutAnimations(VTCommandAction& action)
{
    for (int i = kFirstLayoutAnimation; i < action.paramCount(); ++i)
        action.getParam(i)->release();
}

// ...and are replaced by the set the model gave up, which the action then owns.
void holdLayoutAnimations(VTCommandAction& action, const QVector<VTAnimation*>& vecAnimations)
{
    releaseLayoutAnimations(action);
    action.truncateParams(kFirstLayoutAnimation);
    action.getParam(3)->setValue(vecAnimations.size());
    for (VTAnimation* pAnimation : vecAnimations)
        action.addParam(pAnimation, true);
}

} // namespace

bool VTTimelineActions::handles(int nId)
{
    if (nId >= VTCommandAction::AddTimeline && nId <= VTCommandAction::RemoveKeyframe)
        return true;
    switch (nId) {
    case VTCommandAction::MoveTrigger:
    case VTCommandAction::AddPlaybackListener:
    case VTCommandAction::RemovePlaybackListener:
    case VTCommandAction::ChangePlaybackListener:
    case VTCommandAction::SetAutoOrient:
    case VTCommandAction::ChangeMainTimeline:
    case VTCommandAction::AddLayoutAnimations:
    case VTCommandAction::RemoveLayoutAnimations:
    case VTCommandAction::UpdateLayoutAnimations:
    case VTCommandAction::ChangeAnimationInherits:
        return true;
    default:
        return false;
    }
}

void VTTimelineActions::run(VTCommandAction& action, bool bUndo)
{
    switch (action.getId()) {
    case VTCommandAction::AddTimeline:
    case VTCommandAction::RemoveTimeline:
        if (VTActionParams::hasCount(action, 3))
            addTimeline(action, (action.getId() == VTCommandAction::AddTimeline) != bUndo);
        break;
    case VTCommandAction::SetCurrentTimeline:
        if (VTActionParams::hasCount(action, 2))
            setCurrentTimeline(action);
        break;
    case VTCommandAction::RenameTimeline:
        if (VTActionParams::hasCount(action, 2))
            renameTimeline(action);
        break;
    case VTCommandAction::AddLabel:
    case VTCommandAction::RemoveLabel:
        if (VTActionParams::hasCount(action, 3))
            addLabel(action, (action.getId() == VTCommandAction::AddLabel) != bUndo);
        break;
    case VTCommandAction::RenameLabel:
        if (VTActionParams::hasCount(action, 3))
            renameLabel(action);
        break;
    case VTCommandAction::MoveLabel:
        if (VTActionParams::hasCount(action, 3))
            moveLabel(action);
        break;
    case VTCommandAction::AddAnimation:
    case VTCommandAction::RemoveAnimation:
        if (VTActionParams::hasCount(action, 3))
            addAnimation(action, (action.getId() == VTCommandAction::AddAnimation) != bUndo);
        break;
    case VTCommandAction::AddKeyframe:
        if (VTActionParams::hasCount(action, 4))
            addKeyframe(action, !bUndo);
        break;
    case VTCommandAction::RemoveKeyframe:
        if (VTActionParams::hasCount(action, 4, 5))
            addKeyframe(action, bUndo);
        break;
    case VTCommandAction::MoveTrigger:
        if (VTActionParams::hasCount(action, 3))
            moveTrigger(action);
        break;
    case VTCommandAction::AddPlaybackListener:
    case VTCommandAction::RemovePlaybackListener:
        if (VTActionParams::hasCount(action, 2))
            addPlaybackListener(action, (action.getId() == VTCommandAction::AddPlaybackListener) != bUndo);
        break;
    case VTCommandAction::ChangePlaybackListener:
        if (VTActionParams::hasCount(action, 5))
            changePlaybackListener(action);
        break;
    case VTCommandAction::SetAutoOrient:
        if (VTActionParams::hasCount(action, 2))
            setAutoOrient(action);
        break;
    case VTCommandAction::ChangeMainTimeline:
        if (VTActionParams::hasCount(action, 2))
            changeMainTimeline(action);
        break;
    case VTCommandAction::AddLayoutAnimations:
        if (bUndo)
            takeLayoutAnimations(action);
        else
            putLayoutAnimations(action);
        break;
    case VTCommandAction::RemoveLayoutAnimations:
        if (bUndo)
            putLayoutAnimations(action);
        else
            takeLayoutAnimations(action);
        break;
    case VTCommandAction::UpdateLayoutAnimations:
        updateLayoutAnimations(action);
        break;
    case VTCommandAction::ChangeAnimationInherits:
        if (VTActionParams::hasCount(action, 2))
            changeAnimationInherits(action);
        break;
    default:
        break;
    }
}

void VTTimelineActions::addTimeline(VTCommandAction& action, bool bAdd)
{
    VTTimelineManager* pManager = action.getParam(0)->getAsTimelineManager();
    VTTimeline* pTimeline = action.getParam(1)->getAsTimeline();
    if (!pManager || !pTimeline)
        return;
    // A timeline that comes back keeps its id: the manager only hands out ids to new ones.
    const int nIndex = bAdd ? pManager->addTimeline(pTimeline, action.getParam(2)->getAsInt())
                            : pManager->detachTimeline(pTimeline);
    if (nIndex < 0)
        return;
    action.getParam(2)->setValue(nIndex);
    action.getParam(1)->setOwned(!bAdd);
}

void VTTimelineActions::setCurrentTimeline(VTCommandAction& action)
{
    VTTimelineManager* pManager = action.getParam(0)->getAsTimelineManager();
    if (!pManager)
        return;
    VTCmdParam* pParam = action.getParam(1);
    VTTimeline* pOld = pManager->getCurrentTimeline();
    pManager->setCurrentTimeline(pParam->getAsTimeline());
    pParam->release();
    pParam->setValue(pOld, false);
}

void VTTimelineActions::renameTimeline(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    if (!pTimeline)
        return;
    VTActionParams::swap<QString>(
        action.getParam(1), [pTimeline] { return pTimeline->getName(); },
        [pTimeline](const QString& name) { pTimeline->setName(name); });
}

void VTTimelineActions::addLabel(VTCommandAction& action, bool bAdd)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    if (!pTimeline)
        return;
    const QString name = action.getParam(1)->getAsString();
    if (bAdd)
        pTimeline->addLabel(name, action.getParam(2)->getAsInt());
    else
        pTimeline->removeLabel(name);
}

void VTTimelineActions::renameLabel(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    const QString oldName = action.getParam(1)->getAsString();
    // Exchanging the names after a rename that did not happen would make the undo rename another
    // label.
    if (!pTimeline || !pTimeline->getMapLabel2TS().contains(oldName))
        return;
    pTimeline->renameLabel(oldName, action.getParam(2)->getAsString());
    VTActionParams::exchange<QString>(action.getParam(1), action.getParam(2));
}

void VTTimelineActions::moveLabel(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    const QString name = action.getParam(1)->getAsString();
    if (!pTimeline || !pTimeline->getMapLabel2TS().contains(name))
        return;
    VTActionParams::swap<int>(
        action.getParam(2), [pTimeline, &name] { return pTimeline->getLabelValue(name); },
        [pTimeline, &name](int nTime) { pTimeline->setLabelValue(name, nTime); });
}

void VTTimelineActions::addAnimation(VTCommandAction& action, bool bAdd)
{
    VTAnimation* pAnimation = action.getParam(0)->getAsAnimation();
    VTTimeline* pTimeline = action.getParam(1)->getAsTimeline();
    if (!pAnimation || !pTimeline)
        return;
    const VTLayoutKey key = action.getParam(2)->getAsIntPair();
    const bool bPresent = pTimeline->getLayoutAnimations(key).contains(pAnimation);
    // Adding twice would list the animation twice, and removing an absent one would make the
    // action own an object the model still holds elsewhere.
    if (bAdd == bPresent)
        return;
    if (bAdd)
        pTimeline->addAnimation(pAnimation, key);
    else
        pTimeline->detachAnimation(pAnimation, key);
    action.getParam(0)->setOwned(!bAdd);
}

void VTTimelineActions::addKeyframe(VTCommandAction& action, bool bAdd)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTElement* pElement = action.getParam(1)->getAsElement();
    VTTimeline* pTimeline = action.getParam(2)->getAsTimeline();
    if (!pKeyframe || !pElement || !pTimeline)
        return;
    const VTLayoutKey key = action.getParam(3)->getAsIntPair();
    if (bAdd)
        pTimeline->addPropAnimation(pElement, pKeyframe, key);
    else
        pTimeline->detachPropAnimation(pElement, pKeyframe, key);
    // Without an animation of the element the timeline leaves the keyframe where it was, and
    // so does its owner.
    action.getParam(0)->setOwned(pKeyframe->group() == nullptr);
    if (action.paramCount() == 5)
        writeBoundValue(pKeyframe, pElement, key, action.getParam(4)->getAsVariant());
}

void VTTimelineActions::moveTrigger(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    VTEventListenerList* pTrigger = VTActionParams::getEventList(action.getParam(1));
    if (!pTimeline || !pTrigger || !pTrigger->hasEventListeners())
        return;
    VTActionParams::swap<int>(
        action.getParam(2), [pTrigger] { return pTrigger->getEventListenerAt(0)->getActionTime(); },
        [pTimeline, pTrigger](int nTime) { pTimeline->changeActionTime(pTrigger, nTime); });
}

void VTTimelineActions::addPlaybackListener(VTCommandAction& action, bool bAdd)
{
    auto* pAnimation = qobject_cast<VTPlaybackAnimation*>(action.getParam(0)->getAsAnimation());
    VTEventListener* pListener = action.getParam(1)->getAsEventListener();
    if (!pAnimation || !pListener || isInPlayback(pAnimation, pListener) == bAdd)
        return;
    if (bAdd)
        pAnimation->addEventListener(pListener);
    else
        pAnimation->detachEventListener(pListener);
    action.getParam(1)->setOwned(!isInPlayback(pAnimation, pListener));
    pAnimation->updatePlayback();
}

void VTTimelineActions::changePlaybackListener(VTCommandAction& action)
{
    auto* pAnimation = qobject_cast<VTPlaybackAnimation*>(action.getParam(0)->getAsAnimation());
    VTEventListener* pListener = action.getParam(1)->getAsEventListener();
    if (!pAnimation || !pListener)
        return;
    const int nActionType = action.getParam(2)->getAsInt();
    const QJsonObject eventData = action.getParam(3)->getAsJsonObject();
    const QJsonObject actionData = action.getParam(4)->getAsJsonObject();
    const int nOldActionType = pListener->getActionType();
    const QJsonObject oldEventData = pListener->getEventData();
    const QJsonObject oldActionData = pListener->getActionData();
    // A new time must re-sort the playback list; the other fields are plain values.
    const QJsonValue time = eventData.value(QStringLiteral("action_time"));
    if (time.toInt() != pListener->getActionTime())
        pAnimation->changeActionTime(pListener, time.toInt());
    pListener->setActionType(static_cast<VTEventListener::ActionType>(nActionType));
    pListener->setEventData(eventData);
    pListener->setActionData(actionData);
    action.getParam(2)->setValue(nOldActionType);
    action.getParam(3)->setValue(oldEventData);
    action.getParam(4)->setValue(oldActionData);
    pAnimation->updatePlayback();
}

void VTTimelineActions::setAutoOrient(VTCommandAction& action)
{
    VTAnimation* pAnimation = action.getParam(0)->getAsAnimation();
    if (!pAnimation)
        return;
    VTActionParams::swap<bool>(
        action.getParam(1), [pAnimation] { return pAnimation->isAutoOrient(); },
        [pAnimation](bool bAutoOrient) { pAnimation->setAutoOrient(bAutoOrient); });
}

void VTTimelineActions::changeMainTimeline(VTCommandAction& action)
{
    VTTimelineManager* pManager = action.getParam(0)->getAsTimelineManager();
    VTTimeline* pTimeline = action.getParam(1)->getAsTimeline();
    if (!pManager || !pTimeline || !pManager->getTimelines().contains(pTimeline))
        return;
    // The two exchange places, so making the old main timeline main again undoes it.
    VTTimeline* pOldMain = pManager->getMainTimeline();
    pManager->changeMainTimeline(pTimeline);
    action.getParam(1)->release();
    action.getParam(1)->setValue(pOldMain, false);
}

void VTTimelineActions::putLayoutAnimations(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    QVector<VTAnimation*> vecAnimations;
    if (!pTimeline || action.paramCount() < kFirstLayoutAnimation ||
        !collectLayoutAnimations(action, vecAnimations))
        return;
    pTimeline->addLayoutAnimations(vecAnimations, layoutKeyOf(action, 1));
    releaseLayoutAnimations(action);
}

void VTTimelineActions::takeLayoutAnimations(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    if (!pTimeline || action.paramCount() < kFirstLayoutAnimation)
        return;
    holdLayoutAnimations(action, pTimeline->removeLayoutAnimations(layoutKeyOf(action, 1)));
}

void VTTimelineActions::updateLayoutAnimations(VTCommandAction& action)
{
    VTTimeline* pTimeline = action.getParam(0)->getAsTimeline();
    QVector<VTAnimation*> vecAnimations;
    if (!pTimeline || action.paramCount() < kFirstLayoutAnimation ||
        !collectLayoutAnimations(action, vecAnimations))
        return;
    holdLayoutAnimations(action, pTimeline->updateLayoutAnimations(vecAnimations, layoutKeyOf(action, 1)));
}

void VTTimelineActions::changeAnimationInherits(VTCommandAction& action)
{
    VTAnimation* pAnimation = action.getParam(0)->getAsAnimation();
    if (!pAnimation)
        return;
    VTCmdParam* pParam = action.getParam(1);
    pParam->setValue(pAnimation->addPropsInherits(pParam->getAsMapInherits()));
}
