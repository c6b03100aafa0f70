#pragma once

#include "VTLayoutKey.h"

#include <QList>

class VTAnimation;
class VTCommand;
class VTElement;
class VTScene;
class VTTimeline;

// Deleting elements: deselect, drop their animations in every layout of every timeline, detach.
class VTDeleteBuilder final
{
public:
    static void createActionsForDeleteElements(VTCommand& command, const QList<VTElement*>& lstElements,
                                               VTScene* pScene, bool bToGroups, bool bWholeGroups);
    static void replaceElementsByGroupParent(QList<VTElement*>& lstElements);
    static void createActionsForDeleteAnimationGroup(VTCommand& command, VTElement* pElement,
                                                     VTTimeline* pTimeline);
    static void createActionsForDeleteAnimation(VTCommand& command, VTAnimation* pAnimation,
                                                VTTimeline* pTimeline, const VTLayoutKey& key);
};
