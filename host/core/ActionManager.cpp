#include "ActionManager.h"

#include "ActionContainer.h"
#include "ContextAction.h"
#include "PluginManager.h"

#include <QAction>
#include <QPointer>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>

namespace {
constexpr char kShortcutGroup[] = "Shortcuts";

QSettings* orDefault(QSettings* pSettings)
{
    return pSettings ? pSettings : ExtensionSystem::PluginManager::settings();
}
} // namespace

ActionManager* ActionManager::instance()
{
    static ActionManager* s_pInstance = new ActionManager;
    return s_pInstance;
}

ContextAction* ActionManager::registerAction(QAction* pAction, const QString& id, QWidget* pContext, bool)
{
    ActionManager* self = instance();
    if (!pAction || id.isEmpty())
        return nullptr;
    if (ContextAction* pExisting = self->m_mapActions.value(id)) {
        pExisting->addAlternative(pAction, pContext);
        return pExisting;
    }
    auto* pContextAction = new ContextAction(id, pAction, self);
    if (pContext) {
        pAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        pContext->addAction(pAction);
    }
    // Menus and shortcut lists refer to the action by id; dropping it when the QAction dies
    // keeps stale pointers out of the catalogue.
    QObject::connect(pAction, &QObject::destroyed, pContextAction, [self, id, pContextAction] {
        if (!pContextAction->getAction()) {
            self->m_mapActions.remove(id);
            self->m_lstOrder.removeAll(pContextAction);
            pContextAction->deleteLater();
        }
    });
    self->m_mapActions.insert(id, pContextAction);
    self->m_lstOrder.append(pContextAction);
    emit self->actionRegistered(pContextAction);
    return pContextAction;
}

void ActionManager::unregisterAction(QAction* pAction, const QString& id)
{
    ActionManager* self = instance();
    ContextAction* pContextAction = self->m_mapActions.value(id);
    if (!pContextAction || pContextAction->getAction() != pAction)
        return;
    self->m_mapActions.remove(id);
    self->m_lstOrder.removeAll(pContextAction);
    pContextAction->deleteLater();
}

ContextAction* ActionManager::getAction(const QString& id)
{
    return instance()->m_mapActions.value(id);
}

QList<ContextAction*> ActionManager::getActions()
{
    return instance()->m_lstOrder;
}

ActionContainer* ActionManager::getActionContainer(const QString& id)
{
    return instance()->m_mapContainers.value(id);
}

ActionContainer* ActionManager::createMenuContainer(const QString& text, const QString& id)
{
    ActionManager* self = instance();
    if (ActionContainer* pExisting = self->m_mapContainers.value(id))
        return pExisting;
    auto* pMenu = new QMenu(text);
    pMenu->setObjectName(id);
    auto* pContainer = new ActionContainer(id, pMenu, self);
    // The menu has no widget parent until a container takes it; the container frees it.
    QObject::connect(pContainer, &QObject::destroyed, pMenu, &QObject::deleteLater);
    self->m_mapContainers.insert(id, pContainer);
    return pContainer;
}

ActionContainer* ActionManager::registerMenuBar(QMenuBar* pMenuBar, const QString& id)
{
    ActionManager* self = instance();
    auto* pContainer = new ActionContainer(id, pMenuBar, self);
    self->m_mapContainers.insert(id, pContainer);
    return pContainer;
}

QString ActionManager::getActionFullText(ContextAction* pAction)
{
    if (!pAction || !pAction->getAction())
        return {};
    QAction* pQAction = pAction->getAction();
    QStringList path{pQAction->text().remove(QLatin1Char('&'))};
    // Walk up through the menus that show the action.
    const QMap<QString, ActionContainer*>& containers = instance()->m_mapContainers;
    QAction* pCurrent = pQAction;
    for (int depth = 0; depth < 8; ++depth) {
        ActionContainer* pOwner = nullptr;
        for (ActionContainer* pContainer : containers) {
            if (pContainer->menu() && pContainer->menu()->actions().contains(pCurrent)) {
                pOwner = pContainer;
                break;
            }
        }
        if (!pOwner)
            break;
        path.prepend(pOwner->menu()->title().remove(QLatin1Char('&')));
        pCurrent = pOwner->containerAction();
    }
    return path.join(QStringLiteral(" > "));
}

void ActionManager::readFromSettings(QSettings* pSettings)
{
    QSettings* s = orDefault(pSettings);
    if (!s)
        return;
    s->beginGroup(QLatin1String(kShortcutGroup));
    for (ContextAction* pAction : qAsConst(instance()->m_lstOrder)) {
        if (s->contains(pAction->getId()))
            pAction->setKeySequence(QKeySequence(s->value(pAction->getId()).toString(), QKeySequence::PortableText));
    }
    s->endGroup();
}

void ActionManager::saveSettings(QSettings* pSettings)
{
    QSettings* s = orDefault(pSettings);
    if (!s)
        return;
    s->beginGroup(QLatin1String(kShortcutGroup));
    for (ContextAction* pAction : qAsConst(instance()->m_lstOrder)) {
        if (pAction->getKeySequence() != pAction->getDefaultKeySequence())
            s->setValue(pAction->getId(), pAction->getKeySequence().toString(QKeySequence::PortableText));
        else
            s->remove(pAction->getId());
    }
    s->endGroup();
    s->sync();
}

void ActionManager::resetToDefault()
{
    for (ContextAction* pAction : qAsConst(instance()->m_lstOrder))
        pAction->setKeySequence(pAction->getDefaultKeySequence());
}

void ActionManager::clear()
{
    ActionManager* self = instance();
    qDeleteAll(self->m_mapContainers);
    self->m_mapContainers.clear();
    qDeleteAll(self->m_lstOrder);
    self->m_lstOrder.clear();
    self->m_mapActions.clear();
}
