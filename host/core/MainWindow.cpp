#include "MainWindow.h"

#include "ActionContainer.h"
#include "ActionManager.h"
#include "ContextAction.h"
#include "DocumentManager.h"
#include "EditorManager.h"
#include "ICore.h"
#include "ICreateDocumentDlg.h"
#include "IDocument.h"
#include "IDocumentFactory.h"
#include "IEditor.h"
#include "IMessageBox.h"
#include "IOptionsDlg.h"
#include "PluginManager.h"
#include "RecentFiles.h"
#include "WebChannelServer.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QWebSocketServer>

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_pMdiArea(new QMdiArea(this))
    , m_pChannelServer(new WebChannelServer(this))
    , m_pRecentFiles(new RecentFiles(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(ICore::applicationName());
    setDockNestingEnabled(true);
    resize(1280, 800);
    ICore::setMainWindow(this);

    m_pMdiArea->setObjectName(QStringLiteral("mdiArea"));
    m_pMdiArea->setViewMode(QMdiArea::TabbedView);
    m_pMdiArea->setTabsClosable(true);
    m_pMdiArea->setTabsMovable(true);
    m_pMdiArea->setDocumentMode(true);
    setCentralWidget(m_pMdiArea);
    statusBar()->setObjectName(QStringLiteral("statusBar"));

    createMenus();
    createFileToolbar();

    EditorManager* pEditors = EditorManager::instance();
    connect(pEditors, &EditorManager::editorActivated, this, &MainWindow::onEditorActivated);
    connect(pEditors, &EditorManager::editorAdded, this, &MainWindow::updateWelcomeVisibility);
    connect(pEditors, &EditorManager::editorRemoved, this, &MainWindow::updateWelcomeVisibility);
    connect(pEditors, &EditorManager::editorDeactivated, this, [this] {
        disconnect(m_statusConnection);
        statusBar()->clearMessage();
        updateFileActions();
    });
    connect(m_pRecentFiles, &RecentFiles::changed, this, &MainWindow::updateRecentFileActions);
    updateRecentFileActions();
    updateFileActions();
}

MainWindow::~MainWindow()
{
    if (ICore::getMainWindow() == this)
        ICore::setMainWindow(nullptr);
}

void MainWindow::createMenus()
{
    ActionContainer* pBar = ActionManager::registerMenuBar(menuBar(), QStringLiteral("Vetra.MenuBar"));
    ActionContainer* pFile = ActionManager::createMenuContainer(tr("&File"), QStringLiteral("MenuBar.File"));
    ActionContainer* pEdit = ActionManager::createMenuContainer(tr("&Edit"), QStringLiteral("MenuBar.Edit"));
    ActionContainer* pView = ActionManager::createMenuContainer(tr("&View"), QStringLiteral("MenuBar.View"));
    ActionContainer* pHelp = ActionManager::createMenuContainer(tr("&Help"), QStringLiteral("MenuBar.Help"));
    for (ActionContainer* p : {pFile, pEdit, pView, pHelp})
        pBar->addContainer(p);

    auto add = [this](ActionContainer* pMenu, const QString& id, const QString& text, const QKeySequence& key,
                      bool bSeparator = false) {
        auto* pAction = new QAction(text, this);
        ContextAction* pContextAction = ActionManager::registerAction(pAction, id);
        pContextAction->setDefaultKeySequence(key);
        pMenu->addAction(pContextAction, bSeparator);
        return pAction;
    };

    connect(add(pFile, QStringLiteral("File.New"), tr("&New Project..."), QKeySequence::New), &QAction::triggered,
            this, &MainWindow::newProject);
    connect(add(pFile, QStringLiteral("File.Open"), tr("&Open..."), QKeySequence::Open), &QAction::triggered, this,
            &MainWindow::openProject);
    ActionContainer* pRecent =
        ActionManager::createMenuContainer(tr("Recent &Projects"), QStringLiteral("File.Recent_Projects"));
    m_pRecentMenu = pRecent->menu();
    pFile->addContainer(pRecent);
    connect(add(pFile, QStringLiteral("File.Save"), tr("&Save"), QKeySequence::Save, true), &QAction::triggered,
            this, &MainWindow::saveProject);
    ActionContainer* pSaveAs = ActionManager::createMenuContainer(tr("Save &As"), QStringLiteral("File.SaveAs"));
    pFile->addContainer(pSaveAs);
    connect(add(pSaveAs, QStringLiteral("File.SaveAs.Project"), tr("Project..."), QKeySequence::SaveAs),
            &QAction::triggered, this, &MainWindow::saveProjectAs);
    // Preview and export belong to the designer; the host only gives them their place.
    add(pFile, QStringLiteral("File.Preview_Current_Scene_In_Browser"), tr("Preview Current Scene in Browser"),
        QKeySequence(), true);
    add(pFile, QStringLiteral("File.Preview_Project_In_Browser"), tr("Preview Project in Browser"),
        QKeySequence(Qt::Key_F12));
    add(pFile, QStringLiteral("File.Export_To_HTML5"), tr("Export to HTML5..."), QKeySequence());
    connect(add(pFile, QStringLiteral("File.Close"), tr("&Close"), QKeySequence::Close, true), &QAction::triggered,
            this, &MainWindow::closeProject);
    connect(add(pFile, QStringLiteral("File.Preferences"), tr("P&references..."), QKeySequence::Preferences, true),
            &QAction::triggered, this, &MainWindow::showPreferences);
    QAction* pExit = add(pFile, QStringLiteral("File.Exit"), tr("E&xit"), QKeySequence::Quit, true);
    pExit->setMenuRole(QAction::QuitRole);
    connect(pExit, &QAction::triggered, this, &QWidget::close);

    // The designer connects these; until it does they stay disabled.
    for (const auto& [id, text] : {std::pair{"Help.CheckUpdates", tr("Check for &Updates...")},
                                   std::pair{"Help.Community", tr("&Community")},
                                   std::pair{"Help.About", tr("&About Vetra Studio")}})
        add(pHelp, QLatin1String(id), text, QKeySequence())->setEnabled(false);
}

void MainWindow::createFileToolbar()
{
    m_pFileToolbar = addToolBar(tr("File"));
    m_pFileToolbar->setObjectName(QStringLiteral("toolbar_file"));
    for (const char* id : {"File.New", "File.Open", "File.Save"}) {
        if (ContextAction* pAction = ActionManager::getAction(QLatin1String(id)))
            m_pFileToolbar->addAction(pAction->getAction());
    }
}

void MainWindow::setWelcomeWidget(QWidget* pWidget)
{
    m_pWelcome = pWidget;
    updateWelcomeVisibility();
}

QWebSocketServer* MainWindow::getServer() const
{
    return m_pChannelServer->getServer();
}

QWebChannel* MainWindow::getChannel() const
{
    return m_pChannelServer->getChannel();
}

QUrl MainWindow::getWebChannelUrl() const
{
    return m_pChannelServer->getChannelUrl();
}

QString MainWindow::getDefaultTempPath() const
{
    const QString path = QDir::tempPath() + QStringLiteral("/Vetra Studio");
    QDir().mkpath(path);
    return path;
}

IOptionsDlg* MainWindow::getOptionsDialog()
{
    if (!m_pOptionsDlg) {
        if (IDocumentFactory* pFactory = factory())
            m_pOptionsDlg = pFactory->createOptionDlg();
    }
    return m_pOptionsDlg;
}

IDocumentFactory* MainWindow::factory() const
{
    return ExtensionSystem::PluginManager::getObject<IDocumentFactory>();
}

IDocument* MainWindow::activeDocument() const
{
    IEditor* pEditor = EditorManager::activeEditor();
    return pEditor ? pEditor->getDocument() : nullptr;
}

void MainWindow::loadOpenedDocument(IDocument* pDocument, bool bAddToRecent)
{
    IDocumentFactory* pFactory = factory();
    if (!pDocument || !pFactory)
        return;
    connect(pDocument, &IDocument::closingRequested, this,
            [this, pDocument](bool bCloseWindow) { onClosingRequested(pDocument, bCloseWindow); });
    IEditor* pEditor = pFactory->createEditor();
    EditorManager::addEditor(pEditor);
    pEditor->setDocument(pDocument);
    EditorManager::activateEditor(pEditor);
    if (bAddToRecent && !pDocument->isTempDocument())
        m_pRecentFiles->add(pDocument->getFileName());
    updateFileActions();
}

void MainWindow::onClosingRequested(IDocument* pDocument, bool bCloseWindow)
{
    IEditor* pEditor = EditorManager::getEditorOfDocument(pDocument);
    if (pEditor) {
        EditorManager::removeEditor(pEditor);
        pEditor->unloadDocument();
        if (bCloseWindow)
            pEditor->closeWindow();
        pEditor->deleteLater();
    }
    DocumentManager::unregisterDocument(pDocument);
    pDocument->deleteLater();
    // The next tab, if any, becomes the active editor.
    QTimer::singleShot(0, this, [this] {
        if (!EditorManager::activeEditor() && !EditorManager::getEditors().isEmpty())
            EditorManager::activateEditor(EditorManager::getEditors().constLast());
        updateFileActions();
    });
}

void MainWindow::onEditorActivated(IEditor* pEditor)
{
    disconnect(m_statusConnection);
    if (IDocument* pDocument = pEditor ? pEditor->getDocument() : nullptr)
        m_statusConnection = connect(pDocument, &IDocument::statusChanged, this,
                                     [this](const QString& text) { statusBar()->showMessage(text); });
    updateFileActions();
}

void MainWindow::updateWelcomeVisibility()
{
    if (m_pWelcome)
        m_pWelcome->setVisible(EditorManager::getEditors().isEmpty());
}

void MainWindow::updateFileActions()
{
    const bool bHasDocument = activeDocument() != nullptr;
    for (const char* id : {"File.Save", "File.SaveAs.Project", "File.Close", "File.Preview_Current_Scene_In_Browser",
                           "File.Preview_Project_In_Browser", "File.Export_To_HTML5"}) {
        if (ContextAction* pAction = ActionManager::getAction(QLatin1String(id)))
            pAction->getAction()->setEnabled(bHasDocument);
    }
}

void MainWindow::updateRecentFileActions()
{
    if (!m_pRecentMenu)
        return;
    m_pRecentMenu->clear();
    const QStringList files = m_pRecentFiles->getFiles();
    for (int i = 0; i < files.size(); ++i) {
        const QString& path = files.at(i);
        QAction* pAction = m_pRecentMenu->addAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName().replace(QLatin1Char('&'), QLatin1String("&&"))));
        pAction->setToolTip(QDir::toNativeSeparators(path));
        pAction->setStatusTip(QDir::toNativeSeparators(path));
        connect(pAction, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    if (!files.isEmpty()) {
        m_pRecentMenu->addSeparator();
        connect(m_pRecentMenu->addAction(tr("&Clear List")), &QAction::triggered, this, [this] {
            for (const QString& f : m_pRecentFiles->getFiles())
                m_pRecentFiles->remove(f);
        });
    }
    m_pRecentMenu->setEnabled(!files.isEmpty());
}

void MainWindow::newProject()
{
    IDocumentFactory* pFactory = factory();
    if (!pFactory)
        return;
    QScopedPointer<ICreateDocumentDlg> pDialog(pFactory->getNewProjectDialog());
    if (!pDialog || pDialog->exec() != QDialog::Accepted)
        return;
    IDocument* pDocument = pFactory->createDocument();
    pDocument->setFileName(pDialog->getDocumentFileName());
    if (!pDocument->openTempDocument(pDialog->getWidth(), pDialog->getHeight(), pDialog->getSceneCount(),
                                     pDialog->isResponsive())) {
        pDocument->cleanTempDir();
        delete pDocument;
        return;
    }
    // The dialog has made the project's folder; writing the file at once means the project
    // exists on disk as soon as the user sees it, like any other saved project.
    if (!pDocument->save()) {
        pDocument->cleanTempDir();
        delete pDocument;
        return;
    }
    loadOpenedDocument(pDocument, true);
}

void MainWindow::openProject()
{
    IDocumentFactory* pFactory = factory();
    if (!pFactory)
        return;
    const QString filePath = pFactory->getOpenFileName();
    if (!filePath.isEmpty())
        openFile(filePath);
}

bool MainWindow::openFile(const QString& filePath)
{
    IDocumentFactory* pFactory = factory();
    if (!pFactory || filePath.isEmpty())
        return false;
    if (IDocument* pOpen = DocumentManager::findDocumentByPath(filePath)) {
        if (IEditor* pEditor = EditorManager::getEditorOfDocument(pOpen)) {
            EditorManager::activateEditor(pEditor);
            return true;
        }
    }
    IDocument* pDocument = pFactory->createDocument();
    pDocument->setFileName(QFileInfo(filePath).absoluteFilePath());
    if (!pDocument->open()) {
        delete pDocument;
        if (!QFileInfo::exists(filePath))
            m_pRecentFiles->remove(filePath);
        return false;
    }
    loadOpenedDocument(pDocument, true);
    return true;
}

bool MainWindow::saveProject()
{
    IDocument* pDocument = activeDocument();
    if (!pDocument)
        return false;
    const bool bSaved = pDocument->isTempDocument() ? pDocument->saveAs() : pDocument->save();
    if (bSaved)
        m_pRecentFiles->add(pDocument->getFileName());
    return bSaved;
}

bool MainWindow::saveProjectAs()
{
    IDocument* pDocument = activeDocument();
    if (!pDocument || !pDocument->saveAs())
        return false;
    m_pRecentFiles->add(pDocument->getFileName());
    return true;
}

bool MainWindow::closeProject()
{
    IDocument* pDocument = activeDocument();
    if (!pDocument || !pDocument->close())
        return false;
    pDocument->requestClosing(true);
    return true;
}

bool MainWindow::closeAllProjects()
{
    const QList<IEditor*> editors = EditorManager::getEditors();
    for (IEditor* pEditor : editors) {
        IDocument* pDocument = pEditor->getDocument();
        if (!pDocument)
            continue;
        EditorManager::activateEditor(pEditor);
        if (!pDocument->close())
            return false;
        pDocument->requestClosing(true);
    }
    return true;
}

void MainWindow::showPreferences()
{
    if (IOptionsDlg* pDialog = getOptionsDialog()) {
        pDialog->setParent(this, pDialog->windowFlags() | Qt::Dialog);
        pDialog->exec();
    }
}

void MainWindow::closeEvent(QCloseEvent* pEvent)
{
    if (!closeAllProjects()) {
        pEvent->ignore();
        return;
    }
    pEvent->accept();
}
