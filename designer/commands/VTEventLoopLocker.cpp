#include "VTEventLoopLocker.h"

#include <QEventLoop>
#include <QTimer>

namespace {
constexpr int kAnswered = 1;
} // namespace

bool VTEventLoopLocker::wait(int nMilliseconds)
{
    QEventLoop loop;
    QTimer timer;
    if (nMilliseconds >= 1) {
        timer.setSingleShot(true);
        connect(&timer, &QTimer::timeout, &loop, [&loop]() { loop.exit(0); });
        timer.start(nMilliseconds);
    }
    m_lstLoops.append(&loop);
    const int nResult = loop.exec(QEventLoop::ExcludeUserInputEvents);
    // Gone already when an answer ended it.
    m_lstLoops.removeOne(&loop);
    return nResult == kAnswered;
}

void VTEventLoopLocker::stopWaiting()
{
    // The loop leaves the list at once: a second answer handled in the same pass of events is
    // meant for the wait around it.
    if (!m_lstLoops.isEmpty())
        m_lstLoops.takeLast()->exit(kAnswered);
}
