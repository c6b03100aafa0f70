#include "Action.h"

#include <QSignalMapper>

Action::Action(QObject* parent, int nId)
    : QAction(parent)
    , m_nId(nId)
{
    init();
}

Action::Action(const QString& text, QObject* parent, int nId)
    : QAction(text, parent)
    , m_nId(nId)
{
    init();
}

Action::Action(const QIcon& icon, const QString& text, QObject* parent, int nId)
    : QAction(icon, text, parent)
    , m_nId(nId)
{
    init();
}

void Action::init()
{
    m_pMapper = new QSignalMapper(this);
    m_pMapper->setMapping(this, m_nId);
    connect(this, &QAction::triggered, m_pMapper, QOverload<>::of(&QSignalMapper::map));
    connect(m_pMapper, &QSignalMapper::mappedInt, this, QOverload<int>::of(&Action::triggered));
}
