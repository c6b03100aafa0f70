#pragma once

#include <QHash>
#include <QString>

#include <memory>

class QFile;

// Opens the file that a request names, for reading, and tells what the server needs of it: the
// canonical path to test against the allowed folders, its size and modification time.
//
// On Linux the canonical path is read from the opened descriptor itself, so the file tested is
// the file read, whatever links change meanwhile, and the whole costs a handful of system calls
// instead of one path walk per folder of the path. Elsewhere the path is resolved first and the
// resolved path is opened.
class VTHttpFileOpener final
{
public:
    // Where a requested path led before, with the identity of the file found there.
    struct Resolution
    {
        QString canonical;
        quint64 nDevice = 0;
        quint64 nInode = 0;
        qint64 nChangeNs = 0;
    };
    using ResolutionCache = QHash<QString, Resolution>;

    enum Result
    {
        Opened,
        // Nothing by that name: the answer is 404.
        Missing,
        // Something that is no readable regular file: the answer is 403.
        Refused,
    };

    // pCache, when given, spares reading the canonical path again for a path that leads to the
    // very file it led to before: same device, inode and change time. A file that is moved or
    // linked elsewhere changes its change time, and a new file is a new inode, so what the cache
    // gives is a file that was found inside its folder and has not been touched since.
    explicit VTHttpFileOpener(const QString& path, ResolutionCache* pCache = nullptr);
    ~VTHttpFileOpener();
    VTHttpFileOpener(const VTHttpFileOpener&) = delete;
    VTHttpFileOpener& operator=(const VTHttpFileOpener&) = delete;

    Result getResult() const { return m_nResult; }
    QString getCanonicalPath() const { return m_strCanonical; }
    qint64 getSize() const { return m_nSize; }
    // Milliseconds since 1970 in UTC.
    qint64 getModifiedMs() const { return m_nModifiedMs; }
    // The open file, unbuffered, positioned at its start; the caller takes it over.
    std::unique_ptr<QFile> takeFile();

private:
    bool openResolvedByDescriptor(const QString& path, ResolutionCache* pCache);
    void openResolvedByPath(const QString& path);

    std::unique_ptr<QFile> m_pFile;
    QString m_strCanonical;
    qint64 m_nSize = 0;
    qint64 m_nModifiedMs = 0;
    Result m_nResult = Missing;
};
