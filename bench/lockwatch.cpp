// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/lockwatch.h"

#include "bench/stopwatch.h"

#include <QMutex>

#include <dlfcn.h>

#include <utility>

namespace {

using MutexFunction = void (*)(QMutex *);

thread_local QMutex *held = nullptr; // the outermost: Qt locks its own ones meanwhile
thread_local double heldSince = 0.0;
thread_local double lockedSeconds = 0.0;

MutexFunction qtFunction(const char *symbol)
{
    // POSIX lets an object pointer of dlsym() be taken for a function's.
    return reinterpret_cast<MutexFunction>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const MutexFunction qtLock = qtFunction("_ZN6QMutex4lockEv");
    qtLock(this);
    if (held)
        return;
    held = this;
    heldSince = wallSeconds();
}

void QMutex::unlock() noexcept
{
    static const MutexFunction qtUnlock = qtFunction("_ZN6QMutex6unlockEv");
    if (this == held) {
        lockedSeconds += wallSeconds() - heldSince;
        held = nullptr;
    }
    qtUnlock(this);
}

double takeLockedSeconds() noexcept
{
    return std::exchange(lockedSeconds, 0.0);
}
