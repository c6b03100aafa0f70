#pragma once

#include "RandomGesture.h"

// Gestures on what the project holds beside its stage: event handlers, resources, functions, the
// symbol being edited and its size, the export and preloader settings, and the commands that only
// carry a record to the views.
class RandomDocumentGestures final
{
public:
    RandomDocumentGestures() = delete;
    static void append(QList<RandomGesture>& lstGestures);
};
