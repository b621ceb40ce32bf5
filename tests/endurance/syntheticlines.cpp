// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/syntheticlines.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr int fewestMarkers = 5;

/// Puts a line together; faster than formats are, as an hour has half a million lines.
class LineText {
public:
    LineText &operator<<(const char *text)
    {
        line += text;
        return *this;
    }
    LineText &operator<<(int number)
    {
        std::array<char, 12> digits{};
        const char *const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        line.append(digits.data(), static_cast<int>(end - digits.begin()));
        return *this;
    }
    /// With three decimals.
    LineText &operator<<(double number)
    {
        const int thousandths = static_cast<int>(std::lround(std::abs(number) * 1000.0));
        line += number < 0.0 ? "-" : "";
        *this << thousandths / 1000;
        const std::array<char, 4> decimals{'.', digit(thousandths / 100), digit(thousandths / 10), digit(thousandths)};
        line.append(decimals.data(), static_cast<int>(decimals.size()));
        return *this;
    }
    QByteArray take() { return std::move(line); }

private:
    static char digit(int number) { return static_cast<char>('0' + number % 10); }

    QByteArray line;
};

int markersOf(qint64 frame)
{
    constexpr int range = SyntheticLines::mostMarkers - fewestMarkers;
    const int phase = static_cast<int>(frame % (2 * range)); // up and down again
    return fewestMarkers + (phase < range ? phase : 2 * range - phase);
}

} // namespace

QByteArray SyntheticLines::bodyLine(qint64 frame, int bodies)
{
    const double time = static_cast<double>(frame) / framesPerSecond;
    const auto second = frame / framesPerSecond;
    LineText line;
    line << "6di " << bodies;
    for (int id = 0; id < bodies; ++id) {
        const double angle = std::fmod(time * 0.37 + id, 6.28);
        const double x = std::cos(angle);
        const double y = std::sin(angle);
        const bool lost = second % 7 == id;
        line << " [" << id << " " << static_cast<int>((second + id) % 3) << " " << (lost ? -1.0 : 1.0) << "]["
             << 900.0 * x << " " << 700.0 * y << " " << 1200.0 + 30.0 * x * y << "][" << x << " " << -y << " 0.0 " << y
             << " " << x << " 0.0 0.0 0.0 1.0]";
    }
    return line.take();
}

QByteArray SyntheticLines::markerLine(qint64 frame)
{
    const double angle = std::fmod(static_cast<double>(frame) * 0.0061, 6.28);
    const double x = 900.0 * std::cos(angle);
    const double y = 700.0 * std::sin(angle);
    const int markers = markersOf(frame);
    LineText line;
    line << "3d " << markers;
    for (int i = 0; i < markers; ++i)
        line << " [" << 1 + i * 7 << " 1.0][" << x + i << " " << y - i << " " << 1200.0 + i << "]";
    return line.take();
}
