// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/referencereader.h"

#include "tests/support/rivalnumbers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <stdexcept>

namespace {

constexpr std::size_t countPlace = 3;
constexpr std::size_t inertialCountPlace = 4;
constexpr std::size_t maxMarkers = 300;
constexpr qint32 maxBodies = 1000000;

/// The numbers of one block, as many of them as could be read.
struct Numbers {
    std::array<qint32, 2> ints{};
    std::array<float, 9> floats{};
    std::size_t intCount = 0;
    std::size_t floatCount = 0;
    bool complete = false;
};

/// The numbers of the block after \a place, which goes on behind the block if the block is complete.
Numbers readBlock(const std::string &line, std::size_t &place, const char *format)
{
    Numbers numbers;
    const std::size_t open = line.find('[', place);
    if (open == std::string::npos)
        return numbers;
    const std::size_t close = line.find(']', open);
    if (close == std::string::npos)
        return numbers;
    // Of its own, so that no number is read beyond the bracket; kept, as an allocation costs more than the numbers.
    static thread_local std::string inside;
    inside.assign(line, open + 1, close - open - 1);
    const char *text = inside.c_str();
    for (; *format != '\0'; ++format) {
        if (*format == 'i') {
            const ReadNumber<qint32> number = rivalInteger(text);
            if (!number.end)
                return numbers;
            numbers.ints.at(numbers.intCount++) = number.value;
            text = number.end;
        } else {
            const ReadNumber<float> number = rivalFloat(text);
            if (!number.end)
                return numbers;
            numbers.floats.at(numbers.floatCount++) = number.value;
            text = number.end;
        }
    }
    place = close + 1;
    numbers.complete = true;
    return numbers;
}

std::optional<qint32> readCount(const std::string &line, std::size_t place)
{
    if (line.size() <= place)
        return std::nullopt;
    const ReadNumber<qint32> count = rivalInteger(line.c_str() + place);
    if (!count.end)
        return std::nullopt;
    return count.value;
}

template<std::size_t size> void storeAll(const Numbers &numbers, std::array<float, size> &target)
{
    std::copy_n(numbers.floats.begin(), numbers.floatCount, target.begin());
}

template<std::size_t size> bool sameFloats(const std::array<float, size> &one, const std::array<float, size> &other)
{
    return std::memcmp(one.data(), other.data(), sizeof one) == 0;
}

bool sameFloat(float one, float other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

} // namespace

LineOutcome ReferenceReader::receive(const std::string &tag, const std::string &line)
{
    static thread_local std::string text; // kept, as an allocation costs more than most lines
    text.assign(line.c_str());
    if (useInertialFormat && tag == "6di")
        return receive6di(text);
    if (!useInertialFormat && tag == "6d")
        return receive6d(text);
    return tag == "3d" ? receive3d(text) : LineOutcome::Ignored;
}

LineOutcome ReferenceReader::receive6d(const std::string &line)
{
    const std::optional<qint32> count = readCount(line, countPlace);
    if (!count)
        return LineOutcome::Malformed;
    resizeBodies(*count);
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        bodies[i].id = static_cast<qint32>(i);
        bodies[i].quality = -1.0F;
    }
    std::size_t place = countPlace;
    for (BodyRecord &body : bodies) {
        const Numbers head = readBlock(line, place, "if");
        if (!head.complete)
            return LineOutcome::Malformed;
        body.id = head.ints[0];
        body.quality = head.floats[0];
        body.state = 2;
        const Numbers pose = readBlock(line, place, "ffffff");
        if (!pose.complete)
            return LineOutcome::Malformed;
        std::copy_n(pose.floats.begin(), 3, body.position.begin());
        std::copy_n(pose.floats.begin() + 3, 3, body.angles.begin());
        const Numbers rotation = readBlock(line, place, "fffffffff");
        storeAll(rotation, body.rotation);
        if (!rotation.complete)
            return LineOutcome::Malformed;
    }
    return bodiesRead();
}

LineOutcome ReferenceReader::receive6di(const std::string &line)
{
    const std::optional<qint32> count = readCount(line, inertialCountPlace);
    if (!count)
        return LineOutcome::Malformed;
    resizeBodies(*count);
    for (BodyRecord &body : bodies)
        body.quality = -1.0F;
    bool sensorIsBack = false;
    std::size_t place = inertialCountPlace;
    for (BodyRecord &body : bodies) {
        const Numbers head = readBlock(line, place, "iif");
        if (!head.complete)
            return LineOutcome::Malformed;
        body.id = head.ints[0];
        body.state = head.ints[1];
        body.quality = head.floats[0];
        const bool listed =
            std::find(absentSensorRows.begin(), absentSensorRows.end(), body.id) != absentSensorRows.end();
        if (listed && body.state % 2 != 0)
            sensorIsBack = true;
        const Numbers position = readBlock(line, place, "fff");
        storeAll(position, body.position);
        if (!position.complete)
            return LineOutcome::Malformed;
        const Numbers rotation = readBlock(line, place, "fffffffff");
        storeAll(rotation, body.rotation);
        if (!rotation.complete)
            return LineOutcome::Malformed;
    }
    sensorScheduleReset = sensorScheduleReset || sensorIsBack;
    return bodiesRead();
}

LineOutcome ReferenceReader::receive3d(const std::string &line)
{
    const std::optional<qint32> count = readCount(line, countPlace);
    if (!count) {
        markers.clear();
        return LineOutcome::Malformed;
    }
    markers.resize(std::min(maxMarkers, static_cast<std::size_t>(std::max(*count, 0))));
    std::size_t place = countPlace;
    for (MarkerRecord &marker : markers) {
        const Numbers head = readBlock(line, place, "if");
        if (head.intCount > 0)
            marker.id = head.ints[0];
        if (!head.complete)
            return LineOutcome::Malformed;
        marker.quality = head.floats[0];
        const Numbers position = readBlock(line, place, "fff");
        storeAll(position, marker.position);
        if (!position.complete)
            return LineOutcome::Malformed;
    }
    return LineOutcome::Stored;
}

LineOutcome ReferenceReader::bodiesRead()
{
    const bool first = configured;
    configured = false;
    return first ? LineOutcome::StoredFirstBodies : LineOutcome::Stored;
}

void ReferenceReader::resizeBodies(qint32 count)
{
    if (count > maxBodies)
        throw std::length_error("more bodies than a line may ask for");
    bodies.resize(static_cast<std::size_t>(std::max(count, 0)));
}

bool sameBits(const BodyRecord &one, const BodyRecord &other)
{
    return one.id == other.id && sameFloat(one.quality, other.quality) && one.reserved == other.reserved
        && one.state == other.state && sameFloats(one.position, other.position) && sameFloats(one.angles, other.angles)
        && sameFloats(one.rotation, other.rotation);
}

bool sameBits(const MarkerRecord &one, const MarkerRecord &other)
{
    return one.id == other.id && sameFloat(one.quality, other.quality) && sameFloats(one.position, other.position);
}
