#pragma once

#include "ICopyProgress.h"

#include <QString>

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

    // Never null.
    static IProjectDialogs* instance();
    // Does not take ownership; nullptr restores the refusing default.
    static void setInstance(IProjectDialogs* pDialogs);
};
