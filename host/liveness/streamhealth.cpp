// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/streamhealth.h"

#include <algorithm>

namespace host {

void StreamHealth::add(const backend::ReceivedLine &line)
{
    const std::unique_lock lock(mutex, std::try_to_lock);
    if (lock.owns_lock()) {
        takeWaiting();
        statistics.add(line);
    } else if (!waiting.push(line)) {
        ++unwatched;
    }
}

HealthSnapshot StreamHealth::snapshot(Time now)
{
    const std::lock_guard lock(mutex);
    takeWaiting();
    HealthSnapshot snapshot = statistics.snapshot(now);
    snapshot.unwatched = unwatched;
    snapshot.missing -= std::min(snapshot.missing, snapshot.unwatched); // they left gaps, and were there
    return snapshot;
}

void StreamHealth::clear()
{
    const std::lock_guard lock(mutex);
    takeWaiting();
    statistics = {};
    unwatched = 0;
}

void StreamHealth::takeWaiting()
{
    backend::ReceivedLine line;
    while (waiting.pop(line))
        statistics.add(line);
}

} // namespace host
