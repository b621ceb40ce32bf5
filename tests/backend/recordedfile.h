// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/backend/clocale.h"

#include <QByteArray>
#include <QFile>
#include <QVector>

#include <array>
#include <cmath>

/// One line of a trajectory file as it stands there.
struct RecordedLine {
    double time = 0.0; ///< [s]
    std::array<double, 3> place{}; ///< [m]
    std::array<double, 4> quaternion{}; ///< x, y, z, w, as long as the file's rounding made it
};

/// The lines of \a fileName but the comments, read without anything of the library.
inline QVector<RecordedLine> readRecordedFile(const QString &fileName)
{
    QVector<RecordedLine> lines;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    while (!file.atEnd()) {
        const QByteArray text = file.readLine();
        if (text.startsWith('#'))
            continue;
        std::array<double, 8> numbers{};
        const char *place = text.constData();
        for (double &number : numbers) {
            char *end = nullptr;
            number = strtod_l(place, &end, cLocale());
            place = end;
        }
        lines.append(
            {numbers[0], {numbers[1], numbers[2], numbers[3]}, {numbers[4], numbers[5], numbers[6], numbers[7]}});
    }
    return lines;
}

/// The rotation matrix of a quaternion of any length, column by column: each column is an axis carried over by the
/// product q v q*, divided by the square of the length.
inline std::array<double, 9> matrixOf(const std::array<double, 4> &quaternion)
{
    const auto [x, y, z, w] = quaternion;
    const double square = x * x + y * y + z * z + w * w;
    std::array<double, 9> matrix{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        std::array<double, 3> v{};
        v[axis] = 1.0;
        const double dot = x * v[0] + y * v[1] + z * v[2];
        const std::array<double, 3> cross{y * v[2] - z * v[1], z * v[0] - x * v[2], x * v[1] - y * v[0]};
        const std::array<double, 3> q{x, y, z};
        for (std::size_t row = 0; row < 3; ++row) {
            const double turned =
                (w * w - (x * x + y * y + z * z)) * v[row] + 2.0 * dot * q[row] + 2.0 * w * cross[row];
            matrix[3 * axis + row] = turned / square;
        }
    }
    return matrix;
}
