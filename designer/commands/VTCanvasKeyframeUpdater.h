#pragma once

#include "VTLayoutKey.h"

#include <QList>
#include <QPointF>

class VTAnchorPoint;
class VTCommand;
class VTElement;
class VTElementCommandAction;
class VTMotionPathKeyframe;
class VTScene;
class VTSymbol;
class VTTimeline;

// The keyframe side of a stage gesture. The page only says where an element ended up; whether
// that becomes a new key at the playhead, a changed key, or a shift of a whole track depends on
// the auto-keyframe mode, on the keys already there and on which layouts the edit reaches. These
// builders add the actions for that behind the element action that carries the new values, and,
// like every builder, read the model as it stands before the command runs.
//
// An animation or keyframe that has to exist for a key is made and attached at once, its action
// skipping the first redo, so that the later steps of the same build can find it.
class VTCanvasKeyframeUpdater final
{
public:
    VTCanvasKeyframeUpdater() = delete;

    // Keys for a geometry action (1000) whose element shows the action's layout. bMoveOnly: the
    // gesture only moved the element, so position tracks keep their shape and only the key at the
    // playhead follows.
    static void updateGeometryKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand, bool bMoveOnly);
    // Keys for a text action (1008): size, letter and word space, line height, indent and colours.
    static void updateTextKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand, VTScene* pScene);

    // Takes ownership of pAnchor. An anchor with a key time brings its key value along.
    static void createActionsToAddAnchorPoint(VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe,
                                              int nIndex, VTAnchorPoint* pAnchor);
    // Moves an anchor and keeps the key it stands for in step; bNoTransitionUpdate leaves the
    // transitions of the neighbouring segments as they are.
    static void createActionsToMoveAnchorPoint(VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe,
                                               int nIndex, const QPointF& ptPosition,
                                               const QPointF& ptControl1, const QPointF& ptControl2,
                                               bool bNoTransitionUpdate);

    // The layouts a stage operation walks: in responsive mode only the one shown, else all.
    static QList<VTLayoutKey> getBreakpointIds(const VTSymbol* pSymbol);
    // Whether the current timeline of the element's scene has a keyframe of the property for the
    // element in that layout; any key counts.
    static bool hasKeyframe(const VTElement* pElement, int nProperty, const VTLayoutKey& key);

    // A value that the geometry action writes, as the element holds it in that layout; 0 for other
    // properties.
    static double geometryValue(const VTElement& element, int nProperty, const VTLayoutKey& key);
    // Values the page sends went through pixels and back; closer than this they are the same.
    static bool isNearlyEqual(double dA, double dB);
    // The current timeline of the scene that holds the element (the scene itself included).
    static VTTimeline* currentTimeline(const VTElement* pElement);
};
