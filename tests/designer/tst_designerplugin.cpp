#include "ActionContainer.h"
#include "ActionManager.h"
#include "ContextAction.h"
#include "EditorManager.h"
#include "ICreateDocumentDlg.h"
#include "IDocument.h"
#include "IEditor.h"
#include "MainWindow.h"
#include "MessageRecorder.h"
#include "PluginManager.h"
#include "PluginSpec.h"
#include "RecentFiles.h"
#include "WebChannelServer.h"
#include <QJsonArray>
#include <QUuid>

#include <QApplication>
#include <QDockWidget>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QWebEngineView>
#include <QtTest>

using ExtensionSystem::PluginManager;

namespace {
const QStringList kDockNames{"spInspectorDockWidget", "spScenesDockWidget", "spDocPropertiesWidget",
                             "spTimelineDockWidget",  "spElementsWidget",   "spResourcesWidget",
                             "spFunctionsWidget",     "spBreakpointsWidget"};

bool copyDir(const QString& from, const QString& to)
{
    QDir().mkpath(to);
    for (const QFileInfo& info :
         QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) {
        const QString target = to + "/" + info.fileName();
        if (info.isDir() ? !copyDir(info.filePath(), target) : !QFile::copy(info.filePath(), target))
            return false;
    }
    return true;
}
} // namespace

// The designer loaded into the real host window, as the studio starts it.
class TestDesignerPlugin : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void docksAreBuiltInOrderAndHidden();
    void welcomePageReachesTheChannel();
    void openProjectShowsDocks();
    void newProjectThroughTheDialog();
    void damagedProjectIsReportedOnce();
    void shutdownSavesLayoutWithTimelineDocked();

private:
    QDockWidget* dock(const QString& name) const { return m_pWindow->findChild<QDockWidget*>(name); }

    MessageRecorder m_box;
    MainWindow* m_pWindow = nullptr;
    QTemporaryDir m_dir;
};

void TestDesignerPlugin::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_pWindow = new MainWindow;
    PluginManager::addBuiltinPlugin("core", "1.0.0");
    PluginManager::setPluginPaths({qEnvironmentVariable("VETRA_PLUGIN_PATH")});
    PluginManager::loadPlugins();
    const auto* pSpec = PluginManager::findPlugin("designer");
    QVERIFY2(pSpec, qPrintable(PluginManager::errorStrings().join('\n')));
    QCOMPARE(pSpec->getState(), ExtensionSystem::PluginSpec::Running);
    QCOMPARE(pSpec->getVersion(), QString("1.0.0"));
    QCOMPARE(pSpec->getCategory(), QString("Vetra"));
    QVERIFY(pSpec->isRequired());
}

void TestDesignerPlugin::docksAreBuiltInOrderAndHidden()
{
    QStringList names;
    for (QDockWidget* pDock : m_pWindow->findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly))
        names << pDock->objectName();
    QCOMPARE(names, kDockNames);
    for (const QString& name : kDockNames)
        QVERIFY2(dock(name)->isHidden(), qPrintable(name));

    QCOMPARE(m_pWindow->dockWidgetArea(dock("spInspectorDockWidget")), Qt::RightDockWidgetArea);
    QCOMPARE(m_pWindow->dockWidgetArea(dock("spScenesDockWidget")), Qt::LeftDockWidgetArea);
    QCOMPARE(m_pWindow->dockWidgetArea(dock("spTimelineDockWidget")), Qt::BottomDockWidgetArea);
    QCOMPARE(m_pWindow->corner(Qt::BottomRightCorner), Qt::RightDockWidgetArea);
    QCOMPARE(dock("spInspectorDockWidget")->widget()->metaObject()->className(), "VTPropertiesTabsWidget");
    QCOMPARE(dock("spTimelineDockWidget")->widget()->metaObject()->className(), "VTTimelineWindow");
    QVERIFY(dock("spTimelineDockWidget")->titleBarWidget());
    QVERIFY(dock("spTimelineDockWidget")->widget()->windowFlags().testFlag(Qt::WindowCloseButtonHint));

    // The toggles sit in the View menu in dock order, a separator after the first.
    const QList<QAction*> view = ActionManager::getActionContainer("MenuBar.View")->menu()->actions();
    QCOMPARE(view.value(0), ActionManager::getAction("View.Properties")->getAction());
    QVERIFY(view.value(1) && view.value(1)->isSeparator());
    QCOMPARE(view.value(2), ActionManager::getAction("View.Scenes")->getAction());
    QCOMPARE(view.value(8), ActionManager::getAction("View.Breakpoints")->getAction());
    // With no project open the toggles are hidden too.
    QVERIFY(!ActionManager::getAction("View.Timeline")->getAction()->isVisible());
    QVERIFY(ActionManager::getAction("Help.CheckUpdates")->getAction()->isEnabled());
}

void TestDesignerPlugin::welcomePageReachesTheChannel()
{
    m_pWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pWindow));
    auto* pView = m_pWindow->findChild<QWebEngineView*>("welcomeView");
    QVERIFY(pView);
    QVERIFY(pView->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(pView->url().isLocalFile(), 20000);
    QVERIFY(pView->url().query().contains("webChannelBaseUrl"));
    // The page opens its socket with the token and a file:// origin, or the server refuses it.
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->getWebChannelServer()->getConnectionCount() >= 1, 30000);
}

void TestDesignerPlugin::openProjectShowsDocks()
{
    const QString folder = m_dir.filePath("welcome");
    QVERIFY(copyDir(QStringLiteral(VETRA_EXAMPLES_DIR "/welcome"), folder));
    const QString file = folder + "/welcome.vetra";
    QVERIFY2(m_pWindow->openFile(file), qPrintable(m_box.getTexts().join('\n')));
    IEditor* pEditor = EditorManager::activeEditor();
    QVERIFY(pEditor);
    QCOMPARE(QFileInfo(pEditor->getDocument()->getFileName()).canonicalFilePath(),
             QFileInfo(file).canonicalFilePath());
    QCOMPARE(m_pWindow->getMdiArea()->subWindowList().size(), 1);
    QVERIFY(m_pWindow->windowTitle().startsWith("welcome"));
    QTRY_VERIFY(!m_pWindow->findChild<QWebEngineView*>("welcomeView")->isVisible());
    for (const QString& name : kDockNames)
        QVERIFY2(!dock(name)->isHidden(), qPrintable(name));
    // Tab groups exist only among shown docks.
    QVERIFY(
        m_pWindow->tabifiedDockWidgets(dock("spScenesDockWidget")).contains(dock("spDocPropertiesWidget")));
    const QList<QDockWidget*> withResources = m_pWindow->tabifiedDockWidgets(dock("spResourcesWidget"));
    for (const char* name : {"spElementsWidget", "spFunctionsWidget", "spBreakpointsWidget"})
        QVERIFY2(withResources.contains(dock(name)), name);
    QVERIFY(ActionManager::getAction("View.Timeline")->getAction()->isVisible());
    QVERIFY(ActionManager::getAction("File.Close")->getAction()->isEnabled());
    // Opening it again activates the open one instead of locking it twice.
    QVERIFY(m_pWindow->openFile(file));
    QCOMPARE(EditorManager::getEditors().size(), 1);

    dock("spTimelineDockWidget")->setFloating(true);
    QVERIFY(dock("spTimelineDockWidget")->isFloating());
}

void TestDesignerPlugin::newProjectThroughTheDialog()
{
    const QString location = m_dir.filePath("projects");
    QVERIFY(QDir().mkpath(location));
    // Fill the real dialog once it is up, as a person would.
    bool bFilled = false;
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [&] {
        auto* pDialog = qobject_cast<ICreateDocumentDlg*>(QApplication::activeModalWidget());
        if (!pDialog)
            return;
        poll.stop();
        pDialog->findChild<QLineEdit*>("nameEdit")->setText("Banner");
        pDialog->findChild<QLineEdit*>("locationEdit")->setText(location);
        pDialog->findChild<QSpinBox*>("widthSpin")->setValue(640);
        pDialog->findChild<QSpinBox*>("heightSpin")->setValue(480);
        bFilled = true;
        pDialog->accept();
    });
    poll.start(50);
    m_pWindow->newProject();
    QVERIFY2(bFilled, qPrintable(m_box.getTexts().join('\n')));

    const QString file = location + "/Banner/Banner.vetra";
    QVERIFY(QFileInfo(file).isFile());
    QVERIFY(QFileInfo(location + "/Banner/Banner_res").isDir());
    QCOMPARE(EditorManager::getEditors().size(), 2);
    IDocument* pDocument = EditorManager::activeEditor()->getDocument();
    QCOMPARE(QFileInfo(pDocument->getFileName()).canonicalFilePath(), QFileInfo(file).canonicalFilePath());
    QCOMPARE(m_pWindow->getRecentFiles()->getFiles().value(0), QFileInfo(file).absoluteFilePath());

    QVERIFY(m_pWindow->saveProject());
    QFile saved(file);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    const QJsonObject root = QJsonDocument::fromJson(saved.readAll()).object();
    QCOMPARE(root.value("appName").toString(), QString("Vetra Studio"));
    QCOMPARE(root.value("document").toObject().value("width").toInt(), 640);
    QCOMPARE(root.value("document").toObject().value("height").toInt(), 480);

    QVERIFY(m_pWindow->closeProject());
    QTRY_COMPARE(EditorManager::getEditors().size(), 1);
    QVERIFY(QFileInfo(file).isFile());
}

void TestDesignerPlugin::damagedProjectIsReportedOnce()
{
    const QString folder = m_dir.filePath("damaged");
    QVERIFY(copyDir(QStringLiteral(VETRA_EXAMPLES_DIR "/welcome"), folder));
    QFile file(folder + "/welcome.vetra");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    QJsonObject document = root.value("document").toObject();
    document.insert("resources", QJsonArray{QJsonObject{{"id", 1},
                                                        {"uuid", QUuid::createUuid().toString()},
                                                        {"name", "gone"},
                                                        {"type", 0},
                                                        {"fileName", "gone.png"}}});
    root.insert("document", document);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QJsonDocument(root).toJson());
    file.close();

    m_box.clear();
    m_box.m_lstAnswers << IMessageBox::Yes;
    const int nEditors = EditorManager::getEditors().size();
    QVERIFY2(m_pWindow->openFile(file.fileName()), qPrintable(m_box.getTexts().join('\n')));
    QCOMPARE(EditorManager::getEditors().size(), nEditors + 1);
    // The user is asked whether to go on, then told once, after the window is up, what was lost.
    QTRY_COMPARE(m_box.getTexts(MessageRecorder::Warning).size(), 1);
    const QString warning = m_box.getTexts(MessageRecorder::Warning).first();
    QVERIFY2(warning.contains("could not be read") && warning.contains("\"gone.png\" is missing"),
             qPrintable(warning));
    QCOMPARE(m_box.getTexts(MessageRecorder::Question).size(), 1);
    QTest::qWait(50);
    QCOMPARE(m_box.getTexts(MessageRecorder::Warning).size(), 1);
    QVERIFY(m_pWindow->closeProject());
    QTRY_COMPARE(EditorManager::getEditors().size(), nEditors);
}

void TestDesignerPlugin::shutdownSavesLayoutWithTimelineDocked()
{
    QSettings* pSettings = PluginManager::settings();
    pSettings->remove("Designer/windowState");
    PluginManager::shutdown();
    const QByteArray state = pSettings->value("Designer/windowState").toByteArray();
    QVERIFY(!state.isEmpty());
    QVERIFY(!pSettings->value("Designer/windowGeometry").toByteArray().isEmpty());
    QVERIFY(!dock("spTimelineDockWidget"));

    // A window with the same docks takes the saved layout: the timeline comes back docked.
    QMainWindow restored;
    QDockWidget* pTimeline = nullptr;
    for (const QString& name : kDockNames) {
        auto* pDock = new QDockWidget(name, &restored);
        pDock->setObjectName(name);
        restored.addDockWidget(Qt::RightDockWidgetArea, pDock);
        if (name == "spTimelineDockWidget")
            pTimeline = pDock;
    }
    QVERIFY(restored.restoreState(state));
    QVERIFY(!pTimeline->isFloating());
    QCOMPARE(restored.dockWidgetArea(pTimeline), Qt::BottomDockWidgetArea);
    m_pWindow->closeAllProjects();
    delete m_pWindow;
}

QTEST_MAIN(TestDesignerPlugin)
#include "tst_designerplugin.moc"
