#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QJsonArray;
class VTFunction;
class VTFunctionManager;

// One handler: when an event happens, perform an action with its data. Listeners are plain
// records; the player does the work, so what matters here is the saved form, the compact array
// the player receives and keeping the ids inside the action data pointing at the right things
// when content is copied.
//
// Event and action numbers from a file are kept even when unknown: they are shown as unknown and
// the player skips them, and saving writes them back untouched.
class VTEventListener
{
    Q_DECLARE_TR_FUNCTIONS(VTEventListener)
public:
    enum EventType : int
    {
        PreloadStart = 1,
        PreloadProgress = 2,
        PreloadComplete = 3,
        PreloadItemStart = 4,
        PreloadItemComplete = 5,
        DocumentCreate = 20,
        DocumentReady = 21,
        DocumentDestroy = 22,
        DocumentScriptError = 23,
        SceneActivate = 50,
        SceneDeactivate = 51,
        Scroll = 52,
        KeyDown = 53,
        KeyUp = 54,
        OrientationChange = 55,
        WindowResize = 56,
        MouseClick = 100,
        MouseDoubleClick = 101,
        MouseOver = 102,
        MouseDown = 103,
        MouseMove = 104,
        MouseUp = 105,
        MouseOut = 106,
        MouseEnter = 107,
        MouseLeave = 108,
        Focus = 109,
        SwipeLeft = 110,
        SwipeRight = 111,
        TimelineUpdate = 150,
        TimelinePlay = 151,
        TimelinePause = 152,
        TimelineComplete = 153,
        TimelineSpeedChange = 154,
        TimelineReverse = 155,
        TimelineSeek = 156,
        Trigger = 200,
        Playback = 201
    };

    enum ActionType : int
    {
        StartTimeline = 1,
        PlayTimeline = 2,
        PlayTimelineFrom = 3,
        PauseTimeline = 4,
        PauseTimelineAt = 5,
        TogglePlayPauseTimeline = 6,
        SeekTimeline = 7,
        StartSymbol = 20,
        PlaySymbol = 21,
        PlaySymbolFrom = 22,
        PauseSymbol = 23,
        PauseSymbolAt = 24,
        TogglePlayPauseSymbol = 25,
        SeekSymbol = 26,
        StartMedia = 40,
        PlayMedia = 41,
        PlayMediaFrom = 42,
        PauseMedia = 43,
        PauseMediaAt = 44,
        MuteMedia = 45,
        MediaVolume = 46,
        ToggleMuteMedia = 47,
        MuteAllMedia = 48,
        TogglePlayPauseMedia = 49,
        SeekMedia = 50,
        PlayVideoFullScreen = 51,
        HideElement = 70,
        ShowElement = 71,
        ToggleHideShowElement = 72,
        JumpToScene = 100,
        GoToURL = 101,
        ChangeText = 102,
        RunJavaScript = 103
    };

    // Who holds a list decides which events the editor offers.
    enum EventOwner
    {
        PreloaderDocumentOwner,
        DocumentOwner,
        SceneOwner,
        ElementOwner,
        TimelineOwner,
        TriggerOwner,
        PlaybackOwner
    };

    // Ids with a meaning of their own inside action data.
    static constexpr int kMainTimelineId = -1;  // timeline_id: the scene's main timeline
    static constexpr int kNoTargetId = -20;     // timeline_id, element_id: nothing chosen yet
    static constexpr int kCurrentSymbolId = -1; // element_id of actions 20 to 26
    static constexpr int kParentSymbolId = -2;
    static constexpr int kDocumentId = -3;
    static constexpr int kNextSceneId = -2; // scene_id
    static constexpr int kPreviousSceneId = -3;
    static constexpr int kLastSceneId = -4;
    static constexpr int kFirstSceneId = -5;
    static constexpr int kNoFunctionId = -1; // function_id

    // A jump to the next scene on a mouse click.
    VTEventListener();
    VTEventListener(EventType nEventType, ActionType nActionType, const QJsonObject& joEventData,
                    const QJsonObject& joActionData);
    VTEventListener(const VTEventListener& other) = default;
    VTEventListener& operator=(const VTEventListener&) = delete;

    // Collects, for a "Run JavaScript" listener, the source manager's function it calls as a key
    // of the map (with no value yet), so the document layer can find or copy it in the target.
    virtual void prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                    const VTFunctionManager* pSourceManager) const;
    // Re-aims function_id at the mapped function, or at no function when the entry has no value.
    // An id the source manager does not know is left alone: it was dangling before the copy.
    virtual void updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                   const VTFunctionManager* pSourceManager);
    virtual ~VTEventListener();
    virtual std::unique_ptr<VTEventListener> clone() const;

    EventType getEventType() const { return m_nEventType; }
    void setEventType(EventType nEventType) { m_nEventType = nEventType; }
    ActionType getActionType() const { return m_nActionType; }
    void setActionType(ActionType nActionType) { m_nActionType = nActionType; }
    // "action_time" for triggers and playback marks, otherwise empty.
    const QJsonObject& getEventData() const { return m_joEventData; }
    void setEventData(const QJsonObject& joEventData) { m_joEventData = joEventData; }
    const QJsonObject& getActionData() const { return m_joActionData; }
    void setActionData(const QJsonObject& joActionData) { m_joActionData = joActionData; }
    // The integer "action_time" of the event data, 0 without one.
    int getActionTime() const;

    bool operator==(const VTEventListener& other) const;
    bool operator!=(const VTEventListener& other) const { return !(*this == other); }

    // Keys "event", "action", "event_value", "action_data".
    void serialize(QJsonObject& json) const;
    // Replaces all four fields. Missing numbers read as 0 and missing objects as empty. Values of
    // the wrong type and action data values that the action cannot use (a label where only a time
    // in milliseconds works, a text for an id...) are replaced by their defaults; those, and
    // unknown event or action numbers, are noted. Returns false when anything was noted.
    // strContext names the listener in the notes ("event listener 3").
    bool parse(const QJsonObject& json, QStringList* pWarnings = nullptr,
               const QString& strContext = QString());
    // Appends the player form: the action number, then the action's parameters by position.
    // Keys missing from the action data are written with the defaults of a new action.
    void serializeToExport(QJsonArray& array) const;

    // Element references after a paste. mapNewIds maps an old element id to the id of its copy;
    // fnIsInScene tells whether the destination scene still holds an id (empty: no scene given).
    // An element_id of -1 stays, a mapped one is replaced, one found in the scene stays, any other
    // becomes -1. Returns whether the data changed.
    bool updateTargetId(const QMap<int, int>& mapNewIds, const std::function<bool(int)>& fnIsInScene);

    // One side of a paste of listeners between scenes, as the acceptance rules see it: pairs of
    // (id, name) in the order in which they are searched. Filled by the element layer from the
    // source scene or from the destination scene.
    struct PasteContext
    {
        bool bHasTimelineManager = false;
        QList<QPair<int, QString>> lstTimelines;
        // Every descendant of the scene, in tree order.
        QList<QPair<int, QString>> lstElements;
        bool bHasSceneManager = false;
        QList<QPair<int, QString>> lstScenes;
        // The functions of the scene's symbol; null when there is no symbol or no manager.
        const VTFunctionManager* pFunctionManager = nullptr;
        // Only read on the destination: parent symbol and document targets make no sense in the
        // document's root symbol.
        bool bIsRootSymbol = true;
    };
    // Whether the action still makes sense once moved from the source scene to the destination.
    // A reference that can be carried over by name is rewritten in place, and only on acceptance.
    bool adaptToScene(const PasteContext& source, const PasteContext& destination);

    static QString getEventName(EventType nEventType);
    static QString getActionName(ActionType nActionType);
    // "Timeline", "Symbol", "Media", "Hide/Show", "Other Actions"; empty for unknown numbers.
    static QString getActionGroupName(ActionType nActionType);
    static bool isKnownEventType(int nEventType);
    static bool isKnownActionType(int nActionType);
    // In the order the editor lists them.
    static QList<EventType> getOfferedEventTypes(EventOwner nOwner);
    // All actions in menu order.
    static QList<ActionType> getAllActionTypes();
    // The data a new action gets. With a target, its id fills timeline_id, element_id or
    // scene_id; without one these are -1 (main timeline), -20 (nothing chosen) and -2 (next
    // scene), for the editor to aim at a fitting element of the scene where it can.
    static QJsonObject createDefaultActionData(ActionType nActionType, bool bHasTarget = false,
                                               int nTargetId = 0);

private:
    EventType m_nEventType = MouseClick;
    ActionType m_nActionType = JumpToScene;
    QJsonObject m_joEventData;
    QJsonObject m_joActionData;
};
