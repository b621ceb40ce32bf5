// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <array>
#include <atomic>

namespace host {

/// Lines on their way from one thread to another, without a lock. A bounded queue: what does not fit is refused.
class LineQueue {
public:
    /// Returns whether there was room. One thread at a time.
    bool push(const backend::ReceivedLine &line)
    {
        const std::size_t end = pushed.load(std::memory_order_relaxed);
        if (end - popped.load(std::memory_order_acquire) == capacity)
            return false;
        lines[end % capacity] = line;
        pushed.store(end + 1, std::memory_order_release);
        return true;
    }

    /// Takes the oldest line out; returns false when there is none. One thread at a time, which may be another one.
    bool pop(backend::ReceivedLine &line)
    {
        const std::size_t begin = popped.load(std::memory_order_relaxed);
        if (begin == pushed.load(std::memory_order_acquire))
            return false;
        line = std::move(lines[begin % capacity]);
        lines[begin % capacity] = {}; // its text is not kept until the queue comes around
        popped.store(begin + 1, std::memory_order_release);
        return true;
    }

    static constexpr std::size_t capacity = 1024;

private:
    std::array<backend::ReceivedLine, capacity> lines;
    std::atomic<std::size_t> pushed{0}; // ever; the pushing thread writes, both read
    std::atomic<std::size_t> popped{0}; // ever; the popping thread writes, both read
};

} // namespace host
