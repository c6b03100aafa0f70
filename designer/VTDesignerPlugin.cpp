#include "VTDesignerPlugin.h"

#include "ActionContainer.h"
#include "ActionManager.h"
#include "ContextAction.h"
#include "ContextManager.h"
#include "EditorManager.h"
#include "ICore.h"
#include "IUi.h"
#include "MainWindow.h"
#include "PluginManager.h"
#include "QSimpleUpdater.h"
#include "VTBreakpointsPanel.h"
#include "VTCanvasZoomControl.h"
#include "VTDesignerFactory.h"
#include "VTDocumentPanel.h"
#include "VTEditor.h"
#include "VTElementsPanel.h"
#include "VTFunctionPanel.h"
#include "VTHttpServer.h"
#include "VTLocationManager.h"
#include "VTProjectDialogs.h"
#include "VTPropertiesTabsWidget.h"
#include "VTResourcePanel.h"
#include "VTSceneThumbnailView.h"
#include "VTTimelineCaptionPanel.h"
#include "VTTimelineWindow.h"
#include "VTWelcomeBridge.h"

#include <QAction>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QMdiArea>
#include <QMenu>
#include <QRandomGenerator>
#include <QSettings>
#include <QStatusBar>
#include <QTextCodec>
#include <QUrlQuery>
#include <QWebChannel>
#include <QWebEngineView>
#include <quazip/quazip.h>

namespace {
constexpr char kWindowState[] = "Designer/windowState";
constexpr char kWindowGeometry[] = "Designer/windowGeometry";
constexpr char kEditingDocks[] = "Designer/editingDocks";
constexpr char kAutoUpdate[] = "Vetra/AutoUpdate";
constexpr char kLanguage[] = "Vetra/Language";

const QStringList kContexts{QStringLiteral("Timeline"), QStringLiteral("Scene"), QStringLiteral("Element"),
                            QStringLiteral("Breakpoint")};

VTProjectDialogs s_projectDialogs;
} // namespace

QDockWidget* VTDesignerPlugin::spInspectorDockWidget = nullptr;
QDockWidget* VTDesignerPlugin::spScenesDockWidget = nullptr;
QDockWidget* VTDesignerPlugin::spDocPropertiesWidget = nullptr;
QDockWidget* VTDesignerPlugin::spTimelineDockWidget = nullptr;
QDockWidget* VTDesignerPlugin::spElementsWidget = nullptr;
QDockWidget* VTDesignerPlugin::spResourcesWidget = nullptr;
QDockWidget* VTDesignerPlugin::spFunctionsWidget = nullptr;
QDockWidget* VTDesignerPlugin::spBreakpointsWidget = nullptr;

VTDesignerPlugin::VTDesignerPlugin()
{
    QuaZip::setDefaultFileNameCodec(QTextCodec::codecForName("UTF-8"));
    connect(EditorManager::instance(), &EditorManager::editorActivated, this,
            &VTDesignerPlugin::updateEditorActivated);
    connect(EditorManager::instance(), &EditorManager::editorDeactivated, this,
            &VTDesignerPlugin::updateEditorDeactivated);
    m_updateTimer.setSingleShot(true);
    connect(&m_updateTimer, &QTimer::timeout, this, [this] { checkUpdates(true); });
}

VTDesignerPlugin::~VTDesignerPlugin()
{
    if (IProjectDialogs::instance() == &s_projectDialogs)
        IProjectDialogs::setInstance(nullptr);
    VTLocationManager::destroyInstance();
    IUi::destroyInstance();
}

QList<QDockWidget*> VTDesignerPlugin::getDocks()
{
    return {spInspectorDockWidget, spScenesDockWidget, spDocPropertiesWidget, spTimelineDockWidget,
            spElementsWidget,      spResourcesWidget,  spFunctionsWidget,     spBreakpointsWidget};
}

bool VTDesignerPlugin::initialize(const QStringList&, QString*)
{
    MainWindow* pWindow = ICore::getMainWindow();
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    addAutoReleasedObject(new VTDesignerFactory);
    IProjectDialogs::setInstance(&s_projectDialogs);
    initWelcomeScreen();
    initActions();
    initToolbars();
    initDocks();

    VTLocationManager* pLocations = VTLocationManager::getInstance();
    pLocations->initDefaultLocation();
    pLocations->setSettings(pSettings);
    pLocations->readFromSettings();

    m_pZoomControl = new VTCanvasZoomControl(pWindow);
    m_pZoomControl->hide();
    pWindow->statusBar()->addPermanentWidget(m_pZoomControl);

    for (QDockWidget* pDock :
         {spInspectorDockWidget, spScenesDockWidget, spResourcesWidget, spFunctionsWidget, spElementsWidget,
          spDocPropertiesWidget, spTimelineDockWidget, spBreakpointsWidget})
        pDock->hide();
    if (pSettings) {
        pWindow->restoreState(pSettings->value(QLatin1String(kWindowState)).toByteArray());
        pWindow->restoreGeometry(pSettings->value(QLatin1String(kWindowGeometry)).toByteArray());
        m_lstEditingDocks = pSettings->value(QLatin1String(kEditingDocks)).toStringList();
    }
    // A layout saved while a project was open would show the docks now; they wait for one.
    for (QDockWidget* pDock : getDocks()) {
        if (!pDock->isHidden() && !m_lstEditingDocks.contains(pDock->objectName()))
            m_lstEditingDocks.append(pDock->objectName());
        pDock->hide();
    }
    updateActionVisible(false);
    return true;
}

void VTDesignerPlugin::initWelcomeScreen()
{
    MainWindow* pWindow = ICore::getMainWindow();
    QMdiArea* pArea = pWindow->getMdiArea();
    auto* pLayout = new QHBoxLayout(pArea);
    pLayout->setContentsMargins(0, 0, 0, 0);
    m_pWelcomeView = new QWebEngineView(pArea);
    m_pWelcomeView->setObjectName(QStringLiteral("welcomeView"));
    m_pWelcomeView->setContextMenuPolicy(Qt::NoContextMenu);

    m_pWelcomeBridge = new VTWelcomeBridge(pWindow);
    pWindow->getChannel()->registerObject(QStringLiteral("vtwelcome"), m_pWelcomeBridge);

    QUrl url =
        QUrl::fromLocalFile(ICore::resourcePath() + QStringLiteral("/resources/welcome/vtwelcome.html"));
    QUrlQuery query;
    // The channel address carries the access token of this run.
    query.addQueryItem(QStringLiteral("webChannelBaseUrl"), pWindow->getWebChannelUrl().toString());
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    query.addQueryItem(QStringLiteral("lang"),
                       pSettings ? pSettings->value(QLatin1String(kLanguage)).toString() : QString());
    url.setQuery(query);
    m_pWelcomeView->load(url);
    pWindow->setWelcomeWidget(m_pWelcomeView);
    pLayout->addWidget(m_pWelcomeView);
}

void VTDesignerPlugin::initActions()
{
    // The full catalogue of menus comes with the editor; the host's help entries work already.
    if (ContextAction* pCheck = ActionManager::getAction(QStringLiteral("Help.CheckUpdates"))) {
        pCheck->getAction()->setEnabled(true);
        connect(pCheck->getAction(), &QAction::triggered, this,
                [this](bool bChecked) { checkUpdates(bChecked); });
    }
    const auto connectPreview = [this](const QString& actionId, bool bCurrentSceneOnly) {
        if (ContextAction* pPreview = ActionManager::getAction(actionId)) {
            connect(pPreview->getAction(), &QAction::triggered, this, [bCurrentSceneOnly]() {
                if (auto* pEditor = qobject_cast<VTEditor*>(EditorManager::activeEditor()))
                    pEditor->previewProject(bCurrentSceneOnly);
            });
        }
    };
    connectPreview(QStringLiteral("File.Preview_Current_Scene_In_Browser"), true);
    connectPreview(QStringLiteral("File.Preview_Project_In_Browser"), false);
}

void VTDesignerPlugin::initToolbars() {}

QDockWidget* VTDesignerPlugin::addDock(const QString& title, const QString& objectName,
                                       const QString& actionId, QWidget* pContent, Qt::DockWidgetArea area,
                                       const QString& context)
{
    MainWindow* pWindow = ICore::getMainWindow();
    auto* pDock = new QDockWidget(title, pWindow);
    pDock->setObjectName(objectName);
    pDock->setWidget(pContent);
    pWindow->addDockWidget(area, pDock);
    QAction* pToggle = pDock->toggleViewAction();
    ContextAction* pAction = ActionManager::registerAction(pToggle, actionId);
    if (ActionContainer* pView = ActionManager::getActionContainer(QStringLiteral("MenuBar.View")))
        pView->addAction(pAction);
    if (!context.isEmpty())
        ContextManager::registerContext(pDock, context, context);
    return pDock;
}

void VTDesignerPlugin::initDocks()
{
    MainWindow* pWindow = ICore::getMainWindow();
    pWindow->setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);

    spInspectorDockWidget =
        addDock(tr("Properties"), QStringLiteral("spInspectorDockWidget"), QStringLiteral("View.Properties"),
                new VTPropertiesTabsWidget, Qt::RightDockWidgetArea, QString());
    if (ActionContainer* pView = ActionManager::getActionContainer(QStringLiteral("MenuBar.View")))
        pView->addSeparator();
    spScenesDockWidget =
        addDock(tr("Scenes"), QStringLiteral("spScenesDockWidget"), QStringLiteral("View.Scenes"),
                new VTSceneThumbnailView, Qt::LeftDockWidgetArea, QStringLiteral("Scene"));
    spDocPropertiesWidget =
        addDock(tr("Document"), QStringLiteral("spDocPropertiesWidget"), QStringLiteral("View.Document"),
                new VTDocumentPanel, Qt::LeftDockWidgetArea, QStringLiteral("Document"));
    pWindow->tabifyDockWidget(spScenesDockWidget, spDocPropertiesWidget);

    auto* pTimeline = new VTTimelineWindow(nullptr, Qt::WindowCloseButtonHint);
    spTimelineDockWidget =
        addDock(tr("Timeline"), QStringLiteral("spTimelineDockWidget"), QStringLiteral("View.Timeline"),
                pTimeline, Qt::BottomDockWidgetArea, QStringLiteral("Timeline"));
    spTimelineDockWidget->setTitleBarWidget(new QWidget(spTimelineDockWidget));
    connect(spTimelineDockWidget, &QDockWidget::topLevelChanged, pTimeline->getCaptionPanel(),
            &VTTimelineCaptionPanel::topLevelChanged);
    connect(pTimeline->getCaptionPanel(), &VTTimelineCaptionPanel::closeRequested, spTimelineDockWidget,
            &QDockWidget::close);

    spElementsWidget =
        addDock(tr("Elements"), QStringLiteral("spElementsWidget"), QStringLiteral("View.Elements"),
                new VTElementsPanel, Qt::RightDockWidgetArea, QStringLiteral("Element"));
    spResourcesWidget =
        addDock(tr("Resources"), QStringLiteral("spResourcesWidget"), QStringLiteral("View.Resources"),
                new VTResourcePanel, Qt::RightDockWidgetArea, QString());
    pWindow->tabifyDockWidget(spElementsWidget, spResourcesWidget);
    spFunctionsWidget =
        addDock(tr("Functions"), QStringLiteral("spFunctionsWidget"), QStringLiteral("View.Functions"),
                new VTFunctionPanel, Qt::RightDockWidgetArea, QString());
    pWindow->tabifyDockWidget(spResourcesWidget, spFunctionsWidget);
    spBreakpointsWidget =
        addDock(tr("Breakpoints"), QStringLiteral("spBreakpointsWidget"), QStringLiteral("View.Breakpoints"),
                new VTBreakpointsPanel, Qt::RightDockWidgetArea, QStringLiteral("Breakpoint"));
    pWindow->tabifyDockWidget(spResourcesWidget, spBreakpointsWidget);
}

void VTDesignerPlugin::extensionsInitialized()
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    if (!pSettings || pSettings->value(QLatin1String(kAutoUpdate), true).toBool()) {
        // Spread the first check over 20 to 60 seconds after start, off the start-up path.
        m_updateTimer.start((int(QRandomGenerator::global()->bounded(41)) + 20) * 1000);
    }
}

bool VTDesignerPlugin::delayedInitialize()
{
    return true;
}

ExtensionSystem::IPlugin::ShutdownFlag VTDesignerPlugin::aboutToShutdown()
{
    MainWindow* pWindow = ICore::getMainWindow();
    // The preview server lives for the session; its open connections go with the plug-in.
    VTHttpServer::destroyInstance();
    for (const QString& context : kContexts)
        ContextManager::unregisterContext(nullptr, context);
    if (spTimelineDockWidget)
        spTimelineDockWidget->setFloating(false);
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings()) {
        if (EditorManager::activeEditor())
            updateActionVisible(false);
        pSettings->setValue(QLatin1String(kWindowState), pWindow->saveState());
        pSettings->setValue(QLatin1String(kWindowGeometry), pWindow->saveGeometry());
        pSettings->setValue(QLatin1String(kEditingDocks), m_lstEditingDocks);
        pSettings->sync();
    }
    for (QDockWidget** ppDock :
         {&spInspectorDockWidget, &spTimelineDockWidget, &spScenesDockWidget, &spDocPropertiesWidget,
          &spElementsWidget, &spResourcesWidget, &spFunctionsWidget, &spBreakpointsWidget}) {
        if (*ppDock) {
            pWindow->removeDockWidget(*ppDock);
            delete *ppDock;
            *ppDock = nullptr;
        }
    }
    return SynchronousShutdown;
}

QObject* VTDesignerPlugin::remoteCommand(const QStringList&, const QString&, const QStringList&)
{
    return nullptr;
}

void VTDesignerPlugin::checkUpdates(bool bSilent)
{
    if (m_updateTimer.isActive())
        m_updateTimer.stop();
    qInfo("Checking updates for version %s ...", "2.6.0");
    QSimpleUpdater* pUpdater = QSimpleUpdater::getInstance();
    pUpdater->setDownloaderEnabled(true);
    pUpdater->setNotifyOnUpdate(true);
    pUpdater->setNotifyOnFinish(true);
    pUpdater->checkForUpdates(QSimpleUpdater::feedUrl(), bSilent);
}

void VTDesignerPlugin::updateEditorActivated(IEditor*)
{
    if (ActionContainer* pSaveAs = ActionManager::getActionContainer(QStringLiteral("File.SaveAs")))
        pSaveAs->menu()->setEnabled(true);
    if (ContextAction* pClose = ActionManager::getAction(QStringLiteral("File.Close")))
        pClose->getAction()->setEnabled(true);
    updateActions();
    updateActionVisible(true);
}

void VTDesignerPlugin::updateEditorDeactivated(IEditor*)
{
    MainWindow* pWindow = ICore::getMainWindow();
    if (ActionContainer* pSaveAs = ActionManager::getActionContainer(QStringLiteral("File.SaveAs")))
        pSaveAs->menu()->setEnabled(false);
    if (ContextAction* pClose = ActionManager::getAction(QStringLiteral("File.Close")))
        pClose->getAction()->setEnabled(false);
    pWindow->setWindowModified(false);
    pWindow->setWindowTitle(ICore::applicationName());
    pWindow->updateRecentFileActions();
    updateActions();
    updateActionVisible(false);
}

void VTDesignerPlugin::updateActions() {}

void VTDesignerPlugin::updateActionVisible(bool bVisible)
{
    static const char* const kDockToggles[] = {"View.Scenes",      "View.Timeline", "View.Resources",
                                               "View.Functions",   "View.Elements", "View.Properties",
                                               "View.Breakpoints", "View.Document"};
    for (const char* id : kDockToggles) {
        if (ContextAction* pAction = ActionManager::getAction(QLatin1String(id)))
            pAction->setVisible(bVisible);
    }
    if (m_pZoomControl)
        m_pZoomControl->setVisible(bVisible);
    const QList<QDockWidget*> docks = getDocks();
    if (bVisible) {
        // First time: every panel, in the layout of the table.
        const bool bAll = m_lstEditingDocks.isEmpty();
        for (QDockWidget* pDock : docks) {
            if (pDock && (bAll || m_lstEditingDocks.contains(pDock->objectName())))
                pDock->show();
        }
        return;
    }
    QStringList visible;
    for (QDockWidget* pDock : docks) {
        if (pDock && !pDock->isHidden())
            visible.append(pDock->objectName());
    }
    if (!visible.isEmpty())
        m_lstEditingDocks = visible;
    for (QDockWidget* pDock : docks) {
        if (pDock)
            pDock->hide();
    }
}
