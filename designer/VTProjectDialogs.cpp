#include "VTProjectDialogs.h"

#include "ICore.h"
#include "MainWindow.h"
#include "VTCopyProgressDialog.h"
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

ICopyProgress* VTProjectDialogs::createCopyProgress(const QString& label, qint64 nTotalBytes)
{
    QWidget* pParent = ICore::getMainWindow();
    auto* pDialog = new VTCopyProgressDialog(label, pParent ? pParent : QApplication::activeWindow());
    pDialog->setTotalBytes(nTotalBytes);
    pDialog->show();
    return pDialog;
}
