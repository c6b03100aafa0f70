#pragma once

class VTCommand;
class VTResource;
class VTSymbol;

// Gestures on the symbol being edited and on resources: entering a symbol at its placement's
// size, container size and breakpoint, adding a resource, refreshing HTML widgets.
class VTSymbolBuilder final
{
public:
    static void createActionsForChangeCurrentSymbol(VTCommand& command, VTSymbol* pSymbol);
    static void createActionsToUpdateContainerSizeAndCurrentBreakpoint(VTCommand& command, VTSymbol* pSymbol,
                                                                       int nWidth, int nHeight);
    static void createActionsForAddResource(VTCommand& command, VTResource* pResource, bool bSkipFirstRedo);
    static void createActionsToUpdateHtmlWidgetFromResource(VTCommand& command, VTSymbol* pSymbol,
                                                            const VTResource* pResource);
};
