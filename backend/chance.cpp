// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/chance.h"

#include <algorithm>
#include <cmath>

namespace {

/// Spreads every bit of \a value over all bits of the result.
quint64 scattered(quint64 value)
{
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

} // namespace

double chance(quint32 seed, ChanceStream stream, int which, quint64 index)
{
    constexpr quint64 step = 0x9e3779b97f4a7c15U;
    quint64 bits = scattered(seed + step);
    bits = scattered(bits + static_cast<quint64>(stream) * step);
    bits = scattered(bits + static_cast<quint64>(which) * step);
    bits = scattered(bits + index * step);
    return std::ldexp(static_cast<double>(bits >> 11), -53);
}

std::optional<double> lostSince(const Dropouts &dropouts, quint32 seed, ChanceStream stream, int which, double seconds)
{
    if (!(dropouts.every > 0.0))
        return std::nullopt;
    const double stretch = std::floor(std::max(seconds, 0.0) / dropouts.every);
    const double latest = dropouts.every - dropouts.lasting;
    const double begin = stretch * dropouts.every + latest * chance(seed, stream, which, static_cast<quint64>(stretch));
    if (seconds < begin || seconds >= begin + dropouts.lasting)
        return std::nullopt;
    return begin;
}
