#include "VTCliProjectDialogs.h"

#include "IUtils.h"
#include "VTProjectPaths.h"

#include <QDir>

VTCliProjectDialogs::VTCliProjectDialogs() = default;

VTCliProjectDialogs::~VTCliProjectDialogs() = default;

bool VTCliProjectDialogs::askProjectLocation(const QString&, const QString& baseName, const QString&,
                                             QString* pFilePath)
{
    if (!m_pTemporaryDir)
        m_pTemporaryDir = std::make_unique<QTemporaryDir>();
    if (!m_pTemporaryDir->isValid())
        return false;
    const QString name = IUtils::convert2ValidResourceName(VTProjectPaths::stripProjectSuffix(baseName));
    if (!QDir(m_pTemporaryDir->path()).mkpath(name))
        return false;
    if (pFilePath)
        *pFilePath = VTProjectPaths::getProjectFilePath(m_pTemporaryDir->path(), name);
    return true;
}

IProjectDialogs::BackupChoice VTCliProjectDialogs::askBackupRecovery(const QString&)
{
    return BackupChoice::OpenLastSavedKeepBackup;
}
