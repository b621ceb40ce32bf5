// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/blockreader.h"

#include "data/numberreader.h"

#include <cstring>

namespace {

bool readNumbers(const char *text, const char *format, qint32 *ints, float *floats) noexcept
{
    for (; *format != '\0'; ++format) {
        if (*format == 'f') {
            const ReadNumber<float> number = readFloat(text);
            if (!number.end)
                return false;
            *floats++ = number.value;
            text = number.end;
        } else if (*format == 'i') {
            const ReadNumber<qint32> number = readInteger(text);
            if (!number.end)
                return false;
            *ints++ = number.value;
            text = number.end;
        } else {
            return false;
        }
    }
    return true;
}

} // namespace

const char *parseBlock(const char *text, const char *format, qint32 *ints, float *floats) noexcept
{
    const char *const open = std::strchr(text, '[');
    if (!open)
        return nullptr;
    const char *const close = std::strchr(open + 1, ']');
    if (!close)
        return nullptr;
    return readNumbers(open + 1, format, ints, floats) ? close + 1 : nullptr;
}
