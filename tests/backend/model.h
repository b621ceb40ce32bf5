// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

/// Two presets, a custom one and a hybrid custom one; two modes. Body 2 and the wandor are not offered all of them.
inline backend::FilterOffer filterModel()
{
    backend::FilterOffer filter;
    filter.standard = true;
    filter.wandor = true;
    filter.strengthMin = 0.01;
    filter.strengthMax = 0.99;
    filter.predictionMin = -0.066;
    filter.predictionMax = 0.0999;
    filter.modes = {{"mode_fast", QStringLiteral("Fast"), {}},
                    {"mode_static", QStringLiteral("At \"rest\""), {"standard b01", "standard b03"}}};
    filter.presets = {{"preset6d_default", QStringLiteral("Default"), 0.5, 0.0, "mode_fast", {}},
                      {"preset6d_still", QStringLiteral("Still"), 0.9, -0.05, "mode_static", {"standard b01"}},
                      {"preset6d_custom", QStringLiteral("Custom"), 0.4, 0.01, "mode_fast", {}},
                      {"preset6d_hybrid_custom", QStringLiteral("Hybrid"), 0.3, 0.0, "mode_fast", {"standard b02"}}};
    return filter;
}

/// A scenario that has something of everything: three bodies (the third neither calibrated nor active), two head
/// targets (the second one in use), two wandors, three sensors.
inline backend::Scenario everything()
{
    backend::Scenario scenario;
    scenario.name = QStringLiteral("simulation: everything");
    scenario.version = {2, 0, 0};
    scenario.filter = filterModel();
    const backend::FilterSettings settings{true, "preset6d_custom", 0.25, 0.033, "mode_static"};
    scenario.bodies.resize(3);
    scenario.bodies[0].name = QStringLiteral("Left \"hand\"");
    scenario.bodies[0].filter = settings;
    scenario.bodies[1].name = QString::fromUtf8("K\xC3\xB6rper");
    scenario.bodies[1].filter = {false, "preset6d_default", 0.5, 0.0, "mode_fast"};
    scenario.bodies[2].calibrated = false;
    scenario.bodies[2].active = false;
    scenario.wandor.multiuserAvailable = true;
    scenario.wandor.multiuser = true;
    scenario.wandor.multiuserWithHeadAvailable = true;
    scenario.wandor.multiuserWithHead = true;
    scenario.wandor.devices.resize(2);
    scenario.wandor.devices[0].filter = settings;
    scenario.wandor.devices[1].calibrated = false;
    scenario.wandor.heads.resize(2);
    scenario.wandor.heads[0].active = false;
    scenario.wandor.heads[0].calibrated = false;
    scenario.referenceBody = 3;
    scenario.fixedAngles = true;
    scenario.sensors.resize(3);
    scenario.sensors[0] = {"d01", "A17", 2, true, {}, {0.5, -0.06}, {23.5, 0.5}, {0.9, 0.2}};
    scenario.sensors[1] = {"d02", "A18", 0, true, {}, {0.9, 0.06}, {30.0, 0.0}, {1.0, 0.0}};
    scenario.sensors[2] = {"d03", "A19", 1, false, {}, {}, {}, {}};
    return scenario;
}

inline backend::Scenario withVersion(backend::Scenario scenario, const backend::ProtocolVersion &version)
{
    scenario.version = version;
    return scenario;
}
