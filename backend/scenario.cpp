// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenario.h"

#include <algorithm>

namespace backend {

bool isAtLeast(const ProtocolVersion &version, int major, int minor)
{
    return version.major > major || (version.major == major && version.minor >= minor);
}

const InertialSensor *sensorOfBody(const Scenario &scenario, int body)
{
    const auto *const carried = std::find_if(scenario.sensors.cbegin(), scenario.sensors.cend(),
                                             [body](const InertialSensor &sensor) { return sensor.body == body; });
    return body > 0 && carried != scenario.sensors.cend() ? &*carried : nullptr;
}

QByteArray sensorText(const InertialSensor &sensor)
{
    return "inertial " + sensor.id + " '" + sensor.label + '\'';
}

bool isCustomPreset(const QByteArray &id)
{
    return id.contains("preset6d_") && id.contains("_custom");
}

} // namespace backend
