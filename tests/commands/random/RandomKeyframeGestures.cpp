#include "RandomKeyframeGestures.h"

#include "RandomCommandContext.h"
#include "VTAnchorPoint.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QEasingCurve>

#include <algorithm>

namespace {

using Id = VTCommandAction::ActionId;
using Slot = RandomCommandContext::KeyframeSlot;

VTCommandAction* newAction(RandomCommandContext& context, int nId, int nReserve = 4)
{
    return new VTCommandAction(nId, &context.getDocument(), nReserve);
}

VTMotionPathKeyframe* motionOf(const Slot& slot)
{
    return qobject_cast<VTMotionPathKeyframe*>(slot.pKeyframe);
}

bool isMotion(const Slot& slot)
{
    return motionOf(slot) != nullptr;
}

bool isPlain(const Slot& slot)
{
    return !isMotion(slot);
}

// The index of a key where the keyframe jumps: one whose two values differ, or the second of two
// keys at one time; -1 without one.
int jumpAt(RandomCommandContext& context, const VTKeyframe* pKeyframe)
{
    const QList<VTKeyValue*>& lstKeys = pKeyframe->getKeyValues();
    QList<int> lstJumps;
    QList<int> lstSecondOfTime;
    for (int i = 0; i < lstKeys.size(); ++i) {
        if (i > 0 && lstKeys.at(i - 1)->getTime() == lstKeys.at(i)->getTime())
            lstSecondOfTime.append(i);
        else if (lstKeys.at(i)->isJump())
            lstJumps.append(i);
    }
    // Keys sharing a time are the rarer kind; they come first half of the time.
    if (!lstSecondOfTime.isEmpty() && (lstJumps.isEmpty() || context.chance(50)))
        return context.pick(lstSecondOfTime);
    return lstJumps.isEmpty() ? -1 : context.pick(lstJumps);
}

bool jumps(const Slot& slot)
{
    const QList<VTKeyValue*>& lstKeys = slot.pKeyframe->getKeyValues();
    for (int i = 0; i < lstKeys.size(); ++i) {
        if (lstKeys.at(i)->isJump() || (i > 0 && lstKeys.at(i - 1)->getTime() == lstKeys.at(i)->getTime()))
            return true;
    }
    return false;
}

// Keys that jump are where the ways back are hardest; gestures look for them more often than chance
// would.
Slot pickKeyframe(RandomCommandContext& context, bool bMotionPathOnly)
{
    QList<Slot> lstSlots = context.getKeyframes(bMotionPathOnly ? isMotion : nullptr);
    QList<Slot> lstJumping;
    for (const Slot& slot : qAsConst(lstSlots)) {
        if (jumps(slot))
            lstJumping.append(slot);
    }
    return context.pick(!lstJumping.isEmpty() && context.chance(50) ? lstJumping : lstSlots);
}

int randomEasing(RandomCommandContext& context)
{
    // The curves with no parameters of their own: Linear to OutInBounce.
    return context.intIn(QEasingCurve::Linear, QEasingCurve::OutInBounce);
}

// A time strictly between the neighbours of the key at nIndex, or -1 when they leave no room.
int timeBetweenNeighbours(RandomCommandContext& context, const VTKeyframe* pKeyframe, int nIndex)
{
    const QList<VTKeyValue*>& lstKeys = pKeyframe->getKeyValues();
    const int nLow = nIndex > 0 ? lstKeys.at(nIndex - 1)->getTime() + 1 : 0;
    const int nHigh = nIndex + 1 < lstKeys.size() ? lstKeys.at(nIndex + 1)->getTime() - 1 : nLow + 2000;
    const int nTime = context.intIn(nLow, nHigh);
    return nHigh < nLow || nTime == lstKeys.at(nIndex)->getTime() ? -1 : nTime;
}

VTCommand* addKeyframe(RandomCommandContext& context, bool bMotionPath)
{
    VTScene* pScene = context.getScene();
    VTElement* pElement = context.pick(context.getElements());
    if (!pScene || !pElement)
        return nullptr;
    VTTimeline* pTimeline = context.pick(pScene->getTimelineManager()->getTimelines());
    const VTLayoutKey key = context.pickLayout(pElement);
    VTAnimation* pAnimation = pTimeline->getAnimation(pElement, key);
    QList<int> lstProperties;
    for (int nProperty : VTAnimatedProperty::getAnimatedProps()) {
        // Only what the element takes as it is set up; copies of the animation would drop the rest.
        if (nProperty != VT::PropPlayback && VTAnimatedProperty::canAnimate(pElement, nProperty) &&
            VTAnimatedProperty::canAddAnimationType(pElement, nProperty, key, key) &&
            !(pAnimation && pAnimation->getKeyframe(static_cast<VT::ElementProperty>(nProperty))) &&
            (!bMotionPath || nProperty == VT::PropLocation))
            lstProperties.append(nProperty);
    }
    const auto property = static_cast<VT::ElementProperty>(context.pick(lstProperties));
    const QVariant value = VTBuilderSupport::readBoundValue(pElement, property, key);
    if (lstProperties.isEmpty() || !value.isValid())
        return nullptr;

    VTCommand* pCommand = context.newCommand(QStringLiteral("add keyframe"));
    // The value from before the first keyframe comes back when the keyframe goes.
    pCommand->createActionsToSaveCurrentElementPropValue(pElement, property, key);
    if (!pAnimation) {
        pAnimation = VTAnimationFactory::createAnimation(pElement);
        VTCommandAction* pAdd = newAction(context, Id::AddAnimation);
        pAdd->addParam(pAnimation, true);
        pAdd->addParam(pTimeline, false);
        pAdd->addParam(key);
        pCommand->addAction(pAdd);
    }
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(property, pElement, key);
    const bool bKeepValue = context.chance(50);
    auto* pMotion = qobject_cast<VTMotionPathKeyframe*>(pKeyframe);
    int nTime = context.intIn(0, 10) * 100;
    const int nKeys = context.intIn(2, 3);
    for (int i = 0; i < nKeys; ++i) {
        // The first key holds the present value or, as after an edit with auto keyframes, a new
        // one: then the value from before comes back only through the value the command saved.
        const QVariant keyValue = i == 0 && bKeepValue ? value : context.nudge(value);
        const int nEasing = randomEasing(context);
        const bool bTransition = context.chance(80);
        auto* pKey = new VTKeyValue(nTime, keyValue);
        // Now and then a key that jumps: it arrives at another value than the one it leaves from.
        if (!pMotion && context.chance(30))
            pKey->setValueMinus(context.nudge(keyValue));
        pKeyframe->addKeyValue(pKey, static_cast<QEasingCurve::Type>(nEasing), bTransition);
        if (pMotion) {
            const QPointF ptPosition = keyValue.toPointF();
            pMotion->getMotionPath()->addAnchorPoint(
                i, new VTAnchorPoint(ptPosition, ptPosition - QPointF(20, 0), ptPosition + QPointF(20, 0),
                                     nTime));
        }
        nTime += context.intIn(2, 10) * 100;
    }
    VTCommandAction* pAction = newAction(context, Id::AddKeyframe);
    pAction->addParam(pKeyframe, true);
    pAction->addParam(pElement, false);
    pAction->addParam(pTimeline, false);
    pAction->addParam(key);
    pCommand->addAction(pAction);
    return pCommand;
}

// The key values of the keyframe, for gestures on one of them.
VTCommand* editKey(RandomCommandContext& context, int nId, bool bMotionPathOnly = false)
{
    const Slot slot = pickKeyframe(context, bMotionPathOnly);
    VTKeyframe* pKeyframe = slot.pKeyframe;
    const QList<VTKeyValue*> lstKeys = pKeyframe ? pKeyframe->getKeyValues() : QList<VTKeyValue*>();
    const bool bNeedsSegment =
        nId == Id::ChangeEasing || nId == Id::SetTransition || nId == Id::InvertKeyValues;
    if (lstKeys.size() < (bNeedsSegment ? 2 : 1))
        return nullptr;
    VTMotionPathKeyframe* pMotion = motionOf(slot);
    VTMotionPath* pPath = pMotion ? pMotion->getMotionPath() : nullptr;
    // A key that jumps half of the time there is one: the ways back are hardest there.
    const int nJump = jumpAt(context, pKeyframe);
    const int nIndex = nJump >= 0 && context.chance(50) ? nJump : context.intIn(0, lstKeys.size() - 1);
    VTKeyValue* pKey = lstKeys.at(nIndex);
    VTCommand* pCommand = context.newCommand(QStringLiteral("key"));
    VTCommandAction* pAction = newAction(context, nId);
    pAction->addParam(pKeyframe, false);
    switch (nId) {
    case Id::MoveKeyframe:
        pAction->addParam(context.intIn(-lstKeys.first()->getTime(), 500));
        break;
    case Id::ChangeEasing:
    case Id::SetTransition:
        // Only a key with a segment leaving it.
        pAction->addParam(lstKeys.at(qMin(nIndex, lstKeys.size() - 2)), false);
        if (nId == Id::ChangeEasing) {
            pAction->addParam(randomEasing(context));
        } else {
            const VTKeyframeSegment* pSegment =
                pKeyframe->getAdjacentSegments(lstKeys.at(qMin(nIndex, lstKeys.size() - 2))).second;
            pAction->addParam(!(pSegment && pSegment->hasTransition()));
        }
        break;
    case Id::InvertKeyValues: {
        // A run that starts and ends at keys that jump, now and then: its outer values are kept,
        // which makes mirroring it twice something else than leaving it alone.
        QList<int> lstJumps;
        for (int i = 0; i < lstKeys.size(); ++i) {
            if (lstKeys.at(i)->isJump())
                lstJumps.append(i);
        }
        // The first key of the run keeps its outer value only where nothing moves into it: the first
        // key of all, or one whose segment before it has no transition.
        QList<int> lstEnds;
        if (lstJumps.size() > 1 && context.chance(70)) {
            const int nLast = lstJumps.last();
            lstEnds = {lstJumps.first() == 0 || context.chance(50)
                           ? lstJumps.first()
                           : context.pick(lstJumps.mid(0, lstJumps.size() - 1)),
                       nLast};
        }
        const int nFirst =
            lstEnds.isEmpty() ? context.intIn(0, lstKeys.size() - 2) : qMin(lstEnds.first(), lstEnds.last());
        const int nLast = lstEnds.isEmpty() ? context.intIn(nFirst + 1, lstKeys.size() - 1)
                                            : qMax(lstEnds.first(), lstEnds.last());
        pAction->addParam(nFirst);
        pAction->addParam(nLast);
        // The path turns round with its keys.
        if (pPath) {
            const QList<int> lstFrom = pPath->getKeyPointIndexes(lstKeys.at(nFirst)->getTime());
            const QList<int> lstTo = pPath->getKeyPointIndexes(lstKeys.at(nLast)->getTime());
            if (!lstFrom.isEmpty() && !lstTo.isEmpty()) {
                VTCommandAction* pInvert = newAction(context, Id::InvertAnchorPoints, 3);
                pInvert->addParam(static_cast<VTMotionPath*>(pPath), false);
                pInvert->addParam(lstFrom.first());
                pInvert->addParam(lstTo.last());
                pCommand->addAction(pInvert);
            }
        }
        break;
    }
    case Id::ChangeKeyValue: {
        // Now and then a key that jumps takes its value minus as its value, and jumps no more.
        const QVariant value = !pPath && pKey->isJump() && context.chance(30)
                                   ? pKey->getValueMinus()
                                   : context.nudge(pKey->getValue());
        pAction->addParam(pKey, false);
        pAction->addParam(value);
        if (pPath) {
            // The key's anchor goes with it, handles and all.
            pAction->addParam(value);
            const QPointF ptMove = value.toPointF() - pKey->getValue().toPointF();
            for (int nAnchor : pPath->getKeyPointIndexes(pKey->getTime())) {
                VTAnchorPoint* pAnchor = pPath->getAnchorPointAt(nAnchor);
                VTCommandAction* pData = newAction(context, Id::SetAnchorPointData, 5);
                pData->addParam(static_cast<VTMotionPath*>(pPath), false);
                pData->addParam(pAnchor, false);
                pData->addParam(pAnchor->getPosition() + ptMove);
                pData->addParam(pAnchor->getControlPoint1() + ptMove);
                pData->addParam(pAnchor->getControlPoint2() + ptMove);
                pCommand->addAction(pData);
            }
        } else if (context.chance(50)) {
            // A jump: the key arrives at one value and leaves from another.
            pAction->addParam(context.nudge(pKey->getValueMinus()));
        }
        break;
    }
    case Id::MoveKeyValue: {
        const int nTime = timeBetweenNeighbours(context, pKeyframe, nIndex);
        if (nTime < 0) {
            delete pAction;
            delete pCommand;
            return nullptr;
        }
        pAction->addParam(pKey, false);
        pAction->addParam(nTime);
        for (int nAnchor : pPath ? pPath->getKeyPointIndexes(pKey->getTime()) : QList<int>()) {
            VTCommandAction* pKeyTime = newAction(context, Id::SetAnchorKeyTime, 3);
            pKeyTime->addParam(static_cast<VTMotionPath*>(pPath), false);
            pKeyTime->addParam(pPath->getAnchorPointAt(nAnchor), false);
            pKeyTime->addParam(nTime);
            pCommand->addAction(pKeyTime);
        }
        break;
    }
    case Id::ChangeAllKeyValues:
        pAction->addParam(pKey->getValue());
        pAction->addParam(context.nudge(pKey->getValue()));
        break;
    default:
        pAction->addParam(pKeyframe->getUnitSign() == QLatin1String("px") ? QStringLiteral("%")
                                                                          : QStringLiteral("px"));
        break;
    }
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* addKeyValue(RandomCommandContext& context)
{
    const Slot slot = context.pick(context.getKeyframes(isPlain));
    if (!slot.pKeyframe || slot.pKeyframe->getKeyValues().isEmpty())
        return nullptr;
    const int nTime = context.intIn(0, 40) * 100;
    if (slot.pKeyframe->getKeyValue(nTime))
        return nullptr;
    VTCommandAction* pAction = newAction(context, Id::AddKeyValue);
    pAction->addParam(slot.pKeyframe, false);
    pAction->addParam(
        new VTKeyValue(nTime, context.nudge(slot.pKeyframe->getKeyValues().first()->getValue())), true);
    pAction->addParam(randomEasing(context));
    pAction->addParam(context.chance(80));
    VTCommand* pCommand = context.newCommand(QStringLiteral("add key"));
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* deleteKeyValues(RandomCommandContext& context)
{
    const Slot slot = pickKeyframe(context, false);
    if (!slot.pKeyframe || slot.pKeyframe->getKeyValues().isEmpty())
        return nullptr;
    const QList<VTKeyValue*>& lstKeys = slot.pKeyframe->getKeyValues();
    const int nJump = jumpAt(context, slot.pKeyframe);
    QList<VTKeyValue*> lstDeleted = nJump >= 0 && context.chance(50)
                                        ? QList<VTKeyValue*>{lstKeys.at(nJump)}
                                        : context.pickSome(lstKeys, context.intIn(1, lstKeys.size()));
    std::sort(lstDeleted.begin(), lstDeleted.end(), [&lstKeys](VTKeyValue* pA, VTKeyValue* pB) {
        return lstKeys.indexOf(pA) < lstKeys.indexOf(pB);
    });
    VTCommand* pCommand = context.newCommand(QStringLiteral("delete keys"));
    pCommand->createActionsToDeleteKeyValues(slot.pTimeline, slot.pKeyframe, lstDeleted, slot.key);
    return pCommand;
}

VTCommand* removeKeyframe(RandomCommandContext& context)
{
    const Slot slot = context.pick(context.getKeyframes());
    if (!slot.pKeyframe)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("remove keyframe"));
    pCommand->createActionsToRemoveKeyframe(slot.pTimeline, slot.pKeyframe, slot.key);
    return pCommand;
}

// A key anchor put into the path between two keys, with its key value, keeping the curve.
VTCommand* addKeyAnchor(RandomCommandContext& context)
{
    const Slot slot = context.pick(context.getKeyframes(isMotion));
    VTMotionPathKeyframe* pMotion = motionOf(slot);
    const QList<VTKeyValue*> lstKeys = pMotion ? pMotion->getKeyValues() : QList<VTKeyValue*>();
    if (lstKeys.size() < 2)
        return nullptr;
    const int nIndex = context.intIn(0, lstKeys.size() - 2);
    const int nFrom = lstKeys.at(nIndex)->getTime();
    const int nTo = lstKeys.at(nIndex + 1)->getTime();
    if (nTo - nFrom < 2)
        return nullptr;
    const int nTime = context.intIn(nFrom + 1, nTo - 1);
    const int nDx = context.intIn(-5, 5);
    const int nDy = context.intIn(-5, 5);
    const QPointF ptPosition = pMotion->getValue(nTime).toPointF() + QPointF(nDx, nDy);
    VTCommand* pCommand = context.newCommand(QStringLiteral("add key anchor"));
    VTCommandAction* pKey = newAction(context, Id::AddKeyValue);
    pKey->addParam(static_cast<VTKeyframe*>(pMotion), false);
    pKey->addParam(new VTKeyValue(nTime, ptPosition), true);
    pKey->addParam(randomEasing(context));
    pKey->addParam(true);
    pCommand->addAction(pKey);
    auto* pAnchor = new VTAnchorPoint(ptPosition, ptPosition, ptPosition, nTime);
    pCommand->createActionsToAddKeyAnchorPoint(pMotion, pAnchor, pMotion->getNewAnchorPointIndex(nTime));
    bool bTaken = false;
    for (const VTCommandAction* pAction : pCommand->getActions()) {
        for (const VTCmdParam* pParam : pAction->getParams())
            bTaken = bTaken || pParam->getObject() == pAnchor;
    }
    if (!bTaken)
        delete pAnchor;
    return pCommand;
}

VTCommand* editAnchor(RandomCommandContext& context, int nId)
{
    const Slot slot = context.pick(context.getKeyframes(isMotion));
    VTMotionPathKeyframe* pMotion = motionOf(slot);
    VTMotionPath* pPath = pMotion ? pMotion->getMotionPath() : nullptr;
    const int nCount = pPath ? pPath->getAnchorPoints().size() : 0;
    if (nCount < 2)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("anchor"));
    const int nIndex = context.intIn(0, nCount - 1);
    VTAnchorPoint* pAnchor = pPath->getAnchorPointAt(nIndex);
    switch (nId) {
    case Id::AddAnchorPoint: {
        // A plain point on the line between two anchors, as the pen puts one.
        const int nAt = context.intIn(1, nCount - 1);
        const QPointF ptPosition =
            (pPath->getAnchorPointAt(nAt - 1)->getPosition() + pPath->getAnchorPointAt(nAt)->getPosition()) /
            2;
        VTCommandAction* pAction = newAction(context, nId, 3);
        pAction->addParam(static_cast<VTMotionPath*>(pPath), false);
        pAction->addParam(new VTAnchorPoint(ptPosition, ptPosition, ptPosition), true);
        pAction->addParam(nAt);
        pCommand->addAction(pAction);
        break;
    }
    case Id::RemoveAnchorPoint:
        pCommand->createActionsToDeleteAnchorPoint(slot.pTimeline, pMotion, nIndex, slot.key);
        break;
    default: {
        // A key anchor keeps its point, which its key value holds too; its handles move.
        const int nDx = context.intIn(-30, 30);
        const int nDy = context.intIn(-30, 30);
        const QPointF ptMove(nDx, nDy);
        const QPointF ptPosition = pAnchor->getPosition() + (pAnchor->hasKeyTime() ? QPointF() : ptMove);
        VTCommandAction* pAction = newAction(context, Id::SetAnchorPointData, 5);
        pAction->addParam(static_cast<VTMotionPath*>(pPath), false);
        pAction->addParam(pAnchor, false);
        pAction->addParam(ptPosition);
        pAction->addParam(pAnchor->getControlPoint1() + ptMove);
        pAction->addParam(pAnchor->getControlPoint2() - ptMove);
        pCommand->addAction(pAction);
        break;
    }
    }
    return pCommand;
}

} // namespace

void RandomKeyframeGestures::append(QList<RandomGesture>& lstGestures)
{
    const auto key = [](int nId) {
        return [nId](RandomCommandContext& context) { return editKey(context, nId); };
    };
    const auto anchor = [](int nId) {
        return [nId](RandomCommandContext& context) { return editAnchor(context, nId); };
    };
    lstGestures
        << RandomGesture{QStringLiteral("add keyframe"),
                         {Id::AddKeyframe},
                         8,
                         [](RandomCommandContext& context) { return addKeyframe(context, false); }}
        << RandomGesture{QStringLiteral("add motion path"),
                         {Id::AddAnchorPoint, Id::RemoveAnchorPoint, Id::SetAnchorKeyTime,
                          Id::SetAnchorPointData, Id::InvertAnchorPoints},
                         2,
                         [](RandomCommandContext& context) { return addKeyframe(context, true); }}
        << RandomGesture{QStringLiteral("remove keyframe"), {Id::RemoveKeyframe}, 2, removeKeyframe}
        << RandomGesture{QStringLiteral("move keyframe"), {Id::MoveKeyframe}, 2, key(Id::MoveKeyframe)}
        << RandomGesture{QStringLiteral("easing"), {Id::ChangeEasing}, 2, key(Id::ChangeEasing)}
        << RandomGesture{QStringLiteral("transition"), {Id::SetTransition}, 1, key(Id::SetTransition)}
        << RandomGesture{QStringLiteral("invert keys"),
                         {Id::InvertKeyValues, Id::InvertAnchorPoints},
                         2,
                         key(Id::InvertKeyValues)}
        << RandomGesture{QStringLiteral("add key"), {Id::AddKeyValue}, 2, addKeyValue}
        << RandomGesture{QStringLiteral("delete keys"), {Id::RemoveKeyValue}, 2, deleteKeyValues}
        << RandomGesture{QStringLiteral("change key"),
                         {Id::ChangeKeyValue, Id::SetAnchorPointData},
                         3,
                         key(Id::ChangeKeyValue)}
        << RandomGesture{QStringLiteral("move key"), {Id::MoveKeyValue}, 2, key(Id::MoveKeyValue)}
        << RandomGesture{QStringLiteral("move key anchor"),
                         {Id::MoveKeyValue, Id::SetAnchorKeyTime},
                         1,
                         [](RandomCommandContext& context) {
                             return editKey(context, Id::MoveKeyValue, true);
                         }}
        << RandomGesture{QStringLiteral("change all keys"),
                         {Id::ChangeAllKeyValues},
                         1,
                         key(Id::ChangeAllKeyValues)}
        << RandomGesture{QStringLiteral("unit"), {Id::ChangeUnitSign}, 1, key(Id::ChangeUnitSign)}
        << RandomGesture{QStringLiteral("add key anchor"), {Id::AddAnchorPoint}, 2, addKeyAnchor}
        << RandomGesture{QStringLiteral("add anchor"), {Id::AddAnchorPoint}, 1, anchor(Id::AddAnchorPoint)}
        << RandomGesture{QStringLiteral("delete anchor"),
                         {Id::RemoveAnchorPoint},
                         2,
                         anchor(Id::RemoveAnchorPoint)}
        << RandomGesture{
               QStringLiteral("move anchor"), {Id::SetAnchorPointData}, 2, anchor(Id::SetAnchorPointData)};
}
