// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/outputthread.h"
#include "interface/backendversions.h"

#include <QObject>

#include <memory>

class HostIOManager;
class HostLog;
class TrackingBackend;

/// The connection to the backend: brings it up in the order that modules rely on, and takes it down again. GUI thread.
class BackendSession : public QObject {
    Q_OBJECT

public:
    BackendSession(HostIOManager &manager, BackendVersions &record, HostLog &hostLog);
    ~BackendSession() override;

    /// Takes \a newBackend in place of the one before: clears the data, fills in the versions, opens the command
    /// channel. Lines flow after start() only, so that modules can be loaded in between.
    void open(std::shared_ptr<TrackingBackend> newBackend);
    /// Tells all requesters to read the configuration and lets the lines flow.
    void start();
    /// The same as open() and start(), for a backend that is chosen while modules run.
    void change(std::shared_ptr<TrackingBackend> newBackend);
    /// Connects again to the backend that was disconnected; its time went on meanwhile.
    void connectAgain();
    void disconnectBackend();
    /// Ends the delivery without a word to the requesters.
    void stopOutput();

    bool isConnected() const { return connected; }
    QString backendName() const; ///< empty when there never was a backend
    OutputThread::Counts counts() const { return output.counts(); }

signals:
    void connectionChanged(); ///< connected, disconnected, or to another backend

private:
    void openChannel();

    HostIOManager &ioManager;
    BackendVersions &versions;
    HostLog &log;
    std::shared_ptr<TrackingBackend> backend;
    OutputThread::Clock::time_point epoch; // the start of the backend's clock
    bool connected = false;
    OutputThread output;
};
