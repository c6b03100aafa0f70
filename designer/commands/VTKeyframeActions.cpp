#include "VTKeyframeActions.h"

#include "VTActionParams.h"
#include "VTAnchorPoint.h"
#include "VTCommandAction.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"
#include "VTTimeline.h"

#include <QEasingCurve>
#include <QVariant>

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

// What an inversion changes: the time and both values of each key, and the curve and transition
// of each segment between keys; the key and segment objects themselves stay.
QVariantList keyframeState(const VTKeyframe& keyframe)
{
    QVariantList lstState;
    for (const VTKeyValue* pKey : keyframe.getKeyValues())
        lstState << pKey->getTime() << pKey->getValue() << pKey->getValueMinus();
    for (const VTKeyframeSegment* pSegment : keyframe.getKeyframeSegments())
        lstState << QVariant::fromValue(pSegment->easingCurve()) << pSegment->hasTransition();
    return lstState;
}

bool restoreKeyframeState(VTKeyframe& keyframe, const QVariantList& lstState)
{
    const QList<VTKeyValue*>& lstKeys = keyframe.getKeyValues();
    const QList<VTKeyframeSegment*> lstSegments = keyframe.getKeyframeSegments();
    const int nKeyValues = 3 * lstKeys.size();
    if (lstState.size() != nKeyValues + 2 * lstSegments.size())
        return false;
    // All times first, so that no key is measured against a neighbour still at its mirrored time.
    for (int i = 0; i < lstKeys.size(); ++i)
        lstKeys.at(i)->setTime(lstState.at(3 * i).toInt());
    for (int i = 0; i < lstKeys.size(); ++i)
        keyframe.changeKeyValue(lstKeys.at(i), lstState.at(3 * i + 1), lstState.at(3 * i + 2));
    for (int i = 0; i < lstSegments.size(); ++i) {
        lstSegments.at(i)->setEasing(lstState.at(nKeyValues + 2 * i).value<QEasingCurve>());
        lstSegments.at(i)->setTransition(lstState.at(nKeyValues + 2 * i + 1).toBool());
        lstSegments.at(i)->updateAnimation();
    }
    keyframe.invalidateCache();
    return true;
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
        // Three parameters before the first run, four while the action holds the keys it replaced.
        if (VTActionParams::hasCount(action, 3, 4))
            invertKeyValues(action);
        break;
    case VTCommandAction::AddKeyValue:
        if (VTActionParams::hasCount(action, 4))
            addKeyValue(action, !bUndo);
        break;
    case VTCommandAction::RemoveKeyValue:
        // Two parameters before the removal, five while the action holds the removed key.
        if (VTActionParams::hasCount(action, bUndo ? 5 : 2))
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
        // Three parameters before the first run, four while the action holds the keys it replaced.
        if (VTActionParams::hasCount(action, 3, 4))
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
    VTKeyframe* pKeyframe = action.getParam(0)->getAsKeyframeAnimation();
    if (!pKeyframe)
        return;
    // Mirroring a run twice does not give it back where a key at its ends jumps, since the values
    // outside the run are kept: every run keeps the state it replaced in a fourth parameter, and the
    // next run puts exactly that back.
    const QVariantList lstReplaced = keyframeState(*pKeyframe);
    const QVariantList lstKept =
        action.paramCount() == 4 ? action.getParam(3)->getAsVariant().toList() : QVariantList();
    if (lstKept.isEmpty() || !restoreKeyframeState(*pKeyframe, lstKept))
        pKeyframe->invertKeyValues(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
    action.truncateParams(3);
    action.addParam(QVariant(lstReplaced));
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
        const bool bTransition = action.getParam(3)->getAsBool();
        // Adding puts a key in front of the keys of its time. One that stood behind another key of
        // its time (the second half of a jump) goes in just past that time and is moved back onto
        // it, which keeps it behind: in front, the jump would run the other way.
        const int nTime = pKey->getTime();
        const int nIndex = action.getParam(4)->getAsInt();
        const QList<VTKeyValue*>& lstBefore = pKeyframe->getKeyValues();
        const bool bBehind =
            nIndex > 0 && nIndex <= lstBefore.size() && lstBefore.at(nIndex - 1)->getTime() == nTime;
        if (bBehind)
            pKey->setTime(nTime + 1);
        pKeyframe->addKeyValue(pKey, static_cast<QEasingCurve::Type>(action.getParam(2)->getAsInt()),
                               bTransition);
        if (bBehind)
            pKeyframe->moveKeyValue(pKey, nTime);
        // Adding drops the transition between two equal values, yet the segment taken away could
        // have had one (read from a file, kept through a change of values, or on a motion path,
        // whose keys need not differ): the segment that comes back for it gets its flag back.
        const QList<VTKeyValue*>& lstKeys = pKeyframe->getKeyValues();
        const auto segments = pKeyframe->getAdjacentSegments(pKey);
        VTKeyframeSegment* pBack = lstKeys.size() < 2       ? nullptr
                                   : lstKeys.last() == pKey ? segments.first
                                                            : segments.second;
        if (pBack && pBack->hasTransition() != bTransition) {
            pBack->setTransition(bTransition);
            pBack->updateAnimation();
        }
        action.truncateParams(2);
        action.getParam(1)->setOwned(!hasKey(pKeyframe, pKey));
        return;
    }
    // The only key leaves no segment behind; the lead-in's curve is then the best guess of the
    // curve the key had, and a lone key has no transition to keep.
    const auto* pLeadIn = qobject_cast<const VTKeyframeSegment*>(pKeyframe->animationAt(0));
    const int nLeadInEasing = pLeadIn ? pLeadIn->easingCurve().type() : QEasingCurve::Linear;
    const int nIndex = pKeyframe->getKeyValues().indexOf(pKey);
    VTKeyframeSegment* pSegment = pKeyframe->detachKeyValue(pKey);
    if (pSegment) {
        action.addParam(static_cast<int>(pSegment->easingCurve().type()));
        action.addParam(pSegment->hasTransition());
    } else {
        action.addParam(nLeadInEasing);
        action.addParam(false);
    }
    // Where the key stood, for a key that shares its time with the one before it.
    action.addParam(nIndex);
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
    // Without a value minus the keyframe keeps a jump and lets a plain key follow the value. A new
    // value equal to the value minus ends the jump, though, and the old value alone would not bring
    // it back: the action keeps the whole old pair, and from then on runs with both values.
    const bool bWithMinus = action.paramCount() == 4;
    pKeyframe->changeKeyValue(pKey, action.getParam(2)->getAsVariant(),
                              bWithMinus ? action.getParam(3)->getAsVariant() : QVariant());
    action.getParam(2)->setValue(oldValue);
    if (bWithMinus)
        action.getParam(3)->setValue(oldValueMinus);
    else
        action.addParam(oldValueMinus);
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
    // Shifting back by the same difference does not give the old keys where the shift was clamped
    // at the property's range or rounded, so every run keeps the values it replaced, as pairs of
    // value and value minus in a fourth parameter, and the next run puts exactly those back.
    const QList<VTKeyValue*>& lstKeys = pKeyframe->getKeyValues();
    QVariantList lstReplaced;
    for (const VTKeyValue* pKey : lstKeys)
        lstReplaced << pKey->getValue() << pKey->getValueMinus();
    const QVariantList lstKept =
        action.paramCount() == 4 ? action.getParam(3)->getAsVariant().toList() : QVariantList();
    if (!lstKept.isEmpty() && lstKept.size() == lstReplaced.size()) {
        for (int i = 0; i < lstKeys.size(); ++i)
            pKeyframe->changeKeyValue(lstKeys.at(i), lstKept.at(2 * i), lstKept.at(2 * i + 1));
    } else {
        pKeyframe->changeAllKeyValues(action.getParam(1)->getAsVariant(), action.getParam(2)->getAsVariant());
    }
    VTActionParams::exchange<QVariant>(action.getParam(1), action.getParam(2));
    action.truncateParams(3);
    action.addParam(QVariant(lstReplaced));
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
