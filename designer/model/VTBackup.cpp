#include "VTBackup.h"

#include "IMessageBox.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "VTDocument.h"
#include "VTFileLocker.h"
#include "VTResourceManager.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QUndoStack>

#include <memory>

namespace {

// Enough for every recovery a project will ever see; past it something else is wrong.
constexpr int s_nMaxKeptAside = 1000;

} // namespace

VTBackup::VTBackup(VTDocument& document)
    : m_document(document)
{}

QString VTBackup::getOldFilePath(const QString& projectFilePath)
{
    return projectFilePath + QStringLiteral(".old");
}

QString VTBackup::getBackupProjectFilePath(const QString& projectFilePath)
{
    const VTProjectPaths paths(projectFilePath);
    return QDir(paths.getLocation())
        .filePath(paths.getName() + QStringLiteral("-backup.") + VTProjectPaths::getProjectSuffix());
}

QString VTBackup::getBackupResourceFolderPath(const QString& projectFilePath)
{
    return VTProjectPaths(getBackupProjectFilePath(projectFilePath)).getResourceFolderPath();
}

bool VTBackup::write()
{
    if (m_document.getFileName().isEmpty() || m_document.getUndoStack()->isClean())
        return false;
    QJsonObject root;
    if (!m_document.saveData(root) || !m_document.getResourceManager()->saveAllSymbolsState())
        return false;
    const QString backupPath = m_document.getBackupFilePath();
    // The earlier backup is replaced only by a complete new one: a crash while writing must not
    // leave the user with half of each.
    QSaveFile file(backupPath);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // Listed, the backup goes when the document closes without keeping its changes.
    m_document.addFileHistory(QFileInfo(backupPath).fileName(), false);
    const QByteArray data = QJsonDocument(root).toJson(QJsonDocument::Compact);
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool VTBackup::recoverBeforeOpen(const QString& projectFilePath)
{
    m_strKeptAsideOld.clear();
    const QString backupPath = VTProjectPaths(projectFilePath).getBackupFilePath();
    if (!QFileInfo(backupPath).isFile())
        return true;
    switch (IProjectDialogs::instance()->askBackupRecovery(projectFilePath)) {
    case IProjectDialogs::BackupChoice::OpenBackup:
        if (openBackup(projectFilePath))
            return true;
        warn(tr("Unable to open backup project."));
        return false;
    case IProjectDialogs::BackupChoice::OpenBoth:
        // Whatever becomes of the copy, the project itself opens as usual.
        if (!openBoth(projectFilePath))
            warn(tr("Unable to open backup project."));
        return true;
    case IProjectDialogs::BackupChoice::OpenLastSaved:
        if (!QFile::remove(backupPath))
            qWarning().noquote() << "The backup could not be removed and will be offered again:"
                                 << backupPath;
        return true;
    case IProjectDialogs::BackupChoice::OpenLastSavedKeepBackup:
        return true;
    case IProjectDialogs::BackupChoice::Cancel:
        break;
    }
    return false;
}

bool VTBackup::openBackup(const QString& projectFilePath)
{
    const QString backupPath = VTProjectPaths(projectFilePath).getBackupFilePath();
    const QString oldPath = getOldFilePath(projectFilePath);
    VTFileLocker* pLocker = m_document.getFileLocker();
    const bool bHadProject = QFileInfo::exists(projectFilePath);
    if (bHadProject) {
        // A recovery that ended in a crash left its .old file; it may be the only copy of
        // something, so it moves aside instead of being replaced.
        if (QFileInfo::exists(oldPath)) {
            m_strKeptAsideOld = keepAside(oldPath);
            if (m_strKeptAsideOld.isEmpty())
                return false;
        }
        if (!QFile::rename(projectFilePath, oldPath)) {
            restoreKeptAsideOld(oldPath);
            return false;
        }
        pLocker->lock(oldPath);
    }
    if (!QFile::rename(backupPath, projectFilePath)) {
        if (bHadProject) {
            pLocker->unlock(oldPath);
            if (QFile::rename(oldPath, projectFilePath))
                restoreKeptAsideOld(oldPath);
        }
        return false;
    }
    m_document.setOpenAsBackup(true);
    return true;
}

void VTBackup::abandonOpenBackup(const QString& projectFilePath)
{
    if (!m_document.isOpenAsBackup())
        return;
    m_document.setOpenAsBackup(false);
    const QString backupPath = VTProjectPaths(projectFilePath).getBackupFilePath();
    const QString oldPath = getOldFilePath(projectFilePath);
    VTFileLocker* pLocker = m_document.getFileLocker();
    pLocker->unlock(oldPath);
    pLocker->unlock(projectFilePath);
    // Should the backup not get its name back, the files stay as after a crash during recovery:
    // the next open takes the backup as the project and the .old file is still there.
    if (QFileInfo::exists(backupPath) || !QFile::rename(projectFilePath, backupPath))
        return;
    if (QFileInfo::exists(oldPath) && QFile::rename(oldPath, projectFilePath))
        restoreKeptAsideOld(oldPath);
}

bool VTBackup::openBoth(const QString& projectFilePath)
{
    const VTProjectPaths paths(projectFilePath);
    const QString backupPath = paths.getBackupFilePath();
    const QString copyPath = getBackupProjectFilePath(projectFilePath);
    const QString copyFolder = getBackupResourceFolderPath(projectFilePath);
    // An earlier copy may still be open, or hold work of its own.
    if (QFileInfo::exists(copyPath))
        return false;
    const bool bNewFolder = !QFileInfo::exists(copyFolder);
    const auto removeNewFolder = [&] {
        if (bNewFolder)
            IUtils::removeDir(copyFolder);
    };
    // The copy does not overwrite: files left by an earlier copy make it fail rather than mix.
    const QString resourceFolder = paths.getResourceFolderPath();
    const bool bCopied = QFileInfo(resourceFolder).isDir()
                             ? VTResourceManager::copyDir(resourceFolder, copyFolder)
                             : QDir().mkpath(copyFolder);
    if (!bCopied || !QFile::rename(backupPath, copyPath)) {
        removeNewFolder();
        return false;
    }

    auto pCopy = std::make_unique<VTDocument>();
    pCopy->setFileName(copyPath);
    if (pCopy->open()) {
        // Its file and resources go at close unless the user saves the copy elsewhere.
        pCopy->setTempDocument(true);
        if (IProjectDialogs::instance()->addOpenedDocument(pCopy.get())) {
            pCopy.release();
            return true;
        }
    }
    pCopy.reset();
    // The backup goes back to its name, to be offered again at the next open.
    if (!QFileInfo::exists(backupPath) && QFile::rename(copyPath, backupPath))
        removeNewFolder();
    return false;
}

bool VTBackup::confirmClose()
{
    if (!m_document.isOpenAsBackup())
        return true;
    const auto answer = IMessageBox::instance()->question(
        IUtils::getApplicationName(), tr("Do you want to used this backup version of the current project?"),
        IMessageBox::Yes | IMessageBox::No | IMessageBox::Cancel, IMessageBox::Yes);
    if (answer == IMessageBox::Yes) {
        // A failed save keeps both files; the close asks about the unsaved changes next.
        m_document.save();
        return true;
    }
    if (answer != IMessageBox::No)
        return false;
    const QString projectFilePath = m_document.getFileName();
    if (!QFileInfo::exists(getOldFilePath(projectFilePath))) {
        // Nothing to go back to: the backup version is the only one there is.
        m_document.setOpenAsBackup(false);
        warn(tr("The last saved project is missing; the backup version is kept."));
        return true;
    }
    if (!restoreLastSaved(projectFilePath, true)) {
        warn(tr("Unable to restore the last saved project."));
        return false;
    }
    m_document.setOpenAsBackup(false);
    m_document.getUndoStack()->setClean();
    return true;
}

bool VTBackup::restoreLastSaved(const QString& projectFilePath, bool bKeepLocks)
{
    const QString oldPath = getOldFilePath(projectFilePath);
    if (!QFileInfo::exists(oldPath))
        return false;
    VTFileLocker* pLocker = m_document.getFileLocker();
    const bool bProjectLocked = pLocker->unlock(projectFilePath);
    const bool bOldLocked = pLocker->unlock(oldPath);
    const auto relock = [&] {
        if (!bKeepLocks)
            return;
        if (bProjectLocked)
            pLocker->lock(projectFilePath);
        if (bOldLocked)
            pLocker->lock(oldPath);
    };
    // The discarded version gives up its name first and is removed only once the last saved
    // file has taken it.
    QString discarded;
    if (QFileInfo::exists(projectFilePath)) {
        discarded = keepAside(projectFilePath);
        if (discarded.isEmpty()) {
            relock();
            return false;
        }
    }
    if (!QFile::rename(oldPath, projectFilePath)) {
        if (!discarded.isEmpty())
            QFile::rename(discarded, projectFilePath);
        relock();
        return false;
    }
    if (!discarded.isEmpty() && !QFile::remove(discarded))
        qWarning().noquote() << "The discarded backup version could not be removed:" << discarded;
    if (bKeepLocks)
        pLocker->lock(projectFilePath);
    return true;
}

void VTBackup::restoreKeptAsideOld(const QString& oldPath)
{
    if (m_strKeptAsideOld.isEmpty())
        return;
    if (!QFileInfo::exists(oldPath))
        QFile::rename(m_strKeptAsideOld, oldPath);
    m_strKeptAsideOld.clear();
}

QString VTBackup::keepAside(const QString& filePath)
{
    for (int n = 1; n <= s_nMaxKeptAside; ++n) {
        const QString candidate = QStringLiteral("%1.%2").arg(filePath).arg(n);
        if (QFileInfo::exists(candidate) || QFileInfo(candidate).isSymLink())
            continue;
        return QFile::rename(filePath, candidate) ? candidate : QString();
    }
    return {};
}

void VTBackup::warn(const QString& text) const
{
    IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
}
