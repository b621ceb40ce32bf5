// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/sensorpolling.h"

#include "channel/query.h"
#include "interface/iomanager.h"

#include <array>

std::optional<SensorReading> readSensor(IOManager &io, const QByteArray &sensor, bool first,
                                        const std::function<bool()> &isWanted)
{
    SensorReading reading;
    Query query(io);
    const auto present =
        query.text(io.requestString(query.textBuffer(), "inertial sensor_present %s", sensor.constData()));
    if (!isWanted())
        return std::nullopt;
    if (!present)
        return reading;
    if (first || *present != "yes") {
        reading.presence = SensorReading::Presence::Absent;
        return reading;
    }
    reading.presence = SensorReading::Presence::Present;
    reading.battery =
        query.number(io.requestDouble(query.doubleBuffer(), "inertial sensor_battery %s", sensor.constData()));
    if (!isWanted())
        return std::nullopt;
    std::array<double, 2> warmth{}; // temperature and level
    if (query.accepted(io.requestDoubles(warmth.data(), 2, "inertial sensor_temperature %s", sensor.constData()))) {
        reading.temperature = warmth[0];
        reading.warmth = warmth[1];
    }
    if (!isWanted())
        return std::nullopt;
    return reading;
}

SensorPolling::SensorPolling()
{
    struct Step {
        int count;
        int interval;
    };
    constexpr Step steps[] = {{30, 2000}, {15, 4000}, {8, 8000}, {4, 16000}, {1, 30000}};
    for (const Step &step : steps) {
        for (int i = 0; i < step.count; ++i)
            sensorIntervals.append(step.interval);
    }
}

CallSequence::Call SensorPolling::beginPass()
{
    pass = passes.begin();
    return *pass;
}

std::optional<int> SensorPolling::nextInterval()
{
    if (sensorScheduleIndex >= sensorIntervals.size())
        return std::nullopt;
    return sensorIntervals[sensorScheduleIndex++];
}
