// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/backend/clocale.h"

#include <QByteArray>
#include <QVector>

#include <cstring>

/// An output line taken apart without anything of the library: its count and the numbers of its bracket blocks.
struct ReadLine {
    int count = -1;
    QVector<QVector<double>> blocks;
};

/// Reads \a line, whose count follows after \a tag and one blank. A count of -1 says that the line is malformed.
inline ReadLine readLine(const QByteArray &line, const QByteArray &tag)
{
    ReadLine result;
    if (!line.startsWith(tag + ' '))
        return result;
    const char *place = line.constData() + tag.size() + 1;
    char *end = nullptr;
    const long count = std::strtol(place, &end, 10);
    if (end == place)
        return result;
    for (place = end; *place == ' ' || *place == '['; place = end + 1) {
        end = const_cast<char *>(place);
        if (*place == ' ')
            continue;
        QVector<double> numbers;
        for (const char *number = place + 1; *number != ']'; number = end) {
            const double value = strtod_l(number, &end, cLocale());
            if (end == number)
                return {};
            numbers.append(value);
        }
        end = const_cast<char *>(std::strchr(place, ']'));
        result.blocks.append(numbers);
    }
    if (*place == '\0')
        result.count = static_cast<int>(count);
    return result;
}
