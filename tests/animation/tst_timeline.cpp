#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTBackground.h"
#include "VTElementFactory.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMedia.h"
#include "VTPlaybackAnimation.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTTypes.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const VTLayoutKey kBase = VTLayoutKey::base();
const VTLayoutKey kOther(1, 0);

struct Stage
{
    std::unique_ptr<VTScene> pScene;
    VTElement* pDiv = nullptr;
    VTTimeline* pTimeline = nullptr;
};

// A scene with one div, whose main timeline is current.
Stage makeStage()
{
    Stage stage;
    stage.pScene = std::make_unique<VTScene>();
    stage.pScene->initDefault();
    stage.pDiv = VTElementFactory::createElement(VT::DivElement);
    stage.pScene->addElement(stage.pDiv);
    stage.pTimeline = stage.pScene->getTimelineManager()->getMainTimeline();
    return stage;
}

// A keyframe of the element in that layout with linear moves between the (time, value) pairs.
VTKeyframe* makeKeyframe(VTElement* pElement, int nProperty, const VTLayoutKey& key,
                         const QList<QPair<int, QVariant>>& lstKeys,
                         QEasingCurve::Type nEasing = QEasingCurve::Linear)
{
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(VT::ElementProperty(nProperty), pElement, key);
    for (const auto& entry : lstKeys)
        pKeyframe->addKeyValue(new VTKeyValue(entry.first, entry.second), nEasing, true);
    return pKeyframe;
}

VTAnimation* makeAnimation(VTElement* pElement, const QList<VTKeyframe*>& lstKeyframes)
{
    VTAnimation* pAnimation = VTAnimationFactory::createAnimation(pElement);
    for (VTKeyframe* pKeyframe : lstKeyframes)
        pAnimation->addKeyframe(pKeyframe);
    return pAnimation;
}

// A trigger of one listener at nTime; the action number tells triggers apart in the export.
VTEventListenerList* makeTrigger(int nTime,
                                 VTEventListener::ActionType nAction = VTEventListener::PauseTimeline)
{
    auto* pTrigger = new VTEventListenerList();
    pTrigger->addEventListener(new VTEventListener(VTEventListener::Trigger, nAction,
                                                   QJsonObject{{"action_time", nTime}},
                                                   QJsonObject{{"timeline_id", -1}}));
    return pTrigger;
}

void emptyTrigger(VTEventListenerList* pTrigger)
{
    for (VTEventListener* pListener : pTrigger->getEventListeners()) {
        pTrigger->detachEventListener(pListener);
        delete pListener;
    }
}

// What the timeline animates on the div in the current layout.
QVariantList divState(const VTElement* pDiv)
{
    return {pDiv->getOpacity(), pDiv->getRotateZ(), pDiv->getBackground()->getSolidColor(),
            pDiv->getTranslateXY()};
}

// The playhead moved the way Qt's timer moves it during playback.
void advance(VTTimeline& timeline, int nTime)
{
    timeline.QAbstractAnimation::setCurrentTime(nTime);
}

QList<int> takeFired(QSignalSpy& spy)
{
    QList<int> lstTimes;
    for (const QList<QVariant>& arguments : qAsConst(spy)) {
        const auto* pTrigger = arguments.at(0).value<VTEventListenerList*>();
        lstTimes << (pTrigger ? pTrigger->getEventListenerAt(0)->getActionTime() : -1);
    }
    spy.clear();
    return lstTimes;
}

} // namespace

class tst_Timeline : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void labels();
    void triggers();
    void triggersWhilePlaying();
    void playbackExport();
    void seekingOrder();
    void currentLayout();
    void parseLayouts();
    void updateLayoutAnimations();
    void manager();
    void sceneWithoutTimeline();
    void keyframesThatDoNotApply();
};

void tst_Timeline::initTestCase()
{
    qRegisterMetaType<VTEventListenerList*>();
}

void tst_Timeline::labels()
{
    Stage stage = makeStage();
    VTTimeline& timeline = *stage.pTimeline;
    QCOMPARE(timeline.duration(), 0);
    timeline.addLabel("intro", 3000);
    QCOMPARE(timeline.duration(), 3000);
    QCOMPARE(timeline.getEndTime(), 3000);
    timeline.removeLabel("intro");
    QCOMPARE(timeline.duration(), 0);
    QCOMPARE(timeline.getLabelValue("intro"), -1);

    // A missing label is neither set nor renamed nor removed.
    timeline.setLabelValue("missing", 500);
    timeline.renameLabel("missing", "other");
    timeline.removeLabel("missing");
    QVERIFY(timeline.getMapLabel2TS().isEmpty());

    timeline.addLabel("a", 1000);
    timeline.addLabel("b", 3000);
    timeline.setLabelValue("b", 2000);
    QCOMPARE(timeline.duration(), 2000);
    // Renaming onto an existing name replaces that label and keeps the moved time.
    timeline.renameLabel("a", "b");
    QCOMPARE(timeline.getMapLabel2TS(), (QMap<QString, int>{{"b", 1000}}));

    // The labels go to the player by name.
    QJsonObject joExport;
    timeline.serializeToExport(joExport, true, false);
    QCOMPARE(joExport.value("l").toObject(), (QJsonObject{{"b", 1000}}));
    QCOMPARE(VTTimeline::getGridValue(9), 1);
}

void tst_Timeline::triggers()
{
    Stage stage = makeStage();
    VTTimeline& timeline = *stage.pTimeline;
    VTEventListenerList* pLateA = makeTrigger(2000);
    VTEventListenerList* pEarly = makeTrigger(500);
    VTEventListenerList* pLateB = makeTrigger(2000);
    VTEventListenerList* pMiddle = makeTrigger(1000);
    auto* pEmpty = new VTEventListenerList();
    for (VTEventListenerList* pTrigger : {pLateA, pEarly, pLateB, pMiddle, pEmpty, pEarly})
        timeline.addTrigger(pTrigger);
    QCOMPARE(timeline.getTriggers().size(), 5);
    QCOMPARE(timeline.getTriggersSorted(), (QList<VTEventListenerList*>{pEarly, pMiddle, pLateA, pLateB}));
    QCOMPARE(timeline.duration(), 2000);

    // A list that still has listeners stays.
    timeline.detachTrigger(pLateA);
    QVERIFY(timeline.getTriggers().contains(pLateA));
    emptyTrigger(pLateA);
    timeline.detachTrigger(pLateA);
    std::unique_ptr<VTEventListenerList> pDetached(pLateA);
    QVERIFY(!timeline.getTriggers().contains(pLateA));
    QCOMPARE(timeline.duration(), 2000);
    emptyTrigger(pLateB);
    timeline.detachTrigger(pLateB);
    std::unique_ptr<VTEventListenerList> pDetachedB(pLateB);
    QCOMPARE(timeline.duration(), 1000);

    timeline.changeActionTime(pMiddle, 3000);
    QCOMPARE(pMiddle->getEventListenerAt(0)->getEventData(), (QJsonObject{{"action_time", 3000}}));
    QCOMPARE(timeline.duration(), 3000);
    QCOMPARE(timeline.getTriggersSorted(), (QList<VTEventListenerList*>{pEarly, pMiddle}));

    // Two triggers at one time are two arrays, in list order; only the player's full form has them.
    Stage other = makeStage();
    other.pTimeline->addTrigger(makeTrigger(700, VTEventListener::PauseTimeline));
    other.pTimeline->addTrigger(makeTrigger(100, VTEventListener::SeekTimeline));
    other.pTimeline->addTrigger(makeTrigger(700, VTEventListener::StartTimeline));
    QJsonObject joExport;
    other.pTimeline->serializeToExport(joExport, false, true);
    const QJsonArray jaTriggers = joExport.value("t").toArray();
    QCOMPARE(jaTriggers.size(), 3);
    QList<QPair<int, int>> lstExported;
    for (const QJsonValue& trigger : jaTriggers)
        lstExported << qMakePair(trigger[0].toInt(), trigger[1][0][0].toInt());
    QCOMPARE(lstExported, (QList<QPair<int, int>>{{100, int(VTEventListener::SeekTimeline)},
                                                  {700, int(VTEventListener::PauseTimeline)},
                                                  {700, int(VTEventListener::StartTimeline)}}));
    for (const auto& flags : {qMakePair(true, true), qMakePair(false, false)}) {
        QJsonObject joOther;
        other.pTimeline->serializeToExport(joOther, flags.first, flags.second);
        QVERIFY(!joOther.contains("t"));
    }
}

void tst_Timeline::triggersWhilePlaying()
{
    Stage stage = makeStage();
    VTTimeline& timeline = *stage.pTimeline;
    timeline.addLabel("end", 1000);
    for (const int nTime : {0, 300, 1000})
        timeline.addTrigger(makeTrigger(nTime));
    QSignalSpy spy(&timeline, &VTTimeline::triggerReached);

    for (const int nTime : {500, 100, 1000, 300, 0})
        timeline.setCurrentTime(nTime);
    QCOMPARE(takeFired(spy), QList<int>());

    // One pass: each trigger once, the one at the starting time included.
    timeline.start();
    for (const int nTime : {100, 200, 400, 450})
        advance(timeline, nTime);
    QCOMPARE(takeFired(spy), (QList<int>{0, 300}));
    advance(timeline, 1000);
    QCOMPARE(takeFired(spy), QList<int>{1000});
    QCOMPARE(timeline.state(), QAbstractAnimation::Stopped);

    // Played again from the start: the trigger at the end waits for the end.
    timeline.start();
    QCOMPARE(takeFired(spy), QList<int>{0});
    advance(timeline, 400);
    QCOMPARE(takeFired(spy), QList<int>{300});

    // A seek while playing stops the pass without firing; playing on from there fires what is ahead.
    timeline.setCurrentTime(900);
    QCOMPARE(timeline.state(), QAbstractAnimation::Paused);
    QCOMPARE(takeFired(spy), QList<int>());
    timeline.start();
    advance(timeline, 1000);
    QCOMPARE(takeFired(spy), QList<int>{1000});

    // Looping: the end of one pass and the start of the next, also when one step passes the
    // position of the step before.
    timeline.setLoopTimeline(true);
    timeline.setCurrentTime(0);
    timeline.start();
    advance(timeline, 100);
    QCOMPARE(takeFired(spy), QList<int>{0});
    advance(timeline, 950);
    QCOMPARE(takeFired(spy), QList<int>{300});
    advance(timeline, 1200);
    QCOMPARE(takeFired(spy), (QList<int>{1000, 0}));
    advance(timeline, 2400);
    QCOMPARE(takeFired(spy), (QList<int>{300, 1000, 0, 300}));
    timeline.stop();
}

void tst_Timeline::playbackExport()
{
    Stage stage = makeStage();
    auto* pMedia = qobject_cast<VTMedia*>(VTElementFactory::createElement(VT::AudioElement));
    QVERIFY(pMedia);
    stage.pScene->addElement(pMedia);
    pMedia->setDuration(10000);
    auto* pAnimation = qobject_cast<VTPlaybackAnimation*>(VTAnimationFactory::createAnimation(pMedia));
    QVERIFY(pAnimation);
    pAnimation->addEventListener(
        new VTEventListener(VTEventListener::Playback, VTEventListener::ActionType(40),
                            QJsonObject{{"action_time", 1000}}, QJsonObject{{"speed", 200}}));
    pAnimation->updatePlayback();
    stage.pTimeline->addAnimation(pAnimation, kBase);
    QVERIFY(stage.pTimeline->hasPropsAnimData());

    // Twice the speed: the media's 10 s take 5 s of the timeline.
    const QJsonArray jaEntries{QJsonObject{
        {"el", pMedia->getId()}, {"p", "pb"}, {"t", 1000}, {"d", 5000}, {"a", QJsonArray{40, 0, 2.0}}}};
    QJsonObject joStage;
    stage.pTimeline->serializeToExport(joStage, true, false);
    QCOMPARE(joStage.value("anims").toArray(), jaEntries);
    QCOMPARE(joStage.value("dur").toInt(), 6000);
    QCOMPARE(stage.pTimeline->getEndTime(), 6000);
    QJsonObject joPlayer;
    stage.pTimeline->serializeToExport(joPlayer, false, true);
    QCOMPARE(joPlayer.value("ra").toArray(), (QJsonArray{QJsonArray{0, 0, jaEntries}}));
    QVERIFY(!joPlayer.contains("anims"));
}

void tst_Timeline::seekingOrder()
{
    // Opacity ends before the playhead, rotation runs through it, the colour has one key at 0 and
    // the location is keyed elsewhere: every value must be the one of the playhead's time.
    auto build = [] {
        Stage stage = makeStage();
        VTElement* pDiv = stage.pDiv;
        stage.pTimeline->addAnimation(
            makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kBase, {{0, 0.0}, {300, 1.0}}),
                                 makeKeyframe(pDiv, VT::PropRotateZ, kBase, {{500, 20.0}, {1000, 90.0}},
                                              QEasingCurve::InQuad),
                                 makeKeyframe(pDiv, VT::PropBackgroundColor, kBase, {{0, QColor(Qt::red)}})}),
            kBase);
        return stage;
    };
    Stage fresh = build();
    fresh.pTimeline->setCurrentTime(800);
    const QVariantList expected{1.0, 20 + 70 * (0.6 * 0.6), QColor(Qt::red), QPointF()};
    QCOMPARE(divState(fresh.pDiv), expected);

    Stage seeked = build();
    QSignalSpy spy(seeked.pTimeline, &VTTimeline::timeChanged);
    for (const int nTime : {800, 200, 1500, 0, 800})
        seeked.pTimeline->setCurrentTime(nTime);
    QCOMPARE(spy.count(), 5);
    QCOMPARE(divState(seeked.pDiv), expected);
    // Values changed by hand are put back by the next seek, wherever the keys are.
    seeked.pDiv->setOpacity(0.5);
    seeked.pDiv->getBackground()->setSolidColor(Qt::blue);
    seeked.pTimeline->setCurrentTime(800);
    QCOMPARE(spy.count(), 5);
    QCOMPARE(divState(seeked.pDiv), expected);
}

void tst_Timeline::currentLayout()
{
    Stage stage = makeStage();
    VTElement* pDiv = stage.pDiv;
    pDiv->addLayoutProperty(pDiv->getLayoutProperty(kBase)->clone(), kOther);
    VTTimeline& timeline = *stage.pTimeline;
    timeline.addAnimation(
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kBase, {{0, 0.0}, {1000, 1.0}}),
                             makeKeyframe(pDiv, VT::PropBackgroundColor, kBase,
                                          {{0, QColor(Qt::black)}, {1000, QColor(Qt::white)}})}),
        kBase);
    timeline.addAnimation(
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kOther, {{0, 1.0}, {1000, 0.0}}),
                             makeKeyframe(pDiv, VT::PropBackgroundColor, kOther,
                                          {{0, QColor(Qt::white)}, {1000, QColor(Qt::black)}})}),
        kOther);
    const QVariantList otherBefore{pDiv->getOpacity(kOther), pDiv->getBackground(kOther)->getSolidColor()};

    auto state = [pDiv](const VTLayoutKey& key) {
        return QVariantList{pDiv->getOpacity(key), pDiv->getBackground(key)->getSolidColor()};
    };
    timeline.setCurrentTime(250);
    QCOMPARE(state(kBase), (QVariantList{0.25, QColor(63, 63, 63)}));
    QCOMPARE(state(kOther), otherBefore);

    QSignalSpy spy(&timeline, &VTTimeline::timeChanged);
    stage.pScene->setCurrentLayoutID(kOther);
    QCOMPARE(timeline.getLayoutID(), kOther);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(state(kOther), (QVariantList{0.75, QColor(191, 191, 191)}));
    timeline.setCurrentTime(500);
    QCOMPARE(state(kOther), (QVariantList{0.5, QColor(127, 127, 127)}));
    QCOMPARE(state(kBase), (QVariantList{0.25, QColor(63, 63, 63)}));

    stage.pScene->setCurrentLayoutID(kBase);
    QCOMPARE(state(kBase), (QVariantList{0.5, QColor(127, 127, 127)}));
    QCOMPARE(state(kOther), (QVariantList{0.5, QColor(127, 127, 127)}));
}

void tst_Timeline::parseLayouts()
{
    Stage stage = makeStage();
    VTElement* pDiv = stage.pDiv;
    pDiv->addLayoutProperty(pDiv->getLayoutProperty(kBase)->clone(), kOther);
    stage.pTimeline->addAnimation(
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kBase, {{0, 0.0}, {1000, 1.0}})}), kBase);
    stage.pTimeline->addAnimation(
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropRotateZ, kOther, {{0, 0.0}, {2000, 9.0}})}), kOther);
    QJsonObject joTimeline;
    stage.pTimeline->serialize(joTimeline);
    QCOMPARE(joTimeline.value("respAnims").toArray().size(), 2);

    // Whatever layout the timeline was in, the base layout's animations are the children after
    // reading; the scene sets its own layout afterwards.
    stage.pScene->setCurrentLayoutID(kOther);
    VTTimeline timeline(stage.pScene.get());
    timeline.setLayoutID(kOther);
    QStringList lstProblems;
    QVERIFY(timeline.parse(joTimeline, &lstProblems));
    QVERIFY(lstProblems.isEmpty());
    QCOMPARE(timeline.getLayoutID(), kBase);
    VTAnimation* pBaseAnimation = timeline.getAnimation(pDiv, kBase);
    VTAnimation* pOtherAnimation = timeline.getAnimation(pDiv, kOther);
    QVERIFY(pBaseAnimation && pOtherAnimation);
    QCOMPARE(timeline.animationCount(), 3); // the two extents and the base layout's animation
    QVERIFY(timeline.indexOfAnimation(pBaseAnimation) >= 0);
    QVERIFY(timeline.indexOfAnimation(pOtherAnimation) < 0);
    QCOMPARE(timeline.duration(), 1000);
    QJsonObject joAgain;
    timeline.serialize(joAgain);
    QCOMPARE(QJsonDocument(joAgain).toJson(), QJsonDocument(joTimeline).toJson());

    // The older flat form: the animations of the top level belong to the current layout.
    QJsonObject joFlat{{"animations", joTimeline.value("respAnims")[0]["animations"]}};
    VTTimeline flat(stage.pScene.get());
    QVERIFY(flat.parse(joFlat));
    QVERIFY(flat.getAnimation(pDiv, kBase));
    QCOMPARE(flat.duration(), 1000);
}

void tst_Timeline::updateLayoutAnimations()
{
    Stage stage = makeStage();
    VTElement* pDiv = stage.pDiv;
    VTTimeline& timeline = *stage.pTimeline;
    VTAnimation* pOld =
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kBase, {{0, 0.0}, {1000, 1.0}})});
    timeline.addAnimation(pOld, kBase);
    timeline.setCurrentTime(500);
    QCOMPARE(pDiv->getOpacity(), 0.5);

    VTAnimation* pNew =
        makeAnimation(pDiv, {makeKeyframe(pDiv, VT::PropOpacity, kBase, {{0, 0.9}, {3000, 0.9}})});
    const QVector<VTAnimation*> vecOld = timeline.updateLayoutAnimations({pNew}, kBase);
    std::unique_ptr<VTAnimation> pOldOwned(pOld);
    QCOMPARE(vecOld, QVector<VTAnimation*>{pOld});
    QCOMPARE(timeline.getLayoutID(), kBase);
    QVERIFY(timeline.indexOfAnimation(pOld) < 0);
    QVERIFY(timeline.indexOfAnimation(pNew) >= 0);
    QCOMPARE(timeline.duration(), 3000);
    QCOMPARE(pDiv->getOpacity(), 0.9);

    // Another layout's list is swapped without touching the group.
    const QVector<VTAnimation*> vecNone = timeline.updateLayoutAnimations({}, kOther);
    QVERIFY(vecNone.isEmpty());
    QVERIFY(timeline.indexOfAnimation(pNew) >= 0);
}

void tst_Timeline::manager()
{
    Stage stage = makeStage();
    VTTimelineManager& manager = *stage.pScene->getTimelineManager();
    QCOMPARE(manager.getTimelines().size(), 1);
    VTTimeline* pMain = manager.getMainTimeline();
    QCOMPARE(pMain->getId(), 1);
    QCOMPARE(manager.getCurrentTimeline(), pMain);
    QCOMPARE(manager.getNextId(), 2);

    auto* pFive = new VTTimeline(nullptr);
    pFive->setId(5);
    QCOMPARE(manager.addTimeline(pFive), 1);
    QCOMPARE(manager.getNextId(), 6);
    QCOMPARE(pFive->getScene(), stage.pScene.get());
    auto* pNew = new VTTimeline(nullptr);
    QCOMPARE(manager.addTimeline(pNew, 99), 2);
    QCOMPARE(pNew->getId(), 6);
    auto* pThree = new VTTimeline(nullptr);
    pThree->setId(3);
    QCOMPARE(manager.addTimeline(pThree, 0), 0);
    QCOMPARE(manager.getNextId(), 7);
    QCOMPARE(manager.getMainTimeline(), pThree);
    QCOMPARE(manager.findTimelineById(6), pNew);
    manager.changeMainTimeline(pMain);
    QCOMPARE(manager.getTimelines(), (QList<VTTimeline*>{pMain, pThree, pFive, pNew}));

    // Removing the current one makes the first current and seeks it.
    pMain->addLabel("end", 2000);
    pMain->addAnimation(makeAnimation(stage.pDiv, {makeKeyframe(stage.pDiv, VT::PropRotateZ, kBase,
                                                                {{0, 0.0}, {2000, 20.0}})}),
                        kBase);
    pMain->setCurrentTime(1000);
    stage.pDiv->setRotateZ(-1);
    manager.setCurrentTimeline(pFive);
    manager.removeTimeline(pFive);
    QCOMPARE(manager.getCurrentTimeline(), pMain);
    QCOMPARE(stage.pDiv->getRotateZ(), 10.0);
    QCOMPARE(manager.getTimelines().size(), 3);

    // Detaching leaves the current one alone and hands the timeline over.
    manager.setCurrentTimeline(pNew);
    QCOMPARE(manager.detachTimeline(pThree), 1);
    std::unique_ptr<VTTimeline> pDetached(pThree);
    QCOMPARE(manager.getCurrentTimeline(), pNew);
    QCOMPARE(manager.detachTimeline(pThree), -1);
    manager.removeTimeline(pThree);
    QCOMPARE(manager.getTimelines().size(), 2);

    // Reading picks the current timeline by id and continues numbering after the largest.
    QJsonObject joManager;
    manager.serialize(joManager);
    QCOMPARE(joManager.value("current_timeline").toInt(), 6);
    VTTimelineManager copy(stage.pScene.get());
    QStringList lstProblems;
    QVERIFY(copy.parse(joManager, &lstProblems));
    QCOMPARE(copy.getTimelines().size(), 2);
    QCOMPARE(copy.getCurrentTimeline(), copy.findTimelineById(6));
    QCOMPARE(copy.getNextId(), 7);
}

void tst_Timeline::sceneWithoutTimeline()
{
    VTScene source;
    source.initDefault();
    QJsonObject joScene;
    source.serialize(joScene);
    joScene.insert("timelines", QJsonObject{{"timelines", QJsonArray()}, {"current_timeline", 4}});

    VTScene scene;
    QStringList lstProblems;
    QVERIFY(scene.parse(joScene, nullptr, &lstProblems));
    const VTTimelineManager* pManager = scene.getTimelineManager();
    QCOMPARE(pManager->getTimelines().size(), 1);
    QCOMPARE(pManager->getCurrentTimeline(), pManager->getMainTimeline());
    QCOMPARE(lstProblems.size(), 1);
}

void tst_Timeline::keyframesThatDoNotApply()
{
    Stage stage = makeStage();
    const int nDiv = stage.pDiv->getId();
    auto keyframe = [](int nType) {
        return QJsonObject{
            {"type", nType},
            {"keyValues",
             QJsonArray{QJsonObject{{"time", 0}, {"type", 6}, {"value", QJsonObject{{"val", 0.5}}}}}}};
    };
    // An unknown property, one a div cannot animate, a good one, and an element the scene lacks.
    const QJsonObject joLayout{
        {"hLayoutId", 0},
        {"vLayoutId", 0},
        {"animations",
         QJsonArray{QJsonObject{{"element_id", nDiv},
                                {"keyframes", QJsonArray{keyframe(200), keyframe(VT::PropVolume),
                                                         keyframe(VT::PropOpacity)}}},
                    QJsonObject{{"element_id", 999}, {"keyframes", QJsonArray{keyframe(VT::PropOpacity)}}}}}};
    VTTimeline timeline(stage.pScene.get());
    QStringList lstProblems;
    QVERIFY(!timeline.parse(QJsonObject{{"respAnims", QJsonArray{joLayout}}}, &lstProblems));
    QCOMPARE(lstProblems.size(), 3);
    for (const QString& mention : {QStringLiteral("200"), QStringLiteral("Volume"), QStringLiteral("999")})
        QVERIFY2(!lstProblems.filter(mention).isEmpty(), qPrintable(lstProblems.join('\n')));

    const QVector<VTAnimation*> vecAnimations = timeline.getLayoutAnimations(kBase);
    QCOMPARE(vecAnimations.size(), 1);
    QCOMPARE(vecAnimations.first()->getKeyframes().size(), 1);
    QVERIFY(vecAnimations.first()->getKeyframe(VT::PropOpacity));
}

QTEST_GUILESS_MAIN(tst_Timeline)
#include "tst_timeline.moc"
