#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QWebChannel;
class VTCanvas;

// The canvas as the stage page sees it on the web channel, named "vtcanvas_<canvas id>". Its
// signals are what the studio tells the page; its slots are what the page tells the studio, and
// they arrive as queued calls on the UI thread. The page never changes the model: it describes a
// finished gesture to submitCommandFromJS and waits for the records to come back.
class VTHTMLExposingCanvas final : public QObject
{
    Q_OBJECT
public:
    // Registers itself on the main window's channel when there is one.
    VTHTMLExposingCanvas(VTCanvas* pCanvas, const QString& name);
    ~VTHTMLExposingCanvas() override;

    VTCanvas* getCanvas() const { return m_pCanvas; }
    bool isRegistered() const { return !m_pChannel.isNull(); }
    // After every load: the page picks its object on the channel by this id.
    void onPageLoaded();

signals:
    void play(int nTS);
    void pause(int nTS);
    void setCurrentTime(int nCurrentTime, bool bSeeking);
    void autoKeyframeModeChanged(bool bAuto);
    void dataChangedToJS(const QString& jsonUpdateViewInfo);
    void insertRectangle();
    void insertRoundedRect();
    void insertEllipse();
    void insertShape(int nId);
    void startEditText(int nElementId);
    // The form with the flag comes first: the channel offers a page one form of a name.
    void stopEditText(bool bImmediately);
    void stopEditText();
    void editPoint(int nElementId, bool bEditPoint);
    void openPath(int nElementId, bool bOpenPath);
    void straightSegment(int nElementId);
    void requestEditHtml();
    void zoomFactorChanged(double dZoomFactor);
    void fitToViewportChanged(bool bFitToViewport);
    void snapEnabledChanged(bool bEnabled);
    void rulerVisibilityChanged(bool show);
    void containerHandlerVisibilityChanged(bool show);
    void transformToolChanged(int tool);
    void currentSceneChanged(bool bHasScene, const QString& strSceneData);
    void editTextOnSingleClicked(bool bSingleClick);
    void execTextEditorCommand(const QString& cmdName, const QString& value);
    void requestSendCurrentTextFormat();
    void updateMediaInfo(int nElementId);
    void finishAllTask();
    void needRepaint();
    void needUpdateScenePos();
    void cancelBuildingItem();
    void textEditShortcutsChanged(const QString& strShortcuts);
    void changeStageView(int eViewMode);

public slots:
    void sendSceneDataToJS();
    void submitCommandFromJS(const QString& jsonUpdateViewInfo, bool bRunCmdOnly);
    void setZoomFactor(double dFactor);
    void setFitToViewport(bool bFit);
    void setSceneOffset(double dOffsetX, double dOffsetY);
    void setScrollValue(double dScrollX, double dScollY);
    void pauseTimeline();
    void setFocusedItemId(int nId);
    // nResourceId is the id of a symbol element of the shown scene.
    void editSymbol(int nResourceId);
    void endEditSymbol();
    void editTextInnerHTML(const QString& strHtml);
    void onTextFormatChanged(const QString& strFormat);
    void updateMediaProps(int nElementId, int nVideoWidth, int nVideoHeight, int nDuration,
                          bool bOnlyUpdateMediaSize);
    void onAllTaskFinished();
    void onTextEditShortcutsChanged();
    void setEditingBreakpoint(int nDirection, int nValue, int nRulerPos);
    void setCurrentBreakpoint(int nDirection, int nPos);
    void setEditingText(bool bEditing, int nToolBarX, int nToolBarY);
    void setEditingText(bool bEditing, int nToolBarX);
    void setEditingText(bool bEditing);
    QString getDoubleClickToEditText();
    void onShowContextMenu();

private:
    VTCanvas* m_pCanvas;
    QPointer<QWebChannel> m_pChannel;
    QString m_strDoubleClickText;
};
