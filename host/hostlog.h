// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

#include <deque>
#include <mutex>

namespace host {

/// One entry of the host's log. A level of 0 is information, 1 and above is a failure or a warning.
struct LogEntry {
    QDateTime time;
    int level = 0;
    QString category;
    QString sender;
    QString text;

    bool isWarning() const { return level > 0; }
};

/// The entry as a line of a log file: "2026-11-21T18:55:00.123Z LEVEL SENDER: TEXT", the level as "info" or "warning".
QString logLine(const LogEntry &entry);

/// The host's log: entries are added from any thread and emitted on the log's own thread.
///
/// Entries wait in a queue of limited length until the event loop flushes them, so that a module that logs with every
/// line of data can't fill the memory. Beyond it the oldest are dropped and their number is logged instead.
class HostLog : public QObject {
    Q_OBJECT

public:
    /// \a capacity is the largest number of entries that wait.
    explicit HostLog(std::size_t capacity = 1000, QObject *parent = nullptr);

    /// Any thread.
    void add(int level, const QString &category, const QString &sender, const QString &text);
    /// Information from the host itself. Any thread.
    void info(const QString &text);
    /// A failure of the host itself. Any thread.
    void warning(const QString &text);
    /// Emits what waits. Otherwise the event loop does so. On the log's thread.
    void flush();

signals:
    void entryAdded(const host::LogEntry &entry); ///< on the log's thread, in the order of the entries
    void entriesWaiting(); ///< from any thread, for this object alone

private:
    const std::size_t capacity;
    std::mutex mutex; // guards the next three, which any thread touches
    std::deque<LogEntry> waiting;
    std::size_t dropped = 0;
    bool flushIsDue = false;
};

} // namespace host
