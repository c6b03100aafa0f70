#pragma once

#include "IProjectDialogs.h"

#include <QTemporaryDir>

#include <memory>

// Answers the model's folder questions without a user: a package is unpacked into a temporary
// folder that goes when the tool ends, so checking a package never writes beside it. A backup
// found beside a project is left untouched and the last saved project opens: a tool that runs
// unattended must not decide for the user which version of the work survives.
class VTCliProjectDialogs final : public IProjectDialogs
{
public:
    VTCliProjectDialogs();
    ~VTCliProjectDialogs() override;

    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override;
    BackupChoice askBackupRecovery(const QString& projectFilePath) override;

private:
    std::unique_ptr<QTemporaryDir> m_pTemporaryDir;
};
