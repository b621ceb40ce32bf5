// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/exchangetimes.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace host {

/// Finds exchanges that last. Looks on a thread of its own: the one that waits for the answer can't.
class Watchdog {
public:
    using Clock = backend::Exchange::Clock;
    /// Told of an exchange once, when it has lasted as long as the limit; on the watchdog's thread.
    using Report = std::function<void(const backend::Exchange &exchange, std::chrono::nanoseconds duration)>;

    /// \a times outlives this object.
    Watchdog(const backend::ExchangeTimes &times, std::chrono::nanoseconds limit, Report report);
    /// Ends the thread and waits for it.
    ~Watchdog();

    /// Begins to look, on a thread of its own.
    void start();

    /// Reports what has lasted long enough at \a now. Returns when to look again. What the thread does; a test that
    /// has not started it may do the same.
    Clock::time_point look(Clock::time_point now);

private:
    Q_DISABLE_COPY(Watchdog)

    void run();
    Clock::time_point lookSafely() noexcept;

    const backend::ExchangeTimes &times;
    const std::chrono::nanoseconds limit;
    const Report report;
    quint64 reported = 0; // watchdog's thread; the number of the last exchange that was reported
    std::mutex mutex; // guards the next
    bool ending = false;
    std::condition_variable ended;
    std::thread thread;
};

} // namespace host
