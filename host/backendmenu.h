// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QMenu>

class QActionGroup;

namespace host {

class BackendSession;
class HostLog;

/// The menu "&Backend": disconnect, connect again, and choose what to be connected to while the program runs.
class BackendMenu : public QMenu {
    Q_OBJECT

public:
    BackendMenu(BackendSession &session, HostLog &log, BackendSettings settings, QWidget *parent = nullptr);

    /// Ticks the scenario of \a choice in the menu.
    void showChoice(const BackendChoice &choice);
    /// Connects to \a choice. When that fails, the log says why and everything stays as it was.
    bool choose(const BackendChoice &choice);

signals:
    void failed(const QString &text); ///< a choice could not be followed

private:
    void addScenarios();
    void chooseScenarioFile();
    void chooseReplayFiles();
    void updateActions();

    BackendSession &session;
    HostLog &log;
    const BackendSettings settings;
    QAction *disconnectAction = nullptr;
    QAction *connectAction = nullptr;
    QActionGroup *scenarios = nullptr;
    BackendChoice current;
};

} // namespace host
