// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace backend {
class TrackingBackend;
} // namespace backend

namespace host {

class OutputSubscriptions;

/// The data thread: hands the backend's lines to the requesters, frame by frame at the backend's rate. Every frame has
/// a deadline counted from the start of the backend's clock, so a late frame does not delay the ones after it.
///
/// Frames that are late are all delivered, up to one second of them; older ones are left out and counted.
class OutputThread {
public:
    using Clock = std::chrono::steady_clock;

    /// Totals since the object was made; start() and stop() do not reset them.
    struct Counts {
        quint64 sent = 0; ///< lines handed to requesters
        quint64 refused = 0; ///< of these, the ones that a requester did not take
        quint64 skippedFrames = 0; ///< frames left out because the thread was more than a second late
    };

    explicit OutputThread(OutputSubscriptions &subscriptions);
    ~OutputThread();

    /// Delivers the frames of \a backend from now on; frame 0 was due at \a epoch. Stops what ran before.
    void start(std::shared_ptr<const backend::TrackingBackend> backend, Clock::time_point epoch);
    /// When it returns, no line is delivered any more. Not to be called from a requester's processOutput.
    void stop();

    Counts counts() const; ///< any thread

private:
    Q_DISABLE_COPY(OutputThread)

    void run(const backend::TrackingBackend &backend, Clock::time_point epoch);
    /// Returns false when the thread has to end.
    bool waitUntil(Clock::time_point deadline);
    void deliverFrame(const backend::TrackingBackend &backend, std::chrono::nanoseconds time);

    OutputSubscriptions &subscriptions;
    std::thread thread; // GUI thread starts and joins
    std::mutex mutex;
    std::condition_variable stopped;
    bool stopping = false; // both threads, under the mutex
    std::atomic<quint64> sent{0}; // the data thread writes these three, any thread reads
    std::atomic<quint64> refused{0};
    std::atomic<quint64> skippedFrames{0};
};

} // namespace host
