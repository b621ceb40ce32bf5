// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <chrono>

namespace backend {

/// One line of measurement output and its type, "6d", "6di" or "3d".
struct OutputLine {
    QByteArray tag;
    QByteArray text;
};

/// A line as it was received. Its sequence counts the lines at the source from 0, so that a gap is a loss on the way.
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

/// Lines as they come. A stream is taken from on one thread; wake() and state() may be called from any.
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
    /// Lines that came and were given up before anybody took them, oldest first, so that an age is always true.
    virtual quint64 late() const { return 0; }

private:
    Q_DISABLE_COPY(LineStream)
};

} // namespace backend
