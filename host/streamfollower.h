// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <optional>

namespace host {

/// Decides what the host does about the states of a stream. One for each stream; knows no time but the one it is told.
class StreamFollower {
public:
    using Clock = backend::LineStream::Clock;

    /// How long a lost stream keeps its picture.
    static constexpr std::chrono::seconds keptWhileLost{10};

    /// What is to be done, in this order.
    struct Step {
        bool stateChanged = false; ///< phase or reason
        bool clearData = false; ///< lost for too long
        bool configure = false; ///< the modules have to read the configuration anew
    };

    StreamFollower() = default;
    /// For a stream that is in \a initial as it is opened, after the modules have read the configuration.
    explicit StreamFollower(const backend::StreamState &initial);

    Step follow(const backend::StreamState &state, quint64 configurationChanges, Clock::time_point now);
    const backend::StreamState &state() const { return current; }

private:
    backend::StreamState current;
    quint64 knownChanges = 0; // of the configuration
    bool hasPicture = false; // of data that a loss has to clear
    std::optional<Clock::time_point> lostSince; // while it is lost, or being tried again
};

} // namespace host
