#include "VTPreloaderLink.h"

#include "VTBackground.h"
#include "VTDocument.h"
#include "VTJsonReader.h"
#include "VTPreloader.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString s_strHasCustomLoaderKey = QStringLiteral("hasCustomLoader");
const QString s_strLoaderTypeKey = QStringLiteral("loaderType");
const QString s_strLoadingIndicatorKey = QStringLiteral("defaultLoadingIndicatorProps");

} // namespace

VTPreloaderLink::VTPreloaderLink(VTDocument* pOwner)
    : m_pOwner(pOwner)
{}

VTPreloaderLink::~VTPreloaderLink()
{
    // The preloader may outlive this link for a moment as a child of the owner; it must not call
    // back into an owner that is half destroyed.
    disconnectPreloader();
}

void VTPreloaderLink::disconnectPreloader()
{
    QObject::disconnect(m_closeConnection);
    QObject::disconnect(m_savedConnection);
    m_closeConnection = QMetaObject::Connection();
    m_savedConnection = QMetaObject::Connection();
}

void VTPreloaderLink::setPreloaderDoc(VTPreloader* pPreloader, const QString& preloaderResFolderHTML5Output)
{
    disconnectPreloader();
    m_pPreloader = pPreloader;
    if (!pPreloader)
        return;
    if (!pPreloader->parent())
        pPreloader->setParent(m_pOwner);
    pPreloader->setPreloaderResFolderHTML5Output(preloaderResFolderHTML5Output);
    m_closeConnection =
        QObject::connect(pPreloader, &IDocument::aboutToClose, m_pOwner, &VTDocument::onPreloaderClose);
    m_savedConnection = QObject::connect(pPreloader, &VTDocument::changesSaved, m_pOwner,
                                         &VTDocument::onPreloaderSavedChanges);
}

bool VTPreloaderLink::initPreloaderDocument(const QString& preloaderResFolderHTML5Output)
{
    const QString folder = QDir(m_pOwner->getResourceFolderPath()).filePath(getPreloaderFolderName());
    const QString filePath = QDir(folder).filePath(getPreloaderFileName());
    if (!m_pPreloader && m_bHasCustomLoader && QFileInfo(filePath).isFile()) {
        auto* pSaved = new VTPreloader(m_pOwner);
        pSaved->setFileName(filePath);
        if (pSaved->open())
            setPreloaderDoc(pSaved, preloaderResFolderHTML5Output);
        else
            delete pSaved;
    }
    if (m_pPreloader)
        return true;

    // Whatever was on disk is unusable; the empty preloader replaces it once it is saved.
    m_bHasCustomLoader = false;
    if (!QDir().mkpath(folder))
        return false;
    auto* pNew = new VTPreloader(m_pOwner);
    pNew->setFileName(filePath);
    if (!pNew->openTempDocument(m_pOwner->getWidth(), m_pOwner->getHeight(), 1, false)) {
        delete pNew;
        return false;
    }
    // No background fill on the preloader's stage, so that the page shows through it.
    if (VTScene* pScene = pNew->getSceneManager()->getCurrentScene()) {
        if (VTBackground* pBackground = pScene->getBackground())
            pBackground->setFillStyle(VTBackground::NoFill);
    }
    setPreloaderDoc(pNew, preloaderResFolderHTML5Output);
    return true;
}

QString VTPreloaderLink::resolvePreloaderResFolderHTML5Output(const QString& ownValue) const
{
    return m_pPreloader ? m_pPreloader->getPreloaderResFolderHTML5Output() : ownValue;
}

void VTPreloaderLink::propagatePreloaderResFolderHTML5Output(const QString& name)
{
    if (m_pPreloader)
        m_pPreloader->setPreloaderResFolderHTML5Output(name);
}

void VTPreloaderLink::onPreloaderClose()
{
    VTPreloader* pClosed = m_pPreloader;
    disconnectPreloader();
    m_pPreloader = nullptr;
    // An editor of the host that held it deletes it the same way; deleting twice later is safe.
    if (pClosed)
        pClosed->deleteLater();
}

void VTPreloaderLink::onPreloaderSavedChanges()
{
    m_bHasCustomLoader = true;
    m_pOwner->save();
}

bool VTPreloaderLink::closePreloader()
{
    VTPreloader* pPreloader = m_pPreloader;
    if (!pPreloader)
        return true;
    if (!pPreloader->close())
        return false;
    pPreloader->requestClosing(false);
    return true;
}

bool VTPreloaderLink::savePreloaderTo(const QString& newResourceFolder,
                                      const QString& preloaderResFolderHTML5Output)
{
    if (m_bHasCustomLoader && !m_pPreloader)
        initPreloaderDocument(preloaderResFolderHTML5Output);
    if (!m_pPreloader)
        return true;
    const QString folder = QDir(newResourceFolder).filePath(getPreloaderFolderName());
    if (!QDir().mkpath(folder))
        return false;
    const QString target = QDir(folder).filePath(getPreloaderFileName());
    // The owner's user has agreed to replace the project there, and its preloader goes with it;
    // asking again for a file the user never sees would only confuse.
    if (QFileInfo(target).isFile() &&
        QFileInfo(target).canonicalFilePath() != QFileInfo(m_pPreloader->getFileName()).canonicalFilePath())
        QFile::remove(target);

    m_pPreloader->setTempDocument(m_pOwner->isTempDocument());
    // The owner is being saved already; the preloader's save must not start another one.
    QObject::disconnect(m_savedConnection);
    const bool bSaved = m_pPreloader->save(target);
    m_savedConnection = QObject::connect(m_pPreloader, &VTDocument::changesSaved, m_pOwner,
                                         &VTDocument::onPreloaderSavedChanges);
    m_pPreloader->setTempDocument(false);
    return bSaved;
}

void VTPreloaderLink::resetToFileDefaults()
{
    m_bHasCustomLoader = false;
    m_nLoaderType = VT::DefaultPreloader;
    m_defaultProps.parse(QJsonObject());
}

void VTPreloaderLink::readDocumentKeys(const QJsonObject& document, QStringList* pProblems)
{
    const VTJsonReader reader(document, QString(), pProblems);
    m_bHasCustomLoader = reader.readBool(s_strHasCustomLoaderKey, false);
    m_nLoaderType = static_cast<VT::PreloaderType>(reader.readInt(s_strLoaderTypeKey, VT::DefaultPreloader));
    m_defaultProps.parse(reader.readObject(s_strLoadingIndicatorKey), s_strLoadingIndicatorKey, pProblems);
}

void VTPreloaderLink::writeDocumentKeys(QJsonObject& document) const
{
    document.insert(s_strHasCustomLoaderKey, m_bHasCustomLoader);
    document.insert(s_strLoaderTypeKey, m_nLoaderType);
    QJsonObject props;
    m_defaultProps.serialize(props);
    document.insert(s_strLoadingIndicatorKey, props);
}
