// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace host {

class BackendSession;
class HealthDock;
class HostLog;
class LivenessBanner;
class LivenessMonitor;
class MainWindow;
class PictureFreeze;

/// Everything in the window that says how far it can be trusted: title, banner, status bar, "Stream Health", and the
/// frozen picture.
class LivenessView : public QObject {
    Q_OBJECT

public:
    /// Puts its parts into \a window, which owns it; \a session and \a hostLog outlive both.
    LivenessView(BackendSession &session, HostLog &hostLog, MainWindow &window);

private:
    void follow();
    void followFreeze();

    MainWindow &window;
    LivenessMonitor *monitor = nullptr;
    LivenessBanner *banner = nullptr;
    HealthDock *dock = nullptr;
    PictureFreeze *freeze = nullptr;
    QString stateInTitle;
};

} // namespace host
