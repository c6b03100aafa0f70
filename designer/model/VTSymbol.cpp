#include "VTSymbol.h"

#include "IMessageBox.h"
#include "IUtils.h"
#include "VTBreakpointManager.h"
#include "VTDocument.h"
#include "VTEventListenerList.h"
#include "VTFunctionManager.h"
#include "VTJsonReader.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbolElement.h"

#include <QDebug>
#include <QIODevice>
#include <QJsonDocument>
#include <QSet>

#include <functional>
#include <limits>

namespace {

const QString s_strAuthorKey = QStringLiteral("author");
const QString s_strCreatedKey = QStringLiteral("created");
const QString s_strModifiedKey = QStringLiteral("modified");
const QString s_strModifiedByKey = QStringLiteral("modifiedBy");
const QString s_strWidthKey = QStringLiteral("width");
const QString s_strHeightKey = QStringLiteral("height");
const QString s_strAlignKey = QStringLiteral("align");
const QString s_strTitleKey = QStringLiteral("title");
const QString s_strDescriptionKey = QStringLiteral("description");
const QString s_strKeywordsKey = QStringLiteral("keywords");
const QString s_strAutofitKey = QStringLiteral("autofit");
const QString s_strScenesKey = QStringLiteral("scenes");
const QString s_strEventsKey = QStringLiteral("events");
const QString s_strBreakpointsKey = QStringLiteral("layoutBreakpoints");
const QString s_strResourcesKey = QStringLiteral("resources");
const QString s_strScriptsKey = QStringLiteral("scripts");

void collectPlacedSymbols(const VTElement* pElement, QList<VTResource*>& lstResources)
{
    if (const auto* pInstance = qobject_cast<const VTSymbolElement*>(pElement)) {
        VTResource* pResource = pInstance->getSymbolResource();
        if (pResource && !lstResources.contains(pResource))
            lstResources.append(pResource);
    }
    for (const VTElement* pChild : pElement->getChildren())
        collectPlacedSymbols(pChild, lstResources);
}

int countBelow(const VTElement* pElement)
{
    int nCount = 0;
    for (const VTElement* pChild : pElement->getChildren())
        nCount += 1 + countBelow(pChild);
    return nCount;
}

} // namespace

VTSymbol::VTSymbol()
    : m_dtCreated(QDateTime::currentDateTimeUtc())
    , m_dtModified(m_dtCreated)
    , m_pBreakpointManager(std::make_unique<VTBreakpointManager>())
    , m_pEvents(std::make_unique<VTEventListenerList>())
    , m_pSceneManager(std::make_unique<VTSceneManager>(this))
{}

VTSymbol::~VTSymbol() = default;

bool VTSymbol::loadData(const QJsonObject& object)
{
    const VTJsonReader reader(object, QString(), &m_lstLoadProblems);
    if (m_pFunctionManager)
        m_pFunctionManager->parse(reader.readObject(s_strScriptsKey), &m_lstLoadProblems);
    if (m_pResourceManager) {
        // The project has read its format version before its content.
        const VTDocument* pDocument = m_pResourceManager->getDocument();
        const int nVersion = pDocument ? pDocument->getDocVersion() : -1;
        bool bMissingFiles = false;
        if (!m_pResourceManager->parse(reader.readArray(s_strResourcesKey), nVersion, &m_lstLoadProblems,
                                       &bMissingFiles)) {
            const auto answer = IMessageBox::instance()->question(
                IUtils::getApplicationName(),
                tr("Some resource files cannot be loaded.\nDo you want to continue?"),
                IMessageBox::Yes | IMessageBox::No);
            if (answer != IMessageBox::Yes)
                return false;
        }
        if (!m_pResourceManager->loadAllSymbols()) {
            IMessageBox::instance()->warning(
                IUtils::getApplicationName(),
                tr("Cannot open project.\nError while loading symbol resources."), IMessageBox::Ok);
            return false;
        }
        // Everything that walks into placed symbols (layouts, export, duration) would never end.
        const QStringList lstChain = findSelfContainingSymbol(*m_pResourceManager);
        if (!lstChain.isEmpty()) {
            addLoadProblem(tr("Symbol \"%1\" contains an instance of itself (%2); the project is not opened.")
                               .arg(lstChain.first(), lstChain.join(QStringLiteral(" > "))));
            IMessageBox::instance()->warning(
                IUtils::getApplicationName(),
                tr("Cannot open project.\nSymbol \"%1\" contains an instance of itself.")
                    .arg(lstChain.first()),
                IMessageBox::Ok);
            return false;
        }
    }
    return loadDataWithoutResource(object);
}

bool VTSymbol::saveData(QJsonObject& object) const
{
    QJsonArray resources;
    if (m_pResourceManager)
        m_pResourceManager->serialize(resources);
    object.insert(s_strResourcesKey, resources);
    QJsonObject scripts;
    if (m_pFunctionManager)
        m_pFunctionManager->serialize(scripts);
    object.insert(s_strScriptsKey, scripts);
    saveDataWithoutResource(object);
    return true;
}

bool VTSymbol::saveTempData(QIODevice* pDevice) const
{
    QJsonObject object;
    saveDataWithoutResource(object);
    const QByteArray data = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (!pDevice || pDevice->write(data) != data.size()) {
        qWarning() << "Could not save symbol data";
        return false;
    }
    return true;
}

bool VTSymbol::loadTempData(QIODevice* pDevice)
{
    if (!pDevice)
        return false;
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(pDevice->readAll(), &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        qWarning() << "Error while reading symbol data. The data structure is invalid.";
        return false;
    }
    return loadDataWithoutResource(json.object());
}

void VTSymbol::serializeToExport(QJsonObject& object, bool bStage) const
{
    QJsonArray scenes;
    for (const VTScene* pScene : m_pSceneManager->getScenes()) {
        QJsonObject scene;
        pScene->serializeToExport(scene, bStage, false, !bStage);
        scenes.append(scene);
    }
    object.insert(s_strScenesKey, scenes);
    object.insert(QStringLiteral("dur"), m_pSceneManager->getTotalTimelineDuration());
    object.insert(s_strAlignKey, m_nAlign);
    object.insert(QStringLiteral("af"), m_bAutofit);
    QJsonObject breakpoints;
    m_pBreakpointManager->serializeToExport(breakpoints, false);
    if (!breakpoints.isEmpty())
        object.insert(QStringLiteral("b"), breakpoints);
    m_pEvents->serializeToExport(object, bStage);
}

void VTSymbol::readDate(const QJsonObject& object, const QString& key, QDateTime& target)
{
    const VTJsonReader reader(object, QString(), &m_lstLoadProblems);
    const QString text = reader.readString(key);
    target = QDateTime::fromString(text, Qt::ISODate);
    if (!text.isEmpty() && !target.isValid())
        reader.report(VTJsonReader::tr("\"%1\" is no date (\"%2\"); it is left empty.").arg(key, text));
}

bool VTSymbol::loadDataWithoutResource(const QJsonObject& object)
{
    const VTJsonReader reader(object, QString(), &m_lstLoadProblems);
    m_strAuthor = reader.readString(s_strAuthorKey);
    readDate(object, s_strCreatedKey, m_dtCreated);
    readDate(object, s_strModifiedKey, m_dtModified);
    m_strModifiedBy = reader.readString(s_strModifiedByKey);
    m_nWidth = reader.readInt(s_strWidthKey, 0);
    m_nHeight = reader.readInt(s_strHeightKey, 0);
    if (m_nWidth < 0) {
        reader.report(VTJsonReader::tr("\"width\" is negative; 0 is used instead."));
        m_nWidth = 0;
    }
    if (m_nHeight < 0) {
        reader.report(VTJsonReader::tr("\"height\" is negative; 0 is used instead."));
        m_nHeight = 0;
    }
    m_nAlign = reader.readInt(s_strAlignKey, 0);
    m_strTitle = reader.readString(s_strTitleKey);
    m_strDescription = reader.readString(s_strDescriptionKey);
    m_strKeywords = reader.readString(s_strKeywordsKey);
    m_bAutofit = reader.readBool(s_strAutofitKey, false);

    if (object.contains(s_strEventsKey)) {
        m_pEvents = std::make_unique<VTEventListenerList>();
        QStringList lstEventProblems;
        m_pEvents->parse(reader.readArray(s_strEventsKey), &lstEventProblems);
        for (const QString& line : qAsConst(lstEventProblems))
            reader.report(tr("events: %1").arg(line));
    }

    m_pSceneManager->clear();
    const QJsonArray scenes = reader.readArray(s_strScenesKey);
    for (int i = 0; i < scenes.size(); ++i) {
        const QJsonValue value = scenes.at(i);
        bool bRead = false;
        if (value.isObject()) {
            auto* pScene = new VTScene();
            pScene->initDefault();
            m_pSceneManager->addScene(pScene);
            bRead = pScene->parse(value.toObject(), m_pResourceManager, &m_lstLoadProblems);
        } else {
            reader.report(
                tr("scene %1 should be an object but is %2.").arg(i).arg(VTJsonReader::describeType(value)));
        }
        if (!bRead) {
            reader.report(tr("scene %1 could not be read; the load stops.").arg(i));
            IMessageBox::instance()->warning(IUtils::getApplicationName(),
                                             tr("Cannot open project.\nError while loading scene data."),
                                             IMessageBox::Ok);
            return false;
        }
    }
    m_pSceneManager->updateNextSceneId();
    if (!m_pSceneManager->getCurrentScene() && m_pSceneManager->getSceneCount() > 0)
        m_pSceneManager->getScenes().first()->setSelected(true);

    m_pBreakpointManager->parse(reader.readObject(s_strBreakpointsKey), &m_lstLoadProblems);
    updateCurrentLayoutId();

    m_joPreserved = object;
    const QStringList lstKnown = getSymbolKeys();
    for (const QString& key : lstKnown)
        m_joPreserved.remove(key);
    m_joPreserved.remove(s_strResourcesKey);
    m_joPreserved.remove(s_strScriptsKey);
    return true;
}

void VTSymbol::saveDataWithoutResource(QJsonObject& object) const
{
    for (auto it = m_joPreserved.constBegin(); it != m_joPreserved.constEnd(); ++it)
        object.insert(it.key(), it.value());
    object.insert(s_strAuthorKey, m_strAuthor);
    object.insert(s_strCreatedKey, m_dtCreated.toString(Qt::ISODate));
    object.insert(s_strModifiedKey, m_dtModified.toString(Qt::ISODate));
    object.insert(s_strModifiedByKey, m_strModifiedBy);
    object.insert(s_strWidthKey, m_nWidth);
    object.insert(s_strHeightKey, m_nHeight);
    object.insert(s_strAlignKey, m_nAlign);
    object.insert(s_strTitleKey, m_strTitle);
    object.insert(s_strDescriptionKey, m_strDescription);
    object.insert(s_strKeywordsKey, m_strKeywords);
    object.insert(s_strAutofitKey, m_bAutofit);
    QJsonArray scenes;
    for (const VTScene* pScene : m_pSceneManager->getScenes()) {
        QJsonObject scene;
        pScene->serialize(scene);
        scenes.append(scene);
    }
    object.insert(s_strScenesKey, scenes);
    QJsonArray events;
    m_pEvents->serialize(events);
    object.insert(s_strEventsKey, events);
    QJsonObject breakpoints;
    m_pBreakpointManager->serialize(breakpoints);
    object.insert(s_strBreakpointsKey, breakpoints);
}

VTSymbol* VTSymbol::clone() const
{
    auto pCopy = std::make_unique<VTSymbol>();
    pCopy->m_strAuthor = m_strAuthor;
    pCopy->m_dtCreated = m_dtCreated;
    pCopy->m_dtModified = m_dtModified;
    pCopy->m_strModifiedBy = m_strModifiedBy;
    pCopy->m_nWidth = m_nWidth;
    pCopy->m_nHeight = m_nHeight;
    pCopy->m_nAlign = m_nAlign;
    pCopy->m_strTitle = m_strTitle;
    pCopy->m_strDescription = m_strDescription;
    pCopy->m_strKeywords = m_strKeywords;
    pCopy->m_bAutofit = m_bAutofit;
    // Before the scenes, which take the copy's layout as they are added.
    pCopy->m_pBreakpointManager = m_pBreakpointManager->clone();
    pCopy->m_joPreserved = m_joPreserved;
    pCopy->m_pEvents = std::make_unique<VTEventListenerList>(*m_pEvents);
    pCopy->m_pResourceManager = m_pResourceManager;
    pCopy->m_pFunctionManager = m_pFunctionManager;
    for (const VTScene* pScene : m_pSceneManager->getScenes()) {
        auto* pSceneCopy = static_cast<VTScene*>(pScene->clone());
        pCopy->m_pSceneManager->addScene(pSceneCopy);
        // An element copy starts unselected; a symbol copy must still have its current scene.
        pSceneCopy->setSelected(pScene->isSelected());
    }
    return pCopy.release();
}

void VTSymbol::prepareResourceMap(QMap<VTResource*, VTResource*>& map) const
{
    for (const VTScene* pScene : m_pSceneManager->getScenes())
        pScene->prepareResourceMap(map);
}

void VTSymbol::updateResourceMap(const QMap<VTResource*, VTResource*>& map)
{
    for (VTScene* pScene : m_pSceneManager->getScenes())
        pScene->updateResourceMap(map);
}

void VTSymbol::attachResources()
{
    for (VTScene* pScene : m_pSceneManager->getScenes())
        pScene->attachResources();
}

void VTSymbol::detachResources()
{
    for (VTScene* pScene : m_pSceneManager->getScenes())
        pScene->detachResources();
}

bool VTSymbol::isResponsiveMode() const
{
    return m_pBreakpointManager->isResponsiveMode();
}

void VTSymbol::setResponsiveMode(bool bResponsive)
{
    m_pBreakpointManager->setResponsiveMode(bResponsive);
    updateCurrentLayoutId();
}

bool VTSymbol::hasResponsiveLayout() const
{
    return !m_pBreakpointManager->isEmpty();
}

VTLayoutKey VTSymbol::getCurrentLayoutId(bool bForShow) const
{
    return m_pBreakpointManager->getCurrentId(bForShow);
}

void VTSymbol::setCurrentLayoutId(const VTLayoutKey& key)
{
    if (key.isCurrent())
        return;
    m_pBreakpointManager->setCurrentId(key);
    updateCurrentLayoutId();
}

void VTSymbol::updateCurrentLayoutId()
{
    const VTLayoutKey key = m_pBreakpointManager->getCurrentId(true);
    for (VTScene* pScene : m_pSceneManager->getScenes())
        pScene->setCurrentLayoutID(key);
}

QSize VTSymbol::getBestSize(const VTLayoutKey& key) const
{
    const VTLayoutKey layout = key.isCurrent() ? getCurrentLayoutId(true) : key;
    const VTBreakpointManager& manager = *m_pBreakpointManager;
    if (!layout.isBase()) {
        return QSize(manager.getBestSize(VTBreakpointManager::Horizontal, layout.getHorizontalId(), m_nWidth),
                     manager.getBestSize(VTBreakpointManager::Vertical, layout.getVerticalId(), m_nHeight));
    }
    // The base layout is what a page wider and taller than every breakpoint shows.
    const auto roomAbove = [](const VTBreakpointManager::EntryList& lstBreakpoints, int nSize) {
        if (lstBreakpoints.isEmpty())
            return nSize;
        int nLargest = 0;
        for (const VTBreakpointManager::Entry& breakpoint : lstBreakpoints)
            nLargest = qMax(nLargest, breakpoint.second);
        return nLargest > std::numeric_limits<int>::max() - 100 ? nLargest : qMax(nLargest + 100, nSize);
    };
    return QSize(roomAbove(manager.getHBreakpoints(), m_nWidth),
                 roomAbove(manager.getVBreakpoints(), m_nHeight));
}

int VTSymbol::getSceneCount() const
{
    return m_pSceneManager->getSceneCount();
}

int VTSymbol::getElementCount() const
{
    int nCount = 0;
    for (const VTScene* pScene : m_pSceneManager->getScenes())
        nCount += countBelow(pScene);
    return nCount;
}

QList<VTResource*> VTSymbol::getPlacedSymbolResources() const
{
    QList<VTResource*> lstResources;
    for (const VTScene* pScene : m_pSceneManager->getScenes())
        collectPlacedSymbols(pScene, lstResources);
    return lstResources;
}

QStringList VTSymbol::findSelfContainingSymbol(const VTResourceManager& manager)
{
    // Depth-first over the placement graph; a resource met again while still on the path closes
    // a loop. Finished resources are not walked twice, so the walk stays linear.
    QSet<VTResource*> setDone;
    QList<VTResource*> lstPath;
    std::function<bool(VTResource*)> fnVisit = [&](VTResource* pResource) {
        if (setDone.contains(pResource))
            return false;
        const int nOnPath = lstPath.indexOf(pResource);
        if (nOnPath >= 0) {
            lstPath = lstPath.mid(nOnPath);
            lstPath.append(pResource);
            return true;
        }
        lstPath.append(pResource);
        if (const VTSymbol* pSymbol = manager.getSymbolForResource(pResource)) {
            const QList<VTResource*> lstPlaced = pSymbol->getPlacedSymbolResources();
            for (VTResource* pPlaced : lstPlaced) {
                if (fnVisit(pPlaced))
                    return true;
            }
        }
        lstPath.removeLast();
        setDone.insert(pResource);
        return false;
    };
    // In id order, so that the same project always names the same chain.
    const QMap<int, VTResource*>& mapResources = manager.getIdResourceMap();
    for (VTResource* pResource : mapResources) {
        if (!manager.getSymbolForResource(pResource) || !fnVisit(pResource))
            continue;
        QStringList lstNames;
        for (const VTResource* pOnPath : qAsConst(lstPath))
            lstNames.append(pOnPath->getName());
        return lstNames;
    }
    return {};
}

QStringList VTSymbol::getSymbolKeys()
{
    return {s_strAuthorKey,  s_strCreatedKey, s_strModifiedKey, s_strModifiedByKey,  s_strWidthKey,
            s_strHeightKey,  s_strAlignKey,   s_strTitleKey,    s_strDescriptionKey, s_strKeywordsKey,
            s_strAutofitKey, s_strScenesKey,  s_strEventsKey,   s_strBreakpointsKey};
}

void VTSymbol::dropPreservedKeys(const QStringList& keys)
{
    for (const QString& key : keys)
        m_joPreserved.remove(key);
}
