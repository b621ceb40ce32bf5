// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/faultyhost.h"
#include "tests/support/panelfixture.h"

#include <QLoggingCategory>
#include <QProgressBar>
#include <QSet>
#include <QtTest>

#include <limits>
#include <map>

namespace {

constexpr int always = std::numeric_limits<int>::max();

struct FaultRule {
    QByteArray command; ///< how it begins
    QByteArray log; ///< without "Error: Unable to "; empty: silent
    QByteArray fallback; ///< the answer that the failed query counts as
};

/// The queries and commands of a configuration. The first rule that fits counts.
const QVector<FaultRule> &rules()
{
    static const QVector<FaultRule> all{
        {"standard number_of_bodies", "get number of bodies", "0"},
        {"standard fixed_angle_present", "get fixed angle present", "false"},
        {"wandor multiuser_available", "get info multiuser wandor available", "no"},
        {"wandor multiuser_with_head_available", "get info multiuser wandor with head available", "no"},
        {"wandor multiuser_with_head", "get info multiuser wandor with head activated", "no"},
        {"wandor multiuser", "get info multiuser wandor activated", "no"},
        {"body number_of_bodies multiuserwandor_head", "get number of multiuser head targets", "0"},
        {"body calibrated multiuserwandor_head", "get info multiuser head target is calibrated", "no"},
        {"body active multiuserwandor_head", "get info multiuser head target is activated", "no"},
        {"output available 6di", "get info output 6di available", "yes"},
        {"output available 6d", "get info output 6d available", "yes"},
        {"output active chmon 6di yes", "activate output 6di", ""},
        {"output active chmon 6d yes", "activate output 6d", ""},
        {"output active chmon 6di", "get info output 6di active", "yes"},
        {"output active chmon 6d", "get info output 6d active", "yes"},
        {"body calibrated standard", "", "no"},
        {"body active standard", "", "no"},
        {"body desc standard", "", ""},
        {"body filter6d_enabled standard", "", "no"},
        {"body inertial_sensor standard", "", "none"},
        {"tracking reference", "", "none"},
        {"inertial available", "", "no"},
        {"inertial number_of_sensors", "", "0"},
        {"inertial sensor d", "", ""},
        {"inertial body_of_sensor", "", "none"},
        {"inertial sensor_present", "", "no"},
        {"inertial sensor_battery", "", "0.0"},
        {"inertial sensor_temperature", "", "-1.0"},
    };
    return all;
}

const FaultRule *ruleOf(const QByteArray &command)
{
    for (const FaultRule &rule : rules()) {
        if (command.startsWith(rule.command))
            return &rule;
    }
    return nullptr;
}

/// What must stand in a record with these failures: each followed at once by its line of the log, and nothing else.
QByteArrayList expectedRecord(const QByteArrayList &record)
{
    QByteArrayList expected;
    for (const QByteArray &entry : record) {
        if (!entry.startsWith("FAILED "))
            continue;
        expected << entry;
        const FaultRule *const rule = ruleOf(entry.mid(7));
        if (!rule)
            expected << "a query that no rule is for";
        else if (!rule->log.isEmpty())
            expected << "log Error: Unable to " + rule->log;
    }
    return expected;
}

/// A panel on a backend that has an answer to everything.
class TortureFixture : public PanelFixture {
public:
    explicit TortureFixture(const BackendVersions &backend)
        : PanelFixture(backend.backendMajor, backend.backendMinor, -1)
        , faulty(host)
    {
        answerBodies(3);
        answerHead();
        answerSensors({1, 3});
        answer("inertial body_of_sensor d01", "none");
        answer("body filter6d_enabled standard b02", "yes");
        answer("tracking reference", "standard b02");
        panel = std::make_unique<DataDisplay>(&faulty, nullptr, &versions, QStringLiteral("v2.2.6"));
        panel->resize(1100, 200);
        panel->show();
    }

    void configure()
    {
        for (const char *const tag : {"6d", "6di"}) // a backend that has just started has its output off
            answer(QStringLiteral("output active chmon %1").arg(QLatin1String(tag)), QStringLiteral("no"));
        panel->configurationChanged();
    }

    /// All that is seen in the table of bodies, and which of its columns.
    QStringList everything() const
    {
        QStringList texts;
        for (int row = 0; row < table6d().rowCount(); ++row) {
            for (int column = 0; column < Column6dCount; ++column) {
                if (const QTableWidgetItem *const item = table6d().item(row, column))
                    texts << item->text() + item->background().color().name(QColor::HexArgb) + item->whatsThis();
                if (const QWidget *const bar = table6d().cellWidget(row, column))
                    texts << (bar->isVisible() ? QStringLiteral("bar") : QStringLiteral("hidden bar"));
            }
        }
        for (int column = 0; column < Column6dCount; ++column)
            texts << (table6d().isColumnHidden(column) ? QStringLiteral("hidden") : QStringLiteral("shown"));
        return texts;
    }

    FaultyHost faulty;
};

BackendVersions version(int major, int minor)
{
    BackendVersions versions;
    versions.backendMajor = major;
    versions.backendMinor = minor;
    return versions;
}

} // namespace

Q_DECLARE_METATYPE(BackendVersions)

/// The backend fails, once or from some call on, at every call there is.
class TestTorture : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void configuration_data();
    void configuration();
    void sensorPass_data();
    void sensorPass();

private:
    static void addVersions(std::initializer_list<std::pair<int, int>> versions);
    static void compareSensors(const TortureFixture &fixture, const QSet<QByteArray> &failed);
};

void TestTorture::addVersions(std::initializer_list<std::pair<int, int>> versions)
{
    QTest::addColumn<BackendVersions>("backend");
    QTest::addColumn<int>("length");
    for (const auto &[major, minor] : versions) {
        QTest::addRow("one call, %d.%d", major, minor) << version(major, minor) << 0;
        QTest::addRow("one call and all after it, %d.%d", major, minor) << version(major, minor) << always;
    }
}

void TestTorture::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // thousands, of the offscreen platform
}

void TestTorture::configuration_data()
{
    addVersions({{1, 11}, {1, 12}, {1, 20}, {1, 21}, {1, 24}, {2, 0}});
}

void TestTorture::configuration()
{
    QFETCH(const BackendVersions, backend);
    QFETCH(const int, length);
    TortureFixture fixture(backend);
    fixture.faulty.failNothing();
    fixture.configure();
    const int calls = fixture.faulty.count;
    QVERIFY(calls > 15);
    QCOMPARE(fixture.faulty.record, QByteArrayList());
    const QStringList complete = fixture.everything();
    const QStringList completeCalls = (fixture.takeCalls(), fixture.configure(), fixture.takeCalls());

    for (int k = 1; k <= calls; ++k) {
        TortureFixture struck(backend);
        struck.faulty.fail(k, qMax(k, length));
        struck.configure();
        if (struck.faulty.count < k)
            continue; // the sender of a command that an earlier failure left out
        QCOMPARE(struck.faulty.record, expectedRecord(struck.faulty.record));
        const QByteArray first = struck.faulty.record.value(0);
        QVERIFY2(struck.table6d().isVisible(), first);
        QVERIFY2(!length || struck.faulty.record.size() >= 1, first);

        // The same panel, had the backend answered with what a failure counts as.
        TortureFixture answered(backend);
        answered.faulty.fail(k, qMax(k, length));
        answered.faulty.substitute = [](const QByteArray &command) {
            const FaultRule *const rule = ruleOf(command);
            return rule ? rule->fallback : QByteArray("no rule");
        };
        if (first.startsWith("FAILED inertial sensor d")) { // which ends the search, as if there were no sensors
            answered.answer("inertial number_of_sensors", "0");
            answered.faulty.failNothing();
        }
        answered.configure();
        QCOMPARE(struck.everything(), answered.everything());

        // And the next reconfiguration is complete.
        QCOMPARE(struck.send("6di", "6di 0"), 0);
        QCOMPARE(struck.send("6d", "6d 0"), 0);
        struck.faulty.failNothing();
        struck.takeCalls();
        struck.configure();
        QCOMPARE(struck.faulty.record, QByteArrayList());
        QCOMPARE(struck.faulty.count, calls);
        QCOMPARE(struck.everything(), complete);
        if (!first.contains("fixed_angle") && !length) // it alone makes the next one stop another output
            QCOMPARE(struck.takeCalls(), completeCalls);
    }
}

void TestTorture::sensorPass_data()
{
    addVersions({{1, 12}, {1, 20}, {1, 21}, {1, 24}, {2, 0}});
}

/// The rows of the two sensors after a pass in which the queries \a failed had no answer, and had one in the pass
/// before.
void TestTorture::compareSensors(const TortureFixture &fixture, const QSet<QByteArray> &failed)
{
    const std::map<int, QByteArray> sensors{{1, "d01"}, {3, "d02"}};
    for (const auto &[row, sensor] : sensors) {
        const bool presenceFailed = failed.contains("inertial sensor_present " + sensor);
        QCOMPARE(fixture.background(row, SensorColumn), presenceFailed ? QBrush(Qt::red) : QBrush(Qt::transparent));
        const bool batteryShown = presenceFailed || !failed.contains("inertial sensor_battery " + sensor);
        const bool temperatureShown = presenceFailed || !failed.contains("inertial sensor_temperature " + sensor);
        auto *const battery = qobject_cast<QProgressBar *>(fixture.table6d().cellWidget(row, BatteryColumn));
        auto *const temperature = qobject_cast<QProgressBar *>(fixture.table6d().cellWidget(row, TemperatureColumn));
        QVERIFY(battery);
        QVERIFY(temperature);
        QCOMPARE(battery->isVisible(), batteryShown);
        QCOMPARE(temperature->isVisible(), temperatureShown);
        QCOMPARE(battery->value(), 50);
        QCOMPARE(temperature->value(), 97);
    }
}

void TestTorture::sensorPass()
{
    QFETCH(const BackendVersions, backend);
    QFETCH(const int, length);
    TortureFixture fixture(backend);
    fixture.configure();
    fixture.faulty.failNothing();
    fixture.panel->timerUpdateInertialSensorInfo();
    const int calls = fixture.faulty.count;
    QCOMPARE(calls, 6);
    compareSensors(fixture, {});

    for (int k = 1; k <= calls; ++k) {
        fixture.faulty.fail(k, qMax(k, length));
        fixture.panel->timerUpdateInertialSensorInfo();
        QSet<QByteArray> failed;
        for (const QByteArray &entry : qAsConst(fixture.faulty.record)) {
            QVERIFY2(entry.startsWith("FAILED "), entry); // nothing is logged
            failed.insert(entry.mid(7));
        }
        QVERIFY(!failed.isEmpty());
        compareSensors(fixture, failed);
        if (QTest::currentTestFailed())
            return;
        fixture.faulty.failNothing();
        fixture.panel->timerUpdateInertialSensorInfo();
        QCOMPARE(fixture.faulty.count, calls);
        compareSensors(fixture, {});
    }
}

QTEST_MAIN(TestTorture)
#include "tst_torture.moc"
