// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/slowexchanges.h"

#include "host/standarderror.h"

#include <QLocale>

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;

constexpr auto silence = 10s; // after an entry, for its text

QString shown(const QByteArray &text)
{
    return onOneLine(QString::fromUtf8(text));
}

QString milliseconds(std::chrono::nanoseconds duration)
{
    const auto count = std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
    return QLocale(QLocale::English).toString(static_cast<qlonglong>(count));
}

} // namespace

std::optional<QString> SlowExchanges::entryFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration)
{
    if (duration <= slowExchange)
        return std::nullopt;
    const Clock::time_point end = exchange.start + std::chrono::duration_cast<Clock::duration>(duration);
    const std::lock_guard lock(mutex);
    entries.erase(
        std::remove_if(entries.begin(), entries.end(), [&](const Entry &entry) { return end - entry.time >= silence; }),
        entries.end());
    const bool isKnown =
        std::any_of(entries.begin(), entries.end(), [&](const Entry &entry) { return entry.text == exchange.text; });
    if (isKnown)
        return std::nullopt;
    entries.push_back({exchange.text, end}); // a hundred a thread at most, since each took 100 ms
    return resultFor(exchange, duration);
}

QString SlowExchanges::warningFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration)
{
    const QString seconds = QString::number(std::chrono::duration<double>(duration).count(), 'f', 1);
    const QString text = exchange.onOwnThread
        ? tr("the backend has not answered \"%1\" for %2 s; the window stands still")
        : tr("the backend has not answered \"%1\" for %2 s");
    return text.arg(shown(exchange.text), seconds);
}

QString SlowExchanges::resultFor(const backend::Exchange &exchange, std::chrono::nanoseconds duration)
{
    const QString text = exchange.onOwnThread
        ? tr("The backend took %1 ms to answer \"%2\"; the window stood still meanwhile.")
        : tr("The backend took %1 ms to answer \"%2\".");
    return text.arg(milliseconds(duration), shown(exchange.text));
}

} // namespace host
