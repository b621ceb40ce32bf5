// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

constexpr double fullTurn = 6.283185307179586; ///< [rad]

/// Where \a motion has taken its body \a seconds after the start, 0 or more.
Pose poseAt(const Motion &motion, double seconds);

/// The value of \a ramp at \a seconds, kept between \a low and \a high.
double valueAt(const Ramp &ramp, double seconds, double low, double high);

} // namespace backend
