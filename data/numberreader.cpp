// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/numberreader.h"

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {

/// The C locale for strtol_l and strtod_l: the process's own belongs to the host, and may have a decimal comma.
/// The branch left out of the report is a race of two threads for the first call.
locale_t cLocale() noexcept
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{}); // GCOV_EXCL_BR_LINE
    return locale;
}

bool isDigit(char c) noexcept
{
    return static_cast<unsigned char>(c - '0') < 10;
}

/// 10 to the power of the index: all of them are exact doubles.
constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// With digits up to this number and a divisor of the table both operands of the division are exact, so that its
/// result is rounded once, as strtod's is (W. D. Clinger, How to Read Floating Point Numbers Accurately, PLDI 1990).
constexpr std::uint64_t largestExactDigits = 1'000'000'000'000'000;
constexpr int mostDigits = 19; ///< that always fit in 64 bits

// Not inlined, so that the usual numbers save no registers for these.
[[gnu::noinline, gnu::cold]] ReadNumber<qint32> readUnusualInteger(const char *text) noexcept
{
    char *end = nullptr;
    const long value = strtol_l(text, &end, 0, cLocale());
    if (end == text)
        return {};
    return {static_cast<qint32>(static_cast<quint32>(value)), end};
}

/// Whether \a word is a "nan(" whose ")" does not come before the end or a ']'. What may stand between the parentheses
/// is up to the C library, and some read whatever it is, on to a ")" behind the bracket.
bool isOpenNan(const char *word) noexcept
{
    return strncasecmp_l(word, "nan(", 4, cLocale()) == 0 && word[std::strcspn(word, ")]")] != ')';
}

[[gnu::noinline, gnu::cold]] ReadNumber<float> readUnusualFloat(const char *text) noexcept
{
    const char *const sign = text + std::strspn(text, " \t\n\v\f\r");
    const char *const word = sign + static_cast<int>(*sign == '+' || *sign == '-');
    if (isOpenNan(word)) {
        const double nan = strtod_l(*sign == '-' ? "-nan" : "nan", nullptr, cLocale());
        return {static_cast<float>(nan), word + std::strlen("nan")};
    }
    char *end = nullptr;
    const double value = strtod_l(text, &end, cLocale());
    if (end == text)
        return {};
    return {static_cast<float>(value), end};
}

} // namespace

ReadNumber<qint32> readInteger(const char *text) noexcept
{
    const char *p = text;
    while (*p == ' ')
        ++p;
    const bool negative = *p == '-';
    p += static_cast<int>(negative);
    const char *const digits = p;
    quint32 value = 0;
    while (isDigit(*p))
        value = value * 10 + static_cast<quint32>(*p++ - '0');
    // Up to nine digits always fit. A leading zero is octal or hexadecimal, unless it stands alone.
    const auto length = p - digits;
    const bool plainDecimal = length > 0 && length <= 9 && (*digits != '0' || (length == 1 && (*p | 0x20) != 'x'));
    if (!plainDecimal)
        return readUnusualInteger(text);
    return {static_cast<qint32>(negative ? 0U - value : value), p};
}

ReadNumber<float> readFloat(const char *text) noexcept
{
    const char *p = text;
    while (*p == ' ')
        ++p;
    const auto negative = static_cast<unsigned>(*p == '-');
    p += negative;
    const char *const digits = p;
    std::uint64_t value = 0;
    while (isDigit(*p))
        value = value * 10 + static_cast<std::uint64_t>(*p++ - '0');
    auto count = p - digits;
    decltype(count) decimals = 0;
    if (*p == '.') {
        const char *const fraction = ++p;
        while (isDigit(*p))
            value = value * 10 + static_cast<std::uint64_t>(*p++ - '0');
        decimals = p - fraction;
        count += decimals;
    }
    // What follows may still belong to the number: an exponent, or the x of a hexadecimal one.
    const char next = static_cast<char>(*p | 0x20);
    const bool plainDecimal =
        count > 0 && count <= mostDigits && value <= largestExactDigits && next != 'e' && next != 'x';
    if (!plainDecimal)
        return readUnusualFloat(text);
    // A table, not a branch: signs are as random as the data, and a mispredicted one costs as much as the digits.
    static constexpr double signs[] = {1.0, -1.0};
    return {static_cast<float>(static_cast<double>(value) / powersOfTen[decimals] * signs[negative]), p};
}
