#include "VTHttpFileOpener.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

VTHttpFileOpener::VTHttpFileOpener(const QString& path, ResolutionCache* pCache)
{
    // A zero byte would cut the path short in the system's calls.
    if (path.isEmpty() || path.contains(QChar(0)))
        return;
    if (!openResolvedByDescriptor(path, pCache))
        openResolvedByPath(path);
}

VTHttpFileOpener::~VTHttpFileOpener() = default;

std::unique_ptr<QFile> VTHttpFileOpener::takeFile()
{
    return std::move(m_pFile);
}

bool VTHttpFileOpener::openResolvedByDescriptor(const QString& path, ResolutionCache* pCache)
{
#ifdef Q_OS_LINUX
    const QByteArray native = QFile::encodeName(path);
    const auto failed = [this](int nError) {
        m_nResult = nError == ENOENT || nError == ENOTDIR || nError == ELOOP || nError == ENAMETOOLONG
                        ? Missing
                        : Refused;
        return true;
    };
    // Only regular files are opened: a pipe would block the server, a device may act on being
    // opened. A path that led to a regular file before is not asked again before opening; the
    // descriptor is checked in any case.
    if (!pCache || !pCache->contains(path)) {
        struct stat named = {};
        if (::stat(native.constData(), &named) != 0)
            return failed(errno);
        if (!S_ISREG(named.st_mode)) {
            m_nResult = Refused;
            return true;
        }
    }
    // Non-blocking, should a pipe have taken the file's place since.
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return failed(errno);
    struct stat opened = {};
    if (::fstat(fd, &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_nlink == 0) {
        ::close(fd);
        m_nResult = Refused;
        return true;
    }
    Resolution resolution;
    resolution.nDevice = quint64(opened.st_dev);
    resolution.nInode = quint64(opened.st_ino);
    resolution.nChangeNs = qint64(opened.st_ctim.tv_sec) * 1000000000 + opened.st_ctim.tv_nsec;
    const auto it = pCache ? pCache->constFind(path) : ResolutionCache::const_iterator();
    if (pCache && it != pCache->constEnd() && it->nDevice == resolution.nDevice &&
        it->nInode == resolution.nInode && it->nChangeNs == resolution.nChangeNs) {
        resolution.canonical = it->canonical;
    } else {
        char target[4096];
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(fd);
        const ssize_t nLength = ::readlink(link.constData(), target, sizeof(target));
        if (nLength <= 0 || nLength >= ssize_t(sizeof(target))) {
            // Without /proc the names have to be resolved one by one.
            ::close(fd);
            return false;
        }
        resolution.canonical = QFile::decodeName(QByteArray(target, int(nLength)));
        if (pCache) {
            if (pCache->size() >= 4096)
                pCache->clear();
            pCache->insert(path, resolution);
        }
    }
    m_pFile = std::make_unique<QFile>();
    if (!m_pFile->open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        m_pFile.reset();
        ::close(fd);
        m_nResult = Refused;
        return true;
    }
    m_strCanonical = resolution.canonical;
    m_nSize = opened.st_size;
    m_nModifiedMs = qint64(opened.st_mtim.tv_sec) * 1000 + opened.st_mtim.tv_nsec / 1000000;
    m_nResult = Opened;
    return true;
#else
    Q_UNUSED(path)
    Q_UNUSED(pCache)
    return false;
#endif
}

void VTHttpFileOpener::openResolvedByPath(const QString& path)
{
    const QFileInfo info(path);
    m_strCanonical = info.canonicalFilePath();
    if (m_strCanonical.isEmpty()) {
        m_nResult = Missing;
        return;
    }
    m_nResult = Refused;
    if (!info.isFile())
        return;
    m_pFile = std::make_unique<QFile>(m_strCanonical);
    if (!m_pFile->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        m_pFile.reset();
        return;
    }
    m_nSize = info.size();
    m_nModifiedMs = info.lastModified().toMSecsSinceEpoch();
    m_nResult = Opened;
}
