#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementFactory.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QPointer>
#include <QSignalSpy>
#include <QUndoStack>
#include <QtTest>

namespace {

using Action = VTCommandAction;

// What a view saw of one record while the command ran.
struct Seen
{
    int nId = 0;
    bool bUndo = false;
    QObject* pSender = nullptr;
    QString strText;
    int nInt = 0;
};

// Records every record the document announces, reading what it needs during the emission, as a
// view must.
class RecordLog final
{
public:
    explicit RecordLog(VTDocument& document)
    {
        m_connection = QObject::connect(&document, &IDocument::dataChanged, [this](QObject* pObject) {
            const auto* pInfo = qobject_cast<VTUpdateViewInfo*>(pObject);
            QVERIFY(pInfo);
            Seen seen{pInfo->getId(), pInfo->isUndoCmd(), pInfo->getSender(), QString(), 0};
            if (const QList<VTCmdParam*>* pParams = pInfo->getParams()) {
                for (const VTCmdParam* pParam : *pParams) {
                    if (seen.strText.isEmpty() && pParam->getType() == VTCmdParam::String)
                        seen.strText = pParam->getAsString();
                    if (pParam->getType() == VTCmdParam::Int)
                        seen.nInt = pParam->getAsInt();
                }
            }
            m_lstSeen.append(seen);
        });
    }
    ~RecordLog() { QObject::disconnect(m_connection); }

    QList<int> ids() const
    {
        QList<int> lstIds;
        for (const Seen& seen : m_lstSeen)
            lstIds << seen.nId;
        return lstIds;
    }
    QStringList texts() const
    {
        QStringList texts;
        for (const Seen& seen : m_lstSeen) {
            if (!seen.strText.isEmpty())
                texts << seen.strText;
        }
        return texts;
    }

    QList<Seen> m_lstSeen;

private:
    QMetaObject::Connection m_connection;
};

// A project of two scenes, the first current, with an element in each.
struct Project
{
    Project()
    {
        document.getSceneManager()->addNewScenes(2, 800, 600, false);
        pFirst = document.getSceneManager()->getScenes().at(0);
        pSecond = document.getSceneManager()->getScenes().at(1);
        pElement = addDiv(pFirst, QStringLiteral("Box"));
        addDiv(pSecond, QStringLiteral("Other"));
    }
    static VTElement* addDiv(VTScene* pScene, const QString& name)
    {
        VTElement* pDiv = VTElementFactory::createElement(VT::DivElement);
        pDiv->setName(name);
        pScene->addElement(pDiv);
        return pDiv;
    }
    VTTimeline* timeline() const { return pFirst->getTimelineManager()->getCurrentTimeline(); }
    QUndoStack* stack() const { return document.getUndoStack(); }

    VTDocument document;
    VTScene* pFirst = nullptr;
    VTScene* pSecond = nullptr;
    VTElement* pElement = nullptr;
};

Action* labelAction(VTDocument* pDocument, VTTimeline* pTimeline, const QString& name,
                    bool bSkipFirstRedo = false)
{
    auto* pAction = new Action(Action::AddLabel, pDocument, 3, bSkipFirstRedo);
    pAction->addParam(pTimeline);
    pAction->addParam(name);
    pAction->addParam(100);
    return pAction;
}

class ProbeAction final : public VTCommandAction
{
public:
    explicit ProbeAction(int& nDeleted)
        : VTCommandAction(VTCommandAction::StopAllTasks, nullptr)
        , m_nDeleted(nDeleted)
    {}
    ~ProbeAction() override { ++m_nDeleted; }

private:
    int& m_nDeleted;
};

} // namespace

class TestCommandFramework : public QObject
{
    Q_OBJECT

private slots:
    void runOrder_data();
    void runOrder();
    void navigationContextRestored();
    void editingSymbolRestored();
    void symbolIdentity_data();
    void symbolIdentity();
    void skipNextRedo();
    void ownershipFollowsTheStack_data();
    void ownershipFollowsTheStack();
    void senderOnFirstRunOnly();
    void afterTheActions_data();
    void afterTheActions();
    void managingActions();
    void elementActionLookup();
    void doCmdRunsOnceOutsideTheStack();
    void submissionClearsStatusWhenClean();
};

void TestCommandFramework::runOrder_data()
{
    QTest::addColumn<bool>("bReverseRedo");
    QTest::addColumn<bool>("bReverseUndo");
    QTest::addColumn<QStringList>("redoTexts");
    QTest::addColumn<QStringList>("undoTexts");
    QTest::newRow("plain") << false << false << QStringList{"A", "B"} << QStringList{"B", "A"};
    QTest::newRow("reverse undo") << false << true << QStringList{"A", "B"} << QStringList{"A", "B"};
    QTest::newRow("reverse redo") << true << false << QStringList{"B", "A"} << QStringList{"B", "A"};
}

void TestCommandFramework::runOrder()
{
    QFETCH(bool, bReverseRedo);
    QFETCH(bool, bReverseUndo);
    QFETCH(QStringList, redoTexts);
    QFETCH(QStringList, undoTexts);
    Project project;
    auto* pCommand = new VTCommand(&project.document, QStringLiteral("Labels"));
    pCommand->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("A")));
    pCommand->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("B")));
    pCommand->setReverseRedoOrder(bReverseRedo);
    pCommand->setReverseUndoOrder(bReverseUndo);

    RecordLog log(project.document);
    project.document.submitCommand(pCommand, true);
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(log.texts(), redoTexts);
    QCOMPARE(project.timeline()->getMapLabel2TS().keys(), (QList<QString>{"A", "B"}));
    for (const Seen& seen : qAsConst(log.m_lstSeen))
        QVERIFY(!seen.bUndo);

    log.m_lstSeen.clear();
    project.stack()->undo();
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(log.texts(), undoTexts);
    QVERIFY(project.timeline()->getMapLabel2TS().isEmpty());
    for (const Seen& seen : qAsConst(log.m_lstSeen))
        QVERIFY(seen.bUndo);
}

void TestCommandFramework::navigationContextRestored()
{
    Project project;
    VTTimelineManager* pManager = project.pFirst->getTimelineManager();
    VTTimeline* pMain = pManager->getCurrentTimeline();
    auto* pSecondTimeline = new VTTimeline(project.pFirst);
    pManager->addTimeline(pSecondTimeline);
    pManager->setCurrentTimeline(pSecondTimeline);
    project.pElement->setSelected(true);

    auto* pCommand = new VTCommand(&project.document, QStringLiteral("Label"));
    pCommand->addAction(labelAction(nullptr, pSecondTimeline, QStringLiteral("L")));
    project.document.submitCommand(pCommand, true);
    QVERIFY(pCommand->hasNavigationContext());

    // The user goes elsewhere before undoing.
    project.pFirst->setSelected(false);
    project.pSecond->setSelected(true);
    pManager->setCurrentTimeline(pMain);
    project.pElement->setSelected(false);
    project.pSecond->getChildren().at(0)->setSelected(true);

    RecordLog log(project.document);
    project.stack()->undo();
    // Scenes in their order, the timeline, then the selection, before the command's own action.
    QCOMPARE(log.ids(), (QList<int>{Action::SelectScene, Action::SelectScene, Action::SetCurrentTimeline,
                                    Action::SelectElement, Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(project.document.getSceneManager()->getSelectedScenes(), (QList<VTScene*>{project.pFirst}));
    QCOMPARE(pManager->getCurrentTimeline(), pSecondTimeline);
    QVERIFY(project.pElement->isSelected());
    QVERIFY(pSecondTimeline->getMapLabel2TS().isEmpty());

    // Nothing moved since: the redo restores nothing.
    log.m_lstSeen.clear();
    project.stack()->redo();
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::CommandFinished}));
}

void TestCommandFramework::editingSymbolRestored()
{
    Project project;
    auto* pSymbol = new VTSymbol();
    pSymbol->getSceneManager()->addNewScenes(1, 200, 100, false);
    project.document.getResourceManager()->addResource(new VTResource(VTResource::Symbol), pSymbol);
    project.document.setCurrentSymbol(pSymbol);
    VTTimeline* pTimeline =
        pSymbol->getSceneManager()->getCurrentScene()->getTimelineManager()->getCurrentTimeline();

    auto* pCommand = new VTCommand(&project.document);
    pCommand->addAction(labelAction(nullptr, pTimeline, QStringLiteral("L")));
    project.document.submitCommand(pCommand, true);
    project.document.setCurrentSymbol(&project.document);

    RecordLog log(project.document);
    project.stack()->undo();
    QCOMPARE(log.ids().value(0), int(Action::EditingSymbolChanged));
    QCOMPARE(project.document.getEditingSymbolStack(), (QList<VTSymbol*>{pSymbol}));
    QCOMPARE(log.ids().last(), int(Action::CommandFinished));
}

void TestCommandFramework::symbolIdentity_data()
{
    QTest::addColumn<QList<int>>("lstIds");
    QTest::addColumn<bool>("bInSymbol");
    QTest::addColumn<bool>("bAdded");
    QTest::newRow("selection only") << QList<int>{Action::SelectScene, Action::SetCurrentTimeline,
                                                  Action::SelectElement}
                                    << true << false;
    QTest::newRow("records and resources only")
        << QList<int>{Action::RestoreResource, Action::TextFormatChanged, Action::ResourceChanged} << true
        << false;
    QTest::newRow("a change") << QList<int>{Action::SelectElement, Action::RenameTimeline} << true << true;
    QTest::newRow("element change") << QList<int>{1006} << true << true;
    QTest::newRow("project itself") << QList<int>{Action::RenameTimeline} << false << false;
}

void TestCommandFramework::symbolIdentity()
{
    QFETCH(QList<int>, lstIds);
    QFETCH(bool, bInSymbol);
    QFETCH(bool, bAdded);
    Project project;
    auto* pSymbol = new VTSymbol();
    pSymbol->getSceneManager()->addNewScenes(1, 200, 100, false);
    auto* pResource = new VTResource(VTResource::Symbol);
    project.document.getResourceManager()->addResource(pResource, pSymbol);
    if (bInSymbol)
        project.document.setCurrentSymbol(pSymbol);
    const QUuid before = pResource->getUuid();

    // Actions without parameters change nothing; what counts here is their ids.
    auto* pCommand = new VTCommand(&project.document);
    for (int nId : lstIds)
        pCommand->addAction(new Action(nId, nullptr));
    project.document.submitCommand(pCommand, true);
    const int nCount = pCommand->getActions().size();
    QCOMPARE(nCount, lstIds.size() + (bAdded ? 1 : 0));
    QCOMPARE(pCommand->getActions().last()->getId() == Action::ChangeResourceUuid, bAdded);
    QCOMPARE(pResource->getUuid() != before, bAdded);
    if (!bAdded)
        return;
    QCOMPARE(pCommand->getActions().last()->getParam(0)->getAsResource(), pResource);
    project.stack()->undo();
    QCOMPARE(pResource->getUuid(), before);
}

void TestCommandFramework::skipNextRedo()
{
    Project project;
    // The stage has made the change already when the command is built.
    project.timeline()->addLabel(QStringLiteral("L"), 100);
    auto* pCommand = new VTCommand(&project.document);
    pCommand->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("L"), true));
    RecordLog log(project.document);
    project.document.submitCommand(pCommand, true);
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(project.timeline()->getLabelValue(QStringLiteral("L")), 100);
    QVERIFY(!pCommand->getActions().at(0)->isSkipNextRedo());

    log.m_lstSeen.clear();
    project.stack()->undo();
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(project.timeline()->getLabelValue(QStringLiteral("L")), -1);
    project.stack()->redo();
    QCOMPARE(project.timeline()->getLabelValue(QStringLiteral("L")), 100);
}

void TestCommandFramework::ownershipFollowsTheStack_data()
{
    QTest::addColumn<bool>("bUndone");
    QTest::newRow("removal stays done") << false;
    QTest::newRow("removal undone") << true;
}

void TestCommandFramework::ownershipFollowsTheStack()
{
    QFETCH(bool, bUndone);
    Project project;
    VTElement* pSibling = Project::addDiv(project.pFirst, QStringLiteral("Second"));
    QPointer<VTElement> pElement = project.pElement;
    const int nId = pElement->getId();
    auto* pCommand = new VTCommand(&project.document);
    auto* pAction = new Action(Action::RemoveElement, nullptr, 3);
    pAction->addParam(pElement.data());
    pAction->addParam(-1);
    pAction->addParam(project.pFirst);
    pCommand->addAction(pAction);
    project.document.submitCommand(pCommand, true);
    QVERIFY(!pElement->getParent());
    QVERIFY(pAction->getParam(0)->isOwned());

    if (bUndone) {
        project.stack()->undo();
        QVERIFY(!pAction->getParam(0)->isOwned());
    }
    // The command leaves the stack, with whatever it owns at that moment.
    project.stack()->clear();
    QCOMPARE(pElement.isNull(), !bUndone);
    if (bUndone) {
        QCOMPARE(project.pFirst->getChildren(), (QList<VTElement*>{pElement.data(), pSibling}));
        QCOMPARE(pElement->getId(), nId);
    }
}

void TestCommandFramework::senderOnFirstRunOnly()
{
    Project project;
    QObject view;
    auto* pCommand = new VTCommand(&project.document, QStringLiteral("Label"), &view);
    pCommand->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("L")));
    RecordLog log(project.document);
    project.document.submitCommand(pCommand, true);
    QCOMPARE(log.m_lstSeen.size(), 2);
    for (const Seen& seen : qAsConst(log.m_lstSeen))
        QCOMPARE(seen.pSender, &view);

    log.m_lstSeen.clear();
    project.stack()->undo();
    project.stack()->redo();
    QCOMPARE(log.m_lstSeen.size(), 4);
    for (const Seen& seen : qAsConst(log.m_lstSeen))
        QVERIFY(!seen.pSender);
}

void TestCommandFramework::afterTheActions_data()
{
    QTest::addColumn<int>("nId");
    QTest::addColumn<QList<int>>("expected");
    QTest::addColumn<double>("dLeft");
    QTest::addColumn<bool>("bFontsRegistered");
    QTest::newRow("keyframe change") << int(Action::MoveKeyframe)
                                     << QList<int>{Action::MoveKeyframe, Action::TimeChanged,
                                                   Action::CommandFinished}
                                     << 50.0 << false;
    QTest::newRow("breakpoint change")
        << int(Action::ChangeCurrentBreakpoint)
        << QList<int>{Action::ChangeCurrentBreakpoint, Action::TimeChanged, Action::CommandFinished} << 50.0
        << false;
    QTest::newRow("label") << int(Action::AddLabel) << QList<int>{Action::AddLabel, Action::CommandFinished}
                           << 999.0 << false;
    QTest::newRow("element action") << 1000 << QList<int>{1000, Action::CommandFinished} << 999.0 << false;
    QTest::newRow("resource deleted")
        << int(Action::DeleteResource) << QList<int>{Action::DeleteResource, Action::CommandFinished} << 999.0
        << true;
}

void TestCommandFramework::afterTheActions()
{
    QFETCH(int, nId);
    QFETCH(QList<int>, expected);
    QFETCH(double, dLeft);
    QFETCH(bool, bFontsRegistered);
    Project project;
    VTTimeline* pTimeline = project.timeline();
    VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(VT::PropLeft, project.pElement, VTLayoutKey::base());
    pKeyframe->addKeyValue(new VTKeyValue(0, 0.0), QEasingCurve::Linear, true);
    pKeyframe->addKeyValue(new VTKeyValue(1000, 100.0), QEasingCurve::Linear, true);
    VTAnimation* pAnimation = VTAnimationFactory::createAnimation(project.pElement);
    pAnimation->addKeyframe(pKeyframe);
    pTimeline->addAnimation(pAnimation, VTLayoutKey::base());
    pTimeline->setCurrentTime(500);
    QCOMPARE(project.pElement->getPositionX(), 50.0);
    // A stale value, as a change of the animation could leave it.
    project.pElement->setPositionX(999.0);

    // Without parameters the action changes nothing itself.
    auto* pCommand = new VTCommand(&project.document);
    pCommand->addAction(new Action(nId, nullptr));
    RecordLog log(project.document);
    QSignalSpy status(&project.document, &IDocument::statusChanged);
    pCommand->doCmd();
    QCOMPARE(log.ids(), expected);
    QCOMPARE(project.pElement->getPositionX(), dLeft);
    QCOMPARE(status.count() > 0, bFontsRegistered);
    if (expected.contains(Action::TimeChanged)) {
        const Seen& time = log.m_lstSeen.at(expected.indexOf(Action::TimeChanged));
        QCOMPARE(time.nInt, 500);
    }

    // A command without actions only closes.
    pCommand->clearActions();
    log.m_lstSeen.clear();
    pCommand->undo();
    QCOMPARE(log.ids(), (QList<int>{Action::CommandFinished}));
    delete pCommand;
}

void TestCommandFramework::managingActions()
{
    Project project;
    int nDeleted = 0;
    VTCommand command(&project.document);
    command.addAction(nullptr);
    QVERIFY(command.isEmpty());
    auto* pFirst = new ProbeAction(nDeleted);
    command.addAction(pFirst);
    QCOMPARE(pFirst->getDocument(), &project.document);
    command.addActions({new ProbeAction(nDeleted), nullptr, new ProbeAction(nDeleted)});
    QCOMPARE(command.getActions().size(), 3);

    QList<VTCommandAction*> lstDetached = command.detachActions();
    QCOMPARE(lstDetached.size(), 3);
    QVERIFY(command.isEmpty());
    QCOMPARE(nDeleted, 0);

    command.addAction(new ProbeAction(nDeleted));
    command.setActions(lstDetached);
    QCOMPARE(nDeleted, 1);
    QCOMPARE(command.getActions(), lstDetached);

    VTDocument other;
    command.setDocument(&other);
    for (const VTCommandAction* pAction : command.getActions())
        QCOMPARE(pAction->getDocument(), &other);
    command.clearActions();
    QCOMPARE(nDeleted, 4);
    QVERIFY(command.isEmpty());

    {
        VTCommand dying(&project.document);
        dying.addAction(new ProbeAction(nDeleted));
    }
    QCOMPARE(nDeleted, 5);
}

void TestCommandFramework::elementActionLookup()
{
    Project project;
    VTElement* pOther = project.pSecond->getChildren().at(0);
    VTCommand command(&project.document);
    const auto select = [&command](VTElement* pElement) {
        auto* pAction = new Action(Action::SelectElement, nullptr);
        pAction->addParam(pElement);
        pAction->addParam(true);
        command.addAction(pAction);
        return pAction;
    };
    Action* pSelectBox = select(project.pElement);
    Action* pSelectOther = select(pOther);
    auto* pById = new Action(Action::SelectElement, nullptr);
    pById->addParam(7);
    command.addAction(pById);
    auto* pSelectScene = new Action(Action::SelectElement, nullptr);
    pSelectScene->addParam(project.pSecond);
    command.addAction(pSelectScene);

    QCOMPARE(command.getElementActionById(Action::SelectElement, pOther, 0), pSelectOther);
    QCOMPARE(command.getElementActionById(Action::SelectElement, project.pElement, 0), pSelectBox);
    QCOMPARE(command.getElementActionById(Action::SelectElement, project.pSecond, 0), pSelectScene);
    // A parameter of another type stands for no element.
    QCOMPARE(command.getElementActionById(Action::SelectElement, nullptr, 0), pById);
    QCOMPARE(command.getElementActionById(Action::RemoveElement, pOther, 0), nullptr);
    QCOMPARE(command.getElementActionById(Action::SelectElement, pOther, 1), nullptr);
}

void TestCommandFramework::doCmdRunsOnceOutsideTheStack()
{
    Project project;
    VTCommand command(&project.document);
    command.addAction(labelAction(nullptr, project.timeline(), QStringLiteral("L")));
    RecordLog log(project.document);
    command.doCmd();
    QCOMPARE(log.ids(), (QList<int>{Action::AddLabel, Action::CommandFinished}));
    QCOMPARE(project.timeline()->getLabelValue(QStringLiteral("L")), 100);
    QCOMPARE(project.stack()->count(), 0);
    QVERIFY(!command.hasNavigationContext());
}

void TestCommandFramework::submissionClearsStatusWhenClean()
{
    Project project;
    project.document.setStatus(QStringLiteral("Ready"));
    QSignalSpy status(&project.document, &IDocument::statusChanged);
    auto* pFirst = new VTCommand(&project.document);
    pFirst->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("A")));
    project.document.submitCommand(pFirst, true);
    QCOMPARE(project.document.getStatus(), QString());
    QCOMPARE(status.count(), 1);
    QCOMPARE(project.document.getCurrentCommand(), pFirst);

    project.document.setStatus(QStringLiteral("Busy"));
    auto* pSecond = new VTCommand(&project.document);
    pSecond->addAction(labelAction(nullptr, project.timeline(), QStringLiteral("B")));
    project.document.submitCommand(pSecond, false);
    QCOMPARE(project.document.getStatus(), QStringLiteral("Busy"));
    QCOMPARE(project.stack()->count(), 2);
    QCOMPARE(project.timeline()->getLabelValue(QStringLiteral("B")), 100);
}

QTEST_MAIN(TestCommandFramework)
#include "tst_commandframework.moc"
