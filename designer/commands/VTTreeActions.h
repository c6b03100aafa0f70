#pragma once

class VTCommandAction;

// The actions that change the tree of a symbol: elements entering, leaving and moving inside a
// scene, scenes entering, leaving and moving inside their manager, and selection. What an action
// takes out of the tree is owned by its first parameter until the action puts it back.
class VTTreeActions final
{
public:
    VTTreeActions() = delete;

    static bool handles(int nId);
    static void run(VTCommandAction& action, bool bUndo);

private:
    static void addElement(VTCommandAction& action, bool bAdd);
    static void reparentElement(VTCommandAction& action, bool bUndo);
    static void changeElementOrder(VTCommandAction& action, bool bUndo);
    static void addScene(VTCommandAction& action, bool bAdd);
    static void selectScene(VTCommandAction& action);
    static void moveScene(VTCommandAction& action);
    static void selectElement(VTCommandAction& action);
};
