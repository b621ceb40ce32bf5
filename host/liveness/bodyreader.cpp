// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/bodyreader.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace host {

namespace {

constexpr int blocksOfBody = 3; // id, state and quality; position, angles; rotation

bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

const char *withoutBlanks(const char *text) noexcept
{
    while (*text == ' ')
        ++text;
    return text;
}

/// Each returns the place after the number, or nullptr where there is none. The text ends with a zero.
/// @{
const char *readInteger(const char *text, qint32 &number) noexcept
{
    text = withoutBlanks(text);
    quint32 value = 0;
    const char *end = text;
    while (isDigit(*end))
        value = value * 10 + static_cast<quint32>(*end++ - '0');
    const auto digits = end - text;
    if (digits > 0 && digits <= 9 && (*text != '0' || (digits == 1 && *end != 'x' && *end != 'X'))) {
        number = static_cast<qint32>(value);
        return end;
    }
    char *after = nullptr;
    number = static_cast<qint32>(std::strtol(text, &after, 0)); // no locale has other digits than the C locale
    return after == text ? nullptr : after;
}

const char *readSign(const char *text, bool &belowZero) noexcept
{
    text = withoutBlanks(text);
    const bool negative = *text == '-';
    const char *const digits = text + static_cast<int>(negative || *text == '+');
    const char *end = digits;
    bool isZero = true;
    for (; isDigit(*end) || *end == '.'; ++end)
        isZero = isZero && (*end == '0' || *end == '.');
    if (end > digits && (*end == ' ' || *end == ']')) {
        belowZero = negative && !isZero;
        return end;
    }
    // An exponent, "inf", "nan" and the like: from_chars knows no locale.
    double value = 0.0;
    const std::from_chars_result result = std::from_chars(digits, digits + std::strlen(digits), value);
    if (result.ec == std::errc::invalid_argument)
        return nullptr;
    belowZero = negative && value > 0.0;
    return result.ptr;
}
/// @}

bool readHeader(const char *text, bool hasState, BodySighting &sighting) noexcept
{
    qint32 state = 1;
    text = readInteger(text, sighting.id);
    if (text && hasState)
        text = readInteger(text, state);
    bool belowZero = false;
    if (!text || !readSign(text, belowZero))
        return false;
    sighting.tracked = state > 0 && !belowZero;
    return true;
}

} // namespace

void readBodies(const QByteArray &tag, const QByteArray &line, BodyList &bodies) noexcept
{
    bodies.count = 0;
    const bool hasState = tag == "6di";
    if (!hasState && tag != "6d")
        return;
    const char *text = line.constData();
    const char *const end = text + line.size();
    const auto find = [end](const char *from, char c) {
        return static_cast<const char *>(std::memchr(from, c, static_cast<std::size_t>(end - from)));
    };
    while (bodies.count < mostBodies) {
        const char *const open = find(text, '[');
        BodySighting sighting;
        if (!open || !readHeader(open + 1, hasState, sighting))
            return;
        text = open;
        for (int block = 0; block < blocksOfBody; ++block) {
            text = find(text, ']');
            if (!text)
                return;
            ++text;
        }
        bodies.sightings[bodies.count++] = sighting;
    }
}

} // namespace host
