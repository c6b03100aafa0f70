#include "VTLocationManager.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace {

const char s_szSettingsGroup[] = "LocationHistory";

} // namespace

VTLocationManager::VTLocationManager() = default;

VTLocationManager::~VTLocationManager() = default;

void VTLocationManager::setSettings(QSettings* pSettings)
{
    m_pSettings = pSettings;
}

void VTLocationManager::saveSettings() const
{
    if (!m_pSettings)
        return;
    m_pSettings->beginGroup(QLatin1String(s_szSettingsGroup));
    for (int nId = s_nFirstAppLocation; nId <= s_nLastAppLocation; ++nId) {
        const QString key = QString::number(nId);
        const QString path = m_mapAppHistory.value(nId);
        if (path.isEmpty())
            m_pSettings->remove(key);
        else
            m_pSettings->setValue(key, path);
    }
    m_pSettings->endGroup();
    m_pSettings->sync();
}

void VTLocationManager::readFromSettings()
{
    if (!m_pSettings)
        return;
    m_pSettings->beginGroup(QLatin1String(s_szSettingsGroup));
    for (int nId = s_nFirstAppLocation; nId <= s_nLastAppLocation; ++nId) {
        const QString key = QString::number(nId);
        if (m_pSettings->contains(key))
            m_mapAppHistory.insert(nId, m_pSettings->value(key).toString());
    }
    m_pSettings->endGroup();
}

QMap<int, QString> VTLocationManager::getDocumentHistory(const IDocument* pDocument) const
{
    return m_mapDocumentHistory.value(pDocument);
}

void VTLocationManager::initDefaultLocation()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString projects = QDir(documents).filePath(QStringLiteral("Vetra Studio"));
    QDir().mkpath(projects);

    m_mapDefaults.clear();
    m_mapDefaults.insert(NewProject, projects);
    m_mapDefaults.insert(OpenProject, projects);
    m_mapDefaults.insert(AppKept, documents);
    m_mapDefaults.insert(SavePackage, documents);

    // ExportHTML5 and the code resources (1008-1011, 1018-1020) have no default.
    for (const int nId : {ExportFunction, ExportResources, ExportSymbol, ExportFont, AddResourceFile,
                          ImportSymbol, DocumentKept})
        m_mapDefaults.insert(nId, documents);
    for (const int nId : {ExportVideo, ImportVideo})
        m_mapDefaults.insert(nId, movies);
    for (const int nId : {ExportAudio, ImportAudio})
        m_mapDefaults.insert(nId, music);
    for (const int nId : {ExportImage, ImportImage})
        m_mapDefaults.insert(nId, pictures);
}

void VTLocationManager::setDefaultLocation(int nId, const QString& path)
{
    m_mapDefaults.insert(nId, path);
}

QString VTLocationManager::getDefaultLocation(int nId) const
{
    return m_mapDefaults.value(nId);
}

QString VTLocationManager::getHistoryLocation(AppLocationId id) const
{
    const QString path = m_mapAppHistory.value(id);
    return path.isEmpty() ? getDefaultLocation(id) : path;
}

void VTLocationManager::setHistoryLocation(AppLocationId id, const QString& path)
{
    m_mapAppHistory.insert(id, path);
}

void VTLocationManager::setHistoryLocation(IDocument* pDocument, DocumentLocationId id, const QString& path)
{
    if (!pDocument)
        return;
    m_mapDocumentHistory[pDocument].insert(id, path);
}

QString VTLocationManager::getHistoryLocation(IDocument* pDocument, DocumentLocationId id) const
{
    const QString path = m_mapDocumentHistory.value(pDocument).value(id);
    return path.isEmpty() ? getDefaultLocation(id) : path;
}

void VTLocationManager::clearHistoryLocation(IDocument* pDocument)
{
    m_mapDocumentHistory.remove(pDocument);
}

void VTLocationManager::removeHistoryLocation(IDocument* pDocument, DocumentLocationId id)
{
    auto it = m_mapDocumentHistory.find(pDocument);
    if (it == m_mapDocumentHistory.end())
        return;
    it->remove(id);
    if (it->isEmpty())
        m_mapDocumentHistory.erase(it);
}
