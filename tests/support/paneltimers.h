// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

class DataDisplay;

/// The two timers inside a panel, which nobody outside it is told of. They are members of it, so their places are
/// learned once, from the timer events that reach them.
class PanelTimers {
public:
    /// Runs a panel with a sensor until both timers have ticked, about one second. False when they don't tick.
    bool learn();

    const QTimer &viewTimer(const DataDisplay &panel) const { return timerAt(panel, viewOffset); }
    const QTimer &sensorTimer(const DataDisplay &panel) const { return timerAt(panel, sensorOffset); }

private:
    static const QTimer &timerAt(const DataDisplay &panel, qptrdiff offset);

    qptrdiff viewOffset = 0;
    qptrdiff sensorOffset = 0;
};
