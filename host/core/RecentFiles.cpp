#include "RecentFiles.h"

#include "PluginManager.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {
constexpr char kRecentKey[] = "MainWindow/RecentFiles";
}

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
{
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings()) {
        const QStringList stored = pSettings->value(QLatin1String(kRecentKey)).toStringList();
        for (const QString& f : stored) {
            if (!f.isEmpty() && !m_lstFiles.contains(f) && m_lstFiles.size() < kMaxFiles)
                m_lstFiles.append(f);
        }
    }
}

void RecentFiles::add(const QString& filePath)
{
    const QString path = QDir::cleanPath(QFileInfo(filePath).absoluteFilePath());
    if (path.isEmpty())
        return;
    m_lstFiles.removeAll(path);
    m_lstFiles.prepend(path);
    while (m_lstFiles.size() > kMaxFiles)
        m_lstFiles.removeLast();
    store();
}

void RecentFiles::remove(const QString& filePath)
{
    if (m_lstFiles.removeAll(QDir::cleanPath(QFileInfo(filePath).absoluteFilePath())) > 0)
        store();
}

void RecentFiles::prune()
{
    QStringList kept;
    for (const QString& f : qAsConst(m_lstFiles)) {
        if (QFileInfo::exists(f))
            kept.append(f);
    }
    if (kept != m_lstFiles) {
        m_lstFiles = kept;
        store();
    }
}

void RecentFiles::store()
{
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings())
        pSettings->setValue(QLatin1String(kRecentKey), m_lstFiles);
    emit changed(m_lstFiles);
}
