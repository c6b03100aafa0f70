#pragma once

#include "RandomGesture.h"

// Gestures of the inspector pages: every element action, each on an element of a kind that has
// the values it writes, in one of the layouts the element holds.
class RandomElementGestures final
{
public:
    RandomElementGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
