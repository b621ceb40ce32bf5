// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/batterybar.h"
#include "display/temperaturebar.h"
#include "tests/support/panelfixture.h"

/// A panel for two bodies, the second of which has the sensor d01.
struct SensorFixture : PanelFixture {
    SensorFixture()
    {
        answerBodies(2);
        answerSensors({2});
    }

    BatteryBar &battery(int row = 1) const
    {
        return *qobject_cast<BatteryBar *>(table6d().cellWidget(row, BatteryColumn));
    }
    TemperatureBar &temperature(int row = 1) const
    {
        return *qobject_cast<TemperatureBar *>(table6d().cellWidget(row, TemperatureColumn));
    }
    QStringList tick()
    {
        takeCalls();
        panel->timerUpdateInertialSensorInfo();
        return takeCalls();
    }
};
