// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

/// A scenario in which each trajectory file is one standard body, named after the file, played in real time, over and
/// over. Lines that could not be used are among the warnings; a file without a usable line is an error.
ScenarioResult replayScenario(const QStringList &fileNames);

} // namespace backend
