// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// From a configuration to the first polling pass [ms].
constexpr int firstSensorInterval = 1000;

/// The intervals [ms] between polling passes over the inertial sensors: a sensor that is switched on now is seen soon,
/// and a backend that runs for weeks is asked ever less often.
QList<int> sensorSchedule();
