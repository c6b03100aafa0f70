#pragma once

#include <QList>
#include <QPair>
#include <QStringList>

// The files in a project's folder that the project wrote or adopted, each relative to the
// folder; files of the resource folder carry its name as the first segment. What is listed here
// is what closing the project may remove, and what a save under a new name carries along.
class VTFileHistory final
{
public:
    QStringList getEntries() const { return m_lstEntries; }
    void setEntries(const QStringList& entries) { m_lstEntries = entries; }
    void clear() { m_lstEntries.clear(); }
    bool contains(const QString& entry) const { return m_lstEntries.contains(entry); }
    // Appends when absent; returns whether it appended.
    bool add(const QString& entry);
    bool remove(const QString& entry);

    static QString getAbsolutePath(const QString& projectFolder, const QString& entry);
    QStringList getAbsolutePaths(const QString& projectFolder) const;
    // The entry under another resource folder name (the old name matched in any case); entries
    // outside the resource folder stay as they are.
    static QString renameResourceFolder(const QString& entry, const QString& oldName, const QString& newName);

    // Copies each listed file from oldFolder to newFolder under its renamed entry, in blocks.
    // Files that no longer exist are left out of *pNewEntries. Stops at the first copy that
    // fails. *pCopies receives the (source, copy) absolute paths of what was copied.
    bool copyTo(const QString& oldFolder, const QString& oldResourceFolderName, const QString& newFolder,
                const QString& newResourceFolderName, QStringList* pNewEntries,
                QList<QPair<QString, QString>>* pCopies) const;

private:
    QStringList m_lstEntries;
};
