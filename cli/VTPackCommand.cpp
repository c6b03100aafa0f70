#include "VTPackCommand.h"

#include "VTCliProject.h"
#include "VTDocument.h"
#include "VTPackage.h"
#include "VTProjectPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

QString VTPackCommand::getSummary() const
{
    return tr("Open a project and write it with its resources as one package file OUT, as \"Save as "
              "Package\" does");
}

int VTPackCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = tr("Usage: vetra pack FILE OUT.%1").arg(VTProjectPaths::getPackageSuffix());
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
    if (target.suffix().toLower() != VTProjectPaths::getPackageSuffix()) {
        err << tr("vetra pack: OUT must name a .%1 file.").arg(VTProjectPaths::getPackageSuffix()) << '\n';
        return s_nExitUsage;
    }
    if (target.exists()) {
        // The studio asks before it replaces a file; here no one can be asked.
        err << tr("vetra pack: %1 exists already; choose a new name.").arg(QDir::toNativeSeparators(outPath))
            << '\n';
        return s_nExitFailure;
    }
    if (!QDir().mkpath(target.absolutePath())) {
        err << tr("vetra pack: cannot create the folder %1.")
                   .arg(QDir::toNativeSeparators(target.absolutePath()))
            << '\n';
        return s_nExitFailure;
    }

    const VTCliProject project(inPath, err);
    if (!project.isOpen())
        return s_nExitFailure;
    if (!VTPackage::save(project.getDocument(), outPath, false)) {
        err << QDir::toNativeSeparators(outPath) << ": " << tr("not written") << '\n';
        return s_nExitFailure;
    }
    out << QDir::toNativeSeparators(outPath) << '\n';
    return s_nExitSuccess;
}
