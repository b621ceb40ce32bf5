// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/angles.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

using Rotation = std::array<float, 9>;
using Angles = std::array<float, 3>;

constexpr double degreesPerRadian = 57.29577951308232;

float degrees(float radians)
{
    return static_cast<float>(static_cast<double>(radians) * degreesPerRadian);
}

Angles recomputed(const Rotation &r)
{
    const float ry = degrees(asinf(r[6]));
    const bool firstPairIsZero = r[7] == 0.0F && r[8] == 0.0F;
    const bool secondPairIsZero = r[3] == 0.0F && r[0] == 0.0F;
    if (firstPairIsZero || secondPairIsZero)
        return {degrees(atan2f(r[5], r[4])), ry, 0.0F};
    return {degrees(-atan2f(r[7], r[8])), ry, degrees(-atan2f(r[3], r[0]))};
}

/// Whether the bits are the same. The sign of a NaN is the compiler's choice: clang negates the factor in place of the
/// angle, GCC, which compiles what is shipped, does as it is written.
bool isSame(float a, float b)
{
#if defined(__clang__)
    if (std::isnan(a) && std::isnan(b))
        return true;
#endif
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// What is wrong with the angles of \a rotation; empty if every bit is as recomputed.
QString disagreement(const Rotation &rotation)
{
    const Angles got = anglesOfRotation(rotation);
    const Angles expected = recomputed(rotation);
    if (std::equal(got.begin(), got.end(), expected.begin(), isSame))
        return {};
    QString text = QStringLiteral("r:");
    for (const float number : rotation)
        text += QStringLiteral(" %1").arg(static_cast<double>(number), 0, 'g', 9);
    for (std::size_t i = 0; i < got.size(); ++i) {
        text += QStringLiteral("; %1 instead of %2")
                    .arg(static_cast<double>(got[i]), 0, 'g', 9)
                    .arg(static_cast<double>(expected[i]), 0, 'g', 9);
    }
    return text;
}

Rotation rotationOf(const QVector<float> &numbers)
{
    Rotation rotation{};
    std::copy(numbers.begin(), numbers.end(), rotation.begin());
    return rotation;
}

} // namespace

class AnglesTest : public QObject {
    Q_OBJECT

private slots:
    void knownRotations_data();
    void knownRotations();
    void thirdAngleOfTheDegenerateCaseIsPlusZero();
    void agreesOnEveryBorder();
    void agreesOnRandomRotations();
    void agreesOnRandomNumbers();
};

void AnglesTest::knownRotations_data()
{
    QTest::addColumn<QVector<float>>("rotation");
    QTest::addColumn<QVector<float>>("angles");
    using Floats = QVector<float>;
    const float half = 0.70710678F;
    const float denormal = std::numeric_limits<float>::denorm_min();
    QTest::newRow("no rotation") << Floats{1, 0, 0, 0, 1, 0, 0, 0, 1} << Floats{0, 0, 0};
    QTest::newRow("rx has the sign of minus r7") << Floats{1, 0, 0, 0, half, half, 0, half, half} << Floats{-45, 0, 0};
    QTest::newRow("rz has the sign of minus r3") << Floats{half, half, 0, half, half, 0, 0, 0, 1} << Floats{0, 0, -45};
    QTest::newRow("ry has the sign of r6") << Floats{half, 0, 0, 0, 1, 0, -half, 0, half} << Floats{0, -45, 0};
    QTest::newRow("ry 30 degrees") << Floats{1, 0, 0, 0, 1, 0, 0.5F, 0, 1} << Floats{0, 30, 0};
    QTest::newRow("r7 and r8 zero: rx is the angle of r5 and r4, with its own sign")
        << Floats{1, 0, 0, 1, 1, 1, 1, 0, 0} << Floats{45, 90, 0};
    QTest::newRow("r7 and r8 zero: r5 negative gives rx negative")
        << Floats{0, 0, 0, 0, 0, -1, 1, 0, 0} << Floats{-90, 90, 0};
    QTest::newRow("zeros with a minus sign are zeros")
        << Floats{1, 0, 0, 1, 1, 1, -1, -0.0F, -0.0F} << Floats{45, -90, 0};
    QTest::newRow("r3 and r0 zero are degenerate too") << Floats{0, 0, 0, 0, 1, 1, 0, 1, 1} << Floats{45, 0, 0};
    QTest::newRow("r7 alone zero is not degenerate") << Floats{1, 0, 0, 1, 1, 1, 0, 0, -1} << Floats{-180, 0, -45};
    QTest::newRow("r8 alone zero is not degenerate") << Floats{1, 0, 0, 1, 1, 1, 0, 1, 0} << Floats{-90, 0, -45};
    QTest::newRow("r7 and r3 zero are not degenerate") << Floats{-1, 0, 0, 0, 1, 1, 0, 0, 1} << Floats{0, 0, -180};
    QTest::newRow("the least number is not zero") << Floats{1, 0, 0, 1, 1, 1, 1, denormal, 0} << Floats{-90, 90, -45};
}

void AnglesTest::knownRotations()
{
    QFETCH(const QVector<float>, rotation);
    QFETCH(const QVector<float>, angles);
    const Angles got = anglesOfRotation(rotationOf(rotation));
    for (std::size_t i = 0; i < got.size(); ++i) {
        const float expected = angles[static_cast<int>(i)];
        QVERIFY2(std::fabs(got[i] - expected) < 0.00002F,
                 qPrintable(QStringLiteral("angle %1 is %2, not %3").arg(i).arg(got[i]).arg(expected)));
    }
    QCOMPARE(disagreement(rotationOf(rotation)), QString());
}

void AnglesTest::thirdAngleOfTheDegenerateCaseIsPlusZero()
{
    const Angles angles = anglesOfRotation({1, 0, 0, -1, 1, 1, -1, 0, 0});
    QCOMPARE(angles[2], 0.0F);
    QVERIFY(!std::signbit(angles[2]));
}

void AnglesTest::agreesOnEveryBorder()
{
    const float least = std::numeric_limits<float>::denorm_min();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const std::array<float, 11> borders{0.0F,  -0.0F,    least, -least, std::numeric_limits<float>::min(), 1.0F, -1.0F,
                                        1e30F, infinity, nan,   -nan};
    const std::array<float, 10> sines{
        0.0F,  -0.0F, least,   1.0F, -1.0F, std::nextafterf(1.0F, 2.0F), std::nextafterf(1.0F, 0.0F),
        -2.0F, nan,   infinity};
    std::size_t turn = 0;
    for (const float r0 : borders) {
        for (const float r3 : borders) {
            for (const float r7 : borders) {
                for (const float r8 : borders) {
                    ++turn;
                    const Rotation rotation{r0,
                                            nan,
                                            nan,
                                            r3,
                                            borders[turn % borders.size()],
                                            borders[turn / 7 % borders.size()],
                                            sines[turn % sines.size()],
                                            r7,
                                            r8};
                    const QString problem = disagreement(rotation);
                    QVERIFY2(problem.isEmpty(), qPrintable(problem));
                }
            }
        }
    }
}

void AnglesTest::agreesOnRandomRotations()
{
    std::mt19937_64 random(2023);
    const auto component = [&random] { return static_cast<double>(random()) * 0x1p-63 - 1.0; };
    for (int i = 0; i < 100000; ++i) {
        double w = component();
        double x = component();
        double y = component();
        double z = component();
        const double norm = std::sqrt(w * w + x * x + y * y + z * z);
        w /= norm;
        x /= norm;
        y /= norm;
        z /= norm;
        const std::array<double, 9> exact{1 - 2 * (y * y + z * z), 2 * (x * y - w * z),     2 * (x * z + w * y),
                                          2 * (x * y + w * z),     1 - 2 * (x * x + z * z), 2 * (y * z - w * x),
                                          2 * (x * z - w * y),     2 * (y * z + w * x),     1 - 2 * (x * x + y * y)};
        Rotation rotation{};
        std::transform(exact.begin(), exact.end(), rotation.begin(),
                       [](double number) { return static_cast<float>(number); });
        const QString problem = disagreement(rotation);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

void AnglesTest::agreesOnRandomNumbers()
{
    std::mt19937 random(2024);
    for (int i = 0; i < 100000; ++i) {
        Rotation rotation{};
        for (float &number : rotation) {
            const auto bits = random() % 4 == 0 ? 0U : static_cast<quint32>(random());
            std::memcpy(&number, &bits, sizeof number);
        }
        const QString problem = disagreement(rotation);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

QTEST_APPLESS_MAIN(AnglesTest)

#include "tst_angles.moc"
