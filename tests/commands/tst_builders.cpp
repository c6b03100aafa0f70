#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTBreakpointManager.h"
#include "VTCommand.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTOtherResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QUndoStack>
#include <QtTest>

#include <functional>

namespace {

const VTLayoutKey kBase(0, 0);
const VTLayoutKey kOther(1, 0);

// A project with one selected scene, and an undo stack that runs commands as the editor does.
struct Project
{
    Project()
    {
        pScene = new VTScene;
        pScene->initDefault();
        document.getSceneManager()->addScene(pScene);
        pScene->setSelected(true);
    }
    VTElement* add(int nType, VTElement* pParent = nullptr, double dX = 0.0, double dY = 0.0)
    {
        VTElement* pElement = VTElementFactory::createElement(nType);
        pScene->addElement(pElement, -1, pParent);
        pElement->setPositionX(dX);
        pElement->setPositionY(dY);
        return pElement;
    }
    // Gives the element a copy of its base block as layout kOther.
    static void addOtherLayout(VTElement* pElement)
    {
        pElement->addLayoutProperty(pElement->getLayoutProperty(kBase)->clone(), kOther);
    }
    VTTimeline* timeline() const { return pScene->getTimelineManager()->getMainTimeline(); }
    VTCommand* command() { return new VTCommand(&document); }
    // The stack owns the command from here on; pushing runs its first redo.
    void push(VTCommand* pCommand)
    {
        QVERIFY(!pCommand->isEmpty());
        stack.push(pCommand);
    }

    VTDocument document;
    VTScene* pScene = nullptr;
    QUndoStack stack;
};

VTKeyframe* addKeyframe(VTTimeline* pTimeline, VTElement* pElement, VT::ElementProperty property,
                        const VTLayoutKey& key, const QList<QPair<int, QVariant>>& lstKeys)
{
    VTAnimation* pAnimation = pTimeline->getAnimation(pElement, key);
    if (!pAnimation) {
        pAnimation = new VTAnimation(pElement);
        pTimeline->addAnimation(pAnimation, key);
    }
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(property, pElement, key);
    for (const auto& key : lstKeys)
        pKeyframe->addKeyValue(new VTKeyValue(key.first, key.second), QEasingCurve::Linear, true);
    pAnimation->addKeyframe(pKeyframe);
    return pKeyframe;
}

QVariant point(double dX, double dY)
{
    return QVariant::fromValue(QPointF(dX, dY));
}

// A copy of every anchor and every flattened span, to tell whether a path kept its shape.
struct PathShape
{
    explicit PathShape(const VTBezierPath* pPath)
    {
        for (const VTAnchorPoint* pAnchor : pPath->getAnchorPoints())
            lstAnchors << QList<QPointF>{pAnchor->getPosition(), pAnchor->getControlPoint1(),
                                         pAnchor->getControlPoint2()}
                       << QList<QPointF>{QPointF(pAnchor->getKeyTime(), 0)};
        for (const QList<QPointF>* pSpan : pPath->getCubicBezierCurves())
            lstSpans << *pSpan;
    }
    QList<QList<QPointF>> lstAnchors;
    QList<QList<QPointF>> lstSpans;
};

QList<VTLayoutKey> layoutsOf(const VTElement* pElement)
{
    return pElement->getAllLayoutIds();
}

} // namespace

class TestBuilders final : public QObject
{
    Q_OBJECT

private slots:
    void visibility();
    void deleteToGroups();
    void deleteMotionPathKeys();
    void addKeyAnchorKeepsCurve();
    void removeKeyframeRestoresLayoutValue_data();
    void removeKeyframeRestoresLayoutValue();
    void addBreakpoint();
    void removeBreakpoint();
    void groupLayoutInherit_data();
    void groupLayoutInherit();
    void dragElement();
    void addResourceAndSavedValue();
};

void TestBuilders::visibility()
{
    Project project;
    VTElement* pGroup = project.add(VT::GroupElement);
    VTElement* pChild = project.add(VT::DivElement, pGroup);
    VTElement* pSibling = project.add(VT::DivElement, pGroup);
    VTElement* pShown = project.add(VT::DivElement);
    pGroup->setSelected(true);
    pShown->setSelected(true);

    // Hiding a selected element deselects it in the same undo step.
    VTCommand* pHide = project.command();
    pHide->createActionsForVisibleCmd(pShown, false, true);
    project.push(pHide);
    QVERIFY(!pShown->isVisible());
    QVERIFY(!pShown->isSelected());
    project.stack.undo();
    QVERIFY(pShown->isVisible());
    QVERIFY(pShown->isSelected());

    // Showing a child of a hidden group shows the group, but not the group's other children.
    for (VTElement* pElement : {pGroup, pChild, pSibling})
        pElement->setVisible(false);
    VTCommand* pShow = project.command();
    pShow->createActionsForVisibleCmd(pChild, true, true);
    project.push(pShow);
    QVERIFY(pChild->isVisible());
    QVERIFY(pGroup->isVisible());
    QVERIFY(!pSibling->isVisible());
    project.stack.undo();
    QVERIFY(!pChild->isVisible());
    QVERIFY(!pGroup->isVisible());

    // Locking a group locks its children and deselects it.
    VTCommand* pLock = project.command();
    pLock->createActionsForLockCmd(pGroup, true, true);
    project.push(pLock);
    QVERIFY(pGroup->isLocked() && pChild->isLocked() && pSibling->isLocked());
    QVERIFY(!pGroup->isSelected());
    project.stack.undo();
    QVERIFY(!pGroup->isLocked() && !pChild->isLocked());
    QVERIFY(pGroup->isSelected());
}

void TestBuilders::deleteToGroups()
{
    Project project;
    VTElement* pOuter = project.add(VT::GroupElement);
    VTElement* pInner = project.add(VT::GroupElement, pOuter);
    VTElement* pA = project.add(VT::DivElement, pInner);
    VTElement* pB = project.add(VT::DivElement, pInner);
    VTElement* pC = project.add(VT::DivElement, pOuter);
    VTElement* pKept = project.add(VT::DivElement);
    VTKeyframe* pKeyframe =
        addKeyframe(project.timeline(), pA, VT::PropOpacity, kBase, {{0, 0.2}, {500, 0.8}});

    const int nIdOfA = pA->getId();
    QList<VTElement*> lstElements{pA, pB, pC};
    VTCommand(&project.document).replaceElementsByGroupParent(lstElements);
    QCOMPARE(lstElements, QList<VTElement*>{pOuter});

    // Every child of the nest chosen: the outermost group goes, with the animations inside it.
    VTCommand* pDelete = project.command();
    pDelete->createActionsForDeleteElements({pA, pB, pC}, project.pScene, true, true);
    project.push(pDelete);
    QCOMPARE(project.pScene->getChildren(), QList<VTElement*>{pKept});
    QVERIFY(!project.timeline()->getAnimation(pA, kBase));
    project.stack.undo();
    QCOMPARE(project.pScene->getChildren(), (QList<VTElement*>{pOuter, pKept}));
    QCOMPARE(pInner->getChildren(), (QList<VTElement*>{pA, pB}));
    QCOMPARE(pA->getId(), nIdOfA);
    QCOMPARE(project.timeline()->getAnimation(pA, kBase)->getKeyframe(VT::PropOpacity), pKeyframe);

    // Without folding into groups only the chosen element goes.
    VTCommand* pSingle = project.command();
    pSingle->createActionsForDeleteElements({pC}, project.pScene, false, false);
    project.push(pSingle);
    QCOMPARE(pOuter->getChildren(), QList<VTElement*>{pInner});
    project.stack.undo();
    QCOMPARE(pOuter->getChildren(), (QList<VTElement*>{pInner, pC}));
}

void TestBuilders::deleteMotionPathKeys()
{
    Project project;
    VTElement* pElement = project.add(VT::DivElement);
    auto* pKeyframe = qobject_cast<VTMotionPathKeyframe*>(addKeyframe(
        project.timeline(), pElement, VT::PropLocation, kBase,
        {{0, point(0, 0)}, {1000, point(100, 0)}, {2000, point(200, 50)}, {3000, point(300, 0)}}));
    QVERIFY(pKeyframe);
    VTMotionPath* pPath = pKeyframe->getMotionPath();
    pPath->addAnchorPoint(0, new VTAnchorPoint(QPointF(0, 0), QPointF(0, 0), QPointF(20, 40), 0));
    pPath->addAnchorPoint(1, new VTAnchorPoint(QPointF(50, 30), QPointF(40, 30), QPointF(60, 30)));
    pPath->addAnchorPoint(2, new VTAnchorPoint(QPointF(100, 0), QPointF(80, -20), QPointF(120, 20), 1000));
    pPath->addAnchorPoint(3, new VTAnchorPoint(QPointF(200, 50), QPointF(180, 50), QPointF(220, 50), 2000));
    pPath->addAnchorPoint(4, new VTAnchorPoint(QPointF(300, 0), QPointF(280, 0), QPointF(300, 0), 3000));
    const PathShape before(pPath);
    const QList<VTKeyValue*> lstKeys = pKeyframe->getKeyValues();

    // An inner key stops being a key; the curve stays as it was.
    VTCommand* pInner = project.command();
    pInner->createActionsToDeleteKeyValues(project.timeline(), pKeyframe, {lstKeys.at(2)}, kBase);
    project.push(pInner);
    QCOMPARE(pKeyframe->getKeyValues().size(), 3);
    QCOMPARE(pPath->getAnchorPoints().size(), 5);
    QCOMPARE(pPath->getAnchorPointAt(3)->getKeyTime(), -1);
    QCOMPARE(PathShape(pPath).lstSpans, before.lstSpans);
    project.stack.undo();
    QCOMPARE(PathShape(pPath).lstAnchors, before.lstAnchors);
    QCOMPARE(pKeyframe->getKeyValues(), lstKeys);

    // The first key takes the path up to the next key anchor, whose incoming handle folds.
    VTAnchorPoint* pSecondKey = pPath->getAnchorPointAt(2);
    VTCommand* pFirst = project.command();
    pFirst->createActionsToDeleteKeyValues(project.timeline(), pKeyframe, {lstKeys.at(0)}, kBase);
    project.push(pFirst);
    QCOMPARE(pPath->getAnchorPoints().size(), 3);
    QCOMPARE(pPath->getAnchorPointAt(0), pSecondKey);
    QCOMPARE(pSecondKey->getControlPoint1(), pSecondKey->getPosition());
    QCOMPARE(pSecondKey->getControlPoint2(), QPointF(120, 20));
    project.stack.undo();
    QCOMPARE(PathShape(pPath).lstAnchors, before.lstAnchors);
    QCOMPARE(PathShape(pPath).lstSpans, before.lstSpans);

    // The last two keys: the path ends at the key before them, its outgoing handle folded.
    VTCommand* pLast = project.command();
    pLast->createActionsToDeleteKeyValues(project.timeline(), pKeyframe, {lstKeys.at(2), lstKeys.at(3)},
                                          kBase);
    project.push(pLast);
    QCOMPARE(pPath->getAnchorPoints().size(), 3);
    QCOMPARE(pPath->getAnchorPointAt(2)->getControlPoint2(), QPointF(100, 0));
    project.stack.undo();
    QCOMPARE(PathShape(pPath).lstAnchors, before.lstAnchors);

    // All keys: the keyframe itself goes, and comes back whole.
    VTAnimation* pAnimation = project.timeline()->getAnimation(pElement, kBase);
    VTCommand* pAll = project.command();
    pAll->createActionsToDeleteKeyValues(project.timeline(), pKeyframe, lstKeys, kBase);
    project.push(pAll);
    QVERIFY(!pAnimation->getKeyframe(VT::PropLocation));
    project.stack.undo();
    QCOMPARE(pAnimation->getKeyframe(VT::PropLocation), pKeyframe);
    QCOMPARE(pKeyframe->getKeyValues(), lstKeys);
    QCOMPARE(PathShape(pPath).lstAnchors, before.lstAnchors);

    // One of two anchors at a jump: the key holds the surviving side on both.
    pPath->addAnchorPoint(3, new VTAnchorPoint(QPointF(100, 10), QPointF(100, 10), QPointF(110, 10), 1000));
    lstKeys.at(1)->setValue(point(100, 10));
    VTCommand* pJump = project.command();
    pJump->createActionsToDeleteAnchorPoint(project.timeline(), pKeyframe, 2, kBase);
    project.push(pJump);
    QCOMPARE(pPath->getKeyPointIndexes(1000).size(), 1);
    QCOMPARE(lstKeys.at(1)->getValue(), point(100, 10));
    QCOMPARE(lstKeys.at(1)->getValueMinus(), point(100, 10));
    project.stack.undo();
    QCOMPARE(pPath->getKeyPointIndexes(1000).size(), 2);
    QCOMPARE(lstKeys.at(1)->getValueMinus(), point(100, 0));
}

void TestBuilders::addKeyAnchorKeepsCurve()
{
    Project project;
    VTElement* pElement = project.add(VT::DivElement);
    auto* pKeyframe = qobject_cast<VTMotionPathKeyframe*>(addKeyframe(
        project.timeline(), pElement, VT::PropLocation, kBase, {{0, point(0, 0)}, {1000, point(200, 0)}}));
    VTMotionPath* pPath = pKeyframe->getMotionPath();
    // Symmetric, so that half of the travel is half of the curve parameter: the new point at
    // 500 ms lies at the curve's middle.
    pPath->addAnchorPoint(0, new VTAnchorPoint(QPointF(0, 0), QPointF(0, 0), QPointF(0, 100), 0));
    pPath->addAnchorPoint(1, new VTAnchorPoint(QPointF(200, 0), QPointF(200, 100), QPointF(200, 0), 1000));
    const std::unique_ptr<VTBezierPath> pOriginal = pPath->clone();
    const QPointF ptMiddle =
        VTBezierPath::calculateBezierAt(pOriginal->getAnchorPointAt(0), pOriginal->getAnchorPointAt(1), 0.5);

    VTCommand* pCommand = project.command();
    pCommand->createActionsToAddKeyAnchorPoint(pKeyframe, new VTAnchorPoint(ptMiddle, {}, {}, 500), 1);
    project.push(pCommand);
    QCOMPARE(pPath->getAnchorPoints().size(), 3);
    // Each half follows the old curve: half t of the first half is t / 2 of the whole.
    for (double dT : {0.25, 0.5, 0.75}) {
        const QPointF ptOld = VTBezierPath::calculateBezierAt(pOriginal->getAnchorPointAt(0),
                                                              pOriginal->getAnchorPointAt(1), dT / 2);
        const QPointF ptNew =
            VTBezierPath::calculateBezierAt(pPath->getAnchorPointAt(0), pPath->getAnchorPointAt(1), dT);
        QVERIFY2(QLineF(ptOld, ptNew).length() < 1e-9, qPrintable(QString::number(dT)));
        const QPointF ptOld2 = VTBezierPath::calculateBezierAt(pOriginal->getAnchorPointAt(0),
                                                               pOriginal->getAnchorPointAt(1), 0.5 + dT / 2);
        const QPointF ptNew2 =
            VTBezierPath::calculateBezierAt(pPath->getAnchorPointAt(1), pPath->getAnchorPointAt(2), dT);
        QVERIFY(QLineF(ptOld2, ptNew2).length() < 1e-9);
    }
    project.stack.undo();
    QCOMPARE(pPath->getAnchorPoints().size(), 2);
    QCOMPARE(pPath->getAnchorPointAt(0)->getControlPoint2(), QPointF(0, 100));
    QCOMPARE(pPath->getAnchorPointAt(1)->getControlPoint1(), QPointF(200, 100));
}

using ValueOf = std::function<QVariant(const VTElement*, const VTLayoutKey&)>;
Q_DECLARE_METATYPE(ValueOf)

void TestBuilders::removeKeyframeRestoresLayoutValue_data()
{
    QTest::addColumn<int>("nProperty");
    QTest::addColumn<QVariant>("baseValue");
    QTest::addColumn<QVariant>("layoutValue");
    QTest::addColumn<bool>("bInherit");
    QTest::addColumn<bool>("bPercentInLayout");
    QTest::addColumn<bool>("bBaseComesBack");
    QTest::addColumn<ValueOf>("valueOf");

    const ValueOf opacity = [](const VTElement* e, const VTLayoutKey& key) {
        return QVariant(e->getOpacity(key));
    };
    const ValueOf left = [](const VTElement* e, const VTLayoutKey& key) {
        return QVariant(e->getPositionX(key));
    };
    const ValueOf border = [](const VTElement* e, const VTLayoutKey& key) {
        return QVariant(e->getBorder(key)->getColor());
    };
    QTest::newRow("inheriting opacity")
        << int(VT::PropOpacity) << QVariant(0.5) << QVariant(0.8) << true << false << true << opacity;
    QTest::newRow("overriding opacity")
        << int(VT::PropOpacity) << QVariant(0.5) << QVariant(0.8) << false << false << false << opacity;
    QTest::newRow("inheriting left") << int(VT::PropLeft) << QVariant(10.0) << QVariant(40.0) << true << false
                                     << true << left;
    QTest::newRow("left in another unit")
        << int(VT::PropLeft) << QVariant(10.0) << QVariant(0.25) << true << true << false << left;
    QTest::newRow("inheriting border colour")
        << int(VT::PropBorderColor) << QVariant(QColor(Qt::red)) << QVariant(QColor(Qt::blue)) << true
        << false << true << border;
}

void TestBuilders::removeKeyframeRestoresLayoutValue()
{
    QFETCH(int, nProperty);
    QFETCH(QVariant, baseValue);
    QFETCH(QVariant, layoutValue);
    QFETCH(bool, bInherit);
    QFETCH(bool, bPercentInLayout);
    QFETCH(bool, bBaseComesBack);
    QFETCH(ValueOf, valueOf);

    Project project;
    VTElement* pElement = project.add(VT::DivElement);
    pElement->getBorder(kBase)->setStyle(VTBorder::Solid);
    Project::addOtherLayout(pElement);
    const auto write = [&](const VTLayoutKey& key, const QVariant& value) {
        if (nProperty == VT::PropOpacity)
            pElement->setOpacity(value.toDouble(), key);
        else if (nProperty == VT::PropLeft)
            pElement->setPositionX(value.toDouble(), key);
        else
            pElement->getBorder(key)->setColor(value.value<QColor>());
    };
    write(kBase, baseValue);
    write(kOther, layoutValue);
    if (bPercentInLayout)
        pElement->setUnitX(VT::Percent, kOther);
    pElement->setInherit(nProperty, bInherit, kOther);
    VTKeyframe* pKeyframe =
        addKeyframe(project.timeline(), pElement, static_cast<VT::ElementProperty>(nProperty), kOther,
                    {{0, layoutValue}, {1000, layoutValue}});
    VTAnimation* pAnimation = project.timeline()->getAnimation(pElement, kOther);

    VTCommand* pCommand = project.command();
    pCommand->createActionsToRemoveKeyframe(project.timeline(), pKeyframe, kOther);
    project.push(pCommand);
    QVERIFY(!pAnimation->getKeyframe(static_cast<VT::ElementProperty>(nProperty)));
    QCOMPARE(valueOf(pElement, kOther), bBaseComesBack ? baseValue : layoutValue);
    QCOMPARE(valueOf(pElement, kBase), baseValue);
    QCOMPARE(pElement->getCurrentLayoutID(), kBase);
    project.stack.undo();
    QCOMPARE(pAnimation->getKeyframe(static_cast<VT::ElementProperty>(nProperty)), pKeyframe);
    QCOMPARE(valueOf(pElement, kOther), layoutValue);
    QCOMPARE(pElement->getUnitX(kOther), bPercentInLayout ? int(VT::Percent) : int(VT::Pixel));
}

void TestBuilders::addBreakpoint()
{
    Project project;
    VTDocument& symbol = project.document;
    const VTBreakpointManager* pManager = symbol.getBreakpointManager();
    VTElement* pElement = project.add(VT::DivElement);
    addKeyframe(project.timeline(), pElement, VT::PropOpacity, kBase, {{0, 0.0}, {500, 1.0}});
    symbol.setWidth(400);

    // The first breakpoint of a direction brings the base entry of value 0 with it.
    VTCommand* pFirst = project.command();
    pFirst->createActionsToAddBreakpoint(VTBreakpointManager::Horizontal, 500);
    QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {2, 500}}));
    project.push(pFirst);
    const auto checkAdded = [&]() {
        QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {2, 500}}));
        QCOMPARE(layoutsOf(pElement), (QList<VTLayoutKey>{kBase, {1, 0}, {2, 0}}));
        QCOMPARE(project.timeline()->getAllLayoutAnimations().keys(),
                 (QList<VTLayoutKey>{kBase, {1, 0}, {2, 0}}));
        QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(2, 0));
        QVERIFY(symbol.isResponsiveMode());
        QCOMPARE(pElement->getCurrentLayoutID(), VTLayoutKey(2, 0));
        QCOMPARE(symbol.getWidth(), 600);
    };
    checkAdded();
    // Undo gives back size, layout pair and blocks; redo does it all again.
    project.stack.undo();
    QVERIFY(pManager->isEmpty());
    QCOMPARE(layoutsOf(pElement), QList<VTLayoutKey>{kBase});
    QCOMPARE(project.timeline()->getAllLayoutAnimations().keys(), QList<VTLayoutKey>{kBase});
    QCOMPARE(symbol.getCurrentLayoutId(false), kBase);
    QVERIFY(!symbol.isResponsiveMode());
    QCOMPARE(symbol.getWidth(), 400);
    project.stack.redo();
    checkAdded();

    // A value the direction has already adds nothing.
    VTCommand* pSame = project.command();
    pSame->createActionsToAddBreakpoint(VTBreakpointManager::Horizontal, 500);
    QVERIFY(pSame->isEmpty());
    delete pSame;

    // Opening the other direction replaces the layouts that had id 0 there.
    VTCommand* pCross = project.command();
    pCross->createActionsToAddBreakpoint(VTBreakpointManager::Vertical, 300);
    project.push(pCross);
    QCOMPARE(layoutsOf(pElement), (QList<VTLayoutKey>{kBase, {1, 3}, {1, 4}, {2, 3}, {2, 4}}));
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(2, 4));
    project.stack.undo();
    QCOMPARE(layoutsOf(pElement), (QList<VTLayoutKey>{kBase, {1, 0}, {2, 0}}));
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(2, 0));
    QVERIFY(pManager->getVBreakpoints().isEmpty());
}

void TestBuilders::removeBreakpoint()
{
    Project project;
    VTDocument& symbol = project.document;
    const VTBreakpointManager* pManager = symbol.getBreakpointManager();
    VTElement* pElement = project.add(VT::DivElement);
    addKeyframe(project.timeline(), pElement, VT::PropOpacity, kBase, {{0, 0.0}, {500, 1.0}});
    for (int nValue : {500, 800}) {
        VTCommand* pAdd = project.command();
        pAdd->createActionsToAddBreakpoint(VTBreakpointManager::Horizontal, nValue);
        project.push(pAdd);
    }
    QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {2, 500}, {3, 800}}));

    // Removing the base value: the lowest breakpoint left opens the range from 0.
    VTCommand* pBase = project.command();
    pBase->createActionsToRemoveBreakpoint(VTBreakpointManager::Horizontal, 0);
    project.push(pBase);
    QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{2, 0}, {3, 800}}));
    QCOMPARE(layoutsOf(pElement), (QList<VTLayoutKey>{kBase, {2, 0}, {3, 0}}));
    project.stack.undo();
    QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {2, 500}, {3, 800}}));
    QCOMPARE(layoutsOf(pElement), (QList<VTLayoutKey>{kBase, {1, 0}, {2, 0}, {3, 0}}));
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(3, 0));

    // Removing the last breakpoint but the base removes the base too, and responsive mode ends.
    VTCommand* pMiddle = project.command();
    pMiddle->createActionsToRemoveBreakpoint(VTBreakpointManager::Horizontal, 800);
    project.push(pMiddle);
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(2, 0));
    VTCommand* pLast = project.command();
    pLast->createActionsToRemoveBreakpoint(VTBreakpointManager::Horizontal, 500);
    project.push(pLast);
    QVERIFY(pManager->isEmpty());
    QVERIFY(!symbol.isResponsiveMode());
    QCOMPARE(symbol.getCurrentLayoutId(false), kBase);
    QCOMPARE(layoutsOf(pElement), QList<VTLayoutKey>{kBase});
    QCOMPARE(project.timeline()->getAllLayoutAnimations().keys(), QList<VTLayoutKey>{kBase});
    project.stack.undo();
    QCOMPARE(pManager->getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {2, 500}}));
    QVERIFY(symbol.isResponsiveMode());
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(2, 0));
    QCOMPARE(project.timeline()->getAllLayoutAnimations().keys(),
             (QList<VTLayoutKey>{kBase, {1, 0}, {2, 0}}));
}

void TestBuilders::groupLayoutInherit_data()
{
    QTest::addColumn<double>("dLayoutValue");
    QTest::addColumn<bool>("bInherits");
    QTest::newRow("same as base") << 30.0 << true;
    QTest::newRow("other than base") << 55.0 << false;
}

void TestBuilders::groupLayoutInherit()
{
    QFETCH(double, dLayoutValue);
    QFETCH(bool, bInherits);
    Project project;
    VTElement* pElement = project.add(VT::DivElement, nullptr, 10.0);
    Project::addOtherLayout(pElement);
    VTKeyframe* pKeyframe =
        addKeyframe(project.timeline(), pElement, VT::PropLeft, kOther, {{0, 10.0}, {800, 20.0}});
    VTAnimation* pAnimation = project.timeline()->getAnimation(pElement, kOther);

    QMap<int, double> mapBase;
    VTCommand* pCommand = project.command();
    const QSizeF parent(800, 600);
    pCommand->createActionsToLayoutElementWhenGrouping(pElement, mapBase, parent, parent,
                                                       {{VT::PropLeft, 30.0}});
    pElement->setCurrentLayoutID(kOther);
    pCommand->createActionsToLayoutElementWhenGrouping(pElement, mapBase, parent, parent,
                                                       {{VT::PropLeft, dLayoutValue}});
    pElement->setCurrentLayoutID(kBase);
    project.push(pCommand);
    QCOMPARE(pElement->getPositionX(kBase), 30.0);
    QCOMPARE(pElement->getPositionX(kOther), dLayoutValue);
    QCOMPARE(pElement->isInherit(VT::PropLeft, kOther), bInherits);
    QCOMPARE(pAnimation->isPropInherit(VT::PropLeft), bInherits);
    // The keys move with the value, so the animation keeps its course.
    const double dDelta = dLayoutValue - 10.0;
    QCOMPARE(pKeyframe->getKeyValues().at(0)->getValue().toDouble(), 10.0 + dDelta);
    QCOMPARE(pKeyframe->getKeyValues().at(1)->getValue().toDouble(), 20.0 + dDelta);
    project.stack.undo();
    QCOMPARE(pElement->getPositionX(kOther), 10.0);
    QVERIFY(pElement->isInherit(VT::PropLeft, kOther));
    QVERIFY(pAnimation->isPropInherit(VT::PropLeft));
    QCOMPARE(pKeyframe->getKeyValues().at(1)->getValue().toDouble(), 20.0);
}

void TestBuilders::dragElement()
{
    Project project;
    VTElement* pGroup = project.add(VT::GroupElement, nullptr, 100.0, 50.0);
    VTElement* pInside = project.add(VT::GroupElement, pGroup, 10.0, 10.0);
    VTElement* pMoved = project.add(VT::DivElement, nullptr, 200.0, 100.0);
    VTElement* pOther = project.add(VT::DivElement);
    pOther->setSelected(true);

    // Into the last place of a group inside the dragged group: that group is refused, the other
    // element goes, and stays where it was on the stage.
    VTCommand* pCommand = project.command();
    pCommand->createActionsToDragElement({pGroup, pMoved}, pInside, 64);
    project.push(pCommand);
    QCOMPARE(pGroup->getParent(), static_cast<VTElement*>(project.pScene));
    QCOMPARE(pMoved->getParent(), pInside);
    QCOMPARE(pMoved->getPositionX(), 90.0);
    QCOMPARE(pMoved->getPositionY(), 40.0);
    QCOMPARE(pMoved->getAbsoluteLeftTop(), QPointF(200.0, 100.0));
    QVERIFY(pMoved->isSelected());
    QVERIFY(!pOther->isSelected());
    project.stack.undo();
    QCOMPARE(pMoved->getParent(), static_cast<VTElement*>(project.pScene));
    QCOMPARE(project.pScene->getChildIndex(pMoved), 1);
    QCOMPARE(pMoved->getPositionX(), 200.0);
    QVERIFY(!pMoved->isSelected());
    QVERIFY(pOther->isSelected());

    // Moving an element into its own child alone does nothing at all.
    VTCommand* pRefused = project.command();
    pRefused->createActionsToDragElement({pGroup}, pInside, 64);
    QVERIFY(pRefused->isEmpty());
    delete pRefused;
}

void TestBuilders::addResourceAndSavedValue()
{
    Project project;
    VTResourceManager* pManager = project.document.getResourceManager();
    auto* pFirst = new VTOtherResource(VTResource::Script);
    pFirst->setName(QStringLiteral("app"));
    pManager->addResource(pFirst);
    auto* pSecond = new VTOtherResource(VTResource::Script);
    pSecond->setName(QStringLiteral("app"));
    pManager->addResource(pSecond);

    // The second script gets a free name at once, and is linked into the page by the command.
    VTCommand* pAdd = project.command();
    pAdd->createActionsForAddResource(pSecond, true);
    QVERIFY(pSecond->getName() != QLatin1String("app"));
    QVERIFY(!pSecond->isIncludeResource());
    project.push(pAdd);
    QVERIFY(!pSecond->isDeleted());
    QVERIFY(pSecond->isIncludeResource());
    project.stack.undo();
    QVERIFY(pSecond->isDeleted());
    QVERIFY(!pSecond->isIncludeResource());

    // A value saved before the first keyframe comes back on undo, and the first redo leaves the
    // value the gesture set.
    VTElement* pElement = project.add(VT::DivElement);
    pElement->setOpacity(0.3);
    VTCommand* pSave = project.command();
    pSave->createActionsToSaveCurrentElementPropValue(pElement, VT::PropOpacity, kBase);
    pSave->createActionsToSaveCurrentElementPropValue(pElement, VT::PropPlayback, kBase);
    pSave->createActionsToSaveCurrentElementPropValue(pElement, VT::PropOpacity, VTLayoutKey::current());
    QCOMPARE(pSave->getActions().size(), 1);
    pElement->setOpacity(0.9);
    project.push(pSave);
    QCOMPARE(pElement->getOpacity(), 0.9);
    project.stack.undo();
    QCOMPARE(pElement->getOpacity(), 0.3);
    project.stack.redo();
    QCOMPARE(pElement->getOpacity(), 0.9);
}

QTEST_GUILESS_MAIN(TestBuilders)
#include "tst_builders.moc"
