// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/sensorfixture.h"

#include <QtTest>

/// When the next polling pass is, and what starts the schedule over.
class TestSensorSchedule : public QObject {
    Q_OBJECT

private slots:
    void schedule();
    void returningSensorStartsTheScheduleOver();
    void returningSensorStartsAnEndedScheduleOver();
    void sensorOfTheFirstPassStartsTheScheduleOver();
    void absentRowsCountTheHeadRow_data();
    void absentRowsCountTheHeadRow();
    void sensorThatCannotBeAskedForIsNotAbsent();
    void otherLinesDoNotStartItOver_data();
    void otherLinesDoNotStartItOver();
};

void TestSensorSchedule::schedule()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.sensorTimer().interval(), 1000);
    QVERIFY(fixture.sensorTimer().isActive());
    QList<int> intervals;
    for (int i = 0; i < 60; ++i) {
        fixture.tick();
        intervals << fixture.sensorTimer().interval();
    }
    QList<int> expected; // the first entry was for the pass of the configuration
    for (const auto &[count, interval] :
         {std::pair{29, 2000}, std::pair{15, 4000}, std::pair{8, 8000}, std::pair{4, 16000}, std::pair{4, 30000}}) {
        for (int i = 0; i < count; ++i)
            expected << interval;
    }
    QCOMPARE(intervals, expected);
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.sensorTimer().interval(), 1000);
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 2000);
}

void TestSensorSchedule::returningSensorStartsTheScheduleOver()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.answer("inertial sensor_present d01", "no");
    for (int i = 0; i < 40; ++i)
        fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(1, "3", "1.0", "1 2 3")), 0); // row 1 is absent
    QCOMPARE(fixture.sensorTimer().interval(), 4000); // not before the next pass
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 2000);
    for (int i = 0; i < 29; ++i)
        fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 2000);
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
}

void TestSensorSchedule::returningSensorStartsAnEndedScheduleOver()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.answer("inertial sensor_present d01", "no");
    for (int i = 0; i < 100; ++i)
        fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 30000); // where a panel is after five minutes, for the rest of its weeks
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(1, "3", "1.0", "1 2 3")), 0);
    for (int i = 0; i < 30; ++i) {
        fixture.tick();
        QCOMPARE(fixture.sensorTimer().interval(), 2000);
    }
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
}

void TestSensorSchedule::sensorOfTheFirstPassStartsTheScheduleOver()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(1, "1", "1.0", "1 2 3")), 0); // present, but shown as absent
    for (int i = 0; i < 30; ++i)
        fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 2000); // without the line it would be 4000 by now
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
}

void TestSensorSchedule::absentRowsCountTheHeadRow_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("interval");
    QTest::newRow("the line of its table row starts the schedule over") << 2 << 2000;
    QTest::newRow("the line before it does not") << 1 << 4000;
}

void TestSensorSchedule::absentRowsCountTheHeadRow()
{
    QFETCH(const int, id);
    QFETCH(const int, interval);
    SensorFixture fixture;
    fixture.answerHead();
    fixture.createConfiguredPanel();
    fixture.answer("inertial sensor_present d01", "no");
    for (int i = 0; i < 40; ++i)
        fixture.tick();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(id, "1", "1.0", "1 2 3")), 0);
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), interval);
}

void TestSensorSchedule::sensorThatCannotBeAskedForIsNotAbsent()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.refuse("inertial sensor_present d01");
    for (int i = 0; i < 40; ++i)
        fixture.tick();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(1, "1", "1.0", "1 2 3")), 0);
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
}

void TestSensorSchedule::otherLinesDoNotStartItOver_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("present");
    QTest::newRow("the lowest bit of the state is not set") << "6di 1 " + bodyText(1, "2", "1.0", "1 2 3") << false;
    QTest::newRow("another body") << "6di 1 " + bodyText(0, "1", "1.0", "1 2 3") << false;
    QTest::newRow("a line that breaks off") << "6di 2 " + bodyText(1, "1", "1.0", "1 2 3") << false;
    QTest::newRow("no sensor is absent") << "6di 1 " + bodyText(1, "1", "1.0", "1 2 3") << true;
}

void TestSensorSchedule::otherLinesDoNotStartItOver()
{
    QFETCH(const QByteArray, line);
    QFETCH(const bool, present);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.answer(QStringLiteral("inertial sensor_present d01"),
                   present ? QStringLiteral("yes") : QStringLiteral("no"));
    for (int i = 0; i < 40; ++i)
        fixture.tick();
    fixture.send("6di", line);
    fixture.tick();
    QCOMPARE(fixture.sensorTimer().interval(), 4000);
}

QTEST_MAIN(TestSensorSchedule)
#include "tst_sensorschedule.moc"
