#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

using VTE = VTEventListener;

namespace {

VTEventListener* listener(int nEvent, int nAction, const QJsonObject& joActionData = {},
                          const QJsonObject& joEventData = {})
{
    return new VTEventListener(static_cast<VTE::EventType>(nEvent), static_cast<VTE::ActionType>(nAction),
                               joEventData, joActionData);
}

QJsonArray exportOf(int nAction, const QJsonObject& joActionData)
{
    const std::unique_ptr<VTEventListener> pListener(listener(VTE::MouseClick, nAction, joActionData));
    QJsonArray array;
    pListener->serializeToExport(array);
    return array;
}

QString compact(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

using IdNames = QList<QPair<int, QString>>;

} // namespace

class TestEventListeners : public QObject
{
    Q_OBJECT
private slots:
    void defaultsAndNames();
    void newActionData();
    void everyActionSurvivesRoundTrip();
    void listenerExportForm();
    void listExportForms();
    void listEditing();
    void listJson();
    void hostileJson();
    void functionReferences();
    void elementTargetsAfterPaste();
    void pasteAcceptance();
};

void TestEventListeners::defaultsAndNames()
{
    const VTEventListener fresh;
    QCOMPARE(fresh.getEventType(), VTE::MouseClick);
    QCOMPARE(fresh.getActionType(), VTE::JumpToScene);
    QVERIFY(fresh.getEventData().isEmpty());
    QCOMPARE(fresh.getActionData(), QJsonObject({{"scene_id", -2}}));

    // Reading an empty object gives 0 and empty objects, not a new listener's values.
    VTEventListener read;
    QStringList lstWarnings;
    QVERIFY(!read.parse(QJsonObject(), &lstWarnings));
    QCOMPARE(static_cast<int>(read.getEventType()), 0);
    QCOMPARE(static_cast<int>(read.getActionType()), 0);
    QVERIFY(read.getActionData().isEmpty());
    QCOMPARE(lstWarnings.size(), 2); // both numbers unknown, and said so

    QCOMPARE(VTE::getEventName(VTE::PreloadComplete), QString("Complete"));
    QCOMPARE(VTE::getEventName(VTE::TimelineComplete), QString("Complete"));
    QCOMPARE(VTE::getEventName(VTE::SwipeRight), QString("Swipe Right"));
    QCOMPARE(VTE::getEventName(static_cast<VTE::EventType>(57)), QString("Unknown Event"));
    QCOMPARE(VTE::getActionName(VTE::TogglePlayPauseMedia), QString("Toggle Play/Pause Media"));
    QCOMPARE(VTE::getActionName(static_cast<VTE::ActionType>(8)), QString("Unknown"));
    QCOMPARE(VTE::getActionGroupName(VTE::SeekTimeline), QString("Timeline"));
    QCOMPARE(VTE::getActionGroupName(VTE::SeekSymbol), QString("Symbol"));
    QCOMPARE(VTE::getActionGroupName(VTE::PlayVideoFullScreen), QString("Media"));
    QCOMPARE(VTE::getActionGroupName(VTE::ToggleHideShowElement), QString("Hide/Show"));
    QCOMPARE(VTE::getActionGroupName(VTE::JumpToScene), QString("Other Actions"));
    QVERIFY(VTE::getActionGroupName(static_cast<VTE::ActionType>(52)).isEmpty());
    QCOMPARE(VTE::getAllActionTypes().size(), 33);

    const QList<VTE::EventType> lstDocument = VTE::getOfferedEventTypes(VTE::DocumentOwner);
    QCOMPARE(lstDocument.size(), 19);
    QCOMPARE(lstDocument.mid(3, 7),
             QList<VTE::EventType>({VTE::DocumentScriptError, VTE::SceneActivate, VTE::SceneDeactivate,
                                    VTE::OrientationChange, VTE::WindowResize, VTE::KeyDown, VTE::KeyUp}));
    QCOMPARE(lstDocument.last(), VTE::MouseLeave);
    QCOMPARE(VTE::getOfferedEventTypes(VTE::SceneOwner).size(), 7 + 12);
    QCOMPARE(VTE::getOfferedEventTypes(VTE::ElementOwner).first(), VTE::MouseClick);
    QCOMPARE(VTE::getOfferedEventTypes(VTE::PreloaderDocumentOwner).size(), 5);
    QCOMPARE(VTE::getOfferedEventTypes(VTE::TimelineOwner).last(), VTE::TimelineSeek);
    QCOMPARE(VTE::getOfferedEventTypes(VTE::PlaybackOwner), QList<VTE::EventType>({VTE::Playback}));
    for (VTE::EventOwner nOwner : {VTE::PreloaderDocumentOwner, VTE::DocumentOwner, VTE::SceneOwner,
                                   VTE::ElementOwner, VTE::TimelineOwner, VTE::TriggerOwner}) {
        for (VTE::EventType nType : VTE::getOfferedEventTypes(nOwner))
            QVERIFY2(VTE::isKnownEventType(nType), qPrintable(QString::number(nType)));
    }
}

void TestEventListeners::newActionData()
{
    QCOMPARE(VTE::createDefaultActionData(VTE::PlayTimeline),
             QJsonObject({{"timeline_id", -1}, {"speed", 100}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::PlayTimelineFrom, true, 4),
             QJsonObject({{"timeline_id", 4}, {"speed", 100}, {"time", 0}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::PlaySymbolFrom),
             QJsonObject({{"element_id", -20}, {"speed", 100}, {"time", 0}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::MediaVolume, true, 9),
             QJsonObject({{"element_id", 9}, {"volume", 100}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::MuteAllMedia, true, 9), QJsonObject());
    QCOMPARE(VTE::createDefaultActionData(VTE::JumpToScene), QJsonObject({{"scene_id", -2},
                                                                          {"trans_default", true},
                                                                          {"trans_type", 0},
                                                                          {"trans_duration", 0},
                                                                          {"trans_easing", -1},
                                                                          {"trans_direction", -1}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::GoToURL, true, 3),
             QJsonObject({{"url", "https://"}, {"new_window", true}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::ChangeText), QJsonObject({{"element_id", -20}, {"text", ""}}));
    QCOMPARE(VTE::createDefaultActionData(VTE::RunJavaScript, true, 3), QJsonObject({{"function_id", -1}}));
}

void TestEventListeners::everyActionSurvivesRoundTrip()
{
    // Each action with values that differ from the defaults, so a key that is lost or replaced on
    // the way shows.
    for (VTE::ActionType nAction : VTE::getAllActionTypes()) {
        QJsonObject joData = VTE::createDefaultActionData(nAction, true, 31);
        for (auto it = joData.begin(); it != joData.end(); ++it) {
            if (it.value().isBool())
                it.value() = !it.value().toBool();
            else if (it.value().isString())
                it.value() = QString(it.key() + QStringLiteral("-value"));
            else if (it.key() != QLatin1String("element_id") && it.key() != QLatin1String("timeline_id"))
                it.value() = it.value().toInt() - 7;
        }
        const std::unique_ptr<VTEventListener> pListener(
            listener(VTE::MouseOver, nAction, joData, QJsonObject{{"note", "kept"}}));
        QJsonObject json;
        pListener->serialize(json);
        QCOMPARE(json.keys(), QStringList({"action", "action_data", "event", "event_value"}));

        VTEventListener read;
        QStringList lstWarnings;
        QVERIFY2(read.parse(json, &lstWarnings), qPrintable(lstWarnings.join('\n')));
        QVERIFY2(read == *pListener, qPrintable(VTE::getActionName(nAction)));
        QCOMPARE(read.getActionData(), joData);
        QJsonObject joAgain;
        read.serialize(joAgain);
        QCOMPARE(joAgain, json);
    }
}

void TestEventListeners::listenerExportForm()
{
    struct Case
    {
        int nAction;
        QJsonObject joData;
        QString strExpected;
    };
    const QList<Case> lstCases = {
        {VTE::PlayTimeline, {{"timeline_id", 3}, {"speed", -150}}, "[2,3,1.5,1]"},
        {VTE::StartTimeline, {{"timeline_id", -1}, {"speed", 50}}, "[1,-1,0.5,0]"},
        {VTE::PlayTimelineFrom,
         {{"timeline_id", 2}, {"speed", 100}, {"time", "intro"}},
         "[3,2,\"intro\",1,0]"},
        {VTE::PauseTimelineAt, {{"timeline_id", 2}, {"time", 0}}, "[5,2,0]"},
        {VTE::TogglePlayPauseTimeline, {{"timeline_id", 8}}, "[6,8]"},
        {VTE::SeekTimeline, {{"timeline_id", 1}, {"time", 2500}}, "[7,1,2500]"},
        {VTE::PlaySymbol, {{"element_id", 12}, {"speed", -150}}, "[21,12,1.5,1]"},
        {VTE::PlaySymbolFrom, {{"element_id", -1}, {"speed", 200}, {"time", "loop"}}, "[22,-1,\"loop\",2,0]"},
        {VTE::PauseSymbol, {{"element_id", -3}}, "[23,-3]"},
        {VTE::SeekSymbol, {{"element_id", 4}, {"time", 40}}, "[26,4,40]"},
        {VTE::StartMedia, {{"element_id", 5}, {"speed", -150}}, "[40,5,-1.5]"},
        {VTE::PlayMediaFrom, {{"element_id", 5}, {"time", 300}, {"speed", -150}}, "[42,5,300,-1.5]"},
        {VTE::PauseMediaAt, {{"element_id", 5}, {"time", 10}}, "[44,5,10]"},
        {VTE::MediaVolume, {{"element_id", 5}, {"volume", 35}}, "[46,5,35]"},
        {VTE::MuteAllMedia, {{"element_id", 5}}, "[48]"},
        {VTE::PlayVideoFullScreen, {{"element_id", 6}}, "[51,6]"},
        {VTE::ToggleHideShowElement, {{"element_id", 7}}, "[72,7]"},
        {VTE::JumpToScene,
         {{"scene_id", 4}, {"trans_default", true}, {"trans_type", 2}, {"trans_duration", 500}},
         "[100,4]"},
        {VTE::JumpToScene,
         {{"scene_id", -3},
          {"trans_default", false},
          {"trans_type", 2},
          {"trans_duration", 500},
          {"trans_easing", 3},
          {"trans_direction", 1}},
         "[100,-3,2,500,3,1]"},
        {VTE::JumpToScene,
         {{"scene_id", -5},
          {"trans_default", false},
          {"trans_type", 1},
          {"trans_duration", 800},
          {"trans_easing", 0},
          {"trans_direction", 1}},
         "[100,-5,1,800,0]"},
        {VTE::GoToURL,
         {{"url", "https://example.org"}, {"new_window", false}},
         "[101,\"https://example.org\",false]"},
        {VTE::ChangeText, {{"element_id", 9}, {"text", "Hi \"you\""}}, "[102,9,\"Hi \\\"you\\\"\"]"},
        {VTE::RunJavaScript, {{"function_id", 3}}, "[103,3]"},
        {999, {{"element_id", 1}}, "[999]"},
        // Keys a file left out are sent as a new action would hold them.
        {VTE::PlaySymbol, {}, "[21,-20,1,0]"},
        {VTE::JumpToScene, {{"trans_default", false}}, "[100,-2,0,0,-1]"},
        {VTE::GoToURL, {}, "[101,\"https://\",true]"},
        {VTE::RunJavaScript, {}, "[103,-1]"},
    };
    for (const Case& test : lstCases)
        QCOMPARE(compact(exportOf(test.nAction, test.joData)), test.strExpected);
}

void TestEventListeners::listExportForms()
{
    VTEventListenerList list;
    QJsonObject json;
    list.serializeToExport(json, false);
    QVERIFY(json.isEmpty());
    QJsonArray jaTrigger;
    list.serializeToExportTrigger(jaTrigger, false);
    QVERIFY(jaTrigger.isEmpty());
    QJsonArray jaProject;
    list.serialize(jaProject);
    QVERIFY(jaProject.isEmpty());

    list.addEventListener(listener(VTE::MouseClick, VTE::HideElement, {{"element_id", 1}}));
    list.addEventListener(listener(VTE::Trigger, VTE::GoToURL, {{"url", "a"}, {"new_window", true}}));
    list.addEventListener(listener(VTE::MouseClick, VTE::ShowElement, {{"element_id", 2}}));
    list.addEventListener(listener(VTE::SceneActivate, VTE::RunJavaScript, {{"function_id", 4}}));
    list.addEventListener(listener(0, VTE::RunJavaScript, {{"function_id", 5}}));
    list.addEventListener(listener(250, VTE::RunJavaScript, {{"function_id", 6}}));
    list.serializeToExport(json, true);
    QVERIFY(json.isEmpty());
    list.serializeToExport(json, false);
    QCOMPARE(json.keys(), QStringList({"e"}));
    QCOMPARE(compact(json.value("e").toArray()), QString("[[50,[103,4]],[100,[70,1],[71,2]]]"));

    // Only triggers and marks in a list: nothing qualifies, and no key is written.
    VTEventListenerList marks;
    marks.addEventListener(listener(VTE::Playback, VTE::StartSymbol, {{"speed", 100}}, {{"action_time", 0}}));
    QJsonObject joMarks;
    marks.serializeToExport(joMarks, false);
    QVERIFY(joMarks.isEmpty());

    VTEventListenerList trigger;
    trigger.addEventListener(
        listener(VTE::Trigger, VTE::PauseTimeline, {{"timeline_id", -1}}, {{"action_time", 1250}}));
    trigger.addEventListener(
        listener(VTE::Trigger, VTE::GoToURL, {{"url", "b"}, {"new_window", false}}, {{"action_time", 1250}}));
    trigger.serializeToExportTrigger(jaTrigger, true);
    QVERIFY(jaTrigger.isEmpty());
    jaTrigger.append(QStringLiteral("before"));
    trigger.serializeToExportTrigger(jaTrigger, false);
    QCOMPARE(compact(jaTrigger), QString("[\"before\",1250,[[4,-1],[101,\"b\",false]]]"));
}

void TestEventListeners::listEditing()
{
    VTEventListenerList list;
    VTEventListener* pA = listener(VTE::MouseClick, VTE::MuteAllMedia);
    VTEventListener* pB = listener(VTE::MouseDown, VTE::MuteAllMedia);
    VTEventListener* pC = listener(VTE::MouseUp, VTE::MuteAllMedia);
    VTEventListener* pD = listener(VTE::MouseOut, VTE::MuteAllMedia);
    QCOMPARE(list.addEventListener(pA, 0), 0);
    QCOMPARE(list.addEventListener(pB, 1), 1); // the size: inserted at the end
    QCOMPARE(list.addEventListener(pC, 7), 2);
    QCOMPARE(list.addEventListener(pD, 0), 0);
    QCOMPARE(list.getEventListeners(), QList<VTEventListener*>({pD, pA, pB, pC}));
    QCOMPARE(list.addEventListener(pA, 0), -1);
    QCOMPARE(list.addEventListener(nullptr), -1);

    QCOMPARE(list.detachEventListener(pA), 1);
    const std::unique_ptr<VTEventListener> pDetached(pA);
    QCOMPARE(list.detachEventListener(pA), -1);
    QCOMPARE(list.getEventListenerIndex(pA), -1);
    QCOMPARE(list.getEventListenerIndex(pC), 2);

    VTEventListener* pE = listener(VTE::Focus, VTE::MuteAllMedia);
    QCOMPARE(list.setEventListner(pE, 3), nullptr);
    QCOMPARE(list.setEventListner(pE, -1), nullptr);
    QCOMPARE(list.setEventListner(pC, 0), nullptr); // already in the list
    const std::unique_ptr<VTEventListener> pReplaced(list.setEventListner(pE, 1));
    QCOMPARE(pReplaced.get(), pB);
    QCOMPARE(list.getEventListeners(), QList<VTEventListener*>({pD, pE, pC}));

    // The copy owns listeners of its own with the same content.
    pE->setActionData({{"key", 1}});
    VTEventListenerList copy(list);
    QCOMPARE(copy.getEventListenerCount(), 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(copy.getEventListenerAt(i) != list.getEventListenerAt(i));
        QVERIFY(*copy.getEventListenerAt(i) == *list.getEventListenerAt(i));
    }
    copy.getEventListenerAt(1)->setActionData({{"key", 2}});
    QCOMPARE(pE->getActionData().value("key").toInt(), 1);
    QCOMPARE(copy.getEventListenerAt(3), nullptr);

    // A bare list takes no pasted listeners.
    VTEventListener* pPasted = pE;
    QVERIFY(!list.isSupportedEventType(VTE::MouseClick));
    QVERIFY(!list.isAcceptEventAction(pPasted, nullptr, nullptr));
}

void TestEventListeners::listJson()
{
    VTEventListenerList list;
    list.addEventListener(listener(VTE::MouseClick, VTE::PlayTimelineFrom,
                                   {{"timeline_id", 2}, {"speed", -50}, {"time", "label"}}));
    list.addEventListener(listener(VTE::Trigger, VTE::JumpToScene,
                                   VTE::createDefaultActionData(VTE::JumpToScene), {{"action_time", 700}}));
    list.addEventListener(new VTEventListener());
    QJsonArray array;
    list.serialize(array);
    QCOMPARE(array.size(), 3);
    QCOMPARE(array.at(1).toObject().value("event_value").toObject(), QJsonObject({{"action_time", 700}}));

    VTEventListenerList read;
    QStringList lstWarnings;
    QVERIFY(read.parse(array, &lstWarnings));
    QVERIFY(lstWarnings.isEmpty());
    QCOMPARE(read.getEventListenerCount(), 3);
    for (int i = 0; i < 3; ++i)
        QVERIFY(*read.getEventListenerAt(i) == *list.getEventListenerAt(i));
    QCOMPARE(read.getEventListenerAt(1)->getActionTime(), 700);
    QJsonArray jaAgain;
    read.serialize(jaAgain);
    QCOMPARE(jaAgain, array);

    // parse appends.
    QVERIFY(read.parse(array));
    QCOMPARE(read.getEventListenerCount(), 6);

    // A file as this program writes it comes back byte for byte.
    const QByteArray baFile =
        R"([{"action":46,"action_data":{"element_id":3,"volume":40},"event":107,"event_value":{}},)"
        R"({"action":101,"action_data":{"new_window":false,"url":"https://x.org"},"event":21,"event_value":{}}])";
    VTEventListenerList fromFile;
    QVERIFY(fromFile.parse(QJsonDocument::fromJson(baFile).array()));
    QJsonArray jaFile;
    fromFile.serialize(jaFile);
    QCOMPARE(QJsonDocument(jaFile).toJson(QJsonDocument::Compact), baFile);
}

void TestEventListeners::hostileJson()
{
    VTEventListenerList list;
    QStringList lstWarnings;
    const QJsonArray array{
        5,
        "text",
        QJsonObject{{"event", "click"}, {"action", 2.5}, {"event_value", 3}, {"action_data", QJsonArray{1}}},
        QJsonObject{
            {"event", 100},
            {"action", VTE::PlayMediaFrom},
            {"action_data",
             QJsonObject{{"element_id", "12"}, {"time", "label"}, {"speed", "fast"}, {"extra", "kept"}}}},
        QJsonObject{
            {"event", 900}, {"action", 777}, {"action_data", QJsonObject{{"anything", QJsonArray{1, 2}}}}},
        QJsonObject{{"event", 200},
                    {"action", VTE::JumpToScene},
                    {"event_value", QJsonObject{{"action_time", "soon"}}},
                    {"action_data", QJsonObject{{"trans_default", 0}, {"scene_id", 1e300}}}},
        QJsonObject{
            {"event", 100}, {"action", VTE::SeekTimeline}, {"action_data", QJsonObject{{"time", 2.5}}}},
    };
    QVERIFY(!list.parse(array, &lstWarnings));
    // 2 items skipped; 4 wrong top-level values and 2 unknown numbers; 3 bad media values;
    // 2 unknown numbers; 3 bad values; 1 time that is neither milliseconds nor a label.
    QCOMPARE(lstWarnings.size(), 2 + 6 + 3 + 2 + 3 + 1);
    QVERIFY(lstWarnings.at(0).startsWith("events: event listener 0 should be an object"));
    QCOMPARE(list.getEventListenerCount(), 5);

    const VTEventListener* pWrongTypes = list.getEventListenerAt(0);
    QCOMPARE(static_cast<int>(pWrongTypes->getEventType()), 0);
    QCOMPARE(static_cast<int>(pWrongTypes->getActionType()), 0);
    QVERIFY(pWrongTypes->getActionData().isEmpty());

    const VTEventListener* pMedia = list.getEventListenerAt(1);
    QCOMPARE(pMedia->getActionData(),
             QJsonObject({{"element_id", -20}, {"time", 0}, {"speed", 100}, {"extra", "kept"}}));

    const VTEventListener* pUnknown = list.getEventListenerAt(2);
    QCOMPARE(static_cast<int>(pUnknown->getEventType()), 900);
    QCOMPARE(static_cast<int>(pUnknown->getActionType()), 777);
    QCOMPARE(VTE::getEventName(pUnknown->getEventType()), QString("Unknown Event"));
    QCOMPARE(pUnknown->getActionData().value("anything").toArray().size(), 2);

    const VTEventListener* pTrigger = list.getEventListenerAt(3);
    QCOMPARE(pTrigger->getActionTime(), 0);
    QCOMPARE(pTrigger->getActionData(), QJsonObject({{"trans_default", true}, {"scene_id", -2}}));
    QCOMPARE(list.getEventListenerAt(4)->getActionData(), QJsonObject({{"time", 0}}));

    // The player still gets well-formed rows; the unknown action goes as its number alone and its
    // event, above 199, not at all.
    QJsonObject json;
    list.serializeToExport(json, false);
    QCOMPARE(compact(json.value("e").toArray()), QString("[[100,[42,-20,0,1],[7,-1,0]]]"));

    lstWarnings.clear();
    QJsonArray jaFlood;
    for (int i = 0; i <= VTEventListenerList::kMaxEventListenerCount; ++i)
        jaFlood.append(QJsonObject());
    VTEventListenerList flooded;
    QVERIFY(!flooded.parse(jaFlood, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 1);
    QCOMPARE(flooded.getEventListenerCount(), 0);
}

void TestEventListeners::functionReferences()
{
    VTFunctionManager source;
    auto* pUsed = new VTFunction();
    pUsed->setName("used");
    auto* pOther = new VTFunction();
    pOther->setName("other");
    source.addFunction(pUsed);  // id 1
    source.addFunction(pOther); // id 2

    VTEventListenerList list;
    VTEventListener* pCallsUsed = listener(VTE::MouseClick, VTE::RunJavaScript, {{"function_id", 1}});
    VTEventListener* pCallsOther = listener(VTE::MouseOver, VTE::RunJavaScript, {{"function_id", 2}});
    VTEventListener* pDangling = listener(VTE::MouseOut, VTE::RunJavaScript, {{"function_id", 9}});
    VTEventListener* pNone = listener(VTE::MouseUp, VTE::RunJavaScript, {{"function_id", -1}});
    VTEventListener* pNotScript = listener(VTE::MouseDown, VTE::SeekTimeline, {{"function_id", 1}});
    for (VTEventListener* pListener : {pCallsUsed, pCallsOther, pDangling, pNone, pNotScript})
        list.addEventListener(pListener);

    QMap<VTFunction*, VTFunction*> mapFunctions;
    list.prepareFunctionMap(mapFunctions, &source);
    QCOMPARE(mapFunctions.keys().size(), 2);
    QVERIFY(mapFunctions.contains(pUsed) && mapFunctions.contains(pOther));
    QVERIFY(mapFunctions.value(pUsed) == nullptr);

    VTFunctionManager target;
    target.addFunction(new VTFunction());
    target.addFunction(new VTFunction());
    auto* pCopy = new VTFunction();
    target.addFunction(pCopy); // id 3
    mapFunctions[pUsed] = pCopy;
    list.updateFunctionMap(mapFunctions, &source);
    QCOMPARE(pCallsUsed->getActionData().value("function_id").toInt(), 3);
    QCOMPARE(pCallsOther->getActionData().value("function_id").toInt(), -1);
    QCOMPARE(pDangling->getActionData().value("function_id").toInt(), 9);
    QCOMPARE(pNone->getActionData().value("function_id").toInt(), -1);
    QCOMPARE(pNotScript->getActionData().value("function_id").toInt(), 1);

    // Without a source manager nothing is collected or changed.
    QMap<VTFunction*, VTFunction*> mapEmpty;
    list.prepareFunctionMap(mapEmpty, nullptr);
    QVERIFY(mapEmpty.isEmpty());
}

void TestEventListeners::elementTargetsAfterPaste()
{
    VTEventListenerList list;
    VTEventListener* pMapped = listener(VTE::MouseClick, VTE::HideElement, {{"element_id", 10}});
    VTEventListener* pInScene = listener(VTE::MouseClick, VTE::ShowElement, {{"element_id", 11}});
    VTEventListener* pGone = listener(VTE::MouseClick, VTE::PlayMedia, {{"element_id", 12}, {"speed", 100}});
    VTEventListener* pCurrent = listener(VTE::MouseClick, VTE::PlaySymbol, {{"element_id", -1}});
    VTEventListener* pParent = listener(VTE::MouseClick, VTE::PlaySymbol, {{"element_id", -2}});
    VTEventListener* pMuteAll = listener(VTE::MouseClick, VTE::MuteAllMedia);
    for (VTEventListener* pListener : {pMapped, pInScene, pGone, pCurrent, pParent, pMuteAll})
        list.addEventListener(pListener);

    const QMap<int, int> mapNewIds{{10, 110}, {11, 111}, {5, 105}};
    const auto isInScene = [](int nId) { return nId == 11 || nId == 12; };
    // A mapped id wins over the scene; the rest is decided by the scene.
    QCOMPARE(list.remapElementTargets(mapNewIds, isInScene), 3);
    QCOMPARE(pMapped->getActionData().value("element_id").toInt(), 110);
    QCOMPARE(pInScene->getActionData().value("element_id").toInt(), 111);
    QCOMPARE(pGone->getActionData().value("element_id").toInt(), 12);
    QCOMPARE(pParent->getActionData().value("element_id").toInt(), -1);
    QCOMPARE(pCurrent->getActionData().value("element_id").toInt(), -1);
    QVERIFY(pMuteAll->getActionData().isEmpty());

    // Without a scene, what the map does not know is cut loose.
    pGone->setActionData({{"element_id", 12}, {"speed", 100}});
    QCOMPARE(list.remapElementTargets({}, {}), 3);
    QCOMPARE(pGone->getActionData(), QJsonObject({{"element_id", -1}, {"speed", 100}}));
    QCOMPARE(pMapped->getActionData().value("element_id").toInt(), -1);
}

void TestEventListeners::pasteAcceptance()
{
    VTFunctionManager sourceFunctions;
    auto* pHandler = new VTFunction();
    pHandler->setName("go");
    pHandler->setType(VTFunctionData::ElementEventHandler);
    sourceFunctions.addFunction(pHandler); // id 1
    VTFunctionManager destinationFunctions;
    auto* pWrongKind = new VTFunction();
    pWrongKind->setName("go");
    destinationFunctions.addFunction(pWrongKind); // id 1, kind 0
    auto* pMatch = new VTFunction();
    pMatch->setName("go");
    pMatch->setType(VTFunctionData::ElementEventHandler);
    destinationFunctions.addFunction(pMatch);
    QCOMPARE(pMatch->getName(), QString("go_0")); // names stay unique within one manager...
    pMatch->setName("go");                        // ...but a file may hold the same name twice

    VTE::PasteContext source;
    source.bHasTimelineManager = true;
    source.lstTimelines = IdNames{{-1, "Main"}, {4, "intro"}, {5, "outro"}};
    source.lstElements = IdNames{{1, "box"}, {2, "video"}};
    source.bHasSceneManager = true;
    source.lstScenes = IdNames{{1, "Scene 1"}, {2, "Scene 2"}};
    source.pFunctionManager = &sourceFunctions;
    VTE::PasteContext destination = source;
    destination.lstTimelines = IdNames{{9, "intro"}, {10, "intro"}};
    destination.lstElements = IdNames{{7, "video"}, {8, "box"}};
    destination.lstScenes = IdNames{{3, "Scene 2"}};
    destination.pFunctionManager = &destinationFunctions;

    struct Case
    {
        int nAction;
        QJsonObject joData;
        bool bAccepted;
        QJsonObject joAfter;
    };
    const QList<Case> lstCases = {
        {VTE::PlayTimeline, {{"timeline_id", 4}, {"speed", 100}}, true, {{"timeline_id", 9}, {"speed", 100}}},
        {VTE::PlayTimeline, {{"timeline_id", 5}}, false, {{"timeline_id", 5}}},
        {VTE::PlayTimeline, {{"timeline_id", 77}}, false, {{"timeline_id", 77}}},
        {VTE::PauseTimeline, {{"timeline_id", -20}}, false, {{"timeline_id", -20}}},
        {VTE::PauseTimeline, {{"timeline_id", -1}}, true, {{"timeline_id", -1}}},
        {VTE::HideElement, {{"element_id", 1}}, true, {{"element_id", 8}}},
        {VTE::ChangeText, {{"element_id", 2}, {"text", "t"}}, true, {{"element_id", 7}, {"text", "t"}}},
        {VTE::ShowElement, {{"element_id", 3}}, false, {{"element_id", 3}}},
        {VTE::PlaySymbol, {{"element_id", -20}}, false, {{"element_id", -20}}},
        {VTE::PlaySymbol, {{"element_id", -1}}, true, {{"element_id", -1}}},
        {VTE::PlaySymbol, {{"element_id", -2}}, false, {{"element_id", -2}}},
        {VTE::PauseSymbol, {{"element_id", -3}}, false, {{"element_id", -3}}},
        {VTE::MuteAllMedia, {}, true, {}},
        {VTE::JumpToScene, {{"scene_id", 2}}, true, {{"scene_id", 3}}},
        {VTE::JumpToScene, {{"scene_id", 1}}, false, {{"scene_id", 1}}},
        {VTE::JumpToScene, {{"scene_id", -5}}, true, {{"scene_id", -5}}},
        {VTE::JumpToScene, {{"scene_id", -6}}, false, {{"scene_id", -6}}},
        {VTE::GoToURL, {{"url", "u"}}, true, {{"url", "u"}}},
        {VTE::RunJavaScript, {{"function_id", -1}}, true, {{"function_id", -1}}},
        {VTE::RunJavaScript, {{"function_id", 8}}, true, {{"function_id", 8}}},
        {VTE::RunJavaScript, {{"function_id", 1}}, true, {{"function_id", 2}}},
        {999, {{"element_id", 1}}, false, {{"element_id", 1}}},
        {35, {{"element_id", 1}}, false, {{"element_id", 1}}},
    };
    for (const Case& test : lstCases) {
        const std::unique_ptr<VTEventListener> pListener(
            listener(VTE::MouseClick, test.nAction, test.joData));
        const QString strCase =
            QStringLiteral("action %1 with %2")
                .arg(test.nAction)
                .arg(QString::fromUtf8(QJsonDocument(test.joData).toJson(QJsonDocument::Compact)));
        QVERIFY2(pListener->adaptToScene(source, destination) == test.bAccepted, qPrintable(strCase));
        QVERIFY2(pListener->getActionData() == test.joAfter, qPrintable(strCase));
    }

    // Below the root symbol the parent symbol and the document make sense.
    destination.bIsRootSymbol = false;
    const std::unique_ptr<VTEventListener> pParent(
        listener(VTE::MouseClick, VTE::PlaySymbol, {{"element_id", -2}}));
    QVERIFY(pParent->adaptToScene(source, destination));

    // Without the managers behind them, timeline, scene and script actions are refused.
    const std::unique_ptr<VTEventListener> pTimeline(
        listener(VTE::MouseClick, VTE::PauseTimeline, {{"timeline_id", -1}}));
    const std::unique_ptr<VTEventListener> pScene(
        listener(VTE::MouseClick, VTE::JumpToScene, {{"scene_id", -2}}));
    const std::unique_ptr<VTEventListener> pScript(
        listener(VTE::MouseClick, VTE::RunJavaScript, {{"function_id", -1}}));
    destination.bHasTimelineManager = false;
    destination.pFunctionManager = nullptr;
    QVERIFY(!pTimeline->adaptToScene(source, destination));
    QVERIFY(!pScript->adaptToScene(source, destination));
    QVERIFY(pScene->adaptToScene(source, destination));
    source.bHasSceneManager = false;
    QVERIFY(!pScene->adaptToScene(source, destination));

    // A function of the same name but another kind is no match.
    destination = source;
    destination.bHasSceneManager = true;
    source.bHasSceneManager = true;
    pMatch->setType(VTFunctionData::NormalFunction);
    destination.pFunctionManager = &destinationFunctions;
    const std::unique_ptr<VTEventListener> pCall(
        listener(VTE::MouseClick, VTE::RunJavaScript, {{"function_id", 1}}));
    QVERIFY(!pCall->adaptToScene(source, destination));
    QCOMPARE(pCall->getActionData().value("function_id").toInt(), 1);
}

QTEST_GUILESS_MAIN(TestEventListeners)
#include "tst_eventlisteners.moc"
