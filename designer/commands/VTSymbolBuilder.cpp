#include "VTSymbolBuilder.h"

#include "VTBreakpointBuilder.h"
#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"
#include "VTHTMLWidget.h"
#include "VTOtherResource.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTSymbolElement.h"

namespace {

VTResourceManager* resourceManagerOf(const VTCommand& command)
{
    VTDocument* pDocument = command.getDocument();
    return pDocument ? pDocument->getResourceManager() : nullptr;
}

// -1 names the project's own symbol, any other number a symbol resource.
int symbolResourceId(const VTCommand& command, VTSymbol* pSymbol)
{
    VTDocument* pDocument = command.getDocument();
    if (!pSymbol || pSymbol == static_cast<VTSymbol*>(pDocument))
        return -1;
    const VTResourceManager* pManager = resourceManagerOf(command);
    const VTResource* pResource = pManager ? pManager->getResourceForSymbol(pSymbol) : nullptr;
    return pResource ? pResource->getId() : -1;
}

// The placement of the symbol resource among the scene's direct children that the user most
// likely came from: the selected one, else the last one.
VTSymbolElement* findPlacement(const VTScene* pScene, const VTResource* pResource)
{
    if (!pScene || !pResource)
        return nullptr;
    const VTElement* pFirstSelected = pScene->getSelectedElements(true).value(0, nullptr);
    VTSymbolElement* pFound = nullptr;
    for (VTElement* pChild : pScene->getChildren()) {
        auto* pPlacement = qobject_cast<VTSymbolElement*>(pChild);
        if (!pPlacement || pPlacement->getSymbolResource() != pResource)
            continue;
        if (pPlacement == pFirstSelected)
            return pPlacement;
        pFound = pPlacement;
    }
    return pFound;
}

} // namespace

void VTSymbolBuilder::createActionsForChangeCurrentSymbol(VTCommand& command, VTSymbol* pSymbol)
{
    VTDocument* pDocument = command.getDocument();
    if (!pDocument || !pSymbol)
        return;
    VTSymbol* pOldSymbol = pDocument->getCurrentSymbol();
    const int nNewId = symbolResourceId(command, pSymbol);
    const int nOldId = symbolResourceId(command, pOldSymbol);
    const VTResourceManager* pManager = resourceManagerOf(command);
    VTResource* pNewResource = pManager ? pManager->getResourceForSymbol(pSymbol) : nullptr;
    const VTSceneManager* pOldScenes = pOldSymbol ? pOldSymbol->getSceneManager() : nullptr;
    if (const VTSymbolElement* pPlacement =
            findPlacement(pOldScenes ? pOldScenes->getCurrentScene() : nullptr, pNewResource)) {
        // Editing a symbol opens at the size at which it is placed.
        createActionsToUpdateContainerSizeAndCurrentBreakpoint(command, pSymbol,
                                                               static_cast<int>(pPlacement->getComputedW()),
                                                               static_cast<int>(pPlacement->getComputedH()));
    }
    auto* pAction = new VTCommandAction(VTCommandAction::ChangeCurrentSymbol, pDocument, 2);
    pAction->addParam(nNewId);
    pAction->addParam(nOldId);
    command.addAction(pAction);
}

void VTSymbolBuilder::createActionsToUpdateContainerSizeAndCurrentBreakpoint(VTCommand& command,
                                                                             VTSymbol* pSymbol, int nWidth,
                                                                             int nHeight)
{
    if (!pSymbol)
        return;
    const auto addSize = [&](int nId, int nValue) {
        auto* pAction = new VTCommandAction(nId, command.getDocument(), 2);
        pAction->addParam(pSymbol, false);
        pAction->addParam(nValue);
        command.addAction(pAction);
    };
    if (pSymbol->getWidth() != nWidth)
        addSize(VTCommandAction::SetSymbolWidth, nWidth);
    if (pSymbol->getHeight() != nHeight)
        addSize(VTCommandAction::SetSymbolHeight, nHeight);
    if (!pSymbol->isResponsiveMode())
        return;
    const VTLayoutKey key = pSymbol->getBreakpointManager()->getBreakpointBySize(nWidth, nHeight);
    if (key != pSymbol->getCurrentLayoutId(true))
        VTBreakpointBuilder::createActionsToChangeCurrentBreakpoint(command, pSymbol, key.getHorizontalId(),
                                                                    key.getVerticalId(), true, false);
}

void VTSymbolBuilder::createActionsForAddResource(VTCommand& command, VTResource* pResource,
                                                  bool bSkipFirstRedo)
{
    if (!pResource)
        return;
    auto* pRestore =
        new VTCommandAction(VTCommandAction::RestoreResource, command.getDocument(), 1, bSkipFirstRedo);
    pRestore->addParam(pResource);
    command.addAction(pRestore);

    if (const VTResourceManager* pManager = resourceManagerOf(command)) {
        const QString name = pManager->getValidResourceName(pResource->getName(), pResource);
        if (name != pResource->getName()) {
            pResource->setName(name);
            auto* pRename = new VTCommandAction(VTCommandAction::RenameResource, command.getDocument(), 2);
            pRename->addParam(pResource);
            pRename->addParam(name);
            command.addAction(pRename);
        }
    }
    // A new script or style sheet is linked into the page by the action, not before, so that
    // undoing the addition also unlinks it.
    if (auto* pOther = dynamic_cast<VTOtherResource*>(pResource)) {
        if (pResource->getType() == VTResource::Script || pResource->getType() == VTResource::StyleSheet) {
            pOther->setIncludeResource(false);
            auto* pInclude =
                new VTCommandAction(VTCommandAction::SetIncludeResource, command.getDocument(), 2);
            pInclude->addParam(pResource);
            pInclude->addParam(true);
            command.addAction(pInclude);
        }
    }
}

void VTSymbolBuilder::createActionsToUpdateHtmlWidgetFromResource(VTCommand& command, VTSymbol* pSymbol,
                                                                  const VTResource* pResource)
{
    if (!pSymbol || !pResource || pResource->getType() != VTResource::Html)
        return;
    for (VTScene* pScene : pSymbol->getSceneManager()->getScenes()) {
        for (VTElement* pElement : VTBuilderSupport::collectSubtree(pScene)) {
            const auto* pWidget = qobject_cast<const VTHTMLWidget*>(pElement);
            if (!pWidget || pWidget->getHTMLResource() != pResource)
                continue;
            auto* pAction = new VTElementCommandAction(VTElementCommandAction::UpdateHtmlWidgetFromResource,
                                                       command.getDocument(), 1);
            pAction->addParam(pElement, false);
            command.addAction(pAction);
        }
    }
}
