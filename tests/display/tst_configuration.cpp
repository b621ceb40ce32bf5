// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

namespace {

QStringList strings(const QStringList &commands)
{
    QStringList calls;
    for (const QString &command : commands)
        calls << QStringLiteral("requestString ") + command;
    return calls;
}

const QStringList numberOfBodies{QStringLiteral("requestInt standard number_of_bodies")};
const QStringList noMultiuser{QStringLiteral("requestString wandor multiuser_available")};
const QStringList fixedAngles{QStringLiteral("requestBool standard fixed_angle_present")};

/// Moving the output from \a from to \a to, which is active.
QStringList output(const char *from, const char *to)
{
    return QStringList{QStringLiteral("stopOutput ") + QLatin1String(from),
                       QStringLiteral("requestString output available ") + QLatin1String(to),
                       QStringLiteral("requestString output active chmon ") + QLatin1String(to)};
}

const QStringList twoCalibrated =
    strings({QStringLiteral("body calibrated standard b01"), QStringLiteral("body calibrated standard b02")});
const QStringList twoActive =
    strings({QStringLiteral("body active standard b01"), QStringLiteral("body active standard b02")});
const QStringList twoRows =
    strings({QStringLiteral("body desc standard b01"), QStringLiteral("body filter6d_enabled standard b01"),
             QStringLiteral("body desc standard b02"), QStringLiteral("body filter6d_enabled standard b02")});
const QStringList twoDescriptions =
    strings({QStringLiteral("body desc standard b01"), QStringLiteral("body desc standard b02")});
const QStringList twoSensors =
    strings({QStringLiteral("body inertial_sensor standard b01"), QStringLiteral("body inertial_sensor standard b02")});
const QStringList reference = strings({QStringLiteral("tracking reference")});
const QStringList inertial = strings({QStringLiteral("inertial available")});
const QStringList numberOfSensors{QStringLiteral("requestInt inertial number_of_sensors")};

QStringList logged(const QString &text)
{
    return {QStringLiteral("log ") + text};
}

} // namespace

/// The exact sequence of calls of a reconfiguration.
class TestConfiguration : public QObject {
    Q_OBJECT

private slots:
    void sequenceByVersion_data();
    void sequenceByVersion();
    void visiblePanelMovesItsSubscription();
    void panelInAHiddenWindowIsNotVisible();
    void failingSensorEndsTheSearch();
    void sequenceWithHead();
    void sensors_data();
    void sensors();
    void failedBodyCount();
    void outputIsActivated_data();
    void outputIsActivated();
    void onlyKnownCommandsAreSent();
};

void TestConfiguration::sequenceByVersion_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<QString>("fixed");
    QTest::addColumn<QStringList>("calls");
    const QStringList oldBegin = numberOfBodies + noMultiuser + output("6d", "6d") + twoCalibrated + twoActive;
    const QStringList begin =
        numberOfBodies + noMultiuser + fixedAngles + output("6di", "6di") + twoCalibrated + twoActive;
    QTest::newRow("0.15 asks no names") << 0 << 15 << "false" << oldBegin;
    QTest::newRow("0.16 asks the names") << 0 << 16 << "false" << oldBegin + twoDescriptions;
    QTest::newRow("1.11 asks nothing of filters and sensors") << 1 << 11 << "false" << oldBegin + twoDescriptions;
    QTest::newRow("1.12 asks no reference") << 1 << 12 << "false" << begin + twoRows + twoSensors + inertial;
    QTest::newRow("1.23 asks no reference") << 1 << 23 << "false" << begin + twoRows + twoSensors + inertial;
    QTest::newRow("1.24 asks the reference")
        << 1 << 24 << "false" << begin + twoRows + twoSensors + reference + inertial;
    QTest::newRow("2.0 asks like 1.24") << 2 << 0 << "false" << begin + twoRows + twoSensors + reference + inertial;
    QTest::newRow("fixed angles keep to 6d") << 1 << 12 << "true"
                                             << numberOfBodies + noMultiuser + fixedAngles + output("6d", "6d")
            + twoCalibrated + twoActive + twoRows + twoSensors + inertial;
    QTest::newRow("a failing fixed-angle question is logged and counts as none") << 1 << 12 << ""
                                                                                 << numberOfBodies + noMultiuser
            + fixedAngles + logged(QStringLiteral("Error: Unable to get fixed angle present")) + output("6di", "6di")
            + twoCalibrated + twoActive + twoRows + twoSensors + inertial;
}

void TestConfiguration::sequenceByVersion()
{
    QFETCH(const int, major);
    QFETCH(const int, minor);
    QFETCH(const QString, fixed);
    QFETCH(const QStringList, calls);
    PanelFixture fixture(major, minor);
    fixture.answerBodies(2);
    if (fixed.isEmpty())
        fixture.refuse("standard fixed_angle_present");
    else
        fixture.answer(QStringLiteral("standard fixed_angle_present"), fixed);
    fixture.createPanel();
    QCOMPARE(fixture.reconfigure(), calls);
    QCOMPARE(fixture.reconfigure(), calls);
}

void TestConfiguration::visiblePanelMovesItsSubscription()
{
    PanelFixture fixture(1, 12);
    fixture.createPanel().show();
    fixture.answer("standard fixed_angle_present", "true");
    QCOMPARE(fixture.reconfigure(),
             numberOfBodies + noMultiuser + fixedAngles + output("6di", "6d")
                 + QStringList{QStringLiteral("startOutput 6d")} + inertial);
    fixture.answer("standard fixed_angle_present", "false");
    QCOMPARE(fixture.reconfigure(),
             numberOfBodies + noMultiuser + fixedAngles + output("6d", "6di")
                 + QStringList{QStringLiteral("startOutput 6di")} + inertial);
    fixture.panel->hide();
    QCOMPARE(fixture.reconfigure(), numberOfBodies + noMultiuser + fixedAngles + output("6di", "6di") + inertial);
}

void TestConfiguration::panelInAHiddenWindowIsNotVisible()
{
    QWidget window;
    PanelFixture fixture(1, 12);
    fixture.createPanel().setParent(&window);
    fixture.panel->show();
    QCOMPARE(fixture.reconfigure(), numberOfBodies + noMultiuser + fixedAngles + output("6di", "6di") + inertial);
    window.show();
    QVERIFY(fixture.reconfigure().contains(QStringLiteral("startOutput 6di")));
}

void TestConfiguration::failingSensorEndsTheSearch()
{
    PanelFixture fixture(1, 12);
    fixture.answerBodies(2);
    fixture.answerSensors({1, 2});
    fixture.createConfiguredPanel();
    fixture.refuse("inertial sensor d01"); // the second one is on a body, but is not asked for
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(calls.mid(calls.indexOf(inertial.first()) + 1),
             numberOfSensors + strings({QStringLiteral("inertial sensor d01")}));
    QVERIFY(fixture.table6d().isColumnHidden(SensorColumn));
}

void TestConfiguration::sequenceWithHead()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerHead();
    fixture.createPanel();
    const QStringList head =
        strings({QStringLiteral("wandor multiuser_available"), QStringLiteral("wandor multiuser"),
                 QStringLiteral("wandor multiuser_with_head_available"), QStringLiteral("wandor multiuser_with_head")})
        + QStringList{QStringLiteral("requestInt body number_of_bodies multiuserwandor_head")};
    const QStringList ready{QStringLiteral("requestInt body number_of_bodies multiuserwandor_head"),
                            QStringLiteral("requestString body calibrated multiuserwandor_head b01"),
                            QStringLiteral("requestString body active multiuserwandor_head b01")};
    QCOMPARE(fixture.reconfigure(),
             numberOfBodies + head + fixedAngles + output("6di", "6di") + ready + twoCalibrated + twoActive + twoRows
                 + twoSensors + reference + inertial);
}

void TestConfiguration::sensors_data()
{
    QTest::addColumn<QString>("available");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QString>("bodyOfFirst");
    QTest::addColumn<QStringList>("calls"); // after "inertial available"
    QTest::addColumn<bool>("columnsHidden"); // after they were shown
    const QStringList first = numberOfSensors + strings({QStringLiteral("inertial sensor d01")});
    const QStringList firstBody = first + strings({QStringLiteral("inertial body_of_sensor d01")});
    const QStringList both =
        firstBody + strings({QStringLiteral("inertial sensor d02"), QStringLiteral("inertial body_of_sensor d02")});
    const QStringList present = strings({QStringLiteral("inertial sensor_present d02")});
    QTest::newRow("not available leaves the columns") << "no"
                                                      << "2"
                                                      << "none" << QStringList() << false;
    QTest::newRow("available fails and leaves the columns") << ""
                                                            << "2"
                                                            << "none" << QStringList() << false;
    QTest::newRow("available is exactly yes") << "Yes"
                                              << "2"
                                              << "none" << QStringList() << false;
    QTest::newRow("the count fails") << "yes"
                                     << ""
                                     << "none" << numberOfSensors << true;
    QTest::newRow("no sensors") << "yes"
                                << "0"
                                << "none" << numberOfSensors << true;
    QTest::newRow("a negative count of sensors") << "yes"
                                                 << "-2000000000"
                                                 << "none" << numberOfSensors << true;
    QTest::newRow("the first is on a body, and the second isn't asked for")
        << "yes"
        << "2"
        << "standard b01" << firstBody + present << false;
    QTest::newRow("an empty answer is a body") << "yes"
                                               << "2"
                                               << "<empty>" << firstBody + present << false;
    QTest::newRow("None is a body") << "yes"
                                    << "2"
                                    << "None" << firstBody + present << false;
    QTest::newRow("the second is on a body") << "yes"
                                             << "2"
                                             << "none" << both + present << false;
    QTest::newRow("a failing body is none") << "yes"
                                            << "2"
                                            << "" << both + present << false;
    QTest::newRow("only the first of one") << "yes"
                                           << "1"
                                           << "none" << firstBody << true;
}

void TestConfiguration::sensors()
{
    QFETCH(const QString, available);
    QFETCH(const QString, count);
    QFETCH(const QString, bodyOfFirst);
    QFETCH(const QStringList, calls);
    QFETCH(const bool, columnsHidden);
    PanelFixture fixture(1, 12);
    fixture.answerBodies(2);
    fixture.answerSensors({1, 2});
    fixture.createConfiguredPanel();
    QVERIFY(!fixture.table6d().isColumnHidden(SensorColumn));
    fixture.answer("body inertial_sensor standard b01", "none");
    for (const auto &[command, text] : {std::pair{QStringLiteral("inertial available"), available},
                                        std::pair{QStringLiteral("inertial number_of_sensors"), count},
                                        std::pair{QStringLiteral("inertial body_of_sensor d01"), bodyOfFirst}}) {
        fixture.refuse(command);
        if (!text.isEmpty())
            fixture.answer(command, text == QLatin1String("<empty>") ? QString() : text);
    }
    const QStringList all = fixture.reconfigure();
    QCOMPARE(all.mid(all.indexOf(inertial.first()) + 1), calls);
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        QCOMPARE(fixture.table6d().isColumnHidden(column), columnsHidden);
    QVERIFY(!fixture.table6d().isHidden());
}

void TestConfiguration::failedBodyCount()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.refuse("standard number_of_bodies");
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(PanelFixture::logs(calls).size(), 1);
    QCOMPARE(calls.mid(0, 3),
             numberOfBodies + logged(QStringLiteral("Error: Unable to get number of bodies")) + noMultiuser);
    QCOMPARE(fixture.table6d().rowCount(), 0);
    fixture.answerHead();
    fixture.reconfigure();
    QCOMPARE(fixture.table6d().rowCount(), 1);
}

void TestConfiguration::outputIsActivated_data()
{
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("commandSent");
    QTest::addColumn<QStringList>("logs");
    const QString available = QStringLiteral("output available 6di");
    const QString active = QStringLiteral("output active chmon 6di");
    QTest::newRow("active") << active << "yes" << false << QStringList();
    QTest::newRow("another word is active") << active << "on" << false << QStringList();
    QTest::newRow("not active") << active << "no" << true
                                << QStringList{QStringLiteral("Error: Unable to activate output 6di")};
    QTest::newRow("active fails") << active << "" << false
                                  << QStringList{QStringLiteral("Error: Unable to get info output 6di active")};
    QTest::newRow("not available") << available << "no" << false
                                   << QStringList{QStringLiteral(
                                          "Error: Output format 6di is not available and cannot be activated")};
    QTest::newRow("available fails") << available << "" << false
                                     << QStringList{QStringLiteral("Error: Unable to get info output 6di available")};
}

void TestConfiguration::outputIsActivated()
{
    QFETCH(const QString, question);
    QFETCH(const QString, answer);
    QFETCH(const bool, commandSent);
    QFETCH(const QStringList, logs);
    PanelFixture fixture;
    fixture.createPanel().show();
    fixture.refuse(question);
    if (!answer.isEmpty())
        fixture.answer(question, answer);
    fixture.host.failing.setPattern(QStringLiteral("chmon 6di yes$"));
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(calls.contains(QStringLiteral("sendCommand output active chmon 6di yes")), commandSent);
    QCOMPARE(PanelFixture::logs(calls), logs);
    QVERIFY2(calls.contains(QStringLiteral("startOutput 6di")), "the output is started whatever its activation said");
}

void TestConfiguration::onlyKnownCommandsAreSent()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerHead();
    fixture.answerSensors({2});
    fixture.answer("output active chmon 6di", "no");
    fixture.createPanel();
    fixture.panel->configurationChanged();
    fixture.panel->timerUpdateInertialSensorInfo();
    const QSet<QByteArray> known{"standard number_of_bodies",
                                 "standard fixed_angle_present",
                                 "body calibrated standard b%2.2d",
                                 "body active standard b%2.2d",
                                 "body desc standard b%.2d",
                                 "body inertial_sensor standard b%.2d",
                                 "body filter6d_enabled standard b%.2d",
                                 "body number_of_bodies multiuserwandor_head",
                                 "body calibrated multiuserwandor_head b%2.2d",
                                 "body active multiuserwandor_head b%2.2d",
                                 "wandor multiuser_available",
                                 "wandor multiuser",
                                 "wandor multiuser_with_head_available",
                                 "wandor multiuser_with_head",
                                 "tracking reference",
                                 "output available %s",
                                 "output active chmon %s",
                                 "output active chmon %s yes",
                                 "inertial available",
                                 "inertial number_of_sensors",
                                 "inertial sensor d%.2d",
                                 "inertial body_of_sensor %s",
                                 "inertial sensor_present %s",
                                 "inertial sensor_battery %s",
                                 "inertial sensor_temperature %s"};
    QCOMPARE(QSet<QByteArray>(fixture.host.formats.cbegin(), fixture.host.formats.cend()), known);
}

QTEST_MAIN(TestConfiguration)
#include "tst_configuration.moc"
