#include "ActionContainer.h"

#include "ContextAction.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

ActionContainer::ActionContainer(const QString& id, QMenu* pMenu, QObject* parent)
    : QObject(parent)
    , m_strId(id)
    , m_pMenu(pMenu)
{
}

ActionContainer::ActionContainer(const QString& id, QMenuBar* pMenuBar, QObject* parent)
    : QObject(parent)
    , m_strId(id)
    , m_pMenuBar(pMenuBar)
{
}

QWidget* ActionContainer::widget() const
{
    if (m_pMenu)
        return m_pMenu;
    return m_pMenuBar;
}

QAction* ActionContainer::containerAction() const
{
    return m_pMenu ? m_pMenu->menuAction() : nullptr;
}

void ActionContainer::insertRaw(QAction* pBefore, QAction* pAction, bool bSeparatorBefore)
{
    QWidget* pWidget = widget();
    if (!pWidget || !pAction)
        return;
    if (bSeparatorBefore) {
        auto* pSeparator = new QAction(pWidget);
        pSeparator->setSeparator(true);
        pWidget->insertAction(pBefore, pSeparator);
    }
    pWidget->insertAction(pBefore, pAction);
}

void ActionContainer::addAction(ContextAction* pAction, bool bSeparatorBefore)
{
    insertAction(nullptr, pAction, bSeparatorBefore);
}

void ActionContainer::addContainer(ActionContainer* pContainer, bool bSeparatorBefore)
{
    insertContainer(nullptr, pContainer, bSeparatorBefore);
}

void ActionContainer::insertAction(QAction* pBefore, ContextAction* pAction, bool bSeparatorBefore)
{
    if (pAction)
        insertRaw(pBefore, pAction->getAction(), bSeparatorBefore);
}

void ActionContainer::insertContainer(QAction* pBefore, ActionContainer* pContainer, bool bSeparatorBefore)
{
    if (pContainer)
        insertRaw(pBefore, pContainer->containerAction(), bSeparatorBefore);
}

QAction* ActionContainer::addSeparator()
{
    QWidget* pWidget = widget();
    if (!pWidget)
        return nullptr;
    auto* pSeparator = new QAction(pWidget);
    pSeparator->setSeparator(true);
    pWidget->addAction(pSeparator);
    return pSeparator;
}
