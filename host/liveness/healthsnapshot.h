// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

#include <chrono>
#include <optional>

namespace host {

/// What is known of the lines of one tag, or of all.
struct StreamFigures {
    QByteArray tag; ///< empty for all
    quint64 lines = 0;
    std::optional<double> rate1; ///< lines per second over 1 s; none before the second line
    std::optional<double> rate10; ///< over 10 s
    std::chrono::nanoseconds age{0}; ///< of the last line
    std::chrono::nanoseconds longestGap{0}; ///< between two lines, or since the last
    std::optional<std::chrono::nanoseconds> frameTime; ///< the median gap of the last ten lines
};

/// What is known of a body in the lines of one tag.
struct BodyFigures {
    QByteArray tag;
    qint32 id = 0; ///< as in the line
    bool tracked = false; ///< in the last line
    std::optional<double> lossPercent; ///< of the lines of the last minute; none without such lines
    std::chrono::nanoseconds longestGap{0}; ///< without being tracked, or since it was last
    std::optional<std::chrono::nanoseconds> sinceTracked; ///< none when it never was
};

/// How a source is doing at one moment.
struct HealthSnapshot {
    StreamFigures all; ///< of the lines of all streams
    QVector<StreamFigures> streams; ///< in the order in which they came first
    QVector<BodyFigures> bodies;
    quint64 missing = 0; ///< lines that the sequence numbers tell of and that never came, of all tags
    quint64 unwatched = 0; ///< lines that came while there was no room to keep them for the figures
    std::optional<std::chrono::nanoseconds> age; ///< of the youngest line; none before the first
    std::optional<std::chrono::nanoseconds> frameTime; ///< the longest one of the streams
    std::chrono::nanoseconds lastSilence{0}; ///< the last time of a second and more without any line that is over
};

} // namespace host
