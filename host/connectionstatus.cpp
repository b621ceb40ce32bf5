// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/connectionstatus.h"

#include "host/backendsession.h"
#include "host/elidedlabel.h"
#include "host/livenessline.h"
#include "host/livenessmonitor.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QStatusBar>

namespace host {

namespace {

constexpr qint64 rateInterval = 1000; // [ms]

std::optional<qint64> wholeSeconds(const std::optional<std::chrono::nanoseconds> &time)
{
    if (!time)
        return std::nullopt;
    return std::chrono::duration_cast<std::chrono::seconds>(*time).count();
}

qint64 steadyMilliseconds()
{
    QElapsedTimer clock;
    clock.start();
    return clock.msecsSinceReference();
}

} // namespace

ConnectionStatus::ConnectionStatus(const BackendSession &session, const LivenessMonitor &monitor, QStatusBar *statusBar)
    : QObject(statusBar)
    , session(session)
    , monitor(monitor)
    , backendLabel(new ElidedLabel)
    , livenessLine(new LivenessLine(QStringLiteral("livenessLabel")))
    , unreadableLabel(new QLabel)
{
    backendLabel->setObjectName(QStringLiteral("backendLabel"));
    backendLabel->setWhatsThis(tr("The backend that the data come from."));
    statusBar->addPermanentWidget(backendLabel);
    livenessLine->setWhatsThis(
        tr("Whether lines of output come, how many a second of each kind, how old the last one is "
           "from one second on, and how many were lost: on the way, because they were late, or "
           "while a panel was drawing. \"Stream Health\" in the view menu has the details."));
    statusBar->addPermanentWidget(livenessLine);
    unreadableLabel->setObjectName(QStringLiteral("unreadableLabel"));
    unreadableLabel->setToolTip(tr("Lines that a module could not read"));
    unreadableLabel->setWhatsThis(tr("Lines that a module could not read, since the start."));
    statusBar->addPermanentWidget(unreadableLabel);
    connect(&session, &BackendSession::connectionChanged, this, &ConnectionStatus::showBackend);
    connect(&monitor, &LivenessMonitor::looked, this, &ConnectionStatus::showLiveness);
    showBackend();
    showLiveness();
}

void ConnectionStatus::showBackend()
{
    const QString name = session.backendName();
    backendLabel->setText(session.isConnected() ? name
                              : name.isEmpty()  ? tr("no backend")
                                                : tr("%1 (disconnected)").arg(name));
}

void ConnectionStatus::showLiveness()
{
    // Rates would flicker: they are renewed once a second, ages and levels at once.
    const Liveness &liveness = monitor.liveness();
    const qint64 now = steadyMilliseconds();
    const bool isNews = level != liveness.level || age != wholeSeconds(liveness.age);
    if (!isNews && now - shownAt < rateInterval)
        return;
    shownAt = now;
    age = wholeSeconds(liveness.age);
    livenessLine->setText(LivenessWords::sentence(liveness));
    unreadableLabel->setText(tr("%1 unreadable").arg(liveness.unreadable));
    if (level == liveness.level)
        return;
    level = liveness.level;
    livenessLine->setLook(lookOf(*level), true);
}

} // namespace host
