// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/options.h"

#include <QCoreApplication>
#include <QList>
#include <QStringList>

#include <functional>

class QMainWindow;
struct ModuleEntry;

namespace host {

/// Saves the picture and the tables that the options ask for, at their time, and quits. GUI thread.
class SaveAndQuit {
    Q_DECLARE_TR_FUNCTIONS(SaveAndQuit)

public:
    /// All arguments outlive this object.
    SaveAndQuit(const HostOptions &options, QMainWindow &window, std::function<QList<ModuleEntry *>()> entries);

    /// Starts the time, if there is anything to save.
    void schedule();
    /// What was to be saved and is not, a sentence each.
    QStringList failures() const;

private:
    void save();

    const HostOptions &options;
    QMainWindow &window;
    const std::function<QList<ModuleEntry *>()> entries;
    bool done = false;
    QStringList complaints; // of save()
};

} // namespace host
