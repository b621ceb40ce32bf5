// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QVector>

#include <optional>

/// What is kept from one run to the next about the sources that the operator chose in the window. GUI thread.
namespace host::sourcesettings {

constexpr int mostRecent = 8;

/// Keeps \a choice as the last backend; if it consists of files also as the first of the recent ones, and their folder.
/// Standard input is not kept: it belongs to one run.
void remember(const BackendChoice &choice);

std::optional<BackendChoice> lastBackend();
QVector<BackendChoice> recentFiles(); ///< the latest first
QString lastFolder(); ///< empty: none yet

/// Removes \a choice from the recent files.
void forget(const BackendChoice &choice);
void forgetRecentFiles();

} // namespace host::sourcesettings
