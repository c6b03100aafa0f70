#include "VTEventListener.h"

#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonValue>

#include <cmath>
#include <optional>

namespace {

const QString kTimelineId = QStringLiteral("timeline_id");
const QString kElementId = QStringLiteral("element_id");
const QString kSceneId = QStringLiteral("scene_id");
const QString kFunctionId = QStringLiteral("function_id");
const QString kSpeed = QStringLiteral("speed");
const QString kTime = QStringLiteral("time");
const QString kVolume = QStringLiteral("volume");
const QString kTransDefault = QStringLiteral("trans_default");
const QString kTransType = QStringLiteral("trans_type");
const QString kTransDuration = QStringLiteral("trans_duration");
const QString kTransEasing = QStringLiteral("trans_easing");
const QString kTransDirection = QStringLiteral("trans_direction");
const QString kUrl = QStringLiteral("url");
const QString kNewWindow = QStringLiteral("new_window");
const QString kText = QStringLiteral("text");
const QString kActionTime = QStringLiteral("action_time");

// The "Push" transition is the only one that slides in from a side.
constexpr int kPushTransition = 2;

enum class ValueKind
{
    Integer,     // ids, milliseconds, enumeration numbers
    Number,      // speed and volume percentages
    TimeOrLabel, // milliseconds, or the name of a timeline label
    Bool,
    Text
};

struct ActionKey
{
    QString strKey;
    ValueKind nKind;
};

// The keys each action uses. Whatever else the data holds is left alone.
QList<ActionKey> getActionKeys(int nActionType)
{
    using VTE = VTEventListener;
    switch (nActionType) {
    case VTE::StartTimeline:
    case VTE::PlayTimeline:
        return {{kTimelineId, ValueKind::Integer}, {kSpeed, ValueKind::Number}};
    case VTE::PlayTimelineFrom:
        return {
            {kTimelineId, ValueKind::Integer}, {kSpeed, ValueKind::Number}, {kTime, ValueKind::TimeOrLabel}};
    case VTE::PauseTimeline:
    case VTE::TogglePlayPauseTimeline:
        return {{kTimelineId, ValueKind::Integer}};
    case VTE::PauseTimelineAt:
    case VTE::SeekTimeline:
        return {{kTimelineId, ValueKind::Integer}, {kTime, ValueKind::TimeOrLabel}};
    case VTE::StartSymbol:
    case VTE::PlaySymbol:
    case VTE::StartMedia:
    case VTE::PlayMedia:
        return {{kElementId, ValueKind::Integer}, {kSpeed, ValueKind::Number}};
    case VTE::PlaySymbolFrom:
        return {
            {kElementId, ValueKind::Integer}, {kSpeed, ValueKind::Number}, {kTime, ValueKind::TimeOrLabel}};
    case VTE::PauseSymbolAt:
    case VTE::SeekSymbol:
        return {{kElementId, ValueKind::Integer}, {kTime, ValueKind::TimeOrLabel}};
    // The player seeks media by milliseconds only; labels belong to timelines.
    case VTE::PlayMediaFrom:
        return {{kElementId, ValueKind::Integer}, {kTime, ValueKind::Integer}, {kSpeed, ValueKind::Number}};
    case VTE::PauseMediaAt:
    case VTE::SeekMedia:
        return {{kElementId, ValueKind::Integer}, {kTime, ValueKind::Integer}};
    case VTE::MediaVolume:
        return {{kElementId, ValueKind::Integer}, {kVolume, ValueKind::Number}};
    case VTE::PauseSymbol:
    case VTE::TogglePlayPauseSymbol:
    case VTE::PauseMedia:
    case VTE::MuteMedia:
    case VTE::ToggleMuteMedia:
    case VTE::TogglePlayPauseMedia:
    case VTE::PlayVideoFullScreen:
    case VTE::HideElement:
    case VTE::ShowElement:
    case VTE::ToggleHideShowElement:
        return {{kElementId, ValueKind::Integer}};
    case VTE::JumpToScene:
        return {{kSceneId, ValueKind::Integer},     {kTransDefault, ValueKind::Bool},
                {kTransType, ValueKind::Integer},   {kTransDuration, ValueKind::Integer},
                {kTransEasing, ValueKind::Integer}, {kTransDirection, ValueKind::Integer}};
    case VTE::GoToURL:
        return {{kUrl, ValueKind::Text}, {kNewWindow, ValueKind::Bool}};
    case VTE::ChangeText:
        return {{kElementId, ValueKind::Integer}, {kText, ValueKind::Text}};
    case VTE::RunJavaScript:
        return {{kFunctionId, ValueKind::Integer}};
    default:
        break;
    }
    return {};
}

// What a new action holds before any target is chosen; also what a missing key stands for.
QJsonValue getDefaultValue(const QString& strKey)
{
    static const QMap<QString, QJsonValue> s_mapDefaults = {
        {kTimelineId, VTEventListener::kMainTimelineId},
        {kElementId, VTEventListener::kNoTargetId},
        {kSceneId, VTEventListener::kNextSceneId},
        {kFunctionId, VTEventListener::kNoFunctionId},
        {kSpeed, 100},
        {kTime, 0},
        {kVolume, 100},
        {kTransDefault, true},
        {kTransType, 0},
        {kTransDuration, 0},
        {kTransEasing, -1},
        {kTransDirection, -1},
        {kUrl, QStringLiteral("https://")},
        {kNewWindow, true},
        {kText, QString()},
        {kActionTime, 0},
    };
    return s_mapDefaults.value(strKey);
}

bool isOfKind(const QJsonValue& value, ValueKind nKind)
{
    switch (nKind) {
    case ValueKind::Integer:
        return VTJsonReader::isInt(value);
    case ValueKind::Number:
        return value.isDouble();
    case ValueKind::TimeOrLabel:
        return VTJsonReader::isInt(value) || value.isString();
    case ValueKind::Bool:
        return value.isBool();
    case ValueKind::Text:
        return value.isString();
    }
    return false;
}

QString describeKind(ValueKind nKind)
{
    switch (nKind) {
    case ValueKind::Integer:
        return VTEventListener::tr("a whole number");
    case ValueKind::Number:
        return VTEventListener::tr("a number");
    case ValueKind::TimeOrLabel:
        return VTEventListener::tr("a time in milliseconds or a label name");
    case ValueKind::Bool:
        return VTEventListener::tr("true or false");
    case ValueKind::Text:
        return VTEventListener::tr("a text");
    }
    return QString();
}

// How a replacement value is named in a load note.
QString describeFallback(const QJsonValue& value)
{
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (value.isString())
        return value.toString().isEmpty() ? VTEventListener::tr("an empty text")
                                          : QStringLiteral("\"%1\"").arg(value.toString());
    return QString::number(value.toDouble());
}

int readInt(const QJsonObject& joData, const QString& strKey)
{
    const QJsonValue value = joData.value(strKey);
    return VTJsonReader::isInt(value) ? value.toInt() : getDefaultValue(strKey).toInt();
}

double readNumber(const QJsonObject& joData, const QString& strKey)
{
    const QJsonValue value = joData.value(strKey);
    return value.isDouble() ? value.toDouble() : getDefaultValue(strKey).toDouble();
}

bool readBool(const QJsonObject& joData, const QString& strKey)
{
    const QJsonValue value = joData.value(strKey);
    return value.isBool() ? value.toBool() : getDefaultValue(strKey).toBool();
}

QString readText(const QJsonObject& joData, const QString& strKey)
{
    const QJsonValue value = joData.value(strKey);
    return value.isString() ? value.toString() : getDefaultValue(strKey).toString();
}

// A label travels as its name; the player looks it up on the target timeline.
QJsonValue readTimeItem(const QJsonObject& joData)
{
    const QJsonValue value = joData.value(kTime);
    return value.isString() ? value : QJsonValue(readInt(joData, kTime));
}

// Timelines and symbols take the rate and the direction apart.
void appendSpeedPair(QJsonArray& array, const QJsonObject& joData)
{
    const double dSpeed = readNumber(joData, kSpeed);
    array.append(std::abs(dSpeed) / 100.0);
    array.append(dSpeed < 0 ? 1 : 0);
}

// The id of the first item of lstTo that bears the name of item nId of lstFrom.
std::optional<int> findNamesake(const QList<QPair<int, QString>>& lstFrom,
                                const QList<QPair<int, QString>>& lstTo, int nId)
{
    for (const auto& from : lstFrom) {
        if (from.first != nId)
            continue;
        for (const auto& to : lstTo) {
            if (to.second == from.second)
                return to.first;
        }
        return std::nullopt;
    }
    return std::nullopt;
}

bool isTimelineAction(int nActionType)
{
    return nActionType >= VTEventListener::StartTimeline && nActionType <= VTEventListener::SeekTimeline;
}

bool isElementAction(int nActionType)
{
    return VTEventListener::isKnownActionType(nActionType) &&
           ((nActionType >= VTEventListener::StartSymbol &&
             nActionType <= VTEventListener::ToggleHideShowElement) ||
            nActionType == VTEventListener::ChangeText);
}

} // namespace

VTEventListener::VTEventListener()
    : m_joActionData{{kSceneId, kNextSceneId}}
{}

VTEventListener::VTEventListener(EventType nEventType, ActionType nActionType, const QJsonObject& joEventData,
                                 const QJsonObject& joActionData)
    : m_nEventType(nEventType)
    , m_nActionType(nActionType)
    , m_joEventData(joEventData)
    , m_joActionData(joActionData)
{}

VTEventListener::~VTEventListener() = default;

std::unique_ptr<VTEventListener> VTEventListener::clone() const
{
    return std::make_unique<VTEventListener>(*this);
}

void VTEventListener::prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                         const VTFunctionManager* pSourceManager) const
{
    if (m_nActionType != RunJavaScript || !pSourceManager)
        return;
    const int nFunctionId = readInt(m_joActionData, kFunctionId);
    if (nFunctionId == kNoFunctionId)
        return;
    VTFunction* pFunction = pSourceManager->findFunctionById(nFunctionId);
    if (pFunction && !mapFunctions.contains(pFunction))
        mapFunctions.insert(pFunction, nullptr);
}

void VTEventListener::updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                        const VTFunctionManager* pSourceManager)
{
    if (m_nActionType != RunJavaScript || !pSourceManager)
        return;
    const int nFunctionId = readInt(m_joActionData, kFunctionId);
    if (nFunctionId == kNoFunctionId)
        return;
    VTFunction* pFunction = pSourceManager->findFunctionById(nFunctionId);
    if (!pFunction)
        return;
    const VTFunction* pTarget = mapFunctions.value(pFunction);
    m_joActionData.insert(kFunctionId, pTarget ? pTarget->getId() : kNoFunctionId);
}

int VTEventListener::getActionTime() const
{
    return readInt(m_joEventData, kActionTime);
}

bool VTEventListener::operator==(const VTEventListener& other) const
{
    return m_nEventType == other.m_nEventType && m_nActionType == other.m_nActionType &&
           m_joEventData == other.m_joEventData && m_joActionData == other.m_joActionData;
}

void VTEventListener::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("event"), static_cast<int>(m_nEventType));
    json.insert(QStringLiteral("action"), static_cast<int>(m_nActionType));
    json.insert(QStringLiteral("event_value"), m_joEventData);
    json.insert(QStringLiteral("action_data"), m_joActionData);
}

bool VTEventListener::parse(const QJsonObject& json, QStringList* pWarnings, const QString& strContext)
{
    QStringList lstProblems;
    const VTJsonReader reader(json, strContext.isEmpty() ? tr("event listener") : strContext, &lstProblems);

    const int nEventType = reader.readInt(QStringLiteral("event"), 0);
    const int nActionType = reader.readInt(QStringLiteral("action"), 0);
    m_nEventType = static_cast<EventType>(nEventType);
    m_nActionType = static_cast<ActionType>(nActionType);
    m_joEventData = reader.readObject(QStringLiteral("event_value"));
    m_joActionData = reader.readObject(QStringLiteral("action_data"));

    if (!isKnownEventType(nEventType))
        reader.report(tr("event %1 is unknown; the listener is kept but never runs.").arg(nEventType));
    if (!isKnownActionType(nActionType))
        reader.report(
            tr("action %1 is unknown; it is kept, and the player gets its number alone.").arg(nActionType));

    const auto replaceWrongValue = [&reader](QJsonObject& joData, const QString& strObject,
                                             const QString& strKey, ValueKind nKind) {
        const QJsonValue value = joData.value(strKey);
        if (value.isUndefined() || isOfKind(value, nKind))
            return;
        const QJsonValue defaultValue = getDefaultValue(strKey);
        reader.report(tr("\"%1\" of \"%2\" should be %3 but is %4; %5 is used instead.")
                          .arg(strKey, strObject, describeKind(nKind), VTJsonReader::describeType(value),
                               describeFallback(defaultValue)));
        joData.insert(strKey, defaultValue);
    };

    replaceWrongValue(m_joEventData, QStringLiteral("event_value"), kActionTime, ValueKind::Integer);
    for (const ActionKey& key : getActionKeys(nActionType))
        replaceWrongValue(m_joActionData, QStringLiteral("action_data"), key.strKey, key.nKind);

    if (pWarnings)
        pWarnings->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTEventListener::serializeToExport(QJsonArray& array) const
{
    const QJsonObject& joData = m_joActionData;
    array.append(static_cast<int>(m_nActionType));
    switch (m_nActionType) {
    case StartTimeline:
    case PlayTimeline:
        array.append(readInt(joData, kTimelineId));
        appendSpeedPair(array, joData);
        break;
    case PlayTimelineFrom:
        array.append(readInt(joData, kTimelineId));
        array.append(readTimeItem(joData));
        appendSpeedPair(array, joData);
        break;
    case PauseTimeline:
    case TogglePlayPauseTimeline:
        array.append(readInt(joData, kTimelineId));
        break;
    case PauseTimelineAt:
    case SeekTimeline:
        array.append(readInt(joData, kTimelineId));
        array.append(readTimeItem(joData));
        break;
    case StartSymbol:
    case PlaySymbol:
        array.append(readInt(joData, kElementId));
        appendSpeedPair(array, joData);
        break;
    case PlaySymbolFrom:
        array.append(readInt(joData, kElementId));
        array.append(readTimeItem(joData));
        appendSpeedPair(array, joData);
        break;
    case PauseSymbolAt:
    case SeekSymbol:
        array.append(readInt(joData, kElementId));
        array.append(readTimeItem(joData));
        break;
    // Media take a signed rate as one number.
    case StartMedia:
    case PlayMedia:
        array.append(readInt(joData, kElementId));
        array.append(readNumber(joData, kSpeed) / 100.0);
        break;
    case PlayMediaFrom:
        array.append(readInt(joData, kElementId));
        array.append(readInt(joData, kTime));
        array.append(readNumber(joData, kSpeed) / 100.0);
        break;
    case PauseMediaAt:
    case SeekMedia:
        array.append(readInt(joData, kElementId));
        array.append(readInt(joData, kTime));
        break;
    case MediaVolume:
        array.append(readInt(joData, kElementId));
        array.append(readNumber(joData, kVolume));
        break;
    case PauseSymbol:
    case TogglePlayPauseSymbol:
    case PauseMedia:
    case MuteMedia:
    case ToggleMuteMedia:
    case TogglePlayPauseMedia:
    case PlayVideoFullScreen:
    case HideElement:
    case ShowElement:
    case ToggleHideShowElement:
        array.append(readInt(joData, kElementId));
        break;
    case MuteAllMedia:
        break;
    case JumpToScene:
        array.append(readInt(joData, kSceneId));
        // With the scene's own transition the player needs nothing more, whatever is stored.
        if (!readBool(joData, kTransDefault)) {
            const int nTransType = readInt(joData, kTransType);
            array.append(nTransType);
            array.append(readInt(joData, kTransDuration));
            array.append(readInt(joData, kTransEasing));
            if (nTransType == kPushTransition)
                array.append(readInt(joData, kTransDirection));
        }
        break;
    case GoToURL:
        array.append(readText(joData, kUrl));
        array.append(readBool(joData, kNewWindow));
        break;
    case ChangeText:
        array.append(readInt(joData, kElementId));
        array.append(readText(joData, kText));
        break;
    case RunJavaScript:
        array.append(readInt(joData, kFunctionId));
        break;
    }
}

bool VTEventListener::updateTargetId(const QMap<int, int>& mapNewIds,
                                     const std::function<bool(int)>& fnIsInScene)
{
    const QJsonValue value = m_joActionData.value(kElementId);
    if (!VTJsonReader::isInt(value))
        return false;
    const int nId = value.toInt();
    if (nId == kCurrentSymbolId)
        return false;
    int nNewId = -1;
    if (mapNewIds.contains(nId))
        nNewId = mapNewIds.value(nId);
    else if (fnIsInScene && fnIsInScene(nId))
        return false;
    if (nNewId == nId)
        return false;
    m_joActionData.insert(kElementId, nNewId);
    return true;
}

bool VTEventListener::adaptToScene(const PasteContext& source, const PasteContext& destination)
{
    const int nActionType = m_nActionType;
    if (isTimelineAction(nActionType)) {
        if (!source.bHasTimelineManager || !destination.bHasTimelineManager)
            return false;
        const int nId = readInt(m_joActionData, kTimelineId);
        if (nId == kNoTargetId)
            return false;
        if (nId == kMainTimelineId)
            return true;
        const std::optional<int> nNewId = findNamesake(source.lstTimelines, destination.lstTimelines, nId);
        if (!nNewId)
            return false;
        m_joActionData.insert(kTimelineId, *nNewId);
        return true;
    }
    if (isElementAction(nActionType)) {
        if (nActionType == MuteAllMedia)
            return true;
        const int nId = readInt(m_joActionData, kElementId);
        if (nId == kCurrentSymbolId)
            return true;
        if (nId == kParentSymbolId || nId == kDocumentId)
            return !destination.bIsRootSymbol;
        const std::optional<int> nNewId = findNamesake(source.lstElements, destination.lstElements, nId);
        if (!nNewId)
            return false;
        m_joActionData.insert(kElementId, *nNewId);
        return true;
    }
    switch (nActionType) {
    case JumpToScene: {
        if (!source.bHasSceneManager || !destination.bHasSceneManager)
            return false;
        const int nId = readInt(m_joActionData, kSceneId);
        if (nId >= kFirstSceneId && nId <= kNextSceneId)
            return true;
        const std::optional<int> nNewId = findNamesake(source.lstScenes, destination.lstScenes, nId);
        if (!nNewId)
            return false;
        m_joActionData.insert(kSceneId, *nNewId);
        return true;
    }
    case GoToURL:
        return true;
    case RunJavaScript: {
        if (!source.bHasSceneManager || !destination.bHasSceneManager || !source.pFunctionManager ||
            !destination.pFunctionManager)
            return false;
        const int nId = readInt(m_joActionData, kFunctionId);
        const VTFunction* pFunction =
            nId == kNoFunctionId ? nullptr : source.pFunctionManager->findFunctionById(nId);
        if (!pFunction)
            return true;
        for (const VTFunction* pCandidate : destination.pFunctionManager->getFunctions()) {
            if (pCandidate->getType() == pFunction->getType() &&
                pCandidate->getName() == pFunction->getName()) {
                m_joActionData.insert(kFunctionId, pCandidate->getId());
                return true;
            }
        }
        return false;
    }
    default:
        break;
    }
    return false;
}

QString VTEventListener::getEventName(EventType nEventType)
{
    switch (nEventType) {
    case PreloadStart:
        return tr("Start");
    case PreloadProgress:
        return tr("Progress");
    case PreloadComplete:
    case TimelineComplete:
        return tr("Complete");
    case PreloadItemStart:
        return tr("Item Start");
    case PreloadItemComplete:
        return tr("Item Complete");
    case DocumentCreate:
        return tr("Create");
    case DocumentReady:
        return tr("Ready");
    case DocumentDestroy:
        return tr("Destroy");
    case DocumentScriptError:
        return tr("Script Error");
    case SceneActivate:
        return tr("Scene Activate");
    case SceneDeactivate:
        return tr("Scene Deactivate");
    case Scroll:
        return tr("Scroll");
    case KeyDown:
        return tr("Key Down");
    case KeyUp:
        return tr("Key Up");
    case OrientationChange:
        return tr("Orientation Change");
    case WindowResize:
        return tr("Window Resize");
    case MouseClick:
        return tr("Mouse Click");
    case MouseDoubleClick:
        return tr("Mouse Double Click");
    case MouseOver:
        return tr("Mouse Over");
    case MouseDown:
        return tr("Mouse Down");
    case MouseMove:
        return tr("Mouse Move");
    case MouseUp:
        return tr("Mouse Up");
    case MouseOut:
        return tr("Mouse Out");
    case MouseEnter:
        return tr("Mouse Enter");
    case MouseLeave:
        return tr("Mouse Leave");
    case Focus:
        return tr("Focus");
    case SwipeLeft:
        return tr("Swipe Left");
    case SwipeRight:
        return tr("Swipe Right");
    case TimelineUpdate:
        return tr("Update");
    case TimelinePlay:
        return tr("Play");
    case TimelinePause:
        return tr("Pause");
    case TimelineSpeedChange:
        return tr("Speed Change");
    case TimelineReverse:
        return tr("Reverse");
    case TimelineSeek:
        return tr("Seek");
    case Trigger:
        return tr("Trigger");
    case Playback:
        return tr("Playback");
    }
    return tr("Unknown Event");
}

QString VTEventListener::getActionName(ActionType nActionType)
{
    switch (nActionType) {
    case StartTimeline:
        return tr("Start Timeline");
    case PlayTimeline:
        return tr("Play Timeline");
    case PlayTimelineFrom:
        return tr("Play Timeline From");
    case PauseTimeline:
        return tr("Pause Timeline");
    case PauseTimelineAt:
        return tr("Pause Timeline At");
    case TogglePlayPauseTimeline:
        return tr("Toggle Play/Pause Timeline");
    case SeekTimeline:
        return tr("Seek Timeline");
    case StartSymbol:
        return tr("Start Symbol");
    case PlaySymbol:
        return tr("Play Symbol");
    case PlaySymbolFrom:
        return tr("Play Symbol From");
    case PauseSymbol:
        return tr("Pause Symbol");
    case PauseSymbolAt:
        return tr("Pause Symbol At");
    case TogglePlayPauseSymbol:
        return tr("Toggle Play/Pause Symbol");
    case SeekSymbol:
        return tr("Seek Symbol");
    case StartMedia:
        return tr("Start Media");
    case PlayMedia:
        return tr("Play Media");
    case PlayMediaFrom:
        return tr("Play Media From");
    case PauseMedia:
        return tr("Pause Media");
    case PauseMediaAt:
        return tr("Pause Media At");
    case MuteMedia:
        return tr("Mute Media");
    case MediaVolume:
        return tr("Media Volume");
    case ToggleMuteMedia:
        return tr("Toggle Mute/Unmute Media");
    case MuteAllMedia:
        return tr("Mute All Media");
    case TogglePlayPauseMedia:
        return tr("Toggle Play/Pause Media");
    case SeekMedia:
        return tr("Seek Media");
    case PlayVideoFullScreen:
        return tr("Play Video Full Screen");
    case HideElement:
        return tr("Hide Element");
    case ShowElement:
        return tr("Show Element");
    case ToggleHideShowElement:
        return tr("Toggle Hide/Show Element");
    case JumpToScene:
        return tr("Jump To Scene");
    case GoToURL:
        return tr("Go To URL");
    case ChangeText:
        return tr("Change Text");
    case RunJavaScript:
        return tr("Run JavaScript");
    }
    return tr("Unknown");
}

QString VTEventListener::getActionGroupName(ActionType nActionType)
{
    if (!isKnownActionType(nActionType))
        return QString();
    if (nActionType < StartSymbol)
        return tr("Timeline");
    if (nActionType < StartMedia)
        return tr("Symbol");
    if (nActionType < HideElement)
        return tr("Media");
    if (nActionType < JumpToScene)
        return tr("Hide/Show");
    return tr("Other Actions");
}

bool VTEventListener::isKnownEventType(int nEventType)
{
    return (nEventType >= PreloadStart && nEventType <= PreloadItemComplete) ||
           (nEventType >= DocumentCreate && nEventType <= DocumentScriptError) ||
           (nEventType >= SceneActivate && nEventType <= WindowResize) ||
           (nEventType >= MouseClick && nEventType <= SwipeRight) ||
           (nEventType >= TimelineUpdate && nEventType <= TimelineSeek) || nEventType == Trigger ||
           nEventType == Playback;
}

bool VTEventListener::isKnownActionType(int nActionType)
{
    return (nActionType >= StartTimeline && nActionType <= SeekTimeline) ||
           (nActionType >= StartSymbol && nActionType <= SeekSymbol) ||
           (nActionType >= StartMedia && nActionType <= PlayVideoFullScreen) ||
           (nActionType >= HideElement && nActionType <= ToggleHideShowElement) ||
           (nActionType >= JumpToScene && nActionType <= RunJavaScript);
}

QList<VTEventListener::EventType> VTEventListener::getOfferedEventTypes(EventOwner nOwner)
{
    const auto range = [](EventType nFirst, EventType nLast) {
        QList<EventType> lstTypes;
        for (int n = nFirst; n <= nLast; ++n)
            lstTypes.append(static_cast<EventType>(n));
        return lstTypes;
    };
    switch (nOwner) {
    case PreloaderDocumentOwner:
        return range(PreloadStart, PreloadItemComplete);
    case DocumentOwner:
        return range(DocumentCreate, DocumentScriptError) +
               QList<EventType>{SceneActivate, SceneDeactivate, OrientationChange,
                                WindowResize,  KeyDown,         KeyUp} +
               range(MouseClick, MouseLeave);
    case SceneOwner:
        return range(SceneActivate, WindowResize) + range(MouseClick, SwipeRight);
    case ElementOwner:
        return range(MouseClick, SwipeRight);
    case TimelineOwner:
        return range(TimelineUpdate, TimelineSeek);
    case TriggerOwner:
        return {Trigger};
    case PlaybackOwner:
        return {Playback};
    }
    return {};
}

QList<VTEventListener::ActionType> VTEventListener::getAllActionTypes()
{
    QList<ActionType> lstTypes;
    for (int n = StartTimeline; n <= RunJavaScript; ++n) {
        if (isKnownActionType(n))
            lstTypes.append(static_cast<ActionType>(n));
    }
    return lstTypes;
}

QJsonObject VTEventListener::createDefaultActionData(ActionType nActionType, bool bHasTarget, int nTargetId)
{
    QJsonObject joData;
    for (const ActionKey& key : getActionKeys(nActionType)) {
        const bool bIsTarget =
            key.strKey == kTimelineId || key.strKey == kElementId || key.strKey == kSceneId;
        joData.insert(key.strKey,
                      bIsTarget && bHasTarget ? QJsonValue(nTargetId) : getDefaultValue(key.strKey));
    }
    return joData;
}
