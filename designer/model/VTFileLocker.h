#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

class QFile;

// Holds the files of an open project open for reading, one entry per canonical path, so that the
// project knows which files it owns and a second lock of the same file is refused. Writes,
// renames and removals of a held file go between unlock() and lock().
class VTFileLocker final : public QObject
{
    Q_OBJECT
public:
    explicit VTFileLocker(QObject* parent = nullptr);
    ~VTFileLocker() override;

    // False when the file is held already or does not open for reading.
    bool lock(const QString& filePath);
    // False when the file was not held.
    bool unlock(const QString& filePath);
    void unlockAll();

    bool isLocked(const QString& filePath) const;
    QStringList getLockedFiles() const;

private:
    // The key of a held file; a file removed behind our back is still found by its absolute path.
    QString findKey(const QString& filePath) const;

    QMap<QString, QFile*> m_mapFiles;
};
