#pragma once

#include <QCoreApplication>
#include <QString>

class VTDocument;

// The backup of a project's unsaved state, and its recovery. The backup N.vetrabak lies beside
// the project file N.vetra and never replaces it by itself: only the user's choice at the next
// open does, and then the last saved file waits as N.vetra.old until the user decides at close.
//
// Every sequence of renames undoes its earlier steps when a later one fails, and no rename lands
// on a file that exists: whatever is in the way is first kept under a free name "<name>.<n>". So
// the last saved project and the backup are each on disk in one piece at every moment.
class VTBackup final
{
    Q_DECLARE_TR_FUNCTIONS(VTBackup)
public:
    explicit VTBackup(VTDocument& document);
    VTBackup(const VTBackup&) = delete;
    VTBackup& operator=(const VTBackup&) = delete;

    // N.vetra.old: the last saved file while a backup stands in its place.
    static QString getOldFilePath(const QString& projectFilePath);
    // N-backup.vetra and N-backup_res: the backup as a project of its own ("Open Both").
    static QString getBackupProjectFilePath(const QString& projectFilePath);
    static QString getBackupResourceFolderPath(const QString& projectFilePath);

    // Writes N.vetrabak from the unsaved state. False for a clean document and on any failure,
    // which leaves an earlier backup as it was. Reports nothing: the timer tries again.
    bool write();

    // Before projectFilePath is read: when a backup lies beside it, asks what to do and does it.
    // False cancels the open.
    bool recoverBeforeOpen(const QString& projectFilePath);
    // The open after "Open Backup" failed: the backup and the last saved file get their names back.
    void abandonOpenBackup(const QString& projectFilePath);

    // Closing a document that stands on a backup: keep the backup version by saving it, or go
    // back to the last saved file. False cancels the close.
    bool confirmClose();

    // Puts N.vetra.old back as projectFilePath and discards what stood there. With bKeepLocks the
    // document goes on holding the files (the restored one afterwards); without, it lets go of
    // them, as after a save under a new name. False when there is no .old file or a rename failed,
    // and then both files are as they were.
    bool restoreLastSaved(const QString& projectFilePath, bool bKeepLocks);

private:
    bool openBackup(const QString& projectFilePath);
    bool openBoth(const QString& projectFilePath);
    // The .old file that openBackup found in its way goes back to its name, if that is free.
    void restoreKeptAsideOld(const QString& oldPath);
    // Renames filePath to the first free "<filePath>.<n>"; the new path, or empty on failure.
    static QString keepAside(const QString& filePath);
    void warn(const QString& text) const;

    VTDocument& m_document;
    QString m_strKeptAsideOld;
};
