#include "VTBezierPath.h"

#include "VTAnchorPoint.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QLineF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

// Below this the stage cannot show a difference, and the player's parser is spared values such as
// 1e-17 that rounding leaves behind.
constexpr double kExportZero = 1e-5;
// The two ends of a path count as one point within this distance on each axis.
constexpr double kSamePointDistance = 1e-12;

double toExportValue(double dValue)
{
    return std::abs(dValue) <= kExportZero ? 0.0 : dValue;
}

// The parameters in (0, 1) at which one coordinate of a cubic has a zero derivative.
int findExtremaParameters(double dP0, double dP1, double dP2, double dP3, double arrT[2])
{
    // Derivative divided by 3: a t^2 + b t + c.
    const double dA = -dP0 + 3.0 * dP1 - 3.0 * dP2 + dP3;
    const double dB = 2.0 * (dP0 - 2.0 * dP1 + dP2);
    const double dC = dP1 - dP0;
    double arrRoots[2];
    int nRoots = 0;
    if (dA == 0.0) {
        if (dB != 0.0)
            arrRoots[nRoots++] = -dC / dB;
    } else {
        const double dDiscriminant = dB * dB - 4.0 * dA * dC;
        if (dDiscriminant >= 0.0) {
            // The form without cancellation: q and c / q rather than the textbook pair.
            const double dQ = -0.5 * (dB + std::copysign(std::sqrt(dDiscriminant), dB));
            arrRoots[nRoots++] = dQ / dA;
            if (dQ != 0.0)
                arrRoots[nRoots++] = dC / dQ;
        }
    }
    int nInside = 0;
    for (int i = 0; i < nRoots; ++i) {
        if (arrRoots[i] > 0.0 && arrRoots[i] < 1.0)
            arrT[nInside++] = arrRoots[i];
    }
    return nInside;
}

class BoundsAccumulator final
{
public:
    void add(const QPointF& pt)
    {
        if (!m_bHasPoint) {
            m_ptMin = m_ptMax = pt;
            m_bHasPoint = true;
            return;
        }
        m_ptMin.setX(std::min(m_ptMin.x(), pt.x()));
        m_ptMin.setY(std::min(m_ptMin.y(), pt.y()));
        m_ptMax.setX(std::max(m_ptMax.x(), pt.x()));
        m_ptMax.setY(std::max(m_ptMax.y(), pt.y()));
    }
    QRectF getRect() const { return m_bHasPoint ? QRectF(m_ptMin, m_ptMax) : QRectF(); }

private:
    QPointF m_ptMin;
    QPointF m_ptMax;
    bool m_bHasPoint = false;
};

void addWarning(QStringList* pWarnings, const QString& warning)
{
    if (pWarnings)
        pWarnings->append(warning);
}

} // namespace

VTBezierPath::VTBezierPath(const VTBezierPath& other)
{
    m_lstAnchorPoints.reserve(other.m_lstAnchorPoints.size());
    for (const VTAnchorPoint* pAnchor : other.m_lstAnchorPoints)
        m_lstAnchorPoints.append(new VTAnchorPoint(*pAnchor));
    m_lstCubicBezierCurves.reserve(other.m_lstCubicBezierCurves.size());
    for (const QList<QPointF>* pCurve : other.m_lstCubicBezierCurves)
        m_lstCubicBezierCurves.append(new QList<QPointF>(*pCurve));
}

VTBezierPath::~VTBezierPath()
{
    clear();
}

std::unique_ptr<VTBezierPath> VTBezierPath::clone() const
{
    return std::unique_ptr<VTBezierPath>(new VTBezierPath(*this));
}

void VTBezierPath::clear()
{
    qDeleteAll(m_lstAnchorPoints);
    m_lstAnchorPoints.clear();
    qDeleteAll(m_lstCubicBezierCurves);
    m_lstCubicBezierCurves.clear();
}

void VTBezierPath::rebuildCurves()
{
    qDeleteAll(m_lstCubicBezierCurves);
    m_lstCubicBezierCurves.clear();
    m_lstCubicBezierCurves.reserve(m_lstAnchorPoints.size());
    for (int i = 0; i < m_lstAnchorPoints.size(); ++i)
        m_lstCubicBezierCurves.append(new QList<QPointF>());
    for (int i = 0; i + 1 < m_lstAnchorPoints.size(); ++i)
        updateSpan(i);
}

void VTBezierPath::serialize(QJsonObject& json) const
{
    QJsonArray points;
    for (const VTAnchorPoint* pAnchor : m_lstAnchorPoints) {
        QJsonObject point;
        pAnchor->serialize(point);
        points.append(point);
    }
    json.insert(QStringLiteral("points"), points);
}

bool VTBezierPath::parse(const QJsonObject& json, QStringList* pWarnings)
{
    clear();
    const QJsonValue points = json.value(QStringLiteral("points"));
    if (points.isUndefined())
        return true;
    if (!points.isArray()) {
        addWarning(pWarnings, QStringLiteral("path: \"points\" is not an array, the path is left empty"));
        return false;
    }
    const QJsonArray array = points.toArray();
    if (array.size() > kMaxAnchorCount) {
        addWarning(pWarnings, QStringLiteral("path: %1 points exceed the limit of %2, the path is left empty")
                                  .arg(array.size())
                                  .arg(kMaxAnchorCount));
        return false;
    }

    bool bOk = true;
    for (int i = 0; i < array.size(); ++i) {
        const QJsonValue item = array.at(i);
        if (!item.isObject()) {
            bOk = false;
            addWarning(pWarnings, QStringLiteral("path: point %1 is not an object, skipped").arg(i));
            continue;
        }
        auto pAnchor = std::make_unique<VTAnchorPoint>();
        if (!pAnchor->parse(item.toObject(), pWarnings))
            bOk = false;
        m_lstAnchorPoints.append(pAnchor.release());
    }
    rebuildCurves();
    return bOk;
}

void VTBezierPath::serializeToExport(QJsonArray& array) const
{
    for (int i = 0; i < m_lstAnchorPoints.size(); ++i) {
        const VTAnchorPoint* pAnchor = m_lstAnchorPoints.at(i);
        QJsonArray point{
            toExportValue(pAnchor->getPosition().x()),      toExportValue(pAnchor->getPosition().y()),
            toExportValue(pAnchor->getControlPoint1().x()), toExportValue(pAnchor->getControlPoint1().y()),
            toExportValue(pAnchor->getControlPoint2().x()), toExportValue(pAnchor->getControlPoint2().y())};
        if (i == 0 && pAnchor->isStartPoint())
            point.append(1);
        array.append(point);
    }
}

bool VTBezierPath::parseFromJsArray(const QJsonArray& array, QStringList* pWarnings)
{
    clear();
    if (array.size() > kMaxAnchorCount) {
        addWarning(pWarnings, QStringLiteral("path: %1 points exceed the limit of %2, the path is left empty")
                                  .arg(array.size())
                                  .arg(kMaxAnchorCount));
        return false;
    }

    bool bOk = true;
    for (int i = 0; i < array.size(); ++i) {
        const QJsonValue item = array.at(i);
        if (!item.isArray()) {
            bOk = false;
            addWarning(pWarnings, QStringLiteral("path: point %1 is not an array, skipped").arg(i));
            continue;
        }
        const QJsonArray values = item.toArray();
        double arrCoordinates[6] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
        for (int j = 0; j < 6; ++j) {
            const QJsonValue value = values.at(j);
            if (value.isDouble() && std::isfinite(value.toDouble())) {
                arrCoordinates[j] = toExportValue(value.toDouble());
            } else {
                bOk = false;
                addWarning(pWarnings,
                           QStringLiteral("path: coordinate %1 of point %2 is not a finite number, 0 used")
                               .arg(j)
                               .arg(i));
            }
        }
        auto pAnchor = std::make_unique<VTAnchorPoint>(QPointF(arrCoordinates[0], arrCoordinates[1]),
                                                       QPointF(arrCoordinates[2], arrCoordinates[3]),
                                                       QPointF(arrCoordinates[4], arrCoordinates[5]));
        pAnchor->setStartPoint(values.size() > 6 && values.at(6).isDouble() &&
                               values.at(6).toDouble() == 1.0);
        m_lstAnchorPoints.append(pAnchor.release());
    }
    rebuildCurves();
    return bOk;
}

VTAnchorPoint* VTBezierPath::getAnchorPointAt(int nIndex) const
{
    if (nIndex < 0 || nIndex >= m_lstAnchorPoints.size())
        return nullptr;
    return m_lstAnchorPoints.at(nIndex);
}

bool VTBezierPath::setAnchorPointData(VTAnchorPoint* pAnchor, const QPointF& ptPosition,
                                      const QPointF& ptControlPoint1, const QPointF& ptControlPoint2)
{
    const int nIndex = pAnchor ? m_lstAnchorPoints.indexOf(pAnchor) : -1;
    if (nIndex < 0)
        return false;
    pAnchor->setPosition(ptPosition);
    pAnchor->setControlPoint1(ptControlPoint1);
    pAnchor->setControlPoint2(ptControlPoint2);
    updatePathAt(nIndex);
    return true;
}

void VTBezierPath::updatePathAt(int nIndex)
{
    updateSpan(nIndex - 1);
    updateSpan(nIndex);
}

void VTBezierPath::updateSpan(int nIndex)
{
    if (nIndex < 0 || nIndex >= m_lstCubicBezierCurves.size())
        return;
    QList<QPointF>* pCurve = m_lstCubicBezierCurves.at(nIndex);
    if (nIndex + 1 < m_lstAnchorPoints.size())
        calculateCurve(m_lstAnchorPoints.at(nIndex), m_lstAnchorPoints.at(nIndex + 1), pCurve);
    else
        pCurve->clear();
}

QList<int> VTBezierPath::getKeyPointIndexes(int nTime) const
{
    QList<int> lstIndexes;
    for (int i = 0; i < m_lstAnchorPoints.size(); ++i) {
        if (m_lstAnchorPoints.at(i)->getKeyTime() == nTime)
            lstIndexes.append(i);
    }
    return lstIndexes;
}

QList<VTAnchorPoint*> VTBezierPath::getKeyPoints() const
{
    QList<VTAnchorPoint*> lstKeyPoints;
    for (VTAnchorPoint* pAnchor : m_lstAnchorPoints) {
        if (pAnchor->hasKeyTime())
            lstKeyPoints.append(pAnchor);
    }
    return lstKeyPoints;
}

int VTBezierPath::addAnchorPoint(int nIndex, VTAnchorPoint* pAnchor)
{
    if (!pAnchor || m_lstAnchorPoints.contains(pAnchor))
        return -1;
    const int nInsertAt = nIndex < 1 ? 0 : std::min(nIndex, static_cast<int>(m_lstAnchorPoints.size()));
    m_lstAnchorPoints.insert(nInsertAt, pAnchor);
    m_lstCubicBezierCurves.insert(nInsertAt, new QList<QPointF>());
    updatePathAt(nInsertAt);
    return nInsertAt;
}

int VTBezierPath::removeAnchorPoint(VTAnchorPoint* pAnchor)
{
    const int nIndex = pAnchor ? m_lstAnchorPoints.indexOf(pAnchor) : -1;
    if (nIndex < 0)
        return -1;
    m_lstAnchorPoints.removeAt(nIndex);
    delete m_lstCubicBezierCurves.takeAt(nIndex);
    // The span before now leads to the anchor that moved up into nIndex, or ends the path.
    updatePathAt(nIndex);
    return nIndex;
}

void VTBezierPath::invertAnchorPoints(int nFrom, int nTo)
{
    if (nFrom < 0 || nFrom >= nTo || nTo >= m_lstAnchorPoints.size())
        return;
    const VTAnchorPoint* pFrom = m_lstAnchorPoints.at(nFrom);
    const VTAnchorPoint* pTo = m_lstAnchorPoints.at(nTo);
    if (!pFrom->hasKeyTime() || !pTo->hasKeyTime())
        return;

    // Wide enough that two large key times cannot overflow. Only an anchor keyed outside the
    // range can mirror below 0, and such a time reads as a plain anchor, as any negative one does.
    const qint64 nSum = static_cast<qint64>(pFrom->getKeyTime()) + pTo->getKeyTime();
    for (int i = nFrom; i <= nTo; ++i) {
        VTAnchorPoint* pAnchor = m_lstAnchorPoints.at(i);
        pAnchor->swapControlPoints();
        if (pAnchor->hasKeyTime()) {
            const qint64 nMirrored = nSum - pAnchor->getKeyTime();
            pAnchor->setKeyTime(
                static_cast<int>(std::min<qint64>(nMirrored, std::numeric_limits<int>::max())));
        }
    }
    for (int i = nFrom, j = nTo; i < j; ++i, --j)
        m_lstAnchorPoints.swapItemsAt(i, j);
    for (int i = std::max(nFrom - 1, 0); i <= nTo; ++i)
        updateSpan(i);
}

void VTBezierPath::moveOffset(const QPointF& ptOffset)
{
    if (ptOffset.isNull())
        return;
    for (VTAnchorPoint* pAnchor : std::as_const(m_lstAnchorPoints))
        pAnchor->moveOffset(ptOffset);
    for (int i = 0; i < m_lstCubicBezierCurves.size(); ++i)
        updateSpan(i);
}

bool VTBezierPath::isClosedPath() const
{
    if (m_lstAnchorPoints.size() < 2)
        return false;
    const VTAnchorPoint* pFirst = m_lstAnchorPoints.first();
    const QPointF ptDelta = pFirst->getPosition() - m_lstAnchorPoints.last()->getPosition();
    if (std::abs(ptDelta.x()) <= kSamePointDistance && std::abs(ptDelta.y()) <= kSamePointDistance)
        return true;
    return !pFirst->isStartPoint();
}

QRectF VTBezierPath::getBoundingRect() const
{
    BoundsAccumulator bounds;
    for (const VTAnchorPoint* pAnchor : m_lstAnchorPoints)
        bounds.add(pAnchor->getPosition());
    for (int i = 0; i + 1 < m_lstAnchorPoints.size(); ++i) {
        // A span without a polyline is not travelled, so its handles do not count.
        if (m_lstCubicBezierCurves.at(i)->isEmpty())
            continue;
        const VTAnchorPoint* pA = m_lstAnchorPoints.at(i);
        const VTAnchorPoint* pB = m_lstAnchorPoints.at(i + 1);
        const QPointF& pt0 = pA->getPosition();
        const QPointF& pt1 = pA->getControlPoint2();
        const QPointF& pt2 = pB->getControlPoint1();
        const QPointF& pt3 = pB->getPosition();
        double arrT[2];
        const int nX = findExtremaParameters(pt0.x(), pt1.x(), pt2.x(), pt3.x(), arrT);
        for (int j = 0; j < nX; ++j)
            bounds.add(calculateBezierAt(pA, pB, arrT[j]));
        const int nY = findExtremaParameters(pt0.y(), pt1.y(), pt2.y(), pt3.y(), arrT);
        for (int j = 0; j < nY; ++j)
            bounds.add(calculateBezierAt(pA, pB, arrT[j]));
    }
    return bounds.getRect();
}

QPointF VTBezierPath::calculateBezierAt(const VTAnchorPoint* pA, const VTAnchorPoint* pB, double dT)
{
    if (!pA || !pB)
        return QPointF();
    const double dU = 1.0 - dT;
    const double dB0 = dU * dU * dU;
    const double dB1 = 3.0 * dU * dU * dT;
    const double dB2 = 3.0 * dU * dT * dT;
    const double dB3 = dT * dT * dT;
    return dB0 * pA->getPosition() + dB1 * pA->getControlPoint2() + dB2 * pB->getControlPoint1() +
           dB3 * pB->getPosition();
}

void VTBezierPath::calculateCurve(const VTAnchorPoint* pA, const VTAnchorPoint* pB,
                                  QList<QPointF>* pLstPoints)
{
    if (!pLstPoints)
        return;
    pLstPoints->clear();
    if (!pA || !pB)
        return;
    if (pA->hasKeyTime() && pA->getKeyTime() == pB->getKeyTime())
        return;

    const QPointF& pt0 = pA->getPosition();
    const QPointF& pt1 = pA->getControlPoint2();
    const QPointF& pt2 = pB->getControlPoint1();
    const QPointF& pt3 = pB->getPosition();
    const double dPolygonLength =
        QLineF(pt0, pt1).length() + QLineF(pt1, pt2).length() + QLineF(pt2, pt3).length();
    // std::round rounds halves away from zero; a length that overflowed gives the bare chord.
    const double dSegments = std::round(dPolygonLength * 0.25);
    const int nSegments =
        std::isfinite(dSegments) ? static_cast<int>(std::min(dSegments, double(kMaxSegmentsPerSpan))) : 0;

    pLstPoints->reserve(nSegments + 2);
    pLstPoints->append(pt0);
    if (nSegments > 0) {
        // Forward differences of P0 + t A + t^2 B + t^3 C: three additions per point.
        const QPointF ptA = 3.0 * (pt1 - pt0);
        const QPointF ptB = 3.0 * (pt0 - 2.0 * pt1 + pt2);
        const QPointF ptC = 3.0 * (pt1 - pt2) - pt0 + pt3;
        const double dStep = 1.0 / (nSegments + 1);
        const double dStep2 = dStep * dStep;
        const double dStep3 = dStep2 * dStep;
        QPointF ptDelta1 = ptA * dStep + ptB * dStep2 + ptC * dStep3;
        QPointF ptDelta2 = ptB * (2.0 * dStep2) + ptC * (6.0 * dStep3);
        const QPointF ptDelta3 = ptC * (6.0 * dStep3);
        QPointF pt = pt0;
        for (int i = 0; i < nSegments; ++i) {
            pt += ptDelta1;
            ptDelta1 += ptDelta2;
            ptDelta2 += ptDelta3;
            pLstPoints->append(pt);
        }
    }
    // The end is appended exactly, not as the sum of the differences.
    pLstPoints->append(pt3);
}
