#include "VTAnimation.h"

#include "VTAnchorPoint.h"
#include "VTAnimatedProperty.h"
#include "VTAnimationFactory.h"
#include "VTElement.h"
#include "VTKeyframe.h"
#include "VTMotionPath.h"
#include "VTMotionPathKeyframe.h"
#include "VTSymbol.h"
#include "VTTimeline.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cstdarg>

namespace {

const QString s_strKeyframes = QStringLiteral("keyframes");
const QString s_strAutoOrient = QStringLiteral("auto_orient");
const QString s_strInherit = QStringLiteral("inherit");

QString describeElement(const VTElement* pElement)
{
    return pElement ? QStringLiteral("\"%1\"").arg(pElement->getName()) : QStringLiteral("?");
}

} // namespace

VTAnimation::VTAnimation(VTElement* pElement)
    : QParallelAnimationGroup(nullptr)
    , m_pElement(pElement)
{}

VTAnimation::~VTAnimation() = default;

VTAnimation* VTAnimation::clone(VTTimeline* pTimeline, const VTLayoutKey& layoutKey) const
{
    QJsonObject json;
    serialize(json);
    VTAnimation* pCopy = VTAnimationFactory::createAnimation(m_pElement);
    if (pCopy)
        pCopy->parse(json, pTimeline, layoutKey);
    return pCopy;
}

void VTAnimation::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("element_id"), m_pElement ? m_pElement->getId() : -1);
    json.insert(s_strAutoOrient, m_bAutoOrient);
    QJsonArray keyframes;
    for (const VTKeyframe* pKeyframe : getKeyframes()) {
        QJsonObject keyframe;
        pKeyframe->serialize(keyframe);
        keyframes.append(keyframe);
    }
    json.insert(s_strKeyframes, keyframes);
    QJsonArray inherit;
    for (auto it = m_mapPropsInherit.cbegin(); it != m_mapPropsInherit.cend(); ++it) {
        if (!it.value())
            inherit.append(it.key());
    }
    json.insert(s_strInherit, inherit);
}

bool VTAnimation::parse(const QJsonObject& json, VTTimeline* pTimeline, const VTLayoutKey& layoutKey,
                        QStringList* pProblems)
{
    bool bClean = true;
    auto note = [&](const QString& problem) {
        bClean = false;
        if (pProblems)
            pProblems->append(problem);
    };
    m_bAutoOrient = json.value(s_strAutoOrient).toBool();
    bool bMovedAbsolutePath = false;
    const QJsonArray keyframes = json.value(s_strKeyframes).toArray();
    for (const QJsonValue& item : keyframes) {
        const QJsonObject object = item.toObject();
        const int nProperty = object.value(QStringLiteral("type")).toInt(-1);
        if (!pTimeline)
            continue;
        if (!VTAnimatedProperty::isAnimatedProp(nProperty) || nProperty == 39) {
            note(tr("A keyframe of %1 animates an unknown property (%2) and was left out.")
                     .arg(describeElement(m_pElement))
                     .arg(nProperty));
            continue;
        }
        const QString name = VTAnimatedProperty::getName_NoTR(nProperty);
        if (!VTAnimatedProperty::canAddAnimationType(m_pElement, nProperty, layoutKey, layoutKey)) {
            note(tr("The %1 keyframe of %2 does not apply to the element as it is set up and was left out.")
                     .arg(name, describeElement(m_pElement)));
            continue;
        }
        if (getKeyframe(VT::ElementProperty(nProperty))) {
            note(tr("%1 has a second %2 keyframe in one timeline; the second was left out.")
                     .arg(describeElement(m_pElement), name));
            continue;
        }
        VTKeyframe* pKeyframe =
            VTKeyframe::createKeyframe(VT::ElementProperty(nProperty), m_pElement, layoutKey);
        if (!pKeyframe->parse(object, pProblems))
            bClean = false;
        auto* pMotion = qobject_cast<VTMotionPathKeyframe*>(pKeyframe);
        if (pMotion && pMotion->hasReadAbsolutePath() && m_pElement) {
            // Older files kept the path in stage coordinates: it becomes relative to the element,
            // which moves to where the path starts.
            const QList<VTAnchorPoint*>& lstAnchors = pMotion->getMotionPath()->getAnchorPoints();
            const QPointF ptStart = lstAnchors.isEmpty() ? QPointF() : lstAnchors.first()->getPosition();
            if (!ptStart.isNull())
                pMotion->getMotionPath()->moveOffset(-ptStart);
            m_pElement->setComputedLeft(ptStart.x() - m_pElement->getComputedTotalW(layoutKey) *
                                                          m_pElement->getOriginRatioX(layoutKey),
                                        layoutKey);
            m_pElement->setComputedTop(ptStart.y() - m_pElement->getComputedTotalH(layoutKey) *
                                                         m_pElement->getOriginRatioY(layoutKey),
                                       layoutKey);
            bMovedAbsolutePath = true;
        }
        addKeyframe(pKeyframe);
    }

    m_mapPropsInherit.clear();
    for (const QJsonValue& item : json.value(s_strInherit).toArray()) {
        if (item.isDouble() && VTAnimatedProperty::isAnimatedProp(item.toInt()))
            m_mapPropsInherit.insert(item.toInt(), false);
    }
    if (bMovedAbsolutePath && !isPropInherit(6)) {
        m_pElement->setInherit(0, false, layoutKey);
        m_pElement->setInherit(2, false, layoutKey);
    }
    return bClean;
}

void VTAnimation::applyTime(int nTime)
{
    for (VTKeyframe* pKeyframe : qAsConst(m_vecKeyframes))
        pKeyframe->applyTime(nTime);
}

bool VTAnimation::event(QEvent* pEvent)
{
    const bool bHandled = QParallelAnimationGroup::event(pEvent);
    if (pEvent->type() == QEvent::ChildAdded || pEvent->type() == QEvent::ChildRemoved) {
        m_vecKeyframes.clear();
        for (int i = 0; i < animationCount(); ++i) {
            if (auto* pKeyframe = qobject_cast<VTKeyframe*>(animationAt(i)))
                m_vecKeyframes.append(pKeyframe);
        }
    }
    return bHandled;
}

void VTAnimation::updateCurrentTime(int nCurrentTime)
{
    applyTime(nCurrentTime);
}

VTKeyframe* VTAnimation::getKeyframe(VT::ElementProperty nProperty) const
{
    for (int i = 0; i < animationCount(); ++i) {
        auto* pKeyframe = qobject_cast<VTKeyframe*>(animationAt(i));
        if (pKeyframe && pKeyframe->getType() == nProperty)
            return pKeyframe;
    }
    return nullptr;
}

QList<VTKeyframe*> VTAnimation::getKeyframes() const
{
    return QList<VTKeyframe*>(m_vecKeyframes.cbegin(), m_vecKeyframes.cend());
}

void VTAnimation::addKeyframe(VTKeyframe* pKeyframe)
{
    if (pKeyframe && indexOfAnimation(pKeyframe) < 0)
        addAnimation(pKeyframe);
}

void VTAnimation::detachKeyframe(VTKeyframe* pKeyframe)
{
    const int nIndex = pKeyframe ? indexOfAnimation(pKeyframe) : -1;
    if (nIndex >= 0)
        takeAnimation(nIndex);
}

bool VTAnimation::isUsingMotionPath() const
{
    return getKeyframe(VT::ElementProperty(6)) != nullptr;
}

int VTAnimation::getFirstTime() const
{
    int nStart = -1;
    for (const VTKeyframe* pKeyframe : getKeyframes()) {
        if (pKeyframe->getKeyValues().isEmpty())
            continue;
        const int nTime = pKeyframe->getStartTime();
        if (nTime >= 0 && (nStart < 0 || nTime < nStart))
            nStart = nTime;
    }
    return nStart;
}

int VTAnimation::getEndTime() const
{
    int nEnd = 0;
    for (const VTKeyframe* pKeyframe : getKeyframes())
        nEnd = qMax(nEnd, pKeyframe->getEndTime());
    return nEnd;
}

void VTAnimation::setPropInherit(int nProperty, bool bInherit)
{
    if (bInherit)
        m_mapPropsInherit.remove(nProperty);
    else
        m_mapPropsInherit.insert(nProperty, false);
}

QMap<int, bool> VTAnimation::addPropsInherits(const QMap<int, bool>& mapChanges)
{
    QMap<int, bool> mapOld;
    for (auto it = mapChanges.cbegin(); it != mapChanges.cend(); ++it) {
        mapOld.insert(it.key(), isPropInherit(it.key()));
        m_mapPropsInherit.remove(it.key());
        if (!it.value())
            m_mapPropsInherit.insert(it.key(), false);
    }
    return mapOld;
}

QMap<int, bool> VTAnimation::setMapPropsInherit(const QMap<int, bool>& mapInherits)
{
    QMap<int, bool> mapOld = m_mapPropsInherit;
    m_mapPropsInherit = mapInherits;
    return mapOld;
}

QMap<int, bool> vtGetMapInherits(int nCount, ...)
{
    QMap<int, bool> mapInherits;
    if (nCount < 1)
        return mapInherits;
    va_list args;
    va_start(args, nCount);
    for (int i = 0; i + 1 < nCount; i += 2) {
        const int nProperty = va_arg(args, int);
        const int nFlag = va_arg(args, int);
        mapInherits.insert(nProperty, (nFlag & 1) != 0);
    }
    va_end(args);
    return mapInherits;
}

bool isNeedChangePropAnim(const VTSymbol* pSymbol, const VTLayoutKey& layout, const VTAnimation* pAnimation,
                          int nProperty)
{
    if (!pSymbol)
        return false;
    if (pSymbol->isResponsiveMode())
        return layout == pSymbol->getCurrentLayoutId(true);
    // A layout without an animation of the element inherits all of it.
    return layout.isBase() || !pAnimation || pAnimation->isPropInherit(nProperty);
}
