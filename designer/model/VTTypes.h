#pragma once

// Numbers shared by the model, the saved files, the commands and the player. They are stored in
// project files, so a value never changes meaning.
namespace VT {

// Unit of a stored length.
enum MeasureUnit : int
{
    Pixel = 0,
    // Held as a fraction: 1.0 is 100%.
    Percent = 1,
    // Ratio to the other dimension; for width and height only.
    Ratio = 2,
};

enum CoordinateType : int
{
    LeftTop = 0,
    RightTop = 1,
    RightBottom = 2,
    LeftBottom = 3,
};

enum OverFlowType : int
{
    Visible = 0,
    Hidden = 1,
    Scroll = 2,
    Auto = 3,
};

enum ElementType : int
{
    ImageElement = 0,
    AudioElement = 1,
    VideoElement = 2,
    HTMLWidgetElement = 3,
    TextElement = 4,
    DivElement = 5,
    GroupElement = 6,
    SymbolElement = 7,
    SceneElement = 8,
    ShapeElement = 9,
    ComponentElement = 10,
    FreeFormElement = 11,
};

enum PreloaderType : int
{
    DefaultPreloader = 0,
    CustomPreloader = 1,
};

// Every animatable or overridable property; the number is what inherit lists, keyframes and
// commands store.
enum ElementProperty : int
{
    PropLeft = 0,
    PropRight = 1,
    PropTop = 2,
    PropBottom = 3,
    PropWidth = 4,
    PropHeight = 5,
    PropLocation = 6,
    PropScaleX = 7,
    PropScaleY = 8,
    PropSkewX = 9,
    PropSkewY = 10,
    PropRotateZ = 11,
    PropOriginX = 12,
    PropOriginY = 13,
    PropOpacity = 14,
    PropDisplay = 15,
    PropBorderWidth = 16,
    PropBorderColor = 17,
    PropBackgroundColor = 18,
    PropGradientAngle = 19,
    PropGradientOriginX = 20,
    PropGradientOriginY = 21,
    PropGradientRadius = 22,
    PropTextColor = 23,
    PropHighlightColor = 24,
    PropFontSize = 25,
    PropLetterSpacing = 26,
    PropWordSpacing = 27,
    PropLineHeight = 28,
    PropTextIndent = 29,
    PropBackgroundX = 30,
    PropBackgroundY = 31,
    PropBackgroundWidth = 32,
    PropBackgroundHeight = 33,
    PropVolume = 34,
    PropTopLeftRadius = 35,
    PropTopRightRadius = 36,
    PropBottomLeftRadius = 37,
    PropBottomRightRadius = 38,
    PropPlayback = 39,
    PropCoordinateType = 40,
    PropOverflow = 41,
    PropCursor = 42,
    PropTitle = 43,
    PropTabIndex = 44,
    PropBorderStyle = 45,
    PropArrowStartType = 46,
    PropArrowStartSize = 47,
    PropArrowEndType = 48,
    PropArrowEndSize = 49,
    PropFillStyle = 50,
    PropFontFamily = 51,
    PropBold = 52,
    PropItalic = 53,
    PropUnderline = 54,
    PropStrikeout = 55,
    PropHorizontalAlignment = 56,
    PropVerticalAlignment = 57,
    PropShape = 58,
    PropClassName = 59,
    PropFreeFormPath = 60,
    PropInnerHtml = 61,
    PropClipStyle = 62,
    PropClipRectTop = 63,
    PropClipRectRight = 64,
    PropClipRectBottom = 65,
    PropClipRectLeft = 66,
    PropClipOvalVertex = 67,
    PropClipOvalCoVertex = 68,
    PropClipCircleRadius = 69,
    PropShadowStyle = 70,
    PropShadowBlurRadius = 71,
    PropShadowAngle = 72,
    PropShadowDistance = 73,
    PropShadowColor = 74,
    PropInvertFilter = 75,
    PropHueFilter = 76,
    PropContrastFilter = 77,
    PropBrightnessFilter = 78,
    PropSaturateFilter = 79,
    PropSepiaFilter = 80,
    PropGrayscaleFilter = 81,
    PropBlurFilter = 82,
    PropOriginZ = 83,
    PropTranslateX = 84,
    PropTranslateY = 85,
    PropTranslateZ = 86,
    PropRotateX = 87,
    PropRotateY = 88,
    PropScaleZ = 89,
    PropUnitX = 90,
    PropUnitY = 91,
    PropUnitW = 92,
    PropUnitH = 93,
    PropPerspectiveOriginX = 94,
    PropPerspectiveOriginY = 95,
    PropPerspectiveOriginZ = 96,
};

// One past the last property number; inherit lists drop anything from here on.
constexpr int ElementPropertyCount = 97;

// How one scene hands over to the next.
enum TransitionType : int
{
    NoTransition = -1,
    TransitionNone = 0,
    TransitionFade = 1,
    TransitionPush = 2,
    TransitionWipe = 3,
    TransitionCover = 4,
    TransitionUncover = 5,
};

// Where a pushing, wiping or covering transition comes from.
enum TransitionDirection : int
{
    NoDirection = -1,
    FromLeft = 0,
    FromTop = 1,
    FromRight = 2,
    FromBottom = 3,
    FromTopLeft = 4,
    FromTopRight = 5,
    FromBottomLeft = 6,
    FromBottomRight = 7,
};

} // namespace VT
