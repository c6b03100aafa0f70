#pragma once

#include <QPointer>
#include <QWebEngineView>

// A browser view that can tell when the page has really been painted, which is what a snapshot
// of it (a scene thumbnail) needs: loadFinished comes before the first paint.
class VTWebEngineView : public QWebEngineView
{
    Q_OBJECT
public:
    explicit VTWebEngineView(QWidget* parent = nullptr);

    bool isWaitingRepaint() const { return m_bWaitingRepaint; }
    // While waiting, the next paint of the page raises webContentRendered once the event loop has
    // run after it.
    void setWaitingRepaint(bool bWaiting);
    QWidget* getRenderWidget() const { return m_pRenderWidget; }

signals:
    void webContentRendered();
    void requestCreateThumbnail();

protected:
    bool event(QEvent* pEvent) override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    bool m_bWaitingRepaint = false;
    QPointer<QWidget> m_pRenderWidget;
};
