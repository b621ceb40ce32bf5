// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <condition_variable>
#include <functional>
#include <mutex>

namespace backend {

/// The lines of a source that can be asked for any time, frame by frame as they become due. Every frame has a deadline
/// counted from the epoch, so a late frame does not delay the ones after it. Frames that are late are all delivered, up
/// to one second of them; older ones are left out and counted. A line's time is the one at which its frame was due.
class FrameStream : public LineStream {
public:
    using LinesAt = std::function<QVector<OutputLine>(std::chrono::nanoseconds)>;

    /// \a rate is in frames per second, above 0; frame 0 was due at \a epoch, and the first frame to be taken is the
    /// one of that moment. \a linesAt gives the lines of the last frame due at a time after the epoch.
    FrameStream(double rate, LinesAt linesAt, Clock::time_point epoch);

    QVector<ReceivedLine> take(Clock::time_point deadline) override;
    void wake() noexcept override;
    StreamState state() const override { return {StreamState::Phase::Live, {}}; }
    StreamLosses losses() const override;

private:
    /// Returns false when it was woken before.
    bool waitUntil(Clock::time_point time);
    void leaveOutOldFrames();
    QVector<ReceivedLine> linesOfNextFrame();

    const double rate;
    const LinesAt linesAt;
    const Clock::time_point epoch;
    qint64 nextFrame = -1; // the taking thread; -1 before the first take()
    quint64 nextSequence = 0; // the taking thread
    mutable std::mutex mutex; // guards what follows
    std::condition_variable woken;
    bool isWoken = false;
    quint64 skippedFrames = 0;
};

} // namespace backend
