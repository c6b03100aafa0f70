#include "ActionManager.h"
#include "ContextAction.h"
#include "IEditor.h"
#include "MainWindow.h"
#include "MessageRecorder.h"
#include "VTAutoShape.h"
#include "VTBreakpointManager.h"
#include "VTCanvas.h"
#include "VTCanvasMenus.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"
#include "VTElementFactory.h"
#include "VTHTMLExposingCanvas.h"
#include "VTMedia.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"
#include "WebChannelServer.h"

#include <QAction>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QSignalSpy>
#include <QUndoStack>
#include <QUrlQuery>
#include <QWebChannel>
#include <QtTest>

#include <memory>
#include <type_traits>

namespace {

using Action = VTCommandAction;

// A project of two scenes shown on a canvas without a page: records reach the canvas the way the
// editor passes them on, and the spies stand where the page would listen.
struct Stage
{
    Stage()
    {
        document.getSceneManager()->addNewScenes(2, 800, 600, false);
        pScene = document.getSceneManager()->getScenes().at(0);
        pOther = document.getSceneManager()->getScenes().at(1);
        pElement = add(pScene, VT::DivElement);
        pOtherElement = add(pOther, VT::DivElement);
        // The style sheet of the project itself, so no player template is read.
        document.setCssDoc(QStringLiteral("body { margin: 0 }"));
        canvas = std::make_unique<VTCanvas>(&editor);
        QObject::connect(&editor, &IEditor::documentDataChanged, canvas.get(), [this](QObject* pInfo) {
            canvas->handleDocumentChanged(qobject_cast<VTUpdateViewInfo*>(pInfo));
        });
        editor.setDocument(&document);
        canvas->handleDocumentLoaded();
    }
    VTElement* add(VTScene* pTarget, int nKind)
    {
        VTElement* pNew = VTElementFactory::createElement(nKind);
        pTarget->addElement(pNew);
        return pNew;
    }
    VTHTMLExposingCanvas* page() const { return canvas->getExposingCanvas(); }
    // One command outside the undo stack, made by pSender.
    void run(const QList<VTCommandAction*>& lstActions, QObject* pSender = nullptr)
    {
        VTCommand command(&document, QString(), pSender);
        command.addActions(lstActions);
        command.doCmd();
    }
    // Selection of an element (33) or a scene (7).
    template <typename T> VTCommandAction* select(T* pTarget, bool bSelect)
    {
        const bool bScene = std::is_same<T, VTScene>::value;
        auto* pAction =
            new VTCommandAction(bScene ? Action::SelectScene : Action::SelectElement, &document, 2);
        pAction->addParam(pTarget, false);
        pAction->addParam(bSelect);
        return pAction;
    }
    VTCommandAction* moveTo(VTElement* pTarget, double dX)
    {
        auto* pAction = new VTElementCommandAction(VTElementCommandAction::ChangeGeometry, &document);
        pAction->prepareChangeGeometryParams(pTarget);
        pAction->setChangeGeometryProperty(VT::PropLeft, dX);
        return pAction;
    }
    QAction* action(const QString& id) const { return canvas->getMenus()->getAction(id); }

    IEditor editor;
    VTDocument document;
    std::unique_ptr<VTCanvas> canvas;
    VTScene* pScene = nullptr;
    VTScene* pOther = nullptr;
    VTElement* pElement = nullptr;
    VTElement* pOtherElement = nullptr;
};

int recordId(const QSignalSpy& spy, int nIndex)
{
    return QJsonDocument::fromJson(spy.at(nIndex).at(0).toString().toUtf8()).object().value("cmd").toInt();
}

} // namespace

class TestCanvas : public QObject
{
    Q_OBJECT

private slots:
    void channelObjectAndPageUrl();
    void recordsReachingThePage();
    void sceneChangeSendsTheWholeScene();
    void zoomAndTransformTools();
    void finishAllTaskHandshake();
    void sceneDataKeys();
    void contextMenusFollowTheSelection();
    void breakpointMenu();
    void textEditingAndMedia();
};

void TestCanvas::channelObjectAndPageUrl()
{
    MainWindow window;
    IEditor editor;
    auto pFirst = std::make_unique<VTCanvas>(&editor);
    auto pSecond = std::make_unique<VTCanvas>(&editor);
    QCOMPARE(pSecond->getCanvasId(), pFirst->getCanvasId() + 1);
    const QString name = QStringLiteral("vtcanvas_%1").arg(pSecond->getCanvasId());
    QCOMPARE(pSecond->getExposingCanvas()->objectName(), name);
    QCOMPARE(window.getChannel()->registeredObjects().value(name), pSecond->getExposingCanvas());
    pSecond.reset();
    QVERIFY(!window.getChannel()->registeredObjects().contains(name));

    const QUrl url = VTCanvas::getPageUrl("/opt/vetra", window.getWebChannelUrl());
    QCOMPARE(url.toLocalFile(), QStringLiteral("/opt/vetra/resources/canvas/index.html"));
    const QString channel = QUrlQuery(url).queryItemValue("webChannelBaseUrl", QUrl::FullyDecoded);
    QCOMPARE(QUrl(channel), window.getWebChannelUrl());
    QVERIFY(channel.contains(window.getWebChannelServer()->getToken()));
}

void TestCanvas::recordsReachingThePage()
{
    Stage stage;
    QSignalSpy toPage(stage.page(), &VTHTMLExposingCanvas::dataChangedToJS);
    QList<QString> ends;
    QObject::connect(stage.page(), &VTHTMLExposingCanvas::needUpdateScenePos, [&] { ends << "pos"; });
    QObject::connect(stage.page(), &VTHTMLExposingCanvas::needRepaint, [&] { ends << "paint"; });

    QSignalSpy time(stage.page(), &VTHTMLExposingCanvas::setCurrentTime);
    QSignalSpy finish(stage.page(), &VTHTMLExposingCanvas::finishAllTask);
    const auto timeAt = [&stage](int nTime) {
        auto* pTime = new VTCommandAction(Action::TimeChanged, &stage.document, 2);
        pTime->addParam(nTime);
        pTime->addParam(true);
        return pTime;
    };

    // The page's own gesture: nothing goes back, not even the end of the command.
    stage.run({stage.moveTo(stage.pElement, 40), timeAt(100)}, stage.canvas.get());
    QCOMPARE(toPage.count(), 0);
    QCOMPARE(time.count(), 0);
    QVERIFY(ends.isEmpty());
    QVERIFY(!stage.canvas->isRepaintPending() && !stage.canvas->isUpdateScenePosPending());

    // Another view's change of the shown scene: the record, then the position and the repaint.
    stage.run({stage.moveTo(stage.pElement, 60)}, &stage.editor);
    QCOMPARE(toPage.count(), 1);
    QCOMPARE(recordId(toPage, 0), 1000);
    QCOMPARE(ends, (QList<QString>{"pos", "paint"}));

    // A selection in the other scene, and a change of a layout the scene does not show.
    ends.clear();
    toPage.clear();
    auto* pOtherLayout = stage.moveTo(stage.pElement, 80);
    pOtherLayout->getParams()[1]->setValue(1);
    stage.run({stage.select(stage.pOtherElement, true), pOtherLayout});
    QCOMPARE(toPage.count(), 0);
    QVERIFY(ends.isEmpty());

    // Playback records speak through their own signals; the stop request too.
    stage.run({timeAt(300), new VTCommandAction(Action::StopAllTasks, &stage.document)});
    QCOMPARE(time.count(), 1);
    QCOMPARE(time.at(0), (QVariantList{300, true}));
    QCOMPARE(finish.count(), 1);
    QCOMPARE(toPage.count(), 0);
}

void TestCanvas::sceneChangeSendsTheWholeScene()
{
    Stage stage;
    QSignalSpy scenes(stage.page(), &VTHTMLExposingCanvas::currentSceneChanged);
    QSignalSpy toPage(stage.page(), &VTHTMLExposingCanvas::dataChangedToJS);
    QSignalSpy repaint(stage.page(), &VTHTMLExposingCanvas::needRepaint);
    stage.canvas->setFocusedItemId(stage.pElement->getId());

    // The switch sends the scene once; what the command does next to the new scene still goes out.
    stage.run({stage.select(stage.pOther, true), stage.select(stage.pScene, false),
               stage.select(stage.pOtherElement, true)});
    QCOMPARE(stage.canvas->getCurrentScene(), stage.pOther);
    QCOMPARE(stage.canvas->getFocusedItemId(), -1);
    QCOMPARE(scenes.count(), 1);
    const QJsonObject data = QJsonDocument::fromJson(scenes.at(0).at(1).toString().toUtf8()).object();
    QCOMPARE(data.value("scene").toObject().value("id").toInt(), stage.pOther->getId());
    QCOMPARE(toPage.count(), 1);
    QCOMPARE(recordId(toPage, 0), int(Action::SelectElement));
    QCOMPARE(repaint.count(), 1);

    // The stage width arrives as a new scene, with nothing left pending.
    auto* pWidth = new VTCommandAction(Action::SetSymbolWidth, &stage.document, 2);
    pWidth->addParam(static_cast<VTSymbol*>(&stage.document), false);
    pWidth->addParam(640);
    stage.run({pWidth});
    QCOMPARE(scenes.count(), 2);
    QCOMPARE(repaint.count(), 1);
    QCOMPARE(stage.document.getWidth(), 640);
}

void TestCanvas::zoomAndTransformTools()
{
    Stage stage;
    QSignalSpy zoomToPage(stage.page(), &VTHTMLExposingCanvas::zoomFactorChanged);
    QSignalSpy zoomInfo(stage.canvas.get(), &VTCanvas::zoomInfoChanged);
    stage.page()->setZoomFactor(5.0);
    QCOMPARE(stage.canvas->getZoomFactor(), 4.0);
    stage.page()->setZoomFactor(0.01);
    QCOMPARE(stage.canvas->getZoomFactor(), 0.1);
    QCOMPARE(zoomToPage.count(), 0);
    QCOMPARE(zoomInfo.count(), 2);
    stage.canvas->setZoomFactor(2.0);
    QCOMPARE(zoomToPage.count(), 1);

    stage.canvas->setSceneOffset(200, 150);
    stage.canvas->setScrollValue(10, 20);
    QCOMPARE(stage.canvas->mapToCurrentScene(QPointF(400, 350)), QPointF(105, 110));
    QCOMPARE(stage.canvas->mapFromCurrentScene(QPointF(105, 110)), QPointF(400, 350));

    QSignalSpy tools(stage.page(), &VTHTMLExposingCanvas::transformToolChanged);
    stage.pElement->setSelected(true);
    stage.canvas->toggleTransformTools(1);
    stage.canvas->toggleTransformTools(2);
    QCOMPARE(stage.canvas->getTransformTools(), 3);
    QVERIFY(stage.pElement->isSelected());
    // The exclusive tool ends the others and the selection.
    stage.canvas->toggleTransformTools(8);
    QCOMPARE(stage.canvas->getTransformTools(), 8);
    QVERIFY(!stage.pElement->isSelected());
    stage.canvas->toggleTransformTools(4);
    QCOMPARE(stage.canvas->getTransformTools(), 4);
    stage.canvas->setTransformTools(4);
    QCOMPARE(tools.count(), 4);
    QCOMPARE(tools.last().at(0).toInt(), 4);
}

void TestCanvas::finishAllTaskHandshake()
{
    Stage stage;
    QSignalSpy finish(stage.page(), &VTHTMLExposingCanvas::finishAllTask);
    QElapsedTimer timer;
    timer.start();
    stage.document.stopAllCurrentTasks();
    QVERIFY2(timer.elapsed() >= 450 && timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(finish.count(), 1);

    // A page that answers ends the wait.
    QObject::connect(stage.page(), &VTHTMLExposingCanvas::finishAllTask, stage.page(),
                     &VTHTMLExposingCanvas::onAllTaskFinished, Qt::QueuedConnection);
    timer.restart();
    stage.document.stopAllCurrentTasks();
    QVERIFY2(timer.elapsed() < 400, qPrintable(QString::number(timer.elapsed())));
}

void TestCanvas::sceneDataKeys()
{
    Stage stage;
    QSignalSpy scenes(stage.page(), &VTHTMLExposingCanvas::currentSceneChanged);
    const auto lastData = [&scenes]() {
        return QJsonDocument::fromJson(scenes.last().at(1).toString().toUtf8()).object();
    };
    stage.page()->sendSceneDataToJS();
    QJsonObject data = lastData();
    QCOMPARE(scenes.last().at(0).toBool(), true);
    for (const char* key : {"scene", "resources", "outputCss", "symbolResourceId", "containerW", "containerH",
                            "docAlign", "autoAddKeyframe", "showContainerHandler", "transformTools"})
        QVERIFY2(data.contains(key), key);
    QVERIFY(!data.contains("breakpoints"));
    QVERIFY(!data.contains("canvasLoaderData"));
    QCOMPARE(data.value("outputCss").toString(), QStringLiteral("body { margin: 0 }"));
    QCOMPARE(data.value("symbolResourceId").toInt(), -1);
    QCOMPARE(data.value("containerW").toInt(), stage.document.getWidth());
    QCOMPARE(data.value("scene").toObject().value("elems").toArray().size(), 1);

    stage.document.getBreakpointManager()->addHorizontal(0);
    stage.document.getBreakpointManager()->addHorizontal(480);
    stage.canvas->toggleTransformTools(2);
    stage.page()->sendSceneDataToJS();
    data = lastData();
    QCOMPARE(data.value("breakpoints").toObject().value("h").toArray().size(), 2);
    QCOMPARE(data.value("transformTools").toInt(), 2);

    // Inside a symbol: its resource, its size.
    auto* pSymbol = new VTSymbol();
    pSymbol->setWidth(320);
    pSymbol->getSceneManager()->addNewScenes(1, 320, 200, false);
    auto* pResource = new VTResource(VTResource::Symbol);
    stage.document.getResourceManager()->addResource(pResource, pSymbol);
    stage.document.startEditingSymbol(pSymbol);
    data = lastData();
    QCOMPARE(data.value("symbolResourceId").toInt(), pResource->getId());
    QCOMPARE(data.value("containerW").toInt(), 320);

    // No scene to show.
    VTScene* pOnly = pSymbol->getSceneManager()->getCurrentScene();
    stage.run({stage.select(pOnly, false)});
    QCOMPARE(stage.canvas->getCurrentScene(), nullptr);
    QCOMPARE(scenes.last(), (QVariantList{false, QString()}));
}

void TestCanvas::contextMenusFollowTheSelection()
{
    Stage stage;
    QMenu* pMenu = stage.canvas->getMenus()->getMainMenu();
    QStringList names;
    for (QAction* pAction : pMenu->actions()) {
        if (!pAction->isSeparator() && !pAction->menu())
            names << pAction->objectName();
    }
    QCOMPARE(names, (QStringList{"Reload Canvas",
                                 "Edit Points",
                                 "Edit Text",
                                 "Edit.Convert_To_Symbol",
                                 "Edit.Edit_Symbol",
                                 "Edit.Restore_Original_Size",
                                 "Edit.Remove_All_Overrides",
                                 "Edit.Cut",
                                 "Edit.Copy",
                                 "Edit.Paste",
                                 "Paste Here",
                                 "Edit.Paste_With_Animation",
                                 "Edit.Delete",
                                 "Edit.Lock_All",
                                 "Edit.Hide ALL",
                                 "Edit.Lock",
                                 "Edit.Hide",
                                 "Edit.Copy_Event_Actions",
                                 "Edit.Paste_Event_Actions",
                                 "View.Event_Actions_Dialog"}));
    QVERIFY(ActionManager::getAction("Edit.Delete"));

    VTElement* pLocked = stage.add(stage.pScene, VT::TextElement);
    stage.pElement->setLocked(true);
    pLocked->setLocked(true);
    stage.canvas->updateActions();
    QVERIFY(stage.action("Edit.Lock_All")->isVisible());
    QVERIFY(!stage.action("Edit.Lock")->isVisible());
    QCOMPARE(stage.action("Edit.Lock_All")->text(), QStringLiteral("Unlock All"));
    QCOMPARE(stage.action("Edit.Hide ALL")->text(), QStringLiteral("Hide All"));
    QVERIFY(!stage.action("Edit.Delete")->isEnabled());

    pLocked->setSelected(true);
    pLocked->setVisible(false);
    stage.canvas->setFocusedItemId(pLocked->getId());
    stage.canvas->updateActions();
    QVERIFY(!stage.action("Edit.Lock_All")->isVisible());
    QVERIFY(stage.action("Edit.Hide")->isVisible());
    QCOMPARE(stage.action("Edit.Hide")->text(), QStringLiteral("Show"));
    QVERIFY(stage.action("Edit.Delete")->isEnabled());
    QVERIFY(stage.action("Edit Text")->isVisible());
    QVERIFY(!stage.action("Edit Points")->isVisible());

    // A line has no text to edit; a closed freeform has points to edit.
    VTElement* pFreeForm = stage.add(stage.pScene, VT::FreeFormElement);
    pLocked->setSelected(false);
    pFreeForm->setSelected(true);
    stage.canvas->setFocusedItemId(pFreeForm->getId());
    stage.canvas->updateActions();
    QVERIFY(stage.action("Edit Points")->isVisible());
    QVERIFY(stage.action("Edit Text")->isVisible());
    qobject_cast<VTAutoShape*>(pFreeForm)->setAutoShapeType(590);
    stage.canvas->updateActions();
    QVERIFY(!stage.action("Edit Text")->isVisible());
    QVERIFY(!stage.action("Edit Points")->isVisible());

    // Delete removes the selection in one undo step.
    stage.action("Edit.Delete")->trigger();
    QCOMPARE(stage.document.getUndoStack()->count(), 1);
    QCOMPARE(stage.pScene->findElementById(pFreeForm->getId()), nullptr);

    stage.canvas->showContextMenu(QPoint(50, 50));
    QTRY_VERIFY(pMenu->isVisible());
    QCOMPARE(stage.canvas->getLastContextMenuPos(), QPoint(50, 50));
    pMenu->hide();
}

void TestCanvas::breakpointMenu()
{
    Stage stage;
    MessageRecorder box;
    QMenu* pMenu = stage.canvas->getMenus()->getBreakpointMenu();
    VTBreakpointManager* pBreakpoints = stage.document.getBreakpointManager();

    stage.page()->setEditingBreakpoint(0, -1, 0);
    stage.canvas->showContextMenu(QPoint(10, 10));
    QTRY_VERIFY(pMenu->isVisible());
    pMenu->hide();
    QVERIFY(!stage.canvas->isEditingBreakpoint());
    QVERIFY(!stage.action("Remove Selection")->isEnabled());
    // Outside the ruler nothing is added.
    stage.action("Add Breakpoint")->trigger();
    QCOMPARE(stage.document.getUndoStack()->count(), 0);

    stage.page()->setEditingBreakpoint(0, -1, 500);
    stage.action("Add Breakpoint")->trigger();
    QCOMPARE(stage.document.getUndoStack()->count(), 1);
    QVERIFY(pBreakpoints->getHorizontalId(500) > 0);

    stage.page()->setEditingBreakpoint(0, 500, 500);
    stage.canvas->showContextMenu(QPoint(10, 10));
    QVERIFY(stage.action("Remove Selection")->isEnabled());
    pMenu->hide();
    box.m_lstAnswers = {IMessageBox::No, IMessageBox::Yes};
    stage.action("Remove Selection")->trigger();
    QVERIFY(pBreakpoints->getHorizontalId(500) > 0);
    stage.action("Remove Selection")->trigger();
    QCOMPARE(pBreakpoints->getHorizontalId(500), -1);
    QCOMPARE(box.m_lstTitles.value(0), QStringLiteral("Remove Breakpoint"));
}

void TestCanvas::textEditingAndMedia()
{
    Stage stage;
    QSignalSpy toPage(stage.page(), &VTHTMLExposingCanvas::dataChangedToJS);
    QList<int> seen;
    QObject::connect(&stage.document, &IDocument::dataChanged,
                     [&seen](QObject* pInfo) { seen << qobject_cast<VTUpdateViewInfo*>(pInfo)->getId(); });
    QAction* pPaste = stage.action("Edit.Paste");
    QCOMPARE(pPaste->shortcut(), QKeySequence(QKeySequence::Paste));

    stage.page()->onTextFormatChanged(QStringLiteral("{\"bold\": true}"));
    QVERIFY(seen.isEmpty());
    stage.page()->setEditingText(true, 10);
    QVERIFY(stage.canvas->isEditingText());
    QVERIFY(pPaste->shortcut().isEmpty());
    QVERIFY(seen.contains(Action::TextEditingChanged));
    stage.page()->onTextFormatChanged(QStringLiteral("not json"));
    QVERIFY(!seen.contains(Action::TextFormatChanged));
    stage.page()->onTextFormatChanged(QStringLiteral("{\"bold\": true}"));
    QVERIFY(seen.contains(Action::TextFormatChanged));
    QCOMPARE(toPage.count(), 0);
    // Keys that reach the view itself belong to the page while it edits.
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QCoreApplication::sendEvent(stage.canvas.get(), &key);
    QVERIFY(key.isAccepted());

    QSignalSpy stop(stage.page(), qOverload<bool>(&VTHTMLExposingCanvas::stopEditText));
    stage.canvas->stopEditText();
    QCOMPARE(stop.count(), 1);
    QCOMPARE(stop.at(0).at(0).toBool(), false);
    QCOMPARE(pPaste->shortcut(), QKeySequence(QKeySequence::Paste));

    // A new video asks the page for its size; the answer sets duration and size in every layout.
    stage.document.getBreakpointManager()->addHorizontal(0);
    stage.document.getBreakpointManager()->addHorizontal(600);
    auto* pVideo = qobject_cast<VTMedia*>(VTElementFactory::createElement(VT::VideoElement));
    pVideo->prepareLayoutProperty(stage.document.getBreakpointManager()->getAllBreakpointIds(false), true,
                                  VTLayoutKey::base());
    QSignalSpy mediaInfo(stage.page(), &VTHTMLExposingCanvas::updateMediaInfo);
    auto* pAdd = new VTCommandAction(Action::AddElement, &stage.document, 3);
    pAdd->addParam(static_cast<VTElement*>(pVideo), true);
    pAdd->addParam(-1);
    pAdd->addParam(stage.pScene, false);
    stage.run({pAdd});
    QCOMPARE(mediaInfo.count(), 1);
    QCOMPARE(mediaInfo.at(0).at(0).toInt(), pVideo->getId());

    stage.page()->updateMediaProps(pVideo->getId(), 320, 240, 4000, true);
    QVERIFY(pVideo->isInfoLoaded());
    QCOMPARE(pVideo->getDuration(), 0);
    stage.page()->updateMediaProps(pVideo->getId(), 320, 240, 4000, false);
    QCOMPARE(pVideo->getDuration(), 4000);
    for (const VTLayoutKey& key : stage.document.getBreakpointManager()->getAllBreakpointIds(true)) {
        QCOMPARE(pVideo->getSizeW(key), 320.0);
        QCOMPARE(pVideo->getSizeH(key), 240.0);
    }
    QCOMPARE(stage.document.getUndoStack()->count(), 0);
}

QTEST_MAIN(TestCanvas)
#include "tst_canvas.moc"
