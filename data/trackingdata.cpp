// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "data/lineparser.h"

#include <cstring>

TrackingData::Locked TrackingData::lock()
{
    return {std::unique_lock(dataMutex), stores};
}

LineOutcome TrackingData::receive(const char *tag, const char *line)
{
    const LineOutcome outcome = store(tag, line);
    if (outcome == LineOutcome::Stored || outcome == LineOutcome::StoredFirstBodies)
        ++lineCounts.stored;
    else if (outcome == LineOutcome::Dropped)
        ++lineCounts.dropped;
    else if (outcome == LineOutcome::Ignored)
        ++lineCounts.ignored;
    return outcome;
}

std::optional<LineFormat> TrackingData::formatOf(const char *tag) const
{
    if (std::strcmp(tag, "3d") == 0)
        return LineFormat::Markers;
    const bool inertial = useInertialFormat;
    if (inertial && std::strcmp(tag, "6di") == 0)
        return LineFormat::InertialBodies;
    if (!inertial && std::strcmp(tag, "6d") == 0)
        return LineFormat::Bodies;
    return std::nullopt;
}

LineOutcome TrackingData::store(const char *tag, const char *line)
{
    const std::optional<LineFormat> format = formatOf(tag);
    if (!format)
        return LineOutcome::Ignored;
    ParsedLine parsed;
    {
        const std::unique_lock lock(dataMutex, std::try_to_lock);
        if (!lock.owns_lock())
            return LineOutcome::Dropped;
        parsed = parseLine(*format, line, stores);
    }
    if (!parsed.isComplete)
        return LineOutcome::Malformed;
    if (parsed.isSensorBack)
        sensorScheduleReset = true;
    const bool areFirstBodies = *format != LineFormat::Markers && configured.exchange(false);
    return areFirstBodies ? LineOutcome::StoredFirstBodies : LineOutcome::Stored;
}

void TrackingData::clear()
{
    Stores old; // freed when the lock is gone
    const Locked locked = lock();
    locked->bodyRecords.swap(old.bodyRecords);
    locked->markerRecords.swap(old.markerRecords);
}

void TrackingData::clearBodies()
{
    std::vector<BodyRecord> old; // freed when the lock is gone
    lock()->bodyRecords.swap(old);
}
