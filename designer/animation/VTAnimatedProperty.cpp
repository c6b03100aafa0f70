#include "VTAnimatedProperty.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTDivProperty.h"
#include "VTElement.h"
#include "VTElementProperty.h"
#include "VTElementPropertyInfo.h"
#include "VTFilterEffect.h"
#include "VTFreeFormShape.h"
#include "VTImage.h"
#include "VTShadow.h"
#include "VTText.h"
#include "VTTypes.h"

#include <QColor>
#include <QJsonArray>
#include <QMetaObject>
#include <QObject>
#include <QPointF>

#include <climits>
#include <cmath>

namespace {

constexpr QPair<int, int> kNoRange{INT_MIN, INT_MAX};

bool isBetween(int nValue, int nFirst, int nLast)
{
    return nValue >= nFirst && nValue <= nLast;
}

// The numbers a keyframe can carry, the not animatable 22, 84 and 85 included; the numbers in
// between are settings that layouts override but no track holds.
bool isKeyframeProperty(int nProperty)
{
    return isBetween(nProperty, VT::PropLeft, VT::PropPlayback) ||
           isBetween(nProperty, VT::PropClipRectTop, VT::PropClipCircleRadius) ||
           isBetween(nProperty, VT::PropShadowBlurRadius, VT::PropScaleZ) ||
           isBetween(nProperty, VT::PropPerspectiveOriginX, VT::PropPerspectiveOriginZ);
}

// In the unit shown to the user, so that the spin boxes of the timeline take them as they are.
bool findRange(int nProperty, QPair<int, int>& range)
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
    case VT::PropTop:
    case VT::PropBottom:
    case VT::PropScaleX:
    case VT::PropScaleY:
    case VT::PropOriginX:
    case VT::PropOriginY:
    case VT::PropLetterSpacing:
    case VT::PropWordSpacing:
    case VT::PropTextIndent:
    case VT::PropBackgroundX:
    case VT::PropBackgroundY:
    case VT::PropOriginZ:
    case VT::PropTranslateX:
    case VT::PropTranslateY:
    case VT::PropTranslateZ:
    case VT::PropScaleZ:
    case VT::PropPerspectiveOriginX:
    case VT::PropPerspectiveOriginY:
        range = {-10000, 10000};
        return true;
    case VT::PropWidth:
    case VT::PropHeight:
    case VT::PropBorderWidth:
    case VT::PropLineHeight:
    case VT::PropBackgroundWidth:
    case VT::PropBackgroundHeight:
    case VT::PropTopLeftRadius:
    case VT::PropTopRightRadius:
    case VT::PropBottomLeftRadius:
    case VT::PropBottomRightRadius:
    case VT::PropClipRectTop:
    case VT::PropClipRectRight:
    case VT::PropClipRectBottom:
    case VT::PropClipRectLeft:
    case VT::PropClipOvalVertex:
    case VT::PropClipOvalCoVertex:
    case VT::PropClipCircleRadius:
        range = {0, 10000};
        return true;
    case VT::PropSkewX:
    case VT::PropSkewY:
        range = {-60, 60};
        return true;
    case VT::PropRotateZ:
    case VT::PropGradientAngle:
    case VT::PropShadowAngle:
    case VT::PropRotateX:
    case VT::PropRotateY:
        range = {-36000, 36000};
        return true;
    case VT::PropOpacity:
    case VT::PropGradientOriginX:
    case VT::PropGradientOriginY:
    case VT::PropVolume:
    case VT::PropInvertFilter:
    case VT::PropSepiaFilter:
    case VT::PropGrayscaleFilter:
        range = {0, 100};
        return true;
    case VT::PropFontSize:
        range = {0, 256};
        return true;
    case VT::PropShadowBlurRadius:
        range = {0, 50};
        return true;
    case VT::PropShadowDistance:
        range = {0, 1000};
        return true;
    case VT::PropHueFilter:
        range = {0, 360};
        return true;
    case VT::PropContrastFilter:
        range = {0, 200};
        return true;
    case VT::PropBrightnessFilter:
        range = {0, 400};
        return true;
    case VT::PropSaturateFilter:
        range = {0, 1000};
        return true;
    case VT::PropBlurFilter:
        range = {0, 300};
        return true;
    case VT::PropPerspectiveOriginZ:
        // A perspective distance of 0 is no perspective at all.
        range = {1, 10000};
        return true;
    default:
        return false;
    }
}

// Percent values that the player takes as plain numbers and scales itself; other percent values
// reach it as CSS lengths.
bool isNumericPercent(int nProperty)
{
    switch (nProperty) {
    case VT::PropScaleX:
    case VT::PropScaleY:
    case VT::PropOpacity:
    case VT::PropGradientOriginX:
    case VT::PropGradientOriginY:
    case VT::PropLineHeight:
    case VT::PropVolume:
    case VT::PropScaleZ:
        return true;
    default:
        return false;
    }
}

// Key values come from files and arithmetic; JSON has no room for infinities and rounding them is
// undefined, so they count as 0.
double finiteOf(double dValue)
{
    return std::isfinite(dValue) ? dValue : 0.0;
}

int roundedOf(const QVariant& value)
{
    const double dValue = finiteOf(value.toDouble());
    if (dValue >= double(INT_MAX))
        return INT_MAX;
    if (dValue <= double(INT_MIN))
        return INT_MIN;
    return qRound(dValue);
}

QJsonValue exportValue(int nProperty, const QString& unit, const QVariant& value, bool bPrecise)
{
    if (unit == QLatin1String("%")) {
        const double dPercent = finiteOf(value.toDouble() * 100.0);
        if (isNumericPercent(nProperty))
            return dPercent;
        return QJsonValue(QString::number(dPercent, 'g', 6) + QLatin1Char('%'));
    }
    if (unit == QLatin1String("color")) {
        const QColor color = value.value<QColor>();
        return QJsonArray{color.red(), color.green(), color.blue(), color.alpha()};
    }
    if (nProperty == VT::PropGradientAngle)
        return bPrecise ? QJsonValue(finiteOf(value.toDouble())) : QJsonValue(roundedOf(value));
    if (nProperty == VT::PropLocation) {
        const QPointF ptValue = value.toPointF();
        return QJsonArray{finiteOf(ptValue.x()), finiteOf(ptValue.y())};
    }
    if (bPrecise)
        return QJsonValue(QString::number(finiteOf(value.toDouble()), 'g', 6) + unit);
    return QJsonValue(QString::number(roundedOf(value)) + unit);
}

// Where a value lives inside one layout's block: the block itself or one of its sub-objects.
QObject* getHolderInBlock(VTElementProperty* pBlock, int nProperty)
{
    if (!pBlock)
        return nullptr;
    if (isBetween(nProperty, VT::PropBorderWidth, VT::PropBorderColor))
        return pBlock->getBorder();
    if (isBetween(nProperty, VT::PropBackgroundColor, VT::PropGradientRadius))
        return pBlock->getBackground();
    if (isBetween(nProperty, VT::PropTopLeftRadius, VT::PropBottomRightRadius)) {
        const VTDivProperty* pDivBlock = qobject_cast<const VTDivProperty*>(pBlock);
        return pDivBlock ? pDivBlock->getCorner() : nullptr;
    }
    if (isBetween(nProperty, VT::PropClipRectTop, VT::PropClipCircleRadius))
        return pBlock->getClip();
    if (isBetween(nProperty, VT::PropShadowBlurRadius, VT::PropShadowColor))
        return pBlock->getShadow();
    if (isBetween(nProperty, VT::PropInvertFilter, VT::PropBlurFilter))
        return pBlock->getFilter();
    return pBlock;
}

bool hasQtProperty(const QObject* pObject, const QByteArray& name)
{
    return pObject && pObject->metaObject()->indexOfProperty(name.constData()) >= 0;
}

// -1 where the layout has no block or the block holds no such value.
int getValueUnit(const VTElement& element, int nProperty, const VTLayoutKey& key)
{
    const VTElementProperty* pBlock = element.getLayoutProperty(key);
    return pBlock ? pBlock->getPropertyUnit(nProperty) : -1;
}

// A track keeps its numbers when carried between layouts, so they must mean the same there.
bool hasSameUnit(const VTElement& element, int nProperty, const VTLayoutKey& from, const VTLayoutKey& to)
{
    const int nUnit = getValueUnit(element, nProperty, to);
    return nUnit >= 0 && nUnit == getValueUnit(element, nProperty, from);
}

int getClipStyle(const VTElement& element, const VTLayoutKey& key)
{
    const VTClip* pClip = element.getClip(key);
    return pClip ? pClip->getStyle() : -1;
}

bool hasClipStyle(const VTElement& element, int nStyle, const VTLayoutKey& from, const VTLayoutKey& to)
{
    return getClipStyle(element, from) == nStyle && getClipStyle(element, to) == nStyle;
}

bool hasDropShadow(const VTElement& element, const VTLayoutKey& key)
{
    const VTShadow* pShadow = element.getShadow(key);
    return pShadow && pShadow->getStyle() == VTShadow::DropShadow;
}

bool hasFill(const VTElement& element, int nFillStyle, const VTLayoutKey& key)
{
    const VTBackground* pBackground = element.getBackground(key);
    return pBackground && pBackground->getFillStyle() == nFillStyle;
}

bool hasGradient(const VTElement& element, int nGradientType, const VTLayoutKey& key)
{
    const VTBackground* pBackground = element.getBackground(key);
    return pBackground && pBackground->getFillStyle() == VTBackground::Gradient &&
           pBackground->getGradientType() == nGradientType;
}

bool isSceneProperty(int nProperty)
{
    switch (nProperty) {
    case VT::PropWidth:
    case VT::PropHeight:
    case VT::PropBackgroundColor:
    case VT::PropGradientAngle:
    case VT::PropGradientOriginX:
    case VT::PropGradientOriginY:
    case VT::PropPerspectiveOriginX:
    case VT::PropPerspectiveOriginY:
    case VT::PropPerspectiveOriginZ:
        return true;
    default:
        return false;
    }
}

} // namespace

QByteArray VTAnimatedProperty::getPropertyName(int nProperty)
{
    if (!isKeyframeProperty(nProperty))
        return QByteArray();
    return VTElementPropertyInfo::getPropertyNameByType(nProperty).toLatin1();
}

QString VTAnimatedProperty::getName(int nProperty)
{
    return isKeyframeProperty(nProperty) ? VTElementPropertyInfo::getNameByType(nProperty) : QString();
}

QString VTAnimatedProperty::getName_NoTR(int nProperty)
{
    return isKeyframeProperty(nProperty) ? VTElementPropertyInfo::getNameByType_NoTR(nProperty) : QString();
}

QString VTAnimatedProperty::getExportName(int nProperty)
{
    // The gradient radius has a Qt property but the player has no track for it.
    if (!isKeyframeProperty(nProperty) || nProperty == VT::PropGradientRadius)
        return QString();
    return VTElementPropertyInfo::getExportedPropertyNameByType(nProperty);
}

QString VTAnimatedProperty::getGroupName(int nProperty, bool bTranslate)
{
    if (!isKeyframeProperty(nProperty))
        return QString();
    return VTElementPropertyInfo::getGroupNameByPropType(nProperty, bTranslate);
}

QPair<int, int> VTAnimatedProperty::getMinMax(int nProperty)
{
    QPair<int, int> range = kNoRange;
    findRange(nProperty, range);
    return range;
}

bool VTAnimatedProperty::hasRange(int nProperty)
{
    QPair<int, int> range;
    return findRange(nProperty, range);
}

QString VTAnimatedProperty::getUnitSign(const VTElement* pElement, int nProperty, const VTLayoutKey& key)
{
    if (!isKeyframeProperty(nProperty))
        return QString();
    const VTElementProperty* pBlock = pElement ? pElement->getLayoutProperty(key) : nullptr;
    return VTElementPropertyInfo::getPropUnitSign(nProperty, pBlock);
}

QObject* VTAnimatedProperty::getTargetObject(VTElement* pElement, int nProperty, const VTLayoutKey& key)
{
    const QByteArray name = getPropertyName(nProperty);
    // The gradient radius keeps its Qt property for the inspector, but no track writes it.
    if (!pElement || name.isEmpty() || nProperty == VT::PropGradientRadius)
        return nullptr;
    if (hasQtProperty(pElement, name))
        return pElement;
    QObject* pHolder =
        getHolderInBlock(pElement->getLayoutProperty(pElement->resolveLayoutKey(key)), nProperty);
    return hasQtProperty(pHolder, name) ? pHolder : nullptr;
}

const QVector<int>& VTAnimatedProperty::getAnimatedProps()
{
    static const QVector<int> vecProps = VTElementPropertyInfo::getAnimatedProps().toVector();
    return vecProps;
}

bool VTAnimatedProperty::isAnimatedProp(int nProperty)
{
    return VTElementPropertyInfo::isAnimatedProp(nProperty);
}

bool VTAnimatedProperty::canAnimate(const VTElement* pElement, int nProperty)
{
    if (!pElement || !isAnimatedProp(nProperty))
        return false;
    return VTElementPropertyInfo::canAnimate(pElement->getType(), nProperty);
}

bool VTAnimatedProperty::canHaveTransition(int nProperty)
{
    return nProperty != VT::PropDisplay;
}

bool VTAnimatedProperty::canAddAnimationType(const VTElement* pElement, int nProperty,
                                             const VTLayoutKey& from, const VTLayoutKey& to)
{
    if (!pElement || nProperty < 0 || nProperty >= VT::ElementPropertyCount)
        return false;
    const VTElement& element = *pElement;
    const int nKind = element.getType();
    if (nKind == VT::SceneElement && !isSceneProperty(nProperty))
        return false;

    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight: {
        // A track of the left edge means nothing to an element placed from the right.
        const int nType = element.getCoordinateType(to);
        const bool bFromLeft = nType == VT::LeftTop || nType == VT::LeftBottom;
        return bFromLeft == (nProperty == VT::PropLeft) && hasSameUnit(element, nProperty, from, to);
    }
    case VT::PropTop:
    case VT::PropBottom: {
        const int nType = element.getCoordinateType(to);
        const bool bFromTop = nType == VT::LeftTop || nType == VT::RightTop;
        return bFromTop == (nProperty == VT::PropTop) && hasSameUnit(element, nProperty, from, to);
    }
    case VT::PropWidth:
    case VT::PropHeight:
        // A size held as a ratio of the other dimension is computed, not animated.
        return getValueUnit(element, nProperty, to) != VT::Ratio && hasSameUnit(element, nProperty, from, to);
    case VT::PropBorderWidth:
    case VT::PropBorderColor: {
        if (nKind == VT::AudioElement || nKind == VT::VideoElement || nKind == VT::SymbolElement)
            return false;
        const VTBorder* pBorder = element.getBorder(to);
        return pBorder && pBorder->getStyle() != VTBorder::None;
    }
    case VT::PropBackgroundColor:
        return hasFill(element, VTBackground::Solid, to);
    case VT::PropGradientAngle:
        return hasGradient(element, VTBackground::Linear, to);
    case VT::PropGradientOriginX:
    case VT::PropGradientOriginY:
        return hasGradient(element, VTBackground::Radial, to);
    case VT::PropTextColor:
    case VT::PropHighlightColor:
    case VT::PropFontSize:
    case VT::PropLetterSpacing:
    case VT::PropWordSpacing:
    case VT::PropLineHeight:
    case VT::PropTextIndent: {
        if (!qobject_cast<const VTText*>(pElement))
            return false;
        const VTFreeFormShape* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement);
        return !pFreeForm || !pFreeForm->isLine(to);
    }
    case VT::PropBackgroundX:
    case VT::PropBackgroundY:
    case VT::PropBackgroundWidth:
    case VT::PropBackgroundHeight:
        return qobject_cast<const VTImage*>(pElement) && hasSameUnit(element, nProperty, from, to);
    case VT::PropVolume:
        return nKind == VT::AudioElement || nKind == VT::VideoElement;
    case VT::PropTopLeftRadius:
    case VT::PropTopRightRadius:
    case VT::PropBottomLeftRadius:
    case VT::PropBottomRightRadius:
        return qobject_cast<const VTDiv*>(pElement) && hasSameUnit(element, nProperty, from, to);
    case VT::PropClipRectTop:
    case VT::PropClipRectRight:
    case VT::PropClipRectBottom:
    case VT::PropClipRectLeft:
        return hasClipStyle(element, VTClip::Rectangle, from, to) &&
               hasSameUnit(element, nProperty, from, to);
    case VT::PropClipOvalVertex:
    case VT::PropClipOvalCoVertex:
        return hasClipStyle(element, VTClip::Oval, from, to) && hasSameUnit(element, nProperty, from, to);
    case VT::PropClipCircleRadius:
        return hasClipStyle(element, VTClip::Circle, from, to) && hasSameUnit(element, nProperty, from, to);
    case VT::PropShadowBlurRadius:
    case VT::PropShadowAngle:
    case VT::PropShadowDistance:
    case VT::PropShadowColor:
        return hasDropShadow(element, from) && hasDropShadow(element, to);
    case VT::PropInvertFilter:
    case VT::PropHueFilter:
    case VT::PropContrastFilter:
    case VT::PropBrightnessFilter:
    case VT::PropSaturateFilter:
    case VT::PropSepiaFilter:
    case VT::PropGrayscaleFilter:
    case VT::PropBlurFilter:
        if (nKind == VT::AudioElement || nKind == VT::SymbolElement || nKind == VT::SceneElement)
            return hasDropShadow(element, from) && hasDropShadow(element, to);
        return true;
    case VT::PropPerspectiveOriginX:
    case VT::PropPerspectiveOriginY:
    case VT::PropPerspectiveOriginZ:
        return nKind == VT::SceneElement;
    default:
        // Transforms, opacity and display hold for every element; 84, 85 and the settings never.
        return isBetween(nProperty, VT::PropLocation, VT::PropDisplay) || nProperty == VT::PropOriginZ ||
               isBetween(nProperty, VT::PropTranslateZ, VT::PropScaleZ);
    }
}

int VTAnimatedProperty::getValueType(int nProperty)
{
    if (nProperty == VT::PropLocation)
        return QMetaType::QPointF;
    if (VTElementPropertyInfo::getPropUnitSign(nProperty, VT::Pixel) == QLatin1String("color"))
        return QMetaType::QColor;
    return QMetaType::Double;
}

QJsonValue VTAnimatedProperty::toExportValue(int nProperty, const QString& unit, const QVariant& value)
{
    return exportValue(nProperty, unit, value, false);
}

QJsonValue VTAnimatedProperty::toSavedExportValue(int nProperty, const QString& unit, const QVariant& value)
{
    return exportValue(nProperty, unit, value, true);
}
