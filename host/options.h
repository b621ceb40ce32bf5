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
    using Clock = std::chrono::steady_clock;

    BackendChoice choice;
    BackendSettings settings;
    QString modulesFolder; ///< searched first; empty: none
    bool observer = false;
    QString screenshotFile; ///< empty: none is taken
    QString tablesFolder; ///< where the tables are saved; empty: they are not
    std::chrono::milliseconds saveAfter{2000}; ///< from the start of the program to the picture and the tables
    std::optional<std::chrono::milliseconds> duration; ///< nothing: until the operator quits
    QString logFile; ///< empty: none is written
    Clock::time_point start = Clock::now(); ///< of the program, as far as it can know
    bool isSourceNamed = false; ///< a scenario, recordings or standard input; else the choice is the default scenario

    /// Whether the run ends by itself once a picture or tables are saved. Such a run is the same on every machine and
    /// leaves the operator's window alone.
    bool savesAndQuits() const { return !screenshotFile.isEmpty() || !tablesFolder.isEmpty(); }
};

/// Result of reading the command line: what to do, or what to print instead of it.
struct OptionsResult {
    Q_DECLARE_TR_FUNCTIONS(OptionsResult)

public:
    enum class Kind { Run, Answer, Error };

    Kind kind = Kind::Run;
    HostOptions options;
    QString text; ///< for the standard output (Kind::Answer) or the standard error (Kind::Error)

    /// \a arguments start with the name of the program and hold none of Qt's own. There must be an application object.
    static OptionsResult read(const QStringList &arguments);
};

} // namespace host
