#include "VTWelcomeBridge.h"

#include "ICore.h"
#include "MainWindow.h"
#include "RecentFiles.h"

#include <QTimer>

VTWelcomeBridge::VTWelcomeBridge(MainWindow* pWindow)
    : QObject(pWindow)
    , m_pWindow(pWindow)
{
    connect(pWindow->getRecentFiles(), &RecentFiles::changed, this, &VTWelcomeBridge::recentFilesChanged);
}

QStringList VTWelcomeBridge::getRecentFiles() const
{
    return m_pWindow->getRecentFiles()->getFiles();
}

QString VTWelcomeBridge::getAppVersion() const
{
    return ICore::versionString();
}

// The page's call returns at once; the dialogs open from the event loop, not inside the
// channel's message handler.
void VTWelcomeBridge::newProject()
{
    QTimer::singleShot(0, m_pWindow, &MainWindow::newProject);
}

void VTWelcomeBridge::openProject()
{
    QTimer::singleShot(0, m_pWindow, &MainWindow::openProject);
}

void VTWelcomeBridge::openRecent(const QString& filePath)
{
    if (!getRecentFiles().contains(filePath))
        return;
    QTimer::singleShot(0, m_pWindow, [this, filePath] { m_pWindow->openFile(filePath); });
}
