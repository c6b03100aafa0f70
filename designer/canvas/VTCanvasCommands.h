#pragma once

#include <QList>

class QObject;
class VTCommandAction;
class VTDocument;
class VTElement;
class VTScene;

// The commands the stage starts on its own: selection changes that only move the user around,
// notices for the panels about the page's text edit, and what the page measured or dragged (media
// sizes, the stage's edge). None but the deletion enters the undo stack.
class VTCanvasCommands final
{
public:
    VTCanvasCommands() = delete;

    // Deselects every selected element of the scene but pExcept and its ancestors.
    static void deselectAll(VTDocument* pDocument, VTScene* pScene, VTElement* pExcept);
    // Selects the scene's direct children; a selected child stands for its whole subtree, so what
    // is selected below it is deselected.
    static void selectAll(VTDocument* pDocument, VTScene* pScene);
    // Only the current scene stays selected once the stage has the focus.
    static void deselectOtherScenes(VTDocument* pDocument);
    // One undo step "Delete"; groups whose members are all selected go whole.
    static void deleteElements(VTDocument* pDocument, VTScene* pScene, const QList<VTElement*>& lstElements);
    // Runs a record-only action that pSender made: the panels hear of it, the page does not.
    static void notifyPanels(VTDocument* pDocument, QObject* pSender, VTCommandAction* pAction);
    // What the page measured of a sound or film: its size (kept by a film resource) and duration,
    // the size given to the element in every layout. Anything but a media element is ignored.
    static void updateMediaProps(VTDocument* pDocument, VTElement* pElement, int nWidth, int nHeight,
                                 int nDuration, bool bOnlyUpdateMediaSize);
    // The stage's edge was dragged to nPos in a direction (0 width, 1 height) that has
    // breakpoints: the symbol takes the size, and the layout that holds it becomes current.
    static void setCurrentBreakpoint(VTDocument* pDocument, int nDirection, int nPos);
};
