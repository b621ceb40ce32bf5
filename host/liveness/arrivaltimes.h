// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <optional>

namespace host {

/// When the lines of one stream came: how many a second, how far apart, and how long ago the last. Times count from a
/// start of the caller's choice; one that is earlier than the one before counts as the same.
class ArrivalTimes {
public:
    using Time = std::chrono::nanoseconds;

    void add(Time time);

    bool isEmpty() const { return lines == 0; }
    unsigned long long count() const { return lines; }
    Time last() const { return recent[lastIndex()]; } ///< of the last line; 0 without any
    /// Lines per second over \a window, which is at most 10 s, up to \a now. It is measured from line to line, so that
    /// a rate is exact however few lines there are in the window, and is that of the last two where there are none. A
    /// silence of more than half a second and two frame times counts as time without lines. None before the second
    /// line.
    std::optional<double> rate(Time window, Time now) const;
    /// The median gap of the last ten lines; none before the second.
    std::optional<Time> frameTime() const;
    /// The longest time between two lines, the one since the last included.
    Time longestGap(Time now) const;

private:
    /// The lines of a tenth of a second.
    struct Slice {
        long long number = 0; ///< since the start of time
        unsigned long long lines = 0;
        Time last{0};
    };
    static constexpr std::size_t keptTimes = 10;
    static constexpr std::size_t keptSlices = 128; // 10 s, and what lies before

    std::size_t lastIndex() const { return (lines + keptTimes - 1) % keptTimes; }
    bool isSilent(Time now) const;

    std::array<Time, keptTimes> recent{}; // the last times, around
    std::array<Slice, keptSlices> slices{}; // the last ones that hold lines, around
    std::size_t sliceCount = 0; // ever used
    unsigned long long lines = 0;
    Time first{0};
    Time longest{0};
};

} // namespace host
