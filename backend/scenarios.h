// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

struct ReadingProgress;

/// The names of the scenarios that come with the library, "default" first.
QStringList scenarioNames();

/// One line for the operator on what the shipped scenario \a name shows; empty for an unknown name.
QString scenarioDescription(const QString &name);

/// Loads a shipped scenario by its name, else the file of that path. Says in \a progress how far it is with the
/// recordings that the scenario names, if there is one, and gives up when that is cancelled.
ScenarioResult loadScenario(const QString &nameOrPath, ReadingProgress *progress = nullptr);

/// Reads a scenario from its JSON text. \a fileName is named in errors, and files that the scenario names are looked
/// for beside it. Strict: an unknown key, a wrong type and a value out of range are errors.
ScenarioResult readScenario(const QByteArray &json, const QString &fileName, ReadingProgress *progress = nullptr);

} // namespace backend
