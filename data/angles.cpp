// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/angles.h"

#include <cmath>

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

float degrees(float radians) noexcept
{
    return static_cast<float>(static_cast<double>(radians) * degreesPerRadian);
}

} // namespace

std::array<float, 3> anglesOfRotation(const std::array<float, 9> &r) noexcept
{
    const float ry = degrees(std::asin(r[6]));
    const bool degenerate = (r[7] == 0.0F && r[8] == 0.0F) || (r[3] == 0.0F && r[0] == 0.0F);
    // Only the normal case negates: operators know the angles of both cases as they are.
    if (degenerate)
        return {degrees(std::atan2(r[5], r[4])), ry, 0.0F};
    return {degrees(-std::atan2(r[7], r[8])), ry, degrees(-std::atan2(r[3], r[0]))};
}
