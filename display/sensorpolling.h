// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/callsequence.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <optional>

class IOManager;

/// What one polling pass found out about an inertial sensor.
struct SensorReading {
    enum class Presence {
        Unknown, ///< the backend did not answer: what the row shows stays
        Absent,
        Present
    };

    Presence presence = Presence::Unknown;
    double battery = -1.0; ///< 0 to 1; nothing to show at 0 and below
    double temperature = -1.0; ///< [deg C]; nothing to show at 0 and below
    double warmth = -1.0; ///< 0 to 1: how far the sensor has warmed up
};

/// Asks for the sensor with the backend's id \a sensor. The \a first time after a configuration it counts as absent.
/// Returns nothing where \a isWanted, asked after each answer, says no.
std::optional<SensorReading> readSensor(IOManager &io, const QByteArray &sensor, bool first,
                                        const std::function<bool()> &isWanted);

/// When the sensors are polled: a sensor that is switched on now is seen soon, and a backend that runs for weeks is
/// asked ever less often. GUI thread.
class SensorPolling {
public:
    /// From a configuration to the first polling pass [ms].
    static constexpr int firstInterval = 1000;

    SensorPolling();

    /// Begins a polling pass, and ends one that still waits for an answer. Not a timer's: see isWaiting().
    CallSequence::Call beginPass();
    /// Whether a pass waits for an answer: a slow backend must not be asked twice at a time.
    bool isWaiting() const { return pass && !pass->isSuperseded(); }
    void endPass() { pass.reset(); }
    /// Makes a pass that waits for an answer end there.
    void abandonPass() { passes.begin(); }

    /// Starts the schedule over.
    void restart() { sensorScheduleIndex = 0; }
    /// The interval to the next pass [ms]; nothing at the end of the schedule, where it stays as it is.
    std::optional<int> nextInterval();

private:
    QList<int> sensorIntervals; ///< [ms], one per polling pass, the last for all further ones
    qint32 sensorScheduleIndex = 0;
    CallSequence passes;
    std::optional<CallSequence::Call> pass; ///< the one that runs
};
