// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "fuzz/bytehost.h"

#include "fuzz/fuzztarget.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace {

constexpr int longestAnswer = 200; // [bytes]; an answer may fill all of its room, without a zero

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

void ByteHost::callReserved(int)
{
    require(false, "modules call no reserved entry");
}

TextAnsweringHost::Answer ByteHost::answerTo(const Call &call)
{
    switch (call.operation) {
    case Operation::RequestString:
        return textAnswer(call.command);
    case Operation::RequestInt:
        return intAnswer(call.command);
    case Operation::RequestDouble:
        return numberAnswer();
    case Operation::RequestBool:
        return boolAnswer();
    case Operation::RequestDoubles:
        return numberAnswers(call.count);
    case Operation::SendCommand:
        return {acceptsCommand(), QByteArray()};
    }
    return {};
}

TextAnsweringHost::Answer ByteHost::textAnswer(const QByteArray &query)
{
    if (bytes.atEnd())
        return {!failing, usualAnswer(query)};
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
    if (kind < 6)
        return {kind != 0, usualAnswer(query)};
    return {true, kind < 8 ? bytes.line().left(longestAnswer) : texts[kind - 8]};
}

TextAnsweringHost::Answer ByteHost::intAnswer(const QByteArray &query)
{
    // What lies between a dozen and a million takes time, and nothing else.
    static const std::array<qint32, 8> numbers{2, 1, 3, 0, 12, -1, std::numeric_limits<qint32>::min(), 1000001};
    const int kind = bytes.atEnd() ? 0 : bytes.below(1 + static_cast<int>(numbers.size()));
    const bool answered = bytes.atEnd() ? !failing : kind != 0;
    const qint32 number = numbers[static_cast<std::size_t>(std::max(kind - 1, 0))];
    if (answered && query == "standard number_of_bodies")
        mostBodies = std::max(mostBodies, number);
    return {answered, QByteArray::number(number)};
}

TextAnsweringHost::Answer ByteHost::boolAnswer()
{
    const int kind = bytes.atEnd() ? 1 : bytes.below(4);
    const bool answered = !(bytes.atEnd() && failing) && kind != 3;
    return {answered, kind % 2 != 0 ? "true" : "false"};
}

TextAnsweringHost::Answer ByteHost::numberAnswer()
{
    if (bytes.atEnd())
        return {!failing, "0.5"};
    static const QByteArrayList numbers{
        "0.5",  "0",   "1",           "-0.066", "1e39", "5e-324", "1.7976931348623157e308", "-1.7976931348623157e308",
        "-inf", "inf", "2147483.648", "nan"};
    const int kind = bytes.below(2 + static_cast<int>(numbers.size()));
    const QByteArray number = kind >= 2 ? numbers[kind - 2] : QByteArray::number(bytes.line().toDouble(), 'g', 17);
    return {kind != 0, number};
}

TextAnsweringHost::Answer ByteHost::numberAnswers(qint32 count)
{
    QByteArrayList numbers;
    bool allAnswered = true;
    for (qint32 i = 0; i < count; ++i) {
        const Answer answer = numberAnswer();
        numbers << answer.text;
        allAnswered = allAnswered && answer.isAccepted;
    }
    return {allAnswered, numbers.join(' ')};
}

bool ByteHost::acceptsCommand()
{
    if (bytes.atEnd())
        return !failing;
    return bytes.below(4) != 0;
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
