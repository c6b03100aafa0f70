#include "VTSceneManager.h"

#include "VTBreakpointManager.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTSymbol.h"

#include <limits>

namespace {

int getMainTimelineDuration(const VTScene* pScene)
{
    const VTTimeline* pMain = pScene->getTimelineManager()->getMainTimeline();
    return pMain ? pMain->totalDuration() : 0;
}

int getMainTimelineLabelTimeInScene(const VTScene* pScene, const QString& label)
{
    const VTTimeline* pMain = pScene->getTimelineManager()->getMainTimeline();
    return pMain ? pMain->getLabelValue(label) : -1;
}

} // namespace

VTSceneManager::VTSceneManager(VTSymbol* pSymbol)
    : m_pSymbol(pSymbol)
{}

VTSceneManager::~VTSceneManager()
{
    clear();
}

void VTSceneManager::clear()
{
    const QList<VTScene*> lstScenes = m_lstScenes;
    m_lstScenes.clear();
    m_lstSelectedScenes.clear();
    for (VTScene* pScene : lstScenes) {
        pScene->setSceneManager(nullptr);
        delete pScene;
    }
    m_nNextSceneId = 1;
}

int VTSceneManager::addScene(VTScene* pScene, int nIndex)
{
    if (!pScene || m_lstScenes.contains(pScene))
        return -1;
    constexpr int kLastId = std::numeric_limits<int>::max();
    if (pScene->getId() < 1) {
        pScene->setId(m_nNextSceneId);
        if (m_nNextSceneId < kLastId)
            ++m_nNextSceneId;
    } else if (pScene->getId() >= m_nNextSceneId) {
        m_nNextSceneId = pScene->getId() < kLastId ? pScene->getId() + 1 : kLastId;
    }
    if (m_pSymbol)
        pScene->setCurrentLayoutID(m_pSymbol->getCurrentLayoutId(true));
    if (pScene->isSelected() && !m_lstSelectedScenes.contains(pScene))
        m_lstSelectedScenes.append(pScene);
    pScene->setSceneManager(this);
    if (nIndex < 0 || nIndex > m_lstScenes.size())
        nIndex = m_lstScenes.size();
    m_lstScenes.insert(nIndex, pScene);
    pScene->updateName();
    return nIndex;
}

int VTSceneManager::detachScene(VTScene* pScene)
{
    const int nIndex = m_lstScenes.indexOf(pScene);
    if (nIndex < 0)
        return -1;
    m_lstScenes.removeAt(nIndex);
    m_lstSelectedScenes.removeAll(pScene);
    pScene->setSceneManager(nullptr);
    return nIndex;
}

VTScene* VTSceneManager::getSceneById(int nId) const
{
    for (VTScene* pScene : m_lstScenes) {
        if (pScene->getId() == nId)
            return pScene;
    }
    return nullptr;
}

int VTSceneManager::getSceneIndex(const VTScene* pScene) const
{
    return pScene ? m_lstScenes.indexOf(const_cast<VTScene*>(pScene)) : -1;
}

bool VTSceneManager::moveSceneToIndex(int nFrom, int nTo)
{
    const int nCount = m_lstScenes.size();
    if (nFrom < 0 || nTo < 0 || nFrom >= nCount || nTo > nCount)
        return false;
    // Dropping a scene onto its own place changes nothing; taken literally, the rule below would
    // move it one up, or before the first place for the first scene.
    if (nFrom == nTo)
        return true;
    VTScene* pScene = m_lstScenes.takeAt(nFrom);
    m_lstScenes.insert(nFrom < nTo ? nTo - 1 : nTo, pScene);
    return true;
}

bool VTSceneManager::isDuplicatedSceneName(const QString& name, const VTScene* pExcept) const
{
    for (const VTScene* pScene : m_lstScenes) {
        if (pScene != pExcept && pScene->getName() == name)
            return true;
    }
    return false;
}

void VTSceneManager::updateNextSceneId()
{
    int nMax = 0;
    for (const VTScene* pScene : qAsConst(m_lstScenes))
        nMax = qMax(nMax, pScene->getId());
    m_nNextSceneId = nMax < std::numeric_limits<int>::max() ? nMax + 1 : nMax;
}

void VTSceneManager::updateSelection(VTScene* pScene)
{
    if (!m_lstScenes.contains(pScene))
        return;
    if (!pScene->isSelected())
        m_lstSelectedScenes.removeAll(pScene);
    else if (!m_lstSelectedScenes.contains(pScene))
        m_lstSelectedScenes.append(pScene);
}

int VTSceneManager::getTotalTimelineDuration() const
{
    int nTotal = 0;
    for (const VTScene* pScene : m_lstScenes)
        nTotal += getMainTimelineDuration(pScene) + pScene->getEffectiveTransitionDuration();
    return nTotal;
}

int VTSceneManager::getMainTimelineLabelTime(const QString& label) const
{
    int nElapsed = 0;
    for (const VTScene* pScene : m_lstScenes) {
        nElapsed += pScene->getEffectiveTransitionDuration();
        const int nLabelTime = getMainTimelineLabelTimeInScene(pScene, label);
        if (nLabelTime >= 0)
            return nElapsed + nLabelTime;
        nElapsed += getMainTimelineDuration(pScene);
    }
    return -1;
}

void VTSceneManager::addNewScenes(int nCount, int nWidth, int nHeight, bool bResponsive)
{
    for (int n = 0; n < nCount; ++n) {
        auto* pScene = new VTScene();
        pScene->initDefault();
        if (bResponsive) {
            pScene->setUnitW(VT::Percent);
            pScene->setUnitH(VT::Percent);
            pScene->setSizeW(1.0);
            pScene->setSizeH(1.0);
        } else {
            pScene->setComputedW(nWidth);
            pScene->setComputedH(nHeight);
        }
        // Every layout of the symbol starts as the base.
        if (m_pSymbol)
            pScene->prepareLayoutProperty(m_pSymbol->getBreakpointManager()->getAllBreakpointIds(false), true,
                                          VTLayoutKey::base());
        if (n == 0)
            pScene->setSelected(true);
        addScene(pScene);
    }
}
