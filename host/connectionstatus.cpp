// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/connectionstatus.h"

#include "host/backendsession.h"

#include <QLabel>
#include <QStatusBar>
#include <QTimer>

namespace host {

namespace {

constexpr int rateInterval = 1000; // [ms]

QLabel *addLabel(QStatusBar *bar, const QString &name, const QString &whatsThis)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText); // scenario files name the backend
    label->setWhatsThis(whatsThis);
    bar->addPermanentWidget(label);
    return label;
}

} // namespace

ConnectionStatus::ConnectionStatus(const BackendSession &session, QStatusBar *statusBar)
    : QObject(statusBar)
    , session(session)
{
    backendLabel = addLabel(statusBar, QStringLiteral("backendLabel"), tr("The backend that the data come from."));
    rateLabel = addLabel(statusBar, QStringLiteral("rateLabel"),
                         tr("Lines of output handed to the modules, measured once a second."));
    refusedLabel =
        addLabel(statusBar, QStringLiteral("refusedLabel"), tr("Lines that a module could not read, since the start."));
    connect(&session, &BackendSession::connectionChanged, this, &ConnectionStatus::showBackend);
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &ConnectionStatus::measureRate);
    timer->start(rateInterval);
    rateClock.start();
    showBackend();
    rateLabel->setText(tr("%1 lines/s").arg(0));
    refusedLabel->setText(tr("%1 refused").arg(0));
}

void ConnectionStatus::showBackend()
{
    const QString name = session.backendName();
    backendLabel->setText(session.isConnected() ? name
                              : name.isEmpty()  ? tr("no backend")
                                                : tr("%1 (disconnected)").arg(name));
}

void ConnectionStatus::measureRate()
{
    const LineTotals counts = session.counts();
    const double seconds = static_cast<double>(rateClock.restart()) / 1000.0;
    const double rate = static_cast<double>(counts.sent - sentBefore) / qMax(seconds, 0.001);
    sentBefore = counts.sent;
    rateLabel->setText(tr("%1 lines/s").arg(qRound(rate)));
    refusedLabel->setText(tr("%1 refused").arg(counts.refused));
}

} // namespace host
