#include "VTCanvasCommands.h"

#include "MediaResource.h"
#include "VTBreakpointManager.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"
#include "VTMedia.h"
#include "VTScene.h"

#include <QCoreApplication>

namespace {

using Action = VTCommandAction;
using ElementAction = VTElementCommandAction;

// A command that only moves the user around: run now, kept out of the undo stack.
void runUnrecorded(VTCommand& command)
{
    if (!command.isEmpty())
        command.doCmd();
}

} // namespace

void VTCanvasCommands::deselectAll(VTDocument* pDocument, VTScene* pScene, VTElement* pExcept)
{
    VTCommand command(pDocument, QCoreApplication::translate("VTCanvas", "deselect all"));
    command.createActionsForDeselectAll(pScene->getSelectedElements(true), pExcept);
    runUnrecorded(command);
}

void VTCanvasCommands::selectAll(VTDocument* pDocument, VTScene* pScene)
{
    VTCommand command(pDocument, QCoreApplication::translate("VTCanvas", "Select All"));
    for (VTElement* pChild : pScene->getChildren()) {
        if (pChild->isSelected()) {
            command.createActionsForDeselectAll(pChild->getSelectedElements(true), nullptr);
            continue;
        }
        auto* pAction = new VTCommandAction(Action::SelectElement, pDocument, 2);
        pAction->addParam(pChild, false);
        pAction->addParam(true);
        command.addAction(pAction);
    }
    runUnrecorded(command);
}

void VTCanvasCommands::deselectOtherScenes(VTDocument* pDocument)
{
    VTCommand command(pDocument);
    command.createActionForDeselectAllSceneButCurrent();
    runUnrecorded(command);
}

void VTCanvasCommands::deleteElements(VTDocument* pDocument, VTScene* pScene,
                                      const QList<VTElement*>& lstElements)
{
    if (lstElements.isEmpty())
        return;
    auto* pCommand = new VTCommand(pDocument, QCoreApplication::translate("VTCanvas", "Delete"));
    pCommand->createActionsForDeleteElements(lstElements, pScene, true, true);
    if (pCommand->isEmpty()) {
        delete pCommand;
        return;
    }
    pDocument->submitCommand(pCommand);
}

void VTCanvasCommands::notifyPanels(VTDocument* pDocument, QObject* pSender, VTCommandAction* pAction)
{
    VTCommand notice(pDocument, QString(), pSender);
    notice.addAction(pAction);
    notice.doCmd();
}

void VTCanvasCommands::updateMediaProps(VTDocument* pDocument, VTElement* pElement, int nWidth, int nHeight,
                                        int nDuration, bool bOnlyUpdateMediaSize)
{
    auto* pMedia = qobject_cast<VTMedia*>(pElement);
    if (!pMedia || (pMedia->getType() != VT::AudioElement && pMedia->getType() != VT::VideoElement))
        return;
    pMedia->setInfoLoaded(true);
    const bool bHasSize = nWidth >= 1 && nHeight >= 1;
    auto* pResource = dynamic_cast<MediaResource*>(pMedia->getMediaResource());
    if (pResource && pResource->getType() == VTResource::Video && bHasSize)
        pResource->setSize(QSize(nWidth, nHeight));
    if (bOnlyUpdateMediaSize)
        return;

    VTCommand command(pDocument);
    auto* pDuration = new ElementAction(ElementAction::ChangeMediaDuration, pDocument, 2);
    pDuration->addParam(pElement, false);
    pDuration->addParam(nDuration);
    command.addAction(pDuration);
    if (bHasSize) {
        const VTSymbol* pSymbol = pDocument->getCurrentSymbol();
        const VTLayoutKey current = pMedia->getCurrentLayoutID();
        for (const VTLayoutKey& key : pSymbol->getBreakpointManager()->getAllBreakpointIds(true)) {
            pMedia->setCurrentLayoutID(key);
            auto* pGeometry = new ElementAction(ElementAction::ChangeGeometry, pDocument);
            pGeometry->prepareChangeGeometryParams(pMedia);
            pGeometry->setChangeGeometryProperty(VT::PropWidth, static_cast<double>(nWidth));
            pGeometry->setChangeGeometryProperty(VT::PropHeight, static_cast<double>(nHeight));
            command.addAction(pGeometry);
        }
        pMedia->setCurrentLayoutID(current);
    }
    command.doCmd();
}

void VTCanvasCommands::setCurrentBreakpoint(VTDocument* pDocument, int nDirection, int nPos)
{
    VTSymbol* pSymbol = pDocument->getCurrentSymbol();
    const VTBreakpointManager* pBreakpoints = pSymbol->getBreakpointManager();
    const VTLayoutKey current = pSymbol->getCurrentLayoutId(true);
    VTLayoutKey next = current;
    int nAction = 0;
    if (nDirection == VTBreakpointManager::Horizontal && current.getHorizontalId() != 0) {
        next.first = pBreakpoints->getBreakpointBySize(nPos, pSymbol->getHeight()).getHorizontalId();
        nAction = Action::SetSymbolWidth;
    } else if (nDirection == VTBreakpointManager::Vertical && current.getVerticalId() != 0) {
        next.second = pBreakpoints->getBreakpointBySize(pSymbol->getWidth(), nPos).getVerticalId();
        nAction = Action::SetSymbolHeight;
    } else {
        return;
    }
    VTCommand command(pDocument);
    auto* pAction = new VTCommandAction(nAction, pDocument, 2);
    pAction->addParam(pSymbol, false);
    pAction->addParam(nPos);
    command.addAction(pAction);
    if (next != current)
        command.createActionsToChangeCurrentBreakpoint(pSymbol, next.getHorizontalId(), next.getVerticalId(),
                                                       pSymbol->isResponsiveMode(), false);
    command.doCmd();
}
