#pragma once

#include "ICopyProgress.h"

#include <QString>

class IDocument;

// The dialogs the model needs from the user interface. The studio installs its widget
// implementation, the command-line tool and the tests their own; until then every dialog is
// refused, so model code never blocks on a window that nobody can see.
class IProjectDialogs
{
public:
    virtual ~IProjectDialogs() = default;

    // The short name-and-location dialog of "Save As" and "Import Project". On acceptance
    // *pFilePath is the absolute project file path <location>/<name>/<name>.vetra, whose folder
    // exists. Returns false when the user cancels.
    virtual bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                                    QString* pFilePath) = 0;

    // A progress display for a copy of nTotalBytes; null shows nothing and the copy cannot be
    // cancelled. Only copies above VTResourceManager::getMinimumDatasizeToShow() ask.
    virtual ICopyProgress* createCopyProgress(const QString& label, qint64 nTotalBytes)
    {
        Q_UNUSED(label)
        Q_UNUSED(nTotalBytes)
        return nullptr;
    }

    // What to do with the backup N.vetrabak found beside a project N.vetra about to open.
    enum class BackupChoice
    {
        // Work on the backup in place of the project file; the last saved file waits as N.vetra.old.
        OpenBackup,
        // The backup as a second, temporary project N-backup.vetra, and the last saved one.
        OpenBoth,
        // Remove the backup and open the last saved project.
        OpenLastSaved,
        // Do not open.
        Cancel,
        // Open the last saved project and leave the backup untouched. Never offered to a user: it
        // is the answer of whoever cannot ask one, and it loses nothing.
        OpenLastSavedKeepBackup,
    };
    virtual BackupChoice askBackupRecovery(const QString& projectFilePath)
    {
        Q_UNUSED(projectFilePath)
        return BackupChoice::OpenLastSavedKeepBackup;
    }

    // Hands over a document that was opened beside the one being opened (the backup copy of
    // OpenBoth), so that it gets an editor of its own. True takes ownership; on false the caller
    // keeps it.
    virtual bool addOpenedDocument(IDocument* pDocument)
    {
        Q_UNUSED(pDocument)
        return false;
    }

    // Never null.
    static IProjectDialogs* instance();
    // Does not take ownership; nullptr restores the refusing default.
    static void setInstance(IProjectDialogs* pDialogs);
};
