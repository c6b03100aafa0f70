#include "VTMotionPathKeyframe.h"

#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTKeyValue.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

// Several anchors may stand at one key time; the last of the run that starts at nIndex counts.
int lastOfKeyTime(const QList<VTAnchorPoint*>& lstAnchors, int nIndex)
{
    const int nTime = lstAnchors.at(nIndex)->getKeyTime();
    while (nIndex + 1 < lstAnchors.size() && lstAnchors.at(nIndex + 1)->getKeyTime() == nTime)
        ++nIndex;
    return nIndex;
}

} // namespace

VTMotionPathKeyframe::VTMotionPathKeyframe(VTElement* pElement, const VTLayoutKey& layoutKey)
    : VTKeyframe(VT::ElementProperty(6), pElement, layoutKey)
    , m_pMotionPath(std::make_unique<VTMotionPath>(this))
{}

VTMotionPathKeyframe::~VTMotionPathKeyframe() = default;

double VTMotionPathKeyframe::getSegmentProgress(int nKeyIndex, int nTime, int nFromTime, int nToTime) const
{
    const VTKeyframeSegment* pSegment = segmentAt(nKeyIndex + 1);
    if (!pSegment || pSegment == qobject_cast<const VTKeyframeSegment*>(animationAt(animationCount() - 1)) ||
        !pSegment->hasTransition() || nToTime <= nFromTime)
        return -1.0;
    return pSegment->easingCurve().valueForProgress(double(nTime - nFromTime) / double(nToTime - nFromTime));
}

QPainterPath VTMotionPathKeyframe::buildTravel(int nFrom, int nTo) const
{
    const QList<VTAnchorPoint*>& lstAnchors = m_pMotionPath->getAnchorPoints();
    const QList<QList<QPointF>*>& lstCurves = m_pMotionPath->getCubicBezierCurves();
    QPainterPath path(lstAnchors.at(nFrom)->getPosition());
    for (int i = nFrom; i < nTo && i < lstCurves.size(); ++i) {
        for (const QPointF& pt : *lstCurves.at(i))
            path.lineTo(pt);
    }
    path.lineTo(lstAnchors.at(nTo)->getPosition());
    return path;
}

VTMotionPathKeyframe::PathPosition VTMotionPathKeyframe::locate(int nTime) const
{
    const QList<VTAnchorPoint*>& lstAnchors = m_pMotionPath->getAnchorPoints();
    if (lstAnchors.isEmpty())
        return {};
    int nFirstKeyed = -1;
    int nLastKeyed = -1;
    for (int i = 0; i < lstAnchors.size(); ++i) {
        if (lstAnchors.at(i)->hasKeyTime()) {
            if (nFirstKeyed < 0)
                nFirstKeyed = i;
            nLastKeyed = i;
        }
    }
    if (nFirstKeyed < 0)
        return {lstAnchors.first()->getPosition()};
    if (nTime < lstAnchors.at(nFirstKeyed)->getKeyTime())
        return {lstAnchors.at(nFirstKeyed)->getPosition()};
    if (nTime >= lstAnchors.at(nLastKeyed)->getKeyTime())
        return {lstAnchors.at(nLastKeyed)->getPosition()};

    int nDistinct = 0;
    int nPreviousTime = -1;
    int nA = -1;
    int nKeyOfA = -1;
    for (int i = 0; i < lstAnchors.size(); ++i) {
        const VTAnchorPoint* pAnchor = lstAnchors.at(i);
        if (!pAnchor->hasKeyTime())
            continue;
        if (pAnchor->getKeyTime() != nPreviousTime) {
            ++nDistinct;
            nPreviousTime = pAnchor->getKeyTime();
        }
        if (pAnchor->getKeyTime() == nTime) {
            return {lstAnchors.at(lastOfKeyTime(lstAnchors, i))->getPosition()};
        }
        if (pAnchor->getKeyTime() < nTime) {
            nA = i;
            nKeyOfA = nDistinct - 1;
            continue;
        }
        // The first keyed anchor after the time closes the stretch.
        if (nA < 0)
            return {pAnchor->getPosition()};
        const int nFromTime = lstAnchors.at(nA)->getKeyTime();
        const double dProgress = getSegmentProgress(nKeyOfA, nTime, nFromTime, pAnchor->getKeyTime());
        if (dProgress < 0.0)
            return {lstAnchors.at(nA)->getPosition()};
        // Overshooting curves (back, elastic) stay on the path: it has no length beyond its ends.
        const double dPercent = std::clamp(dProgress, 0.0, 1.0);
        const QPainterPath travel = buildTravel(nA, i);
        if (travel.length() <= 0.0)
            return {lstAnchors.at(nA)->getPosition()};
        // Straight lines only: the percentage runs along the length.
        return {travel.pointAtPercent(dPercent), -travel.angleAtPercent(dPercent)};
    }
    return {lstAnchors.at(nLastKeyed)->getPosition()};
}

QVariant VTMotionPathKeyframe::getValue(int nTime) const
{
    return locate(nTime).ptPosition;
}

double VTMotionPathKeyframe::getOrientation(int nTime) const
{
    double dAngle = std::remainder(locate(nTime).dAngle, 360.0);
    return dAngle == -180.0 ? 180.0 : dAngle;
}

void VTMotionPathKeyframe::applyTime(int nTime)
{
    if (QObject* pTarget = getTargetObject())
        pTarget->setProperty(getPropertyName().constData(), locate(nTime).ptPosition);
}

int VTMotionPathKeyframe::getNewAnchorPointIndex(int nTime) const
{
    const QList<VTAnchorPoint*>& lstAnchors = m_pMotionPath->getAnchorPoints();
    QList<int> lstKeyed;
    for (int i = 0; i < lstAnchors.size(); ++i) {
        if (lstAnchors.at(i)->hasKeyTime())
            lstKeyed.append(i);
    }
    if (lstKeyed.isEmpty() || nTime < lstAnchors.at(lstKeyed.first())->getKeyTime())
        return 0;
    if (nTime >= lstAnchors.at(lstKeyed.last())->getKeyTime()) {
        // After the last anchor of an equal time, else at the end.
        for (int k = lstKeyed.size() - 1; k >= 0; --k) {
            if (lstAnchors.at(lstKeyed.at(k))->getKeyTime() == nTime) {
                return lastOfKeyTime(lstAnchors, lstKeyed.at(k)) + 1;
            }
        }
        return lstAnchors.size();
    }
    int nDistinct = 0;
    int nPreviousTime = -1;
    for (int k = 0; k < lstKeyed.size(); ++k) {
        const int i = lstKeyed.at(k);
        const int nKeyTime = lstAnchors.at(i)->getKeyTime();
        if (nKeyTime != nPreviousTime) {
            ++nDistinct;
            nPreviousTime = nKeyTime;
        }
        if (nKeyTime == nTime) {
            return lastOfKeyTime(lstAnchors, i) + 1;
        }
        const int j = k + 1 < lstKeyed.size() ? lstKeyed.at(k + 1) : -1;
        if (j < 0 || lstAnchors.at(j)->getKeyTime() <= nTime)
            continue;
        const double dProgress =
            getSegmentProgress(nDistinct - 1, nTime, nKeyTime, lstAnchors.at(j)->getKeyTime());
        if (dProgress < 0.0)
            return i + 1;
        const QList<QList<QPointF>*>& lstCurves = m_pMotionPath->getCubicBezierCurves();
        QVector<double> vecLengths;
        double dTotal = 0.0;
        for (int s = i; s < j; ++s) {
            QPainterPath span(lstAnchors.at(s)->getPosition());
            if (const QList<QPointF>* pCurve = lstCurves.value(s, nullptr)) {
                for (const QPointF& pt : *pCurve)
                    span.lineTo(pt);
            }
            span.lineTo(lstAnchors.at(s + 1)->getPosition());
            vecLengths.append(span.length());
            dTotal += span.length();
        }
        double dRunning = 0.0;
        for (int s = 0; s < vecLengths.size() && dTotal > 0.0; ++s) {
            dRunning += vecLengths.at(s);
            if (dRunning / dTotal > dProgress)
                return i + s + 1;
        }
        return j;
    }
    return lstAnchors.size();
}

void VTMotionPathKeyframe::moveAllKeyValues(int nDelta)
{
    for (VTAnchorPoint* pAnchor : m_pMotionPath->getAnchorPoints()) {
        if (pAnchor->hasKeyTime())
            pAnchor->setKeyTime(pAnchor->getKeyTime() + nDelta);
    }
    VTKeyframe::moveAllKeyValues(nDelta);
}

void VTMotionPathKeyframe::serialize(QJsonObject& json) const
{
    VTKeyframe::serialize(json);
    if (json.isEmpty())
        return;
    QJsonObject path;
    m_pMotionPath->serialize(path);
    json.insert(QStringLiteral("motionPath"), path);
}

bool VTMotionPathKeyframe::parse(const QJsonObject& json, QStringList* pProblems)
{
    bool bClean = true;
    m_bReadAbsolutePath =
        !json.contains(QStringLiteral("motionPath")) && json.contains(QStringLiteral("motion_path"));
    const QJsonValue path =
        json.value(m_bReadAbsolutePath ? QStringLiteral("motion_path") : QStringLiteral("motionPath"));
    if (!path.isUndefined()) {
        QStringList lstWarnings;
        if (!m_pMotionPath->parse(path.toObject(), &lstWarnings) || !path.isObject()) {
            bClean = false;
            if (pProblems) {
                pProblems->append(tr("The motion path could not be read whole."));
                *pProblems += lstWarnings;
            }
        }
    }
    return VTKeyframe::parse(json, pProblems) && bClean;
}

void VTMotionPathKeyframe::appendMove(QJsonArray& array, const VTKeyValue* pFrom, const VTKeyValue* pTo,
                                      int nEasing, bool bForEditor) const
{
    QJsonObject entry = createEntry(pFrom, pTo, pFrom == pTo);
    if (pFrom != pTo)
        entry.insert(QStringLiteral("es"), nEasing);
    const QList<int> lstStart = m_pMotionPath->getKeyPointIndexes(pFrom->getTime());
    const QList<int> lstEnd = m_pMotionPath->getKeyPointIndexes(pTo->getTime());
    QJsonArray rows;
    if (!lstStart.isEmpty() && !lstEnd.isEmpty()) {
        const bool bSameTime = pFrom->getTime() == pTo->getTime();
        const int nFrom = bSameTime ? lstStart.first() : lstStart.last();
        const int nTo = bSameTime ? lstStart.last() : lstEnd.first();
        for (int i = nFrom; i <= nTo; ++i) {
            const VTAnchorPoint* pAnchor = m_pMotionPath->getAnchorPointAt(i);
            QJsonArray row{pAnchor->getPosition().x(),      pAnchor->getPosition().y(),
                           pAnchor->getControlPoint1().x(), pAnchor->getControlPoint1().y(),
                           pAnchor->getControlPoint2().x(), pAnchor->getControlPoint2().y()};
            if (bForEditor) {
                row.append(i);
                row.append(pAnchor->getKeyTime());
            }
            rows.append(row);
        }
    }
    entry.insert(QStringLiteral("cp"), rows);
    const auto* pAnimation = qobject_cast<const VTAnimation*>(parent());
    entry.insert(QStringLiteral("ao"), pAnimation && pAnimation->isAutoOrient());
    array.append(entry);
}
