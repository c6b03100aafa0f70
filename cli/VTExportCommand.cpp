#include "VTExportCommand.h"

#include "VTCliProject.h"
#include "VTEngine.h"
#include "VTHtmlExporter.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace {

struct Options
{
    QString file;
    QString outDir;
    QString player;
};

// Empty on success, else the message.
QString parseOptions(const QStringList& arguments, Options& options)
{
    QStringList positional;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--player")) {
            if (i + 1 >= arguments.size() || arguments.at(i + 1).isEmpty())
                return VTExportCommand::tr("--player needs a folder");
            options.player = arguments.at(++i);
        } else if (argument.startsWith(QLatin1String("--")) || argument.isEmpty()) {
            return VTExportCommand::tr("unknown argument \"%1\"").arg(argument);
        } else {
            positional.append(argument);
        }
    }
    if (positional.size() != 2)
        return VTExportCommand::tr("FILE and OUTDIR are required");
    options.file = positional.at(0);
    options.outDir = positional.at(1);
    return QString();
}

} // namespace

QString VTExportCommand::getSummary() const
{
    return tr("Open a project and write it as an HTML5 folder OUTDIR, as \"Export to HTML5\" does");
}

int VTExportCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = getUsage();
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    Options options;
    const QString error = parseOptions(arguments, options);
    if (!error.isEmpty()) {
        err << "vetra export: " << error << '\n' << usage << '\n';
        return s_nExitUsage;
    }

    if (!options.player.isEmpty()) {
        const QString player = QFileInfo(options.player).absoluteFilePath();
        // The files an export reads, whatever the player that comes with the tool holds.
        bool bComplete = VTEngine::isValidPath(player);
        for (const QString& name : {VTEngine::getPlayerFileName(), VTEngine::getPageTemplateFileName(),
                                    VTEngine::getStyleTemplateFileName()})
            bComplete = bComplete && QFileInfo(QDir(player).filePath(name)).isFile();
        if (!bComplete) {
            err << "vetra export: "
                << tr("%1 is no player folder: it must hold the player script and its page and style "
                      "sheet templates.")
                       .arg(QDir::toNativeSeparators(player))
                << '\n';
            return s_nExitFailure;
        }
        VTEngine::setPath(player);
    }

    const QFileInfo target(options.outDir);
    const QString outPath = target.absoluteFilePath();
    const bool bTaken = target.exists() &&
                        (!target.isDir() || !QDir(outPath).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot |
                                                                   QDir::Hidden | QDir::System));
    if (bTaken) {
        err << "vetra export: "
            << tr("%1 exists and is not an empty folder; choose a new one.")
                   .arg(QDir::toNativeSeparators(outPath))
            << '\n';
        return s_nExitFailure;
    }

    const VTCliProject project(options.file, err);
    if (!project.isOpen())
        return s_nExitFailure;
    VTHtmlExporter exporter(project.getDocument());
    if (!exporter.exportTo(outPath)) {
        err << QDir::toNativeSeparators(outPath) << ": " << tr("not exported") << '\n';
        return s_nExitFailure;
    }
    out << QDir::toNativeSeparators(exporter.getPageFilePath(outPath)) << '\n';
    return s_nExitSuccess;
}
