#include "VTCanvasKeyframeUpdater.h"

#include "VTAnchorPoint.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTFreeFormShape.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTText.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QColor>
#include <QEasingCurve>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

using Id = VTElementCommandAction::ElementActionId;

constexpr double kNearlyEqual = 1e-5;
// An anchor that moved less than this on both axes has not moved as far as its key is concerned.
constexpr double kAnchorMoved = 1e-12;

VTScene* sceneOf(const VTElement* pElement)
{
    return pElement ? qobject_cast<VTScene*>(pElement->getScene()) : nullptr;
}

// The symbol whose breakpoints and mode the element's layouts follow.
VTSymbol* symbolOf(const VTElement* pElement, const VTCommand& command)
{
    const VTScene* pScene = sceneOf(pElement);
    const VTSceneManager* pScenes = pScene ? pScene->getSceneManager() : nullptr;
    if (VTSymbol* pSymbol = pScenes ? pScenes->getSymbol() : nullptr)
        return pSymbol;
    return VTBuilderSupport::currentSymbol(command);
}

int currentEasing(const VTTimeline* pTimeline)
{
    return pTimeline ? static_cast<int>(pTimeline->getCurrentEasingCurve().type())
                     : static_cast<int>(QEasingCurve::Linear);
}

// Key values hold a point for the location, a colour for colours and a double for the rest.
QVariant asKeyValue(int nProperty, const QVariant& value)
{
    switch (VTAnimatedProperty::getValueType(nProperty)) {
    case QMetaType::QPointF:
        return QVariant::fromValue(value.toPointF());
    case QMetaType::QColor:
        return QVariant::fromValue(value.value<QColor>());
    default:
        return QVariant(value.toDouble());
    }
}

// ---- single actions ----

void addChangeKeyValue(VTCommand& command, VTKeyframe* pKeyframe, VTKeyValue* pKey, const QVariant& value)
{
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeKeyValue, command.getDocument(), 3);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(pKey, false);
    pAction->addParam(value);
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

// The key belongs to the action until its first redo puts it into the keyframe.
void addNewKeyValue(VTCommand& command, VTKeyframe* pKeyframe, int nTime, const QVariant& value, int nEasing)
{
    auto* pAction = new VTCommandAction(VTCommandAction::AddKeyValue, command.getDocument(), 4);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(new VTKeyValue(nTime, value), true);
    pAction->addParam(nEasing);
    pAction->addParam(true);
    command.addAction(pAction);
}

void addNewAnchor(VTCommand& command, VTMotionPath* pPath, VTAnchorPoint* pAnchor, int nIndex)
{
    auto* pAction = new VTCommandAction(VTCommandAction::AddAnchorPoint, nullptr, 3);
    pAction->addParam(pPath, false);
    pAction->addParam(pAnchor, true);
    pAction->addParam(nIndex);
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

void addSetTransition(VTCommand& command, VTKeyframe* pKeyframe, VTKeyValue* pKey, bool bTransition)
{
    auto* pAction = new VTCommandAction(VTCommandAction::SetTransition, command.getDocument(), 3);
    pAction->addParam(pKeyframe, false);
    pAction->addParam(pKey, false);
    pAction->addParam(bTransition);
    command.addAction(pAction);
}

void addAnimationInherits(VTCommand& command, VTAnimation* pAnimation, const QMap<int, bool>& mapInherits)
{
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeAnimationInherits, command.getDocument(), 2);
    pAction->addParam(pAnimation, false);
    pAction->addParam(mapInherits);
    command.addAction(pAction);
}

// ---- what the keyframe work of one layout shares ----

struct LayoutWork
{
    VTCommand& command;
    VTTimeline* pTimeline;
    VTElement* pElement;
    VTLayoutKey layout;
    // The layout the element shows, which the gesture was made in.
    VTLayoutKey current;
    int nTime;
    int nEasing;
    VTAnimation* pAnimation = nullptr;
    bool bAddedAny = false;
};

// An animation of the element for a layout that has none yet; it joins the timeline now.
VTAnimation* addNewAnimation(LayoutWork& work)
{
    auto* pAnimation = new VTAnimation(work.pElement);
    work.pTimeline->addAnimation(pAnimation, work.layout);
    auto* pAction = new VTCommandAction(VTCommandAction::AddAnimation, work.command.getDocument(), 3, true);
    pAction->addParam(pAnimation, false);
    pAction->addParam(work.pTimeline, false);
    pAction->addParam(work.layout);
    work.command.addAction(pAction);
    return pAnimation;
}

// The element's animation in the layout, made when keys may be added there (auto keyframes) and
// the edit reaches the layout. Without auto keyframes a layout without an animation ends the
// work in every layout: bStop.
VTAnimation* animationFor(LayoutWork& work, const VTSymbol* pSymbol, bool bAutoKeyframe,
                          const QList<int>& lstProperties, bool& bStop)
{
    VTAnimation* pAnimation = work.pTimeline->getAnimation(work.pElement, work.layout);
    if (pAnimation)
        return pAnimation;
    if (!bAutoKeyframe) {
        bStop = true;
        return nullptr;
    }
    const bool bReached = std::any_of(lstProperties.cbegin(), lstProperties.cend(), [&](int nProperty) {
        return isNeedChangePropAnim(pSymbol, work.layout, nullptr, nProperty);
    });
    return bReached ? addNewAnimation(work) : nullptr;
}

// A first keyframe of the property: the present value is saved so that undo restores it, and the
// keyframe joins the animation now.
VTKeyframe* addNewKeyframe(LayoutWork& work, int nProperty)
{
    const auto property = static_cast<VT::ElementProperty>(nProperty);
    work.command.createActionsToSaveCurrentElementPropValue(work.pElement, property, work.layout);
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(property, work.pElement, work.layout);
    if (!pKeyframe)
        return nullptr;
    work.pTimeline->addPropAnimation(work.pElement, pKeyframe, work.layout);
    const bool bAttached = pKeyframe->group() != nullptr;
    auto* pAction =
        new VTCommandAction(VTCommandAction::AddKeyframe, work.command.getDocument(), 4, bAttached);
    pAction->addParam(pKeyframe, !bAttached);
    pAction->addParam(work.pElement, false);
    pAction->addParam(work.pTimeline, false);
    pAction->addParam(work.layout);
    work.command.addAction(pAction);
    work.bAddedAny = true;
    return pKeyframe;
}

// A new key at the playhead with value. A keyframe without keys first gets one that holds the
// present value where the animation stood before (time 0, or its end when that is earlier), so the
// property moves into the new value instead of having it from the start. On a motion path every
// key is an anchor too.
void addKeysAtPlayhead(LayoutWork& work, VTKeyframe* pKeyframe, int nProperty, const QVariant& value)
{
    auto* pPathKeyframe = qobject_cast<VTMotionPathKeyframe*>(pKeyframe);
    VTMotionPath* pPath = pPathKeyframe ? pPathKeyframe->getMotionPath() : nullptr;
    if (nProperty == VT::PropLocation && !pPath)
        return;
    int nPreviousIndex = -1;
    if (work.nTime != 0 && pKeyframe->getKeyValues().isEmpty()) {
        const int nEnd = work.pAnimation->getEndTime();
        const int nFirstTime = nEnd < work.nTime ? nEnd : 0;
        const QVariant present =
            asKeyValue(nProperty, VTBuilderSupport::readBoundValue(work.pElement, nProperty, work.layout));
        if (pPath) {
            const QPointF pt = present.toPointF();
            nPreviousIndex = pPathKeyframe->getNewAnchorPointIndex(nFirstTime);
            addNewAnchor(work.command, pPath, new VTAnchorPoint(pt, pt, pt, nFirstTime), nPreviousIndex);
        }
        addNewKeyValue(work.command, pKeyframe, nFirstTime, present, work.nEasing);
    }
    if (pPath) {
        const QPointF pt = value.toPointF();
        const int nIndex = std::max(pPathKeyframe->getNewAnchorPointIndex(work.nTime), nPreviousIndex + 1);
        addNewAnchor(work.command, pPath, new VTAnchorPoint(pt, pt, pt, work.nTime), nIndex);
    }
    addNewKeyValue(work.command, pKeyframe, work.nTime, value, work.nEasing);
    work.bAddedAny = true;
}

// ---- geometry ----

// The values the geometry tracks follow, each under one property: the horizontal position under
// left and the vertical one under top, whichever side the coordinate type measures from.
using Geometry = QMap<int, double>;

const int s_geometryProperties[] = {
    VT::PropLeft,           VT::PropTop,        VT::PropWidth,      VT::PropHeight,
    VT::PropOriginX,        VT::PropOriginY,    VT::PropOriginZ,    VT::PropRotateX,
    VT::PropRotateY,        VT::PropRotateZ,    VT::PropScaleX,     VT::PropScaleY,
    VT::PropScaleZ,         VT::PropTranslateX, VT::PropTranslateY, VT::PropTranslateZ,
    VT::PropCoordinateType,
};

int geometryKey(int nProperty)
{
    if (nProperty == VT::PropRight)
        return VT::PropLeft;
    return nProperty == VT::PropBottom ? VT::PropTop : nProperty;
}

Geometry readGeometry(const VTElement& element)
{
    Geometry geometry;
    for (int nProperty : s_geometryProperties)
        geometry.insert(nProperty,
                        VTCanvasKeyframeUpdater::geometryValue(element, nProperty, VTElement::kCurrent));
    return geometry;
}

// The values the action carries replace the element's.
void applyActionValues(const VTElementCommandAction& action, Geometry& geometry)
{
    const VTCmdParam* pList = action.getParam(4);
    const QList<int> lstProperties = pList ? pList->getAsIntList() : QList<int>();
    for (int i = 0; i < lstProperties.size(); ++i) {
        const VTCmdParam* pValue = action.getParam(5 + i);
        const int nKey = geometryKey(lstProperties.at(i));
        if (pValue && geometry.contains(nKey))
            geometry.insert(nKey, VTElementActionValues::readDouble(*pValue));
    }
}

struct Change
{
    int nProperty;
    QVariant newValue;
    QVariant oldValue;
};

// The animatable properties whose value the action changes, in the order their tracks follow. The
// translation is one track, the location.
QList<Change> geometryChanges(const Geometry& n, const Geometry& o)
{
    QList<Change> lstChanges;
    const auto add = [&](int nProperty, int nKey) {
        if (!VTCanvasKeyframeUpdater::isNearlyEqual(n.value(nKey), o.value(nKey)))
            lstChanges.append({nProperty, n.value(nKey), o.value(nKey)});
    };
    const int c = static_cast<int>(n.value(VT::PropCoordinateType));
    add(c == VT::LeftTop || c == VT::LeftBottom ? VT::PropLeft : VT::PropRight, VT::PropLeft);
    add(c == VT::LeftTop || c == VT::RightTop ? VT::PropTop : VT::PropBottom, VT::PropTop);
    for (int nProperty : {VT::PropWidth, VT::PropHeight, VT::PropRotateX, VT::PropRotateY, VT::PropRotateZ,
                          VT::PropOriginX, VT::PropOriginY, VT::PropOriginZ})
        add(nProperty, nProperty);
    const QPointF ptNew(n.value(VT::PropTranslateX), n.value(VT::PropTranslateY));
    const QPointF ptOld(o.value(VT::PropTranslateX), o.value(VT::PropTranslateY));
    if (!VTCanvasKeyframeUpdater::isNearlyEqual(ptNew.x(), ptOld.x()) ||
        !VTCanvasKeyframeUpdater::isNearlyEqual(ptNew.y(), ptOld.y()))
        lstChanges.append({VT::PropLocation, ptNew, ptOld});
    for (int nProperty : {VT::PropTranslateZ, VT::PropScaleX, VT::PropScaleY, VT::PropScaleZ})
        add(nProperty, nProperty);
    return lstChanges;
}

// How a track follows a change: by adding a delta, or, for sizes while the outline's points are
// edited, by a factor, since the points scale with the box.
struct Delta
{
    bool bPoint = false;
    bool bFactor = false;
    double dValue = 0.0;
    QPointF ptValue;

    QVariant apply(const QVariant& value) const
    {
        if (bPoint)
            return QVariant::fromValue(value.toPointF() + ptValue);
        return bFactor ? QVariant(value.toDouble() * dValue) : QVariant(value.toDouble() + dValue);
    }
};

bool shiftsWholeTrack(int nProperty)
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
    case VT::PropTop:
    case VT::PropBottom:
    case VT::PropLocation:
    case VT::PropTranslateZ:
        return true;
    default:
        return false;
    }
}

// The inherit flags of a layout that gets its own track of the property: the two sides of a
// position count as one.
QMap<int, bool> ownTrackInherits(int nProperty)
{
    if (nProperty == VT::PropLeft || nProperty == VT::PropRight)
        return vtGetMapInherits(4, VT::PropLeft, 0, VT::PropRight, 0);
    if (nProperty == VT::PropTop || nProperty == VT::PropBottom)
        return vtGetMapInherits(4, VT::PropTop, 0, VT::PropBottom, 0);
    return vtGetMapInherits(2, nProperty, 0);
}

struct GeometryFlags
{
    bool bAutoKeyframe = false;
    bool bMoveOnly = false;
    // The element is a freeform whose points are being edited, and the gesture is more than a move.
    bool bEditPoint = false;
    // ...and it is a line.
    bool bLine = false;
};

void updateGeometryTrack(LayoutWork& work, const GeometryFlags& flags, const Change& change,
                         double& dLastFactor)
{
    const int p = change.nProperty;
    Delta delta;
    if (p == VT::PropLocation) {
        delta.bPoint = true;
        delta.ptValue = change.newValue.toPointF() - change.oldValue.toPointF();
    } else if ((p == VT::PropWidth || p == VT::PropHeight) && flags.bEditPoint) {
        const double dOld = change.oldValue.toDouble();
        if (dOld != 0.0)
            dLastFactor = change.newValue.toDouble() / dOld;
        delta.bFactor = true;
        delta.dValue = dLastFactor;
    } else {
        delta.dValue = change.newValue.toDouble() - change.oldValue.toDouble();
    }
    const QVariant newValue = asKeyValue(p, change.newValue);

    VTKeyframe* pKeyframe = work.pAnimation->getKeyframe(static_cast<VT::ElementProperty>(p));
    if (!pKeyframe && flags.bAutoKeyframe && (!flags.bEditPoint || flags.bLine)) {
        if (!VTAnimatedProperty::canAddAnimationType(work.pElement, p, work.current, work.layout)) {
            // The layout measures the position from the other side: a track made in the base cannot
            // reach it, so it stops inheriting the property and keeps its value.
            if (work.current.isBase() && !work.layout.isBase() &&
                VTAnimatedProperty::canAddAnimationType(work.pElement, p, work.current,
                                                        VTLayoutKey::base()) &&
                work.pElement->getCoordinateType(work.layout) !=
                    work.pElement->getCoordinateType(work.current))
                addAnimationInherits(work.command, work.pAnimation, ownTrackInherits(p));
        } else if (p != VT::PropLocation || flags.bMoveOnly) {
            pKeyframe = addNewKeyframe(work, p);
        }
    }
    if (!pKeyframe)
        return;

    VTKeyValue* pKey = pKeyframe->getKeyValue(work.nTime);
    if (!flags.bEditPoint && pKey) {
        if (auto* pPathKeyframe = qobject_cast<VTMotionPathKeyframe*>(pKeyframe)) {
            VTMotionPath* pPath = pPathKeyframe->getMotionPath();
            const QList<int> lstIndexes = pPath->getKeyPointIndexes(work.nTime);
            // Of a jump, the anchor the motion leaves from is the one that holds the key's value.
            if (VTAnchorPoint* pAnchor =
                    lstIndexes.isEmpty() ? nullptr : pPath->getAnchorPointAt(lstIndexes.last()))
                addAnchorData(work.command, pPath, pAnchor, newValue.toPointF(),
                              pAnchor->getControlPoint1() + delta.ptValue,
                              pAnchor->getControlPoint2() + delta.ptValue);
        }
        if (shiftsWholeTrack(p) && !flags.bMoveOnly) {
            // A resize that moves the position, from the left edge say, moves the whole track.
            for (VTKeyValue* pEach : pKeyframe->getKeyValues())
                addChangeKeyValue(work.command, pKeyframe, pEach, delta.apply(pEach->getValue()));
        } else {
            addChangeKeyValue(work.command, pKeyframe, pKey, newValue);
        }
        work.bAddedAny = true;
        return;
    }
    if (!flags.bAutoKeyframe || (flags.bEditPoint && !flags.bLine)) {
        for (VTKeyValue* pEach : pKeyframe->getKeyValues())
            addChangeKeyValue(work.command, pKeyframe, pEach, delta.apply(pEach->getValue()),
                              delta.apply(pEach->getValueMinus()));
        work.bAddedAny = work.bAddedAny || !pKeyframe->getKeyValues().isEmpty();
        return;
    }
    if (p == VT::PropLocation && !flags.bMoveOnly)
        return;
    if (pKey) {
        // A line whose points are edited has its key at the playhead already: it takes the value.
        addChangeKeyValue(work.command, pKeyframe, pKey, newValue);
        work.bAddedAny = true;
        return;
    }
    addKeysAtPlayhead(work, pKeyframe, p, newValue);
}

// ---- text ----

struct TextValue
{
    int nProperty;
    int nParam;
};

// Where the animatable text values sit in a text action, by ascending property.
const TextValue s_textValues[] = {
    {VT::PropTextColor, 10},    {VT::PropHighlightColor, 11}, {VT::PropFontSize, 3},
    {VT::PropLetterSpacing, 5}, {VT::PropWordSpacing, 6},     {VT::PropLineHeight, 12},
    {VT::PropTextIndent, 13},
};

QColor colorOf(const VTCmdParam& param)
{
    return QColor::fromRgba(static_cast<QRgb>(static_cast<quint32>(VTElementActionValues::readInt(param))));
}

using TextChange = QPair<int, QVariant>;

// The new value as a key holds it, or invalid when the action does not change the property.
QVariant textChange(const VTText& text, int nProperty, const VTCmdParam& param)
{
    switch (nProperty) {
    case VT::PropTextColor: {
        const QColor color = colorOf(param);
        return color.rgba() != text.getColor().rgba() ? QVariant::fromValue(color) : QVariant();
    }
    case VT::PropHighlightColor: {
        const QColor color = colorOf(param);
        return color.rgba() != text.getHighlightColor().rgba() ? QVariant::fromValue(color) : QVariant();
    }
    case VT::PropLineHeight: {
        const double dValue = VTElementActionValues::readDouble(param);
        return std::abs(dValue - text.getLineHeight()) > kNearlyEqual ? QVariant(dValue) : QVariant();
    }
    default: {
        int nOld = 0;
        if (nProperty == VT::PropFontSize)
            nOld = text.getFontSize();
        else if (nProperty == VT::PropLetterSpacing)
            nOld = text.getLetterSpace();
        else if (nProperty == VT::PropWordSpacing)
            nOld = text.getWordSpace();
        else
            nOld = text.getTextIndent();
        const int nValue = VTElementActionValues::readInt(param);
        return nValue != nOld ? QVariant(static_cast<double>(nValue)) : QVariant();
    }
    }
}

void updateTextTrack(LayoutWork& work, bool bAutoKeyframe, int nProperty, const QVariant& value)
{
    VTKeyframe* pKeyframe = work.pAnimation->getKeyframe(static_cast<VT::ElementProperty>(nProperty));
    if (!pKeyframe && bAutoKeyframe &&
        VTAnimatedProperty::canAddAnimationType(work.pElement, nProperty, work.current, work.layout))
        pKeyframe = addNewKeyframe(work, nProperty);
    if (!pKeyframe)
        return;
    if (VTKeyValue* pKey = pKeyframe->getKeyValue(work.nTime)) {
        addChangeKeyValue(work.command, pKeyframe, pKey, value);
        work.bAddedAny = true;
    } else if (bAutoKeyframe) {
        addKeysAtPlayhead(work, pKeyframe, nProperty, value);
    } else {
        for (VTKeyValue* pEach : pKeyframe->getKeyValues())
            addChangeKeyValue(work.command, pKeyframe, pEach, value, value);
        work.bAddedAny = work.bAddedAny || !pKeyframe->getKeyValues().isEmpty();
    }
}

} // namespace

bool VTCanvasKeyframeUpdater::isNearlyEqual(double dA, double dB)
{
    return std::abs(dA - dB) <= kNearlyEqual;
}

double VTCanvasKeyframeUpdater::geometryValue(const VTElement& element, int nProperty, const VTLayoutKey& key)
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
        return element.getPositionX(key);
    case VT::PropTop:
    case VT::PropBottom:
        return element.getPositionY(key);
    case VT::PropWidth:
        return element.getSizeW(key);
    case VT::PropHeight:
        return element.getSizeH(key);
    case VT::PropScaleX:
        return element.getScaleX(key);
    case VT::PropScaleY:
        return element.getScaleY(key);
    case VT::PropSkewX:
        return element.getSkewX(key);
    case VT::PropSkewY:
        return element.getSkewY(key);
    case VT::PropRotateZ:
        return element.getRotateZ(key);
    case VT::PropOriginX:
        return element.getOriginRatioX(key);
    case VT::PropOriginY:
        return element.getOriginRatioY(key);
    case VT::PropCoordinateType:
        return element.getCoordinateType(key);
    case VT::PropOriginZ:
        return element.getOriginZ(key);
    case VT::PropTranslateX:
        return element.getTranslateX(key);
    case VT::PropTranslateY:
        return element.getTranslateY(key);
    case VT::PropTranslateZ:
        return element.getTranslateZ(key);
    case VT::PropRotateX:
        return element.getRotateX(key);
    case VT::PropRotateY:
        return element.getRotateY(key);
    case VT::PropScaleZ:
        return element.getScaleZ(key);
    case VT::PropUnitX:
        return element.getUnitX(key);
    case VT::PropUnitY:
        return element.getUnitY(key);
    case VT::PropUnitW:
        return element.getUnitW(key);
    case VT::PropUnitH:
        return element.getUnitH(key);
    default:
        return 0.0;
    }
}

VTTimeline* VTCanvasKeyframeUpdater::currentTimeline(const VTElement* pElement)
{
    const VTScene* pScene = sceneOf(pElement);
    return pScene ? pScene->getTimelineManager()->getCurrentTimeline() : nullptr;
}

QList<VTLayoutKey> VTCanvasKeyframeUpdater::getBreakpointIds(const VTSymbol* pSymbol)
{
    if (!pSymbol)
        return {VTLayoutKey::base()};
    if (pSymbol->isResponsiveMode())
        return {pSymbol->getCurrentLayoutId(true)};
    return pSymbol->getBreakpointManager()->getAllBreakpointIds(true);
}

bool VTCanvasKeyframeUpdater::hasKeyframe(const VTElement* pElement, int nProperty, const VTLayoutKey& key)
{
    const VTTimeline* pTimeline = currentTimeline(pElement);
    const VTAnimation* pAnimation = pTimeline ? pTimeline->getAnimation(pElement, key) : nullptr;
    return pAnimation && pAnimation->getKeyframe(static_cast<VT::ElementProperty>(nProperty));
}

void VTCanvasKeyframeUpdater::updateGeometryKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand,
                                                      bool bMoveOnly)
{
    if (!pAction || !pCommand || pAction->getId() != Id::ChangeGeometry || pAction->paramCount() < 5)
        return;
    VTElement* pElement = pAction->getParam(0)->getAsElement();
    VTTimeline* pTimeline = currentTimeline(pElement);
    VTSymbol* pSymbol = symbolOf(pElement, *pCommand);
    if (!pTimeline || !pSymbol)
        return;
    const VTDocument* pDocument = pCommand->getDocument();

    Geometry newValues = readGeometry(*pElement);
    applyActionValues(*pAction, newValues);
    const QList<Change> lstChanges = geometryChanges(newValues, readGeometry(*pElement));
    if (lstChanges.isEmpty())
        return;
    QList<int> lstProperties;
    for (const Change& change : lstChanges)
        lstProperties.append(change.nProperty);

    GeometryFlags flags;
    flags.bAutoKeyframe = pDocument && pDocument->isAutoKeyframeMode();
    flags.bMoveOnly = bMoveOnly;
    const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement);
    flags.bEditPoint = pFreeForm && pFreeForm->isEditPoint() && !bMoveOnly;
    flags.bLine = flags.bEditPoint && pFreeForm->isLine();

    bool bAddedAny = false;
    double dLastFactor = 1.0;
    const QList<VTLayoutKey> lstLayouts = pSymbol->getBreakpointManager()->getAllBreakpointIds(true);
    for (const VTLayoutKey& layout : lstLayouts) {
        LayoutWork work{*pCommand,
                        pTimeline,
                        pElement,
                        layout,
                        pElement->getCurrentLayoutID(),
                        pTimeline->getCurrentTime(),
                        currentEasing(pTimeline)};
        bool bStop = false;
        work.pAnimation = animationFor(work, pSymbol, flags.bAutoKeyframe, lstProperties, bStop);
        if (bStop)
            break;
        if (!work.pAnimation)
            continue;
        for (const Change& change : lstChanges) {
            if (isNeedChangePropAnim(pSymbol, layout, work.pAnimation, change.nProperty))
                updateGeometryTrack(work, flags, change, dLastFactor);
        }
        bAddedAny = bAddedAny || work.bAddedAny;
    }
    if (bAddedAny && !pElement->isExpandedKeyframe())
        pElement->setExpandedKeyframe(true);
}

void VTCanvasKeyframeUpdater::updateTextKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand,
                                                  VTScene* pScene)
{
    if (!pAction || !pCommand || pAction->getId() != Id::ChangeText || pAction->paramCount() < 14)
        return;
    auto* pText = qobject_cast<VTText*>(pAction->getParam(0)->getAsElement());
    VTTimeline* pTimeline =
        pScene ? pScene->getTimelineManager()->getCurrentTimeline() : currentTimeline(pText);
    VTSymbol* pSymbol = symbolOf(pText, *pCommand);
    if (!pText || !pTimeline || !pSymbol)
        return;
    const VTDocument* pDocument = pCommand->getDocument();
    const bool bAutoKeyframe = pDocument && pDocument->isAutoKeyframeMode();

    QList<TextChange> lstChanges;
    QList<int> lstProperties;
    for (const TextValue& entry : s_textValues) {
        const QVariant value = textChange(*pText, entry.nProperty, *pAction->getParam(entry.nParam));
        if (!value.isValid())
            continue;
        lstChanges.append({entry.nProperty, value});
        lstProperties.append(entry.nProperty);
    }
    if (lstChanges.isEmpty())
        return;

    bool bAddedAny = false;
    const QList<VTLayoutKey> lstLayouts = pSymbol->getBreakpointManager()->getAllBreakpointIds(true);
    for (const VTLayoutKey& layout : lstLayouts) {
        LayoutWork work{*pCommand,
                        pTimeline,
                        pText,
                        layout,
                        pText->getCurrentLayoutID(),
                        pTimeline->getCurrentTime(),
                        currentEasing(pTimeline)};
        bool bStop = false;
        work.pAnimation = animationFor(work, pSymbol, bAutoKeyframe, lstProperties, bStop);
        if (bStop)
            break;
        if (!work.pAnimation)
            continue;
        for (const auto& change : qAsConst(lstChanges)) {
            if (isNeedChangePropAnim(pSymbol, layout, work.pAnimation, change.first))
                updateTextTrack(work, bAutoKeyframe, change.first, change.second);
        }
        bAddedAny = bAddedAny || work.bAddedAny;
    }
    if (bAddedAny && !pText->isExpandedKeyframe())
        pText->setExpandedKeyframe(true);
}

void VTCanvasKeyframeUpdater::createActionsToAddAnchorPoint(VTCommand* pCommand,
                                                            VTMotionPathKeyframe* pKeyframe, int nIndex,
                                                            VTAnchorPoint* pAnchor)
{
    std::unique_ptr<VTAnchorPoint> pOwned(pAnchor);
    VTMotionPath* pPath = pKeyframe ? pKeyframe->getMotionPath() : nullptr;
    if (!pCommand || !pPath || !pOwned)
        return;
    const int nKeyTime = pOwned->getKeyTime();
    const QPointF ptPosition = pOwned->getPosition();
    addNewAnchor(*pCommand, pPath, pOwned.release(), nIndex);
    // An anchor at the time of a key makes that key jump; the key is there already.
    if (nKeyTime < 0 || pKeyframe->getKeyValue(nKeyTime))
        return;
    addNewKeyValue(*pCommand, pKeyframe, nKeyTime, QVariant::fromValue(ptPosition),
                   currentEasing(currentTimeline(pKeyframe->getAnimationElement())));
}

void VTCanvasKeyframeUpdater::createActionsToMoveAnchorPoint(
    VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe, int nIndex, const QPointF& ptPosition,
    const QPointF& ptControl1, const QPointF& ptControl2, bool bNoTransitionUpdate)
{
    VTMotionPath* pPath = pKeyframe ? pKeyframe->getMotionPath() : nullptr;
    VTAnchorPoint* pAnchor = pPath ? pPath->getAnchorPointAt(nIndex) : nullptr;
    if (!pCommand || !pAnchor)
        return;
    const QPointF ptOld = pAnchor->getPosition();
    addAnchorData(*pCommand, pPath, pAnchor, ptPosition, ptControl1, ptControl2);
    const bool bMoved = std::abs(ptPosition.x() - ptOld.x()) > kAnchorMoved ||
                        std::abs(ptPosition.y() - ptOld.y()) > kAnchorMoved;
    if (!pAnchor->hasKeyTime() || !bMoved)
        return;
    const int nTime = pAnchor->getKeyTime();
    VTKeyValue* pKey = pKeyframe->getKeyValue(nTime);
    if (!pKey)
        return;
    const QVariant position = QVariant::fromValue(ptPosition);
    const QList<int> lstIndexes = pPath->getKeyPointIndexes(nTime);
    if (lstIndexes.size() > 1) {
        // A jump: the first anchor is where the motion arrives, the other where it leaves.
        if (lstIndexes.first() != nIndex)
            addChangeKeyValue(*pCommand, pKeyframe, pKey, position, pKey->getValueMinus());
        else
            addChangeKeyValue(*pCommand, pKeyframe, pKey, pKey->getValue(), position);
        return;
    }
    const bool bWasEven = pKey->getValue() == pKey->getValueMinus();
    addChangeKeyValue(*pCommand, pKeyframe, pKey, position, position);
    if (bNoTransitionUpdate || !pKeyframe->canHaveTransition() || !bWasEven)
        return;
    // A segment between two equal points has nothing to move and no transition; one that gets
    // length again moves once more.
    const auto segments = pKeyframe->getAdjacentSegments(pKey);
    if (VTKeyValue* pStart = segments.first ? segments.first->getStartKeyValue() : nullptr) {
        const bool bTransition = pStart->getValue() != position;
        if (segments.first->hasTransition() != bTransition)
            addSetTransition(*pCommand, pKeyframe, pStart, bTransition);
    }
    if (VTKeyValue* pEnd = segments.second ? segments.second->getEndKeyValue() : nullptr) {
        const bool bTransition = pEnd->getValueMinus() != position;
        if (segments.second->hasTransition() != bTransition)
            addSetTransition(*pCommand, pKeyframe, pKey, bTransition);
    }
}
