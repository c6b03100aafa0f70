#include "VTAnchorPoint.h"
#include "VTBezierPath.h"
#include "VTMotionPath.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

VTAnchorPoint* anchor(double dX, double dY, double dX1, double dY1, double dX2, double dY2, int nTime = -1)
{
    return new VTAnchorPoint(QPointF(dX, dY), QPointF(dX1, dY1), QPointF(dX2, dY2), nTime);
}

bool isNear(const QPointF& a, const QPointF& b, double dTolerance = 1e-9)
{
    return std::abs(a.x() - b.x()) <= dTolerance && std::abs(a.y() - b.y()) <= dTolerance;
}

// Empty when both lists agree and every span matches a fresh flattening of its two anchors.
QString findStaleSpan(const VTBezierPath& path)
{
    const QList<VTAnchorPoint*>& lstAnchors = path.getAnchorPoints();
    const QList<QList<QPointF>*>& lstCurves = path.getCubicBezierCurves();
    if (lstAnchors.size() != lstCurves.size())
        return QStringLiteral("%1 anchors, %2 polylines").arg(lstAnchors.size()).arg(lstCurves.size());
    for (int i = 0; i < lstCurves.size(); ++i) {
        QList<QPointF> lstExpected;
        if (i + 1 < lstAnchors.size())
            VTBezierPath::calculateCurve(lstAnchors.at(i), lstAnchors.at(i + 1), &lstExpected);
        if (*lstCurves.at(i) != lstExpected)
            return QStringLiteral("span %1 is stale").arg(i);
    }
    return QString();
}

#define VERIFY_SPANS(path) QVERIFY2(findStaleSpan(path).isEmpty(), qPrintable(findStaleSpan(path)))

} // namespace

class TestBezierPath : public QObject
{
    Q_OBJECT
private slots:
    void flattening();
    void editingKeepsSpansCurrent();
    void keyAnchorsAndInversion();
    void offsetAndClosedness();
    void boundsIncludeInteriorExtrema();
    void jsonRoundTripAndClone();
    void exportForm();
    void hostileInput();
};

void TestBezierPath::flattening()
{
    // Straight, 100 long, handles on the anchors: N = 25, so 27 points at dt = 1/26, and the
    // parameter runs as x = 100 (3t^2 - 2t^3).
    std::unique_ptr<VTAnchorPoint> a(anchor(0, 0, 0, 0, 0, 0)), b(anchor(100, 0, 100, 0, 100, 0));
    QList<QPointF> lstPoints;
    VTBezierPath::calculateCurve(a.get(), b.get(), &lstPoints);
    QCOMPARE(lstPoints.size(), 27);
    QCOMPARE(lstPoints.last(), QPointF(100, 0));
    QVERIFY(isNear(lstPoints.at(1), QPointF(100 * (3.0 / 676 - 2.0 / 17576), 0)));
    QVERIFY(isNear(lstPoints.at(13), QPointF(50, 0)));

    // A curve with polygon 100 + 100 + 100: N = 75; the forward differences follow the cubic.
    std::unique_ptr<VTAnchorPoint> c(anchor(0, 0, -5, 0, 0, 100)), d(anchor(100, 0, 100, 100, 120, 0));
    QCOMPARE(VTBezierPath::calculateBezierAt(c.get(), d.get(), 0.5), QPointF(50, 75));
    VTBezierPath::calculateCurve(c.get(), d.get(), &lstPoints);
    QCOMPARE(lstPoints.size(), 77);
    for (int i = 0; i < lstPoints.size(); ++i)
        QVERIFY(isNear(lstPoints.at(i), VTBezierPath::calculateBezierAt(c.get(), d.get(), i / 76.0)));

    // Polygon 1.9 rounds to N = 0, 2.0 to N = 1 (the half goes up).
    b.reset(anchor(1.9, 0, 1.9, 0, 0, 0));
    VTBezierPath::calculateCurve(a.get(), b.get(), &lstPoints);
    QCOMPARE(lstPoints, (QList<QPointF>{QPointF(0, 0), QPointF(1.9, 0)}));
    b.reset(anchor(2, 0, 2, 0, 0, 0));
    VTBezierPath::calculateCurve(a.get(), b.get(), &lstPoints);
    QCOMPARE(lstPoints.size(), 3);
    QVERIFY(isNear(lstPoints.at(1), QPointF(1, 0)));

    // Two anchors of one key time: the motion stays put and the span is empty.
    a->setKeyTime(400);
    b->setKeyTime(400);
    VTBezierPath::calculateCurve(a.get(), b.get(), &lstPoints);
    QVERIFY(lstPoints.isEmpty());
    a->setKeyTime(-5);
    b->setKeyTime(-1);
    QCOMPARE(a->getKeyTime(), -1);
    VTBezierPath::calculateCurve(a.get(), b.get(), &lstPoints);
    QCOMPARE(lstPoints.size(), 3);
}

void TestBezierPath::editingKeepsSpansCurrent()
{
    VTBezierPath path;
    VTAnchorPoint* pFirst = anchor(0, 0, 0, 0, 10, 0);
    QCOMPARE(path.addAnchorPoint(0, pFirst), 0);
    QCOMPARE(path.getCubicBezierCurves().size(), 1);
    QVERIFY(!path.getAnchorPointAt(-1));
    VTAnchorPoint* pLast = anchor(100, 0, 90, 0, 100, 0);
    QCOMPARE(path.addAnchorPoint(1, pLast), 1);
    QCOMPARE(path.getCubicBezierCurves().first()->size(), 27);

    VTAnchorPoint* pMiddle = anchor(50, 40, 40, 40, 60, 40);
    VTAnchorPoint* pHead = anchor(-50, 0, -50, 0, -50, 0);
    VTAnchorPoint* pTail = anchor(150, 0, 150, 0, 150, 0);
    QCOMPARE(path.addAnchorPoint(1, pMiddle), 1);
    QCOMPARE(path.addAnchorPoint(-3, pHead), 0);
    QCOMPARE(path.addAnchorPoint(99, pTail), 4);
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{pHead, pFirst, pMiddle, pLast, pTail}));
    VERIFY_SPANS(path);
    // Taking the same anchor twice would delete it twice.
    QCOMPARE(path.addAnchorPoint(2, pMiddle), -1);
    QCOMPARE(path.getAnchorPoints().size(), 5);

    QVERIFY(path.setAnchorPointData(pMiddle, QPointF(50, -40), QPointF(30, -60), QPointF(70, -20)));
    VERIFY_SPANS(path);
    VTAnchorPoint stranger(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QVERIFY(!path.setAnchorPointData(&stranger, QPointF(), QPointF(), QPointF()));
    QCOMPARE(stranger.getPosition(), QPointF(1, 1));

    // Removed anchors survive; they are the undo command's to keep.
    std::unique_ptr<VTAnchorPoint> pRemoved(pMiddle);
    QCOMPARE(path.removeAnchorPoint(pMiddle), 2);
    QCOMPARE(path.getAnchorPointAt(2), pLast);
    VERIFY_SPANS(path);
    QCOMPARE(path.removeAnchorPoint(pMiddle), -1);
    std::unique_ptr<VTAnchorPoint> pRemovedTail(pTail), pRemovedHead(pHead);
    QCOMPARE(path.removeAnchorPoint(pTail), 3);
    QCOMPARE(path.removeAnchorPoint(pHead), 0);
    VERIFY_SPANS(path);

    pLast->setPosition(QPointF(300, 300));
    QVERIFY(!findStaleSpan(path).isEmpty());
    path.updatePathAt(1);
    VERIFY_SPANS(path);
}

void TestBezierPath::keyAnchorsAndInversion()
{
    const int arrTimes[5] = {0, -1, 500, -1, 1000};
    VTBezierPath path;
    QList<VTAnchorPoint*> lst;
    for (int i = 0; i < 5; ++i) {
        lst.append(anchor(i * 100, i * 10, i * 100 - 30, 0, i * 100 + 30, 50, arrTimes[i]));
        path.addAnchorPoint(i, lst.last());
    }
    QCOMPARE(path.getKeyPoints(), (QList<VTAnchorPoint*>{lst[0], lst[2], lst[4]}));
    QCOMPARE(path.getKeyPointIndexes(500), QList<int>{2});

    // Refused: reversed or empty range, negative start, end out of range, a plain anchor at an end.
    for (const auto& range :
         {qMakePair(2, 0), qMakePair(2, 2), qMakePair(-1, 2), qMakePair(2, 5), qMakePair(1, 4)})
        path.invertAnchorPoints(range.first, range.second);
    QCOMPARE(path.getAnchorPoints(), lst);
    QCOMPARE(lst[2]->getControlPoint1(), QPointF(170, 0));

    // Keys 500 to 1000 run backwards: times mirror about 1500, handles swap, order reverses.
    path.invertAnchorPoints(2, 4);
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{lst[0], lst[1], lst[4], lst[3], lst[2]}));
    QCOMPARE(lst[4]->getKeyTime(), 500);
    QCOMPARE(lst[3]->getKeyTime(), -1);
    QCOMPARE(lst[2]->getKeyTime(), 1000);
    QCOMPARE(lst[4]->getControlPoint1(), QPointF(430, 50));
    QCOMPARE(lst[4]->getControlPoint2(), QPointF(370, 0));
    VERIFY_SPANS(path);

    path.invertAnchorPoints(0, 4);
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{lst[2], lst[3], lst[4], lst[1], lst[0]}));
    QCOMPARE(path.getKeyPointIndexes(0), QList<int>{0});
    QCOMPARE(path.getKeyPointIndexes(1000), QList<int>{4});
    VERIFY_SPANS(path);

    // A key outside the range mirrors below 0 and so becomes a plain anchor, not a key at 0;
    // one near the largest int must not overflow on the way.
    lst[3]->setKeyTime(1200);
    path.invertAnchorPoints(0, 2); // keys 0 and 500
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{lst[4], lst[3], lst[2], lst[1], lst[0]}));
    QCOMPARE(lst[3]->getKeyTime(), -1);
    QCOMPARE(path.getKeyPointIndexes(0), QList<int>{0});
    const int nMax = std::numeric_limits<int>::max();
    lst[2]->setKeyTime(nMax);
    lst[1]->setKeyTime(0);
    lst[0]->setKeyTime(nMax);
    path.invertAnchorPoints(2, 4); // both ends at the largest int, 0 in between
    QCOMPARE(lst[1]->getKeyTime(), nMax);
    QCOMPARE(lst[0]->getKeyTime(), nMax);
    VERIFY_SPANS(path);
}

void TestBezierPath::offsetAndClosedness()
{
    VTBezierPath path;
    VTAnchorPoint* pFirst = anchor(0, 0, -10, 0, 10, 0);
    path.addAnchorPoint(0, pFirst);
    QVERIFY(!path.isClosedPath());
    path.addAnchorPoint(1, anchor(100, 100, 100, 90, 100, 110));
    // Without the start point flag an outline from the stage is closed; with it, open...
    QVERIFY(path.isClosedPath());
    pFirst->setStartPoint(true);
    QVERIFY(!path.isClosedPath());
    // ...unless its ends meet anyway.
    path.addAnchorPoint(2, anchor(1e-13, -1e-13, 0, 0, 0, 0));
    QVERIFY(path.isClosedPath());
    path.getAnchorPointAt(2)->setPosition(QPointF(1e-11, 0));
    QVERIFY(!path.isClosedPath());

    const QList<QPointF> lstBefore = *path.getCubicBezierCurves().first();
    path.moveOffset(QPointF(5, -7));
    QCOMPARE(pFirst->getPosition(), QPointF(5, -7));
    QCOMPARE(pFirst->getControlPoint1(), QPointF(-5, -7));
    QCOMPARE(path.getAnchorPointAt(1)->getControlPoint2(), QPointF(105, 103));
    VERIFY_SPANS(path);
    QVERIFY(isNear(path.getCubicBezierCurves().first()->at(5), lstBefore.at(5) + QPointF(5, -7)));
}

void TestBezierPath::boundsIncludeInteriorExtrema()
{
    VTBezierPath path;
    QVERIFY(path.getBoundingRect().isNull());
    // x runs 0, 40, -40, 0: x = 120 t (1 - t)(1 - 2t) reaches -+20/sqrt(3) at t = 1/2 -+ sqrt(3)/6,
    // while both anchors sit at x = 0. y runs 0, 0, 100, 100 and only grows.
    path.addAnchorPoint(0, anchor(0, 0, 0, 0, 40, 0));
    path.addAnchorPoint(1, anchor(0, 100, -40, 100, 0, 200));
    const double dReach = 20.0 / std::sqrt(3.0);
    QVERIFY(isNear(path.getBoundingRect().topLeft(), QPointF(-dReach, 0)));
    QVERIFY(isNear(path.getBoundingRect().bottomRight(), QPointF(dReach, 100)));

    // An arch: y runs 100, 200, 200, 100, so y = 100 + 300 t (1 - t) peaks at 175, short of 200.
    path.addAnchorPoint(2, anchor(100, 100, 100, 200, 100, 100));
    QVERIFY(isNear(path.getBoundingRect().bottomRight(), QPointF(100, 175)));

    // A span between anchors of one key time is not travelled; its handles do not count.
    path.getAnchorPointAt(1)->setKeyTime(300);
    path.getAnchorPointAt(2)->setKeyTime(300);
    path.updatePathAt(2);
    QVERIFY(isNear(path.getBoundingRect().bottomRight(), QPointF(100, 100)));
}

void TestBezierPath::jsonRoundTripAndClone()
{
    VTMotionPath path;
    VTAnchorPoint* pFirst = anchor(1.5, -2.25, -10, 3, 20, 4, 0);
    pFirst->setStartPoint(true);
    path.addAnchorPoint(0, pFirst);
    path.addAnchorPoint(1, anchor(60, 80, 50, 90, 70, 70));
    path.addAnchorPoint(2, anchor(200, 0, 190, 5, 200, 0, 1500));

    QJsonObject json;
    path.serialize(json);
    const QJsonArray points = json.value("points").toArray();
    QCOMPARE(points.at(0).toObject().keys(),
             (QStringList{"startpoint", "time", "x", "x1", "x2", "y", "y1", "y2"}));
    QCOMPARE(points.at(0).toObject().value("y1").toDouble(), 3.0);
    QVERIFY(!points.at(1).toObject().contains("time"));

    VTBezierPath copy;
    copy.addAnchorPoint(0, anchor(9, 9, 9, 9, 9, 9));
    QStringList lstWarnings;
    QVERIFY(copy.parse(QJsonDocument::fromJson(QJsonDocument(json).toJson()).object(), &lstWarnings));
    QVERIFY(lstWarnings.isEmpty());
    QJsonObject again;
    copy.serialize(again);
    QCOMPARE(again, json);
    QCOMPARE(copy.getAnchorPointAt(2)->getKeyTime(), 1500);
    VERIFY_SPANS(copy);

    // Deep, and a motion path stays one even when cloned through the base class.
    QObject keyframe;
    path.setParent(&keyframe);
    std::unique_ptr<VTBezierPath> pClone = static_cast<const VTBezierPath&>(path).clone();
    auto* pMotionClone = dynamic_cast<VTMotionPath*>(pClone.get());
    QVERIFY(pMotionClone && !pMotionClone->getParent());
    pClone->setAnchorPointData(pClone->getAnchorPointAt(0), QPointF(), QPointF(), QPointF());
    QCOMPARE(pFirst->getPosition(), QPointF(1.5, -2.25));
    QCOMPARE(path.getCubicBezierCurves().first()->first(), QPointF(1.5, -2.25));
    QCOMPARE(*pClone->getCubicBezierCurves().at(1), *path.getCubicBezierCurves().at(1));
}

void TestBezierPath::exportForm()
{
    VTBezierPath path;
    VTAnchorPoint* pFirst = anchor(10, -0.000001, 1e-5, 0.5, 20.25, -1.5e-5, 300);
    pFirst->setStartPoint(true);
    path.addAnchorPoint(0, pFirst);
    path.addAnchorPoint(1, anchor(100, 50, 80, 50, 100, 50));
    path.getAnchorPointAt(1)->setStartPoint(true);
    // Values up to 1e-5 become 0, no key time, and only the first anchor may carry the 1.
    QJsonArray array;
    path.serializeToExport(array);
    QCOMPARE(QJsonDocument(array).toJson(QJsonDocument::Compact),
             QByteArray("[[10,0,0,0.5,20.25,-1.5e-05,1],[100,50,80,50,100,50]]"));

    // From the stage: non-arrays skipped, a seventh item other than 1 and any eighth ignored.
    const QByteArray stage = "[[0,0,0,0,30,0,1,99],\"junk\",[50,0.000004,40,0,60,0,2],[100,0,90,0,100,0]]";
    VTBezierPath parsed;
    QStringList lstWarnings;
    QVERIFY(!parsed.parseFromJsArray(QJsonDocument::fromJson(stage).array(), &lstWarnings));
    QCOMPARE(lstWarnings.size(), 1);
    QCOMPARE(parsed.getAnchorPoints().size(), 3);
    QVERIFY(parsed.getAnchorPointAt(0)->isStartPoint());
    QVERIFY(!parsed.getAnchorPointAt(1)->isStartPoint());
    QCOMPARE(parsed.getAnchorPointAt(1)->getPosition(), QPointF(50, 0));
    QVERIFY(!parsed.isClosedPath());
    VERIFY_SPANS(parsed);

    QVERIFY(parsed.parseFromJsArray(array));
    QJsonArray again;
    parsed.serializeToExport(again);
    QCOMPARE(again, array);
}

void TestBezierPath::hostileInput()
{
    VTBezierPath path;
    path.addAnchorPoint(0, anchor(1, 1, 1, 1, 1, 1));
    QVERIFY(path.parse(QJsonObject()));
    QVERIFY(path.getAnchorPoints().isEmpty());
    QVERIFY(!path.parse(QJsonObject{{"points", "many"}}));

    QJsonArray huge, hugeExport;
    for (int i = 0; i <= VTBezierPath::kMaxAnchorCount; ++i) {
        huge.append(QJsonObject{{"x", i}});
        hugeExport.append(QJsonArray{i, 0, 0, 0, 0, 0});
    }
    QVERIFY(!path.parse(QJsonObject{{"points", huge}}));
    QVERIFY(!path.parseFromJsArray(hugeExport));
    QVERIFY(path.getAnchorPoints().isEmpty());

    // Each bad field falls back to its default alone, and is reported once.
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInf = std::numeric_limits<double>::infinity();
    const QJsonArray points{
        QJsonObject{{"x", "12"}, {"y", 7}, {"x1", dNaN}, {"y1", dInf}, {"time", 1.5}, {"startpoint", "yes"}},
        42,
        QJsonObject{{"x", 1e300}, {"y", -1e300}, {"x2", 1e300}, {"time", 1e20}},
        QJsonObject{{"x", QJsonArray{1}}, {"time", -40}, {"startpoint", true}},
    };
    QStringList lstWarnings;
    QVERIFY(!path.parse(QJsonObject{{"points", points}}, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 8);
    QCOMPARE(path.getAnchorPoints().size(), 3);
    QCOMPARE(path.getAnchorPointAt(0)->getPosition(), QPointF(0, 7));
    QCOMPARE(path.getAnchorPointAt(0)->getKeyTime(), -1);
    QVERIFY(!path.getAnchorPointAt(0)->isStartPoint());
    QCOMPARE(path.getAnchorPointAt(1)->getKeyTime(), -1);
    QVERIFY(path.getAnchorPointAt(2)->isStartPoint());
    // Enormous handles cannot make the flattening eat the memory, nor an infinite length hang it.
    QCOMPARE(path.getCubicBezierCurves().at(0)->size(), VTBezierPath::kMaxSegmentsPerSpan + 2);
    VERIFY_SPANS(path);
    std::unique_ptr<VTAnchorPoint> far(anchor(-1e308, 0, 0, 0, 1e308, 0)),
        farther(anchor(1e308, 0, -1e308, 0, 0, 0));
    QList<QPointF> lstPoints;
    VTBezierPath::calculateCurve(far.get(), farther.get(), &lstPoints);
    QCOMPARE(lstPoints.size(), 2);

    lstWarnings.clear();
    QVERIFY(!path.parseFromJsArray(QJsonArray{QJsonArray{5, "6"}, QJsonArray{}}, &lstWarnings));
    QCOMPARE(path.getAnchorPointAt(0)->getPosition(), QPointF(5, 0));
    QCOMPARE(lstWarnings.size(), 5 + 6);
}

QTEST_APPLESS_MAIN(TestBezierPath)
#include "tst_bezierpath.moc"
