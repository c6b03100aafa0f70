#include "VTDocument.h"

#include "EditSymbolEvent.h"
#include "IMessageBox.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "VTBreakpointManager.h"
#include "VTCommand.h"
#include "VTEventLoopLocker.h"
#include "VTFileLocker.h"
#include "VTFunctionManager.h"
#include "VTJsonReader.h"
#include "VTLocationManager.h"
#include "VTPackage.h"
#include "VTRecordOnlyCommands.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QUndoStack>

namespace {

const QString s_strAppNameKey = QStringLiteral("appName");
const QString s_strDocumentKey = QStringLiteral("document");
const QString s_strLocationsKey = QStringLiteral("locations");
const QString s_strDocVersionKey = QStringLiteral("docVersion");
const QString s_strAutoplayKey = QStringLiteral("autoplay");
const QString s_strAutoKeyframeModeKey = QStringLiteral("autoKeyframeMode");
const QString s_strHasCustomLoaderKey = QStringLiteral("hasCustomLoader");
const QString s_strLoaderTypeKey = QStringLiteral("loaderType");
const QString s_strLoadingIndicatorKey = QStringLiteral("defaultLoadingIndicatorProps");
// Spelled so in every project file ever written.
const QString s_strEmbedSystemFontKey = QStringLiteral("embedSytemFont");
const QString s_strInitResponsiveKey = QStringLiteral("initResponsive");

// The first format that knows the output folders, viewport values and container id.
constexpr int s_nFirstFormatWithOutputKeys = 2;
// Versions up to this one open without a question.
constexpr int s_nNewestReadableVersion = 3;

} // namespace

VTDocument::VTDocument(QObject* parent)
    : IDocument(parent)
    , m_pFileLocker(new VTFileLocker(this))
    , m_pResourceManager(new VTResourceManager(this, this))
    , m_pFunctionManager(std::make_unique<VTFunctionManager>())
{
    setResourceManager(m_pResourceManager);
    setFunctionManager(m_pFunctionManager.get());
    connect(this, &IDocument::aboutToClose, this, &VTDocument::onCleanup);
}

VTDocument::~VTDocument()
{
    // Commands own what they removed from the model; they go while the model they came from is
    // still whole, and without telling views about a document that is going away.
    const QSignalBlocker blocker(getUndoStack());
    getUndoStack()->clear();
    VTLocationManager::getInstance()->clearHistoryLocation(this);
}

bool VTDocument::addFileHistory(const QString& fileName, bool bInResourceFolder)
{
    const QString entry =
        bInResourceFolder ? getResourceFolderName() + QLatin1Char('/') + fileName : fileName;
    return m_fileHistory.add(entry);
}

bool VTDocument::removeFileHistory(const QString& fileName, bool bInResourceFolder)
{
    const QString entry =
        bInResourceFolder ? getResourceFolderName() + QLatin1Char('/') + fileName : fileName;
    return m_fileHistory.remove(entry);
}

void VTDocument::setAutoKeyframeMode(bool bOn)
{
    if (m_bAutoKeyframeMode == bOn)
        return;
    m_bAutoKeyframeMode = bOn;
    emit changeAutoKeyframeMode(bOn);
}

void VTDocument::setStatus(const QString& text)
{
    m_strStatus = text;
    emit statusChanged(text);
}

VTSymbol* VTDocument::getCurrentSymbol()
{
    return m_lstEditingSymbols.isEmpty() ? static_cast<VTSymbol*>(this) : m_lstEditingSymbols.last();
}

const VTSymbol* VTDocument::getCurrentSymbol() const
{
    return m_lstEditingSymbols.isEmpty() ? static_cast<const VTSymbol*>(this) : m_lstEditingSymbols.last();
}

void VTDocument::setCurrentSymbol(VTSymbol* pSymbol)
{
    if (!pSymbol || pSymbol == static_cast<VTSymbol*>(this)) {
        m_lstEditingSymbols.clear();
        return;
    }
    const int nIndex = m_lstEditingSymbols.indexOf(pSymbol);
    if (nIndex >= 0)
        m_lstEditingSymbols.erase(m_lstEditingSymbols.begin() + nIndex + 1, m_lstEditingSymbols.end());
    else
        m_lstEditingSymbols.append(pSymbol);
}

bool VTDocument::checkFormatBeforeSaving()
{
    if (m_nDocVersion == s_nCurrentDocVersion)
        return true;
    const auto answer = IMessageBox::instance()->question(
        IUtils::getApplicationName(),
        tr("The project will be saved in the file format that can only be opened by %1 %2 or later.\n"
           "Do you want to continue?")
            .arg(IUtils::getApplicationName(), QStringLiteral("2.5.0")),
        IMessageBox::Yes | IMessageBox::No, IMessageBox::No);
    return answer == IMessageBox::Yes;
}

QStringList VTDocument::getDocumentKeys()
{
    return QStringList{s_strDocVersionKey,      s_strAutoplayKey,      s_strAutoKeyframeModeKey,
                       s_strHasCustomLoaderKey, s_strLoaderTypeKey,    s_strLoadingIndicatorKey,
                       s_strEmbedSystemFontKey, s_strInitResponsiveKey} +
           VTOutputSettings::getKeys();
}

void VTDocument::resetToFileDefaults()
{
    // A second load starts from an empty set of resources rather than merging into the first.
    delete m_pResourceManager;
    m_pResourceManager = new VTResourceManager(this, this);
    setResourceManager(m_pResourceManager);
    m_pFunctionManager = std::make_unique<VTFunctionManager>();
    setFunctionManager(m_pFunctionManager.get());
    m_nDocVersion = -1;
    m_bAutoplay = false;
    m_bAutoKeyframeMode = false;
    m_preloaderLink.resetToFileDefaults();
    m_bEmbedSystemFont = false;
    m_outputSettings.resetToFileDefaults();
    m_bInitResponsive = false;
    m_joPreservedTop = QJsonObject();
    m_fileHistory.clear();
    m_lstEditingSymbols.clear();
}

void VTDocument::resetOutputToNewDefaults()
{
    m_outputSettings.resetToNewDefaults();
}

bool VTDocument::loadData(const QJsonObject& object)
{
    clearLoadProblems();
    const QJsonValue appName = object.value(s_strAppNameKey);
    if (!appName.isString() || appName.toString() != IUtils::getApplicationName()) {
        warn(tr("Not a valid %1 project.").arg(IUtils::getApplicationName()));
        return false;
    }
    const QJsonValue documentValue = object.value(s_strDocumentKey);
    if (!documentValue.isObject()) {
        VTJsonReader(object, QString(), getLoadProblemList())
            .report(tr("\"document\" should be an object but is %1.")
                        .arg(VTJsonReader::describeType(documentValue)));
        warn(tr("The project file format is invalid."));
        return false;
    }
    const QJsonObject document = documentValue.toObject();

    resetToFileDefaults();
    if (!readDocVersion(document))
        return false;
    readLocations(object);
    if (!VTSymbol::loadData(document))
        return false;
    dropPreservedKeys(getDocumentKeys());
    readDocumentKeys(document, m_nDocVersion < s_nFirstFormatWithOutputKeys);

    m_joPreservedTop = object;
    for (const QString& key : {s_strAppNameKey, s_strDocumentKey, s_strLocationsKey})
        m_joPreservedTop.remove(key);
    return true;
}

bool VTDocument::readDocVersion(const QJsonObject& document)
{
    const QJsonValue value = document.value(s_strDocVersionKey);
    int nVersion = -1;
    if (VTJsonReader::isInt(value)) {
        nVersion = static_cast<int>(value.toDouble());
    } else if (value.isString() && value.toString() == QLatin1String("1.0")) {
        // The first releases wrote the version as text.
        nVersion = 1;
    } else if (!value.isUndefined()) {
        VTJsonReader(document, QString(), getLoadProblemList())
            .report(tr("\"docVersion\" should be a whole number but is %1; the version is unknown.")
                        .arg(VTJsonReader::describeType(value)));
    }
    if (nVersion == -1 || nVersion > s_nNewestReadableVersion) {
        const auto answer = IMessageBox::instance()->question(
            IUtils::getApplicationName(),
            tr("The project is incompatible with current application version.\n"
               "Do you want to open anyway (some information may be lost)?"),
            IMessageBox::Ok | IMessageBox::Cancel);
        if (answer != IMessageBox::Ok)
            return false;
    }
    m_nDocVersion = nVersion;
    return true;
}

void VTDocument::readLocations(const QJsonObject& object)
{
    VTLocationManager* pLocations = VTLocationManager::getInstance();
    pLocations->clearHistoryLocation(this);
    const QJsonValue value = object.value(s_strLocationsKey);
    if (value.isUndefined())
        return;
    const VTJsonReader topReader(object, QString(), getLoadProblemList());
    if (!value.isObject()) {
        topReader.reportDropped(s_strLocationsKey, VTJsonReader::tr("an object"));
        return;
    }
    const QJsonObject locations = value.toObject();
    const VTJsonReader reader(locations, s_strLocationsKey, getLoadProblemList());
    for (int nId = VTLocationManager::s_nFirstDocumentLocation;
         nId <= VTLocationManager::s_nLastDocumentLocation; ++nId) {
        const QString key = QString::number(nId);
        const QJsonValue path = locations.value(key);
        if (path.isString())
            pLocations->setHistoryLocation(this, static_cast<VTLocationManager::DocumentLocationId>(nId),
                                           path.toString());
        else if (!path.isUndefined())
            reader.reportDropped(key, VTJsonReader::tr("a text"));
    }
    for (auto it = locations.constBegin(); it != locations.constEnd(); ++it) {
        bool bOk = false;
        const int nId = it.key().toInt(&bOk);
        if (!bOk || nId < VTLocationManager::s_nFirstDocumentLocation ||
            nId > VTLocationManager::s_nLastDocumentLocation)
            reader.report(tr("\"%1\" is no known folder; it is left out.").arg(it.key()));
    }
}

void VTDocument::readDocumentKeys(const QJsonObject& document, bool bOldFormat)
{
    const VTJsonReader reader(document, QString(), getLoadProblemList());
    m_bAutoKeyframeMode = reader.readBool(s_strAutoKeyframeModeKey, false);
    m_bAutoplay = reader.readBool(s_strAutoplayKey, false);
    m_bEmbedSystemFont = reader.readBool(s_strEmbedSystemFontKey, false);
    m_bInitResponsive = reader.readBool(s_strInitResponsiveKey, false);
    if (bOldFormat)
        resetOutputToNewDefaults();
    else
        m_outputSettings.read(reader);
    m_preloaderLink.readDocumentKeys(document, getLoadProblemList());
}

bool VTDocument::saveData(QJsonObject& object) const
{
    QJsonObject document;
    if (!VTSymbol::saveData(document))
        return false;
    document.insert(s_strDocVersionKey, s_nCurrentDocVersion);
    document.insert(s_strAutoplayKey, m_bAutoplay);
    document.insert(s_strAutoKeyframeModeKey, m_bAutoKeyframeMode);
    m_preloaderLink.writeDocumentKeys(document);
    document.insert(s_strEmbedSystemFontKey, m_bEmbedSystemFont);
    m_outputSettings.write(document);
    document.insert(s_strInitResponsiveKey, m_bInitResponsive);

    for (auto it = m_joPreservedTop.constBegin(); it != m_joPreservedTop.constEnd(); ++it)
        object.insert(it.key(), it.value());
    object.insert(s_strAppNameKey, IUtils::getApplicationName());
    object.insert(s_strDocumentKey, document);
    QJsonObject locations;
    const QMap<int, QString> history = VTLocationManager::getInstance()->getDocumentHistory(this);
    for (int nId = VTLocationManager::s_nFirstDocumentLocation;
         nId <= VTLocationManager::s_nLastDocumentLocation; ++nId)
        locations.insert(QString::number(nId), history.value(nId));
    object.insert(s_strLocationsKey, locations);
    return true;
}

void VTDocument::submitCommand(QUndoCommand* pCommand)
{
    submitCommand(pCommand, false);
}

void VTDocument::submitCommand(QUndoCommand* pCommand, bool bDirect)
{
    // Commands from the stage page wait for the text validator once it exists; until then every
    // command is ready as it comes.
    Q_UNUSED(bDirect)
    m_pCurrentCommand = pCommand;
    if (!pCommand)
        return;
    // The place the user works at is taken just before the first redo, so that undo and redo
    // both lead back to it.
    if (auto* pVTCommand = dynamic_cast<VTCommand*>(pCommand)) {
        pVTCommand->changeCurrentSymbolUuidIfNeeded();
        pVTCommand->genereateNavigationContext();
    }
    if (getUndoStack()->isClean())
        setStatus(QString());
    getUndoStack()->push(pCommand);
}

bool VTDocument::openTempDocument(int nWidth, int nHeight, int nSceneCount, bool bResponsive)
{
    if (getFileName().isEmpty()) {
        warn(tr("Could not create folder to store project files."));
        return false;
    }
    setFileName(QFileInfo(getFileName()).absoluteFilePath());
    if (!QDir().mkpath(getResourceFolderPath())) {
        warn(tr("Could not create folder to store project files."));
        return false;
    }
    if (bResponsive) {
        m_lstInitialHBreakpoints = DocumentManager::getHBreakpoints();
        m_lstInitialVBreakpoints = DocumentManager::getVBreakpoints();
        getBreakpointManager()->init(m_lstInitialHBreakpoints, m_lstInitialVBreakpoints);
        setCurrentLayoutId(getBreakpointManager()->getBreakpointBySize(nWidth, nHeight));
    } else {
        m_lstInitialHBreakpoints.clear();
        m_lstInitialVBreakpoints.clear();
        m_outputSettings.setViewportWMeta(ViewportNone);
        m_outputSettings.setViewportHMeta(ViewportNone);
    }
    setWidth(nWidth);
    setHeight(nHeight);
    m_nRequestedSceneCount = qMax(0, nSceneCount);
    getSceneManager()->addNewScenes(m_nRequestedSceneCount, nWidth, nHeight, bResponsive);
    m_bInitResponsive = bResponsive;
    setStatus(tr("Ready"));
    return true;
}

bool VTDocument::open()
{
    QString filePath = getFileName();
    const QFileInfo info(filePath);
    if (info.suffix().compare(getPackageSuffix(), Qt::CaseInsensitive) == 0) {
        QString projectPath;
        const QString location =
            VTLocationManager::getInstance()->getHistoryLocation(VTLocationManager::NewProject);
        if (!IProjectDialogs::instance()->askProjectLocation(tr("Import Project"), info.completeBaseName(),
                                                             location, &projectPath) ||
            projectPath.isEmpty())
            return false;
        if (!extractPackage(filePath, QFileInfo(projectPath).absolutePath()))
            return false;
        // From here on this is the extracted project; its resources are read from beside it.
        filePath = projectPath;
        setFileName(filePath);
    }
    if (!checkBackupBeforeOpen(filePath))
        return false;
    // A recovered backup that does not load goes back to being a backup, beside the last saved file.
    auto abandonBackup = qScopeGuard([this, &filePath] { m_backup.abandonOpenBackup(filePath); });

    QFile file(filePath);
    if (!file.exists()) {
        warn(tr("File doesn't exist.") + QLatin1Char('\n') + QDir::toNativeSeparators(filePath));
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        warn(tr("Unable to read project data."));
        return false;
    }
    const QByteArray data = file.readAll();
    file.close();
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        clearLoadProblems();
        const QString problem =
            error.error != QJsonParseError::NoError
                ? tr("JSON error at byte %1: %2").arg(error.offset).arg(error.errorString())
                : tr("The file holds no JSON object.");
        qWarning().noquote() << problem;
        addLoadProblem(problem);
        warn(tr("The project file format is invalid."));
        return false;
    }
    if (!loadData(json.object()))
        return false;
    setFileName(QFileInfo(filePath).absoluteFilePath());
    regApplicationFont();
    m_pFileLocker->lock(getFileName());
    abandonBackup.dismiss();
    return true;
}

bool VTDocument::close()
{
    pause();
    if (!confirmCloseOfBackup())
        return false;
    if (!closePreloader())
        return false;
    return IDocument::close();
}

bool VTDocument::extractPackage(const QString& packagePath, const QString& folder)
{
    return VTPackage::extract(packagePath, folder);
}

bool VTDocument::saveToPackage(const QString& packagePath)
{
    return VTPackage::save(*this, packagePath);
}

namespace {

// The timeline the user sees: the current one of the current scene of the symbol being edited.
VTTimeline* currentTimelineOf(VTSymbol* pSymbol)
{
    VTSceneManager* pScenes = pSymbol ? pSymbol->getSceneManager() : nullptr;
    VTScene* pScene = pScenes ? pScenes->getCurrentScene() : nullptr;
    return pScene ? pScene->getTimelineManager()->getCurrentTimeline() : nullptr;
}

} // namespace

bool VTDocument::pause()
{
    VTTimeline* pTimeline = currentTimelineOf(getCurrentSymbol());
    if (!pTimeline || pTimeline->state() != QAbstractAnimation::Running)
        return false;
    pTimeline->setCurrentTime(pTimeline->getCurrentTime());
    VTRecordOnlyCommands::timelinePaused(this, pTimeline);
    return true;
}

bool VTDocument::play()
{
    VTTimeline* pTimeline = currentTimelineOf(getCurrentSymbol());
    if (!pTimeline || pTimeline->state() == QAbstractAnimation::Running)
        return false;
    // The stage page plays the timeline itself; a drag still running there would fight it.
    stopAllCurrentTasks();
    pTimeline->start();
    VTRecordOnlyCommands::timelinePlayed(this, pTimeline);
    return true;
}

void VTDocument::stopAllCurrentTasks()
{
    VTRecordOnlyCommands::stopAllTasks(this);
    // Without a page to answer, the wait simply runs out.
    VTEventLoopLocker::getInstance()->wait(500);
}

void VTDocument::startEditingSymbol(VTSymbol* pSymbol)
{
    if (!pSymbol)
        return;
    VTCommand command(this, tr("Change Current Symbol"));
    command.createActionsForChangeCurrentSymbol(pSymbol);
    if (!command.isEmpty())
        command.doCmd();
}

void VTDocument::endEditingSymbol()
{
    const int nCount = m_lstEditingSymbols.size();
    if (nCount == 0)
        return;
    startEditingSymbol(nCount >= 2 ? m_lstEditingSymbols.at(nCount - 2) : this);
}

void VTDocument::customEvent(QEvent* pEvent)
{
    if (pEvent->type() != EditSymbolEvent::type()) {
        IDocument::customEvent(pEvent);
        return;
    }
    // The id comes from a view, maybe from the stage page: only a live symbol resource counts.
    VTResource* pResource =
        m_pResourceManager->findResourceById(static_cast<EditSymbolEvent*>(pEvent)->getResourceId());
    if (!pResource || pResource->isDeleted() || pResource->getType() != VTResource::Symbol)
        return;
    VTSymbol* pSymbol = m_pResourceManager->getSymbolForResource(pResource);
    if (!pSymbol)
        pSymbol = m_pResourceManager->loadSymbol(pResource);
    if (!pSymbol || pSymbol == getCurrentSymbol())
        return;
    VTSceneManager* pScenes = pSymbol->getSceneManager();
    if (!pScenes->getCurrentScene() && pScenes->getSceneCount() > 0)
        pScenes->getScenes().constFirst()->setSelected(true);
    startEditingSymbol(pSymbol);
}

bool VTDocument::serialize(QByteArray* pData)
{
    QJsonObject root;
    if (!saveData(root))
        return false;
    *pData = QJsonDocument(root).toJson(QJsonDocument::Compact);
    return true;
}

bool VTDocument::writeProjectFile(const QString& filePath, const QByteArray& data)
{
    // The new content goes to a temporary file beside the project and replaces it by a rename, so
    // a failure at any point leaves the last saved file as it was.
    QSaveFile file(filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        warn(tr("Cannot write project data."));
        return false;
    }
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        warn(tr("Error when saving document information."));
        return false;
    }
    // The held handle would keep the replaced file alive, and blocks the rename on some systems.
    const bool bWasLocked = m_pFileLocker->unlock(filePath);
    const bool bCommitted = file.commit();
    if (bCommitted || bWasLocked)
        m_pFileLocker->lock(filePath);
    if (!bCommitted) {
        warn(tr("Cannot write project data."));
        return false;
    }
    return true;
}

void VTDocument::finishSave(const QString& filePath)
{
    setFileName(filePath);
    setTempDocument(false);
    m_nDocVersion = s_nCurrentDocVersion;
    getUndoStack()->setClean();
    emit changesSaved();
}

bool VTDocument::save()
{
    pause();
    if (!checkFormatBeforeSaving())
        return false;
    QByteArray data;
    if (!serialize(&data)) {
        warn(tr("Cannot save project data."));
        return false;
    }
    const QString filePath = getFileName();
    if (!writeProjectFile(filePath, data))
        return false;
    if (!m_pResourceManager->saveAllSymbolsState()) {
        warn(tr("Cannot save project. Some symbols cannot be saved."));
        return false;
    }
    // A backup left in place at the open holds changes that were not saved now: it stays.
    const QString backupPath = getBackupFilePath();
    if (removeFileHistory(QFileInfo(backupPath).fileName(), false)) {
        m_pFileLocker->unlock(backupPath);
        QFile::remove(backupPath);
    }
    if (isOpenAsBackup()) {
        setOpenAsBackup(false);
        const QString oldPath = filePath + QStringLiteral(".old");
        m_pFileLocker->unlock(oldPath);
        QFile::remove(oldPath);
        if (getUndoStack()->isClean())
            emit titleChanged();
    }
    finishSave(filePath);
    return true;
}

bool VTDocument::save(const QString& filePath)
{
    const QFileInfo target(filePath);
    const QString suffix = target.suffix().toLower();
    if (suffix == getPackageSuffix())
        return saveToPackage(filePath);
    if (suffix != getProjectSuffix())
        return false;
    const QString currentPath = QFileInfo(getFileName()).canonicalFilePath();
    if (!currentPath.isEmpty() && target.canonicalFilePath() == currentPath)
        return save();

    const QDir targetFolder(target.absolutePath());
    if (!targetFolder.exists()) {
        warn(tr("The destination directory is invalid."));
        return false;
    }
    const QString targetPath = target.absoluteFilePath();
    const QString targetName = target.completeBaseName();
    if (target.exists()) {
        const auto answer = IMessageBox::instance()->question(
            IUtils::getApplicationName(),
            tr("The selected folder has an existing project.\nDo you want to overwrite?"),
            IMessageBox::Yes | IMessageBox::No);
        if (answer != IMessageBox::Yes)
            return false;
        if (DocumentManager::findDocumentByPath(targetPath)) {
            warn(tr("Cannot overwrite an opening project!"));
            return false;
        }
    }
    // A backup of the project being replaced must not be offered as recovery of this one. The
    // project file itself is replaced only once the new one is complete.
    QFile::remove(targetFolder.filePath(targetName + QLatin1Char('.') + getBackupSuffix()));

    pause();
    if (!checkFormatBeforeSaving())
        return false;
    QByteArray data;
    if (!serialize(&data)) {
        warn(tr("Cannot save project data."));
        return false;
    }

    const bool bWasTemp = isTempDocument();
    const int nOldVersion = m_nDocVersion;
    const QString oldFilePath = getFileName();
    const QString oldResourceFolder = getResourceFolderPath();
    const QString newResourceFolderName = targetName + QStringLiteral("_res");
    const QStringList referenced = m_pResourceManager->getAbsTempFilenames(true, false);
    for (const QString& generated : {QStringLiteral("vtplayer.js"), getHTML5EntryFileName(),
                                     getHTML5DataFileName(), getHTML5CSSFileName()})
        removeFileHistory(generated, true);
    // The backup stays with the old project until the new one is complete.
    const QString backupName = QFileInfo(getBackupFilePath()).fileName();
    const bool bOwnBackup = removeFileHistory(backupName, false);
    auto keepBackupListed = qScopeGuard([this, &backupName, bOwnBackup] {
        if (bOwnBackup)
            addFileHistory(backupName, false);
    });

    QStringList newHistory;
    QList<QPair<QString, QString>> copies;
    if (!targetFolder.mkpath(newResourceFolderName) ||
        !m_fileHistory.copyTo(getLocation(), getResourceFolderName(), targetFolder.path(),
                              newResourceFolderName, &newHistory, &copies)) {
        warn(tr("Error when saving resource file."));
        return false;
    }
    if (!savePreloaderTo(oldResourceFolder, targetFolder.filePath(newResourceFolderName))) {
        warn(tr("Cannot save custom preloader."));
        return false;
    }
    if (!writeProjectFile(targetPath, data)) {
        m_pFileLocker->unlock(targetPath);
        return false;
    }

    // The new project is complete on disk; from here on the document belongs to it.
    keepBackupListed.dismiss();
    adoptCopiedFiles(copies, referenced, bWasTemp, nOldVersion);
    m_fileHistory.setEntries(newHistory);
    m_pFileLocker->unlock(oldFilePath);
    // The old project's own backup held the changes that are saved now.
    if (bOwnBackup)
        QFile::remove(getBackupFilePath());
    // The recovered backup is saved in the new project; the old one returns to its last save.
    if (isOpenAsBackup())
        m_backup.restoreLastSaved(oldFilePath, false);
    if (bWasTemp) {
        QFile::remove(oldFilePath);
        IUtils::removeDir(oldResourceFolder);
    }
    setOpenAsBackup(false);
    // Symbols are written into the new folder only: the old project keeps the symbol files it
    // was last saved with, not the edits that went to the new one.
    setFileName(targetPath);
    if (!m_pResourceManager->saveAllSymbolsState()) {
        emit titleChanged();
        emit locationChanged();
        warn(tr("Cannot save project. Some symbols cannot be saved."));
        return false;
    }
    finishSave(targetPath);
    emit titleChanged();
    emit locationChanged();
    return true;
}

void VTDocument::adoptCopiedFiles(const QList<QPair<QString, QString>>& copies, const QStringList& referenced,
                                  bool bWasTemp, int nOldVersion)
{
    for (const auto& copy : copies) {
        m_pFileLocker->lock(copy.second);
        m_pFileLocker->unlock(copy.first);
        const bool bReferenced = referenced.contains(copy.first);
        const bool bMigrated =
            nOldVersion < s_nFirstFormatWithOutputKeys && m_pResourceManager->isTempResource(copy.first);
        if (bWasTemp || !bReferenced || bMigrated)
            QFile::remove(copy.first);
    }
}

bool VTDocument::saveAs()
{
    pause();
    QString filePath;
    const QString location =
        VTLocationManager::getInstance()->getHistoryLocation(VTLocationManager::NewProject);
    if (!IProjectDialogs::instance()->askProjectLocation(tr("Save As"), getName(), location, &filePath) ||
        filePath.isEmpty())
        return false;
    const QString oldResourceFolder = getResourceFolderPath();
    if (!save(filePath))
        return false;
    onResourceFolderMoved(oldResourceFolder, getResourceFolderPath());
    VTLocationManager::getInstance()->clearHistoryLocation(this);
    return true;
}

bool VTDocument::cleanTempDir()
{
    if (getFileName().isEmpty())
        return false;
    m_pFileLocker->unlockAll();
    bool bRemoved = !QFile::exists(getFileName()) || QFile::remove(getFileName());
    bRemoved = IUtils::removeDir(getResourceFolderPath()) && bRemoved;
    return bRemoved;
}

void VTDocument::onCleanup()
{
    if (getFileName().isEmpty())
        return;
    removeApplicationFonts();
    const bool bTemp = isTempDocument();
    const QStringList referenced = m_pResourceManager->getAbsTempFilenames(getUndoStack()->isClean(), false);
    const QStringList files = m_fileHistory.getAbsolutePaths(getLocation());
    for (const QString& filePath : files) {
        m_pFileLocker->unlock(filePath);
        const bool bReferenced = referenced.contains(filePath);
        const bool bMigrated = m_nDocVersion <= 1 && m_pResourceManager->isTempResource(filePath);
        if ((bTemp || !bReferenced || bMigrated) && QFileInfo(filePath).isFile())
            QFile::remove(filePath);
    }
    m_pResourceManager->cleanOldResources();
    m_pFileLocker->unlock(getFileName());
    if (bTemp)
        QFile::remove(getFileName());
    m_pFileLocker->unlockAll();
    getUndoStack()->setClean();
}

bool VTDocument::savePreloaderTo(const QString& oldResourceFolder, const QString& newResourceFolder)
{
    // The preloader is loaded from the old folder, which is still this document's.
    Q_UNUSED(oldResourceFolder)
    return m_preloaderLink.savePreloaderTo(newResourceFolder, m_outputSettings.getPreloaderResFolder());
}

qint64 VTDocument::getDataSize() const
{
    qint64 nSize = 0;
    for (const VTResource* pResource : m_pResourceManager->getIdResourceMap()) {
        if (!pResource->isDeleted())
            nSize += pResource->getDataSize();
    }
    return nSize;
}

void VTDocument::regApplicationFont()
{
    m_applicationFonts.registerAll(m_pResourceManager, [this](const QString& text) { setStatus(text); });
}

void VTDocument::removeApplicationFonts()
{
    m_applicationFonts.removeAll();
}

void VTDocument::warn(const QString& text) const
{
    IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
}
