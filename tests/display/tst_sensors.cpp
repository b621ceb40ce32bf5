// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/paneltimers.h"
#include "tests/display/sensorfixture.h"

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
    void initTestCase();
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
    void warningForFixedAngles();

private:
    PanelTimers timers;
};

void TestSensors::initTestCase()
{
    QVERIFY(timers.learn());
}

void TestSensors::timersOfANewPanel()
{
    SensorFixture bench;
    const DataDisplay &panel = bench.createPanel();
    QVERIFY(!timers.viewTimer(panel).isActive());
    QVERIFY(!timers.sensorTimer(panel).isActive());
    QCOMPARE(timers.viewTimer(panel).interval(), 200);
    QCOMPARE(timers.sensorTimer(panel).interval(), 1000);
    QVERIFY(!timers.viewTimer(panel).isSingleShot());
    QVERIFY(!timers.sensorTimer(panel).isSingleShot());
}

void TestSensors::firstPassShowsAllAsAbsent()
{
    SensorFixture bench;
    bench.createPanel();
    const QStringList calls = bench.reconfigure();
    QCOMPARE(calls.last(), wholePass.first()); // present or not is asked, and nothing else
    QCOMPARE(bench.background(1, SensorColumn), red);
    QVERIFY(bench.battery().isHidden());
    QVERIFY(bench.temperature().isHidden());
}

void TestSensors::presentSensor()
{
    SensorFixture bench;
    bench.createConfiguredPanel().show();
    QCOMPARE(bench.tick(), wholePass);
    QCOMPARE(bench.background(1, SensorColumn), transparent);
    QVERIFY(bench.battery().isVisible());
    QCOMPARE(bench.battery().value(), 50);
    QVERIFY(bench.temperature().isVisible());
    QCOMPARE(bench.temperature().value(), 97);
    QCOMPARE(bench.temperature().text(), celsius("31.5"));
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
    SensorFixture bench;
    bench.createConfiguredPanel();
    bench.tick();
    bench.answer(QStringLiteral("inertial sensor_present d01"), answer);
    QCOMPARE(bench.tick(), QStringList{wholePass.first()});
    QCOMPARE(bench.background(1, SensorColumn), red);
    QVERIFY(bench.battery().isHidden());
    QVERIFY(bench.temperature().isHidden());
}

void TestSensors::failedPresenceKeepsTheBars()
{
    SensorFixture bench;
    bench.createConfiguredPanel();
    bench.tick();
    bench.refuse("inertial sensor_present d01");
    QCOMPARE(bench.tick(), QStringList{wholePass.first()}); // and no log line
    QCOMPARE(bench.background(1, SensorColumn), red);
    QVERIFY(!bench.battery().isHidden());
    QCOMPARE(bench.battery().value(), 50);
    QVERIFY(!bench.temperature().isHidden());
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
    SensorFixture bench;
    bench.createConfiguredPanel();
    for (const auto &[command, answer] : {std::pair{QStringLiteral("inertial sensor_battery d01"), charge},
                                          std::pair{QStringLiteral("inertial sensor_temperature d01"), temperature}}) {
        bench.refuse(command);
        if (!answer.isEmpty())
            bench.answer(command, answer);
    }
    QCOMPARE(bench.tick(), wholePass);
    QCOMPARE(bench.background(1, SensorColumn), transparent);
    QCOMPARE(bench.battery().isHidden(), batteryValue < 0);
    QCOMPARE(bench.temperature().isHidden(), temperatureValue < 0);
    QCOMPARE(bench.battery().value(), qMax(0, batteryValue));
    QCOMPARE(bench.temperature().value(), qMax(0, temperatureValue));
    if (temperatureValue >= 0)
        QCOMPARE(bench.temperature().text(), text);
    if (charge == QLatin1String("1e300")) { // beyond the bars' range, but full
        QVERIFY(bench.battery().styleSheet().contains(QLatin1String("border-top-right-radius: 4px")));
        QVERIFY(bench.temperature().styleSheet().contains(QLatin1String("border-top-right-radius: 4px")));
    }
}

void TestSensors::hiddenBarsComeBack()
{
    SensorFixture bench;
    bench.createConfiguredPanel().show();
    for (int round = 0; round < 2; ++round) {
        bench.answer("inertial sensor_present d01", "no");
        bench.tick();
        bench.panel->resize(bench.panel->width() + 30, bench.panel->height() + 30);
        QCoreApplication::processEvents();
        QVERIFY2(!bench.battery().isVisible(), "an empty bar after a layout");
        QVERIFY2(!bench.temperature().isVisible(), "an empty bar after a layout");
        bench.answer("inertial sensor_present d01", "yes");
        bench.tick();
        QVERIFY(bench.battery().isVisible());
        QVERIFY(bench.temperature().isVisible());
    }
}

void TestSensors::hiddenColumnsShowNoBars()
{
    SensorFixture bench;
    bench.createConfiguredPanel().show();
    for (const bool hidden : {true, false}) {
        bench.table6d().setColumnHidden(BatteryColumn, hidden);
        bench.table6d().setColumnHidden(TemperatureColumn, hidden);
        bench.tick();
        QCOMPARE(bench.battery().isVisible(), !hidden);
        QCOMPARE(bench.temperature().isVisible(), !hidden);
    }
}

void TestSensors::everyPassRepaintsTheTable()
{
    SensorFixture bench;
    bench.answer("body inertial_sensor standard b02", "none");
    bench.createConfiguredPanel().show();
    QVERIFY(QTest::qWaitForWindowExposed(bench.panel.get()));
    QCoreApplication::processEvents();
    PaintCounter counter;
    bench.table6d().viewport()->installEventFilter(&counter);
    QCOMPARE(bench.tick(), QStringList()); // nothing to ask, and no cell changes
    QTRY_VERIFY(counter.count > 0);
}

void TestSensors::rowsWithoutSensorAreSkipped()
{
    SensorFixture bench;
    bench.createConfiguredPanel();
    bench.table6d().item(0, SensorColumn)->setData(Qt::UserRole, QStringLiteral("d09")); // row 0 has no sensor
    QCOMPARE(bench.tick(), wholePass);
    bench.table6d().item(1, SensorColumn)->setData(Qt::UserRole, QStringLiteral("none"));
    QCOMPARE(bench.tick(), QStringList());
    bench.table6d().item(1, SensorColumn)->setData(Qt::UserRole, QStringLiteral("None"));
    QCOMPARE(bench.tick(), QStringList{QStringLiteral("requestString inertial sensor_present None")});
}

void TestSensors::sensorOfALaterConfigurationIsAsked()
{
    SensorFixture bench;
    bench.answer("body inertial_sensor standard b02", "none");
    bench.createConfiguredPanel();
    bench.answer("body inertial_sensor standard b02", "d01");
    bench.reconfigure();
    QCOMPARE(bench.tick(), wholePass);
}

void TestSensors::headRowIsSkipped()
{
    SensorFixture bench;
    bench.answerHead();
    bench.createConfiguredPanel();
    QCOMPARE(bench.tick(), wholePass);
    QVERIFY(!bench.battery(2).isHidden());
    QCOMPARE(bench.background(2, SensorColumn), transparent);
}

void TestSensors::sensorNamesAreNoFormats()
{
    SensorFixture bench;
    bench.answer("body inertial_sensor standard b02", "%s%n %d 'x'");
    bench.createConfiguredPanel();
    QCOMPARE(bench.tick(), QStringList{QStringLiteral("requestString inertial sensor_present %s%n %d 'x'")});
}

void TestSensors::timersOfAConfiguration()
{
    SensorFixture bench;
    const DataDisplay &panel = bench.createConfiguredPanel();
    QVERIFY(timers.viewTimer(panel).isActive());
    QVERIFY(timers.sensorTimer(panel).isActive());
    bench.panel->hide();
    QVERIFY2(timers.viewTimer(panel).isActive(), "hiding stops no timer");
    bench.panel->clearData();
    QVERIFY(!timers.viewTimer(panel).isActive());
    QVERIFY(!timers.sensorTimer(panel).isActive());

    bench.answer("inertial body_of_sensor d01", "none");
    bench.panel->configurationChanged();
    QVERIFY(timers.viewTimer(panel).isActive());
    QCOMPARE(timers.viewTimer(panel).interval(), 200);
    QVERIFY2(!timers.sensorTimer(panel).isActive(), "no sensor is on a body");

    // What isn't told to stop goes on: without sensors only the columns change.
    bench.answer("inertial body_of_sensor d01", "standard b02");
    bench.panel->configurationChanged();
    bench.answer("inertial body_of_sensor d01", "none");
    bench.panel->configurationChanged();
    QVERIFY(timers.sensorTimer(panel).isActive());
}

void TestSensors::warningForFixedAngles()
{
    SensorFixture bench;
    bench.answerSensors({1, 2});
    bench.answer("standard fixed_angle_present", "true");
    bench.createPanel();
    QCOMPARE(PanelFixture::logs(bench.reconfigure()),
             QStringList{QStringLiteral("WARNING: Fixed angles are not compatible with inertial sensors! "
                                        "Mixed setups may cause wrong results!!")});
    bench.answer("inertial body_of_sensor d01", "none");
    bench.answer("inertial body_of_sensor d02", "none");
    QCOMPARE(PanelFixture::logs(bench.reconfigure()), QStringList());
}

QTEST_MAIN(TestSensors)
#include "tst_sensors.moc"
