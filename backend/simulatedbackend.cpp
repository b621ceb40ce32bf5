// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/simulatedbackend.h"

#include "backend/commandtable.h"
#include "backend/framestream.h"
#include "backend/outputlines.h"

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

constexpr double nanosecondsPerSecond = 1.0e9;

SimulatedBackend::Clock clockFromNow()
{
    const auto start = std::chrono::steady_clock::now();
    return [start] { return std::chrono::nanoseconds(std::chrono::steady_clock::now() - start); };
}

std::shared_ptr<const Scenario> modelOf(Scenario scenario, std::optional<quint32> seed)
{
    scenario.seed = seed.value_or(scenario.seed);
    return std::make_shared<const Scenario>(std::move(scenario));
}

/// The start [s] of the last frame due at \a time. One nanosecond is given, since a host that counts frames in whole
/// nanoseconds asks up to that much too early.
double frameStart(std::chrono::nanoseconds time, double rate)
{
    const double nanoseconds = static_cast<double>(std::max(time, std::chrono::nanoseconds::zero()).count());
    return std::floor((nanoseconds + 1.0) / nanosecondsPerSecond * rate) / rate;
}

} // namespace

SimulatedBackend::SimulatedBackend(Scenario scenario, std::optional<quint32> seed, Clock clock)
    : clock(clock ? std::move(clock) : clockFromNow())
    , model(modelOf(std::move(scenario), seed))
{
}

QString SimulatedBackend::name() const
{
    return currentModel()->name;
}

ProtocolVersion SimulatedBackend::version() const
{
    return currentModel()->version;
}

double SimulatedBackend::frameRate() const
{
    return currentModel()->rate;
}

std::optional<QByteArray> SimulatedBackend::request(const QByteArray &query)
{
    const std::shared_ptr<const Scenario> current = currentModel();
    return answerTo(query, {*current, static_cast<double>(clock().count()) / nanosecondsPerSecond});
}

bool SimulatedBackend::command(const QByteArray &command)
{
    const Words words = wordsOf(command);
    const std::lock_guard lock(modelMutex);
    if (!model->changeable)
        return false;
    for (const CommandEntry &entry : allCommands()) {
        const std::optional<Words> arguments = matchWords(entry.pattern, words);
        if (!arguments)
            continue;
        if (!isAtLeast(model->version, entry.major, entry.minor))
            return false;
        const auto changed = std::make_shared<Scenario>(*model);
        if (!entry.execute(*changed, *arguments))
            return false;
        model = changed;
        return true;
    }
    return false;
}

std::unique_ptr<LineStream> SimulatedBackend::open(LineStream::Clock::time_point epoch)
{
    return std::make_unique<FrameStream>(
        frameRate(), [this](std::chrono::nanoseconds time) { return linesAt(time); }, epoch);
}

QVector<OutputLine> SimulatedBackend::linesAt(std::chrono::nanoseconds time) const
{
    const std::shared_ptr<const Scenario> current = currentModel();
    const Scenario &scenario = *current;
    const double seconds = frameStart(time, scenario.rate);
    const auto isOn = [&scenario](const char *tag) {
        const OutputFlags *flags = outputFlags(scenario, tag);
        return flags && flags->available && flags->active;
    };
    QVector<OutputLine> lines;
    if (isOn("6d"))
        lines.append({QByteArrayLiteral("6d"), line6d(bodiesAt(scenario, seconds))});
    if (isOn("6di"))
        lines.append({QByteArrayLiteral("6di"), line6di(bodiesAt(scenario, seconds))});
    if (isOn("3d"))
        lines.append({QByteArrayLiteral("3d"), line3d(markersAt(scenario, seconds))});
    return lines;
}

Scenario SimulatedBackend::scenario() const
{
    return *currentModel();
}

std::shared_ptr<const Scenario> SimulatedBackend::currentModel() const
{
    const std::lock_guard lock(modelMutex);
    return model;
}

} // namespace backend
