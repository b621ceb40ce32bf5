// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"
#include "backend/trackingbackend.h"

#include <QVector>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace backend {

/// A tracking backend that answers from a scenario. Commands change its copy of the scenario. The output is a function
/// of scenario, seed and time alone. All operations may be called from any thread.
///
/// Not supported: noise on poses, and filters that change them (their settings are only kept); wandors in the output,
/// and sensors that they carry; more than one head target at a time (the first one in use is shown); commands that add
/// or calibrate bodies. Failures and delays are FaultyBackend's.
class SimulatedBackend : public TrackingBackend {
public:
    /// Time since the backend was started. Battery, temperature and presence of the sensors follow it.
    using Clock = std::function<std::chrono::nanoseconds()>;

    /// Takes the scenario's seed unless there is a \a seed, and a steady clock from now on unless there is a \a clock.
    /// The clock is called from every thread that asks for sensors.
    explicit SimulatedBackend(Scenario scenario, std::optional<quint32> seed = {}, Clock clock = {});

    QString name() const override;
    ProtocolVersion version() const override;
    double frameRate() const; ///< frames of output per second, above 0

    /// Answers are UTF-8 texts of one line and any length; yes/no queries answer "yes" or "no". A query that the
    /// backend's version does not know yet fails like an unknown one.
    std::optional<QByteArray> request(const QByteArray &query) override;
    /// Refuses everything while the configuration is locked, unknown bodies, presets, modes and outputs, those that
    /// the body is not offered, numbers beyond the limits, and values of a preset that is not a custom one.
    bool command(const QByteArray &command) override;
    std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) override;
    /// The output lines of the last frame due at \a time after the start, one for each output that is active. The
    /// same time gives the same bytes as long as no command changes the model. Times before 0 give the first frame.
    QVector<OutputLine> linesAt(std::chrono::nanoseconds time) const;

    /// The model as the commands have left it.
    Scenario scenario() const;

private:
    std::shared_ptr<const Scenario> currentModel() const;

    const Clock clock;
    mutable std::mutex modelMutex; // guards the pointer
    std::shared_ptr<const Scenario> model; // any thread; what it points to is replaced, never changed
};

} // namespace backend
