#include "VTEditor.h"

#include "ContextManager.h"
#include "DocumentManager.h"
#include "EditorManager.h"
#include "ICore.h"
#include "IMessageBox.h"
#include "IUtils.h"
#include "MainWindow.h"
#include "VTCanvas.h"
#include "VTDocument.h"
#include "VTHttpServer.h"
#include "VTMdiSubWindow.h"
#include "VTPreview.h"
#include "VTUpdateViewInfo.h"

#include <QDebug>
#include <QDir>
#include <QMdiArea>
#include <QTabBar>
#include <QTimer>
#include <QUndoGroup>
#include <QUndoStack>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineSettings>

VTEditor::VTEditor()
{
    MainWindow* pWindow = ICore::getMainWindow();
    m_pSubWindow = new VTMdiSubWindow(this);
    auto* pContent = new QWidget(m_pSubWindow);
    pContent->setFocusPolicy(Qt::ClickFocus);
    auto* pLayout = new QVBoxLayout(pContent);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    m_pCanvas = new VTCanvas(this, pContent);
    pLayout->addWidget(m_pCanvas, 1);
    loadCanvasPage();
    m_pSubWindow->setWidget(pContent);
    if (pWindow)
        pWindow->getMdiArea()->addSubWindow(m_pSubWindow);
    ContextManager::registerContext(m_pSubWindow, QStringLiteral("Canvas"), tr("Canvas"));
    m_pSubWindow->showMaximized();
    m_pSubWindow->setFocus(Qt::OtherFocusReason);

    connect(this, &IEditor::documentLoaded, this, &VTEditor::onDocumentLoaded);
    connect(this, &IEditor::documentUnloading, this, &VTEditor::onDocumentUnloaded);
    connect(this, &IEditor::documentDataChanged, this, &VTEditor::onDocumentDataChanged);
    connect(this, &IEditor::documentTitleChanged, this, &VTEditor::updateDocumentTabName);
    connect(this, &IEditor::aboutToActivate, this, &VTEditor::activateDocumentTab);
    connect(this, &IEditor::documentModifyChanged, this, &VTEditor::onDocumentModifyChanged);
    connect(m_pSubWindow, &QMdiSubWindow::aboutToActivate, this, &VTEditor::selfActivate);
}

VTEditor::~VTEditor()
{
    if (m_pSubWindow) {
        ContextManager::unregisterContext(m_pSubWindow, QStringLiteral("Canvas"));
        m_pSubWindow->forceClose();
    }
}

void VTEditor::loadCanvasPage()
{
    MainWindow* pWindow = ICore::getMainWindow();
    // The channel address carries the access token of this run.
    const QUrl url =
        VTCanvas::getPageUrl(ICore::resourcePath(), pWindow ? pWindow->getWebChannelUrl() : QUrl());
    qDebug() << "Canvas WebView URL: " << url.toString(QUrl::RemoveQuery);
    m_pCanvas->load(url);
    m_pCanvas->onPageLoaded();
    m_pCanvas->page()->settings()->setAttribute(QWebEngineSettings::JavascriptCanAccessClipboard, true);
}

VTDocument* VTEditor::getVTDocument() const
{
    return qobject_cast<VTDocument*>(getDocument());
}

void VTEditor::closeWindow()
{
    if (m_pSubWindow)
        m_pSubWindow->forceClose();
}

void VTEditor::selfActivate()
{
    disconnect(this, &IEditor::aboutToActivate, this, &VTEditor::activateDocumentTab);
    EditorManager::activateEditor(this);
    if (VTDocument* pDocument = getVTDocument()) {
        emit pDocument->statusChanged(pDocument->getStatus());
        DocumentManager::getUndoGroup()->setActiveStack(pDocument->getUndoStack());
    }
    connect(this, &IEditor::aboutToActivate, this, &VTEditor::activateDocumentTab);
    updateDocumentTabName();
    m_pCanvas->updateActions();
}

void VTEditor::activateDocumentTab()
{
    MainWindow* pWindow = ICore::getMainWindow();
    if (pWindow && m_pSubWindow)
        pWindow->getMdiArea()->setActiveSubWindow(m_pSubWindow);
    if (VTDocument* pDocument = getVTDocument())
        DocumentManager::getUndoGroup()->setActiveStack(pDocument->getUndoStack());
    updateDocumentTabName();
}

void VTEditor::onDocumentModifyChanged(bool)
{
    updateDocumentTabName();
}

void VTEditor::onDocumentLoaded()
{
    updateDocumentTabName();
    m_pCanvas->handleDocumentLoaded();
    if (VTDocument* pDocument = getVTDocument()) {
        showLoadProblems(pDocument);
        // The preview page reaches the project's media one folder up, through the server.
        m_strServedFolder = pDocument->getResourceFolderPath();
        VTHttpServer::getInstance()->addAllowedDir(m_strServedFolder);
    }
}

void VTEditor::showLoadProblems(VTDocument* pDocument)
{
    const QStringList problems = pDocument->getLoadProblems();
    if (problems.isEmpty())
        return;
    // Told once, after the window is up: the user learns what the next save will not keep.
    pDocument->clearLoadProblems();
    constexpr int nShown = 15;
    QString text = tr("Some parts of \"%1\" could not be read and were left out:").arg(pDocument->getName());
    text += QStringLiteral("\n\n") + problems.mid(0, nShown).join(QLatin1Char('\n'));
    if (problems.size() > nShown)
        text += QLatin1Char('\n') + tr("...and %1 more.").arg(problems.size() - nShown);
    QTimer::singleShot(0, this, [text]() {
        IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
    });
}

void VTEditor::onDocumentDataChanged(QObject* pInfo)
{
    m_pCanvas->handleDocumentChanged(qobject_cast<VTUpdateViewInfo*>(pInfo));
}

void VTEditor::onDocumentUnloaded()
{
    m_pCanvas->handleDocumentClosing();
    if (!m_strServedFolder.isEmpty()) {
        VTHttpServer::getInstance()->removeAllowedDir(m_strServedFolder);
        m_strServedFolder.clear();
    }
}

bool VTEditor::previewProject(bool bCurrentSceneOnly)
{
    VTDocument* pDocument = getVTDocument();
    if (!pDocument) {
        IMessageBox::instance()->warning(IUtils::getApplicationName(), tr("Unable to preview document."),
                                         IMessageBox::Ok);
        return false;
    }
    return VTPreview(pDocument).previewProject(bCurrentSceneOnly);
}

void VTEditor::updateDocumentTabName()
{
    VTDocument* pDocument = getVTDocument();
    if (!pDocument || !m_pSubWindow)
        return;
    QString name = pDocument->getName();
    if (pDocument->isOpenAsBackup())
        name = tr("%1 - backup").arg(name);
    const bool bModified =
        !pDocument->getUndoStack()->isClean() || pDocument->isTempDocument() || pDocument->isOpenAsBackup();
    m_pSubWindow->setWindowTitle(name + QStringLiteral("[*]"));
    m_pSubWindow->setWindowModified(bModified);
    m_pSubWindow->setWindowFilePath(pDocument->getFileName());
    if (MainWindow* pWindow = ICore::getMainWindow()) {
        pWindow->setWindowModified(bModified);
        pWindow->setWindowFilePath(pDocument->getFileName());
        if (EditorManager::activeEditor() == this)
            pWindow->setWindowTitle(QStringLiteral("%1[*] - %2").arg(name, ICore::applicationName()));
        if (auto* pTabBar = pWindow->getMdiArea()->findChild<QTabBar*>()) {
            const int nIndex = pWindow->getMdiArea()->subWindowList().indexOf(m_pSubWindow);
            if (nIndex >= 0)
                pTabBar->setTabToolTip(nIndex, QDir::toNativeSeparators(pDocument->getFileName()));
        }
    }
}
