// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/livenessview.h"

#include "host/connectionstatus.h"
#include "host/healthdock.h"
#include "host/livenessbanner.h"
#include "host/livenessmonitor.h"
#include "host/logdock.h"
#include "host/mainwindow.h"
#include "host/picturefreeze.h"

#include <QAction>

namespace host {

LivenessView::LivenessView(BackendSession &session, HostLog &hostLog, MainWindow &window)
    : QObject(&window)
    , window(window)
    , monitor(new LivenessMonitor(session, hostLog, window))
    , banner(new LivenessBanner(&window))
    , dock(new HealthDock(*monitor, &window))
    , freeze(new PictureFreeze(window))
{
    monitor->setParent(this);
    window.addToolBar(Qt::TopToolBarArea, banner);
    // Beside the log its tables would have no room.
    window.addDockWidget(Qt::BottomDockWidgetArea, dock);
    if (auto *log = window.findChild<LogDock *>())
        window.tabifyDockWidget(log, dock);
    dock->hide();
    window.addViewAction(dock->toggleViewAction());
    window.addViewAction(freeze->action());
    new ConnectionStatus(session, *monitor, window.statusBar());
    connect(monitor, &LivenessMonitor::looked, this, &LivenessView::follow);
    connect(freeze, &PictureFreeze::changed, this, &LivenessView::followFreeze);
    follow();
}

void LivenessView::follow()
{
    banner->showLiveness(monitor->liveness());
    dock->refresh();
    QString state = LivenessWords::titlePrefix(monitor->liveness());
    if (freeze->isFrozen())
        state.prepend(tr("(picture frozen %1) ").arg(freeze->since()));
    if (state == stateInTitle)
        return;
    stateInTitle = state;
    window.setStateInTitle(state);
}

void LivenessView::followFreeze()
{
    banner->showFrozenPicture(freeze->since());
    follow();
}

} // namespace host
