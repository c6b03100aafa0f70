#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QPointer>

class QAction;
class QWidget;

// An action as the catalogue knows it: one id, one shortcut that the user may rebind, and the
// QActions registered under that id (one per context widget, or one for the whole window).
class ContextAction final : public QObject
{
    Q_OBJECT
public:
    ContextAction(const QString& id, QAction* pAction, QObject* parent = nullptr);

    // The action shown in menus: the first one registered.
    QAction* getAction() const;
    QString getId() const { return m_strId; }
    QString getDescription() const;
    void setDescription(const QString& text) { m_strDescription = text; }
    QKeySequence getKeySequence() const { return m_keySequence; }
    void setKeySequence(const QKeySequence& key);
    QKeySequence getDefaultKeySequence() const { return m_defaultKeySequence; }
    // Also becomes the current sequence unless the user has bound another one.
    void setDefaultKeySequence(const QKeySequence& key);
    bool isSeparator() const;
    void setVisible(bool bVisible);

    void addAlternative(QAction* pAction, QWidget* pContext);
    QList<QAction*> getAlternatives() const;

signals:
    void keySequenceChanged();

private:
    QString m_strId;
    QString m_strDescription;
    QKeySequence m_keySequence;
    QKeySequence m_defaultKeySequence;
    bool m_bUserBound = false;
    QList<QPointer<QAction>> m_lstActions;
};
