#include "VTKeyframe.h"

#include "IUtils.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTElement.h"
#include "VTKeyValue.h"
#include "VTKeyframeSegment.h"
#include "VTMotionPathKeyframe.h"
#include "VTTimeline.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonObject>
#include <QMetaProperty>
#include <QPointF>

#include <algorithm>
#include <cmath>

namespace {

const QString s_strTime = QStringLiteral("time");
const QString s_strType = QStringLiteral("type");
const QString s_strValue = QStringLiteral("value");
const QString s_strValueMinus = QStringLiteral("value_minus");
const QString s_strKeyValues = QStringLiteral("keyValues");
const QString s_strSegments = QStringLiteral("keyframeSegments");
const QString s_strHasTransition = QStringLiteral("has_transition");
const QString s_strEasing = QStringLiteral("easing_curve");

QJsonObject valueToJson(const QVariant& value)
{
    QJsonObject json;
    switch (value.userType()) {
    case QMetaType::QPoint:
        json.insert(QStringLiteral("x"), value.toPoint().x());
        json.insert(QStringLiteral("y"), value.toPoint().y());
        break;
    case QMetaType::QPointF:
        json.insert(QStringLiteral("x"), value.toPointF().x());
        json.insert(QStringLiteral("y"), value.toPointF().y());
        break;
    case QMetaType::QColor:
        json.insert(QStringLiteral("rgba"), static_cast<qint32>(value.value<QColor>().rgba()));
        break;
    default:
        json.insert(QStringLiteral("val"), value.toDouble());
        break;
    }
    return json;
}

VTKeyframeEvaluator::ValueKind valueKindOf(int nMetaType, bool& bKnown)
{
    bKnown = true;
    switch (nMetaType) {
    case QMetaType::Int:
        return VTKeyframeEvaluator::ValueKind::Integer;
    case QMetaType::QPointF:
        return VTKeyframeEvaluator::ValueKind::Point;
    case QMetaType::QColor:
        return VTKeyframeEvaluator::ValueKind::Color;
    case QMetaType::Double:
        return VTKeyframeEvaluator::ValueKind::Number;
    default:
        bKnown = false;
        return VTKeyframeEvaluator::ValueKind::Number;
    }
}

} // namespace

VTKeyframe* VTKeyframe::createKeyframe(VT::ElementProperty nProperty, VTElement* pElement,
                                       const VTLayoutKey& layoutKey)
{
    if (nProperty == VT::ElementProperty(6))
        return new VTMotionPathKeyframe(pElement, layoutKey);
    return new VTKeyframe(nProperty, pElement, layoutKey);
}

VTKeyframe::VTKeyframe(VT::ElementProperty nProperty, VTElement* pElement, const VTLayoutKey& layoutKey)
    : QSequentialAnimationGroup(nullptr)
    , m_nProperty(nProperty)
    , m_strUnitSign(VTAnimatedProperty::getUnitSign(pElement, nProperty, layoutKey))
    , m_pTarget(VTAnimatedProperty::getTargetObject(pElement, nProperty, layoutKey))
{
    // The bound property's own type decides, as it does for Qt's interpolation; without a target
    // the property's key value type does.
    bool bKnown = false;
    ValueKind nKind = valueKindOf(VTAnimatedProperty::getValueType(nProperty), bKnown);
    if (m_pTarget) {
        m_nPropertyIndex = m_pTarget->metaObject()->indexOfProperty(getPropertyName().constData());
        if (m_nPropertyIndex >= 0) {
            const ValueKind nTargetKind =
                valueKindOf(m_pTarget->metaObject()->property(m_nPropertyIndex).userType(), bKnown);
            if (bKnown)
                nKind = nTargetKind;
            else
                m_nPropertyIndex = -1;
        }
    }
    m_evaluator.setValueKind(nKind);
}

VTKeyframe::~VTKeyframe()
{
    deleteKeysAndSegments();
}

void VTKeyframe::deleteKeysAndSegments()
{
    // The segments point at the keys: they go first.
    clear();
    m_pLeadIn = nullptr;
    m_pTail = nullptr;
    qDeleteAll(m_lstKeyValues);
    m_lstKeyValues.clear();
    m_pLeadInKey.reset();
    m_pTailKey.reset();
    invalidateCache();
}

VTKeyframeSegment* VTKeyframe::segmentAt(int nChild) const
{
    return nChild >= 0 && nChild < animationCount() ? qobject_cast<VTKeyframeSegment*>(animationAt(nChild))
                                                    : nullptr;
}

void VTKeyframe::addKeyValue(VTKeyValue* pKey, QEasingCurve::Type nEasing, bool bTransition)
{
    if (!pKey || m_lstKeyValues.contains(pKey))
        return;
    int nIndex = 0;
    while (nIndex < m_lstKeyValues.size() && m_lstKeyValues.at(nIndex)->getTime() < pKey->getTime())
        ++nIndex;
    insertKeyValue(nIndex, pKey, VTTimeline::createEasingCurve(nEasing), bTransition);
}

void VTKeyframe::insertKeyValue(int nIndex, VTKeyValue* pKey, const QEasingCurve& curve, bool bTransition)
{
    const bool bEffective = bTransition && canHaveTransition();
    const QByteArray name = getPropertyName();
    auto makeSegment = [&](VTKeyValue* pFrom, VTKeyValue* pTo, bool bHasTransition) {
        auto* pSegment = new VTKeyframeSegment(m_pTarget, name, this, pFrom, pTo);
        pSegment->setTransition(bHasTransition);
        pSegment->setEasing(curve);
        pSegment->updateAnimation();
        return pSegment;
    };

    if (m_lstKeyValues.isEmpty()) {
        m_lstKeyValues.append(pKey);
        m_pLeadInKey = std::make_unique<VTKeyValue>(0, pKey->getValueMinus());
        m_pLeadIn = makeSegment(m_pLeadInKey.get(), pKey, false);
        addAnimation(m_pLeadIn);
        m_pTailKey = std::make_unique<VTKeyValue>(pKey->getTime(), pKey->getValue());
        m_pTail = makeSegment(pKey, m_pTailKey.get(), false);
        addAnimation(m_pTail);
    } else if (nIndex < m_lstKeyValues.size()) {
        nIndex = qMax(0, nIndex);
        VTKeyValue* pNext = m_lstKeyValues.at(nIndex);
        m_lstKeyValues.insert(nIndex, pKey);
        VTKeyframeSegment* pLeft = segmentAt(nIndex);
        pLeft->setEndKeyValue(pKey);
        if (nIndex == 0) {
            m_pLeadInKey->setValue(pKey->getValueMinus());
            m_pLeadInKey->setValueMinus(pKey->getValueMinus());
        }
        pLeft->updateAnimation();
        VTKeyframeSegment* pSegment =
            makeSegment(pKey, pNext, bEffective && pKey->getValue() != pNext->getValueMinus());
        insertAnimation(nIndex + 1, pSegment);
    } else {
        VTKeyValue* pLast = m_lstKeyValues.last();
        // A new child joins the group at its end on construction; it moves in front of the tail.
        VTKeyframeSegment* pSegment =
            makeSegment(pLast, pKey, bEffective && pLast->getValue() != pKey->getValueMinus());
        insertAnimation(indexOfAnimation(m_pTail), pSegment);
        m_lstKeyValues.append(pKey);
        m_pTail->setStartKeyValue(pKey);
        m_pTailKey->setTime(pKey->getTime());
        m_pTailKey->setValue(pKey->getValue());
        m_pTailKey->setValueMinus(pKey->getValue());
        m_pTail->updateAnimation();
    }
    invalidateCache();
}

VTKeyframeSegment* VTKeyframe::detachKeyValue(VTKeyValue* pKey)
{
    const int nIndex = m_lstKeyValues.indexOf(pKey);
    if (nIndex < 0)
        return nullptr;
    invalidateCache();
    if (m_lstKeyValues.size() == 1) {
        m_lstKeyValues.clear();
        clear();
        m_pLeadIn = nullptr;
        m_pTail = nullptr;
        m_pLeadInKey.reset();
        m_pTailKey.reset();
        return nullptr;
    }
    VTKeyframeSegment* pTaken = nullptr;
    if (nIndex == m_lstKeyValues.size() - 1) {
        VTKeyValue* pPrevious = m_lstKeyValues.at(nIndex - 1);
        m_pTail->setStartKeyValue(pPrevious);
        m_pTailKey->setTime(pPrevious->getTime());
        m_pTailKey->setValue(pPrevious->getValue());
        m_pTailKey->setValueMinus(pPrevious->getValue());
        pTaken = qobject_cast<VTKeyframeSegment*>(takeAnimation(nIndex));
        m_lstKeyValues.removeAt(nIndex);
        m_pTail->updateAnimation();
    } else {
        VTKeyValue* pNext = m_lstKeyValues.at(nIndex + 1);
        VTKeyframeSegment* pLeft = segmentAt(nIndex);
        pLeft->setEndKeyValue(pNext);
        if (nIndex == 0) {
            m_pLeadInKey->setValue(pNext->getValueMinus());
            m_pLeadInKey->setValueMinus(pNext->getValueMinus());
        }
        pLeft->updateAnimation();
        pTaken = qobject_cast<VTKeyframeSegment*>(takeAnimation(nIndex + 1));
        m_lstKeyValues.removeAt(nIndex);
    }
    return pTaken;
}

void VTKeyframe::changeKeyValue(VTKeyValue* pKey, const QVariant& value, const QVariant& valueMinus)
{
    const int nIndex = m_lstKeyValues.indexOf(pKey);
    if (nIndex < 0)
        return;
    if (valueMinus.isValid())
        pKey->setValueMinus(valueMinus);
    else if (!pKey->isJump())
        pKey->setValueMinus(value);
    pKey->setValue(value);
    if (nIndex == 0) {
        m_pLeadInKey->setValue(pKey->getValueMinus());
        m_pLeadInKey->setValueMinus(pKey->getValueMinus());
    }
    segmentAt(nIndex)->updateAnimation();
    if (nIndex < m_lstKeyValues.size() - 1) {
        segmentAt(nIndex + 1)->updateAnimation();
    } else {
        m_pTailKey->setValue(pKey->getValue());
        m_pTailKey->setValueMinus(pKey->getValue());
        m_pTail->updateAnimation();
    }
    invalidateCache();
}

void VTKeyframe::moveKeyValue(VTKeyValue* pKey, int nTime)
{
    const int nIndex = m_lstKeyValues.indexOf(pKey);
    if (nIndex < 0)
        return;
    VTKeyframeSegment* pBefore = segmentAt(nIndex);
    VTKeyframeSegment* pAfter = segmentAt(nIndex + 1);
    int nClamped = qMax(nTime, pBefore->getStartKeyValue()->getTime());
    if (nIndex < m_lstKeyValues.size() - 1)
        nClamped = qMin(nClamped, pAfter->getEndKeyValue()->getTime());
    pKey->setTime(nClamped);
    if (nIndex == m_lstKeyValues.size() - 1) {
        m_pTailKey->setTime(nClamped);
        m_pTailKey->setValue(pKey->getValue());
        m_pTailKey->setValueMinus(pKey->getValue());
    }
    pBefore->updateAnimation();
    pAfter->updateAnimation();
    invalidateCache();
}

void VTKeyframe::changeAllKeyValues(const QVariant& oldValue, const QVariant& newValue)
{
    if (m_lstKeyValues.isEmpty())
        return;
    auto shift = [&](const QVariant& value) -> QVariant {
        switch (getValueKind()) {
        case ValueKind::Color: {
            // Whole 32-bit rgba words are added, as the user's colour pick moved the base colour.
            const quint32 nDelta =
                qvariant_cast<QColor>(newValue).rgba() - qvariant_cast<QColor>(oldValue).rgba();
            return QColor::fromRgba(qvariant_cast<QColor>(value).rgba() + nDelta);
        }
        case ValueKind::Point:
            return value.toPointF() + (newValue.toPointF() - oldValue.toPointF());
        default:
            return clampToRange(value.toDouble() + (newValue.toDouble() - oldValue.toDouble()));
        }
    };
    for (VTKeyValue* pKey : qAsConst(m_lstKeyValues)) {
        pKey->setValue(shift(pKey->getValue()));
        pKey->setValueMinus(shift(pKey->getValueMinus()));
    }
    m_pLeadInKey->setValue(m_lstKeyValues.first()->getValueMinus());
    m_pLeadInKey->setValueMinus(m_lstKeyValues.first()->getValueMinus());
    m_pTailKey->setValue(m_lstKeyValues.last()->getValue());
    m_pTailKey->setValueMinus(m_lstKeyValues.last()->getValue());
    updateAllSegments();
}

QVariant VTKeyframe::clampToRange(const QVariant& value) const
{
    if (!VTAnimatedProperty::hasRange(m_nProperty))
        return value;
    const QPair<int, int> range = getMinMaxKeyValue();
    const double dScale = m_strUnitSign == QLatin1String("%") ? 100.0 : 1.0;
    return std::clamp(value.toDouble(), range.first / dScale, range.second / dScale);
}

void VTKeyframe::moveAllKeyValues(int nDelta)
{
    if (m_lstKeyValues.isEmpty())
        return;
    for (VTKeyValue* pKey : qAsConst(m_lstKeyValues))
        pKey->setTime(IUtils::clampToInt(double(pKey->getTime()) + nDelta));
    m_pTailKey->setTime(m_lstKeyValues.last()->getTime());
    updateAllSegments();
}

void VTKeyframe::changeUnit(const QString& unitFrom, const QString& unitTo, double dFactor)
{
    if (unitFrom == unitTo)
        return;
    auto convert = [&](const QVariant& value) -> QVariant {
        if (unitTo == QLatin1String("px"))
            return value.toDouble() * dFactor;
        if (unitTo == QLatin1String("%"))
            return value.toDouble() == 0.0 || dFactor == 0.0 ? 0.0 : value.toDouble() / dFactor;
        return value;
    };
    for (VTKeyValue* pKey : qAsConst(m_lstKeyValues))
        changeKeyValue(pKey, convert(pKey->getValue()), convert(pKey->getValueMinus()));
}

void VTKeyframe::invertKeyValues(int nFirst, int nLast)
{
    if (nFirst < 0 || nFirst >= nLast || nLast >= m_lstKeyValues.size())
        return;
    VTKeyValue* pFirst = m_lstKeyValues.at(nFirst);
    VTKeyValue* pLast = m_lstKeyValues.at(nLast);
    const int nStart = pFirst->getTime();
    const int nEnd = pLast->getTime();
    const QVariant firstValue = pFirst->getValue();
    const QVariant lastValueMinus = pLast->getValueMinus();
    const bool bKeepBefore = pFirst->isJump() && (nFirst == 0 || !segmentAt(nFirst)->hasTransition());
    const bool bKeepAfter =
        pLast->isJump() && (nLast == m_lstKeyValues.size() - 1 || !segmentAt(nLast + 1)->hasTransition());

    // Each position takes its partner's mirrored time, so the list stays sorted.
    QVector<int> vecTimes;
    for (int i = nFirst; i <= nLast; ++i)
        vecTimes.append(m_lstKeyValues.at(i)->getTime());
    for (int i = nFirst + 1; i < nLast; ++i)
        m_lstKeyValues.at(i)->setTime(nStart + nEnd - vecTimes.at(nLast - i));

    for (int a = nFirst, b = nLast; a <= b; ++a, --b) {
        VTKeyValue* pA = m_lstKeyValues.at(a);
        VTKeyValue* pB = m_lstKeyValues.at(b);
        const QVariant aValue = pA->getValue();
        const QVariant aValueMinus = pA->getValueMinus();
        pA->setValue(pB->getValueMinus());
        pA->setValueMinus(pB->getValue());
        if (a != b) {
            pB->setValue(aValueMinus);
            pB->setValueMinus(aValue);
        }
    }
    if (bKeepBefore)
        pFirst->setValueMinus(lastValueMinus);
    if (bKeepAfter)
        pLast->setValue(firstValue);
    if (nFirst == 0) {
        m_pLeadInKey->setValue(pFirst->getValueMinus());
        m_pLeadInKey->setValueMinus(pFirst->getValueMinus());
    }
    if (nLast == m_lstKeyValues.size() - 1) {
        m_pTailKey->setValue(pLast->getValue());
        m_pTailKey->setValueMinus(pLast->getValue());
    }

    for (int a = nFirst + 1, b = nLast; a < b; ++a, --b) {
        VTKeyframeSegment* pA = segmentAt(a);
        VTKeyframeSegment* pB = segmentAt(b);
        const bool bTransition = pA->hasTransition();
        const QEasingCurve curve = pA->easingCurve();
        pA->setTransition(pB->hasTransition());
        pA->setEasing(pB->easingCurve());
        pB->setTransition(bTransition);
        pB->setEasing(curve);
    }
    updateAllSegments();
}

void VTKeyframe::updateAllSegments()
{
    for (int i = 0; i < animationCount(); ++i) {
        if (VTKeyframeSegment* pSegment = segmentAt(i))
            pSegment->updateAnimation();
    }
    invalidateCache();
}

int VTKeyframe::duration() const
{
    return m_lstKeyValues.isEmpty() ? 0 : qMax(0, m_lstKeyValues.last()->getTime());
}

VTKeyValue* VTKeyframe::getKeyValue(int nTime) const
{
    for (VTKeyValue* pKey : m_lstKeyValues) {
        if (pKey->getTime() == nTime)
            return pKey;
    }
    return nullptr;
}

int VTKeyframe::getStartTime() const
{
    return m_lstKeyValues.isEmpty() ? 0 : m_lstKeyValues.first()->getTime();
}

int VTKeyframe::getEndTime() const
{
    return m_lstKeyValues.isEmpty() ? 0 : m_lstKeyValues.last()->getTime();
}

VTKeyframeSegment* VTKeyframe::getKeyframeSegment(int nTime) const
{
    for (VTKeyframeSegment* pSegment : getKeyframeSegments()) {
        if (pSegment->getStartKeyValue()->getTime() < nTime && nTime < pSegment->getEndKeyValue()->getTime())
            return pSegment;
    }
    return nullptr;
}

QList<VTKeyframeSegment*> VTKeyframe::getKeyframeSegments() const
{
    QList<VTKeyframeSegment*> lstSegments;
    for (int i = 1; i < animationCount() - 1; ++i)
        lstSegments.append(segmentAt(i));
    return lstSegments;
}

QPair<VTKeyframeSegment*, VTKeyframeSegment*> VTKeyframe::getAdjacentSegments(const VTKeyValue* pKey) const
{
    const int nIndex = m_lstKeyValues.indexOf(const_cast<VTKeyValue*>(pKey));
    if (nIndex < 0)
        return {nullptr, nullptr};
    VTKeyframeSegment* pBefore = nIndex > 0 ? segmentAt(nIndex) : nullptr;
    VTKeyframeSegment* pAfter = nIndex < m_lstKeyValues.size() - 1 ? segmentAt(nIndex + 1) : nullptr;
    return {pBefore, pAfter};
}

QByteArray VTKeyframe::getPropertyName() const
{
    return VTAnimatedProperty::getPropertyName(m_nProperty);
}

QString VTKeyframe::getName() const
{
    return VTAnimatedProperty::getName(m_nProperty);
}

QString VTKeyframe::getExportPropertyName() const
{
    return VTAnimatedProperty::getExportName(m_nProperty);
}

QPair<int, int> VTKeyframe::getMinMaxKeyValue() const
{
    return VTAnimatedProperty::getMinMax(m_nProperty);
}

VTElement* VTKeyframe::getAnimationElement() const
{
    const auto* pAnimation = qobject_cast<const VTAnimation*>(parent());
    return pAnimation ? pAnimation->getElement() : nullptr;
}

// Evaluation.

const VTKeyframeEvaluator& VTKeyframe::getEvaluator() const
{
    if (!m_evaluator.isValid()) {
        QList<const VTKeyframeSegment*> lstSegments;
        for (int i = 1; i < animationCount(); ++i)
            lstSegments.append(segmentAt(i));
        m_evaluator.rebuild(m_lstKeyValues, lstSegments);
    }
    return m_evaluator;
}

QVariant VTKeyframe::getValue(int nTime) const
{
    double values[4];
    const VTKeyframeEvaluator& evaluator = getEvaluator();
    return evaluator.evaluate(nTime, values) ? evaluator.toVariant(values) : QVariant();
}

void VTKeyframe::applyTime(int nTime)
{
    double values[4];
    if (m_nPropertyIndex < 0 || !m_pTarget)
        return;
    const VTKeyframeEvaluator& evaluator = getEvaluator();
    if (evaluator.evaluate(nTime, values))
        evaluator.write(m_pTarget, m_nPropertyIndex, values);
}

void VTKeyframe::updateCurrentTime(int nCurrentTime)
{
    applyTime(nCurrentTime);
}

// Files.

void VTKeyframe::serialize(QJsonObject& json) const
{
    const VTElement* pElement = getAnimationElement();
    if (!pElement)
        return;
    json.insert(QStringLiteral("elementId"), pElement->getId());
    json.insert(QStringLiteral("duration"), totalDuration());
    json.insert(s_strType, static_cast<int>(m_nProperty));
    json.insert(QStringLiteral("unit"), m_strUnitSign);
    QJsonArray keys;
    for (const VTKeyValue* pKey : m_lstKeyValues) {
        QJsonObject key;
        key.insert(s_strTime, pKey->getTime());
        key.insert(s_strType, pKey->getValue().userType());
        key.insert(s_strValue, valueToJson(pKey->getValue()));
        key.insert(s_strValueMinus, valueToJson(pKey->getValueMinus()));
        keys.append(key);
    }
    json.insert(s_strKeyValues, keys);
    QJsonArray segments;
    for (const VTKeyframeSegment* pSegment : getKeyframeSegments()) {
        QJsonObject segment;
        pSegment->serialize(segment);
        segments.append(segment);
    }
    json.insert(s_strSegments, segments);
}

bool VTKeyframe::parse(const QJsonObject& json, QStringList* pProblems)
{
    bool bClean = true;
    auto note = [&](const QString& problem) {
        bClean = false;
        if (pProblems)
            pProblems->append(problem);
    };
    const QString name = VTAnimatedProperty::getName_NoTR(m_nProperty);
    if (json.value(QStringLiteral("unit")).isString())
        m_strUnitSign = json.value(QStringLiteral("unit")).toString();

    const QJsonValue keysValue = json.value(s_strKeyValues);
    const QJsonArray keys = keysValue.toArray();
    if (!keysValue.isUndefined() && !keysValue.isArray())
        note(tr("The keys of the %1 keyframe are not a list and were left out.").arg(name));
    if (keys.size() > kMaxKeyCount) {
        note(tr("The %1 keyframe holds more than %2 keys and was left out.").arg(name).arg(kMaxKeyCount));
        return false;
    }

    auto readValue = [&](const QJsonObject& object, int nType, bool& bOk) -> QVariant {
        bOk = true;
        if (nType == QMetaType::QColor || getValueKind() == ValueKind::Color) {
            bOk = object.value(QStringLiteral("rgba")).isDouble();
            return QColor::fromRgba(static_cast<quint32>(object.value(QStringLiteral("rgba")).toInt()));
        }
        if (nType == QMetaType::QPoint || nType == QMetaType::QPointF || getValueKind() == ValueKind::Point) {
            bOk =
                object.value(QStringLiteral("x")).isDouble() && object.value(QStringLiteral("y")).isDouble();
            return QPointF(object.value(QStringLiteral("x")).toDouble(),
                           object.value(QStringLiteral("y")).toDouble());
        }
        bOk = object.value(QStringLiteral("val")).isDouble();
        return object.value(QStringLiteral("val")).toDouble();
    };

    // Keys are sorted by time, keeping the file's order where times are equal, and appended, so
    // that a project reads back the way it was saved.
    QList<VTKeyValue*> lstRead;
    for (const QJsonValue& item : keys) {
        const QJsonObject key = item.toObject();
        if (!item.isObject() || !key.value(s_strTime).isDouble()) {
            note(tr("A key of the %1 keyframe has no time and was left out.").arg(name));
            continue;
        }
        const int nType = key.value(s_strType).toInt();
        bool bValueOk = true;
        bool bMinusOk = true;
        const QVariant value =
            m_evaluator.convert(readValue(key.value(s_strValue).toObject(), nType, bValueOk));
        QVariant valueMinus = value;
        if (key.contains(s_strValueMinus))
            valueMinus =
                m_evaluator.convert(readValue(key.value(s_strValueMinus).toObject(), nType, bMinusOk));
        if (!bValueOk || !bMinusOk)
            note(tr("A key of the %1 keyframe at %2 ms has a damaged value; it reads as zero.")
                     .arg(name)
                     .arg(IUtils::clampToInt(key.value(s_strTime).toDouble())));
        // The timeline starts at 0, where the lead-in's hidden key stands.
        const int nTime = IUtils::clampToInt(key.value(s_strTime).toDouble());
        if (nTime < 0)
            note(tr("A key of the %1 keyframe lies before the start, at %2 ms; it was moved to 0.")
                     .arg(name)
                     .arg(nTime));
        auto* pKey = new VTKeyValue(qMax(0, nTime), value);
        pKey->setValueMinus(valueMinus);
        lstRead.append(pKey);
    }
    std::stable_sort(lstRead.begin(), lstRead.end(),
                     [](const VTKeyValue* a, const VTKeyValue* b) { return a->getTime() < b->getTime(); });
    const QEasingCurve defaultCurve = VTTimeline::createEasingCurve(QEasingCurve::InOutQuad);
    for (VTKeyValue* pKey : qAsConst(lstRead)) {
        int nIndex = m_lstKeyValues.size();
        while (nIndex > 0 && m_lstKeyValues.at(nIndex - 1)->getTime() > pKey->getTime())
            --nIndex;
        insertKeyValue(nIndex, pKey, defaultCurve, true);
    }

    const QJsonArray segments = json.value(s_strSegments).toArray();
    const QList<VTKeyframeSegment*> lstSegments = getKeyframeSegments();
    for (int i = 0; i < qMin(segments.size(), lstSegments.size()); ++i) {
        const QJsonObject segment = segments.at(i).toObject();
        VTKeyframeSegment* pSegment = lstSegments.at(i);
        pSegment->setTransition(segment.value(s_strHasTransition).toBool() && canHaveTransition());
        const int nEasing = segment.value(s_strEasing).toInt();
        if (nEasing < 0 || nEasing >= QEasingCurve::NCurveTypes || nEasing == QEasingCurve::Custom) {
            note(tr("A segment of the %1 keyframe names an unknown easing %2; it eases linearly.")
                     .arg(name)
                     .arg(nEasing));
            pSegment->setEasing(VTTimeline::createEasingCurve(QEasingCurve::Linear));
        } else {
            pSegment->setEasing(VTTimeline::createEasingCurve(QEasingCurve::Type(nEasing)));
        }
        pSegment->updateAnimation();
    }
    invalidateCache();
    return bClean;
}

// The player's form.

QJsonObject VTKeyframe::createEntry(const VTKeyValue* pFrom, const VTKeyValue* pTo, bool bJump) const
{
    QJsonObject entry;
    if (const VTElement* pElement = getAnimationElement())
        entry.insert(QStringLiteral("el"), pElement->getType() == VT::SceneElement ? 0 : pElement->getId());
    entry.insert(QStringLiteral("p"), getExportPropertyName());
    entry.insert(QStringLiteral("t"), pFrom->getTime());
    entry.insert(QStringLiteral("d"), bJump ? 0 : pTo->getTime() - pFrom->getTime());
    const QVariant start = bJump ? pFrom->getValueMinus() : pFrom->getValue();
    const QVariant end = bJump ? pFrom->getValue() : pTo->getValueMinus();
    entry.insert(QStringLiteral("s"), VTAnimatedProperty::toExportValue(m_nProperty, m_strUnitSign, start));
    entry.insert(QStringLiteral("e"), VTAnimatedProperty::toExportValue(m_nProperty, m_strUnitSign, end));
    return entry;
}

void VTKeyframe::appendMove(QJsonArray& array, const VTKeyValue* pFrom, const VTKeyValue* pTo, int nEasing,
                            bool) const
{
    QJsonObject entry = createEntry(pFrom, pTo, pFrom == pTo);
    if (pFrom != pTo)
        entry.insert(QStringLiteral("es"), nEasing);
    array.append(entry);
}

void VTKeyframe::appendAnimData(QJsonArray& array, bool bForEditor) const
{
    bool bPreviousTransition = false;
    const VTKeyValue* pPreviousKey = nullptr;
    const VTKeyframeSegment* pPreviousSegment = nullptr;
    for (int i = 0; i < m_lstKeyValues.size(); ++i) {
        const VTKeyValue* pKey = m_lstKeyValues.at(i);
        const VTKeyframeSegment* pSegment = i + 1 < m_lstKeyValues.size() ? segmentAt(i + 1) : nullptr;
        const bool bTransition = pSegment && pSegment->hasTransition();
        if (!bPreviousTransition) {
            // A key that the next move leaves from its own arrival value needs no jump.
            if (!(bTransition && !pKey->isJump()))
                appendMove(array, pKey, pKey, 0, bForEditor);
        } else {
            appendMove(array, pPreviousKey, pKey, pPreviousSegment->easingCurve().type(), bForEditor);
            if (!bTransition && pKey->isJump())
                appendMove(array, pKey, pKey, 0, bForEditor);
        }
        bPreviousTransition = bTransition;
        pPreviousKey = pKey;
        pPreviousSegment = pSegment;
    }
}

void VTKeyframe::getKeyframesData(QJsonObject& json, bool bForEditor) const
{
    if (const VTElement* pElement = getAnimationElement())
        json.insert(QStringLiteral("el"), pElement->getType() == VT::SceneElement ? 0 : pElement->getId());
    json.insert(QStringLiteral("p"), getExportPropertyName());
    QJsonArray anims;
    appendAnimData(anims, bForEditor);
    json.insert(QStringLiteral("anims"), anims);
}

void VTKeyframe::serializeSavedValueToExport(QJsonObject& json, int nProperty, const QString& unit,
                                             const QVariant& value)
{
    json.insert(QStringLiteral("p"), VTAnimatedProperty::getExportName(nProperty));
    json.insert(QStringLiteral("v"), VTAnimatedProperty::toSavedExportValue(nProperty, unit, value));
}
