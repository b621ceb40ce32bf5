// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendchoice.h"

#include "backend/replay.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"

#include <utility>

namespace host {

BackendResult makeBackend(const BackendChoice &choice, const BackendSettings &settings)
{
    backend::ScenarioResult loaded = choice.replayFiles.isEmpty() ? backend::loadScenario(choice.scenario)
                                                                  : backend::replayScenario(choice.replayFiles);
    BackendResult result;
    result.error = loaded.error;
    result.warnings = loaded.warnings;
    if (!loaded.scenario)
        return result;
    backend::Scenario scenario = *std::move(loaded.scenario);
    scenario.rate = settings.rate.value_or(scenario.rate);
    scenario.version = settings.version.value_or(scenario.version);
    const quint32 seed = scenario.seed;
    auto simulated = std::make_unique<backend::SimulatedBackend>(std::move(scenario));
    if (settings.faults.isEmpty() && settings.latency.count() == 0)
        result.backend = std::move(simulated);
    else
        result.backend =
            std::make_shared<backend::FaultyBackend>(std::move(simulated), settings.faults, settings.latency, seed);
    return result;
}

} // namespace host
