// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "display/batterybar.h"
#include "display/temperaturebar.h"
#include "tests/support/panelfixture.h"

#include <QtTest>

namespace {

constexpr int centre = Qt::AlignHCenter | Qt::AlignVCenter;
constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
const QBrush transparent(Qt::transparent);

QStringList columnTexts(const PanelFixture &fixture, int column)
{
    QStringList texts;
    for (int row = 0; row < fixture.table6d().rowCount(); ++row)
        texts << fixture.text(row, column);
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
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.createConfiguredPanel();
    const QTableWidget &table = fixture.table6d();
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(columnTexts(fixture, BodyIdColumn), QStringList({QStringLiteral("1"), QStringLiteral("2")}));
    QCOMPARE(columnTexts(fixture, NameColumn), QStringList({QStringLiteral("Body 1"), QStringLiteral("Body 2")}));
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
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("body calibrated standard b01", "Yes");
    fixture.answer("body filter6d_enabled standard b01", "yes");
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QVERIFY(!calls.contains(QStringLiteral("requestString body desc standard b01")));
    QVERIFY(!calls.contains(QStringLiteral("requestString body filter6d_enabled standard b01")));
    const QTableWidgetItem *const id = fixture.table6d().item(0, BodyIdColumn);
    QCOMPARE(id->text(), QStringLiteral("1"));
    QCOMPARE(id->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
    QCOMPARE(id->background(), transparent);
    QCOMPARE(fixture.text(0, NameColumn), QString());
    QCOMPARE(fixture.text(0, FilterColumn), QString());
}

void TestBodyRows::headRowComesFirst()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerHead();
    fixture.answer("body filter6d_enabled standard b01", "yes");
    fixture.answer("body calibrated standard b02", "no");
    fixture.createConfiguredPanel();
    QCOMPARE(columnTexts(fixture, BodyIdColumn),
             QStringList({QStringLiteral("MUH"), QStringLiteral("2"), QStringLiteral("3")}));
    QCOMPARE(columnTexts(fixture, NameColumn), QStringList({QString(), QStringLiteral("Body 1"), QString()}));
    QCOMPARE(columnTexts(fixture, FilterColumn), QStringList({QString(), QStringLiteral("active"), QString()}));
    QCOMPARE(fixture.table6d().item(0, BodyIdColumn)->textAlignment(), centre);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("-"));
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QVERIFY2(!fixture.table6d().item(0, column), "the head row has no sensor cells");
    QCOMPARE(fixture.table6d().item(2, BodyIdColumn)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
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
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answer(QStringLiteral("body desc standard b01"), answer);
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.text(0, NameColumn), name);
    fixture.refuse("body desc standard b01");
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.text(0, NameColumn), QString());
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
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.refuse("body filter6d_enabled standard b01");
    if (answer != QLatin1String("<failure>"))
        fixture.answer(QStringLiteral("body filter6d_enabled standard b01"), answer);
    fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.text(0, FilterColumn), text);
}

void TestBodyRows::filterStateIsReadAnew()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.createConfiguredPanel();
    fixture.answer("body filter6d_enabled standard b02", "yes");
    fixture.panel->onUpdateFilterActiveStatus(1);
    QCOMPARE(fixture.takeCalls(), QStringList{QStringLiteral("requestString body filter6d_enabled standard b02")});
    QCOMPARE(fixture.text(1, FilterColumn), QStringLiteral("active"));
    for (const int row : {-1, -2, 2, 3, 1'000'000})
        fixture.panel->onUpdateFilterActiveStatus(row); // rows that went meanwhile
    QCOMPARE(fixture.takeCalls(), QStringList());

    QVERIFY(QMetaObject::invokeMethod(&fixture.table6d(), "updateFilterActiveStatus", Q_ARG(int, 0)));
    QCOMPARE(fixture.takeCalls(), QStringList{QStringLiteral("requestString body filter6d_enabled standard b01")});
}

void TestBodyRows::bodyNumbersGrow()
{
    PanelFixture fixture;
    fixture.answerBodies(101);
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.text(8, NameColumn), QStringLiteral("Body 9"));
    QCOMPARE(fixture.text(99, NameColumn), QStringLiteral("Body 100"));
    QCOMPARE(fixture.text(100, BodyIdColumn), QStringLiteral("101"));
    QCOMPARE(fixture.table6d().item(100, BodyIdColumn)->whatsThis(), QString());
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
    PanelFixture fixture;
    fixture.answerBodies(1);
    if (head)
        fixture.answerHead();
    fixture.answerSensors({1});
    fixture.answer(QStringLiteral("standard number_of_bodies"), count);
    fixture.createPanel();
    const QStringList logs = PanelFixture::logs(fixture.reconfigure());
    QCOMPARE(logs, logged ? QStringList{QStringLiteral("Error: Unable to get number of bodies")} : QStringList());
    QCOMPARE(fixture.table6d().rowCount(), rows);
    QVERIFY(!fixture.table6d().isHidden());
    fixture.panel->updateView6d();
    fixture.panel->timerUpdateInertialSensorInfo();
    fixture.answer("standard number_of_bodies", "1");
    fixture.panel->configurationChanged();
    QCOMPARE(fixture.table6d().rowCount(), head ? 2 : 1);
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
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer(QStringLiteral("body inertial_sensor standard b02"), answer);
    fixture.createPanel();
    for (const int column : {BatteryColumn, TemperatureColumn}) {
        fixture.table6d().setColumnHidden(column, false);
        fixture.table6d().setColumnWidth(column, 700);
    }
    fixture.panel->configurationChanged();
    const QTableWidget &table = fixture.table6d();
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
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.refuse("body inertial_sensor standard b02");
    fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    for (const int row : {0, 1}) {
        QCOMPARE(fixture.table6d().item(row, SensorColumn)->data(Qt::UserRole), QVariant(QStringLiteral("none")));
        QCOMPARE(fixture.text(row, SensorColumn), QString());
        QVERIFY(!fixture.table6d().cellWidget(row, BatteryColumn));
        QVERIFY(!fixture.table6d().cellWidget(row, TemperatureColumn));
    }
}

void TestBodyRows::barsGoWithTheirSensor()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerSensors({1});
    fixture.createConfiguredPanel();
    fixture.panel->timerUpdateInertialSensorInfo();
    QVERIFY(!fixture.table6d().cellWidget(0, BatteryColumn)->isHidden());
    fixture.answer("body inertial_sensor standard b01", "none");
    fixture.answer("body inertial_sensor standard b02", "d01");
    fixture.panel->configurationChanged();
    QVERIFY2(!fixture.table6d().cellWidget(0, BatteryColumn), "the bar stayed without its sensor");
    QVERIFY2(!fixture.table6d().cellWidget(0, TemperatureColumn), "the bar stayed without its sensor");
    QVERIFY(fixture.table6d().cellWidget(1, BatteryColumn));
}

QTEST_MAIN(TestBodyRows)
#include "tst_bodyrows.moc"
