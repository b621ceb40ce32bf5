// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/framestream.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace backend {

namespace {

using Nanoseconds = std::chrono::nanoseconds;

/// The time after the epoch at which \a frame is due, or with a part of a frame a time within it.
Nanoseconds timeOfFrame(double frame, double rate)
{
    return Nanoseconds(std::llround(frame / rate * 1e9));
}

qint64 frameDueAt(Nanoseconds time, double rate)
{
    return static_cast<qint64>(std::floor(static_cast<double>(time.count()) * 1e-9 * rate));
}

} // namespace

FrameStream::FrameStream(double rate, LinesAt linesAt, Clock::time_point epoch)
    : rate(rate)
    , linesAt(std::move(linesAt))
    , epoch(epoch)
{
}

QVector<ReceivedLine> FrameStream::take(Clock::time_point deadline)
{
    if (nextFrame < 0)
        nextFrame = std::max<qint64>(0, frameDueAt(Clock::now() - epoch, rate));
    QVector<ReceivedLine> lines;
    while (lines.isEmpty()) { // no output may be active
        const Clock::time_point due = epoch + timeOfFrame(static_cast<double>(nextFrame), rate);
        if (!waitUntil(std::min(due, deadline)) || due > deadline)
            return {};
        leaveOutOldFrames();
        lines = linesOfNextFrame();
    }
    return lines;
}

void FrameStream::wake() noexcept
{
    {
        const std::lock_guard lock(mutex);
        isWoken = true;
    }
    woken.notify_all();
}

StreamLosses FrameStream::losses() const
{
    const std::lock_guard lock(mutex);
    StreamLosses losses;
    losses.skippedFrames = skippedFrames;
    return losses;
}

bool FrameStream::waitUntil(Clock::time_point time)
{
    std::unique_lock lock(mutex);
    const bool wasWoken = woken.wait_until(lock, time, [this] { return isWoken; });
    isWoken = false;
    return !wasWoken;
}

void FrameStream::leaveOutOldFrames()
{
    const qint64 catchUp = std::max<qint64>(1, std::llround(rate));
    const qint64 tooMany = frameDueAt(Clock::now() - epoch, rate) - nextFrame - catchUp;
    if (tooMany <= 0)
        return;
    nextFrame += tooMany;
    const std::lock_guard lock(mutex);
    skippedFrames += static_cast<quint64>(tooMany);
}

QVector<ReceivedLine> FrameStream::linesOfNextFrame()
{
    const Nanoseconds due = timeOfFrame(static_cast<double>(nextFrame), rate);
    // The middle of the frame, so that no rounding of its start gives the frame before.
    const QVector<OutputLine> lines = linesAt(timeOfFrame(static_cast<double>(nextFrame) + 0.5, rate));
    ++nextFrame;
    QVector<ReceivedLine> received;
    received.reserve(lines.size());
    for (const OutputLine &line : lines)
        received.append({line, due, nextSequence++});
    return received;
}

} // namespace backend
