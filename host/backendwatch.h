// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/commandjournal.h"
#include "host/slowexchanges.h"
#include "host/watchdog.h"

#include <QObject>

#include <memory>

namespace backend {
class TrackingBackend;
} // namespace backend

namespace host {

class HostLog;
class JournaledBackend;

/// Watches every exchange with the backends: how long it takes, and what commands change. An exchange that takes long
/// is logged; one that lasts is told on the standard error meanwhile, since the window can't. GUI thread.
class BackendWatch : public QObject {
    Q_OBJECT

public:
    /// \a log outlives this object and all backends that it wraps.
    explicit BackendWatch(HostLog &log);
    ~BackendWatch() override;

    /// \a backend with the watch around it. This object outlives what is returned.
    std::shared_ptr<backend::TrackingBackend> wrap(std::shared_ptr<backend::TrackingBackend> backend);

    /// The backend that was wrapped last; nullptr when nobody holds it any more.
    std::shared_ptr<JournaledBackend> newestBackend() const { return newest.lock(); }
    int newestConnection() const { return connections; } ///< its number in the journal; 0: there was none
    CommandJournal &journal() { return commands; }
    const backend::ExchangeTimes &times() const { return *exchanges; }

signals:
    /// An exchange that had kept the window waiting for a second or more has ended. Any thread.
    void stoodStill(const QString &text);

private:
    void report(const backend::Exchange &exchange, std::chrono::nanoseconds duration);

    HostLog &log;
    CommandJournal commands;
    SlowExchanges slow;
    const std::shared_ptr<backend::ExchangeTimes> exchanges;
    std::weak_ptr<JournaledBackend> newest;
    int connections = 0;
    Watchdog watchdog; // the last member: its thread ends first
};

} // namespace host
