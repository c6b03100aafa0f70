#include "VTValuesCommand.h"

#include "VTAnimationValues.h"
#include "VTBreakpointManager.h"
#include "VTCliProject.h"
#include "VTDocument.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QTextStream>

namespace {

struct Options
{
    QString file;
    QString scene;
    QString timeline;
    int nTime = -1;
    bool bLayout = false;
    VTLayoutKey layout;
};

// Empty on success, else the message.
QString parseOptions(const QStringList& arguments, Options& options)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        auto next = [&](QString& value) {
            if (i + 1 >= arguments.size())
                return false;
            value = arguments.at(++i);
            return true;
        };
        QString value;
        if (argument == QLatin1String("--scene")) {
            if (!next(options.scene))
                return VTValuesCommand::tr("--scene needs a scene number or name");
        } else if (argument == QLatin1String("--timeline")) {
            if (!next(options.timeline))
                return VTValuesCommand::tr("--timeline needs a name");
        } else if (argument == QLatin1String("--time")) {
            bool bOk = false;
            if (!next(value) || (options.nTime = value.toInt(&bOk), !bOk) || options.nTime < 0)
                return VTValuesCommand::tr("--time needs a time in milliseconds, 0 or more");
        } else if (argument == QLatin1String("--layout")) {
            const QStringList parts = next(value) ? value.split(QLatin1Char(',')) : QStringList();
            bool bOkH = false;
            bool bOkV = false;
            if (parts.size() == 2)
                options.layout =
                    VTLayoutKey(parts.at(0).trimmed().toInt(&bOkH), parts.at(1).trimmed().toInt(&bOkV));
            if (!bOkH || !bOkV)
                return VTValuesCommand::tr("--layout needs two breakpoint ids, as in 1,0");
            options.bLayout = true;
        } else if (argument.startsWith(QLatin1String("--")) || !options.file.isEmpty()) {
            return VTValuesCommand::tr("unknown argument \"%1\"").arg(argument);
        } else {
            options.file = argument;
        }
    }
    if (options.file.isEmpty())
        return VTValuesCommand::tr("no project given");
    if (options.nTime < 0)
        return VTValuesCommand::tr("--time is required");
    return QString();
}

} // namespace

QString VTValuesCommand::getSummary() const
{
    return tr("Print the animated values of a scene at a time, as JSON");
}

int VTValuesCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = getUsage();
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    Options options;
    const QString error = parseOptions(arguments, options);
    if (!error.isEmpty()) {
        err << "vetra values: " << error << '\n' << usage << '\n';
        return s_nExitUsage;
    }

    const VTCliProject project(options.file, err);
    if (!project.isOpen())
        return s_nExitFailure;
    VTDocument& document = project.getDocument();
    const QList<VTScene*>& lstScenes = document.getSceneManager()->getScenes();
    VTScene* pScene = nullptr;
    int nIndex = 0;
    bool bNumber = false;
    const int nNumber = options.scene.toInt(&bNumber);
    for (int i = 0; i < lstScenes.size() && !pScene; ++i) {
        const bool bMatch = options.scene.isEmpty()
                                ? i == 0
                                : (bNumber ? nNumber == i + 1 : lstScenes.at(i)->getName() == options.scene);
        if (bMatch) {
            pScene = lstScenes.at(i);
            nIndex = i + 1;
        }
    }
    if (options.bLayout &&
        !document.getBreakpointManager()->getAllBreakpointIds(true).contains(options.layout)) {
        err << "vetra values: "
            << tr("the project has no layout %1,%2").arg(options.layout.first).arg(options.layout.second)
            << '\n';
        return s_nExitFailure;
    }
    if (!pScene) {
        err << "vetra values: " << tr("the project has no scene \"%1\"").arg(options.scene) << '\n';
        return s_nExitFailure;
    }
    // The layout first: the timeline follows the scene into it.
    document.setResponsiveMode(options.bLayout);
    if (options.bLayout)
        document.setCurrentLayoutId(options.layout);
    VTTimelineManager* pTimelines = pScene->getTimelineManager();
    VTTimeline* pTimeline = options.timeline.isEmpty() ? pTimelines->getMainTimeline()
                                                       : pTimelines->findTimelineByName(options.timeline);
    if (!pTimeline) {
        err << "vetra values: " << tr("the scene has no timeline \"%1\"").arg(options.timeline) << '\n';
        return s_nExitFailure;
    }
    const QJsonObject values = VTAnimationValues::compute(pScene, nIndex, pTimeline, options.nTime);
    out << QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Indented));
    return s_nExitSuccess;
}
