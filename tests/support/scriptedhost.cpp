// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/scriptedhost.h"

#include "host/commandformat.h"

#include <QList>

#include <algorithm>
#include <cstring>

namespace {

constexpr int answerSize = 200; // bytes, with the terminating zero
constexpr int failed = -1;

} // namespace

QByteArrayList ScriptedHost::takeCalls()
{
    const QByteArrayList taken = calls;
    calls.clear();
    formats.clear();
    return taken;
}

QByteArrayList ScriptedHost::callsOf(const QByteArray &operation) const
{
    QByteArrayList found;
    for (const QByteArray &call : calls) {
        if (call.startsWith(operation + ' '))
            found.append(call.mid(operation.size() + 1));
    }
    return found;
}

void ScriptedHost::note(const QByteArray &call)
{
    calls.append(call);
    if (onCall)
        onCall();
}

QByteArray ScriptedHost::record(const char *operation, const char *format, std::va_list arguments)
{
    const QByteArray command = host::formatCommand(format, arguments);
    note(QByteArray(operation) + ' ' + command);
    formats.append(QByteArray(format));
    return command;
}

bool ScriptedHost::isToFail(const QByteArray &command)
{
    if (failCall > 0 && --failCall == 0)
        return true;
    return !failing.pattern().isEmpty() && failing.match(QString::fromLatin1(command)).hasMatch();
}

int ScriptedHost::requestString(char *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("requestString", format, arguments);
    va_end(arguments);
    if (isToFail(command) || !answers.contains(command)) {
        std::strcpy(answer, "yes");
        return failed;
    }
    const QByteArray text = answers.value(command).left(answerSize - 1);
    std::memcpy(answer, text.constData(), static_cast<std::size_t>(text.size()) + 1);
    return 0;
}

int ScriptedHost::requestInt(qint32 *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("requestInt", format, arguments);
    va_end(arguments);
    *answer = 77;
    if (isToFail(command))
        return failed;
    bool isNumber = false;
    const int number = answers.value(command).toInt(&isNumber);
    if (!isNumber)
        return failed;
    *answer = number;
    return 0;
}

int ScriptedHost::requestDouble(double *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("requestDouble", format, arguments);
    va_end(arguments);
    *answer = 77.7;
    if (isToFail(command))
        return failed;
    bool isNumber = false;
    const double number = answers.value(command).toDouble(&isNumber);
    if (!isNumber)
        return failed;
    *answer = number;
    return 0;
}

int ScriptedHost::requestBool(bool *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("requestBool", format, arguments);
    va_end(arguments);
    *answer = true;
    if (isToFail(command) || !answers.contains(command))
        return failed;
    *answer = answers.value(command) == "true";
    return 0;
}

int ScriptedHost::requestDoubles(double *answersOut, qint32 count, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("requestDoubles", format, arguments);
    va_end(arguments);
    std::fill_n(answersOut, count, 77.7);
    const QList<QByteArray> numbers = answers.value(command).split(' ');
    if (isToFail(command) || numbers.size() != count)
        return failed;
    std::transform(numbers.cbegin(), numbers.cend(), answersOut,
                   [](const QByteArray &number) { return number.toDouble(); });
    return 0;
}

int ScriptedHost::sendCommand(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const QByteArray command = record("sendCommand", format, arguments);
    va_end(arguments);
    if (isToFail(command))
        return failed;
    const int lastBlank = command.lastIndexOf(' ');
    const QByteArray setting = command.left(std::max(lastBlank, 0));
    if (answers.contains(setting))
        answers.insert(setting, command.mid(lastBlank + 1));
    return 0;
}

void ScriptedHost::startOutput(const char *tag, Requester *)
{
    note(QByteArray("startOutput ") + tag);
}

void ScriptedHost::stopOutput(const char *tag, Requester *)
{
    note(QByteArray("stopOutput ") + tag);
}

void ScriptedHost::registerRequester(Requester *)
{
    note(QByteArray("registerRequester"));
}

void ScriptedHost::unregisterRequester(Requester *)
{
    note(QByteArray("unregisterRequester"));
}

void ScriptedHost::logMessage(const char *category, const char *sender, qint32 level, const char *text)
{
    const bool usual = qstrcmp(category, "standard") == 0 && qstrcmp(sender, "VORNAK4") == 0 && level == 1;
    QByteArray from;
    if (!usual)
        from = QByteArray(category) + '/' + sender + '/' + QByteArray::number(level) + ": ";
    note("log " + from + text);
}

void ScriptedHost::reserved0()
{
    note(QByteArray("reserved0"));
}

void ScriptedHost::reserved1()
{
    note(QByteArray("reserved1"));
}

void ScriptedHost::reserved2()
{
    note(QByteArray("reserved2"));
}

void ScriptedHost::reserved3()
{
    note(QByteArray("reserved3"));
}

void ScriptedHost::reserved4()
{
    note(QByteArray("reserved4"));
}

void ScriptedHost::reserved10()
{
    note(QByteArray("reserved10"));
}
