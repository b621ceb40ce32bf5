// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/arrivaltimes.h"

#include <QTest>

#include <cmath>
#include <random>

using namespace host;
using namespace std::chrono_literals;
using Time = ArrivalTimes::Time;

/// Rates, gaps and frame times from the times at which lines came.
class ArrivalTimesTest : public QObject {
    Q_OBJECT

private slots:
    void ratesAreWithinOnePercent_data();
    void ratesAreWithinOnePercent();
    void ratesOfUnevenLinesAreTheirMean();
    void aSilenceLowersTheRate();
    void aChangeOfRateIsSeenWithinItsWindow();
    void thereIsNoRateBeforeTheSecondLine();
    void theFrameTimeIsAMedian();
    void theLongestGapCountsTheOneThatLasts();
    void aTimeThatGoesBackCountsAsTheSame();
};

namespace {

Time secondsOf(double seconds)
{
    return Time(std::llround(seconds * 1e9));
}

/// Lines at a steady rate until \a end; the first at 0.
ArrivalTimes steadyLines(double rate, double end)
{
    ArrivalTimes times;
    for (int line = 0; line / rate <= end; ++line)
        times.add(secondsOf(line / rate));
    return times;
}

} // namespace

void ArrivalTimesTest::ratesAreWithinOnePercent_data()
{
    QTest::addColumn<double>("rate");
    for (const double rate : {0.1, 0.3, 1.0, 1.7, 2.0, 9.7, 10.0, 60.0, 59.94, 300.0, 1000.0, 4999.0, 5000.0})
        QTest::newRow(qPrintable(QStringLiteral("%1 Hz").arg(rate))) << rate;
}

void ArrivalTimesTest::ratesAreWithinOnePercent()
{
    QFETCH(const double, rate);
    // At any moment between two lines, and at several ends.
    for (const double end : {2.5 / rate, 0.95 + 2.0 / rate, 3.21 + 2.0 / rate, 25.0 + 2.0 / rate}) {
        const ArrivalTimes times = steadyLines(rate, end);
        for (const double part : {0.0, 0.3, 0.99}) {
            const Time now = times.last() + secondsOf(part / rate);
            for (const Time window : {Time(1s), Time(10s)}) {
                const std::optional<double> measured = times.rate(window, now);
                QVERIFY(measured.has_value());
                QVERIFY2(std::abs(*measured - rate) <= 0.01 * rate, qPrintable(QString::number(*measured)));
            }
        }
    }
}

void ArrivalTimesTest::ratesOfUnevenLinesAreTheirMean()
{
    std::mt19937 generator(3);
    std::uniform_real_distribution<double> jitter(-0.4, 0.4);
    ArrivalTimes times;
    for (int line = 1; line < 3000; ++line)
        times.add(secondsOf((line + jitter(generator)) / 100.0));
    QVERIFY(std::abs(*times.rate(1s, times.last()) - 100.0) <= 1.0);
    QVERIFY(std::abs(*times.rate(10s, times.last()) - 100.0) <= 0.1);

    ArrivalTimes batches; // ten lines together, ten times a second
    for (int line = 0; line < 3000; ++line)
        batches.add(secondsOf(line / 10 * 0.1));
    QVERIFY(std::abs(*batches.rate(10s, batches.last() + 99ms) - 100.0) <= 1.0);
}

void ArrivalTimesTest::aSilenceLowersTheRate()
{
    const ArrivalTimes times = steadyLines(60.0, 20.0);
    QVERIFY(std::abs(*times.rate(1s, times.last() + 400ms) - 60.0) < 0.6);
    QVERIFY(*times.rate(1s, times.last() + 700ms) < 40.0);
    QCOMPARE(*times.rate(1s, times.last() + 1200ms), 0.0);
    QVERIFY(std::abs(*times.rate(10s, times.last() + 5s) - 30.0) < 1.0);
    QCOMPARE(*times.rate(10s, times.last() + 11s), 0.0);

    const ArrivalTimes slow = steadyLines(0.1, 50.0);
    QCOMPARE(*slow.rate(1s, slow.last() + 8s), 0.1);
    QCOMPARE(*slow.rate(1s, slow.last() + 21s), 0.0);
}

void ArrivalTimesTest::aChangeOfRateIsSeenWithinItsWindow()
{
    ArrivalTimes times = steadyLines(60.0, 20.0);
    const Time change = times.last();
    for (int line = 1; line <= 1200; ++line)
        times.add(change + secondsOf(line / 1000.0));
    QVERIFY(std::abs(*times.rate(1s, times.last()) - 1000.0) < 10.0);
    QVERIFY(std::abs(*times.rate(10s, times.last()) - 172.8) < 2.0); // 1.2 s of one and 8.8 s of the other
}

void ArrivalTimesTest::thereIsNoRateBeforeTheSecondLine()
{
    ArrivalTimes times;
    QVERIFY(!times.rate(1s, 5s).has_value());
    times.add(1s);
    QVERIFY(!times.rate(1s, 1s).has_value());
    QVERIFY(!times.frameTime().has_value());
    times.add(3s);
    QCOMPARE(*times.rate(1s, 3s), 0.5);
}

void ArrivalTimesTest::theFrameTimeIsAMedian()
{
    ArrivalTimes times = steadyLines(10.0, 5.0);
    QCOMPARE(*times.frameTime(), Time(100ms));
    times.add(times.last() + 5s); // one that is late changes nothing
    QCOMPARE(*times.frameTime(), Time(100ms));
    for (int line = 0; line < 6; ++line)
        times.add(times.last() + 200ms);
    QCOMPARE(*times.frameTime(), Time(200ms));
}

void ArrivalTimesTest::theLongestGapCountsTheOneThatLasts()
{
    ArrivalTimes times;
    QCOMPARE(times.longestGap(5s), Time(0));
    times.add(1s);
    times.add(3s);
    times.add(4s);
    QCOMPARE(times.longestGap(4s), Time(2s));
    QCOMPARE(times.longestGap(9s), Time(5s));
}

void ArrivalTimesTest::aTimeThatGoesBackCountsAsTheSame()
{
    ArrivalTimes times;
    times.add(2s);
    times.add(1s);
    times.add(3s);
    QCOMPARE(times.last(), Time(3s));
    QCOMPARE(times.longestGap(3s), Time(1s));
    QCOMPARE(times.count(), 3ULL);
}

QTEST_APPLESS_MAIN(ArrivalTimesTest)
#include "tst_arrivaltimes.moc"
