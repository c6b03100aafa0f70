#pragma once

class QObject;
class VTDocument;
class VTTimeline;

// Notices to the views that change nothing in the model: playback started or stopped, the
// playhead moved, the stage page is to finish its running work. Each runs as a command of one
// record-only action outside the undo stack, so the views hear of it the way they hear of every
// change, and it never pauses playback itself.
class VTRecordOnlyCommands final
{
public:
    VTRecordOnlyCommands() = delete;

    // Playback of the timeline started or stopped at its current time.
    static void timelinePlayed(VTDocument* pDocument, VTTimeline* pTimeline);
    static void timelinePaused(VTDocument* pDocument, VTTimeline* pTimeline);
    // The playhead of the current timeline stands at nTime; bSeeking while the user still drags
    // it. pSender is the view that moved it, which does not need to hear of it again.
    static void timeChanged(VTDocument* pDocument, int nTime, bool bSeeking, QObject* pSender);
    // The stage page is asked to finish what it is doing (a drag, a text edit).
    static void stopAllTasks(VTDocument* pDocument);
};
