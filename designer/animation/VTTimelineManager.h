#pragma once

#include <QCoreApplication>
#include <QList>
#include <QStringList>

class QJsonObject;
class VTScene;
class VTTimeline;

// The timelines of one scene. The first is the main timeline, which the player runs when the
// scene starts; the current one is what the timeline panel edits and the stage shows. The manager
// always holds at least one timeline and owns them all; detachTimeline hands one to the caller.
class VTTimelineManager final
{
    Q_DECLARE_TR_FUNCTIONS(VTTimelineManager)
public:
    // Read limit of a file, far above anything made by hand.
    static constexpr int kMaxTimelineCount = 1000;

    // Starts with one timeline, current, named "Timeline".
    explicit VTTimelineManager(VTScene* pScene);
    ~VTTimelineManager();
    VTTimelineManager(const VTTimelineManager&) = delete;
    VTTimelineManager& operator=(const VTTimelineManager&) = delete;

    VTScene* getScene() const { return m_pScene; }
    const QList<VTTimeline*>& getTimelines() const { return m_lstTimelines; }
    VTTimeline* getMainTimeline() const { return m_lstTimelines.value(0, nullptr); }
    bool isMainTimeline(const VTTimeline* pTimeline) const
    {
        return pTimeline && pTimeline == getMainTimeline();
    }
    // Swaps the timeline with the first one.
    void changeMainTimeline(VTTimeline* pTimeline);
    VTTimeline* getCurrentTimeline() const { return m_pCurrentTimeline; }
    // Seeks the new current timeline to its own time, so the stage shows it.
    void setCurrentTimeline(VTTimeline* pTimeline);
    // Takes ownership and gives an id below 1 the next one; the timeline follows the scene's
    // layout. An index from 0 to the count inserts there, any other appends; returns the index.
    int addTimeline(VTTimeline* pTimeline, int nIndex = -1);
    // Deletes it; the first one left becomes current if it was.
    void removeTimeline(VTTimeline* pTimeline);
    // Hands it to the caller; its former index, or -1.
    int detachTimeline(VTTimeline* pTimeline);
    VTTimeline* findTimelineById(int nId) const;
    VTTimeline* findTimelineByName(const QString& name) const;
    int getNextId() const { return m_nNextId; }

    // "timelines" and "current_timeline".
    void serialize(QJsonObject& json) const;
    // Replaces every timeline. A file without any timeline gets a fresh main timeline, with a note
    // in pProblems; what a timeline cannot read goes there too. False when anything was noted.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);

private:
    void deleteAll();
    VTTimeline* createDefaultTimeline() const;

    VTScene* m_pScene = nullptr;
    QList<VTTimeline*> m_lstTimelines;
    VTTimeline* m_pCurrentTimeline = nullptr;
    int m_nNextId = 1;
};
