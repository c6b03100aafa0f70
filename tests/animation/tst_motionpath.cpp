#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTElementFactory.h"
#include "VTKeyValue.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <climits>
#include <cmath>
#include <memory>

namespace {

const VTLayoutKey kBase = VTLayoutKey::base();
const VTLayoutKey kOther(1, 0);

// Anchors as rows [x, y, key time] (a straight corner) or [x, y, c1x, c1y, c2x, c2y, key time].
using Rows = QVector<QVector<double>>;

VTAnchorPoint* makeAnchor(const QVector<double>& row)
{
    const QPointF pt(row.at(0), row.at(1));
    if (row.size() == 3)
        return new VTAnchorPoint(pt, pt, pt, int(row.at(2)));
    return new VTAnchorPoint(pt, {row.at(2), row.at(3)}, {row.at(4), row.at(5)}, int(row.at(6)));
}

// The path of the rows and one key per distinct key time, valued with the position of the last
// anchor of that time, so that neighbouring keys differ and the segments move.
std::unique_ptr<VTMotionPathKeyframe> makeMotion(VTElement* pElement, const Rows& rows,
                                                 QEasingCurve::Type nEasing = QEasingCurve::Linear,
                                                 bool bTransition = true)
{
    auto pKeyframe = std::make_unique<VTMotionPathKeyframe>(pElement, kBase);
    VTMotionPath* pPath = pKeyframe->getMotionPath();
    for (const QVector<double>& row : rows)
        pPath->addAnchorPoint(INT_MAX, makeAnchor(row));
    QMap<int, QPointF> mapKeys;
    for (const VTAnchorPoint* pAnchor : pPath->getAnchorPoints()) {
        if (pAnchor->hasKeyTime())
            mapKeys.insert(pAnchor->getKeyTime(), pAnchor->getPosition());
    }
    for (auto it = mapKeys.cbegin(); it != mapKeys.cend(); ++it)
        pKeyframe->addKeyValue(new VTKeyValue(it.key(), it.value()), nEasing, bTransition);
    return pKeyframe;
}

std::unique_ptr<VTElement> makeDiv()
{
    return std::unique_ptr<VTElement>(VTElementFactory::createElement(VT::DivElement));
}

QString pointText(const QPointF& pt)
{
    return QStringLiteral("(%1, %2)").arg(pt.x()).arg(pt.y());
}

} // namespace

class tst_MotionPath : public QObject
{
    Q_OBJECT
private slots:
    void positions_data();
    void positions();
    void orientation();
    void newAnchorIndex();
    void olderAbsoluteForm();
};

void tst_MotionPath::positions_data()
{
    QTest::addColumn<Rows>("anchors");
    QTest::addColumn<int>("nEasing");
    QTest::addColumn<bool>("bTransition");
    QTest::addColumn<Rows>("checks"); // [time, x, y]
    QTest::addColumn<double>("dTolerance");

    const int nLinear = QEasingCurve::Linear;
    QTest::newRow("straight")
        << Rows{{0, 0, 0}, {100, 50, 1000}} << nLinear << true
        << Rows{{0, 0, 0}, {250, 25, 12.5}, {500, 50, 25}, {1000, 100, 50}, {1500, 100, 50}} << 1e-6;
    QTest::newRow("eased") << Rows{{0, 0, 0}, {100, 0, 1000}} << int(QEasingCurve::InQuad) << true
                           << Rows{{500, 100 * 0.5 * 0.5, 0}, {800, 100 * 0.8 * 0.8, 0}} << 1e-6;
    // Handles (0, 50) and (100, 50): the curve's top is its middle, (50, 37.5).
    QTest::newRow("symmetric cubic") << Rows{{0, 0, 0, 0, 0, 50, 0}, {100, 0, 100, 50, 100, 0, 1000}}
                                     << nLinear << true << Rows{{500, 50, 37.5}, {0, 0, 0}, {1000, 100, 0}}
                                     << 0.5;
    // Legs of 50 and 60 px: the middle of the time lies 5 px past the corner.
    QTest::newRow("through a shape-only anchor")
        << Rows{{0, 0, 0}, {30, 40, -1}, {30, 100, 1000}} << nLinear << true
        << Rows{{250, 30 * 27.5 / 50, 40 * 27.5 / 50}, {500, 30, 45}, {750, 30, 72.5}} << 1e-6;
    QTest::newRow("before and after the keyed anchors")
        << Rows{{0, 0, 200}, {100, 0, 1200}} << nLinear << true
        << Rows{{0, 0, 0}, {100, 0, 0}, {200, 0, 0}, {700, 50, 0}, {1200, 100, 0}, {5000, 100, 0}} << 1e-6;
    // The key at 1000 stands for both anchors of that time; travel on starts from the later one.
    QTest::newRow("two anchors at one key time")
        << Rows{{0, 0, 0}, {100, 0, 1000}, {100, 20, 1000}, {100, 120, 2000}} << nLinear << true
        << Rows{{500, 50, 0}, {1000, 100, 20}, {1500, 100, 70}, {2000, 100, 120}} << 1e-6;
    QTest::newRow("segment without transition") << Rows{{0, 0, 0}, {100, 0, 1000}} << nLinear << false
                                                << Rows{{500, 0, 0}, {999, 0, 0}, {1000, 100, 0}} << 1e-6;
}

void tst_MotionPath::positions()
{
    QFETCH(Rows, anchors);
    QFETCH(int, nEasing);
    QFETCH(bool, bTransition);
    QFETCH(Rows, checks);
    QFETCH(double, dTolerance);

    auto pDiv = makeDiv();
    auto pKeyframe = makeMotion(pDiv.get(), anchors, QEasingCurve::Type(nEasing), bTransition);
    for (const QVector<double>& check : checks) {
        const int nTime = int(check.at(0));
        const QPointF ptExpected(check.at(1), check.at(2));
        const QPointF pt = pKeyframe->getValue(nTime).toPointF();
        QVERIFY2(QLineF(pt, ptExpected).length() <= dTolerance,
                 qPrintable(QStringLiteral("at %1: %2 instead of %3")
                                .arg(nTime)
                                .arg(pointText(pt), pointText(ptExpected))));
        pKeyframe->applyTime(nTime);
        QCOMPARE(pDiv->getTranslateXY(), pt);
    }
}

void tst_MotionPath::orientation()
{
    struct Case
    {
        const char* pName;
        Rows anchors;
        bool bTransition;
        int nTime;
        double dDegrees;
        double dTolerance;
    };
    // Degrees clockwise from the x axis as the stage shows it, with y growing downwards.
    const QList<Case> lstCases{
        {"right and down", {{0, 0, 0}, {100, 100, 1000}}, true, 500, 45, 1e-6},
        {"left", {{100, 0, 0}, {0, 0, 1000}}, true, 500, 180, 1e-6},
        {"up", {{0, 100, 0}, {0, 0, 1000}}, true, 300, -90, 1e-6},
        // The flattened curve's chords near the top are within a degree or two of level.
        {"top of the symmetric cubic",
         {{0, 0, 0, 0, 0, 50, 0}, {100, 0, 100, 50, 100, 0, 1000}},
         true,
         500,
         0,
         2},
        {"down at the cubic's start",
         {{0, 0, 0, 0, 0, 50, 0}, {100, 0, 100, 50, 100, 0, 1000}},
         true,
         5,
         90,
         10},
        {"not moving", {{0, 0, 0}, {100, 100, 1000}}, false, 500, 0, 0},
        {"before the first key", {{0, 0, 200}, {100, 100, 1000}}, true, 100, 0, 0},
    };
    auto pDiv = makeDiv();
    for (const Case& c : lstCases) {
        auto pKeyframe = makeMotion(pDiv.get(), c.anchors, QEasingCurve::Linear, c.bTransition);
        const double dDegrees = pKeyframe->getOrientation(c.nTime);
        QVERIFY2(std::abs(dDegrees - c.dDegrees) <= c.dTolerance,
                 qPrintable(QStringLiteral("%1: %2").arg(c.pName).arg(dDegrees)));
    }
}

void tst_MotionPath::newAnchorIndex()
{
    auto pDiv = makeDiv();
    auto pEmpty = makeMotion(pDiv.get(), {});
    QCOMPARE(pEmpty->getNewAnchorPointIndex(500), 0);

    // Indexes 0 to 3: keyed at 100, a corner, keyed at 1100 (legs of 50 and 60 px), keyed at 2100.
    const Rows path{{0, 0, 100}, {30, 40, -1}, {30, 100, 1100}, {130, 100, 2100}};
    auto pKeyframe = makeMotion(pDiv.get(), path);
    const QList<QPair<int, int>> lstCases{
        {50, 0},   // before the first key
        {100, 1},  // behind the anchor of that time
        {350, 1},  // a quarter of the way: still on the first leg (50 / 110)
        {850, 2},  // three quarters: on the second leg
        {1100, 3}, // behind the anchor of that time
        {1600, 3}, // between two keyed anchors without a corner
        {2100, 4}, // at the last key
        {3000, 4}, // after it
    };
    for (const auto& c : lstCases)
        QVERIFY2(
            pKeyframe->getNewAnchorPointIndex(c.first) == c.second,
            qPrintable(
                QStringLiteral("at %1: %2").arg(c.first).arg(pKeyframe->getNewAnchorPointIndex(c.first))));

    // A segment that does not move puts the new anchor right behind its start.
    pKeyframe->getKeyframeSegments().first()->setTransition(false);
    QCOMPARE(pKeyframe->getNewAnchorPointIndex(850), 1);
}

void tst_MotionPath::olderAbsoluteForm()
{
    // An animation of layout (1, 0) whose keyframe still holds the path in stage coordinates.
    const QJsonObject joAnchorA{{"x", 200},  {"y", 150},  {"x1", 200}, {"y1", 150},
                                {"x2", 200}, {"y2", 150}, {"time", 0}};
    const QJsonObject joAnchorB{{"x", 300},  {"y", 150},  {"x1", 300},   {"y1", 150},
                                {"x2", 300}, {"y2", 150}, {"time", 1000}};
    const QJsonArray jaKeys{
        QJsonObject{{"time", 0}, {"type", 26}, {"value", QJsonObject{{"x", 200}, {"y", 150}}}},
        QJsonObject{{"time", 1000}, {"type", 26}, {"value", QJsonObject{{"x", 300}, {"y", 150}}}}};
    QJsonObject joKeyframe{
        {"type", 6},
        {"unit", ""},
        {"keyValues", jaKeys},
        {"keyframeSegments", QJsonArray{QJsonObject{{"easing_curve", 0}, {"has_transition", true}}}}};

    for (const bool bOlder : {true, false}) {
        VTScene scene;
        scene.initDefault();
        auto* pDiv = VTElementFactory::createElement(VT::DivElement);
        QVERIFY(scene.addElement(pDiv) >= 0);
        pDiv->addLayoutProperty(pDiv->getLayoutProperty(kBase)->clone(), kOther);
        pDiv->setInherits(true, kOther);
        const QPointF ptBaseBefore = pDiv->getComputedLeftTop(kBase);
        const QPointF ptOtherBefore = pDiv->getComputedLeftTop(kOther);

        joKeyframe.remove(bOlder ? "motionPath" : "motion_path");
        joKeyframe.insert(bOlder ? "motion_path" : "motionPath",
                          QJsonObject{{"points", QJsonArray{joAnchorA, joAnchorB}}});
        const QJsonObject joAnimation{
            {"element_id", pDiv->getId()}, {"keyframes", QJsonArray{joKeyframe}}, {"inherit", QJsonArray{6}}};
        VTAnimation animation(pDiv);
        QStringList lstProblems;
        QVERIFY(animation.parse(joAnimation, scene.getTimelineManager()->getMainTimeline(), kOther,
                                &lstProblems));
        QVERIFY(lstProblems.isEmpty());
        auto* pKeyframe = qobject_cast<VTMotionPathKeyframe*>(animation.getKeyframe(VT::PropLocation));
        QVERIFY(pKeyframe);
        const QList<VTAnchorPoint*>& lstAnchors = pKeyframe->getMotionPath()->getAnchorPoints();
        QCOMPARE(lstAnchors.size(), 2);
        QCOMPARE(pDiv->getComputedLeftTop(kBase), ptBaseBefore);
        if (bOlder) {
            // The path now starts at the element, which stands where the path started.
            QCOMPARE(lstAnchors.at(0)->getPosition(), QPointF(0, 0));
            QCOMPARE(lstAnchors.at(1)->getPosition(), QPointF(100, 0));
            QCOMPARE(lstAnchors.at(1)->getControlPoint1(), QPointF(100, 0));
            const QPointF ptExpected(200 - pDiv->getComputedTotalW(kOther) * pDiv->getOriginRatioX(kOther),
                                     150 - pDiv->getComputedTotalH(kOther) * pDiv->getOriginRatioY(kOther));
            QCOMPARE(pDiv->getComputedLeftTop(kOther), ptExpected);
            QVERIFY(!pDiv->isInherit(VT::PropLeft, kOther));
            QVERIFY(!pDiv->isInherit(VT::PropTop, kOther));
            QCOMPARE(pKeyframe->getValue(500).toPointF(), QPointF(50, 0));
        } else {
            QCOMPARE(lstAnchors.at(0)->getPosition(), QPointF(200, 150));
            QCOMPARE(pDiv->getComputedLeftTop(kOther), ptOtherBefore);
            QVERIFY(pDiv->isInherit(VT::PropLeft, kOther));
        }
    }
}

QTEST_GUILESS_MAIN(tst_MotionPath)
#include "tst_motionpath.moc"
