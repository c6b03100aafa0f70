#include "VTCanvas.h"

#include "EditSymbolEvent.h"
#include "IEditor.h"
#include "VTBezierPath.h"
#include "VTBreakpointManager.h"
#include "VTCanvasCommandBuilder.h"
#include "VTCanvasCommands.h"
#include "VTCanvasMenus.h"
#include "VTCanvasRecordFilter.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"
#include "VTEventLoopLocker.h"
#include "VTFreeFormShape.h"
#include "VTHTMLExposingCanvas.h"
#include "VTHtmlExporter.h"
#include "VTLoadIndicatorProps.h"
#include "VTMedia.h"
#include "VTPreloader.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbolElement.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"
#include "WebEnginePage.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QUrlQuery>

#include <algorithm>

namespace {

using Action = VTCommandAction;
using ElementAction = VTElementCommandAction;

// Record ids after which the page gets the whole scene again rather than the record: they change
// what the scene data carries at its top (stage size, layouts, the style sheet) or the blocks of
// the shown layout.
bool isSceneReloadRecord(int nId)
{
    switch (nId) {
    case Action::SetSymbolWidth:
    case Action::SetSymbolHeight:
    case Action::AddLayoutProperty:
    case Action::RemoveLayoutProperty:
    case Action::UpdateLayoutProperty:
    case Action::AddLayoutAnimations:
    case Action::RemoveLayoutAnimations:
    case Action::ChangeCurrentBreakpoint:
    case Action::SetCssOutput:
    case ElementAction::SetFreeFormEditPoint:
        return true;
    default:
        return false;
    }
}

bool isSceneSwitchRecord(int nId)
{
    return nId == Action::AddScene || nId == Action::RemoveScene || nId == Action::SelectScene ||
           nId == Action::EditingSymbolChanged;
}

// A geometry change of a scene or a placed symbol moves what the page lays out from the scene
// data (the stage, the symbol's own content), so the page gets it anew.
bool needsWholeScene(const VTElement* pElement)
{
    if (!pElement)
        return false;
    const int nKind = pElement->getType();
    if (nKind == VT::SceneElement || nKind == VT::SymbolElement)
        return true;
    const QList<VTElement*>& lstChildren = pElement->getChildren();
    return std::any_of(lstChildren.cbegin(), lstChildren.cend(),
                       [](const VTElement* pChild) { return pChild->getType() == VT::SymbolElement; });
}

bool isMediaKind(int nKind)
{
    return nKind == VT::AudioElement || nKind == VT::VideoElement;
}

VTSceneManager* currentScenes(VTDocument* pDocument)
{
    VTSymbol* pSymbol = pDocument ? pDocument->getCurrentSymbol() : nullptr;
    return pSymbol ? pSymbol->getSceneManager() : nullptr;
}

} // namespace

int VTCanvas::s_nCanvasCount = 0;

VTCanvas::VTCanvas(IEditor* pEditor, QWidget* parent)
    : QWebEngineView(parent)
    , m_nCanvasId(++s_nCanvasCount)
    , m_pEditor(pEditor)
{
    auto* pPage = new WebEnginePage(this);
    connect(pPage, &WebEnginePage::consoleMessage, this, &WebEnginePage::logConsoleMessage);
    setPage(pPage);
    m_pExposingCanvas = new VTHTMLExposingCanvas(this, QStringLiteral("vtcanvas_%1").arg(m_nCanvasId));

    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(true);
    // The page asks for the menu itself (onShowContextMenu); the browser's own menu stays away.
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWebEngineView::renderProcessTerminated, this, &VTCanvas::reloadOnCrashed);
    connect(this, &QWebEngineView::loadFinished, this, &VTCanvas::onPageLoaded);
    if (pEditor) {
        connect(pEditor, &IEditor::aboutToActivate, this, &VTCanvas::onEditorActivated);
        connect(pEditor, &IEditor::aboutToDeactivate, this, &VTCanvas::onEditorDeactivated);
    }
    m_pMenus = new VTCanvasMenus(this);
}

VTCanvas::~VTCanvas() = default;

QUrl VTCanvas::getPageUrl(const QString& resourcePath, const QUrl& channelUrl)
{
    QUrl url = QUrl::fromLocalFile(resourcePath + QStringLiteral("/resources/canvas/index.html"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("webChannelBaseUrl"), channelUrl.toString());
    url.setQuery(query);
    return url;
}

// ---- document ----

void VTCanvas::handleDocumentLoaded()
{
    m_pDocument = m_pEditor ? qobject_cast<VTDocument*>(m_pEditor->getDocument()) : nullptr;
    if (!m_pDocument)
        return;
    VTSceneManager* pScenes = currentScenes(m_pDocument);
    m_pCurrentScene = pScenes ? pScenes->getCurrentScene() : nullptr;
    updateActions();
    connect(m_pDocument, &VTDocument::changeAutoKeyframeMode, m_pExposingCanvas,
            &VTHTMLExposingCanvas::autoKeyframeModeChanged, Qt::UniqueConnection);
    connect(m_pDocument, &VTDocument::locationChanged, this, &VTCanvas::sendSceneDataToJS,
            Qt::UniqueConnection);
}

void VTCanvas::clearPendingFlags()
{
    m_bRepaintPending = false;
    m_bUpdateScenePosPending = false;
}

void VTCanvas::handleDocumentChanged(VTUpdateViewInfo* pInfo)
{
    updateActions();
    if (!pInfo || !m_pDocument)
        return;
    const int nId = pInfo->getId();
    // A gesture of the page is on screen already. Record 41 alone comes without a list and still
    // ends the command.
    if (pInfo->getSender() == this || (!pInfo->getParams() && nId != Action::CommandFinished))
        return;

    const bool bNotify = VTCanvasRecordFilter::shouldNotifyActionToJS(pInfo, this, m_pCurrentScene);
    if (bNotify && nId != Action::CommandFinished) {
        if (!m_bRepaintPending)
            m_bRepaintPending = VTCanvasRecordFilter::shouldRepaintWhenFinishedCommand(nId);
        if (!m_bUpdateScenePosPending)
            m_bUpdateScenePosPending = VTCanvasRecordFilter::shouldUpdateScenePosWhenFinishedCommand(nId);
    }

    const QList<VTCmdParam*> lstParams = pInfo->getParams() ? *pInfo->getParams() : QList<VTCmdParam*>();
    const VTCmdParam* pFirst = lstParams.value(0, nullptr);
    int nNewMediaId = -1;
    if (isSceneSwitchRecord(nId)) {
        m_nFocusedItemId = -1;
        VTSceneManager* pScenes = currentScenes(m_pDocument);
        VTScene* pScene = pScenes ? pScenes->getCurrentScene() : nullptr;
        if (pScene == m_pCurrentScene) {
            clearPendingFlags();
            return;
        }
        m_pCurrentScene = pScene;
        sendSceneDataToJS();
        return;
    }
    if (isSceneReloadRecord(nId)) {
        sendSceneDataToJS();
        clearPendingFlags();
        return;
    }
    switch (nId) {
    case Action::AddElement:
        if (!pInfo->isUndoCmd() && pFirst) {
            const auto* pMedia = qobject_cast<const VTMedia*>(pFirst->getAsElement());
            if (pMedia && isMediaKind(pMedia->getType()) && !pMedia->isInfoLoaded())
                nNewMediaId = pMedia->getId();
        }
        break;
    case Action::RestoreResource:
    case Action::DeleteResource:
        m_bFontsChanged = true;
        break;
    case Action::TextEditorCommand:
        emit m_pExposingCanvas->execTextEditorCommand(
            lstParams.value(0) ? lstParams.at(0)->getAsString() : QString(),
            lstParams.value(1) ? lstParams.at(1)->getAsString() : QString());
        break;
    case Action::TimelinePlayed:
    case Action::TimelinePaused:
    case Action::TimeChanged: {
        if (!m_pCurrentScene || !m_pCurrentScene->getTimelineManager()->getCurrentTimeline())
            return;
        const int nTime = nId == Action::TimeChanged ? (pFirst ? pFirst->getAsInt() : 0)
                                                     : (lstParams.value(1) ? lstParams.at(1)->getAsInt() : 0);
        if (nId == Action::TimelinePlayed)
            emit m_pExposingCanvas->play(nTime);
        else if (nId == Action::TimelinePaused)
            emit m_pExposingCanvas->pause(nTime);
        else
            emit m_pExposingCanvas->setCurrentTime(nTime, lstParams.value(1) && lstParams.at(1)->getAsBool());
        return;
    }
    case Action::StopAllTasks:
        emit m_pExposingCanvas->finishAllTask();
        break;
    case ElementAction::ChangeGeometry:
        if (pFirst && needsWholeScene(pFirst->getAsElement())) {
            sendSceneDataToJS();
            clearPendingFlags();
            return;
        }
        break;
    default:
        break;
    }

    if (bNotify) {
        VTSymbol* pSymbol = m_pDocument->getCurrentSymbol();
        QJsonObject json;
        pInfo->serialize(json, m_pDocument, pSymbol ? pSymbol->getResourceManager() : nullptr);
        emit m_pExposingCanvas->dataChangedToJS(
            QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact)));
        if (nNewMediaId >= 0)
            emit m_pExposingCanvas->updateMediaInfo(nNewMediaId);
        return;
    }
    if (nId != Action::CommandFinished)
        return;
    if (m_bUpdateScenePosPending) {
        m_bUpdateScenePosPending = false;
        emit m_pExposingCanvas->needUpdateScenePos();
    }
    if (m_bRepaintPending) {
        m_bRepaintPending = false;
        emit m_pExposingCanvas->needRepaint();
    }
    // The font list of the text tools is reloaded by the text editor once it exists.
    m_bFontsChanged = false;
}

void VTCanvas::sendSceneDataToJS()
{
    if (!m_pCurrentScene || !m_pDocument) {
        emit m_pExposingCanvas->currentSceneChanged(false, QString());
        return;
    }
    VTSymbol* pSymbol = m_pDocument->getCurrentSymbol();
    QJsonObject data;
    QJsonObject scene;
    m_pCurrentScene->serializeToExport(scene, true, true, true);
    data.insert(QStringLiteral("scene"), scene);
    QJsonArray resources;
    m_pDocument->getResourceManager()->serializeToExport(resources, true, true);
    data.insert(QStringLiteral("resources"), resources);
    if (m_pEditor)
        data.insert(QStringLiteral("outputCss"), VTHtmlExporter(*m_pDocument).getCSSContent(true));
    const VTResource* pSymbolResource =
        pSymbol == static_cast<VTSymbol*>(m_pDocument)
            ? nullptr
            : m_pDocument->getResourceManager()->getResourceForSymbol(pSymbol);
    data.insert(QStringLiteral("symbolResourceId"), pSymbolResource ? pSymbolResource->getId() : -1);
    data.insert(QStringLiteral("containerW"), pSymbol->getWidth());
    data.insert(QStringLiteral("containerH"), pSymbol->getHeight());
    data.insert(QStringLiteral("docAlign"), pSymbol->getAlignment());
    data.insert(QStringLiteral("autoAddKeyframe"), m_pDocument->isAutoKeyframeMode());
    data.insert(QStringLiteral("showContainerHandler"), m_bContainerHandlerVisible);
    data.insert(QStringLiteral("transformTools"), m_nTransformTools);
    const VTBreakpointManager* pBreakpoints = pSymbol->getBreakpointManager();
    if (!pBreakpoints->isEmpty()) {
        QJsonObject breakpoints;
        pBreakpoints->serialize(breakpoints);
        data.insert(QStringLiteral("breakpoints"), breakpoints);
    }
    const auto* pPreloader = qobject_cast<const VTPreloader*>(m_pDocument);
    if (pPreloader && pSymbol == static_cast<VTSymbol*>(m_pDocument) && pPreloader->isUseLoadingIndicator() &&
        pPreloader->getLoadingIndicatorProps()) {
        QJsonObject loader;
        pPreloader->getLoadingIndicatorProps()->serializeToExport(loader);
        data.insert(QStringLiteral("canvasLoaderData"), loader);
    }
    emit m_pExposingCanvas->currentSceneChanged(
        true, QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact)));
}

void VTCanvas::updateActions()
{
    m_pMenus->updateActions();
}

// ---- page lifecycle ----

void VTCanvas::onPageLoaded()
{
    m_pExposingCanvas->onPageLoaded();
}

void VTCanvas::reloadOnCrashed(QWebEnginePage::RenderProcessTerminationStatus status, int nExitCode)
{
    Q_UNUSED(nExitCode)
    if (status == QWebEnginePage::NormalTerminationStatus)
        return;
    // Not from inside the signal of the dying process.
    QTimer::singleShot(0, this, &QWebEngineView::reload);
}

void VTCanvas::onEditorActivated()
{
    updatePasteShortcut();
    if (m_bEditingText)
        emit m_pExposingCanvas->requestSendCurrentTextFormat();
}

void VTCanvas::onEditorDeactivated()
{
    if (m_pDocument)
        m_pDocument->pause();
}

// ---- view state ----

void VTCanvas::setZoomFactor(double dFactor, bool bNotifyJS, bool bNotifyZoomCtrl)
{
    if (m_pDocument)
        m_pDocument->pause();
    m_dZoomFactor = qBound(kMinZoomFactor, dFactor, kMaxZoomFactor);
    if (bNotifyJS)
        emit m_pExposingCanvas->zoomFactorChanged(m_dZoomFactor);
    if (bNotifyZoomCtrl)
        emit zoomInfoChanged(m_dZoomFactor, m_bFitToViewport);
}

void VTCanvas::setFitToViewport(bool bFit, bool bNotifyJS, bool bNotifyZoomCtrl)
{
    if (m_pDocument)
        m_pDocument->pause();
    m_bFitToViewport = bFit;
    if (bNotifyJS)
        emit m_pExposingCanvas->fitToViewportChanged(m_bFitToViewport);
    if (bNotifyZoomCtrl)
        emit zoomInfoChanged(m_dZoomFactor, m_bFitToViewport);
}

void VTCanvas::setSceneOffset(double dOffsetX, double dOffsetY)
{
    m_ptSceneOffset = QPointF(dOffsetX, dOffsetY);
}

void VTCanvas::setScrollValue(double dScrollX, double dScrollY)
{
    m_ptScroll = QPointF(dScrollX, dScrollY);
}

void VTCanvas::showRuler(bool bShow)
{
    if (bShow == m_bRulerVisible)
        return;
    m_bRulerVisible = bShow;
    emit m_pExposingCanvas->rulerVisibilityChanged(bShow);
}

void VTCanvas::showContainerHandler(bool bShow)
{
    if (bShow == m_bContainerHandlerVisible)
        return;
    m_bContainerHandlerVisible = bShow;
    emit m_pExposingCanvas->containerHandlerVisibilityChanged(bShow);
}

void VTCanvas::setSnapEnabled(bool bEnabled)
{
    m_bSnapEnabled = bEnabled;
    emit m_pExposingCanvas->snapEnabledChanged(bEnabled);
}

void VTCanvas::setTransformTools(int nTools)
{
    if (nTools == m_nTransformTools)
        return;
    m_nTransformTools = nTools;
    if (nTools & kExclusiveTransformTool)
        deselectAll();
    emit m_pExposingCanvas->transformToolChanged(nTools);
}

void VTCanvas::toggleTransformTools(int nTools)
{
    int nNew = m_nTransformTools ^ nTools;
    if (nNew & kExclusiveTransformTool) {
        // Turning the exclusive tool on ends every other; turning another on ends the exclusive one.
        if (nTools & kExclusiveTransformTool)
            nNew = kExclusiveTransformTool;
        else
            nNew &= ~kExclusiveTransformTool;
    }
    m_nTransformTools = nNew;
    if (nNew & kExclusiveTransformTool)
        deselectAll();
    emit m_pExposingCanvas->transformToolChanged(nNew);
}

void VTCanvas::changeStageView(int eViewMode)
{
    emit m_pExposingCanvas->changeStageView(eViewMode);
}

QPointF VTCanvas::mapToCurrentScene(const QPointF& point) const
{
    return (point - m_ptSceneOffset + m_ptScroll) / m_dZoomFactor;
}

QPointF VTCanvas::mapFromCurrentScene(const QPointF& point) const
{
    return point * m_dZoomFactor + m_ptSceneOffset - m_ptScroll;
}

VTElement* VTCanvas::getFocusedElement() const
{
    if (m_nFocusedItemId < 0 || !m_pCurrentScene)
        return nullptr;
    return m_pCurrentScene->findElementById(m_nFocusedItemId);
}

QList<VTElement*> VTCanvas::getSelectedElements() const
{
    return m_pCurrentScene ? m_pCurrentScene->getSelectedElements(false) : QList<VTElement*>();
}

// ---- tools of the page ----

void VTCanvas::startInsertion()
{
    changeStageView(FrontView);
}

void VTCanvas::addRectangle()
{
    startInsertion();
    emit m_pExposingCanvas->insertRectangle();
}

void VTCanvas::addRoundedRect()
{
    startInsertion();
    emit m_pExposingCanvas->insertRoundedRect();
}

void VTCanvas::addEllipse()
{
    startInsertion();
    emit m_pExposingCanvas->insertEllipse();
}

void VTCanvas::addShape(int nShapeType)
{
    startInsertion();
    emit m_pExposingCanvas->insertShape(nShapeType);
}

// The elements below are placed by the studio, not drawn: the page leaves any drawing tool.
void VTCanvas::addImage()
{
    startInsertion();
    emit m_pExposingCanvas->cancelBuildingItem();
}

void VTCanvas::addAudio()
{
    addImage();
}

void VTCanvas::addVideo()
{
    addImage();
}

void VTCanvas::addSymbol()
{
    addImage();
}

void VTCanvas::addText()
{
    addImage();
}

void VTCanvas::addHtmlWidget()
{
    addImage();
}

void VTCanvas::editText()
{
    VTElement* pElement = getFocusedElement();
    if (!pElement) {
        const QList<VTElement*> lstSelected = getSelectedElements();
        pElement = lstSelected.size() == 1 ? lstSelected.constFirst() : nullptr;
    }
    if (pElement)
        emit m_pExposingCanvas->startEditText(pElement->getId());
}

void VTCanvas::stopEditText(bool bImmediately)
{
    m_bEditingText = false;
    updatePasteShortcut();
    emit m_pExposingCanvas->stopEditText(bImmediately);
}

VTElement* VTCanvas::getPointEditingElement() const
{
    if (!m_pCurrentScene)
        return nullptr;
    const auto isEditing = [](const VTElement* pElement) {
        const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement);
        return pFreeForm && pFreeForm->isEditPoint();
    };
    VTElement* pFocused = getFocusedElement();
    if (isEditing(pFocused))
        return pFocused;
    const QList<VTElement*> lstSelected = getSelectedElements();
    const auto it = std::find_if(lstSelected.cbegin(), lstSelected.cend(), isEditing);
    return it != lstSelected.cend() ? *it : nullptr;
}

void VTCanvas::editPoint()
{
    VTElement* pElement = getPointEditingElement();
    if (!pElement) {
        const QList<VTElement*> lstSelected = getSelectedElements();
        pElement = lstSelected.size() == 1 ? lstSelected.constFirst() : nullptr;
    }
    const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement);
    if (pFreeForm && !pFreeForm->isLine())
        emit m_pExposingCanvas->editPoint(pFreeForm->getId(), !pFreeForm->isEditPoint());
}

void VTCanvas::openPath()
{
    const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(getPointEditingElement());
    const VTBezierPath* pPath = pFreeForm ? pFreeForm->getPath() : nullptr;
    if (pPath)
        emit m_pExposingCanvas->openPath(pFreeForm->getId(), pPath->isClosedPath());
}

void VTCanvas::straightSegment()
{
    if (const VTElement* pElement = getPointEditingElement())
        emit m_pExposingCanvas->straightSegment(pElement->getId());
}

// ---- what the page reports ----

void VTCanvas::submitCommandFromJS(const QString& json, bool bRunCmdOnly)
{
    if (m_pDocument)
        runStageCommand(json, bRunCmdOnly);
}

bool VTCanvas::runStageCommand(const QString& json, bool bRunCmdOnly)
{
    return VTCanvasCommandBuilder(m_pDocument, this).submitCommandFromJS(json, bRunCmdOnly);
}

void VTCanvas::editSymbol(int nElementId)
{
    const auto* pInstance =
        m_pCurrentScene ? qobject_cast<const VTSymbolElement*>(m_pCurrentScene->findElementById(nElementId))
                        : nullptr;
    if (!pInstance || !pInstance->getSymbolResource() || !m_pDocument)
        return;
    QCoreApplication::postEvent(m_pDocument, new EditSymbolEvent(pInstance->getSymbolResource()->getId()));
}

void VTCanvas::onEditSymbol()
{
    const QList<VTElement*> lstSelected = getSelectedElements();
    if (lstSelected.size() == 1)
        editSymbol(lstSelected.constFirst()->getId());
}

void VTCanvas::endEditSymbol()
{
    if (m_pDocument)
        m_pDocument->endEditingSymbol();
}

void VTCanvas::setEditingText(bool bEditing, int nToolBarX, int nToolBarY)
{
    m_bEditingText = bEditing;
    updatePasteShortcut();
    if (!m_pDocument)
        return;
    // The edited element alone stays selected, so the panels show its text.
    if (bEditing && m_pCurrentScene)
        VTCanvasCommands::deselectAll(m_pDocument, m_pCurrentScene, getFocusedElement());
    // The panels follow the edit; the page knows of it already.
    auto* pAction = new VTCommandAction(VTCommandAction::TextEditingChanged, m_pDocument, 3);
    pAction->addParam(bEditing);
    pAction->addParam(nToolBarX);
    pAction->addParam(nToolBarY);
    VTCanvasCommands::notifyPanels(m_pDocument, this, pAction);
}

void VTCanvas::onTextFormatChanged(const QString& strFormat)
{
    if (!m_bEditingText || !m_pDocument)
        return;
    const QJsonObject format = QJsonDocument::fromJson(strFormat.toUtf8()).object();
    if (format.isEmpty())
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::TextFormatChanged, m_pDocument, 1);
    pAction->addParam(format);
    VTCanvasCommands::notifyPanels(m_pDocument, this, pAction);
}

void VTCanvas::updateMediaProps(int nElementId, int nVideoWidth, int nVideoHeight, int nDuration,
                                bool bOnlyUpdateMediaSize)
{
    if (m_pDocument && m_pCurrentScene)
        VTCanvasCommands::updateMediaProps(m_pDocument, m_pCurrentScene->findElementById(nElementId),
                                           nVideoWidth, nVideoHeight, nDuration, bOnlyUpdateMediaSize);
}

void VTCanvas::setCurrentBreakpoint(int nDirection, int nPos)
{
    if (m_pDocument)
        VTCanvasCommands::setCurrentBreakpoint(m_pDocument, nDirection, nPos);
}

void VTCanvas::setEditingBreakpoint(int nDirection, int nValue, int nRulerPos)
{
    m_bEditingBreakpoint = true;
    m_nBreakpointDirection = nDirection;
    m_nBreakpointValue = nValue;
    m_nBreakpointRulerPos = nRulerPos;
}

void VTCanvas::onAllTaskFinished()
{
    VTEventLoopLocker* pLocker = VTEventLoopLocker::getInstance();
    if (pLocker->isWaiting())
        pLocker->stopWaiting();
}

// ---- selection ----

void VTCanvas::deselectAll()
{
    if (m_pDocument && m_pCurrentScene)
        VTCanvasCommands::deselectAll(m_pDocument, m_pCurrentScene, nullptr);
}

void VTCanvas::onSelectAll()
{
    if (!m_bEditingText && m_pDocument && m_pCurrentScene)
        VTCanvasCommands::selectAll(m_pDocument, m_pCurrentScene);
}

void VTCanvas::removeSelectedItems()
{
    if (m_pDocument && m_pCurrentScene)
        VTCanvasCommands::deleteElements(m_pDocument, m_pCurrentScene, getSelectedElements());
}

// ---- menus and focus ----

void VTCanvas::updatePasteShortcut()
{
    m_pMenus->updatePasteShortcut(m_bEditingText);
}

void VTCanvas::showContextMenu(const QPoint& globalPos)
{
    m_pMenus->showContextMenu(globalPos);
}

bool VTCanvas::event(QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::ChildAdded:
        // The browser's render widget takes the focus and the input; the canvas hears of both.
        if (QObject* pChild = static_cast<QChildEvent*>(pEvent)->child())
            pChild->installEventFilter(this);
        break;
    case QEvent::FocusIn:
        focusInEvent(static_cast<QFocusEvent*>(pEvent));
        return true;
    case QEvent::FocusOut:
        focusOutEvent(static_cast<QFocusEvent*>(pEvent));
        return true;
    case QEvent::ContextMenu:
        if (m_bEditingText) {
            showContextMenu(QCursor::pos());
            return true;
        }
        break;
    default:
        // While the page edits text, the keys and the mouse belong to it alone.
        if (m_bEditingText &&
            (dynamic_cast<QInputEvent*>(pEvent) || pEvent->type() == QEvent::ShortcutOverride ||
             pEvent->type() == QEvent::Shortcut)) {
            pEvent->accept();
            return true;
        }
        break;
    }
    return QWebEngineView::event(pEvent);
}

bool VTCanvas::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched != this && pEvent->type() == QEvent::FocusIn) {
        // The render widget still needs the event, or the page would not know it has the focus.
        focusInEvent(static_cast<QFocusEvent*>(pEvent));
        return QWebEngineView::eventFilter(pWatched, pEvent);
    }
    if (pEvent->type() == QEvent::FocusOut && pWatched != this && pWatched != m_pMenus->getMainMenu()) {
        // A click in a panel leaves the page's text selection and caret as they were.
        pEvent->ignore();
        return true;
    }
    return QWebEngineView::eventFilter(pWatched, pEvent);
}

void VTCanvas::focusInEvent(QFocusEvent* pEvent)
{
    QWebEngineView::focusInEvent(pEvent);
    if (m_pDocument)
        VTCanvasCommands::deselectOtherScenes(m_pDocument);
}

void VTCanvas::dragEnterEvent(QDragEnterEvent* pEvent)
{
    // A drop would reach the browser, which opens a dropped file in place of the stage. Elements
    // and resources come in through the clipboard's paste, which drops join once it exists.
    pEvent->ignore();
}
