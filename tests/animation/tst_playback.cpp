#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTPlayback.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <climits>
#include <memory>

using VTE = VTEventListener;

namespace {

constexpr int kElementId = 7;

// A mark as the editor makes it; a null speed or position is left out of the action data.
VTEventListener* mark(int nType, int nTime, const QJsonValue& speed = QJsonValue(),
                      const QJsonValue& position = QJsonValue())
{
    QJsonObject joData{{"element_id", kElementId}};
    if (!speed.isNull() && !speed.isUndefined())
        joData.insert("speed", speed);
    if (!position.isNull() && !position.isUndefined())
        joData.insert("time", position);
    return new VTEventListener(VTE::Playback, static_cast<VTE::ActionType>(nType), {{"action_time", nTime}},
                               joData);
}

// Marks written as JSON text, each [type, time, speed, position].
void addMarks(VTPlayback& playback, const QByteArray& marksJson)
{
    const QJsonArray jaMarks = QJsonDocument::fromJson(marksJson).array();
    for (const QJsonValue& value : jaMarks) {
        const QJsonArray jaMark = value.toArray();
        playback.addEventListener(
            mark(jaMark.at(0).toInt(), jaMark.at(1).toInt(), jaMark.at(2), jaMark.at(3)));
    }
}

// Each mark's stored "duration", or with bTimes its "action_time".
QList<int> valuesOf(const VTPlayback& playback, bool bTimes = false)
{
    QList<int> lstValues;
    for (const VTEventListener* pListener : playback.getEventListenerList()->getEventListeners())
        lstValues.append(bTimes ? pListener->getActionTime()
                                : pListener->getActionData().value("duration").toInt(-1));
    return lstValues;
}

// The player entries as [t, d, a], after checking what every entry shares.
QJsonArray exportOf(const VTPlayback& playback, int nD, const VTPlayback::LabelLookup& lookup = {})
{
    QJsonArray jaEntries;
    playback.appendPlaybacksData(jaEntries, kElementId, nD, lookup);
    QJsonArray jaShort;
    for (const QJsonValue& value : qAsConst(jaEntries)) {
        const QJsonObject joEntry = value.toObject();
        if (joEntry.value("el").toInt() != kElementId || joEntry.value("p").toString() != "pb")
            return {};
        jaShort.append(QJsonArray{joEntry.value("t"), joEntry.value("d"), joEntry.value("a")});
    }
    return jaShort;
}

int labelTime(const QString& strLabel)
{
    return strLabel == "intro" ? 2000 : -1;
}

} // namespace

class TestPlayback : public QObject
{
    Q_OBJECT
private slots:
    void runDurations_data();
    void runDurations();
    void playerEntries_data();
    void playerEntries();
    void symbolLabels();
    void markOrder();
    void projectForm();
    void hostileMarks();
};

void TestPlayback::runDurations_data()
{
    QTest::addColumn<QByteArray>("marks");
    QTest::addColumn<int>("nD");
    QTest::addColumn<QList<int>>("lstDurations");
    QTest::addColumn<int>("nEnd");

    QTest::newRow("double speed") << QByteArray("[[40,0,200]]") << 10000 << QList<int>{5000} << 5000;
    QTest::newRow("pause cuts the run")
        << QByteArray("[[40,0,200],[43,2000]]") << 10000 << QList<int>{2000, 0} << 2000;
    QTest::newRow("pause at past the end falls back to 0")
        << QByteArray("[[44,1000,null,15000],[41,2000,100]]") << 10000 << QList<int>{0, 10000} << 12000;
    QTest::newRow("nothing to play") << QByteArray("[[40,0,100],[41,500,100],[42,1000,100,300]]") << 0
                                     << QList<int>{0, 0, 0} << 1000;
    QTest::newRow("play while playing continues slower")
        << QByteArray("[[40,0,100],[41,2000,50]]") << 10000 << QList<int>{2000, 16000} << 18000;
    // 7 * -33 / 100 truncates to -2: the position is 9998, not 9997.
    QTest::newRow("advance divides toward zero")
        << QByteArray("[[40,0,-33],[41,7,-100]]") << 10000 << QList<int>{7, 9998} << 10005;
    QTest::newRow("play after the run ended restarts")
        << QByteArray("[[40,0,100],[41,12000,-100]]") << 10000 << QList<int>{10000, 10000} << 22000;
    QTest::newRow("pause after the end resets") << QByteArray("[[40,0,100],[43,12000],[41,13000,100]]")
                                                << 10000 << QList<int>{10000, 0, 10000} << 23000;
    QTest::newRow("play from past the end is empty")
        << QByteArray("[[42,1000,100,12000]]") << 10000 << QList<int>{0} << 1000;
    QTest::newRow("no usable speed runs nowhere")
        << QByteArray("[[40,0],[41,100,\"fast\"]]") << 10000 << QList<int>{0, 0} << 100;
}

void TestPlayback::runDurations()
{
    QFETCH(QByteArray, marks);
    QFETCH(int, nD);
    QFETCH(QList<int>, lstDurations);
    QFETCH(int, nEnd);

    VTPlayback playback;
    addMarks(playback, marks);
    playback.updatePlayback(nD, {});
    QCOMPARE(valuesOf(playback), lstDurations);
    QCOMPARE(playback.duration(), nEnd);
}

void TestPlayback::playerEntries_data()
{
    QTest::addColumn<QByteArray>("marks");
    QTest::addColumn<int>("nD");
    QTest::addColumn<QByteArray>("entries"); // each [t, d, a]

    QTest::newRow("pause cuts, reverse play resumes from there")
        << QByteArray("[[40,0,200],[43,2000],[41,3000,-100]]") << 10000
        << QByteArray("[[0,2000,[40,0,2]],[2000,0,[43,4000]],[3000,4000,[41,4000,-1]]]");
    QTest::newRow("reverse play at 0 starts from the end")
        << QByteArray("[[41,1000,-100]]") << 10000 << QByteArray("[[1000,10000,[40,10000,-1]]]");
    QTest::newRow("pause at past the end stands at the end")
        << QByteArray("[[40,0,100],[44,3000,null,15000],[41,4000,100]]") << 10000
        << QByteArray("[[0,3000,[40,0,1]],[3000,0,[44,10000]],[4000,10000,[40,0,1]]]");
    // 0.3 * 3332 rounds to 1000 = D: kept one short, and the next play keeps the speed.
    QTest::newRow("cut at the end stops short of it")
        << QByteArray("[[40,0,30],[43,3332],[41,4000]]") << 1000
        << QByteArray("[[0,3332,[40,0,0.3]],[3332,0,[43,999]],[4000,3,[41,999,0.3]]]");
    QTest::newRow("backward cut at 0 stops short of it")
        << QByteArray("[[40,0,-30],[43,3332],[41,4000,-100]]") << 1000
        << QByteArray("[[0,3332,[40,1000,-0.3]],[3332,0,[43,1]],[4000,1,[41,1,-1]]]");
    QTest::newRow("play from defaults and limits")
        << QByteArray("[[42,0,-200],[42,1000,100,20000]]") << 10000
        << QByteArray("[[0,1000,[42,10000,-2]],[1000,0,[42,10000,1]]]");
}

void TestPlayback::playerEntries()
{
    QFETCH(QByteArray, marks);
    QFETCH(int, nD);
    QFETCH(QByteArray, entries);

    VTPlayback playback;
    addMarks(playback, marks);
    QCOMPARE(exportOf(playback, nD), QJsonDocument::fromJson(entries).array());
}

void TestPlayback::symbolLabels()
{
    VTPlayback playback;
    addMarks(playback, R"([[22,1000,100,"intro"],[24,9000,null,"intro"]])");
    playback.updatePlayback(8000, labelTime);
    QCOMPARE(valuesOf(playback), QList<int>({6000, 0}));
    QCOMPARE(exportOf(playback, 8000, labelTime),
             QJsonDocument::fromJson("[[1000,6000,[22,2000,1]],[9000,0,[24,2000]]]").array());

    // A label the symbol does not have, or any label on media, plays from the start.
    for (const int nType : {22, 42}) {
        VTPlayback unknown;
        const VTPlayback::LabelLookup lookup = nType == 22 ? labelTime : VTPlayback::LabelLookup();
        unknown.addEventListener(mark(nType, 0, 100, nType == 22 ? "outro" : "intro"));
        unknown.updatePlayback(8000, lookup);
        QCOMPARE(valuesOf(unknown), QList<int>({8000}));
        QCOMPARE(exportOf(unknown, 8000, lookup).at(0).toArray().at(2).toArray().at(1).toInt(), 0);
    }
}

void TestPlayback::markOrder()
{
    VTPlayback playback;
    QCOMPARE(playback.getFirstActionTime(), -1);
    VTEventListener* pFirstAt500 = mark(41, 500, 100);
    VTEventListener* pSecondAt500 = mark(43, 500);
    VTEventListener* pLate = mark(40, 900, 100);
    playback.addEventListener(pLate);
    playback.addEventListener(pFirstAt500);
    playback.addEventListener(pSecondAt500);
    playback.addEventListener(mark(44, 0));
    playback.addEventListener(pLate);   // already here
    playback.addEventListener(nullptr); // nothing
    QCOMPARE(valuesOf(playback, true), QList<int>({0, 500, 500, 900}));
    QCOMPARE(playback.getEventListenerList()->getEventListenerIndex(pSecondAt500), 2);
    QCOMPARE(playback.getEventlistener(500), pFirstAt500);
    QCOMPARE(playback.getEventlistener(501), nullptr);
    QCOMPARE(playback.getFirstActionTime(), 0);

    // Moving onto an occupied time puts the mark after the one already there.
    pLate->setEventData({{"action_time", 900}, {"note", "dropped"}});
    playback.changeActionTime(pLate, 500);
    QCOMPARE(playback.getEventListenerList()->getEventListenerIndex(pLate), 3);
    QCOMPARE(pLate->getEventData(), QJsonObject({{"action_time", 500}}));
    playback.changeActionTime(pFirstAt500, 2000);
    QCOMPARE(playback.getEventListenerList()->getEventListeners().last(), pFirstAt500);
    QCOMPARE(valuesOf(playback, true), QList<int>({0, 500, 500, 2000}));

    // A listener of someone else is neither moved in nor taken over.
    const std::unique_ptr<VTEventListener> pForeign(mark(41, 100, 100));
    playback.changeActionTime(pForeign.get(), 300);
    QCOMPARE(pForeign->getActionTime(), 100);
    QCOMPARE(playback.getEventListenerList()->getEventListenerCount(), 4);

    playback.moveAllEvents(INT_MAX - 1000);
    QCOMPARE(valuesOf(playback, true), QList<int>({INT_MAX - 1000, INT_MAX - 500, INT_MAX - 500, INT_MAX}));
    QVERIFY(playback.detachEventListener(pSecondAt500));
    QVERIFY(!playback.detachEventListener(pSecondAt500));
    delete pSecondAt500;
}

void TestPlayback::projectForm()
{
    VTPlayback playback;
    addMarks(playback, "[[40,0,200],[43,2000],[41,3000,-100]]");
    playback.updatePlayback(10000, {});
    // The pause counts timeline time, so the backward run starts from 2000, not from 4000.
    QCOMPARE(valuesOf(playback), QList<int>({2000, 0, 2000}));
    QJsonArray jaSaved;
    playback.serialize(jaSaved);

    // Shuffled, with intruders: a timeline action, a toggle, no time, a text time, not an object.
    const auto changed = [&jaSaved](const QString& strKey, const QJsonValue& value) {
        QJsonObject joListener = jaSaved.at(0).toObject();
        joListener.insert(strKey, value);
        return QJsonValue(joListener);
    };
    QJsonArray jaFile{jaSaved.at(2), jaSaved.at(0), jaSaved.at(1)};
    for (const QJsonValue& intruder :
         {changed("action", VTE::StartTimeline), changed("action", VTE::TogglePlayPauseMedia),
          changed("event_value", QJsonObject()), changed("event_value", QJsonObject{{"action_time", "soon"}}),
          QJsonValue(42)})
        jaFile.insert(1, intruder);

    VTPlayback read;
    read.addEventListener(mark(40, 50000, 100)); // replaced by what the file holds
    QStringList lstProblems;
    QVERIFY(!read.parse(jaFile, &lstProblems));
    QCOMPARE(lstProblems.size(), 5);
    QCOMPARE(lstProblems.filter("is not a playback action").size(), 2);
    QVERIFY(lstProblems.filter("action 1 ").size() == 1 && lstProblems.filter("action 49 ").size() == 1);
    QCOMPARE(valuesOf(read, true), QList<int>({0, 2000, 3000}));
    QJsonArray jaResaved;
    read.serialize(jaResaved);
    QCOMPARE(jaResaved, jaSaved);
    QCOMPARE(read.duration(), 3000 + 2000);
    QCOMPARE(read.getFirstActionTime(), 0);

    // A fractional or out-of-range time is kept, made whole and noted.
    lstProblems.clear();
    QVERIFY(!read.parse({changed("event_value", QJsonObject{{"action_time", 1e12}})}, &lstProblems));
    QCOMPARE(lstProblems.size(), 1);
    QCOMPARE(valuesOf(read, true), QList<int>({INT_MAX}));
    QCOMPARE(read.duration(), INT_MAX);

    QVERIFY(read.parse(QJsonArray()));
    QCOMPARE(read.duration(), 0);
    QCOMPARE(read.getFirstActionTime(), -1);
}

void TestPlayback::hostileMarks()
{
    // Whatever the marks hold, runs stay non-negative and player positions within 0..D.
    VTPlayback playback;
    addMarks(playback, R"([[40,-2147483648,100],[41,-5,1e-300],[42,0,-1e-320,"label"],[41,10,1e300],
        [44,20,null,[1]],[42,30,-100,-500],[45,40,100],[40,2147483637,1],[43,2147483647]])");
    for (const int nD : {0, 1, 10000, INT_MAX}) {
        playback.updatePlayback(nD, labelTime);
        for (const int nDuration : valuesOf(playback))
            QVERIFY(nDuration >= 0);
        QVERIFY(playback.duration() >= 0);
        const QJsonArray jaEntries = exportOf(playback, nD, labelTime);
        QCOMPARE(jaEntries.size(), 8); // the mute mark is not a playback action
        for (const QJsonValue& value : jaEntries) {
            const QJsonArray jaEntry = value.toArray();
            QVERIFY(jaEntry.at(0).toDouble() >= 0 && jaEntry.at(1).toDouble() >= 0);
            const double dStart = jaEntry.at(2).toArray().at(1).toDouble();
            QVERIFY2(dStart >= 0 && dStart <= nD, qPrintable(QString::number(dStart)));
        }
    }
}

QTEST_GUILESS_MAIN(TestPlayback)
#include "tst_playback.moc"
