// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/sensorfixture.h"

#include <QProgressBar>
#include <QtTest>

/// Polling passes over the sensors of a backend that is slow, of odd names, or configured again and again.
class TestSensorPasses : public QObject {
    Q_OBJECT

private slots:
    void idGoesBackInTheBackendsBytes();
    void barsDoNotPileUpWithoutAnEventLoop();
    void tickWhileAPassWaitsIsLeftOut();
    void firstPassEndsOneThatWaits();
};

void TestSensorPasses::idGoesBackInTheBackendsBytes()
{
    SensorFixture fixture;
    const QByteArray id = "d\xE4\xFF 1 'x'";
    fixture.host.answers.insert("body inertial_sensor standard b02", id);
    fixture.host.answers.insert("inertial sensor_present " + id, "yes");
    fixture.host.answers.insert("inertial sensor_battery " + id, "0.5");
    fixture.host.answers.insert("inertial sensor_temperature " + id, "31.5 0.97");
    fixture.createConfiguredPanel();
    fixture.host.takeCalls();
    fixture.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(
        fixture.host.takeCalls(),
        QByteArrayList({"requestString inertial sensor_present " + id, "requestDouble inertial sensor_battery " + id,
                        "requestDoubles inertial sensor_temperature " + id}));
    QCOMPARE(fixture.battery().value(), 50);
}

void TestSensorPasses::barsDoNotPileUpWithoutAnEventLoop()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    for (int round = 0; round < 200; ++round)
        fixture.panel->configurationChanged();
    QCOMPARE(fixture.table6d().findChildren<QProgressBar *>().size(), 2);
    fixture.panel->clearData();
    QCOMPARE(fixture.table6d().findChildren<QProgressBar *>().size(), 0);
}

void TestSensorPasses::tickWhileAPassWaitsIsLeftOut()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    int depth = 0;
    int deepest = 0;
    fixture.host.onCall = [&] { // a host that runs an event loop while it answers, longer than the timer's interval
        ++depth;
        deepest = qMax(deepest, depth);
        fixture.panel->timerUpdateInertialSensorInfo();
        --depth;
    };
    fixture.tick();
    fixture.host.onCall = nullptr;
    QCOMPARE(deepest, 1);
    QCOMPARE(fixture.battery().value(), 50);
    QCOMPARE(fixture.tick().size(), 3); // and the next pass asks again
}

void TestSensorPasses::firstPassEndsOneThatWaits()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    QVERIFY(!fixture.battery().isHidden());
    fixture.host.onCall = [&] {
        fixture.host.onCall = nullptr;
        fixture.panel->updateInertialSensorInfo(true);
    };
    QCOMPARE(fixture.tick().size(), 2); // the question that waited, and that of the first pass
    QVERIFY(fixture.battery().isHidden());
}

QTEST_MAIN(TestSensorPasses)
#include "tst_sensorpasses.moc"
