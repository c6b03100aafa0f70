#pragma once

#include "IProjectDialogs.h"

#include <QTemporaryDir>

#include <memory>

// Answers the model's folder questions without a user: a package is unpacked into a temporary
// folder that goes when the tool ends, so checking a package never writes beside it.
class VTCliProjectDialogs final : public IProjectDialogs
{
public:
    VTCliProjectDialogs();
    ~VTCliProjectDialogs() override;

    bool askProjectLocation(const QString& title, const QString& baseName, const QString& location,
                            QString* pFilePath) override;

private:
    std::unique_ptr<QTemporaryDir> m_pTemporaryDir;
};
