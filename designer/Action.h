#pragma once

#include <QAction>

class QSignalMapper;

// A QAction that carries a number and reports it when triggered, for families of entries such
// as the shape menu.
class Action final : public QAction
{
    Q_OBJECT
public:
    Action(QObject* parent, int nId);
    Action(const QString& text, QObject* parent, int nId);
    Action(const QIcon& icon, const QString& text, QObject* parent, int nId);

    int getId() const { return m_nId; }

signals:
    void triggered(int nId);

private:
    void init();

    int m_nId;
    QSignalMapper* m_pMapper = nullptr;
};
