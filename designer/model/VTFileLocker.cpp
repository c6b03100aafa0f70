#include "VTFileLocker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

VTFileLocker::VTFileLocker(QObject* parent)
    : QObject(parent)
{}

VTFileLocker::~VTFileLocker()
{
    unlockAll();
}

bool VTFileLocker::lock(const QString& filePath)
{
    const QString canonical = QFileInfo(filePath).canonicalFilePath();
    if (canonical.isEmpty() || m_mapFiles.contains(canonical))
        return false;
    auto* pFile = new QFile(canonical, this);
    if (!pFile->open(QIODevice::ReadOnly)) {
        delete pFile;
        return false;
    }
    m_mapFiles.insert(canonical, pFile);
    return true;
}

bool VTFileLocker::unlock(const QString& filePath)
{
    const QString key = findKey(filePath);
    if (key.isEmpty())
        return false;
    QFile* pFile = m_mapFiles.take(key);
    pFile->close();
    delete pFile;
    return true;
}

void VTFileLocker::unlockAll()
{
    for (QFile* pFile : qAsConst(m_mapFiles)) {
        pFile->close();
        delete pFile;
    }
    m_mapFiles.clear();
}

bool VTFileLocker::isLocked(const QString& filePath) const
{
    return !findKey(filePath).isEmpty();
}

QStringList VTFileLocker::getLockedFiles() const
{
    return m_mapFiles.keys();
}

QString VTFileLocker::findKey(const QString& filePath) const
{
    if (filePath.isEmpty())
        return {};
    const QString canonical = QFileInfo(filePath).canonicalFilePath();
    if (!canonical.isEmpty())
        return m_mapFiles.contains(canonical) ? canonical : QString();
    // Gone from disk: its folder still resolves as it did when the file was locked.
    const QFileInfo info(filePath);
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    const QString key = QDir::cleanPath((folder.isEmpty() ? info.absolutePath() : folder) + QLatin1Char('/') +
                                        info.fileName());
    return m_mapFiles.contains(key) ? key : QString();
}
