// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/hostlog.h"

#include "host/standarderror.h"

#include <utility>

namespace host {

namespace {

const QLatin1String hostCategory("host");
const QLatin1String hostSender("trackhost");

} // namespace

QString logLine(const LogEntry &entry)
{
    const QLatin1String level(entry.isWarning() ? "warning" : "info");
    return QStringLiteral("%1 %2 %3: %4")
        .arg(entry.time.toUTC().toString(Qt::ISODateWithMs), level, onOneLine(entry.sender), onOneLine(entry.text));
}

HostLog::HostLog(std::size_t capacity, QObject *parent)
    : QObject(parent)
    , capacity(capacity)
{
    connect(this, &HostLog::entriesWaiting, this, &HostLog::flush, Qt::QueuedConnection);
}

void HostLog::add(int level, const QString &category, const QString &sender, const QString &text)
{
    {
        const std::lock_guard lock(mutex);
        if (waiting.size() == capacity) {
            waiting.pop_front();
            ++dropped;
        }
        waiting.push_back({QDateTime::currentDateTime(), level, category, sender, text});
        if (flushIsDue)
            return;
        flushIsDue = true;
    }
    emit entriesWaiting();
}

void HostLog::info(const QString &text)
{
    add(0, hostCategory, hostSender, text);
}

void HostLog::warning(const QString &text)
{
    add(1, hostCategory, hostSender, text);
}

void HostLog::flush()
{
    std::deque<LogEntry> entries;
    std::size_t lost = 0;
    {
        const std::lock_guard lock(mutex);
        entries.swap(waiting);
        std::swap(lost, dropped);
        flushIsDue = false;
    }
    if (lost > 0) {
        emit entryAdded({entries.front().time, 1, hostCategory, hostSender,
                         tr("%1 entries came faster than they could be shown and were dropped.").arg(lost)});
    }
    for (const LogEntry &entry : entries)
        emit entryAdded(entry);
}

} // namespace host
