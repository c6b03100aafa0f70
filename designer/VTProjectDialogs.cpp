#include "VTProjectDialogs.h"

#include "VTNewProjectDialog.h"

#include <QApplication>

bool VTProjectDialogs::askProjectLocation(const QString& title, const QString& baseName,
                                          const QString& location, QString* pFilePath)
{
    VTNewProjectDialog dialog(title, baseName, location, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString filePath = dialog.getDocumentFileName();
    if (pFilePath)
        *pFilePath = filePath;
    return !filePath.isEmpty();
}
