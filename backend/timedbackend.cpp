// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/timedbackend.h"

#include "backend/exchangetimes.h"

#include <utility>

namespace backend {

namespace {

/// Lasts as long as the exchange, whichever way it ends.
class Measurement {
public:
    Measurement(ExchangeTimes &times, const QByteArray &text)
        : times(times)
        , number(times.begin(text))
    {
    }
    ~Measurement() { times.end(number); }

private:
    Q_DISABLE_COPY(Measurement)

    ExchangeTimes &times;
    const quint64 number;
};

} // namespace

TimedBackend::TimedBackend(std::shared_ptr<TrackingBackend> inner, std::shared_ptr<ExchangeTimes> times)
    : inner(std::move(inner))
    , times(std::move(times))
{
}

QString TimedBackend::name() const
{
    return inner->name();
}

ProtocolVersion TimedBackend::version() const
{
    return inner->version();
}

std::optional<QByteArray> TimedBackend::request(const QByteArray &query)
{
    const Measurement measurement(*times, query);
    return inner->request(query);
}

bool TimedBackend::command(const QByteArray &command)
{
    const Measurement measurement(*times, command);
    return inner->command(command);
}

std::unique_ptr<LineStream> TimedBackend::open(LineStream::Clock::time_point epoch)
{
    return inner->open(epoch);
}

} // namespace backend
