// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/streamhealth.h"

#include <QVector>
#include <QtGlobal>

#include <atomic>
#include <thread>
#include <vector>

namespace backend {
class LineStream;
struct ReceivedLine;
} // namespace backend

namespace host {

class LineSink;

/// The data thread: takes the lines of a stream, keeps account of their health, and hands each to the sinks in their
/// order. All but the counts is for the GUI thread.
class OutputThread {
public:
    /// \a lastSink gets each line after all others; it outlives this object.
    explicit OutputThread(LineSink &lastSink);
    ~OutputThread();

    /// Lets \a sink have each line before the last sink, and after those that were added before. To be called while
    /// nothing runs; the sink outlives this object.
    void addSink(LineSink &sink);

    /// Hands out the lines of \a stream from now on. Stops what ran before. The stream outlives the next stop().
    void start(backend::LineStream &stream);
    /// When it returns, no line is handed out any more, and each that has come by now has been. Not to be called from a
    /// requester's processOutput.
    void stop();

    StreamHealth &health() { return streamHealth; } ///< of all lines, before any sink has them; any thread
    quint64 received() const { return receivedLines; } ///< lines taken since the object was made; any thread

private:
    Q_DISABLE_COPY(OutputThread)

    void run(backend::LineStream &stream);
    void handOut(const QVector<backend::ReceivedLine> &lines);

    StreamHealth streamHealth;
    std::vector<LineSink *> sinks; // GUI thread while nothing runs, else the data thread
    std::thread thread; // GUI thread starts and joins
    backend::LineStream *taken = nullptr; // GUI thread; what the thread takes from
    std::atomic<bool> stopping{false}; // GUI thread writes, data thread reads
    std::atomic<quint64> receivedLines{0}; // data thread writes, any thread reads
};

} // namespace host
