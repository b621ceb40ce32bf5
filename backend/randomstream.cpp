// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/randomstream.h"

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

/// Spreads every bit of \a value over all bits of the result.
quint64 mixed(quint64 value)
{
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

} // namespace

double uniform(quint32 seed, RandomStream stream, int which, quint64 index)
{
    constexpr quint64 step = 0x9e3779b97f4a7c15U;
    quint64 bits = mixed(seed + step);
    bits = mixed(bits + static_cast<quint64>(stream) * step);
    bits = mixed(bits + static_cast<quint64>(which) * step);
    bits = mixed(bits + index * step);
    return std::ldexp(static_cast<double>(bits >> 11), -53);
}

std::optional<double> lostSince(const Dropouts &dropouts, quint32 seed, RandomStream stream, int which, double seconds)
{
    if (!(dropouts.period > 0.0))
        return std::nullopt;
    const double window = std::floor(std::max(seconds, 0.0) / dropouts.period);
    const double latest = dropouts.period - dropouts.duration;
    const double start = window * dropouts.period + latest * uniform(seed, stream, which, static_cast<quint64>(window));
    if (seconds < start || seconds >= start + dropouts.duration)
        return std::nullopt;
    return start;
}

} // namespace backend
