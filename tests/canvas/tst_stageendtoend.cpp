#include "ICore.h"
#include "IEditor.h"
#include "IUtils.h"
#include "MainWindow.h"
#include "VTAnimation.h"
#include "VTCanvas.h"
#include "VTDocument.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"
#include "WebEnginePage.h"

#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QRectF>
#include <QStringList>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

constexpr int kPageTimeoutMs = 30000;

// Runs a script in the page and waits for its value; an invalid value when none came in time.
QVariant evaluate(QWebEnginePage* pPage, const QString& script)
{
    struct Answer
    {
        bool bDone = false;
        QVariant value;
    };
    // The page may answer after a timeout, when this frame is gone.
    auto pAnswer = std::make_shared<Answer>();
    pPage->runJavaScript(script, [pAnswer](const QVariant& value) {
        pAnswer->value = value;
        pAnswer->bDone = true;
    });
    if (!QTest::qWaitFor([&pAnswer] { return pAnswer->bDone; }, 10000))
        qWarning("the page did not answer: %s", qPrintable(script.left(80)));
    return pAnswer->value;
}

// The client box of a top-level element's node on the stage, or an empty box while there is none.
// Nested symbol content may carry the same ids, so the node must have no element above it.
QRectF nodeBox(QWebEnginePage* pPage, int nId)
{
    const QVariantMap box =
        evaluate(pPage,
                 QStringLiteral("(() => {"
                                "  const root = document.getElementById('canvas-root');"
                                "  if (!root || root.hasAttribute('data-state')) return null;"
                                "  const node = [...document.querySelectorAll('#stage [data-vt-id=\"%1\"]')]"
                                "    .find((n) => !n.parentElement.closest('[data-vt-id]'));"
                                "  if (!node) return null;"
                                "  const r = node.getBoundingClientRect();"
                                "  return { x: r.left, y: r.top, w: r.width, h: r.height };"
                                "})()")
                     .arg(nId))
            .toMap();
    if (box.isEmpty())
        return QRectF();
    return QRectF(box.value("x").toDouble(), box.value("y").toDouble(), box.value("w").toDouble(),
                  box.value("h").toDouble());
}

bool near(const QPointF& a, const QPointF& b)
{
    return qAbs(a.x() - b.x()) <= 0.5 && qAbs(a.y() - b.y()) <= 0.5;
}

// Pointer events on the glass over the stage, as the mouse would give them; Alt keeps snapping
// out of the way so the drop lands where the pointer goes.
bool pointer(QWebEnginePage* pPage, const QString& type, const QPointF& at)
{
    const bool bDown = type != QLatin1String("pointerup");
    return evaluate(pPage,
                    QStringLiteral("document.getElementById('glass').dispatchEvent(new PointerEvent('%1', {"
                                   "  bubbles: true, cancelable: true, composed: true, pointerId: 1,"
                                   "  pointerType: 'mouse', isPrimary: true, button: %2, buttons: %3,"
                                   "  clientX: %4, clientY: %5, altKey: true })), true")
                        .arg(type)
                        .arg(type == QLatin1String("pointermove") ? -1 : 0)
                        .arg(bDown ? 1 : 0)
                        .arg(at.x())
                        .arg(at.y()))
        .toBool();
}

// Whether the page drew the selection frame with its handles around the box.
bool handlesAround(QWebEnginePage* pPage, const QRectF& box)
{
    const QVariantList handles =
        evaluate(pPage, QStringLiteral("[...document.querySelectorAll('#overlay .vt-handle')].map((h) => {"
                                       "  const r = h.getBoundingClientRect();"
                                       "  return [r.left + r.width / 2, r.top + r.height / 2];"
                                       "})"))
            .toList();
    if (handles.size() < 4)
        return false;
    const QRectF around = box.adjusted(-8, -8, 8, 8);
    for (const QVariant& handle : handles) {
        const QVariantList at = handle.toList();
        if (at.size() != 2 || !around.contains(QPointF(at.at(0).toDouble(), at.at(1).toDouble())))
            return false;
    }
    return true;
}

// An element the pointer can move by exactly the dragged distance: shown, not locked, placed in
// pixels from the left and the top, and with no animation of its place in the shown timeline.
VTElement* firstMovable(const VTScene* pScene)
{
    const VTTimeline* pTimeline = pScene->getTimelineManager()->getCurrentTimeline();
    for (VTElement* pElement : pScene->getChildren()) {
        if (!pElement->isVisible() || pElement->isLocked() || pElement->getCoordinateType() != VT::LeftTop ||
            pElement->getUnitX() != VT::Pixel || pElement->getUnitY() != VT::Pixel)
            continue;
        const VTAnimation* pAnimation =
            pTimeline ? pTimeline->getAnimation(pElement, pElement->getCurrentLayoutID()) : nullptr;
        const bool bPlaceAnimated =
            pAnimation &&
            (pAnimation->getKeyframe(VT::PropLeft) || pAnimation->getKeyframe(VT::PropTop) ||
             pAnimation->getKeyframe(VT::PropRight) || pAnimation->getKeyframe(VT::PropBottom) ||
             pAnimation->getKeyframe(VT::PropLocation));
        if (!bPlaceAnimated)
            return pElement;
    }
    return nullptr;
}

void saveScreenshot(QWidget* pView, const QString& name)
{
    const QString folder = qEnvironmentVariable("VETRA_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    QVERIFY(QDir().mkpath(folder));
    const QImage image = pView->grab().toImage();
    QVERIFY(!image.isNull());
    QVERIFY(image.save(QDir(folder).filePath(name)));
}

} // namespace

class TestStageEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void dragOnTheStageIsOneUndoStep();
};

// The sample project on a real stage page over the studio's channel: a click selects an element
// without an undo step, a drag through the page's own pointer handling moves it in the model as one
// command, and undo and redo move it on the page again.
void TestStageEndToEnd::dragOnTheStageIsOneUndoStep()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(IUtils::copyDir(QStringLiteral(VETRA_EXAMPLES_DIR "/welcome"), dir.filePath("welcome")));
    const QString page = ICore::resourcePath() + QStringLiteral("/resources/canvas/index.html");
    QVERIFY2(QFileInfo::exists(page),
             qPrintable(page + " is missing: build vetra_resources and web_bundles"));

    // The window comes first: the canvas object goes on its channel when the canvas is made.
    MainWindow window;
    VTDocument document;
    document.setFileName(dir.filePath("welcome/welcome.vetra"));
    QVERIFY(document.open());
    QVERIFY2(document.getLoadProblems().isEmpty(), qPrintable(document.getLoadProblems().join('\n')));

    IEditor editor;
    VTCanvas canvas(&editor);
    QStringList pageErrors;
    auto* pPage = qobject_cast<WebEnginePage*>(canvas.page());
    QVERIFY(pPage);
    connect(pPage, &WebEnginePage::consoleMessage, this,
            [&pageErrors](int nLevel, const QString& message, int nLine, const QString& source) {
                // A record the page could not apply makes it ask for the whole scene: that is a fault too.
                if (nLevel == QWebEnginePage::ErrorMessageLevel || message.contains("fresh scene"))
                    pageErrors << QStringLiteral("%1:%2: %3").arg(source).arg(nLine).arg(message);
            });
    connect(&editor, &IEditor::documentDataChanged, &canvas, [&canvas](QObject* pInfo) {
        canvas.handleDocumentChanged(qobject_cast<VTUpdateViewInfo*>(pInfo));
    });
    editor.setDocument(&document);
    canvas.handleDocumentLoaded();
    QVERIFY(canvas.getCurrentScene());

    VTElement* pElement = firstMovable(canvas.getCurrentScene());
    QVERIFY(pElement);
    const int nId = pElement->getId();
    const double dLeft = pElement->getPositionX();
    const double dTop = pElement->getPositionY();

    canvas.resize(1200, 800);
    canvas.show();
    QVERIFY(QTest::qWaitForWindowExposed(&canvas));
    canvas.load(VTCanvas::getPageUrl(ICore::resourcePath(), window.getWebChannelUrl()));

    // The page connects, asks for the scene and draws it.
    QRectF box;
    QTRY_VERIFY_WITH_TIMEOUT(!(box = nodeBox(pPage, nId)).isEmpty(), kPageTimeoutMs);
    QCOMPARE(canvas.getZoomFactor(), 1.0);
    QVERIFY(!pElement->isSelected());
    QUndoStack* pStack = document.getUndoStack();
    const int nCommands = pStack->count();

    // A click in the middle selects it, without an undo step.
    const QPointF centre = box.center();
    QVERIFY(pointer(pPage, "pointerdown", centre));
    QVERIFY(pointer(pPage, "pointerup", centre));
    QTRY_VERIFY_WITH_TIMEOUT(pElement->isSelected(), kPageTimeoutMs);
    const QList<VTElement*> lstSelected = canvas.getCurrentScene()->getSelectedElements(false);
    QCOMPARE(lstSelected.size(), 1);
    QCOMPARE(lstSelected.constFirst(), pElement);
    QTRY_VERIFY_WITH_TIMEOUT(handlesAround(pPage, box), kPageTimeoutMs);
    QCOMPARE(pStack->count(), nCommands);

    // The drag: past the threshold in a few steps, then dropped 40, 30 further on.
    const QPointF offset(40, 30);
    QVERIFY(pointer(pPage, "pointerdown", centre));
    for (int i = 1; i <= 4; ++i)
        QVERIFY(pointer(pPage, "pointermove", centre + offset * i / 4));
    QVERIFY(pointer(pPage, "pointerup", centre + offset));

    QTRY_COMPARE_WITH_TIMEOUT(pStack->count(), nCommands + 1, kPageTimeoutMs);
    QCOMPARE(pElement->getPositionX(), dLeft + offset.x());
    QCOMPARE(pElement->getPositionY(), dTop + offset.y());
    QVERIFY(pElement->isSelected());
    QTRY_VERIFY_WITH_TIMEOUT(near(nodeBox(pPage, nId).topLeft(), box.topLeft() + offset), kPageTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(handlesAround(pPage, box.translated(offset)), kPageTimeoutMs);
    // Past the time the page keeps a dropped element where it was dropped without an answer: from
    // here on the node shows what the studio's records said.
    QTest::qWait(2500);
    QVERIFY(near(nodeBox(pPage, nId).topLeft(), box.topLeft() + offset));
    // What the user sees after the drop: the scene, and the frame with its handles on the element.
    saveScreenshot(&canvas, QStringLiteral("stage-after-drag.png"));

    // Undo puts the model back and the page shows it; redo moves it again.
    pStack->undo();
    QCOMPARE(pStack->count(), nCommands + 1);
    QCOMPARE(pStack->index(), nCommands);
    QCOMPARE(pElement->getPositionX(), dLeft);
    QCOMPARE(pElement->getPositionY(), dTop);
    QTRY_VERIFY_WITH_TIMEOUT(near(nodeBox(pPage, nId).topLeft(), box.topLeft()), kPageTimeoutMs);

    pStack->redo();
    QCOMPARE(pElement->getPositionX(), dLeft + offset.x());
    QCOMPARE(pElement->getPositionY(), dTop + offset.y());
    QTRY_VERIFY_WITH_TIMEOUT(near(nodeBox(pPage, nId).topLeft(), box.topLeft() + offset), kPageTimeoutMs);
    QVERIFY2(pageErrors.isEmpty(), qPrintable(pageErrors.join('\n')));
}

QTEST_MAIN(TestStageEndToEnd)
#include "tst_stageendtoend.moc"
