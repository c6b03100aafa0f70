#include "VTTimelineManager.h"

#include "VTAnimation.h"
#include "VTScene.h"
#include "VTTimeline.h"

#include <QJsonArray>
#include <QJsonObject>

VTTimelineManager::VTTimelineManager(VTScene* pScene)
    : m_pScene(pScene)
{
    VTTimeline* pTimeline = createDefaultTimeline();
    addTimeline(pTimeline);
    m_pCurrentTimeline = pTimeline;
}

VTTimelineManager::~VTTimelineManager()
{
    deleteAll();
}

void VTTimelineManager::deleteAll()
{
    const QList<VTTimeline*> lstTimelines = m_lstTimelines;
    m_lstTimelines.clear();
    m_pCurrentTimeline = nullptr;
    qDeleteAll(lstTimelines);
}

VTTimeline* VTTimelineManager::createDefaultTimeline() const
{
    auto* pTimeline = new VTTimeline(m_pScene);
    pTimeline->setName(tr("Timeline"));
    return pTimeline;
}

void VTTimelineManager::changeMainTimeline(VTTimeline* pTimeline)
{
    const int nIndex = m_lstTimelines.indexOf(pTimeline);
    if (nIndex > 0)
        m_lstTimelines.swapItemsAt(0, nIndex);
}

void VTTimelineManager::setCurrentTimeline(VTTimeline* pTimeline)
{
    VTTimeline* pOld = m_pCurrentTimeline;
    m_pCurrentTimeline = pTimeline;
    if (!pTimeline)
        return;
    pTimeline->setCurrentTime(pTimeline->getCurrentTime());
    // A symbol's own timeline may be nested in a playing animation group; the new one takes the
    // old one's place there.
    if (pOld && pOld != pTimeline) {
        if (auto* pGroup = qobject_cast<VTAnimation*>(pOld->parent())) {
            const int nIndex = pGroup->indexOfAnimation(pOld);
            pGroup->takeAnimation(nIndex);
            pGroup->insertAnimation(nIndex, pTimeline);
        }
    }
}

int VTTimelineManager::addTimeline(VTTimeline* pTimeline, int nIndex)
{
    if (!pTimeline || m_lstTimelines.contains(pTimeline))
        return -1;
    if (pTimeline->getId() < 1)
        pTimeline->setId(m_nNextId++);
    else if (pTimeline->getId() >= m_nNextId)
        m_nNextId = pTimeline->getId() + 1;
    pTimeline->setScene(m_pScene);
    if (m_pScene)
        pTimeline->setLayoutID(m_pScene->getCurrentLayoutID());
    if (nIndex < 0 || nIndex > m_lstTimelines.size())
        nIndex = m_lstTimelines.size();
    m_lstTimelines.insert(nIndex, pTimeline);
    return nIndex;
}

void VTTimelineManager::removeTimeline(VTTimeline* pTimeline)
{
    if (!m_lstTimelines.removeOne(pTimeline))
        return;
    if (m_pCurrentTimeline == pTimeline) {
        m_pCurrentTimeline = m_lstTimelines.value(0, nullptr);
        if (m_pCurrentTimeline)
            m_pCurrentTimeline->setCurrentTime(m_pCurrentTimeline->getCurrentTime());
    }
    delete pTimeline;
}

int VTTimelineManager::detachTimeline(VTTimeline* pTimeline)
{
    const int nIndex = m_lstTimelines.indexOf(pTimeline);
    if (nIndex >= 0)
        m_lstTimelines.removeAt(nIndex);
    return nIndex;
}

VTTimeline* VTTimelineManager::findTimelineById(int nId) const
{
    for (VTTimeline* pTimeline : m_lstTimelines) {
        if (pTimeline->getId() == nId)
            return pTimeline;
    }
    return nullptr;
}

VTTimeline* VTTimelineManager::findTimelineByName(const QString& name) const
{
    for (VTTimeline* pTimeline : m_lstTimelines) {
        if (pTimeline->getName() == name)
            return pTimeline;
    }
    return nullptr;
}

void VTTimelineManager::serialize(QJsonObject& json) const
{
    QJsonArray timelines;
    for (const VTTimeline* pTimeline : m_lstTimelines) {
        QJsonObject timeline;
        pTimeline->serialize(timeline);
        timelines.append(timeline);
    }
    json.insert(QStringLiteral("timelines"), timelines);
    json.insert(QStringLiteral("current_timeline"), m_pCurrentTimeline ? m_pCurrentTimeline->getId() : -1);
}

bool VTTimelineManager::parse(const QJsonObject& json, QStringList* pProblems)
{
    bool bClean = true;
    deleteAll();
    m_nNextId = 1;
    const int nCurrentId = json.value(QStringLiteral("current_timeline")).toInt(-1);
    const QJsonArray timelines = json.value(QStringLiteral("timelines")).toArray();
    for (int i = 0; i < timelines.size() && i < kMaxTimelineCount; ++i) {
        auto* pTimeline = new VTTimeline(m_pScene);
        if (!pTimeline->parse(timelines.at(i).toObject(), pProblems))
            bClean = false;
        // Two timelines of one id would make every reference to them ambiguous.
        if (findTimelineById(pTimeline->getId()))
            pTimeline->setId(-1);
        addTimeline(pTimeline);
    }
    if (timelines.size() > kMaxTimelineCount) {
        bClean = false;
        if (pProblems)
            pProblems->append(
                tr("The scene has more than %1 timelines; the rest were left out.").arg(kMaxTimelineCount));
    }
    if (m_lstTimelines.isEmpty()) {
        // Every scene plays a main timeline: a project without one gets an empty one.
        addTimeline(createDefaultTimeline());
        if (json.contains(QStringLiteral("timelines"))) {
            bClean = false;
            if (pProblems)
                pProblems->append(tr("A scene had no timeline; it got an empty one."));
        }
    }
    m_pCurrentTimeline = findTimelineById(nCurrentId);
    if (!m_pCurrentTimeline)
        m_pCurrentTimeline = m_lstTimelines.first();
    m_pCurrentTimeline->setCurrentTime(m_pCurrentTimeline->getCurrentTime());
    return bClean;
}
