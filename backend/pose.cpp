// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/pose.h"

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

} // namespace

Rotation rotationOfAngles(const Vector3 &angles)
{
    const double x = angles[0] / degreesPerRadian;
    const double y = angles[1] / degreesPerRadian;
    const double z = angles[2] / degreesPerRadian;
    const double sx = std::sin(x);
    const double cx = std::cos(x);
    const double sy = std::sin(y);
    const double cy = std::cos(y);
    const double sz = std::sin(z);
    const double cz = std::cos(z);
    return {cy * cz,
            cx * sz + sx * sy * cz,
            sx * sz - cx * sy * cz, //
            -cy * sz,
            cx * cz - sx * sy * sz,
            sx * cz + cx * sy * sz, //
            sy,
            -sx * cy,
            cx * cy};
}

Rotation rotationOfQuaternion(const std::array<double, 4> &quaternion)
{
    const auto [x, y, z, w] = quaternion;
    return {1.0 - 2.0 * (y * y + z * z), 2.0 * (x * y + z * w),       2.0 * (x * z - y * w), //
            2.0 * (x * y - z * w),       1.0 - 2.0 * (x * x + z * z), 2.0 * (y * z + x * w), //
            2.0 * (x * z + y * w),       2.0 * (y * z - x * w),       1.0 - 2.0 * (x * x + y * y)};
}

Vector3 eulerAngles(const Rotation &rotation)
{
    // Rounding may have carried the sine a little beyond 1.
    const double y = std::asin(std::clamp(rotation[6], -1.0, 1.0)) * degreesPerRadian;
    const bool upright = (rotation[7] == 0.0 && rotation[8] == 0.0) || (rotation[3] == 0.0 && rotation[0] == 0.0);
    if (upright)
        return {std::atan2(rotation[5], rotation[4]) * degreesPerRadian, y, 0.0};
    return {-std::atan2(rotation[7], rotation[8]) * degreesPerRadian, y,
            -std::atan2(rotation[3], rotation[0]) * degreesPerRadian};
}

} // namespace backend
