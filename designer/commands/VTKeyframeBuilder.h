#pragma once

#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QList>

class VTAnchorPoint;
class VTAnimation;
class VTCommand;
class VTElement;
class VTKeyValue;
class VTKeyframe;
class VTMotionPathKeyframe;
class VTTimeline;

// Keyframe gestures: deleting keys and anchors of motion paths without changing the curve's
// shape, removing a keyframe so the property returns to its layout's value, saving a value
// before the first keyframe, animation inherit flags.
class VTKeyframeBuilder final
{
public:
    static void prepairToDeleteAnchorPoint(VTCommand& command, VTMotionPathKeyframe* pKeyframe, int nIndex);
    static void createActionsToDeleteAnchorPoint(VTCommand& command, VTTimeline* pTimeline,
                                                 VTMotionPathKeyframe* pKeyframe, int nIndex,
                                                 const VTLayoutKey& key);
    static void createActionsToAddKeyAnchorPoint(VTCommand& command, VTMotionPathKeyframe* pKeyframe,
                                                 VTAnchorPoint* pAnchor, int nIndex);
    static void createActionsToDeleteKeyValues(VTCommand& command, VTTimeline* pTimeline,
                                               VTKeyframe* pKeyframe, const QList<VTKeyValue*>& lstKeys,
                                               const VTLayoutKey& key);
    static void createActionsToRemoveKeyframe(VTCommand& command, VTTimeline* pTimeline,
                                              VTKeyframe* pKeyframe, const VTLayoutKey& key);
    static void createActionsToSaveCurrentElementPropValue(VTCommand& command, VTElement* pElement,
                                                           VT::ElementProperty property,
                                                           const VTLayoutKey& key);
    static void createActionsToChangeAnimationInherit(VTCommand& command, VTAnimation* pAnimation,
                                                      const VTLayoutKey& key, VT::ElementProperty property,
                                                      bool bInherit);
};
