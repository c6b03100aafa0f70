#pragma once

#include <QString>
#include <QStringList>
#include <QVariantAnimation>

#include <functional>
#include <memory>

class QJsonArray;
class VTEventListener;
class VTEventListenerList;

// The playback marks of a media or symbol element on one timeline: the actions that start, play,
// play from a position, pause and pause at a position the element's own time while the timeline
// runs. Each mark is an event listener whose event data holds "action_time" (ms on the timeline)
// and whose action data holds "speed" (signed percent), "time" (a position in ms, or for a symbol a
// label name) and, written by updatePlayback, "duration" (ms of timeline the mark's run takes).
//
// The element itself is not known here: the caller passes D, the length of what the element plays
// (the media's duration, or the symbol's timeline length at its shown size), and a lookup for
// symbol labels. The marks are kept sorted by "action_time"; equal times keep insertion order.
//
// As a Qt animation it is the "Playback" row of its timeline: its duration is where the last run
// ends, and it writes nothing while the timeline plays.
//
// Player entries (appendPlaybacksData), one JSON object per mark in list order:
//   {"el": element id, "p": "pb", "t": start on the timeline in ms, "d": run length on the timeline
//    in ms, "a": [action type, start position in ms, speed factor]}
// - "t" is never below the previous entry's "t".
// - "d" of an entry is already shortened where the next mark cuts the run short; 0 for pauses.
// - "a"[0] is the action type of the mark (20 to 24 for a symbol, 40 to 44 for media), except that a
//   Play whose run cannot continue from where the element stands (forward at the end, backward at
//   0) is sent as the Start type of its family (20 or 40), since it restarts from an end.
// - "a"[1] is the element position in ms at which the run starts; for a pause, where the element
//   stays. Always within 0..D.
// - "a"[2], only for Start, Play and Play From, is speed / 100 as a double, negative for backward;
//   a mark without a usable speed (missing, not a number, or 0) repeats the previous run's speed,
//   100 % before the first.
// A run starting at "a"[1] with that factor reaches its end (D forward, 0 backward) after "d" ms
// unless the entry's "d" was shortened by the next mark.
class VTPlayback final : public QVariantAnimation
{
    Q_OBJECT
public:
    // The time of a label on the played symbol's main timeline, -1 when unknown. Empty for media.
    using LabelLookup = std::function<int(const QString&)>;

    // The step of a playback action, the same for the symbol family (20 to 24) and the media one
    // (40 to 44).
    enum PlaybackKind
    {
        NoPlaybackKind = -1,
        StartKind = 0,
        PlayKind = 1,
        PlayFromKind = 2,
        PauseKind = 3,
        PauseAtKind = 4
    };

    explicit VTPlayback(QObject* pParent = nullptr);
    ~VTPlayback() override;

    // Owned, kept sorted by "action_time". Editing times through it directly breaks the order;
    // use changeActionTime or moveAllEvents.
    VTEventListenerList* getEventListenerList() const;
    // Takes ownership and inserts in front of the first mark with a later time. A null listener or
    // one already here is ignored.
    void addEventListener(VTEventListener* pListener);
    // Hands the listener back without deleting it; false when it was not here.
    bool detachEventListener(VTEventListener* pListener);
    // The first mark at exactly that time, or null.
    VTEventListener* getEventlistener(int nTime) const;
    // The mark's event data becomes {"action_time": nTime} and the mark moves to its place in the
    // order. A listener that is not here is left alone.
    void changeActionTime(VTEventListener* pListener, int nTime);
    // Shifts every mark; times stop at the ends of the int range. Call updatePlayback afterwards.
    void moveAllEvents(int nDelta);

    // Writes "duration" into each mark's action data for an element that plays nPlaybackDuration
    // ms, cuts each run that the next mark interrupts, and sets the Qt duration to where the last
    // run ends. Call after every change of the marks, of D or of the symbol's labels.
    void updatePlayback(int nPlaybackDuration, const LabelLookup& lookupLabel);
    // Appends the player entries described above.
    void appendPlaybacksData(QJsonArray& array, int nElementId, int nPlaybackDuration,
                             const LabelLookup& lookupLabel) const;

    // The project form: the marks' listener objects in list order.
    void serialize(QJsonArray& array) const;
    // Replaces the marks with those of the array. Items that are not objects, listeners whose action
    // is not a playback action (20 to 24, 40 to 44) and those without a numeric "action_time" are
    // left out; a time that is not a whole number in the int range is truncated and clamped. All of
    // it, and what the listener reader replaces, goes to pProblems; returns false when anything
    // did. The marks are sorted by time and the Qt duration becomes the last mark's "action_time"
    // plus its stored "duration" (0 with no mark).
    bool parse(const QJsonArray& array, QStringList* pProblems = nullptr);

    // The first mark's "action_time", -1 with none.
    int getFirstActionTime() const;

    static PlaybackKind getPlaybackKind(int nActionType);
    static bool isPlaybackAction(int nActionType) { return getPlaybackKind(nActionType) != NoPlaybackKind; }

protected:
    // A row on the timeline, nothing to write.
    void updateCurrentValue(const QVariant&) override {}

private:
    void clearEventListeners();

    std::unique_ptr<VTEventListenerList> m_pEventListenerList;
};
