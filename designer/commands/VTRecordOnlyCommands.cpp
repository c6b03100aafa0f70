#include "VTRecordOnlyCommands.h"

#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTTimeline.h"

namespace {

void runAlone(VTDocument* pDocument, VTCommandAction* pAction, QObject* pSender = nullptr)
{
    VTCommand command(pDocument, QString(), pSender);
    // These run from pause() itself, and from playback that must go on.
    command.setNeedPauseTimeline(false);
    command.addAction(pAction);
    command.doCmd();
}

void runPlaybackMark(VTDocument* pDocument, int nId, VTTimeline* pTimeline)
{
    if (!pDocument || !pTimeline)
        return;
    auto* pAction = new VTCommandAction(nId, pDocument, 2);
    pAction->addParam(pTimeline, false);
    pAction->addParam(pTimeline->getCurrentTime());
    runAlone(pDocument, pAction);
}

} // namespace

void VTRecordOnlyCommands::timelinePlayed(VTDocument* pDocument, VTTimeline* pTimeline)
{
    runPlaybackMark(pDocument, VTCommandAction::TimelinePlayed, pTimeline);
}

void VTRecordOnlyCommands::timelinePaused(VTDocument* pDocument, VTTimeline* pTimeline)
{
    runPlaybackMark(pDocument, VTCommandAction::TimelinePaused, pTimeline);
}

void VTRecordOnlyCommands::timeChanged(VTDocument* pDocument, int nTime, bool bSeeking, QObject* pSender)
{
    if (!pDocument)
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::TimeChanged, pDocument, 2, true);
    pAction->addParam(nTime);
    pAction->addParam(bSeeking);
    runAlone(pDocument, pAction, pSender);
}

void VTRecordOnlyCommands::stopAllTasks(VTDocument* pDocument)
{
    if (pDocument)
        runAlone(pDocument, new VTCommandAction(VTCommandAction::StopAllTasks, pDocument));
}
