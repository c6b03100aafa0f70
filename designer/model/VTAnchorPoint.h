#pragma once

#include <QPointF>
#include <QStringList>

class QJsonObject;

// One anchor of a Bezier path: the point itself, the handle towards the previous anchor and the
// handle towards the next one, all in the same absolute coordinates. On a motion path an anchor
// may also carry a key time, which ties it to a key of the position keyframe.
class VTAnchorPoint final
{
public:
    VTAnchorPoint() = default;
    VTAnchorPoint(const QPointF& ptPosition, const QPointF& ptControlPoint1, const QPointF& ptControlPoint2,
                  int nKeyTime = -1);

    const QPointF& getPosition() const { return m_ptPosition; }
    void setPosition(const QPointF& ptPosition) { m_ptPosition = ptPosition; }
    const QPointF& getControlPoint1() const { return m_ptControlPoint1; }
    void setControlPoint1(const QPointF& ptControlPoint) { m_ptControlPoint1 = ptControlPoint; }
    const QPointF& getControlPoint2() const { return m_ptControlPoint2; }
    void setControlPoint2(const QPointF& ptControlPoint) { m_ptControlPoint2 = ptControlPoint; }

    // Milliseconds, or -1 for an anchor that only shapes the path. Every negative time is stored
    // as -1, since all callers only ask whether the time is 0 or more.
    int getKeyTime() const { return m_nKeyTime; }
    void setKeyTime(int nKeyTime) { m_nKeyTime = nKeyTime < 0 ? -1 : nKeyTime; }
    bool hasKeyTime() const { return m_nKeyTime >= 0; }

    // Set on the first anchor of a path that is open there (see VTBezierPath::isClosedPath).
    bool isStartPoint() const { return m_bStartPoint; }
    void setStartPoint(bool bStartPoint) { m_bStartPoint = bStartPoint; }

    // Reversing a path turns each anchor's incoming handle into its outgoing one.
    void swapControlPoints();
    void moveOffset(const QPointF& ptOffset);

    void serialize(QJsonObject& json) const;
    // Resets every field to its default first, so absent keys read as defaults. A present key of
    // the wrong type or with a value that is not finite is dropped, noted in pWarnings, and makes
    // the result false; the anchor is usable either way.
    bool parse(const QJsonObject& json, QStringList* pWarnings = nullptr);

private:
    QPointF m_ptPosition;
    QPointF m_ptControlPoint1;
    QPointF m_ptControlPoint2;
    int m_nKeyTime = -1;
    bool m_bStartPoint = false;
};
