// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "channel/query.h"
#include "display/batterybar.h"
#include "display/columns.h"
#include "display/datadisplay.h"
#include "display/temperaturebar.h"
#include "interface/iomanager.h"
#include "numbers/saturatedint.h"

#include <QBrush>

#include <array>
#include <cmath>

void DataDisplay::timerUpdateInertialSensorInfo() noexcept
{
    updateInertialSensorInfo(false);
}

void DataDisplay::updateInertialSensorInfo(bool first) noexcept
try {
    data.lock()->absentSensorRows.clear();
    for (int row = headRows(); row < rowsBuilt(); ++row) {
        if (rowHasSensor.value(row - headRows()))
            pollSensor(row, first);
    }
    tableWidget6d->viewport()->update();
    stepSensorSchedule();
} catch (...) {
    return; // out of memory: the next pass asks again
}

void DataDisplay::pollSensor(int row, bool first)
{
    const QByteArray sensor = tableWidget6d->item(row, SensorColumn)->data(Qt::UserRole).toString().toUtf8();
    if (sensor == "none")
        return;
    Query query(*ioManager);
    const auto present =
        query.text(ioManager->requestString(query.textBuffer(), "inertial sensor_present %s", sensor.constData()));
    if (!present) {
        tableWidget6d->item(row, SensorColumn)->setBackground(QBrush(Qt::red));
        return; // and the bars keep what they show
    }
    if (first || *present != "yes") {
        data.lock()->absentSensorRows.append(row);
        showSensor(row, Qt::red, -1.0, -1.0, -1.0);
        return;
    }
    const double battery =
        query.number(ioManager->requestDouble(query.doubleBuffer(), "inertial sensor_battery %s", sensor.constData()));
    std::array<double, 2> warmth{-1.0, -1.0}; // temperature and level
    const bool answered = query.accepted(
        ioManager->requestDoubles(warmth.data(), 2, "inertial sensor_temperature %s", sensor.constData()));
    if (!answered)
        warmth = {-1.0, -1.0};
    showSensor(row, Qt::transparent, battery, warmth[0], warmth[1]);
}

void DataDisplay::showSensor(int row, Qt::GlobalColor background, double battery, double temperature, double level)
{
    tableWidget6d->item(row, SensorColumn)->setBackground(QBrush(background));
    if (auto *bar = qobject_cast<BatteryBar *>(tableWidget6d->cellWidget(row, BatteryColumn))) {
        tableWidget6d->setCellWidgetShown(row, BatteryColumn, battery > 0.0);
        if (battery > 0.0)
            bar->setValue(saturatedInt(battery * 100.0));
    }
    if (auto *bar = qobject_cast<TemperatureBar *>(tableWidget6d->cellWidget(row, TemperatureColumn))) {
        tableWidget6d->setCellWidgetShown(row, TemperatureColumn, temperature > 0.0);
        if (temperature > 0.0) {
            bar->setTemperature(temperature);
            bar->setValue(std::floor(level * 100.0));
        }
    }
}

void DataDisplay::stepSensorSchedule()
{
    if (data.sensorScheduleReset.exchange(false))
        sensorScheduleIndex = 0;
    if (sensorScheduleIndex >= sensorIntervals.size())
        return;
    sensorTimer.setInterval(sensorIntervals[sensorScheduleIndex]);
    ++sensorScheduleIndex;
}
