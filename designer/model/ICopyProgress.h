#pragma once

#include <QtGlobal>

#include <functional>

// Progress of a long copy as the user sees it: the model reports the bytes it moved and asks
// whether the user gave up.
class ICopyProgress
{
public:
    virtual ~ICopyProgress() = default;
    virtual void addCopiedBytes(qint64 nBytes) = 0;
    virtual bool wasCanceled() const = 0;
    // Called when the user cancels, while the copy is still running.
    virtual void setCancelHandler(std::function<void()> handler) = 0;
};
