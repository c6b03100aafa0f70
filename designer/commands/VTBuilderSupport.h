#pragma once

#include "VTLayoutKey.h"

#include <QList>
#include <QVariant>

class VTBreakpointManager;
class VTCommand;
class VTCommandAction;
class VTElement;
class VTScene;
class VTSymbol;

// What the compound builders share: where the user works, the elements of a scene, and reading a
// layout's value without leaving a trace in the model.
class VTBuilderSupport final
{
public:
    VTBuilderSupport() = delete;

    // The symbol being edited in the command's document, its current scene and its breakpoints;
    // null where a link is missing.
    static VTSymbol* currentSymbol(const VTCommand& command);
    static VTScene* currentScene(const VTCommand& command);
    static VTBreakpointManager* currentBreakpoints(const VTCommand& command);
    // The breakpoints of the symbol that holds the scene, or of the current symbol without one.
    static VTBreakpointManager* breakpointsOf(const VTCommand& command, const VTScene* pScene);

    // The element and its whole subtree, parents before children.
    static QList<VTElement*> collectSubtree(VTElement* pElement);
    // Every selected element below pRoot, at any depth, whatever its ancestors' state.
    static QList<VTElement*> collectSelected(const VTElement* pRoot);

    // The Qt property that a keyframe of nProperty animates, as the element holds it in that
    // layout. Values of the element itself are read through its current layout, so the element
    // shows that layout for the read; its timelines do not follow, which keeps animated values
    // where they are. Invalid where the layout or the property has nothing to read.
    static QVariant readBoundValue(VTElement* pElement, int nProperty, const VTLayoutKey& key);

    // The first action of that id on the element whose layout key is key, or null. Actions that
    // carry no layout (or carry it where this does not look) never match.
    static VTCommandAction* findLayoutAction(const VTCommand& command, int nId, const VTElement* pElement,
                                             const VTLayoutKey& key);
};

// Shows an element (and its subtree) another layout for a few reads and puts the old one back.
// The switch bypasses what a scene adds to it, so timelines are neither re-seeked nor re-wired.
class VTLayoutSwitch final
{
public:
    VTLayoutSwitch(VTElement* pElement, const VTLayoutKey& key);
    ~VTLayoutSwitch();
    VTLayoutSwitch(const VTLayoutSwitch&) = delete;
    VTLayoutSwitch& operator=(const VTLayoutSwitch&) = delete;

    // Shows another layout; the one from before the first switch is still what comes back.
    void switchTo(const VTLayoutKey& key);

private:
    VTElement* m_pElement = nullptr;
    VTLayoutKey m_oldKey;
};
