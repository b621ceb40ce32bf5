// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/sanitizers.h"

#include <QDir>
#include <QtGlobal>

#include <malloc.h>

#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER
// GCC has the function, but not its header.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

/// The bytes of the heap in use by this process.
inline qint64 heapInUse()
{
#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 figures = ::mallinfo2();
    return static_cast<qint64>(figures.uordblks + figures.hblkhd);
#endif
}

/// The number of open files, pipes and the like of this process.
inline int openHandles()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}
