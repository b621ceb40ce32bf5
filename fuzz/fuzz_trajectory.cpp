// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/replay.h"
#include "backend/simulatedbackend.h"
#include "backend/trajectory.h"
#include "fuzz/backendchecks.h"
#include "fuzz/fuzztarget.h"

#include <algorithm>
#include <cmath>

using namespace backend;

namespace {

constexpr double farthest = 1.0e9; // [mm]
const quint64 recordingsPerAnswers = isReplay() ? 1 : 64;
constexpr double roundingError = 1.0e-9;

/// Whether the rows of \a rotation have length 1 and are at right angles.
bool isRotation(const Rotation &rotation)
{
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = i; j < 3; ++j) {
            double product = 0.0;
            for (std::size_t k = 0; k < 3; ++k)
                product += rotation[3 * i + k] * rotation[3 * j + k];
            if (!(std::abs(product - (i == j ? 1.0 : 0.0)) < roundingError))
                return false;
        }
    }
    return true;
}

void checkSamples(const Trajectory &trajectory)
{
    const QVector<Trajectory::Sample> &samples = trajectory.samples();
    require(!samples.isEmpty() && !(samples[0].time < 0.0) && !(samples[0].time > 0.0), "the first sample is at 0");
    for (int i = 0; i < samples.size(); ++i) {
        const Trajectory::Sample &sample = samples[i];
        require(std::isfinite(sample.time), "a time is a number");
        require(i == 0 || sample.time > samples[i - 1].time, "the times increase");
        for (const double coordinate : sample.pose.position)
            require(std::abs(coordinate) <= farthest, "a place is near");
        require(isRotation(sample.pose.rotation), "a quaternion gives a rotation");
        if (sample.time < trajectory.duration())
            require(&trajectory.poseAt(sample.time) == &sample.pose, "at its time a sample is shown");
    }
    for (const double seconds : {-1.0, 0.0, 0.5, 1.0e3, 1.0e18, 1.0e300}) {
        const Pose &pose = trajectory.poseAt(seconds);
        const bool known = std::any_of(samples.cbegin(), samples.cend(),
                                       [&pose](const Trajectory::Sample &sample) { return &sample.pose == &pose; });
        require(known, "what is shown was recorded");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = bytesOf(data, size);
    const QString fileName = writeHomeFile(QStringLiteral("recording.txt"), text);
    const TrajectoryResult result = loadTrajectory(fileName);
    require(result.error.isEmpty() == (result.trajectory != nullptr), "a trajectory or an error, not both");
    require(result.skipped.size() == std::min(result.skippedCount, 100), "the first hundred lines are reported");
    const int used = result.trajectory ? result.trajectory->samples().size() : 0;
    require(used + result.skippedCount <= text.count('\n') + 1, "no line counts twice");
    if (!result.trajectory)
        return 0;
    checkSamples(*result.trajectory);
    const ScenarioResult replay = replayScenario({fileName});
    require(replay.scenario.has_value(), "what was read can be replayed");
    // No answer depends on what was recorded.
    static quint64 recordings = 0;
    if (recordings++ % recordingsPerAnswers == 0)
        checkBackend(*replay.scenario);
    else
        checkBackendLines(*replay.scenario);
    return 0;
}
