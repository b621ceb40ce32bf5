// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/records.h"
#include "data/trackingdata.h"

#include <string>
#include <vector>

/// A slow, plain reader of output lines with substrings, strtol and strtod: the rival of TrackingData::receive, for
/// one thread. What a line leaves behind here, it must leave behind there.
class ReferenceReader {
public:
    /// Reads \a line, which ends at its first zero byte. Throws std::length_error for a count above one million.
    LineOutcome receive(const std::string &tag, const std::string &line);

    std::vector<BodyRecord> bodies;
    std::vector<MarkerRecord> markers;
    std::vector<qint32> absentSensorRows;
    bool useInertialFormat = false;
    bool configured = false;
    bool sensorScheduleReset = false;

private:
    LineOutcome receive6d(const std::string &line);
    LineOutcome receive6di(const std::string &line);
    LineOutcome receive3d(const std::string &line);
    LineOutcome bodiesRead();
    void resizeBodies(qint32 count);
};

/// True if both hold the same bits in every member.
bool sameBits(const BodyRecord &one, const BodyRecord &other);
bool sameBits(const MarkerRecord &one, const MarkerRecord &other);
