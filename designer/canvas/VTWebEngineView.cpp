#include "VTWebEngineView.h"

#include <QChildEvent>
#include <QDebug>

namespace {
// The widget that Qt WebEngine paints the page into; the view itself paints nothing.
constexpr char kRenderWidgetClass[] = "QtWebEngineCore::RenderWidgetHostViewQtDelegateWidget";
} // namespace

VTWebEngineView::VTWebEngineView(QWidget* parent)
    : QWebEngineView(parent)
{}

void VTWebEngineView::setWaitingRepaint(bool bWaiting)
{
    if (bWaiting == m_bWaitingRepaint)
        return;
    m_bWaitingRepaint = bWaiting;
    // Queued, so the signal comes after the paint has been handed to the screen.
    if (bWaiting)
        connect(this, &VTWebEngineView::requestCreateThumbnail, this, &VTWebEngineView::webContentRendered,
                Qt::QueuedConnection);
    else
        disconnect(this, &VTWebEngineView::requestCreateThumbnail, this,
                   &VTWebEngineView::webContentRendered);
}

bool VTWebEngineView::event(QEvent* pEvent)
{
    // A child announced while it is still being constructed does not have its final class yet;
    // it is looked at again when it is polished.
    if (pEvent->type() == QEvent::ChildAdded || pEvent->type() == QEvent::ChildPolished) {
        QObject* pChild = static_cast<QChildEvent*>(pEvent)->child();
        if (!pChild) {
            qInfo() << "VTWebEngineView: Cannot get child object to install eventFilter...";
        } else if (pChild->isWidgetType() &&
                   qstrcmp(pChild->metaObject()->className(), kRenderWidgetClass) == 0) {
            m_pRenderWidget = static_cast<QWidget*>(pChild);
            pChild->installEventFilter(this);
        }
    }
    return QWebEngineView::event(pEvent);
}

bool VTWebEngineView::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (m_bWaitingRepaint && pWatched == m_pRenderWidget && pEvent->type() == QEvent::Paint)
        emit requestCreateThumbnail();
    return QWebEngineView::eventFilter(pWatched, pEvent);
}
