// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/lineintake.h"
#include "backend/receivequeue.h"
#include "backend/seenbodies.h"
#include "backend/trackingbackend.h"

#include <memory>

namespace backend {

class InputReader;

/// Any program that prints lines of output into a pipe. It can't be asked: questions are answered from what was seen of
/// it, or by another backend in its place. All operations may be called from any thread.
///
/// Not supported: telling a program that has stopped from one that has nothing to say.
class PipedBackend : public TrackingBackend {
public:
    /// Reads the file descriptor \a input from the first open() on, whether a stream is open or not, so that no line
    /// that waited in the pipe passes for a new one. \a input is not closed and need not stay open; one that is closed
    /// already ends at once. Questions and commands go to \a answering unless it is null.
    explicit PipedBackend(int input, std::unique_ptr<TrackingBackend> answering = {});
    ~PipedBackend() override;

    QString name() const override;
    ProtocolVersion version() const override;
    std::optional<QByteArray> request(const QByteArray &query) override;
    /// Without a backend that answers, switches on what is on already, and refuses all else.
    bool command(const QByteArray &command) override;
    std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) override;

private:
    class Stream;

    void receive(const char *bytes, int size);
    StreamLosses losses() const; ///< since the first open()

    const int input; // a duplicate of its own; below 0: none
    const std::unique_ptr<TrackingBackend> answering; // may be null
    SeenBodies bodies;
    ReceiveQueue queue;
    LineIntake intake;
    LineSplitter splitter; // the reader's thread
    quint64 knownChanges = 0; // of the bodies, by the end of the last stream; the thread that opens and closes
    std::unique_ptr<InputReader> reader; // last: its thread uses the rest
};

} // namespace backend
