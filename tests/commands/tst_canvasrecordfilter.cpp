#include "VTAnimation.h"
#include "VTCanvasRecordFilter.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMotionPathKeyframe.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QtTest>

#include <functional>
#include <memory>

namespace {

// A project of two scenes; the first is shown. Its element has a Location keyframe with a key in
// the base layout and one parked in another layout; a second element's Location keyframe is empty.
struct Stage
{
    Stage()
    {
        document.getSceneManager()->addNewScenes(2, 800, 600, false);
        pScene = document.getSceneManager()->getScenes().at(0);
        pOther = document.getSceneManager()->getScenes().at(1);
        pElement = add(pScene);
        pBare = add(pScene);
        pOtherElement = add(pOther);
        pTimeline = pScene->getTimelineManager()->getCurrentTimeline();
        pSecondTimeline = new VTTimeline(pScene);
        pScene->getTimelineManager()->addTimeline(pSecondTimeline);
        pOtherTimeline = pOther->getTimelineManager()->getCurrentTimeline();

        pAnimation = animate(pElement, VTLayoutKey::base(), &pKeyframe);
        pKeyframe->addKeyValue(new VTKeyValue(0, QPointF(1, 2)), QEasingCurve::Linear, false);
        pBareAnimation = animate(pBare, VTLayoutKey::base(), nullptr);
        animate(pElement, VTLayoutKey(1, 0), &pParkedKeyframe);

        pUsed = new VTResource(VTResource::Image);
        pUsed->setUsageCount(1);
        pUnused = new VTResource(VTResource::Image);
        document.getResourceManager()->addResource(pUsed);
        document.getResourceManager()->addResource(pUnused);
    }

    VTElement* add(VTScene* pTarget)
    {
        VTElement* pNew = VTElementFactory::createElement(VT::DivElement);
        pTarget->addElement(pNew);
        return pNew;
    }

    VTAnimation* animate(VTElement* pTarget, const VTLayoutKey& key, VTKeyframe** ppLocation)
    {
        auto* pNew = new VTAnimation(pTarget);
        pTimeline->addAnimation(pNew, key);
        VTKeyframe* pLocation = VTKeyframe::createKeyframe(VT::PropLocation, pTarget, key);
        pNew->addKeyframe(pLocation);
        if (ppLocation)
            *ppLocation = pLocation;
        return pNew;
    }

    VTDocument document;
    VTSymbol otherSymbol;
    VTScene* pScene = nullptr;
    VTScene* pOther = nullptr;
    VTElement* pElement = nullptr;
    VTElement* pBare = nullptr;
    VTElement* pOtherElement = nullptr;
    VTTimeline* pTimeline = nullptr;
    VTTimeline* pSecondTimeline = nullptr;
    VTTimeline* pOtherTimeline = nullptr;
    VTAnimation* pAnimation = nullptr;
    VTAnimation* pBareAnimation = nullptr;
    VTKeyframe* pKeyframe = nullptr;
    VTKeyframe* pParkedKeyframe = nullptr;
    VTResource* pUsed = nullptr;
    VTResource* pUnused = nullptr;
};

using Params = QList<VTCmdParam*>;
using ParamsOf = std::function<Params(Stage&)>;

template <typename T> VTCmdParam* ref(T* pObject)
{
    return new VTCmdParam(pObject, false);
}

VTCmdParam* num(int nValue)
{
    return new VTCmdParam(nValue);
}

VTCmdParam* pair(int nH, int nV)
{
    return new VTCmdParam(VTLayoutKey(nH, nV));
}

bool notify(int nId, Params lstParams, const VTScene* pShown, QObject* pSender = nullptr,
            const QObject* pCanvas = nullptr)
{
    VTUpdateViewInfo info;
    info.setId(nId);
    info.setParams(&lstParams);
    info.setSender(pSender);
    const bool bResult = VTCanvasRecordFilter::shouldNotifyActionToJS(&info, pCanvas, pShown);
    qDeleteAll(lstParams);
    return bResult;
}

} // namespace

Q_DECLARE_METATYPE(ParamsOf)

class TestCanvasRecordFilter : public QObject
{
    Q_OBJECT

private slots:
    void recordsForTheShownScene_data();
    void recordsForTheShownScene();
    void senderAndEmptyRecords();
    void anotherShownLayout();
    void finishedCommandNeeds_data();
    void finishedCommandNeeds();
};

void TestCanvasRecordFilter::recordsForTheShownScene_data()
{
    using A = VTCommandAction;
    QTest::addColumn<int>("nId");
    QTest::addColumn<bool>("bExpected");
    QTest::addColumn<ParamsOf>("paramsOf");
    const auto row = [](const char* name, int nId, bool bExpected, ParamsOf paramsOf) {
        QTest::newRow(name) << nId << bExpected << paramsOf;
    };
    const auto yes = [] { return new VTCmdParam(true); };
    using P = Params;

    row("select, shown scene", A::SelectElement, true, [=](Stage& s) { return P{ref(s.pElement), yes()}; });
    row("select, other scene", A::SelectElement, false, [=](Stage& s) {
        return P{ref(s.pOtherElement), yes()};
    });
    row("add to shown scene", A::AddElement, true, [](Stage& s) {
        return P{ref(s.pOtherElement), num(0), ref(s.pScene)};
    });
    row("add to other scene", A::AddElement, false, [](Stage& s) {
        return P{ref(s.pElement), num(0), ref(s.pOther)};
    });
    // With a parent, the parent's scene decides, not the scene parameter.
    row("add under parent of other scene", A::AddElement, false, [](Stage& s) {
        return P{ref(s.pElement), num(0), ref(s.pScene), ref(s.pOtherElement)};
    });
    row("add without scene", A::AddElement, false, [](Stage& s) { return P{ref(s.pElement), num(0)}; });
    row("geometry, shown layout", 1000, true, [](Stage& s) { return P{ref(s.pElement), num(0), num(0)}; });
    row("geometry, other layout", 1000, false, [](Stage& s) { return P{ref(s.pElement), num(1), num(0)}; });
    // The border carries its layout behind four values; ints in front must not count.
    row("border, other layout at its place", 1001, false,
        [](Stage& s) { return P{ref(s.pElement), num(0), num(0), num(0), num(0), num(2), num(0)}; });
    row("animation, other layout", A::AddAnimation, false, [](Stage& s) {
        return P{ref(s.pAnimation), ref(s.pTimeline), pair(1, 0)};
    });
    row("animation, timeline not current", A::AddAnimation, false, [](Stage& s) {
        return P{ref(s.pAnimation), ref(s.pSecondTimeline), pair(0, 0)};
    });
    row("keyframe, pair at 3", A::AddKeyframe, true, [](Stage& s) {
        return P{ref(s.pKeyframe), ref(s.pElement), ref(s.pTimeline), pair(0, 0)};
    });
    row("label, other scene's timeline", A::AddLabel, false, [](Stage& s) {
        return P{ref(s.pOtherTimeline), new VTCmdParam(QString("L")), num(5)};
    });
    row("current timeline of shown scene", A::SetCurrentTimeline, true, [](Stage& s) {
        return P{ref(s.pScene->getTimelineManager()), ref(s.pSecondTimeline)};
    });
    row("key value, shown keyframe", A::AddKeyValue, true, [](Stage& s) { return P{ref(s.pKeyframe)}; });
    row("key value, parked layout", A::AddKeyValue, false,
        [](Stage& s) { return P{ref(s.pParkedKeyframe)}; });
    row("anchor of parked path", A::SetAnchorPointData, false, [](Stage& s) {
        return P{ref(static_cast<VTMotionPathKeyframe*>(s.pParkedKeyframe)->getMotionPath())};
    });
    row("anchor of shown path", A::AddAnchorPoint, true,
        [](Stage& s) { return P{ref(static_cast<VTMotionPathKeyframe*>(s.pKeyframe)->getMotionPath())}; });
    row("auto orient with keys", A::SetAutoOrient, true, [](Stage& s) { return P{ref(s.pAnimation)}; });
    row("auto orient without keys", A::SetAutoOrient, false,
        [](Stage& s) { return P{ref(s.pBareAnimation)}; });
    row("stage width, shown symbol", A::SetSymbolWidth, true, [](Stage& s) {
        return P{ref(static_cast<VTSymbol*>(&s.document)), num(300)};
    });
    row("breakpoint, another symbol", A::AddBreakpoint, false, [](Stage& s) {
        return P{ref(&s.otherSymbol), num(0)};
    });
    row("order, used resource", A::ChangeResourceOrder, true, [](Stage& s) {
        return P{ref(s.pUsed), num(1)};
    });
    row("order, unused resource", A::ChangeResourceOrder, false, [](Stage& s) {
        return P{ref(s.pUnused), num(1)};
    });
    row("restored resource, unused", A::RestoreResource, true, [](Stage& s) { return P{ref(s.pUnused)}; });
    row("perspective, other scene", 1044, false, [](Stage& s) {
        return P{ref(s.pOther), num(0), num(0), num(0)};
    });
    row("property value, other layout", 1039, false, [](Stage& s) {
        return P{ref(s.pElement), num(4), pair(0, 1)};
    });
    row("playback marks stay", A::TimelinePlayed, false, [](Stage& s) {
        return P{ref(s.pTimeline), num(0)};
    });
}

void TestCanvasRecordFilter::recordsForTheShownScene()
{
    QFETCH(int, nId);
    QFETCH(bool, bExpected);
    QFETCH(ParamsOf, paramsOf);
    Stage stage;
    QCOMPARE(notify(nId, paramsOf(stage), stage.pScene), bExpected);
}

void TestCanvasRecordFilter::senderAndEmptyRecords()
{
    Stage stage;
    QObject canvas;
    QObject panel;
    const auto select = [&stage]() { return Params{ref(stage.pElement), new VTCmdParam(true)}; };
    QVERIFY(notify(VTCommandAction::SelectElement, select(), stage.pScene, &panel, &canvas));
    // What the page made itself is on screen already.
    QVERIFY(!notify(VTCommandAction::SelectElement, select(), stage.pScene, &canvas, &canvas));
    QVERIFY(!notify(VTCommandAction::SelectElement, select(), nullptr));
    QVERIFY(!notify(VTCommandAction::StopAllTasks, Params{}, stage.pScene));

    VTUpdateViewInfo finished;
    finished.setId(VTCommandAction::CommandFinished);
    QVERIFY(!VTCanvasRecordFilter::shouldNotifyActionToJS(&finished, &canvas, stage.pScene));
    QVERIFY(!VTCanvasRecordFilter::shouldNotifyActionToJS(nullptr, &canvas, stage.pScene));
}

void TestCanvasRecordFilter::anotherShownLayout()
{
    Stage stage;
    stage.pScene->setCurrentLayoutID(VTLayoutKey(1, 0));
    QVERIFY(notify(1000, Params{ref(stage.pElement), num(1), num(0)}, stage.pScene));
    QVERIFY(!notify(1000, Params{ref(stage.pElement), num(0), num(0)}, stage.pScene));
    // The timeline now runs the layout's own animation; the base layout's keyframe is parked.
    QVERIFY(notify(VTCommandAction::AddKeyValue, Params{ref(stage.pParkedKeyframe)}, stage.pScene));
    QVERIFY(!notify(VTCommandAction::AddKeyValue, Params{ref(stage.pKeyframe)}, stage.pScene));
}

void TestCanvasRecordFilter::finishedCommandNeeds_data()
{
    QTest::addColumn<int>("nId");
    QTest::addColumn<bool>("bRepaint");
    QTest::addColumn<bool>("bScenePos");
    // Around the edges of the ranges of the two lists.
    QTest::newRow("reparent") << 3 << true << false;
    QTest::newRow("move scene") << 8 << false << false;
    QTest::newRow("add animation") << 17 << true << true;
    QTest::newRow("move keyframe") << 21 << true << false;
    QTest::newRow("remove key value") << 26 << true << true;
    QTest::newRow("change key value") << 27 << true << false;
    QTest::newRow("anchor key time") << 31 << false << false;
    QTest::newRow("played") << 74 << false << false;
    QTest::newRow("paused") << 75 << true << false;
    QTest::newRow("stage width") << 59 << true << true;
    QTest::newRow("background") << 1002 << false << false;
    QTest::newRow("freeform edit point") << 1037 << true << true;
}

void TestCanvasRecordFilter::finishedCommandNeeds()
{
    QFETCH(int, nId);
    QFETCH(bool, bRepaint);
    QFETCH(bool, bScenePos);
    QCOMPARE(VTCanvasRecordFilter::shouldRepaintWhenFinishedCommand(nId), bRepaint);
    QCOMPARE(VTCanvasRecordFilter::shouldUpdateScenePosWhenFinishedCommand(nId), bScenePos);
}

QTEST_GUILESS_MAIN(TestCanvasRecordFilter)
#include "tst_canvasrecordfilter.moc"
