// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendchoice.h"

#include "backend/pipedbackend.h"
#include "backend/replay.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"

#include <unistd.h>
#include <utility>

namespace host {

namespace {

/// A backend by itself, without the faults of the settings. Null, and \a result says why, when there is none.
std::unique_ptr<backend::SimulatedBackend> simulatedBackend(const BackendChoice &choice,
                                                            const BackendSettings &settings, BackendResult *result)
{
    backend::ScenarioResult loaded = choice.replayFiles.isEmpty() ? backend::loadScenario(choice.scenario)
                                                                  : backend::replayScenario(choice.replayFiles);
    result->error = loaded.error;
    result->warnings = loaded.warnings;
    if (!loaded.scenario)
        return {};
    backend::Scenario scenario = *std::move(loaded.scenario);
    scenario.rate = settings.rate.value_or(scenario.rate);
    scenario.version = settings.version.value_or(scenario.version);
    return std::make_unique<backend::SimulatedBackend>(std::move(scenario));
}

} // namespace

BackendResult makeBackend(const BackendChoice &choice, const BackendSettings &settings)
{
    BackendResult result;
    quint32 seed = backend::Scenario().seed;
    std::unique_ptr<backend::TrackingBackend> made;
    if (!choice.standardInput || !choice.scenario.isEmpty()) {
        auto simulated = simulatedBackend(choice, settings, &result);
        if (!simulated)
            return result;
        seed = simulated->scenario().seed;
        made = std::move(simulated);
    }
    if (choice.standardInput)
        made = std::make_unique<backend::PipedBackend>(STDIN_FILENO, std::move(made));
    if (!settings.faults.isEmpty() || settings.latency.count() > 0)
        made = std::make_unique<backend::FaultyBackend>(std::move(made), settings.faults, settings.latency, seed);
    result.backend = std::move(made);
    return result;
}

} // namespace host
