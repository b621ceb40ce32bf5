// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <array>
#include <cstddef>

// The heap of a test's process, counted and made to fail. What this library defines replaces the C library's functions
// for every library of the process; operator new and Qt's containers come here too. A sanitizer has a heap of its own:
// what it does not allow is said at each class.

/// The number of blocks that this process has allocated from the heap so far, by whatever means. Any thread.
quint64 allocationCount();

/// While it lives, allocations of its thread fail: those from number \a first to number \a last, 1 being the next.
/// Under a sanitizer only those of operator new fail, where failingnew.cpp is one of the test's sources.
class FailingHeap {
public:
    FailingHeap(long first, long last);
    ~FailingHeap();
    FailingHeap(const FailingHeap &) = delete;
    FailingHeap &operator=(const FailingHeap &) = delete;

    /// How many allocations this thread has tried since the last FailingHeap began.
    static long count();
    /// Counts an allocation of this thread. Returns whether it is to fail.
    static bool isToFail();
};

/// The blocks of the heap that are allocated and not released, by whatever means. The C library's own figures count
/// what it keeps for the next allocations, too, and that differs from run to run.
class HeapSnapshot {
public:
    /// The figures of now. Under a sanitizer only the bytes.
    static HeapSnapshot now();

    qint64 bytes() const { return liveBytes; }
    qint64 blocks() const { return liveBlocks; }
    /// The sizes of which there are more or fewer blocks than in \a earlier: "+2 of 64 bytes, -1 of 32 bytes".
    QString changesSince(const HeapSnapshot &earlier) const;

    static constexpr std::size_t stepOfSize = 16; ///< [byte]
    static constexpr std::size_t sizeCount = 1024; ///< the last one is of all larger blocks

private:
    qint64 liveBytes = 0;
    qint64 liveBlocks = 0;
    std::array<qint64, sizeCount> blocksOfSize{};
};
