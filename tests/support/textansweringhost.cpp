// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/textansweringhost.h"

#include "host/commandformat.h"

#include <QList>

#include <algorithm>
#include <cstdarg>
#include <cstring>

namespace {

constexpr int answerSize = 200; // bytes
constexpr int failed = -1;

using Operation = TextAnsweringHost::Operation;

Q_ATTRIBUTE_FORMAT_PRINTF(2, 0)
TextAnsweringHost::Call callOf(Operation operation, const char *format, std::va_list arguments, qint32 count = 1)
{
    return {operation, QByteArray(format), host::formatCommand(format, arguments), count};
}

} // namespace

QByteArray TextAnsweringHost::nameOf(Operation operation)
{
    switch (operation) {
    case Operation::RequestString:
        return "requestString";
    case Operation::RequestInt:
        return "requestInt";
    case Operation::RequestDouble:
        return "requestDouble";
    case Operation::RequestBool:
        return "requestBool";
    case Operation::RequestDoubles:
        return "requestDoubles";
    case Operation::SendCommand:
        return "sendCommand";
    }
    return {};
}

int TextAnsweringHost::requestString(char *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::RequestString, format, arguments);
    va_end(arguments);
    const Answer given = answerTo(call);
    std::memcpy(answer, given.text.constData(),
                static_cast<std::size_t>(std::min(given.text.size() + 1, answerSize))); // the zero where it fits
    return given.isAccepted ? 0 : failed;
}

int TextAnsweringHost::requestInt(qint32 *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::RequestInt, format, arguments);
    va_end(arguments);
    const Answer given = answerTo(call);
    bool isNumber = false;
    const int number = given.text.toInt(&isNumber);
    *answer = isNumber ? number : 77;
    return given.isAccepted && isNumber ? 0 : failed;
}

int TextAnsweringHost::requestDouble(double *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::RequestDouble, format, arguments);
    va_end(arguments);
    const Answer given = answerTo(call);
    bool isNumber = false;
    const double number = given.text.toDouble(&isNumber);
    *answer = isNumber ? number : 77.7;
    return given.isAccepted && isNumber ? 0 : failed;
}

int TextAnsweringHost::requestBool(bool *answer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::RequestBool, format, arguments);
    va_end(arguments);
    const Answer given = answerTo(call);
    *answer = !given.isAccepted || given.text == "true";
    return given.isAccepted ? 0 : failed;
}

int TextAnsweringHost::requestDoubles(double *answers, qint32 count, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::RequestDoubles, format, arguments, count);
    va_end(arguments);
    const Answer given = answerTo(call);
    const QList<QByteArray> numbers = given.text.split(' ');
    std::fill_n(answers, count, 77.7);
    if (numbers.size() != count)
        return failed;
    std::transform(numbers.cbegin(), numbers.cend(), answers,
                   [](const QByteArray &number) { return number.toDouble(); });
    return given.isAccepted ? 0 : failed;
}

int TextAnsweringHost::sendCommand(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const Call call = callOf(Operation::SendCommand, format, arguments);
    va_end(arguments);
    return answerTo(call).isAccepted ? 0 : failed;
}
