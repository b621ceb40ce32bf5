// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/angles.h"
#include "tests/support/repetitions.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

using Rotation = std::array<float, 9>;
using Angles = std::array<float, 3>;

/// The angles by the book: what the C library gives in single precision, and each product in double precision.
Angles plainAngles(const Rotation &r)
{
    const auto inDegrees = [](float radians) {
        return static_cast<float>(static_cast<double>(radians) * (180.0 / 3.14159265358979323846));
    };
    Angles angles{};
    angles[1] = inDegrees(::asinf(r[6]));
    if ((r[7] == 0.0F && r[8] == 0.0F) || (r[3] == 0.0F && r[0] == 0.0F)) {
        angles[0] = inDegrees(::atan2f(r[5], r[4]));
        return angles;
    }
    angles[0] = inDegrees(-::atan2f(r[7], r[8]));
    angles[2] = inDegrees(-::atan2f(r[3], r[0]));
    return angles;
}

/// \a value moved by \a steps of its last place.
float moved(float value, int steps)
{
    const float towards = steps < 0 ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    for (int i = 0; i < std::abs(steps); ++i)
        value = std::nextafter(value, towards);
    return value;
}

Rotation randomRotation(std::mt19937_64 &random)
{
    std::array<float, 4> q{};
    float norm = 0.0F;
    for (float &component : q) {
        component = static_cast<float>(static_cast<qint64>(random())) * 0x1p-63F;
        norm += component * component;
    }
    norm = std::sqrt(norm);
    for (float &component : q)
        component /= norm;
    const auto [w, x, y, z] = q;
    return {1 - 2 * (y * y + z * z), 2 * (x * y - w * z),     2 * (x * z + w * y),
            2 * (x * y + w * z),     1 - 2 * (x * x + z * z), 2 * (y * z - w * x),
            2 * (x * z - w * y),     2 * (y * z + w * x),     1 - 2 * (x * x + y * y)};
}

/// Puts \a rotation on a border of the degenerate cases, or up to two last places off it.
void moveToBorder(Rotation &rotation, std::mt19937_64 &random)
{
    quint64 bits = random();
    const auto step = [&bits] {
        const int steps = static_cast<int>(bits % 5) - 2;
        bits /= 5;
        return steps;
    };
    const auto zero = [&bits] {
        bits /= 2;
        return bits % 2 == 0 ? 0.0F : -0.0F;
    };
    const quint64 which = bits % 4;
    bits /= 4;
    if (which != 0) {
        rotation[7] = moved(zero(), step());
        rotation[8] = moved(zero(), step());
        rotation[6] = moved(bits % 2 == 0 ? 1.0F : -1.0F, step());
    }
    if (which != 1) {
        rotation[3] = moved(zero(), step());
        rotation[0] = moved(zero(), step());
    }
    if (which == 3) {
        rotation[4] = moved(zero(), step());
        rotation[5] = moved(zero(), step());
    }
}

bool sameBits(const Angles &left, const Angles &right)
{
    return std::memcmp(left.data(), right.data(), sizeof left) == 0;
}

QString text(const Rotation &rotation)
{
    QStringList numbers;
    for (const float number : rotation)
        numbers << QString::number(static_cast<double>(number), 'g', 9);
    return numbers.join(QLatin1Char(' '));
}

} // namespace

/// The angles of very many rotations, bit for bit those of a plain reference.
class TestManyAngles : public QObject {
    Q_OBJECT

private slots:
    void agreeWithTheReference();
};

void TestManyAngles::agreeWithTheReference()
{
    std::mt19937_64 random(720);
    const auto [wanted, least] = repetitions(1'000'000, 1'000'000'000);
    const TimeLimit limit(10'000);
    qint64 compared = 0;
    qint64 degenerate = 0;
    while (compared < wanted && !limit.isOver()) {
        for (int i = 0; i < 10'000; ++i, ++compared) {
            Rotation rotation = randomRotation(random);
            if (i % 2 == 1)
                moveToBorder(rotation, random);
            const Angles angles = anglesOfRotation(rotation);
            if (!sameBits(angles, plainAngles(rotation)))
                QFAIL(qPrintable(QStringLiteral("other angles for %1").arg(text(rotation))));
            const bool isDegenerate =
                (rotation[7] == 0.0F && rotation[8] == 0.0F) || (rotation[3] == 0.0F && rotation[0] == 0.0F);
            degenerate += isDegenerate ? 1 : 0;
        }
    }
    qInfo("%lld of %lld rotations compared, %lld of them degenerate", compared, wanted, degenerate);
    QVERIFY(compared >= least);
    QVERIFY(degenerate > compared / 100);
    QVERIFY(degenerate < compared / 2); // so that the borders' other side was seen as well
}

QTEST_APPLESS_MAIN(TestManyAngles)
#include "tst_manyangles.moc"
