// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/simulatedbackend.h"
#include "tests/backend/model.h"

#include <QtTest>

using namespace backend;

Q_DECLARE_METATYPE(ProtocolVersion)

using namespace std::chrono_literals;

class TestQueries : public QObject {
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
    void versions_data();
    void versions();
    void sensorsFollowTheClock_data();
    void sensorsFollowTheClock();
    void longNamesAreAnsweredInFull();
    void withoutFilter_data();
    void withoutFilter();
    void emptyModel_data();
    void emptyModel();
};

namespace {

/// What a failed query is shown as in the tables below; no answer reads like it.
const QByteArray failure = QByteArrayLiteral("(failure)");

QByteArray ask(SimulatedBackend &backend, const QByteArray &query)
{
    return backend.request(query).value_or(failure);
}

SimulatedBackend::Clock stoppedAt(std::chrono::nanoseconds time)
{
    return [time] { return time; };
}

void addRow(const char *query, const char *answer)
{
    QTest::newRow(query) << QByteArray(query) << QByteArray(answer);
}

void addBodyRows()
{
    addRow("standard fixed_angle_present", "yes");
    addRow("standard number_of_bodies", "3");
    addRow("body number_of_bodies standard", "3");
    addRow("body number_of_bodies multiuserwandor_head", "2");
    addRow("body active standard b01", "yes");
    addRow("body active standard b03", "no");
    addRow("body active standard b04", "(failure)");
    addRow("body calibrated standard b01", "yes");
    addRow("body calibrated standard b03", "no");
    addRow("body calibrated standard b00", "(failure)");
    addRow("body calibrated standard 01", "(failure)");
    addRow("body calibrated standard b99999999999999999999", "(failure)");
    addRow("body calibrated standard b-1", "(failure)");
    addRow("body calibrated multiuserwandor_head b01", "no");
    addRow("body calibrated multiuserwandor_head b02", "yes");
    addRow("body calibrated multiuserwandor_head b03", "(failure)");
    addRow("body active multiuserwandor_head b01", "no");
    addRow("body active multiuserwandor_head b02", "yes");
    addRow("body calibrated wandor b01", "yes");
    addRow("body calibrated wandor b02", "no");
    addRow("body calibrated wandor b03", "(failure)");
    addRow("body desc standard b01", "\"Left \"hand\"\"");
    addRow("body desc standard b02", "\"K\xC3\xB6rper\"");
    addRow("body desc standard b03", "\"\"");
    addRow("body desc standard b04", "(failure)");
    addRow("body inertial_sensor standard b01", "inertial d03 'A19'");
    addRow("body inertial_sensor standard b02", "inertial d01 'A17'");
    addRow("body inertial_sensor standard b03", "none");
    addRow("body inertial_sensor standard b04", "(failure)");
    addRow("body inertial_sensor wandor b01", "none");
    addRow("body inertial_sensor wandor b07", "(failure)");
    addRow("tracking reference", "standard b03");
}

void addDeviceRows()
{
    addRow("wandor number_of_devices", "2");
    addRow("wandor multiuser_available", "yes");
    addRow("wandor multiuser", "yes");
    addRow("wandor multiuser_with_head_available", "yes");
    addRow("wandor multiuser_with_head", "yes");
    addRow("output available 6d", "yes");
    addRow("output available 6di", "yes");
    addRow("output available 3d", "yes");
    addRow("output available 2d", "no");
    addRow("output active chmon 6d", "no");
    addRow("output active chmon 6di", "no");
    addRow("output active chmon 3d", "yes");
    addRow("output active chmon 2d", "no");
    addRow("inertial available", "yes");
    addRow("inertial number_of_sensors", "3");
    addRow("inertial sensor d01", "inertial d01 'A17'");
    addRow("inertial sensor d04", "(failure)");
    addRow("inertial body_of_sensor inertial d01 'A17'", "standard b02");
    addRow("inertial body_of_sensor d01", "standard b02");
    addRow("inertial body_of_sensor d02", "none");
    addRow("inertial body_of_sensor d09", "(failure)");
    addRow("inertial body_of_sensor A17", "(failure)");
    addRow("inertial sensor_present inertial d01 'A17'", "yes");
    addRow("inertial sensor_present d03", "no");
    addRow("inertial sensor_present inertial d09 'A17'", "(failure)");
    addRow("inertial sensor_battery inertial d01 'A17'", "0.500000");
    addRow("inertial sensor_battery d02", "0.900000");
    addRow("inertial sensor_battery d03", "(failure)");
    addRow("inertial sensor_temperature inertial d01 'A17'", "23.500000 0.900000");
    addRow("inertial sensor_temperature d03", "(failure)");
    addRow("config is_changeable", "yes");
}

void addFilterRows()
{
    addRow("filter6d available standard", "yes");
    addRow("filter6d available wandor", "yes");
    addRow("filter6d limit strength_min", "0.010000");
    addRow("filter6d limit strength_max", "0.990000");
    addRow("filter6d limit prediction_min", "-0.066000");
    addRow("filter6d limit prediction_max", "0.099900");
    addRow("filter6d limit patience_max", "(failure)");
    addRow("filter6d number_of_modes", "2");
    addRow("filter6d number_of_presets", "4");
    addRow("filter6d mode_id t01", "mode_fast");
    addRow("filter6d mode_id t02", "mode_static");
    addRow("filter6d mode_id t03", "(failure)");
    addRow("filter6d preset_id t01", "preset6d_default");
    addRow("filter6d preset_id t04", "preset6d_hybrid_custom");
    addRow("filter6d preset_id t00", "(failure)");
    addRow("filter6d preset_id t05", "(failure)");
    addRow("filter6d mode_desc mode_static", "\"At \"rest\"\"");
    addRow("filter6d mode_desc mode_none", "(failure)");
    addRow("filter6d preset_desc preset6d_default", "\"Default\"");
    addRow("filter6d preset_desc preset6d_none", "(failure)");
    addRow("body filter6d_mode_available standard b01 mode_static", "yes");
    addRow("body filter6d_mode_available standard b02 mode_static", "no");
    addRow("body filter6d_mode_available standard b02 mode_none", "(failure)");
    addRow("body filter6d_preset_available standard b02 preset6d_default", "yes");
    addRow("body filter6d_preset_available wandor b01 preset6d_hybrid_custom", "no");
    addRow("body filter6d_preset_available standard b09 preset6d_default", "(failure)");
    addRow("body filter6d_enabled standard b01", "yes");
    addRow("body filter6d_enabled standard b02", "no");
    addRow("body filter6d_enabled wandor b01", "yes");
    addRow("body filter6d_enabled standard b04", "(failure)");
    addRow("body filter6d_enabled head b01", "(failure)");
    addRow("body filter6d_mode standard b01", "mode_static");
    addRow("body filter6d_mode wandor b03", "(failure)");
    addRow("body filter6d_preset standard b01", "preset6d_custom");
    addRow("body filter6d_preset standard b04", "(failure)");
    addRow("body filter6d_strength standard b01", "0.250000");
    addRow("body filter6d_strength wandor b01", "0.250000");
    addRow("body filter6d_strength wandor b09", "(failure)");
    addRow("body filter6d_prediction standard b01", "0.033000");
    addRow("body filter6d_prediction standard b09", "(failure)");
}

} // namespace

void TestQueries::answers_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    addBodyRows();
    addDeviceRows();
    addFilterRows();
    addRow("", "(failure)");
    addRow("body", "(failure)");
    addRow("body desc standard b01 b02", "(failure)");
    addRow("inertial sensor_present", "(failure)");
    addRow("make coffee", "(failure)");
    addRow("  body   active  standard b01 ", "yes");
}

void TestQueries::answers()
{
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    SimulatedBackend backend(everything(), {}, stoppedAt(0s));
    QCOMPARE(ask(backend, query), answer);
}

void TestQueries::versions_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<ProtocolVersion>("before");
    QTest::addColumn<ProtocolVersion>("from");
    const auto add = [](const char *query, const ProtocolVersion &before, const ProtocolVersion &from) {
        QTest::newRow(query) << QByteArray(query) << before << from;
    };
    add("wandor multiuser_with_head_available", {0, 12, 9}, {0, 13, -1});
    add("body desc standard b01", {0, 15, 9}, {0, 16, 0});
    add("config is_changeable", {1, 8, 0}, {1, 9, -1});
    add("standard fixed_angle_present", {1, 11, 99}, {1, 12, -1});
    add("inertial available", {0, 99, 0}, {1, 12, 0});
    add("body inertial_sensor standard b01", {1, 11, 0}, {1, 12, 0});
    add("filter6d available standard", {1, 11, 0}, {1, 12, 0});
    add("body filter6d_enabled standard b01", {1, 11, 0}, {2, 0, 0});
    add("body filter6d_preset_available standard b01 preset6d_default", {1, 20, 9}, {1, 21, -1});
    add("body filter6d_mode_available standard b01 mode_fast", {1, 20, 9}, {1, 21, -1});
    add("tracking reference", {1, 23, 0}, {1, 24, -1});
}

void TestQueries::versions()
{
    QFETCH(QByteArray, query);
    QFETCH(ProtocolVersion, before);
    QFETCH(ProtocolVersion, from);
    SimulatedBackend older(withVersion(everything(), before));
    SimulatedBackend newer(withVersion(everything(), from));
    QCOMPARE(ask(older, query), failure);
    QVERIFY(ask(newer, query) != failure);
}

void TestQueries::sensorsFollowTheClock_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    const QByteArray falling("inertial sensor_battery d01");
    const QByteArray rising("inertial sensor_battery d02");
    const QByteArray warming("inertial sensor_temperature d01");
    QTest::newRow("a battery runs down") << 5 << falling << QByteArray("0.200000");
    QTest::newRow("an empty battery stays empty") << 500 << falling << QByteArray("0.000000");
    QTest::newRow("a battery charges") << 1 << rising << QByteArray("0.960000");
    QTest::newRow("a full battery stays full") << 500 << rising << QByteArray("1.000000");
    QTest::newRow("a sensor warms up") << 2 << warming << QByteArray("24.500000 1.000000");
    QTest::newRow("a sensor does not burn") << 5000 << warming << QByteArray("85.000000 1.000000");
}

void TestQueries::sensorsFollowTheClock()
{
    QFETCH(int, minutes);
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    SimulatedBackend backend(everything(), {}, stoppedAt(std::chrono::minutes(minutes)));
    QCOMPARE(ask(backend, query), answer);
}

void TestQueries::longNamesAreAnsweredInFull()
{
    Scenario scenario = everything();
    scenario.bodies[0].name = QString(300, QChar(0x00F6));
    SimulatedBackend backend(scenario);
    QCOMPARE(ask(backend, "body desc standard b01"), '"' + scenario.bodies[0].name.toUtf8() + '"');
}

void TestQueries::withoutFilter_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    addRow("filter6d available standard", "no");
    addRow("filter6d available wandor", "no");
    addRow("filter6d number_of_presets", "0");
    addRow("filter6d number_of_modes", "0");
    addRow("body filter6d_enabled standard b01", "no");
    addRow("body filter6d_enabled wandor b01", "no");
    addRow("body filter6d_preset standard b01", "(failure)");
    addRow("body filter6d_strength wandor b01", "(failure)");
}

void TestQueries::withoutFilter()
{
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    Scenario scenario = everything();
    scenario.filter = {};
    SimulatedBackend backend(scenario);
    QCOMPARE(ask(backend, query), answer);
}

void TestQueries::emptyModel_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    addRow("standard number_of_bodies", "0");
    addRow("standard fixed_angle_present", "no");
    addRow("wandor multiuser_available", "no");
    addRow("wandor number_of_devices", "0");
    addRow("inertial available", "no");
    addRow("inertial number_of_sensors", "0");
    addRow("tracking reference", "none");
    addRow("body active standard b01", "(failure)");
}

void TestQueries::emptyModel()
{
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    SimulatedBackend backend{Scenario()};
    QCOMPARE(ask(backend, query), answer);
}

QTEST_GUILESS_MAIN(TestQueries)
#include "tst_queries.moc"
