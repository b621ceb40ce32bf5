// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace host {

/// What the command line asks for.
struct HostOptions {
    BackendChoice choice;
    BackendSettings settings;
    QString modulesFolder; ///< searched first; empty: none
    bool observer = false;
    QString screenshotFile; ///< empty: none is taken
    std::chrono::milliseconds screenshotDelay{2000};
    std::optional<std::chrono::milliseconds> duration; ///< nothing: until the operator quits
    QString logFile; ///< empty: none is written
};

/// Result of reading the command line: what to do, or what to print instead of it.
struct OptionsResult {
    Q_DECLARE_TR_FUNCTIONS(OptionsResult)

public:
    enum class Kind { Run, Answer, Error };

    Kind kind = Kind::Run;
    HostOptions options;
    QString text; ///< for the standard output (Kind::Answer) or the standard error (Kind::Error)

    /// \a arguments start with the name of the program. There must be an application object.
    static OptionsResult read(const QStringList &arguments);
};

} // namespace host
