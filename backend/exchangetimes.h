// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace backend {

/// One question or command on its way to a backend and back.
struct Exchange {
    using Clock = std::chrono::steady_clock;

    quint64 number = 0; ///< counts the exchanges from 1
    QByteArray text;
    Clock::time_point start;
    bool onOwnThread = false; ///< made by the thread that made the ExchangeTimes, the one that draws the window
};

/// How long the exchanges with one text took.
struct TextTimes {
    QByteArray text;
    quint64 count = 0;
    std::chrono::nanoseconds median{0}; ///< of the last 101
    std::chrono::nanoseconds worst{0};
};

/// The exchanges with backends that run now, and how long the ones before took. Any thread.
///
/// Times are kept for a limited number of texts; beyond it, the faster half of them is forgotten.
class ExchangeTimes {
public:
    using Clock = Exchange::Clock;
    using Now = std::function<Clock::time_point()>;
    /// Told how long an exchange took, on its thread.
    using Listener = std::function<void(const Exchange &exchange, std::chrono::nanoseconds duration)>;

    static constexpr int keptTexts = 4096;

    /// \a listener is told of every exchange at its end; it must be fast.
    explicit ExchangeTimes(Listener listener = {}, Now now = &Clock::now);

    /// Notes that an exchange begins. Returns its number.
    quint64 begin(const QByteArray &text);
    /// Notes that the exchange with this number has ended. Without memory its time is not kept.
    void end(quint64 number) noexcept;

    /// The exchanges that have begun and not ended, oldest first.
    std::vector<Exchange> running() const;
    /// How long the exchange took that ended last; 0 before the first.
    std::chrono::nanoseconds lastDuration() const;
    quint64 count() const; ///< of exchanges that have ended
    /// The texts whose worst time is longer than \a limit, the slowest first.
    QVector<TextTimes> slowerThan(std::chrono::nanoseconds limit) const;

private:
    Q_DISABLE_COPY(ExchangeTimes)

    struct Samples {
        quint64 count = 0;
        std::chrono::nanoseconds worst{0};
        std::vector<std::chrono::nanoseconds> latest; // a ring, the next one goes to count % its size
    };

    void addSample(const QByteArray &text, std::chrono::nanoseconds duration);
    void forgetFastTexts();

    const Listener listener;
    const Now now;
    const std::thread::id ownThread;
    mutable std::mutex mutex; // guards all below
    std::vector<Exchange> current;
    QHash<QByteArray, Samples> samples;
    std::chrono::nanoseconds last{0};
    quint64 begun = 0;
    quint64 ended = 0;
};

} // namespace backend
