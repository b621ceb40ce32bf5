// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/commandtable.h"

#include <algorithm>
#include <string_view>

namespace backend {

Answer answerTo(const QByteArray &query, const QueryContext &context)
{
    const Words words = wordsOf(query);
    for (const QVector<QueryEntry> *table : {&bodyQueries(), &deviceQueries(), &filterQueries()}) {
        for (const QueryEntry &entry : *table) {
            const std::optional<Words> arguments = matchWords(entry.pattern, words);
            if (!arguments)
                continue;
            if (!isAtLeast(context.scenario.version, entry.major, entry.minor))
                return std::nullopt;
            return entry.answer(context, *arguments);
        }
    }
    return std::nullopt;
}

Words wordsOf(const QByteArray &text)
{
    const QByteArray plain = text.simplified();
    return plain.isEmpty() ? Words{} : plain.split(' ');
}

std::optional<Words> matchWords(const char *pattern, const Words &words)
{
    // Nothing is copied before it fits: each query meets dozens of patterns.
    Words arguments;
    std::string_view rest(pattern);
    for (int i = 0; i < words.size(); ++i) {
        const std::size_t length = std::min(rest.find(' '), rest.size());
        const std::string_view part = rest.substr(0, length);
        const QByteArray &word = words.at(i);
        if (part == "...")
            return arguments << words.mid(i).join(' ');
        if (part == "*")
            arguments << word;
        else if (part != std::string_view(word.constData(), static_cast<std::size_t>(word.size())))
            return std::nullopt;
        const bool isLastPart = length == rest.size();
        const bool isLastWord = i + 1 == words.size();
        if (isLastPart != isLastWord)
            return std::nullopt;
        if (!isLastPart)
            rest.remove_prefix(length + 1);
    }
    return words.isEmpty() ? std::nullopt : std::optional<Words>(arguments);
}

int numberAfter(char letter, const QByteArray &text)
{
    const QByteArray digits = text.mid(1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (!text.startsWith(letter) || !std::all_of(digits.cbegin(), digits.cend(), isDigit))
        return 0;
    return digits.toInt();
}

QByteArray yesNo(bool yes)
{
    return yes ? QByteArrayLiteral("yes") : QByteArrayLiteral("no");
}

QByteArray numberText(double number)
{
    return QByteArray::number(number, 'f', 6);
}

const FilterSettings *filterOf(const Scenario &scenario, const QByteArray &kind, const QByteArray &number)
{
    const int index = numberAfter('b', number) - 1;
    if (kind == "standard" && scenario.filter.standard && index >= 0 && index < scenario.bodies.size())
        return &scenario.bodies[index].filter;
    if (kind == "wandor" && scenario.filter.wandor && index >= 0 && index < scenario.wandor.devices.size())
        return &scenario.wandor.devices[index].filter;
    return nullptr;
}

} // namespace backend
