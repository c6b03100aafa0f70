#pragma once

#include <QList>

class VTCommand;
class VTElement;

// Visibility, lock and selection gestures: the actions that hide, lock, select or deselect
// elements and scenes, keeping selection consistent with what can be selected.
class VTSelectionBuilder final
{
public:
    static void createActionsForVisibleCmd(VTCommand& command, VTElement* pElement, bool bVisible,
                                           bool bApplyParent);
    static void createActionsForVisibleParentCmd(VTCommand& command, VTElement* pElement, bool bVisible);
    static void createActionsForLockCmd(VTCommand& command, VTElement* pElement, bool bLock,
                                        bool bApplyParent);
    static void createActionsForLockParentCmd(VTCommand& command, VTElement* pElement, bool bLock);
    static void createActionForDeselectAllSceneButCurrent(VTCommand& command);
    static void createActionsForDeselectAll(VTCommand& command, const QList<VTElement*>& lstElements,
                                            VTElement* pExcept);
    static void createActionsForSelectElement(VTCommand& command, VTElement* pElement, bool bSelect);
};
