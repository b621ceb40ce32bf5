// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/scriptedhost.h"

#include <algorithm>

namespace {

constexpr int longestAnswer = 199; // bytes

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

bool ScriptedHost::isToFail(const QByteArray &command)
{
    if (failCall > 0 && --failCall == 0)
        return true;
    return !failing.pattern().isEmpty() && failing.match(QString::fromLatin1(command)).hasMatch();
}

TextAnsweringHost::Answer ScriptedHost::answerTo(const Call &call)
{
    note(nameOf(call.operation) + ' ' + call.command);
    formats.append(call.format);
    if (isToFail(call.command))
        return {false, "yes"};
    if (call.operation == Operation::SendCommand) {
        const int lastBlank = call.command.lastIndexOf(' ');
        const QByteArray setting = call.command.left(std::max(lastBlank, 0));
        if (answers.contains(setting))
            answers.insert(setting, call.command.mid(lastBlank + 1));
        return {true, QByteArray()};
    }
    const auto answer = answers.constFind(call.command);
    if (answer == answers.constEnd())
        return {false, "yes"};
    return {true, answer->left(longestAnswer)};
}

void ScriptedHost::callReserved(int number)
{
    note("reserved" + QByteArray::number(number));
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
