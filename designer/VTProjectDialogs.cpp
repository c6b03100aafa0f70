#include "VTProjectDialogs.h"

#include "ICore.h"
#include "IUi.h"
#include "IUtils.h"
#include "MainWindow.h"
#include "VTCopyProgressDialog.h"
#include "VTNewProjectDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QScreen>

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

IProjectDialogs::BackupChoice VTProjectDialogs::askBackupRecovery(const QString& projectFilePath)
{
    Q_UNUSED(projectFilePath)
    MainWindow* pWindow = ICore::getMainWindow();
    QMessageBox box(pWindow ? static_cast<QWidget*>(pWindow) : QApplication::activeWindow());
    box.setWindowTitle(IUtils::getApplicationName());
    const QPixmap icon =
        IUi::getInstance()->getPixmap(QStringLiteral("question"), IUi::State_Normal, IUi::Size_32);
    if (icon.isNull())
        box.setIcon(QMessageBox::Question);
    else
        box.setIconPixmap(icon);
    box.setText(tr("The project was closed unexpectedly or the data was corrupted.\n"
                   "Please select an option to continue."));
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Save | QMessageBox::Open | QMessageBox::Cancel);
    box.button(QMessageBox::Ok)->setText(tr("Open Backup"));
    box.button(QMessageBox::Open)->setText(tr("Open Both"));
    box.button(QMessageBox::Save)->setText(tr("Open Last Saved"));
    // Some styles give every button of a box the same fixed width, which cuts the longer texts.
    const QList<QAbstractButton*> buttons = box.buttons();
    for (QAbstractButton* pButton : buttons)
        pButton->setMinimumWidth(pButton->sizeHint().width());
    if (pWindow && pWindow->isMaximized() && pWindow->screen()) {
        box.adjustSize();
        box.move(pWindow->screen()->availableGeometry().center() - box.rect().center());
    }
    switch (box.exec()) {
    case QMessageBox::Ok:
        return BackupChoice::OpenBackup;
    case QMessageBox::Open:
        return BackupChoice::OpenBoth;
    case QMessageBox::Save:
        return BackupChoice::OpenLastSaved;
    default:
        return BackupChoice::Cancel;
    }
}

bool VTProjectDialogs::addOpenedDocument(IDocument* pDocument)
{
    MainWindow* pWindow = ICore::getMainWindow();
    if (!pWindow || !pDocument)
        return false;
    pWindow->loadOpenedDocument(pDocument, true);
    return true;
}
