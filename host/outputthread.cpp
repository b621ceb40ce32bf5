// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/outputthread.h"

#include "backend/trackingbackend.h"
#include "host/outputsubscriptions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

namespace {

using Nanoseconds = std::chrono::nanoseconds;

/// The time after the start at which \a frame is due, or with a part of a frame a time within it.
Nanoseconds timeOfFrame(double frame, double rate)
{
    return Nanoseconds(std::llround(frame / rate * 1e9));
}

qint64 frameDueAt(Nanoseconds time, double rate)
{
    return static_cast<qint64>(std::floor(static_cast<double>(time.count()) * 1e-9 * rate));
}

} // namespace

OutputThread::OutputThread(OutputSubscriptions &subscriptions)
    : subscriptions(subscriptions)
{
}

OutputThread::~OutputThread()
{
    stop();
}

void OutputThread::start(std::shared_ptr<const backend::TrackingBackend> backend, Clock::time_point epoch)
{
    stop();
    thread = std::thread([this, epoch, source = std::move(backend)] { run(*source, epoch); });
}

void OutputThread::stop()
{
    if (!thread.joinable())
        return;
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    stopped.notify_all();
    thread.join();
    stopping = false;
}

OutputThread::Counts OutputThread::counts() const
{
    return {sent.load(), refused.load(), skippedFrames.load()};
}

void OutputThread::run(const backend::TrackingBackend &backend, Clock::time_point epoch)
{
    const double rate = backend.frameRate();
    const qint64 catchUp = std::max<qint64>(1, std::llround(rate));
    qint64 frame = std::max<qint64>(0, frameDueAt(Clock::now() - epoch, rate));
    while (waitUntil(epoch + timeOfFrame(static_cast<double>(frame), rate))) {
        const qint64 behind = frameDueAt(Clock::now() - epoch, rate) - frame;
        if (behind > catchUp) {
            skippedFrames += static_cast<quint64>(behind - catchUp);
            frame += behind - catchUp;
        }
        // The middle of the frame, so that no rounding of its start gives the frame before.
        deliverFrame(backend, timeOfFrame(static_cast<double>(frame) + 0.5, rate));
        ++frame;
    }
}

bool OutputThread::waitUntil(Clock::time_point deadline)
{
    std::unique_lock lock(mutex);
    return !stopped.wait_until(lock, deadline, [this] { return stopping; });
}

void OutputThread::deliverFrame(const backend::TrackingBackend &backend, Nanoseconds time)
{
    const QVector<backend::OutputLine> lines = backend.linesAt(time);
    for (const backend::OutputLine &line : lines) {
        const OutputSubscriptions::Delivered delivered = subscriptions.deliver(line);
        sent += delivered.sent;
        refused += delivered.refused;
    }
}

} // namespace host
