#include "RandomTreeGestures.h"

#include "RandomCommandContext.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTElementFactory.h"
#include "VTImage.h"
#include "VTMedia.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTSymbolElement.h"

#include <QMap>
#include <QSizeF>

#include <algorithm>

namespace {

using Id = VTCommandAction::ActionId;
using ElementId = VTElementCommandAction::ElementActionId;

bool isContainer(const VTElement* pElement)
{
    return pElement->getType() == VT::GroupElement || pElement->getType() == VT::DivElement;
}

// Drops every element that has an ancestor in the list, as a selection on the stage never holds
// both.
QList<VTElement*> topMost(const QList<VTElement*>& lstElements)
{
    QList<VTElement*> lstTop;
    for (VTElement* pElement : lstElements) {
        const bool bCovered =
            std::any_of(lstElements.cbegin(), lstElements.cend(), [pElement](VTElement* pOther) {
                return pOther != pElement && pOther->isParentOf(pElement);
            });
        if (!bCovered)
            lstTop.append(pElement);
    }
    return lstTop;
}

// A new element with every layout of the symbol, placed somewhere on the stage.
VTElement* newElement(RandomCommandContext& context, int nType)
{
    VTElement* pElement = VTElementFactory::createElement(nType);
    const VTLayoutKey base = VTLayoutKey::base();
    pElement->setPositionX(context.intIn(0, 600), base);
    pElement->setPositionY(context.intIn(0, 400), base);
    pElement->setSizeW(context.intIn(20, 200), base);
    pElement->setSizeH(context.intIn(20, 200), base);
    pElement->prepareLayoutProperty(context.getLayouts(), true, base);
    return pElement;
}

VTCommandAction* addElementAction(VTDocument* pDocument, VTElement* pElement, int nIndex, VTScene* pScene,
                                  VTElement* pParent)
{
    auto* pAction = new VTCommandAction(Id::AddElement, pDocument, 4);
    pAction->addParam(pElement, true);
    pAction->addParam(nIndex);
    pAction->addParam(pScene, false);
    if (pParent && pParent != pScene)
        pAction->addParam(pParent, false);
    return pAction;
}

VTCommand* addElement(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    if (!pScene)
        return nullptr;
    // The freeform and the shape stand for the kinds of their own actions.
    static const QList<int> s_lstKinds{VT::TextElement, VT::DivElement, VT::GroupElement, VT::ShapeElement,
                                       VT::FreeFormElement};
    VTElement* pParent = context.chance(40) ? context.pick(context.getElements(isContainer)) : nullptr;
    const VTElement* pContainer = pParent ? pParent : pScene;
    const int nIndex = context.intIn(-1, pContainer->getChildren().size());
    VTCommand* pCommand = context.newCommand(QStringLiteral("add element"));
    if (!pParent && context.chance(50))
        pCommand->createActionsForDeselectAll(pScene->getSelectedElements(true), nullptr);
    pCommand->addAction(addElementAction(
        &context.getDocument(), newElement(context, context.pick(s_lstKinds)), nIndex, pScene, pParent));
    return pCommand;
}

// An element that shows a resource of the project: a picture, a sound, a film, a page or a placed
// symbol (never a symbol inside itself).
VTCommand* placeElement(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    VTResourceManager* pResources = context.getDocument().getResourceManager();
    const bool bInSymbol = context.getSymbol() != &context.getDocument();
    QList<int> lstKinds{VT::ImageElement, VT::AudioElement, VT::VideoElement, VT::HTMLWidgetElement};
    if (!bInSymbol)
        lstKinds << VT::SymbolElement;
    const int nKind = context.pick(lstKinds);
    static const QMap<int, int> s_mapResourceTypes{{VT::ImageElement, VTResource::Image},
                                                   {VT::AudioElement, VTResource::Audio},
                                                   {VT::VideoElement, VTResource::Video},
                                                   {VT::SymbolElement, VTResource::Symbol}};
    VTResource* pResource =
        s_mapResourceTypes.contains(nKind)
            ? context.pick(pResources->getResourcesByType(s_mapResourceTypes.value(nKind), true))
            : nullptr;
    if (!pScene || (s_mapResourceTypes.contains(nKind) && !pResource))
        return nullptr;
    VTElement* pElement = newElement(context, nKind);
    if (auto* pImage = qobject_cast<VTImage*>(pElement))
        pImage->setImageResource(pResource);
    else if (auto* pMedia = qobject_cast<VTMedia*>(pElement))
        pMedia->setMediaResource(pResource);
    else if (auto* pSymbol = qobject_cast<VTSymbolElement*>(pElement))
        pSymbol->setSymbolResource(pResource);
    VTCommand* pCommand = context.newCommand(QStringLiteral("place element"));
    pCommand->addAction(addElementAction(&context.getDocument(), pElement,
                                         context.intIn(-1, pScene->getChildren().size()), pScene, nullptr));
    return pCommand;
}

VTCommand* deleteElements(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    const QList<VTElement*> lstElements =
        topMost(context.pickSome(context.getElements(), context.intIn(1, 3)));
    if (!pScene || lstElements.isEmpty())
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("delete"));
    // The whole subtree's animations go, as with the stage's delete; keeping them is for an ungroup,
    // whose children leave the group first.
    pCommand->createActionsForDeleteElements(lstElements, pScene, context.chance(50), true);
    return pCommand;
}

VTCommand* reorderElement(RandomCommandContext& context)
{
    VTElement* pElement = context.pick(context.getElements(
        [](const VTElement* pElement) { return pElement->getParent()->getChildren().size() > 1; }));
    if (!pElement)
        return nullptr;
    const int nCount = pElement->getParent()->getChildren().size();
    const int nOld = pElement->getParent()->getChildIndex(pElement);
    const int nNew = (nOld + context.intIn(1, nCount - 1)) % nCount;
    auto* pAction = new VTCommandAction(Id::ChangeElementOrder, &context.getDocument(), 3);
    pAction->addParam(pElement, false);
    pAction->addParam(nOld);
    pAction->addParam(nNew);
    VTCommand* pCommand = context.newCommand(QStringLiteral("arrange"));
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* dragElements(RandomCommandContext& context)
{
    const QList<VTElement*> lstElements = context.getElements();
    VTElement* pTarget = context.pick(lstElements);
    if (!pTarget)
        return nullptr;
    // Only a container takes elements into itself; any element takes them beside it.
    const QList<int> lstPositions =
        isContainer(pTarget) ? QList<int>{1, 2, 4, 8, 16, 32, 64} : QList<int>{1, 2, 4, 8, 16};
    VTCommand* pCommand = context.newCommand(QStringLiteral("drag in tree"));
    const QList<VTElement*> lstMoved = context.pickSome(lstElements, context.intIn(1, 2));
    pCommand->createActionsToDragElement(lstMoved, pTarget, context.pick(lstPositions));
    return pCommand;
}

// Some children of one container go into a new group that spans them; each keeps its place on
// the stage, in the layout the user looks at.
VTCommand* groupElements(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    if (!pScene)
        return nullptr;
    QList<VTElement*> lstContainers = context.getElements([](const VTElement* pElement) {
        return isContainer(pElement) && !pElement->getChildren().isEmpty();
    });
    if (!pScene->getChildren().isEmpty())
        lstContainers.append(pScene);
    VTElement* pParent = context.pick(lstContainers);
    if (!pParent)
        return nullptr;
    QList<VTElement*> lstMembers = context.pickSome(pParent->getChildren(), context.intIn(1, 3));
    std::sort(lstMembers.begin(), lstMembers.end(), [pParent](const VTElement* pA, const VTElement* pB) {
        return pParent->getChildIndex(pA) < pParent->getChildIndex(pB);
    });
    QRectF bounds;
    for (const VTElement* pMember : qAsConst(lstMembers)) {
        bounds |= QRectF(pMember->getComputedLeft(), pMember->getComputedTop(), pMember->getComputedW(),
                         pMember->getComputedH());
    }
    VTElement* pGroup = VTElementFactory::createElement(VT::GroupElement);
    const VTLayoutKey base = VTLayoutKey::base();
    pGroup->setPositionX(bounds.left(), base);
    pGroup->setPositionY(bounds.top(), base);
    pGroup->setSizeW(qMax(1.0, bounds.width()), base);
    pGroup->setSizeH(qMax(1.0, bounds.height()), base);
    pGroup->prepareLayoutProperty(context.getLayouts(), true, base);

    VTDocument* pDocument = &context.getDocument();
    VTCommand* pCommand = context.newCommand(QStringLiteral("group"));
    pCommand->addAction(
        addElementAction(pDocument, pGroup, pParent->getChildIndex(lstMembers.first()), pScene, pParent));
    for (VTElement* pMember : qAsConst(lstMembers)) {
        auto* pAction = new VTCommandAction(Id::ReparentElement, pDocument, 5);
        pAction->addParam(pMember, false);
        pAction->addParam(pParent, false);
        pAction->addParam(-1);
        pAction->addParam(pGroup, false);
        pAction->addParam(-1);
        pCommand->addAction(pAction);
    }
    const QSizeF oldSize(pParent->getComputedW(), pParent->getComputedH());
    const QSizeF newSize(bounds.size());
    for (VTElement* pMember : qAsConst(lstMembers)) {
        QMap<int, double> mapBase;
        pCommand->createActionsToLayoutElementWhenGrouping(
            pMember, mapBase, oldSize, newSize,
            {{VT::PropLeft, pMember->getComputedLeft() - bounds.left()},
             {VT::PropTop, pMember->getComputedTop() - bounds.top()}});
    }
    return pCommand;
}

VTCommand* showOrLock(RandomCommandContext& context, bool bLock)
{
    VTElement* pElement = context.pick(context.getElements());
    if (!pElement)
        return nullptr;
    VTCommand* pCommand = context.newCommand(bLock ? QStringLiteral("lock") : QStringLiteral("show"));
    if (bLock)
        pCommand->createActionsForLockCmd(pElement, !pElement->isLocked(), true);
    else
        pCommand->createActionsForVisibleCmd(pElement, !pElement->isVisible(), true);
    return pCommand;
}

VTCommand* selectElements(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    if (!pScene)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("select"));
    if (context.chance(30)) {
        pCommand->createActionsForDeselectAll(pScene->getSelectedElements(true), nullptr);
    } else if (VTElement* pElement = context.pick(context.getElements())) {
        pCommand->createActionsForSelectElement(pElement, !pElement->isSelected());
    }
    return pCommand;
}

VTCommand* addScene(RandomCommandContext& context)
{
    VTSceneManager* pScenes = context.getScenes();
    VTSymbol* pSymbol = context.getSymbol();
    if (!pScenes || !pSymbol)
        return nullptr;
    auto* pScene = new VTScene();
    pScene->initDefault();
    pScene->setSizeW(pSymbol->getWidth());
    pScene->setSizeH(pSymbol->getHeight());
    pScene->prepareLayoutProperty(context.getLayouts(), true, VTLayoutKey::base());
    auto* pAction = new VTCommandAction(Id::AddScene, &context.getDocument(), 3);
    pAction->addParam(pScene, true);
    pAction->addParam(context.intIn(-1, pScenes->getSceneCount()));
    pAction->addParam(pScenes, false);
    VTCommand* pCommand = context.newCommand(QStringLiteral("add scene"));
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommandAction* selectSceneAction(VTDocument* pDocument, VTScene* pScene, bool bSelect)
{
    auto* pAction = new VTCommandAction(Id::SelectScene, pDocument, 2);
    pAction->addParam(pScene, false);
    pAction->addParam(bSelect);
    return pAction;
}

VTCommand* removeScene(RandomCommandContext& context)
{
    VTSceneManager* pScenes = context.getScenes();
    if (!pScenes || pScenes->getSceneCount() < 2)
        return nullptr;
    // The current scene as often as any other: removing it makes another one current.
    VTScene* pScene = context.chance(50) ? pScenes->getCurrentScene() : nullptr;
    if (!pScene)
        pScene = context.pick(pScenes->getScenes());
    VTCommand* pCommand = context.newCommand(QStringLiteral("remove scene"));
    // The user always has a scene to work in.
    if (pScenes->getSelectedScenes() == QList<VTScene*>{pScene}) {
        QList<VTScene*> lstOthers = pScenes->getScenes();
        lstOthers.removeOne(pScene);
        pCommand->addAction(selectSceneAction(&context.getDocument(), context.pick(lstOthers), true));
    }
    auto* pAction = new VTCommandAction(Id::RemoveScene, &context.getDocument(), 3);
    pAction->addParam(pScene, false);
    pAction->addParam(-1);
    pAction->addParam(pScenes, false);
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* selectScene(RandomCommandContext& context)
{
    VTSceneManager* pScenes = context.getScenes();
    VTScene* pScene = pScenes ? context.pick(pScenes->getScenes()) : nullptr;
    if (!pScene || (pScene->isSelected() && pScenes->getSelectedScenes().size() < 2))
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("select scene"));
    pCommand->addAction(selectSceneAction(&context.getDocument(), pScene, !pScene->isSelected()));
    return pCommand;
}

// Another scene made the one the user works in, as a click on its thumbnail does: its selection
// and that of the scene left behind stay as they are.
VTCommand* switchScene(RandomCommandContext& context)
{
    VTSceneManager* pScenes = context.getScenes();
    QList<VTScene*> lstOthers = pScenes ? pScenes->getScenes() : QList<VTScene*>();
    if (pScenes)
        lstOthers.removeAll(pScenes->getCurrentScene());
    VTScene* pScene = context.pick(lstOthers);
    if (!pScene)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("switch scene"));
    if (!pScene->isSelected())
        pCommand->addAction(selectSceneAction(&context.getDocument(), pScene, true));
    for (VTScene* pSelected : pScenes->getSelectedScenes()) {
        if (pSelected != pScene)
            pCommand->addAction(selectSceneAction(&context.getDocument(), pSelected, false));
    }
    return pCommand;
}

// A click on the stage while several scenes are selected: the others are let go at once.
VTCommand* focusStage(RandomCommandContext& context)
{
    VTCommand* pCommand = context.newCommand(QStringLiteral("focus stage"));
    pCommand->createActionForDeselectAllSceneButCurrent();
    return pCommand;
}

VTCommand* moveScene(RandomCommandContext& context)
{
    VTSceneManager* pScenes = context.getScenes();
    if (!pScenes || pScenes->getSceneCount() < 2)
        return nullptr;
    // Dropped onto its own place or the next one, a scene stays where it is.
    const int nFrom = context.intIn(0, pScenes->getSceneCount() - 1);
    int nTo = context.intIn(0, pScenes->getSceneCount() - 2);
    if (nTo >= nFrom)
        nTo += 2;
    auto* pAction = new VTCommandAction(Id::MoveScene, &context.getDocument(), 3);
    pAction->addParam(pScenes, false);
    pAction->addParam(nFrom);
    pAction->addParam(nTo);
    VTCommand* pCommand = context.newCommand(QStringLiteral("move scene"));
    pCommand->addAction(pAction);
    return pCommand;
}

} // namespace

void RandomTreeGestures::append(QList<RandomGesture>& lstGestures)
{
    lstGestures << RandomGesture{QStringLiteral("add element"),
                                 {Id::AddElement, ElementId::ChangeAdjustments, ElementId::ChangeFreeFormPath,
                                  ElementId::SetFreeFormEditPoint, ElementId::ChangeArrowStyle,
                                  ElementId::ChangeCorner, ElementId::ChangeText},
                                 6,
                                 addElement}
                << RandomGesture{QStringLiteral("place element"),
                                 {Id::AddPlaybackListener, Id::RemovePlaybackListener,
                                  Id::ChangePlaybackListener, ElementId::ChangeImageResource,
                                  ElementId::ChangeImageAlt, ElementId::ChangeBgImage,
                                  ElementId::ChangeMediaDuration, ElementId::ChangeVolume,
                                  ElementId::SetMediaAutoplay, ElementId::SetMediaLoop,
                                  ElementId::SetMediaControls, ElementId::SetMediaPreload,
                                  ElementId::ChangeHtmlWidgetSource, ElementId::ChangeHtmlWidgetCode,
                                  ElementId::UpdateHtmlWidgetFromResource, ElementId::SetSymbolAutoplay},
                                 2,
                                 placeElement}
                << RandomGesture{QStringLiteral("delete"),
                                 {Id::RemoveElement, Id::RemoveAnimation},
                                 3,
                                 deleteElements}
                << RandomGesture{QStringLiteral("arrange"), {Id::ChangeElementOrder}, 3, reorderElement}
                << RandomGesture{QStringLiteral("drag in tree"), {Id::ReparentElement}, 4, dragElements}
                << RandomGesture{QStringLiteral("group"),
                                 {Id::ReparentElement, ElementId::ChangeGeometry},
                                 3,
                                 groupElements}
                << RandomGesture{QStringLiteral("show"),
                                 {ElementId::SetVisible},
                                 2,
                                 [](RandomCommandContext& context) { return showOrLock(context, false); }}
                << RandomGesture{QStringLiteral("lock"),
                                 {ElementId::SetLocked},
                                 2,
                                 [](RandomCommandContext& context) { return showOrLock(context, true); }}
                << RandomGesture{QStringLiteral("select"), {Id::SelectElement}, 3, selectElements}
                << RandomGesture{QStringLiteral("add scene"),
                                 {Id::AddScene, Id::RemoveScene, Id::SelectScene, Id::MoveScene},
                                 1,
                                 addScene}
                << RandomGesture{QStringLiteral("remove scene"), {Id::RemoveScene}, 1, removeScene}
                << RandomGesture{QStringLiteral("select scene"), {Id::SelectScene}, 1, selectScene}
                << RandomGesture{QStringLiteral("switch scene"), {Id::SelectScene}, 2, switchScene}
                << RandomGesture{QStringLiteral("focus stage"), {Id::SelectScene}, 2, focusStage}
                << RandomGesture{QStringLiteral("move scene"), {Id::MoveScene}, 1, moveScene};
}
