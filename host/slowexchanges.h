// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/exchangetimes.h"

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace host {

/// An exchange that takes longer keeps the window from answering so long that an operator notices.
constexpr std::chrono::milliseconds slowExchange{100};
/// An exchange that takes longer is told while it lasts.
constexpr std::chrono::milliseconds hangingExchange{1000};

/// What to say about exchanges that take long: which are worth an entry of the log, and in which words.
class SlowExchanges {
    Q_DECLARE_TR_FUNCTIONS(SlowExchanges)

public:
    using Clock = backend::Exchange::Clock;

    /// The entry of the log for an exchange that has taken \a duration at its end; nothing when it was fast, and for
    /// ten seconds after an entry for the same text. Any thread.
    std::optional<QString> entryFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration);

    /// What holds while an exchange lasts, after \a duration.
    static QString warningFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration);
    /// The same after its end.
    static QString resultFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration);

private:
    struct Entry {
        QByteArray text;
        Clock::time_point time;
    };

    std::mutex mutex; // guards the next
    std::vector<Entry> entries; // of the last ten seconds, oldest first
};

} // namespace host
