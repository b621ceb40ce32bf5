// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendwatch.h"

#include "backend/timedbackend.h"
#include "host/hostlog.h"
#include "host/journaledbackend.h"
#include "host/standarderror.h"

#include <utility>

namespace host {

BackendWatch::BackendWatch(HostLog &log)
    : log(log)
    , exchanges(std::make_shared<backend::ExchangeTimes>(
          [this](const backend::Exchange &exchange, std::chrono::nanoseconds duration) { report(exchange, duration); }))
    , watchdog(*exchanges, hangingExchange, [](const backend::Exchange &exchange, std::chrono::nanoseconds duration) {
        printWarning(SlowExchanges::warningFor(exchange, duration)); // at once: the log waits for the event loop
    })
{
    watchdog.start();
}

BackendWatch::~BackendWatch() = default;

std::shared_ptr<backend::TrackingBackend> BackendWatch::wrap(std::shared_ptr<backend::TrackingBackend> backend)
{
    auto timed = std::make_shared<backend::TimedBackend>(std::move(backend), exchanges);
    auto wrapped = std::make_shared<JournaledBackend>(std::move(timed), commands, ++connections, [times = exchanges] {
        return times->lastDuration() > slowExchange;
    });
    newest = wrapped;
    return wrapped;
}

void BackendWatch::report(const backend::Exchange &exchange, std::chrono::nanoseconds duration)
{
    if (const std::optional<QString> entry = slow.entryFor(exchange, duration))
        log.info(*entry);
    if (duration >= hangingExchange)
        emit stoodStill(SlowExchanges::resultFor(exchange, duration));
}

} // namespace host
