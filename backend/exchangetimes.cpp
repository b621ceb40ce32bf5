// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/exchangetimes.h"

#include <algorithm>
#include <utility>

namespace backend {

namespace {

using Nanoseconds = std::chrono::nanoseconds;

constexpr std::size_t keptSamples = 101; // odd, so that a full ring has one in the middle

Nanoseconds medianOf(std::vector<Nanoseconds> durations)
{
    if (durations.empty())
        return Nanoseconds(0);
    const auto middle = durations.begin() + static_cast<std::ptrdiff_t>(durations.size() / 2);
    std::nth_element(durations.begin(), middle, durations.end());
    if (durations.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(durations.begin(), middle)) / 2;
}

} // namespace

ExchangeTimes::ExchangeTimes(Listener listener, Now now)
    : listener(std::move(listener))
    , now(std::move(now))
    , ownThread(std::this_thread::get_id())
{
}

quint64 ExchangeTimes::begin(const QByteArray &text)
{
    const bool onOwnThread = std::this_thread::get_id() == ownThread;
    const Clock::time_point start = now();
    const std::lock_guard lock(mutex);
    current.push_back({++begun, text, start, onOwnThread});
    return begun;
}

void ExchangeTimes::end(quint64 number) noexcept
try {
    const Clock::time_point time = now();
    Exchange exchange;
    {
        const std::lock_guard lock(mutex);
        const auto found = std::find_if(current.begin(), current.end(),
                                        [=](const Exchange &running) { return running.number == number; });
        if (found == current.end())
            return;
        exchange = std::move(*found);
        current.erase(found);
        last = time - exchange.start;
        ++ended;
        addSample(exchange.text, last);
    }
    if (listener)
        listener(exchange, time - exchange.start);
} catch (...) {
    return; // the exchange itself went well
}

std::vector<Exchange> ExchangeTimes::running() const
{
    const std::lock_guard lock(mutex);
    return current;
}

Nanoseconds ExchangeTimes::lastDuration() const
{
    const std::lock_guard lock(mutex);
    return last;
}

quint64 ExchangeTimes::count() const
{
    const std::lock_guard lock(mutex);
    return ended;
}

QVector<TextTimes> ExchangeTimes::slowerThan(Nanoseconds limit) const
{
    QVector<TextTimes> slow;
    {
        const std::lock_guard lock(mutex);
        for (auto it = samples.cbegin(); it != samples.cend(); ++it) {
            if (it->worst > limit)
                slow.append({it.key(), it->count, medianOf(it->latest), it->worst});
        }
    }
    std::sort(slow.begin(), slow.end(), [](const TextTimes &left, const TextTimes &right) {
        return left.worst != right.worst ? left.worst > right.worst : left.text < right.text;
    });
    return slow;
}

void ExchangeTimes::addSample(const QByteArray &text, Nanoseconds duration)
{
    if (samples.size() >= keptTexts && !samples.contains(text))
        forgetFastTexts();
    Samples &times = samples[text];
    if (times.latest.size() < keptSamples)
        times.latest.push_back(duration);
    else
        times.latest[times.count % keptSamples] = duration;
    times.worst = std::max(times.worst, duration);
    ++times.count;
}

/// Half of the texts at once, so that a command with ever new values does not come back here each time.
void ExchangeTimes::forgetFastTexts()
{
    std::vector<Nanoseconds> worst;
    worst.reserve(static_cast<std::size_t>(samples.size()));
    for (const Samples &times : qAsConst(samples))
        worst.push_back(times.worst);
    const Nanoseconds limit = medianOf(std::move(worst));
    for (auto it = samples.begin(); it != samples.end();)
        it = it->worst <= limit ? samples.erase(it) : std::next(it);
}

} // namespace backend
