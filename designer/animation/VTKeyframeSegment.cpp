#include "VTKeyframeSegment.h"

#include "VTAnimation.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTTimeline.h"

#include <QJsonObject>

VTKeyframeSegment::VTKeyframeSegment(QObject* pTarget, const QByteArray& propertyName, QObject* pParent,
                                     VTKeyValue* pStartKey, VTKeyValue* pEndKey)
    : QPropertyAnimation(pParent)
    , m_pStartKey(pStartKey)
    , m_pEndKey(pEndKey)
{
    // Without a target the name is kept off too: Qt warns about a property it cannot find.
    if (pTarget && !propertyName.isEmpty()) {
        setTargetObject(pTarget);
        setPropertyName(propertyName);
    }
    if (const VTTimeline* pTimeline = getParentTimeline())
        QPropertyAnimation::setEasingCurve(pTimeline->getCurrentEasingCurve());
}

void VTKeyframeSegment::setTransition(bool bTransition)
{
    m_bHasTransition = bTransition;
    notifyKeyframe();
}

bool VTKeyframeSegment::canHaveTransition() const
{
    return m_pStartKey && m_pEndKey && m_pStartKey->getValue() != m_pEndKey->getValueMinus();
}

void VTKeyframeSegment::setEasing(const QEasingCurve& curve)
{
    QPropertyAnimation::setEasingCurve(curve);
    notifyKeyframe();
}

QVariant VTKeyframeSegment::getStartValue() const
{
    return m_pStartKey ? m_pStartKey->getValue() : QVariant();
}

QVariant VTKeyframeSegment::getEndValue() const
{
    return m_pEndKey ? m_pEndKey->getValueMinus() : QVariant();
}

void VTKeyframeSegment::updateAnimation()
{
    if (m_pStartKey && m_pEndKey) {
        setKeyValueAt(0.0, m_pStartKey->getValue());
        setKeyValueAt(1.0, m_bHasTransition ? m_pEndKey->getValueMinus() : m_pStartKey->getValue());
        setDuration(qMax(0, m_pEndKey->getTime() - m_pStartKey->getTime()));
    }
    notifyKeyframe();
}

VTTimeline* VTKeyframeSegment::getParentTimeline() const
{
    const auto* pKeyframe = qobject_cast<const VTKeyframe*>(parent());
    const auto* pAnimation = pKeyframe ? qobject_cast<const VTAnimation*>(pKeyframe->parent()) : nullptr;
    return pAnimation ? qobject_cast<VTTimeline*>(pAnimation->parent()) : nullptr;
}

void VTKeyframeSegment::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("easing_curve"), static_cast<int>(easingCurve().type()));
    json.insert(QStringLiteral("has_transition"), m_bHasTransition);
}

void VTKeyframeSegment::notifyKeyframe()
{
    if (auto* pKeyframe = qobject_cast<VTKeyframe*>(parent()))
        pKeyframe->invalidateCache();
}
