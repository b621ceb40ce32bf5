// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

struct ReadingProgress;

/// A scenario in which each trajectory file is one standard body, named after the file, played in real time, over and
/// over, at the rate of the recording: of the fastest one, 0.1 to 5000 frames a second. Lines that could not be used
/// are among the warnings; a file without a usable line is an error. Says in \a progress how far it is, if there is
/// one, and gives up when that is cancelled.
ScenarioResult replayScenario(const QStringList &fileNames, ReadingProgress *progress = nullptr);

/// The same of the first usable line of each file, for what is asked before they have been read. A file without any is
/// an error here, too.
ScenarioResult replayScenarioToBe(const QStringList &fileNames);

} // namespace backend
