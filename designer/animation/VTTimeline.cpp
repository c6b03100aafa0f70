#include "VTTimeline.h"

#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTEventListenerList.h"
#include "VTKeyframe.h"
#include "VTPlayback.h"
#include "VTPlaybackAnimation.h"
#include "VTScene.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPauseAnimation>

#include <algorithm>

namespace {

const QString s_strRespAnims = QStringLiteral("respAnims");
const QString s_strAnimations = QStringLiteral("animations");
const QString s_strSceneAnimation = QStringLiteral("scene_animation");
const QString s_strLabels = QStringLiteral("map_label_to_ts");
const QString s_strTriggers = QStringLiteral("triggers");
const QString s_strEvents = QStringLiteral("events");

int firstActionTime(const VTEventListenerList* pList)
{
    return pList && pList->hasEventListeners() ? pList->getEventListenerAt(0)->getActionTime() : 0;
}

} // namespace

VTTimeline::VTTimeline(VTScene* pScene)
    : QParallelAnimationGroup(nullptr)
    , m_pScene(pScene)
    , m_pEvents(new VTEventListenerList(this))
    // Animations made with this group as parent join it at once.
    , m_pLabelsExtent(new QPauseAnimation(0, this))
    , m_pTriggersExtent(new QPauseAnimation(0, this))
{}

VTTimeline::~VTTimeline()
{
    deleteAllAnimations();
    qDeleteAll(m_lstTriggers);
}

void VTTimeline::deleteAllAnimations()
{
    const QMap<VTLayoutKey, QVector<VTAnimation*>> mapAnimations = m_mapLayoutAnimations;
    m_mapLayoutAnimations.clear();
    // Deleting an animation also takes it out of the group.
    for (const QVector<VTAnimation*>& vecAnimations : mapAnimations)
        qDeleteAll(vecAnimations);
}

// Time.

void VTTimeline::setCurrentTime(int nTime)
{
    nTime = qMax(0, nTime);
    // Seeking pauses playback.
    pauseQtClock();
    applyTime(nTime);
    m_bQtTimeStale = true;
    if (m_nCurrentTime != nTime) {
        m_nCurrentTime = nTime;
        emit timeChanged();
    }
}

void VTTimeline::pauseQtClock()
{
    if (state() == QAbstractAnimation::Paused)
        return;
    // Qt runs a group's time only once it has been started, so a stopped timeline is started
    // and paused, with updates off to avoid a pass through 0.
    m_bUpdateEnabled = false;
    QAbstractAnimation::start();
    if (state() == QAbstractAnimation::Running)
        pause();
    m_bUpdateEnabled = true;
}

void VTTimeline::syncQtTime()
{
    if (state() == QAbstractAnimation::Stopped) {
        pauseQtClock();
        m_bQtTimeStale = true;
    }
    if (m_bQtTimeStale) {
        // At or past the end Qt stops here, and a start then plays from the beginning.
        m_bUpdateEnabled = false;
        QAbstractAnimation::setCurrentTime(m_nCurrentTime);
        m_bUpdateEnabled = true;
        m_bQtTimeStale = false;
    }
}

void VTTimeline::start()
{
    syncQtTime();
    if (state() == QAbstractAnimation::Paused)
        QAbstractAnimation::resume();
    else
        QAbstractAnimation::start();
}

void VTTimeline::resume()
{
    start();
}

void VTTimeline::updateCurrentTime(int nCurrentTime)
{
    if (!m_bUpdateEnabled)
        return;
    applyTime(nCurrentTime);
    if (state() != QAbstractAnimation::Running)
        return;
    // Qt looped, also when one step went past the last position (a timeline shorter than a frame,
    // a stalled timer): the rest of the last pass, then the start of this one.
    if (currentLoop() != m_nPassLoop || nCurrentTime < m_nPassFrom) {
        fireTriggers(m_nPassFrom, duration());
        fireTriggers(-1, nCurrentTime);
    } else {
        fireTriggers(m_nPassFrom, nCurrentTime);
    }
    m_nPassFrom = nCurrentTime;
    m_nPassLoop = currentLoop();
    if (m_nCurrentTime != nCurrentTime) {
        m_nCurrentTime = nCurrentTime;
        emit timeChanged();
    }
}

void VTTimeline::updateState(QAbstractAnimation::State newState, QAbstractAnimation::State oldState)
{
    QParallelAnimationGroup::updateState(newState, oldState);
    // From a stop Qt has already rewound to the start, where the pass begins; the playhead still
    // shows the end of the last pass, whose triggers must not fire again.
    if (newState == QAbstractAnimation::Running && oldState != QAbstractAnimation::Running) {
        m_nPassFrom = (oldState == QAbstractAnimation::Stopped ? currentLoopTime() : m_nCurrentTime) - 1;
        m_nPassLoop = currentLoop();
    }
}

void VTTimeline::fireTriggers(int nFrom, int nTo)
{
    // Called on every frame of playback: most timelines have no trigger to sort.
    if (nTo <= nFrom || m_lstTriggers.isEmpty())
        return;
    for (VTEventListenerList* pTrigger : getTriggersSorted()) {
        const int nTime = firstActionTime(pTrigger);
        if (nTime > nFrom && nTime <= nTo)
            emit triggerReached(pTrigger);
    }
}

void VTTimeline::applyTime(int nTime)
{
    const auto it = m_mapLayoutAnimations.constFind(m_layoutId);
    if (it == m_mapLayoutAnimations.cend())
        return;
    for (VTAnimation* pAnimation : *it)
        pAnimation->applyTime(nTime);
}

int VTTimeline::getEndTime() const
{
    int nEnd = qMax(m_pLabelsExtent->duration(), m_pTriggersExtent->duration());
    for (const VTAnimation* pAnimation : m_mapLayoutAnimations.value(m_layoutId)) {
        nEnd = qMax(nEnd, pAnimation->getEndTime());
        if (const auto* pPlayback = qobject_cast<const VTPlaybackAnimation*>(pAnimation))
            nEnd = qMax(nEnd, pPlayback->getPlayback()->duration());
    }
    return nEnd;
}

// Layouts.

void VTTimeline::detachLayout()
{
    for (VTAnimation* pAnimation : m_mapLayoutAnimations.value(m_layoutId)) {
        const int nIndex = indexOfAnimation(pAnimation);
        if (nIndex >= 0)
            takeAnimation(nIndex);
    }
}

void VTTimeline::attachLayout(const VTLayoutKey& key)
{
    for (VTAnimation* pAnimation : m_mapLayoutAnimations.value(key))
        QParallelAnimationGroup::addAnimation(pAnimation);
}

void VTTimeline::setLayoutID(const VTLayoutKey& key)
{
    if (key == m_layoutId)
        return;
    detachLayout();
    m_layoutId = key;
    attachLayout(key);
    // A change of layout is no move of the playhead.
    const bool bBlocked = blockSignals(true);
    setCurrentTime(m_nCurrentTime);
    blockSignals(bBlocked);
}

void VTTimeline::addLayoutAnimations(const QVector<VTAnimation*>& vecAnimations, const VTLayoutKey& key)
{
    m_mapLayoutAnimations.insert(key, vecAnimations);
}

QVector<VTAnimation*> VTTimeline::removeLayoutAnimations(const VTLayoutKey& key)
{
    return m_mapLayoutAnimations.take(key);
}

QVector<VTAnimation*> VTTimeline::updateLayoutAnimations(const QVector<VTAnimation*>& vecAnimations,
                                                         const VTLayoutKey& key)
{
    const bool bCurrent = key == m_layoutId;
    if (bCurrent) {
        detachLayout();
        m_layoutId = VTLayoutKey::current();
    }
    QVector<VTAnimation*> vecOld = m_mapLayoutAnimations.value(key);
    m_mapLayoutAnimations.insert(key, vecAnimations);
    if (bCurrent)
        setLayoutID(key);
    return vecOld;
}

// Animations.

VTAnimation* VTTimeline::getAnimation(const VTElement* pElement, const VTLayoutKey& key) const
{
    if (!pElement)
        return nullptr;
    for (VTAnimation* pAnimation : m_mapLayoutAnimations.value(key)) {
        if (pAnimation->getElement() == pElement)
            return pAnimation;
    }
    return nullptr;
}

void VTTimeline::addAnimation(VTAnimation* pAnimation, const VTLayoutKey& key)
{
    if (!pAnimation)
        return;
    if (key == m_layoutId)
        QParallelAnimationGroup::addAnimation(pAnimation);
    m_mapLayoutAnimations[key].append(pAnimation);
}

void VTTimeline::removeAnimation(VTAnimation* pAnimation, const VTLayoutKey& key)
{
    if (!pAnimation)
        return;
    if (key == m_layoutId && indexOfAnimation(pAnimation) >= 0)
        takeAnimation(indexOfAnimation(pAnimation));
    auto it = m_mapLayoutAnimations.find(key);
    if (it != m_mapLayoutAnimations.end())
        it->removeOne(pAnimation);
}

VTAnimation* VTTimeline::detachAnimation(const VTElement* pElement, const VTLayoutKey& key)
{
    VTAnimation* pAnimation = getAnimation(pElement, key);
    removeAnimation(pAnimation, key);
    return pAnimation;
}

void VTTimeline::addPropAnimation(const VTElement* pElement, VTKeyframe* pKeyframe, const VTLayoutKey& key)
{
    if (VTAnimation* pAnimation = pKeyframe ? getAnimation(pElement, key) : nullptr)
        pAnimation->addKeyframe(pKeyframe);
}

void VTTimeline::detachPropAnimation(const VTElement* pElement, VTKeyframe* pKeyframe, const VTLayoutKey& key)
{
    if (VTAnimation* pAnimation = pKeyframe ? getAnimation(pElement, key) : nullptr)
        pAnimation->detachKeyframe(pKeyframe);
}

bool VTTimeline::isAnimInherit(const VTElement* pElement, const VTLayoutKey& key) const
{
    const VTAnimation* pAnimation = getAnimation(pElement, key);
    return !pAnimation || pAnimation->isAllPropsInherit();
}

bool VTTimeline::isAnimPropInherit(const VTElement* pElement, VT::ElementProperty nProperty,
                                   const VTLayoutKey& key) const
{
    const VTAnimation* pAnimation = getAnimation(pElement, key);
    return !pAnimation || pAnimation->isPropInherit(nProperty);
}

bool VTTimeline::isAllAnimPropsInheritFromBase(const VTElement* pElement) const
{
    for (auto it = m_mapLayoutAnimations.cbegin(); it != m_mapLayoutAnimations.cend(); ++it) {
        if (!it.key().isBase() && !isAnimInherit(pElement, it.key()))
            return false;
    }
    return true;
}

bool VTTimeline::isAllAnimPropInheritFromBase(const VTElement* pElement, VT::ElementProperty nProperty) const
{
    for (auto it = m_mapLayoutAnimations.cbegin(); it != m_mapLayoutAnimations.cend(); ++it) {
        if (!it.key().isBase() && !isAnimPropInherit(pElement, nProperty, it.key()))
            return false;
    }
    return true;
}

bool VTTimeline::hasPropsAnimData() const
{
    for (const VTAnimation* pAnimation : m_mapLayoutAnimations.value(m_layoutId)) {
        const auto* pPlayback = qobject_cast<const VTPlaybackAnimation*>(pAnimation);
        if (pPlayback && pPlayback->getPlayback()->getEventListenerList()->hasEventListeners())
            return true;
        for (const VTKeyframe* pKeyframe : pAnimation->getKeyframes()) {
            if (!pKeyframe->getKeyValues().isEmpty())
                return true;
        }
    }
    return false;
}

// Labels.

void VTTimeline::updateLabelsExtent()
{
    int nLast = 0;
    for (int nTime : qAsConst(m_mapLabels))
        nLast = qMax(nLast, nTime);
    m_pLabelsExtent->setDuration(nLast);
}

void VTTimeline::addLabel(const QString& name, int nTime)
{
    m_mapLabels.insert(name, nTime);
    if (nTime > m_pLabelsExtent->duration())
        m_pLabelsExtent->setDuration(nTime);
}

void VTTimeline::setLabelValue(const QString& name, int nTime)
{
    if (!m_mapLabels.contains(name))
        return;
    m_mapLabels.insert(name, nTime);
    updateLabelsExtent();
}

void VTTimeline::removeLabel(const QString& name)
{
    if (m_mapLabels.remove(name) > 0)
        updateLabelsExtent();
}

void VTTimeline::renameLabel(const QString& oldName, const QString& newName)
{
    if (!m_mapLabels.contains(oldName))
        return;
    const int nTime = m_mapLabels.take(oldName);
    addLabel(newName, nTime);
}

// Triggers.

void VTTimeline::updateTriggersExtent()
{
    int nLast = 0;
    for (const VTEventListenerList* pTrigger : qAsConst(m_lstTriggers))
        nLast = qMax(nLast, firstActionTime(pTrigger));
    m_pTriggersExtent->setDuration(nLast);
}

void VTTimeline::addTrigger(VTEventListenerList* pTrigger)
{
    if (!pTrigger || m_lstTriggers.contains(pTrigger))
        return;
    m_lstTriggers.append(pTrigger);
    if (firstActionTime(pTrigger) > m_pTriggersExtent->duration())
        m_pTriggersExtent->setDuration(firstActionTime(pTrigger));
}

void VTTimeline::detachTrigger(VTEventListenerList* pTrigger)
{
    if (!pTrigger || pTrigger->hasEventListeners() || !m_lstTriggers.removeOne(pTrigger))
        return;
    updateTriggersExtent();
}

void VTTimeline::changeActionTime(VTEventListenerList* pTrigger, int nTime)
{
    if (!pTrigger)
        return;
    for (VTEventListener* pListener : pTrigger->getEventListeners())
        pListener->setEventData(QJsonObject{{QStringLiteral("action_time"), nTime}});
    updateTriggersExtent();
}

QList<VTEventListenerList*> VTTimeline::getTriggersSorted() const
{
    QList<int> lstTimes;
    for (const VTEventListenerList* pTrigger : m_lstTriggers) {
        if (pTrigger->hasEventListeners() && !lstTimes.contains(firstActionTime(pTrigger)))
            lstTimes.append(firstActionTime(pTrigger));
    }
    std::sort(lstTimes.begin(), lstTimes.end());
    QList<VTEventListenerList*> lstSorted;
    for (int nTime : qAsConst(lstTimes)) {
        for (VTEventListenerList* pTrigger : m_lstTriggers) {
            if (pTrigger->hasEventListeners() && firstActionTime(pTrigger) == nTime)
                lstSorted.append(pTrigger);
        }
    }
    return lstSorted;
}

void VTTimeline::prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                    const VTFunctionManager* pManager) const
{
    m_pEvents->prepareFunctionMap(mapFunctions, pManager);
    for (const VTEventListenerList* pTrigger : m_lstTriggers)
        pTrigger->prepareFunctionMap(mapFunctions, pManager);
}

void VTTimeline::updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                   const VTFunctionManager* pManager)
{
    m_pEvents->updateFunctionMap(mapFunctions, pManager);
    for (VTEventListenerList* pTrigger : qAsConst(m_lstTriggers))
        pTrigger->updateFunctionMap(mapFunctions, pManager);
}

// Easing and grid.

QEasingCurve VTTimeline::createEasingCurve(QEasingCurve::Type nType)
{
    if (nType == QEasingCurve::BezierSpline) {
        QEasingCurve curve(QEasingCurve::BezierSpline);
        curve.addCubicBezierSegment(QPointF(0.4, 0.1), QPointF(0.6, 0.9), QPointF(1.0, 1.0));
        return curve;
    }
    if (nType == QEasingCurve::TCBSpline) {
        QEasingCurve curve(QEasingCurve::TCBSpline);
        curve.addTCBSegment(QPointF(0.0, 0.0), 0.0, 0.0, 0.0);
        curve.addTCBSegment(QPointF(0.3, 0.4), 0.2, 1.0, -0.2);
        curve.addTCBSegment(QPointF(0.7, 0.6), -0.2, 1.0, 0.2);
        curve.addTCBSegment(QPointF(1.0, 1.0), 0.0, 0.0, 0.0);
        return curve;
    }
    if (nType < QEasingCurve::Linear || nType >= QEasingCurve::Custom)
        return QEasingCurve(QEasingCurve::Linear);
    return QEasingCurve(nType);
}

QString VTTimeline::getGridName(int nGridSize)
{
    switch (getGridValue(nGridSize)) {
    case 2:
        return tr("2 / second");
    case 4:
        return tr("4 / second");
    case 10:
        return tr("10 / second");
    case 15:
        return tr("15 / second");
    case 24:
        return tr("24 / second");
    case 30:
        return tr("30 / second");
    default:
        return tr("1 / second");
    }
}

int VTTimeline::getGridValue(int nGridSize)
{
    static const int s_values[] = {1, 2, 4, 10, 15, 24, 30};
    return nGridSize >= 0 && nGridSize < int(std::size(s_values)) ? s_values[nGridSize] : 1;
}

// Files.

void VTTimeline::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("id"), m_nId);
    json.insert(QStringLiteral("name"), m_strName);
    json.insert(QStringLiteral("current_time"), m_nCurrentTime);
    json.insert(QStringLiteral("duration"), totalDuration());
    json.insert(QStringLiteral("loop_timeline"), m_bLoop);
    json.insert(QStringLiteral("only_show_anim_element"), m_bOnlyShowAnimElements);
    json.insert(QStringLiteral("show_snapping"), m_bShowSnapping);
    json.insert(QStringLiteral("snap_to_grid"), m_bSnapToGrid);
    json.insert(QStringLiteral("snap_to_playhead"), m_bSnapToPlayhead);
    json.insert(QStringLiteral("snap_to_keyframes"), m_bSnapToKeyframes);
    json.insert(QStringLiteral("show_grid"), m_bShowGrid);
    json.insert(QStringLiteral("grid_size"), m_nGridSize);
    json.insert(QStringLiteral("pixel_per_second"), m_dPixelPerSecond);

    QJsonArray labels;
    for (auto it = m_mapLabels.cbegin(); it != m_mapLabels.cend(); ++it)
        labels.append(QJsonObject{{QStringLiteral("label_name"), it.key()},
                                  {QStringLiteral("label_value"), it.value()}});
    json.insert(s_strLabels, labels);
    QJsonArray triggers;
    for (const VTEventListenerList* pTrigger : m_lstTriggers) {
        QJsonArray trigger;
        pTrigger->serialize(trigger);
        triggers.append(trigger);
    }
    json.insert(s_strTriggers, triggers);
    QJsonArray events;
    m_pEvents->serialize(events);
    json.insert(s_strEvents, events);

    QJsonArray layouts;
    for (auto it = m_mapLayoutAnimations.cbegin(); it != m_mapLayoutAnimations.cend(); ++it) {
        // A layout whose last animation went (an undone first keyframe) keeps an empty list; it
        // says no more than a missing one, and writing it would tell the file apart from before.
        if (it.value().isEmpty())
            continue;
        QJsonObject layout{{QStringLiteral("hLayoutId"), it.key().first},
                           {QStringLiteral("vLayoutId"), it.key().second}};
        QJsonArray animations;
        for (const VTAnimation* pAnimation : it.value()) {
            QJsonObject animation;
            pAnimation->serialize(animation);
            if (m_pScene && pAnimation->getElement() == m_pScene)
                layout.insert(s_strSceneAnimation, animation);
            else
                animations.append(animation);
        }
        layout.insert(s_strAnimations, animations);
        layouts.append(layout);
    }
    json.insert(s_strRespAnims, layouts);
}

bool VTTimeline::parse(const QJsonObject& json, QStringList* pProblems)
{
    bool bClean = true;
    auto note = [&](const QString& problem) {
        bClean = false;
        if (pProblems)
            pProblems->append(problem);
    };
    m_nId = json.value(QStringLiteral("id")).toInt(m_nId);
    m_strName = json.value(QStringLiteral("name")).toString(m_strName);
    m_nCurrentTime = qMax(0, json.value(QStringLiteral("current_time")).toInt());
    setLoopTimeline(json.value(QStringLiteral("loop_timeline")).toBool(m_bLoop));
    m_bOnlyShowAnimElements =
        json.value(QStringLiteral("only_show_anim_element")).toBool(m_bOnlyShowAnimElements);
    m_bShowSnapping = json.value(QStringLiteral("show_snapping")).toBool(m_bShowSnapping);
    m_bSnapToGrid = json.value(QStringLiteral("snap_to_grid")).toBool(m_bSnapToGrid);
    m_bSnapToPlayhead = json.value(QStringLiteral("snap_to_playhead")).toBool(m_bSnapToPlayhead);
    m_bSnapToKeyframes = json.value(QStringLiteral("snap_to_keyframes")).toBool(m_bSnapToKeyframes);
    m_bShowGrid = json.value(QStringLiteral("show_grid")).toBool(m_bShowGrid);
    m_nGridSize = json.value(QStringLiteral("grid_size")).toInt(m_nGridSize);
    m_dPixelPerSecond = json.value(QStringLiteral("pixel_per_second")).toDouble(m_dPixelPerSecond);
    if (!(m_dPixelPerSecond > 0.0 && m_dPixelPerSecond < 1e6))
        m_dPixelPerSecond = 50.0;

    const QJsonArray labels = json.value(s_strLabels).toArray();
    for (int i = 0; i < labels.size(); ++i) {
        const QJsonObject label = labels.at(i).toObject();
        if (i >= kMaxLabelCount || !label.value(QStringLiteral("label_name")).isString() ||
            !label.value(QStringLiteral("label_value")).isDouble()) {
            note(tr("A label of the timeline \"%1\" could not be read and was left out.").arg(m_strName));
            continue;
        }
        addLabel(label.value(QStringLiteral("label_name")).toString(),
                 qMax(0, label.value(QStringLiteral("label_value")).toInt()));
    }
    const QJsonArray triggers = json.value(s_strTriggers).toArray();
    for (int i = 0; i < triggers.size() && i < kMaxTriggerCount; ++i) {
        auto* pTrigger = new VTEventListenerList();
        QStringList lstWarnings;
        if (!pTrigger->parse(triggers.at(i).toArray(), &lstWarnings) || !triggers.at(i).isArray()) {
            note(tr("A trigger of the timeline \"%1\" could not be read whole.").arg(m_strName));
            if (pProblems)
                *pProblems += lstWarnings;
        }
        addTrigger(pTrigger);
    }
    if (triggers.size() > kMaxTriggerCount)
        note(tr("The timeline \"%1\" has more than %2 triggers; the rest were left out.")
                 .arg(m_strName)
                 .arg(kMaxTriggerCount));
    if (json.contains(s_strEvents)) {
        auto* pEvents = new VTEventListenerList(this);
        QStringList lstWarnings;
        if (!pEvents->parse(json.value(s_strEvents).toArray(), &lstWarnings)) {
            note(tr("Events of the timeline \"%1\" could not be read whole.").arg(m_strName));
            if (pProblems)
                *pProblems += lstWarnings;
        }
        delete m_pEvents;
        m_pEvents = pEvents;
    }

    detachLayout();
    deleteAllAnimations();
    m_layoutId = VTLayoutKey::base();
    // Animations and keyframes left out on the way make the timeline's reading incomplete too.
    auto parseLayout = [&](const QJsonObject& object, const VTLayoutKey& key) {
        QStringList lstLayoutProblems;
        const QVector<VTAnimation*> vecAnimations = parseLayoutAnimations(object, key, &lstLayoutProblems);
        if (!lstLayoutProblems.isEmpty()) {
            bClean = false;
            if (pProblems)
                *pProblems += lstLayoutProblems;
        }
        return vecAnimations;
    };
    const QJsonValue layouts = json.value(s_strRespAnims);
    if (layouts.isArray()) {
        for (const QJsonValue& item : layouts.toArray()) {
            const QJsonObject layout = item.toObject();
            const VTLayoutKey key(layout.value(QStringLiteral("hLayoutId")).toInt(),
                                  layout.value(QStringLiteral("vLayoutId")).toInt());
            if (m_mapLayoutAnimations.contains(key)) {
                note(tr("The timeline \"%1\" lists the layout %2, %3 twice; the second was left out.")
                         .arg(m_strName)
                         .arg(key.first)
                         .arg(key.second));
                continue;
            }
            const QVector<VTAnimation*> vecAnimations = parseLayout(layout, key);
            if (!vecAnimations.isEmpty())
                m_mapLayoutAnimations.insert(key, vecAnimations);
        }
    } else {
        const QVector<VTAnimation*> vecAnimations = parseLayout(json, m_layoutId);
        if (!vecAnimations.isEmpty())
            m_mapLayoutAnimations.insert(m_layoutId, vecAnimations);
    }
    attachLayout(m_layoutId);
    return bClean;
}

QVector<VTAnimation*> VTTimeline::parseLayoutAnimations(const QJsonObject& json, const VTLayoutKey& key,
                                                        QStringList* pProblems)
{
    QVector<VTAnimation*> vecAnimations;
    if (!m_pScene)
        return vecAnimations;
    const QJsonArray animations = json.value(s_strAnimations).toArray();
    for (const QJsonValue& item : animations) {
        const QJsonObject object = item.toObject();
        const int nElementId = object.value(QStringLiteral("element_id")).toInt(-1);
        VTElement* pElement = m_pScene->findElementById(nElementId);
        if (!pElement || vecAnimations.size() >= kMaxAnimationCount) {
            if (pProblems)
                pProblems->append(
                    tr("The timeline \"%1\" animates an element (id %2) that the scene does not "
                       "hold; that animation was left out.")
                        .arg(m_strName)
                        .arg(nElementId));
            continue;
        }
        if (getAnimation(pElement, key) ||
            std::any_of(vecAnimations.cbegin(), vecAnimations.cend(),
                        [pElement](const VTAnimation* p) { return p->getElement() == pElement; })) {
            if (pProblems)
                pProblems->append(
                    tr("The timeline \"%1\" animates \"%2\" twice in one layout; the second was "
                       "left out.")
                        .arg(m_strName, pElement->getName()));
            continue;
        }
        VTAnimation* pAnimation = VTAnimationFactory::createAnimation(pElement);
        pAnimation->parse(object, this, key, pProblems);
        vecAnimations.append(pAnimation);
    }
    const QJsonObject sceneAnimation = json.value(s_strSceneAnimation).toObject();
    if (!sceneAnimation.isEmpty()) {
        auto* pAnimation = new VTAnimation(m_pScene);
        pAnimation->parse(sceneAnimation, this, key, pProblems);
        vecAnimations.append(pAnimation);
    }
    return vecAnimations;
}

void VTTimeline::appendExportEntries(const QVector<VTAnimation*>& vecAnimations, QJsonArray& entries,
                                     QJsonArray* pMotionElements, bool bForEditor) const
{
    for (const VTAnimation* pAnimation : vecAnimations) {
        if (pMotionElements && pAnimation->isUsingMotionPath() && pAnimation->getElement())
            pMotionElements->append(pAnimation->getElement()->getId());
        if (const auto* pPlayback = qobject_cast<const VTPlaybackAnimation*>(pAnimation))
            pPlayback->appendPlaybacksData(entries);
        for (const VTKeyframe* pKeyframe : pAnimation->getKeyframes())
            pKeyframe->appendAnimData(entries, bForEditor);
    }
}

void VTTimeline::serializeToExport(QJsonObject& json, bool bCurrentLayoutOnly, bool bWithEvents) const
{
    json.insert(QStringLiteral("id"), m_nId);
    json.insert(QStringLiteral("n"), m_strName);
    json.insert(QStringLiteral("dur"), totalDuration());
    if (bCurrentLayoutOnly) {
        QJsonArray entries;
        QJsonArray motionElements;
        appendExportEntries(m_mapLayoutAnimations.value(m_layoutId), entries, &motionElements, true);
        if (!entries.isEmpty())
            json.insert(QStringLiteral("anims"), entries);
        if (!motionElements.isEmpty())
            json.insert(QStringLiteral("motionElems"), motionElements);
    } else {
        QJsonArray rows;
        for (auto it = m_mapLayoutAnimations.cbegin(); it != m_mapLayoutAnimations.cend(); ++it) {
            QJsonArray entries;
            appendExportEntries(it.value(), entries, nullptr, false);
            if (!entries.isEmpty())
                rows.append(QJsonArray{it.key().first, it.key().second, entries});
        }
        if (!rows.isEmpty())
            json.insert(QStringLiteral("ra"), rows);
    }
    if (!m_mapLabels.isEmpty()) {
        QJsonObject labels;
        for (auto it = m_mapLabels.cbegin(); it != m_mapLabels.cend(); ++it)
            labels.insert(it.key(), it.value());
        json.insert(QStringLiteral("l"), labels);
    }
    if (bWithEvents && !bCurrentLayoutOnly) {
        QJsonArray triggers;
        for (const VTEventListenerList* pTrigger : getTriggersSorted()) {
            QJsonArray trigger;
            pTrigger->serializeToExportTrigger(trigger, false);
            triggers.append(trigger);
        }
        if (!triggers.isEmpty())
            json.insert(QStringLiteral("t"), triggers);
        m_pEvents->serializeToExport(json, false);
    }
}
