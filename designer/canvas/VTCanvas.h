#pragma once

#include "IEditor.h"
#include "VTDocument.h"

#include <QPoint>
#include <QPointF>
#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineView>

class VTCanvasMenus;
class VTElement;
class VTHTMLExposingCanvas;
class VTScene;
class VTUpdateViewInfo;

// The stage of one open project: a browser view that shows the stage page, which draws the scene,
// the selection, rulers and handles and plays the timeline. The studio keeps the model and the
// undo history; this class keeps what the page needs to know about the view (zoom, offsets,
// tools), decides which records of a running command reach the page, and holds the stage's
// context menus. The page talks to it through the channel object VTHTMLExposingCanvas.
class VTCanvas final : public QWebEngineView
{
    Q_OBJECT
public:
    // Stage views of the "View.Stage" actions.
    enum StageView : int
    {
        FrontView = 0,
        TopView = 1,
        SideView = 2,
        ResetView = 3,
    };
    // The transform tool that excludes all others: while it is on, nothing stays selected.
    static constexpr int kExclusiveTransformTool = 8;
    static constexpr double kMinZoomFactor = 0.1;
    static constexpr double kMaxZoomFactor = 4.0;

    explicit VTCanvas(IEditor* pEditor, QWidget* parent = nullptr);
    ~VTCanvas() override;

    int getCanvasId() const { return m_nCanvasId; }
    VTHTMLExposingCanvas* getExposingCanvas() const { return m_pExposingCanvas; }
    IEditor* getEditor() const { return m_pEditor; }
    VTDocument* getDocument() const { return m_pDocument; }
    VTScene* getCurrentScene() const { return m_pCurrentScene; }
    VTCanvasMenus* getMenus() const { return m_pMenus; }
    // The page's address: the stage page below the resource folder, told where the channel is.
    static QUrl getPageUrl(const QString& resourcePath, const QUrl& channelUrl);

    // View state, as the page last reported it or the studio set it.
    QPointF getSceneOffset() const { return m_ptSceneOffset; }
    QPointF getScrollValue() const { return m_ptScroll; }
    double getZoomFactor() const { return m_dZoomFactor; }
    bool isFitToViewport() const { return m_bFitToViewport; }
    bool isRulerVisible() const { return m_bRulerVisible; }
    bool isContainerHandlerVisible() const { return m_bContainerHandlerVisible; }
    bool isEditingText() const { return m_bEditingText; }
    bool isSnapEnabled() const { return m_bSnapEnabled; }
    int getTransformTools() const { return m_nTransformTools; }
    int getFocusedItemId() const { return m_nFocusedItemId; }
    bool isRepaintPending() const { return m_bRepaintPending; }
    bool isUpdateScenePosPending() const { return m_bUpdateScenePosPending; }
    // Arrange operations align to the container rather than to the selection.
    bool isAlignToContainer() const { return m_bAlignToContainer; }
    void SetAlignToContainer(bool bAlign) { m_bAlignToContainer = bAlign; }
    bool isFluidLayout() const { return m_bFluidLayout; }
    void SetFuildLayout(bool bFluid) { m_bFluidLayout = bFluid; }
    bool isEditingBreakpoint() const { return m_bEditingBreakpoint; }
    int getBreakpointDirection() const { return m_nBreakpointDirection; }
    int getBreakpointValue() const { return m_nBreakpointValue; }
    int getBreakpointRulerPos() const { return m_nBreakpointRulerPos; }
    void clearEditingBreakpoint() { m_bEditingBreakpoint = false; }
    QPoint getLastContextMenuPos() const { return m_ptLastContextMenu; }
    void setLastContextMenuPos(const QPoint& pos) { m_ptLastContextMenu = pos; }

    // Zoom and fit pause playback; the flags say who hears of the change. The page's own changes
    // come back with bNotifyJS false.
    void setZoomFactor(double dFactor, bool bNotifyJS = true, bool bNotifyZoomCtrl = true);
    void setFitToViewport(bool bFit, bool bNotifyJS = true, bool bNotifyZoomCtrl = true);
    void setSceneOffset(double dOffsetX, double dOffsetY);
    void setScrollValue(double dScrollX, double dScrollY);
    void showRuler(bool bShow);
    void showContainerHandler(bool bShow);
    void setSnapEnabled(bool bEnabled);
    void setTransformTools(int nTools);
    void toggleTransformTools(int nTools);
    void changeStageView(int eViewMode);

    // View pixels to stage pixels of the shown scene and back.
    QPointF mapToCurrentScene(const QPointF& point) const;
    QPointF mapFromCurrentScene(const QPointF& point) const;
    void setFocusedItemId(int nId) { m_nFocusedItemId = nId; }
    // The element under the last click, or null.
    VTElement* getFocusedElement() const;
    // The innermost selected elements of the shown scene.
    QList<VTElement*> getSelectedElements() const;

    // Tools of the page.
    void addRectangle();
    void addRoundedRect();
    void addEllipse();
    void addShape(int nShapeType);
    void addImage();
    void addAudio();
    void addVideo();
    void addSymbol();
    void addText();
    void addHtmlWidget();
    void editText();
    void stopEditText(bool bImmediately = false);
    void editPoint();
    void openPath();
    void straightSegment();
    // The freeform of the shown scene that is in point editing, or null.
    VTElement* getPointEditingElement() const;

    // What the page reports.
    void submitCommandFromJS(const QString& json, bool bRunCmdOnly);
    void editSymbol(int nElementId);
    void endEditSymbol();
    void setEditingText(bool bEditing, int nToolBarX = 0, int nToolBarY = 0);
    void onTextFormatChanged(const QString& strFormat);
    void updateMediaProps(int nElementId, int nVideoWidth, int nVideoHeight, int nDuration,
                          bool bOnlyUpdateMediaSize);
    void setCurrentBreakpoint(int nDirection, int nPos);
    void setEditingBreakpoint(int nDirection, int nValue, int nRulerPos);
    void onAllTaskFinished();

    // Selection commands of the stage, outside the undo stack except removeSelectedItems.
    void deselectAll();
    void removeSelectedItems();

    void showContextMenu(const QPoint& globalPos);

public slots:
    void handleDocumentLoaded();
    void handleDocumentChanged(VTUpdateViewInfo* pInfo);
    void handleDocumentClosing() {}
    void sendSceneDataToJS();
    void updateActions();
    void onPageLoaded();
    void reloadOnCrashed(QWebEnginePage::RenderProcessTerminationStatus status, int nExitCode);
    void onEditorActivated();
    void onEditorDeactivated();
    void onSelectAll();
    void onEditSymbol();

signals:
    void zoomInfoChanged(double dZoomFactor, bool bFitToViewport);

protected:
    bool event(QEvent* pEvent) override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;

private:
    void clearPendingFlags();
    void updatePasteShortcut();
    // The stage command builder turns a gesture of the page into one command.
    bool runStageCommand(const QString& json, bool bRunCmdOnly);
    // Every insertion starts on the flat front view of the stage.
    void startInsertion();

    static int s_nCanvasCount;

    int m_nCanvasId;
    VTHTMLExposingCanvas* m_pExposingCanvas;
    QPointer<IEditor> m_pEditor;
    QPointer<VTDocument> m_pDocument;
    VTScene* m_pCurrentScene = nullptr;
    VTCanvasMenus* m_pMenus = nullptr;

    QPointF m_ptSceneOffset{200.0, 150.0};
    QPointF m_ptScroll{0.0, 0.0};
    double m_dZoomFactor = 1.0;
    bool m_bFitToViewport = false;
    bool m_bRulerVisible = true;
    bool m_bContainerHandlerVisible = false;
    bool m_bEditingText = false;
    bool m_bSnapEnabled = true;
    int m_nTransformTools = 0;
    int m_nFocusedItemId = -1;
    bool m_bRepaintPending = false;
    bool m_bUpdateScenePosPending = false;
    bool m_bFontsChanged = false;
    bool m_bAlignToContainer = true;
    bool m_bFluidLayout = false;
    bool m_bEditingBreakpoint = false;
    int m_nBreakpointDirection = 0;
    int m_nBreakpointValue = 0;
    int m_nBreakpointRulerPos = 0;
    QPoint m_ptLastContextMenu;
};
