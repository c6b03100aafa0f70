#include "VTAnimationValues.h"

#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMotionPathKeyframe.h"
#include "VTScene.h"
#include "VTTimeline.h"

#include <QColor>
#include <QJsonArray>
#include <QPointF>

#include <algorithm>

namespace {

QJsonValue toJson(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::QPointF:
        return QJsonArray{value.toPointF().x(), value.toPointF().y()};
    case QMetaType::QColor: {
        const QColor color = value.value<QColor>();
        return QJsonArray{color.red(), color.green(), color.blue(), color.alpha()};
    }
    case QMetaType::Int:
        return value.toInt();
    default:
        return value.toDouble();
    }
}

} // namespace

QJsonObject VTAnimationValues::compute(VTScene* pScene, int nSceneIndex, VTTimeline* pTimeline, int nTime)
{
    QJsonObject result;
    if (!pScene || !pTimeline)
        return result;
    pTimeline->setCurrentTime(nTime);
    result.insert(QStringLiteral("scene"), QJsonObject{{QStringLiteral("index"), nSceneIndex},
                                                       {QStringLiteral("id"), pScene->getId()},
                                                       {QStringLiteral("name"), pScene->getName()}});
    result.insert(QStringLiteral("timeline"),
                  QJsonObject{{QStringLiteral("id"), pTimeline->getId()},
                              {QStringLiteral("name"), pTimeline->getName()},
                              {QStringLiteral("duration"), pTimeline->totalDuration()}});
    result.insert(QStringLiteral("time"), nTime);
    const VTLayoutKey layout = pTimeline->getLayoutID();
    result.insert(QStringLiteral("layout"), QJsonArray{layout.first, layout.second});

    QVector<VTAnimation*> vecAnimations = pTimeline->getLayoutAnimations(layout);
    auto idOf = [pScene](const VTAnimation* pAnimation) {
        const VTElement* pElement = pAnimation->getElement();
        return !pElement || pElement == pScene ? 0 : pElement->getId();
    };
    std::stable_sort(vecAnimations.begin(), vecAnimations.end(),
                     [&](const VTAnimation* a, const VTAnimation* b) { return idOf(a) < idOf(b); });
    QJsonArray elements;
    for (const VTAnimation* pAnimation : qAsConst(vecAnimations)) {
        QJsonObject values;
        QJsonObject units;
        double dOrient = 0.0;
        bool bOrient = false;
        for (const VTKeyframe* pKeyframe : pAnimation->getKeyframes()) {
            if (pKeyframe->getKeyValues().isEmpty() || pKeyframe->getExportPropertyName().isEmpty())
                continue;
            // What the seek left in the element; a keyframe without target computes its own.
            const QObject* pTarget = pKeyframe->getTargetObject();
            const QVariant value = pTarget ? pTarget->property(pKeyframe->getPropertyName().constData())
                                           : pKeyframe->getValue(nTime);
            values.insert(pKeyframe->getExportPropertyName(), toJson(value));
            units.insert(pKeyframe->getExportPropertyName(), pKeyframe->getUnitSign());
            const auto* pMotion = qobject_cast<const VTMotionPathKeyframe*>(pKeyframe);
            if (pMotion && pAnimation->isAutoOrient()) {
                bOrient = true;
                dOrient = pMotion->getOrientation(nTime);
            }
        }
        if (values.isEmpty())
            continue;
        QJsonObject element{{QStringLiteral("id"), idOf(pAnimation)},
                            {QStringLiteral("name"),
                             pAnimation->getElement() ? pAnimation->getElement()->getName() : QString()},
                            {QStringLiteral("values"), values},
                            {QStringLiteral("units"), units}};
        if (bOrient)
            element.insert(QStringLiteral("orient"), dOrient);
        elements.append(element);
    }
    result.insert(QStringLiteral("elements"), elements);
    return result;
}
