#pragma once

#include <QEasingCurve>
#include <QList>
#include <QVariant>

#include <vector>

class QObject;
class VTKeyValue;
class VTKeyframeSegment;

// The numbers behind a keyframe's value at a time: the keys and segment settings copied into flat
// arrays, the segment found by binary search, the segment's own easing curve, and interpolation
// the way Qt's interpolators do it for the bound property's type (doubles and points per
// component; ints rounded once and then truncated; colours per 8-bit channel, truncated).
// Writing goes through the typed meta-call that Qt's property animation also uses.
class VTKeyframeEvaluator final
{
public:
    enum class ValueKind
    {
        Number,
        Integer,
        Point,
        Color,
    };

    ValueKind getValueKind() const { return m_nValueKind; }
    void setValueKind(ValueKind nKind)
    {
        m_nValueKind = nKind;
        m_bValid = false;
    }
    bool isValid() const { return m_bValid; }
    void invalidate() { m_bValid = false; }
    // lstSegments[i] is the segment that leaves key i; null or the tail for the last key.
    void rebuild(const QList<VTKeyValue*>& lstKeys, const QList<const VTKeyframeSegment*>& lstSegments);

    // The numbers of the value at nTime; false without keys.
    bool evaluate(int nTime, double* pOut) const;
    QVariant toVariant(const double* pValues) const;
    QVariant convert(const QVariant& value) const;
    void write(QObject* pTarget, int nPropertyIndex, const double* pValues) const;

private:
    // A key with the segment that leaves it, side by side so that a seek touches one block. The
    // curve is one of a shared set when the segment uses a standard curve, which keeps the few
    // curves a scene uses warm in the cache; a curve of its own is held in ownCurve.
    struct CachedKey
    {
        int nTime;
        bool bTransition;
        double value[4];
        double valueMinus[4];
        const QEasingCurve* pCurve;
        QEasingCurve ownCurve;
    };
    static const QEasingCurve* findSharedCurve(const QEasingCurve& curve);

    void toNumbers(const QVariant& value, double* pOut) const;

    ValueKind m_nValueKind = ValueKind::Number;
    bool m_bValid = false;
    std::vector<CachedKey> m_vecKeys;
};
