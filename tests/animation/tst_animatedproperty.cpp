#include "VTAnimatedProperty.h"
#include "VTAutoShapeTypes.h"
#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElementFactory.h"
#include "VTFreeFormShape.h"
#include "VTImage.h"
#include "VTScene.h"
#include "VTShadow.h"
#include "VTText.h"
#include "VTTypes.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointF>
#include <QSet>
#include <QtTest>

#include <climits>
#include <functional>
#include <memory>

namespace {

const VTLayoutKey kBase = VTLayoutKey::base();
const VTLayoutKey kOther(1, 0);

// An element of the kind with a base layout and a copy of it as layout (1, 0); the base is current.
std::unique_ptr<VTElement> makeElement(int nKind)
{
    std::unique_ptr<VTElement> pElement;
    if (nKind == VT::SceneElement) {
        pElement = std::make_unique<VTScene>();
        pElement->initDefault();
    } else {
        pElement.reset(VTElementFactory::createElement(nKind));
    }
    if (pElement)
        pElement->addLayoutProperty(pElement->getLayoutProperty(kBase)->clone(), kOther);
    return pElement;
}

QVariant distinctValue(int nUserType)
{
    switch (nUserType) {
    case QMetaType::QColor:
        return QColor(1, 2, 3, 4);
    case QMetaType::QPointF:
        return QPointF(7.0, 9.0);
    case QMetaType::Int:
        return 7;
    default:
        return 0.37;
    }
}

bool isOwnedBy(const QObject* pObject, const QObject* pOwner)
{
    for (; pObject; pObject = pObject->parent())
        if (pObject == pOwner)
            return true;
    return false;
}

} // namespace

class tst_AnimatedProperty : public QObject
{
    Q_OBJECT
private slots:
    void tableCoverage();
    void targetsForEveryKind_data();
    void targetsForEveryKind();
    void targetsFollowTheLayout();
    void unitSigns();
    void canAnimate();
    void canAddAnimationType();
    void exportValues();
};

void tst_AnimatedProperty::tableCoverage()
{
    const QVector<int>& vecProps = VTAnimatedProperty::getAnimatedProps();
    QCOMPARE(vecProps.size(), 66);
    QCOMPARE(QSet<int>(vecProps.begin(), vecProps.end()).size(), 66);
    for (int nProperty : vecProps) {
        QVERIFY2(VTAnimatedProperty::isAnimatedProp(nProperty), qPrintable(QString::number(nProperty)));
        QVERIFY(!VTAnimatedProperty::getName(nProperty).isEmpty());
        QVERIFY(!VTAnimatedProperty::getName_NoTR(nProperty).isEmpty());
        QVERIFY(!VTAnimatedProperty::getGroupName(nProperty, false).isEmpty());
        // Only the playback row has no property for the player to move.
        QCOMPARE(VTAnimatedProperty::getExportName(nProperty).isEmpty(), nProperty == VT::PropPlayback);
        QCOMPARE(VTAnimatedProperty::getPropertyName(nProperty).isEmpty(), nProperty == VT::PropPlayback);
        QCOMPARE(VTAnimatedProperty::canHaveTransition(nProperty), nProperty != VT::PropDisplay);
    }
    for (int nProperty : {VT::PropGradientRadius, VT::PropTranslateX, VT::PropTranslateY})
        QVERIFY(!VTAnimatedProperty::isAnimatedProp(nProperty));
    QVERIFY(VTAnimatedProperty::getExportName(VT::PropGradientRadius).isEmpty());
    QCOMPARE(VTAnimatedProperty::getName_NoTR(VT::PropLetterSpacing), QStringLiteral("Letter Space"));

    // Settings, unit numbers and numbers from damaged files have nothing.
    auto pDiv = makeElement(VT::DivElement);
    for (int nProperty : {-1, 40, 50, 62, 70, 90, 93, 97, INT_MAX}) {
        QVERIFY(VTAnimatedProperty::getPropertyName(nProperty).isEmpty());
        QVERIFY(VTAnimatedProperty::getName(nProperty).isEmpty());
        QVERIFY(VTAnimatedProperty::getExportName(nProperty).isEmpty());
        QVERIFY(VTAnimatedProperty::getGroupName(nProperty, true).isEmpty());
        QVERIFY(VTAnimatedProperty::getUnitSign(pDiv.get(), nProperty, kBase).isEmpty());
        QVERIFY(!VTAnimatedProperty::getTargetObject(pDiv.get(), nProperty, kBase));
        QVERIFY(!VTAnimatedProperty::hasRange(nProperty));
        QCOMPARE(VTAnimatedProperty::getMinMax(nProperty), qMakePair(INT_MIN, INT_MAX));
    }
    QCOMPARE(VTAnimatedProperty::getMinMax(VT::PropPerspectiveOriginZ), qMakePair(1, 10000));
    QVERIFY(!VTAnimatedProperty::hasRange(VT::PropShadowColor));

    QCOMPARE(VTAnimatedProperty::getValueType(VT::PropLocation), int(QMetaType::QPointF));
    QCOMPARE(VTAnimatedProperty::getValueType(VT::PropShadowColor), int(QMetaType::QColor));
    QCOMPARE(VTAnimatedProperty::getValueType(VT::PropGradientAngle), int(QMetaType::Double));
}

void tst_AnimatedProperty::targetsForEveryKind_data()
{
    QTest::addColumn<int>("kind");
    for (int nKind : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11})
        QTest::addRow("kind %d", nKind) << nKind;
}

// Every target really carries the property, sits in the layout asked for, and takes writes there
// without touching the base layout.
void tst_AnimatedProperty::targetsForEveryKind()
{
    QFETCH(int, kind);
    auto pElement = makeElement(kind);
    QVERIFY(pElement);
    const VTElementProperty* pOtherBlock = pElement->getLayoutProperty(kOther);
    for (int nProperty : VTAnimatedProperty::getAnimatedProps()) {
        const QByteArray name = VTAnimatedProperty::getPropertyName(nProperty);
        QObject* pTarget = VTAnimatedProperty::getTargetObject(pElement.get(), nProperty, kOther);
        bool bExpected = nProperty != VT::PropPlayback;
        if (nProperty >= VT::PropTextColor && nProperty <= VT::PropTextIndent)
            bExpected = qobject_cast<VTText*>(pElement.get());
        else if (nProperty >= VT::PropBackgroundX && nProperty <= VT::PropBackgroundHeight)
            bExpected = kind == VT::ImageElement;
        else if (nProperty == VT::PropVolume)
            bExpected = kind == VT::AudioElement || kind == VT::VideoElement;
        else if (nProperty >= VT::PropTopLeftRadius && nProperty <= VT::PropBottomRightRadius)
            bExpected = kind == VT::DivElement;
        else if (nProperty >= VT::PropPerspectiveOriginX)
            bExpected = kind == VT::SceneElement;
        QVERIFY2(bool(pTarget) == bExpected, name.constData());
        if (!pTarget)
            continue;
        QVERIFY2(pTarget->metaObject()->indexOfProperty(name) >= 0, name.constData());
        if (pTarget == pElement.get())
            continue;
        QVERIFY2(isOwnedBy(pTarget, pOtherBlock), name.constData());
        QObject* pBaseTarget = VTAnimatedProperty::getTargetObject(pElement.get(), nProperty, kBase);
        const QVariant baseValue = pBaseTarget->property(name);
        const QVariant value = distinctValue(pTarget->property(name).userType());
        QVERIFY(pTarget->setProperty(name, value));
        QCOMPARE(pTarget->property(name), value);
        QCOMPARE(pBaseTarget->property(name), baseValue);
    }
    QVERIFY(!VTAnimatedProperty::getTargetObject(pElement.get(), VT::PropGradientRadius, kOther));
    QVERIFY(!VTAnimatedProperty::getTargetObject(nullptr, VT::PropLeft, kOther));
}

void tst_AnimatedProperty::targetsFollowTheLayout()
{
    auto pText = makeElement(VT::TextElement);
    auto* pTextElement = qobject_cast<VTText*>(pText.get());
    pText->setCurrentLayoutID(kOther);
    // The current layout stands for (-1, -1).
    QCOMPARE(VTAnimatedProperty::getTargetObject(pText.get(), VT::PropTextColor, VTLayoutKey::current()),
             pTextElement->getTextProperty(kOther));
    VTAnimatedProperty::getTargetObject(pText.get(), VT::PropFontSize, kBase)->setProperty("m_nFontSize", 40);
    QCOMPARE(pTextElement->getFontSize(kBase), 40);
    QVERIFY(pTextElement->getFontSize(kOther) != 40);
    // Values on the element go through it to its current layout.
    QObject* pTarget = VTAnimatedProperty::getTargetObject(pText.get(), VT::PropOpacity, kBase);
    QCOMPARE(pTarget, pText.get());
    pTarget->setProperty("m_dOpacity", 0.25);
    QCOMPARE(pText->getOpacity(kOther), 0.25);
    QCOMPARE(pText->getOpacity(kBase), 1.0);
    // A layout without a block has no block or sub-object to animate.
    QVERIFY(!VTAnimatedProperty::getTargetObject(pText.get(), VT::PropBorderWidth, {4, 4}));
    QVERIFY(!VTAnimatedProperty::getTargetObject(pText.get(), VT::PropFontSize, {4, 4}));
}

void tst_AnimatedProperty::unitSigns()
{
    auto pDiv = makeElement(VT::DivElement);
    pDiv->setUnitX(VT::Percent, kOther);
    pDiv->setUnitW(VT::Ratio, kOther);
    pDiv->getClip(kOther)->setUnitRectTop(VT::Percent);
    qobject_cast<VTDiv*>(pDiv.get())->getCorner(kOther)->setUnitTopLeft(VT::Percent);
    const auto sign = [&](int nProperty, const VTLayoutKey& key) {
        return VTAnimatedProperty::getUnitSign(pDiv.get(), nProperty, key);
    };
    QCOMPARE(sign(VT::PropLeft, kBase), QStringLiteral("px"));
    QCOMPARE(sign(VT::PropRight, kOther), QStringLiteral("%"));
    QCOMPARE(sign(VT::PropWidth, kOther), QString());
    QCOMPARE(sign(VT::PropClipRectTop, kOther), QStringLiteral("%"));
    QCOMPARE(sign(VT::PropClipRectTop, kBase), QStringLiteral("px"));
    QCOMPARE(sign(VT::PropTopLeftRadius, kOther), QStringLiteral("%"));
    QCOMPARE(sign(VT::PropTopRightRadius, kOther), QStringLiteral("px"));
    QCOMPARE(sign(VT::PropLeft, {4, 4}), QString());
    // Only an image holds a picture placement.
    QCOMPARE(sign(VT::PropBackgroundX, kBase), QString());
    auto pImage = makeElement(VT::ImageElement);
    qobject_cast<VTImage*>(pImage.get())->setBgImageUnitX(VT::Percent, kOther);
    QCOMPARE(VTAnimatedProperty::getUnitSign(pImage.get(), VT::PropBackgroundX, kOther), QStringLiteral("%"));
    QCOMPARE(VTAnimatedProperty::getUnitSign(pImage.get(), VT::PropBackgroundX, kBase), QStringLiteral("px"));
    // Fixed signs need no element.
    QCOMPARE(VTAnimatedProperty::getUnitSign(nullptr, VT::PropSkewX, kBase), QStringLiteral("deg"));
    QCOMPARE(VTAnimatedProperty::getUnitSign(nullptr, VT::PropBorderColor, kBase), QStringLiteral("color"));
}

void tst_AnimatedProperty::canAnimate()
{
    // clang-format off
    const struct { int nKind; int nProperty; bool bExpected; } cases[] = {
        {VT::FreeFormElement, VT::PropTextIndent, true}, {VT::GroupElement, VT::PropTextColor, false},
        {VT::AudioElement, VT::PropBorderWidth, false}, {VT::VideoElement, VT::PropGradientOriginY, false},
        {VT::ImageElement, VT::PropBackgroundColor, true}, {VT::DivElement, VT::PropTranslateX, false},
        {VT::DivElement, VT::PropGradientRadius, false}, {VT::AudioElement, VT::PropDisplay, true},
    };
    // clang-format on
    for (const auto& c : cases) {
        auto pElement = makeElement(c.nKind);
        QVERIFY2(VTAnimatedProperty::canAnimate(pElement.get(), c.nProperty) == c.bExpected,
                 qPrintable(QStringLiteral("kind %1, property %2").arg(c.nKind).arg(c.nProperty)));
    }
    QVERIFY(!VTAnimatedProperty::canAnimate(nullptr, VT::PropOpacity));
}

void tst_AnimatedProperty::canAddAnimationType()
{
    using Setup = std::function<void(VTElement&)>;
    const Setup none = [](VTElement&) {};
    const auto clip = [](int nBase, int nOther) {
        return [=](VTElement& e) {
            e.getClip(kBase)->setStyle(nBase);
            e.getClip(kOther)->setStyle(nOther);
        };
    };
    const auto shadow = [](int nBase, int nOther) {
        return [=](VTElement& e) {
            e.getShadow(kBase)->setStyle(nBase);
            e.getShadow(kOther)->setStyle(nOther);
        };
    };
    const auto gradient = [](int nType) {
        return [=](VTElement& e) {
            e.getBackground(kOther)->setFillStyle(VTBackground::Gradient);
            e.getBackground(kOther)->setGradientType(nType);
        };
    };
    const auto border = [](int nStyle) {
        return [=](VTElement& e) { e.getBorder(kOther)->setStyle(nStyle); };
    };
    const int nLine = VTAutoShapeTypes::Line;
    // clang-format off
    const struct { const char* description; int nKind; int nProperty; Setup setup; bool bExpected; } cases[] = {
        {"left from the left", VT::DivElement, VT::PropLeft, none, true},
        {"right from the left", VT::DivElement, VT::PropRight, none, false},
        {"coordinate type of the target layout", VT::DivElement, VT::PropBottom, [](VTElement& e) { e.setCoordinateType(VT::LeftBottom, kOther); }, true},
        {"x unit differs", VT::DivElement, VT::PropLeft, [](VTElement& e) { e.setUnitX(VT::Percent, kOther); }, false},
        {"y unit differs", VT::DivElement, VT::PropTop, [](VTElement& e) { e.setUnitY(VT::Percent, kBase); }, false},
        {"width as ratio", VT::DivElement, VT::PropWidth, [](VTElement& e) { e.setUnitW(VT::Ratio, kBase); e.setUnitW(VT::Ratio, kOther); }, false},
        {"no layout to carry to", VT::DivElement, VT::PropLeft, [](VTElement& e) { delete e.removeLayoutProperty(kOther); }, false},
        {"solid fill", VT::DivElement, VT::PropBackgroundColor, none, true},
        {"no linear gradient", VT::DivElement, VT::PropGradientAngle, none, false},
        {"linear gradient", VT::DivElement, VT::PropGradientAngle, gradient(VTBackground::Linear), true},
        {"radial origin of a linear gradient", VT::DivElement, VT::PropGradientOriginX, gradient(VTBackground::Linear), false},
        {"radial gradient", VT::DivElement, VT::PropGradientOriginY, gradient(VTBackground::Radial), true},
        {"border without style", VT::DivElement, VT::PropBorderWidth, border(VTBorder::None), false},
        {"solid border", VT::DivElement, VT::PropBorderColor, border(VTBorder::Solid), true},
        {"border of a symbol", VT::SymbolElement, VT::PropBorderWidth, border(VTBorder::Solid), false},
        {"rectangle clip", VT::DivElement, VT::PropClipRectLeft, clip(VTClip::Rectangle, VTClip::Rectangle), true},
        {"clip style in one layout", VT::DivElement, VT::PropClipRectLeft, clip(VTClip::None, VTClip::Rectangle), false},
        {"circle radius of an oval", VT::DivElement, VT::PropClipCircleRadius, clip(VTClip::Oval, VTClip::Oval), false},
        {"clip unit differs", VT::DivElement, VT::PropClipOvalVertex, [&](VTElement& e) { clip(VTClip::Oval, VTClip::Oval)(e); e.getClip(kOther)->setUnitOvalVertex(VT::Pixel); }, false},
        {"shadow in one layout", VT::DivElement, VT::PropShadowAngle, shadow(VTShadow::None, VTShadow::DropShadow), false},
        {"shadow in both", VT::DivElement, VT::PropShadowColor, shadow(VTShadow::DropShadow, VTShadow::DropShadow), true},
        {"filter of a sound without shadow", VT::AudioElement, VT::PropSepiaFilter, none, false},
        {"filter of a sound with shadow", VT::AudioElement, VT::PropSepiaFilter, shadow(VTShadow::DropShadow, VTShadow::DropShadow), true},
        {"filter of a film", VT::VideoElement, VT::PropSepiaFilter, none, true},
        {"text colour of an image", VT::ImageElement, VT::PropTextColor, none, false},
        {"font size of a freeform", VT::FreeFormElement, VT::PropFontSize, none, true},
        {"font size of a line", VT::FreeFormElement, VT::PropFontSize, [=](VTElement& e) { qobject_cast<VTFreeFormShape*>(&e)->setAutoShapeType(nLine, kOther); }, false},
        {"picture placement", VT::ImageElement, VT::PropBackgroundWidth, none, true},
        {"picture unit differs", VT::ImageElement, VT::PropBackgroundY, [](VTElement& e) { qobject_cast<VTImage*>(&e)->setBgImageUnitY(VT::Percent, kOther); }, false},
        {"volume of a sound", VT::AudioElement, VT::PropVolume, none, true},
        {"corner of a div", VT::DivElement, VT::PropBottomRightRadius, none, true},
        {"corner of a shape", VT::ShapeElement, VT::PropBottomRightRadius, none, false},
        {"corner unit differs", VT::DivElement, VT::PropTopRightRadius, [](VTElement& e) { qobject_cast<VTDiv*>(&e)->getCorner(kBase)->setUnitTopRight(VT::Percent); }, false},
        {"scene width", VT::SceneElement, VT::PropWidth, none, true},
        {"scene left", VT::SceneElement, VT::PropLeft, none, false},
        {"scene perspective", VT::SceneElement, VT::PropPerspectiveOriginX, none, true},
        {"perspective of a div", VT::DivElement, VT::PropPerspectiveOriginZ, none, false},
        {"translate x", VT::DivElement, VT::PropTranslateX, none, false},
        {"playback", VT::VideoElement, VT::PropPlayback, none, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        auto pElement = makeElement(c.nKind);
        c.setup(*pElement);
        QVERIFY2(VTAnimatedProperty::canAddAnimationType(pElement.get(), c.nProperty, kBase, kOther) ==
                     c.bExpected,
                 c.description);
    }
    QVERIFY(!VTAnimatedProperty::canAddAnimationType(nullptr, VT::PropOpacity, kBase, kOther));
}

void tst_AnimatedProperty::exportValues()
{
    const auto json = [](const QJsonValue& value) {
        return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    };
    // clang-format off
    const struct { int nProperty; const char* unit; QVariant value; const char* animated; const char* saved; } cases[] = {
        {VT::PropLeft, "px", 12.6, R"(["13px"])", R"(["12.6px"])"},
        {VT::PropRotateZ, "deg", -90.4, R"(["-90deg"])", R"(["-90.4deg"])"},
        {VT::PropDisplay, "", 1.0, R"(["1"])", R"(["1"])"},
        {VT::PropWidth, "px", 1234567.8, R"(["1234568px"])", R"(["1.23457e+06px"])"},
        {VT::PropLeft, "px", qInf(), R"(["0px"])", R"(["0px"])"},
        {VT::PropLeft, "%", 0.125, R"(["12.5%"])", R"(["12.5%"])"},
        {VT::PropOriginX, "%", 0.5, R"(["50%"])", R"(["50%"])"},
        {VT::PropOpacity, "%", 0.5, "[50]", "[50]"},
        {VT::PropLineHeight, "%", 1.2, "[120]", "[120]"},
        {VT::PropScaleZ, "%", -0.25, "[-25]", "[-25]"},
        {VT::PropShadowColor, "color", QColor(10, 20, 30, 40), "[[10,20,30,40]]", "[[10,20,30,40]]"},
        {VT::PropGradientAngle, "deg", 45.6, "[46]", "[45.6]"},
        {VT::PropLocation, "", QPointF(1.5, -2.0), "[[1.5,-2]]", "[[1.5,-2]]"},
    };
    // clang-format on
    for (const auto& c : cases) {
        const QString unit = QString::fromLatin1(c.unit);
        QCOMPARE(json(VTAnimatedProperty::toExportValue(c.nProperty, unit, c.value)), QString(c.animated));
        QCOMPARE(json(VTAnimatedProperty::toSavedExportValue(c.nProperty, unit, c.value)), QString(c.saved));
    }
}

QTEST_GUILESS_MAIN(tst_AnimatedProperty)
#include "tst_animatedproperty.moc"
