#pragma once

#include <QPropertyAnimation>

class QJsonObject;
class VTKeyValue;
class VTTimeline;

// The stretch of a keyframe between two keys, as a Qt property animation from the start key's
// value to the end key's arrival value. Without a transition the segment holds the start value to
// its end, so the property jumps at the next key.
//
// The segment points at its keys but does not own them; the keyframe does. After a key or the
// transition changes, updateAnimation brings the Qt animation in line. Changes of the easing go
// through setEasing, so that the keyframe's evaluation cache learns of them.
class VTKeyframeSegment final : public QPropertyAnimation
{
    Q_OBJECT
public:
    VTKeyframeSegment(QObject* pTarget, const QByteArray& propertyName, QObject* pParent,
                      VTKeyValue* pStartKey, VTKeyValue* pEndKey);

    bool hasTransition() const { return m_bHasTransition; }
    void setTransition(bool bTransition);
    // Whether a transition could move anything: both keys exist and the value changes.
    bool canHaveTransition() const;
    void setEasing(const QEasingCurve& curve);

    VTKeyValue* getStartKeyValue() const { return m_pStartKey; }
    void setStartKeyValue(VTKeyValue* pKey) { m_pStartKey = pKey; }
    VTKeyValue* getEndKeyValue() const { return m_pEndKey; }
    void setEndKeyValue(VTKeyValue* pKey) { m_pEndKey = pKey; }
    QVariant getStartValue() const;
    QVariant getEndValue() const;
    // Key values at 0 and 1 and the duration from the keys; tells the keyframe to re-read.
    void updateAnimation();

    // The timeline this segment plays in: keyframe, animation, timeline by Qt parenthood; null
    // where a link is missing (a keyframe parked in another layout has no parent).
    VTTimeline* getParentTimeline() const;

    // "easing_curve" and "has_transition".
    void serialize(QJsonObject& json) const;

private:
    void notifyKeyframe();

    VTKeyValue* m_pStartKey = nullptr;
    VTKeyValue* m_pEndKey = nullptr;
    bool m_bHasTransition = true;
};
