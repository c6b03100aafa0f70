#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class ContextAction;
class QAction;
class QMenu;
class QMenuBar;
class QWidget;

// A menu or the menu bar that actions and sub-containers go into, known by id.
class ActionContainer final : public QObject
{
    Q_OBJECT
public:
    ActionContainer(const QString& id, QMenu* pMenu, QObject* parent = nullptr);
    ActionContainer(const QString& id, QMenuBar* pMenuBar, QObject* parent = nullptr);

    QString getId() const { return m_strId; }
    QMenu* menu() const { return m_pMenu; }
    QWidget* widget() const;
    // The action that shows this container inside its parent (a menu's own action).
    QAction* containerAction() const;

    void addAction(ContextAction* pAction, bool bSeparatorBefore = false);
    void addContainer(ActionContainer* pContainer, bool bSeparatorBefore = false);
    // Inserts before `pBefore` (an action or a container's action); appends when it is null.
    void insertAction(QAction* pBefore, ContextAction* pAction, bool bSeparatorBefore = false);
    void insertContainer(QAction* pBefore, ActionContainer* pContainer, bool bSeparatorBefore = false);
    QAction* addSeparator();

private:
    void insertRaw(QAction* pBefore, QAction* pAction, bool bSeparatorBefore);

    QString m_strId;
    QPointer<QMenu> m_pMenu;
    QPointer<QMenuBar> m_pMenuBar;
};
