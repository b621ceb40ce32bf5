// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/replay.h"

#include "backend/texts.h"
#include "backend/trajectory.h"

#include <QFileInfo>

namespace backend {

ScenarioResult replayScenario(const QStringList &fileNames)
{
    ScenarioResult result;
    if (fileNames.isEmpty()) {
        result.error = Backend::tr("There is no file to replay.");
        return result;
    }

    Scenario scenario;
    QStringList names;
    for (const QString &fileName : fileNames) {
        const TrajectoryResult file = loadTrajectory(fileName);
        if (!file.trajectory) {
            result.error = file.error;
            return result;
        }
        result.warnings += file.warnings(fileName);
        StandardBody body;
        body.name = QFileInfo(fileName).completeBaseName();
        body.motion.kind = Motion::Kind::Recorded;
        body.motion.recording = file.trajectory;
        scenario.bodies.append(body);
        names += QFileInfo(fileName).fileName();
    }
    scenario.name = Backend::tr("replay: %1").arg(names.join(QStringLiteral(", ")));
    scenario.description = Backend::tr("Recorded trajectories, played over and over.");
    result.scenario = std::move(scenario);
    return result;
}

} // namespace backend
