#include "VTEventListenerList.h"

#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

VTEventListenerList::VTEventListenerList(QObject* pParent)
    : QObject(pParent)
{}

VTEventListenerList::VTEventListenerList(const VTEventListenerList& other)
    : QObject(nullptr)
{
    m_lstListeners.reserve(other.m_lstListeners.size());
    for (const auto& pListener : other.m_lstListeners)
        m_lstListeners.push_back(pListener->clone());
}

VTEventListenerList::~VTEventListenerList() = default;

int VTEventListenerList::addEventListener(VTEventListener* pListener, int nIndex)
{
    if (!pListener || getEventListenerIndex(pListener) >= 0)
        return -1;
    std::unique_ptr<VTEventListener> pOwned(pListener);
    const int nCount = getEventListenerCount();
    if (nIndex >= 0 && nIndex <= nCount) {
        m_lstListeners.insert(m_lstListeners.begin() + nIndex, std::move(pOwned));
        return nIndex;
    }
    m_lstListeners.push_back(std::move(pOwned));
    return nCount;
}

int VTEventListenerList::detachEventListener(VTEventListener* pListener)
{
    const int nIndex = getEventListenerIndex(pListener);
    if (nIndex < 0)
        return -1;
    m_lstListeners[nIndex].release();
    m_lstListeners.erase(m_lstListeners.begin() + nIndex);
    return nIndex;
}

int VTEventListenerList::getEventListenerIndex(const VTEventListener* pListener) const
{
    if (!pListener)
        return -1;
    const auto it = std::find_if(m_lstListeners.cbegin(), m_lstListeners.cend(),
                                 [pListener](const auto& pOwned) { return pOwned.get() == pListener; });
    return it == m_lstListeners.cend() ? -1 : static_cast<int>(it - m_lstListeners.cbegin());
}

VTEventListener* VTEventListenerList::setEventListner(VTEventListener* pListener, int nIndex)
{
    if (!pListener || nIndex < 0 || nIndex >= getEventListenerCount() ||
        getEventListenerIndex(pListener) >= 0)
        return nullptr;
    VTEventListener* pPrevious = m_lstListeners[nIndex].release();
    m_lstListeners[nIndex].reset(pListener);
    return pPrevious;
}

QList<VTEventListener*> VTEventListenerList::getEventListeners() const
{
    QList<VTEventListener*> lstListeners;
    lstListeners.reserve(getEventListenerCount());
    for (const auto& pListener : m_lstListeners)
        lstListeners.append(pListener.get());
    return lstListeners;
}

VTEventListener* VTEventListenerList::getEventListenerAt(int nIndex) const
{
    if (nIndex < 0 || nIndex >= getEventListenerCount())
        return nullptr;
    return m_lstListeners[nIndex].get();
}

void VTEventListenerList::serialize(QJsonArray& array) const
{
    for (const auto& pListener : m_lstListeners) {
        QJsonObject joListener;
        pListener->serialize(joListener);
        array.append(joListener);
    }
}

bool VTEventListenerList::parse(const QJsonArray& array, QStringList* pWarnings)
{
    QStringList lstProblems;
    const VTJsonReader reader(QJsonObject(), tr("events"), &lstProblems);
    if (array.size() > kMaxEventListenerCount) {
        reader.report(tr("the list holds %1 event listeners, more than %2; none is read.")
                          .arg(array.size())
                          .arg(kMaxEventListenerCount));
    } else {
        for (int i = 0; i < array.size(); ++i) {
            const QJsonValue value = array.at(i);
            if (!value.isObject()) {
                reader.report(tr("event listener %1 should be an object but is %2; it is left out.")
                                  .arg(i)
                                  .arg(VTJsonReader::describeType(value)));
                continue;
            }
            auto pListener = std::make_unique<VTEventListener>();
            pListener->parse(value.toObject(), &lstProblems, tr("event listener %1").arg(i));
            m_lstListeners.push_back(std::move(pListener));
        }
    }
    if (pWarnings)
        pWarnings->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTEventListenerList::serializeToExport(QJsonObject& json, bool bSkip) const
{
    if (bSkip)
        return;
    // Grouped by event, events ascending, listeners of one event in list order.
    QMap<int, QJsonArray> mapGroups;
    for (const auto& pListener : m_lstListeners) {
        const int nEventType = pListener->getEventType();
        if (nEventType < 1 || nEventType > kLastExportedEventType)
            continue;
        QJsonArray& jaGroup = mapGroups[nEventType];
        if (jaGroup.isEmpty())
            jaGroup.append(nEventType);
        QJsonArray jaListener;
        pListener->serializeToExport(jaListener);
        jaGroup.append(jaListener);
    }
    if (mapGroups.isEmpty())
        return;
    QJsonArray jaEvents;
    for (const QJsonArray& jaGroup : qAsConst(mapGroups))
        jaEvents.append(jaGroup);
    json.insert(QStringLiteral("e"), jaEvents);
}

void VTEventListenerList::serializeToExportTrigger(QJsonArray& array, bool bSkip) const
{
    if (bSkip || m_lstListeners.empty())
        return;
    QJsonArray jaListeners;
    for (const auto& pListener : m_lstListeners) {
        QJsonArray jaListener;
        pListener->serializeToExport(jaListener);
        jaListeners.append(jaListener);
    }
    array.append(m_lstListeners.front()->getActionTime());
    array.append(jaListeners);
}

void VTEventListenerList::prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                             const VTFunctionManager* pSourceManager) const
{
    for (const auto& pListener : m_lstListeners)
        pListener->prepareFunctionMap(mapFunctions, pSourceManager);
}

void VTEventListenerList::updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                            const VTFunctionManager* pSourceManager)
{
    for (const auto& pListener : m_lstListeners)
        pListener->updateFunctionMap(mapFunctions, pSourceManager);
}

void VTEventListenerList::updateTargetIds(const QMap<int, VTElement*>& mapElements, VTScene* pScene)
{
    Q_UNUSED(mapElements)
    Q_UNUSED(pScene)
}

bool VTEventListenerList::isSupportedEventType(VTEventListener::EventType nEventType) const
{
    Q_UNUSED(nEventType)
    return false;
}

bool VTEventListenerList::isAcceptEventAction(VTEventListener*& pListener, VTScene* pSourceScene,
                                              VTDocument* pDocument)
{
    Q_UNUSED(pListener)
    Q_UNUSED(pSourceScene)
    Q_UNUSED(pDocument)
    return false;
}

int VTEventListenerList::remapElementTargets(const QMap<int, int>& mapNewIds,
                                             const std::function<bool(int)>& fnIsInScene)
{
    int nChanged = 0;
    for (const auto& pListener : m_lstListeners) {
        if (pListener->updateTargetId(mapNewIds, fnIsInScene))
            ++nChanged;
    }
    return nChanged;
}
