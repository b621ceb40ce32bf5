// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

/// One body in one frame.
struct BodySample {
    int id = 0; ///< its row in a table of all bodies, a head target in front
    bool optical = false; ///< seen by the cameras
    bool inertial = false; ///< turned by its inertial sensor
    Pose pose; ///< while it is only turned by its sensor, the place where the cameras saw it last
};

/// One single marker in one frame.
struct MarkerSample {
    int id = 0;
    Vector3 position{}; ///< [mm]
};

/// Whether a head target stands in front of the standard bodies.
bool hasHeadTarget(const Scenario &scenario);

/// Whether \a scenario's sensor number \a sensor is in reach at \a seconds.
bool isSensorPresent(const Scenario &scenario, int sensor, double seconds);

/// One sample for every head row and standard body, in the order of their ids.
QVector<BodySample> bodiesAt(const Scenario &scenario, double seconds);

/// The markers that are seen at \a seconds.
QVector<MarkerSample> markersAt(const Scenario &scenario, double seconds);

} // namespace backend
