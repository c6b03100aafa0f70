#include "VTKeyframeActions.h"

#include "VTActionParams.h"
#include "VTAnchorPoint.h"
#include "VTCommandAction.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"
#include "VTTimeline.h"

namespace {

// The segment that leaves the key: the one its easing and transition belong to. Null for the
// last key, whose tail is no segment of its own.
VTKeyframeSegment* leavingSegment(const VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTKeyValue* pKey = action.getParam(1)->getAsKeyValueAnimation();
    return pKeyframe && pKey ? pKeyframe->getAdjacentSegments(pKey).second : nullptr;
}

bool hasKey(const VTKeyframe* pKeyframe, VTKeyValue* pKey)
{
    return pKeyframe->getKeyValues().contains(pKey);
}

} // namespace

bool VTKeyframeActions::handles(int nId)
{
    if (nId >= VTCommandAction::MoveKeyframe && nId <= VTCommandAction::SetAnchorPointData)
        return true;
    return nId == VTCommandAction::ChangeAllKeyValues || nId == VTCommandAction::InvertAnchorPoints ||
           nId == VTCommandAction::ChangeUnitSign;
}

void VTKeyframeActions::run(VTCommandAction& action, bool bUndo)
{
    switch (action.getId()) {
    case VTCommandAction::MoveKeyframe:
        if (VTActionParams::hasCount(action, 2))
            moveKeyframe(action);
        break;
    case VTCommandAction::ChangeEasing:
        if (VTActionParams::hasCount(action, 3))
            changeEasing(action);
        break;
    case VTCommandAction::SetTransition:
        if (VTActionParams::hasCount(action, 3))
            setTransition(action);
        break;
    case VTCommandAction::InvertKeyValues:
        if (VTActionParams::hasCount(action, 3))
            invertKeyValues(action);
        break;
    case VTCommandAction::AddKeyValue:
        if (VTActionParams::hasCount(action, 4))
            addKeyValue(action, !bUndo);
        break;
    case VTCommandAction::RemoveKeyValue:
        // Two parameters before the removal, four while the action holds the removed key.
        if (VTActionParams::hasCount(action, bUndo ? 4 : 2))
            removeKeyValue(action, !bUndo);
        break;
    case VTCommandAction::ChangeKeyValue:
        if (VTActionParams::hasCount(action, 3, 4))
            changeKeyValue(action);
        break;
    case VTCommandAction::MoveKeyValue:
        if (VTActionParams::hasCount(action, 3))
            moveKeyValue(action);
        break;
    case VTCommandAction::AddAnchorPoint:
    case VTCommandAction::RemoveAnchorPoint:
        if (VTActionParams::hasCount(action, 3))
            addAnchorPoint(action, (action.getId() == VTCommandAction::AddAnchorPoint) != bUndo);
        break;
    case VTCommandAction::SetAnchorKeyTime:
        if (VTActionParams::hasCount(action, 3))
            setAnchorKeyTime(action);
        break;
    case VTCommandAction::SetAnchorPointData:
        if (VTActionParams::hasCount(action, 5))
            setAnchorPointData(action);
        break;
    case VTCommandAction::ChangeAllKeyValues:
        if (VTActionParams::hasCount(action, 3))
            changeAllKeyValues(action);
        break;
    case VTCommandAction::InvertAnchorPoints:
        if (VTActionParams::hasCount(action, 3))
            invertAnchorPoints(action);
        break;
    case VTCommandAction::ChangeUnitSign:
        if (VTActionParams::hasCount(action, 2))
            changeUnitSign(action);
        break;
    default:
        break;
    }
}

void VTKeyframeActions::moveKeyframe(VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    if (!pKeyframe)
        return;
    const int nDelta = action.getParam(1)->getAsInt();
    pKeyframe->moveAllKeyValues(nDelta);
    action.getParam(1)->setValue(-nDelta);
}

void VTKeyframeActions::changeEasing(VTCommandAction& action)
{
    VTKeyframeSegment* pSegment = leavingSegment(action);
    if (!pSegment)
        return;
    VTActionParams::swap<int>(
        action.getParam(2), [pSegment] { return static_cast<int>(pSegment->easingCurve().type()); },
        [pSegment](int nEasing) {
            pSegment->setEasing(VTTimeline::createEasingCurve(static_cast<QEasingCurve::Type>(nEasing)));
        });
}

void VTKeyframeActions::setTransition(VTCommandAction& action)
{
    VTKeyframeSegment* pSegment = leavingSegment(action);
    if (!pSegment)
        return;
    VTActionParams::swap<bool>(
        action.getParam(2), [pSegment] { return pSegment->hasTransition(); },
        [pSegment](bool bTransition) {
            pSegment->setTransition(bTransition);
            pSegment->updateAnimation();
        });
}

void VTKeyframeActions::invertKeyValues(VTCommandAction& action)
{
    // Mirroring a run twice gives it back, so undo runs the same step.
    if (VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation())
        pKeyframe->invertKeyValues(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
}

void VTKeyframeActions::addKeyValue(VTCommandAction& action, bool bAdd)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTKeyValue* pKey = action.getParam(1)->getAsKeyValueAnimation();
    if (!pKeyframe || !pKey || hasKey(pKeyframe, pKey) == bAdd)
        return;
    if (bAdd) {
        pKeyframe->addKeyValue(pKey, static_cast<QEasingCurve::Type>(action.getParam(2)->getAsInt()),
                               action.getParam(3)->getAsBool());
    } else {
        delete pKeyframe->detachKeyValue(pKey);
    }
    action.getParam(1)->setOwned(!hasKey(pKeyframe, pKey));
}

void VTKeyframeActions::removeKeyValue(VTCommandAction& action, bool bRemove)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTKeyValue* pKey = action.getParam(1)->getAsKeyValueAnimation();
    if (!pKeyframe || !pKey || hasKey(pKeyframe, pKey) != bRemove)
        return;
    if (!bRemove) {
        pKeyframe->addKeyValue(pKey, static_cast<QEasingCurve::Type>(action.getParam(2)->getAsInt()),
                               action.getParam(3)->getAsBool());
        action.truncateParams(2);
        action.getParam(1)->setOwned(!hasKey(pKeyframe, pKey));
        return;
    }
    // The only key leaves no segment behind; the lead-in's curve is then the best guess of the
    // curve the key had, and a lone key has no transition to keep.
    const auto* pLeadIn = qobject_cast<const VTKeyframeSegment*>(pKeyframe->animationAt(0));
    const int nLeadInEasing = pLeadIn ? pLeadIn->easingCurve().type() : QEasingCurve::Linear;
    VTKeyframeSegment* pSegment = pKeyframe->detachKeyValue(pKey);
    if (pSegment) {
        action.addParam(static_cast<int>(pSegment->easingCurve().type()));
        action.addParam(pSegment->hasTransition());
    } else {
        action.addParam(nLeadInEasing);
        action.addParam(false);
    }
    delete pSegment;
    action.getParam(1)->setOwned(true);
}

void VTKeyframeActions::changeKeyValue(VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTKeyValue* pKey = action.getParam(1)->getAsKeyValueAnimation();
    if (!pKeyframe || !pKey || !hasKey(pKeyframe, pKey))
        return;
    const QVariant oldValue = pKey->getValue();
    const QVariant oldValueMinus = pKey->getValueMinus();
    // Without a value minus the keyframe keeps a jump and lets a plain key follow the value; the
    // undo without one then gives back exactly the old pair, so only the value is kept.
    const bool bWithMinus = action.paramCount() == 4;
    pKeyframe->changeKeyValue(pKey, action.getParam(2)->getAsVariant(),
                              bWithMinus ? action.getParam(3)->getAsVariant() : QVariant());
    action.getParam(2)->setValue(oldValue);
    if (bWithMinus)
        action.getParam(3)->setValue(oldValueMinus);
}

void VTKeyframeActions::moveKeyValue(VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    VTKeyValue* pKey = action.getParam(1)->getAsKeyValueAnimation();
    if (!pKeyframe || !pKey || !hasKey(pKeyframe, pKey))
        return;
    VTActionParams::swap<int>(
        action.getParam(2), [pKey] { return pKey->getTime(); },
        [pKeyframe, pKey](int nTime) { pKeyframe->moveKeyValue(pKey, nTime); });
}

void VTKeyframeActions::addAnchorPoint(VTCommandAction& action, bool bAdd)
{
    VTMotionPath* pPath = action.getParam(0)->getAsMotionPath();
    VTAnchorPoint* pAnchor = action.getParam(1)->getAsAnchorPoint();
    if (!pPath || !pAnchor)
        return;
    // Putting an anchor back at its old index also recomputes the spans on both of its sides.
    const int nIndex = bAdd ? pPath->addAnchorPoint(action.getParam(2)->getAsInt(), pAnchor)
                            : pPath->removeAnchorPoint(pAnchor);
    if (nIndex < 0)
        return;
    action.getParam(2)->setValue(nIndex);
    action.getParam(1)->setOwned(!bAdd);
}

void VTKeyframeActions::setAnchorKeyTime(VTCommandAction& action)
{
    VTMotionPath* pPath = action.getParam(0)->getAsMotionPath();
    VTAnchorPoint* pAnchor = action.getParam(1)->getAsAnchorPoint();
    const int nIndex = pPath && pAnchor ? pPath->getAnchorPoints().indexOf(pAnchor) : -1;
    if (nIndex < 0)
        return;
    // Two anchors of one key time have no span between them, so the spans follow the time.
    VTActionParams::swap<int>(
        action.getParam(2), [pAnchor] { return pAnchor->getKeyTime(); },
        [pPath, pAnchor, nIndex](int nTime) {
            pAnchor->setKeyTime(nTime);
            pPath->updatePathAt(nIndex);
        });
}

void VTKeyframeActions::setAnchorPointData(VTCommandAction& action)
{
    VTMotionPath* pPath = action.getParam(0)->getAsMotionPath();
    VTAnchorPoint* pAnchor = action.getParam(1)->getAsAnchorPoint();
    if (!pPath || !pAnchor)
        return;
    const QPointF ptPosition = pAnchor->getPosition();
    const QPointF ptControl1 = pAnchor->getControlPoint1();
    const QPointF ptControl2 = pAnchor->getControlPoint2();
    if (!pPath->setAnchorPointData(pAnchor, action.getParam(2)->getAsPointF(),
                                   action.getParam(3)->getAsPointF(), action.getParam(4)->getAsPointF()))
        return;
    action.getParam(2)->setValue(ptPosition);
    action.getParam(3)->setValue(ptControl1);
    action.getParam(4)->setValue(ptControl2);
}

void VTKeyframeActions::changeAllKeyValues(VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    if (!pKeyframe)
        return;
    pKeyframe->changeAllKeyValues(action.getParam(1)->getAsVariant(), action.getParam(2)->getAsVariant());
    VTActionParams::exchange<QVariant>(action.getParam(1), action.getParam(2));
}

void VTKeyframeActions::invertAnchorPoints(VTCommandAction& action)
{
    if (VTMotionPath* pPath = action.getParam(0)->getAsMotionPath())
        pPath->invertAnchorPoints(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
}

void VTKeyframeActions::changeUnitSign(VTCommandAction& action)
{
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    if (!pKeyframe)
        return;
    VTActionParams::swap<QString>(
        action.getParam(1), [pKeyframe] { return pKeyframe->getUnitSign(); },
        [pKeyframe](const QString& unit) { pKeyframe->setUnitSign(unit); });
}
