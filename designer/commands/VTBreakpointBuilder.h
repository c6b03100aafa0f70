#pragma once

class VTCommand;
class VTSymbol;

// Adding and removing breakpoints copies or drops whole layouts of blocks and animations. These
// builders change the model while they build; their actions skip the first redo.
class VTBreakpointBuilder final
{
public:
    static void createActionsToAddBreakpoint(VTCommand& command, int nDirection, int nValue);
    static void createActionsToRemoveBreakpoint(VTCommand& command, int nDirection, int nValue);
    static void createActionsToChangeCurrentBreakpoint(VTCommand& command, VTSymbol* pSymbol, int nH, int nV,
                                                       bool bResponsive, bool bSkipFirstRedo);
};
