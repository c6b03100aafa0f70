#include "RandomTimelineGestures.h"

#include "RandomCommandContext.h"
#include "VTAnimatedProperty.h"
#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTKeyframe.h"
#include "VTPlayback.h"
#include "VTPlaybackAnimation.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QJsonObject>
#include <QVector>

#include <algorithm>

namespace {

using Id = VTCommandAction::ActionId;

VTCommand* single(RandomCommandContext& context, const QString& name, VTCommandAction* pAction)
{
    VTCommand* pCommand = context.newCommand(name);
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommandAction* newAction(RandomCommandContext& context, int nId, int nReserve = 3)
{
    return new VTCommandAction(nId, &context.getDocument(), nReserve);
}

VTTimelineManager* timelines(const RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    return pScene ? pScene->getTimelineManager() : nullptr;
}

VTTimeline* pickTimeline(RandomCommandContext& context)
{
    VTTimelineManager* pManager = timelines(context);
    return pManager ? context.pick(pManager->getTimelines()) : nullptr;
}

QList<VTTimeline*> otherThanMain(const VTTimelineManager* pManager)
{
    QList<VTTimeline*> lstTimelines = pManager ? pManager->getTimelines() : QList<VTTimeline*>();
    if (!lstTimelines.isEmpty())
        lstTimelines.removeFirst();
    return lstTimelines;
}

VTCommand* addTimeline(RandomCommandContext& context)
{
    VTTimelineManager* pManager = timelines(context);
    if (!pManager)
        return nullptr;
    auto* pTimeline = new VTTimeline(context.getScene());
    pTimeline->setName(context.uniqueText(QStringLiteral("Timeline ")));
    // Behind the main timeline, as the panel adds them.
    const int nIndex = context.chance(50) ? -1 : context.intIn(1, pManager->getTimelines().size());
    VTCommandAction* pAction = newAction(context, Id::AddTimeline);
    pAction->addParam(pManager, false);
    pAction->addParam(pTimeline, true);
    pAction->addParam(nIndex);
    VTCommand* pCommand = single(context, QStringLiteral("add timeline"), pAction);
    if (context.chance(50)) {
        VTCommandAction* pCurrent = newAction(context, Id::SetCurrentTimeline, 2);
        pCurrent->addParam(pManager, false);
        pCurrent->addParam(pTimeline, false);
        pCommand->addAction(pCurrent);
    }
    return pCommand;
}

VTCommand* removeTimeline(RandomCommandContext& context)
{
    VTTimelineManager* pManager = timelines(context);
    VTTimeline* pTimeline = context.pick(otherThanMain(pManager));
    if (!pTimeline)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("remove timeline"));
    // The manager must not keep a removed timeline as its current one.
    if (pManager->getCurrentTimeline() == pTimeline) {
        VTCommandAction* pCurrent = newAction(context, Id::SetCurrentTimeline, 2);
        pCurrent->addParam(pManager, false);
        pCurrent->addParam(pManager->getMainTimeline(), false);
        pCommand->addAction(pCurrent);
    }
    VTCommandAction* pAction = newAction(context, Id::RemoveTimeline);
    pAction->addParam(pManager, false);
    pAction->addParam(pTimeline, false);
    pAction->addParam(-1);
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* setCurrentTimeline(RandomCommandContext& context)
{
    VTTimelineManager* pManager = timelines(context);
    VTTimeline* pTimeline = pickTimeline(context);
    if (!pTimeline || pTimeline == pManager->getCurrentTimeline())
        return nullptr;
    VTCommandAction* pAction = newAction(context, Id::SetCurrentTimeline, 2);
    pAction->addParam(pManager, false);
    pAction->addParam(pTimeline, false);
    return single(context, QStringLiteral("current timeline"), pAction);
}

VTCommand* renameTimeline(RandomCommandContext& context)
{
    VTTimeline* pTimeline = pickTimeline(context);
    if (!pTimeline)
        return nullptr;
    VTCommandAction* pAction = newAction(context, Id::RenameTimeline, 2);
    pAction->addParam(pTimeline, false);
    pAction->addParam(context.uniqueText(QStringLiteral("Renamed ")));
    return single(context, QStringLiteral("rename timeline"), pAction);
}

VTCommand* changeMainTimeline(RandomCommandContext& context)
{
    VTTimelineManager* pManager = timelines(context);
    VTTimeline* pTimeline = context.pick(otherThanMain(pManager));
    if (!pTimeline)
        return nullptr;
    VTCommandAction* pAction = newAction(context, Id::ChangeMainTimeline, 2);
    pAction->addParam(pManager, false);
    pAction->addParam(pTimeline, false);
    return single(context, QStringLiteral("main timeline"), pAction);
}

// Labels: names stay unique, since a label added under a taken name would replace the other.
VTCommand* editLabel(RandomCommandContext& context, int nId)
{
    VTTimelineManager* pManager = timelines(context);
    QList<VTTimeline*> lstTimelines = pManager ? pManager->getTimelines() : QList<VTTimeline*>();
    // A label to work on, unless one is added.
    if (nId != Id::AddLabel) {
        lstTimelines.erase(
            std::remove_if(lstTimelines.begin(), lstTimelines.end(),
                           [](const VTTimeline* pTimeline) { return pTimeline->getMapLabel2TS().isEmpty(); }),
            lstTimelines.end());
    }
    VTTimeline* pTimeline = context.pick(lstTimelines);
    if (!pTimeline)
        return nullptr;
    const QString existing = context.pick(pTimeline->getMapLabel2TS().keys());
    if (nId != Id::AddLabel && existing.isEmpty())
        return nullptr;
    VTCommandAction* pAction = newAction(context, nId);
    pAction->addParam(pTimeline, false);
    switch (nId) {
    case Id::AddLabel:
        pAction->addParam(context.uniqueText(QStringLiteral("label")));
        pAction->addParam(context.intIn(0, 3000));
        break;
    case Id::RemoveLabel:
        pAction->addParam(existing);
        pAction->addParam(pTimeline->getLabelValue(existing));
        break;
    case Id::RenameLabel:
        pAction->addParam(existing);
        pAction->addParam(context.uniqueText(QStringLiteral("label")));
        break;
    default:
        pAction->addParam(existing);
        pAction->addParam(context.intIn(0, 3000));
        break;
    }
    return single(context, QStringLiteral("label"), pAction);
}

VTCommand* addAnimation(RandomCommandContext& context)
{
    VTTimeline* pTimeline = pickTimeline(context);
    VTElement* pElement = context.pick(context.getElements());
    if (!pTimeline || !pElement)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pElement);
    if (pTimeline->getAnimation(pElement, key))
        return nullptr;
    VTCommandAction* pAction = newAction(context, Id::AddAnimation);
    pAction->addParam(VTAnimationFactory::createAnimation(pElement), true);
    pAction->addParam(pTimeline, false);
    pAction->addParam(key);
    return single(context, QStringLiteral("add animation"), pAction);
}

VTCommand* editAnimation(RandomCommandContext& context, int nId)
{
    VTTimeline* pTimeline = pickTimeline(context);
    if (!pTimeline)
        return nullptr;
    const auto& mapAnimations = pTimeline->getAllLayoutAnimations();
    QList<VTLayoutKey> lstKeys = mapAnimations.keys();
    // The base layout inherits nothing.
    if (nId == Id::ChangeAnimationInherits)
        lstKeys.removeAll(VTLayoutKey::base());
    const VTLayoutKey key = context.pick(lstKeys);
    VTAnimation* pAnimation = context.pick(mapAnimations.value(key).toList());
    if (!pAnimation)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("animation"));
    switch (nId) {
    case Id::RemoveAnimation: {
        VTCommandAction* pAction = newAction(context, nId);
        pAction->addParam(pAnimation, false);
        pAction->addParam(pTimeline, false);
        pAction->addParam(key);
        pCommand->addAction(pAction);
        break;
    }
    case Id::SetAutoOrient: {
        VTCommandAction* pAction = newAction(context, nId, 2);
        pAction->addParam(pAnimation, false);
        pAction->addParam(!pAnimation->isAutoOrient());
        pCommand->addAction(pAction);
        break;
    }
    case Id::ChangeAnimationInherits: {
        const QVector<int>& vecProps = VTAnimatedProperty::getAnimatedProps();
        const int nProperty = vecProps.at(context.intIn(0, vecProps.size() - 1));
        pCommand->createActionsToChangeAnimationInherit(
            pAnimation, key, static_cast<VT::ElementProperty>(nProperty), context.chance(50));
        break;
    }
    default: {
        // The layout's whole set of animations replaced by copies of all but one of them.
        QVector<VTAnimation*> vecAnimations = mapAnimations.value(key);
        vecAnimations.removeOne(pAnimation);
        VTCommandAction* pAction = newAction(context, Id::UpdateLayoutAnimations, 4 + vecAnimations.size());
        pAction->addParam(pTimeline, false);
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        pAction->addParam(vecAnimations.size());
        for (const VTAnimation* pOriginal : vecAnimations)
            pAction->addParam(pOriginal->clone(pTimeline, key), true);
        pCommand->addAction(pAction);
        break;
    }
    }
    return pCommand;
}

QJsonObject atTime(int nTime)
{
    return QJsonObject{{QStringLiteral("action_time"), nTime}};
}

VTCommand* addTrigger(RandomCommandContext& context)
{
    VTTimeline* pTimeline = pickTimeline(context);
    if (!pTimeline)
        return nullptr;
    VTEventListenerList* pTrigger = context.chance(50) ? context.pick(pTimeline->getTriggers()) : nullptr;
    const bool bNew = !pTrigger;
    // The listeners of one trigger share its time.
    int nTime = context.intIn(0, 3000);
    if (bNew)
        pTrigger = new VTEventListenerList();
    else
        nTime = pTrigger->getEventListenerAt(0)->getActionTime();
    auto* pListener = new VTEventListener(VTEventListener::Trigger,
                                          context.chance(50) ? VTEventListener::PauseTimeline
                                                             : VTEventListener::RunJavaScript,
                                          atTime(nTime), QJsonObject());
    VTCommandAction* pAction = newAction(context, Id::AddEventListener, 4);
    pAction->addParam(pTrigger, bNew);
    pAction->addParam(-1);
    pAction->addParam(pListener, true);
    pAction->addParam(pTimeline, false);
    return single(context, QStringLiteral("add trigger"), pAction);
}

VTCommand* editTrigger(RandomCommandContext& context, int nId)
{
    VTTimeline* pTimeline = pickTimeline(context);
    VTEventListenerList* pTrigger = pTimeline ? context.pick(pTimeline->getTriggers()) : nullptr;
    if (!pTrigger || !pTrigger->hasEventListeners())
        return nullptr;
    VTCommandAction* pAction = newAction(context, nId, 4);
    if (nId == Id::MoveTrigger) {
        pAction->addParam(pTimeline, false);
        pAction->addParam(pTrigger, false);
        pAction->addParam(context.intIn(0, 3000));
    } else {
        pAction->addParam(pTrigger, false);
        pAction->addParam(-1);
        pAction->addParam(context.pick(pTrigger->getEventListeners()), false);
        pAction->addParam(pTimeline, false);
    }
    return single(context, QStringLiteral("trigger"), pAction);
}

bool plays(const VTElement* pElement)
{
    return pElement->getType() == VT::AudioElement || pElement->getType() == VT::VideoElement ||
           pElement->getType() == VT::SymbolElement;
}

// A time no mark of the playback uses: marks of one time keep the order they were added in, and
// a mark put back by an undo goes behind the others of its time.
int freeMarkTime(RandomCommandContext& context, const VTPlaybackAnimation* pAnimation)
{
    for (;;) {
        const int nTime = context.intIn(0, 60) * 50;
        if (!pAnimation->getPlayback()->getEventlistener(nTime))
            return nTime;
    }
}

VTEventListener::ActionType markType(RandomCommandContext& context, const VTElement* pElement)
{
    const int nFirst =
        pElement->getType() == VT::SymbolElement ? VTEventListener::StartSymbol : VTEventListener::StartMedia;
    return static_cast<VTEventListener::ActionType>(nFirst + context.intIn(0, 4));
}

QJsonObject markData(RandomCommandContext& context)
{
    return QJsonObject{{QStringLiteral("speed"), context.pick(QList<int>{100, 50, 200, -100})},
                       {QStringLiteral("time"), context.intIn(0, 20) * 100}};
}

VTCommand* addPlaybackMark(RandomCommandContext& context)
{
    VTElement* pElement = context.pick(context.getElementsAnywhere(plays));
    const auto* pScene = pElement ? qobject_cast<const VTScene*>(pElement->getScene()) : nullptr;
    VTTimeline* pTimeline = pScene ? context.pick(pScene->getTimelineManager()->getTimelines()) : nullptr;
    if (!pTimeline)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pElement);
    VTCommand* pCommand = context.newCommand(QStringLiteral("add playback mark"));
    auto* pAnimation = qobject_cast<VTPlaybackAnimation*>(pTimeline->getAnimation(pElement, key));
    if (!pAnimation) {
        pAnimation = qobject_cast<VTPlaybackAnimation*>(VTAnimationFactory::createAnimation(pElement));
        VTCommandAction* pAdd = newAction(context, Id::AddAnimation);
        pAdd->addParam(static_cast<VTAnimation*>(pAnimation), true);
        pAdd->addParam(pTimeline, false);
        pAdd->addParam(key);
        pCommand->addAction(pAdd);
    }
    VTCommandAction* pAction = newAction(context, Id::AddPlaybackListener, 2);
    pAction->addParam(static_cast<VTAnimation*>(pAnimation), false);
    const VTEventListener::ActionType nType = markType(context, pElement);
    const QJsonObject eventData = atTime(freeMarkTime(context, pAnimation));
    const QJsonObject actionData = markData(context);
    pAction->addParam(new VTEventListener(VTEventListener::Playback, nType, eventData, actionData), true);
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* editPlaybackMark(RandomCommandContext& context, int nId)
{
    QList<QPair<VTPlaybackAnimation*, VTEventListener*>> lstMarks;
    VTSceneManager* pScenes = context.getScenes();
    for (const VTScene* pScene : pScenes ? pScenes->getScenes() : QList<VTScene*>()) {
        for (VTTimeline* pTimeline : pScene->getTimelineManager()->getTimelines()) {
            for (const QVector<VTAnimation*>& vecAnimations : pTimeline->getAllLayoutAnimations()) {
                for (VTAnimation* pAnimation : vecAnimations) {
                    auto* pPlayback = qobject_cast<VTPlaybackAnimation*>(pAnimation);
                    if (!pPlayback)
                        continue;
                    for (VTEventListener* pMark :
                         pPlayback->getPlayback()->getEventListenerList()->getEventListeners())
                        lstMarks.append({pPlayback, pMark});
                }
            }
        }
    }
    if (lstMarks.isEmpty())
        return nullptr;
    const auto mark = context.pick(lstMarks);
    VTCommandAction* pAction = newAction(context, nId, 5);
    pAction->addParam(static_cast<VTAnimation*>(mark.first), false);
    pAction->addParam(mark.second, false);
    if (nId == Id::ChangePlaybackListener) {
        const VTElement* pElement = mark.first->getElement();
        pAction->addParam(
            static_cast<int>(pElement ? markType(context, pElement) : mark.second->getActionType()));
        pAction->addParam(context.chance(50) ? atTime(freeMarkTime(context, mark.first))
                                             : mark.second->getEventData());
        pAction->addParam(markData(context));
    }
    return single(context, QStringLiteral("playback mark"), pAction);
}

} // namespace

void RandomTimelineGestures::append(QList<RandomGesture>& lstGestures)
{
    const auto label = [](int nId) {
        return [nId](RandomCommandContext& context) { return editLabel(context, nId); };
    };
    const auto animation = [](int nId) {
        return [nId](RandomCommandContext& context) { return editAnimation(context, nId); };
    };
    const auto trigger = [](int nId) {
        return [nId](RandomCommandContext& context) { return editTrigger(context, nId); };
    };
    const auto mark = [](int nId) {
        return [nId](RandomCommandContext& context) { return editPlaybackMark(context, nId); };
    };
    lstGestures
        << RandomGesture{QStringLiteral("add timeline"),
                         {Id::AddTimeline, Id::RemoveTimeline, Id::SetCurrentTimeline,
                          Id::ChangeMainTimeline},
                         2,
                         addTimeline}
        << RandomGesture{QStringLiteral("remove timeline"), {Id::RemoveTimeline}, 1, removeTimeline}
        << RandomGesture{QStringLiteral("current timeline"), {Id::SetCurrentTimeline}, 2, setCurrentTimeline}
        << RandomGesture{QStringLiteral("rename timeline"), {Id::RenameTimeline}, 1, renameTimeline}
        << RandomGesture{QStringLiteral("main timeline"), {Id::ChangeMainTimeline}, 1, changeMainTimeline}
        << RandomGesture{QStringLiteral("add label"),
                         {Id::AddLabel, Id::RemoveLabel, Id::RenameLabel, Id::MoveLabel},
                         2,
                         label(Id::AddLabel)}
        << RandomGesture{QStringLiteral("remove label"), {Id::RemoveLabel}, 1, label(Id::RemoveLabel)}
        << RandomGesture{QStringLiteral("rename label"), {Id::RenameLabel}, 1, label(Id::RenameLabel)}
        << RandomGesture{QStringLiteral("move label"), {Id::MoveLabel}, 1, label(Id::MoveLabel)}
        << RandomGesture{QStringLiteral("add animation"), {Id::AddAnimation}, 2, addAnimation}
        << RandomGesture{QStringLiteral("remove animation"),
                         {Id::RemoveAnimation},
                         1,
                         animation(Id::RemoveAnimation)}
        << RandomGesture{QStringLiteral("auto orient"), {Id::SetAutoOrient}, 1, animation(Id::SetAutoOrient)}
        << RandomGesture{QStringLiteral("animation inherit"),
                         {Id::ChangeAnimationInherits},
                         1,
                         animation(Id::ChangeAnimationInherits)}
        << RandomGesture{QStringLiteral("copy layout animations"),
                         {Id::UpdateLayoutAnimations},
                         1,
                         animation(Id::UpdateLayoutAnimations)}
        << RandomGesture{QStringLiteral("add trigger"),
                         {Id::AddEventListener, Id::RemoveEventListener, Id::MoveTrigger},
                         2,
                         addTrigger}
        << RandomGesture{QStringLiteral("remove trigger"),
                         {Id::RemoveEventListener},
                         1,
                         trigger(Id::RemoveEventListener)}
        << RandomGesture{QStringLiteral("move trigger"), {Id::MoveTrigger}, 1, trigger(Id::MoveTrigger)}
        << RandomGesture{QStringLiteral("add playback mark"),
                         {Id::AddPlaybackListener, Id::RemovePlaybackListener, Id::ChangePlaybackListener},
                         2,
                         addPlaybackMark}
        << RandomGesture{QStringLiteral("remove playback mark"),
                         {Id::RemovePlaybackListener},
                         1,
                         mark(Id::RemovePlaybackListener)}
        << RandomGesture{QStringLiteral("change playback mark"),
                         {Id::ChangePlaybackListener},
                         1,
                         mark(Id::ChangePlaybackListener)};
}
