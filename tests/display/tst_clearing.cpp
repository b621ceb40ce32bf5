// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/fullbackend.h"

#include <QSignalSpy>
#include <QtTest>

/// What is left of a configuration after the host has cleared the panel.
class TestClearing : public QObject {
    Q_OBJECT

private slots:
    void clearedPanel();
    void clearedPanelWithoutConfiguration();
    void pollingEndsWhereSensorsAreNoLongerAvailable();
    void clearingStopsWhatItsConfigurationStarted_data();
    void clearingStopsWhatItsConfigurationStarted();
    void clearingEndsAChoiceOfTheOutputThatWaits();
};

void TestClearing::clearedPanel()
{
    FullBackend fixture;
    fixture.createConfiguredPanel();
    fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    fixture.send("3d", "3d 1 [5 1.0][1 2 3]");
    fixture.panel->updateView3d();
    fixture.panel->clearData();
    QCOMPARE(fixture.takeCalls(), QStringList());
    QCOMPARE(fixture.table6d().rowCount(), 0);
    QCOMPARE(fixture.table3d().rowCount(), 0);
    QVERIFY(!fixture.table6d().isHidden());
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 0);
    fixture.panel->timerUpdateInertialSensorInfo();
    QCOMPARE(fixture.takeCalls(), QStringList());

    QSignalSpy firstBodies(fixture.panel.get(), &DataDisplay::shallUpdateView6d);
    fixture.send("6di", "6di 0");
    QCOMPARE(firstBodies.count(), 0); // the configuration's first bodies came before
    fixture.panel->configurationChanged();
    fixture.panel->clearData();
    fixture.send("6di", "6di 0");
    QCOMPARE(firstBodies.count(), 1); // clearing doesn't take back that there is a new configuration
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.table6d().rowCount(), 4);
    QCOMPARE(fixture.background(0, BodyIdColumn), QBrush(Qt::red)); // nothing of before is left
}

void TestClearing::clearedPanelWithoutConfiguration()
{
    PanelFixture fixture;
    fixture.createPanel();
    fixture.takeCalls();
    fixture.panel->clearData();
    fixture.panel->timerUpdateInertialSensorInfo();
    fixture.panel->updateInertialSensorInfo(true);
    fixture.panel->onUpdateFilterActiveStatus(0);
    fixture.panel->updateView6d();
    QCOMPARE(fixture.takeCalls(), QStringList());
}

void TestClearing::pollingEndsWhereSensorsAreNoLongerAvailable()
{
    FullBackend fixture;
    fixture.createConfiguredPanel();
    QVERIFY(fixture.sensorTimer().isActive());
    fixture.answer("inertial available", "no");
    fixture.panel->configurationChanged();
    QVERIFY(!fixture.sensorTimer().isActive());
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QVERIFY(!fixture.table6d().isColumnHidden(column)); // as they were
}

void TestClearing::clearingStopsWhatItsConfigurationStarted_data()
{
    QTest::addColumn<QString>("command"); // of the last configuration before, answered with "none"
    QTest::addColumn<bool>("stopped");
    QTest::newRow("a sensor on a body") << "" << true;
    QTest::newRow("no sensor is on a body any more") << "inertial body_of_sensor d02" << false;
}

void TestClearing::clearingStopsWhatItsConfigurationStarted()
{
    QFETCH(const QString, command);
    QFETCH(const bool, stopped);
    FullBackend fixture;
    fixture.createConfiguredPanel();
    if (!command.isEmpty())
        fixture.answer(command, QStringLiteral("none"));
    fixture.panel->configurationChanged();
    QVERIFY(fixture.sensorTimer().isActive());
    fixture.panel->clearData();
    QVERIFY(!fixture.viewTimer().isActive());
    // The polling is the configuration's that found the sensor: one that finds none takes no notice of it.
    QCOMPARE(fixture.sensorTimer().isActive(), !stopped);
}

void TestClearing::clearingEndsAChoiceOfTheOutputThatWaits()
{
    FullBackend fixture;
    fixture.createConfiguredPanel();
    const QString waiting = QStringLiteral("requestString output available 6di");
    fixture.host.onCall = [&] {
        if (fixture.host.calls.last() == waiting.toLatin1())
            fixture.panel->clearData();
    };
    const QStringList calls = fixture.reconfigure();
    fixture.host.onCall = nullptr;
    QCOMPARE(calls.last(), waiting);
    QCOMPARE(fixture.table6d().rowCount(), 0);
}

QTEST_MAIN(TestClearing)
#include "tst_clearing.moc"
