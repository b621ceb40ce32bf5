// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/standarderror.h"

#include <QByteArray>
#include <QCoreApplication>

#include <mutex>

#include <poll.h>
#include <unistd.h>

namespace host {

namespace {

constexpr int longestLine = 4096; // [bytes]; what a pipe that can be written to takes at once

bool isContinuationByte(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

QByteArray lineOf(const QString &text)
{
    QByteArray line = QByteArrayLiteral("trackhost: ") + onOneLine(text).toLocal8Bit();
    if (line.size() >= longestLine) {
        int end = longestLine - 4; // three dots and the line feed
        while (end > 0 && isContinuationByte(line.at(end)))
            --end;
        line.truncate(end);
        line += "...";
    }
    return line + '\n';
}

/// Returns false when the line could not be written at once.
bool writeNow(const QByteArray &line)
{
    pollfd poller{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&poller, 1, 0) != 1 || (poller.revents & POLLOUT) == 0)
        return false;
    return ::write(STDERR_FILENO, line.constData(), static_cast<std::size_t>(line.size())) == line.size();
}

void print(const QString &text)
{
    static std::mutex mutex; // guards the count, and keeps the lines in order
    static int lost = 0;
    const QByteArray line = lineOf(text);
    const std::lock_guard lock(mutex);
    if (lost > 0
        && writeNow(
            lineOf(QCoreApplication::translate("StandardError", "warning: %1 lines that nobody read are missing here")
                       .arg(lost))))
        lost = 0;
    if (lost > 0 || !writeNow(line))
        ++lost;
}

} // namespace

QString onOneLine(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (character == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (character.category() == QChar::Other_Control && character != QLatin1Char('\t'))
            result += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            result += character;
    }
    return result;
}

void printError(const QString &text)
{
    print(text);
}

void printWarning(const QString &text)
{
    print(QLatin1String("warning: ") + text);
}

} // namespace host
