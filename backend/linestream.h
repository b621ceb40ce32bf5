// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <chrono>
#include <optional>

namespace backend {

/// One line of measurement output and its type, "6d", "6di" or "3d".
struct OutputLine {
    QByteArray tag;
    QByteArray text;
};

/// A line as it was received. Its sequence counts the lines at the source from 0, so that a gap is a loss on the way,
/// or lines that were late.
struct ReceivedLine {
    OutputLine line;
    std::chrono::nanoseconds time{0}; ///< steady, since the epoch that the stream was opened with
    quint64 sequence = 0;
};

/// How a source of lines is doing.
struct StreamState {
    enum class Phase { Connecting, Live, Lost, Ended };
    Phase phase = Phase::Connecting;
    QString reason; ///< why it was lost, in words; else empty
};

/// What became of lines that nobody could take. Totals since the stream was opened.
struct StreamLosses {
    quint64 late = 0; ///< lines that waited too long to be taken, so that an age is always true
    quint64 refused = 0; ///< lines of output that are too long, or have more bodies than can be shown
    std::optional<quint64> unknown; ///< lines that are none of output; nothing where there can't be any
    quint64 skippedFrames = 0; ///< frames whose lines were never made, since they would have been too late
};

/// Lines as they come. A stream must not outlive the backend that opened it. It is taken from on one thread; all else
/// may be called from any.
class LineStream {
public:
    using Clock = std::chrono::steady_clock;

    LineStream() = default;
    virtual ~LineStream() = default;

    /// The lines that have come, in their order; waits for the first until \a deadline or wake(). Empty: none came.
    virtual QVector<ReceivedLine> take(Clock::time_point deadline) = 0;
    /// Makes the take() that waits, or else the next one, return at once.
    virtual void wake() noexcept = 0;
    virtual StreamState state() const = 0;
    virtual StreamLosses losses() const { return {}; }
    /// How often what the backend answers has changed since the stream was opened, other than by a command.
    virtual quint64 configurationChanges() const { return 0; }
    /// What the operator should know, in whole sentences, since the last call.
    virtual QStringList takeWarnings() { return {}; }

private:
    Q_DISABLE_COPY(LineStream)
};

} // namespace backend
