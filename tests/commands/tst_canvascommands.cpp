#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTAutoShape.h"
#include "VTBackground.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTBreakpointManager.h"
#include "VTCanvasCommandBuilder.h"
#include "VTCanvasKeyframeUpdater.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTText.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUndoStack>
#include <QtTest>

namespace {

const VTLayoutKey kBase(0, 0);

// A project with one selected scene, and the builder a canvas would own.
struct Project
{
    Project()
        : builder(&document, &canvas)
    {
        pScene = new VTScene;
        pScene->initDefault();
        document.getSceneManager()->addScene(pScene);
        pScene->setSelected(true);
        QObject::connect(&document, &IDocument::dataChanged, &canvas, [this](QObject* pObject) {
            const auto* pInfo = qobject_cast<VTUpdateViewInfo*>(pObject);
            if (pInfo && pInfo->getId() != 41)
                lstHeard.append({pInfo->getId(), pInfo->getSender()});
        });
    }
    VTElement* add(int nType, double dX = 0.0)
    {
        VTElement* pElement = VTElementFactory::createElement(nType);
        pElement->prepareLayoutProperty(document.getBreakpointManager()->getAllBreakpointIds(false), true,
                                        kBase);
        pScene->addElement(pElement);
        pElement->setPositionX(dX, kBase);
        for (const VTLayoutKey& key : pElement->getAllLayoutIds())
            pElement->setPositionX(dX, key);
        return pElement;
    }
    // Horizontal breakpoints at 0 and 600: the base and two layouts of their own, shown outside
    // responsive mode.
    QList<VTLayoutKey> addLayouts()
    {
        VTCommand command(&document);
        command.createActionsToAddBreakpoint(VTBreakpointManager::Horizontal, 600);
        document.setResponsiveMode(false);
        return document.getBreakpointManager()->getAllBreakpointIds(false);
    }
    VTTimeline* timeline() const { return pScene->getTimelineManager()->getCurrentTimeline(); }
    QUndoStack* stack() const { return document.getUndoStack(); }
    const VTCommand* lastCommand() const
    {
        return static_cast<const VTCommand*>(stack()->command(stack()->count() - 1));
    }
    QList<int> lastActionIds() const
    {
        QList<int> lstIds;
        for (const VTCommandAction* pAction : lastCommand()->getActions())
            lstIds.append(pAction->getId());
        return lstIds;
    }
    // The gesture as the page sends it, in the layout and mode the project shows.
    bool submit(const QJsonArray& records, bool bRunOnly = false, const QString& text = QString())
    {
        const VTLayoutKey key = document.getCurrentLayoutId(false);
        const QJsonObject root{{"actions", records},
                               {"sceneId", pScene->getId()},
                               {"symbolResourceId", -1},
                               {"responsive", document.isResponsiveMode()},
                               {"hLayoutId", key.getHorizontalId()},
                               {"vLayoutId", key.getVerticalId()},
                               {"text", text}};
        lstHeard.clear();
        return builder.submitCommandFromJS(QString::fromUtf8(QJsonDocument(root).toJson()), bRunOnly);
    }
    QJsonObject saved() const
    {
        QJsonObject json;
        document.saveData(json);
        return json;
    }
    // Whether the page hears of a record of that id: only with the sender cleared.
    bool pageHears(int nId) const
    {
        for (const auto& heard : lstHeard) {
            if (heard.first == nId)
                return heard.second == nullptr;
        }
        return false;
    }

    VTDocument document;
    QObject canvas;
    VTCanvasCommandBuilder builder;
    VTScene* pScene = nullptr;
    QList<QPair<int, QObject*>> lstHeard;
};

QJsonObject param(int nType, const QJsonValue& value)
{
    return QJsonObject{{"type", nType}, {"value", value}};
}

QJsonObject record(int nId, const QJsonArray& params)
{
    return QJsonObject{{"cmd", nId}, {"isUndoCmd", false}, {"params", params}};
}

QJsonObject geometry(const VTElement* pElement, const QList<QPair<int, double>>& lstValues)
{
    QJsonArray properties;
    QJsonArray params{param(1, pElement->getId()), param(1, 0), param(1, 0), param(1, 0)};
    for (const auto& value : lstValues)
        properties.append(value.first);
    params.append(param(33, properties));
    for (const auto& value : lstValues)
        params.append(param(2, value.second));
    return record(1000, params);
}

QJsonObject pageElement(int nKind, int nId, int nShapeType = 0)
{
    return param(11, QJsonObject{{"type", nKind},
                                 {"id", nId},
                                 {"shapeType", nShapeType},
                                 {"path", QJsonObject{{"l", 10.0}, {"t", 20.0}, {"w", 30.0}, {"h", 40.0}}}});
}

QString jsonText(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

VTKeyframe* addKeyframe(VTTimeline* pTimeline, VTElement* pElement, VT::ElementProperty property,
                        const QList<QPair<int, QVariant>>& lstKeys)
{
    VTAnimation* pAnimation = pTimeline->getAnimation(pElement, kBase);
    if (!pAnimation) {
        pAnimation = new VTAnimation(pElement);
        pTimeline->addAnimation(pAnimation, kBase);
    }
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(property, pElement, kBase);
    for (const auto& key : lstKeys) {
        pKeyframe->addKeyValue(new VTKeyValue(key.first, key.second), QEasingCurve::Linear, true);
        if (auto* pPath = qobject_cast<VTMotionPathKeyframe*>(pKeyframe)) {
            const QPointF pt = key.second.toPointF();
            pPath->getMotionPath()->addAnchorPoint(pPath->getMotionPath()->getAnchorPoints().size(),
                                                   new VTAnchorPoint(pt, pt, pt, key.first));
        }
    }
    pAnimation->addKeyframe(pKeyframe);
    return pKeyframe;
}

QList<QPair<int, double>> keysOf(const VTKeyframe* pKeyframe)
{
    QList<QPair<int, double>> lstKeys;
    for (const VTKeyValue* pKey : pKeyframe->getKeyValues()) {
        lstKeys.append({pKey->getTime(), pKey->getValue().toDouble()});
        if (pKey->getValueMinus() != pKey->getValue())
            lstKeys.append({-1, pKey->getValueMinus().toDouble()});
    }
    return lstKeys;
}

} // namespace

class TestCanvasCommands final : public QObject
{
    Q_OBJECT

private slots:
    void insertElement();
    void moveAcrossLayouts();
    void pageUnits_data();
    void pageUnits();
    void keyframeRules();
    void runOnly();
    void anchorPoints();
    void textShapeAndPathRecords();
    void badInput_data();
    void badInput();
};

void TestCanvasCommands::insertElement()
{
    Project project;
    const QList<VTLayoutKey> lstLayouts = project.addLayouts();
    VTElement* pOld = project.add(VT::DivElement);

    // A new element gets a fresh id where the page gave none or one that is taken; it has a block
    // in every layout, and the page hears of it.
    QVERIFY(project.submit({record(1, {pageElement(VT::DivElement, 0, 21)})}));
    QCOMPARE(project.lastActionIds(), QList<int>{1});
    QCOMPARE(project.lastCommand()->text(), QStringLiteral("Insert Div"));
    QVERIFY(project.pageHears(1));
    QCOMPARE(project.pScene->getChildren().size(), 2);
    VTElement* pNew = project.pScene->getChildren().last();
    QVERIFY(pNew->getId() > 0 && pNew->getId() != pOld->getId());
    QCOMPARE(pNew->getAllLayoutIds(), (QList<VTLayoutKey>{kBase} + lstLayouts));
    QCOMPARE(pNew->getSizeW(lstLayouts.last()), 30.0);
    QVERIFY(project.submit({record(1, {pageElement(VT::DivElement, pOld->getId())}),
                            record(1, {pageElement(VT::DivElement, 77)}),
                            record(1, {pageElement(VT::DivElement, 77)})}));
    const QList<VTElement*> lstChildren = project.pScene->getChildren();
    QCOMPARE(lstChildren.size(), 5);
    QSet<int> setIds;
    for (const VTElement* pChild : lstChildren)
        setIds.insert(pChild->getId());
    QCOMPARE(setIds.size(), 5);
    QVERIFY(setIds.contains(77));
    project.document.getUndoStack()->undo();
    QCOMPARE(project.pScene->getChildren().size(), 2);

    // A shape takes its type and adjustments.
    QVERIFY(project.submit({record(
        1, {pageElement(VT::ShapeElement, 0), param(1, 7), param(1, 2), param(2, 0.25), param(2, 0.5)})}));
    auto* pShape = qobject_cast<VTAutoShape*>(project.pScene->getChildren().last());
    QVERIFY(pShape);
    QCOMPARE(pShape->getAutoShapeType(kBase), 7);
    QCOMPARE(pShape->getAdjustments(kBase), (QVector<double>{0.25, 0.5}));

    // A drawn double arrow is an open line with heads at both ends; a closed outline is filled.
    const QString openPath =
        jsonText({QJsonArray{0, 0, 0, 0, 0, 0, 1}, QJsonArray{100, 50, 100, 50, 100, 50}});
    QVERIFY(project.submit(
        {record(1, {pageElement(VT::FreeFormElement, 0), param(1, 592), param(5, openPath)})}));
    auto* pLine = qobject_cast<VTFreeFormShape*>(project.pScene->getChildren().last());
    QVERIFY(pLine);
    QCOMPARE(*pLine->getArrowStyle(kBase), VTFreeFormArrowStyle(1, 8, 1, 8));
    QCOMPARE(pLine->getPath(kBase)->getAnchorPoints().size(), 2);
    QCOMPARE(pLine->getBorder(kBase)->getStyle(), 1);
    QCOMPARE(pLine->getBorder(kBase)->getWidth(), 5);
    QCOMPARE(pLine->getBorder(kBase)->getColor(), QColor(74, 134, 232));
    QCOMPARE(pLine->getBackground(kBase)->getFillStyle(), 0);
    QCOMPARE(pLine->getPath(lstLayouts.first())->getAnchorPoints().size(), 2);
    const QString closedPath = jsonText({QJsonArray{0, 0, 0, 0, 0, 0}, QJsonArray{100, 0, 100, 0, 100, 0},
                                         QJsonArray{50, 80, 50, 80, 50, 80}});
    QVERIFY(project.submit(
        {record(1, {pageElement(VT::FreeFormElement, 0), param(1, 600), param(5, closedPath)})}));
    auto* pClosed = qobject_cast<VTFreeFormShape*>(project.pScene->getChildren().last());
    QCOMPARE(pClosed->getBackground(kBase)->getFillStyle(), 1);
    QVERIFY(!pClosed->getArrowStyle(kBase) || !pClosed->getArrowStyle(kBase)->hasArrow());
}

void TestCanvasCommands::moveAcrossLayouts()
{
    Project project;
    const QList<VTLayoutKey> lstLayouts = project.addLayouts();
    QCOMPARE(lstLayouts.size(), 2);
    const VTLayoutKey following = lstLayouts.first();
    const VTLayoutKey overriding = lstLayouts.last();
    VTElement* pElement = project.add(VT::DivElement, 100.0);
    pElement->setInherit(VT::PropLeft, true, following);
    pElement->setPositionX(300.0, overriding);
    pElement->setInherit(VT::PropLeft, false, overriding);
    const QJsonObject before = project.saved();

    // Outside responsive mode a move is one of the base, and of each layout that follows it.
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 150.0}})}));
    QCOMPARE(project.lastActionIds(), (QList<int>{1000, 1000}));
    QCOMPARE(project.lastCommand()->text(), QStringLiteral("Change Geometry"));
    QVERIFY(project.pageHears(1000));
    QCOMPARE(pElement->getPositionX(kBase), 150.0);
    QCOMPARE(pElement->getPositionX(following), 150.0);
    QCOMPARE(pElement->getPositionX(overriding), 300.0);
    QVERIFY(pElement->isInherit(VT::PropLeft, following));
    project.stack()->undo();
    QCOMPARE(project.saved(), before);

    // In responsive mode the edit belongs to the layout shown, which stops following the base.
    project.document.setResponsiveMode(true);
    project.document.setCurrentLayoutId(following);
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 180.0}})}, false, QStringLiteral("Move")));
    QCOMPARE(project.lastActionIds(), QList<int>{1000});
    QCOMPARE(project.lastCommand()->text(), QStringLiteral("Move"));
    QCOMPARE(pElement->getPositionX(following), 180.0);
    QCOMPARE(pElement->getPositionX(kBase), 100.0);
    QVERIFY(!pElement->isInherit(VT::PropLeft, following));
    project.stack()->undo();
    QVERIFY(pElement->isInherit(VT::PropLeft, following));
    QCOMPARE(pElement->getPositionX(following), 100.0);
}

void TestCanvasCommands::pageUnits_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("sent");
    QTest::addColumn<double>("stored");

    QTest::newRow("scale") << int(VT::PropScaleX) << int(VT::Pixel) << 150.0 << 1.5;
    QTest::newRow("percent width") << int(VT::PropWidth) << int(VT::Percent) << 50.0 << 0.5;
    QTest::newRow("ratio height") << int(VT::PropHeight) << int(VT::Ratio) << 200.0 << 2.0;
    QTest::newRow("percent top") << int(VT::PropTop) << int(VT::Percent) << 25.0 << 0.25;
    QTest::newRow("pixel width") << int(VT::PropWidth) << int(VT::Pixel) << 50.0 << 50.0;
    QTest::newRow("pixel left") << int(VT::PropLeft) << int(VT::Pixel) << 12.5 << 12.5;
}

void TestCanvasCommands::pageUnits()
{
    QFETCH(int, property);
    QFETCH(int, unit);
    QFETCH(double, sent);
    QFETCH(double, stored);
    Project project;
    VTElement* pElement = project.add(VT::DivElement);
    if (property == VT::PropWidth)
        pElement->setUnitW(unit);
    else if (property == VT::PropHeight)
        pElement->setUnitH(unit);
    else if (property == VT::PropTop)
        pElement->setUnitY(unit);
    else if (property == VT::PropLeft)
        pElement->setUnitX(unit);
    QVERIFY(project.submit({geometry(pElement, {{property, sent}})}));
    QCOMPARE(VTCanvasKeyframeUpdater::geometryValue(*pElement, property, kBase), stored);
}

void TestCanvasCommands::keyframeRules()
{
    Project project;
    VTElement* pElement = project.add(VT::DivElement, 100.0);
    pElement->setSizeW(200.0);
    VTTimeline* pTimeline = project.timeline();
    QVERIFY(pTimeline);

    // Auto keyframes: the first key holds the value from before, the key at the playhead the new
    // one. Undo takes the project back to exactly what it was.
    project.document.setAutoKeyframeMode(true);
    pTimeline->setCurrentTime(1000);
    const QJsonObject before = project.saved();
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 200.0}})}));
    VTAnimation* pAnimation = pTimeline->getAnimation(pElement, kBase);
    QVERIFY(pAnimation);
    const VTKeyframe* pMade = pAnimation->getKeyframe(VT::PropLeft);
    QVERIFY(pMade);
    QCOMPARE(keysOf(pMade), (QList<QPair<int, double>>{{0, 100.0}, {1000, 200.0}}));
    QCOMPARE(pElement->getPositionX(), 200.0);
    QVERIFY(project.pageHears(25));
    project.stack()->undo();
    QCOMPARE(project.saved(), before);
    QVERIFY(!pTimeline->getAnimation(pElement, kBase));
    project.stack()->redo();
    QCOMPARE(keysOf(pTimeline->getAnimation(pElement, kBase)->getKeyframe(VT::PropLeft)),
             (QList<QPair<int, double>>{{0, 100.0}, {1000, 200.0}}));
    project.stack()->undo();

    // Without auto keyframes, a resize from the left edge between keys shifts the whole track by
    // the move of the edge.
    project.document.setAutoKeyframeMode(false);
    const VTKeyframe* pLeft = addKeyframe(pTimeline, pElement, VT::PropLeft, {{0, 100.0}, {1000, 300.0}});
    pTimeline->setCurrentTime(500);
    QCOMPARE(pElement->getPositionX(), 200.0);
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 50.0}, {VT::PropWidth, 350.0}})}));
    QCOMPARE(keysOf(pLeft), (QList<QPair<int, double>>{{0, -50.0}, {1000, 150.0}}));
    QCOMPARE(pElement->getSizeW(), 350.0);
    project.stack()->undo();
    QCOMPARE(keysOf(pLeft), (QList<QPair<int, double>>{{0, 100.0}, {1000, 300.0}}));

    // A pure move at a key's time changes that key alone...
    pTimeline->setCurrentTime(1000);
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 350.0}})}));
    QCOMPARE(keysOf(pLeft), (QList<QPair<int, double>>{{0, 100.0}, {1000, 350.0}}));
    project.stack()->undo();
    // ...while a resize that moves the edge there moves the whole track.
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 250.0}, {VT::PropWidth, 250.0}})}));
    QCOMPARE(keysOf(pLeft), (QList<QPair<int, double>>{{0, 50.0}, {1000, 250.0}}));
    project.stack()->undo();
    QCOMPARE(keysOf(pLeft), (QList<QPair<int, double>>{{0, 100.0}, {1000, 300.0}}));

    // While a freeform's points are edited, its outline scales with the box: a resize scales the
    // size track by the same factor.
    auto* pFreeForm = qobject_cast<VTFreeFormShape*>(project.add(VT::FreeFormElement));
    pFreeForm->setEditPoint(true);
    const VTKeyframe* pWidth = addKeyframe(pTimeline, pFreeForm, VT::PropWidth, {{0, 100.0}, {1000, 200.0}});
    pTimeline->setCurrentTime(500);
    QCOMPARE(pFreeForm->getSizeW(), 150.0);
    QVERIFY(project.submit({geometry(pFreeForm, {{VT::PropWidth, 300.0}})}));
    QCOMPARE(keysOf(pWidth), (QList<QPair<int, double>>{{0, 200.0}, {1000, 400.0}}));
}

void TestCanvasCommands::runOnly()
{
    Project project;
    VTElement* pElement = project.add(VT::DivElement, 10.0);
    QVERIFY(project.submit({geometry(pElement, {{VT::PropLeft, 40.0}})}, true));
    QCOMPARE(pElement->getPositionX(), 40.0);
    QCOMPARE(project.stack()->count(), 0);

    // Stage size and the shown layout are run and never undone.
    QVERIFY(project.submit({record(59, {param(1, 1024)}), record(60, {param(1, 700)})}));
    QCOMPARE(project.document.getWidth(), 1024);
    QCOMPARE(project.document.getHeight(), 700);
    QCOMPARE(project.stack()->count(), 0);
    QVERIFY(project.pageHears(59));
    const QList<VTLayoutKey> lstLayouts = project.addLayouts();
    const VTLayoutKey target = lstLayouts.last();
    QVERIFY(project.submit({record(
        92, {param(1, target.getHorizontalId()), param(1, target.getVerticalId()), param(4, true)})}));
    QCOMPARE(project.document.getCurrentLayoutId(true), target);
    QVERIFY(project.document.isResponsiveMode());
    QCOMPARE(project.stack()->count(), 0);
    // A layout the symbol does not have is refused.
    QVERIFY(!project.submit({record(92, {param(1, 99), param(1, 0), param(4, true)})}));
    QCOMPARE(project.document.getCurrentLayoutId(true), target);
}

void TestCanvasCommands::anchorPoints()
{
    Project project;
    VTElement* pElement = project.add(VT::DivElement);
    auto* pKeyframe = qobject_cast<VTMotionPathKeyframe*>(addKeyframe(
        project.timeline(), pElement, VT::PropLocation, {{0, QPointF(0, 0)}, {1000, QPointF(100, 0)}}));
    QVERIFY(pKeyframe);
    const VTMotionPath* pPath = pKeyframe->getMotionPath();
    const auto move = [&](int nIndex, const QPointF& pt) {
        return record(32, {param(1, pElement->getId()), param(1, nIndex), param(2, pt.x()), param(2, pt.y()),
                           param(2, pt.x()), param(2, pt.y()), param(2, pt.x()), param(2, pt.y())});
    };

    // A move too small to count changes the anchor but no key.
    QVERIFY(project.submit({move(1, QPointF(100 + 1e-13, 0))}));
    QCOMPARE(project.lastActionIds(), QList<int>{32});
    QCOMPARE(pKeyframe->getKeyValue(1000)->getValue().toPointF(), QPointF(100, 0));
    QCOMPARE(project.lastCommand()->text(), QStringLiteral("Move Anchor Point"));
    QVERIFY(project.pageHears(32));

    // A real move takes the key along.
    QVERIFY(project.submit({move(1, QPointF(150, 20))}));
    QCOMPARE(pPath->getAnchorPointAt(1)->getPosition(), QPointF(150, 20));
    QCOMPARE(pKeyframe->getKeyValue(1000)->getValue().toPointF(), QPointF(150, 20));
    QCOMPARE(pKeyframe->getKeyValue(1000)->getValueMinus().toPointF(), QPointF(150, 20));
    project.stack()->undo();
    QCOMPARE(pKeyframe->getKeyValue(1000)->getValue().toPointF(), QPointF(100, 0));

    // An anchor with a key time brings its key; removing it takes both away again.
    QVERIFY(project.submit(
        {record(29, {param(1, pElement->getId()), param(1, 1), param(2, 50.0), param(2, 30.0), param(2, 40.0),
                     param(2, 30.0), param(2, 60.0), param(2, 30.0), param(1, 500)})}));
    QCOMPARE(pPath->getAnchorPoints().size(), 3);
    QCOMPARE(pPath->getAnchorPointAt(1)->getKeyTime(), 500);
    QVERIFY(pKeyframe->getKeyValue(500));
    QCOMPARE(pKeyframe->getKeyValue(500)->getValue().toPointF(), QPointF(50, 30));
    QVERIFY(project.submit({record(30, {param(1, pElement->getId()), param(1, 1)})}));
    QCOMPARE(pPath->getAnchorPoints().size(), 2);
    QVERIFY(!pKeyframe->getKeyValue(500));
    project.stack()->undo();
    project.stack()->undo();
    QCOMPARE(pPath->getAnchorPoints().size(), 2);
    QCOMPARE(pKeyframe->getKeyValues().size(), 2);
}

void TestCanvasCommands::textShapeAndPathRecords()
{
    Project project;
    const QList<VTLayoutKey> lstLayouts = project.addLayouts();
    const VTLayoutKey following = lstLayouts.first();
    const VTLayoutKey overriding = lstLayouts.last();

    // Text: the base and the layouts that follow it take the format; one with a size of its own
    // keeps that size.
    auto* pText = qobject_cast<VTText*>(project.add(VT::TextElement));
    QVERIFY(pText);
    pText->getTextProperty(overriding)->setFontSize(40);
    pText->setInherit(VT::PropFontSize, false, overriding);
    pText->setInherit(VT::PropFontSize, true, following);
    const int nOldSize = pText->getFontSize(kBase);
    QVERIFY(nOldSize != 30);
    const QJsonArray textParams{param(1, pText->getId()),
                                param(5, QStringLiteral("<b>Hi</b>")),
                                param(4, true),
                                param(4, false),
                                param(4, false),
                                param(4, false),
                                param(1, 30),
                                param(5, QStringLiteral("Arial")),
                                param(1, 255),
                                param(1, 0),
                                param(1, 0),
                                param(1, 255),
                                param(1, 0),
                                param(1, 0),
                                param(1, 0),
                                param(1, 0),
                                param(1, 2),
                                param(1, 3)};
    QVERIFY(project.submit({record(1008, textParams)}));
    QCOMPARE(project.lastCommand()->text(), QStringLiteral("Change Text"));
    QCOMPARE(pText->getFontSize(kBase), 30);
    QCOMPARE(pText->getFontSize(following), 30);
    QCOMPARE(pText->getFontSize(overriding), 40);
    QCOMPARE(pText->getColor(kBase), QColor(255, 0, 0));
    QCOMPARE(pText->getInnerHtml(kBase), QStringLiteral("<b>Hi</b>"));
    QCOMPARE(pText->getFontFamily(kBase), QStringLiteral("Arial"));
    QVERIFY(pText->getBold(kBase));
    QCOMPARE(pText->getLetterSpace(kBase), 3);
    QVERIFY(project.pageHears(1008));
    project.stack()->undo();
    QCOMPARE(pText->getFontSize(kBase), nOldSize);
    QCOMPARE(pText->getFontSize(following), nOldSize);
    // In responsive mode the layout shown takes the format and stops following the base for what
    // changed.
    project.document.setResponsiveMode(true);
    project.document.setCurrentLayoutId(following);
    QVERIFY(project.submit({record(1008, textParams)}));
    QCOMPARE(project.lastActionIds(), (QList<int>{1008, 101}));
    QCOMPARE(pText->getFontSize(following), 30);
    QCOMPARE(pText->getFontSize(kBase), nOldSize);
    QVERIFY(!pText->isInherit(VT::PropFontSize, following));
    project.stack()->undo();
    QVERIFY(pText->isInherit(VT::PropFontSize, following));
    project.document.setResponsiveMode(false);

    // Adjustments reach every layout.
    auto* pShape = qobject_cast<VTAutoShape*>(project.add(VT::ShapeElement));
    QVERIFY(project.submit(
        {record(1009, {param(1, pShape->getId()), param(1, 2), param(2, 0.1), param(2, 0.9)})}));
    for (const VTLayoutKey& key : QList<VTLayoutKey>{kBase} + lstLayouts)
        QCOMPARE(pShape->getAdjustments(key), (QVector<double>{0.1, 0.9}));

    // A new outline reaches the base and the layouts that follow it.
    auto* pFreeForm = qobject_cast<VTFreeFormShape*>(project.add(VT::FreeFormElement));
    pFreeForm->setInherit(VT::PropFreeFormPath, true, following);
    pFreeForm->setInherit(VT::PropFreeFormPath, false, overriding);
    const int nOverridingAnchors = pFreeForm->getPath(overriding)->getAnchorPoints().size();
    const QString path = jsonText({QJsonArray{0, 0, 0, 0, 0, 0}, QJsonArray{10, 0, 10, 0, 10, 0},
                                   QJsonArray{10, 10, 10, 10, 10, 10}, QJsonArray{0, 10, 0, 10, 0, 10}});
    QVERIFY(project.submit({record(1036, {param(1, pFreeForm->getId()), param(5, path)}),
                            record(1037, {param(1, pFreeForm->getId()), param(4, true)})}));
    QCOMPARE(pFreeForm->getPath(kBase)->getAnchorPoints().size(), 4);
    QCOMPARE(pFreeForm->getPath(following)->getAnchorPoints().size(), 4);
    QCOMPARE(pFreeForm->getPath(overriding)->getAnchorPoints().size(), nOverridingAnchors);
    QVERIFY(pFreeForm->isEditPoint());
    project.stack()->undo();
    QVERIFY(!pFreeForm->isEditPoint());
    QCOMPARE(pFreeForm->getPath(kBase)->getAnchorPoints().size(), nOverridingAnchors);

    // Selection keeps the canvas as sender: the page made it and does not hear it again.
    QVERIFY(project.submit({record(33, {param(1, pShape->getId()), param(4, true)})}));
    QVERIFY(pShape->isSelected());
    QVERIFY(!project.pageHears(33));

    // Moving a breakpoint on the ruler; undo puts the value back.
    VTBreakpointManager* pManager = project.document.getBreakpointManager();
    const int nBreakpoint = overriding.getHorizontalId();
    QVERIFY(project.submit({record(91, {param(1, 0), param(1, nBreakpoint), param(1, 700)})}));
    QCOMPARE(pManager->getHBreakpoint(nBreakpoint), 700);
    project.stack()->undo();
    QCOMPARE(pManager->getHBreakpoint(nBreakpoint), 600);
    // In responsive mode a stage that no longer fits its layout shows the one it fits now.
    project.document.setWidth(700);
    project.document.setResponsiveMode(true);
    project.document.setCurrentLayoutId(overriding);
    QVERIFY(project.submit({record(91, {param(1, 0), param(1, nBreakpoint), param(1, 800)})}));
    QCOMPARE(project.lastActionIds(), (QList<int>{91, 92}));
    QCOMPARE(project.document.getCurrentLayoutId(true), following);
    QVERIFY(project.pageHears(91));
    project.stack()->undo();
    QCOMPARE(project.document.getCurrentLayoutId(true), overriding);
    QCOMPARE(pManager->getHBreakpoint(nBreakpoint), 600);
}

void TestCanvasCommands::badInput_data()
{
    QTest::addColumn<QString>("json");
    // Placeholders: %1 the scene id, %2 a div's id, %3 a freeform's id.
    QTest::newRow("not json") << QStringLiteral("{\"actions\": [");
    QTest::newRow("an array") << QStringLiteral("[1, 2]");
    QTest::newRow("unknown scene") << QStringLiteral(
        "{\"sceneId\": 999, \"symbolResourceId\": -1, \"actions\": [{\"cmd\": 1037, \"params\": "
        "[{\"type\": 1, \"value\": %3}, {\"type\": 4, \"value\": true}]}]}");
    QTest::newRow("unknown symbol") << QStringLiteral(
        "{\"sceneId\": %1, \"symbolResourceId\": 42, \"actions\": [{\"cmd\": 1037, \"params\": "
        "[{\"type\": 1, \"value\": %3}, {\"type\": 4, \"value\": true}]}]}");
    QTest::newRow("unknown element") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1000, \"params\": [{\"type\": 1, \"value\": 999}, "
        "{\"type\": 1}, "
        "{\"type\": 1}, {\"type\": 1}, {\"type\": 33, \"value\": [0]}, {\"type\": 2, \"value\": 5}]}]}");
    QTest::newRow("values short of the list") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1000, \"params\": [{\"type\": 1, \"value\": %2}, "
        "{\"type\": 1}, "
        "{\"type\": 1}, {\"type\": 1}, {\"type\": 33, \"value\": [0, 4]}, {\"type\": 2, \"value\": 5}]}]}");
    QTest::newRow("no values") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1000, \"params\": [{\"type\": 1, \"value\": %2}, "
        "{\"type\": 1}, "
        "{\"type\": 1}, {\"type\": 1}, {\"type\": 33, \"value\": []}]}]}");
    QTest::newRow("path of a div") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1036, \"params\": [{\"type\": 1, \"value\": %2}, "
        "{\"type\": 5, \"value\": \"[[0,0,0,0,0,0]]\"}]}]}");
    QTest::newRow("path that is no array") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1036, \"params\": [{\"type\": 1, \"value\": %3}, "
        "{\"type\": 5, \"value\": \"{\\\"x\\\": 1}\"}]}]}");
    QTest::newRow("short text record") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 1008, \"params\": [{\"type\": 1, \"value\": %2}, "
        "{\"type\": 5, \"value\": \"x\"}]}]}");
    QTest::newRow("anchor without motion path") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 30, \"params\": [{\"type\": 1, \"value\": %2}, "
        "{\"type\": 1, \"value\": 0}]}]}");
    QTest::newRow("element of no kind")
        << QStringLiteral("{\"sceneId\": %1, \"actions\": [{\"cmd\": 1, \"params\": [{\"type\": 11, "
                          "\"value\": {\"type\": 8}}]}]}");
    QTest::newRow("records of other kinds") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [5, \"x\", {\"cmd\": 5, \"params\": []}, {\"cmd\": 1009, \"params\": "
        "[{\"type\": 1, \"value\": %2}, {\"type\": 1, \"value\": -3}]}]}");
    QTest::newRow("breakpoint of another symbol") << QStringLiteral(
        "{\"sceneId\": %1, \"actions\": [{\"cmd\": 91, \"params\": [{\"type\": 1, \"value\": 0}, "
        "{\"type\": 1, \"value\": 12345}, {\"type\": 1, \"value\": 10}]}]}");
}

void TestCanvasCommands::badInput()
{
    QFETCH(QString, json);
    Project project;
    const VTElement* pDiv = project.add(VT::DivElement, 5.0);
    const VTElement* pFreeForm = project.add(VT::FreeFormElement);
    const QJsonObject before = project.saved();
    const QString text = QString(json)
                             .replace(QLatin1String("%1"), QString::number(project.pScene->getId()))
                             .replace(QLatin1String("%2"), QString::number(pDiv->getId()))
                             .replace(QLatin1String("%3"), QString::number(pFreeForm->getId()));
    QVERIFY(!project.builder.submitCommandFromJS(text, false));
    QCOMPARE(project.stack()->count(), 0);
    QCOMPARE(project.saved(), before);
    QVERIFY(project.lstHeard.isEmpty());
}

QTEST_MAIN(TestCanvasCommands)

#include "tst_canvascommands.moc"
