#pragma once

#include "IProjectDialogs.h"

#include <QStringList>

// Stands in for the project dialogs while it lives: each request takes the next path of the
// queue (an empty queue cancels) and is recorded with its title, name and location.
class ScriptedProjectDialogs final : public IProjectDialogs
{
public:
    ScriptedProjectDialogs() { IProjectDialogs::setInstance(this); }
    ~ScriptedProjectDialogs() override { IProjectDialogs::setInstance(nullptr); }
    ScriptedProjectDialogs(const ScriptedProjectDialogs&) = delete;
    ScriptedProjectDialogs& operator=(const ScriptedProjectDialogs&) = delete;

    QStringList m_lstAnswers;
    QStringList m_lstRequests;

    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override
    {
        m_lstRequests << QStringLiteral("%1|%2|%3").arg(title, baseName, location);
        if (m_lstAnswers.isEmpty())
            return false;
        *pFilePath = m_lstAnswers.takeFirst();
        return true;
    }
};
