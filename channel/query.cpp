// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "channel/query.h"

#include "interface/iomanager.h"

void logToHost(IOManager &io, const QString &text)
{
    io.logMessage("standard", "VORNAK4", 1, text.toLatin1().constData());
}

QString unquoted(const QByteArray &answer)
{
    return QString::fromUtf8(answer).remove(QLatin1Char('"'));
}

char *Query::textBuffer() noexcept
{
    answer.fill('\0');
    return answer.data();
}

qint32 *Query::intBuffer() noexcept
{
    countAnswer = 0;
    return &countAnswer;
}

double *Query::doubleBuffer() noexcept
{
    numberAnswer = 0.0;
    return &numberAnswer;
}

bool *Query::boolBuffer() noexcept
{
    flagAnswer = false;
    return &flagAnswer;
}

bool Query::accepted(int result, const char *action, const QString &subject) const
{
    if (result == 0)
        return true;
    if (action) {
        QString message = QLatin1String("Error: Unable to ") + QLatin1String(action);
        if (message.contains(QLatin1String("%1")))
            message = message.arg(subject);
        logToHost(io, message);
    }
    return false;
}

std::optional<QByteArray> Query::text(int result, const char *action, const QString &subject) const
{
    if (!accepted(result, action, subject))
        return std::nullopt;
    return QByteArray(answer.data());
}

bool Query::isYes(int result, const char *action, const QString &subject) const
{
    return text(result, action, subject) == QByteArray("yes");
}

bool Query::isNotNo(int result, const char *action, const QString &subject) const
{
    const std::optional<QByteArray> answered = text(result, action, subject);
    return answered && *answered != "no";
}

qint32 Query::count(int result, const char *action, const QString &subject) const
{
    const bool plausible = countAnswer <= largestCount;
    return accepted(plausible ? result : -1, action, subject) ? countAnswer : 0;
}

double Query::number(int result, const char *action, const QString &subject) const
{
    return accepted(result, action, subject) ? numberAnswer : 0.0;
}

bool Query::flag(int result, const char *action, const QString &subject) const
{
    return accepted(result, action, subject) && flagAnswer;
}
