// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/livelines.h"

#include <QString>

#include <array>
#include <cmath>
#include <random>

namespace {

constexpr std::size_t differentLines = 64;

class LineMaker {
public:
    QByteArray line(const QByteArray &tag, int count)
    {
        QByteArray text = tag + ' ' + QByteArray::number(count);
        for (int id = 0; id < count; ++id) {
            text += " [" + QByteArray::number(id);
            if (tag == "6di")
                text += " 2";
            text += ' ' + QByteArray::number(uniform(0.0, 1.0), 'f', 3) + "][" + position();
            if (tag == "6d")
                text += ' ' + numbers(3, 180.0, 4);
            text += ']';
            if (tag != "3d")
                text += '[' + rotation() + ']';
        }
        return text;
    }

private:
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator); }

    QByteArray numbers(int count, double limit, int decimals)
    {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += (i > 0 ? " " : "") + QByteArray::number(uniform(-limit, limit), 'f', decimals);
        return text;
    }

    /// From some millimetres to some metres: one to four digits before the point.
    QByteArray position() { return numbers(3, std::pow(10.0, uniform(0.5, 3.6)), 3); }

    QByteArray rotation()
    {
        const double a = uniform(-3.1, 3.1);
        const double b = uniform(-1.5, 1.5);
        const double c = uniform(-3.1, 3.1);
        const std::array<double, 9> r{
            std::cos(b) * std::cos(c),
            std::cos(a) * std::sin(c) + std::sin(a) * std::sin(b) * std::cos(c),
            std::sin(a) * std::sin(c) - std::cos(a) * std::sin(b) * std::cos(c),
            -std::cos(b) * std::sin(c),
            std::cos(a) * std::cos(c) - std::sin(a) * std::sin(b) * std::sin(c),
            std::sin(a) * std::cos(c) + std::cos(a) * std::sin(b) * std::sin(c),
            std::sin(b),
            -std::sin(a) * std::cos(b),
            std::cos(a) * std::cos(b),
        };
        QByteArray text;
        for (const double number : r)
            text += (text.isEmpty() ? "" : " ") + QByteArray::number(number, 'f', 6);
        return text;
    }

    std::mt19937 generator{7};
};

} // namespace

LiveLines::LiveLines(const QByteArray &tag, int count)
{
    LineMaker maker;
    for (std::size_t i = 0; i < differentLines; ++i)
        lines.push_back(maker.line(tag, count));
}

const QByteArray &LiveLines::next()
{
    const QByteArray &line = lines[place];
    place = (place + 1) % lines.size();
    return line;
}

qint64 LiveLines::bytes() const
{
    qint64 sum = 0;
    for (const QByteArray &line : lines)
        sum += line.size();
    return sum;
}
