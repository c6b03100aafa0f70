#include "VTDesignerFactory.h"

#include "ICore.h"
#include "MainWindow.h"
#include "PluginManager.h"
#include "VTDocument.h"
#include "VTEditor.h"
#include "VTLocationManager.h"
#include "VTNewProjectDialog.h"
#include "VTOptionsDlg.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

IDocument* VTDesignerFactory::createDocument()
{
    return new VTDocument;
}

IEditor* VTDesignerFactory::createEditor()
{
    return new VTEditor;
}

QStringList VTDesignerFactory::getMimeTypes()
{
    return {QStringLiteral("vetrapack"), QStringLiteral("vetra")};
}

IOptionsDlg* VTDesignerFactory::createOptionDlg()
{
    return new VTOptionsDlg;
}

ICreateDocumentDlg* VTDesignerFactory::getNewProjectDialog()
{
    return new VTNewProjectDialog(ICore::getMainWindow());
}

QString VTDesignerFactory::getOpenFileName()
{
    VTLocationManager* pLocations = VTLocationManager::getInstance();
    QString start = pLocations->getHistoryLocation(VTLocationManager::OpenProject);
    if (!QFileInfo(start).isDir())
        start = pLocations->getDefaultLocation(VTLocationManager::OpenProject);
    const QString filter = tr("Supported Files (*.%1 *.%2);;Project Files (*.%1);;Package Files (*.%2)")
                               .arg(QStringLiteral("vetra"), QStringLiteral("vetrapack"));
    const QString filePath =
        QFileDialog::getOpenFileName(ICore::getMainWindow(), tr("Open Project"), start, filter);
    if (filePath.isEmpty())
        return {};
    pLocations->setHistoryLocation(VTLocationManager::OpenProject, QFileInfo(filePath).absolutePath());
    pLocations->saveSettings();
    return filePath;
}
