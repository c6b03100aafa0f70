#pragma once

class VTCommandAction;

// The actions of responsive layouts: an element's property block of one layout, its inherit map
// there, and the breakpoints and current layout of a symbol. A block taken from an element is
// owned by the action's parameter until it goes back.
class VTLayoutActions final
{
public:
    VTLayoutActions() = delete;

    static bool handles(int nId);
    static void run(VTCommandAction& action, bool bUndo);

private:
    static void addLayoutProperty(VTCommandAction& action, bool bAdd);
    static void updateLayoutProperty(VTCommandAction& action);
    static void addBreakpoint(VTCommandAction& action, bool bAdd);
    static void removeBreakpoint(VTCommandAction& action, bool bRemove);
    static void updateBreakpoint(VTCommandAction& action);
    static void changeCurrentBreakpoint(VTCommandAction& action);
    static void changeElementInherits(VTCommandAction& action);
};
