#include "ContextAction.h"

#include <QAction>
#include <QWidget>

ContextAction::ContextAction(const QString& id, QAction* pAction, QObject* parent)
    : QObject(parent)
    , m_strId(id)
    , m_keySequence(pAction ? pAction->shortcut() : QKeySequence())
    , m_defaultKeySequence(m_keySequence)
{
    if (pAction)
        m_lstActions.append(pAction);
}

QAction* ContextAction::getAction() const
{
    for (const QPointer<QAction>& p : m_lstActions) {
        if (p)
            return p;
    }
    return nullptr;
}

QString ContextAction::getDescription() const
{
    if (!m_strDescription.isEmpty())
        return m_strDescription;
    QAction* pAction = getAction();
    return pAction ? pAction->text().remove(QLatin1Char('&')) : QString();
}

void ContextAction::setKeySequence(const QKeySequence& key)
{
    m_bUserBound = key != m_defaultKeySequence;
    if (m_keySequence == key && !m_lstActions.isEmpty() && getAction() && getAction()->shortcut() == key)
        return;
    m_keySequence = key;
    for (const QPointer<QAction>& p : qAsConst(m_lstActions)) {
        if (p)
            p->setShortcut(key);
    }
    emit keySequenceChanged();
}

void ContextAction::setDefaultKeySequence(const QKeySequence& key)
{
    m_defaultKeySequence = key;
    if (!m_bUserBound)
        setKeySequence(key);
}

bool ContextAction::isSeparator() const
{
    QAction* pAction = getAction();
    return pAction && pAction->isSeparator();
}

void ContextAction::setVisible(bool bVisible)
{
    for (const QPointer<QAction>& p : qAsConst(m_lstActions)) {
        if (p)
            p->setVisible(bVisible);
    }
}

void ContextAction::addAlternative(QAction* pAction, QWidget* pContext)
{
    if (!pAction || m_lstActions.contains(pAction))
        return;
    m_lstActions.append(pAction);
    pAction->setShortcut(m_keySequence);
    if (pContext) {
        // The shortcut of a context action fires only while focus is inside its widget.
        pAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        pContext->addAction(pAction);
    }
}

QList<QAction*> ContextAction::getAlternatives() const
{
    QList<QAction*> result;
    for (const QPointer<QAction>& p : m_lstActions) {
        if (p)
            result.append(p);
    }
    return result;
}
