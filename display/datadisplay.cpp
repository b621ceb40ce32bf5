// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/datadisplay.h"

#include "channel/version.h"
#include "display/sensorschedule.h"
#include "interface/backendversions.h"
#include "interface/iomanager.h"

#include <QByteArray>
#include <QDir>
#include <QPointer>
#include <QScopeGuard>

namespace {

constexpr int viewInterval = 200; // ms

} // namespace

DataDisplay::DataDisplay(IOManager *io, QWidget *parent, BackendVersions *backendVersions, const QString &moduleVersion)
    : QWidget(parent)
    , versions(backendVersions)
    , ioManager(io)
{
    setupUi(this);
    tableWidget6d->setIOManager(ioManager);
    tableWidget6d->setVersions(versions);
    tableWidget6d->setTabIndex(0);
    ioManager->registerRequester(this);
    auto unregister = qScopeGuard([this] { ioManager->unregisterRequester(this); }); // where memory runs out below

    setupTable6d();
    setupTable3d();
    sensorIntervals = sensorSchedule();
    preferencesDir = QDir::homePath() + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/") + moduleVersion
        + QStringLiteral("/config");
    loadPreferences();

    viewTimer.setObjectName(QStringLiteral("viewTimer"));
    sensorTimer.setObjectName(QStringLiteral("sensorTimer"));
    viewTimer.setInterval(viewInterval);
    sensorTimer.setInterval(firstSensorInterval);
    connect(&viewTimer, &QTimer::timeout, this, &DataDisplay::updateView6d);
    connect(&viewTimer, &QTimer::timeout, this, &DataDisplay::updateView3d);
    connect(tableWidget6d, &ZelTableWidget::updateFilterActiveStatus, this, &DataDisplay::onUpdateFilterActiveStatus);
    connect(&sensorTimer, &QTimer::timeout, this, &DataDisplay::timerUpdateInertialSensorInfo);
    connect(this, &DataDisplay::shallUpdateView6d, this, &DataDisplay::updateView6d, Qt::QueuedConnection);

    fixedAnglePresent = detectFixedAngles();
    chooseOutputFormat();
    activateOutput("3d");
    unregister.dismiss();
}

DataDisplay::~DataDisplay()
{
    if (!unregisterWhenDestroyed)
        return;
    try {
        ioManager->unregisterRequester(this); // in time: the data thread may be in processOutput()
    } catch (...) {
        return; // the host's, and destructors don't throw
    }
}

const char *DataDisplay::tag6d() const
{
    return data.useInertialFormat ? "6di" : "6d";
}

int DataDisplay::processOutput(const char *tag, const char *line) noexcept
try {
    if (!tag || !line) {
        ++data.lineCounts.ignored;
        return 0;
    }
    // Brackets are looked for before numbers are read: a host that writes to its buffer meanwhile must not move them.
    const QByteArray copy(line);
    const LineOutcome outcome = data.receive(tag, copy.constData());
    if (outcome == LineOutcome::StoredFirstBodies)
        announceBodies();
    return outcome == LineOutcome::Malformed ? -1 : 0;
} catch (...) {
    ++data.lineCounts.dropped;
    return 0; // the host's data thread has no handler for us; what is stored stays usable
}

void DataDisplay::announceBodies() noexcept
try {
    emit shallUpdateView6d();
} catch (...) {
    return; // out of memory: the bodies are stored, and the next tick of the timer shows them
}

void DataDisplay::clearData() noexcept
try {
    viewTimer.stop();
    untold6d = {};
    tableWidget6d->setRowCount(0);
    tableWidget3d->setRowCount(0);
    data.clear();
    if (!inertialAvailable)
        return;
    inertialAvailable = false;
    if (!inertialInUse)
        return;
    sensorTimer.stop();
    inertialInUse = false;
} catch (...) {
    return; // out of memory: the host has no handler for us
}

void DataDisplay::prepareShutdown()
{
    const QPointer<DataDisplay> panel(this);
    unregisterWhenDestroyed = false;
    ioManager->unregisterRequester(this);
    if (panel) // the host waits for its data thread, and may have released us meanwhile
        savePreferences();
}

void DataDisplay::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    ioManager->startOutput(tag6d(), this);
    ioManager->startOutput("3d", this);
}

void DataDisplay::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    ioManager->stopOutput(tag6d(), this);
    ioManager->stopOutput("3d", this);
}
