#include "VTPackage.h"

#include "ICopyProgress.h"
#include "IMessageBox.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "VTDocument.h"
#include "VTPreloader.h"
#include "VTPreloaderLink.h"
#include "VTProjectPaths.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <quazip.h>
#include <quazipfile.h>
#include <quazipfileinfo.h>
#include <quazipnewinfo.h>

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <QStorageInfo>

#include <memory>
#include <optional>

namespace {

// The deflate settings of every entry: zlib's default level on a raw stream with the full window.
constexpr int s_nMethod = Z_DEFLATED;
constexpr int s_nLevel = Z_DEFAULT_COMPRESSION;
constexpr int s_nWindowBits = -MAX_WBITS;
constexpr int s_nMemLevel = 8;
constexpr int s_nStrategy = Z_DEFAULT_STRATEGY;

constexpr qint64 s_nChunkSize = VTResourceManager::s_nChunkSize;
// From here on, sizes and offsets may no longer fit the classic headers; only then is zip64
// used, as older unzip tools read classic archives only.
constexpr qint64 s_nZip64Threshold = 0xF0000000LL;
// No size read from a header is used in arithmetic beyond this, so nothing can overflow.
constexpr quint64 s_nLargestDeclaredSize = quint64(1) << 48;

const char* const s_pszNameCodec = "UTF-8";

void tell(const QString& text)
{
    IMessageBox::instance()->information(IUtils::getApplicationName(), text, IMessageBox::Ok);
}

QString entryPath(const QString& folderEntry, const QString& fileName)
{
    return folderEntry + QLatin1Char('/') + fileName;
}

// How a copy into or out of the archive ended.
enum class Outcome
{
    Done,
    SourceFailed,
    TargetOpenFailed,
    WriteFailed,
    Cancelled
};

std::unique_ptr<ICopyProgress> makeProgress(const QString& label, qint64 nTotal)
{
    // At or below the limit the work is short and goes on without a display it could cancel.
    if (nTotal <= VTResourceManager::getMinimumDatasizeToShow())
        return nullptr;
    return std::unique_ptr<ICopyProgress>(IProjectDialogs::instance()->createCopyProgress(label, nTotal));
}

qint64 fileBytes(const QStringList& paths)
{
    qint64 nBytes = 0;
    for (const QString& path : paths)
        nBytes += QFileInfo(path).size();
    return nBytes;
}

// The loaded symbol whose data file path is, if any. Its state in memory is what gets packed:
// the file is written only at a save of the project and may be older.
const VTSymbol* symbolOfFile(VTResourceManager* pManager, const QString& path)
{
    VTResource* pResource = pManager->findResourceByFileName(QFileInfo(path).fileName());
    if (!pResource || pResource->getType() != VTResource::Symbol)
        return nullptr;
    return pManager->getSymbolForResource(pResource);
}

// Writes the entries of one package, with one progress display for all its data.
class PackageWriter final
{
public:
    explicit PackageWriter(QuaZip* pZip)
        : m_pZip(pZip)
    {}

    void startProgress(qint64 nTotal)
    {
        m_pProgress = makeProgress(VTPackage::tr("Exporting package..."), nTotal);
    }
    void endProgress() { m_pProgress.reset(); }

    Outcome writeData(const QString& entryName, const QByteArray& data)
    {
        QuaZipFile entry(m_pZip);
        if (!openEntry(&entry, newInfo(entryName, QDateTime::currentDateTime())))
            return Outcome::TargetOpenFailed;
        if (entry.write(data) != data.size())
            return Outcome::WriteFailed;
        if (m_pProgress)
            m_pProgress->addCopiedBytes(data.size());
        return closeEntry(&entry);
    }

    Outcome copyFile(const QString& sourcePath, const QString& entryName)
    {
        QFile source(sourcePath);
        if (sourcePath.isEmpty() || !source.open(QIODevice::ReadOnly))
            return Outcome::SourceFailed;
        QuaZipFile entry(m_pZip);
        if (!openEntry(&entry, newInfo(entryName, QFileInfo(source).lastModified())))
            return Outcome::TargetOpenFailed;
        QByteArray buffer(int(s_nChunkSize), Qt::Uninitialized);
        for (;;) {
            if (m_pProgress && m_pProgress->wasCanceled())
                return Outcome::Cancelled;
            const qint64 nRead = source.read(buffer.data(), buffer.size());
            if (nRead < 0)
                return Outcome::SourceFailed;
            if (nRead == 0)
                break;
            if (entry.write(buffer.constData(), nRead) != nRead)
                return Outcome::WriteFailed;
            if (m_pProgress)
                m_pProgress->addCopiedBytes(nRead);
        }
        return closeEntry(&entry);
    }

    // Every file that the manager's resources refer to, flat under folderEntry.
    Outcome writeFiles(VTResourceManager* pManager, const QString& folderEntry)
    {
        const QStringList paths = pManager->getAbsTempFilenames(true, false);
        for (const QString& path : paths) {
            if (m_pProgress && m_pProgress->wasCanceled())
                return Outcome::Cancelled;
            const QString entryName = entryPath(folderEntry, QFileInfo(path).fileName());
            Outcome outcome = Outcome::Done;
            if (const VTSymbol* pSymbol = symbolOfFile(pManager, path)) {
                QBuffer buffer;
                buffer.open(QIODevice::WriteOnly);
                if (!pSymbol->saveTempData(&buffer))
                    return Outcome::SourceFailed;
                outcome = writeData(entryName, buffer.data());
            } else {
                outcome = copyFile(path, entryName);
            }
            if (outcome != Outcome::Done)
                return outcome;
        }
        return Outcome::Done;
    }

private:
    // Plain files readable by all, whatever the source was on disk: a link among the resources
    // is packed as the file it leads to, never as a link.
    static QuaZipNewInfo newInfo(const QString& entryName, const QDateTime& modified)
    {
        QuaZipNewInfo info(entryName);
        info.dateTime = modified;
        info.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        return info;
    }
    bool openEntry(QuaZipFile* pEntry, const QuaZipNewInfo& info) const
    {
        return pEntry->open(QIODevice::WriteOnly, info, nullptr, 0, s_nMethod, s_nLevel, false, s_nWindowBits,
                            s_nMemLevel, s_nStrategy);
    }
    static Outcome closeEntry(QuaZipFile* pEntry)
    {
        pEntry->close();
        return pEntry->getZipError() == ZIP_OK ? Outcome::Done : Outcome::WriteFailed;
    }

    QuaZip* m_pZip = nullptr;
    std::unique_ptr<ICopyProgress> m_pProgress;
};

// What the central directory says of one entry that is to be extracted.
struct PackEntry
{
    QString strName;
    qint64 nSize = 0;
    qint64 nCompressedSize = 0;
};

// Extracts one package into a project folder. The archive is weighed as a whole before anything
// is written; see VTPackage.
class PackageReader final
{
public:
    PackageReader(const QString& packagePath, const QString& folder, QStringList* pProblems)
        : m_strPackagePath(packagePath)
        , m_strFolder(QDir::cleanPath(folder))
        , m_pProblems(pProblems)
    {}

    bool run();

private:
    bool scan();
    bool addEntry(const QuaZipFileInfo64& info, qint64 nLimit);
    void leaveOut(const QString& name);

    bool ensureFolder(const QString& path) const;
    QString targetIn(const QString& folder, const QString& fileName) const;
    bool isInside(const QString& canonicalPath) const;

    bool readWhole(const PackEntry& entry, QByteArray* pData);
    static bool writeWhole(const QString& path, const QByteArray& data);
    Outcome extractTo(const PackEntry& entry, const QString& targetPath);
    bool extractFiles(const QList<PackEntry>& entries, const QString& folder);
    bool extractPreloader(const QString& resourceFolder);
    void countProgress(qint64 nBytes)
    {
        if (m_pProgress)
            m_pProgress->addCopiedBytes(nBytes);
    }

    QString m_strPackagePath;
    QString m_strFolder;
    QString m_strCanonicalFolder;
    QStringList* m_pProblems = nullptr;
    QuaZip m_zip;
    std::unique_ptr<ICopyProgress> m_pProgress;

    std::optional<PackEntry> m_project;
    std::optional<PackEntry> m_preloaderManifest;
    QList<PackEntry> m_lstResources;
    QList<PackEntry> m_lstPreloaderResources;
    bool m_bHasPreloaderFolder = false;
    bool m_bHasPreloaderResourceFolder = false;
    qint64 m_nDeclaredTotal = 0;
};

bool PackageReader::run()
{
    if (!QFileInfo(m_strPackagePath).isFile()) {
        tell(VTPackage::tr("The package file doesn't exist."));
        return false;
    }
    m_zip.setZipName(m_strPackagePath);
    m_zip.setFileNameCodec(s_pszNameCodec);
    if (!m_zip.open(QuaZip::mdUnzip)) {
        tell(VTPackage::tr("Cannot open package file."));
        return false;
    }
    // A refused package writes nothing at all, not even the resource folder.
    if (!scan()) {
        tell(VTPackage::tr("Cannot read project resources."));
        return false;
    }
    if (!m_project) {
        tell(VTPackage::tr("Cannot read project data."));
        return false;
    }
    // Sizes weighed as plausible may still not fit; better refused now than a full disk later.
    const QStorageInfo storage(m_strFolder);
    if (storage.isValid() && storage.bytesAvailable() < m_nDeclaredTotal) {
        tell(VTPackage::tr("There is not enough free disk space to extract the package."));
        return false;
    }

    const QString projectPath = VTPackage::getExtractedProjectPath(m_strFolder);
    const QString resourceFolder = VTProjectPaths(projectPath).getResourceFolderPath();
    m_strCanonicalFolder = QFileInfo(m_strFolder).canonicalFilePath();
    if (m_strCanonicalFolder.isEmpty() || !QFileInfo(m_strFolder).isDir() || !ensureFolder(resourceFolder)) {
        tell(VTPackage::tr("Cannot create folder to extract resource files."));
        return false;
    }

    QByteArray json;
    if (!readWhole(*m_project, &json)) {
        tell(VTPackage::tr("Cannot read project data."));
        return false;
    }
    const QString projectTarget = targetIn(m_strFolder, QFileInfo(projectPath).fileName());
    if (projectTarget.isEmpty() || !writeWhole(projectTarget, json)) {
        tell(VTPackage::tr("Cannot write project data."));
        return false;
    }

    m_pProgress = makeProgress(VTPackage::tr("Extracting package..."), QFileInfo(m_strPackagePath).size());
    countProgress(m_project->nCompressedSize);
    const bool bDone = extractFiles(m_lstResources, resourceFolder) &&
                       (!m_bHasPreloaderFolder || extractPreloader(resourceFolder));
    m_pProgress.reset();
    m_zip.close();
    return bDone;
}

bool PackageReader::scan()
{
    const int nCount = m_zip.getEntriesCount();
    const QList<QuaZipFileInfo64> infos = m_zip.getFileInfoList64();
    if (m_zip.getZipError() != UNZ_OK || nCount < 0 || infos.size() != nCount)
        return false;

    const QString resourcePrefix = VTPackage::getResourceFolderEntryName() + QLatin1Char('/');
    const QString preloaderFolder = resourcePrefix + VTPreloaderLink::getPreloaderFolderName();
    const QString preloaderResourcePrefix =
        VTPackage::getPreloaderResourceFolderEntryName() + QLatin1Char('/');
    QSet<QString> names;
    for (const QuaZipFileInfo64& info : infos) {
        // Two entries of one name cannot be told apart when opened by name.
        if (!VTPackage::isSafeEntryName(info.name) || names.contains(info.name))
            return false;
        names.insert(info.name);
        const bool bFolder = info.name.endsWith(QLatin1Char('/'));
        const QString name = bFolder ? info.name.chopped(1) : info.name;

        if (name == VTPackage::getProjectEntryName() && !bFolder) {
            if (!addEntry(info, VTPackage::s_nMaxManifestSize))
                return false;
            m_project = PackEntry{info.name, qint64(info.uncompressedSize), qint64(info.compressedSize)};
        } else if (name == VTPackage::getResourceFolderEntryName() && bFolder) {
            continue;
        } else if (!name.startsWith(resourcePrefix)) {
            leaveOut(info.name);
        } else if (!name.mid(resourcePrefix.size()).contains(QLatin1Char('/'))) {
            if (bFolder) {
                if (name == preloaderFolder)
                    m_bHasPreloaderFolder = true;
                else
                    leaveOut(info.name);
            } else {
                if (!addEntry(info, -1))
                    return false;
                m_lstResources.append(
                    {info.name, qint64(info.uncompressedSize), qint64(info.compressedSize)});
            }
        } else if (!name.startsWith(preloaderFolder + QLatin1Char('/'))) {
            leaveOut(info.name);
        } else {
            m_bHasPreloaderFolder = true;
            if (name == VTPackage::getPreloaderEntryName() && !bFolder) {
                if (!addEntry(info, VTPackage::s_nMaxManifestSize))
                    return false;
                m_preloaderManifest =
                    PackEntry{info.name, qint64(info.uncompressedSize), qint64(info.compressedSize)};
            } else if (name == VTPackage::getPreloaderResourceFolderEntryName() && bFolder) {
                m_bHasPreloaderResourceFolder = true;
            } else if (name.startsWith(preloaderResourcePrefix) && !bFolder &&
                       !name.mid(preloaderResourcePrefix.size()).contains(QLatin1Char('/'))) {
                if (!addEntry(info, -1))
                    return false;
                m_bHasPreloaderResourceFolder = true;
                m_lstPreloaderResources.append(
                    {info.name, qint64(info.uncompressedSize), qint64(info.compressedSize)});
            } else {
                leaveOut(info.name);
            }
        }
    }
    // Entries that share their compressed data (the overlapping kind of zip bomb) each look
    // plausible alone; together they claim more than the archive can hold.
    return m_nDeclaredTotal <= QFileInfo(m_strPackagePath).size() * VTPackage::s_nMaxExpansion;
}

bool PackageReader::addEntry(const QuaZipFileInfo64& info, qint64 nLimit)
{
    if (info.isEncrypted() || (info.method != 0 && info.method != Z_DEFLATED))
        return false;
    if (info.uncompressedSize > s_nLargestDeclaredSize || info.compressedSize > s_nLargestDeclaredSize)
        return false;
    const qint64 nSize = qint64(info.uncompressedSize);
    if (nLimit >= 0 && nSize > nLimit)
        return false;
    // Stored data is as large as it says; deflated data cannot grow beyond deflate's ratio.
    const qint64 nCompressed = qint64(info.compressedSize);
    if (info.method == 0 ? nSize != nCompressed
                         : nSize > qMax<qint64>(nCompressed, 1) * VTPackage::s_nMaxExpansion)
        return false;
    m_nDeclaredTotal += nSize;
    return true;
}

void PackageReader::leaveOut(const QString& name)
{
    if (m_pProblems)
        m_pProblems->append(
            VTPackage::tr("The entry \"%1\" is no part of a project; it is left out.").arg(name));
}

bool PackageReader::isInside(const QString& canonicalPath) const
{
    return !canonicalPath.isEmpty() && !m_strCanonicalFolder.isEmpty() &&
           canonicalPath.startsWith(m_strCanonicalFolder + QLatin1Char('/'));
}

bool PackageReader::ensureFolder(const QString& path) const
{
    // A link left in the folder, to a folder or not, would carry the files elsewhere.
    if (QFileInfo(path).isSymLink())
        return false;
    if (!QFileInfo::exists(path) && !QDir().mkdir(path))
        return false;
    const QFileInfo info(path);
    return info.isDir() && isInside(info.canonicalFilePath());
}

QString PackageReader::targetIn(const QString& folder, const QString& fileName) const
{
    const QString canonicalFolder = QFileInfo(folder).canonicalFilePath();
    if (canonicalFolder != m_strCanonicalFolder && !isInside(canonicalFolder))
        return {};
    const QString path = QDir(folder).filePath(fileName);
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile()))
        return {};
    return path;
}

bool PackageReader::readWhole(const PackEntry& entry, QByteArray* pData)
{
    if (!m_zip.setCurrentFile(entry.strName, QuaZip::csSensitive))
        return false;
    QuaZipFile file(&m_zip);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // One byte more than declared tells a header that lies.
    *pData = file.read(entry.nSize + 1);
    file.close();
    return file.getZipError() == UNZ_OK && pData->size() == entry.nSize;
}

bool PackageReader::writeWhole(const QString& path, const QByteArray& data)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}

Outcome PackageReader::extractTo(const PackEntry& entry, const QString& targetPath)
{
    if (!m_zip.setCurrentFile(entry.strName, QuaZip::csSensitive))
        return Outcome::SourceFailed;
    QuaZipFile source(&m_zip);
    if (!source.open(QIODevice::ReadOnly))
        return Outcome::SourceFailed;
    // The file appears only once it is complete and sound; every other way out drops it.
    QSaveFile target(targetPath);
    if (!target.open(QIODevice::WriteOnly))
        return Outcome::TargetOpenFailed;
    QByteArray buffer(int(s_nChunkSize), Qt::Uninitialized);
    qint64 nWritten = 0;
    qint64 nCounted = 0;
    for (;;) {
        if (m_pProgress && m_pProgress->wasCanceled())
            return Outcome::Cancelled;
        const qint64 nRead = source.read(buffer.data(), buffer.size());
        if (nRead < 0)
            return Outcome::SourceFailed;
        if (nRead == 0)
            break;
        nWritten += nRead;
        // Never more than the entry declared, so the whole never exceeds the weighed total.
        if (nWritten > entry.nSize)
            return Outcome::SourceFailed;
        if (target.write(buffer.constData(), nRead) != nRead)
            return Outcome::WriteFailed;
        // The progress total is the package's size, so it moves by compressed bytes.
        const qint64 nShare = entry.nSize > 0 ? entry.nCompressedSize * nWritten / entry.nSize : 0;
        countProgress(nShare - nCounted);
        nCounted = nShare;
    }
    source.close();
    // A damaged entry ends short or fails its checksum here.
    if (source.getZipError() != UNZ_OK || nWritten != entry.nSize)
        return Outcome::SourceFailed;
    countProgress(entry.nCompressedSize - nCounted);
    return target.commit() ? Outcome::Done : Outcome::WriteFailed;
}

bool PackageReader::extractFiles(const QList<PackEntry>& entries, const QString& folder)
{
    for (const PackEntry& entry : entries) {
        const QString fileName = entry.strName.mid(entry.strName.lastIndexOf(QLatin1Char('/')) + 1);
        const QString targetPath = targetIn(folder, fileName);
        const Outcome outcome =
            targetPath.isEmpty() ? Outcome::TargetOpenFailed : extractTo(entry, targetPath);
        if (outcome == Outcome::Cancelled)
            return false;
        if (outcome != Outcome::Done) {
            m_pProgress.reset();
            tell(VTPackage::tr("Cannot read project resources."));
            return false;
        }
    }
    return true;
}

bool PackageReader::extractPreloader(const QString& resourceFolder)
{
    // The preloader is an extra: its failures are told, and the project itself goes on.
    const QString folder = QDir(resourceFolder).filePath(VTPreloaderLink::getPreloaderFolderName());
    if (!ensureFolder(folder)) {
        tell(VTPackage::tr("Cannot write preloader file."));
        return true;
    }
    if (m_preloaderManifest) {
        QByteArray json;
        const QString path = targetIn(folder, VTPreloaderLink::getPreloaderFileName());
        if (path.isEmpty() || !readWhole(*m_preloaderManifest, &json) || !writeWhole(path, json))
            tell(VTPackage::tr("Cannot write preloader file."));
        countProgress(m_preloaderManifest->nCompressedSize);
    } else {
        tell(VTPackage::tr("No preloader manifest."));
    }
    if (!m_bHasPreloaderResourceFolder)
        return true;
    const QString resources = QDir(folder).filePath(QStringLiteral("preloader_res"));
    if (!ensureFolder(resources)) {
        tell(VTPackage::tr("Cannot extract preloader resources."));
        return true;
    }
    return extractFiles(m_lstPreloaderResources, resources);
}

} // namespace

bool VTPackage::save(VTDocument& document, const QString& packagePath, bool bReportSuccess)
{
    document.pause();
    if (!document.checkFormatBeforeSaving())
        return false;
    // The preloader is settled before the project's JSON is taken, so that the JSON tells of
    // the preloader that the package holds.
    if (document.hasCustomLoader() && !document.getPreloaderDoc())
        document.initPreloaderDocument();
    VTPreloader* pPreloader = document.getPreloaderDoc();
    QJsonObject root;
    if (!document.saveData(root)) {
        tell(tr("Cannot save project data."));
        return false;
    }

    VTResourceManager* pManager = document.getResourceManager();
    qint64 nTotal = pManager->getDataSize(false);
    qint64 nFileBytes = fileBytes(pManager->getAbsTempFilenames(true, false));
    if (pPreloader) {
        nTotal += pPreloader->getResourceManager()->getDataSize(false);
        nFileBytes += fileBytes(pPreloader->getResourceManager()->getAbsTempFilenames(true, false));
    }

    // Declared first, so it outlives the archive: what is not committed is thrown away.
    QSaveFile packageFile(packagePath);
    QuaZip zip(&packageFile);
    zip.setAutoClose(false);
    zip.setFileNameCodec(s_pszNameCodec);
    zip.setUtf8Enabled(true);
    zip.setZip64Enabled(nFileBytes >= s_nZip64Threshold);
    if (!packageFile.open(QIODevice::WriteOnly) || !zip.open(QuaZip::mdCreate)) {
        tell(tr("Cannot create package file."));
        return false;
    }

    PackageWriter writer(&zip);
    const Outcome project =
        writer.writeData(getProjectEntryName(), QJsonDocument(root).toJson(QJsonDocument::Compact));
    if (project != Outcome::Done) {
        tell(project == Outcome::TargetOpenFailed ? tr("Cannot save document information.")
                                                  : tr("Error when saving document information."));
        return false;
    }
    writer.startProgress(nTotal);
    if (pPreloader) {
        QJsonObject preloaderRoot;
        const Outcome manifest =
            pPreloader->saveData(preloaderRoot)
                ? writer.writeData(getPreloaderEntryName(),
                                   QJsonDocument(preloaderRoot).toJson(QJsonDocument::Compact))
                : Outcome::TargetOpenFailed;
        if (manifest != Outcome::Done) {
            writer.endProgress();
            tell(manifest == Outcome::TargetOpenFailed ? tr("Cannot save document information.")
                                                       : tr("Error when saving document information."));
            return false;
        }
        const Outcome files =
            writer.writeFiles(pPreloader->getResourceManager(), getPreloaderResourceFolderEntryName());
        if (files != Outcome::Done) {
            writer.endProgress();
            if (files != Outcome::Cancelled)
                tell(files == Outcome::SourceFailed ? tr("Cannot read preloader resources.")
                                                    : tr("Cannot write preloader resources."));
            return false;
        }
    }
    const Outcome resources = writer.writeFiles(pManager, getResourceFolderEntryName());
    writer.endProgress();
    if (resources != Outcome::Done) {
        if (resources != Outcome::Cancelled)
            tell(tr("Cannot save resource files."));
        return false;
    }
    zip.close();
    if (zip.getZipError() != ZIP_OK || !packageFile.commit()) {
        tell(tr("Cannot create package file."));
        return false;
    }
    if (bReportSuccess)
        tell(tr("Save to package successfully."));
    return true;
}

bool VTPackage::extract(const QString& packagePath, const QString& folder, QStringList* pProblems)
{
    PackageReader reader(packagePath, folder, pProblems);
    return reader.run();
}

QString VTPackage::getExtractedProjectPath(const QString& folder)
{
    const QString cleaned = QDir::cleanPath(folder);
    return QDir(cleaned).filePath(QFileInfo(cleaned).fileName() + QLatin1Char('.') +
                                  VTDocument::getProjectSuffix());
}

bool VTPackage::isSafeEntryName(const QString& name)
{
    if (name.isEmpty() || name.startsWith(QLatin1Char('/')) || QDir::isAbsolutePath(name))
        return false;
    for (const QChar c : name) {
        // Backslashes and colons lead elsewhere on some systems (parent folders, drives, streams);
        // control characters never appear in a name the studio writes.
        if (c == QLatin1Char('\\') || c == QLatin1Char(':') || c.unicode() < 0x20)
            return false;
    }
    const QStringList segments = name.split(QLatin1Char('/'));
    for (int i = 0; i < segments.size(); ++i) {
        const QString& segment = segments.at(i);
        // Only a folder entry's trailing slash leaves an empty segment.
        if (segment.isEmpty() && i != segments.size() - 1)
            return false;
        if (segment == QLatin1String(".") || segment == QLatin1String(".."))
            return false;
    }
    return true;
}
