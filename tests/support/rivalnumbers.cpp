// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/rivalnumbers.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <locale.h>

namespace {

locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// The place after the zero of a "0b" prefix, nullptr for every other text.
const char *endOfBinaryPrefixZero(const char *text)
{
    text += std::strspn(text, " \t\n\v\f\r");
    if (*text == '+' || *text == '-')
        ++text;
    return text[0] == '0' && (text[1] == 'b' || text[1] == 'B') ? text + 1 : nullptr;
}

} // namespace

ReadNumber<qint32> rivalInteger(const char *text)
{
    if (const char *zeroEnd = endOfBinaryPrefixZero(text))
        return {0, zeroEnd};
    char *end = nullptr;
    const long value = strtol_l(text, &end, 0, cLocale());
    if (end == text)
        return {};
    return {static_cast<qint32>(static_cast<quint32>(static_cast<unsigned long>(value))), end};
}

ReadNumber<float> rivalFloat(const char *text)
{
    char *end = nullptr;
    const double value = strtod_l(text, &end, cLocale());
    if (end == text)
        return {};
    return {static_cast<float>(value), end};
}
