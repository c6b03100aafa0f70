#include "VTGroupLayoutBuilder.h"

#include "VTAnchorPoint.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMatrix4x4.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTSelectionBuilder.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

// Values that went through float matrices or unit conversions are compared with room for that.
bool isNearlyEqual(double dA, double dB)
{
    return std::abs(dA - dB) <= 1e-4 * std::max({1.0, std::abs(dA), std::abs(dB)});
}

// The inherit flag that stands for a property: both horizontal sides share one, and so do both
// vertical ones.
int inheritId(int nProperty)
{
    if (nProperty == VT::PropRight)
        return VT::PropLeft;
    if (nProperty == VT::PropBottom)
        return VT::PropTop;
    return nProperty;
}

double presentValue(const VTElement* pElement, int nProperty)
{
    const QByteArray name = VTAnimatedProperty::getPropertyName(nProperty);
    return name.isEmpty() ? 0.0 : pElement->property(name.constData()).toDouble();
}

// One property's new value with what is needed to move its keyframes along.
struct Entry
{
    int nProperty = 0;
    double dValue = 0.0;
    QPointF ptValue;
    // Percent values convert through the parent's size: new value times the new factor is pixels,
    // and old values times the old factor were.
    bool bFactors = false;
    double dNewFactor = 1.0;
    double dOldFactor = 1.0;
};

// Turns a value of the new parent's pixel frame into what the element stores.
Entry makeEntry(const VTElement& e, int nProperty, double dValue, const QSizeF& oldSize,
                const QSizeF& newSize, double dTotalW, double dTotalH, double dW, double dH)
{
    Entry entry;
    entry.nProperty = nProperty;
    const int nType = e.getCoordinateType();
    const auto share = [&](double dPixels, double dNew, double dOld) {
        entry.bFactors = true;
        entry.dNewFactor = dNew;
        entry.dOldFactor = dOld;
        return dNew != 0.0 ? dPixels / dNew : 0.0;
    };
    switch (nProperty) {
    case VT::PropLeft:
        if (nType == VT::RightTop || nType == VT::RightBottom) {
            entry.nProperty = VT::PropRight;
            dValue = newSize.width() - dTotalW - dValue;
        }
        if (e.getUnitX() == VT::Percent)
            dValue = share(dValue, newSize.width(), oldSize.width());
        break;
    case VT::PropTop:
        if (nType == VT::RightBottom || nType == VT::LeftBottom) {
            entry.nProperty = VT::PropBottom;
            dValue = newSize.height() - dTotalH - dValue;
        }
        if (e.getUnitY() == VT::Percent)
            dValue = share(dValue, newSize.height(), oldSize.height());
        break;
    case VT::PropWidth:
        if (e.getUnitW() == VT::Percent)
            dValue = share(dValue, newSize.width(), oldSize.width());
        else if (e.getUnitW() == VT::Ratio)
            dValue = dH != 0.0 ? dValue / dH : 0.0;
        break;
    case VT::PropHeight:
        if (e.getUnitH() == VT::Percent)
            dValue = share(dValue, newSize.height(), oldSize.height());
        // The stored ratio is height over width, as the geometry reads it.
        else if (e.getUnitH() == VT::Ratio)
            dValue = dW != 0.0 ? dValue / dW : 0.0;
        break;
    default:
        break;
    }
    entry.dValue = dValue;
    return entry;
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

// Moves a keyframe by the change its property went through, so the animation keeps its course
// relative to the new parent.
void shiftKeyframe(VTCommand& command, VTKeyframe* pKeyframe, const Entry& entry, double dDelta,
                   const QPointF& ptDelta)
{
    const auto shift = [&](const QVariant& value) -> QVariant {
        if (entry.nProperty == VT::PropLocation)
            return QVariant::fromValue(value.toPointF() + ptDelta);
        if (entry.bFactors)
            return entry.dNewFactor != 0.0 ? (value.toDouble() * entry.dOldFactor + dDelta) / entry.dNewFactor
                                           : 0.0;
        return value.toDouble() + dDelta;
    };
    for (VTKeyValue* pKey : pKeyframe->getKeyValues())
        addChangeKeyValue(command, pKeyframe, pKey, shift(pKey->getValue()), shift(pKey->getValueMinus()));
    auto* pMotion = qobject_cast<VTMotionPathKeyframe*>(pKeyframe);
    VTMotionPath* pPath = pMotion ? pMotion->getMotionPath() : nullptr;
    if (!pPath)
        return;
    for (VTAnchorPoint* pAnchor : pPath->getAnchorPoints()) {
        auto* pAction = new VTCommandAction(VTCommandAction::SetAnchorPointData, command.getDocument(), 5);
        pAction->addParam(pPath, false);
        pAction->addParam(pAnchor, false);
        pAction->addParam(pAnchor->getPosition() + ptDelta);
        pAction->addParam(pAnchor->getControlPoint1() + ptDelta);
        pAction->addParam(pAnchor->getControlPoint2() + ptDelta);
        command.addAction(pAction);
    }
}

// Where the element goes under the new parent, and the transform it must take there, so that it
// stays where it is on the stage: its pivot lands where it was, and the rest of the old parents'
// transforms passes into its own.
void computeReparent(const VTElement& element, const VTElement& oldParent, const VTElement& newParent,
                     const VTElement* pAncestor, QPointF& ptOffset, VTMatrix4x4& matrix)
{
    const VTLayoutKey key = element.getCurrentLayoutID();
    const QPointF ptPivot(element.getOriginRatioX() * element.getComputedTotalW(),
                          element.getOriginRatioY() * element.getComputedTotalH());
    const double dOriginZ = element.getOriginZ();
    const QPointF ptLeftTop = element.getComputedLeftTop();
    const double dOldContent = oldParent.getContentBoxOffset(key);
    const double dNewContent = newParent.getContentBoxOffset(key);
    const VTMatrix4x4 toNewParent = oldParent.getTransformToElement(&newParent, key, pAncestor);
    const QPointF ptPivotThere =
        toNewParent.map(dOldContent + ptLeftTop.x() + ptPivot.x(), dOldContent + ptLeftTop.y() + ptPivot.y());
    const QPointF ptNewLeftTop = ptPivotThere - ptPivot - QPointF(dNewContent, dNewContent);
    ptOffset = ptNewLeftTop - ptLeftTop;

    matrix.identity();
    matrix.translate(-(dNewContent + ptNewLeftTop.x() + ptPivot.x()),
                     -(dNewContent + ptNewLeftTop.y() + ptPivot.y()), -dOriginZ);
    matrix.multiply(element.getTransformMatrixWhenReparent(&newParent, key));
    matrix.translate(ptPivot.x(), ptPivot.y(), dOriginZ);
}

} // namespace

void VTGroupLayoutBuilder::createActionsToLayoutElementWhenGrouping(VTCommand& command, VTElement* pElement,
                                                                    QMap<int, double>& mapBaseValues,
                                                                    const QSizeF& oldParentSize,
                                                                    const QSizeF& newParentSize,
                                                                    const QMap<int, double>& mapValues)
{
    if (!pElement || !VTBuilderSupport::currentScene(command))
        return;
    VTElement& e = *pElement;
    const VTLayoutKey layout = e.getCurrentLayoutID();
    const bool bBase = layout.isBase();
    const double dTotalW = mapValues.value(VT::PropWidth, e.getComputedTotalW());
    const double dTotalH = mapValues.value(VT::PropHeight, e.getComputedTotalH());
    const double dW = mapValues.value(VT::PropWidth, e.getComputedW());
    const double dH = mapValues.value(VT::PropHeight, e.getComputedH());

    auto* pGeometry =
        new VTElementCommandAction(VTElementCommandAction::ChangeGeometry, command.getDocument());
    pGeometry->prepareChangeGeometryParams(pElement);
    QMap<int, bool> mapInherits;
    QList<VTAnimation*> lstAnimations;
    QMap<VTAnimation*, QMap<int, bool>> mapAnimationInherits;
    const auto* pScene = qobject_cast<const VTScene*>(e.getScene());
    const QList<VTTimeline*> lstTimelines =
        pScene ? pScene->getTimelineManager()->getTimelines() : QList<VTTimeline*>();
    bool bTranslated = false;

    for (auto it = mapValues.cbegin(); it != mapValues.cend(); ++it) {
        Entry entry;
        double dDelta = 0.0;
        QPointF ptDelta;
        bool bOverride = false;
        if (it.key() == VT::PropTranslateX || it.key() == VT::PropTranslateY) {
            // The two translations move together, as the location keyframe holds them.
            if (bTranslated)
                continue;
            bTranslated = true;
            entry.nProperty = VT::PropLocation;
            entry.ptValue = QPointF(mapValues.value(VT::PropTranslateX, e.getTranslateX()),
                                    mapValues.value(VT::PropTranslateY, e.getTranslateY()));
            pGeometry->setChangeGeometryProperty(VT::PropTranslateX, entry.ptValue.x());
            pGeometry->setChangeGeometryProperty(VT::PropTranslateY, entry.ptValue.y());
            const QPair<int, double> axes[] = {{VT::PropTranslateX, entry.ptValue.x()},
                                               {VT::PropTranslateY, entry.ptValue.y()}};
            for (const auto& axis : axes) {
                if (bBase) {
                    mapBaseValues[axis.first] = axis.second;
                } else if (!mapBaseValues.contains(axis.first) ||
                           !isNearlyEqual(mapBaseValues.value(axis.first), axis.second)) {
                    mapInherits[axis.first] = false;
                    bOverride = true;
                }
            }
            ptDelta = entry.ptValue - QPointF(e.getTranslateX(), e.getTranslateY());
        } else {
            entry =
                makeEntry(e, it.key(), it.value(), oldParentSize, newParentSize, dTotalW, dTotalH, dW, dH);
            pGeometry->setChangeGeometryProperty(static_cast<VT::ElementProperty>(entry.nProperty),
                                                 entry.dValue);
            // A layout keeps inheriting for as long as it agrees with the base.
            if (bBase) {
                mapBaseValues[entry.nProperty] = entry.dValue;
            } else if (!mapBaseValues.contains(entry.nProperty) ||
                       !isNearlyEqual(mapBaseValues.value(entry.nProperty), entry.dValue)) {
                mapInherits[inheritId(entry.nProperty)] = false;
                bOverride = true;
            }
            const double dPresent = presentValue(pElement, entry.nProperty);
            dDelta = entry.bFactors ? entry.dValue * entry.dNewFactor - dPresent * entry.dOldFactor
                                    : entry.dValue - dPresent;
        }

        for (VTTimeline* pTimeline : lstTimelines) {
            VTAnimation* pAnimation = pTimeline->getAnimation(pElement, layout);
            VTKeyframe* pKeyframe =
                pAnimation ? pAnimation->getKeyframe(static_cast<VT::ElementProperty>(entry.nProperty))
                           : nullptr;
            if (!pKeyframe)
                continue;
            if (bOverride) {
                if (!lstAnimations.contains(pAnimation))
                    lstAnimations.append(pAnimation);
                mapAnimationInherits[pAnimation][entry.nProperty] = false;
            }
            shiftKeyframe(command, pKeyframe, entry, dDelta, ptDelta);
        }
    }

    const QList<int> lstChanged =
        pGeometry->getParam(4) ? pGeometry->getParam(4)->getAsIntList() : QList<int>();
    if (lstChanged.isEmpty()) {
        delete pGeometry;
    } else {
        // The action applies the inherit changes of this layout alone; the base has none.
        pGeometry->getParam(3)->setValue(bBase ? QMap<int, bool>() : mapInherits);
        command.addAction(pGeometry);
    }
    for (VTAnimation* pAnimation : qAsConst(lstAnimations)) {
        auto* pAction =
            new VTCommandAction(VTCommandAction::ChangeAnimationInherits, command.getDocument(), 2);
        pAction->addParam(pAnimation, false);
        pAction->addParam(mapAnimationInherits.value(pAnimation));
        command.addAction(pAction);
    }
}

void VTGroupLayoutBuilder::createActionsToLayoutElementWhenGrouping(
    VTCommand& command, VTElement* pElement, QMap<int, double>& mapBaseValues, const QSizeF& oldParentSize,
    const QSizeF& newParentSize, const QPointF* pOffset, const QSizeF* pSize, const VTMatrix4x4* pMatrix)
{
    if (!pElement)
        return;
    const VTElement& e = *pElement;
    const int nType = e.getCoordinateType();
    const bool bWidthChanged = !isNearlyEqual(oldParentSize.width(), newParentSize.width());
    const bool bHeightChanged = !isNearlyEqual(oldParentSize.height(), newParentSize.height());
    QMap<int, double> mapValues;
    if (pOffset) {
        // Values kept relative to the far edge or to the parent's size change with the parent
        // even where the element does not move.
        const bool bFromRight = nType == VT::RightTop || nType == VT::RightBottom;
        const bool bFromBottom = nType == VT::RightBottom || nType == VT::LeftBottom;
        if (!isNearlyEqual(pOffset->x(), 0.0) ||
            (bWidthChanged && (bFromRight || e.getUnitX() == VT::Percent)))
            mapValues[VT::PropLeft] = e.getComputedLeft() + pOffset->x();
        if (!isNearlyEqual(pOffset->y(), 0.0) ||
            (bHeightChanged && (bFromBottom || e.getUnitY() == VT::Percent)))
            mapValues[VT::PropTop] = e.getComputedTop() + pOffset->y();
    }
    if (pSize) {
        if (!isNearlyEqual(pSize->width(), e.getComputedW()))
            mapValues[VT::PropWidth] = pSize->width();
        if (!isNearlyEqual(pSize->height(), e.getComputedH()))
            mapValues[VT::PropHeight] = pSize->height();
    } else {
        if (bWidthChanged && e.getUnitW() == VT::Percent)
            mapValues[VT::PropWidth] = e.getComputedW();
        if (bHeightChanged && e.getUnitH() == VT::Percent)
            mapValues[VT::PropHeight] = e.getComputedH();
    }
    VTMatrix4x4Component component;
    if (pMatrix && pMatrix->decompose(component)) {
        const auto compare = [&](int nProperty, float fValue) {
            if (!isNearlyEqual(presentValue(pElement, nProperty), double(fValue)))
                mapValues[nProperty] = double(fValue);
        };
        compare(VT::PropTranslateX, component.m_fTranslateX);
        compare(VT::PropTranslateY, component.m_fTranslateY);
        compare(VT::PropTranslateZ, component.m_fTranslateZ);
        if (!pMatrix->canTranslateTo(e.getTransformMatrix())) {
            compare(VT::PropRotateX, component.m_fRotateX);
            compare(VT::PropRotateY, component.m_fRotateY);
            compare(VT::PropRotateZ, component.m_fRotateZ);
            compare(VT::PropScaleX, component.m_fScaleX);
            compare(VT::PropScaleY, component.m_fScaleY);
            compare(VT::PropScaleZ, component.m_fScaleZ);
        }
    }
    createActionsToLayoutElementWhenGrouping(command, pElement, mapBaseValues, oldParentSize, newParentSize,
                                             mapValues);
}

void VTGroupLayoutBuilder::createActionsToDragElement(VTCommand& command, QList<VTElement*> lstElements,
                                                      VTElement* pTarget, int nPosition)
{
    enum Drop : int
    {
        DropAbove = 1 | 4 | 16,
        DropBelow = 2 | 8,
        DropBelowLeaveGroup = 2,
        DropIntoFirst = 32,
        DropIntoLast = 64,
    };
    VTScene* pScene = VTBuilderSupport::currentScene(command);
    if (nPosition == 0 || !pTarget || !pScene)
        return;
    if (nPosition & (DropAbove | DropIntoLast))
        std::reverse(lstElements.begin(), lstElements.end());

    VTElement* pTargetParent = pTarget->getParent();
    int i = pTargetParent ? pTargetParent->getChildIndex(pTarget) : 0;
    QSet<VTElement*> setKeep;
    QSet<VTElement*> setSelectedParents;
    QList<QPair<VTElement*, VTElement*>> lstMoves;
    for (VTElement* pElement : qAsConst(lstElements)) {
        if (!pElement || (pElement == pTarget && !(nPosition & DropBelowLeaveGroup)))
            continue;
        VTElement* pNewParent = nullptr;
        int nIndex = -1;
        const bool bSameParent = pElement->getParent() == pTargetParent;
        const int j = bSameParent && pTargetParent ? pTargetParent->getChildIndex(pElement) : -1;
        if (nPosition & DropAbove) {
            pNewParent = pTargetParent;
            if (bSameParent) {
                if (j == i)
                    continue;
                if (i < j) {
                    ++i;
                    if (i == j)
                        continue;
                    nIndex = i;
                } else {
                    nIndex = i + 1;
                }
            } else {
                nIndex = i + 1;
            }
        } else if (nPosition & DropBelow) {
            pNewParent = pTargetParent;
            if ((nPosition & DropBelowLeaveGroup) && pNewParent &&
                pNewParent->getType() == VT::GroupElement) {
                pNewParent = pNewParent->getScene();
                nIndex = 0;
            } else if (bSameParent) {
                if (j == i)
                    continue;
                if (j < i)
                    --i;
                nIndex = std::max(0, i);
                if (nIndex == j)
                    continue;
            } else {
                nIndex = i;
            }
        } else if (nPosition & DropIntoFirst) {
            if (pElement->getParent() == pTarget)
                continue;
            pNewParent = pTarget;
            nIndex = 0;
        } else if (nPosition & DropIntoLast) {
            pNewParent = pTarget;
            nIndex = -1;
        }
        // Nothing goes into itself, into its own subtree or into a locked element.
        if (!pNewParent || pNewParent == pElement || pElement->isParentOf(pNewParent) ||
            pNewParent->isLocked())
            continue;

        VTElement* pOldParent = pElement->getParent();
        const bool bReparent = pOldParent != pNewParent;
        if (bReparent && !pNewParent->isVisible()) {
            auto* pHide =
                new VTElementCommandAction(VTElementCommandAction::SetVisible, command.getDocument(), 2);
            pHide->addParam(pElement, false);
            pHide->addParam(false);
            command.addAction(pHide);
        }
        if (!pNewParent->isSelected() && !setSelectedParents.contains(pNewParent)) {
            setSelectedParents.insert(pNewParent);
            VTSelectionBuilder::createActionsForSelectElement(command, pNewParent, true);
        }
        auto* pSelect = new VTCommandAction(VTCommandAction::SelectElement, command.getDocument(), 2);
        pSelect->addParam(pElement, false);
        pSelect->addParam(true);
        command.addAction(pSelect);
        setKeep.insert(pElement);
        for (VTElement* pKeep = pNewParent; pKeep; pKeep = pKeep->getParent())
            setKeep.insert(pKeep);

        auto* pMove = new VTCommandAction(VTCommandAction::ReparentElement, command.getDocument(), 5);
        pMove->addParam(pElement, false);
        pMove->addParam(pOldParent, false);
        pMove->addParam(-1);
        pMove->addParam(pNewParent, false);
        pMove->addParam(nIndex);
        command.addAction(pMove);
        if (bReparent)
            lstMoves.append(qMakePair(pElement, pNewParent));
    }

    // Every layout re-expresses the moved elements in their new parents' frames.
    const VTBreakpointManager* pBreakpoints = VTBuilderSupport::currentBreakpoints(command);
    const QList<VTLayoutKey> lstLayouts =
        pBreakpoints ? pBreakpoints->getAllBreakpointIds(true) : QList<VTLayoutKey>{VTLayoutKey::base()};
    QMap<VTElement*, QMap<int, double>> mapBaseValues;
    if (!lstMoves.isEmpty()) {
        VTLayoutSwitch shown(pScene, lstLayouts.value(0, VTLayoutKey::base()));
        for (const VTLayoutKey& key : lstLayouts) {
            shown.switchTo(key);
            for (const auto& move : qAsConst(lstMoves)) {
                VTElement* pElement = move.first;
                VTElement* pNewParent = move.second;
                const VTElement* pOldParent = pElement->getParent();
                if (!pOldParent || !pElement->getLayoutProperty(key))
                    continue;
                QPointF ptOffset;
                VTMatrix4x4 matrix;
                computeReparent(*pElement, *pOldParent, *pNewParent,
                                pOldParent->getCommonAncestor(pNewParent), ptOffset, matrix);
                createActionsToLayoutElementWhenGrouping(
                    command, pElement, mapBaseValues[pElement], pOldParent->getComputedSize(),
                    pNewParent->getComputedSize(), &ptOffset, nullptr, &matrix);
            }
        }
    }

    if (command.isEmpty())
        return;
    for (VTElement* pSelected : VTBuilderSupport::collectSelected(pScene)) {
        if (setKeep.contains(pSelected))
            continue;
        auto* pDeselect = new VTCommandAction(VTCommandAction::SelectElement, command.getDocument(), 2);
        pDeselect->addParam(pSelected, false);
        pDeselect->addParam(false);
        command.addAction(pDeselect);
    }
}
