#include "VTAnimation.h"
#include "VTElement.h"
#include "VTElementFactory.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTTimeline.h"
#include "VTTypes.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <memory>

namespace {

const VTLayoutKey kBase = VTLayoutKey::base();

// One key as a test writes it: where it sits, what arrives there and what leaves it, and whether
// the segment that arrives at it moves.
struct KeyRow
{
    int nTime = 0;
    double dMinus = 0.0;
    double dValue = 0.0;
    bool bTransitionIn = true;
};

VTKeyValue* makeKey(int nTime, const QVariant& value, const QVariant& valueMinus = QVariant())
{
    auto* pKey = new VTKeyValue(nTime, value);
    if (valueMinus.isValid())
        pKey->setValueMinus(valueMinus);
    return pKey;
}

std::unique_ptr<VTElement> makeElement(int nKind)
{
    return std::unique_ptr<VTElement>(VTElementFactory::createElement(nKind));
}

std::unique_ptr<VTKeyframe> makeKeyframe(VTElement* pElement, int nProperty,
                                         const QList<KeyRow>& lstKeys = {},
                                         QEasingCurve::Type nEasing = QEasingCurve::Linear)
{
    std::unique_ptr<VTKeyframe> pKeyframe(
        VTKeyframe::createKeyframe(VT::ElementProperty(nProperty), pElement, kBase));
    for (const KeyRow& row : lstKeys)
        pKeyframe->addKeyValue(makeKey(row.nTime, row.dValue, row.dMinus), nEasing, row.bTransitionIn);
    return pKeyframe;
}

QString valueText(const QVariant& value)
{
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>().name(QColor::HexArgb);
    return QString::number(value.toDouble(), 'g', 6);
}

// "time=value" per key ("time=arrival>value" at a jump) and between neighbours "(+easing)" for a
// segment that moves, "(-easing)" for one that holds.
QString describe(const VTKeyframe& keyframe)
{
    QStringList lstParts;
    const QList<VTKeyValue*>& lstKeys = keyframe.getKeyValues();
    const QList<VTKeyframeSegment*> lstSegments = keyframe.getKeyframeSegments();
    for (int i = 0; i < lstKeys.size(); ++i) {
        const VTKeyValue* pKey = lstKeys.at(i);
        QString key = QString::number(pKey->getTime()) + QLatin1Char('=');
        if (pKey->isJump())
            key += valueText(pKey->getValueMinus()) + QLatin1Char('>');
        lstParts << key + valueText(pKey->getValue());
        if (i < lstSegments.size())
            lstParts << QStringLiteral("(%1%2)")
                            .arg(lstSegments.at(i)->hasTransition() ? '+' : '-')
                            .arg(lstSegments.at(i)->easingCurve().type());
    }
    return lstParts.join(QLatin1Char(' '));
}

// Empty while the Qt side agrees with the keys: a lead-in from a hidden key at 0, one segment per
// pair of neighbours, a tail at the last key, each with the key values and duration of its keys.
QString structureProblem(const VTKeyframe& keyframe)
{
    const QList<VTKeyValue*>& lstKeys = keyframe.getKeyValues();
    if (lstKeys.isEmpty())
        return keyframe.animationCount() == 0 ? QString() : QStringLiteral("children without keys");
    if (keyframe.animationCount() != lstKeys.size() + 1)
        return QStringLiteral("%1 children for %2 keys").arg(keyframe.animationCount()).arg(lstKeys.size());
    for (int i = 0; i <= lstKeys.size(); ++i) {
        const auto* pSegment = qobject_cast<const VTKeyframeSegment*>(keyframe.animationAt(i));
        if (!pSegment || !pSegment->getStartKeyValue() || !pSegment->getEndKeyValue())
            return QStringLiteral("child %1 is no segment with two keys").arg(i);
        const VTKeyValue* pStart = pSegment->getStartKeyValue();
        const VTKeyValue* pEnd = pSegment->getEndKeyValue();
        if (i < lstKeys.size() && pEnd != lstKeys.at(i))
            return QStringLiteral("child %1 does not end at key %1").arg(i);
        if (i > 0 && pStart != lstKeys.at(i - 1))
            return QStringLiteral("child %1 does not start at key %2").arg(i).arg(i - 1);
        if (pSegment->duration() != qMax(0, pEnd->getTime() - pStart->getTime()))
            return QStringLiteral("child %1 lasts %2 ms").arg(i).arg(pSegment->duration());
        const QVariant end = pSegment->hasTransition() ? pEnd->getValueMinus() : pStart->getValue();
        if (pSegment->keyValueAt(0.0) != pStart->getValue() || pSegment->keyValueAt(1.0) != end)
            return QStringLiteral("child %1 animates other values than its keys").arg(i);
    }
    const auto* pLeadIn = qobject_cast<const VTKeyframeSegment*>(keyframe.animationAt(0));
    const auto* pTail = qobject_cast<const VTKeyframeSegment*>(keyframe.animationAt(lstKeys.size()));
    if (pLeadIn->hasTransition() || pLeadIn->getStartKeyValue()->getTime() != 0 ||
        pLeadIn->getStartKeyValue()->getValue() != lstKeys.first()->getValueMinus())
        return QStringLiteral("lead-in does not hold the first arrival value from 0");
    if (pTail->hasTransition() || pTail->getEndKeyValue()->getTime() != lstKeys.last()->getTime() ||
        pTail->getEndKeyValue()->getValueMinus() != lstKeys.last()->getValue())
        return QStringLiteral("tail does not hold the last value");
    return QString();
}

// The parameter at which the cubic from (0, 0) to (1, 1) with the two handles reaches dX, by
// bisection, and the curve's y there.
double bezierEase(double dX, const QPointF& ptC1, const QPointF& ptC2)
{
    auto at = [](double s, double a, double b) {
        return 3 * (1 - s) * (1 - s) * s * a + 3 * (1 - s) * s * s * b + s * s * s;
    };
    double dLow = 0.0;
    double dHigh = 1.0;
    for (int i = 0; i < 60; ++i) {
        const double dMid = (dLow + dHigh) / 2;
        (at(dMid, ptC1.x(), ptC2.x()) < dX ? dLow : dHigh) = dMid;
    }
    return at((dLow + dHigh) / 2, ptC1.y(), ptC2.y());
}

} // namespace

Q_DECLARE_METATYPE(KeyRow)

class tst_Keyframes : public QObject
{
    Q_OBJECT
private slots:
    void easing_data();
    void easing();
    void valueAtTime_data();
    void valueAtTime();
    void valueTypes_data();
    void valueTypes();
    void matchesQtSegments_data();
    void matchesQtSegments();
    void addKeyValue();
    void detachKeyValue();
    void moveAndChangeKeys();
    void shiftWholeCurve();
    void invertKeyValues();
    void projectForm();
    void damagedKeys();
    void exportEntries();
};

void tst_Keyframes::easing_data()
{
    QTest::addColumn<int>("nType");
    QTest::addColumn<int>("nTime");
    QTest::addColumn<double>("dExpected");
    QTest::addColumn<double>("dTolerance");

    const double dPi = M_PI;
    const double s = 1.70158; // the overshoot of Qt's back curves
    const double dExact = 1e-9;
    QTest::newRow("Linear") << int(QEasingCurve::Linear) << 300 << 0.3 << dExact;
    QTest::newRow("InQuad") << int(QEasingCurve::InQuad) << 300 << 0.3 * 0.3 << dExact;
    QTest::newRow("OutQuad") << int(QEasingCurve::OutQuad) << 300 << 1 - 0.7 * 0.7 << dExact;
    QTest::newRow("InOutQuad early") << int(QEasingCurve::InOutQuad) << 250 << 2 * 0.25 * 0.25 << dExact;
    QTest::newRow("InOutQuad late") << int(QEasingCurve::InOutQuad) << 750 << 1 - 2 * 0.25 * 0.25 << dExact;
    QTest::newRow("InCubic") << int(QEasingCurve::InCubic) << 400 << std::pow(0.4, 3) << dExact;
    QTest::newRow("OutCubic") << int(QEasingCurve::OutCubic) << 400 << 1 - std::pow(0.6, 3) << dExact;
    QTest::newRow("InOutCubic") << int(QEasingCurve::InOutCubic) << 750 << 1 - 4 * std::pow(0.25, 3)
                                << dExact;
    QTest::newRow("InQuart") << int(QEasingCurve::InQuart) << 500 << std::pow(0.5, 4) << dExact;
    QTest::newRow("OutQuart") << int(QEasingCurve::OutQuart) << 500 << 1 - std::pow(0.5, 4) << dExact;
    QTest::newRow("InOutQuart") << int(QEasingCurve::InOutQuart) << 250 << 8 * std::pow(0.25, 4) << dExact;
    QTest::newRow("InQuint") << int(QEasingCurve::InQuint) << 500 << std::pow(0.5, 5) << dExact;
    QTest::newRow("OutQuint") << int(QEasingCurve::OutQuint) << 500 << 1 - std::pow(0.5, 5) << dExact;
    QTest::newRow("InOutQuint") << int(QEasingCurve::InOutQuint) << 750 << 1 - 16 * std::pow(0.25, 5)
                                << dExact;
    QTest::newRow("InSine") << int(QEasingCurve::InSine) << 500 << 1 - std::cos(0.5 * dPi / 2) << dExact;
    QTest::newRow("OutSine") << int(QEasingCurve::OutSine) << 500 << std::sin(0.5 * dPi / 2) << dExact;
    QTest::newRow("InOutSine") << int(QEasingCurve::InOutSine) << 250 << (1 - std::cos(0.25 * dPi)) / 2
                               << dExact;
    // Qt's exponential curves are shifted by a thousandth so that they meet 0 and 1.
    QTest::newRow("InExpo") << int(QEasingCurve::InExpo) << 500 << std::pow(2.0, 10 * (0.5 - 1)) - 0.001
                            << dExact;
    QTest::newRow("OutExpo") << int(QEasingCurve::OutExpo) << 500 << 1.001 * (1 - std::pow(2.0, -10 * 0.5))
                             << dExact;
    QTest::newRow("InOutExpo") << int(QEasingCurve::InOutExpo) << 250
                               << 0.5 * std::pow(2.0, 10 * (0.5 - 1)) - 0.0005 << dExact;
    QTest::newRow("InCirc") << int(QEasingCurve::InCirc) << 600 << 1 - std::sqrt(1 - 0.6 * 0.6) << dExact;
    QTest::newRow("OutCirc") << int(QEasingCurve::OutCirc) << 400 << std::sqrt(1 - 0.6 * 0.6) << dExact;
    QTest::newRow("InOutCirc") << int(QEasingCurve::InOutCirc) << 300 << (1 - std::sqrt(1 - 0.6 * 0.6)) / 2
                               << dExact;
    QTest::newRow("InBack") << int(QEasingCurve::InBack) << 500 << 0.25 * ((s + 1) * 0.5 - s) << dExact;
    QTest::newRow("OutBack") << int(QEasingCurve::OutBack) << 500 << 0.25 * ((s + 1) * -0.5 + s) + 1
                             << dExact;
    // Amplitude 1 and period 0.3: the phase shift is a quarter period.
    QTest::newRow("OutElastic") << int(QEasingCurve::OutElastic) << 500
                                << std::pow(2.0, -10 * 0.5) * std::sin((0.5 - 0.075) * 2 * dPi / 0.3) + 1
                                << dExact;
    QTest::newRow("OutBounce") << int(QEasingCurve::OutBounce) << 500
                               << 7.5625 * std::pow(0.5 - 6 / 11.0, 2) + 0.75 << dExact;
    QTest::newRow("InBounce") << int(QEasingCurve::InBounce) << 500
                              << 1 - (7.5625 * std::pow(0.5 - 6 / 11.0, 2) + 0.75) << dExact;
    const QPointF ptC1(0.4, 0.1);
    const QPointF ptC2(0.6, 0.9);
    QTest::newRow("BezierSpline middle") << int(QEasingCurve::BezierSpline) << 500 << 0.5 << 1e-6;
    QTest::newRow("BezierSpline early")
        << int(QEasingCurve::BezierSpline) << 200 << bezierEase(0.2, ptC1, ptC2) << 1e-4;
    QTest::newRow("TCBSpline first knot") << int(QEasingCurve::TCBSpline) << 300 << 0.4 << 1e-4;
    QTest::newRow("TCBSpline second knot") << int(QEasingCurve::TCBSpline) << 700 << 0.6 << 1e-4;
}

void tst_Keyframes::easing()
{
    QFETCH(int, nType);
    QFETCH(int, nTime);
    QFETCH(double, dExpected);
    QFETCH(double, dTolerance);

    // Rotation has no limits, so the overshoot of back and elastic curves reaches the element.
    auto pDiv = makeElement(VT::DivElement);
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{0, 0.0, 0.0}, {1000, 1.0, 1.0}},
                                  QEasingCurve::Type(nType));
    QCOMPARE(pKeyframe->getKeyframeSegments().value(0)->easingCurve().type(), QEasingCurve::Type(nType));
    const double dValue = pKeyframe->getValue(nTime).toDouble();
    QVERIFY2(
        std::abs(dValue - dExpected) <= dTolerance,
        qPrintable(QStringLiteral("%1 instead of %2").arg(dValue, 0, 'g', 12).arg(dExpected, 0, 'g', 12)));
    pKeyframe->applyTime(nTime);
    QCOMPARE(pDiv->getRotateZ(), dValue);

    // A curve of the same type with parameters of its own is not the standard one of that type.
    // The splines are made of their points, not of parameters.
    if (nType >= QEasingCurve::BezierSpline)
        return;
    QEasingCurve own{QEasingCurve::Type(nType)};
    own.setAmplitude(1.7);
    own.setOvershoot(2.5);
    own.setPeriod(0.45);
    if (own != VTTimeline::createEasingCurve(QEasingCurve::Type(nType))) {
        pKeyframe->getKeyframeSegments().value(0)->setEasing(own);
        QCOMPARE(pKeyframe->getValue(nTime).toDouble(), own.valueForProgress(nTime / 1000.0));
    }
}

void tst_Keyframes::valueAtTime_data()
{
    QTest::addColumn<QList<KeyRow>>("lstKeys");
    QTest::addColumn<QList<QPointF>>("lstChecks"); // (time, value)

    // 200 jumps 10 > 20, moves to 60 by 600, holds, jumps 100 > 150 at 1000.
    QTest::newRow("jumps and holds") << QList<KeyRow>{{200, 10, 20},
                                                      {600, 60, 60, true},
                                                      {1000, 100, 150, false}}
                                     << QList<QPointF>{{0, 10},     {100, 10},  {199, 10}, {200, 20},
                                                       {400, 40},   {600, 60},  {800, 60}, {999, 60},
                                                       {1000, 150}, {5000, 150}};
    // The newcomer at 500 goes in front: the keys read 0, 500=50, 500=80, 1000.
    QTest::newRow("two keys at one time")
        << QList<KeyRow>{{0, 0, 0}, {500, 80, 80}, {500, 50, 50}, {1000, 100, 100}}
        << QList<QPointF>{{250, 25}, {499, 49.9}, {500, 80}, {750, 90}, {1000, 100}};
    QTest::newRow("one key at 0") << QList<KeyRow>{{0, 30, 30}} << QList<QPointF>{{0, 30}, {700, 30}};
    QTest::newRow("one key at 500") << QList<KeyRow>{{500, 20, 60}}
                                    << QList<QPointF>{{0, 20}, {100, 20}, {500, 60}, {700, 60}};
}

void tst_Keyframes::valueAtTime()
{
    QFETCH(QList<KeyRow>, lstKeys);
    QFETCH(QList<QPointF>, lstChecks);

    auto pDiv = makeElement(VT::DivElement);
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropRotateZ, lstKeys);
    QCOMPARE(structureProblem(*pKeyframe), QString());
    for (const QPointF& check : lstChecks) {
        const int nTime = int(check.x());
        QVERIFY2(
            qFuzzyCompare(pKeyframe->getValue(nTime).toDouble(), check.y()),
            qPrintable(QStringLiteral("at %1: %2").arg(nTime).arg(pKeyframe->getValue(nTime).toDouble())));
        pDiv->setRotateZ(-1.0);
        pKeyframe->applyTime(nTime);
        QVERIFY2(qFuzzyCompare(pDiv->getRotateZ(), check.y()),
                 qPrintable(QStringLiteral("applied at %1").arg(nTime)));
    }
}

void tst_Keyframes::valueTypes_data()
{
    QTest::addColumn<int>("nKind");
    QTest::addColumn<int>("nProperty");
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<QVariant>("to");
    QTest::addColumn<int>("nTime");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("double") << int(VT::DivElement) << int(VT::PropOpacity) << QVariant(0.25) << QVariant(0.75)
                            << 250 << QVariant(0.375);
    // Keys round once to 10 and 21; 10 + 11 * 0.25 truncates.
    QTest::newRow("int font size") << int(VT::TextElement) << int(VT::PropFontSize) << QVariant(10.4)
                                   << QVariant(20.6) << 250 << QVariant(12);
    QTest::newRow("int font size at the start") << int(VT::TextElement) << int(VT::PropFontSize)
                                                << QVariant(10.4) << QVariant(20.6) << 0 << QVariant(10);
    // Qt rounds halves away from zero only above 0: -10.5 becomes -10; -10 + 15 * 0.5 truncates
    // toward zero.
    QTest::newRow("int negative half") << int(VT::TextElement) << int(VT::PropLetterSpacing)
                                       << QVariant(-10.5) << QVariant(5.4) << 0 << QVariant(-10);
    QTest::newRow("int truncates toward zero") << int(VT::TextElement) << int(VT::PropLetterSpacing)
                                               << QVariant(-10.5) << QVariant(5.4) << 500 << QVariant(-2);
    QTest::newRow("colour per channel")
        << int(VT::DivElement) << int(VT::PropBackgroundColor) << QVariant(QColor(0, 100, 255))
        << QVariant(QColor(255, 0, 0, 128)) << 500 << QVariant(QColor(127, 50, 127, 191));
}

void tst_Keyframes::valueTypes()
{
    QFETCH(int, nKind);
    QFETCH(int, nProperty);
    QFETCH(QVariant, from);
    QFETCH(QVariant, to);
    QFETCH(int, nTime);
    QFETCH(QVariant, expected);

    auto pElement = makeElement(nKind);
    auto pKeyframe = makeKeyframe(pElement.get(), nProperty);
    pKeyframe->addKeyValue(makeKey(0, from), QEasingCurve::Linear, true);
    pKeyframe->addKeyValue(makeKey(1000, to), QEasingCurve::Linear, true);
    QObject* pTarget = pKeyframe->getTargetObject();
    QVERIFY(pTarget);

    QCOMPARE(pKeyframe->getValue(nTime), expected);
    pKeyframe->applyTime(nTime);
    QCOMPARE(pTarget->property(pKeyframe->getPropertyName().constData()), expected);
}

void tst_Keyframes::matchesQtSegments_data()
{
    QTest::addColumn<int>("nKind");
    QTest::addColumn<int>("nProperty");
    QTest::addColumn<quint32>("nSeed");

    for (const quint32 nSeed : {1u, 2u, 3u}) {
        QTest::addRow("double %u", nSeed) << int(VT::DivElement) << int(VT::PropRotateZ) << nSeed;
        QTest::addRow("int %u", nSeed) << int(VT::TextElement) << int(VT::PropLetterSpacing) << nSeed;
        QTest::addRow("int on a sub-object %u", nSeed)
            << int(VT::DivElement) << int(VT::PropBorderWidth) << nSeed;
        QTest::addRow("colour %u", nSeed) << int(VT::DivElement) << int(VT::PropBackgroundColor) << nSeed;
    }
}

// Random keyframes against Qt's own interpolation of the child that covers each time: the child
// that leaves the last key at or before the time (the lead-in before the first key, the tail after
// the last), started and paused so that QPropertyAnimation converts to the property's type.
void tst_Keyframes::matchesQtSegments()
{
    QFETCH(int, nKind);
    QFETCH(int, nProperty);
    QFETCH(quint32, nSeed);

    QRandomGenerator random(nSeed);
    static const QList<int> s_lstEasings = [] {
        QList<int> lstTypes;
        for (int nType = QEasingCurve::Linear; nType <= QEasingCurve::OutInBounce; ++nType)
            lstTypes << nType;
        return lstTypes << QEasingCurve::BezierSpline << QEasingCurve::TCBSpline;
    }();
    const bool bColour = nProperty == VT::PropBackgroundColor;
    auto randomValue = [&]() -> QVariant {
        if (bColour)
            return QColor(random.bounded(256), random.bounded(256), random.bounded(256), random.bounded(256));
        // Halves, to meet Qt's rounding of ints on both sides of 0.
        return (random.bounded(2001) - 1000) / 2.0;
    };

    for (int nRound = 0; nRound < 20; ++nRound) {
        auto pElement = makeElement(nKind);
        auto pKeyframe = makeKeyframe(pElement.get(), nProperty);
        const int nKeys = 1 + random.bounded(6);
        int nTime = random.bounded(300);
        for (int i = 0; i < nKeys; ++i) {
            const QVariant value = randomValue();
            const QVariant valueMinus = random.bounded(3) == 0 ? randomValue() : value;
            pKeyframe->addKeyValue(makeKey(nTime, value, valueMinus),
                                   QEasingCurve::Type(s_lstEasings.at(random.bounded(s_lstEasings.size()))),
                                   random.bounded(4) != 0);
            // Now and then two keys share a time.
            nTime += random.bounded(5) == 0 ? 0 : 1 + random.bounded(800);
        }
        QCOMPARE(structureProblem(*pKeyframe), QString());
        QObject* pTarget = pKeyframe->getTargetObject();
        QVERIFY(pTarget);
        const QByteArray name = pKeyframe->getPropertyName();
        const QList<VTKeyValue*>& lstKeys = pKeyframe->getKeyValues();

        for (int nSample = 0; nSample < 40; ++nSample) {
            const int t = random.bounded(pKeyframe->getEndTime() + 200);
            int nChild = 0;
            while (nChild < lstKeys.size() && lstKeys.at(nChild)->getTime() <= t)
                ++nChild;
            auto* pSegment = qobject_cast<QPropertyAnimation*>(pKeyframe->animationAt(nChild));
            QVERIFY(pSegment);
            pSegment->start();
            if (pSegment->state() == QAbstractAnimation::Running)
                pSegment->pause();
            pSegment->setCurrentTime(nChild == 0 ? t : t - lstKeys.at(nChild - 1)->getTime());
            const QVariant qtValue = pSegment->currentValue();
            pSegment->stop();

            const QString where =
                QStringLiteral("round %1 at %2: %3").arg(nRound).arg(t).arg(describe(*pKeyframe));
            QVERIFY2(pKeyframe->getValue(t) == qtValue,
                     qPrintable(where + QStringLiteral(" gives %1, Qt %2")
                                            .arg(valueText(pKeyframe->getValue(t)), valueText(qtValue))));
            pKeyframe->applyTime(t);
            QVERIFY2(pTarget->property(name.constData()) == qtValue,
                     qPrintable(where + QStringLiteral(" applied")));
        }
    }
}

void tst_Keyframes::addKeyValue()
{
    auto pDiv = makeElement(VT::DivElement);
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropOpacity);
    VTKeyValue* pFirst = makeKey(0, 0.5);
    pKeyframe->addKeyValue(pFirst, QEasingCurve::Linear, true);
    QCOMPARE(pKeyframe->animationCount(), 2);
    QVERIFY(pKeyframe->getKeyframeSegments().isEmpty());

    // Equal ends: no transition whatever was asked.
    pKeyframe->addKeyValue(makeKey(1000, 0.5), QEasingCurve::InQuad, true);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0.5 (-1) 1000=0.5"));
    // The left part keeps its flag and curve, the new right part gets its own.
    pKeyframe->addKeyValue(makeKey(500, 0.8), QEasingCurve::OutQuad, true);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0.5 (-1) 500=0.8 (+2) 1000=0.5"));
    VTKeyValue* pNewcomer = makeKey(500, 0.1);
    pKeyframe->addKeyValue(pNewcomer, QEasingCurve::Linear, true);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0.5 (-1) 500=0.1 (+0) 500=0.8 (+2) 1000=0.5"));
    QCOMPARE(pKeyframe->getKeyValue(500), pNewcomer);
    // A key that is here already is not added twice.
    pKeyframe->addKeyValue(pFirst, QEasingCurve::Linear, true);
    QCOMPARE(pKeyframe->getKeyValues().size(), 4);
    QCOMPARE(structureProblem(*pKeyframe), QString());
    // A key in front of the first one: the lead-in now arrives at its arrival value.
    pKeyframe->moveKeyValue(pFirst, 100);
    pKeyframe->addKeyValue(makeKey(0, 0.9, 0.3), QEasingCurve::InQuad, true);
    QCOMPARE(structureProblem(*pKeyframe), QString());
    QCOMPARE(pKeyframe->getValue(0).toDouble(), 0.9);
    QCOMPARE(pKeyframe->getKeyframeSegments().first()->hasTransition(), true);

    // Display jumps, always.
    auto pDisplay = makeKeyframe(pDiv.get(), VT::PropDisplay, {{0, 1, 1}, {1000, 0, 0}, {500, 2, 2}});
    QCOMPARE(describe(*pDisplay), QStringLiteral("0=1 (-0) 500=2 (-0) 1000=0"));
    QCOMPARE(pDisplay->getValue(700).toInt(), 2);
    QCOMPARE(structureProblem(*pDisplay), QString());
}

void tst_Keyframes::detachKeyValue()
{
    auto pDiv = makeElement(VT::DivElement);
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{0, 0, 0}});
    VTKeyValue* pMiddle = makeKey(500, 50.0);
    VTKeyValue* pLast = makeKey(1000, 100.0, 90.0);
    pKeyframe->addKeyValue(pLast, QEasingCurve::InQuad, true);
    pKeyframe->addKeyValue(pMiddle, QEasingCurve::OutQuad, false);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0 (+1) 500=50 (-2) 1000=90>100"));

    // The left segment survives with its flag and curve and now reaches the next key.
    std::unique_ptr<VTKeyframeSegment> pTaken(pKeyframe->detachKeyValue(pMiddle));
    std::unique_ptr<VTKeyValue> pMiddleOwned(pMiddle);
    QVERIFY(pTaken);
    QCOMPARE(pTaken->getStartKeyValue(), pMiddle);
    QCOMPARE(pTaken->hasTransition(), false);
    QCOMPARE(pTaken->easingCurve().type(), QEasingCurve::OutQuad);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0 (+1) 1000=90>100"));
    QCOMPARE(structureProblem(*pKeyframe), QString());
    QCOMPARE(pKeyframe->getValue(500).toDouble(), 90 * 0.25);

    // The last key: the segment that arrives at it leaves, the tail holds the key before.
    std::unique_ptr<VTKeyframeSegment> pTakenLast(pKeyframe->detachKeyValue(pLast));
    std::unique_ptr<VTKeyValue> pLastOwned(pLast);
    QVERIFY(pTakenLast);
    QCOMPARE(pTakenLast->getEndKeyValue(), pLast);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0"));
    QCOMPARE(structureProblem(*pKeyframe), QString());
    QCOMPARE(pKeyframe->getValue(2000).toDouble(), 0.0);

    // A foreign key changes nothing; the only key empties the keyframe and is not deleted.
    QVERIFY(!pKeyframe->detachKeyValue(pLast));
    VTKeyValue* pOnly = pKeyframe->getKeyValues().first();
    QVERIFY(!pKeyframe->detachKeyValue(pOnly));
    std::unique_ptr<VTKeyValue> pOnlyOwned(pOnly);
    QCOMPARE(pKeyframe->animationCount(), 0);
    QVERIFY(!pKeyframe->getValue(100).isValid());
    QCOMPARE(pOnly->getTime(), 0);

    // Removing the first of several: the lead-in now arrives at the next key's arrival value.
    auto pThree = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{100, 5, 10}, {400, 30, 40}, {900, 90, 90}});
    VTKeyValue* pFirst = pThree->getKeyValues().first();
    std::unique_ptr<VTKeyframeSegment> pTakenFirst(pThree->detachKeyValue(pFirst));
    std::unique_ptr<VTKeyValue> pFirstOwned(pFirst);
    QVERIFY(pTakenFirst);
    QCOMPARE(describe(*pThree), QStringLiteral("400=30>40 (+0) 900=90"));
    QCOMPARE(structureProblem(*pThree), QString());
    QCOMPARE(pThree->getValue(200).toDouble(), 30.0);
}

void tst_Keyframes::moveAndChangeKeys()
{
    auto pDiv = makeElement(VT::DivElement);
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{100, 10, 10}, {500, 50, 50}, {900, 90, 90}});
    VTKeyValue* pFirst = pKeyframe->getKeyValues().at(0);
    VTKeyValue* pMiddle = pKeyframe->getKeyValues().at(1);
    VTKeyValue* pLast = pKeyframe->getKeyValues().at(2);

    const QList<QPair<VTKeyValue*, QPair<int, int>>> lstMoves{{pMiddle, {1200, 900}},
                                                              {pMiddle, {50, 100}},
                                                              {pMiddle, {300, 300}},
                                                              {pFirst, {-100, 0}},
                                                              {pLast, {5000, 5000}}};
    for (const auto& move : lstMoves) {
        pKeyframe->moveKeyValue(move.first, move.second.first);
        QCOMPARE(move.first->getTime(), move.second.second);
        QCOMPARE(structureProblem(*pKeyframe), QString());
    }
    QCOMPARE(pKeyframe->getKeyValues(), (QList<VTKeyValue*>{pFirst, pMiddle, pLast}));
    QCOMPARE(pKeyframe->getEndTime(), 5000);
    QCOMPARE(pKeyframe->getValue(150).toDouble(), 30.0);
    QVERIFY(!pKeyframe->getKeyframeSegment(300));
    QCOMPARE(pKeyframe->getKeyframeSegment(301), pKeyframe->getKeyframeSegments().at(1));

    // Without a jump value_minus follows, with one it stays, and an explicit one wins.
    pKeyframe->changeKeyValue(pFirst, 20.0);
    pKeyframe->changeKeyValue(pMiddle, 60.0, 40.0);
    pKeyframe->changeKeyValue(pMiddle, 70.0);
    pKeyframe->changeKeyValue(pLast, 95.0, 85.0);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=20 (+0) 300=40>70 (+0) 5000=85>95"));
    QCOMPARE(structureProblem(*pKeyframe), QString());
    QCOMPARE(pKeyframe->getValue(150).toDouble(), 30.0);
    QCOMPARE(pKeyframe->getValue(6000).toDouble(), 95.0);
    pKeyframe->changeKeyValue(pFirst, 5.0, 1.0);
    QCOMPARE(structureProblem(*pKeyframe), QString()); // the lead-in arrives at 1 now

    pKeyframe->moveAllKeyValues(200);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("200=1>5 (+0) 500=40>70 (+0) 5200=85>95"));
    QCOMPARE(structureProblem(*pKeyframe), QString());
    QCOMPARE(pKeyframe->getValue(100).toDouble(), 1.0);
    QCOMPARE(pKeyframe->getValue(350).toDouble(), 5 + (40 - 5) * 0.5);
}

void tst_Keyframes::shiftWholeCurve()
{
    auto pDiv = makeElement(VT::DivElement);
    // Percent values are stored as fractions: the range 0..100 limits them to 0..1.
    auto pOpacity = makeKeyframe(pDiv.get(), VT::PropOpacity, {{0, 0.2, 0.6}, {1000, 0.8, 0.8}});
    pOpacity->changeAllKeyValues(0.5, 0.9);
    QCOMPARE(describe(*pOpacity), QStringLiteral("0=0.6>1 (+0) 1000=1"));
    pOpacity->changeAllKeyValues(0.9, 0.0);
    QCOMPARE(describe(*pOpacity), QStringLiteral("0=0>0.1 (+0) 1000=0.1"));
    QCOMPARE(structureProblem(*pOpacity), QString());

    // Degrees are not scaled: the limit is 36000 itself.
    auto pRotate = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{0, 100, 100}, {1000, 35000, 35000}});
    pRotate->changeAllKeyValues(0.0, 2000.0);
    QCOMPARE(describe(*pRotate), QStringLiteral("0=2100 (+0) 1000=36000"));

    // Colours move by the difference of their 32-bit words.
    auto pColour = makeKeyframe(pDiv.get(), VT::PropBackgroundColor);
    pColour->addKeyValue(makeKey(0, QColor(100, 100, 100)), QEasingCurve::Linear, true);
    pColour->changeAllKeyValues(QColor(10, 20, 30), QColor(11, 22, 33));
    QCOMPARE(pColour->getKeyValues().first()->getValue().value<QColor>(), QColor(101, 102, 103));
    QCOMPARE(pColour->getValue(500).value<QColor>(), QColor(101, 102, 103));

    // Units: pixels to shares of 200 and back; 0 stays 0; other units and no change leave it.
    auto pLeft = makeKeyframe(pDiv.get(), VT::PropLeft, {{0, 50, 0}, {1000, 100, 100}});
    pLeft->changeUnit(QStringLiteral("px"), QStringLiteral("%"), 200.0);
    QCOMPARE(describe(*pLeft), QStringLiteral("0=0.25>0 (+0) 1000=0.5"));
    QCOMPARE(structureProblem(*pLeft), QString());
    pLeft->changeUnit(QStringLiteral("%"), QStringLiteral("px"), 200.0);
    pLeft->changeUnit(QStringLiteral("px"), QStringLiteral("px"), 3.0);
    pLeft->changeUnit(QStringLiteral("px"), QStringLiteral("deg"), 3.0);
    QCOMPARE(describe(*pLeft), QStringLiteral("0=50>0 (+0) 1000=100"));
}

void tst_Keyframes::invertKeyValues()
{
    auto pDiv = makeElement(VT::DivElement);
    auto pTwo = makeKeyframe(pDiv.get(), VT::PropRotateZ, {{0, 0, 0}, {1000, 100, 100}});
    pTwo->invertKeyValues(0, 1);
    QCOMPARE(describe(*pTwo), QStringLiteral("0=100 (+0) 1000=0"));
    QCOMPARE(pTwo->getValue(250).toDouble(), 75.0);
    QCOMPARE(structureProblem(*pTwo), QString());
    for (const QPair<int, int>& range : QList<QPair<int, int>>{{1, 1}, {1, 0}, {-1, 1}, {0, 2}}) {
        pTwo->invertKeyValues(range.first, range.second);
        QCOMPARE(describe(*pTwo), QStringLiteral("0=100 (+0) 1000=0"));
    }

    // A run of four from the second key on, with a jump at its last key, which is the list's last.
    auto pRun = makeKeyframe(pDiv.get(), VT::PropRotateZ,
                             {{0, 0, 0}, {100, 1, 1}, {300, 2, 2}, {600, 3, 3}, {1000, 4, 7}});
    const QList<VTKeyframeSegment*> lstSegments = pRun->getKeyframeSegments();
    lstSegments.at(1)->setEasing(VTTimeline::createEasingCurve(QEasingCurve::InQuad));
    lstSegments.at(2)->setEasing(VTTimeline::createEasingCurve(QEasingCurve::OutQuad));
    lstSegments.at(3)->setEasing(VTTimeline::createEasingCurve(QEasingCurve::InCubic));
    lstSegments.at(3)->setTransition(false);
    lstSegments.at(3)->updateAnimation();
    pRun->invertKeyValues(1, 4);
    // Times mirror about the run's middle; values swap crosswise in pairs from both ends; the last
    // key's value keeps the run's old first value, as does the tail.
    QCOMPARE(describe(*pRun), QStringLiteral("0=0 (+0) 100=7>4 (-5) 500=3 (+2) 800=2 (+1) 1000=1"));
    QCOMPARE(structureProblem(*pRun), QString());
    QCOMPARE(pRun->getValue(5000).toDouble(), 1.0);
}

void tst_Keyframes::projectForm()
{
    auto pDiv = makeElement(VT::DivElement);
    pDiv->setId(3);
    // Without an animation around it a keyframe writes nothing.
    auto pLoose = makeKeyframe(pDiv.get(), VT::PropOpacity, {{0, 0.1, 0.1}});
    QJsonObject joLoose;
    pLoose->serialize(joLoose);
    QVERIFY(joLoose.isEmpty());

    VTAnimation animation(pDiv.get());
    VTKeyframe* pOpacity =
        makeKeyframe(pDiv.get(), VT::PropOpacity,
                     {{0, 0.1, 0.1}, {400, 0.3, 0.5}, {400, 0.6, 0.6}, {900, 0.2, 0.9, false}})
            .release();
    pOpacity->getKeyframeSegments().at(0)->setEasing(
        VTTimeline::createEasingCurve(QEasingCurve::BezierSpline));
    pOpacity->getKeyframeSegments().at(2)->setEasing(VTTimeline::createEasingCurve(QEasingCurve::TCBSpline));
    VTKeyframe* pColour = makeKeyframe(pDiv.get(), VT::PropBackgroundColor).release();
    pColour->addKeyValue(makeKey(0, QColor(Qt::black)), QEasingCurve::Linear, true);
    pColour->addKeyValue(makeKey(500, QColor(10, 20, 30, 40), QColor(Qt::white)), QEasingCurve::OutBack,
                         true);
    animation.addKeyframe(pOpacity);
    animation.addKeyframe(pColour);

    for (VTKeyframe* pKeyframe : {pOpacity, pColour}) {
        QJsonObject joSaved;
        pKeyframe->serialize(joSaved);
        QCOMPARE(joSaved.value("elementId").toInt(), 3);
        auto* pCopy = VTKeyframe::createKeyframe(pKeyframe->getType(), pDiv.get(), kBase);
        QStringList lstProblems;
        QVERIFY(pCopy->parse(joSaved, &lstProblems));
        QVERIFY(lstProblems.isEmpty());
        VTAnimation copyAnimation(pDiv.get());
        copyAnimation.addKeyframe(pCopy);
        QJsonObject joCopy;
        pCopy->serialize(joCopy);
        QCOMPARE(QJsonDocument(joCopy).toJson(), QJsonDocument(joSaved).toJson());
        QCOMPARE(describe(*pCopy), describe(*pKeyframe));
        QCOMPARE(structureProblem(*pCopy), QString());
    }

    // An opaque black is a negative 32-bit word.
    QJsonObject joColour;
    pColour->serialize(joColour);
    const QJsonObject joFirst = joColour.value("keyValues").toArray().at(0).toObject();
    QCOMPARE(joFirst.value("type").toInt(), int(QMetaType::QColor));
    QCOMPARE(joFirst.value("value").toObject().value("rgba").toInt(), -16777216);
}

void tst_Keyframes::damagedKeys()
{
    auto pDiv = makeElement(VT::DivElement);
    const QJsonObject joDamaged = QJsonDocument::fromJson(R"({"type": 14, "unit": "%", "keyValues": [
        {"time": 0, "type": 6, "value": {"val": 0.25}, "value_minus": {"val": 0.25}},
        "not a key",
        {"type": 6, "value": {"val": 0.5}},
        {"time": 300, "type": 6, "value": {"x": 1}},
        {"time": 600, "type": 6, "value": {"val": 0.75}, "value_minus": {"val": 0.75}}],
        "keyframeSegments": [{"easing_curve": 3, "has_transition": true}, {"easing_curve": 999, "has_transition": true},
                             {"easing_curve": 1, "has_transition": true}]})")
                                      .object();
    auto pKeyframe = makeKeyframe(pDiv.get(), VT::PropOpacity);
    QStringList lstProblems;
    QVERIFY(!pKeyframe->parse(joDamaged, &lstProblems));
    // Two keys without a time are left out; the damaged value reads as 0; the unknown easing is
    // linear; the surplus segment object is ignored.
    QCOMPARE(lstProblems.size(), 4);
    QCOMPARE(describe(*pKeyframe), QStringLiteral("0=0.25 (+3) 300=0 (+0) 600=0.75"));
    QCOMPARE(structureProblem(*pKeyframe), QString());

    // Not a list of keys at all.
    auto pOther = makeKeyframe(pDiv.get(), VT::PropOpacity);
    lstProblems.clear();
    QVERIFY(!pOther->parse(QJsonObject{{"keyValues", "many"}}, &lstProblems));
    QCOMPARE(lstProblems.size(), 1);
    QCOMPARE(pOther->animationCount(), 0);
}

void tst_Keyframes::exportEntries()
{
    auto pDiv = makeElement(VT::DivElement);
    pDiv->setId(3);
    VTAnimation animation(pDiv.get());
    // Both segments hold: every key is a jump entry of its own, the one at 500 from 25 % to 75 %.
    VTKeyframe* pHolding =
        makeKeyframe(pDiv.get(), VT::PropOpacity, {{0, 0, 0}, {500, 0.25, 0.75, false}, {1000, 1, 1, false}})
            .release();
    // Both segments move and the middle key has no jump: two moves and nothing else.
    VTKeyframe* pMoving = makeKeyframe(pDiv.get(), VT::PropScaleX, {{0, 0, 0}, {500, 0.5, 0.5}, {1000, 1, 1}},
                                       QEasingCurve::OutQuad)
                              .release();
    animation.addKeyframe(pHolding);
    animation.addKeyframe(pMoving);

    auto entry = [](const char* pProperty, int t, int d, double s, double e) {
        return QJsonObject{{"el", 3}, {"p", pProperty}, {"t", t}, {"d", d}, {"s", s}, {"e", e}};
    };
    QJsonArray jaHolding;
    pHolding->appendAnimData(jaHolding, false);
    QCOMPARE(jaHolding,
             (QJsonArray{entry("o", 0, 0, 0, 0), entry("o", 500, 0, 25, 75), entry("o", 1000, 0, 100, 100)}));

    QJsonObject joMove1 = entry("sX", 0, 500, 0, 50);
    joMove1.insert("es", int(QEasingCurve::OutQuad));
    QJsonObject joMove2 = entry("sX", 500, 500, 50, 100);
    joMove2.insert("es", int(QEasingCurve::OutQuad));
    QJsonObject joMoving;
    pMoving->getKeyframesData(joMoving, false);
    QCOMPARE(joMoving, (QJsonObject{{"el", 3}, {"p", "sX"}, {"anims", QJsonArray{joMove1, joMove2}}}));
}

QTEST_GUILESS_MAIN(tst_Keyframes)
#include "tst_keyframes.moc"
