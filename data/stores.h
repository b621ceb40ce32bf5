// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/records.h"

#include <QVector>

#include <memory>
#include <vector>

/// What the lines of output leave behind, and what their reading depends on.
struct Stores {
    std::vector<BodyRecord> bodyRecords; ///< in the order of the last "6d" or "6di" line
    std::vector<std::unique_ptr<MarkerRecord>> markerRecords; ///< in the order of the last "3d" line; none is null
    QVector<qint32> absentSensorRows; ///< table rows whose inertial sensor is absent
};
