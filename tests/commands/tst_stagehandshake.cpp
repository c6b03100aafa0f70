#include "EditSymbolEvent.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTEventLoopLocker.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QElapsedTimer>
#include <QUndoStack>
#include <QtTest>

namespace {

using Action = VTCommandAction;

// The records a view receives: id and the first two parameters as the view reads them.
struct Seen
{
    int nId = 0;
    const void* pFirst = nullptr;
    int nSecond = 0;
};

// What the views hear, from the moment it is made.
struct RecordLog
{
    explicit RecordLog(VTDocument& document)
    {
        QObject::connect(&document, &IDocument::dataChanged, &context, [this](QObject* pObject) {
            const auto* pInfo = qobject_cast<VTUpdateViewInfo*>(pObject);
            const QList<VTCmdParam*> lstParams =
                pInfo->getParams() ? *pInfo->getParams() : QList<VTCmdParam*>();
            lstSeen.append({pInfo->getId(), lstParams.value(0) ? lstParams.at(0)->getObject() : nullptr,
                            lstParams.value(1) ? lstParams.at(1)->getAsInt() : 0});
        });
    }
    QList<int> ids() const
    {
        QList<int> lstIds;
        for (const Seen& seen : lstSeen)
            lstIds << seen.nId;
        return lstIds;
    }
    QList<Seen> lstSeen;
    QObject context;
};

struct Project
{
    Project()
    {
        document.getSceneManager()->addNewScenes(1, 800, 600, false);
        pTimeline = document.getSceneManager()->getCurrentScene()->getTimelineManager()->getCurrentTimeline();
        // A label gives the timeline a length to play.
        pTimeline->addLabel(QStringLiteral("end"), 5000);
    }
    VTDocument document;
    VTTimeline* pTimeline = nullptr;
};

} // namespace

class TestStageHandshake : public QObject
{
    Q_OBJECT

private slots:
    void waitEndsOnAnswerOrTime();
    void playAndPauseTellTheViews();
    void symbolEditingThroughEvents();
};

void TestStageHandshake::waitEndsOnAnswerOrTime()
{
    VTEventLoopLocker* pLocker = VTEventLoopLocker::getInstance();
    pLocker->stopWaiting();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!pLocker->wait(80));
    QVERIFY2(timer.elapsed() >= 75, qPrintable(QString::number(timer.elapsed())));

    // No limit: only the answer ends it.
    bool bWaitingInside = false;
    QTimer::singleShot(100, pLocker, [&]() {
        bWaitingInside = pLocker->isWaiting();
        pLocker->stopWaiting();
    });
    timer.restart();
    QVERIFY(pLocker->wait(0));
    QVERIFY(bWaitingInside && timer.elapsed() >= 95);
    QVERIFY(!pLocker->isWaiting());

    // A wait inside a wait: two answers in one pass of events end one wait each.
    bool bInnerAnswered = false;
    QTimer::singleShot(10, pLocker, [&]() {
        QTimer::singleShot(10, pLocker, [pLocker]() {
            pLocker->stopWaiting();
            pLocker->stopWaiting();
        });
        bInnerAnswered = pLocker->wait(3000);
    });
    timer.restart();
    QVERIFY(pLocker->wait(3000));
    QVERIFY(bInnerAnswered);
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
}

void TestStageHandshake::playAndPauseTellTheViews()
{
    Project project;
    RecordLog log(project.document);
    QVERIFY(!project.document.pause());
    QVERIFY(log.lstSeen.isEmpty());

    project.pTimeline->setCurrentTime(700);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(project.document.play());
    // Nobody answers the handshake here: play waits it out.
    QVERIFY2(timer.elapsed() >= 450, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(project.pTimeline->state(), QAbstractAnimation::Running);
    QCOMPARE(log.ids(), (QList<int>{Action::StopAllTasks, Action::CommandFinished, Action::TimelinePlayed,
                                    Action::CommandFinished}));
    QCOMPARE(log.lstSeen.value(2).pFirst, static_cast<const void*>(project.pTimeline));
    QCOMPARE(log.lstSeen.value(2).nSecond, 700);
    QVERIFY(!project.document.play());

    log.lstSeen.clear();
    QVERIFY(project.document.pause());
    QVERIFY(project.pTimeline->state() != QAbstractAnimation::Running);
    QCOMPARE(log.ids(), (QList<int>{Action::TimelinePaused, Action::CommandFinished}));
    const Seen paused = log.lstSeen.value(0);
    QCOMPARE(paused.pFirst, static_cast<const void*>(project.pTimeline));
    QVERIFY2(paused.nSecond >= 700, qPrintable(QString::number(paused.nSecond)));
    QCOMPARE(paused.nSecond, project.pTimeline->getCurrentTime());
    QVERIFY(!project.document.pause());
}

void TestStageHandshake::symbolEditingThroughEvents()
{
    Project project;
    VTDocument& document = project.document;
    auto* pSymbol = new VTSymbol();
    pSymbol->getSceneManager()->addNewScenes(2, 200, 100, false);
    pSymbol->getSceneManager()->getCurrentScene()->setSelected(false);
    auto* pResource = new VTResource(VTResource::Symbol);
    document.getResourceManager()->addResource(pResource, pSymbol);
    auto* pImage = new VTResource(VTResource::Image);
    document.getResourceManager()->addResource(pImage);
    RecordLog log(document);

    // Only a live symbol resource opens anything.
    for (int nId : {pImage->getId(), 9999}) {
        QCoreApplication::postEvent(&document, new EditSymbolEvent(nId));
        QCoreApplication::sendPostedEvents(&document);
        QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    }
    pResource->setDeleted(true);
    QCoreApplication::postEvent(&document, new EditSymbolEvent(pResource->getId()));
    QCoreApplication::sendPostedEvents(&document);
    QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    QVERIFY(log.lstSeen.isEmpty());

    pResource->setDeleted(false);
    QCoreApplication::postEvent(&document, new EditSymbolEvent(pResource->getId()));
    QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    QCoreApplication::sendPostedEvents(&document);
    QCOMPARE(document.getCurrentSymbol(), pSymbol);
    // A symbol without a current scene opens on its first one.
    QCOMPARE(pSymbol->getSceneManager()->getCurrentScene(), pSymbol->getSceneManager()->getScenes().at(0));
    QVERIFY(log.ids().contains(Action::EditingSymbolChanged));
    QCOMPARE(document.getUndoStack()->count(), 0);

    document.endEditingSymbol();
    QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    log.lstSeen.clear();
    // Nothing to leave at the top.
    document.endEditingSymbol();
    QVERIFY(log.lstSeen.isEmpty());
}

QTEST_GUILESS_MAIN(TestStageHandshake)
#include "tst_stagehandshake.moc"
