// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/linetarget.h"

#include "fuzz/fuzztarget.h"
#include "tests/data/referencereader.h"
#include "tests/data/rivalnumbers.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace {

/// A store of a hundred thousand bodies is as good as any other, only slower; what asks for more than a million is
/// refused, and is tried.
constexpr qint32 mostBodies = 2000;
constexpr qint32 refusedBodies = 1000000;

template<typename Reader> std::optional<LineFate> fateOf(const Reader &read)
{
    try {
        return read();
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

class Comparison {
public:
    explicit Comparison(const char *firstTag) { setTag(firstTag); }

    void take(const std::string &line)
    {
        if (line.empty() || line[0] != '~')
            compare(line);
        else
            direct(line.substr(1));
    }

private:
    void setTag(const std::string &newTag)
    {
        tag = newTag;
        if (tag == "3d")
            return;
        data.useInertialFormat = tag == "6di";
        reference.useInertialFormat = tag == "6di";
    }

    void direct(const std::string &direction)
    {
        if (direction == "6d" || direction == "6di" || direction == "3d") {
            setTag(direction);
        } else if (direction == "c") {
            data.configured = true;
            reference.configured = true;
        } else if (direction == "r") {
            data.sensorScheduleReset = false;
            reference.sensorScheduleReset = false;
        } else if (direction == "x" || direction == "b") {
            reference.bodies.clear();
            if (direction == "b") {
                data.clearBodies();
                return;
            }
            data.clear();
            reference.markers.clear();
        } else if (!direction.empty() && direction[0] == 'a' && reference.absentSensorRows.size() < 20) {
            const qint32 row = rivalInteger(direction.c_str() + 1).value;
            data.addAbsentSensorRow(row);
            reference.absentSensorRows.push_back(row);
        }
    }

    bool asksForTooMany(const std::string &line) const
    {
        const std::string text(line.c_str());
        const std::size_t place = tag.size() + 1;
        if (tag == "3d" || text.size() <= place)
            return false;
        const qint32 count = rivalInteger(text.c_str() + place).value;
        return count > mostBodies && count <= refusedBodies;
    }

    void compare(const std::string &line)
    {
        if (asksForTooMany(line))
            return;
        std::vector<char> bytes(line.begin(), line.end());
        bytes.push_back('\0');
        const std::vector<char> before = bytes;
        const std::optional<LineFate> fate = fateOf([&] { return data.receive(tag.c_str(), bytes.data()); });
        const std::optional<LineFate> expected = fateOf([&] { return reference.receive(tag, line); });
        require(bytes == before, "the line was changed");
        require(std::unique_lock(data.dataMutex, std::try_to_lock).owns_lock(), "the lock is still held");
        require(fate == expected, "the fate of the line");
        require(data.configured == reference.configured, "the flag of a new configuration");
        require(data.sensorScheduleReset == reference.sensorScheduleReset, "the reset of the sensor schedule");
        const bool sameBodies = std::equal(
            data.bodyRecords.begin(), data.bodyRecords.end(), reference.bodies.begin(), reference.bodies.end(),
            [](const BodyRecord &one, const BodyRecord &other) { return sameBits(one, other); });
        require(sameBodies, "the stored bodies");
        const bool sameMarkers = std::equal(
            data.markerRecords.begin(), data.markerRecords.end(), reference.markers.begin(), reference.markers.end(),
            [](const std::unique_ptr<MarkerRecord> &one, const MarkerRecord &other) { return sameBits(*one, other); });
        require(sameMarkers, "the stored markers");
    }

    std::string tag;
    TrackingData data;
    ReferenceReader reference;
};

} // namespace

int compareLines(const char *tag, const std::uint8_t *data, std::size_t size)
{
    Comparison comparison(tag);
    const std::string input(reinterpret_cast<const char *>(data), size);
    std::size_t begin = 0;
    while (begin <= input.size()) {
        const std::size_t end = std::min(input.find('\n', begin), input.size());
        comparison.take(input.substr(begin, end - begin));
        begin = end + 1;
    }
    return 0;
}
