#pragma once

#include "RandomGesture.h"

// Gestures on keyframes, their key values and the anchors of motion paths, as the timeline panel,
// the inspector and the stage make them.
class RandomKeyframeGestures final
{
public:
    RandomKeyframeGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
