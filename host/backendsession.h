// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/outputthread.h"
#include "interface/backendversions.h"

#include <QObject>

#include <memory>

namespace backend {
class TrackingBackend;
} // namespace backend

namespace host {

class HostIOManager;
class HostLog;

/// The connection to the backend: opened and closed in the order that modules rely on. GUI thread.
class BackendSession : public QObject {
    Q_OBJECT

public:
    BackendSession(HostIOManager &ioManager, BackendVersions &versions, HostLog &log);
    ~BackendSession() override;

    /// Takes \a newBackend in place of the one before: clears the data, fills in the versions, opens the command
    /// channel. Lines flow after start() only, so that modules can be loaded in between.
    void open(std::shared_ptr<backend::TrackingBackend> newBackend);
    /// Tells all requesters to read the configuration and lets the lines flow.
    void start();
    /// The same as open() and start(), for a backend that is chosen while modules run.
    void change(std::shared_ptr<backend::TrackingBackend> newBackend);
    /// Connects again to the backend that was disconnected; its clock has not stopped meanwhile.
    void reconnect();
    void disconnectBackend();
    /// Ends the delivery without notifying the requesters.
    void stopOutput();

    bool isConnected() const { return connected; }
    QString backendName() const; ///< empty when there never was a backend
    OutputThread::Counts counts() const { return output.counts(); }

signals:
    void connectionChanged(); ///< connected, disconnected, or connected to a different backend

private:
    void openChannel();

    HostIOManager &ioManager;
    BackendVersions &versions;
    HostLog &log;
    std::shared_ptr<backend::TrackingBackend> backend;
    OutputThread::Clock::time_point epoch; // the start of the backend's clock
    bool connected = false;
    OutputThread output;
};

} // namespace host
