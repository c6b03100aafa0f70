#include "VTElementPropertyInfo.h"

#include "VTElementProperty.h"
#include "VTTypes.h"

#include <iterator>

namespace {

enum class UnitSign
{
    None,
    Pixel,
    Percent,
    Degree,
    Color,
    // The unit is a field of the block or sub-object that holds the value.
    Variable,
};

struct PropertyInfo
{
    const char* propertyName;
    const char* label;
    // Only where the action ids need a text that differs from the label.
    const char* untranslatedLabel;
    const char* exportKey;
    const char* group;
    UnitSign unit;
    bool animated;
};

constexpr const char* kPosition = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Position and Size");
constexpr const char* kTransform = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Transform");
constexpr const char* kGeneral = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "General");
constexpr const char* kBorder = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Border");
constexpr const char* kBackground = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background");
constexpr const char* kText = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Text");
constexpr const char* kImage = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Image");
constexpr const char* kMedia = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Media");
constexpr const char* kCorner = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Corner");
constexpr const char* kPlayback = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Playback");
constexpr const char* kClip = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip");
constexpr const char* kShadow = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Shadow");
constexpr const char* kFilter = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Filter");
constexpr const char* kPerspective = QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Perspective");

constexpr PropertyInfo kNone{"", "", nullptr, "", "", UnitSign::None, false};

// Indexed by the property number; the rows without a name are settings that layouts override but
// that no keyframe animates.
const PropertyInfo kProperties[] = {
    {"m_dPositionX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Left"), nullptr, "lt", kPosition,
     UnitSign::Variable, true},
    {"m_dPositionX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Right"), nullptr, "rt", kPosition,
     UnitSign::Variable, true},
    {"m_dPositionY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Top"), nullptr, "tp", kPosition,
     UnitSign::Variable, true},
    {"m_dPositionY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Bottom"), nullptr, "b", kPosition,
     UnitSign::Variable, true},
    {"m_dSizeW", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Width"), nullptr, "w", kPosition,
     UnitSign::Variable, true},
    {"m_dSizeH", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Height"), nullptr, "h", kPosition,
     UnitSign::Variable, true},
    {"m_ptTranslateXY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Location"), nullptr, "pos", kTransform,
     UnitSign::None, true},
    {"m_dScaleX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Scale X"), nullptr, "sX", kTransform,
     UnitSign::Percent, true},
    {"m_dScaleY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Scale Y"), nullptr, "sY", kTransform,
     UnitSign::Percent, true},
    {"m_dSkewX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Skew X"), nullptr, "skX", kTransform,
     UnitSign::Degree, true},
    {"m_dSkewY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Skew Y"), nullptr, "skY", kTransform,
     UnitSign::Degree, true},
    {"m_dRotateZ", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Rotate Z"), nullptr, "rZ", kTransform,
     UnitSign::Degree, true},
    {"m_dOriginRatioX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Origin X"), nullptr, "toX", kTransform,
     UnitSign::Percent, true},
    {"m_dOriginRatioY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Origin Y"), nullptr, "toY", kTransform,
     UnitSign::Percent, true},
    {"m_dOpacity", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Opacity"), nullptr, "o", kGeneral,
     UnitSign::Percent, true},
    {"m_nDisplay", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Display"), nullptr, "d", kGeneral,
     UnitSign::None, true},
    {"m_nWidth", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Border Width"), nullptr, "lw", kBorder,
     UnitSign::Pixel, true},
    {"m_clBorderColor", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Border Color"), nullptr, "lc", kBorder,
     UnitSign::Color, true},
    {"m_clSolidColor", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background Color"), nullptr, "fc",
     kBackground, UnitSign::Color, true},
    {"m_nLinearGradientAngle", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Gradient Angle"), nullptr, "ga",
     kBackground, UnitSign::Degree, true},
    {"m_dRadialOriginX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Gradient Origin X"), nullptr, "gX",
     kBackground, UnitSign::Percent, true},
    {"m_dRadialOriginY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Gradient Origin Y"), nullptr, "gY",
     kBackground, UnitSign::Percent, true},
    {"m_dRadialRadius", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Gradient Radius"), nullptr, "",
     kBackground, UnitSign::None, false},
    {"m_clForeground", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Text Color"), nullptr, "tc", kText,
     UnitSign::Color, true},
    {"m_clHighlight", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Highlight Color"), nullptr, "thc", kText,
     UnitSign::Color, true},
    {"m_nFontSize", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Font Size"), nullptr, "fz", kText,
     UnitSign::Pixel, true},
    {"m_nLetterSpace", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Letter Spacing"), "Letter Space", "ls",
     kText, UnitSign::Pixel, true},
    {"m_nWordSpace", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Word Spacing"), "Word Space", "ws", kText,
     UnitSign::Pixel, true},
    {"m_dLineHeight", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Line Height"), nullptr, "lh", kText,
     UnitSign::Percent, true},
    {"m_nTextIndent", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Text Indent"), nullptr, "ti", kText,
     UnitSign::Pixel, true},
    {"m_dBgImageX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background X"), nullptr, "iX", kImage,
     UnitSign::Variable, true},
    {"m_dBgImageY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background Y"), nullptr, "iY", kImage,
     UnitSign::Variable, true},
    {"m_dBgImageW", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background Width"), nullptr, "iW", kImage,
     UnitSign::Variable, true},
    {"m_dBgImageH", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Background Height"), nullptr, "iH", kImage,
     UnitSign::Variable, true},
    {"m_dVolume", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Volume"), nullptr, "vol", kMedia,
     UnitSign::Percent, true},
    {"m_nTopLeft", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Top Left Radius"), nullptr, "tlr", kCorner,
     UnitSign::Variable, true},
    {"m_nTopRight", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Top Right Radius"), nullptr, "trr", kCorner,
     UnitSign::Variable, true},
    {"m_nBottomLeft", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Bottom Left Radius"), nullptr, "blr",
     kCorner, UnitSign::Variable, true},
    {"m_nBottomRight", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Bottom Right Radius"), nullptr, "brr",
     kCorner, UnitSign::Variable, true},
    // Playback is a row of its own in the timeline; the media element keeps the state.
    {"", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Playback"), nullptr, "", kPlayback, UnitSign::None,
     true},
    kNone, // 40 coordinate type
    kNone, // 41 overflow
    kNone, // 42 cursor
    kNone, // 43 title
    kNone, // 44 tab index
    kNone, // 45 border style
    kNone, // 46 arrow start type
    kNone, // 47 arrow start size
    kNone, // 48 arrow end type
    kNone, // 49 arrow end size
    kNone, // 50 fill style
    kNone, // 51 font family
    kNone, // 52 bold
    kNone, // 53 italic
    kNone, // 54 underline
    kNone, // 55 strikeout
    kNone, // 56 horizontal alignment
    kNone, // 57 vertical alignment
    kNone, // 58 shape
    kNone, // 59 class name
    kNone, // 60 freeform path
    kNone, // 61 inner html
    {"", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Style"), nullptr, "", "", UnitSign::None, false},
    {"m_dCRectTop", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Rectangle Top"), nullptr, "crt", kClip,
     UnitSign::Variable, true},
    {"m_dCRectRight", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Rectangle Right"), nullptr, "crr",
     kClip, UnitSign::Variable, true},
    {"m_dCRectBottom", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Rectangle Bottom"), nullptr, "crb",
     kClip, UnitSign::Variable, true},
    {"m_dCRectLeft", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Rectangle Left"), nullptr, "crl", kClip,
     UnitSign::Variable, true},
    {"m_dCOvalVertex", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Oval Vertex"), nullptr, "cov", kClip,
     UnitSign::Variable, true},
    {"m_dCOvalCoVertex", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Oval Co-Vertex"), nullptr, "coc",
     kClip, UnitSign::Variable, true},
    {"m_dCCircleRadius", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Clip Circle Radius"), nullptr, "ccr",
     kClip, UnitSign::Variable, true},
    kNone, // 70 shadow style
    {"m_nShBlurRadius", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Shadow Blur Radius"), nullptr, "shr",
     kShadow, UnitSign::Pixel, true},
    {"m_nShAngle", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Shadow Angle"), nullptr, "sha", kShadow,
     UnitSign::Degree, true},
    {"m_nShDistance", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Shadow Distance"), nullptr, "shd", kShadow,
     UnitSign::Pixel, true},
    {"m_shColor", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Shadow Color"), nullptr, "shc", kShadow,
     UnitSign::Color, true},
    {"m_dInvert", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Invert Filter"), nullptr, "fif", kFilter,
     UnitSign::Percent, true},
    {"m_nHue", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Hue Filter"), nullptr, "fhf", kFilter,
     UnitSign::Degree, true},
    {"m_dContrast", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Contrast Filter"), nullptr, "fcf", kFilter,
     UnitSign::Percent, true},
    {"m_dBrightness", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Brightness Filter"), nullptr, "frf",
     kFilter, UnitSign::Percent, true},
    {"m_dSaturate", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Saturate Filter"), nullptr, "fsf", kFilter,
     UnitSign::Percent, true},
    {"m_dSepia", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Sepia Filter"), nullptr, "fpf", kFilter,
     UnitSign::Percent, true},
    {"m_dGrayscale", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Grayscale Filter"), nullptr, "fgf", kFilter,
     UnitSign::Percent, true},
    {"m_nBlur", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Blur Filter"), nullptr, "fbf", kFilter,
     UnitSign::Pixel, true},
    {"m_dOriginZ", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Origin Z"), nullptr, "toZ", kTransform,
     UnitSign::Pixel, true},
    // Translate X and Y are animated together as the location; alone they are only overridden.
    {"m_dTranslateX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Translate X"), nullptr, "tX", "",
     UnitSign::Pixel, false},
    {"m_dTranslateY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Translate Y"), nullptr, "tY", "",
     UnitSign::Pixel, false},
    {"m_dTranslateZ", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Translate Z"), nullptr, "tZ", kTransform,
     UnitSign::Pixel, true},
    {"m_dRotateX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Rotate X"), nullptr, "rX", kTransform,
     UnitSign::Degree, true},
    {"m_dRotateY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Rotate Y"), nullptr, "rY", kTransform,
     UnitSign::Degree, true},
    {"m_dScaleZ", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Scale Z"), nullptr, "sZ", kTransform,
     UnitSign::Percent, true},
    kNone, // 90 unit of X
    kNone, // 91 unit of Y
    kNone, // 92 unit of the width
    kNone, // 93 unit of the height
    {"m_dPerspectiveOrgX", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Perspective Origin X"), nullptr,
     "psoX", kPerspective, UnitSign::Percent, true},
    {"m_dPerspectiveOrgY", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Perspective Origin Y"), nullptr,
     "psoY", kPerspective, UnitSign::Percent, true},
    {"m_dPerspectiveOrgZ", QT_TRANSLATE_NOOP("VTElementPropertyInfo", "Perspective Origin Z"), nullptr,
     "psoZ", kPerspective, UnitSign::Pixel, true},
};

static_assert(std::size(kProperties) == VT::ElementPropertyCount, "one row for every property number");

const PropertyInfo& infoOf(int nProperty)
{
    return VTElementPropertyInfo::isValidProperty(nProperty) ? kProperties[nProperty] : kNone;
}

QString translateLabel(const char* text)
{
    return *text ? QCoreApplication::translate("VTElementPropertyInfo", text) : QString();
}

QString unitSignOf(int nUnit)
{
    switch (nUnit) {
    case VT::Pixel:
        return QStringLiteral("px");
    case VT::Percent:
        return QStringLiteral("%");
    default:
        return QString();
    }
}

} // namespace

bool VTElementPropertyInfo::isValidProperty(int nProperty)
{
    return nProperty >= 0 && nProperty < VT::ElementPropertyCount;
}

QString VTElementPropertyInfo::getPropertyNameByType(int nProperty)
{
    return QString::fromLatin1(infoOf(nProperty).propertyName);
}

QString VTElementPropertyInfo::getNameByType(int nProperty)
{
    return translateLabel(infoOf(nProperty).label);
}

QString VTElementPropertyInfo::getNameByType_NoTR(int nProperty)
{
    const PropertyInfo& info = infoOf(nProperty);
    return QString::fromLatin1(info.untranslatedLabel ? info.untranslatedLabel : info.label);
}

QString VTElementPropertyInfo::getExportedPropertyNameByType(int nProperty)
{
    return QString::fromLatin1(infoOf(nProperty).exportKey);
}

QString VTElementPropertyInfo::getGroupNameByPropType(int nProperty, bool bTranslate)
{
    const char* group = infoOf(nProperty).group;
    return bTranslate ? translateLabel(group) : QString::fromLatin1(group);
}

QString VTElementPropertyInfo::getPropUnitSign(int nProperty, int nUnit)
{
    switch (infoOf(nProperty).unit) {
    case UnitSign::None:
        return QString();
    case UnitSign::Pixel:
        return QStringLiteral("px");
    case UnitSign::Percent:
        return QStringLiteral("%");
    case UnitSign::Degree:
        return QStringLiteral("deg");
    case UnitSign::Color:
        return QStringLiteral("color");
    case UnitSign::Variable:
        return unitSignOf(nUnit);
    }
    return QString();
}

QString VTElementPropertyInfo::getPropUnitSign(int nProperty, const VTElementProperty* pBlock)
{
    if (!hasVariableUnit(nProperty))
        return getPropUnitSign(nProperty, VT::Pixel);
    return pBlock ? unitSignOf(pBlock->getPropertyUnit(nProperty)) : QString();
}

bool VTElementPropertyInfo::hasVariableUnit(int nProperty)
{
    return infoOf(nProperty).unit == UnitSign::Variable;
}

bool VTElementPropertyInfo::isAnimatedProp(int nProperty)
{
    return infoOf(nProperty).animated;
}

const QList<int>& VTElementPropertyInfo::getAnimatedProps()
{
    static const QList<int> lstProps{14, 15, 0,  1,  2,  3,  4,  5,  12, 13, 83, 6,  86, 87, 88, 11, 7,
                                     8,  89, 9,  10, 19, 20, 21, 18, 16, 17, 71, 72, 73, 74, 75, 76, 77,
                                     78, 79, 80, 81, 82, 35, 36, 37, 38, 63, 64, 65, 66, 68, 67, 69, 23,
                                     24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 39, 94, 95, 96};
    return lstProps;
}

bool VTElementPropertyInfo::canAnimate(int nElementType, int nProperty)
{
    if (!isValidProperty(nProperty))
        return false;
    if (nProperty >= VT::PropTextColor && nProperty <= VT::PropTextIndent)
        return nElementType == VT::TextElement || nElementType == VT::DivElement ||
               nElementType == VT::ShapeElement || nElementType == VT::FreeFormElement;
    if (nProperty >= VT::PropBorderWidth && nProperty <= VT::PropGradientOriginY)
        return nElementType != VT::AudioElement && nElementType != VT::VideoElement;
    return nProperty != VT::PropTranslateX && nProperty != VT::PropTranslateY;
}

bool VTElementPropertyInfo::canHaveTransition(int nProperty)
{
    return isValidProperty(nProperty) && nProperty != VT::PropDisplay;
}
