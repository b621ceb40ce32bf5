// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>

class QLabel;
class QStatusBar;

namespace host {

class BackendSession;

/// What the status bar says about the connection: the backend, the lines per second, and the lines refused.
class ConnectionStatus : public QObject {
    Q_OBJECT

public:
    /// Adds its fields to \a statusBar, which also owns this object. \a session outlives it.
    ConnectionStatus(const BackendSession &session, QStatusBar *statusBar);

private:
    void showBackend();
    void measureRate();

    const BackendSession &session;
    QLabel *backendLabel = nullptr;
    QLabel *rateLabel = nullptr;
    QLabel *refusedLabel = nullptr;
    QElapsedTimer rateClock;
    quint64 sentBefore = 0; // at the start of rateClock
};

} // namespace host
