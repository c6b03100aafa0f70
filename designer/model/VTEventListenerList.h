#pragma once

#include "VTEventListener.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QJsonArray;
class QJsonObject;
class VTDocument;
class VTElement;
class VTFunction;
class VTFunctionManager;
class VTScene;

// An ordered list of event listeners. Elements and scenes are lists themselves; a bare list is the
// document's event list, a timeline's event list, or one trigger on a timeline (whose listeners
// all fire at the same time). The list owns its listeners; a detached one belongs to whoever
// detached it, which is how undo commands keep a listener and put the same object back.
class VTEventListenerList : public QObject
{
    Q_OBJECT
public:
    explicit VTEventListenerList(QObject* pParent = nullptr);
    // A deep copy of every listener, without a Qt parent.
    VTEventListenerList(const VTEventListenerList& other);
    VTEventListenerList& operator=(const VTEventListenerList&) = delete;
    ~VTEventListenerList() override;

    // Takes ownership. An index from 0 to the size inserts there and returns it; any other index
    // appends and returns the last index. A null listener or one already here is refused (-1).
    int addEventListener(VTEventListener* pListener, int nIndex = -1);
    // Hands the listener back without deleting it; returns the former index, or -1.
    int detachEventListener(VTEventListener* pListener);
    int getEventListenerIndex(const VTEventListener* pListener) const;
    // Puts pListener at nIndex and hands back the listener that was there. An index out of range,
    // a null listener or one already here changes nothing and gives null.
    VTEventListener* setEventListner(VTEventListener* pListener, int nIndex);
    QList<VTEventListener*> getEventListeners() const;
    int getEventListenerCount() const { return static_cast<int>(m_lstListeners.size()); }
    VTEventListener* getEventListenerAt(int nIndex) const;
    bool hasEventListeners() const { return !m_lstListeners.empty(); }

    // The project form: one object per listener, in list order.
    void serialize(QJsonArray& array) const;
    // Appends what the array holds; the list is not cleared. An array longer than
    // kMaxEventListenerCount is refused whole and items that are not objects are skipped. All that
    // was dropped or replaced goes to pWarnings; returns false when anything did.
    bool parse(const QJsonArray& array, QStringList* pWarnings = nullptr);
    // The player form: under "e", one array per event from 1 to 199 that has listeners, ascending,
    // each the event number followed by its listeners' player arrays in list order. Nothing is
    // written when skipped or when no listener qualifies; triggers and playback marks never do.
    void serializeToExport(QJsonObject& json, bool bSkip) const;
    // A trigger for the player: appends the first listener's "action_time", then the array of all
    // listeners' player arrays. Nothing when skipped or empty.
    void serializeToExportTrigger(QJsonArray& array, bool bSkip) const;

    // Function references of "Run JavaScript" listeners, when content moves between documents;
    // see VTEventListener. Owners with children recurse after their own list.
    virtual void prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                    const VTFunctionManager* pSourceManager) const;
    virtual void updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                   const VTFunctionManager* pSourceManager);
    // Re-aims element references after a paste. A bare list has no element tree to look ids up
    // in, so it does nothing here: the element layer overrides this, resolves the map and the
    // scene into ids and calls remapElementTargets on its own list, then on its children.
    virtual void updateTargetIds(const QMap<int, VTElement*>& mapElements, VTScene* pScene);
    // Which events the owner can raise; a bare list accepts none for paste.
    virtual bool isSupportedEventType(VTEventListener::EventType nEventType) const;
    // Whether a listener pasted from pSourceScene makes sense here, adjusting its references.
    // Only elements and scenes receive pasted listeners; a bare list refuses. Their overrides
    // build the two VTEventListener::PasteContext sides and call VTEventListener::adaptToScene.
    virtual bool isAcceptEventAction(VTEventListener*& pListener, VTScene* pSourceScene,
                                     VTDocument* pDocument);

    // VTEventListener::updateTargetId on every listener; returns how many changed.
    int remapElementTargets(const QMap<int, int>& mapNewIds, const std::function<bool(int)>& fnIsInScene);

    // Player event groups hold events 1 to 199; 200 and up go elsewhere or nowhere.
    static constexpr int kLastExportedEventType = 199;
    // A list in a file longer than this is refused; real owners hold a handful.
    static constexpr int kMaxEventListenerCount = 10000;

private:
    std::vector<std::unique_ptr<VTEventListener>> m_lstListeners;
};
