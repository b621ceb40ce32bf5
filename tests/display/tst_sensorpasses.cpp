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
    void clearingEndsAPassThatWaits_data();
    void clearingEndsAPassThatWaits();
    void partsThatOthersTakeMeanwhileAreLeftOut_data();
    void partsThatOthersTakeMeanwhileAreLeftOut();
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

void TestSensorPasses::clearingEndsAPassThatWaits_data()
{
    QTest::addColumn<int>("question"); // of the three of a pass
    QTest::newRow("for the presence") << 1;
    QTest::newRow("for the battery") << 2;
    QTest::newRow("for the temperature") << 3;
}

void TestSensorPasses::clearingEndsAPassThatWaits()
{
    QFETCH(const int, question);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    const int interval = fixture.sensorTimer().interval();
    int asked = 0;
    fixture.host.onCall = [&] {
        if (++asked == question)
            fixture.panel->clearData();
    };
    QCOMPARE(fixture.tick().size(), question);
    fixture.host.onCall = nullptr;
    QCOMPARE(fixture.table6d().rowCount(), 0);
    QCOMPARE(fixture.sensorTimer().interval(), interval);
    fixture.reconfigure();
    QCOMPARE(fixture.tick().size(), 3);
    QCOMPARE(fixture.battery().value(), 50);
}

void TestSensorPasses::partsThatOthersTakeMeanwhileAreLeftOut_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("isBar");
    QTest::addColumn<int>("battery"); // as it is shown, -1 without its bar
    QTest::addColumn<QString>("temperature"); // likewise
    const auto row = [](const char *name, int column, bool isBar, int battery, const char *temperature) {
        QTest::newRow(name) << column << isBar << battery << QString::fromUtf8(temperature);
    };
    row("the cell of the sensor, and its bars stay as they are", SensorColumn, false, 50, "31.5\302\260C");
    row("the cell of the battery, whose bar stays", BatteryColumn, false, 50, "40.0\302\260C");
    row("the cell of the temperature, whose bar stays", TemperatureColumn, false, 70, "31.5\302\260C");
    row("the battery's bar", BatteryColumn, true, -1, "40.0\302\260C");
    row("the temperature's bar", TemperatureColumn, true, 70, "");
}

void TestSensorPasses::partsThatOthersTakeMeanwhileAreLeftOut()
{
    QFETCH(const int, column);
    QFETCH(const bool, isBar);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    fixture.answer("inertial sensor_battery d01", "0.7");
    fixture.answer("inertial sensor_temperature d01", "40.0 0.5");
    fixture.host.onCall = [&] {
        if (isBar)
            fixture.table6d().removeCellWidget(1, column);
        else
            delete fixture.table6d().takeItem(1, column);
    };
    QCOMPARE(fixture.tick().size(), 3);
    fixture.host.onCall = nullptr;
    const auto *battery = qobject_cast<BatteryBar *>(fixture.table6d().cellWidget(1, BatteryColumn));
    const auto *temperature = qobject_cast<TemperatureBar *>(fixture.table6d().cellWidget(1, TemperatureColumn));
    QTEST(battery ? battery->value() : -1, "battery");
    QTEST(temperature ? temperature->text() : QString(), "temperature");
}

QTEST_MAIN(TestSensorPasses)
#include "tst_sensorpasses.moc"
