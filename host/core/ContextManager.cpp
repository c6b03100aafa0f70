#include "ContextManager.h"

#include <QApplication>
#include <QWidget>

ContextManager::ContextManager()
{
    if (auto* pApp = qobject_cast<QApplication*>(QCoreApplication::instance()))
        connect(pApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* pNow) { updateCurrent(pNow); });
}

ContextManager* ContextManager::instance()
{
    static ContextManager* s_pInstance = new ContextManager;
    return s_pInstance;
}

void ContextManager::registerContext(QWidget* pWidget, const QString& id, const QString& name)
{
    if (!pWidget || id.isEmpty())
        return;
    ContextManager* self = instance();
    for (auto it = self->m_mapContexts.constFind(id); it != self->m_mapContexts.cend() && it.key() == id; ++it) {
        if (it.value().pWidget == pWidget)
            return;
    }
    self->m_mapContexts.insert(id, Entry{pWidget, name.isEmpty() ? id : name});
    self->updateCurrent(QApplication::focusWidget());
}

void ContextManager::unregisterContext(QWidget* pWidget, const QString& id)
{
    ContextManager* self = instance();
    for (auto it = self->m_mapContexts.find(id); it != self->m_mapContexts.end() && it.key() == id;) {
        if (!pWidget || it.value().pWidget == pWidget || !it.value().pWidget)
            it = self->m_mapContexts.erase(it);
        else
            ++it;
    }
    self->updateCurrent(QApplication::focusWidget());
}

QStringList ContextManager::getContexts()
{
    return instance()->m_mapContexts.uniqueKeys();
}

QString ContextManager::getContextName(const QString& id)
{
    const auto it = instance()->m_mapContexts.constFind(id);
    return it == instance()->m_mapContexts.cend() ? QString() : it.value().strName;
}

QStringList ContextManager::getCurrentContexts()
{
    return instance()->m_lstCurrent;
}

bool ContextManager::isContextActive(const QString& id)
{
    return instance()->m_lstCurrent.contains(id);
}

void ContextManager::updateCurrent(QWidget* pFocus)
{
    QStringList current;
    for (QWidget* w = pFocus; w; w = w->parentWidget()) {
        for (auto it = m_mapContexts.cbegin(); it != m_mapContexts.cend(); ++it) {
            if (it.value().pWidget == w && !current.contains(it.key()))
                current.append(it.key());
        }
    }
    if (current != m_lstCurrent) {
        m_lstCurrent = current;
        emit contextChanged(current);
    }
}
