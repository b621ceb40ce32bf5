// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// The angles rx, ry, rz [deg] of the rotation numbers r0 to r8, which are the columns of Rx(rx) * Ry(ry) * Rz(rz).
/// Where r7 and r8, or r3 and r0, are both exactly 0, rz is 0 and rx takes the whole turn, with its own sign.
std::array<float, 3> anglesOfRotation(const std::array<float, 9> &rotation) noexcept;
