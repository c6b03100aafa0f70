#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTBreakpointManager.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTKeyframeSegment.h"
#include "VTLoadIndicatorProps.h"
#include "VTMotionPath.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QtTest>

#include <memory>

namespace {

using Id = VTCommandAction::ActionId;
const VTLayoutKey kBase(0, 0);
const VTLayoutKey kOther(1, 0);

VTScene* newScene()
{
    auto* pScene = new VTScene();
    pScene->initDefault();
    return pScene;
}

// A document with one selected scene holding [group [a, b], c], each element with a base block
// and a copy of it as layout (1, 0); the scene shows the base.
struct Project
{
    Project()
    {
        pScene = newScene();
        pScene->setSelected(true);
        document.getSceneManager()->addScene(pScene);
        pGroup = add(VT::GroupElement, nullptr);
        pA = add(VT::DivElement, pGroup);
        pB = add(VT::DivElement, pGroup);
        pC = add(VT::DivElement, nullptr);
    }

    VTElement* add(int nType, VTElement* pParent)
    {
        VTElement* pElement = VTElementFactory::createElement(nType);
        pScene->addElement(pElement, -1, pParent);
        pElement->addLayoutProperty(pElement->getLayoutProperty(kBase)->clone(), kOther);
        return pElement;
    }

    QJsonArray children() const
    {
        QJsonObject json;
        pScene->serialize(json);
        return json.value("children").toArray();
    }

    VTTimelineManager* timelines() const { return pScene->getTimelineManager(); }
    VTTimeline* mainTimeline() const { return timelines()->getMainTimeline(); }

    VTDocument document;
    VTScene* pScene = nullptr;
    VTElement* pGroup = nullptr;
    VTElement* pA = nullptr;
    VTElement* pB = nullptr;
    VTElement* pC = nullptr;
};

QList<int> keyTimes(const VTKeyframe& keyframe)
{
    QList<int> lstTimes;
    for (const VTKeyValue* pKey : keyframe.getKeyValues())
        lstTimes << pKey->getTime();
    return lstTimes;
}

VTKeyframeSegment* leaving(const VTKeyframe& keyframe, const VTKeyValue* pKey)
{
    return keyframe.getAdjacentSegments(pKey).second;
}

} // namespace

class TestActions : public QObject
{
    Q_OBJECT
private slots:
    void elementTreeLadder();
    void reparentAndOrder();
    void sceneActions();
    void timelineActions();
    void animationAndKeyframeOwnership();
    void keyValueActions();
    void anchorPointActions();
    void eventListenerActions();
    void documentActions();
    void layoutActions();
    void malformedActionsAreInert();
};

void TestActions::elementTreeLadder()
{
    Project project;
    const QJsonArray before = project.children();

    auto* pNew = VTElementFactory::createElement(VT::DivElement);
    QPointer<VTElement> guardNew(pNew);
    VTCommandAction add(Id::AddElement, &project.document);
    add.addParam(pNew, true);
    add.addParam(1);
    add.addParam(project.pScene, false);
    add.redo();
    QCOMPARE(project.pScene->getChildIndex(pNew), 1);
    QVERIFY(pNew->isSelected());
    QVERIFY(!add.getParam(0)->isOwned());
    const int nId = pNew->getId();
    QVERIFY(nId > 0);
    const QJsonArray after = project.children();

    add.undo();
    QVERIFY(!pNew->getParent());
    QVERIFY(add.getParam(0)->isOwned());
    QCOMPARE(add.getParam(1)->getAsInt(), 1);
    QCOMPARE(project.children(), before);
    add.redo();
    QCOMPARE(pNew->getId(), nId);
    QCOMPARE(project.children(), after);

    // Four parameters: the element leaves its group, not the scene.
    VTCommandAction remove(Id::RemoveElement, &project.document);
    remove.addParam(project.pA, false);
    remove.addParam(-1);
    remove.addParam(project.pScene, false);
    remove.addParam(project.pGroup, false);
    remove.redo();
    QCOMPARE(project.pGroup->getChildren(), QList<VTElement*>{project.pB});
    QCOMPARE(remove.getParam(1)->getAsInt(), 0);
    QVERIFY(remove.getParam(0)->isOwned());
    remove.undo();
    QCOMPARE(project.pGroup->getChildren(), (QList<VTElement*>{project.pA, project.pB}));
    QVERIFY(!remove.getParam(0)->isOwned());
    QCOMPARE(project.children(), after);

    // A removed element goes with the action; one put back stays with the scene.
    QPointer<VTElement> guardB(project.pB);
    QPointer<VTElement> guardC(project.pC);
    {
        VTCommandAction removeB(Id::RemoveElement, &project.document);
        removeB.addParam(project.pB, false);
        removeB.addParam(-1);
        removeB.addParam(project.pScene, false);
        removeB.addParam(project.pGroup, false);
        removeB.redo();
        VTCommandAction removeC(Id::RemoveElement, &project.document);
        removeC.addParam(project.pC, false);
        removeC.addParam(-1);
        removeC.addParam(project.pScene, false);
        removeC.redo();
        removeC.undo();
    }
    QVERIFY(guardB.isNull());
    QVERIFY(!guardC.isNull());
    QCOMPARE(guardC->getParent(), project.pScene);
    QVERIFY(!guardNew.isNull());
}

void TestActions::reparentAndOrder()
{
    Project project;
    VTCommandAction reparent(Id::ReparentElement, &project.document);
    reparent.addParam(project.pB, false);
    reparent.addParam(project.pGroup, false);
    reparent.addParam(-1);
    reparent.addParam(project.pScene, false);
    reparent.addParam(0);
    reparent.redo();
    QCOMPARE(project.pB->getParent(), project.pScene);
    QCOMPARE(project.pScene->getChildIndex(project.pB), 0);
    QCOMPARE(reparent.getParam(2)->getAsInt(), 1);
    reparent.undo();
    QCOMPARE(project.pGroup->getChildren(), (QList<VTElement*>{project.pA, project.pB}));
    QCOMPARE(project.pScene->getChildren(), (QList<VTElement*>{project.pGroup, project.pC}));

    // Into its own child: refused, and the element stays in the tree.
    VTCommandAction intoChild(Id::ReparentElement, &project.document);
    intoChild.addParam(project.pGroup, false);
    intoChild.addParam(project.pScene, false);
    intoChild.addParam(-1);
    intoChild.addParam(project.pA, false);
    intoChild.addParam(0);
    intoChild.redo();
    QCOMPARE(project.pGroup->getParent(), project.pScene);
    QCOMPARE(project.pScene->getChildIndex(project.pGroup), 0);
    QVERIFY(project.pA->getChildren().isEmpty());

    VTCommandAction order(Id::ChangeElementOrder, &project.document);
    order.addParam(project.pA, false);
    order.addParam(0);
    order.addParam(1);
    order.redo();
    QCOMPARE(project.pGroup->getChildren(), (QList<VTElement*>{project.pB, project.pA}));
    order.undo();
    QCOMPARE(project.pGroup->getChildren(), (QList<VTElement*>{project.pA, project.pB}));

    // Selecting what is selected stores true and changes nothing.
    project.pA->setSelected(true);
    VTCommandAction select(Id::SelectElement, &project.document);
    select.addParam(project.pA, false);
    select.addParam(true);
    select.redo();
    QVERIFY(project.pA->isSelected());
    QCOMPARE(select.getParam(1)->getAsBool(), true);
}

void TestActions::sceneActions()
{
    Project project;
    VTSceneManager* pManager = project.document.getSceneManager();
    VTScene* s1 = project.pScene;
    VTScene* s2 = newScene();
    VTScene* s3 = newScene();
    VTScene* s4 = newScene();
    for (VTScene* pScene : {s2, s3, s4})
        pManager->addScene(pScene);

    VTCommandAction move(Id::MoveScene, &project.document);
    move.addParam(pManager, false);
    move.addParam(1);
    move.addParam(3);
    move.redo();
    QCOMPARE(pManager->getScenes(), (QList<VTScene*>{s1, s3, s2, s4}));
    QCOMPARE(move.getParam(1)->getAsInt(), 2);
    QCOMPARE(move.getParam(2)->getAsInt(), 1);
    move.undo();
    QCOMPARE(pManager->getScenes(), (QList<VTScene*>{s1, s2, s3, s4}));
    move.redo();
    QCOMPARE(pManager->getScenes(), (QList<VTScene*>{s1, s3, s2, s4}));
    move.undo();

    const int nId = s2->getId();
    VTCommandAction remove(Id::RemoveScene, &project.document);
    remove.addParam(s2, false);
    remove.addParam(-1);
    remove.addParam(pManager, false);
    remove.redo();
    QVERIFY(!pManager->getScenes().contains(s2));
    QVERIFY(remove.getParam(0)->isOwned());
    QCOMPARE(remove.getParam(1)->getAsInt(), 1);
    remove.undo();
    QCOMPARE(pManager->getSceneIndex(s2), 1);
    QCOMPARE(s2->getId(), nId);
    QVERIFY(!remove.getParam(0)->isOwned());

    QPointer<VTScene> guard;
    {
        VTCommandAction add(Id::AddScene, &project.document);
        guard = newScene();
        add.addParam(guard.data(), true);
        add.addParam(-1);
        add.addParam(pManager, false);
        add.redo();
        QCOMPARE(pManager->getSceneIndex(guard), 4);
        QVERIFY(!add.getParam(0)->isOwned());
        add.undo();
        QVERIFY(add.getParam(0)->isOwned());
    }
    QVERIFY(guard.isNull());

    VTCommandAction select(Id::SelectScene, &project.document);
    select.addParam(s3, false);
    select.addParam(true);
    select.redo();
    QVERIFY(pManager->getSelectedScenes().contains(s3));
    QCOMPARE(select.getParam(1)->getAsBool(), false);
    select.undo();
    QVERIFY(!pManager->getSelectedScenes().contains(s3));
}

void TestActions::timelineActions()
{
    Project project;
    VTTimelineManager* pManager = project.timelines();
    VTTimeline* pMain = project.mainTimeline();
    auto* pSecond = new VTTimeline(project.pScene);
    VTCommandAction add(Id::AddTimeline, &project.document);
    add.addParam(pManager, false);
    add.addParam(pSecond, true);
    add.addParam(-1);
    add.redo();
    QCOMPARE(pManager->getTimelines(), (QList<VTTimeline*>{pMain, pSecond}));
    QVERIFY(!add.getParam(1)->isOwned());
    const int nId = pSecond->getId();

    VTCommandAction remove(Id::RemoveTimeline, &project.document);
    remove.addParam(pManager, false);
    remove.addParam(pSecond, false);
    remove.addParam(-1);
    remove.redo();
    QVERIFY(remove.getParam(1)->isOwned());
    QCOMPARE(remove.getParam(2)->getAsInt(), 1);
    // A timeline added meanwhile does not take the removed one's id away.
    auto* pThird = new VTTimeline(project.pScene);
    pManager->addTimeline(pThird, -1);
    remove.undo();
    QCOMPARE(pSecond->getId(), nId);
    QCOMPARE(pManager->getTimelines(), (QList<VTTimeline*>{pMain, pSecond, pThird}));
    QVERIFY(pThird->getId() > nId);
    QVERIFY(!remove.getParam(1)->isOwned());

    VTCommandAction current(Id::SetCurrentTimeline, &project.document);
    current.addParam(pManager, false);
    current.addParam(pSecond, false);
    current.redo();
    QCOMPARE(pManager->getCurrentTimeline(), pSecond);
    QCOMPARE(current.getParam(1)->getAsTimeline(), pMain);
    current.undo();
    QCOMPARE(pManager->getCurrentTimeline(), pMain);

    VTCommandAction main(Id::ChangeMainTimeline, &project.document);
    main.addParam(pManager, false);
    main.addParam(pThird, false);
    main.redo();
    QCOMPARE(pManager->getTimelines(), (QList<VTTimeline*>{pThird, pSecond, pMain}));
    main.undo();
    QCOMPARE(pManager->getTimelines(), (QList<VTTimeline*>{pMain, pSecond, pThird}));

    pMain->addLabel("a", 100);
    pMain->addLabel("c", 300);
    VTCommandAction rename(Id::RenameLabel, &project.document);
    rename.addParam(pMain, false);
    rename.addParam(QString("a"));
    rename.addParam(QString("b"));
    rename.redo();
    QCOMPARE(pMain->getLabelValue("b"), 100);
    QCOMPARE(pMain->getLabelValue("a"), -1);
    rename.undo();
    QCOMPARE(pMain->getLabelValue("a"), 100);
    QCOMPARE(pMain->getLabelValue("b"), -1);

    VTCommandAction moveLabel(Id::MoveLabel, &project.document);
    moveLabel.addParam(pMain, false);
    moveLabel.addParam(QString("c"));
    moveLabel.addParam(900);
    moveLabel.redo();
    QCOMPARE(pMain->getLabelValue("c"), 900);
    QCOMPARE(moveLabel.getParam(2)->getAsInt(), 300);
    moveLabel.undo();
    QCOMPARE(pMain->getLabelValue("c"), 300);
}

void TestActions::animationAndKeyframeOwnership()
{
    Project project;
    VTTimeline* pMain = project.mainTimeline();
    VTAnimation* pAnimation = VTAnimationFactory::createAnimation(project.pA);
    VTCommandAction addAnimation(Id::AddAnimation, &project.document);
    addAnimation.addParam(pAnimation, true);
    addAnimation.addParam(pMain, false);
    addAnimation.addParam(kOther);
    addAnimation.redo();
    QCOMPARE(pMain->getAnimation(project.pA, kOther), pAnimation);
    QVERIFY(!addAnimation.getParam(0)->isOwned());
    addAnimation.undo();
    QVERIFY(!pMain->getAnimation(project.pA, kOther));
    QVERIFY(addAnimation.getParam(0)->isOwned());
    addAnimation.redo();

    // A keyframe of layout (1, 0) whose removal restores the value the property had before it.
    project.pA->setOpacity(0.3, kBase);
    project.pA->setOpacity(0.3, kOther);
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(VT::PropOpacity, project.pA, kOther);
    pKeyframe->addKeyValue(new VTKeyValue(0, 0.1), QEasingCurve::Linear, true);
    QPointer<VTKeyframe> guard(pKeyframe);
    {
        VTCommandAction addKeyframe(Id::AddKeyframe, &project.document);
        addKeyframe.addParam(pKeyframe, true);
        addKeyframe.addParam(project.pA, false);
        addKeyframe.addParam(pMain, false);
        addKeyframe.addParam(kOther);
        addKeyframe.redo();
        QCOMPARE(pAnimation->getKeyframe(VT::PropOpacity), pKeyframe);
        QVERIFY(!addKeyframe.getParam(0)->isOwned());

        VTCommandAction removeKeyframe(Id::RemoveKeyframe, &project.document);
        removeKeyframe.addParam(pKeyframe, false);
        removeKeyframe.addParam(project.pA, false);
        removeKeyframe.addParam(pMain, false);
        removeKeyframe.addParam(kOther);
        removeKeyframe.addParam(QVariant(0.8));
        removeKeyframe.redo();
        QVERIFY(!pAnimation->getKeyframe(VT::PropOpacity));
        QVERIFY(removeKeyframe.getParam(0)->isOwned());
        QCOMPARE(project.pA->getOpacity(kOther), 0.8);
        QCOMPARE(project.pA->getOpacity(kBase), 0.3);
        QCOMPARE(project.pA->getCurrentLayoutID(), kBase);
        removeKeyframe.undo();
        QCOMPARE(pAnimation->getKeyframe(VT::PropOpacity), pKeyframe);
        QVERIFY(!removeKeyframe.getParam(0)->isOwned());
        addKeyframe.undo();
        QVERIFY(addKeyframe.getParam(0)->isOwned());
    }
    QVERIFY(guard.isNull());

    VTCommandAction inherits(Id::ChangeAnimationInherits, &project.document);
    inherits.addParam(pAnimation, false);
    inherits.addParam(QMap<int, bool>{{VT::PropOpacity, false}});
    inherits.redo();
    QVERIFY(!pAnimation->isPropInherit(VT::PropOpacity));
    QCOMPARE(inherits.getParam(1)->getAsMapInherits(), (QMap<int, bool>{{VT::PropOpacity, true}}));
    inherits.undo();
    QVERIFY(pAnimation->isAllPropsInherit());

    // Layout animations: the removed set comes back into the parameters, owned.
    VTCommandAction removeLayout(Id::RemoveLayoutAnimations, &project.document);
    removeLayout.addParam(pMain, false);
    removeLayout.addParam(kOther.first);
    removeLayout.addParam(kOther.second);
    removeLayout.addParam(0);
    removeLayout.redo();
    QCOMPARE(removeLayout.paramCount(), 5);
    QCOMPARE(removeLayout.getParam(3)->getAsInt(), 1);
    QCOMPARE(removeLayout.getParam(4)->getAsAnimation(), pAnimation);
    QVERIFY(removeLayout.getParam(4)->isOwned());
    QVERIFY(pMain->getLayoutAnimations(kOther).isEmpty());
    removeLayout.undo();
    QCOMPARE(pMain->getLayoutAnimations(kOther), QVector<VTAnimation*>{pAnimation});
    QVERIFY(!removeLayout.getParam(4)->isOwned());
}

void TestActions::keyValueActions()
{
    Project project;
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(VT::PropOpacity, project.pA, kBase);
    std::unique_ptr<VTKeyframe> owner(pKeyframe);
    auto* k1 = new VTKeyValue(0, 0.0);
    auto* k2 = new VTKeyValue(1000, 1.0);
    auto* k3 = new VTKeyValue(2000, 0.5);
    for (VTKeyValue* pKey : {k1, k2, k3})
        pKeyframe->addKeyValue(pKey, QEasingCurve::OutQuad, true);

    VTCommandAction move(Id::MoveKeyframe, &project.document);
    move.addParam(pKeyframe, false);
    move.addParam(500);
    move.redo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{500, 1500, 2500}));
    move.undo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{0, 1000, 2000}));
    move.redo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{500, 1500, 2500}));
    move.undo();

    VTCommandAction easing(Id::ChangeEasing, &project.document);
    easing.addParam(pKeyframe, false);
    easing.addParam(k1, false);
    easing.addParam(static_cast<int>(QEasingCurve::InCubic));
    easing.redo();
    QCOMPARE(leaving(*pKeyframe, k1)->easingCurve().type(), QEasingCurve::InCubic);
    QCOMPARE(easing.getParam(2)->getAsInt(), static_cast<int>(QEasingCurve::OutQuad));
    easing.undo();
    QCOMPARE(leaving(*pKeyframe, k1)->easingCurve().type(), QEasingCurve::OutQuad);

    // The last key has no segment of its own to change.
    VTCommandAction lastTransition(Id::SetTransition, &project.document);
    lastTransition.addParam(pKeyframe, false);
    lastTransition.addParam(k3, false);
    lastTransition.addParam(false);
    lastTransition.redo();
    QVERIFY(leaving(*pKeyframe, k2)->hasTransition());
    QCOMPARE(lastTransition.getParam(2)->getAsBool(), false);

    // Removing k2 keeps the curve and flag of the segment that left it; undo puts them back.
    leaving(*pKeyframe, k2)->setEasing(QEasingCurve(QEasingCurve::OutBounce));
    leaving(*pKeyframe, k2)->setTransition(false);
    VTCommandAction remove(Id::RemoveKeyValue, &project.document);
    remove.addParam(pKeyframe, false);
    remove.addParam(k2, false);
    remove.redo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{0, 2000}));
    // Curve, flag and the place the key had.
    QCOMPARE(remove.paramCount(), 5);
    QCOMPARE(remove.getParam(4)->getAsInt(), 1);
    QCOMPARE(remove.getParam(2)->getAsInt(), static_cast<int>(QEasingCurve::OutBounce));
    QCOMPARE(remove.getParam(3)->getAsBool(), false);
    QVERIFY(remove.getParam(1)->isOwned());
    remove.undo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{0, 1000, 2000}));
    QCOMPARE(remove.paramCount(), 2);
    QVERIFY(!remove.getParam(1)->isOwned());
    QCOMPARE(leaving(*pKeyframe, k2)->easingCurve().type(), QEasingCurve::OutBounce);
    QVERIFY(!leaving(*pKeyframe, k2)->hasTransition());
    QCOMPARE(leaving(*pKeyframe, k1)->easingCurve().type(), QEasingCurve::OutQuad);

    VTCommandAction add(Id::AddKeyValue, &project.document);
    add.addParam(pKeyframe, false);
    add.addParam(new VTKeyValue(3000, 0.7), true);
    add.addParam(static_cast<int>(QEasingCurve::Linear));
    add.addParam(true);
    add.redo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{0, 1000, 2000, 3000}));
    QVERIFY(!add.getParam(1)->isOwned());
    add.undo();
    QCOMPARE(keyTimes(*pKeyframe), (QList<int>{0, 1000, 2000}));
    QVERIFY(add.getParam(1)->isOwned());

    VTCommandAction change(Id::ChangeKeyValue, &project.document);
    change.addParam(pKeyframe, false);
    change.addParam(k2, false);
    change.addParam(QVariant(0.4));
    change.addParam(QVariant(0.3));
    change.redo();
    QCOMPARE(k2->getValue().toDouble(), 0.4);
    QCOMPARE(k2->getValueMinus().toDouble(), 0.3);
    QCOMPARE(change.getParam(2)->getAsVariant().toDouble(), 1.0);
    change.undo();
    QCOMPARE(k2->getValue().toDouble(), 1.0);
    QCOMPARE(k2->getValueMinus().toDouble(), 1.0);

    VTCommandAction moveKey(Id::MoveKeyValue, &project.document);
    moveKey.addParam(pKeyframe, false);
    moveKey.addParam(k2, false);
    moveKey.addParam(1200);
    moveKey.redo();
    QCOMPARE(k2->getTime(), 1200);
    moveKey.undo();
    QCOMPARE(k2->getTime(), 1000);
    QCOMPARE(moveKey.getParam(2)->getAsInt(), 1200);
}

void TestActions::anchorPointActions()
{
    Project project;
    VTMotionPath path;
    auto* a0 = new VTAnchorPoint(QPointF(0, 0), QPointF(0, 0), QPointF(0, 0), 0);
    auto* a1 = new VTAnchorPoint(QPointF(100, 0), QPointF(100, 0), QPointF(100, 0));
    auto* a2 = new VTAnchorPoint(QPointF(200, 0), QPointF(200, 0), QPointF(200, 0), 1000);
    path.addAnchorPoint(0, a0);
    path.addAnchorPoint(1, a1);
    path.addAnchorPoint(2, a2);

    VTCommandAction remove(Id::RemoveAnchorPoint, &project.document);
    remove.addParam(&path, false);
    remove.addParam(a1, false);
    remove.addParam(-1);
    remove.redo();
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{a0, a2}));
    QCOMPARE(remove.getParam(2)->getAsInt(), 1);
    QVERIFY(remove.getParam(1)->isOwned());
    QCOMPARE(path.getCubicBezierCurves().at(0)->last(), QPointF(200, 0));
    remove.undo();
    QCOMPARE(path.getAnchorPoints(), (QList<VTAnchorPoint*>{a0, a1, a2}));
    QVERIFY(!remove.getParam(1)->isOwned());
    QCOMPARE(path.getCubicBezierCurves().at(0)->last(), QPointF(100, 0));
    QCOMPARE(path.getCubicBezierCurves().at(1)->last(), QPointF(200, 0));

    // Two anchors of one key time have no span between them; undo brings the span back.
    VTCommandAction keyTime(Id::SetAnchorKeyTime, &project.document);
    keyTime.addParam(&path, false);
    keyTime.addParam(a1, false);
    keyTime.addParam(1000);
    keyTime.redo();
    QCOMPARE(a1->getKeyTime(), 1000);
    QVERIFY(path.getCubicBezierCurves().at(1)->isEmpty());
    keyTime.undo();
    QCOMPARE(a1->getKeyTime(), -1);
    QVERIFY(!path.getCubicBezierCurves().at(1)->isEmpty());

    VTCommandAction data(Id::SetAnchorPointData, &project.document);
    data.addParam(&path, false);
    data.addParam(a1, false);
    data.addParam(QPointF(100, 50));
    data.addParam(QPointF(90, 50));
    data.addParam(QPointF(110, 50));
    data.redo();
    QCOMPARE(a1->getPosition(), QPointF(100, 50));
    QCOMPARE(data.getParam(3)->getAsPointF(), QPointF(100, 0));
    data.undo();
    QCOMPARE(a1->getControlPoint2(), QPointF(100, 0));
}

void TestActions::eventListenerActions()
{
    Project project;
    VTTimeline* pMain = project.mainTimeline();
    auto* pTrigger = new VTEventListenerList();
    auto* pListener = new VTEventListener(VTEventListener::Trigger, VTEventListener::PauseTimeline,
                                          QJsonObject{{"action_time", 700}}, QJsonObject());
    QPointer<VTEventListenerList> guard(pTrigger);
    {
        VTCommandAction add(Id::AddEventListener, &project.document);
        add.addParam(pTrigger, true);
        add.addParam(-1);
        add.addParam(pListener, true);
        add.addParam(pMain, false);
        add.redo();
        QVERIFY(pMain->getTriggers().contains(pTrigger));
        QVERIFY(!add.getParam(0)->isOwned());
        QVERIFY(!add.getParam(2)->isOwned());

        VTCommandAction remove(Id::RemoveEventListener, &project.document);
        remove.addParam(pTrigger, false);
        remove.addParam(-1);
        remove.addParam(pListener, false);
        remove.addParam(pMain, false);
        remove.redo();
        QVERIFY(!pMain->getTriggers().contains(pTrigger));
        QVERIFY(remove.getParam(0)->isOwned());
        QVERIFY(remove.getParam(2)->isOwned());
        QCOMPARE(remove.getParam(1)->getAsInt(), 0);
        remove.undo();
        QVERIFY(pMain->getTriggers().contains(pTrigger));
        QCOMPARE(pTrigger->getEventListeners(), QList<VTEventListener*>{pListener});

        VTCommandAction moveTrigger(Id::MoveTrigger, &project.document);
        moveTrigger.addParam(pMain, false);
        moveTrigger.addParam(pTrigger, false);
        moveTrigger.addParam(1500);
        moveTrigger.redo();
        QCOMPARE(pListener->getActionTime(), 1500);
        moveTrigger.undo();
        QCOMPARE(pListener->getActionTime(), 700);

        add.undo();
        QVERIFY(pMain->getTriggers().isEmpty());
        QVERIFY(add.getParam(0)->isOwned());
    }
    QVERIFY(guard.isNull());

    // Rows [0, 1, 2] become [2, 0, 1] by one action per row; undo in reverse order restores.
    QList<VTEventListener*> lstListeners;
    for (int i = 0; i < 3; ++i) {
        lstListeners << new VTEventListener();
        project.pA->addEventListener(lstListeners.last(), -1);
    }
    std::vector<std::unique_ptr<VTCommandAction>> vecMoves;
    const QList<VTEventListener*> lstWanted{lstListeners[2], lstListeners[0], lstListeners[1]};
    for (int nRow = 0; nRow < 3; ++nRow) {
        vecMoves.push_back(std::make_unique<VTCommandAction>(Id::MoveEventListener, &project.document));
        vecMoves.back()->addParam(project.pA, false);
        vecMoves.back()->addParam(lstWanted[nRow], false);
        vecMoves.back()->addParam(nRow);
        vecMoves.back()->redo();
    }
    QCOMPARE(project.pA->getEventListeners(), lstWanted);
    for (auto it = vecMoves.rbegin(); it != vecMoves.rend(); ++it)
        (*it)->undo();
    QCOMPARE(project.pA->getEventListeners(), lstListeners);
}

void TestActions::documentActions()
{
    Project project;
    VTDocument& document = project.document;
    VTResourceManager* pResources = document.getResourceManager();
    QList<VTResource*> lstResources;
    VTCommandAction restore(Id::RestoreResource, &document);
    for (int i = 0; i < 3; ++i) {
        lstResources << new VTResource(VTResource::Image);
        pResources->addResource(lstResources.last());
        lstResources.last()->setDeleted(true);
        restore.addParam(lstResources.last(), false);
    }
    restore.redo();
    for (const VTResource* pResource : lstResources)
        QVERIFY(!pResource->isDeleted());
    restore.undo();
    for (const VTResource* pResource : lstResources)
        QVERIFY(pResource->isDeleted());

    VTFunctionManager* pFunctions = document.getFunctionManager();
    VTFunction* pFirst = VTFunction::createFunction(VTFunctionData::NormalFunction).release();
    VTFunction* pSecond = VTFunction::createFunction(VTFunctionData::NormalFunction).release();
    pFunctions->addFunction(pFirst, -1);
    pFunctions->addFunction(pSecond, -1);
    VTCommandAction removeFunction(Id::RemoveFunction, &document);
    removeFunction.addParam(pFirst, false);
    removeFunction.addParam(pFunctions, false);
    removeFunction.addParam(-1);
    removeFunction.redo();
    QCOMPARE(pFunctions->getFunctions(), QList<VTFunction*>{pSecond});
    QVERIFY(removeFunction.getParam(0)->isOwned());
    removeFunction.undo();
    QCOMPARE(pFunctions->getFunctions(), (QList<VTFunction*>{pFirst, pSecond}));
    QCOMPARE(pFirst->getId(), 1);
    QVERIFY(!removeFunction.getParam(0)->isOwned());

    VTCommandAction changeFunction(Id::ChangeFunction, &document);
    changeFunction.prepareToChangeJSFunctionParams(pSecond);
    QCOMPARE(changeFunction.paramCount(), 5);
    const QString oldName = pSecond->getName();
    const QUuid oldUuid = pSecond->getUuid();
    const QUuid newUuid = QUuid::createUuid();
    changeFunction.getParam(1)->setValue(QString("renamed"));
    changeFunction.getParam(3)->setValue(QJsonArray{"a", "b"});
    changeFunction.getParam(4)->setValue(newUuid.toString());
    changeFunction.redo();
    QCOMPARE(pSecond->getName(), QString("renamed"));
    QCOMPARE(pSecond->getParams(), (QStringList{"a", "b"}));
    QCOMPARE(pSecond->getUuid(), newUuid);
    changeFunction.undo();
    QCOMPARE(pSecond->getName(), oldName);
    QVERIFY(pSecond->getParams().isEmpty());
    QCOMPARE(pSecond->getUuid(), oldUuid);

    VTCommandAction loader(Id::SetDefaultLoaderProps, &document);
    loader.prepareToChangeDefaultLoaderProps();
    QCOMPARE(loader.paramCount(), 6);
    loader.getParam(0)->setValue(120);
    loader.getParam(4)->setValue(static_cast<int>(QColor(Qt::red).rgba()));
    loader.redo();
    QCOMPARE(document.getDefaultLoadingIndicatorProps()->getDiameter(), 120);
    QCOMPARE(document.getDefaultLoadingIndicatorProps()->getColor(), QColor(Qt::red));
    loader.undo();
    QCOMPARE(document.getDefaultLoadingIndicatorProps()->getDiameter(), 60);
    QCOMPARE(document.getDefaultLoadingIndicatorProps()->getColor(), QColor("#2090e6"));

    // Entering a symbol and leaving it again; each run tells the views through a command of its
    // own, which ends like every command with record 41.
    auto* pSymbol = new VTSymbol();
    auto* pSymbolResource = new VTResource(VTResource::Symbol);
    pResources->addResource(pSymbolResource, pSymbol);
    QList<int> lstRecords;
    const QMetaObject::Connection connection =
        connect(&document, &IDocument::dataChanged, this, [&lstRecords](QObject* pInfo) {
            lstRecords << qobject_cast<VTUpdateViewInfo*>(pInfo)->getId();
        });
    VTCommandAction enter(Id::ChangeCurrentSymbol, &document);
    enter.addParam(pSymbolResource->getId());
    enter.addParam(-1);
    enter.redo();
    QCOMPARE(document.getCurrentSymbol(), pSymbol);
    QCOMPARE(lstRecords, (QList<int>{Id::EditingSymbolChanged, Id::CommandFinished}));
    enter.undo();
    QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    QCOMPARE(lstRecords.size(), 4);
    disconnect(connection);

    // A function removed for good goes with its action.
    {
        VTCommandAction removeForGood(Id::RemoveFunction, &document);
        removeForGood.addParam(pSecond, false);
        removeForGood.addParam(pFunctions, false);
        removeForGood.addParam(-1);
        removeForGood.redo();
        QVERIFY(removeForGood.getParam(0)->isOwned());
    }
    QCOMPARE(pFunctions->getFunctions(), QList<VTFunction*>{pFirst});
}

void TestActions::layoutActions()
{
    Project project;
    VTSymbol* pSymbol = &project.document;
    VTBreakpointManager* pBreakpoints = pSymbol->getBreakpointManager();
    pBreakpoints->addHorizontal(0);
    pBreakpoints->addHorizontal(768);

    VTCommandAction addBreakpoint(Id::AddBreakpoint, &project.document);
    addBreakpoint.addParam(pSymbol, false);
    addBreakpoint.addParam(0);
    addBreakpoint.addParam(375);
    addBreakpoint.addParam(-1);
    addBreakpoint.redo();
    const int nId = addBreakpoint.getParam(3)->getAsInt();
    QVERIFY(nId > 0);
    QCOMPARE(pBreakpoints->getHBreakpoint(nId), 375);
    addBreakpoint.undo();
    QCOMPARE(pBreakpoints->getHorizontalId(375), -1);
    addBreakpoint.redo();
    QCOMPARE(pBreakpoints->getHorizontalId(375), nId);

    VTCommandAction removeBreakpoint(Id::RemoveBreakpoint, &project.document);
    removeBreakpoint.addParam(pSymbol, false);
    removeBreakpoint.addParam(0);
    removeBreakpoint.addParam(768);
    removeBreakpoint.addParam(-1);
    const int nRemovedId = pBreakpoints->getHorizontalId(768);
    removeBreakpoint.redo();
    QCOMPARE(pBreakpoints->countHBreakpoints(), 2);
    QCOMPARE(removeBreakpoint.getParam(3)->getAsInt(), nRemovedId);
    removeBreakpoint.undo();
    QCOMPARE(pBreakpoints->getHorizontalId(768), nRemovedId);

    VTCommandAction current(Id::ChangeCurrentBreakpoint, &project.document);
    current.addParam(pSymbol, false);
    current.addParam(nId);
    current.addParam(0);
    current.addParam(true);
    current.redo();
    QVERIFY(pSymbol->isResponsiveMode());
    QCOMPARE(project.pA->getCurrentLayoutID(), VTLayoutKey(nId, 0));
    current.undo();
    QVERIFY(!pSymbol->isResponsiveMode());
    QCOMPARE(project.pA->getCurrentLayoutID(), kBase);

    // The block of layout (1, 0) leaves the element with the action and comes back.
    VTElementProperty* pBlock = project.pA->getLayoutProperty(kOther);
    VTCommandAction removeBlock(Id::RemoveLayoutProperty, &project.document);
    removeBlock.addParam(project.pA, false);
    removeBlock.addParam(1);
    removeBlock.addParam(0);
    removeBlock.addParam(static_cast<VTElementProperty*>(nullptr), false);
    removeBlock.redo();
    QVERIFY(!project.pA->getLayoutProperty(kOther));
    QCOMPARE(removeBlock.getParam(3)->getAsElementProperty(), pBlock);
    QVERIFY(removeBlock.getParam(3)->isOwned());
    removeBlock.undo();
    QCOMPARE(project.pA->getLayoutProperty(kOther), pBlock);
    QVERIFY(!removeBlock.getParam(3)->isOwned());

    VTCommandAction update(Id::UpdateLayoutProperty, &project.document);
    VTElementProperty* pNewBlock = pBlock->clone();
    update.addParam(project.pA, false);
    update.addParam(1);
    update.addParam(0);
    update.addParam(pNewBlock, true);
    update.redo();
    QCOMPARE(project.pA->getLayoutProperty(kOther), pNewBlock);
    QCOMPARE(update.getParam(3)->getAsElementProperty(), pBlock);
    QVERIFY(update.getParam(3)->isOwned());
    update.undo();
    QCOMPARE(project.pA->getLayoutProperty(kOther), pBlock);
    QCOMPARE(update.getParam(3)->getAsElementProperty(), pNewBlock);

    VTCommandAction inherits(Id::ChangeElementInherits, &project.document);
    inherits.addParam(project.pA, false);
    inherits.addParam(1);
    inherits.addParam(0);
    inherits.addParam(QMap<int, bool>{{VT::PropWidth, false}});
    inherits.redo();
    QVERIFY(!project.pA->isInherit(VT::PropWidth, kOther));
    inherits.undo();
    QVERIFY(project.pA->isInherit(VT::PropWidth, kOther));
}

void TestActions::malformedActionsAreInert()
{
    Project project;
    const QJsonArray before = project.children();

    // Too few parameters, a null main object, a parameter of the wrong type.
    VTCommandAction shortAdd(Id::AddElement, &project.document);
    shortAdd.addParam(VTElementFactory::createElement(VT::DivElement), true);
    shortAdd.addParam(0);
    shortAdd.redo();
    QVERIFY(shortAdd.getParam(0)->isOwned());

    VTCommandAction nullRemove(Id::RemoveElement, &project.document);
    nullRemove.addParam(static_cast<VTElement*>(nullptr), false);
    nullRemove.addParam(0);
    nullRemove.addParam(project.pScene, false);
    nullRemove.redo();

    VTCommandAction wrongType(Id::RemoveElement, &project.document);
    wrongType.addParam(project.mainTimeline(), false);
    wrongType.addParam(0);
    wrongType.addParam(project.pScene, false);
    wrongType.redo();
    QCOMPARE(project.children(), before);
    QVERIFY(!wrongType.getParam(0)->isOwned());

    // A skipped first redo does nothing; the undo after it does the real work.
    VTCommandAction skipped(Id::SelectElement, &project.document, 2, true);
    skipped.addParam(project.pC, false);
    skipped.addParam(true);
    skipped.redo();
    QVERIFY(!project.pC->isSelected());
    QVERIFY(skipped.getParam(1)->getAsBool());
    skipped.undo();
    QVERIFY(project.pC->isSelected());
    QVERIFY(!skipped.isSkipNextRedo());

    // A record-only id changes nothing, in either direction.
    VTCommandAction record(Id::TimeChanged, &project.document);
    record.addParam(500);
    record.addParam(false);
    record.redo();
    record.undo();
    QCOMPARE(record.getParam(0)->getAsInt(), 500);
}

QTEST_MAIN(TestActions)
#include "tst_actions.moc"
