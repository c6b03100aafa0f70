#include "VTKeyframeBuilder.h"

#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTBuilderSupport.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTImage.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTLayoutOperations.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTTimeline.h"

#include <QLineF>
#include <QSet>

namespace {

using Id = VTElementCommandAction::ElementActionId;

// ---- single actions ----

void addRemoveAnchor(VTCommand& command, VTMotionPath* pPath, VTAnchorPoint* pAnchor, int nIndex)
{
    auto* pAction = new VTCommandAction(VTCommandAction::RemoveAnchorPoint, command.getDocument(), 3);
    pAction->addParam(pPath, false);
    pAction->addParam(pAnchor, false);
    pAction->addParam(nIndex);
    command.addAction(pAction);
}

void addAnchorKeyTime(VTCommand& command, VTMotionPath* pPath, VTAnchorPoint* pAnchor, int nTime)
{
    auto* pAction = new VTCommandAction(VTCommandAction::SetAnchorKeyTime, command.getDocument(), 3);
    pAction->addParam(pPath, false);
    pAction->addParam(pAnchor, false);
    pAction->addParam(nTime);
    command.addAction(pAction);
}

void addAnchorData(VTCommand& command, VTMotionPath* pPath, VTAnchorPoint* pAnchor, const QPointF& ptPosition,
                   const QPointF& ptControl1, const QPointF& ptControl2)
{
    auto* pAction = new VTCommandAction(VTCommandAction::SetAnchorPointData, command.getDocument(), 5);
    pAction->addParam(pPath, false);
    pAction->addParam(pAnchor, false);
    pAction->addParam(ptPosition);
    pAction->addParam(ptControl1);
    pAction->addParam(ptControl2);
    command.addAction(pAction);
}

void addChangeKeyValue(VTCommand& command, VTKeyframe* pKeyframe, VTKeyValue* pKey, const QVariant& value,
                       const QVariant& valueMinus)
{
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeKeyValue, command.getDocument(), 4);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(pKey, false);
    pAction->addParam(value);
    pAction->addParam(valueMinus);
    command.addAction(pAction);
}

void addRemoveKeyValue(VTCommand& command, VTKeyframe* pKeyframe, VTKeyValue* pKey)
{
    auto* pAction = new VTCommandAction(VTCommandAction::RemoveKeyValue, command.getDocument(), 4);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(pKey, false);
    command.addAction(pAction);
}

// The keyframe goes; its property takes result in that layout.
void addRemoveKeyframe(VTCommand& command, VTKeyframe* pKeyframe, VTElement* pElement, VTTimeline* pTimeline,
                       const VTLayoutKey& key, const QVariant& result)
{
    auto* pAction = new VTCommandAction(VTCommandAction::RemoveKeyframe, command.getDocument(), 5);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(pElement, false);
    pAction->addParam(pTimeline, false);
    pAction->addParam(key);
    pAction->addParam(result);
    command.addAction(pAction);
}

QVariant pointValue(const QPointF& pt)
{
    return QVariant::fromValue(pt);
}

// ---- restoring the layout's value when a keyframe goes ----

void copyValue(const VTCmdParam& from, VTCmdParam& to)
{
    switch (from.getType()) {
    case VTCmdParam::Int:
        to.setValue(from.getAsInt());
        break;
    case VTCmdParam::Double:
        to.setValue(from.getAsDouble());
        break;
    case VTCmdParam::Bool:
        to.setValue(from.getAsBool());
        break;
    case VTCmdParam::String:
        to.setValue(from.getAsString());
        break;
    default:
        break;
    }
}

void prepareFamily(VTElementCommandAction& action, VTElement* pElement)
{
    switch (action.getId()) {
    case Id::ChangeBorder:
        action.prepareChangeBorderParams(pElement);
        break;
    case Id::ChangeBackground:
        action.prepareChangeBackgroundParams(pElement);
        break;
    case Id::ChangeText:
        action.prepareChangeTextPrams(pElement);
        break;
    case Id::ChangeBgImage:
        action.prepareChangeBgImageParams(pElement);
        break;
    case Id::ChangeCorner:
        action.prepareChangeCornerParams(pElement);
        break;
    case Id::ChangeClip:
        action.prepareChangeClipParams(pElement);
        break;
    case Id::ChangeShadow:
        action.prepareChangeShadowParams(pElement);
        break;
    case Id::ChangeFilter:
        action.prepareChangeFilterParams(pElement);
        break;
    default:
        break;
    }
}

// The element action of that id for the element in its current layout: the one the command holds
// already, so that one action gathers every value, or a new one filled with the present state.
VTElementCommandAction* elementAction(VTCommand& command, Id nId, VTElement* pElement)
{
    const VTLayoutKey key = pElement->getCurrentLayoutID();
    if (auto* pFound = dynamic_cast<VTElementCommandAction*>(
            VTBuilderSupport::findLayoutAction(command, nId, pElement, key)))
        return pFound;
    auto* pAction = new VTElementCommandAction(nId, command.getDocument());
    if (nId == Id::ChangeGeometry)
        pAction->prepareChangeGeometryParams(pElement);
    else
        prepareFamily(*pAction, pElement);
    if (pAction->paramCount() == 0) {
        delete pAction;
        return nullptr;
    }
    command.addAction(pAction);
    return pAction;
}

// Values of a family: the parameters at lstFields (counted with the element at 0) take what the
// base layout holds.
void restoreFamilyFields(VTCommand& command, Id nId, VTElement* pElement, const QList<int>& lstFields)
{
    VTCommandAction base(nId, command.getDocument());
    if (!VTElementActionValues::collect(nId, pElement, VTLayoutKey::base(), base))
        return;
    VTElementCommandAction* pAction = elementAction(command, nId, pElement);
    if (!pAction)
        return;
    for (int nField : lstFields) {
        const VTCmdParam* pFrom = base.getParam(nField - 1);
        VTCmdParam* pTo = pAction->getParam(nField);
        if (pFrom && pTo)
            copyValue(*pFrom, *pTo);
    }
}

// A single layout-bound value (opacity, display) with the layout's inherit map, which it leaves
// as it is.
void addSingleValue(VTCommand& command, Id nId, VTElement* pElement, const VTLayoutKey& key,
                    VTCmdParam* pValue)
{
    auto* pAction = new VTElementCommandAction(nId, command.getDocument(), 5);
    pAction->addParam(pElement, false);
    pAction->addParam(pValue);
    pAction->addParam(pElement->getInherits(key));
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    command.addAction(pAction);
}

// The parameter index in the family of each property that keyframes animate there.
int familyField(int nProperty)
{
    switch (nProperty) {
    case VT::PropBorderWidth:
        return 1;
    case VT::PropBorderColor:
        return 3;
    case VT::PropBackgroundColor:
        return 5;
    case VT::PropGradientAngle:
        return 6;
    case VT::PropGradientOriginX:
        return 7;
    case VT::PropGradientOriginY:
        return 8;
    case VT::PropTextColor:
        return 10;
    case VT::PropHighlightColor:
        return 11;
    case VT::PropFontSize:
        return 3;
    case VT::PropLetterSpacing:
        return 5;
    case VT::PropWordSpacing:
        return 6;
    case VT::PropLineHeight:
        return 12;
    case VT::PropTextIndent:
        return 13;
    case VT::PropClipRectTop:
    case VT::PropClipRectRight:
    case VT::PropClipRectBottom:
    case VT::PropClipRectLeft:
        return nProperty - VT::PropClipRectTop + 2;
    case VT::PropClipOvalVertex:
        return 10;
    case VT::PropClipOvalCoVertex:
        return 11;
    case VT::PropClipCircleRadius:
        return 14;
    default:
        if (nProperty >= VT::PropShadowBlurRadius && nProperty <= VT::PropShadowColor)
            return nProperty - VT::PropShadowBlurRadius + 2;
        if (nProperty >= VT::PropInvertFilter && nProperty <= VT::PropBlurFilter)
            return nProperty - VT::PropInvertFilter + 1;
        return -1;
    }
}

// Gives the layout back its own value of the property: the base value where the layout inherits
// it (written by an element action, since keyframes no longer hold it), its own value otherwise.
// Runs with the element showing the layout. Returns the value the property ends with.
QVariant restoreLayoutValue(VTCommand& command, VTElement* pElement, int nProperty, const VTLayoutKey& key,
                            const QVariant& baseValue, const QVariant& layoutValue)
{
    const VTLayoutKey base = VTLayoutKey::base();
    VTElement& e = *pElement;
    const auto geometry = [&]() { return elementAction(command, Id::ChangeGeometry, pElement); };
    const auto inherits = [&](int nTest) { return e.isInherit(nTest, key); };
    const int nBaseType = e.getCoordinateType(base);
    const int nType = e.getCoordinateType(key);

    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
        // The base value only means the same here when it is measured the same way.
        if (!inherits(VT::PropLeft) || e.getUnitX(base) != e.getUnitX(key) ||
            (nBaseType != nType && !VTLayoutOperations::isDifferentOnlyY(nBaseType, nType)))
            return layoutValue;
        if (VTElementCommandAction* pAction = geometry()) {
            pAction->setChangeGeometryProperty(static_cast<VT::ElementProperty>(nProperty),
                                               e.getPositionX(base));
            pAction->setChangeGeometryProperty(VT::PropUnitX, e.getUnitX(base));
        }
        return baseValue;
    case VT::PropTop:
    case VT::PropBottom:
        if (!inherits(VT::PropTop) || e.getUnitY(base) != e.getUnitY(key) ||
            (nBaseType != nType && !VTLayoutOperations::isDifferentOnlyX(nBaseType, nType)))
            return layoutValue;
        if (VTElementCommandAction* pAction = geometry()) {
            pAction->setChangeGeometryProperty(static_cast<VT::ElementProperty>(nProperty),
                                               e.getPositionY(base));
            pAction->setChangeGeometryProperty(VT::PropUnitY, e.getUnitY(base));
        }
        return baseValue;
    case VT::PropWidth:
    case VT::PropHeight: {
        if (!inherits(nProperty))
            return layoutValue;
        const bool bWidth = nProperty == VT::PropWidth;
        if (VTElementCommandAction* pAction = geometry()) {
            pAction->setChangeGeometryProperty(static_cast<VT::ElementProperty>(nProperty),
                                               bWidth ? e.getSizeW(base) : e.getSizeH(base));
            pAction->setChangeGeometryProperty(bWidth ? VT::PropUnitW : VT::PropUnitH,
                                               bWidth ? e.getUnitW(base) : e.getUnitH(base));
        }
        return baseValue;
    }
    case VT::PropLocation: {
        const bool bInheritX = inherits(VT::PropTranslateX);
        const bool bInheritY = inherits(VT::PropTranslateY);
        if (!bInheritX && !bInheritY)
            return layoutValue;
        VTElementCommandAction* pAction = geometry();
        if (pAction && bInheritX)
            pAction->setChangeGeometryProperty(VT::PropTranslateX, e.getTranslateX(base));
        if (pAction && bInheritY)
            pAction->setChangeGeometryProperty(VT::PropTranslateY, e.getTranslateY(base));
        const QPointF ptBase = baseValue.toPointF();
        const QPointF ptLayout = layoutValue.toPointF();
        return pointValue(
            QPointF(bInheritX ? ptBase.x() : ptLayout.x(), bInheritY ? ptBase.y() : ptLayout.y()));
    }
    case VT::PropOpacity:
        if (!inherits(nProperty))
            return layoutValue;
        addSingleValue(command, Id::ChangeOpacity, pElement, key, new VTCmdParam(baseValue.toDouble()));
        return baseValue;
    case VT::PropDisplay:
        if (!inherits(nProperty))
            return layoutValue;
        addSingleValue(command, Id::ChangeDisplay, pElement, key, new VTCmdParam(baseValue.toInt()));
        return baseValue;
    case VT::PropBorderWidth:
    case VT::PropBorderColor:
        if (!inherits(nProperty))
            return layoutValue;
        restoreFamilyFields(command, Id::ChangeBorder, pElement, {familyField(nProperty)});
        return baseValue;
    case VT::PropBackgroundColor:
    case VT::PropGradientAngle:
    case VT::PropGradientOriginX:
    case VT::PropGradientOriginY:
        // What the fill shows depends on its style, so one test stands for all four.
        if (!inherits(VT::PropFillStyle))
            return layoutValue;
        restoreFamilyFields(command, Id::ChangeBackground, pElement, {familyField(nProperty)});
        return baseValue;
    case VT::PropPerspectiveOriginX:
    case VT::PropPerspectiveOriginY:
    case VT::PropPerspectiveOriginZ: {
        auto* pScene = qobject_cast<VTScene*>(pElement);
        if (!pScene || !inherits(nProperty))
            return layoutValue;
        auto* pAction = new VTElementCommandAction(Id::ChangePerspective, command.getDocument(), 6);
        pAction->addParam(pScene, false);
        pAction->addParam(QMap<int, bool>());
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        pAction->addParam(nProperty);
        pAction->addParam(baseValue.toDouble());
        command.addAction(pAction);
        return baseValue;
    }
    default:
        break;
    }

    if ((nProperty >= VT::PropScaleX && nProperty <= VT::PropOriginY) ||
        (nProperty >= VT::PropOriginZ && nProperty <= VT::PropScaleZ)) {
        if (!inherits(nProperty))
            return layoutValue;
        if (VTElementCommandAction* pAction = geometry())
            pAction->setChangeGeometryProperty(static_cast<VT::ElementProperty>(nProperty),
                                               baseValue.toDouble());
        return baseValue;
    }
    Id nFamily = Id::ChangeGeometry;
    QList<int> lstFields;
    if (nProperty >= VT::PropTextColor && nProperty <= VT::PropTextIndent) {
        nFamily = Id::ChangeText;
        lstFields = {familyField(nProperty)};
    } else if (nProperty >= VT::PropBackgroundX && nProperty <= VT::PropBackgroundHeight) {
        if (!qobject_cast<VTImage*>(pElement))
            return baseValue;
        nFamily = Id::ChangeBgImage;
        lstFields = {nProperty - VT::PropBackgroundX + 1, nProperty - VT::PropBackgroundX + 5};
    } else if (nProperty >= VT::PropTopLeftRadius && nProperty <= VT::PropBottomRightRadius) {
        nFamily = Id::ChangeCorner;
        lstFields = {nProperty - VT::PropTopLeftRadius + 1, nProperty - VT::PropTopLeftRadius + 5};
    } else if (nProperty >= VT::PropClipRectTop && nProperty <= VT::PropClipCircleRadius) {
        nFamily = Id::ChangeClip;
        lstFields = {familyField(nProperty)};
    } else if (nProperty >= VT::PropShadowBlurRadius && nProperty <= VT::PropShadowColor) {
        nFamily = Id::ChangeShadow;
        lstFields = {familyField(nProperty)};
    } else if (nProperty >= VT::PropInvertFilter && nProperty <= VT::PropBlurFilter) {
        nFamily = Id::ChangeFilter;
        lstFields = {familyField(nProperty)};
    } else {
        // Nothing of the layout's own holds this value; the base value is all there is.
        return baseValue;
    }
    if (!inherits(nProperty))
        return layoutValue;
    restoreFamilyFields(command, nFamily, pElement, lstFields);
    return baseValue;
}

// ---- motion paths ----

double polylineLength(const VTAnchorPoint* pFrom, const QList<QPointF>* pPoints)
{
    double dLength = 0.0;
    QPointF ptLast = pFrom->getPosition();
    for (const QPointF& pt : *pPoints) {
        dLength += QLineF(ptLast, pt).length();
        ptLast = pt;
    }
    return dLength;
}

QPointF lerp(const QPointF& a, const QPointF& b, double dT)
{
    return a + (b - a) * dT;
}

void addAnchor(VTCommand& command, VTMotionPath* pPath, VTAnchorPoint* pAnchor, int nIndex)
{
    // Until the action has put it into the path, the anchor belongs to the command.
    auto* pAction = new VTCommandAction(VTCommandAction::AddAnchorPoint, command.getDocument(), 3);
    pAction->addParam(pPath, false);
    pAction->addParam(pAnchor, true);
    pAction->addParam(nIndex);
    command.addAction(pAction);
}

} // namespace

void VTKeyframeBuilder::prepairToDeleteAnchorPoint(VTCommand& command, VTMotionPathKeyframe* pKeyframe,
                                                   int nIndex)
{
    VTMotionPath* pPath = pKeyframe ? pKeyframe->getMotionPath() : nullptr;
    VTAnchorPoint* pAnchor = pPath ? pPath->getAnchorPointAt(nIndex) : nullptr;
    if (pAnchor)
        addRemoveAnchor(command, pPath, pAnchor, nIndex);
}

void VTKeyframeBuilder::createActionsToDeleteAnchorPoint(VTCommand& command, VTTimeline* pTimeline,
                                                         VTMotionPathKeyframe* pKeyframe, int nIndex,
                                                         const VTLayoutKey& key)
{
    VTMotionPath* pPath = pKeyframe ? pKeyframe->getMotionPath() : nullptr;
    VTAnchorPoint* pAnchor = pPath ? pPath->getAnchorPointAt(nIndex) : nullptr;
    if (!pAnchor)
        return;
    VTKeyValue* pKey = pAnchor->hasKeyTime() ? pKeyframe->getKeyValue(pAnchor->getKeyTime()) : nullptr;
    if (!pKey) {
        prepairToDeleteAnchorPoint(command, pKeyframe, nIndex);
        return;
    }
    const QList<int> lstSameTime = pPath->getKeyPointIndexes(pAnchor->getKeyTime());
    if (lstSameTime.size() > 1) {
        // A jump loses one side; the key holds the surviving anchor's point on both.
        prepairToDeleteAnchorPoint(command, pKeyframe, nIndex);
        const QVariant value = lstSameTime.first() == nIndex ? pKey->getValue() : pKey->getValueMinus();
        addChangeKeyValue(command, pKeyframe, pKey, value, value);
        return;
    }
    const QList<VTAnchorPoint*>& lstAnchors = pPath->getAnchorPoints();
    const int nLast = lstAnchors.size() - 1;
    if (nLast == 0) {
        prepairToDeleteAnchorPoint(command, pKeyframe, 0);
    } else if (nIndex == 0 || nIndex == nLast) {
        prepairToDeleteAnchorPoint(command, pKeyframe, nIndex);
        VTAnchorPoint* pNeighbour = lstAnchors.at(nIndex == 0 ? 1 : nIndex - 1);
        if (!pNeighbour->hasKeyTime()) {
            // The shape anchor next to the end becomes the end: it takes the key, and its outer
            // handle folds onto its point.
            const QPointF ptPosition = pNeighbour->getPosition();
            addAnchorKeyTime(command, pPath, pNeighbour, pAnchor->getKeyTime());
            if (nIndex == 0)
                addAnchorData(command, pPath, pNeighbour, ptPosition, ptPosition,
                              pNeighbour->getControlPoint2());
            else
                addAnchorData(command, pPath, pNeighbour, ptPosition, pNeighbour->getControlPoint1(),
                              ptPosition);
            addChangeKeyValue(command, pKeyframe, pKey, pointValue(ptPosition), pointValue(ptPosition));
            return;
        }
    } else {
        addRemoveAnchor(command, pPath, pAnchor, nIndex);
    }
    const bool bOnlyKey = pKeyframe->getKeyValues().size() == 1;
    addRemoveKeyValue(command, pKeyframe, pKey);
    VTElement* pElement = pKeyframe->getAnimationElement();
    if (bOnlyKey && pElement && pTimeline) {
        const VTLayoutKey layout = pElement->resolveLayoutKey(key);
        addRemoveKeyframe(command, pKeyframe, pElement, pTimeline, layout,
                          VTBuilderSupport::readBoundValue(pElement, pKeyframe->getType(), layout));
    }
}

void VTKeyframeBuilder::createActionsToAddKeyAnchorPoint(VTCommand& command, VTMotionPathKeyframe* pKeyframe,
                                                         VTAnchorPoint* pAnchor, int nIndex)
{
    VTMotionPath* pPath = pKeyframe ? pKeyframe->getMotionPath() : nullptr;
    if (!pPath || !pAnchor)
        return;
    const QList<VTAnchorPoint*>& lstAnchors = pPath->getAnchorPoints();
    const auto plainAdd = [&]() { addAnchor(command, pPath, pAnchor, nIndex); };
    if (nIndex < 1 || nIndex >= lstAnchors.size())
        return plainAdd();

    // The key anchors around the new key's time, and the span the new anchor splits.
    const int nTime = pAnchor->getKeyTime();
    const QList<VTAnchorPoint*> lstKeyAnchors = pPath->getKeyPoints();
    int nFrom = -1;
    int nTo = -1;
    for (int k = 0; k + 1 < lstKeyAnchors.size(); ++k) {
        if (lstKeyAnchors.at(k)->getKeyTime() < nTime && nTime < lstKeyAnchors.at(k + 1)->getKeyTime()) {
            nFrom = lstAnchors.indexOf(lstKeyAnchors.at(k));
            nTo = lstAnchors.indexOf(lstKeyAnchors.at(k + 1));
            break;
        }
    }
    if (nFrom < 0 || nIndex <= nFrom || nIndex > nTo)
        return plainAdd();
    const int nTime0 = lstAnchors.at(nFrom)->getKeyTime();
    const int nTime1 = lstAnchors.at(nTo)->getKeyTime();
    const VTKeyframeSegment* pSegment = pKeyframe->getKeyframeSegment(nTime);
    if (!pSegment || !pSegment->hasTransition() || pSegment->getStartKeyValue()->getTime() != nTime0 ||
        pSegment->getEndKeyValue()->getTime() != nTime1)
        return plainAdd();

    // Where the element stands at that time, as a share of the travel between the two keys, and
    // where that share falls on the span being split.
    const double dProgress =
        pSegment->easingCurve().valueForProgress(double(nTime - nTime0) / double(nTime1 - nTime0));
    const QList<QList<QPointF>*>& lstCurves = pPath->getCubicBezierCurves();
    double dTotal = 0.0;
    double dBefore = 0.0;
    double dAfter = 0.0;
    for (int nSpan = nFrom; nSpan < nTo; ++nSpan) {
        dTotal += polylineLength(lstAnchors.at(nSpan), lstCurves.at(nSpan));
        if (nSpan == nIndex - 2)
            dBefore = dTotal;
        if (nSpan == nIndex - 1)
            dAfter = dTotal;
    }
    if (nIndex - 1 == nFrom)
        dBefore = 0.0;
    if (dTotal <= 0.0 || dAfter <= dBefore)
        return plainAdd();
    const double dU = qBound(0.0, (dProgress - dBefore / dTotal) / (dAfter / dTotal - dBefore / dTotal), 1.0);

    // De Casteljau keeps the curve: the two halves of the span meet at s with handles r0, r1.
    VTAnchorPoint* pA = lstAnchors.at(nIndex - 1);
    VTAnchorPoint* pB = lstAnchors.at(nIndex);
    const QPointF q0 = lerp(pA->getPosition(), pA->getControlPoint2(), dU);
    const QPointF q1 = lerp(pA->getControlPoint2(), pB->getControlPoint1(), dU);
    const QPointF q2 = lerp(pB->getControlPoint1(), pB->getPosition(), dU);
    const QPointF r0 = lerp(q0, q1, dU);
    const QPointF r1 = lerp(q1, q2, dU);
    const QPointF s = lerp(r0, r1, dU);
    // A point dragged off the curve keeps the handles' shape around it.
    const QPointF d = pAnchor->getPosition() - s;
    pAnchor->setControlPoint1(r0 + d);
    pAnchor->setControlPoint2(r1 + d);
    addAnchorData(command, pPath, pA, pA->getPosition(), pA->getControlPoint1(), q0);
    addAnchorData(command, pPath, pB, pB->getPosition(), q2, pB->getControlPoint2());
    plainAdd();
}

void VTKeyframeBuilder::createActionsToDeleteKeyValues(VTCommand& command, VTTimeline* pTimeline,
                                                       VTKeyframe* pKeyframe,
                                                       const QList<VTKeyValue*>& lstKeys,
                                                       const VTLayoutKey& key)
{
    if (!pKeyframe)
        return;
    QList<VTKeyValue*> lstOwnKeys;
    for (VTKeyValue* pKey : lstKeys) {
        if (pKey && pKeyframe->getKeyValues().contains(pKey) && !lstOwnKeys.contains(pKey))
            lstOwnKeys.append(pKey);
    }
    if (lstOwnKeys.isEmpty())
        return;

    auto* pMotion = qobject_cast<VTMotionPathKeyframe*>(pKeyframe);
    if (VTMotionPath* pPath = pMotion ? pMotion->getMotionPath() : nullptr) {
        QSet<int> setTimes;
        for (const VTKeyValue* pKey : qAsConst(lstOwnKeys))
            setTimes.insert(pKey->getTime());
        const QList<VTAnchorPoint*>& lstAnchors = pPath->getAnchorPoints();
        const QList<VTAnchorPoint*> lstKeyAnchors = pPath->getKeyPoints();
        QList<VTAnchorPoint*> lstDeleted;
        for (VTAnchorPoint* pAnchor : lstKeyAnchors) {
            if (setTimes.contains(pAnchor->getKeyTime()))
                lstDeleted.append(pAnchor);
        }
        // The deleted keys at either end of the path take their stretch of path with them;
        // inner ones only stop being keys, which keeps the curve.
        QSet<VTAnchorPoint*> setEnds;
        for (int k = lstKeyAnchors.size() - 1; k >= 0 && lstDeleted.contains(lstKeyAnchors.at(k)); --k)
            setEnds.insert(lstKeyAnchors.at(k));
        for (int k = 0; k < lstKeyAnchors.size() && lstDeleted.contains(lstKeyAnchors.at(k)); ++k)
            setEnds.insert(lstKeyAnchors.at(k));

        for (int d = lstDeleted.size() - 1; d >= 0; --d) {
            VTAnchorPoint* pAnchor = lstDeleted.at(d);
            const int nIndex = lstAnchors.indexOf(pAnchor);
            if (!setEnds.contains(pAnchor)) {
                addAnchorKeyTime(command, pPath, pAnchor, -1);
                continue;
            }
            const int nKey = lstKeyAnchors.indexOf(pAnchor);
            VTAnchorPoint* pNext = lstKeyAnchors.value(nKey + 1, nullptr);
            if (pNext && !setEnds.contains(pNext)) {
                // The next key anchor starts the path now: its incoming handle folds onto it.
                addAnchorData(command, pPath, pNext, pNext->getPosition(), pNext->getPosition(),
                              pNext->getControlPoint2());
                for (int j = lstAnchors.indexOf(pNext) - 1; j > nIndex; --j)
                    addRemoveAnchor(command, pPath, lstAnchors.at(j), j);
            }
            addRemoveAnchor(command, pPath, pAnchor, nIndex);
            // The shape anchors back to the previous key go with it; one that opens the path stays.
            for (int j = nIndex - 1; j >= 0; --j) {
                VTAnchorPoint* pBefore = lstAnchors.at(j);
                if (pBefore->hasKeyTime()) {
                    // A key anchor that stays ends the path now: its outgoing handle folds.
                    if (!setEnds.contains(pBefore))
                        addAnchorData(command, pPath, pBefore, pBefore->getPosition(),
                                      pBefore->getControlPoint1(), pBefore->getPosition());
                    break;
                }
                if (j == 0)
                    break;
                addRemoveAnchor(command, pPath, pBefore, j);
            }
        }
    }

    for (int i = lstOwnKeys.size() - 1; i >= 0; --i)
        addRemoveKeyValue(command, pKeyframe, lstOwnKeys.at(i));
    if (lstOwnKeys.size() == pKeyframe->getKeyValues().size())
        createActionsToRemoveKeyframe(command, pTimeline, pKeyframe, key);
}

void VTKeyframeBuilder::createActionsToRemoveKeyframe(VTCommand& command, VTTimeline* pTimeline,
                                                      VTKeyframe* pKeyframe, const VTLayoutKey& key)
{
    VTElement* pElement = pKeyframe ? pKeyframe->getAnimationElement() : nullptr;
    if (!pElement || !pTimeline)
        return;
    const VTLayoutKey layout = pElement->resolveLayoutKey(key);
    const int nProperty = pKeyframe->getType();
    const QVariant baseValue = VTBuilderSupport::readBoundValue(pElement, nProperty, VTLayoutKey::base());
    const QVariant layoutValue = VTBuilderSupport::readBoundValue(pElement, nProperty, layout);
    if (!baseValue.isValid() || !layoutValue.isValid())
        return;
    QVariant result = baseValue;
    if (!layout.isBase()) {
        VTLayoutSwitch shown(pElement, layout);
        result = restoreLayoutValue(command, pElement, nProperty, layout, baseValue, layoutValue);
    }
    addRemoveKeyframe(command, pKeyframe, pElement, pTimeline, layout, result);
}

void VTKeyframeBuilder::createActionsToSaveCurrentElementPropValue(VTCommand& command, VTElement* pElement,
                                                                   VT::ElementProperty property,
                                                                   const VTLayoutKey& key)
{
    if (!pElement || property > VT::PropPerspectiveOriginZ || property == VT::PropPlayback || key.isCurrent())
        return;
    const QVariant value = VTBuilderSupport::readBoundValue(pElement, property, key);
    // Only a missing value is no value: Qt 5 calls a point at the origin "null", and that is where
    // an element's translation, the value of a motion path, most often stands.
    if (!value.isValid())
        return;
    // The value was changed before the command exists; undo puts the old one back.
    auto* pAction = new VTElementCommandAction(Id::SetPropertyValue, command.getDocument(), 4, true);
    pAction->addParam(pElement, false);
    pAction->addParam(static_cast<int>(property));
    pAction->addParam(key);
    pAction->addParam(value);
    command.addAction(pAction);
}

void VTKeyframeBuilder::createActionsToChangeAnimationInherit(VTCommand& command, VTAnimation* pAnimation,
                                                              const VTLayoutKey& key,
                                                              VT::ElementProperty property, bool bInherit)
{
    if (!pAnimation || key.isBase())
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeAnimationInherits, command.getDocument(), 2);
    pAction->addParam(pAnimation, false);
    pAction->addParam(vtGetMapInherits(2, static_cast<int>(property), bInherit ? 1 : 0));
    command.addAction(pAction);
}
