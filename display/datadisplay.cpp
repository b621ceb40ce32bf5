// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/datadisplay.h"

#include "channel/query.h"
#include "channel/version.h"
#include "display/bodytable.h"
#include "display/columnwidths.h"
#include "display/markertable.h"
#include "display/registration.h"
#include "interface/backendversions.h"
#include "interface/iomanager.h"

#include <QByteArray>
#include <QDir>
#include <QPointer>
#include <QScopeGuard>

#include <utility>

namespace {

constexpr int viewInterval = 200; // ms

QString preferencesDirOf(const QString &moduleVersion)
{
    return QDir::homePath() + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/") + moduleVersion
        + QStringLiteral("/config");
}

} // namespace

DataDisplay::DataDisplay(IOManager *io, QWidget *parent, BackendVersions *backendVersions, const QString &moduleVersion)
    : QWidget(parent)
    , versions(backendVersions)
    , ioManager(io)
    , viewTimer(this)
    , sensorTimer(this)
    , output(*io, *this, data.useInertialFormat)
{
    setupUi(this);
    tableWidget6d->setIOManager(ioManager);
    tableWidget6d->setVersions(versions);
    tableWidget6d->setTabIndex(0);
    bodyTable = std::make_unique<BodyTable>(*tableWidget6d, versionAtLeast(*versions, 1, 12));
    markerTable = std::make_unique<MarkerTable>(*tableWidget3d);
    columnWidths =
        std::make_unique<ColumnWidths>(*ioManager, *tableWidget6d, *tableWidget3d, preferencesDirOf(moduleVersion));
    viewTimer.setObjectName(QStringLiteral("viewTimer"));
    viewTimer.setInterval(viewInterval);
    sensorTimer.setObjectName(QStringLiteral("sensorTimer"));
    sensorTimer.setInterval(SensorPolling::firstInterval);
    connect(&viewTimer, &QTimer::timeout, this, &DataDisplay::updateView6d);
    connect(&viewTimer, &QTimer::timeout, this, &DataDisplay::updateView3d);
    connect(tableWidget6d, &ZelTableWidget::updateFilterActiveStatus, this, &DataDisplay::onUpdateFilterActiveStatus);
    connect(&sensorTimer, &QTimer::timeout, this, &DataDisplay::timerUpdateInertialSensorInfo);
    connect(this, &DataDisplay::shallUpdateView6d, this, &DataDisplay::updateView6d, Qt::QueuedConnection);

    // The host may call in from here on.
    registration = std::make_unique<Registration>(*ioManager, *this);
    columnWidths->loadPreferences();
    output.choose(canUseInertialFormat(readFixedAngles(*ioManager, *versions)), *this);
    output.activate("3d");
    registration->setEndedWhenDestroyed(false);
}

DataDisplay::~DataDisplay() = default;

int DataDisplay::processOutput(const char *tag, const char *line) noexcept
try {
    if (!tag || !line) {
        ++data.lineCounts.ignored;
        return 0;
    }
    const QByteArray copy(line);
    const LineOutcome outcome = data.receive(tag, copy.constData());
    if (outcome == LineOutcome::StoredFirstBodies)
        notifyFirstBodies();
    return outcome == LineOutcome::Malformed ? -1 : 0;
} catch (...) {
    ++data.lineCounts.dropped;
    return 0; // the host's data thread has no handler for us; what is stored stays usable
}

void DataDisplay::notifyFirstBodies() noexcept
try {
    emit shallUpdateView6d();
} catch (...) {
    return; // out of memory: the bodies are stored, and the next tick of the timer shows them
}

void DataDisplay::configurationChanged() noexcept
{
    const CallSequence::Call call = configurations.begin();
    try {
        sensorPolling.abandonPass();
        rebuildConfiguration(call);
    } catch (...) {
        // Out of memory: the host has no handler for us. Rows of which some are missing, or of the configuration
        // before, are worse than none, and the next configuration starts from scratch.
        if (!call.isSuperseded())
            clearData();
    }
}

void DataDisplay::rebuildConfiguration(const CallSequence::Call &call)
{
    const auto showTable = qScopeGuard([table = QPointer<QWidget>(tableWidget6d)] {
        try {
            if (table)
                table->show();
        } catch (...) {
            return; // out of memory, and destructors don't throw: the next configuration shows it
        }
    });
    // Until all is known, the old rows stand, with the old lists: whatever comes in between finds one whole state.
    ConfigurationSteps steps;
    steps.isWanted = [&call] { return !call.isSuperseded(); };
    steps.layoutRead = [this](const BodyConfiguration &layout) {
        output.choose(canUseInertialFormat(layout.fixedAnglePresent), *this);
    };
    steps.listsRead = [this] { tableWidget6d->hide(); };
    std::optional<BodyConfiguration> next = readBodyConfiguration(*ioManager, *versions, steps);
    if (!next)
        return;
    bodyTable->build(*std::move(next));
    if (call.isSuperseded())
        return;
    updateView6d();
    data.configured = true;
    data.clearBodies();
    viewTimer.start();
    startSensors(call);
}

bool DataDisplay::canUseInertialFormat(bool fixedAnglePresent) const
{
    return versionAtLeast(*versions, 1, 12) && !fixedAnglePresent;
}

void DataDisplay::startSensors(const CallSequence::Call &call)
{
    const BodyConfiguration &bodies = bodyTable->configuration();
    if (!bodies.inertialAvailable) {
        sensorTimer.stop();
        return; // and the sensor columns stay as they are
    }
    const bool inUse = bodies.inertialInUse;
    if (inUse) {
        if (bodies.fixedAnglePresent)
            logToHost(*ioManager,
                      QStringLiteral("WARNING: Fixed angles are not compatible with inertial sensors! "
                                     "Mixed setups may cause wrong results!!"));
        sensorPolling.restart();
        updateInertialSensorInfo(true);
        if (call.isSuperseded())
            return;
        sensorTimer.start(SensorPolling::firstInterval);
    }
    bodyTable->setSensorColumnsHidden(!inUse);
}

void DataDisplay::onUpdateFilterActiveStatus(int iBodyIdx) noexcept
try {
    const CallSequence::Call call = configurations.current();
    const QString text = filterActiveText(*ioManager, *versions, bodyTable->configuration(), iBodyIdx);
    if (!call.isSuperseded())
        bodyTable->showFilterState(iBodyIdx, text);
} catch (...) {
    return; // out of memory: the cell stays as it is
}

void DataDisplay::updateView6d() noexcept
{
    bodyTable->redraw(data);
}

void DataDisplay::updateView3d() noexcept
{
    markerTable->redraw(data);
}

void DataDisplay::timerUpdateInertialSensorInfo() noexcept
{
    updateInertialSensorInfo(false);
}

void DataDisplay::updateInertialSensorInfo(bool first) noexcept
try {
    if (first || !sensorPolling.isWaiting())
        pollSensors(first);
} catch (...) {
    return; // out of memory: the next pass asks again
}

void DataDisplay::pollSensors(bool first)
{
    const CallSequence::Call pass = sensorPolling.beginPass();
    const auto endPass = qScopeGuard([this, &pass] {
        if (!pass.isSuperseded())
            sensorPolling.endPass();
    });
    data.lock()->absentSensorRows.clear();
    for (int row = 0; row < bodyTable->builtRowCount(); ++row) {
        const QByteArray sensor = bodyTable->sensorOfRow(row);
        if (sensor == "none")
            continue;
        const auto reading = readSensor(*ioManager, sensor, first, [&pass] { return !pass.isSuperseded(); });
        if (!reading)
            return;
        if (reading->presence == SensorReading::Presence::Absent)
            data.lock()->absentSensorRows.append(row);
        bodyTable->showSensor(row, *reading);
    }
    tableWidget6d->viewport()->update();
    if (data.sensorScheduleReset.exchange(false))
        sensorPolling.restart();
    if (const std::optional<int> interval = sensorPolling.nextInterval())
        sensorTimer.setInterval(*interval);
}

void DataDisplay::clearData() noexcept
try {
    configurations.begin();
    sensorPolling.abandonPass();
    output.abandon();
    viewTimer.stop();
    bodyTable->clear();
    markerTable->clear();
    data.clear();
    if (bodyTable->configuration().inertialAvailable && bodyTable->configuration().inertialInUse)
        sensorTimer.stop();
} catch (...) {
    return; // out of memory: the host has no handler for us
}

void DataDisplay::prepareShutdown()
{
    const QPointer<DataDisplay> panel(this);
    registration->end();
    if (panel) // the host waits for its data thread, and may have released us meanwhile
        columnWidths->savePreferences();
}

void DataDisplay::setUnregisteredWhenDestroyed(bool unregister) noexcept
{
    registration->setEndedWhenDestroyed(unregister);
}

void DataDisplay::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    output.start();
}

void DataDisplay::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    output.stop();
}
