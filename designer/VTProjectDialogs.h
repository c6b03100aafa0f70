#pragma once

#include "IProjectDialogs.h"

#include <QCoreApplication>

// The model's project dialogs as widgets: the short form of VTNewProjectDialog, modal on the
// active window, and the recovery question as a message box on the main window.
class VTProjectDialogs final : public IProjectDialogs
{
    Q_DECLARE_TR_FUNCTIONS(VTProjectDialogs)
public:
    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override;
    // A VTCopyProgressDialog on the main window; the caller owns it.
    ICopyProgress* createCopyProgress(const QString& label, qint64 nTotalBytes) override;
    // "Open Backup", "Open Both", "Open Last Saved" and Cancel; closing the box cancels.
    BackupChoice askBackupRecovery(const QString& projectFilePath) override;
    // The main window gives the document its editor and owns it from then on.
    bool addOpenedDocument(IDocument* pDocument) override;
};
