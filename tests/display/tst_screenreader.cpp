// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/sensorfixture.h"

#include <QAccessible>
#include <QtTest>

namespace {

QString accessibleText(const QTableWidget &table, int row, int column)
{
    return table.model()->index(row, column).data(Qt::AccessibleTextRole).toString();
}

} // namespace

/// What the tables tell those who do not see them.
class TestScreenReader : public QObject {
    Q_OBJECT

private slots:
    void statesOfBodies_data();
    void statesOfBodies();
    void rowsWithoutData_data();
    void rowsWithoutData();
    void statesAreSignalled();
    void chargeAndTemperature_data();
    void chargeAndTemperature();
    void heldMarkerCellKeepsItsText();
};

void TestScreenReader::statesOfBodies_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &line, const char *expected) {
        QTest::newRow(name) << line << QString::fromLatin1(expected);
    };
    row("seen by cameras", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3"), "1, tracked by cameras");
    row("seen by cameras and a sensor", "6di 1 " + bodyText(0, "3", "1.0", "1 2 3"), "1, tracked by cameras");
    row("known by its sensor", "6di 1 " + bodyText(0, "1", "1.0", "1 2 3"), "1, tracked by its sensor alone");
    row("neither", "6di 1 " + bodyText(0, "0", "1.0", "1 2 3"), "1, lost");
    row("of a negative quality", "6di 1 " + bodyText(0, "2", "-1.0", "1 2 3"), "1, lost");
    row("not in the line", "6di 0", "1, lost");
}

void TestScreenReader::statesOfBodies()
{
    QFETCH(const QByteArray, line);
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3")), 0);
    fixture.panel->updateView6d();
    QCOMPARE(fixture.send("6di", line), 0);
    fixture.panel->updateView6d();
    QTEST(accessibleText(fixture.table6d(), 0, BodyIdColumn), "expected");
    QAccessibleInterface *const table = QAccessible::queryAccessibleInterface(&fixture.table6d());
    QTEST(table->tableInterface()->cellAt(0, BodyIdColumn)->text(QAccessible::Name), "expected");
}

void TestScreenReader::rowsWithoutData_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("expected");
    QTest::newRow("not calibrated") << "body calibrated standard b02"
                                    << "2, not calibrated";
    QTest::newRow("not active") << "body active standard b02"
                                << "2, not active";
    QTest::newRow("a head target that is not ready") << "body active multiuserwandor_head b01"
                                                     << "MUH, not calibrated";
}

void TestScreenReader::rowsWithoutData()
{
    QFETCH(const QString, command);
    QFETCH(const QString, expected);
    PanelFixture fixture;
    fixture.answerBodies(2);
    const bool isHead = expected.startsWith(QLatin1String("MUH"));
    if (isHead)
        fixture.answerHead();
    fixture.answer(command, QStringLiteral("no"));
    fixture.createConfiguredPanel();
    fixture.panel->updateView6d();
    QCOMPARE(accessibleText(fixture.table6d(), isHead ? 0 : 1, BodyIdColumn), expected);
}

void TestScreenReader::statesAreSignalled()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "0", "1.0", "1 2 3")), 0);
    fixture.panel->updateView6d();
    const QSignalSpy spy(fixture.table6d().model(), &QAbstractItemModel::dataChanged);
    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 3")), 0);
    fixture.panel->updateView6d();
    fixture.panel->updateView6d();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toModelIndex().column(), int(BodyIdColumn));
}

void TestScreenReader::chargeAndTemperature_data()
{
    QTest::addColumn<QString>("battery");
    QTest::addColumn<QString>("temperature");
    QTest::addColumn<QString>("charge");
    QTest::addColumn<QString>("degrees");
    QTest::newRow("both") << "0.71"
                          << "24.5 0.97"
                          << "71 %" << QStringLiteral("24.5 \u00B0C");
    QTest::newRow("more than full") << "1.5"
                                    << "24 1"
                                    << "150 %" << QStringLiteral("24.0 \u00B0C");
    QTest::newRow("no charge") << "0"
                               << "24.5 0.97"
                               << "" << QStringLiteral("24.5 \u00B0C");
    QTest::newRow("no temperature") << "0.71"
                                    << "0 0.5"
                                    << "71 %"
                                    << "";
}

void TestScreenReader::chargeAndTemperature()
{
    QFETCH(const QString, battery);
    QFETCH(const QString, temperature);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    fixture.answer(QStringLiteral("inertial sensor_battery d01"), battery);
    fixture.answer(QStringLiteral("inertial sensor_temperature d01"), temperature);
    fixture.tick();
    QTEST(accessibleText(fixture.table6d(), 1, BatteryColumn), "charge");
    QTEST(accessibleText(fixture.table6d(), 1, TemperatureColumn), "degrees");
    QCOMPARE(fixture.text(1, BatteryColumn), QString()); // the bar stands over the cell
    QCOMPARE(accessibleText(fixture.table6d(), 0, BatteryColumn), QString()); // no sensor
}

void TestScreenReader::heldMarkerCellKeepsItsText()
{
    PanelFixture fixture;
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("3d", "3d 2 [5 1.0][1 2 3] [6 1.0][4 5 6]"), 0);
    fixture.panel->updateView3d();
    QAccessibleInterface *const table = QAccessible::queryAccessibleInterface(&fixture.table3d());
    QAccessibleInterface *const cell = table->tableInterface()->cellAt(1, MarkerXColumn);
    const QPersistentModelIndex index = fixture.table3d().model()->index(1, MarkerXColumn);
    QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("4.00"));
    QCOMPARE(fixture.send("3d", "3d 3 [5 1.0][1 2 3] [6 1.0][7 5 6] [7 1.0][1 2 3]"), 0);
    fixture.panel->updateView3d();
    QVERIFY(cell->isValid());
    QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("7.00"));
    QVERIFY(index.isValid());
}

QTEST_MAIN(TestScreenReader)
#include "tst_screenreader.moc"
