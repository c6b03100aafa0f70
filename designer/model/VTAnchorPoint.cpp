#include "VTAnchorPoint.h"

#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>
#include <utility>

namespace {

// Reads one coordinate; anything but a finite number leaves the default of 0.
double readCoordinate(const QJsonObject& json, const QString& key, QStringList* pWarnings, bool& bOk)
{
    const QJsonValue value = json.value(key);
    if (value.isUndefined())
        return 0.0;
    if (value.isDouble() && std::isfinite(value.toDouble()))
        return value.toDouble();
    bOk = false;
    if (pWarnings)
        pWarnings->append(QStringLiteral("anchor point: \"%1\" is not a finite number, 0 used").arg(key));
    return 0.0;
}

} // namespace

VTAnchorPoint::VTAnchorPoint(const QPointF& ptPosition, const QPointF& ptControlPoint1,
                             const QPointF& ptControlPoint2, int nKeyTime)
    : m_ptPosition(ptPosition)
    , m_ptControlPoint1(ptControlPoint1)
    , m_ptControlPoint2(ptControlPoint2)
{
    setKeyTime(nKeyTime);
}

void VTAnchorPoint::swapControlPoints()
{
    std::swap(m_ptControlPoint1, m_ptControlPoint2);
}

void VTAnchorPoint::moveOffset(const QPointF& ptOffset)
{
    m_ptPosition += ptOffset;
    m_ptControlPoint1 += ptOffset;
    m_ptControlPoint2 += ptOffset;
}

void VTAnchorPoint::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("x"), m_ptPosition.x());
    json.insert(QStringLiteral("y"), m_ptPosition.y());
    json.insert(QStringLiteral("x1"), m_ptControlPoint1.x());
    json.insert(QStringLiteral("y1"), m_ptControlPoint1.y());
    json.insert(QStringLiteral("x2"), m_ptControlPoint2.x());
    json.insert(QStringLiteral("y2"), m_ptControlPoint2.y());
    // Plain anchors are the common case; leaving the key out keeps project files small.
    if (m_nKeyTime >= 0)
        json.insert(QStringLiteral("time"), m_nKeyTime);
    json.insert(QStringLiteral("startpoint"), m_bStartPoint);
}

bool VTAnchorPoint::parse(const QJsonObject& json, QStringList* pWarnings)
{
    bool bOk = true;
    m_ptPosition = QPointF(readCoordinate(json, QStringLiteral("x"), pWarnings, bOk),
                           readCoordinate(json, QStringLiteral("y"), pWarnings, bOk));
    m_ptControlPoint1 = QPointF(readCoordinate(json, QStringLiteral("x1"), pWarnings, bOk),
                                readCoordinate(json, QStringLiteral("y1"), pWarnings, bOk));
    m_ptControlPoint2 = QPointF(readCoordinate(json, QStringLiteral("x2"), pWarnings, bOk),
                                readCoordinate(json, QStringLiteral("y2"), pWarnings, bOk));

    m_nKeyTime = -1;
    const QJsonValue time = json.value(QStringLiteral("time"));
    if (!time.isUndefined()) {
        const double dTime = time.toDouble(std::numeric_limits<double>::quiet_NaN());
        // A time must be a whole number of milliseconds that fits an int.
        if (std::isfinite(dTime) && dTime == std::floor(dTime) && dTime <= std::numeric_limits<int>::max() &&
            dTime >= std::numeric_limits<int>::min()) {
            setKeyTime(static_cast<int>(dTime));
        } else {
            bOk = false;
            if (pWarnings)
                pWarnings->append(QStringLiteral("anchor point: \"time\" is not a whole number, -1 used"));
        }
    }

    m_bStartPoint = false;
    const QJsonValue startPoint = json.value(QStringLiteral("startpoint"));
    if (startPoint.isBool()) {
        m_bStartPoint = startPoint.toBool();
    } else if (!startPoint.isUndefined()) {
        bOk = false;
        if (pWarnings)
            pWarnings->append(QStringLiteral("anchor point: \"startpoint\" is not a boolean, false used"));
    }
    return bOk;
}
