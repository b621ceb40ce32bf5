// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendsession.h"
#include "host/backendwatch.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "host/logoutput.h"
#include "host/mainwindow.h"
#include "host/moduleset.h"
#include "host/options.h"
#include "host/saveandquit.h"
#include "interface/backendversions.h"

#include <QCoreApplication>

#include <memory>

namespace host {

/// The whole program behind its command line: starts log, command channel, window, modules and output in the order
/// that modules rely on, and shuts them down in reverse order. GUI thread.
class Host {
    Q_DECLARE_TR_FUNCTIONS(Host)

public:
    /// \a backend is what the options chose; modules are looked for in \a moduleFolders; \a logFile may be null.
    Host(const HostOptions &options, std::shared_ptr<backend::TrackingBackend> backend,
         const QStringList &moduleFolders, std::unique_ptr<LogFile> logFile = nullptr);
    /// Shuts everything down if shutDown() has not done so.
    ~Host();

    /// Shows the window and runs until the operator quits or the time is over, then shuts everything down and prints
    /// the account of the lines. Returns the exit code.
    int run();
    /// Ends run() in order, with 0 also where a picture was still to be taken; whatever dialogs are open.
    void end();

    MainWindow &window() { return mainWindow; }
    HostLog &log() { return hostLog; }
    BackendSession &backendSession() { return session; }

    /// Unloads the modules and stops the output. Returns the account of the lines; empty when it was called before.
    QString shutDown();

private:
    Q_DISABLE_COPY(Host)

    void addTools();
    void showConnection();
    /// Prints what was not done as asked. Returns the exit code.
    int result(bool hadModules) const;

    // In the order of construction: each outlives the ones after it.
    const HostOptions options;
    HostLog hostLog;
    LogOutput logOutput;
    BackendWatch watch;
    BackendVersions versions;
    HostIOManager ioManager;
    BackendSession session;
    MainWindow mainWindow;
    ModuleSet modules;
    SaveAndQuit saving;
    bool isDown = false;
    bool isEnding = false; // end() was called
};

} // namespace host
