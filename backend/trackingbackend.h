// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace backend {

/// Version of a backend. A patch of -1 is an unspecified patch level.
struct ProtocolVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
};

/// A tracking backend as the host sees it: text queries, text commands, and a stream of lines of output.
/// All operations may be called from any thread.
class TrackingBackend {
public:
    TrackingBackend() = default;
    virtual ~TrackingBackend() = default;

    virtual QString name() const = 0; ///< as the operator knows it, such as "simulation: default"
    virtual ProtocolVersion version() const = 0;

    /// The answer to a query such as "body desc standard b01", in full; nothing when the backend fails or does not
    /// know it.
    virtual std::optional<QByteArray> request(const QByteArray &query) = 0;
    /// Carries out a command such as "output active chmon 6d yes". Returns whether it was accepted.
    virtual bool command(const QByteArray &command) = 0;
    /// The lines of output from now on, those of each output that is active; their times count from \a epoch. One
    /// stream at a time.
    virtual std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) = 0;

private:
    Q_DISABLE_COPY(TrackingBackend)
};

} // namespace backend
