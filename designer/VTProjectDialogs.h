#pragma once

#include "IProjectDialogs.h"

// The model's project dialogs as widgets: the short form of VTNewProjectDialog, modal on the
// active window.
class VTProjectDialogs final : public IProjectDialogs
{
public:
    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override;
};
