// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/linetarget.h"

#include "fuzz/fuzztarget.h"
#include "tests/support/lockstate.h"
#include "tests/support/referencereader.h"
#include "tests/support/rivalnumbers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// A store of a hundred thousand bodies is as good as any other, only slower; what asks for more than a million is
/// refused, and is tried. Stores of thousands are for the lines of tests/hostile.
constexpr qint32 mostBodies = 64;
constexpr qint32 refusedBodies = 1000000;
constexpr int mostAbsentRows = 20;

static_assert(sizeof(BodyRecord) == 19 * sizeof(qint32), "a body is compared as its bytes, with no gap among them");
static_assert(sizeof(MarkerRecord) == 5 * sizeof(qint32), "a marker is compared as its bytes, with no gap among them");

std::uint64_t executedLines = 0;

void printExecutedLines()
{
    std::fprintf(stderr, "stat::line_executions:            %llu\n", static_cast<unsigned long long>(executedLines));
}

template<typename Reader> std::optional<LineOutcome> outcomeOf(const Reader &read)
{
    try {
        return read();
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

class Comparison {
public:
    Comparison() { std::atexit(printExecutedLines); }

    /// Both stores as they are when a panel comes up.
    void start(const char *firstTag)
    {
        data.clear();
        data.lock()->absentSensorRows.clear();
        data.configured = false;
        data.sensorScheduleReset = false;
        data.useInertialFormat = false;
        reference.bodies.clear();
        reference.markers.clear();
        reference.absentSensorRows.clear();
        reference.configured = false;
        reference.sensorScheduleReset = false;
        reference.useInertialFormat = false;
        setTag(firstTag);
    }

    void process(std::string_view line)
    {
        if (line.empty() || line[0] != '~')
            compare(line);
        else
            direct(line.substr(1));
    }

private:
    void setTag(std::string_view newTag)
    {
        tag = newTag;
        if (tag == "3d")
            return;
        data.useInertialFormat = tag == "6di";
        reference.useInertialFormat = tag == "6di";
    }

    void direct(std::string_view direction)
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
        } else if (!direction.empty() && direction[0] == 'a' && reference.absentSensorRows.size() < mostAbsentRows) {
            const qint32 row = rivalInteger(std::string(direction.substr(1)).c_str()).value;
            data.lock()->absentSensorRows.append(row);
            reference.absentSensorRows.push_back(row);
        }
    }

    bool asksForTooMany() const
    {
        const std::size_t place = tag.size() + 1;
        if (tag == "3d" || ::strnlen(text.c_str(), text.size()) <= place)
            return false;
        const qint32 count = rivalInteger(text.c_str() + place).value;
        return count > mostBodies && count <= refusedBodies;
    }

    void compare(std::string_view line)
    {
        text = line;
        if (asksForTooMany())
            return;
        executedLines += line.empty() ? 0U : 1U;
        // Of exactly this size, so that a byte beyond either end is a finding.
        const auto bytes = std::make_unique<char[]>(line.size() + 1);
        std::memcpy(bytes.get(), text.c_str(), line.size() + 1);
        const std::optional<LineOutcome> outcome = outcomeOf([&] { return data.receive(tag.c_str(), bytes.get()); });
        const std::optional<LineOutcome> expected = outcomeOf([&] { return reference.receive(tag, text); });
        require(std::memcmp(bytes.get(), text.c_str(), line.size() + 1) == 0, "the line was changed");
        require(isLockFree(data), "the lock is still held");
        require(outcome == expected, "the outcome of the line");
        require(data.configured == reference.configured, "the flag of a new configuration");
        require(data.sensorScheduleReset == reference.sensorScheduleReset, "the reset of the sensor schedule");
        require(sameBodies(), "the stored bodies");
        require(sameMarkers(), "the stored markers");
    }

    bool sameBodies()
    {
        const TrackingData::Locked stores = data.lock();
        const std::vector<BodyRecord> &bodies = stores->bodyRecords;
        return bodies.size() == reference.bodies.size()
            && (bodies.empty()
                || std::memcmp(bodies.data(), reference.bodies.data(), bodies.size() * sizeof(BodyRecord)) == 0);
    }

    bool sameMarkers()
    {
        const TrackingData::Locked stores = data.lock();
        return std::equal(stores->markerRecords.begin(), stores->markerRecords.end(), reference.markers.begin(),
                          reference.markers.end(),
                          [](const std::unique_ptr<MarkerRecord> &one, const MarkerRecord &other) {
                              return std::memcmp(one.get(), &other, sizeof other) == 0;
                          });
    }

    std::string tag;
    std::string text; ///< the line under comparison, zero-terminated
    TrackingData data;
    ReferenceReader reference;
};

} // namespace

int compareLines(const char *tag, const std::uint8_t *data, std::size_t size)
{
    static Comparison comparison;
    comparison.start(tag);
    std::string_view input(reinterpret_cast<const char *>(data), size);
    for (;;) {
        const std::size_t end = input.find('\n');
        comparison.process(input.substr(0, end));
        if (end == std::string_view::npos)
            return 0;
        input.remove_prefix(end + 1);
    }
}
