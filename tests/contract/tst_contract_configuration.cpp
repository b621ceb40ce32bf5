// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

const char headTarget[] = R"(
    wandor multiuser_available=yes
    wandor multiuser=yes
    wandor multiuser_with_head_available=yes
    wandor multiuser_with_head=yes
    body number_of_bodies multiuserwandor_head=2
    body calibrated multiuserwandor_head b01=no
    body calibrated multiuserwandor_head b02=yes
    body active multiuserwandor_head b02=yes
)";

const char headQuestions[] = R"(
    requestString: wandor multiuser_available
    requestString: wandor multiuser
    requestString: wandor multiuser_with_head_available
    requestString: wandor multiuser_with_head
    requestInt: body number_of_bodies multiuserwandor_head
)";

const char switchToInertial[] = R"(
    requestBool: standard fixed_angle_present
    stopOutput: 6di
    requestString: output available 6di
    requestString: output active chmon 6di
)";

const char bodyLists[] = R"(
    requestString: body calibrated standard b01
    requestString: body calibrated standard b02
    requestString: body active standard b01
    requestString: body active standard b02
)";

const char bodyRows[] = R"(
    requestString: body desc standard b01
    requestString: body filter6d_enabled standard b01
    requestString: body inertial_sensor standard b01
    requestString: body inertial_sensor standard b02
    requestString: tracking reference
)";

QByteArrayList listOf(std::initializer_list<const char *> parts)
{
    QByteArrayList list;
    for (const char *part : parts)
        list += linesOf(part);
    return list;
}

} // namespace

class TestContractConfiguration : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void panelAsksInOrder_data();
    void panelAsksInOrder();
    void visiblePanelMovesItsSubscription();
    void secondConfigurationAsksTheSame();
    void failuresAreLogged_data();
    void failuresAreLogged();
    void bodiesFillTheRows();
    void headTargetLeadsTheRows();
    void sensorColumnsFollowTheSensors_data();
    void sensorColumnsFollowTheSensors();
    void sensorCellKeepsTheWholeAnswer();
    void referenceIsNamed();

private:
    QTemporaryDir home;
};

void TestContractConfiguration::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
}

void TestContractConfiguration::panelAsksInOrder_data()
{
    QTest::addColumn<Version>("version");
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<QByteArrayList>("calls");

    QTest::newRow("two bodies, one of them calibrated")
        << Version{2, 0, 0} << QByteArray()
        << listOf({"requestInt: standard number_of_bodies", "requestString: wandor multiuser_available",
                   switchToInertial, bodyLists, bodyRows, "requestString: inertial available"});
    QTest::newRow("a head target in front")
        << Version{2, 0, 0} << QByteArray(headTarget)
        << listOf({"requestInt: standard number_of_bodies", headQuestions, switchToInertial, R"(
                    requestInt: body number_of_bodies multiuserwandor_head
                    requestString: body calibrated multiuserwandor_head b01
                    requestString: body calibrated multiuserwandor_head b02
                    requestString: body active multiuserwandor_head b02)",
                   bodyLists, bodyRows, "requestString: inertial available"});
    QTest::newRow("no head target configured")
        << Version{2, 0, 0} << QByteArray(headTarget) + "body number_of_bodies multiuserwandor_head=0"
        << listOf({"requestInt: standard number_of_bodies", headQuestions, switchToInertial, bodyLists, bodyRows,
                   "requestString: inertial available"});
    QTest::newRow("fixed angles and an assigned sensor")
        << Version{1, 12, 0}
        << QByteArray("standard fixed_angle_present=yes\ninertial available=yes\n"
                      "inertial number_of_sensors=3\ninertial sensor d01=s7\ninertial sensor d02=s8\n"
                      "inertial body_of_sensor s7=none\ninertial body_of_sensor s8=standard b01")
        << listOf({"requestInt: standard number_of_bodies", "requestString: wandor multiuser_available",
                   R"(requestBool: standard fixed_angle_present
                      stopOutput: 6d
                      requestString: output available 6d
                      requestString: output active chmon 6d)",
                   bodyLists,
                   R"(requestString: body desc standard b01
                      requestString: body filter6d_enabled standard b01
                      requestString: body inertial_sensor standard b01
                      requestString: body inertial_sensor standard b02
                      requestString: inertial available
                      requestInt: inertial number_of_sensors
                      requestString: inertial sensor d01
                      requestString: inertial body_of_sensor s7
                      requestString: inertial sensor d02
                      requestString: inertial body_of_sensor s8
                      logMessage: standard VORNAK4 1 WARNING: Fixed angles are not compatible with inertial sensors! Mixed setups may cause wrong results!!)"});
    QTest::newRow("sensors that nobody carries")
        << Version{2, 0, 0}
        << QByteArray("inertial available=yes\ninertial number_of_sensors=2\ninertial sensor d01=s7\n"
                      "inertial sensor d02=s8\ninertial body_of_sensor s7=none")
        << listOf({"requestInt: standard number_of_bodies", "requestString: wandor multiuser_available",
                   switchToInertial, bodyLists, bodyRows, R"(
                    requestString: inertial available
                    requestInt: inertial number_of_sensors
                    requestString: inertial sensor d01
                    requestString: inertial body_of_sensor s7
                    requestString: inertial sensor d02
                    requestString: inertial body_of_sensor s8)"});
    QTest::newRow("1.11 is not asked about sensors, filters and fixed angles")
        << Version{1, 11, 3} << QByteArray()
        << listOf({"requestInt: standard number_of_bodies", "requestString: wandor multiuser_available",
                   R"(stopOutput: 6d
                      requestString: output available 6d
                      requestString: output active chmon 6d)",
                   bodyLists, "requestString: body desc standard b01"});
    QTest::newRow("0.12 is not asked about names and the availability of heads")
        << Version{0, 12, 0} << QByteArray(headTarget)
        << listOf({R"(requestInt: standard number_of_bodies
                      requestString: wandor multiuser_available
                      requestString: wandor multiuser
                      requestString: wandor multiuser_with_head
                      requestInt: body number_of_bodies multiuserwandor_head
                      stopOutput: 6d
                      requestString: output available 6d
                      requestString: output active chmon 6d
                      requestInt: body number_of_bodies multiuserwandor_head
                      requestString: body calibrated multiuserwandor_head b01
                      requestString: body calibrated multiuserwandor_head b02
                      requestString: body active multiuserwandor_head b02)",
                   bodyLists});
    QTest::newRow("the reference is asked for its name again")
        << Version{1, 24, 0} << QByteArray("tracking reference=standard b01")
        << listOf({"requestInt: standard number_of_bodies", "requestString: wandor multiuser_available",
                   switchToInertial, bodyLists, bodyRows, "requestString: body desc standard b01",
                   "requestString: inertial available"});
}

void TestContractConfiguration::panelAsksInOrder()
{
    QFETCH(const Version, version);
    QFETCH(const QByteArray, changes);
    QFETCH(const QByteArrayList, calls);
    GuestSession session(version);
    session.host.changeScript(changes);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.configurationChanged();
    QCOMPARE(session.host.takeCalls(), calls);
    QCOMPARE(session.host.violations, QByteArrayList());
    QVERIFY(!session.table6d()->isHidden());
}

void TestContractConfiguration::visiblePanelMovesItsSubscription()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.host.takeCalls();
    session.host.changeScript("standard fixed_angle_present=yes");
    session.configurationChanged();
    const QByteArrayList calls = session.host.takeCalls();
    QCOMPARE(calls.mid(2, 6), linesOf(R"(
        requestBool: standard fixed_angle_present
        stopOutput: 6di
        requestString: output available 6d
        requestString: output active chmon 6d
        startOutput: 6d
        requestString: body calibrated standard b01
    )"));
    QVERIFY(session.table6d()->isVisible());
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractConfiguration::secondConfigurationAsksTheSame()
{
    GuestSession session;
    session.host.changeScript(headTarget);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.configurationChanged();
    const QByteArrayList first = session.host.takeCalls();
    session.configurationChanged();
    QCOMPARE(session.host.takeCalls(), first);
    QCOMPARE(session.table6d()->rowCount(), 3);
}

void TestContractConfiguration::failuresAreLogged_data()
{
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<QByteArrayList>("log");
    QTest::addColumn<int>("rows");
    const auto row = [](const char *name, const char *changes, const char *log, int rows) {
        QByteArrayList expected;
        for (const QByteArray &text : linesOf(log))
            expected.append("standard VORNAK4 1 " + text);
        QTest::newRow(name) << QByteArray(headTarget) + changes << expected << rows;
    };
    row("nothing fails", "", "", 3);
    row("the count of bodies", "standard number_of_bodies!", "Error: Unable to get number of bodies", 1);
    row("whether multi-user is offered", "wandor multiuser_available!",
        "Error: Unable to get info multiuser wandor available", 2);
    row("whether multi-user is on", "wandor multiuser!", "Error: Unable to get info multiuser wandor activated", 2);
    row("whether heads are offered", "wandor multiuser_with_head_available!",
        "Error: Unable to get info multiuser wandor with head available", 2);
    row("whether heads are on", "wandor multiuser_with_head!",
        "Error: Unable to get info multiuser wandor with head activated", 2);
    row("the count of heads", "body number_of_bodies multiuserwandor_head!",
        "Error: Unable to get number of multiuser head targets", 2);
    row("the calibration of a head", "body calibrated multiuserwandor_head b01!",
        "Error: Unable to get info multiuser head target is calibrated", 3);
    row("the activity of a head", "body active multiuserwandor_head b02!",
        "Error: Unable to get info multiuser head target is activated", 3);
    row("fixed angles", "standard fixed_angle_present!", "Error: Unable to get fixed angle present", 3);
    row("whether an output is offered", "output available 6di!", "Error: Unable to get info output 6di available", 3);
    row("an output that is not offered", "output available 6di=no",
        "Error: Output format 6di is not available and cannot be activated", 3);
    row("whether an output is on", "output active chmon 6di!", "Error: Unable to get info output 6di active", 3);
    row("an output that stays off", "output active chmon 6di=no\noutput active chmon 6di yes~",
        "Error: Unable to activate output 6di", 3);
    row("the lists, names, filters, sensors and the reference are silent",
        "body calibrated standard b02!\nbody active standard b01!\nbody desc standard b01!\n"
        "body filter6d_enabled standard b01!\nbody inertial_sensor standard b01!\ntracking reference!\n"
        "inertial available!",
        "", 3);
}

void TestContractConfiguration::failuresAreLogged()
{
    QFETCH(const QByteArray, changes);
    QFETCH(const QByteArrayList, log);
    QFETCH(const int, rows);
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.host.failure = -7;
    session.host.changeScript(changes);
    session.configurationChanged();
    QCOMPARE(session.host.takeLog(), log);
    QCOMPARE(session.table6d()->rowCount(), rows);
    QVERIFY(!session.table6d()->isHidden());
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractConfiguration::bodiesFillTheRows()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const QTableWidget *const table = session.table6d();
    QCOMPARE(table->rowCount(), 2);
    const QString dash = QStringLiteral("-");
    const QStringList named{QStringLiteral("1"),
                            QStringLiteral("Left hand"),
                            QStringLiteral("active"),
                            {},
                            dash,
                            dash,
                            dash,
                            dash,
                            dash,
                            dash,
                            {},
                            {},
                            {}};
    const QStringList unknown{QStringLiteral("2"), {}, {}, {}, dash, dash, dash, dash, dash, dash, {}, {}, {}};
    QCOMPARE(session.rowOf(table, 0), named);
    QCOMPARE(session.rowOf(table, 1), unknown);
    QCOMPARE(table->item(0, 0)->whatsThis(), QString());
    QCOMPARE(table->item(1, 0)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
    QCOMPARE(table->item(1, 0)->background().style(), Qt::SolidPattern);
    QCOMPARE(table->item(1, 0)->background().color(), QColor(Qt::transparent));
    for (int column = 0; column < 3; ++column)
        QCOMPARE(table->item(0, column)->textAlignment(), int(Qt::AlignCenter));
    for (int column = 4; column < 10; ++column)
        QCOMPARE(table->item(0, column)->textAlignment(), int(Qt::AlignRight | Qt::AlignVCenter));
    QCOMPARE(table->item(0, 10)->flags(), Qt::ItemFlags());
    QCOMPARE(table->item(0, 11)->flags(), Qt::ItemFlags());
}

void TestContractConfiguration::headTargetLeadsTheRows()
{
    GuestSession session;
    session.host.changeScript(headTarget);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const QTableWidget *const table = session.table6d();
    QCOMPARE(table->rowCount(), 3);
    QCOMPARE(table->item(0, 0)->text(), QStringLiteral("MUH"));
    QCOMPARE(table->item(0, 0)->whatsThis(), QString());
    QCOMPARE(table->item(0, 1)->text(), QString());
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("2"));
    QCOMPARE(table->item(1, 1)->text(), QStringLiteral("Left hand"));
    QCOMPARE(table->item(2, 0)->text(), QStringLiteral("3"));
    QVERIFY(!table->item(0, 3));
}

void TestContractConfiguration::sensorColumnsFollowTheSensors_data()
{
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<bool>("hidden");
    const char carried[] = "inertial available=yes\ninertial number_of_sensors=1\ninertial sensor d01=s7\n"
                           "inertial body_of_sensor s7=standard b01\n";
    QTest::newRow("no sensors offered") << QByteArray("inertial available=no") << true;
    QTest::newRow("a sensor is carried") << QByteArray(carried) << false;
    QTest::newRow("a sensor lies idle") << QByteArray(carried) + "inertial body_of_sensor s7=none" << true;
    QTest::newRow("the sensor's body is not told") << QByteArray(carried) + "inertial body_of_sensor s7!" << true;
    QTest::newRow("the sensor's name is not told") << QByteArray(carried) + "inertial sensor d01!" << true;
    QTest::newRow("the count of sensors is not told") << QByteArray(carried) + "inertial number_of_sensors!" << true;
}

void TestContractConfiguration::sensorColumnsFollowTheSensors()
{
    QFETCH(const QByteArray, changes);
    QFETCH(const bool, hidden);
    GuestSession session;
    session.host.changeScript(changes);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    for (const int column : {3, 10, 11})
        QCOMPARE(session.table6d()->isColumnHidden(column), hidden);
    QCOMPARE(session.host.takeLog(), QByteArrayList());
}

void TestContractConfiguration::sensorCellKeepsTheWholeAnswer()
{
    GuestSession session;
    session.host.changeScript("body inertial_sensor standard b01=wireless s12 'A7' spare");
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const QTableWidgetItem *const cell = session.table6d()->item(0, 3);
    QCOMPARE(cell->text(), QStringLiteral("A7"));
    QCOMPARE(cell->data(256).toString(), QStringLiteral("wireless s12 'A7' spare"));
    QCOMPARE(session.table6d()->item(1, 3)->data(256).toString(), QStringLiteral("none"));
    QVERIFY(session.table6d()->cellWidget(0, 10)->inherits("BatteryBar"));
    QVERIFY(session.table6d()->cellWidget(0, 11)->inherits("TemperatureBar"));
    QVERIFY(!session.table6d()->cellWidget(1, 10));
}

void TestContractConfiguration::referenceIsNamed()
{
    GuestSession session;
    session.host.changeScript("tracking reference=standard b02");
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const QTableWidgetItem *const name = session.table6d()->item(1, 1);
    // The row's own name cell is shown as reference only for a body that is calibrated and active.
    QCOMPARE(name->text(), QString());
    session.host.changeScript("body calibrated standard b02=yes");
    session.configurationChanged();
    QCOMPARE(session.table6d()->item(1, 1)->text(), QStringLiteral("reference"));
    QCOMPARE(session.table6d()->item(1, 1)->background().color(), QColor(Qt::blue));
    QCOMPARE(session.table6d()->item(1, 1)->foreground().color(), QColor(Qt::white));
}

QTEST_MAIN(TestContractConfiguration)
#include "tst_contract_configuration.moc"
