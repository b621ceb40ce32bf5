// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/liveness.h"

#include <QObject>

#include <chrono>
#include <optional>

class QMainWindow;

namespace host {

class BackendSession;
class HostLog;

/// Looks at the source ten times a second: how old its lines are, and what was lost. A silence and its end go to the
/// log as warnings. GUI thread.
class LivenessMonitor : public QObject {
    Q_OBJECT

public:
    using Clock = std::chrono::steady_clock;

    /// The panels whose counts are read are those in the docks of \a window. All outlive this object.
    LivenessMonitor(BackendSession &session, HostLog &log, const QMainWindow &window);

    const Liveness &liveness() const { return current; }
    const HealthSnapshot &snapshot() const { return figures; } ///< since the source was opened
    const SourceFacts &facts() const { return known; }
    quint64 lostOnTheWay() const; ///< since the start of the program
    quint64 late() const; ///< likewise

    /// Does what the timer does, at a time of the caller's choice.
    void look(Clock::time_point now);

signals:
    void looked(); ///< ten times a second
    void levelChanged(); ///< after it

private:
    void beginSource();
    void readFacts(Clock::time_point now);

    BackendSession &session;
    HostLog &log;
    const QMainWindow &window;
    Liveness current;
    HealthSnapshot figures;
    SourceFacts known;
    LivenessReport report;
    quint64 lostBefore = 0; // on the way, of the sources before
    quint64 lateBefore = 0; // late, of the sources before
    std::optional<Clock::time_point> wantedSince;
    Clock::time_point countsRead; // of the panels
};

} // namespace host
