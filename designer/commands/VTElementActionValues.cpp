#include "VTElementActionValues.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTElementProperty.h"
#include "VTFilterEffect.h"
#include "VTFreeFormShape.h"
#include "VTHTMLWidget.h"
#include "VTImage.h"
#include "VTImageProperty.h"
#include "VTMedia.h"
#include "VTPropertyJson.h"
#include "VTScene.h"
#include "VTShadow.h"
#include "VTSymbolElement.h"
#include "VTText.h"
#include "VTTextProperty.h"
#include "VTTypes.h"

#include <QColor>
#include <QJsonArray>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace {

using Id = VTElementCommandAction::ElementActionId;

bool isNumber(const VTCmdParam& param)
{
    return param.getType() == VTCmdParam::Int || param.getType() == VTCmdParam::Double;
}

// Builders fill some numbers through the int and some through the double setters of a parameter;
// a number is taken in either form, anything else reads as 0.
int numberToInt(const VTCmdParam& param)
{
    if (param.getType() != VTCmdParam::Double)
        return param.getAsInt();
    const double dValue = param.getAsDouble();
    if (!std::isfinite(dValue) || dValue < std::numeric_limits<int>::min() ||
        dValue > std::numeric_limits<int>::max())
        return 0;
    return static_cast<int>(std::lround(dValue));
}

double numberToDouble(const VTCmdParam& param)
{
    return param.getType() == VTCmdParam::Int ? param.getAsInt() : param.getAsDouble();
}

// How each value type sits in a parameter: read, written back, and made for a preparing call.
// Colours travel as the int of QColor::rgba, resources as pointers that the parameter never owns.
template <typename T> struct Codec;

template <> struct Codec<int>
{
    static int read(const VTCmdParam& param) { return numberToInt(param); }
    static void write(VTCmdParam& param, int nValue) { param.setValue(nValue); }
    static VTCmdParam* make(int nValue) { return new VTCmdParam(nValue); }
};

template <> struct Codec<double>
{
    static double read(const VTCmdParam& param) { return numberToDouble(param); }
    static void write(VTCmdParam& param, double dValue) { param.setValue(dValue); }
    static VTCmdParam* make(double dValue) { return new VTCmdParam(dValue); }
};

template <> struct Codec<bool>
{
    static bool read(const VTCmdParam& param) { return param.getAsBool(); }
    static void write(VTCmdParam& param, bool bValue) { param.setValue(bValue); }
    static VTCmdParam* make(bool bValue) { return new VTCmdParam(bValue); }
};

template <> struct Codec<QString>
{
    static QString read(const VTCmdParam& param) { return param.getAsString(); }
    static void write(VTCmdParam& param, const QString& value) { param.setValue(value); }
    static VTCmdParam* make(const QString& value) { return new VTCmdParam(value); }
};

template <> struct Codec<QJsonArray>
{
    static QJsonArray read(const VTCmdParam& param) { return param.getAsJsonArray(); }
    static void write(VTCmdParam& param, const QJsonArray& value) { param.setValue(value); }
    static VTCmdParam* make(const QJsonArray& value) { return new VTCmdParam(value); }
};

template <> struct Codec<QColor>
{
    static QColor read(const VTCmdParam& param)
    {
        return QColor::fromRgba(static_cast<QRgb>(static_cast<quint32>(numberToInt(param))));
    }
    static void write(VTCmdParam& param, const QColor& color) { param.setValue(toInt(color)); }
    static VTCmdParam* make(const QColor& color) { return new VTCmdParam(toInt(color)); }
    static int toInt(const QColor& color) { return static_cast<int>(static_cast<quint32>(color.rgba())); }
};

template <> struct Codec<VTResource*>
{
    static VTResource* read(const VTCmdParam& param) { return param.getAsResource(); }
    static void write(VTCmdParam& param, VTResource* pResource) { param.setValue(pResource, false); }
    static VTCmdParam* make(VTResource* pResource) { return new VTCmdParam(pResource, false); }
};

// The two walks over a family of values. Each family calls its visitor once per value, in
// parameter order, with a getter and a setter of the model.

// Preparing: every present value becomes a new parameter.
class Collector
{
public:
    explicit Collector(VTCommandAction& action)
        : m_action(action)
    {}

    template <typename Get, typename Set> void operator()(Get get, Set /*set*/)
    {
        using T = std::decay_t<decltype(get())>;
        m_action.addParam(Codec<T>::make(get()));
    }

private:
    VTCommandAction& m_action;
};

// Running: every parameter goes into the model and takes the value it replaced.
class Swapper
{
public:
    Swapper(const QList<VTCmdParam*>& lstParams, int nFirst)
        : m_lstParams(lstParams)
        , m_nNext(nFirst)
    {}

    template <typename Get, typename Set> void operator()(Get get, Set set)
    {
        using T = std::decay_t<decltype(get())>;
        VTCmdParam* pParam = m_lstParams.value(m_nNext++, nullptr);
        if (!pParam)
            return;
        const T oldValue = get();
        set(Codec<T>::read(*pParam));
        Codec<T>::write(*pParam, oldValue);
    }

private:
    const QList<VTCmdParam*>& m_lstParams;
    int m_nNext;
};

QJsonArray stopFactorsToJson(const VTBackground& background)
{
    QJsonArray array;
    for (double dFactor : background.getGradientStopFactors())
        array.append(dFactor);
    return array;
}

QJsonArray stopColorsToJson(const VTBackground& background)
{
    QJsonArray array;
    for (const QColor& color : background.getGradientStopColors())
        array.append(VTPropertyJson::colorToJson(color));
    return array;
}

// Pairs the two arrays up by index; a pair with a value that is no position or no colour is left
// out rather than shifting the rest out of step.
void setStopsFromJson(VTBackground& background, const QJsonArray& factors, const QJsonArray& colors)
{
    QList<double> lstFactors;
    QList<QColor> lstColors;
    const int nCount = std::min(factors.size(), colors.size());
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue factor = factors.at(i);
        QColor color;
        if (!factor.isDouble() || !std::isfinite(factor.toDouble()) ||
            !VTPropertyJson::colorFromJson(colors.at(i), &color))
            continue;
        lstFactors.append(factor.toDouble());
        lstColors.append(color);
    }
    background.setGradientStops(lstFactors, lstColors);
}

template <typename Visitor> void visitBorder(VTBorder& border, Visitor& visit)
{
    visit([&] { return border.getWidth(); }, [&](int nValue) { border.setWidth(nValue); });
    visit([&] { return border.getStyle(); }, [&](int nValue) { border.setStyle(nValue); });
    visit([&] { return border.getColor(); }, [&](const QColor& color) { border.setColor(color); });
}

template <typename Visitor> void visitBackground(VTBackground& background, Visitor& visit)
{
    VTBackground& bg = background;
    visit([&] { return bg.getFillStyle(); }, [&](int nValue) { bg.setFillStyle(nValue); });
    visit([&] { return bg.getGradientType(); }, [&](int nValue) { bg.setGradientType(nValue); });
    visit([&] { return bg.getImageResource(); },
          [&](VTResource* pResource) { bg.setImageResource(pResource); });
    visit([&] { return bg.getImageFillType(); }, [&](int nValue) { bg.setImageFillType(nValue); });
    visit([&] { return bg.getSolidColor(); }, [&](const QColor& color) { bg.setSolidColor(color); });
    visit([&] { return bg.getLinearGradientAngle(); },
          [&](int nValue) { bg.setLinearGradientAngle(nValue); });
    visit([&] { return bg.getRadialOriginX(); }, [&](double dValue) { bg.setRadialOriginX(dValue); });
    visit([&] { return bg.getRadialOriginY(); }, [&](double dValue) { bg.setRadialOriginY(dValue); });
    visit([&] { return bg.getRadialSizeParam(); }, [&](int nValue) { bg.setRadialSizeParam(nValue); });
    visit([&] { return bg.getRadialShape(); }, [&](int nValue) { bg.setRadialShape(nValue); });
    // The positions wait for their colours: the stops are only ever replaced as pairs.
    QJsonArray newFactors;
    visit([&] { return stopFactorsToJson(bg); }, [&](const QJsonArray& factors) { newFactors = factors; });
    visit([&] { return stopColorsToJson(bg); },
          [&](const QJsonArray& colors) { setStopsFromJson(bg, newFactors, colors); });
}

template <typename Visitor> void visitText(VTTextProperty& text, Visitor& visit)
{
    VTTextProperty& t = text;
    visit([&] { return t.getInnerHtml(); }, [&](const QString& value) { t.setInnerHtml(value); });
    visit([&] { return t.getFontFamily(); }, [&](const QString& value) { t.setFontFamily(value); });
    visit([&] { return t.getFontSize(); }, [&](int nValue) { t.setFontSize(nValue); });
    visit([&] { return t.getBold(); }, [&](bool bValue) { t.setBold(bValue); });
    visit([&] { return t.getLetterSpace(); }, [&](int nValue) { t.setFontLetterSpace(nValue); });
    visit([&] { return t.getWordSpace(); }, [&](int nValue) { t.setWordSpace(nValue); });
    visit([&] { return t.getItalic(); }, [&](bool bValue) { t.setItalic(bValue); });
    visit([&] { return t.getUnderline(); }, [&](bool bValue) { t.setUnderline(bValue); });
    visit([&] { return t.getStrikeOut(); }, [&](bool bValue) { t.setStrikeout(bValue); });
    visit([&] { return t.getColor(); }, [&](const QColor& color) { t.setColor(color); });
    visit([&] { return t.getHighlightColor(); }, [&](const QColor& color) { t.setHighlightColor(color); });
    visit([&] { return t.getLineHeight(); }, [&](double dValue) { t.setLineHeight(dValue); });
    visit([&] { return t.getTextIndent(); }, [&](int nValue) { t.setTextIndent(nValue); });
    visit([&] { return t.getHAligment(); }, [&](int nValue) { t.setHAlignment(nValue); });
    visit([&] { return t.getVAlignment(); }, [&](int nValue) { t.setVAlignment(nValue); });
}

template <typename Visitor> void visitBgImage(VTImageProperty& image, Visitor& visit)
{
    VTImageProperty& i = image;
    visit([&] { return i.getBgImageX(); }, [&](double dValue) { i.setBgImageX(dValue); });
    visit([&] { return i.getBgImageY(); }, [&](double dValue) { i.setBgImageY(dValue); });
    visit([&] { return i.getBgImageW(); }, [&](double dValue) { i.setBgImageW(dValue); });
    visit([&] { return i.getBgImageH(); }, [&](double dValue) { i.setBgImageH(dValue); });
    visit([&] { return i.getBgImageUnitX(); }, [&](int nValue) { i.setBgImageUnitX(nValue); });
    visit([&] { return i.getBgImageUnitY(); }, [&](int nValue) { i.setBgImageUnitY(nValue); });
    visit([&] { return i.getBgImageUnitW(); }, [&](int nValue) { i.setBgImageUnitW(nValue); });
    visit([&] { return i.getBgImageUnitH(); }, [&](int nValue) { i.setBgImageUnitH(nValue); });
}

template <typename Visitor> void visitCorner(VTCorner& corner, Visitor& visit)
{
    VTCorner& c = corner;
    visit([&] { return c.getTopLeft(); }, [&](double dValue) { c.setTopLeft(dValue); });
    visit([&] { return c.getTopRight(); }, [&](double dValue) { c.setTopRight(dValue); });
    visit([&] { return c.getBottomLeft(); }, [&](double dValue) { c.setBottomLeft(dValue); });
    visit([&] { return c.getBottomRight(); }, [&](double dValue) { c.setBottomRight(dValue); });
    visit([&] { return c.getUnitTopLeft(); }, [&](int nValue) { c.setUnitTopLeft(nValue); });
    visit([&] { return c.getUnitTopRight(); }, [&](int nValue) { c.setUnitTopRight(nValue); });
    visit([&] { return c.getUnitBottomLeft(); }, [&](int nValue) { c.setUnitBottomLeft(nValue); });
    visit([&] { return c.getUnitBottomRight(); }, [&](int nValue) { c.setUnitBottomRight(nValue); });
}

template <typename Visitor> void visitClip(VTClip& clip, Visitor& visit)
{
    VTClip& c = clip;
    visit([&] { return c.getStyle(); }, [&](int nValue) { c.setStyle(nValue); });
    visit([&] { return c.getRectTop(); }, [&](double dValue) { c.setRectTop(dValue); });
    visit([&] { return c.getRectRight(); }, [&](double dValue) { c.setRectRight(dValue); });
    visit([&] { return c.getRectBottom(); }, [&](double dValue) { c.setRectBottom(dValue); });
    visit([&] { return c.getRectLeft(); }, [&](double dValue) { c.setRectLeft(dValue); });
    visit([&] { return c.getUnitRectTop(); }, [&](int nValue) { c.setUnitRectTop(nValue); });
    visit([&] { return c.getUnitRectRight(); }, [&](int nValue) { c.setUnitRectRight(nValue); });
    visit([&] { return c.getUnitRectBottom(); }, [&](int nValue) { c.setUnitRectBottom(nValue); });
    visit([&] { return c.getUnitRectLeft(); }, [&](int nValue) { c.setUnitRectLeft(nValue); });
    visit([&] { return c.getOvalVertex(); }, [&](double dValue) { c.setOvalVertex(dValue); });
    visit([&] { return c.getOvalCoVertex(); }, [&](double dValue) { c.setOvalCoVertex(dValue); });
    visit([&] { return c.getUnitOvalVertex(); }, [&](int nValue) { c.setUnitOvalVertex(nValue); });
    visit([&] { return c.getUnitOvalCoVertex(); }, [&](int nValue) { c.setUnitOvalCoVertex(nValue); });
    visit([&] { return c.getCircleRadius(); }, [&](double dValue) { c.setCircleRadius(dValue); });
    visit([&] { return c.getUnitCircleRadius(); }, [&](int nValue) { c.setUnitCircleRadius(nValue); });
}

template <typename Visitor> void visitShadow(VTShadow& shadow, Visitor& visit)
{
    VTShadow& s = shadow;
    visit([&] { return s.getStyle(); }, [&](int nValue) { s.setStyle(nValue); });
    visit([&] { return s.getBlurRadius(); }, [&](int nValue) { s.setBlurRadius(nValue); });
    visit([&] { return s.getAngle(); }, [&](int nValue) { s.setAngle(nValue); });
    visit([&] { return s.getDistance(); }, [&](int nValue) { s.setDistance(nValue); });
    visit([&] { return s.getColor(); }, [&](const QColor& color) { s.setColor(color); });
}

template <typename Visitor> void visitFilter(VTFilterEffect& filter, Visitor& visit)
{
    VTFilterEffect& f = filter;
    visit([&] { return f.getInvert(); }, [&](double dValue) { f.setInvert(dValue); });
    visit([&] { return f.getHue(); }, [&](int nValue) { f.setHue(nValue); });
    visit([&] { return f.getContrast(); }, [&](double dValue) { f.setContrast(dValue); });
    visit([&] { return f.getBrightness(); }, [&](double dValue) { f.setBrightness(dValue); });
    visit([&] { return f.getSaturate(); }, [&](double dValue) { f.setSaturate(dValue); });
    visit([&] { return f.getSepia(); }, [&](double dValue) { f.setSepia(dValue); });
    visit([&] { return f.getGrayscale(); }, [&](double dValue) { f.setGrayscale(dValue); });
    visit([&] { return f.getBlur(); }, [&](int nValue) { f.setBlur(nValue); });
}

// Runs the visitor over the values of one id. Layout-bound families use the block of the key;
// values held for all layouts use the element, whatever the key.
template <typename Visitor>
bool visitValues(int nId, VTElement& target, const VTLayoutKey& key, Visitor& visit)
{
    VTElementProperty* pBlock = target.getLayoutProperty(key);
    auto* pImage = qobject_cast<VTImage*>(&target);
    auto* pMedia = qobject_cast<VTMedia*>(&target);
    auto* pScene = qobject_cast<VTScene*>(&target);
    VTElement& e = target;

    switch (nId) {
    // Layout-bound families.
    case Id::ChangeBorder:
        if (!pBlock || !pBlock->getBorder())
            return false;
        visitBorder(*pBlock->getBorder(), visit);
        return true;
    case Id::ChangeBackground:
        if (!pBlock || !pBlock->getBackground())
            return false;
        visitBackground(*pBlock->getBackground(), visit);
        return true;
    case Id::ChangeText: {
        auto* pText = qobject_cast<VTTextProperty*>(pBlock);
        if (!qobject_cast<VTText*>(&target) || !pText)
            return false;
        visitText(*pText, visit);
        return true;
    }
    case Id::ChangeBgImage: {
        auto* pImageBlock = qobject_cast<VTImageProperty*>(pBlock);
        if (!pImage || !pImageBlock)
            return false;
        visitBgImage(*pImageBlock, visit);
        return true;
    }
    case Id::ChangeCorner: {
        auto* pDiv = qobject_cast<VTDiv*>(&target);
        VTCorner* pCorner = pDiv ? pDiv->getCorner(key) : nullptr;
        if (!pCorner)
            return false;
        visitCorner(*pCorner, visit);
        return true;
    }
    case Id::ChangeClip:
        if (!pBlock || !pBlock->getClip())
            return false;
        visitClip(*pBlock->getClip(), visit);
        return true;
    case Id::ChangeShadow:
        if (!pBlock || !pBlock->getShadow())
            return false;
        visitShadow(*pBlock->getShadow(), visit);
        return true;
    case Id::ChangeFilter:
        if (!pBlock || !pBlock->getFilter())
            return false;
        visitFilter(*pBlock->getFilter(), visit);
        return true;

    // Layout-bound single values.
    case Id::ChangeOpacity:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getOpacity(); }, [&](double dValue) { pBlock->setOpacity(dValue); });
        return true;
    case Id::ChangeClassName:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getClassName(); },
              [&](const QString& value) { pBlock->setClassName(value); });
        return true;
    case Id::ChangeDisplay:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getDisplay(); }, [&](int nValue) { pBlock->setDisplay(nValue); });
        return true;
    case Id::ChangeOverflow:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getOverflowType(); },
              [&](int nValue) { pBlock->setOverflowType(nValue); });
        return true;
    case Id::ChangeTitle:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getTitle(); }, [&](const QString& value) { pBlock->setTitle(value); });
        return true;
    case Id::ChangeTabIndex:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getTabIndex(); }, [&](int nValue) { pBlock->setTabIndex(nValue); });
        return true;
    case Id::ChangeCursor:
        if (!pBlock)
            return false;
        visit([&] { return pBlock->getCursorValue(); },
              [&](const QString& value) { pBlock->setCursorValue(value); });
        return true;

    // Values of the element, the same in every layout.
    case Id::SetLocked:
        visit([&] { return e.isLocked(); }, [&](bool bValue) { e.setLocked(bValue); });
        return true;
    case Id::SetVisible:
        visit([&] { return e.isVisible(); }, [&](bool bValue) { e.setVisible(bValue); });
        return true;
    case Id::SetElementName:
        visit([&] { return e.getName(); }, [&](const QString& value) { e.setName(value); });
        return true;
    case Id::SetLockAspectRatio:
        visit([&] { return e.isAspectRatioLocked(); }, [&](bool bValue) { e.setLockAspectRatio(bValue); });
        return true;
    case Id::ChangeImageResource:
        if (!pImage)
            return false;
        visit([&] { return pImage->getImageResource(); },
              [&](VTResource* pResource) { pImage->setImageResource(pResource); });
        return true;
    case Id::ChangeImageAlt:
        if (!pImage || !pImage->getImageProperty(key))
            return false;
        visit([&] { return pImage->getAlt(key); }, [&](const QString& value) { pImage->setAlt(value, key); });
        return true;
    case Id::ChangeMediaDuration:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->getDuration(); }, [&](int nValue) { pMedia->setDuration(nValue); });
        return true;
    case Id::ChangeVolume:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->getVolume(); }, [&](double dValue) { pMedia->setVolume(dValue); });
        return true;
    case Id::SetMediaAutoplay:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->isAutoplay(); }, [&](bool bValue) { pMedia->setAutoplay(bValue); });
        return true;
    case Id::SetMediaLoop:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->isLoop(); }, [&](bool bValue) { pMedia->setLoop(bValue); });
        return true;
    case Id::SetMediaControls:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->hasControls(); }, [&](bool bValue) { pMedia->setControls(bValue); });
        return true;
    case Id::SetMediaPreload:
        if (!pMedia)
            return false;
        visit([&] { return pMedia->isPreload(); }, [&](bool bValue) { pMedia->setPreload(bValue); });
        return true;
    case Id::ChangeHtmlWidgetCode: {
        auto* pWidget = qobject_cast<VTHTMLWidget*>(&target);
        if (!pWidget)
            return false;
        visit([&] { return pWidget->getSrcHTML(); },
              [&](const QString& value) { pWidget->setSrcHTML(value); });
        return true;
    }
    case Id::SetSymbolAutoplay: {
        auto* pSymbol = qobject_cast<VTSymbolElement*>(&target);
        if (!pSymbol)
            return false;
        visit([&] { return pSymbol->isAutoplay(); }, [&](bool bValue) { pSymbol->setAutoplay(bValue); });
        return true;
    }
    case Id::SetFreeFormEditPoint: {
        auto* pFreeForm = qobject_cast<VTFreeFormShape*>(&target);
        if (!pFreeForm)
            return false;
        visit([&] { return pFreeForm->isEditPoint(); },
              [&](bool bValue) { pFreeForm->setEditPoint(bValue); });
        return true;
    }

    // Values of a scene.
    case Id::SetAutoAdvance:
        if (!pScene)
            return false;
        visit([&] { return pScene->isAutoAdvance(); }, [&](bool bValue) { pScene->setAutoAdvance(bValue); });
        return true;
    case Id::ChangeTransitionType:
        if (!pScene)
            return false;
        visit([&] { return pScene->getTransitionType(); },
              [&](int nValue) { pScene->setTransitionType(nValue); });
        return true;
    case Id::ChangeTransitionDuration:
        if (!pScene)
            return false;
        visit([&] { return pScene->getTransitionDuration(); },
              [&](int nValue) { pScene->setTransitionDuration(nValue); });
        return true;
    case Id::ChangeTransitionEasing:
        if (!pScene)
            return false;
        visit([&] { return pScene->getTransitionEasing(); },
              [&](int nValue) { pScene->setTransitionEasing(nValue); });
        return true;
    case Id::ChangeTransitionDirection:
        if (!pScene)
            return false;
        visit([&] { return pScene->getTransitionDirection(); },
              [&](int nValue) { pScene->setTransitionDirection(nValue); });
        return true;
    default:
        return false;
    }
}

using DoubleGetter = double (VTElementProperty::*)() const;
using DoubleSetter = void (VTElementProperty::*)(double);
using IntGetter = int (VTElementProperty::*)() const;
using IntSetter = void (VTElementProperty::*)(int);

bool doubleGeometryAccess(int nProperty, DoubleGetter& get, DoubleSetter& set)
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
        get = &VTElementProperty::getPositionX;
        set = &VTElementProperty::setPositionX;
        return true;
    case VT::PropTop:
    case VT::PropBottom:
        get = &VTElementProperty::getPositionY;
        set = &VTElementProperty::setPositionY;
        return true;
    case VT::PropWidth:
        get = &VTElementProperty::getSizeW;
        set = &VTElementProperty::setSizeW;
        return true;
    case VT::PropHeight:
        get = &VTElementProperty::getSizeH;
        set = &VTElementProperty::setSizeH;
        return true;
    case VT::PropScaleX:
        get = &VTElementProperty::getScaleX;
        set = &VTElementProperty::setScaleX;
        return true;
    case VT::PropScaleY:
        get = &VTElementProperty::getScaleY;
        set = &VTElementProperty::setScaleY;
        return true;
    case VT::PropSkewX:
        get = &VTElementProperty::getSkewX;
        set = &VTElementProperty::setSkewX;
        return true;
    case VT::PropSkewY:
        get = &VTElementProperty::getSkewY;
        set = &VTElementProperty::setSkewY;
        return true;
    case VT::PropRotateZ:
        get = &VTElementProperty::getRotateZ;
        set = &VTElementProperty::setRotateZ;
        return true;
    case VT::PropOriginX:
        get = &VTElementProperty::getOriginRatioX;
        set = &VTElementProperty::setOriginRatioX;
        return true;
    case VT::PropOriginY:
        get = &VTElementProperty::getOriginRatioY;
        set = &VTElementProperty::setOriginRatioY;
        return true;
    case VT::PropOriginZ:
        get = &VTElementProperty::getOriginZ;
        set = &VTElementProperty::setOriginZ;
        return true;
    case VT::PropTranslateX:
        get = &VTElementProperty::getTranslateX;
        set = &VTElementProperty::setTranslateX;
        return true;
    case VT::PropTranslateY:
        get = &VTElementProperty::getTranslateY;
        set = &VTElementProperty::setTranslateY;
        return true;
    case VT::PropTranslateZ:
        get = &VTElementProperty::getTranslateZ;
        set = &VTElementProperty::setTranslateZ;
        return true;
    case VT::PropRotateX:
        get = &VTElementProperty::getRotateX;
        set = &VTElementProperty::setRotateX;
        return true;
    case VT::PropRotateY:
        get = &VTElementProperty::getRotateY;
        set = &VTElementProperty::setRotateY;
        return true;
    case VT::PropScaleZ:
        get = &VTElementProperty::getScaleZ;
        set = &VTElementProperty::setScaleZ;
        return true;
    default:
        return false;
    }
}

bool intGeometryAccess(int nProperty, IntGetter& get, IntSetter& set)
{
    switch (nProperty) {
    case VT::PropCoordinateType:
        get = &VTElementProperty::getCoordinateType;
        set = &VTElementProperty::setCoordinateType;
        return true;
    case VT::PropUnitX:
        get = &VTElementProperty::getUnitX;
        set = &VTElementProperty::setUnitX;
        return true;
    case VT::PropUnitY:
        get = &VTElementProperty::getUnitY;
        set = &VTElementProperty::setUnitY;
        return true;
    case VT::PropUnitW:
        get = &VTElementProperty::getUnitW;
        set = &VTElementProperty::setUnitW;
        return true;
    case VT::PropUnitH:
        get = &VTElementProperty::getUnitH;
        set = &VTElementProperty::setUnitH;
        return true;
    default:
        return false;
    }
}

} // namespace

int VTElementActionValues::readInt(const VTCmdParam& param)
{
    return numberToInt(param);
}

double VTElementActionValues::readDouble(const VTCmdParam& param)
{
    return numberToDouble(param);
}

int VTElementActionValues::valueCount(int nId)
{
    switch (nId) {
    case Id::ChangeBorder:
        return 3;
    case Id::ChangeBackground:
        return 12;
    case Id::ChangeText:
    case Id::ChangeClip:
        return 15;
    case Id::ChangeBgImage:
    case Id::ChangeCorner:
    case Id::ChangeFilter:
        return 8;
    case Id::ChangeShadow:
        return 5;
    case Id::ChangeOpacity:
    case Id::SetLocked:
    case Id::SetVisible:
    case Id::SetElementName:
    case Id::ChangeClassName:
    case Id::ChangeDisplay:
    case Id::ChangeOverflow:
    case Id::SetAutoAdvance:
    case Id::ChangeTitle:
    case Id::ChangeTabIndex:
    case Id::ChangeCursor:
    case Id::ChangeImageResource:
    case Id::ChangeImageAlt:
    case Id::ChangeMediaDuration:
    case Id::ChangeVolume:
    case Id::SetMediaAutoplay:
    case Id::SetMediaLoop:
    case Id::SetMediaControls:
    case Id::SetMediaPreload:
    case Id::ChangeTransitionType:
    case Id::ChangeTransitionDuration:
    case Id::ChangeTransitionEasing:
    case Id::ChangeTransitionDirection:
    case Id::ChangeHtmlWidgetCode:
    case Id::SetLockAspectRatio:
    case Id::SetSymbolAutoplay:
    case Id::SetFreeFormEditPoint:
        return 1;
    default:
        return -1;
    }
}

bool VTElementActionValues::collect(int nId, VTElement* pTarget, const VTLayoutKey& key,
                                    VTCommandAction& action)
{
    if (!pTarget || valueCount(nId) < 0)
        return false;
    Collector collector(action);
    return visitValues(nId, *pTarget, key, collector);
}

bool VTElementActionValues::swap(int nId, VTElement* pTarget, const VTLayoutKey& key,
                                 const QList<VTCmdParam*>& lstParams, int nFirst)
{
    const int nCount = valueCount(nId);
    if (!pTarget || nCount < 0 || nFirst < 0 || lstParams.size() < nFirst + nCount)
        return false;
    Swapper swapper(lstParams, nFirst);
    return visitValues(nId, *pTarget, key, swapper);
}

bool VTElementActionValues::isGeometryProperty(int nProperty)
{
    DoubleGetter get = nullptr;
    DoubleSetter set = nullptr;
    return doubleGeometryAccess(nProperty, get, set) || isIntGeometryProperty(nProperty);
}

bool VTElementActionValues::isIntGeometryProperty(int nProperty)
{
    IntGetter get = nullptr;
    IntSetter set = nullptr;
    return intGeometryAccess(nProperty, get, set);
}

bool VTElementActionValues::swapGeometry(VTElement* pTarget, const VTLayoutKey& key, int nProperty,
                                         VTCmdParam& param)
{
    VTElementProperty* pBlock = pTarget ? pTarget->getLayoutProperty(key) : nullptr;
    if (!pBlock || !isNumber(param))
        return false;
    IntGetter getInt = nullptr;
    IntSetter setInt = nullptr;
    if (intGeometryAccess(nProperty, getInt, setInt)) {
        const int nOld = (pBlock->*getInt)();
        (pBlock->*setInt)(readInt(param));
        param.setValue(nOld);
        return true;
    }
    DoubleGetter getDouble = nullptr;
    DoubleSetter setDouble = nullptr;
    if (!doubleGeometryAccess(nProperty, getDouble, setDouble))
        return false;
    const double dOld = (pBlock->*getDouble)();
    (pBlock->*setDouble)(readDouble(param));
    param.setValue(dOld);
    return true;
}
