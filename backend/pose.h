// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace backend {

using Vector3 = std::array<double, 3>;

/// A rotation matrix column by column: the first three numbers are the first column.
using Rotation = std::array<double, 9>;

/// Where a body is and how it is turned.
struct Pose {
    Vector3 position{}; ///< x, y, z [mm], room coordinates
    Rotation rotation{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
};

/// The matrix Rx(rx) Ry(ry) Rz(rz) of the three \a angles [deg].
Rotation rotationOfAngles(const Vector3 &angles);

/// The matrix of a quaternion x, y, z, w of length 1.
Rotation rotationOfQuaternion(const std::array<double, 4> &quaternion);

/// The angles rx, ry, rz [deg] of which rotationOfAngles makes \a rotation; rz is 0 where ry is 90 or -90 degrees.
Vector3 eulerAngles(const Rotation &rotation);

} // namespace backend
