// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/liveness.h"

#include <QObject>

#include <optional>

class QLabel;
class QStatusBar;

namespace host {

class BackendSession;
class ElidedLabel;
class LivenessLine;
class LivenessMonitor;

/// What the status bar says about the connection: the backend, the state of its lines, and the lines that were
/// unreadable.
class ConnectionStatus : public QObject {
    Q_OBJECT

public:
    /// Adds its fields to \a statusBar, which also owns this object. \a session and \a monitor outlive it.
    ConnectionStatus(const BackendSession &session, const LivenessMonitor &monitor, QStatusBar *statusBar);

private:
    void showBackend();
    void showLiveness();

    const BackendSession &session;
    const LivenessMonitor &monitor;
    ElidedLabel *backendLabel = nullptr;
    LivenessLine *livenessLine = nullptr;
    QLabel *unreadableLabel = nullptr;
    std::optional<Liveness::Level> level; // shown
    std::optional<qint64> age; // shown [s]
    qint64 shownAt = 0; // [ms]
};

} // namespace host
