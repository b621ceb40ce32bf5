// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "channel/query.h"
#include "channel/version.h"
#include "display/batterybar.h"
#include "display/cellitems.h"
#include "display/columns.h"
#include "display/datadisplay.h"
#include "display/sensorschedule.h"
#include "display/temperaturebar.h"
#include "interface/iomanager.h"

#include <QHeaderView>
#include <QScopeGuard>
#include <QStringList>

namespace {

QTableWidgetItem *newItem(const QString &text, int alignment)
{
    auto *item = new QTableWidgetItem(text);
    item->setTextAlignment(alignment);
    return item;
}

QList<bool> noneOf(qint32 numBodies)
{
    QList<bool> flags;
    for (qint32 i = 0; i <= numBodies; ++i)
        flags.append(false);
    return flags;
}

} // namespace

void DataDisplay::configurationChanged() noexcept
try {
    rebuildConfiguration();
} catch (...) {
    // Out of memory: the host has no handler for us. Rows of which some are missing, or of the configuration before,
    // are worse than none, and the next configuration starts from scratch.
    clearData();
}

void DataDisplay::rebuildConfiguration()
{
    Query query(*ioManager);
    numBodies =
        query.count(ioManager->requestInt(query.intBuffer(), "standard number_of_bodies"), "get number of bodies");
    hasHeadRow = detectHeadRow();
    fixedAnglePresent = detectFixedAngles();
    chooseOutputFormat();
    readCalibratedBodies();
    tableWidget6d->setRowEnabled(calibratedBodies.toVector());
    readActiveBodies();

    tableWidget6d->hide();
    const auto showTable = qScopeGuard([this] {
        try {
            tableWidget6d->show();
        } catch (...) {
            return; // out of memory, and destructors don't throw: the next configuration shows it
        }
    });
    buildRows();
    tableWidget6d->setHeadRowPresent(hasHeadRow);
    buildInertialCells();
    readTrackingReference();
    areRowsBuilt = true;
    forgetShownRows();
    updateView6d();
    data.configured = true;
    data.clearBodies();
    viewTimer.start();
    configureSensors();
}

bool DataDisplay::detectHeadRow()
{
    Query query(*ioManager);
    if (!query.isNotNo(ioManager->requestString(query.textBuffer(), "wandor multiuser_available"),
                       "get info multiuser wandor available"))
        return false;
    if (!query.isNotNo(ioManager->requestString(query.textBuffer(), "wandor multiuser"),
                       "get info multiuser wandor activated"))
        return false;
    if (versionAtLeast(*versions, 0, 13)
        && !query.isNotNo(ioManager->requestString(query.textBuffer(), "wandor multiuser_with_head_available"),
                          "get info multiuser wandor with head available"))
        return false;
    if (!query.isNotNo(ioManager->requestString(query.textBuffer(), "wandor multiuser_with_head"),
                       "get info multiuser wandor with head activated"))
        return false;
    return query.count(ioManager->requestInt(query.intBuffer(), "body number_of_bodies multiuserwandor_head"),
                       "get number of multiuser head targets")
        > 0;
}

bool DataDisplay::detectFixedAngles()
{
    if (!versionAtLeast(*versions, 1, 12))
        return false;
    Query query(*ioManager);
    return query.flag(ioManager->requestBool(query.boolBuffer(), "standard fixed_angle_present"),
                      "get fixed angle present");
}

void DataDisplay::chooseOutputFormat()
{
    ioManager->stopOutput(tag6d(), this);
    data.useInertialFormat = versionAtLeast(*versions, 1, 12) && !fixedAnglePresent;
    activateOutput(tag6d());
    if (isVisible())
        ioManager->startOutput(tag6d(), this);
}

void DataDisplay::activateOutput(const char *tag)
{
    const QString name = QLatin1String(tag);
    Query query(*ioManager);
    const auto available = query.text(ioManager->requestString(query.textBuffer(), "output available %s", tag),
                                      "get info output %1 available", name);
    if (!available)
        return;
    if (*available == "no") {
        logToHost(*ioManager,
                  QStringLiteral("Error: Output format %1 is not available and cannot be activated").arg(name));
        return;
    }
    const auto active = query.text(ioManager->requestString(query.textBuffer(), "output active chmon %s", tag),
                                   "get info output %1 active", name);
    if (!active || *active != "no")
        return;
    query.accepted(ioManager->sendCommand("output active chmon %s yes", tag), "activate output %1", name);
}

void DataDisplay::readCalibratedBodies()
{
    calibratedBodies = noneOf(numBodies);
    if (hasHeadRow && !calibratedBodies.isEmpty())
        calibratedBodies[0] = isHeadTargetReady();
    Query query(*ioManager);
    for (qint32 body = 1; body <= numBodies; ++body) {
        if (query.isYes(ioManager->requestString(query.textBuffer(), "body calibrated standard b%2.2d", body)))
            calibratedBodies[body - 1 + headRows()] = true;
    }
}

bool DataDisplay::isHeadTargetReady()
{
    Query query(*ioManager);
    const qint32 count =
        query.count(ioManager->requestInt(query.intBuffer(), "body number_of_bodies multiuserwandor_head"),
                    "get number of multiuser head targets");
    bool ready = false;
    for (qint32 target = 1; target <= count; ++target) {
        const auto calibrated = query.text(
            ioManager->requestString(query.textBuffer(), "body calibrated multiuserwandor_head b%2.2d", target),
            "get info multiuser head target is calibrated");
        if (!calibrated)
            return false;
        if (*calibrated != "yes")
            continue;
        const auto active =
            query.text(ioManager->requestString(query.textBuffer(), "body active multiuserwandor_head b%2.2d", target),
                       "get info multiuser head target is activated");
        if (!active)
            return false;
        ready = ready || *active == "yes";
    }
    return ready;
}

void DataDisplay::readActiveBodies()
{
    activeBodies = noneOf(numBodies);
    if (hasHeadRow && !activeBodies.isEmpty())
        activeBodies[0] = true;
    Query query(*ioManager);
    for (qint32 body = 1; body <= numBodies; ++body) {
        if (query.isYes(ioManager->requestString(query.textBuffer(), "body active standard b%2.2d", body)))
            activeBodies[body - 1 + headRows()] = true;
    }
}

void DataDisplay::buildRows()
{
    areRowsBuilt = false; // a tick of the timer while the host waits for an answer finds half of them
    untold6d = {};
    tableWidget6d->setRowCount(qMax(numBodies + headRows(), 0));
    tableWidget6d->clearContents();
    for (int row = 0; row < tableWidget6d->rowCount(); ++row) {
        // With a head row the number is one more than the backend's: operators count the rows.
        const QString id = hasHeadRow && row == 0 ? QStringLiteral("MUH") : QString::number(row + 1);
        auto *idItem = new ColouredItem(id);
        if (!calibratedBodies.value(row)) {
            idItem->setBackground(QBrush(Qt::transparent));
            idItem->setWhatsThis(tr(" This body is not yet calibrated."));
        }
        tableWidget6d->setItem(row, BodyIdColumn, idItem);
        tableWidget6d->setItem(row, NameColumn, new ColouredItem(bodyDescription(row)));
        tableWidget6d->setItem(row, FilterColumn, newItem(filterActiveText(row), Qt::AlignCenter));
        for (int column = XColumn; column <= RzColumn; ++column) {
            auto *coordinateItem = new CoordinateItem;
            coordinateItem->setText(QStringLiteral("-"));
            tableWidget6d->setItem(row, column, coordinateItem);
        }
    }
}

QString DataDisplay::bodyDescription(int row)
{
    if ((hasHeadRow && row < 1) || !calibratedBodies.value(row) || !versionAtLeast(*versions, 0, 16))
        return {};
    Query query(*ioManager);
    return unquoted(
        query.text(ioManager->requestString(query.textBuffer(), "body desc standard b%.2d", bodyNumberOfRow(row)))
            .value_or(QByteArray()));
}

QString DataDisplay::filterActiveText(int row)
{
    if ((hasHeadRow && row < 1) || !calibratedBodies.value(row) || !versionAtLeast(*versions, 1, 12))
        return {};
    Query query(*ioManager);
    const bool active = query.isYes(
        ioManager->requestString(query.textBuffer(), "body filter6d_enabled standard b%.2d", bodyNumberOfRow(row)));
    return active ? QStringLiteral("active") : QString();
}

void DataDisplay::onUpdateFilterActiveStatus(int iBodyIdx) noexcept
try {
    const QString text = filterActiveText(iBodyIdx);
    // Looked up after the query: while a dialog was open the table may have become another.
    if (QTableWidgetItem *item = tableWidget6d->item(iBodyIdx, FilterColumn))
        item->setText(text);
} catch (...) {
    return; // out of memory: the cell stays as it is
}

void DataDisplay::buildInertialCells()
{
    rowHasSensor.clear();
    Query query(*ioManager);
    for (int row = headRows(); row < tableWidget6d->rowCount(); ++row) {
        QByteArray answer = "none";
        if (versionAtLeast(*versions, 1, 12)) {
            answer = query
                         .text(ioManager->requestString(query.textBuffer(), "body inertial_sensor standard b%.2d",
                                                        bodyNumberOfRow(row)))
                         .value_or(answer);
        }
        const bool hasSensor = answer != "none";
        const QString sensor = QString::fromUtf8(answer);
        rowHasSensor.append(hasSensor);

        QTableWidgetItem *sensorItem = newItem(QString(), Qt::AlignCenter);
        sensorItem->setData(Qt::UserRole, sensor);
        tableWidget6d->setItem(row, SensorColumn, sensorItem);
        for (const int column : {BatteryColumn, TemperatureColumn}) {
            QTableWidgetItem *barItem = newItem(QString(), Qt::AlignCenter);
            barItem->setFlags(Qt::NoItemFlags);
            tableWidget6d->setItem(row, column, barItem);
        }
        if (!hasSensor)
            continue;
        auto *batteryBar = new BatteryBar;
        batteryBar->setValue(-1);
        tableWidget6d->setCellWidget(row, BatteryColumn, batteryBar);
        tableWidget6d->setCellWidgetShown(row, BatteryColumn, false);
        auto *temperatureBar = new TemperatureBar;
        temperatureBar->setValue(-1);
        temperatureBar->setTemperature(0.0);
        tableWidget6d->setCellWidget(row, TemperatureColumn, temperatureBar);
        tableWidget6d->setCellWidgetShown(row, TemperatureColumn, false);
        sensorItem->setText(sensor.split(QLatin1Char(' ')).value(2).remove(QLatin1Char('\'')));
    }
    for (const int column : {BatteryColumn, TemperatureColumn})
        tableWidget6d->horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

void DataDisplay::readTrackingReference()
{
    referenceRow = noReference;
    if (!versionAtLeast(*versions, 1, 24))
        return;
    Query query(*ioManager);
    const auto answer = query.text(ioManager->requestString(query.textBuffer(), "tracking reference"));
    if (!answer || *answer == "none")
        return;
    const QStringList parts = QString::fromUtf8(*answer).split(QLatin1Char(' '));
    if (parts.size() < 2 || parts[0] != QLatin1String("standard"))
        return;
    bool isNumber = false;
    const int number = parts[1].midRef(1).toInt(&isNumber);
    if (!isNumber)
        return;
    referenceRow = hasHeadRow ? number : qMax(number, 0) - 1; // no body below 1, and no overflow
    referenceName = bodyDescription(referenceRow).trimmed();
    if (referenceName.isEmpty())
        referenceName = QStringLiteral("reference");
}

void DataDisplay::configureSensors()
{
    Query query(*ioManager);
    inertialAvailable = versionAtLeast(*versions, 1, 12)
        && query.isYes(ioManager->requestString(query.textBuffer(), "inertial available"));
    if (!inertialAvailable)
        return; // and the sensor columns stay as they are
    inertialInUse = anySensorInUse();
    if (inertialInUse) {
        if (fixedAnglePresent)
            logToHost(*ioManager,
                      QStringLiteral("WARNING: Fixed angles are not compatible with inertial sensors! "
                                     "Mixed setups may cause wrong results!!"));
        sensorScheduleIndex = 0;
        updateInertialSensorInfo(true);
        sensorTimer.start(firstSensorInterval);
    }
    setSensorColumnsHidden(!inertialInUse);
}

bool DataDisplay::anySensorInUse()
{
    Query query(*ioManager);
    const qint32 count = query.count(ioManager->requestInt(query.intBuffer(), "inertial number_of_sensors"));
    for (qint32 sensor = 1; sensor <= count; ++sensor) {
        const auto id = query.text(ioManager->requestString(query.textBuffer(), "inertial sensor d%.2d", sensor));
        if (!id)
            return false;
        const auto body =
            query.text(ioManager->requestString(query.textBuffer(), "inertial body_of_sensor %s", id->constData()));
        if (body.value_or("none") != "none")
            return true;
    }
    return false;
}

void DataDisplay::setSensorColumnsHidden(bool hidden)
{
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        tableWidget6d->setColumnHidden(column, hidden);
}
