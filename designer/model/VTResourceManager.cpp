#include "VTResourceManager.h"

#include "IProjectDialogs.h"
#include "IUtils.h"
#include "VTDocument.h"
#include "VTFileLocker.h"
#include "VTFontResource.h"
#include "VTGoogleFontInfo.h"
#include "VTOtherResource.h"
#include "VTResourceListFormat.h"
#include "VTSymbol.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QSaveFile>

#include <memory>

namespace {

const QString s_strPreloaderName = QStringLiteral("preloader");
const QString s_strPreviewName = QStringLiteral("preview");

bool hasOwnFile(const VTResource* pResource)
{
    const auto* pOther = dynamic_cast<const VTOtherResource*>(pResource);
    return !pOther || pOther->hasFile();
}

QByteArray vtGetImageFormat(const QString& filePath)
{
    QImageReader reader(filePath);
    reader.setDecideFormatFromContent(true);
    return reader.format();
}

} // namespace

VTResourceManager::VTResourceManager(VTDocument* pDocument, QObject* parent)
    : QObject(parent)
    , m_pDocument(pDocument)
{}

VTResourceManager::~VTResourceManager()
{
    qDeleteAll(m_mapSymbols);
    m_mapSymbols.clear();
    qDeleteAll(m_mapResources);
}

VTResource* VTResourceManager::findResourceById(int nId) const
{
    return m_mapResources.value(nId);
}

VTResource* VTResourceManager::findResourceByUuid(const QUuid& uuid) const
{
    for (VTResource* pResource : m_mapResources) {
        if (pResource->getUuid() == uuid)
            return pResource;
    }
    return nullptr;
}

VTResource* VTResourceManager::findResourceByName(const QString& name) const
{
    for (VTResource* pResource : m_mapResources) {
        if (!pResource->isDeleted() && pResource->getName() == name)
            return pResource;
    }
    return nullptr;
}

VTResource* VTResourceManager::findResourceByFileName(const QString& fileName) const
{
    for (VTResource* pResource : m_mapResources) {
        if (pResource->isDeleted())
            continue;
        if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource)) {
            if (pMedia->getFileNames().contains(fileName))
                return pResource;
        } else if (pResource->getFileName() == fileName) {
            return pResource;
        }
    }
    return nullptr;
}

QList<VTResource*> VTResourceManager::getResourcesByType(int nType, bool bSkipDeleted) const
{
    if (nType == VTResource::Script)
        return m_lstJsResources;
    if (nType == VTResource::StyleSheet)
        return m_lstCssResources;
    QList<VTResource*> list;
    for (VTResource* pResource : m_mapResources) {
        if (pResource->getType() == nType && !(bSkipDeleted && pResource->isDeleted()))
            list.append(pResource);
    }
    return list;
}

void VTResourceManager::addResource(VTResource* pResource)
{
    if (!pResource)
        return;
    int nId = pResource->getId();
    // An id that is taken already must not replace the resource that holds it.
    if (nId < 1 || m_mapResources.contains(nId))
        nId = m_nNextId++;
    else if (nId >= m_nNextId)
        m_nNextId = nId + 1;
    pResource->setId(nId);
    m_mapResources.insert(nId, pResource);
    if (pResource->getType() == VTResource::Script && !m_lstJsResources.contains(pResource))
        m_lstJsResources.append(pResource);
    else if (pResource->getType() == VTResource::StyleSheet && !m_lstCssResources.contains(pResource))
        m_lstCssResources.append(pResource);
    pResource->setManager(this);
}

bool VTResourceManager::addResource(VTResource* pResource, const QString& sourcePath)
{
    if (!pResource)
        return false;
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << QStringLiteral("Could not read file %1").arg(sourcePath);
        return false;
    }
    source.close();
    auto* pMedia = dynamic_cast<MediaResource*>(pResource);
    MediaResource::MediaFormat format = MediaResource::NoFormat;
    QString fileName;
    if (pMedia) {
        format = MediaResource::getMediaFormat(sourcePath);
        if (format == MediaResource::NoFormat)
            return false;
        fileName = getValidFileName(QFileInfo(sourcePath).fileName());
    } else {
        const QString wanted = pResource->getFileName().isEmpty()
                                   ? QFileInfo(sourcePath).fileName()
                                   : QFileInfo(pResource->getFileName()).fileName();
        fileName = getValidFileName(wanted);
    }
    const QString targetPath = resolveFileName(fileName);
    if (targetPath.isEmpty())
        return false;
    pResource->setFileName(fileName);
    if (!copyFiles({{sourcePath, targetPath}}, tr("Importing %1...").arg(QFileInfo(sourcePath).fileName()))) {
        if (pMedia)
            pMedia->removeFormat(format);
        return false;
    }
    lockAndRecord(fileName);
    // A media resource gathering one more encoding is registered already.
    if (m_mapResources.value(pResource->getId()) != pResource)
        addResource(pResource);
    return true;
}

bool VTResourceManager::addResource(VTResource* pResource, VTResourceManager* pOther)
{
    if (!pResource || !pOther)
        return false;
    QList<QPair<QString, QString>> files;
    QStringList newNames;
    if (auto* pMedia = dynamic_cast<MediaResource*>(pResource)) {
        const QList<MediaResource::MediaFormat> formats = pMedia->getExistedFormat();
        for (MediaResource::MediaFormat format : formats) {
            const QString source = pOther->resolveFileName(pMedia->getFileName(format));
            const QString name = getValidFileName(pMedia->getFileName(format));
            files.append({source, resolveFileName(name)});
            newNames.append(name);
        }
    } else if (hasOwnFile(pResource)) {
        QString source;
        if (pResource->getType() == VTResource::Symbol)
            source = pOther->getAbsTempFilename(pOther->findResourceByUuid(pResource->getUuid()), true);
        if (source.isEmpty())
            source = pOther->resolveFileName(pResource->getFileName());
        const QString name = getValidFileName(pResource->getFileName());
        files.append({source, resolveFileName(name)});
        newNames.append(name);
    }
    for (const auto& file : files) {
        if (file.first.isEmpty() || file.second.isEmpty())
            return false;
    }
    if (!copyFiles(files, tr("Copying resources...")))
        return false;
    for (const QString& name : newNames) {
        if (auto* pMedia = dynamic_cast<MediaResource*>(pResource))
            pMedia->removeFormat(MediaResource::getMediaFormat(name));
        pResource->setFileName(name);
        lockAndRecord(name);
    }
    addResource(pResource);
    return true;
}

void VTResourceManager::addResource(VTResource* pResource, VTSymbol* pSymbol)
{
    if (!pResource)
        return;
    const QString base = pResource->getName().isEmpty() ? QStringLiteral("symbol") : pResource->getName();
    const QString fileName = getValidFileName(base + QStringLiteral(".vetrasym"));
    pResource->setFileName(fileName);
    if (m_pDocument)
        m_pDocument->addFileHistory(fileName, true);
    addResource(pResource);
    if (pSymbol) {
        pSymbol->setResourceManager(this);
        m_mapSymbols.insert(pResource, pSymbol);
    }
}

void VTResourceManager::removeResource(VTResource* pResource)
{
    if (!pResource)
        return;
    m_mapResources.remove(pResource->getId());
    m_lstJsResources.removeAll(pResource);
    m_lstCssResources.removeAll(pResource);
    delete m_mapSymbols.take(pResource);
    delete pResource;
}

QString VTResourceManager::getTempPath() const
{
    const QString folder = getResourceFolder();
    if (!folder.isEmpty())
        QDir().mkpath(folder);
    return folder;
}

QString VTResourceManager::getResourceFolder() const
{
    if (!m_pDocument || m_pDocument->getFileName().isEmpty())
        return {};
    return m_pDocument->getResourceFolderPath() + QLatin1Char('/');
}

QString VTResourceManager::resolveFileName(const QString& fileName) const
{
    // Resource files lie flat in the folder; any name that could point elsewhere is refused
    // before it reaches the file system.
    if (fileName.isEmpty() || fileName.contains(QLatin1Char('/')) || fileName.contains(QLatin1Char('\\')) ||
        fileName == QLatin1String(".") || fileName == QLatin1String("..") || QDir::isAbsolutePath(fileName) ||
        fileName.contains(QChar(0)))
        return {};
    const QString folderPath = getResourceFolder();
    if (folderPath.isEmpty())
        return {};
    const QString path = folderPath + fileName;
    const QFileInfo info(path);
    if (info.isSymLink() || info.exists()) {
        const QString canonicalFolder = QFileInfo(folderPath).canonicalFilePath();
        const QString canonical = info.canonicalFilePath();
        if (canonical.isEmpty() || canonicalFolder.isEmpty() ||
            !canonical.startsWith(canonicalFolder + QLatin1Char('/')))
            return {};
    }
    return path;
}

QString VTResourceManager::getAbsTempFilename(VTResource* pResource, bool bSaveSymbol)
{
    if (!pResource)
        return {};
    if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource))
        return resolveFileName(pMedia->getFileNames().value(0));
    const QString path = resolveFileName(pResource->getFileName());
    if (path.isEmpty() || pResource->getType() != VTResource::Symbol || !bSaveSymbol)
        return path;
    VTSymbol* pSymbol = getSymbolForResource(pResource);
    if (!pSymbol)
        return {};
    getTempPath();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !pSymbol->saveTempData(&file)) {
        file.cancelWriting();
        return {};
    }
    if (!commitLockedFile(path, &file))
        return {};
    return path;
}

QString VTResourceManager::getAbsTempFilename(const MediaResource* pResource,
                                              MediaResource::MediaFormat format) const
{
    return pResource ? resolveFileName(pResource->getFileName(format)) : QString();
}

QStringList VTResourceManager::getAbsTempFilenames(const MediaResource* pResource) const
{
    QStringList paths;
    if (!pResource)
        return paths;
    const QStringList names = pResource->getFileNames();
    for (const QString& name : names) {
        const QString path = resolveFileName(name);
        if (!path.isEmpty())
            paths.append(path);
    }
    return paths;
}

QStringList VTResourceManager::getAbsTempFilenames(bool bSkipDeleted, bool bSaveSymbols)
{
    QStringList paths;
    for (VTResource* pResource : qAsConst(m_mapResources)) {
        if (bSkipDeleted && pResource->isDeleted())
            continue;
        if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource)) {
            paths.append(getAbsTempFilenames(pMedia));
            continue;
        }
        if (!hasOwnFile(pResource))
            continue;
        const QString path = getAbsTempFilename(pResource, bSaveSymbols);
        if (!path.isEmpty())
            paths.append(path);
    }
    return paths;
}

qint64 VTResourceManager::getDataSize(VTResource* pResource, bool bWithSymbols) const
{
    if (!pResource)
        return 0;
    switch (pResource->getType()) {
    case VTResource::Audio:
    case VTResource::Video: {
        qint64 nSize = 0;
        const QStringList paths = getAbsTempFilenames(static_cast<const MediaResource*>(pResource));
        for (const QString& path : paths)
            nSize += QFileInfo(path).size();
        return nSize;
    }
    case VTResource::Font:
        return pResource->getDataSize();
    case VTResource::Symbol: {
        const VTSymbol* pSymbol = getSymbolForResource(pResource);
        if (!bWithSymbols || !pSymbol)
            return 0;
        QMap<VTResource*, VTResource*> used;
        pSymbol->prepareResourceMap(used);
        qint64 nSize = 0;
        for (auto it = used.constBegin(); it != used.constEnd(); ++it)
            nSize += getDataSize(it.key(), false);
        return nSize;
    }
    case VTResource::Image:
        return QFileInfo(resolveFileName(pResource->getFileName())).size();
    default:
        return 0;
    }
}

qint64 VTResourceManager::getDataSize(const QList<VTResource*>& resources, bool bWithSymbols) const
{
    qint64 nSize = 0;
    for (VTResource* pResource : resources)
        nSize += getDataSize(pResource, bWithSymbols);
    return nSize;
}

qint64 VTResourceManager::getDataSize(bool bWithSymbols) const
{
    return getDataSize(m_mapResources.values(), bWithSymbols);
}

QPixmap VTResourceManager::loadResouceAsPixmap(VTResource* pResource) const
{
    // Pixmaps live on the GUI side; the headless tool has none to give.
    if (!pResource || !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return {};
    const QString path = resolveFileName(pResource->getFileName());
    if (path.isEmpty())
        return {};
    const QByteArray format = vtGetImageFormat(path);
    QPixmap pixmap;
    if (format == "svg") {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QByteArray data = file.readAll();
        data.replace("<style>", "<style type=\"text/css\">");
        pixmap.loadFromData(data, "svg");
    } else {
        pixmap.load(path, format.isEmpty() ? nullptr : format.constData());
    }
    return pixmap;
}

bool VTResourceManager::saveResourceAsFile(VTResource* pResource, const QString& targetPath)
{
    if (!pResource)
        return false;
    QString sourcePath;
    if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource))
        sourcePath = getAbsTempFilename(pMedia, MediaResource::getMediaFormat(targetPath));
    else
        sourcePath = getAbsTempFilename(pResource, false);
    if (sourcePath.isEmpty())
        return false;
    return copyFiles({{sourcePath, targetPath}}, tr("Exporting %1...").arg(QFileInfo(targetPath).fileName()));
}

int VTResourceManager::getJsCssResourceOrder(VTResource* pResource) const
{
    if (!pResource)
        return -1;
    if (pResource->getType() == VTResource::Script)
        return m_lstJsResources.indexOf(pResource);
    if (pResource->getType() == VTResource::StyleSheet)
        return m_lstCssResources.indexOf(pResource);
    return -1;
}

bool VTResourceManager::setJsCssResourceOrder(VTResource* pResource, int nIndex)
{
    if (!pResource)
        return false;
    QList<VTResource*>* pList = nullptr;
    if (pResource->getType() == VTResource::Script)
        pList = &m_lstJsResources;
    else if (pResource->getType() == VTResource::StyleSheet)
        pList = &m_lstCssResources;
    if (!pList || nIndex < 0 || nIndex >= pList->size())
        return false;
    const int nFrom = pList->indexOf(pResource);
    if (nFrom < 0)
        return false;
    pList->move(nFrom, nIndex);
    return true;
}

QString VTResourceManager::getUrlResource(const VTResource* pResource)
{
    return pResource ? getUrlPrefix() + pResource->getFileName4Export() : getUrlPrefix();
}

bool VTResourceManager::isUrlResource(const QString& text)
{
    return text.startsWith(getUrlPrefix());
}

VTResource* VTResourceManager::getResourceFromUrl(const QString& text) const
{
    if (!isUrlResource(text))
        return nullptr;
    return findResourceByFileName(text.mid(getUrlPrefix().size()));
}

bool VTResourceManager::isReservedName(const QString& fileName)
{
    return fileName.compare(s_strPreloaderName, Qt::CaseInsensitive) == 0 ||
           fileName.compare(s_strPreviewName, Qt::CaseInsensitive) == 0;
}

bool VTResourceManager::isFileNameTaken(const QString& candidate, MediaResource::MediaFormat format) const
{
    if (isReservedName(candidate))
        return true;
    for (const VTResource* pResource : m_mapResources) {
        if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource)) {
            if (format != MediaResource::NoFormat &&
                pMedia->getFileName(format).compare(candidate, Qt::CaseInsensitive) == 0)
                return true;
        } else if (pResource->getFileName().compare(candidate, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    // A file that is there without a resource (an export, something the user put there) is
    // never overwritten by an import.
    const QString folder = getResourceFolder();
    return !folder.isEmpty() && QFileInfo::exists(folder + candidate);
}

QString VTResourceManager::getValidFileName(const QString& fileName) const
{
    const QFileInfo info(fileName);
    const QString suffix = IUtils::convert2ValidResourceName(info.suffix()).remove(QLatin1Char('.'));
    QString base = info.completeBaseName();
    if (base.isEmpty())
        base = fileName;
    base = IUtils::convert2ValidResourceName(base);
    const QString name = info.suffix().isEmpty() ? base : QStringLiteral("%1.%2").arg(base, suffix);
    const MediaResource::MediaFormat format = MediaResource::getMediaFormat(name);
    if (!isFileNameTaken(name, format))
        return name;
    for (int n = 1;; ++n) {
        const QString candidate = info.suffix().isEmpty()
                                      ? QStringLiteral("%1_%2").arg(base).arg(n)
                                      : QStringLiteral("%1_%2.%3").arg(base).arg(n).arg(suffix);
        if (!isFileNameTaken(candidate, format))
            return candidate;
    }
}

QString VTResourceManager::getValidResourceName(const QString& name, const VTResource* pSelf) const
{
    const QFileInfo info(name);
    QString valid =
        IUtils::convert2ValidResourceName(info.completeBaseName().isEmpty() ? name : info.completeBaseName());
    if (!info.suffix().isEmpty() && !info.completeBaseName().isEmpty())
        valid += QLatin1Char('.') + IUtils::convert2ValidResourceName(info.suffix());
    const auto clash = [this, pSelf](const QString& candidate) -> const VTResource* {
        for (const VTResource* pResource : m_mapResources) {
            if (pResource != pSelf && !pResource->isDeleted() && pResource->getName() == candidate)
                return pResource;
        }
        return nullptr;
    };
    for (int n = 0;; ++n) {
        const QString candidate = n == 0 ? valid : QStringLiteral("%1_%2").arg(valid).arg(n);
        const VTResource* pOther = clash(candidate);
        if (!pOther)
            return candidate;
        if (!pSelf)
            continue;
        // a.jpg next to a.png: the suffix tells them apart better than a number would.
        const QFileInfo selfFile(pSelf->getFileName());
        const QString selfSuffix = selfFile.suffix();
        if (!selfSuffix.isEmpty() && selfSuffix != QFileInfo(pOther->getFileName()).suffix() &&
            candidate == selfFile.completeBaseName()) {
            const QString withSuffix = QStringLiteral("%1.%2").arg(candidate, selfSuffix);
            if (getValidResourceName(withSuffix, pSelf) == withSuffix)
                return withSuffix;
        }
    }
}

bool VTResourceManager::loadAllSymbols()
{
    for (VTResource* pResource : qAsConst(m_mapResources)) {
        if (pResource->getType() != VTResource::Symbol || m_mapSymbols.contains(pResource))
            continue;
        VTSymbol* pSymbol = loadSymbol(pResource);
        if (!pSymbol) {
            if (m_pDocument)
                m_pDocument->addLoadProblem(tr("Symbol \"%1\": its data file \"%2\" does not read.")
                                                .arg(pResource->getName(), pResource->getFileName()));
            return false;
        }
        // What the symbol's own file lost belongs to the project's list of what did not load.
        if (m_pDocument) {
            const QStringList problems = pSymbol->getLoadProblems();
            for (const QString& problem : problems)
                m_pDocument->addLoadProblem(tr("Symbol \"%1\": %2").arg(pResource->getName(), problem));
        }
        m_mapSymbols.insert(pResource, pSymbol);
    }
    return true;
}

VTSymbol* VTResourceManager::loadSymbol(VTResource* pResource)
{
    QFile file(getAbsTempFilename(pResource, false));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return nullptr;
    auto pSymbol = std::make_unique<VTSymbol>();
    pSymbol->setResourceManager(this);
    if (m_pDocument)
        pSymbol->setFunctionManager(m_pDocument->getFunctionManager());
    if (!pSymbol->loadTempData(&file)) {
        // Why the symbol failed (a scene that does not read) is worth more than that it did.
        if (m_pDocument) {
            const QStringList problems = pSymbol->getLoadProblems();
            for (const QString& problem : problems)
                m_pDocument->addLoadProblem(tr("Symbol \"%1\": %2").arg(pResource->getName(), problem));
        }
        return nullptr;
    }
    return pSymbol.release();
}

bool VTResourceManager::saveAllSymbolsState()
{
    for (VTResource* pResource : qAsConst(m_mapResources)) {
        if (pResource->getType() != VTResource::Symbol || !m_mapSymbols.contains(pResource))
            continue;
        const QString path = getAbsTempFilename(pResource, true);
        if (path.isEmpty())
            return false;
        lockAndRecord(pResource->getFileName());
    }
    return true;
}

bool VTResourceManager::commitLockedFile(const QString& filePath, QSaveFile* pFile)
{
    VTFileLocker* pLocker = getLocker();
    const bool bWasLocked = pLocker && pLocker->unlock(filePath);
    const bool bCommitted = pFile->commit();
    if (pLocker && (bCommitted || bWasLocked))
        pLocker->lock(filePath);
    return bCommitted;
}

VTFileLocker* VTResourceManager::getLocker() const
{
    return m_pDocument ? m_pDocument->getFileLocker() : nullptr;
}

void VTResourceManager::lockAndRecord(const QString& fileName)
{
    const QString path = resolveFileName(fileName);
    if (path.isEmpty() || !m_pDocument)
        return;
    m_pDocument->addFileHistory(fileName, true);
    if (VTFileLocker* pLocker = getLocker()) {
        if (!pLocker->isLocked(path))
            pLocker->lock(path);
    }
}

bool VTResourceManager::copyResourceData(QIODevice* pSource, QIODevice* pTarget)
{
    m_bCancelCopy = false;
    bool bOk = pSource && pTarget && pSource->isReadable() && pTarget->isWritable();
    while (bOk && !m_bCancelCopy) {
        const QByteArray chunk = pSource->read(s_nChunkSize);
        if (chunk.isEmpty()) {
            bOk = pSource->atEnd() || pSource->bytesAvailable() == 0;
            break;
        }
        if (pTarget->write(chunk) != chunk.size()) {
            bOk = false;
            break;
        }
        emit bytesWritten(chunk.size());
    }
    if (pSource)
        pSource->close();
    if (pTarget)
        pTarget->close();
    return bOk && !m_bCancelCopy;
}

bool VTResourceManager::copyFiles(const QList<QPair<QString, QString>>& files, const QString& progressLabel)
{
    qint64 nTotal = 0;
    for (const auto& file : files)
        nTotal += QFileInfo(file.first).size();
    std::unique_ptr<ICopyProgress> pProgress;
    if (nTotal > getMinimumDatasizeToShow())
        pProgress.reset(IProjectDialogs::instance()->createCopyProgress(progressLabel, nTotal));
    QMetaObject::Connection progressConnection;
    if (pProgress) {
        pProgress->setCancelHandler([this]() { cancelCopyingData(); });
        ICopyProgress* pRaw = pProgress.get();
        progressConnection = connect(this, &VTResourceManager::bytesWritten, this,
                                     [pRaw](qint64 n) { pRaw->addCopiedBytes(n); });
    }
    // Imports may be the first files of a new project's resource folder.
    getTempPath();
    QStringList written;
    bool bOk = true;
    for (const auto& file : files) {
        QFile source(file.first);
        QFile target(file.second);
        VTFileLocker* pLocker = getLocker();
        if (pLocker)
            pLocker->unlock(file.second);
        if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            if (target.isOpen()) {
                target.close();
                written.append(file.second);
            }
            bOk = false;
            break;
        }
        written.append(file.second);
        if (!copyResourceData(&source, &target)) {
            bOk = false;
            break;
        }
    }
    disconnect(progressConnection);
    if (!bOk) {
        // A cancelled or failed copy leaves nothing behind, not even a truncated file.
        for (const QString& path : qAsConst(written))
            QFile::remove(path);
    }
    m_bCancelCopy = false;
    return bOk;
}

void VTResourceManager::addMigratedFile(const QString& hashedName, const QString& plainName)
{
    m_lstHashedNames.append(hashedName);
    m_lstPlainNames.append(plainName);
}

bool VTResourceManager::parse(const QJsonArray& array, int nDocVersion, QStringList* pProblems,
                              bool* pbMissingFiles)
{
    return VTResourceListFormat::parse(*this, array, nDocVersion, pProblems, pbMissingFiles);
}

void VTResourceManager::serialize(QJsonArray& array) const
{
    VTResourceListFormat::serialize(*this, array);
}

void VTResourceManager::serializeToExport(QJsonArray& array, bool bPreview, bool bStage)
{
    VTResourceListFormat::serializeToExport(*this, array, bPreview, bStage);
}

void VTResourceManager::serializeToExport(QJsonArray& array, const VTResource* pResource, bool bPreview,
                                          bool bStage)
{
    if (pResource)
        VTResourceListFormat::serializeToExport(*this, array, bPreview, bStage, pResource);
}

bool VTResourceManager::isTempResource(const QString& filePath) const
{
    const QString folder = getResourceFolder();
    if (folder.isEmpty() || !filePath.startsWith(folder))
        return false;
    const QString name = filePath.mid(folder.size());
    if (m_lstHashedNames.contains(name))
        return false;
    return m_lstPlainNames.contains(name);
}

void VTResourceManager::cleanOldResources()
{
    if (m_pDocument && m_pDocument->getDocVersion() >= 2) {
        for (const QString& hashed : qAsConst(m_lstHashedNames)) {
            bool bAlsoPlain = false;
            for (const QString& plain : qAsConst(m_lstPlainNames))
                bAlsoPlain = bAlsoPlain || plain.compare(hashed, Qt::CaseInsensitive) == 0;
            const QString path = resolveFileName(hashed);
            if (bAlsoPlain || path.isEmpty())
                continue;
            if (VTFileLocker* pLocker = getLocker())
                pLocker->unlock(path);
            QFile::remove(path);
        }
    }
    m_lstHashedNames.clear();
    m_lstPlainNames.clear();
}

bool VTResourceManager::copyDirRecursive(const QString& source, const QString& target, bool bOverwrite)
{
    const QDir sourceDir(source);
    if (!sourceDir.exists())
        return false;
    // Symbolic links are not followed: a link could lead out of the tree or into a loop.
    const QFileInfoList files = sourceDir.entryInfoList(QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        const QString targetPath = QDir(target).filePath(file.fileName());
        if (QFileInfo::exists(targetPath)) {
            if (!bOverwrite)
                continue;
            if (!QFile::remove(targetPath))
                return false;
        }
        if (!QFile::copy(file.absoluteFilePath(), targetPath))
            return false;
    }
    const QFileInfoList dirs = sourceDir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& dir : dirs) {
        const QString targetDir = QDir(target).filePath(dir.fileName());
        if (!QDir().mkpath(targetDir) || !copyDirRecursive(dir.absoluteFilePath(), targetDir, bOverwrite))
            return false;
    }
    return true;
}

bool VTResourceManager::copyDir(const QString& source, const QString& target)
{
    const QFileInfo sourceInfo(source);
    if (!sourceInfo.isDir() || !QFileInfo(QFileInfo(target).absolutePath()).isDir())
        return false;
    if (!QDir().mkpath(target))
        return false;
    const QDir sourceDir(source);
    const QFileInfoList files = sourceDir.entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        if (!QFile::copy(file.absoluteFilePath(), QDir(target).filePath(file.fileName())))
            return false;
    }
    const QFileInfoList dirs =
        sourceDir.entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& dir : dirs) {
        if (!copyDir(dir.absoluteFilePath(), QDir(target).filePath(dir.fileName())))
            return false;
    }
    return true;
}
