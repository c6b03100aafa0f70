#pragma once

#include "ISingleton.h"

#include <QList>
#include <QObject>

class QEventLoop;

// A bounded wait for an answer that comes through the event loop, such as the stage page saying
// that it has finished its running work. While it waits, events other than the user's input are
// processed, so the answer can arrive but no click or key starts a second gesture meanwhile.
class VTEventLoopLocker final : public QObject, public ISingleton<VTEventLoopLocker>
{
    Q_OBJECT
public:
    // Returns when stopWaiting() is called or after nMilliseconds, whichever comes first; below 1
    // there is no time limit. True when the wait was ended by stopWaiting(). A wait started inside
    // another one is ended first.
    bool wait(int nMilliseconds);
    bool isWaiting() const { return !m_lstLoops.isEmpty(); }

public slots:
    // Ends the innermost wait; does nothing when nobody waits.
    void stopWaiting();
    void quit() { stopWaiting(); }

private:
    friend class ISingleton<VTEventLoopLocker>;
    VTEventLoopLocker() = default;

    QList<QEventLoop*> m_lstLoops;
};
