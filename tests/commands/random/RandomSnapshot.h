#pragma once

#include <QJsonObject>
#include <QSet>
#include <QString>

class VTDocument;
class VTElement;

// The saved form of a project as a random history compares it: what the document writes, with
// every loaded symbol, the preloader, the edited symbols, the selection of each scene and the
// freeforms in point editing beside it, less what a history may change without changing the
// project:
// - the counters of ids ("nextChildId", "nextId", "current_id"), which count up and never back:
//   an id handed out stays taken, so that a command redone after an undo finds its ids free;
// - the order of a layout's animations in a timeline, of an animation's keyframes and of a
//   timeline's triggers, which play side by side or by time, and which an undone removal gives
//   back at the end;
// - the run length ("duration") that a playback mark of a symbol or media element keeps in its
//   action data: it is worked out from the length of what the element plays whenever the marks
//   change, and the length of a symbol's timeline changes with edits inside the symbol that leave
//   the marks alone;
// - a timeline's entry for a layout without animations, which holds nothing and which the removal
//   of the layout's last animation leaves behind;
// - the current layout of a placed symbol: each instance passes the layout it shows on to the
//   symbol, also when the edited symbol changes, which nothing records;
// - the length ("duration") of a timeline, worked out from what the layout shown holds, the run
//   lengths of playback marks (see above) included;
// The plain values of animated properties are left out by the comparison instead (see Animated).
class RandomSnapshot final
{
public:
    RandomSnapshot() = delete;

    static QJsonObject take(const VTDocument& document);

    // Properties that some timeline animates, as "<owner>/<scene id>/<element id>/<property>", the
    // owner being "document", a symbol resource id or "preloader". The plain value of such a
    // property holds the last frame a timeline wrote there: a timeline writes its frame when it
    // becomes current or is sought, and on a change of layout every timeline of the scene does,
    // into whatever layout the element shows. What that value is depends on the way the history
    // went, not only on where it stands; the keys themselves are always compared.
    using Animated = QSet<QString>;
    static Animated animated(const QJsonObject& snapshot);
    // The entry of one property of an element in the model; empty for an element outside a scene.
    static QString animatedKey(const VTDocument& document, const VTElement* pElement, int nProperty);

    // The path of the first place where the two differ, with both values and what surrounds them,
    // leaving out the plain values of the given properties; empty when they are equal.
    static QString firstDifference(const QJsonObject& expected, const QJsonObject& actual,
                                   const Animated& setMask);
};
