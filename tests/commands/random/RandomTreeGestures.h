#pragma once

#include "RandomGesture.h"

// Gestures on the element tree and the scenes: insert, delete, reorder, drag in the tree, group,
// show, hide, lock, select, and the scene list.
class RandomTreeGestures final
{
public:
    RandomTreeGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
