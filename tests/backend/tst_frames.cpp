// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/frame.h"
#include "backend/motion.h"
#include "backend/randomstream.h"
#include "tests/backend/model.h"

#include <QtTest>

#include <cmath>

using namespace backend;

class TestFrames : public QObject {
    Q_OBJECT

private slots:
    void randomNumbersAreEven();
    void losesOncePerStretch_data();
    void losesOncePerStretch();
    void rowsAndIds_data();
    void rowsAndIds();
    void headTargetInFront_data();
    void headTargetInFront();
    void theHeadTargetInUseIsShown();
    void unusedBodiesAreNotTracked();
    void states_data();
    void states();
    void aLostBodyStaysButTurns();
    void orbit_data();
    void orbit();
    void angles_data();
    void angles();
    void markersComeAndGo();
};

namespace {

/// One body that is lost half of the time, with or without a sensor.
Scenario losing(bool withSensor, bool present, const ProtocolVersion &version)
{
    Scenario scenario;
    scenario.version = version;
    scenario.bodies.resize(1);
    scenario.bodies[0].dropouts = {10.0, 5.0};
    if (withSensor) {
        scenario.sensors.resize(1);
        scenario.sensors[0].body = 1;
        scenario.sensors[0].present = present;
    }
    return scenario;
}

} // namespace

void TestFrames::randomNumbersAreEven()
{
    std::array<int, 10> counts{};
    for (quint64 index = 0; index < 10000; ++index) {
        const double value = uniform(3, RandomStream::Body, 1, index);
        QVERIFY(value >= 0.0 && value < 1.0);
        ++counts[static_cast<std::size_t>(value * 10.0)];
    }
    for (const int count : counts)
        QVERIFY2(count > 850 && count < 1150, qPrintable(QString::number(count)));
    QVERIFY(uniform(3, RandomStream::Body, 1, 0) != uniform(4, RandomStream::Body, 1, 0));
    QVERIFY(uniform(3, RandomStream::Body, 1, 0) != uniform(3, RandomStream::Head, 1, 0));
    QVERIFY(uniform(3, RandomStream::Body, 1, 0) != uniform(3, RandomStream::Body, 2, 0));
}

void TestFrames::losesOncePerStretch_data()
{
    QTest::addColumn<double>("every");
    QTest::addColumn<double>("lasting");
    QTest::addColumn<int>("lostSteps");
    QTest::newRow("never") << 0.0 << 0.0 << 0;
    QTest::newRow("for no time at all") << 10.0 << 0.0 << 0;
    QTest::newRow("a quarter of the time") << 10.0 << 2.5 << 25000;
    QTest::newRow("always") << 10.0 << 10.0 << 100000;
}

void TestFrames::losesOncePerStretch()
{
    QFETCH(double, every);
    QFETCH(double, lasting);
    QFETCH(int, lostSteps);
    int lost = 0;
    for (int step = 0; step < 100000; ++step) {
        const double seconds = 0.01 * step;
        const std::optional<double> since = lostSince({every, lasting}, 1, RandomStream::Body, 1, seconds);
        if (!since)
            continue;
        ++lost;
        QVERIFY(*since <= seconds && seconds < *since + lasting);
        QCOMPARE(std::floor(*since / every), std::floor(seconds / every));
    }
    QVERIFY2(std::abs(lost - lostSteps) <= 200, qPrintable(QString::number(lost)));
}

void TestFrames::rowsAndIds_data()
{
    QTest::addColumn<bool>("withHead");
    QTest::addColumn<int>("rows");
    QTest::newRow("body n has id n - 1 without a head target") << false << 3;
    QTest::newRow("body n has id n after a head target") << true << 4;
}

void TestFrames::rowsAndIds()
{
    QFETCH(bool, withHead);
    QFETCH(int, rows);
    Scenario scenario = everything();
    scenario.wandor.multiuserWithHead = withHead;
    scenario.bodies[0].motion.position = {7.0, 8.0, 9.0};
    const QVector<BodySample> samples = bodiesAt(scenario, 0.0);
    QCOMPARE(samples.size(), rows);
    for (int row = 0; row < rows; ++row)
        QCOMPARE(samples[row].id, row);
    QCOMPARE(samples[withHead ? 1 : 0].pose.position, Vector3({7.0, 8.0, 9.0}));
}

void TestFrames::headTargetInFront_data()
{
    QTest::addColumn<QByteArray>("flags"); // available, in use, with head available, with head in use
    QTest::addColumn<int>("minor");
    QTest::addColumn<int>("heads");
    QTest::addColumn<bool>("inFront");
    QTest::newRow("everything on") << QByteArray("yyyy") << 13 << 2 << true;
    QTest::newRow("several users are not offered") << QByteArray("nyyy") << 13 << 2 << false;
    QTest::newRow("one user only") << QByteArray("ynyy") << 13 << 2 << false;
    QTest::newRow("head targets are not offered") << QByteArray("yyny") << 13 << 2 << false;
    QTest::newRow("before 0.13 they are not asked for") << QByteArray("yyny") << 12 << 2 << true;
    QTest::newRow("head targets are off") << QByteArray("yyyn") << 13 << 2 << false;
    QTest::newRow("there is no head target") << QByteArray("yyyy") << 13 << 0 << false;
}

void TestFrames::headTargetInFront()
{
    QFETCH(QByteArray, flags);
    QFETCH(int, minor);
    QFETCH(int, heads);
    QFETCH(bool, inFront);
    Scenario scenario = withVersion(everything(), {0, minor, 0});
    scenario.wandor.multiuserAvailable = flags[0] == 'y';
    scenario.wandor.multiuser = flags[1] == 'y';
    scenario.wandor.multiuserWithHeadAvailable = flags[2] == 'y';
    scenario.wandor.multiuserWithHead = flags[3] == 'y';
    scenario.wandor.heads.resize(heads);
    QCOMPARE(hasHeadTarget(scenario), inFront);
}

void TestFrames::theHeadTargetInUseIsShown()
{
    Scenario scenario = everything();
    scenario.wandor.heads[0].motion.position = {1.0, 1.0, 1.0};
    scenario.wandor.heads[1].motion.position = {2.0, 2.0, 2.0};
    QVERIFY(bodiesAt(scenario, 0.0).first().optical);
    QCOMPARE(bodiesAt(scenario, 0.0).first().pose.position, Vector3({2.0, 2.0, 2.0}));
    scenario.wandor.heads[1].active = false;
    QVERIFY(!bodiesAt(scenario, 0.0).first().optical);
}

void TestFrames::unusedBodiesAreNotTracked()
{
    Scenario scenario = everything();
    scenario.wandor.multiuser = false;
    scenario.bodies[1].active = false;
    scenario.bodies[2].active = true;
    const QVector<BodySample> samples = bodiesAt(scenario, 0.0);
    QVERIFY(samples[0].optical);
    QVERIFY(!samples[1].optical && !samples[1].inertial); // switched off, with a sensor
    QVERIFY(!samples[2].optical && !samples[2].inertial); // not calibrated
}

void TestFrames::states_data()
{
    QTest::addColumn<bool>("withSensor");
    QTest::addColumn<bool>("present");
    QTest::addColumn<int>("minor");
    QTest::addColumn<bool>("inertial");
    QTest::newRow("no sensor") << false << false << 12 << false;
    QTest::newRow("a sensor in reach") << true << true << 12 << true;
    QTest::newRow("a sensor out of reach") << true << false << 12 << false;
    QTest::newRow("a backend that knows no sensors") << true << true << 11 << false;
}

void TestFrames::states()
{
    QFETCH(bool, withSensor);
    QFETCH(bool, present);
    QFETCH(int, minor);
    QFETCH(bool, inertial);
    const Scenario scenario = losing(withSensor, present, {1, minor, 0});
    int seen = 0;
    int lost = 0;
    for (int step = 0; step < 1000; ++step) {
        const BodySample sample = bodiesAt(scenario, 0.1 * step).first();
        ++(sample.optical ? seen : lost);
        QCOMPARE(sample.inertial, inertial);
    }
    QVERIFY2(std::abs(seen - lost) <= 40, qPrintable(QStringLiteral("%1 %2").arg(seen).arg(lost)));
}

void TestFrames::aLostBodyStaysButTurns()
{
    Scenario scenario = losing(true, true, {2, 0, 0});
    Motion &motion = scenario.bodies[0].motion;
    motion.kind = Motion::Kind::Orbit;
    motion.radius = 100.0;
    motion.turn = {0.0, 0.0, 10.0};
    int compared = 0;
    for (double seconds = 0.1; seconds < 100.0; seconds += 0.1) {
        const BodySample before = bodiesAt(scenario, seconds - 0.1).first();
        const BodySample sample = bodiesAt(scenario, seconds).first();
        if (before.optical || sample.optical)
            continue;
        ++compared;
        const bool sameLoss = before.pose.position == sample.pose.position;
        const bool nextLoss = std::floor((seconds - 0.1) / 10.0) != std::floor(seconds / 10.0);
        QVERIFY(sameLoss || nextLoss);
        QVERIFY(before.pose.rotation != sample.pose.rotation);
    }
    QVERIFY(compared > 300);
}

void TestFrames::orbit_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("rz");
    QTest::newRow("at the start") << 0.0 << 10.0 << 120.0 << 5.0;
    QTest::newRow("after a quarter") << 2.0 << -90.0 << 20.0 << 25.0;
    QTest::newRow("after one round") << 8.0 << 10.0 << 120.0 << 85.0;
    QTest::newRow("after a thousand rounds") << 8000.0 << 10.0 << 120.0 << 85.0;
    QTest::newRow("turned beyond half a turn") << 18.0 << -90.0 << 20.0 << -175.0;
}

void TestFrames::orbit()
{
    QFETCH(double, seconds);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, rz);
    Motion motion;
    motion.kind = Motion::Kind::Orbit;
    motion.position = {10.0, 20.0, 30.0};
    motion.angles = {0.0, 0.0, 5.0};
    motion.radius = 100.0;
    motion.period = 8.0;
    motion.phase = 90.0;
    motion.turn = {0.0, 0.0, 10.0};
    const Pose pose = poseAt(motion, seconds);
    QVERIFY(std::abs(pose.position[0] - x) < 1.0e-6);
    QVERIFY(std::abs(pose.position[1] - y) < 1.0e-6);
    QCOMPARE(pose.position[2], 30.0);
    QVERIFY(std::abs(std::remainder(eulerAngles(pose.rotation)[2] - rz, 360.0)) < 1.0e-6);
}

void TestFrames::angles_data()
{
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");
    QTest::addColumn<double>("rz");
    QTest::newRow("no turn") << 0.0 << 0.0 << 0.0;
    QTest::newRow("about x") << 30.0 << 0.0 << 0.0;
    QTest::newRow("about y") << 0.0 << -40.0 << 0.0;
    QTest::newRow("about z") << 0.0 << 0.0 << 170.0;
    QTest::newRow("about all") << -100.0 << 55.0 << -160.0;
    QTest::newRow("nearly upright") << 20.0 << 89.9 << -30.0;
}

void TestFrames::angles()
{
    QFETCH(double, rx);
    QFETCH(double, ry);
    QFETCH(double, rz);
    const auto turned = [](double degrees, std::size_t axis, Vector3 v) {
        const double angle = degrees * 3.14159265358979 / 180.0;
        const std::size_t j = (axis + 1) % 3;
        const std::size_t k = (axis + 2) % 3;
        const Vector3 old = v;
        v[j] = std::cos(angle) * old[j] - std::sin(angle) * old[k];
        v[k] = std::sin(angle) * old[j] + std::cos(angle) * old[k];
        return v;
    };
    const Rotation rotation = rotationOfAngles({rx, ry, rz});
    for (std::size_t column = 0; column < 3; ++column) {
        Vector3 axis{};
        axis[column] = 1.0;
        axis = turned(rx, 0, turned(ry, 1, turned(rz, 2, axis)));
        for (std::size_t row = 0; row < 3; ++row)
            QVERIFY(std::abs(rotation[3 * column + row] - axis[row]) < 1.0e-12);
    }
    const Vector3 angles = eulerAngles(rotation);
    QVERIFY(std::abs(angles[0] - rx) < 1.0e-6);
    QVERIFY(std::abs(angles[1] - ry) < 1.0e-6);
    QVERIFY(std::abs(angles[2] - rz) < 1.0e-6);
}

void TestFrames::markersComeAndGo()
{
    Scenario scenario;
    scenario.markers = {40, {100.0, 200.0, 300.0}, 500.0, 10.0, 4.0, {10.0, 2.5}};
    qsizetype seen = 0;
    for (int step = 0; step < 1000; ++step) {
        const QVector<MarkerSample> markers = markersAt(scenario, 0.1 * step);
        seen += markers.size();
        int last = 0;
        for (const MarkerSample &marker : markers) {
            QVERIFY(marker.id > last && marker.id <= 40);
            last = marker.id;
            QVERIFY(std::abs(marker.position[0] - 100.0) <= 510.0);
            QVERIFY(std::abs(marker.position[1] - 200.0) <= 510.0);
            QVERIFY(std::abs(marker.position[2] - 300.0) <= 500.0);
        }
    }
    QVERIFY2(std::abs(seen - 30000) < 1000, qPrintable(QString::number(seen))); // three quarters of 40 in 1000 frames
    const auto atStart = markersAt(scenario, 0.0);
    const auto later = markersAt(scenario, 1.0);
    QVERIFY(atStart.first().position != later.first().position || atStart.first().id != later.first().id);
}

QTEST_GUILESS_MAIN(TestFrames)
#include "tst_frames.moc"
