#pragma once

#include "RandomGesture.h"

// Gestures of the responsive toolbar and of layout overrides: breakpoints added, removed, moved
// and shown, a layout reset to the base, and the inherit flags of a layout.
class RandomLayoutGestures final
{
public:
    RandomLayoutGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
