#include "VTEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct EngineSettings
{
    QString strPath;
    bool bPathChanged = false;
    QString strBrowserPath;
    bool bUseBuiltinBrowser = false;
};

EngineSettings& settings()
{
    static EngineSettings s_settings;
    return s_settings;
}

} // namespace

QString VTEngine::path()
{
    return settings().strPath.isEmpty() ? defaultPath() : settings().strPath;
}

QString VTEngine::defaultPath()
{
    return QDir::cleanPath(resourcePath() + QStringLiteral("/resources/canvas/player"));
}

void VTEngine::setPath(const QString& path)
{
    if (settings().strPath == path)
        return;
    settings().strPath = path;
    settings().bPathChanged = true;
}

bool VTEngine::pathChanged()
{
    const bool bChanged = settings().bPathChanged;
    settings().bPathChanged = false;
    return bChanged;
}

bool VTEngine::isValidPath(const QString& path)
{
    if (path.isEmpty() || !QFileInfo(path).isDir())
        return false;
    const QDir candidate(path);
    const QStringList required =
        QDir(defaultPath())
            .entryList({QStringLiteral("*.js"), QStringLiteral("*.html"), QStringLiteral("*.css")},
                       QDir::Files);
    for (const QString& name : required) {
        if (!QFileInfo(candidate.filePath(name)).isFile())
            return false;
    }
    return true;
}

QString VTEngine::browserPath()
{
    return settings().strBrowserPath;
}

void VTEngine::setBrowserPath(const QString& path)
{
    settings().strBrowserPath = path;
}

bool VTEngine::useBuiltinBrowser()
{
    return settings().bUseBuiltinBrowser;
}

void VTEngine::setUseBuiltinBrowser(bool bUse)
{
    settings().bUseBuiltinBrowser = bUse;
}

QString VTEngine::resourcePath()
{
    const QString env = qEnvironmentVariable("VETRA_RESOURCE_PATH");
    if (!env.isEmpty())
        return QDir::cleanPath(env);
    const QString appDir = QCoreApplication::applicationDirPath();
    const QString shared = QDir::cleanPath(appDir + QStringLiteral("/../share/vetra-studio"));
    if (QFileInfo::exists(shared + QStringLiteral("/resources")))
        return shared;
    return appDir;
}
