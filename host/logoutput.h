// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QObject>

#include <memory>

namespace host {

class HostLog;
struct LogEntry;

/// A log as a file: "2026-11-21T18:55:00.123Z LEVEL SENDER: TEXT" for each entry. It holds whole lines only, also where
/// the disk is full.
class LogFile {
public:
    /// Replaces the file \a name. Returns nothing, and writes in \a error why, when it can't be written.
    static std::unique_ptr<LogFile> open(const QString &name, QString *error);

    /// Returns false when the entry is missing in the file; error() says why.
    bool write(const LogEntry &entry);
    QString name() const { return file.fileName(); }
    QString error() const { return file.errorString(); }

private:
    explicit LogFile(const QString &name);
    bool writeLine(const QByteArray &line);

    QFile file;
    int missing = 0; // entries since the last line
};

/// Prints the warnings of a log on standard error and writes all of its entries to a file, as they are emitted.
class LogOutput : public QObject {
    Q_OBJECT

public:
    /// \a file may be null. \a log outlives this object.
    LogOutput(HostLog &log, std::unique_ptr<LogFile> file);

private:
    void write(const LogEntry &entry);

    HostLog &log;
    const std::unique_ptr<LogFile> file;
    bool complained = false; // about the file, once
};

} // namespace host
