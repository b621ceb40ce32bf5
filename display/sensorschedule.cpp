// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/sensorschedule.h"

QList<int> sensorSchedule()
{
    struct Step {
        int count;
        int interval;
    };
    constexpr Step steps[] = {{30, 2000}, {15, 4000}, {8, 8000}, {4, 16000}, {1, 30000}};
    QList<int> intervals;
    for (const Step &step : steps) {
        for (int i = 0; i < step.count; ++i)
            intervals.append(step.interval);
    }
    return intervals;
}
