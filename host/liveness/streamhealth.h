// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/healthsnapshot.h"
#include "host/liveness/linequeue.h"
#include "host/liveness/linestatistics.h"

#include <mutex>

namespace host {

/// How a source is doing, from its lines: how many come, how old they are, what was lost. It is fed by the thread that
/// receives them and asked by any other.
///
/// The feeding thread never waits: while a snapshot is taken its lines go to a queue, from which whoever comes next
/// takes them over. Lines that do not fit there are left out of the figures and counted.
class StreamHealth {
public:
    using Time = std::chrono::nanoseconds;

    /// One thread at a time.
    void add(const backend::ReceivedLine &line);
    /// \a now counts from the same start as the times of the lines. Any thread.
    HealthSnapshot snapshot(Time now);
    /// Forgets all lines, for a new source. Any thread, while none is added.
    void clear();

private:
    void takeWaiting();

    std::mutex mutex; // guards the next; add() does not wait for it
    LineStatistics statistics;
    LineQueue waiting; // add() fills it, who holds the mutex empties it
    std::atomic<quint64> unwatched{0}; // add() counts, any thread reads
};

} // namespace host
