// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/faultyhost.h"

namespace {

/// A query that is not answered by a number counts as answered by 0.
QByteArray numberOf(const QByteArray &text, TextAnsweringHost::Operation operation)
{
    if (operation == TextAnsweringHost::Operation::RequestInt)
        return QByteArray::number(text.toInt());
    return QByteArray::number(text.toDouble(), 'g', 17);
}

QByteArray answerOf(const QByteArray &text, const TextAnsweringHost::Call &call)
{
    switch (call.operation) {
    case TextAnsweringHost::Operation::RequestInt:
    case TextAnsweringHost::Operation::RequestDouble:
        return numberOf(text, call.operation);
    case TextAnsweringHost::Operation::RequestDoubles:
        return QByteArray(numberOf(text, call.operation) + ' ').repeated(call.count).trimmed();
    default:
        return text;
    }
}

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

TextAnsweringHost::Answer FaultyHost::answerTo(const Call &call)
{
    if (!isToFail(call.command))
        return inner.answerTo(call);
    if (!substitute)
        return {false, "yes"};
    return {true, answerOf(substitute(call.command), call)};
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
