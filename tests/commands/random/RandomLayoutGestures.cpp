#include "RandomLayoutGestures.h"

#include "RandomCommandContext.h"
#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTElementProperty.h"
#include "VTScene.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QMap>

namespace {

using Id = VTCommandAction::ActionId;
using ElementId = VTElementCommandAction::ElementActionId;
using Direction = VTBreakpointManager::Direction;

// Breakpoints per direction, the base value 0 included.
constexpr int kMaxBreakpoints = 3;

VTBreakpointManager* breakpoints(const RandomCommandContext& context)
{
    VTSymbol* pSymbol = context.getSymbol();
    return pSymbol ? pSymbol->getBreakpointManager() : nullptr;
}

QList<VTLayoutKey> otherThanBase(const RandomCommandContext& context)
{
    QList<VTLayoutKey> lstLayouts = context.getLayouts();
    lstLayouts.removeAll(VTLayoutKey::base());
    return lstLayouts;
}

VTCommand* addBreakpoint(RandomCommandContext& context)
{
    VTBreakpointManager* pManager = breakpoints(context);
    // One draw per statement: the order in which arguments are worked out is the compiler's.
    const int nDirection = context.intIn(Direction::Horizontal, Direction::Vertical);
    const int nValue = context.intIn(2, 28) * 50;
    // Every element holds a block per layout, one per pair of breakpoints: a few in each direction
    // keep the project small enough to compare after every step.
    if (!pManager || pManager->getBreakpoints(static_cast<Direction>(nDirection)).size() >= kMaxBreakpoints)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("add breakpoint"));
    pCommand->createActionsToAddBreakpoint(nDirection, nValue);
    return pCommand;
}

VTCommand* removeBreakpoint(RandomCommandContext& context)
{
    VTBreakpointManager* pManager = breakpoints(context);
    if (!pManager)
        return nullptr;
    const auto direction = static_cast<Direction>(context.intIn(Direction::Horizontal, Direction::Vertical));
    const VTBreakpointManager::EntryList& lstEntries = pManager->getBreakpoints(direction);
    if (lstEntries.isEmpty())
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("remove breakpoint"));
    pCommand->createActionsToRemoveBreakpoint(direction,
                                              lstEntries.at(context.intIn(0, lstEntries.size() - 1)).second);
    return pCommand;
}

// A breakpoint dragged to another value between its neighbours.
VTCommand* moveBreakpoint(RandomCommandContext& context)
{
    VTBreakpointManager* pManager = breakpoints(context);
    if (!pManager)
        return nullptr;
    const auto direction = static_cast<Direction>(context.intIn(Direction::Horizontal, Direction::Vertical));
    const VTBreakpointManager::EntryList& lstEntries = pManager->getBreakpoints(direction);
    if (lstEntries.size() < 2)
        return nullptr;
    const int nIndex = context.intIn(1, lstEntries.size() - 1);
    const int nLow = lstEntries.at(nIndex - 1).second + 1;
    const int nHigh = nIndex + 1 < lstEntries.size() ? lstEntries.at(nIndex + 1).second - 1 : nLow + 500;
    if (nHigh < nLow)
        return nullptr;
    auto* pAction = new VTCommandAction(Id::UpdateBreakpoint, &context.getDocument(), 4);
    pAction->addParam(context.getSymbol(), false);
    pAction->addParam(static_cast<int>(direction));
    pAction->addParam(lstEntries.at(nIndex).first);
    pAction->addParam(context.intIn(nLow, nHigh));
    VTCommand* pCommand = context.newCommand(QStringLiteral("move breakpoint"));
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommand* showLayout(RandomCommandContext& context)
{
    VTSymbol* pSymbol = context.getSymbol();
    if (!pSymbol)
        return nullptr;
    const VTLayoutKey key = context.pick(context.getLayouts());
    VTCommand* pCommand = context.newCommand(QStringLiteral("show layout"));
    pCommand->createActionsToChangeCurrentBreakpoint(pSymbol, key.getHorizontalId(), key.getVerticalId(),
                                                     !key.isBase() || context.chance(50), false);
    return pCommand;
}

// An element's layout made a copy of its base layout again, animations included: the copy is put
// in at once, and the action that keeps the old block skips its first redo.
VTCommand* removeOverrides(RandomCommandContext& context)
{
    VTScene* pScene = context.getScene();
    VTElement* pElement = context.pick(context.getElements());
    const VTLayoutKey key = context.pick(otherThanBase(context));
    if (!pScene || !pElement || !pElement->getLayoutProperty(key) ||
        !pElement->getLayoutProperty(VTLayoutKey::base()))
        return nullptr;
    VTDocument* pDocument = &context.getDocument();
    VTCommand* pCommand = context.newCommand(QStringLiteral("remove overrides"));
    VTElementProperty* pOld =
        pElement->updateLayoutProperty(pElement->getLayoutProperty(VTLayoutKey::base())->clone(), key);
    for (VTTimeline* pTimeline : pScene->getTimelineManager()->getTimelines()) {
        if (VTAnimation* pAnimation = pTimeline->getAnimation(pElement, key)) {
            auto* pRemove = new VTCommandAction(Id::RemoveAnimation, pDocument, 3);
            pRemove->addParam(pAnimation, false);
            pRemove->addParam(pTimeline, false);
            pRemove->addParam(key);
            pCommand->addAction(pRemove);
        }
        if (const VTAnimation* pBase = pTimeline->getAnimation(pElement, VTLayoutKey::base())) {
            auto* pAdd = new VTCommandAction(Id::AddAnimation, pDocument, 3);
            pAdd->addParam(pBase->clone(pTimeline, key), true);
            pAdd->addParam(pTimeline, false);
            pAdd->addParam(key);
            pCommand->addAction(pAdd);
        }
    }
    auto* pKeep = new VTCommandAction(Id::UpdateLayoutProperty, pDocument, 4, true);
    pKeep->addParam(pElement, false);
    pKeep->addParam(key.getHorizontalId());
    pKeep->addParam(key.getVerticalId());
    pKeep->addParam(pOld, true);
    pCommand->addAction(pKeep);
    return pCommand;
}

// Properties a layout may override or inherit.
int pickOverridable(RandomCommandContext& context)
{
    static const QList<int> s_lstProperties{
        VT::PropLeft,     VT::PropTop,         VT::PropWidth,           VT::PropHeight,
        VT::PropOpacity,  VT::PropBorderColor, VT::PropBackgroundColor, VT::PropRotateZ,
        VT::PropFontSize, VT::PropShadowColor, VT::PropClassName,       VT::PropDisplay};
    return context.pick(s_lstProperties);
}

VTCommand* changeInherits(RandomCommandContext& context, int nId)
{
    VTElement* pElement = context.pick(context.getElements());
    const VTLayoutKey key = context.pick(otherThanBase(context));
    if (!pElement || !pElement->getLayoutProperty(key))
        return nullptr;
    VTCommandAction* pAction = nullptr;
    if (nId == Id::ChangeElementInherits) {
        pAction = new VTCommandAction(nId, &context.getDocument(), 4);
        pAction->addParam(pElement, false);
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        const int nProperty = pickOverridable(context);
        pAction->addParam(QMap<int, bool>{{nProperty, !pElement->isInherit(nProperty, key)}});
    } else {
        // The layout's whole map, one flag of it turned.
        QMap<int, bool> mapInherits = pElement->getInherits(key);
        const int nProperty = pickOverridable(context);
        mapInherits.insert(nProperty, !mapInherits.value(nProperty, true));
        pAction = new VTElementCommandAction(ElementId::SetInherits, &context.getDocument(), 3);
        pAction->addParam(pElement, false);
        pAction->addParam(key);
        pAction->addParam(mapInherits);
    }
    VTCommand* pCommand = context.newCommand(QStringLiteral("inherits"));
    pCommand->addAction(pAction);
    return pCommand;
}

} // namespace

void RandomLayoutGestures::append(QList<RandomGesture>& lstGestures)
{
    lstGestures
        << RandomGesture{QStringLiteral("add breakpoint"),
                         {Id::AddBreakpoint, Id::AddLayoutProperty, Id::AddLayoutAnimations,
                          Id::RemoveLayoutProperty, Id::RemoveLayoutAnimations, Id::ChangeAnimationInherits},
                         2,
                         addBreakpoint}
        << RandomGesture{QStringLiteral("remove breakpoint"),
                         {Id::RemoveBreakpoint, Id::RemoveLayoutProperty, Id::RemoveLayoutAnimations},
                         1,
                         removeBreakpoint}
        << RandomGesture{QStringLiteral("move breakpoint"), {Id::UpdateBreakpoint}, 1, moveBreakpoint}
        << RandomGesture{QStringLiteral("show layout"), {Id::ChangeCurrentBreakpoint}, 2, showLayout}
        << RandomGesture{QStringLiteral("remove overrides"), {Id::UpdateLayoutProperty}, 1, removeOverrides}
        << RandomGesture{QStringLiteral("layout inherits"),
                         {Id::ChangeElementInherits},
                         1,
                         [](RandomCommandContext& context) {
                             return changeInherits(context, Id::ChangeElementInherits);
                         }}
        << RandomGesture{
               QStringLiteral("set inherits"),
               {ElementId::SetInherits},
               1,
               [](RandomCommandContext& context) { return changeInherits(context, ElementId::SetInherits); }};
}
