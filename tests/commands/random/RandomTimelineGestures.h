#pragma once

#include "RandomGesture.h"

// Gestures of the timeline panel above the keys: timelines, labels, whole animations, triggers
// and the playback marks of media and symbols.
class RandomTimelineGestures final
{
public:
    RandomTimelineGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
