// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/contract/windowedsession.h"

#include <functional>

/// A head target, two bodies, the second with a sensor, and a reference: nearly every question there is.
extern const char firstSetup[];
/// After the first: another number of bodies, other names, no head target, the sensor on another body, no reference.
extern const char secondSetup[];

/// Runs inside the \a k-th of the calls from now on in which a host may wait for its backend, 1 being the next.
void insideCall(HandMadeHost &host, int k, const std::function<void()> &act);
/// The calls among \a calls in which a host may wait: all but lines for its log.
int callsIn(const QByteArrayList &calls);

/// A shown panel, and what is to be seen of it.
struct NestedSession : WindowedSession {
    bool startWith(const char *setup);

    /// Does one of the things in which the panel asks the backend: "configuration", "sensor pass", "filter state".
    void act(const QByteArray &action);
    /// The number of those calls in an action, which is done.
    int callsOf(const QByteArray &action);
    void redraw() const;
    /// Delivers a frame with one tracked body per row.
    void deliverFrame(int rows, const char *x) const;

    /// Every cell of the 6DOF table with its text, its brushes and its bar, and which columns are hidden.
    QStringList seen() const;
    /// The cells of the 6DOF table without those of the sensors.
    QStringList seenBodies() const;
    bool isTimerActive(const char *name) const; ///< of the panel
};
