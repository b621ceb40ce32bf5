// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "backend/trajectory.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace backend;

class TestScenarioReader : public QObject {
    Q_OBJECT

private slots:
    void anEmptyObjectIsAScenario();
    void readsBodies();
    void readsMotions();
    void readsFilters();
    void readsWandors();
    void readsSensors();
    void readsTheRest();
    void readsVersions_data();
    void readsVersions();
    void findsTrajectoriesBesideItself();
    void errors_data();
    void errors();
};

namespace {

const QString fileName = QStringLiteral("/tmp/some.json");

/// The scenario that \a json makes; an empty one with the error as name when it is none.
Scenario read(const QByteArray &json)
{
    const ScenarioResult result = readScenario(json, fileName);
    Scenario failed;
    failed.name = result.error;
    return result.scenario.value_or(failed);
}

const QByteArray filter = R"("filter": {
    "limits": {"strength_min": 0.1, "strength_max": 0.9, "prediction_min": -0.05, "prediction_max": 0.06},
    "modes": [{"id": "fast", "description": "Fast"}, {"id": "slow", "bodies": ["standard b02"]}],
    "presets": [
        {"id": "only_two", "description": "Two", "bodies": ["standard b02"], "strength": 0.2},
        {"id": "preset6d_default", "description": "De \"fault\"", "strength": 0.5, "prediction": 0.01, "mode": "slow"},
        {"id": "preset6d_custom", "strength": 0.4}]})";

void addRow(const char *name, const QByteArray &json, const char *error)
{
    QTest::newRow(name) << json << QString::fromUtf8(error);
}

} // namespace

void TestScenarioReader::anEmptyObjectIsAScenario()
{
    const Scenario scenario = read("{}");
    QCOMPARE(scenario.name, QStringLiteral("simulation: some"));
    QCOMPARE(scenario.version.major, 2);
    QCOMPARE(scenario.rate, 60.0);
    QCOMPARE(scenario.bodies.size(), 0);
    QVERIFY(scenario.changeable);
    QVERIFY(!scenario.filter.standard);
    QVERIFY(scenario.output3d.active);
}

void TestScenarioReader::readsBodies()
{
    const Scenario scenario = read(R"({"bodies": [
        {"name": "Left \"hand\"", "dropouts": {"every": 12, "lasting": 3}},
        {"calibrated": false, "active": false}]})");
    QCOMPARE(scenario.bodies.size(), 2);
    QCOMPARE(scenario.bodies[0].name, QStringLiteral("Left \"hand\""));
    QVERIFY(scenario.bodies[0].calibrated && scenario.bodies[0].active);
    QCOMPARE(scenario.bodies[0].dropouts.period, 12.0);
    QCOMPARE(scenario.bodies[0].dropouts.duration, 3.0);
    QVERIFY(scenario.bodies[1].name.isEmpty());
    QVERIFY(!scenario.bodies[1].calibrated && !scenario.bodies[1].active);
}

void TestScenarioReader::readsMotions()
{
    const Scenario scenario = read(R"({"bodies": [
        {"motion": {"position": [1, 2, 3], "angles": [4, 5, 6]}},
        {"motion": {"kind": "orbit", "position": [7, 8, 9], "radius": 10, "period": 11, "phase": 12, "swing": 13,
                    "turn": [14, 15, 16]}}]})");
    QCOMPARE(scenario.bodies.size(), 2);
    const Motion &fixed = scenario.bodies[0].motion;
    QVERIFY(fixed.kind == Motion::Kind::Fixed);
    QCOMPARE(fixed.position, Vector3({1.0, 2.0, 3.0}));
    QCOMPARE(fixed.angles, Vector3({4.0, 5.0, 6.0}));
    const Motion &orbit = scenario.bodies[1].motion;
    QVERIFY(orbit.kind == Motion::Kind::Orbit);
    QCOMPARE(orbit.position, Vector3({7.0, 8.0, 9.0}));
    QCOMPARE(orbit.radius, 10.0);
    QCOMPARE(orbit.period, 11.0);
    QCOMPARE(orbit.phase, 12.0);
    QCOMPARE(orbit.swing, 13.0);
    QCOMPARE(orbit.turn, Vector3({14.0, 15.0, 16.0}));
}

void TestScenarioReader::readsFilters()
{
    const Scenario scenario = read('{' + filter + R"(, "bodies": [
        {}, {}, {"filter": {"enabled": true, "preset": "preset6d_custom", "prediction": 0.06, "mode": "fast"}}],
        "wandor": {"devices": [{}]}})");
    QCOMPARE(scenario.bodies.size(), 3);
    QVERIFY(scenario.filter.standard && scenario.filter.wandor);
    QCOMPARE(scenario.filter.strengthMin, 0.1);
    QCOMPARE(scenario.filter.strengthMax, 0.9);
    QCOMPARE(scenario.filter.predictionMin, -0.05);
    QCOMPARE(scenario.filter.predictionMax, 0.06);
    QCOMPARE(scenario.filter.modes[1].bodies, QVector<QByteArray>({"standard b02"}));
    QCOMPARE(scenario.filter.presets[1].description, QStringLiteral("De \"fault\""));
    QCOMPARE(scenario.filter.presets[2].mode, QByteArray("fast")); // the first one

    const FilterSettings &first = scenario.bodies[0].filter; // of the first preset that is offered to body 1
    QVERIFY(!first.enabled);
    QCOMPARE(first.preset, QByteArray("preset6d_default"));
    QCOMPARE(first.strength, 0.5);
    QCOMPARE(first.prediction, 0.01);
    QCOMPARE(first.mode, QByteArray("slow"));
    QCOMPARE(scenario.bodies[1].filter.preset, QByteArray("only_two"));
    QCOMPARE(scenario.wandor.devices[0].filter.preset, QByteArray("preset6d_default"));
    const FilterSettings &custom = scenario.bodies[2].filter;
    QVERIFY(custom.enabled);
    QCOMPARE(custom.preset, QByteArray("preset6d_custom"));
    QCOMPARE(custom.strength, 0.4); // of the preset
    QCOMPARE(custom.prediction, 0.06);
    QCOMPARE(custom.mode, QByteArray("fast"));
}

void TestScenarioReader::readsWandors()
{
    const Scenario scenario = read(R"({"wandor": {
        "multiuser_available": true, "multiuser": true, "multiuser_with_head_available": true,
        "multiuser_with_head": true, "devices": [{}, {"calibrated": false}],
        "heads": [{"active": false, "motion": {"position": [1, 2, 3]}}, {"calibrated": false}]}})");
    const WandorSetup &wandor = scenario.wandor;
    QVERIFY(wandor.multiuserAvailable && wandor.multiuser);
    QVERIFY(wandor.multiuserWithHeadAvailable && wandor.multiuserWithHead);
    QCOMPARE(wandor.devices.size(), 2);
    QVERIFY(wandor.devices[0].calibrated && !wandor.devices[1].calibrated);
    QCOMPARE(wandor.heads.size(), 2);
    QVERIFY(wandor.heads[0].calibrated && !wandor.heads[0].active);
    QVERIFY(!wandor.heads[1].calibrated && wandor.heads[1].active);
    QCOMPARE(wandor.heads[0].motion.position, Vector3({1.0, 2.0, 3.0}));
}

void TestScenarioReader::readsSensors()
{
    const Scenario scenario = read(R"({"bodies": [{}, {}], "sensors": [
        {"id": "d07", "label": "A17", "body": 2, "present": false, "dropouts": {"every": 5, "lasting": 1},
         "battery": {"start": 0.5, "per_minute": -0.1}, "temperature": {"start": 23.5, "per_minute": 1},
         "level": {"start": 0.25, "per_minute": 0.5}},
        {}]})");
    QCOMPARE(scenario.sensors.size(), 2);
    const InertialSensor &sensor = scenario.sensors[0];
    QCOMPARE(sensorText(sensor), QByteArray("inertial d07 'A17'"));
    QCOMPARE(sensor.body, 2);
    QVERIFY(!sensor.present);
    QCOMPARE(sensor.dropouts.period, 5.0);
    QCOMPARE(sensor.battery.start, 0.5);
    QCOMPARE(sensor.battery.perMinute, -0.1);
    QCOMPARE(sensor.temperature.start, 23.5);
    QCOMPARE(sensor.level.perMinute, 0.5);
    QCOMPARE(sensorText(scenario.sensors[1]), QByteArray("inertial d02 'S02'"));
    QCOMPARE(scenario.sensors[1].body, 0);
    QCOMPARE(sensorOfBody(scenario, 2), &scenario.sensors[0]);
    QCOMPARE(sensorOfBody(scenario, 1), nullptr);
    QCOMPARE(sensorOfBody(scenario, 0), nullptr);
}

void TestScenarioReader::readsTheRest()
{
    const Scenario scenario = read(R"({"description": "What it shows", "rate": 120.5, "seed": 7, "reference_body": 1,
        "fixed_angles": true, "changeable": false, "bodies": [{}],
        "outputs": {"6d": {"active": true}, "6di": {"available": false}, "3d": {"active": false}},
        "markers": {"count": 5, "center": [1, 2, 3], "spread": 4, "radius": 5, "period": 6,
                    "dropouts": {"every": 7, "lasting": 7}}})");
    QCOMPARE(scenario.description, QStringLiteral("What it shows"));
    QCOMPARE(scenario.rate, 120.5);
    QCOMPARE(scenario.seed, 7U);
    QCOMPARE(scenario.referenceBody, 1);
    QVERIFY(scenario.fixedAngles);
    QVERIFY(!scenario.changeable);
    QVERIFY(scenario.output6d.available && scenario.output6d.active);
    QVERIFY(!scenario.output6di.available);
    QVERIFY(scenario.output3d.available && !scenario.output3d.active);
    QCOMPARE(scenario.markers.count, 5);
    QCOMPARE(scenario.markers.center, Vector3({1.0, 2.0, 3.0}));
    QCOMPARE(scenario.markers.dropouts.duration, 7.0);
}

void TestScenarioReader::readsVersions_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVector<int>>("version");
    QTest::newRow("three numbers") << QByteArray("2.1.17") << QVector<int>{2, 1, 17};
    QTest::newRow("two numbers leave the patch level open") << QByteArray("0.12") << QVector<int>{0, 12, -1};
    QTest::newRow("a patch level of 0") << QByteArray("1.12.0") << QVector<int>{1, 12, 0};
}

void TestScenarioReader::readsVersions()
{
    QFETCH(QByteArray, text);
    QFETCH(QVector<int>, version);
    const Scenario scenario = read("{\"version\": \"" + text + "\"}");
    QCOMPARE(QVector<int>({scenario.version.major, scenario.version.minor, scenario.version.patch}), version);
}

void TestScenarioReader::findsTrajectoriesBesideItself()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    QFile file(folder.filePath(QStringLiteral("walk.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("1 1 2 3 0 0 0 1\nnonsense\n2 1 2 3 0 0 0 1\n") > 0);
    file.close();
    const QByteArray body = R"({"motion": {"kind": "recorded", "file": "walk.txt"}})";
    const ScenarioResult result =
        readScenario("{\"bodies\": [" + body + ", " + body + "]}", folder.filePath(QStringLiteral("scenario.json")));
    QVERIFY2(result.scenario, qPrintable(result.error));
    const Motion &motion = result.scenario->bodies[0].motion;
    QVERIFY(motion.kind == Motion::Kind::Recorded);
    QCOMPARE(motion.recording->samples().size(), 2);
    QCOMPARE(result.scenario->bodies[1].motion.recording, motion.recording);
    QCOMPARE(result.warnings, // once, although two bodies move like that
             QStringList(file.fileName() + QStringLiteral(": line 2 is skipped: 1 instead of 8 fields.")));
}

void TestScenarioReader::errors_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");
    addRow("an empty text", "", ", line 1: ");
    addRow("a comma too many", "{\n\"rate\": 60,\n\"seed\": 1,\n}\n", ", line 4: ");
    addRow("a missing value", "{\n\n\"rate\":\n,\"seed\": 1}", ", line 4: ");
    addRow("a missing brace", "{\"rate\": 60\n\n", ", line 3: ");
    addRow("an array", "[]", ", line 1: an object is expected.");
    addRow("an unknown key", R"({"reit": 60})", ": reit: this key is unknown.");
    addRow("an unknown key of a body", R"({"bodies": [{}, {"nmae": "x"}]})", ": bodies[1].nmae: this key is unknown.");
    addRow("an unknown output", R"({"outputs": {"2d": {}}})", ": outputs.2d: this key is unknown.");
    addRow("an unknown key of a motion", R"({"bodies": [{"motion": {"radius": 1}}]})",
           ": bodies[0].motion.radius: this key is unknown.");
    addRow("a text for a number", R"({"rate": "60"})", ": rate: a number from 0.1 to 1000 is expected.");
    addRow("null for a number", R"({"rate": null})", ": rate: a number from 0.1 to 1000 is expected.");
    addRow("a rate of 0", R"({"rate": 0})", ": rate: a number from 0.1 to 1000 is expected.");
    addRow("a rate beyond a double", "{\n\"rate\": 1e999}", ", line 2: ");
    addRow("half a marker", R"({"markers": {"count": 1.5}})", ": markers.count: a whole number is expected.");
    addRow("a negative radius", R"({"bodies": [{}, {}, {"motion": {"kind": "orbit", "radius": -1}}]})",
           ": bodies[2].motion.radius: a number from 0 to 1e+06 is expected.");
    addRow("a number for a flag", R"({"changeable": 1})", ": changeable: true or false is expected.");
    addRow("two coordinates", R"({"bodies": [{"motion": {"position": [1, 2]}}]})",
           ": bodies[0].motion.position: three numbers from -1e+06 to 1e+06 are expected.");
    addRow("a coordinate that is a text", R"({"bodies": [{"motion": {"position": [1, 2, "3"]}}]})",
           ": bodies[0].motion.position: three numbers from -1e+06 to 1e+06 are expected.");
    addRow("an unknown motion", R"({"bodies": [{"motion": {"kind": "dance"}}]})",
           ": bodies[0].motion.kind: \"fixed\", \"orbit\" or \"recorded\" is expected.");
    addRow("a recording without a file", R"({"bodies": [{"motion": {"kind": "recorded"}}]})",
           ": bodies[0].motion.file: the name of a trajectory file is expected.");
    addRow("a recording that is missing", R"({"bodies": [{"motion": {"kind": "recorded", "file": "/no/such"}}]})",
           ": bodies[0].motion.file: /no/such cannot be read: ");
    addRow("a name of two lines", R"({"bodies": [{"name": "a\nb"}]})",
           ": bodies[0].name: a text of one line and at most 180 bytes is expected.");
    addRow("a name too long", "{\"bodies\": [{\"name\": \"" + QByteArray(181, 'x') + "\"}]}",
           ": bodies[0].name: a text of one line and at most 180 bytes is expected.");
    addRow("an object for an array", R"({"bodies": {}})", ": bodies: an array of at most 1000 objects is expected.");
    addRow("a text for a body", R"({"bodies": [{}, "hand"]})", ": bodies[1]: an object is expected.");
    addRow("bodies without end", "{\"bodies\": [{}" + QByteArray(", {}").repeated(1000) + "]}",
           ": bodies: an array of at most 1000 objects is expected.");
    addRow("a version of letters", R"({"version": "two"})",
           ": version: a version such as \"2.0.1\" or \"1.12\" is expected.");
    addRow("a number for a version", R"({"version": 2.0})", ": version: a text of one line and ");
    addRow("a loss longer than its stretch", R"({"bodies": [{"dropouts": {"every": 5, "lasting": 6}}]})",
           ": bodies[0].dropouts.lasting: a number from 0 to 5 is expected.");
    addRow("a sensor on a body that is missing", R"({"sensors": [{"body": 1}]})",
           ": sensors[0].body: a number from 0 to 0 is expected.");
    addRow("two sensors on one body", R"({"bodies": [{}], "sensors": [{"body": 1}, {"body": 1}]})",
           ": sensors[1].body: this body carries another sensor already.");
    addRow("two sensors of one id", R"({"sensors": [{}, {"id": "d01"}]})",
           ": sensors[1].id: another sensor has this id.");
    addRow("a sensor id of two words", R"({"sensors": [{"id": "d 1"}]})", ": sensors[0].id: a word of ");
    addRow("a label with an apostrophe", R"({"sensors": [{"label": "A'17"}]})", ": sensors[0].label: a word of ");
    addRow("a battery fuller than full", R"({"sensors": [{"battery": {"start": 1.5}}]})",
           ": sensors[0].battery.start: a number from 0 to 1 is expected.");
    addRow("a reference that is missing", R"({"reference_body": 1})",
           ": reference_body: a number from 0 to 0 is expected.");
    addRow("a preset without id", R"({"filter": {"presets": [{}]}})", ": filter.presets[0].id: an id is expected.");
    addRow("a preset twice", R"({"filter": {"presets": [{"id": "a"}, {"id": "a"}]}})",
           ": filter.presets[1].id: this id is there already.");
    addRow("a preset with a mode that is missing", R"({"filter": {"presets": [{"id": "a", "mode": "m"}]}})",
           ": filter.presets[0].mode: the id of one of the modes is expected.");
    addRow("limits the wrong way round", R"({"filter": {"limits": {"strength_min": 0.5, "strength_max": 0.4}}})",
           ": filter.limits.strength_max: a number from 0.5 to 1000 is expected.");
    addRow("a strength beyond the limits", R"({"filter": {"presets": [{"id": "a", "strength": 0.5}]}})",
           ": filter.presets[0].strength: a number from 0 to 0 is expected.");
    addRow("a preset for nobody", R"({"filter": {"presets": [{"id": "a", "bodies": []}]}})",
           ": filter.presets[0].bodies: at least one body is expected.");
    addRow("a preset for a number", R"({"filter": {"presets": [{"id": "a", "bodies": [1]}]}})",
           ": filter.presets[0].bodies: an array of texts is expected.");
    addRow("a preset for a body that is missing", '{' + filter + R"(, "bodies": [{}]})",
           ": filter: there is no body \"standard b02\".");
    addRow("a body with a preset that is not offered",
           '{' + filter + R"(, "bodies": [{"filter": {"preset": "only_two"}}, {}]})",
           ": bodies[0].filter.preset: a preset that is offered to this body is expected.");
    addRow("a body with values although the preset decides",
           '{' + filter + R"(, "bodies": [{"filter": {"strength": 0.2}}, {}]})",
           ": bodies[0].filter.strength: this key is unknown.");
    addRow("a filter setting without a filter", R"({"bodies": [{"filter": {"enabled": true}}]})",
           ": bodies[0].filter.preset: a preset that is offered to this body is expected.");
}

void TestScenarioReader::errors()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const ScenarioResult result = readScenario(json, fileName);
    QVERIFY(!result.scenario);
    QVERIFY2(result.error.startsWith(fileName + error), qPrintable(result.error));
    QVERIFY(result.error.endsWith(QLatin1Char('.')));
}

QTEST_GUILESS_MAIN(TestScenarioReader)
#include "tst_scenarioreader.moc"
