#include "VTBezierPath.h"
#include "VTBreakpointManager.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTFontResource.h"
#include "VTMedia.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUndoStack>
#include <QtTest>

#include <functional>
#include <memory>

using ParamMaker = std::function<VTCmdParam*()>;
Q_DECLARE_METATYPE(ParamMaker)

namespace {

using Action = VTCommandAction;

QJsonObject entryOf(const VTCmdParam& param)
{
    QJsonObject json;
    param.serialize(json);
    return json;
}

QJsonObject entry(int nType, const QJsonValue& value = QJsonValue::Undefined)
{
    QJsonObject json{{"type", nType}};
    if (!value.isUndefined())
        json.insert("value", value);
    return json;
}

// The JSON of a record with these parameters, which it deletes afterwards.
QJsonObject record(int nId, QList<VTCmdParam*> lstParams, bool bUndo = false, VTDocument* pDocument = nullptr)
{
    VTUpdateViewInfo info;
    info.setId(nId);
    info.setUndoCmd(bUndo);
    info.setParams(&lstParams);
    QJsonObject json;
    info.serialize(json, pDocument, pDocument ? pDocument->getResourceManager() : nullptr);
    qDeleteAll(lstParams);
    return json;
}

QJsonArray entries(int nId, const QList<VTCmdParam*>& lstParams, bool bUndo = false,
                   VTDocument* pDocument = nullptr)
{
    return record(nId, lstParams, bUndo, pDocument).value("params").toArray();
}

class ProbeResource final : public VTResource
{
public:
    explicit ProbeResource(int& nDeleted)
        : VTResource(VTResource::Image)
        , m_nDeleted(nDeleted)
    {}
    ~ProbeResource() override { ++m_nDeleted; }

private:
    int& m_nDeleted;
};

struct Stage
{
    Stage()
    {
        document.getSceneManager()->addNewScenes(1, 800, 600, false);
        pScene = document.getSceneManager()->getCurrentScene();
    }
    VTElement* add(int nKind)
    {
        VTElement* pElement = VTElementFactory::createElement(nKind);
        pScene->addElement(pElement);
        return pElement;
    }
    VTDocument document;
    VTScene* pScene = nullptr;
};

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void paramEntries_data();
    void paramEntries();
    void pointerEntries();
    void gettersCheckTheType();
    void ownedObjectsDie();
    void parseParam_data();
    void parseParam();
    void parseNewElement_data();
    void parseNewElement();
    void recordEnvelope();
    void treeRecordsThroughACommand();
    void elementRecords();
    void resourceRecords();
    void timelineAndSymbolRecords();
};

void TestRecords::paramEntries_data()
{
    QTest::addColumn<ParamMaker>("make");
    QTest::addColumn<QJsonObject>("expected");
    QTest::newRow("empty") << ParamMaker([] { return new VTCmdParam(); }) << entry(0);
    QTest::newRow("int") << ParamMaker([] { return new VTCmdParam(-7); }) << entry(1, -7);
    QTest::newRow("double") << ParamMaker([] { return new VTCmdParam(2.5); }) << entry(2, 2.5);
    QTest::newRow("point") << ParamMaker([] { return new VTCmdParam(QPointF(1.5, -2.0)); })
                           << entry(3, QJsonObject{{"x", 1.5}, {"y", -2.0}});
    QTest::newRow("bool") << ParamMaker([] { return new VTCmdParam(true); }) << entry(4, true);
    QTest::newRow("text") << ParamMaker([] { return new VTCmdParam(QStringLiteral("a\"b")); })
                          << entry(5, "a\"b");
    QTest::newRow("text list") << ParamMaker([] { return new VTCmdParam(QStringList{"a"}); }) << entry(6);
    QTest::newRow("object") << ParamMaker([] {
        return new VTCmdParam(QJsonObject{{"k", 1}});
    }) << entry(7, QJsonObject{{"k", 1}});
    QTest::newRow("array") << ParamMaker([] {
        return new VTCmdParam(QJsonArray{1, "x"});
    }) << entry(8, QJsonArray{1, "x"});
    QTest::newRow("variant") << ParamMaker([] { return new VTCmdParam(QVariant(3)); }) << entry(9);
    QTest::newRow("bits") << ParamMaker([] { return new VTCmdParam(QBitArray(3, true)); }) << entry(10);
    QTest::newRow("null element") << ParamMaker([] {
        return new VTCmdParam(static_cast<VTElement*>(nullptr), false);
    }) << entry(11);
    QTest::newRow("layout key") << ParamMaker([] { return new VTCmdParam(VTLayoutKey(1, 2)); }) << entry(30);
    QTest::newRow("inherits") << ParamMaker([] {
        return new VTCmdParam(QMap<int, bool>{{4, false}});
    }) << entry(32);
    QTest::newRow("int list") << ParamMaker([] { return new VTCmdParam(QList<int>{1, 2}); }) << entry(33);
}

void TestRecords::paramEntries()
{
    QFETCH(ParamMaker, make);
    QFETCH(QJsonObject, expected);
    const std::unique_ptr<VTCmdParam> pParam(make());
    QCOMPARE(entryOf(*pParam), expected);
    // Parsing what was written and writing it again changes nothing for the types the page sends.
    VTCmdParam parsed;
    parsed.parse(expected, nullptr);
    QCOMPARE(parsed.getType(), expected.value("type").toInt());
    if (QList<int>{1, 2, 3, 4, 5}.contains(parsed.getType()))
        QCOMPARE(entryOf(parsed), expected);
}

void TestRecords::pointerEntries()
{
    Stage stage;
    VTElement* pDiv = stage.add(VT::DivElement);
    QJsonObject exported;
    pDiv->serializeToExport(exported, true, true);
    QCOMPARE(entryOf(VTCmdParam(pDiv, false)), entry(11, exported));

    QJsonObject scene;
    stage.pScene->serialize(scene);
    QCOMPARE(entryOf(VTCmdParam(stage.pScene, false)), entry(12, scene));

    VTBezierPath path;
    QVERIFY(path.parseFromJsArray(QJsonArray{QJsonArray{1, 2, 0, 0, 3, 4}, QJsonArray{10, 20, 5, 5, 0, 0}}));
    QJsonArray points;
    path.serializeToExport(points);
    QCOMPARE(points.size(), 2);
    QCOMPARE(entryOf(VTCmdParam(&path, false)), entry(29, points));

    // Other model objects reach the page by type alone.
    VTTimeline* pTimeline = stage.pScene->getTimelineManager()->getCurrentTimeline();
    QCOMPARE(entryOf(VTCmdParam(pTimeline, false)), entry(15));
    QCOMPARE(entryOf(VTCmdParam(stage.document.getSceneManager(), false)), entry(13));
}

void TestRecords::gettersCheckTheType()
{
    Stage stage;
    VTElement* pDiv = stage.add(VT::DivElement);
    const VTCmdParam number(5);
    QCOMPARE(number.getAsDouble(), 0.0);
    QVERIFY(!number.getAsBool());
    QVERIFY(!number.getAsElement());
    QCOMPARE(VTCmdParam(2.5).getAsInt(), 0);
    QCOMPARE(VTCmdParam(QVariant(4)).getAsInt(), 0);
    QCOMPARE(VTCmdParam(QVariant(4)).getAsVariant(), QVariant(4));
    QCOMPARE(VTCmdParam(VTLayoutKey(2, 3)).getAsIntPair(), VTLayoutKey(2, 3));
    QCOMPARE(VTCmdParam(QMap<int, bool>{{5, true}}).getAsMapInherits(), (QMap<int, bool>{{5, true}}));

    // A scene is an element, and an element a list of listeners; nothing else crosses types.
    const VTCmdParam scene(stage.pScene, false);
    QCOMPARE(scene.getAsElement(), stage.pScene);
    QCOMPARE(scene.getAsEventListenerList(), stage.pScene);
    QVERIFY(!scene.getAsTimeline());
    QCOMPARE(VTCmdParam(static_cast<VTElement*>(stage.pScene), false).getAsScene(), stage.pScene);
    QVERIFY(!VTCmdParam(pDiv, false).getAsScene());
    QVERIFY(!VTCmdParam(pDiv, false).getAsSymbol());
    QVERIFY(VTCmdParam::isPointerType(VTCmdParam::ArrowStyle));
    QVERIFY(!VTCmdParam::isPointerType(VTCmdParam::IntPair));
    QVERIFY(VTCmdParam::isOwnableType(VTCmdParam::TimelineManager));
    QVERIFY(!VTCmdParam::isOwnableType(VTCmdParam::Resource));
    QVERIFY(!VTCmdParam::isOwnableType(VTCmdParam::Symbol));
}

void TestRecords::ownedObjectsDie()
{
    QPointer<VTElement> pOwned = VTElementFactory::createElement(VT::DivElement);
    QPointer<VTElement> pBorrowed = VTElementFactory::createElement(VT::DivElement);
    {
        VTCmdParam param(pOwned.data(), true);
        // Owning the same object again keeps it alive.
        param.setValue(pOwned.data(), true);
        QVERIFY(!pOwned.isNull());
        param.setValue(pBorrowed.data(), false);
        QVERIFY(pOwned.isNull());
        QCOMPARE(param.getAsElement(), pBorrowed.data());
    }
    QVERIFY(!pBorrowed.isNull());

    QPointer<VTElement> pAnother = VTElementFactory::createElement(VT::TextElement);
    auto* pParam = new VTCmdParam(pAnother.data(), true);
    pParam->release();
    pParam->clearValue();
    QCOMPARE(pParam->getType(), int(VTCmdParam::Empty));
    QVERIFY(!pAnother.isNull());
    pParam->setValue(pAnother.data(), true);
    pParam->setValue(3);
    QVERIFY(pAnother.isNull());
    QCOMPARE(pParam->getAsInt(), 3);
    delete pParam;
    delete pBorrowed.data();

    // A resource stays registered when removed; the parameter never deletes it.
    int nDeleted = 0;
    auto* pResource = new ProbeResource(nDeleted);
    {
        VTCmdParam param(static_cast<VTResource*>(pResource), true);
    }
    QCOMPARE(nDeleted, 0);
    delete pResource;
    QCOMPARE(nDeleted, 1);
}

void TestRecords::parseParam_data()
{
    QTest::addColumn<QJsonObject>("json");
    QTest::addColumn<int>("nType");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int missing") << QJsonObject{{"type", 1}} << 1 << QVariant(0);
    QTest::newRow("int list") << QJsonObject{{"type", 33}, {"value", QJsonArray{3, 1, 2}}} << 33
                              << QVariant::fromValue(QList<int>{3, 1, 2});
    QTest::newRow("object keeps its type only")
        << QJsonObject{{"type", 7}, {"value", QJsonObject{{"a", 1}}}} << 7 << QVariant();
    QTest::newRow("variant") << QJsonObject{{"type", 9}, {"value", 5}} << 9 << QVariant();
    QTest::newRow("unknown type") << QJsonObject{{"type", 40}, {"value", 5}} << 0 << QVariant();
    QTest::newRow("no type") << QJsonObject{{"value", 5}} << 0 << QVariant();
}

void TestRecords::parseParam()
{
    QFETCH(QJsonObject, json);
    QFETCH(int, nType);
    QFETCH(QVariant, value);
    VTCmdParam param(QStringLiteral("before"));
    param.parse(json, nullptr);
    QCOMPARE(param.getType(), nType);
    QCOMPARE(param.getAsString(), QString());
    QCOMPARE(param.getAsJsonObject(), QJsonObject());
    QVERIFY(!param.getAsVariant().isValid());
    if (nType == 1)
        QCOMPARE(param.getAsInt(), value.toInt());
    if (nType == 33)
        QCOMPARE(param.getAsIntList(), value.value<QList<int>>());
}

void TestRecords::parseNewElement_data()
{
    QTest::addColumn<int>("nKind");
    QTest::addColumn<int>("nShape");
    QTest::addColumn<double>("dRadius");
    QTest::addColumn<int>("nUnit");
    QTest::newRow("ellipse") << int(VT::DivElement) << 21 << 0.5 << int(VT::Percent);
    QTest::newRow("rounded") << int(VT::DivElement) << 12 << 25.0 << int(VT::Pixel);
    QTest::newRow("plain div") << int(VT::DivElement) << 3 << 0.0 << int(VT::Pixel);
    QTest::newRow("text ignores the shape") << int(VT::TextElement) << 21 << 0.0 << int(VT::Pixel);
}

void TestRecords::parseNewElement()
{
    QFETCH(int, nKind);
    QFETCH(int, nShape);
    QFETCH(double, dRadius);
    QFETCH(int, nUnit);
    const QJsonObject value{{"type", nKind},
                            {"id", 17},
                            {"shapeType", nShape},
                            {"path", QJsonObject{{"l", 10.0}, {"t", 20.5}, {"w", 30.0}, {"h", 40.0}}}};
    VTCmdParam param;
    param.parse({{"type", 11}, {"value", value}}, nullptr);
    QCOMPARE(param.getType(), int(VTCmdParam::Element));
    QVERIFY(!param.isOwned());
    const std::unique_ptr<VTElement> pElement(param.getAsElement());
    QVERIFY(pElement);
    QCOMPARE(int(pElement->getType()), nKind);
    QCOMPARE(pElement->getId(), 17);
    QCOMPARE(pElement->getPositionX(), 10.0);
    QCOMPARE(pElement->getPositionY(), 20.5);
    QCOMPARE(pElement->getSizeW(), 30.0);
    QCOMPARE(pElement->getSizeH(), 40.0);
    const auto* pDiv = qobject_cast<VTDiv*>(pElement.get());
    if (nKind == VT::DivElement) {
        const VTCorner* pCorner = pDiv->getCorner();
        QCOMPARE(pCorner->getTopLeft(), dRadius);
        QCOMPARE(pCorner->getBottomRight(), dRadius);
        QCOMPARE(pCorner->getUnitTopRight(), nUnit);
        QCOMPARE(pCorner->getUnitBottomLeft(), nUnit);
    }

    // A kind that is not made here leaves an empty element parameter, without a crash.
    VTCmdParam scene;
    scene.parse({{"type", 11}, {"value", QJsonObject{{"type", 8}}}}, nullptr);
    QCOMPARE(scene.getType(), int(VTCmdParam::Element));
    QVERIFY(!scene.getAsElement());
    VTCmdParam bare;
    bare.parse({{"type", 11}}, nullptr);
    QCOMPARE(bare.getType(), int(VTCmdParam::Element));
    QVERIFY(!bare.getAsElement());
}

void TestRecords::recordEnvelope()
{
    VTUpdateViewInfo closing;
    closing.setId(Action::CommandFinished);
    QJsonObject json;
    closing.serialize(json, nullptr, nullptr);
    QCOMPARE(json, (QJsonObject{{"cmd", 41}, {"isUndoCmd", false}}));

    QCOMPARE(record(Action::StopAllTasks, {}, true),
             (QJsonObject{{"cmd", 82}, {"isUndoCmd", true}, {"params", QJsonArray()}}));

    // A record from the page owns what it parsed; a list borrowed from an action is left alone.
    Action action(Action::RenameTimeline, nullptr);
    action.addParam(QStringLiteral("kept"));
    VTUpdateViewInfo info;
    info.setParams(&action.getParams());
    const QJsonObject page{{"cmd", 62},
                           {"params", QJsonArray{QJsonObject{{"type", 1}, {"value", 3}}, 7,
                                                 QJsonObject{{"type", 5}, {"value", "x"}}}}};
    info.parse(page, nullptr);
    QCOMPARE(action.paramCount(), 1);
    QCOMPARE(action.getParam(0)->getAsString(), QStringLiteral("kept"));
    QCOMPARE(info.getId(), 62);
    QVERIFY(!info.isUndoCmd());
    QCOMPARE(info.getParams()->size(), 2);
    info.parse(QJsonObject{{"isUndoCmd", true}}, nullptr);
    QCOMPARE(info.getId(), 0);
    QVERIFY(info.isUndoCmd());
    QVERIFY(info.getParams()->isEmpty());
}

void TestRecords::treeRecordsThroughACommand()
{
    Stage stage;
    stage.add(VT::DivElement);
    VTElement* pNew = VTElementFactory::createElement(VT::TextElement);
    auto* pCommand = new VTCommand(&stage.document);
    auto* pAction = new Action(Action::AddElement, nullptr);
    pAction->addParam(pNew, true);
    pAction->addParam(0);
    pAction->addParam(stage.pScene);
    pCommand->addAction(pAction);

    QList<QJsonObject> lstRecords;
    connect(&stage.document, &IDocument::dataChanged, this, [&](QObject* pObject) {
        QJsonObject json;
        qobject_cast<VTUpdateViewInfo*>(pObject)->serialize(json, &stage.document, nullptr);
        lstRecords.append(json);
    });
    stage.document.submitCommand(pCommand, true);
    stage.document.getUndoStack()->undo();

    QList<QJsonObject> lstInserts;
    for (const QJsonObject& json : qAsConst(lstRecords)) {
        if (json.value("cmd").toInt() == Action::AddElement)
            lstInserts.append(json);
    }
    QCOMPARE(lstInserts.size(), 2);
    QCOMPARE(lstRecords.last(), (QJsonObject{{"cmd", 41}, {"isUndoCmd", true}}));
    const QJsonArray added = lstInserts.at(0).value("params").toArray();
    QCOMPARE(added.size(), 4);
    QCOMPARE(added.at(0).toObject().value("type").toInt(), 11);
    QCOMPARE(added.at(0).toObject().value("value").toObject().isEmpty(), false);
    QCOMPARE(added.at(1).toObject(), entry(1, 0));
    QCOMPARE(added.at(2).toObject(), entry(1, stage.pScene->getId()));
    QCOMPARE(added.at(3).toObject(), entry(1, int(VT::SceneElement)));
    // Undone, the element has left the tree.
    QVERIFY(lstInserts.at(1).value("isUndoCmd").toBool());
    QCOMPARE(lstInserts.at(1).value("params").toArray().at(1).toObject(), entry(1, -1));

    // Selection is read from the element, not from the swapped parameter.
    VTElement* pDiv = stage.pScene->getChildren().at(0);
    pDiv->setSelected(true);
    QCOMPARE(entries(Action::SelectElement, {new VTCmdParam(pDiv, false), new VTCmdParam(false)}),
             (QJsonArray{entry(1, pDiv->getId()), entry(4, true)}));
    QCOMPARE(entries(Action::ChangeElementOrder, {new VTCmdParam(pDiv, false), new VTCmdParam(5)}),
             (QJsonArray{entry(1, pDiv->getId()), entry(1, 0)}));
}

void TestRecords::elementRecords()
{
    Stage stage;
    VTElement* pDiv = stage.add(VT::DivElement);
    pDiv->setOpacity(0.25);
    QList<VTCmdParam*> lstOpacity{new VTCmdParam(pDiv, false), new VTCmdParam(0.5),
                                  new VTCmdParam(QMap<int, bool>()), new VTCmdParam(0), new VTCmdParam(0)};
    QCOMPARE(entries(1003, lstOpacity),
             (QJsonArray{entry(1, pDiv->getId()), entry(2, 0.25), entry(0), entry(0), entry(0)}));

    auto* pAudio = qobject_cast<VTMedia*>(stage.add(VT::AudioElement));
    pAudio->setVolume(1.0);
    QCOMPARE(entries(1021, {new VTCmdParam(static_cast<VTElement*>(pAudio), false), new VTCmdParam(0.3)}),
             (QJsonArray{entry(7, QJsonObject{{"elementId", pAudio->getId()}, {"volume", 100}})}));

    stage.pScene->setPerspectiveX(0.5);
    stage.pScene->setPerspectiveY(0.25);
    stage.pScene->setPerspectiveZ(700.0);
    QCOMPARE(entries(1044, {new VTCmdParam(stage.pScene, false)}),
             (QJsonArray{entry(8, QJsonArray{50, 25, 700})}));

    stage.pScene->setLocked(true);
    QCOMPARE(entries(1005, {new VTCmdParam(stage.pScene, false), new VTCmdParam(false)}),
             (QJsonArray{entry(1, 0), entry(4, true)}));
    QCOMPARE(entries(1006, {new VTCmdParam(pDiv, false), new VTCmdParam(false)}),
             (QJsonArray{entry(1, pDiv->getId()), entry(4, true)}));
    // The path records concern free forms only.
    QCOMPARE(entries(1036, {new VTCmdParam(pDiv, false), new VTCmdParam()}), QJsonArray());
    QCOMPARE(entries(1008, {new VTCmdParam(3)}), QJsonArray());
    // Unlisted ids go in the action's own form.
    QCOMPARE(entries(1007, {new VTCmdParam(pDiv, false), new VTCmdParam(QStringLiteral("Old"))}),
             (QJsonArray{entryOf(VTCmdParam(pDiv, false)), entry(5, "Old")}));
}

void TestRecords::resourceRecords()
{
    Stage stage;
    VTResourceManager* pManager = stage.document.getResourceManager();
    auto* pImage = new VTResource(VTResource::Image);
    pImage->setName(QStringLiteral("picture"));
    auto* pFont = new VTFontResource();
    pFont->setName(QStringLiteral("font"));
    pManager->addResource(pImage);
    pManager->addResource(pFont);
    const auto makeParams = [&] {
        return QList<VTCmdParam*>{new VTCmdParam(pImage, false), new VTCmdParam(pFont, false)};
    };
    const auto ids = [](const QJsonArray& lstEntries) {
        QList<int> lstIds;
        for (const QJsonValue& value : lstEntries) {
            const QJsonObject item = value.toObject();
            if (item.value("type").toInt() == 8)
                lstIds << item.value("value").toArray().at(0).toArray().at(0).toInt();
        }
        return lstIds;
    };
    QCOMPARE(ids(entries(Action::RestoreResource, makeParams(), false, &stage.document)),
             (QList<int>{pImage->getId(), pFont->getId()}));
    QCOMPARE(ids(entries(Action::RestoreResource, makeParams(), true, &stage.document)),
             (QList<int>{pFont->getId()}));
    QCOMPARE(ids(entries(Action::DeleteResource, makeParams(), false, &stage.document)),
             (QList<int>{pFont->getId()}));

    const QJsonArray changed =
        entries(Action::SetIncludeResource, {new VTCmdParam(pImage, false)}, false, &stage.document);
    QCOMPARE(changed.size(), 2);
    const QJsonArray list = changed.at(0).toObject().value("value").toArray();
    QCOMPARE(list.size(), 1);
    QCOMPARE(list.at(0).toArray().at(2).toString(), QStringLiteral("picture"));
    QCOMPARE(changed.at(1).toObject(), entry(1, pImage->getId()));
    QCOMPARE(entries(Action::ResourceChanged, {new VTCmdParam(QStringLiteral("no resource"))}),
             (QJsonArray{entry(8, QJsonArray()), entry(1, -1)}));
}

void TestRecords::timelineAndSymbolRecords()
{
    Stage stage;
    VTTimeline* pTimeline = stage.pScene->getTimelineManager()->getCurrentTimeline();
    pTimeline->addLabel(QStringLiteral("new"), 300);
    pTimeline->setCurrentTime(120);
    QCOMPARE(entries(Action::SetCurrentTimeline, {new VTCmdParam(stage.pScene->getTimelineManager(), false),
                                                  new VTCmdParam(pTimeline, false)}),
             (QJsonArray{entry(7, QJsonObject{{"currentTime", 120}})}));
    // After the rename the action holds the replaced name second.
    QCOMPARE(
        entries(Action::RenameLabel, {new VTCmdParam(pTimeline, false), new VTCmdParam(QStringLiteral("new")),
                                      new VTCmdParam(QStringLiteral("old"))}),
        (QJsonArray{entry(7, QJsonObject{{"oldLabelName", "old"}, {"newLabelName", "new"}})}));
    QCOMPARE(entries(Action::MoveLabel, {new VTCmdParam(pTimeline, false),
                                         new VTCmdParam(QStringLiteral("new")), new VTCmdParam(10)}),
             (QJsonArray{entry(7, QJsonObject{{"labelName", "new"}, {"newTimeStamp", 300}})}));
    QCOMPARE(entries(Action::AddLabel, {new VTCmdParam(QStringLiteral("no timeline"))}), QJsonArray());
    QCOMPARE(entries(Action::AddKeyframe, {new VTCmdParam(7)}), (QJsonArray{entry(7, QJsonObject())}));
    QCOMPARE(entries(Action::MoveKeyframe, {new VTCmdParam(7)}), QJsonArray());
    // Own form: a pointer of a type the page does not read is its type alone.
    QCOMPARE(entries(Action::RenameTimeline,
                     {new VTCmdParam(pTimeline, false), new VTCmdParam(QStringLiteral("T"))}),
             (QJsonArray{entry(15), entry(5, "T")}));

    VTSymbol& symbol = stage.document;
    symbol.setWidth(640);
    QCOMPARE(entries(Action::SetSymbolWidth, {new VTCmdParam(&symbol, false), new VTCmdParam(1)}),
             (QJsonArray{entry(1, 640)}));
    VTBreakpointManager* pBreakpoints = symbol.getBreakpointManager();
    pBreakpoints->addHorizontal(0);
    const int nId = pBreakpoints->addHorizontal(480).first;
    symbol.setResponsiveMode(true);
    symbol.setCurrentLayoutId(nId, 0);
    const QJsonArray breakpoints =
        entries(Action::AddBreakpoint, {new VTCmdParam(&symbol, false), new VTCmdParam(0),
                                        new VTCmdParam(480), new VTCmdParam(nId)});
    const VTLayoutKey current = pBreakpoints->getCurrentId(true);
    QJsonArray expected{entry(1, 0), entry(8, QJsonArray{current.first, current.second})};
    for (const auto& breakpoint : pBreakpoints->getHBreakpoints())
        expected.append(entry(8, QJsonArray{breakpoint.first, breakpoint.second}));
    QCOMPARE(breakpoints, expected);
    QCOMPARE(breakpoints.size(), 4);
    QCOMPARE(entries(Action::ChangeCurrentBreakpoint, {new VTCmdParam(&symbol, false)}),
             (QJsonArray{entry(7, QJsonObject{{"r", true}})}));
}

QTEST_MAIN(TestRecords)
#include "tst_records.moc"
