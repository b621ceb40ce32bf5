// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "data/blockreader.h"
#include "data/numberreader.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>
#include <optional>

namespace {

using TryLock = std::unique_lock<DataMutex>;

constexpr qint32 maxMarkers = 300;
/// A ten-character count must not allocate gigabytes; larger ones are treated as out of memory.
constexpr qint32 maxBodies = 1'000'000;
constexpr qint32 stateOf6dBodies = 2;

struct Count {
    qint32 value;
    const char *end;
};

/// The count at \a place of the line; nothing where the line ends before it, or no digits stand there.
std::optional<Count> readCount(const char *line, std::size_t place)
{
    if (::strnlen(line, place) < place)
        return std::nullopt;
    const ReadNumber<qint32> number = readInteger(line + place);
    if (!number.end)
        return std::nullopt;
    return Count{number.value, number.end};
}

} // namespace

LineOutcome TrackingData::receive(const char *tag, const char *line)
{
    const LineOutcome outcome = parse(tag, line);
    if (outcome == LineOutcome::Stored || outcome == LineOutcome::StoredFirstBodies)
        ++lineCounts.stored;
    else if (outcome == LineOutcome::Dropped)
        ++lineCounts.dropped;
    else if (outcome == LineOutcome::Ignored)
        ++lineCounts.ignored;
    return outcome;
}

LineOutcome TrackingData::parse(const char *tag, const char *line)
{
    if (std::strcmp(tag, "3d") == 0)
        return receive3d(line);
    const bool inertial = useInertialFormat.load();
    if (inertial && std::strcmp(tag, "6di") == 0)
        return receive6di(line);
    if (!inertial && std::strcmp(tag, "6d") == 0)
        return receive6d(line);
    return LineOutcome::Ignored;
}

void TrackingData::clear()
{
    const std::lock_guard lock(dataMutex);
    bodyRecords.clear();
    markerRecords.clear();
}

void TrackingData::clearBodies()
{
    const std::lock_guard lock(dataMutex);
    bodyRecords.clear();
}

void TrackingData::clearAbsentSensorRows()
{
    const std::lock_guard lock(dataMutex);
    absentSensorRows.clear();
}

void TrackingData::addAbsentSensorRow(qint32 row)
{
    const std::lock_guard lock(dataMutex);
    absentSensorRows.append(row);
}

void TrackingData::resizeBodies(qint32 count)
{
    if (count > maxBodies)
        throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    if (bodyRecords.size() != size)
        bodyRecords.resize(size);
}

LineOutcome TrackingData::bodiesStored()
{
    return configured.exchange(false) ? LineOutcome::StoredFirstBodies : LineOutcome::Stored;
}

LineOutcome TrackingData::receive6d(const char *line)
{
    TryLock lock(dataMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return LineOutcome::Dropped;
    const std::optional<Count> count = readCount(line, std::strlen("6d "));
    if (!count)
        return LineOutcome::Malformed;
    resizeBodies(count->value);

    qint32 index = 0;
    for (BodyRecord &record : bodyRecords) {
        record.id = index++;
        record.quality = -1.0F;
    }
    const char *text = count->end;
    for (BodyRecord &record : bodyRecords) {
        qint32 id = 0;
        float quality = 0.0F;
        text = parseBlock(text, "if", &id, &quality);
        if (!text)
            return LineOutcome::Malformed;
        record.id = id;
        record.quality = quality;
        record.state = stateOf6dBodies;

        std::array<float, 6> pose{};
        text = parseBlock(text, "ffffff", nullptr, pose.data());
        if (!text)
            return LineOutcome::Malformed;
        std::copy_n(pose.begin(), 3, record.position.begin());
        std::copy_n(pose.begin() + 3, 3, record.angles.begin());

        text = parseBlock(text, "fffffffff", nullptr, record.rotation.data());
        if (!text)
            return LineOutcome::Malformed;
    }
    lock.unlock();
    return bodiesStored();
}

LineOutcome TrackingData::receive6di(const char *line)
{
    TryLock lock(dataMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return LineOutcome::Dropped;
    const std::optional<Count> count = readCount(line, std::strlen("6di "));
    if (!count)
        return LineOutcome::Malformed;
    resizeBodies(count->value);

    // The ids of the last frame stay until they are read anew, unlike those of "6d".
    for (BodyRecord &record : bodyRecords)
        record.quality = -1.0F;
    bool sensorIsBack = false;
    const char *text = count->end;
    for (BodyRecord &record : bodyRecords) {
        std::array<qint32, 2> idAndState{};
        float quality = 0.0F;
        text = parseBlock(text, "iif", idAndState.data(), &quality);
        if (!text)
            return LineOutcome::Malformed;
        record.id = idAndState[0];
        record.state = idAndState[1];
        const bool hasInertialData = (static_cast<quint32>(record.state) & 1U) != 0;
        if (hasInertialData && absentSensorRows.contains(record.id))
            sensorIsBack = true;
        record.quality = quality;

        text = parseBlock(text, "fff", nullptr, record.position.data());
        if (!text)
            return LineOutcome::Malformed;
        text = parseBlock(text, "fffffffff", nullptr, record.rotation.data());
        if (!text)
            return LineOutcome::Malformed;
    }
    lock.unlock();
    if (sensorIsBack)
        sensorScheduleReset = true;
    return bodiesStored();
}

LineOutcome TrackingData::receive3d(const char *line)
{
    const TryLock lock(dataMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return LineOutcome::Dropped;
    const std::optional<Count> count = readCount(line, std::strlen("3d "));
    if (!count) {
        markerRecords.clear();
        return LineOutcome::Malformed;
    }
    const auto size = static_cast<std::size_t>(std::clamp(count->value, 0, maxMarkers));
    while (markerRecords.size() < size)
        markerRecords.push_back(std::make_unique<MarkerRecord>());
    markerRecords.resize(size);

    const char *text = count->end;
    for (const std::unique_ptr<MarkerRecord> &record : markerRecords) {
        text = parseBlock(text, "if", &record->id, &record->quality);
        if (!text)
            return LineOutcome::Malformed;
        text = parseBlock(text, "fff", nullptr, record->position.data());
        if (!text)
            return LineOutcome::Malformed;
    }
    return LineOutcome::Stored;
}
