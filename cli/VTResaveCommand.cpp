#include "VTResaveCommand.h"

#include "VTCliProject.h"
#include "VTDocument.h"
#include "VTProjectPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

QString VTResaveCommand::getSummary() const
{
    return tr(
        "Open a project and save it as OUT (a new .vetra file) with its resources, as \"Save As\" does");
}

int VTResaveCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = tr("Usage: vetra resave IN OUT");
    if (isHelpRequest(arguments)) {
        out << usage << '\n' << getSummary() << '\n';
        return s_nExitSuccess;
    }
    if (arguments.size() != 2 || arguments.at(0).isEmpty() || arguments.at(1).isEmpty()) {
        err << usage << '\n';
        return s_nExitUsage;
    }
    const QString inPath = QFileInfo(arguments.at(0)).absoluteFilePath();
    const QFileInfo target(arguments.at(1));
    const QString outPath = target.absoluteFilePath();
    if (target.suffix().toLower() != VTProjectPaths::getProjectSuffix()) {
        err << tr("vetra resave: OUT must name a .%1 file.").arg(VTProjectPaths::getProjectSuffix()) << '\n';
        return s_nExitUsage;
    }
    if (target.exists() ||
        QFileInfo::exists(
            QDir(target.absolutePath()).filePath(target.completeBaseName() + QStringLiteral("_res")))) {
        // Replacing a project is a decision a user makes in the studio, not a side effect of a check.
        err << tr("vetra resave: %1 exists already; choose a new name.")
                   .arg(QDir::toNativeSeparators(outPath))
            << '\n';
        return s_nExitFailure;
    }
    // As the studio's dialog does, the folder of the new project is made when it is missing.
    if (!QDir().mkpath(target.absolutePath())) {
        err << tr("vetra resave: cannot create the folder %1.")
                   .arg(QDir::toNativeSeparators(target.absolutePath()))
            << '\n';
        return s_nExitFailure;
    }

    const VTCliProject project(inPath, err);
    if (!project.isOpen())
        return s_nExitFailure;
    if (!project.getDocument().save(outPath)) {
        err << QDir::toNativeSeparators(outPath) << ": " << tr("not saved") << '\n';
        return s_nExitFailure;
    }
    out << QDir::toNativeSeparators(outPath) << '\n';
    return s_nExitSuccess;
}
