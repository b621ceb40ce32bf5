// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

/// \a value without its fraction; the nearest int for what no int holds, and 0 for NaN. Backends send what they like.
inline int saturatedInt(double value) noexcept
{
    if (value >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (value <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return value == value ? static_cast<int>(value) : 0;
}
