// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <array>

/// The last known pose of one 6DOF body.
struct BodyRecord {
    qint32 id = 0;
    float quality = 0.0F; ///< below 0: not tracked; -1: not delivered in the last frame
    qint32 reserved = 0;
    qint32 state = 0; ///< 2 for a body of a "6d" line, else the state of the "6di" line
    std::array<float, 3> position{}; ///< x, y, z [mm], room coordinates
    std::array<float, 3> angles{}; ///< rx, ry, rz [deg]
    std::array<float, 9> rotation{}; ///< r0 to r8, in the order of the line
};

/// The last known position of one 3DOF marker.
struct MarkerRecord {
    qint32 id = 0;
    float quality = 0.0F;
    std::array<float, 3> position{}; ///< x, y, z [mm], room coordinates
};
