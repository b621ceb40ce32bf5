// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"

#include <memory>

namespace backend {

class ExchangeTimes;

/// Passes everything on to another backend and notes how long each query and each command takes.
/// All operations may be called from any thread.
class TimedBackend : public TrackingBackend {
public:
    TimedBackend(std::shared_ptr<TrackingBackend> inner, std::shared_ptr<ExchangeTimes> times);

    QString name() const override;
    ProtocolVersion version() const override;
    std::optional<QByteArray> request(const QByteArray &query) override;
    bool command(const QByteArray &command) override;
    std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) override;

private:
    const std::shared_ptr<TrackingBackend> inner;
    const std::shared_ptr<ExchangeTimes> times;
};

} // namespace backend
