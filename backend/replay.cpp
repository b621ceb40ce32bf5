// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/replay.h"

#include "backend/readingprogress.h"
#include "backend/texts.h"
#include "backend/trajectory.h"

#include <QFileInfo>

#include <algorithm>

namespace backend {

namespace {

constexpr double slowest = 0.1; // [frames per second]
constexpr double fastest = 5000.0;
constexpr double rounding = 1.0e-3; // of the times in a file

/// Lets the frames meet the recording between its samples: at their very times, rounding would decide for each frame
/// whether it shows the sample or the one before, and so show some twice and others never.
double quarterStep(const Trajectory &recording)
{
    return recording.rate() > 0.0 ? 0.25 / recording.rate() : 0.0;
}

ScenarioResult scenarioOf(const QStringList &fileNames, ReadingProgress *progress, ReadTrajectory part)
{
    ScenarioResult result;
    if (fileNames.isEmpty()) {
        result.error = Backend::tr("There is no file to replay.");
        return result;
    }

    Scenario scenario;
    QStringList names;
    double rate = 0.0;
    for (const QString &fileName : fileNames) {
        const TrajectoryResult file = loadTrajectory(fileName, progress, part);
        if (!file.trajectory) {
            result.error = file.error;
            return result;
        }
        result.warnings += file.warnings(fileName);
        StandardBody body;
        body.name = QFileInfo(fileName).completeBaseName();
        body.motion.kind = Motion::Kind::Recorded;
        body.motion.recording = file.trajectory;
        body.motion.ahead = quarterStep(*file.trajectory);
        scenario.bodies.append(body);
        names += QFileInfo(fileName).fileName();
        rate = std::max(rate, file.trajectory->rate());
        if (file.trajectory->rate() > fastest * (1.0 + rounding)) {
            result.warnings += Backend::tr("%1 holds %2 samples a second, of which %3 are shown.")
                                   .arg(fileName)
                                   .arg(file.trajectory->rate(), 0, 'f', 0)
                                   .arg(fastest);
        }
    }
    if (rate > 0.0)
        scenario.rate = std::clamp(rate, slowest, fastest);
    scenario.name = Backend::tr("replay: %1").arg(names.join(QStringLiteral(", ")));
    scenario.description = Backend::tr("Recorded trajectories, played over and over.");
    result.scenario = std::move(scenario);
    return result;
}

} // namespace

ScenarioResult replayScenario(const QStringList &fileNames, ReadingProgress *progress)
{
    if (progress) {
        for (const QString &fileName : fileNames)
            progress->total += QFileInfo(fileName).size();
    }
    return scenarioOf(fileNames, progress, ReadTrajectory::All);
}

ScenarioResult replayScenarioToBe(const QStringList &fileNames)
{
    ScenarioResult result = scenarioOf(fileNames, nullptr, ReadTrajectory::FirstSample);
    result.warnings.clear(); // the whole reading repeats them
    return result;
}

} // namespace backend
