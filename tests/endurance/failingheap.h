// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

/// While it lives, allocations of its thread fail: those from number \a first to number \a last, 1 being the next.
/// Under a sanitizer, which has a heap of its own, only those of operator new.
class FailingHeap {
public:
    FailingHeap(long first, long last);
    ~FailingHeap();
    FailingHeap(const FailingHeap &) = delete;
    FailingHeap &operator=(const FailingHeap &) = delete;

    /// The number of allocations since its birth, failed ones included.
    static long count();
};
