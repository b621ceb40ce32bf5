// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"

#include <memory>

namespace backend {

/// Answers for another backend until that one can be had: its stream stays connecting, and brings no line. All
/// operations may be called from any thread.
class PlaceholderBackend : public TrackingBackend {
public:
    explicit PlaceholderBackend(std::unique_ptr<TrackingBackend> inner);

    QString name() const override;
    ProtocolVersion version() const override;
    std::optional<QByteArray> request(const QByteArray &query) override;
    bool command(const QByteArray &command) override;
    std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) override;

private:
    const std::unique_ptr<TrackingBackend> inner;
};

} // namespace backend
