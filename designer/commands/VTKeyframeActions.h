#pragma once

class VTCommandAction;

// The actions inside one keyframe and its motion path: key values, the segments between them,
// the unit of the track, and the anchors of the path. A key value or an anchor taken out of its
// keyframe or path lives in the action's parameter until it is put back.
class VTKeyframeActions final
{
public:
    VTKeyframeActions() = delete;

    static bool handles(int nId);
    static void run(VTCommandAction& action, bool bUndo);

private:
    static void moveKeyframe(VTCommandAction& action);
    static void changeEasing(VTCommandAction& action);
    static void setTransition(VTCommandAction& action);
    static void invertKeyValues(VTCommandAction& action);
    static void addKeyValue(VTCommandAction& action, bool bAdd);
    static void removeKeyValue(VTCommandAction& action, bool bRemove);
    static void changeKeyValue(VTCommandAction& action);
    static void moveKeyValue(VTCommandAction& action);
    static void addAnchorPoint(VTCommandAction& action, bool bAdd);
    static void setAnchorKeyTime(VTCommandAction& action);
    static void setAnchorPointData(VTCommandAction& action);
    static void changeAllKeyValues(VTCommandAction& action);
    static void invertAnchorPoints(VTCommandAction& action);
    static void changeUnitSign(VTCommandAction& action);
};
