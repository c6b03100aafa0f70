#pragma once

#include <QAtomicPointer>
#include <QMutex>
#include <QMutexLocker>

// Base of the process-wide services. The instance is made on first use; the mutex guards only
// creation and destruction, so getInstance() costs one atomic load once the instance exists.
// A service declares `friend class ISingleton<T>;` and keeps its constructor private.
template <class T> class ISingleton
{
public:
    static T* getInstance()
    {
        T* pInstance = s_pInstance.loadAcquire();
        if (!pInstance) {
            QMutexLocker locker(s_pMutex);
            pInstance = s_pInstance.loadAcquire();
            if (!pInstance) {
                pInstance = new T;
                s_pInstance.storeRelease(pInstance);
            }
        }
        return pInstance;
    }

    static void destroyInstance()
    {
        QMutexLocker locker(s_pMutex);
        delete s_pInstance.fetchAndStoreOrdered(nullptr);
    }

    ISingleton(const ISingleton&) = delete;
    ISingleton& operator=(const ISingleton&) = delete;

protected:
    ISingleton() = default;
    ~ISingleton() = default;

private:
    static inline QAtomicPointer<T> s_pInstance{};
    // Never deleted: a service may be destroyed from a static destructor after others are gone.
    static inline QMutex* s_pMutex = new QMutex;
};
