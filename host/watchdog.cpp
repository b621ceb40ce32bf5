// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/watchdog.h"

#include <algorithm>
#include <utility>

namespace host {

Watchdog::Watchdog(const backend::ExchangeTimes &times, std::chrono::nanoseconds limit, Report report)
    : times(times)
    , limit(limit)
    , report(std::move(report))
{
}

Watchdog::~Watchdog()
{
    if (!thread.joinable())
        return;
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    ended.notify_all();
    thread.join();
}

void Watchdog::start()
{
    if (!thread.joinable())
        thread = std::thread([this] { run(); });
}

Watchdog::Clock::time_point Watchdog::look(Clock::time_point now)
{
    // An exchange does not wake the thread, which would cost it more than the rest of the host. A look every quarter
    // of the limit finds each that lasts, in time to look again at the very moment.
    const auto step = std::chrono::duration_cast<Clock::duration>(limit);
    Clock::time_point next = now + step / 4;
    for (const backend::Exchange &exchange : times.running()) { // oldest first
        if (exchange.number <= reported)
            continue;
        const Clock::time_point due = exchange.start + step;
        if (now < due) {
            next = std::min(next, due);
            continue;
        }
        reported = exchange.number;
        report(exchange, now - exchange.start);
    }
    return next;
}

Watchdog::Clock::time_point Watchdog::lookSafely() noexcept
try {
    return look(Clock::now());
} catch (...) {
    return Clock::now() + std::chrono::seconds(1); // out of memory: the host goes on without the report
}

void Watchdog::run()
{
    std::unique_lock lock(mutex);
    while (!ending) {
        lock.unlock();
        const Clock::time_point next = lookSafely();
        lock.lock();
        ended.wait_until(lock, next, [this] { return ending; });
    }
}

} // namespace host
