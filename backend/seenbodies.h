// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"

#include <mutex>

namespace backend {

struct Scenario;

/// What a source that can't be asked has shown of itself by its lines: how many bodies it has, and whether they have an
/// inertial state. Bodies are known by the blocks of a line that can be read, never by the count that it begins with,
/// and never forgotten. Any thread.
class SeenBodies {
public:
    static constexpr int mostBodies = 1000;

    SeenBodies();
    ~SeenBodies();

    /// Takes note of the bodies in \a line. Returns false, and takes note of none, when the line has more bodies than
    /// the most, or one whose number is beyond them. One thread at a time.
    bool see(const OutputLine &line);
    quint64 changes() const; ///< how often there was more to see than before

    /// Every body is active and calibrated; there are no filters, sensors or wandors. Outputs are on, "6di" once it
    /// was seen: bodies have fixed angles until then.
    std::optional<QByteArray> answer(const QByteArray &query) const;
    ProtocolVersion version() const;

private:
    Q_DISABLE_COPY(SeenBodies)

    std::shared_ptr<const Scenario> currentModel() const;

    int bodies = 0; // seen; the seeing thread
    bool isInertial = false; // the seeing thread
    mutable std::mutex mutex; // guards what follows
    std::shared_ptr<const Scenario> model; // replaced, never changed
    quint64 changeCount = 0;
};

} // namespace backend
