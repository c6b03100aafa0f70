#include "VTHTMLExposingCanvas.h"

#include "ICore.h"
#include "MainWindow.h"
#include "VTCanvas.h"
#include "VTDocument.h"

#include <QCursor>
#include <QWebChannel>

VTHTMLExposingCanvas::VTHTMLExposingCanvas(VTCanvas* pCanvas, const QString& name)
    : QObject(pCanvas)
    , m_pCanvas(pCanvas)
{
    setObjectName(name);
    MainWindow* pWindow = ICore::getMainWindow();
    if (QWebChannel* pChannel = pWindow ? pWindow->getChannel() : nullptr) {
        pChannel->registerObject(name, this);
        m_pChannel = pChannel;
    }
}

VTHTMLExposingCanvas::~VTHTMLExposingCanvas()
{
    if (m_pChannel)
        m_pChannel->deregisterObject(this);
}

void VTHTMLExposingCanvas::onPageLoaded()
{
    m_pCanvas->page()->runJavaScript(QStringLiteral("window.canvasId = %1;").arg(m_pCanvas->getCanvasId()));
}

void VTHTMLExposingCanvas::sendSceneDataToJS()
{
    m_pCanvas->sendSceneDataToJS();
}

void VTHTMLExposingCanvas::submitCommandFromJS(const QString& jsonUpdateViewInfo, bool bRunCmdOnly)
{
    m_pCanvas->submitCommandFromJS(jsonUpdateViewInfo, bRunCmdOnly);
}

void VTHTMLExposingCanvas::setZoomFactor(double dFactor)
{
    // The page shows the zoom already.
    m_pCanvas->setZoomFactor(dFactor, false, true);
}

void VTHTMLExposingCanvas::setFitToViewport(bool bFit)
{
    m_pCanvas->setFitToViewport(bFit, false, true);
}

void VTHTMLExposingCanvas::setSceneOffset(double dOffsetX, double dOffsetY)
{
    m_pCanvas->setSceneOffset(dOffsetX, dOffsetY);
}

void VTHTMLExposingCanvas::setScrollValue(double dScrollX, double dScollY)
{
    m_pCanvas->setScrollValue(dScrollX, dScollY);
}

void VTHTMLExposingCanvas::pauseTimeline()
{
    if (VTDocument* pDocument = m_pCanvas->getDocument())
        pDocument->pause();
}

void VTHTMLExposingCanvas::setFocusedItemId(int nId)
{
    m_pCanvas->setFocusedItemId(nId);
}

void VTHTMLExposingCanvas::editSymbol(int nResourceId)
{
    m_pCanvas->editSymbol(nResourceId);
}

void VTHTMLExposingCanvas::endEditSymbol()
{
    m_pCanvas->endEditSymbol();
}

void VTHTMLExposingCanvas::editTextInnerHTML(const QString& strHtml)
{
    // The HTML source of the open text edit belongs to the text editor of the stage, which takes
    // this answer to requestEditHtml once it exists.
    Q_UNUSED(strHtml)
}

void VTHTMLExposingCanvas::onTextFormatChanged(const QString& strFormat)
{
    m_pCanvas->onTextFormatChanged(strFormat);
}

void VTHTMLExposingCanvas::updateMediaProps(int nElementId, int nVideoWidth, int nVideoHeight, int nDuration,
                                            bool bOnlyUpdateMediaSize)
{
    m_pCanvas->updateMediaProps(nElementId, nVideoWidth, nVideoHeight, nDuration, bOnlyUpdateMediaSize);
}

void VTHTMLExposingCanvas::onAllTaskFinished()
{
    m_pCanvas->onAllTaskFinished();
}

void VTHTMLExposingCanvas::onTextEditShortcutsChanged()
{
    // The table of text shortcuts is the text editor's, which answers here once it exists.
}

void VTHTMLExposingCanvas::setEditingBreakpoint(int nDirection, int nValue, int nRulerPos)
{
    m_pCanvas->setEditingBreakpoint(nDirection, nValue, nRulerPos);
}

void VTHTMLExposingCanvas::setCurrentBreakpoint(int nDirection, int nPos)
{
    m_pCanvas->setCurrentBreakpoint(nDirection, nPos);
}

void VTHTMLExposingCanvas::setEditingText(bool bEditing, int nToolBarX, int nToolBarY)
{
    m_pCanvas->setEditingText(bEditing, nToolBarX, nToolBarY);
}

void VTHTMLExposingCanvas::setEditingText(bool bEditing, int nToolBarX)
{
    m_pCanvas->setEditingText(bEditing, nToolBarX, 0);
}

void VTHTMLExposingCanvas::setEditingText(bool bEditing)
{
    m_pCanvas->setEditingText(bEditing, 0, 0);
}

QString VTHTMLExposingCanvas::getDoubleClickToEditText()
{
    if (m_strDoubleClickText.isEmpty())
        m_strDoubleClickText = tr("Double-click to edit text");
    return m_strDoubleClickText;
}

void VTHTMLExposingCanvas::onShowContextMenu()
{
    m_pCanvas->showContextMenu(QCursor::pos());
}
