#include "RandomCommandContext.h"

#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTCommand.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTKeyframe.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QColor>
#include <QPointF>

#include <algorithm>
#include <cmath>

RandomCommandContext::RandomCommandContext(VTDocument& document, quint32 nSeed)
    : m_document(document)
    , m_random(nSeed)
{}

VTCommand* RandomCommandContext::newCommand(const QString& name) const
{
    return new VTCommand(&m_document, name);
}

int RandomCommandContext::intIn(int nMin, int nMax)
{
    if (nMax <= nMin)
        return nMin;
    return nMin + static_cast<int>(m_random.bounded(static_cast<quint32>(nMax - nMin) + 1));
}

double RandomCommandContext::doubleIn(double dMin, double dMax)
{
    // Values on a grid of hundredths keep the printed history readable.
    return std::round((dMin + m_random.bounded(1.0) * (dMax - dMin)) * 100.0) / 100.0;
}

QString RandomCommandContext::uniqueText(const QString& prefix)
{
    return QStringLiteral("%1%2").arg(prefix).arg(++m_nCounter);
}

QVariant RandomCommandContext::nudge(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Double:
        return value.toDouble() + doubleIn(-30.0, 30.0);
    case QMetaType::Int:
        return value.toInt() + intIn(1, 5) * (chance(50) ? 1 : -1);
    case QMetaType::Bool:
        return !value.toBool();
    case QMetaType::QString:
        return QString(value.toString() + uniqueText(QStringLiteral("-")));
    // One draw per statement: the order in which arguments are worked out is the compiler's, and a
    // seed must give the same history with every compiler.
    case QMetaType::QPointF: {
        const double dX = doubleIn(-40.0, 40.0);
        const double dY = doubleIn(-40.0, 40.0);
        return value.toPointF() + QPointF(dX, dY);
    }
    case QMetaType::QColor: {
        const int nRed = intIn(0, 255);
        const int nGreen = intIn(0, 255);
        const int nBlue = intIn(0, 255);
        return QColor(nRed, nGreen, nBlue, intIn(1, 255));
    }
    default:
        return value;
    }
}

VTSymbol* RandomCommandContext::getSymbol() const
{
    return m_document.getCurrentSymbol();
}

VTSceneManager* RandomCommandContext::getScenes() const
{
    VTSymbol* pSymbol = getSymbol();
    return pSymbol ? pSymbol->getSceneManager() : nullptr;
}

VTScene* RandomCommandContext::getScene() const
{
    VTSceneManager* pScenes = getScenes();
    return pScenes ? pScenes->getCurrentScene() : nullptr;
}

VTTimeline* RandomCommandContext::getTimeline() const
{
    VTScene* pScene = getScene();
    return pScene ? pScene->getTimelineManager()->getCurrentTimeline() : nullptr;
}

QList<VTLayoutKey> RandomCommandContext::getLayouts() const
{
    VTSymbol* pSymbol = getSymbol();
    if (!pSymbol)
        return {VTLayoutKey::base()};
    return pSymbol->getBreakpointManager()->getAllBreakpointIds(true);
}

QList<VTElement*> RandomCommandContext::getElements(const VTElement* pRoot)
{
    QList<VTElement*> lstElements;
    if (!pRoot)
        return lstElements;
    for (VTElement* pChild : pRoot->getChildren()) {
        lstElements.append(pChild);
        lstElements.append(getElements(pChild));
    }
    return lstElements;
}

QList<VTElement*>
RandomCommandContext::getElements(const std::function<bool(const VTElement*)>& fnFilter) const
{
    QList<VTElement*> lstElements = getElements(getScene());
    if (fnFilter) {
        lstElements.erase(
            std::remove_if(lstElements.begin(), lstElements.end(),
                           [&fnFilter](const VTElement* pElement) { return !fnFilter(pElement); }),
            lstElements.end());
    }
    return lstElements;
}

QList<VTElement*>
RandomCommandContext::getElementsAnywhere(const std::function<bool(const VTElement*)>& fnFilter) const
{
    QList<VTElement*> lstElements = getElements(fnFilter);
    VTSceneManager* pScenes = getScenes();
    if (!lstElements.isEmpty() || !pScenes)
        return lstElements;
    for (const VTScene* pScene : pScenes->getScenes()) {
        for (VTElement* pElement : getElements(pScene)) {
            if (!fnFilter || fnFilter(pElement))
                lstElements.append(pElement);
        }
    }
    return lstElements;
}

VTLayoutKey RandomCommandContext::pickLayout(const VTElement* pElement)
{
    QList<VTLayoutKey> lstLayouts = getLayouts();
    if (pElement) {
        lstLayouts.erase(
            std::remove_if(lstLayouts.begin(), lstLayouts.end(),
                           [pElement](const VTLayoutKey& key) { return !pElement->getLayoutProperty(key); }),
            lstLayouts.end());
    }
    return lstLayouts.isEmpty() ? VTLayoutKey::base() : pick(lstLayouts);
}

QList<RandomCommandContext::KeyframeSlot>
RandomCommandContext::getKeyframes(const std::function<bool(const KeyframeSlot&)>& fnFilter) const
{
    QList<KeyframeSlot> lstSlots;
    VTScene* pScene = getScene();
    if (!pScene)
        return lstSlots;
    for (VTTimeline* pTimeline : pScene->getTimelineManager()->getTimelines()) {
        const auto& mapAnimations = pTimeline->getAllLayoutAnimations();
        for (auto it = mapAnimations.cbegin(); it != mapAnimations.cend(); ++it) {
            for (VTAnimation* pAnimation : it.value()) {
                for (VTKeyframe* pKeyframe : pAnimation->getKeyframes()) {
                    const KeyframeSlot slot{pTimeline, it.key(), pAnimation, pKeyframe};
                    if (!fnFilter || fnFilter(slot))
                        lstSlots.append(slot);
                }
            }
        }
    }
    return lstSlots;
}
