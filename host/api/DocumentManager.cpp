#include "DocumentManager.h"

#include "IDocument.h"
#include "PluginManager.h"

#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include <QUndoGroup>
#include <QUndoStack>

namespace {

constexpr char kAutoBackupKey[] = "Documents/AutoBackup";
constexpr char kAutoBackupTimeoutKey[] = "Documents/AutoBackupTimeout";
constexpr char kHBreakpointsKey[] = "Documents/HBreakpoints";
constexpr char kVBreakpointsKey[] = "Documents/VBreakpoints";

// Stored as "value:0|1" strings so the ini file stays readable and editable.
QStringList toStrings(const BreakpointList& list)
{
    QStringList result;
    for (const Breakpoint& b : list)
        result << QStringLiteral("%1:%2").arg(b.first).arg(b.second ? 1 : 0);
    return result;
}

BreakpointList fromStrings(const QStringList& strings)
{
    BreakpointList result;
    for (const QString& s : strings) {
        const QStringList parts = s.split(QLatin1Char(':'));
        bool bOk = false;
        const int nValue = parts.value(0).toInt(&bOk);
        if (!bOk || nValue < 1)
            continue;
        result.append({nValue, parts.value(1) != QLatin1String("0")});
    }
    return result;
}

} // namespace

DocumentManager::DocumentManager()
    : m_pUndoGroup(new QUndoGroup(this))
{
}

DocumentManager* DocumentManager::instance()
{
    static DocumentManager* s_pInstance = new DocumentManager;
    return s_pInstance;
}

QList<IDocument*> DocumentManager::getDocuments()
{
    return instance()->m_lstDocuments;
}

IDocument* DocumentManager::findDocumentByPath(const QString& filePath)
{
    const QString canonical = QFileInfo(filePath).canonicalFilePath();
    if (canonical.isEmpty())
        return nullptr;
    for (IDocument* pDocument : instance()->m_lstDocuments) {
        if (QFileInfo(pDocument->getFileName()).canonicalFilePath() == canonical)
            return pDocument;
    }
    return nullptr;
}

QUndoGroup* DocumentManager::getUndoGroup()
{
    return instance()->m_pUndoGroup;
}

bool DocumentManager::isAutobackupEnabled()
{
    return instance()->m_bAutobackup;
}

void DocumentManager::setAutoBackupEnabled(bool bEnabled)
{
    instance()->m_bAutobackup = bEnabled;
}

int DocumentManager::getAutobackupTimeout()
{
    return instance()->m_nAutobackupTimeout;
}

void DocumentManager::setAutobackupTimeout(int nSeconds)
{
    instance()->m_nAutobackupTimeout = qMax(1, nSeconds);
}

void DocumentManager::startWaitingBackup(IDocument* pDocument)
{
    DocumentManager* self = instance();
    if (!pDocument || !self->m_bAutobackup || self->m_mapBackupTimers.contains(pDocument))
        return;
    auto* pTimer = new QTimer(self);
    pTimer->setSingleShot(true);
    pTimer->setInterval(self->m_nAutobackupTimeout * 1000);
    connect(pTimer, &QTimer::timeout, self, [self, pDocument] { self->onTimeout(pDocument); });
    self->m_mapBackupTimers.insert(pDocument, pTimer);
    pTimer->start();
}

void DocumentManager::stopWaitingBackup(IDocument* pDocument)
{
    if (QTimer* pTimer = instance()->m_mapBackupTimers.take(pDocument))
        pTimer->deleteLater();
}

bool DocumentManager::isWaitingBackup(IDocument* pDocument)
{
    return instance()->m_mapBackupTimers.contains(pDocument);
}

void DocumentManager::onTimeout(IDocument* pDocument)
{
    stopWaitingBackup(pDocument);
    if (!m_lstDocuments.contains(pDocument) || !pDocument->isModified())
        return;
    pDocument->saveBackup();
    // Unsaved work keeps being backed up until it is saved.
    startWaitingBackup(pDocument);
}

BreakpointList DocumentManager::getHBreakpoints()
{
    return instance()->m_lstHBreakpoints;
}

BreakpointList DocumentManager::getVBreakpoints()
{
    return instance()->m_lstVBreakpoints;
}

void DocumentManager::setHBreakpoints(const BreakpointList& list)
{
    instance()->m_lstHBreakpoints = list;
}

void DocumentManager::setVBreakpoints(const BreakpointList& list)
{
    instance()->m_lstVBreakpoints = list;
}

void DocumentManager::initBreakpoints(BreakpointList& h, BreakpointList& v, bool bEnabled)
{
    // Common device widths and heights: phones, tablets, laptops, desktops.
    h.clear();
    v.clear();
    for (int n : {320, 480, 768, 1024, 1280, 1440, 1920})
        h.append({n, bEnabled});
    for (int n : {480, 640, 768, 1024})
        v.append({n, bEnabled});
}

void DocumentManager::readSettings()
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    if (!pSettings)
        return;
    DocumentManager* self = instance();
    self->m_bAutobackup = pSettings->value(QLatin1String(kAutoBackupKey), true).toBool();
    self->m_nAutobackupTimeout = qMax(1, pSettings->value(QLatin1String(kAutoBackupTimeoutKey), 300).toInt());
    self->m_lstHBreakpoints = fromStrings(pSettings->value(QLatin1String(kHBreakpointsKey)).toStringList());
    self->m_lstVBreakpoints = fromStrings(pSettings->value(QLatin1String(kVBreakpointsKey)).toStringList());
}

void DocumentManager::saveSettings()
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    if (!pSettings)
        return;
    const DocumentManager* self = instance();
    pSettings->setValue(QLatin1String(kAutoBackupKey), self->m_bAutobackup);
    pSettings->setValue(QLatin1String(kAutoBackupTimeoutKey), self->m_nAutobackupTimeout);
    pSettings->setValue(QLatin1String(kHBreakpointsKey), toStrings(self->m_lstHBreakpoints));
    pSettings->setValue(QLatin1String(kVBreakpointsKey), toStrings(self->m_lstVBreakpoints));
    pSettings->sync();
}

void DocumentManager::registerDocument(IDocument* pDocument)
{
    DocumentManager* self = instance();
    if (!pDocument || self->m_lstDocuments.contains(pDocument))
        return;
    self->m_lstDocuments.append(pDocument);
    self->m_pUndoGroup->addStack(pDocument->getUndoStack());
    // The first unsaved change starts the wait for a backup, and a save ends it.
    connect(pDocument, &IDocument::modifyChanged, self, [pDocument](bool bModified) {
        if (bModified)
            startWaitingBackup(pDocument);
        else
            stopWaitingBackup(pDocument);
    });
    emit self->documentAdded(pDocument);
}

void DocumentManager::unregisterDocument(IDocument* pDocument)
{
    DocumentManager* self = instance();
    if (!self->m_lstDocuments.removeOne(pDocument))
        return;
    disconnect(pDocument, &IDocument::modifyChanged, self, nullptr);
    stopWaitingBackup(pDocument);
    self->m_pUndoGroup->removeStack(pDocument->getUndoStack());
    emit self->documentRemoved(pDocument);
}
