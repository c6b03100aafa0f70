#pragma once

#include "IProjectDialogs.h"

// The model's project dialogs as widgets: the short form of VTNewProjectDialog, modal on the
// active window.
class VTProjectDialogs final : public IProjectDialogs
{
public:
    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override;
    // A VTCopyProgressDialog on the main window; the caller owns it.
    ICopyProgress* createCopyProgress(const QString& label, qint64 nTotalBytes) override;
};
