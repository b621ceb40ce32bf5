// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#define DATAMUTEX_ACQUIRED(mutex) __tsan_acquire(mutex)
#define DATAMUTEX_RELEASING(mutex) __tsan_release(mutex)
#else
#define DATAMUTEX_ACQUIRED(mutex) static_cast<void>(mutex)
#define DATAMUTEX_RELEASING(mutex) static_cast<void>(mutex)
#endif

/// A QMutex for std::unique_lock and std::lock_guard. It tells the thread sanitizer of its locking, which Qt's own
/// library, built without the sanitizer, does not.
class DataMutex {
public:
    void lock()
    {
        mutex.lock();
        DATAMUTEX_ACQUIRED(&mutex);
    }
    bool try_lock()
    {
        if (!mutex.tryLock())
            return false;
        DATAMUTEX_ACQUIRED(&mutex);
        return true;
    }
    void unlock()
    {
        DATAMUTEX_RELEASING(&mutex);
        mutex.unlock();
    }

private:
    QMutex mutex;
};
