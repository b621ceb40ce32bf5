// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/livenessmonitor.h"

#include "host/backendsession.h"
#include "host/hostlog.h"
#include "host/lineaccount.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTimer>

namespace host {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds lookInterval = 100ms;
constexpr std::chrono::milliseconds countInterval = 1s; // a panel has hundreds of widgets to search

std::optional<quint64> droppedByPanels(const QMainWindow &window)
{
    const QList<QDockWidget *> docks = window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QList<QWidget *> widgets;
    for (QDockWidget *dock : docks)
        widgets.append(dock);
    const std::optional<PanelLineCounts> counts = lineCountsInDocks(widgets);
    return counts ? std::optional<quint64>(counts->dropped) : std::nullopt;
}

} // namespace

LivenessMonitor::LivenessMonitor(BackendSession &session, HostLog &log, const QMainWindow &window)
    : session(session)
    , log(log)
    , window(window)
{
    connect(&session, &BackendSession::connectionChanged, this, &LivenessMonitor::beginSource);
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { look(Clock::now()); });
    timer->start(lookInterval);
    look(Clock::now());
}

quint64 LivenessMonitor::lostOnTheWay() const
{
    return lostBefore + host::lostOnTheWay(figures, known);
}

quint64 LivenessMonitor::late() const
{
    return lateBefore + known.late;
}

void LivenessMonitor::look(Clock::time_point now)
{
    readFacts(now);
    figures = session.health().snapshot(now - session.streamEpoch());
    const Liveness::Level before = current.level;
    current = judge(figures, known);
    const QStringList texts = report.next(current);
    for (const QString &text : texts)
        log.warning(text);
    emit looked();
    if (current.level != before)
        emit levelChanged();
}

void LivenessMonitor::beginSource()
{
    // No line flows at this moment. The one before has counted since the last look.
    readFacts(Clock::now());
    figures = session.health().snapshot(Clock::now() - session.streamEpoch());
    lostBefore = lostOnTheWay();
    lateBefore = late();
    session.health().clear();
    report.clear();
    wantedSince.reset();
    look(Clock::now());
}

void LivenessMonitor::readFacts(Clock::time_point now)
{
    const LineTotals totals = session.counts();
    known.connected = session.isConnected();
    known.state = session.streamState();
    known.late = totals.late - lateBefore;
    known.lostBefore = lostBefore + lateBefore;
    known.unreadable = totals.refused;
    if (now - countsRead >= countInterval) {
        countsRead = now;
        known.dropped = droppedByPanels(window);
    }
    if (!session.isOutputWanted())
        wantedSince.reset();
    else if (!wantedSince)
        wantedSince = now;
    known.wantedFor.reset();
    if (wantedSince)
        known.wantedFor = now - *wantedSince;
}

} // namespace host
