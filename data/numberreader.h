// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// A number read from a text and the place after it; \a end is null, and \a value 0, where no number was found.
template<typename T> struct ReadNumber {
    T value = 0;
    const char *end = nullptr;
};

/// Reads the integer at the start of \a text (zero-terminated) like strtol with base 0 in the C locale: blanks before
/// it, a sign, and decimal, "0x" hexadecimal or leading-zero octal digits. A number beyond the range of long is
/// strtol's limit; what is beyond 32 bits is cut off. No such number holds a ']', so that one ends there as at a zero.
ReadNumber<qint32> readInteger(const char *text) noexcept;

/// Reads the number at the start of \a text (zero-terminated) like strtod in the C locale, its whole grammar
/// included, and narrows strtod's double to float: the same bits as (float)strtod(text). A ']' ends the text as a zero
/// does.
ReadNumber<float> readFloat(const char *text) noexcept;
