#include "VTKeyframeEvaluator.h"

#include "IUtils.h"
#include "VTKeyValue.h"
#include "VTKeyframeSegment.h"
#include "VTTimeline.h"

#include <QColor>
#include <QMetaObject>
#include <QPointF>

#include <algorithm>
#include <cmath>
#include <limits>

void VTKeyframeEvaluator::toNumbers(const QVariant& value, double* pOut) const
{
    pOut[0] = pOut[1] = pOut[2] = pOut[3] = 0.0;
    switch (m_nValueKind) {
    case ValueKind::Number:
        pOut[0] = value.toDouble();
        break;
    case ValueKind::Integer: {
        // Qt turns a double into an int property with qRound64, which takes halves upwards:
        // -10.5 becomes -10, where std::round would give -11.
        const double dValue = value.toDouble();
        pOut[0] = std::isfinite(dValue)
                      ? IUtils::clampToInt(
                            double(qRound64(std::clamp(dValue, double(std::numeric_limits<int>::min()),
                                                       double(std::numeric_limits<int>::max())))))
                      : 0.0;
        break;
    }
    case ValueKind::Point: {
        const QPointF pt = value.toPointF();
        pOut[0] = pt.x();
        pOut[1] = pt.y();
        break;
    }
    case ValueKind::Color: {
        const QColor color = value.value<QColor>();
        pOut[0] = color.red();
        pOut[1] = color.green();
        pOut[2] = color.blue();
        pOut[3] = color.alpha();
        break;
    }
    }
}

QVariant VTKeyframeEvaluator::toVariant(const double* pValues) const
{
    switch (m_nValueKind) {
    case ValueKind::Integer:
        return IUtils::clampToInt(pValues[0]);
    case ValueKind::Point:
        return QPointF(pValues[0], pValues[1]);
    case ValueKind::Color:
        return QColor(int(pValues[0]), int(pValues[1]), int(pValues[2]), int(pValues[3]));
    case ValueKind::Number:
        break;
    }
    return pValues[0];
}

QVariant VTKeyframeEvaluator::convert(const QVariant& value) const
{
    switch (m_nValueKind) {
    case ValueKind::Point:
        return value.toPointF();
    case ValueKind::Color:
        return value.value<QColor>();
    default:
        return value.toDouble();
    }
}

const QEasingCurve* VTKeyframeEvaluator::findSharedCurve(const QEasingCurve& curve)
{
    static const std::vector<QEasingCurve> s_vecCurves = [] {
        std::vector<QEasingCurve> vecCurves;
        for (int nType = QEasingCurve::Linear; nType < QEasingCurve::Custom; ++nType)
            vecCurves.push_back(VTTimeline::createEasingCurve(QEasingCurve::Type(nType)));
        return vecCurves;
    }();
    const int nType = curve.type();
    if (nType >= 0 && nType < int(s_vecCurves.size()) && s_vecCurves[size_t(nType)] == curve)
        return &s_vecCurves[size_t(nType)];
    return nullptr;
}

void VTKeyframeEvaluator::rebuild(const QList<VTKeyValue*>& lstKeys,
                                  const QList<const VTKeyframeSegment*>& lstSegments)
{
    m_vecKeys.clear();
    m_vecKeys.reserve(size_t(lstKeys.size()));
    for (int i = 0; i < lstKeys.size(); ++i) {
        const VTKeyframeSegment* pSegment = i + 1 < lstKeys.size() ? lstSegments.value(i) : nullptr;
        const QEasingCurve curve = pSegment ? pSegment->easingCurve() : QEasingCurve();
        const QEasingCurve* pShared = findSharedCurve(curve);
        CachedKey cached{
            lstKeys.at(i)->getTime(),        pSegment && pSegment->hasTransition(), {}, {}, pShared,
            pShared ? QEasingCurve() : curve};
        toNumbers(lstKeys.at(i)->getValue(), cached.value);
        toNumbers(lstKeys.at(i)->getValueMinus(), cached.valueMinus);
        m_vecKeys.push_back(std::move(cached));
    }
    // The own curves have found their final place only now.
    for (CachedKey& key : m_vecKeys) {
        if (!key.pCurve)
            key.pCurve = &key.ownCurve;
    }
    m_bValid = true;
}

bool VTKeyframeEvaluator::evaluate(int nTime, double* pOut) const
{
    if (m_vecKeys.empty())
        return false;
    const auto it = std::upper_bound(m_vecKeys.begin(), m_vecKeys.end(), nTime,
                                     [](int nValue, const CachedKey& key) { return nValue < key.nTime; });
    // Before the first key the property arrives at it; from a key on it holds the key's value.
    if (it == m_vecKeys.begin()) {
        std::copy(it->valueMinus, it->valueMinus + 4, pOut);
        return true;
    }
    const size_t nIndex = size_t(it - m_vecKeys.begin()) - 1;
    const CachedKey& from = m_vecKeys[nIndex];
    if (it == m_vecKeys.end() || !from.bTransition) {
        std::copy(from.value, from.value + 4, pOut);
        return true;
    }
    const CachedKey& to = *it;
    const double dProgress =
        from.pCurve->valueForProgress(double(nTime - from.nTime) / double(to.nTime - from.nTime));
    switch (m_nValueKind) {
    case ValueKind::Number:
        pOut[0] = from.value[0] + (to.valueMinus[0] - from.value[0]) * dProgress;
        break;
    case ValueKind::Integer:
        pOut[0] = std::trunc(from.value[0] + (to.valueMinus[0] - from.value[0]) * dProgress);
        break;
    case ValueKind::Point:
        pOut[0] = from.value[0] + (to.valueMinus[0] - from.value[0]) * dProgress;
        pOut[1] = from.value[1] + (to.valueMinus[1] - from.value[1]) * dProgress;
        break;
    case ValueKind::Color:
        for (int i = 0; i < 4; ++i)
            pOut[i] = std::clamp(std::trunc(from.value[i] + (to.valueMinus[i] - from.value[i]) * dProgress),
                                 0.0, 255.0);
        break;
    }
    return true;
}

void VTKeyframeEvaluator::write(QObject* pTarget, int nPropertyIndex, const double* pValues) const
{
    int nStatus = -1;
    int nFlags = 0;
    auto metacall = [&](void* pValue) {
        void* argv[] = {pValue, nullptr, &nStatus, &nFlags};
        QMetaObject::metacall(pTarget, QMetaObject::WriteProperty, nPropertyIndex, argv);
    };
    switch (m_nValueKind) {
    case ValueKind::Number: {
        double dValue = pValues[0];
        metacall(&dValue);
        break;
    }
    case ValueKind::Integer: {
        int nValue = IUtils::clampToInt(pValues[0]);
        metacall(&nValue);
        break;
    }
    case ValueKind::Point: {
        QPointF ptValue(pValues[0], pValues[1]);
        metacall(&ptValue);
        break;
    }
    case ValueKind::Color: {
        QColor color = QColor(int(pValues[0]), int(pValues[1]), int(pValues[2]), int(pValues[3]));
        metacall(&color);
        break;
    }
    }
}
