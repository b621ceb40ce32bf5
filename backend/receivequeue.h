// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace backend {

/// Lines on their way from a thread that must not wait to one that takes them. Holds no more than a span of time or of
/// bytes: the oldest lines go and are counted, so that what is taken is never old. Any thread.
class ReceiveQueue {
public:
    using Clock = LineStream::Clock;

    static constexpr std::chrono::seconds longestSpan{1}; ///< between the oldest line and the newest
    static constexpr qint64 mostBytes = 8'000'000; ///< of all lines together, with what it costs to keep them

    /// \a line is not older than the ones before.
    void push(const ReceivedLine &line);
    /// No line comes any more.
    void finish();
    /// Drops all lines that wait; they count as late.
    void clear();

    /// See LineStream.
    /// @{
    QVector<ReceivedLine> take(Clock::time_point deadline);
    void wake() noexcept;
    quint64 late() const;
    /// @}
    bool isFinished() const; ///< no line waits, and none will come

private:
    void dropOldest();

    mutable std::mutex mutex; // guards all that follows
    std::condition_variable changed;
    std::deque<ReceivedLine> lines;
    qint64 bytes = 0; // of the lines
    quint64 lateLines = 0;
    bool isWoken = false;
    bool hasEnded = false;
};

} // namespace backend
