#pragma once

#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QEasingCurve>
#include <QList>
#include <QMap>
#include <QParallelAnimationGroup>
#include <QString>
#include <QStringList>
#include <QVector>

class QJsonObject;
class QPauseAnimation;
class VTAnimation;
class VTElement;
class VTEventListenerList;
class VTFunction;
class VTFunctionManager;
class VTKeyframe;
class VTScene;

// One timeline of a scene: the animations of its elements for every layout, labels, triggers,
// the timeline's own events, and the timeline panel's settings.
//
// The group's children are two extents (the last label and the last trigger, so that they
// lengthen the timeline) and the animations of the current layout; the other layouts' animations
// are parked in the map. Qt's timer drives playback; a time reaches the elements through
// applyTime of each animation, which writes every keyframe's value whether or not Qt considers it
// started, so seeking anywhere always leaves the model at the state of that time.
class VTTimeline final : public QParallelAnimationGroup
{
    Q_OBJECT
public:
    enum Grid_Size
    {
        Grid_1PerSecond = 0,
        Grid_2PerSecond,
        Grid_4PerSecond,
        Grid_10PerSecond,
        Grid_15PerSecond,
        Grid_24PerSecond,
        Grid_30PerSecond,
    };
    // Read limits of a file, far above anything made by hand.
    static constexpr int kMaxLabelCount = 10000;
    static constexpr int kMaxTriggerCount = 10000;
    static constexpr int kMaxAnimationCount = 200000;

    explicit VTTimeline(VTScene* pScene);
    ~VTTimeline() override;

    int getId() const { return m_nId; }
    void setId(int nId) { m_nId = nId; }
    QString getName() const { return m_strName; }
    void setName(const QString& name) { m_strName = name; }
    VTScene* getScene() const { return m_pScene; }
    void setScene(VTScene* pScene) { m_pScene = pScene; }
    const QEasingCurve& getCurrentEasingCurve() const { return m_currentEasingCurve; }
    void setCurrentEasingCurve(const QEasingCurve& curve) { m_currentEasingCurve = curve; }
    bool isLoopTimeline() const { return m_bLoop; }
    // Playback starts over at the end while set.
    void setLoopTimeline(bool bLoop)
    {
        m_bLoop = bLoop;
        setLoopCount(bLoop ? -1 : 1);
    }
    bool isOnlyShowAnimElements() const { return m_bOnlyShowAnimElements; }
    void onlyShowAnimElements(bool bOnly) { m_bOnlyShowAnimElements = bOnly; }
    bool isShowSnapping() const { return m_bShowSnapping; }
    void showSnapping(bool bShow) { m_bShowSnapping = bShow; }
    bool isSnapToGrid() const { return m_bSnapToGrid; }
    void snapToGrid(bool bSnap) { m_bSnapToGrid = bSnap; }
    bool isSnapToPlayhead() const { return m_bSnapToPlayhead; }
    void snapToPlayhead(bool bSnap) { m_bSnapToPlayhead = bSnap; }
    bool isSnapToKeyframes() const { return m_bSnapToKeyframes; }
    void snapToKeyframes(bool bSnap) { m_bSnapToKeyframes = bSnap; }
    bool isShowGrid() const { return m_bShowGrid; }
    void showGrid(bool bShow) { m_bShowGrid = bShow; }
    int getGridSize() const { return m_nGridSize; }
    void setGridSize(int nGridSize) { m_nGridSize = nGridSize; }
    double getPixelPerSec() const { return m_dPixelPerSecond; }
    void setPixelPerSec(double dPixels) { m_dPixelPerSecond = dPixels; }

    // Time. Seeking leaves the timeline paused, writes the state of that time into the elements
    // and says timeChanged when the playhead moved.
    int getCurrentTime() const { return m_nCurrentTime; }
    void setCurrentTime(int nTime);
    // Playback from the playhead. Seeks only write the elements (Qt would walk every animation
    // for its duration on each); Qt's own clock is set to the playhead when playback starts.
    void start();
    void resume();
    int getEndTime() const;

    VTLayoutKey getLayoutID() const { return m_layoutId; }
    void setLayoutID(const VTLayoutKey& key);
    QVector<VTAnimation*> getLayoutAnimations(const VTLayoutKey& key) const
    {
        return m_mapLayoutAnimations.value(key);
    }
    const QMap<VTLayoutKey, QVector<VTAnimation*>>& getAllLayoutAnimations() const
    {
        return m_mapLayoutAnimations;
    }
    // The three take and give whole lists; the caller owns what it gets back.
    void addLayoutAnimations(const QVector<VTAnimation*>& vecAnimations, const VTLayoutKey& key);
    QVector<VTAnimation*> removeLayoutAnimations(const VTLayoutKey& key);
    QVector<VTAnimation*> updateLayoutAnimations(const QVector<VTAnimation*>& vecAnimations,
                                                 const VTLayoutKey& key);

    VTAnimation* getAnimation(const VTElement* pElement, const VTLayoutKey& key) const;
    // Takes ownership.
    void addAnimation(VTAnimation* pAnimation, const VTLayoutKey& key);
    // Takes the animation out of the layout; the caller owns it then.
    void removeAnimation(VTAnimation* pAnimation, const VTLayoutKey& key);
    void detachAnimation(VTAnimation* pAnimation, const VTLayoutKey& key)
    {
        removeAnimation(pAnimation, key);
    }
    VTAnimation* detachAnimation(const VTElement* pElement, const VTLayoutKey& key);
    void addPropAnimation(const VTElement* pElement, VTKeyframe* pKeyframe, const VTLayoutKey& key);
    void detachPropAnimation(const VTElement* pElement, VTKeyframe* pKeyframe, const VTLayoutKey& key);

    bool isAnimInherit(const VTElement* pElement, const VTLayoutKey& key) const;
    bool isAnimPropInherit(const VTElement* pElement, VT::ElementProperty nProperty,
                           const VTLayoutKey& key) const;
    bool isAllAnimPropsInheritFromBase(const VTElement* pElement) const;
    bool isAllAnimPropInheritFromBase(const VTElement* pElement, VT::ElementProperty nProperty) const;

    // Whether the current layout animates anything: a key or a playback mark.
    bool hasPropsAnimData() const;

    const QMap<QString, int>& getMapLabel2TS() const { return m_mapLabels; }
    void addLabel(const QString& name, int nTime);
    void setLabelValue(const QString& name, int nTime);
    int getLabelValue(const QString& name) const { return m_mapLabels.value(name, -1); }
    void removeLabel(const QString& name);
    void renameLabel(const QString& oldName, const QString& newName);

    // Takes ownership unless present.
    void addTrigger(VTEventListenerList* pTrigger);
    // Only for an emptied list; the caller owns it then.
    void detachTrigger(VTEventListenerList* pTrigger);
    void changeActionTime(VTEventListenerList* pTrigger, int nTime);
    const QList<VTEventListenerList*>& getTriggers() const { return m_lstTriggers; }
    // By time, one list per distinct time; lists of equal time keep their order.
    QList<VTEventListenerList*> getTriggersSorted() const;
    VTEventListenerList* getEventListenerList() const { return m_pEvents; }

    void prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                            const VTFunctionManager* pManager) const;
    void updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                           const VTFunctionManager* pManager);

    void serialize(QJsonObject& json) const;
    // Whatever cannot be read (animations of missing elements, keyframes that do not apply,
    // damaged labels or triggers) is left out and named in pProblems; false when anything was.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    QVector<VTAnimation*> parseLayoutAnimations(const QJsonObject& json, const VTLayoutKey& key,
                                                QStringList* pProblems = nullptr);
    void serializeToExport(QJsonObject& json, bool bCurrentLayoutOnly, bool bWithEvents) const;

    // QEasingCurve of that type, with our shapes for the two spline types.
    static QEasingCurve createEasingCurve(QEasingCurve::Type nType);
    static QString getGridName(int nGridSize);
    // Grid lines per second; unknown sizes give 1.
    static int getGridValue(int nGridSize);

signals:
    void timeChanged();
    void sceneSizeChanged();
    // While playing, once for each trigger the playhead reaches in a pass, in time order; a
    // trigger at the time where playback starts counts. Seeking reaches none.
    void triggerReached(VTEventListenerList* pTrigger);

protected:
    void updateCurrentTime(int nCurrentTime) override;
    void updateState(QAbstractAnimation::State newState, QAbstractAnimation::State oldState) override;

private:
    void applyTime(int nTime);
    // Leaves Qt's clock paused, from whatever state it is in.
    void pauseQtClock();
    // Puts Qt's clock where the playhead is, paused.
    void syncQtTime();
    // Triggers with a time in (nFrom, nTo].
    void fireTriggers(int nFrom, int nTo);
    void updateLabelsExtent();
    void updateTriggersExtent();
    // Puts the current layout's animations into the group, or takes them out.
    void attachLayout(const VTLayoutKey& key);
    void detachLayout();
    void deleteAllAnimations();
    void appendExportEntries(const QVector<VTAnimation*>& vecAnimations, QJsonArray& entries,
                             QJsonArray* pMotionElements, bool bForEditor) const;

    int m_nId = -1;
    QString m_strName = QStringLiteral("Timeline");
    VTScene* m_pScene = nullptr;
    int m_nCurrentTime = 0;
    // Where the playhead stood at the last update while playing.
    int m_nPassFrom = -1;
    // Qt's loop count at that update.
    int m_nPassLoop = 0;
    QEasingCurve m_currentEasingCurve = QEasingCurve(QEasingCurve::Linear);
    QMap<QString, int> m_mapLabels;
    QList<VTEventListenerList*> m_lstTriggers;
    VTEventListenerList* m_pEvents = nullptr;
    bool m_bUpdateEnabled = true;
    bool m_bQtTimeStale = false;
    bool m_bLoop = false;
    bool m_bOnlyShowAnimElements = false;
    bool m_bShowSnapping = true;
    bool m_bSnapToGrid = true;
    bool m_bSnapToPlayhead = true;
    bool m_bSnapToKeyframes = true;
    bool m_bShowGrid = false;
    int m_nGridSize = Grid_2PerSecond;
    double m_dPixelPerSecond = 50.0;
    QMap<VTLayoutKey, QVector<VTAnimation*>> m_mapLayoutAnimations;
    VTLayoutKey m_layoutId = VTLayoutKey::base();
    QPauseAnimation* m_pLabelsExtent = nullptr;
    QPauseAnimation* m_pTriggersExtent = nullptr;
};
