// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/bodyreader.h"
#include "host/liveness/healthsnapshot.h"

#include <QHash>

#include <array>
#include <chrono>
#include <optional>
#include <vector>

namespace host {

/// How well the bodies of one stream are tracked. A line that does not have a body that others had has lost it. Times
/// count as in ArrivalTimes.
class BodyTracking {
public:
    using Time = std::chrono::nanoseconds;

    /// Takes the bodies of one line. At most mostBodies are ever known; others are left out.
    void add(const BodyList &list, Time time);
    /// Appends the bodies in the order in which they came first. Losses are those of the lines in the last minute, to
    /// the second.
    void figures(const QByteArray &tag, Time now, QVector<BodyFigures> &figures);

private:
    static constexpr int seconds = 60;
    struct Body {
        qint32 id = 0;
        quint64 lastLine = 0; ///< that had it; the first is 1
        bool tracked = false; ///< in that line
        quint64 linesBefore = 0; ///< that came before its first
        quint64 trackedLines = 0; ///< in the minute
        std::array<quint32, seconds> trackedBySecond{}; ///< around
        std::optional<Time> lastTracked;
        Time firstSeen{0};
        Time longestGap{0};
    };

    /// Forgets what lies more than a minute before \a time.
    void advance(Time time);
    /// The body at \a index, where it was in the line before, or wherever it is; null when there is no room for it.
    Body *find(qint32 id, std::size_t index, Time time);

    std::vector<Body> bodies;
    QHash<qint32, std::size_t> places;
    std::array<quint32, seconds> linesBySecond{}; // around
    long long second = 0; // the newest one of them
    quint64 linesOfMinute = 0;
    quint64 lines = 0;
};

} // namespace host
