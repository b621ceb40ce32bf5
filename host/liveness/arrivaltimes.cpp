// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/arrivaltimes.h"

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;
using Time = ArrivalTimes::Time;

constexpr Time sliceLength = 100ms;
constexpr Time shortestSilence = 500ms;

double perSecond(unsigned long long lines, Time time)
{
    return time > 0ns ? static_cast<double>(lines) / std::chrono::duration<double>(time).count() : 0.0;
}

} // namespace

void ArrivalTimes::add(Time time)
{
    if (lines > 0) {
        time = std::max(time, last());
        longest = std::max(longest, time - last());
    } else {
        first = time;
    }
    const long long number = time / sliceLength;
    if (sliceCount == 0 || slices[(sliceCount - 1) % keptSlices].number != number)
        slices[sliceCount++ % keptSlices] = {number, 0, time};
    Slice &slice = slices[(sliceCount - 1) % keptSlices];
    ++slice.lines;
    slice.last = time;
    recent[lines++ % keptTimes] = time;
}

std::optional<double> ArrivalTimes::rate(Time window, Time now) const
{
    if (lines < 2)
        return std::nullopt;
    const long long oldest = (now - window) / sliceLength;
    unsigned long long inWindow = 0;
    std::size_t place = sliceCount;
    const std::size_t end = sliceCount > keptSlices ? sliceCount - keptSlices : 0;
    while (place > end && slices[(place - 1) % keptSlices].number > oldest)
        inWindow += slices[--place % keptSlices].lines;
    if (inWindow == 0)
        return isSilent(now) ? 0.0 : perSecond(1, last() - recent[(lines - 2) % keptTimes]);
    const Time upTo = isSilent(now) ? now : last();
    if (place > end)
        return perSecond(inWindow, upTo - slices[(place - 1) % keptSlices].last);
    // All lines are in the window, and nothing was before the first of them.
    return perSecond(lines - 1, upTo - first);
}

std::optional<Time> ArrivalTimes::frameTime() const
{
    const auto known = static_cast<std::size_t>(std::min<unsigned long long>(lines, keptTimes));
    if (known < 2)
        return std::nullopt;
    std::array<Time, keptTimes - 1> gaps{};
    auto *const gapsEnd = gaps.begin() + static_cast<std::ptrdiff_t>(known - 1);
    for (std::size_t i = 0; i + 1 < known; ++i)
        gaps[i] = recent[(lines - 1 - i) % keptTimes] - recent[(lines - 2 - i) % keptTimes];
    auto *const middle = gaps.begin() + static_cast<std::ptrdiff_t>((known - 1) / 2);
    std::nth_element(gaps.begin(), middle, gapsEnd);
    return *middle;
}

Time ArrivalTimes::longestGap(Time now) const
{
    return lines == 0 ? longest : std::max(longest, now - last());
}

bool ArrivalTimes::isSilent(Time now) const
{
    return now - last() > std::max(shortestSilence, 2 * frameTime().value_or(0ns));
}

} // namespace host
