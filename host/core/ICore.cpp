#include "ICore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include "MainWindow.h"

namespace {
QPointer<MainWindow> s_pMainWindow;
}

MainWindow* ICore::getMainWindow()
{
    return s_pMainWindow;
}

void ICore::setMainWindow(MainWindow* pWindow)
{
    s_pMainWindow = pWindow;
}

QString ICore::resourcePath()
{
    const QString env = qEnvironmentVariable("VETRA_RESOURCE_PATH");
    if (!env.isEmpty())
        return QDir::cleanPath(env);
    // Installed and build-tree layouts both keep share/vetra-studio next to bin/.
    const QString appDir = QCoreApplication::applicationDirPath();
    const QString shared = QDir::cleanPath(appDir + QStringLiteral("/../share/vetra-studio"));
    if (QFileInfo::exists(shared + QStringLiteral("/resources")))
        return shared;
    return appDir;
}
