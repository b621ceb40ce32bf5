// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logoutput.h"

#include "host/hostlog.h"
#include "host/standarderror.h"

#include <utility>

namespace host {

LogFile::LogFile(const QString &name)
    : file(name)
{
}

std::unique_ptr<LogFile> LogFile::open(const QString &name, QString *error)
{
    std::unique_ptr<LogFile> result(new LogFile(name));
    if (result->file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return result;
    *error = result->error();
    return nullptr;
}

bool LogFile::write(const LogEntry &entry)
{
    if (missing > 0) {
        const LogEntry gap{QDateTime::currentDateTime(),
                           1,
                           {},
                           QStringLiteral("trackhost"),
                           LogOutput::tr("%1 entries are missing here.").arg(missing)};
        if (!writeLine(logLine(gap).toUtf8() + '\n')) {
            ++missing;
            return false;
        }
    }
    const bool written = writeLine(logLine(entry).toUtf8() + '\n');
    missing = written ? 0 : missing + 1;
    return written;
}

bool LogFile::writeLine(const QByteArray &line)
{
    const qint64 end = file.isSequential() ? -1 : file.size();
    if (file.write(line) == line.size())
        return true;
    if (end >= 0) { // half a line goes again
        file.resize(end);
        file.seek(end);
    }
    return false;
}

LogOutput::LogOutput(HostLog &log, std::unique_ptr<LogFile> file)
    : log(log)
    , file(std::move(file))
{
    connect(&log, &HostLog::entryAdded, this, &LogOutput::write);
}

void LogOutput::write(const LogEntry &entry)
{
    if (entry.isWarning())
        printWarning(entry.text);
    if (!file || file->write(entry) || complained)
        return;
    complained = true;
    log.warning(
        tr("The log file %1 can't be written: %2. Entries are missing in it.").arg(file->name(), file->error()));
}

} // namespace host
