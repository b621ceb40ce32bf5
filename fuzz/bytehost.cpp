// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/bytehost.h"

#include "fuzz/fuzztarget.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>

// The variable arguments have to be taken up in the function that received them.
#define FORMAT_ARGUMENTS(text, format)                                                                                 \
    std::va_list values;                                                                                               \
    va_start(values, format);                                                                                          \
    const QByteArray text = formatted(format, values);                                                                 \
    va_end(values)

namespace {

constexpr int longestAnswer = 200; // [bytes]; an answer may fill all of its room, without a zero
constexpr int failed = -1;

Q_ATTRIBUTE_FORMAT_PRINTF(1, 0) QByteArray formatted(const char *format, std::va_list values)
{
    std::va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    QByteArray text(std::max(length, 0), '\0');
    std::vsnprintf(text.data(), static_cast<std::size_t>(text.size()) + 1, format, values);
    return text;
}

/// What a backend without surprises answers, whatever the number of the body or the list entry.
QByteArray usualAnswer(const QByteArray &query)
{
    if (query.startsWith("filter6d preset_id") || query.startsWith("body filter6d_preset "))
        return "preset6d_custom";
    if (query.startsWith("filter6d mode_id") || query.startsWith("body filter6d_mode "))
        return "mode6d_fast";
    if (query.contains("_desc ") || query.startsWith("body desc"))
        return "\"Left hand\"";
    if (query.startsWith("body inertial_sensor") || query.startsWith("inertial sensor "))
        return "inertial d01 'A17'";
    if (query == "tracking reference" || query.startsWith("inertial body_of_sensor"))
        return "standard b02";
    return "yes";
}

} // namespace

void ByteHost::refuse()
{
    require(false, "modules call no reserved entry");
}

QByteArray ByteHost::textAnswer(const QByteArray &query, bool &answered)
{
    answered = true;
    if (bytes.atEnd()) {
        answered = !failing;
        return usualAnswer(query);
    }
    static const QByteArrayList texts{"yes",
                                      "no",
                                      "none",
                                      "",
                                      "Yes",
                                      "<b>markup</b>",
                                      "%n%s%1",
                                      "standard b01",
                                      "preset6d_custom_hybrid",
                                      "standard b-2147483648",
                                      QByteArray(longestAnswer, 'W')};
    const int kind = bytes.below(8 + static_cast<int>(texts.size()));
    answered = kind != 0;
    if (kind < 6)
        return usualAnswer(query);
    return kind < 8 ? bytes.line().left(longestAnswer) : texts[kind - 8];
}

double ByteHost::numberAnswer(bool &answered)
{
    answered = true;
    if (bytes.atEnd()) {
        answered = !failing;
        return 0.5;
    }
    constexpr double largest = std::numeric_limits<double>::max();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    static const std::array<double, 12> numbers{
        0.5,     0.0,      1.0,       -0.066,   1e39,        5e-324,
        largest, -largest, -infinite, infinite, 2147483.648, std::numeric_limits<double>::quiet_NaN()};
    const int kind = bytes.below(2 + static_cast<int>(numbers.size()));
    answered = kind != 0;
    if (kind >= 2)
        return numbers[static_cast<std::size_t>(kind - 2)];
    return bytes.line().toDouble();
}

int ByteHost::requestString(char *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    bool answered = false;
    const QByteArray text = textAnswer(query, answered);
    // A failed query leaves its rubbish behind, too.
    std::memset(answer, 0, static_cast<std::size_t>(std::min(text.size() + 1, longestAnswer)));
    std::memcpy(answer, text.constData(), static_cast<std::size_t>(text.size()));
    return answered ? 0 : failed;
}

int ByteHost::requestInt(qint32 *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    // What lies between a dozen and a million takes time, and nothing else.
    static const std::array<qint32, 8> numbers{2, 1, 3, 0, 12, -1, std::numeric_limits<qint32>::min(), 1000001};
    const int kind = bytes.atEnd() ? 0 : bytes.below(1 + static_cast<int>(numbers.size()));
    const bool answered = bytes.atEnd() ? !failing : kind != 0;
    *answer = numbers[static_cast<std::size_t>(std::max(kind - 1, 0))];
    if (answered && query == "standard number_of_bodies")
        mostBodies = std::max(mostBodies, *answer);
    return answered ? 0 : failed;
}

int ByteHost::requestDouble(double *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    bool answered = false;
    *answer = numberAnswer(answered);
    return answered ? 0 : failed;
}

int ByteHost::requestBool(bool *answer, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    const int kind = bytes.atEnd() ? 1 : bytes.below(4);
    *answer = kind % 2 != 0;
    return (bytes.atEnd() && failing) || kind == 3 ? failed : 0;
}

int ByteHost::requestDoubles(double *answersOut, qint32 count, const char *format, ...)
{
    FORMAT_ARGUMENTS(query, format);
    bool allAnswered = true;
    for (qint32 i = 0; i < count; ++i) {
        bool answered = false;
        answersOut[i] = numberAnswer(answered);
        allAnswered = allAnswered && answered;
    }
    return allAnswered ? 0 : failed;
}

int ByteHost::sendCommand(const char *format, ...)
{
    FORMAT_ARGUMENTS(command, format);
    if (bytes.atEnd())
        return failing ? failed : 0;
    return bytes.below(4) == 0 ? failed : 0;
}

void ByteHost::startOutput(const char *tag, Requester *requester)
{
    require(tag && requester, "an output has a name and somebody who wants it");
}

void ByteHost::stopOutput(const char *tag, Requester *requester)
{
    require(tag && requester, "an output has a name and somebody who wanted it");
}

void ByteHost::registerRequester(Requester *requester)
{
    require(requester != nullptr, "somebody registers");
}

void ByteHost::unregisterRequester(Requester *requester)
{
    require(requester != nullptr, "somebody unregisters");
}

void ByteHost::logMessage(const char *category, const char *sender, qint32 level, const char *text)
{
    require(std::strcmp(category, "standard") == 0 && std::strcmp(sender, "VORNAK4") == 0 && level == 1,
            "a message says where it comes from");
    logs.append(text);
}
