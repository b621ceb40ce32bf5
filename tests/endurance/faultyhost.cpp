// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/faultyhost.h"

#include "host/commandformat.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int failed = -1;

} // namespace

void FaultyHost::fail(int first, int last)
{
    failFrom = first;
    failTo = last;
    count = 0;
    record.clear();
}

bool FaultyHost::isToFail(const QByteArray &command)
{
    if (beforeCall)
        beforeCall();
    ++count;
    if (failFrom == 0 || count < failFrom || count > failTo)
        return false;
    record.append("FAILED " + command);
    return true;
}

int FaultyHost::requestString(char *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.requestString(answer, "%s", command.constData());
    std::strcpy(answer, substitute ? substitute(command).constData() : "yes");
    return substitute ? 0 : failed;
}

int FaultyHost::requestInt(qint32 *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.requestInt(answer, "%s", command.constData());
    *answer = substitute ? substitute(command).toInt() : 77;
    return substitute ? 0 : failed;
}

int FaultyHost::requestDouble(double *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.requestDouble(answer, "%s", command.constData());
    *answer = substitute ? substitute(command).toDouble() : 77.7;
    return substitute ? 0 : failed;
}

int FaultyHost::requestBool(bool *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.requestBool(answer, "%s", command.constData());
    *answer = !substitute || substitute(command) == "true";
    return substitute ? 0 : failed;
}

int FaultyHost::requestDoubles(double *answers, qint32 answerCount, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.requestDoubles(answers, answerCount, "%s", command.constData());
    std::fill_n(answers, answerCount, substitute ? substitute(command).toDouble() : 77.7);
    return substitute ? 0 : failed;
}

int FaultyHost::sendCommand(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = host::formatCommand(format, arguments);
    va_end(arguments);
    if (!isToFail(command))
        return inner.sendCommand("%s", command.constData());
    return substitute ? 0 : failed;
}

void FaultyHost::startOutput(const char *tag, Requester *requester)
{
    outputs.insert(tag);
    inner.startOutput(tag, requester);
}

void FaultyHost::stopOutput(const char *tag, Requester *requester)
{
    outputs.remove(tag);
    inner.stopOutput(tag, requester);
}

void FaultyHost::registerRequester(Requester *requester)
{
    registered.insert(requester);
    inner.registerRequester(requester);
}

void FaultyHost::unregisterRequester(Requester *requester)
{
    registered.remove(requester);
    outputs.clear();
    inner.unregisterRequester(requester);
}

void FaultyHost::logMessage(const char *category, const char *sender, qint32 level, const char *text)
{
    record.append(QByteArray("log ") + text);
    inner.logMessage(category, sender, level, text);
}
