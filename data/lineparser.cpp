// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/lineparser.h"

#include "data/blockreader.h"
#include "data/numberreader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>

namespace {

constexpr qint32 maxMarkers = 300;
/// A ten-character count must not allocate gigabytes; larger ones are treated as out of memory.
constexpr qint32 maxBodies = 1'000'000;
/// Room for so many bodies is kept whatever the frame, so that frames of usual sizes allocate nothing as they vary.
constexpr std::size_t keptRoom = 1000;
constexpr qint32 stateOf6dBodies = 2;

constexpr ParsedLine malformed{};

/// The count at \a place of the line; nothing where the line ends before it, or no digits stand there.
std::optional<ReadNumber<qint32>> readCount(const char *line, std::size_t place)
{
    if (::strnlen(line, place) < place)
        return std::nullopt;
    const ReadNumber<qint32> number = readInteger(line + place);
    if (!number.end)
        return std::nullopt;
    return number;
}

void resizeBodies(std::vector<BodyRecord> &bodies, qint32 count)
{
    if (count > maxBodies)
        throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    bodies.resize(size);
    if (bodies.capacity() > keptRoom && bodies.capacity() / 4 > size)
        bodies.shrink_to_fit(); // one frame with a wrong count must not cost its memory for good
}

ParsedLine parse6d(const char *line, std::vector<BodyRecord> &bodies)
{
    const auto count = readCount(line, std::strlen("6d "));
    if (!count)
        return malformed;
    resizeBodies(bodies, count->value);

    qint32 index = 0;
    for (BodyRecord &record : bodies) {
        record.id = index++;
        record.quality = -1.0F;
    }
    const char *text = count->end;
    for (BodyRecord &record : bodies) {
        qint32 id = 0;
        float quality = 0.0F;
        text = parseBlock(text, "if", &id, &quality);
        if (!text)
            return malformed;
        record.id = id;
        record.quality = quality;
        record.state = stateOf6dBodies;

        std::array<float, 6> pose{};
        text = parseBlock(text, "ffffff", nullptr, pose.data());
        if (!text)
            return malformed;
        std::copy_n(pose.begin(), 3, record.position.begin());
        std::copy_n(pose.begin() + 3, 3, record.angles.begin());

        text = parseBlock(text, "fffffffff", nullptr, record.rotation.data());
        if (!text)
            return malformed;
    }
    return {true, false};
}

ParsedLine parse6di(const char *line, std::vector<BodyRecord> &bodies, const QVector<qint32> &absentSensorRows)
{
    const auto count = readCount(line, std::strlen("6di "));
    if (!count)
        return malformed;
    resizeBodies(bodies, count->value);

    // The ids of the last frame stay until they are read anew, unlike those of "6d".
    for (BodyRecord &record : bodies)
        record.quality = -1.0F;
    bool isSensorBack = false;
    const char *text = count->end;
    for (BodyRecord &record : bodies) {
        std::array<qint32, 2> idAndState{};
        float quality = 0.0F;
        text = parseBlock(text, "iif", idAndState.data(), &quality);
        if (!text)
            return malformed;
        record.id = idAndState[0];
        record.state = idAndState[1];
        const bool hasInertialData = (static_cast<quint32>(record.state) & 1U) != 0;
        if (hasInertialData && absentSensorRows.contains(record.id))
            isSensorBack = true;
        record.quality = quality;

        text = parseBlock(text, "fff", nullptr, record.position.data());
        if (!text)
            return malformed;
        text = parseBlock(text, "fffffffff", nullptr, record.rotation.data());
        if (!text)
            return malformed;
    }
    return {true, isSensorBack};
}

ParsedLine parse3d(const char *line, std::vector<std::unique_ptr<MarkerRecord>> &markers)
{
    const auto count = readCount(line, std::strlen("3d "));
    if (!count) {
        markers.clear();
        return malformed;
    }
    const auto size = static_cast<std::size_t>(std::clamp(count->value, 0, maxMarkers));
    while (markers.size() < size)
        markers.push_back(std::make_unique<MarkerRecord>());
    markers.resize(size);

    const char *text = count->end;
    for (const std::unique_ptr<MarkerRecord> &record : markers) {
        text = parseBlock(text, "if", &record->id, &record->quality);
        if (!text)
            return malformed;
        text = parseBlock(text, "fff", nullptr, record->position.data());
        if (!text)
            return malformed;
    }
    return {true, false};
}

} // namespace

ParsedLine parseLine(LineFormat format, const char *line, Stores &stores)
{
    if (format == LineFormat::Bodies)
        return parse6d(line, stores.bodyRecords);
    if (format == LineFormat::InertialBodies)
        return parse6di(line, stores.bodyRecords, stores.absentSensorRows);
    return parse3d(line, stores.markerRecords);
}
