// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>

// GCC tells by a macro that it compiles with the thread sanitizer, clang by a feature.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define DATAMUTEX_TELLS_SANITIZER
#endif
#elif defined(__SANITIZE_THREAD__)
#define DATAMUTEX_TELLS_SANITIZER
#endif
#if defined(DATAMUTEX_TELLS_SANITIZER)
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
