#pragma once

class VTCommandAction;

// The actions on timelines and on what they hold per layout: the timelines of a scene, labels,
// triggers, the animations and keyframes of elements, playback marks and the per-layout
// animation sets. Added objects belong to the model; removed ones to the action's parameter.
class VTTimelineActions final
{
public:
    VTTimelineActions() = delete;

    static bool handles(int nId);
    static void run(VTCommandAction& action, bool bUndo);

private:
    static void addTimeline(VTCommandAction& action, bool bAdd);
    static void setCurrentTimeline(VTCommandAction& action);
    static void renameTimeline(VTCommandAction& action);
    static void addLabel(VTCommandAction& action, bool bAdd);
    static void renameLabel(VTCommandAction& action);
    static void moveLabel(VTCommandAction& action);
    static void addAnimation(VTCommandAction& action, bool bAdd);
    static void addKeyframe(VTCommandAction& action, bool bAdd);
    static void moveTrigger(VTCommandAction& action);
    static void addPlaybackListener(VTCommandAction& action, bool bAdd);
    static void changePlaybackListener(VTCommandAction& action);
    static void setAutoOrient(VTCommandAction& action);
    static void changeMainTimeline(VTCommandAction& action);
    static void putLayoutAnimations(VTCommandAction& action);
    static void takeLayoutAnimations(VTCommandAction& action);
    static void updateLayoutAnimations(VTCommandAction& action);
    static void changeAnimationInherits(VTCommandAction& action);
};
