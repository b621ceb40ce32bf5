// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/arrivaltimes.h"
#include "host/liveness/bodytracking.h"
#include "host/liveness/healthsnapshot.h"

#include <memory>
#include <vector>

namespace backend {
struct ReceivedLine;
} // namespace backend

namespace host {

/// The figures of all streams of one source, for one thread at a time. Tags beyond the eighth are left out.
class LineStatistics {
public:
    using Time = std::chrono::nanoseconds;

    void add(const backend::ReceivedLine &line);
    /// \a now counts from the same start as the times of the lines.
    HealthSnapshot snapshot(Time now);

private:
    struct Stream {
        QByteArray tag;
        ArrivalTimes arrivals;
        BodyTracking bodies;
    };

    Stream *streamOf(const QByteArray &tag);

    std::vector<std::unique_ptr<Stream>> streams;
    BodyList bodies; // of the line that is read
    std::optional<quint64> lastSequence;
    ArrivalTimes all; // lines of every tag
    quint64 missing = 0;
    Time lastSilence{0};
};

} // namespace host
