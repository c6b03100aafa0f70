#include "VTUnpackCommand.h"

#include "IUtils.h"
#include "VTPackage.h"
#include "VTProjectPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

QString VTUnpackCommand::getSummary() const
{
    return tr("Extract a package into FOLDER as a project (FOLDER must not hold a project yet)");
}

bool VTUnpackCommand::holdsProject(const QString& folder)
{
    const QDir dir(folder);
    const QString projectFilter = QStringLiteral("*.") + VTProjectPaths::getProjectSuffix();
    if (!dir.entryList({projectFilter}, QDir::Files | QDir::Hidden | QDir::System).isEmpty())
        return true;
    const QString resourceFolder =
        VTProjectPaths(VTPackage::getExtractedProjectPath(folder)).getResourceFolderPath();
    return QFileInfo(resourceFolder).isSymLink() ||
           !QDir(resourceFolder)
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
                .isEmpty();
}

int VTUnpackCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = getUsage();
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    if (arguments.size() != 2 || arguments.at(0).isEmpty() || arguments.at(1).isEmpty()) {
        err << usage << '\n';
        return s_nExitUsage;
    }
    const QString packagePath = QFileInfo(arguments.at(0)).absoluteFilePath();
    const QString folder = QDir::cleanPath(QFileInfo(arguments.at(1)).absoluteFilePath());
    const QString shownFolder = QDir::toNativeSeparators(folder);
    const QFileInfo folderInfo(folder);
    if (folderInfo.exists() && !folderInfo.isDir()) {
        err << tr("vetra unpack: %1 is not a folder.").arg(shownFolder) << '\n';
        return s_nExitFailure;
    }
    if (folderInfo.isDir() && holdsProject(folder)) {
        err << tr("vetra unpack: %1 holds a project already; choose an empty folder.").arg(shownFolder)
            << '\n';
        return s_nExitFailure;
    }

    // What this run makes, it takes back when the extraction fails, and nothing else.
    const QString projectPath = VTPackage::getExtractedProjectPath(folder);
    const QString resourceFolder = VTProjectPaths(projectPath).getResourceFolderPath();
    const bool bFolderExisted = folderInfo.isDir();
    const bool bResourceFolderExisted = QFileInfo(resourceFolder).isDir();
    if (!bFolderExisted && !QDir().mkpath(folder)) {
        err << tr("vetra unpack: cannot create the folder %1.").arg(shownFolder) << '\n';
        return s_nExitFailure;
    }
    QStringList problems;
    const bool bExtracted = VTPackage::extract(packagePath, folder, &problems);
    for (const QString& problem : problems)
        err << QDir::toNativeSeparators(packagePath) << ": " << problem << '\n';
    if (!bExtracted) {
        if (!bFolderExisted) {
            IUtils::removeDir(folder);
        } else {
            QFile::remove(projectPath);
            if (!bResourceFolderExisted)
                IUtils::removeDir(resourceFolder);
        }
        err << QDir::toNativeSeparators(packagePath) << ": " << tr("not extracted") << '\n';
        return s_nExitFailure;
    }
    out << QDir::toNativeSeparators(projectPath) << '\n';
    return s_nExitSuccess;
}
