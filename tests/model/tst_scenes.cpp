#include "MessageRecorder.h"
#include "VTBackground.h"
#include "VTDocument.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTSymbolElement.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

VTScene* newScene(const QString& name = QString(), int nId = -1)
{
    auto* pScene = new VTScene();
    pScene->initDefault();
    pScene->setName(name);
    pScene->setId(nId);
    return pScene;
}

QStringList sceneNames(const VTSceneManager& manager)
{
    QStringList names;
    for (const VTScene* pScene : manager.getScenes())
        names << pScene->getName();
    return names;
}

QJsonObject sceneJson(const QString& name, int nId, const QJsonArray& children = {})
{
    std::unique_ptr<VTScene> pScene(newScene(name, nId));
    QJsonObject json;
    pScene->serialize(json);
    if (!children.isEmpty())
        json.insert("children", children);
    return json;
}

QJsonObject instanceJson(int nId, const QString& name, int nResourceId)
{
    return {{"type", 7}, {"id", nId}, {"name", name}, {"resourceId", nResourceId}, {"autoplay", true}};
}

bool writeBytes(const QString& path, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

QJsonObject readJson(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QJsonObject symbolEntry(int nId, const QString& name)
{
    return {{"id", nId},
            {"uuid", QUuid::createUuid().toString()},
            {"name", name},
            {"deleted", false},
            {"type", 3},
            {"dataSize", 4.0},
            {"fileName", QString(name + ".vetrasym")}};
}

} // namespace

class TestScenes final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sceneIdsAndOrder();
    void sceneNamesAndSelection();
    void sceneDefaultsAndElements();
    void transitionsAndExport();
    void symbolLoadsScenes();
    void symbolElementUsage();
    void selfContainingSymbolIsRefused();
    void projectRoundTrip();

private:
    // A project folder with its symbol files; returns the project file's path.
    QString writeProject(const QString& name, const QJsonArray& scenes, const QJsonArray& resources,
                         const QMap<QString, QJsonObject>& symbolFiles);

    QTemporaryDir m_dir;
};

void TestScenes::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

QString TestScenes::writeProject(const QString& name, const QJsonArray& scenes, const QJsonArray& resources,
                                 const QMap<QString, QJsonObject>& symbolFiles)
{
    const QString folder = m_dir.path() + QLatin1Char('/') + name;
    for (auto it = symbolFiles.cbegin(); it != symbolFiles.cend(); ++it)
        writeBytes(folder + "/" + name + "_res/" + it.key() + ".vetrasym",
                   QJsonDocument(it.value()).toJson(QJsonDocument::Compact));
    QDir().mkpath(folder + "/" + name + "_res");
    const QJsonObject document{
        {"docVersion", 3}, {"width", 640}, {"height", 480}, {"resources", resources}, {"scenes", scenes}};
    const QString path = folder + "/" + name + ".vetra";
    writeBytes(path, QJsonDocument(QJsonObject{{"appName", "Vetra Studio"}, {"document", document}})
                         .toJson(QJsonDocument::Compact));
    return path;
}

void TestScenes::sceneIdsAndOrder()
{
    VTSymbol symbol;
    VTSceneManager& manager = *symbol.getSceneManager();
    QCOMPARE(manager.addScene(newScene("A")), 0);
    QCOMPARE(manager.addScene(newScene("B", 7)), 1);
    // An index beyond the count appends; one inside inserts.
    QCOMPARE(manager.addScene(newScene("C"), 12), 2);
    QCOMPARE(manager.addScene(newScene("D"), 0), 0);
    QCOMPARE(sceneNames(manager), (QStringList{"D", "A", "B", "C"}));
    // A scene with an id of its own pushes the next id above it.
    QCOMPARE(manager.getSceneById(1)->getName(), QStringLiteral("A"));
    QCOMPARE(manager.getSceneById(8)->getName(), QStringLiteral("C"));
    QCOMPARE(manager.getSceneById(9)->getName(), QStringLiteral("D"));
    QCOMPARE(manager.getNextSceneId(), 10);
    QCOMPARE(manager.addScene(nullptr), -1);
    QCOMPARE(manager.addScene(manager.getScenes().first()), -1);

    // Drop semantics: before the scene at the target.
    QVERIFY(manager.moveSceneToIndex(0, 4));
    QCOMPARE(sceneNames(manager), (QStringList{"A", "B", "C", "D"}));
    QVERIFY(manager.moveSceneToIndex(3, 1));
    QCOMPARE(sceneNames(manager), (QStringList{"A", "D", "B", "C"}));
    QVERIFY(manager.moveSceneToIndex(0, 2));
    QCOMPARE(sceneNames(manager), (QStringList{"D", "A", "B", "C"}));
    QVERIFY(manager.moveSceneToIndex(2, 2));
    QCOMPARE(sceneNames(manager), (QStringList{"D", "A", "B", "C"}));
    QVERIFY(!manager.moveSceneToIndex(-1, 0));
    QVERIFY(!manager.moveSceneToIndex(0, 5));
    QVERIFY(!manager.moveSceneToIndex(4, 0));
    QCOMPARE(sceneNames(manager), (QStringList{"D", "A", "B", "C"}));

    // Detached scenes belong to the caller and can come back with their id.
    std::unique_ptr<VTScene> pDetached(manager.getSceneById(8));
    QCOMPARE(manager.detachScene(pDetached.get()), 3);
    QCOMPARE(pDetached->getSceneManager(), nullptr);
    QCOMPARE(manager.detachScene(pDetached.get()), -1);
    QCOMPARE(manager.getSceneIndex(pDetached.get()), -1);
    manager.updateNextSceneId();
    QCOMPARE(manager.getNextSceneId(), 10);
    QCOMPARE(manager.addScene(pDetached.release(), 1), 1);
    QCOMPARE(manager.getSceneById(8)->getName(), QStringLiteral("C"));

    // A scene deleted while listed leaves no dangling entry.
    delete manager.getSceneById(1);
    QCOMPARE(sceneNames(manager), (QStringList{"D", "C", "B"}));
    manager.clear();
    manager.updateNextSceneId();
    QCOMPARE(manager.getNextSceneId(), 1);
}

void TestScenes::sceneNamesAndSelection()
{
    VTSymbol symbol;
    VTSceneManager& manager = *symbol.getSceneManager();
    manager.addScene(newScene());
    manager.addScene(newScene());
    manager.addScene(newScene("Scene_2"));
    manager.addScene(newScene("scene_1"));
    manager.addScene(newScene("Intro"));
    manager.addScene(newScene("Intro"));
    manager.addScene(newScene("Intro"));
    // The second "Scene_2" finds the number taken; comparison is exact, so "scene_1" stays.
    QCOMPARE(sceneNames(manager),
             (QStringList{"Scene_1", "Scene_2", "Scene_2_1", "scene_1", "Intro", "Intro_1", "Intro_2"}));
    QVERIFY(manager.isDuplicatedSceneName("Intro", nullptr));
    QVERIFY(!manager.isDuplicatedSceneName("Intro", manager.getScenes().at(4)));

    // No selection, no current scene; then the first selected in order of selection.
    QCOMPARE(manager.getCurrentScene(), nullptr);
    QCOMPARE(manager.getCurrentSceneIndex(), -1);
    VTScene* pThird = manager.getScenes().at(2);
    VTScene* pFirst = manager.getScenes().at(0);
    pThird->setSelected(true);
    pFirst->setSelected(true);
    QCOMPARE(manager.getSelectedScenes(), (QList<VTScene*>{pThird, pFirst}));
    QCOMPARE(manager.getCurrentSceneIndex(), 2);
    pThird->setSelected(false);
    QCOMPARE(manager.getCurrentScene(), pFirst);
    manager.detachScene(pFirst);
    QVERIFY(manager.getSelectedScenes().isEmpty());
    // A selected scene that comes back is listed as selected again.
    manager.addScene(pFirst, 0);
    QCOMPARE(manager.getCurrentScene(), pFirst);
}

void TestScenes::sceneDefaultsAndElements()
{
    std::unique_ptr<VTScene> pScene(newScene("S"));
    QCOMPARE(pScene->getNextChildId(), 1);
    QCOMPARE(pScene->getSizeW(), 800.0);
    QCOMPARE(pScene->getSizeH(), 600.0);
    QCOMPARE(pScene->getBackground()->getFillStyle(), int(VTBackground::Solid));
    QCOMPARE(pScene->getBackground()->getSolidColor(), QColor(Qt::white));
    QVERIFY(pScene->isAutoAdvance());
    QCOMPARE(pScene->getPerspectiveZ(), 1200.0);
    QVERIFY(!pScene->isPreserved3D());
    pScene->setPerspectiveX(0.25, VTLayoutKey::base());
    QCOMPARE(pScene->getPerspectiveX(), 0.25);
    QVERIFY(pScene->isPreserved3D());
    QCOMPARE(pScene->getPerspectiveY(VTLayoutKey(3, 3)), 0.0);

    // Elements are numbered from the scene's next id and named uniquely within it.
    auto* pGroup = new VTElement();
    pGroup->initDefault();
    auto* pInner = new VTElement();
    pInner->initDefault();
    pInner->setName("Group_1");
    QCOMPARE(pScene->addElement(pGroup), 0);
    QCOMPARE(pScene->addElement(pInner, -1, pGroup), 0);
    QCOMPARE(pGroup->getId(), 1);
    QCOMPARE(pInner->getId(), 2);
    QCOMPARE(pScene->getNextChildId(), 3);
    QCOMPARE(pInner->getParent(), pGroup);
    QCOMPARE(pGroup->getName(), QStringLiteral("Group_1"));
    QCOMPARE(pInner->getName(), QStringLiteral("Group_1_1"));
    QCOMPARE(pScene->findElementById(2), pInner);
    QCOMPARE(pScene->findElementById(pScene->getId()), nullptr);
    QVERIFY(pScene->isDuplicatedElemName("Group_1_1", pGroup));

    // A file without "nextChildId" reads 1000; the timelines come back as they were.
    QJsonObject json;
    pScene->serialize(json);
    json.remove("nextChildId");
    json.remove("autoAdvance");
    VTScene read;
    QStringList problems;
    QVERIFY(read.parse(json, nullptr, &problems));
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    QCOMPARE(read.getNextChildId(), 1000);
    QVERIFY(read.isAutoAdvance());
    QCOMPARE(read.getChildren().size(), 1);
    QCOMPARE(read.getPerspectiveX(), 0.25);
    // A scene without timelines in its file still plays a main timeline.
    QJsonObject written;
    read.serialize(written);
    QCOMPARE(written.value("timelines").toObject().value("timelines").toArray().size(), 1);

    // Scene events and pointer events only.
    QVERIFY(read.isSupportedEventType(VTEventListener::SceneActivate));
    QVERIFY(read.isSupportedEventType(VTEventListener::WindowResize));
    QVERIFY(read.isSupportedEventType(VTEventListener::SwipeRight));
    QVERIFY(!read.isSupportedEventType(static_cast<VTEventListener::EventType>(57)));
    QVERIFY(!pGroup->isSupportedEventType(VTEventListener::SceneActivate));

    // The copy carries the scene's own fields.
    read.setTransitionType(VT::TransitionWipe);
    read.setTransitionDuration(300);
    std::unique_ptr<VTScene> pCopy(static_cast<VTScene*>(read.clone()));
    QJsonObject copied;
    pCopy->serialize(copied);
    QJsonObject original;
    read.serialize(original);
    QCOMPARE(copied, original);
}

void TestScenes::transitionsAndExport()
{
    QCOMPARE(VTScene::getTransTypeName(VT::TransitionUncover), QStringLiteral("Uncover"));
    QCOMPARE(VTScene::getTransTypeName(-1), QString());
    QCOMPARE(VTScene::getTransDirectionName(VT::FromBottomRight), QStringLiteral("From Bottom Right"));
    QCOMPARE(VTScene::getTransDirectionName(-1), QString());

    VTSymbol symbol;
    VTSceneManager& manager = *symbol.getSceneManager();
    const QList<int> types{VT::TransitionNone, VT::TransitionFade, VT::TransitionPush, VT::TransitionWipe};
    const QList<int> expectedLengths{2, 3, 4, 2};
    for (int i = 0; i < types.size(); ++i) {
        VTScene* pScene = newScene();
        pScene->setTransitionType(types.at(i));
        pScene->setTransitionDuration(100 * (i + 1));
        pScene->setTransitionEasing(7);
        pScene->setTransitionDirection(VT::FromTop);
        manager.addScene(pScene);
        QJsonObject exported;
        pScene->serializeToExport(exported, false, false, true);
        const QJsonArray st = exported.value("st").toArray();
        QCOMPARE(st.size(), expectedLengths.at(i));
        QCOMPARE(st.at(0).toInt(), types.at(i));
        QCOMPARE(st.at(1).toInt(), 100 * (i + 1));
        QCOMPARE(exported.value("aa").toBool(false), true);
        QCOMPARE(exported.value("k").toInt(), 8);
        QVERIFY(exported.value("timelines").isArray());
        QVERIFY(!exported.contains("t3d"));
    }
    QJsonObject push;
    manager.getScenes().at(2)->serializeToExport(push, true, false, false);
    QCOMPARE(push.value("st").toArray(), (QJsonArray{2, 300, 7, 1}));
    QVERIFY(!push.contains("rp"));

    // Transitions of type 0 add nothing to the length; every other one does.
    QCOMPARE(manager.getTotalTimelineDuration(), 200 + 300 + 400);
    QCOMPARE(manager.getMainTimelineLabelTime("start"), -1);

    manager.getScenes().at(0)->setPerspectiveZ(800.0);
    QJsonObject symbolExport;
    symbol.serializeToExport(symbolExport, false);
    QCOMPARE(symbolExport.value("scenes").toArray().size(), 4);
    QVERIFY(symbolExport.value("scenes").toArray().at(0).toObject().value("t3d").toBool());
    QCOMPARE(symbolExport.value("dur").toInt(), 900);
    QCOMPARE(symbolExport.value("align").toInt(), 4);
    QCOMPARE(symbolExport.value("af").toBool(true), false);
}

void TestScenes::symbolLoadsScenes()
{
    MessageRecorder messages;
    {
        VTSymbol symbol;
        QVERIFY(symbol.loadDataWithoutResource(QJsonObject{{"width", 10}}));
        QCOMPARE(symbol.getSceneCount(), 0);
        QCOMPARE(symbol.getSceneManager()->getCurrentScene(), nullptr);
        // Absent keys read as empty; dates as invalid.
        QCOMPARE(symbol.getAlignment(), 0);
        QVERIFY(!symbol.getCreated().isValid());
    }
    {
        // Two scenes with one id keep it; the next id is above both. The first is selected
        // when the file selects none.
        VTSymbol symbol;
        QJsonObject second = sceneJson("B", 4);
        QVERIFY(symbol.loadDataWithoutResource(
            QJsonObject{{"scenes", QJsonArray{sceneJson("A", 4), second, sceneJson("C", 2)}},
                        {"created", "2024-02-01T10:00:00Z"}}));
        QVERIFY2(symbol.getLoadProblems().isEmpty(), qPrintable(symbol.getLoadProblems().join('\n')));
        const VTSceneManager& manager = *symbol.getSceneManager();
        QCOMPARE(sceneNames(manager), (QStringList{"A", "B", "C"}));
        QCOMPARE(manager.getScenes().at(0)->getId(), 4);
        QCOMPARE(manager.getScenes().at(1)->getId(), 4);
        QCOMPARE(manager.getNextSceneId(), 5);
        QCOMPARE(manager.getCurrentScene(), manager.getScenes().first());
        QCOMPARE(symbol.getCreated(), QDateTime(QDate(2024, 2, 1), QTime(10, 0), Qt::UTC));

        // A file's selection stands; reading again replaces the scenes.
        second.insert("isSelected", true);
        QVERIFY(
            symbol.loadDataWithoutResource(QJsonObject{{"scenes", QJsonArray{sceneJson("A", 1), second}}}));
        QCOMPARE(manager.getSceneCount(), 2);
        QCOMPARE(manager.getCurrentScene()->getName(), QStringLiteral("B"));
        QCOMPARE(manager.getSelectedScenes().size(), 1);
    }
    QVERIFY(messages.m_lstMessages.isEmpty());
    {
        // A scene that is no object stops the load, with the message and a line.
        VTSymbol symbol;
        QVERIFY(!symbol.loadDataWithoutResource(QJsonObject{{"scenes", QJsonArray{sceneJson("A", 1), 3}}}));
        QCOMPARE(messages.getTexts(MessageRecorder::Warning),
                 QStringList{"Cannot open project.\nError while loading scene data."});
        QVERIFY(symbol.getLoadProblems().join('\n').contains("scene 1"));
    }
}

void TestScenes::symbolElementUsage()
{
    VTResourceManager manager(nullptr);
    auto* pSymbolResource = new VTResource(VTResource::Symbol);
    pSymbolResource->setId(2);
    manager.addResource(pSymbolResource);
    auto* pOther = new VTResource(VTResource::Symbol);
    pOther->setId(3);
    manager.addResource(pOther);
    auto* pImage = new VTResource(VTResource::Image);
    pImage->setId(4);
    manager.addResource(pImage);

    // A read instance holds its use at once.
    VTSymbolElement element;
    QStringList problems;
    QVERIFY(element.parse(instanceJson(5, "Inst", 2), &manager, &problems));
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    QCOMPARE(element.getSymbolResource(), pSymbolResource);
    QVERIFY(element.isAutoplay());
    QCOMPARE(pSymbolResource->getUsageCount(), 1);
    element.attachResources();
    QCOMPARE(pSymbolResource->getUsageCount(), 1);
    element.setSymbolResource(pOther);
    QCOMPARE(pSymbolResource->getUsageCount(), 0);
    QCOMPARE(pOther->getUsageCount(), 1);
    element.detachResources();
    element.detachResources();
    QCOMPARE(pOther->getUsageCount(), 0);
    element.setSymbolResource(pSymbolResource);
    QCOMPARE(pSymbolResource->getUsageCount(), 0);

    // A copy holds nothing until it enters the project.
    element.attachResources();
    std::unique_ptr<VTSymbolElement> pCopy(static_cast<VTSymbolElement*>(element.clone()));
    QCOMPARE(pCopy->getSymbolResource(), pSymbolResource);
    QVERIFY(!pCopy->isAttached());
    QCOMPARE(pSymbolResource->getUsageCount(), 1);
    pCopy->updateResourceMap({{pSymbolResource, pOther}});
    QCOMPARE(pCopy->getSymbolResource(), pOther);
    QMap<VTResource*, VTResource*> used;
    pCopy->prepareResourceMap(used);
    QCOMPARE(used.keys(), QList<VTResource*>{pOther});

    // The project form and the player form.
    QJsonObject json;
    element.serialize(json);
    QCOMPARE(json.value("resourceId").toInt(), 2);
    QJsonObject player;
    element.serializeToExport(player, false, true);
    QCOMPARE(player.value("rs").toInt(), 2);
    QCOMPARE(player.value("ap").toBool(), true);
    QJsonObject stage;
    element.serializeToExport(stage, true, true);
    QCOMPARE(stage.value("ap").toBool(true), false);

    // A missing resource, or one that is no symbol, fails the element, with a line.
    for (int nId : {-1, 9, 4}) {
        VTSymbolElement broken;
        QStringList lines;
        QVERIFY2(!broken.parse(instanceJson(6, "Broken", nId), &manager, &lines),
                 qPrintable(QString::number(nId)));
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().contains("names no symbol resource"));
    }
    QCOMPARE(pImage->getUsageCount(), 0);

    // In a scene the failed instance is left out and named; the rest of the scene loads.
    MessageRecorder messages;
    VTSymbol symbol;
    symbol.setResourceManager(&manager);
    QVERIFY(symbol.loadDataWithoutResource(QJsonObject{
        {"scenes", QJsonArray{sceneJson(
                       "A", 1, QJsonArray{instanceJson(6, "Broken", 9), instanceJson(7, "Kept", 3)})}}}));
    QCOMPARE(symbol.getElementCount(), 1);
    const QString lines = symbol.getLoadProblems().join('\n');
    QVERIFY(lines.contains("names no symbol resource"));
    QVERIFY(lines.contains("\"Broken\" could not be read"));
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(pOther->getUsageCount(), 1);
    element.detachResources();
}

void TestScenes::selfContainingSymbolIsRefused()
{
    const auto symbolWith = [](int nPlacedId) {
        return QJsonObject{
            {"scenes", QJsonArray{sceneJson("S", 1, QJsonArray{instanceJson(1, "I", nPlacedId)})}}};
    };
    const QJsonArray resources{symbolEntry(1, "A"), symbolEntry(2, "B"), symbolEntry(3, "C")};
    const QJsonObject plain{{"scenes", QJsonArray{sceneJson("S", 1)}}};

    struct Case
    {
        QString name;
        QMap<QString, QJsonObject> files;
        QString chain;
    };
    const QList<Case> cases{
        {"direct", {{"A", symbolWith(1)}, {"B", plain}, {"C", plain}}, "A > A"},
        {"through", {{"A", plain}, {"B", symbolWith(3)}, {"C", symbolWith(2)}}, "B > C > B"},
    };
    for (const Case& c : cases) {
        MessageRecorder messages;
        VTDocument document;
        document.setFileName(writeProject(c.name, QJsonArray{sceneJson("Main", 1)}, resources, c.files));
        QVERIFY(!document.open());
        QCOMPARE(messages.getTexts(MessageRecorder::Warning).size(), 1);
        QVERIFY(messages.getTexts().first().contains("contains an instance of itself"));
        QVERIFY2(document.getLoadProblems().join('\n').contains(c.chain),
                 qPrintable(document.getLoadProblems().join('\n')));
    }

    // Nesting without a loop opens, and the uses are counted where the instances are.
    MessageRecorder messages;
    VTDocument document;
    document.setFileName(writeProject("nested",
                                      QJsonArray{sceneJson("Main", 1, QJsonArray{instanceJson(1, "I", 1)})},
                                      resources, {{"A", symbolWith(2)}, {"B", symbolWith(3)}, {"C", plain}}));
    QVERIFY(document.open());
    QVERIFY(messages.m_lstMessages.isEmpty());
    const VTResourceManager* pManager = document.getResourceManager();
    for (int nId : {1, 2, 3})
        QCOMPARE(pManager->findResourceById(nId)->getUsageCount(), 1);
    QCOMPARE(document.getElementCount(), 1);
    document.close();
}

void TestScenes::projectRoundTrip()
{
    MessageRecorder messages;
    const QJsonObject symbolFile{
        {"width", 120}, {"height", 40}, {"scenes", QJsonArray{sceneJson("Idle", 3)}}};
    const QJsonArray mainChildren{QJsonObject{{"type", 6}, {"id", 1}, {"name", "Box"}},
                                  instanceJson(2, "Button_1", 1)};
    const QString path =
        writeProject("roundtrip", QJsonArray{sceneJson("Main", 1, mainChildren), sceneJson("End", 2)},
                     QJsonArray{symbolEntry(1, "Button")}, {{"Button", symbolFile}});
    QJsonObject firstSave;
    {
        VTDocument document;
        document.setFileName(path);
        QVERIFY(document.open());
        QVERIFY2(document.getLoadProblems().isEmpty(), qPrintable(document.getLoadProblems().join('\n')));
        const VTSceneManager& scenes = *document.getSceneManager();
        QCOMPARE(sceneNames(scenes), (QStringList{"Main", "End"}));
        QCOMPARE(document.getElementCount(), 2);
        VTResource* pButton = document.getResourceManager()->findResourceById(1);
        QCOMPARE(pButton->getUsageCount(), 1);
        VTSymbol* pSymbol = document.getResourceManager()->getSymbolForResource(pButton);
        QCOMPARE(sceneNames(*pSymbol->getSceneManager()), QStringList{"Idle"});

        // Edits go through the model into the file.
        scenes.getScenes().at(1)->setTransitionType(VT::TransitionFade);
        scenes.getScenes().at(1)->setTransitionDuration(250);
        document.setTitle("Show");
        QVERIFY(document.save());
        firstSave = readJson(path);
        const QJsonObject saved = firstSave.value("document").toObject();
        QCOMPARE(saved.value("title").toString(), QStringLiteral("Show"));
        QCOMPARE(saved.value("scenes").toArray().at(1).toObject().value("tsDuration").toInt(), 250);
        QCOMPARE(saved.value("scenes").toArray().at(0).toObject().value("children").toArray().size(), 2);

        // The clone of a symbol writes what the symbol writes.
        std::unique_ptr<VTSymbol> pClone(pSymbol->clone());
        QJsonObject cloned;
        pClone->saveDataWithoutResource(cloned);
        QJsonObject own;
        pSymbol->saveDataWithoutResource(own);
        QCOMPARE(cloned, own);
        document.close();
    }
    // What this program wrote reads back to the same JSON.
    VTDocument reopened;
    reopened.setFileName(path);
    QVERIFY(reopened.open());
    QVERIFY(reopened.getLoadProblems().isEmpty());
    QVERIFY(reopened.save());
    QCOMPARE(readJson(path), firstSave);
    QVERIFY(messages.m_lstMessages.isEmpty());
    reopened.close();
}

QTEST_MAIN(TestScenes)
#include "tst_scenes.moc"
