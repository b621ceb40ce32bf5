// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/backendchoice.h"

#include <QMenu>

class QActionGroup;

namespace host {

class BackendReader;
class BackendSession;
class HostLog;

/// The menu "&Backend": disconnect, connect again, and choose what to be connected to while the program runs. What is
/// in files is read on a thread meanwhile, and what is shown stays until then.
class BackendMenu : public QMenu {
    Q_OBJECT

public:
    BackendMenu(BackendSession &session, HostLog &log, BackendSettings settings, QWidget *parent = nullptr);

    /// Ticks the scenario of \a choice in the menu.
    void showChoice(const BackendChoice &choice);
    /// Connects to \a choice, at once or, where there are files to read, when that is done. When it fails, the log says
    /// why and everything stays as it was. Returns false when it failed at once.
    bool choose(const BackendChoice &choice);
    /// The same for a choice for which a placeholder is connected until it has been read: when that fails or is
    /// cancelled, the placeholder is disconnected.
    void replacePlaceholder(const BackendChoice &choice);

    BackendReader *backendReader() const { return reader; }

signals:
    void failed(const QString &text); ///< a choice could not be followed
    void chosen(const host::BackendChoice &choice); ///< connected to what the operator chose

private:
    void addScenarios();
    void chooseScenarioFile();
    bool take(const BackendChoice &choice, const BackendResult &made);
    void giveUp(const QString &text);
    void reconnect();
    void updateActions();

    BackendSession &session;
    HostLog &log;
    const BackendSettings settings;
    QAction *disconnectAction = nullptr;
    QAction *connectAction = nullptr;
    QAction *reconnectAction = nullptr;
    BackendReader *reader = nullptr;
    bool hasPlaceholder = false; // is connected to one
    QActionGroup *scenarios = nullptr;
    BackendChoice current;
};

} // namespace host
