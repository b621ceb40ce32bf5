// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/faultybackend.h"

#include "backend/randomstream.h"

#include <QThread>

namespace backend {

namespace {

/// \a pattern as a regular expression for whole texts. QRegularExpression's own wildcards stop at slashes, since they
/// are made for paths.
QRegularExpression expressionOf(const QString &pattern)
{
    QString text = QRegularExpression::escape(pattern);
    text.replace(QStringLiteral("\\*"), QStringLiteral(".*"));
    text.replace(QStringLiteral("\\?"), QStringLiteral("."));
    return QRegularExpression(QRegularExpression::anchoredPattern(text),
                              QRegularExpression::DotMatchesEverythingOption);
}

void sleepFor(std::chrono::milliseconds time)
{
    QThread::msleep(static_cast<unsigned long>(time.count()));
}

} // namespace

std::optional<FaultRule> parseFaultRule(const QString &text)
{
    FaultRule rule;
    const int equals = text.lastIndexOf(QLatin1Char('='));
    rule.pattern = text.left(equals).trimmed();
    if (equals >= 0) {
        bool ok = false;
        rule.rate = text.midRef(equals + 1).toDouble(&ok);
        if (!ok || !(rule.rate >= 0.0 && rule.rate <= 1.0))
            return std::nullopt;
    }
    return rule.pattern.isEmpty() ? std::nullopt : std::make_optional(rule);
}

FaultyBackend::FaultyBackend(std::unique_ptr<TrackingBackend> inner, const QVector<FaultRule> &faults,
                             std::chrono::milliseconds latency, quint32 seed, Sleep sleep)
    : inner(std::move(inner))
    , latency(latency)
    , seed(seed)
    , sleep(sleep ? std::move(sleep) : sleepFor)
{
    for (const FaultRule &rule : faults)
        rules.push_back({expressionOf(rule.pattern), rule.rate, 0});
}

QString FaultyBackend::name() const
{
    return inner->name();
}

ProtocolVersion FaultyBackend::version() const
{
    return inner->version();
}

std::optional<QByteArray> FaultyBackend::request(const QByteArray &query)
{
    if (latency.count() > 0)
        sleep(latency);
    return failsNow(query) ? std::nullopt : inner->request(query);
}

bool FaultyBackend::command(const QByteArray &command)
{
    if (latency.count() > 0)
        sleep(latency);
    return !failsNow(command) && inner->command(command);
}

std::unique_ptr<LineStream> FaultyBackend::open(LineStream::Clock::time_point epoch)
{
    return inner->open(epoch);
}

bool FaultyBackend::failsNow(const QByteArray &text)
{
    const QString plain = QString::fromUtf8(text);
    const std::lock_guard lock(rulesMutex);
    bool fails = false;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        Rule &rule = rules[i];
        if (!rule.expression.match(plain).hasMatch())
            continue;
        // Each rule keeps its own count, so that rules do not influence each other.
        fails |= uniform(seed, RandomStream::Fault, static_cast<int>(i), rule.matches++) < rule.rate;
    }
    return fails;
}

} // namespace backend
