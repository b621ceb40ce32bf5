// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "display/batterybar.h"
#include "display/temperaturebar.h"
#include "tests/display/panelfixture.h"

#include <QtTest>

namespace {

constexpr int centre = Qt::AlignHCenter | Qt::AlignVCenter;
constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
const QBrush transparent(Qt::transparent);

QStringList columnTexts(const PanelFixture &bench, int column)
{
    QStringList texts;
    for (int row = 0; row < bench.table6d().rowCount(); ++row)
        texts << bench.text(row, column);
    return texts;
}

} // namespace

/// What a reconfiguration puts into the table of bodies.
class TestBodyRows : public QObject {
    Q_OBJECT

private slots:
    void cellsOfABody();
    void uncalibratedBody();
    void headRowComesFirst();
    void names_data();
    void names();
    void filterStates_data();
    void filterStates();
    void filterStateIsReadAnew();
    void bodyNumbersGrow();
    void badCounts_data();
    void badCounts();
    void sensorCells_data();
    void sensorCells();
    void cellsWithoutSensor();
    void barsGoWithTheirSensor();
};

void TestBodyRows::cellsOfABody()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.createConfiguredPanel();
    const QTableWidget &table = bench.table6d();
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(columnTexts(bench, BodyIdColumn), QStringList({QStringLiteral("1"), QStringLiteral("2")}));
    QCOMPARE(columnTexts(bench, NameColumn), QStringList({QStringLiteral("Body 1"), QStringLiteral("Body 2")}));
    for (const int column : {BodyIdColumn, NameColumn, FilterColumn, SensorColumn, BatteryColumn, TemperatureColumn})
        QCOMPARE(table.item(1, column)->textAlignment(), centre);
    for (int column = XColumn; column <= RzColumn; ++column) {
        QCOMPARE(table.item(1, column)->text(), QStringLiteral("-"));
        QCOMPARE(table.item(1, column)->textAlignment(), right);
    }
    QCOMPARE(table.item(1, BodyIdColumn)->whatsThis(), QString());
}

void TestBodyRows::uncalibratedBody()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.answer("body calibrated standard b01", "Yes");
    bench.answer("body filter6d_enabled standard b01", "yes");
    bench.createPanel();
    const QStringList calls = bench.reconfigure();
    QVERIFY(!calls.contains(QStringLiteral("requestString body desc standard b01")));
    QVERIFY(!calls.contains(QStringLiteral("requestString body filter6d_enabled standard b01")));
    const QTableWidgetItem *const id = bench.table6d().item(0, BodyIdColumn);
    QCOMPARE(id->text(), QStringLiteral("1"));
    QCOMPARE(id->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
    QCOMPARE(id->background(), transparent);
    QCOMPARE(bench.text(0, NameColumn), QString());
    QCOMPARE(bench.text(0, FilterColumn), QString());
}

void TestBodyRows::headRowComesFirst()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.answerHead();
    bench.answer("body filter6d_enabled standard b01", "yes");
    bench.answer("body calibrated standard b02", "no");
    bench.createConfiguredPanel();
    QCOMPARE(columnTexts(bench, BodyIdColumn),
             QStringList({QStringLiteral("MUH"), QStringLiteral("2"), QStringLiteral("3")}));
    QCOMPARE(columnTexts(bench, NameColumn), QStringList({QString(), QStringLiteral("Body 1"), QString()}));
    QCOMPARE(columnTexts(bench, FilterColumn), QStringList({QString(), QStringLiteral("active"), QString()}));
    QCOMPARE(bench.table6d().item(0, BodyIdColumn)->textAlignment(), centre);
    QCOMPARE(bench.text(0, XColumn), QStringLiteral("-"));
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QVERIFY2(!bench.table6d().item(0, column), "the head row has no sensor cells");
    QCOMPARE(bench.table6d().item(2, BodyIdColumn)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
}

void TestBodyRows::names_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("name");
    QTest::newRow("a plain name") << "Flystick"
                                  << "Flystick";
    QTest::newRow("quotes are removed") << "\"Left hand\""
                                        << "Left hand";
    QTest::newRow("all of them") << "\"a\"\"b\" \""
                                 << "ab ";
    QTest::newRow("apostrophes stay") << "'x'"
                                      << "'x'";
    QTest::newRow("it is UTF-8") << QStringLiteral("K\u00F6rper \u5B57") << QStringLiteral("K\u00F6rper \u5B57");
    QTest::newRow("formats are text") << "%s%n%1"
                                      << "%s%n%1";
    QTest::newRow("markup is text") << "<b>x</b>"
                                    << "<b>x</b>";
    QTest::newRow("an answer that fills all of its room")
        << QString(199, QLatin1Char('n')) << QString(199, QLatin1Char('n'));
}

void TestBodyRows::names()
{
    QFETCH(const QString, answer);
    QFETCH(const QString, name);
    PanelFixture bench;
    bench.answerBodies(1);
    bench.answer(QStringLiteral("body desc standard b01"), answer);
    bench.createConfiguredPanel();
    QCOMPARE(bench.text(0, NameColumn), name);
    bench.refuse("body desc standard b01");
    QCOMPARE(PanelFixture::logs(bench.reconfigure()), QStringList());
    QCOMPARE(bench.text(0, NameColumn), QString());
}

void TestBodyRows::filterStates_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");
    QTest::newRow("yes") << "yes"
                         << "active";
    QTest::newRow("no") << "no"
                        << "";
    QTest::newRow("only exactly yes counts") << "Yes"
                                             << "";
    QTest::newRow("with a blank it isn't") << "yes "
                                           << "";
    QTest::newRow("a failure") << "<failure>"
                               << "";
}

void TestBodyRows::filterStates()
{
    QFETCH(const QString, answer);
    QFETCH(const QString, text);
    PanelFixture bench;
    bench.answerBodies(1);
    bench.refuse("body filter6d_enabled standard b01");
    if (answer != QLatin1String("<failure>"))
        bench.answer(QStringLiteral("body filter6d_enabled standard b01"), answer);
    bench.createPanel();
    QCOMPARE(PanelFixture::logs(bench.reconfigure()), QStringList());
    QCOMPARE(bench.text(0, FilterColumn), text);
}

void TestBodyRows::filterStateIsReadAnew()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.createConfiguredPanel();
    bench.answer("body filter6d_enabled standard b02", "yes");
    bench.panel->onUpdateFilterActiveStatus(1);
    QCOMPARE(bench.takeCalls(), QStringList{QStringLiteral("requestString body filter6d_enabled standard b02")});
    QCOMPARE(bench.text(1, FilterColumn), QStringLiteral("active"));
    for (const int row : {-1, -2, 2, 3, 1'000'000})
        bench.panel->onUpdateFilterActiveStatus(row); // rows that went meanwhile
    QCOMPARE(bench.takeCalls(), QStringList());

    QVERIFY(QMetaObject::invokeMethod(&bench.table6d(), "updateFilterActiveStatus", Q_ARG(int, 0)));
    QCOMPARE(bench.takeCalls(), QStringList{QStringLiteral("requestString body filter6d_enabled standard b01")});
}

void TestBodyRows::bodyNumbersGrow()
{
    PanelFixture bench;
    bench.answerBodies(101);
    bench.createConfiguredPanel();
    QCOMPARE(bench.text(8, NameColumn), QStringLiteral("Body 9"));
    QCOMPARE(bench.text(99, NameColumn), QStringLiteral("Body 100"));
    QCOMPARE(bench.text(100, BodyIdColumn), QStringLiteral("101"));
    QCOMPARE(bench.table6d().item(100, BodyIdColumn)->whatsThis(), QString());
}

void TestBodyRows::badCounts_data()
{
    QTest::addColumn<QString>("count");
    QTest::addColumn<bool>("head");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("logged");
    QTest::newRow("below 0") << "-5" << false << 0 << false;
    QTest::newRow("below 0, with a head target") << "-5" << true << 0 << false;
    QTest::newRow("-1, with a head target") << "-1" << true << 0 << false;
    QTest::newRow("the smallest number") << "-2147483648" << true << 0 << false;
    QTest::newRow("more than a million is a failure") << "2000000000" << false << 0 << true;
    QTest::newRow("the largest number is a failure, but not of the head target") << "2147483647" << true << 1 << true;
}

void TestBodyRows::badCounts()
{
    QFETCH(const QString, count);
    QFETCH(const bool, head);
    QFETCH(const int, rows);
    QFETCH(const bool, logged);
    PanelFixture bench;
    bench.answerBodies(1);
    if (head)
        bench.answerHead();
    bench.answerSensors({1});
    bench.answer(QStringLiteral("standard number_of_bodies"), count);
    bench.createPanel();
    const QStringList logs = PanelFixture::logs(bench.reconfigure());
    QCOMPARE(logs, logged ? QStringList{QStringLiteral("Error: Unable to get number of bodies")} : QStringList());
    QCOMPARE(bench.table6d().rowCount(), rows);
    QVERIFY(!bench.table6d().isHidden());
    bench.panel->updateView6d();
    bench.panel->timerUpdateInertialSensorInfo();
    bench.answer("standard number_of_bodies", "1");
    bench.panel->configurationChanged();
    QCOMPARE(bench.table6d().rowCount(), head ? 2 : 1);
}

void TestBodyRows::sensorCells_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");
    QTest::newRow("field 2 without its apostrophes") << "hub a 'A1 4'"
                                                     << "A1";
    QTest::newRow("apostrophes inside") << "hub a 'A'1'"
                                        << "A1";
    QTest::newRow("more fields") << "d01 x2 y3 z4"
                                 << "y3";
    QTest::newRow("quotes stay") << "d01 x2 \"y3\""
                                 << "\"y3\"";
    QTest::newRow("too few fields") << "d01 x2"
                                    << "";
    QTest::newRow("one field") << "d01"
                               << "";
    QTest::newRow("an empty answer is a sensor") << ""
                                                 << "";
    QTest::newRow("None is a sensor") << "None"
                                      << "";
    QTest::newRow("formats are text") << "%s %n %1%d"
                                      << "%1%d";
}

void TestBodyRows::sensorCells()
{
    QFETCH(const QString, answer);
    QFETCH(const QString, text);
    PanelFixture bench;
    bench.answerBodies(2);
    bench.answer(QStringLiteral("body inertial_sensor standard b02"), answer);
    bench.createPanel();
    for (const int column : {BatteryColumn, TemperatureColumn}) {
        bench.table6d().setColumnHidden(column, false);
        bench.table6d().setColumnWidth(column, 700);
    }
    bench.panel->configurationChanged();
    const QTableWidget &table = bench.table6d();
    for (const int column : {BatteryColumn, TemperatureColumn})
        QVERIFY2(table.columnWidth(column) < 300, "the column was not fitted to its contents");
    QCOMPARE(table.item(1, SensorColumn)->text(), text);
    QCOMPARE(table.item(1, SensorColumn)->data(Qt::UserRole), QVariant(answer));
    QCOMPARE(table.item(1, SensorColumn)->textAlignment(), centre);
    const auto *battery = qobject_cast<BatteryBar *>(table.cellWidget(1, BatteryColumn));
    const auto *temperature = qobject_cast<TemperatureBar *>(table.cellWidget(1, TemperatureColumn));
    QVERIFY(battery);
    QVERIFY(temperature);
    QCOMPARE(battery->value(), 0);
    QCOMPARE(temperature->value(), 0);
    QCOMPARE(temperature->text(), QStringLiteral("0.0") + QChar(0xB0) + QLatin1Char('C'));
    QVERIFY(battery->isHidden());
    QVERIFY(temperature->isHidden());
    for (const int column : {BatteryColumn, TemperatureColumn}) {
        QCOMPARE(table.item(1, column)->flags(), Qt::ItemFlags(Qt::NoItemFlags));
        QCOMPARE(table.item(1, column)->text(), QString());
    }
}

void TestBodyRows::cellsWithoutSensor()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.refuse("body inertial_sensor standard b02");
    bench.createPanel();
    QCOMPARE(PanelFixture::logs(bench.reconfigure()), QStringList());
    for (const int row : {0, 1}) {
        QCOMPARE(bench.table6d().item(row, SensorColumn)->data(Qt::UserRole), QVariant(QStringLiteral("none")));
        QCOMPARE(bench.text(row, SensorColumn), QString());
        QVERIFY(!bench.table6d().cellWidget(row, BatteryColumn));
        QVERIFY(!bench.table6d().cellWidget(row, TemperatureColumn));
    }
}

void TestBodyRows::barsGoWithTheirSensor()
{
    PanelFixture bench;
    bench.answerBodies(2);
    bench.answerSensors({1});
    bench.createConfiguredPanel();
    bench.panel->timerUpdateInertialSensorInfo();
    QVERIFY(!bench.table6d().cellWidget(0, BatteryColumn)->isHidden());
    bench.answer("body inertial_sensor standard b01", "none");
    bench.answer("body inertial_sensor standard b02", "d01");
    bench.panel->configurationChanged();
    QVERIFY2(!bench.table6d().cellWidget(0, BatteryColumn), "the bar stayed without its sensor");
    QVERIFY2(!bench.table6d().cellWidget(0, TemperatureColumn), "the bar stayed without its sensor");
    QVERIFY(bench.table6d().cellWidget(1, BatteryColumn));
}

QTEST_MAIN(TestBodyRows)
#include "tst_bodyrows.moc"
