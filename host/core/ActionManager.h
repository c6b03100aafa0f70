#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

class ActionContainer;
class ContextAction;
class QAction;
class QMenuBar;
class QSettings;
class QWidget;

// The catalogue of every action and menu by string id, and the store of user shortcuts.
class ActionManager final : public QObject
{
    Q_OBJECT
public:
    static ActionManager* instance();

    // Registers `pAction` under `id`. With a context widget the action's shortcut works only
    // inside that widget; registering an id again adds the action as another context's version.
    static ContextAction* registerAction(QAction* pAction, const QString& id, QWidget* pContext = nullptr,
                                         bool bScriptable = false);
    static void unregisterAction(QAction* pAction, const QString& id);
    static ContextAction* getAction(const QString& id);
    static QList<ContextAction*> getActions();

    static ActionContainer* getActionContainer(const QString& id);
    static ActionContainer* createMenuContainer(const QString& text, const QString& id);
    static ActionContainer* registerMenuBar(QMenuBar* pMenuBar, const QString& id);
    // "File > Save As > Package": the menu path of an action, mnemonics removed.
    static QString getActionFullText(ContextAction* pAction);

    // Shortcuts the user changed live in the group "Shortcuts" under the action id.
    static void readFromSettings(QSettings* pSettings = nullptr);
    static void saveSettings(QSettings* pSettings = nullptr);
    static void resetToDefault();

    // Drops everything; the host calls it when its window goes.
    static void clear();

signals:
    void actionRegistered(ContextAction* pAction);

private:
    ActionManager() = default;

    QMap<QString, ContextAction*> m_mapActions;
    QList<ContextAction*> m_lstOrder;
    QMap<QString, ActionContainer*> m_mapContainers;
};
