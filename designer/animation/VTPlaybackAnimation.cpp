#include "VTPlaybackAnimation.h"

#include "VTBreakpointManager.h"
#include "VTKeyframe.h"
#include "VTMedia.h"
#include "VTPlayback.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTSymbolElement.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

// The symbol an instance plays, through its scene, its symbol and the shared resource manager.
VTSymbol* findPlayedSymbol(const VTElement* pElement)
{
    const auto* pInstance = qobject_cast<const VTSymbolElement*>(pElement);
    const auto* pScene = pInstance ? qobject_cast<const VTScene*>(pInstance->getScene()) : nullptr;
    const VTSceneManager* pSceneManager = pScene ? pScene->getSceneManager() : nullptr;
    const VTSymbol* pOwner = pSceneManager ? pSceneManager->getSymbol() : nullptr;
    const VTResourceManager* pResources = pOwner ? pOwner->getResourceManager() : nullptr;
    return pResources && pInstance->getSymbolResource()
               ? pResources->getSymbolForResource(pInstance->getSymbolResource())
               : nullptr;
}

} // namespace

VTPlaybackAnimation::VTPlaybackAnimation(VTElement* pElement)
    : VTAnimation(pElement)
    , m_pPlayback(new VTPlayback(this))
{
    insertAnimation(0, m_pPlayback);
}

VTPlaybackAnimation::~VTPlaybackAnimation() = default;

void VTPlaybackAnimation::serialize(QJsonObject& json) const
{
    VTAnimation::serialize(json);
    QJsonArray playback;
    m_pPlayback->serialize(playback);
    json.insert(QStringLiteral("playback"), playback);
}

bool VTPlaybackAnimation::parse(const QJsonObject& json, VTTimeline* pTimeline, const VTLayoutKey& layoutKey,
                                QStringList* pProblems)
{
    bool bClean = VTAnimation::parse(json, pTimeline, layoutKey, pProblems);
    const QJsonValue playback = json.value(QStringLiteral("playback"));
    if (playback.isArray())
        bClean = m_pPlayback->parse(playback.toArray(), pProblems) && bClean;
    return bClean;
}

int VTPlaybackAnimation::getFirstTime() const
{
    const int nKeys = VTAnimation::getFirstTime();
    const int nFirstMark = m_pPlayback->getFirstActionTime();
    if (nKeys < 0 || nFirstMark < 0)
        return qMax(nKeys, nFirstMark);
    return qMin(nKeys, nFirstMark);
}

void VTPlaybackAnimation::addEventListener(VTEventListener* pListener)
{
    m_pPlayback->addEventListener(pListener);
}

void VTPlaybackAnimation::detachEventListener(VTEventListener* pListener)
{
    m_pPlayback->detachEventListener(pListener);
}

VTEventListener* VTPlaybackAnimation::getEventlistener(int nTime) const
{
    return m_pPlayback->getEventlistener(nTime);
}

void VTPlaybackAnimation::changeActionTime(VTEventListener* pListener, int nTime)
{
    m_pPlayback->changeActionTime(pListener, nTime);
}

int VTPlaybackAnimation::getPlaybackDuration() const
{
    const VTElement* pElement = getElement();
    if (!pElement)
        return 0;
    if (const auto* pMedia = qobject_cast<const VTMedia*>(pElement))
        return pMedia->getDuration();
    VTSymbol* pSymbol = findPlayedSymbol(pElement);
    if (!pSymbol || !pSymbol->getSceneManager())
        return 0;
    // A symbol's length depends on the layout its shown size selects.
    const VTLayoutKey size = pSymbol->getBreakpointManager()->getBreakpointBySize(
        int(pElement->getComputedW()), int(pElement->getComputedH()));
    const bool bResponsive = pSymbol->isResponsiveMode();
    const VTLayoutKey previous = pSymbol->getCurrentLayoutId(false);
    pSymbol->setResponsiveMode(true);
    pSymbol->setCurrentLayoutId(size);
    const int nDuration = pSymbol->getSceneManager()->getTotalTimelineDuration();
    pSymbol->setCurrentLayoutId(previous);
    pSymbol->setResponsiveMode(bResponsive);
    return nDuration;
}

std::function<int(const QString&)> VTPlaybackAnimation::createLabelLookup() const
{
    VTSymbol* pSymbol = findPlayedSymbol(getElement());
    if (!pSymbol || !pSymbol->getSceneManager())
        return {};
    return [pSymbol](const QString& label) {
        return pSymbol->getSceneManager()->getMainTimelineLabelTime(label);
    };
}

void VTPlaybackAnimation::updatePlayback()
{
    m_pPlayback->updatePlayback(getPlaybackDuration(), createLabelLookup());
}

void VTPlaybackAnimation::appendPlaybacksData(QJsonArray& array) const
{
    const VTElement* pElement = getElement();
    m_pPlayback->appendPlaybacksData(array, pElement ? pElement->getId() : -1, getPlaybackDuration(),
                                     createLabelLookup());
}
