// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"

#include <QRegularExpression>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace backend {

/// Which queries and commands fail, and how often.
struct FaultRule {
    QString pattern; ///< the whole text; '*' stands for any text, '?' for any character
    double rate = 1.0; ///< 0: never, 1: always, between them at random
};

/// Reads "PATTERN" or "PATTERN=RATE". Nothing when the pattern is empty or the rate no number from 0 to 1.
std::optional<FaultRule> parseFaultRule(const QString &text);

/// Passes everything on to another backend, but lets some queries and commands fail and delays all of them.
/// All operations may be called from any thread.
class FaultyBackend : public TrackingBackend {
public:
    using Sleep = std::function<void(std::chrono::milliseconds)>;

    /// A failing command does not reach \a inner. The same \a seed and the same sequence of texts fail alike.
    /// \a latency is waited for in each query and command, with \a sleep or else by putting the thread to sleep.
    FaultyBackend(std::unique_ptr<TrackingBackend> inner, const QVector<FaultRule> &faults,
                  std::chrono::milliseconds latency, quint32 seed = 1, Sleep sleep = {});

    QString name() const override;
    ProtocolVersion version() const override;
    std::optional<QByteArray> request(const QByteArray &query) override;
    bool command(const QByteArray &command) override;
    std::unique_ptr<LineStream> open(LineStream::Clock::time_point epoch) override;

private:
    struct Rule {
        QRegularExpression expression;
        double rate = 1.0;
        quint64 matches = 0; // any thread, under rulesMutex
    };

    bool failsNow(const QByteArray &text);

    const std::unique_ptr<TrackingBackend> inner;
    const std::chrono::milliseconds latency;
    const quint32 seed;
    const Sleep sleep;
    std::mutex rulesMutex; // guards the rules
    std::vector<Rule> rules;
};

} // namespace backend
