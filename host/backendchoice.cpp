// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendchoice.h"

#include "backend/pipedbackend.h"
#include "backend/placeholderbackend.h"
#include "backend/replay.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace host {

namespace {

constexpr qint64 readAtOnce = 4194304; // [bytes], a fraction of a second

qint64 sizeOf(const QStringList &files)
{
    qint64 size = 0;
    for (const QString &file : files)
        size += QFileInfo(file).size();
    return size;
}

/// A backend by itself, without the faults of the settings. Null when nothing was loaded.
std::unique_ptr<backend::SimulatedBackend> simulatedBackend(backend::ScenarioResult loaded,
                                                            const BackendSettings &settings)
{
    if (!loaded.scenario)
        return {};
    backend::Scenario scenario = *std::move(loaded.scenario);
    scenario.rate = settings.rate.value_or(scenario.rate);
    scenario.version = settings.version.value_or(scenario.version);
    return std::make_unique<backend::SimulatedBackend>(std::move(scenario));
}

/// With the faults of the settings around it.
std::shared_ptr<backend::TrackingBackend> withFaults(std::unique_ptr<backend::TrackingBackend> backend,
                                                     const BackendSettings &settings, quint32 seed)
{
    if (settings.faults.isEmpty() && settings.latency.count() == 0)
        return backend;
    return std::make_shared<backend::FaultyBackend>(std::move(backend), settings.faults, settings.latency, seed);
}

BackendResult backendOf(const backend::ScenarioResult &loaded, const BackendSettings &settings)
{
    BackendResult result;
    result.error = loaded.error;
    result.warnings = loaded.warnings;
    auto simulated = simulatedBackend(loaded, settings);
    if (!simulated)
        return result;
    const quint32 seed = simulated->scenario().seed;
    result.backend = withFaults(std::move(simulated), settings, seed);
    return result;
}

/// Lines of standard input, with the answers of a scenario if the choice names one.
BackendResult pipedBackend(const BackendChoice &choice, const BackendSettings &settings)
{
    BackendResult result;
    quint32 seed = backend::Scenario().seed;
    std::unique_ptr<backend::TrackingBackend> answers;
    if (!choice.scenario.isEmpty()) {
        backend::ScenarioResult loaded = backend::loadScenario(choice.scenario);
        result.error = loaded.error;
        result.warnings = loaded.warnings;
        auto simulated = simulatedBackend(std::move(loaded), settings);
        if (!simulated)
            return result;
        seed = simulated->scenario().seed;
        answers = std::move(simulated);
    }
    auto piped = std::make_unique<backend::PipedBackend>(STDIN_FILENO, std::move(answers));
    result.backend = withFaults(std::move(piped), settings, seed);
    return result;
}

} // namespace

BackendResult makeBackend(const BackendChoice &choice, const BackendSettings &settings,
                          backend::ReadingProgress *progress)
{
    if (choice.standardInput)
        return pipedBackend(choice, settings);
    if (choice.replayFiles.isEmpty())
        return backendOf(backend::loadScenario(choice.scenario, progress), settings);
    return backendOf(backend::replayScenario(choice.replayFiles, progress), settings);
}

BackendResult firstBackend(const BackendChoice &choice, const BackendSettings &settings)
{
    if (choice.standardInput || choice.replayFiles.isEmpty() || sizeOf(choice.replayFiles) <= readAtOnce)
        return makeBackend(choice, settings);
    BackendResult result;
    backend::ScenarioResult start = backend::replayScenarioToBe(choice.replayFiles);
    result.error = start.error;
    if (auto simulated = simulatedBackend(std::move(start), settings)) {
        result.backend = std::make_shared<backend::PlaceholderBackend>(std::move(simulated));
        result.isPlaceholder = true;
    }
    return result;
}

bool hasFilesToRead(const BackendChoice &choice)
{
    if (choice.standardInput)
        return false;
    if (choice.replayFiles.isEmpty())
        return !backend::scenarioNames().contains(choice.scenario) && QFileInfo::exists(choice.scenario);
    return std::all_of(choice.replayFiles.begin(), choice.replayFiles.end(),
                       [](const QString &file) { return QFileInfo::exists(file); });
}

QString filesText(const BackendChoice &choice)
{
    if (choice.replayFiles.isEmpty())
        return QFileInfo(choice.scenario).fileName();
    const QString first = QFileInfo(choice.replayFiles.first()).fileName();
    const int others = choice.replayFiles.size() - 1;
    return others == 0 ? first : QCoreApplication::translate("BackendChoice", "%1 and %2 more").arg(first).arg(others);
}

} // namespace host
