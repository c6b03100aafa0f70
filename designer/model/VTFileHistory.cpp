#include "VTFileHistory.h"

#include "IUtils.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

bool VTFileHistory::add(const QString& entry)
{
    if (entry.isEmpty() || m_lstEntries.contains(entry))
        return false;
    m_lstEntries.append(entry);
    return true;
}

bool VTFileHistory::remove(const QString& entry)
{
    return m_lstEntries.removeAll(entry) > 0;
}

QString VTFileHistory::getAbsolutePath(const QString& projectFolder, const QString& entry)
{
    return QDir::cleanPath(QDir(projectFolder).filePath(entry));
}

QStringList VTFileHistory::getAbsolutePaths(const QString& projectFolder) const
{
    QStringList paths;
    paths.reserve(m_lstEntries.size());
    for (const QString& entry : m_lstEntries)
        paths.append(getAbsolutePath(projectFolder, entry));
    return paths;
}

QString VTFileHistory::renameResourceFolder(const QString& entry, const QString& oldName,
                                            const QString& newName)
{
    const QString oldPrefix = oldName + QLatin1Char('/');
    if (!entry.startsWith(oldPrefix, Qt::CaseInsensitive))
        return entry;
    return newName + QLatin1Char('/') + entry.mid(oldPrefix.size());
}

bool VTFileHistory::copyTo(const QString& oldFolder, const QString& oldResourceFolderName,
                           const QString& newFolder, const QString& newResourceFolderName,
                           QStringList* pNewEntries, QList<QPair<QString, QString>>* pCopies) const
{
    for (const QString& entry : m_lstEntries) {
        const QString newEntry = renameResourceFolder(entry, oldResourceFolderName, newResourceFolderName);
        const QString source = getAbsolutePath(oldFolder, entry);
        const QString copy = getAbsolutePath(newFolder, newEntry);
        if (!QFileInfo::exists(source)) {
            // Gone behind the project's back: nothing to carry over, and nothing to own.
            qWarning().noquote() << "File of the project is missing, left out:" << source;
            continue;
        }
        if (!pNewEntries->contains(newEntry))
            pNewEntries->append(newEntry);
        if (QFileInfo(source).canonicalFilePath() == QFileInfo(copy).canonicalFilePath())
            continue;
        if (!QDir().mkpath(QFileInfo(copy).absolutePath()) || !IUtils::copyFileInBlocks(source, copy))
            return false;
        pCopies->append({source, copy});
    }
    return true;
}
