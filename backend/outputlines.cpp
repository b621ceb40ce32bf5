// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/outputlines.h"

namespace backend {

namespace {

// The angles that a reader works out of the nine numbers must come out to a thousandth of a degree, also where the
// sine is flat.
constexpr int rotationDecimals = 9;
constexpr int positionDecimals = 3;
constexpr int angleDecimals = 4;
constexpr int qualityDecimals = 3;

template<std::size_t size> void appendNumbers(QByteArray &line, const std::array<double, size> &numbers, int decimals)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0)
            line += ' ';
        line += QByteArray::number(numbers[i], 'f', decimals);
    }
}

void appendQuality(QByteArray &line, bool tracked)
{
    line += ' ' + QByteArray::number(tracked ? 1.0 : -1.0, 'f', qualityDecimals) + ']';
}

void appendRotation(QByteArray &line, const Rotation &rotation)
{
    line += '[';
    appendNumbers(line, rotation, rotationDecimals);
    line += ']';
}

} // namespace

QByteArray line6d(const QVector<BodySample> &bodies)
{
    QByteArray line = "6d " + QByteArray::number(bodies.size());
    for (const BodySample &body : bodies) {
        line += " [" + QByteArray::number(body.id);
        appendQuality(line, body.optical);
        line += '[';
        appendNumbers(line, body.optical ? body.pose.position : Vector3{}, positionDecimals);
        line += ' ';
        appendNumbers(line, body.optical ? eulerAngles(body.pose.rotation) : Vector3{}, angleDecimals);
        line += ']';
        appendRotation(line, body.optical ? body.pose.rotation : Rotation{});
    }
    return line;
}

QByteArray line6di(const QVector<BodySample> &bodies)
{
    QByteArray line = "6di " + QByteArray::number(bodies.size());
    for (const BodySample &body : bodies) {
        const bool tracked = body.optical || body.inertial;
        const int state = (body.optical ? 2 : 0) + (body.inertial ? 1 : 0);
        line += " [" + QByteArray::number(body.id) + ' ' + QByteArray::number(state);
        appendQuality(line, tracked);
        line += '[';
        appendNumbers(line, tracked ? body.pose.position : Vector3{}, positionDecimals);
        line += ']';
        appendRotation(line, tracked ? body.pose.rotation : Rotation{});
    }
    return line;
}

QByteArray line3d(const QVector<MarkerSample> &markers)
{
    QByteArray line = "3d " + QByteArray::number(markers.size());
    for (const MarkerSample &marker : markers) {
        line += " [" + QByteArray::number(marker.id);
        appendQuality(line, true);
        line += '[';
        appendNumbers(line, marker.position, positionDecimals);
        line += ']';
    }
    return line;
}

} // namespace backend
