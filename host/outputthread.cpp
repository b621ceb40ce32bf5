// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/outputthread.h"

#include "backend/linestream.h"
#include "host/linesink.h"

namespace host {

namespace {

/// Nothing happens when it is over: stop() wakes the stream.
constexpr std::chrono::seconds longestWait(10);

} // namespace

OutputThread::OutputThread(LineSink &lastSink)
    : sinks{&lastSink}
{
}

OutputThread::~OutputThread()
{
    stop();
}

void OutputThread::addSink(LineSink &sink)
{
    Q_ASSERT(!thread.joinable());
    sinks.insert(sinks.end() - 1, &sink);
}

void OutputThread::start(backend::LineStream &stream)
{
    stop();
    taken = &stream;
    thread = std::thread([this, &stream] { run(stream); });
}

void OutputThread::stop()
{
    if (!thread.joinable())
        return;
    stopping = true;
    taken->wake();
    thread.join();
    taken = nullptr;
    stopping = false;
}

void OutputThread::run(backend::LineStream &stream)
{
    while (!stopping)
        handOut(stream.take(backend::LineStream::Clock::now() + longestWait));
    handOut(stream.take(backend::LineStream::Clock::now())); // what came meanwhile
}

void OutputThread::handOut(const QVector<backend::ReceivedLine> &lines)
{
    for (const backend::ReceivedLine &line : lines) {
        ++receivedLines;
        streamHealth.add(line);
        for (LineSink *sink : sinks)
            sink->receive(line);
    }
}

} // namespace host
