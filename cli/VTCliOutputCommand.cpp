#include "VTCliOutputCommand.h"

#include "VTCliProject.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

bool VTCliOutputCommand::isOutputTaken(const QFileInfo& target) const
{
    return target.exists();
}

int VTCliOutputCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = getUsage();
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    if (arguments.size() != 2 || arguments.at(0).isEmpty() || arguments.at(1).isEmpty()) {
        err << usage << '\n';
        return s_nExitUsage;
    }
    const QString prefix = QStringLiteral("vetra %1: ").arg(getName());
    const QFileInfo target(arguments.at(1));
    const QString outPath = target.absoluteFilePath();
    if (target.suffix().toLower() != getOutputSuffix()) {
        err << prefix << tr("OUT must name a .%1 file.").arg(getOutputSuffix()) << '\n';
        return s_nExitUsage;
    }
    if (isOutputTaken(target)) {
        err << prefix << tr("%1 exists already; choose a new name.").arg(QDir::toNativeSeparators(outPath))
            << '\n';
        return s_nExitFailure;
    }
    if (!QDir().mkpath(target.absolutePath())) {
        err << prefix
            << tr("cannot create the folder %1.").arg(QDir::toNativeSeparators(target.absolutePath()))
            << '\n';
        return s_nExitFailure;
    }

    const VTCliProject project(arguments.at(0), err);
    if (!project.isOpen())
        return s_nExitFailure;
    if (!write(project.getDocument(), outPath)) {
        err << QDir::toNativeSeparators(outPath) << ": " << getFailureText() << '\n';
        return s_nExitFailure;
    }
    out << QDir::toNativeSeparators(outPath) << '\n';
    return s_nExitSuccess;
}
