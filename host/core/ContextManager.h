#pragma once

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QWidget;

// Names the parts of the window ("Canvas", "Timeline"...) so the studio knows which one the user
// works in: the current contexts are those whose widget holds the keyboard focus.
class ContextManager final : public QObject
{
    Q_OBJECT
public:
    static ContextManager* instance();

    static void registerContext(QWidget* pWidget, const QString& id, const QString& name);
    static void unregisterContext(QWidget* pWidget, const QString& id);
    static QStringList getContexts();
    static QString getContextName(const QString& id);
    // Innermost first.
    static QStringList getCurrentContexts();
    static bool isContextActive(const QString& id);

signals:
    void contextChanged(const QStringList& currentContexts);

private:
    ContextManager();
    void updateCurrent(QWidget* pFocus);

    struct Entry
    {
        QPointer<QWidget> pWidget;
        QString strName;
    };
    QMultiMap<QString, Entry> m_mapContexts;
    QStringList m_lstCurrent;
};
