#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class QAction;
class QMenu;
class VTCanvas;
class VTElement;

// The stage's context menus and the state of their actions. The main menu mixes the canvas's own
// actions with those of the studio's catalogue, found by id; an id that the catalogue does not
// (yet) hold gets a stand-in of the same id and text here, which the canvas drives where it owns
// the behaviour and leaves disabled otherwise. A second menu serves the breakpoint ruler and a
// third point editing.
class VTCanvasMenus final : public QObject
{
    Q_OBJECT
public:
    explicit VTCanvasMenus(VTCanvas* pCanvas);
    ~VTCanvasMenus() override;

    QMenu* getMainMenu() const { return m_pMainMenu; }
    QMenu* getBreakpointMenu() const { return m_pBreakpointMenu; }
    QMenu* getPointMenu() const { return m_pPointMenu; }
    // By catalogue id ("Edit.Cut") or, for the canvas's own entries, by their untranslated text
    // ("Edit Text", "Paste Here"); null for an id the menus do not use.
    QAction* getAction(const QString& id) const { return m_hashActions.value(id); }

    void updateActions();
    // While the page edits text it needs the paste key itself.
    void updatePasteShortcut(bool bEditingText);
    // Which menu the position gets, by the canvas's state; nothing without a scene.
    void showContextMenu(const QPoint& globalPos);

private:
    // The menu that the canvas's state asks for, with its actions brought up to date; null when
    // none is shown.
    QMenu* chooseMenu();
    QAction* addOwn(QMenu* pMenu, const QString& key, const QString& text);
    QAction* addCatalogue(QMenu* pMenu, const QString& id, const QString& text, bool bCanvasHandled);
    void addContainer(QMenu* pMenu, const QString& id);
    void registerOnCanvas(QAction* pAction, const QString& id);
    void buildMainMenu();
    void buildBreakpointMenu();
    void buildPointMenu();
    void connectActions();
    void addBreakpoint();
    void removeBreakpoint();
    void updateLockAndHide(const QList<VTElement*>& lstSelected);

    VTCanvas* m_pCanvas;
    QMenu* m_pMainMenu;
    QMenu* m_pBreakpointMenu;
    QMenu* m_pPointMenu;
    QHash<QString, QPointer<QAction>> m_hashActions;
    bool m_bPasteKeyCleared = false;
};
