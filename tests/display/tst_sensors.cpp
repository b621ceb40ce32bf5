// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/sensorfixture.h"

#include <QtTest>

namespace {

const QBrush transparent(Qt::transparent);
const QBrush red(Qt::red);

class PaintCounter : public QObject {
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

QString celsius(const char *degrees)
{
    return QLatin1String(degrees) + QChar(0xB0) + QLatin1Char('C');
}

const QStringList wholePass{QStringLiteral("requestString inertial sensor_present d01"),
                            QStringLiteral("requestDouble inertial sensor_battery d01"),
                            QStringLiteral("requestDoubles inertial sensor_temperature d01")};

} // namespace

class TestSensors : public QObject {
    Q_OBJECT

private slots:
    void timersOfANewPanel();
    void firstPassShowsAllAsAbsent();
    void presentSensor();
    void presence_data();
    void presence();
    void failedPresenceKeepsTheBars();
    void readings_data();
    void readings();
    void hiddenBarsComeBack();
    void hiddenColumnsShowNoBars();
    void everyPassRepaintsTheTable();
    void rowsWithoutSensorAreSkipped();
    void sensorOfALaterConfigurationIsAsked();
    void headRowIsSkipped();
    void sensorNamesAreNoFormats();
    void timersOfAConfiguration();
    void timerStopsWithTheSensors_data();
    void timerStopsWithTheSensors();
    void warningForFixedAngles();
};

void TestSensors::timersOfANewPanel()
{
    SensorFixture fixture;
    fixture.createPanel();
    QVERIFY(!fixture.viewTimer().isActive());
    QVERIFY(!fixture.sensorTimer().isActive());
    QCOMPARE(fixture.viewTimer().interval(), 200);
    QCOMPARE(fixture.sensorTimer().interval(), 1000);
    QVERIFY(!fixture.viewTimer().isSingleShot());
    QVERIFY(!fixture.sensorTimer().isSingleShot());
}

void TestSensors::firstPassShowsAllAsAbsent()
{
    SensorFixture fixture;
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(calls.last(), wholePass.first()); // present or not is asked, and nothing else
    QCOMPARE(fixture.background(1, SensorColumn), red);
    QVERIFY(fixture.battery().isHidden());
    QVERIFY(fixture.temperature().isHidden());
}

void TestSensors::presentSensor()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel().show();
    QCOMPARE(fixture.tick(), wholePass);
    QCOMPARE(fixture.background(1, SensorColumn), transparent);
    QVERIFY(fixture.battery().isVisible());
    QCOMPARE(fixture.battery().value(), 50);
    QVERIFY(fixture.temperature().isVisible());
    QCOMPARE(fixture.temperature().value(), 97);
    QCOMPARE(fixture.temperature().text(), celsius("31.5"));
}

void TestSensors::presence_data()
{
    QTest::addColumn<QString>("answer");
    QTest::newRow("no") << "no";
    QTest::newRow("only exactly yes counts") << "Yes";
    QTest::newRow("a blank more isn't yes") << "yes ";
    QTest::newRow("nothing isn't yes") << "";
}

void TestSensors::presence()
{
    QFETCH(const QString, answer);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    fixture.answer(QStringLiteral("inertial sensor_present d01"), answer);
    QCOMPARE(fixture.tick(), QStringList{wholePass.first()});
    QCOMPARE(fixture.background(1, SensorColumn), red);
    QVERIFY(fixture.battery().isHidden());
    QVERIFY(fixture.temperature().isHidden());
}

void TestSensors::failedPresenceKeepsTheBars()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.tick();
    fixture.refuse("inertial sensor_present d01");
    QCOMPARE(fixture.tick(), QStringList{wholePass.first()}); // and no log line
    QCOMPARE(fixture.background(1, SensorColumn), red);
    QVERIFY(!fixture.battery().isHidden());
    QCOMPARE(fixture.battery().value(), 50);
    QVERIFY(!fixture.temperature().isHidden());
}

void TestSensors::readings_data()
{
    QTest::addColumn<QString>("charge"); // "": the question fails
    QTest::addColumn<QString>("temperature"); // and level
    QTest::addColumn<int>("batteryValue"); // -1: hidden
    QTest::addColumn<int>("temperatureValue");
    QTest::addColumn<QString>("text");
    QTest::newRow("a failed battery hides its bar") << ""
                                                    << "31.5 0.97" << -1 << 97 << celsius("31.5");
    QTest::newRow("a failed temperature hides its bar") << "0.5"
                                                        << "" << 50 << -1 << "";
    QTest::newRow("no charge hides the bar") << "0"
                                             << "31.5 0.97" << -1 << 97 << celsius("31.5");
    QTest::newRow("the smallest charge is 0 percent, and shown") << "0.001"
                                                                 << "31.5 0.97" << 0 << 97 << celsius("31.5");
    QTest::newRow("a charge below 0 hides the bar") << "-0.5"
                                                    << "31.5 0.97" << -1 << 97 << celsius("31.5");
    QTest::newRow("a charge is cut") << "0.29"
                                     << "31.5 0.97" << 28 << 97 << celsius("31.5");
    QTest::newRow("a full charge") << "1"
                                   << "31.5 0.97" << 100 << 97 << celsius("31.5");
    QTest::newRow("0 degrees hide the bar") << "0.5"
                                            << "0 0.97" << 50 << -1 << "";
    QTest::newRow("frost hides the bar") << "0.5"
                                         << "-3 0.97" << 50 << -1 << "";
    QTest::newRow("a level is rounded down") << "0.5"
                                             << "20 0.949999" << 50 << 94 << celsius("20.0");
    QTest::newRow("a level of 0 is shown") << "0.5"
                                           << "20 0" << 50 << 0 << celsius("20.0");
    QTest::newRow("a level just below 0 is rounded down and hides the bar") << "0.5"
                                                                            << "20 -0.001" << 50 << -1 << "";
    QTest::newRow("charges that are no number hide the bar") << "nan"
                                                             << "20 0.5" << -1 << 50 << celsius("20.0");
    QTest::newRow("temperatures that are no number hide the bar") << "0.5"
                                                                  << "nan 0.5" << 50 << -1 << "";
    QTest::newRow("levels that are no number are 0") << "0.5"
                                                     << "20 nan" << 50 << 0 << celsius("20.0");
    QTest::newRow("numbers that no int holds") << "1e300"
                                               << "20 1e300" << 0 << 0 << celsius("20.0");
    QTest::newRow("infinite numbers") << "inf"
                                      << "20 inf" << 0 << 0 << celsius("20.0");
    QTest::newRow("levels below any int hide the bar") << "0.5"
                                                       << "20 -1e300" << 50 << -1 << "";
}

void TestSensors::readings()
{
    QFETCH(const QString, charge);
    QFETCH(const QString, temperature);
    QFETCH(const int, batteryValue);
    QFETCH(const int, temperatureValue);
    QFETCH(const QString, text);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    for (const auto &[command, answer] : {std::pair{QStringLiteral("inertial sensor_battery d01"), charge},
                                          std::pair{QStringLiteral("inertial sensor_temperature d01"), temperature}}) {
        fixture.refuse(command);
        if (!answer.isEmpty())
            fixture.answer(command, answer);
    }
    QCOMPARE(fixture.tick(), wholePass);
    QCOMPARE(fixture.background(1, SensorColumn), transparent);
    QCOMPARE(fixture.battery().isHidden(), batteryValue < 0);
    QCOMPARE(fixture.temperature().isHidden(), temperatureValue < 0);
    QCOMPARE(fixture.battery().value(), qMax(0, batteryValue));
    QCOMPARE(fixture.temperature().value(), qMax(0, temperatureValue));
    if (temperatureValue >= 0)
        QCOMPARE(fixture.temperature().text(), text);
    if (charge == QLatin1String("1e300")) { // beyond the bars' range, but full
        QVERIFY(fixture.battery().styleSheet().contains(QLatin1String("border-top-right-radius: 4px")));
        QVERIFY(fixture.temperature().styleSheet().contains(QLatin1String("border-top-right-radius: 4px")));
    }
}

void TestSensors::hiddenBarsComeBack()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel().show();
    for (int round = 0; round < 2; ++round) {
        fixture.answer("inertial sensor_present d01", "no");
        fixture.tick();
        fixture.panel->resize(fixture.panel->width() + 30, fixture.panel->height() + 30);
        QCoreApplication::processEvents();
        QVERIFY2(!fixture.battery().isVisible(), "an empty bar after a layout");
        QVERIFY2(!fixture.temperature().isVisible(), "an empty bar after a layout");
        fixture.answer("inertial sensor_present d01", "yes");
        fixture.tick();
        QVERIFY(fixture.battery().isVisible());
        QVERIFY(fixture.temperature().isVisible());
    }
}

void TestSensors::hiddenColumnsShowNoBars()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel().show();
    for (const bool hidden : {true, false}) {
        fixture.table6d().setColumnHidden(BatteryColumn, hidden);
        fixture.table6d().setColumnHidden(TemperatureColumn, hidden);
        fixture.tick();
        QCOMPARE(fixture.battery().isVisible(), !hidden);
        QCOMPARE(fixture.temperature().isVisible(), !hidden);
    }
}

void TestSensors::everyPassRepaintsTheTable()
{
    SensorFixture fixture;
    fixture.answer("body inertial_sensor standard b02", "none");
    fixture.createConfiguredPanel().show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    QCoreApplication::processEvents();
    PaintCounter counter;
    fixture.table6d().viewport()->installEventFilter(&counter);
    QCOMPARE(fixture.tick(), QStringList()); // nothing to ask, and no cell changes
    QTRY_VERIFY(counter.count > 0);
}

void TestSensors::rowsWithoutSensorAreSkipped()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.table6d().item(0, SensorColumn)->setData(Qt::UserRole, QStringLiteral("d09")); // row 0 has no sensor
    QCOMPARE(fixture.tick(), wholePass);
    fixture.table6d().item(1, SensorColumn)->setData(Qt::UserRole, QStringLiteral("none"));
    QCOMPARE(fixture.tick(), QStringList());
    fixture.table6d().item(1, SensorColumn)->setData(Qt::UserRole, QStringLiteral("None"));
    QCOMPARE(fixture.tick(), QStringList{QStringLiteral("requestString inertial sensor_present None")});
}

void TestSensors::sensorOfALaterConfigurationIsAsked()
{
    SensorFixture fixture;
    fixture.answer("body inertial_sensor standard b02", "none");
    fixture.createConfiguredPanel();
    fixture.answer("body inertial_sensor standard b02", "d01");
    fixture.reconfigure();
    QCOMPARE(fixture.tick(), wholePass);
}

void TestSensors::headRowIsSkipped()
{
    SensorFixture fixture;
    fixture.answerHead();
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.tick(), wholePass);
    QVERIFY(!fixture.battery(2).isHidden());
    QCOMPARE(fixture.background(2, SensorColumn), transparent);
}

void TestSensors::sensorNamesAreNoFormats()
{
    SensorFixture fixture;
    fixture.answer("body inertial_sensor standard b02", "%s%n %d 'x'");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.tick(), QStringList{QStringLiteral("requestString inertial sensor_present %s%n %d 'x'")});
}

void TestSensors::timersOfAConfiguration()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    QVERIFY(fixture.viewTimer().isActive());
    QVERIFY(fixture.sensorTimer().isActive());
    fixture.panel->hide();
    QVERIFY2(fixture.viewTimer().isActive(), "hiding stops no timer");
    fixture.panel->clearData();
    QVERIFY(!fixture.viewTimer().isActive());
    QVERIFY(!fixture.sensorTimer().isActive());

    fixture.answer("inertial body_of_sensor d01", "none");
    fixture.panel->configurationChanged();
    QVERIFY(fixture.viewTimer().isActive());
    QCOMPARE(fixture.viewTimer().interval(), 200);
    QVERIFY2(!fixture.sensorTimer().isActive(), "no sensor is on a body");

    // What isn't told to stop goes on: without sensors only the columns change.
    fixture.answer("inertial body_of_sensor d01", "standard b02");
    fixture.panel->configurationChanged();
    fixture.answer("inertial body_of_sensor d01", "none");
    fixture.panel->configurationChanged();
    QVERIFY(fixture.sensorTimer().isActive());
}

void TestSensors::timerStopsWithTheSensors_data()
{
    QTest::addColumn<QString>("answer"); // to whether there are sensors at all; null for none
    QTest::addColumn<int>("minorVersion");
    QTest::newRow("no sensors any more") << QStringLiteral("no") << 24;
    QTest::newRow("another word") << QStringLiteral("Yes") << 24;
    QTest::newRow("no answer") << QString() << 24;
    QTest::newRow("an older backend, which is not asked") << QStringLiteral("yes") << 11;
}

void TestSensors::timerStopsWithTheSensors()
{
    QFETCH(const QString, answer);
    QFETCH(const int, minorVersion);
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    QVERIFY(fixture.sensorTimer().isActive());
    if (answer.isNull())
        fixture.refuse("inertial available");
    else
        fixture.answer(QStringLiteral("inertial available"), answer);
    fixture.versions.backendMinor = minorVersion;
    fixture.panel->configurationChanged();
    QVERIFY(!fixture.sensorTimer().isActive());
    QVERIFY(fixture.viewTimer().isActive());

    fixture.answer("inertial available", "yes");
    fixture.versions.backendMinor = 24;
    fixture.panel->configurationChanged();
    QVERIFY(fixture.sensorTimer().isActive());
}

void TestSensors::warningForFixedAngles()
{
    SensorFixture fixture;
    fixture.answerSensors({1, 2});
    fixture.answer("standard fixed_angle_present", "true");
    fixture.createPanel();
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()),
             QStringList{QStringLiteral("WARNING: Fixed angles are not compatible with inertial sensors! "
                                        "Mixed setups may cause wrong results!!")});
    fixture.answer("inertial body_of_sensor d01", "none");
    fixture.answer("inertial body_of_sensor d02", "none");
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
}

QTEST_MAIN(TestSensors)
#include "tst_sensors.moc"
