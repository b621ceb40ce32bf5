// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/motion.h"

#include "backend/trajectory.h"

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

Vector3 anglesAt(const Motion &motion, double seconds)
{
    Vector3 angles{};
    for (std::size_t axis = 0; axis < angles.size(); ++axis)
        angles[axis] = std::remainder(motion.angles[axis] + motion.turn[axis] * seconds, 360.0);
    return angles;
}

Vector3 placeOnOrbit(const Motion &motion, double seconds)
{
    const double angle = fullTurn * (std::fmod(seconds, motion.period) / motion.period + motion.phase / 360.0);
    return {motion.position[0] + motion.radius * std::cos(angle), motion.position[1] + motion.radius * std::sin(angle),
            motion.position[2] + motion.swing * std::sin(2.0 * angle)};
}

} // namespace

Pose poseAt(const Motion &motion, double seconds)
{
    switch (motion.kind) {
    case Motion::Kind::Recorded:
        return motion.recording->poseAt(seconds + motion.ahead);
    case Motion::Kind::Orbit:
        return {placeOnOrbit(motion, seconds), rotationOfAngles(anglesAt(motion, seconds))};
    case Motion::Kind::Fixed:
        break;
    }
    return {motion.position, rotationOfAngles(anglesAt(motion, seconds))};
}

double valueAt(const Ramp &ramp, double seconds, double low, double high)
{
    return std::clamp(ramp.start + ramp.perMinute * seconds / 60.0, low, high);
}

} // namespace backend
