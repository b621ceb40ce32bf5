// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/frame.h"
#include "backend/motion.h"
#include "backend/replay.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "tests/backend/linereader.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

using namespace backend;

using namespace std::chrono_literals;

class TestScenarios : public QObject {
    Q_OBJECT

private slots:
    void namesAndDescriptions();
    void shippedScenariosLoad_data();
    void shippedScenariosLoad();
    void showsWhatItSays_data();
    void showsWhatItSays();
    void theDefaultHasSomethingOfEverything();
    void loadsFiles();
    void replaysFiles();
    void replaysAtTheRateOfTheRecording_data();
    void replaysAtTheRateOfTheRecording();
    void knowsTheBodiesOfAReplayToBe();
    void replayErrors();

private:
    static Scenario shipped(const QString &name);
};

namespace {

/// Writes \a text to \a name in \a folder. Returns the path.
QString write(const QTemporaryDir &folder, const char *name, const QByteArray &text)
{
    QFile file(folder.filePath(QString::fromLatin1(name)));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

} // namespace

Scenario TestScenarios::shipped(const QString &name)
{
    return loadScenario(name).scenario.value_or(Scenario());
}

void TestScenarios::namesAndDescriptions()
{
    const QStringList names = scenarioNames();
    QCOMPARE(names,
             QStringList({QStringLiteral("default"), QStringLiteral("crowd"), QStringLiteral("fixed-angles"),
                          QStringLiteral("heads"), QStringLiteral("hybrid"), QStringLiteral("locked"),
                          QStringLiteral("no-filter"), QStringLiteral("old-0.12"), QStringLiteral("old-1.11"),
                          QStringLiteral("old-global-lists"), QStringLiteral("reference"), QStringLiteral("sensors")}));
    QSet<QString> descriptions;
    for (const QString &name : names) {
        const QString description = scenarioDescription(name);
        QVERIFY2(description.size() > 20 && description.size() <= 100, qPrintable(name));
        descriptions.insert(description);
    }
    QCOMPARE(descriptions.size(), names.size());
    QCOMPARE(scenarioDescription(QStringLiteral("unheard of")), QString());
}

void TestScenarios::shippedScenariosLoad_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : scenarioNames())
        QTest::newRow(qPrintable(name)) << name;
}

void TestScenarios::shippedScenariosLoad()
{
    QFETCH(QString, name);
    const ScenarioResult result = loadScenario(name);
    QVERIFY2(result.scenario, qPrintable(result.error));
    QCOMPARE(result.warnings, QStringList());
    QCOMPARE(result.scenario->name, QStringLiteral("simulation: ") + name);

    SimulatedBackend backend(*result.scenario);
    const QByteArray tag = isAtLeast(backend.version(), 1, 12) ? "6di" : "6d";
    const bool activated = backend.command("output active chmon " + tag + " yes");
    QCOMPARE(activated, result.scenario->changeable);
    const int rows = result.scenario->bodies.size() + (hasHeadTarget(*result.scenario) ? 1 : 0);
    int tracked = 0;
    int markers = 0;
    for (int second = 0; second < 60; ++second) {
        for (const OutputLine &text : backend.linesAt(std::chrono::seconds(second))) {
            const ReadLine line = readLine(text.text, text.tag);
            QCOMPARE(line.blocks.size(), line.count * (text.tag == "3d" ? 2 : 3));
            if (text.tag == "3d")
                markers += line.count;
            if (text.tag != tag)
                continue;
            QCOMPARE(line.count, rows);
            for (int row = 0; row < rows; ++row)
                tracked += line.blocks[3 * row].last() >= 0.0 ? 1 : 0;
        }
    }
    QVERIFY2(tracked >= 60, qPrintable(QString::number(tracked)));
    QVERIFY2(markers >= 60, qPrintable(QString::number(markers)));
}

void TestScenarios::showsWhatItSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    const auto add = [](const char *name, const char *query, const char *answer) {
        QTest::addRow("%s: %s", name, query) << QString::fromLatin1(name) << QByteArray(query) << QByteArray(answer);
    };
    add("crowd", "standard number_of_bodies", "50");
    add("fixed-angles", "standard fixed_angle_present", "yes");
    add("fixed-angles", "inertial body_of_sensor d01", "standard b02");
    add("heads", "wandor multiuser_with_head", "yes");
    add("heads", "body active multiuserwandor_head b01", "no");
    add("heads", "body active multiuserwandor_head b02", "yes");
    add("hybrid", "body filter6d_preset standard b01", "preset6d_hybrid_custom");
    add("hybrid", "body filter6d_preset standard b02", "preset6d_custom");
    add("hybrid", "body filter6d_preset_available standard b02 preset6d_hybrid_custom", "no");
    add("locked", "config is_changeable", "no");
    add("locked", "output active chmon 6di", "yes");
    add("no-filter", "filter6d available standard", "no");
    add("no-filter", "filter6d available wandor", "no");
    add("old-0.12", "body desc standard b01", "(failure)");
    add("old-0.12", "wandor multiuser_with_head_available", "(failure)");
    add("old-1.11", "inertial available", "(failure)");
    add("old-1.11", "output available 6di", "no");
    add("old-1.11", "body desc standard b01", "\"Camera\"");
    add("old-global-lists", "filter6d number_of_presets", "5");
    add("old-global-lists", "body filter6d_preset_available standard b01 preset6d_default", "(failure)");
    add("reference", "tracking reference", "standard b02");
    add("sensors", "inertial sensor_present d04", "no");
    add("sensors", "inertial sensor_battery d01", "0.300000");
    add("sensors", "inertial body_of_sensor d05", "none");
}

void TestScenarios::showsWhatItSays()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    SimulatedBackend backend(shipped(name), {}, [] { return 0ns; });
    QCOMPARE(backend.request(query).value_or("(failure)"), answer);
}

void TestScenarios::theDefaultHasSomethingOfEverything()
{
    const Scenario scenario = shipped(QStringLiteral("default"));
    const auto has = [&scenario](auto &&what) {
        return std::any_of(scenario.bodies.cbegin(), scenario.bodies.cend(), what);
    };
    QVERIFY(has([](const StandardBody &body) { return body.motion.kind == Motion::Kind::Recorded; }));
    QVERIFY(has([](const StandardBody &body) { return body.motion.kind == Motion::Kind::Orbit; }));
    QVERIFY(has([](const StandardBody &body) { return body.name.contains(QLatin1Char('"')); }));
    QVERIFY(has([](const StandardBody &body) { return !body.calibrated; }));
    QVERIFY(has([](const StandardBody &body) { return !body.active; }));
    QVERIFY(has([](const StandardBody &body) { return body.dropouts.period > 0.0; }));
    QVERIFY(has([](const StandardBody &body) { return body.filter.enabled; }));
    QCOMPARE(scenario.sensors.size(), 2);
    QVERIFY(scenario.filter.standard);
}

void TestScenarios::loadsFiles()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString path = write(folder, "mine.json", R"({"bodies": [{}, {}]})");
    const ScenarioResult result = loadScenario(path);
    QVERIFY2(result.scenario, qPrintable(result.error));
    QCOMPARE(result.scenario->name, QStringLiteral("simulation: mine"));
    QCOMPARE(result.scenario->bodies.size(), 2);

    const QString missing = folder.filePath(QStringLiteral("missing.json"));
    QCOMPARE(loadScenario(missing).error,
             missing + QStringLiteral(" is neither a file nor one of the scenarios ")
                 + scenarioNames().join(QStringLiteral(", ")) + QLatin1Char('.'));
    QVERIFY(loadScenario(folder.path()).error.startsWith(folder.path() + QStringLiteral(" cannot be read: ")));
    const QString large = write(folder, "large.json", QByteArray(17 * 1024 * 1024, ' '));
    QCOMPARE(loadScenario(large).error, large + QStringLiteral(" is larger than 16 MiB."));
}

void TestScenarios::replaysFiles()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString walk = write(folder, "walk.day 1.txt", "5 1 2 3 0 0 0 1\n6 2 2 3 0 0 0 1\n");
    const QString run = write(folder, "run.txt", "1 0.001 0 0 0 0 0 1\n\nx\n1.5 0.002 0 0 0 0 1 0\n");
    const ScenarioResult result = replayScenario({walk, run});
    QVERIFY2(result.scenario, qPrintable(result.error));
    QCOMPARE(result.warnings, QStringList(run + QStringLiteral(": line 3 is skipped: 1 instead of 8 fields.")));
    QVERIFY(isAtLeast(result.scenario->version, 2, 0));

    SimulatedBackend backend(*result.scenario);
    QCOMPARE(backend.name(), QStringLiteral("replay: walk.day 1.txt, run.txt"));
    QCOMPARE(backend.request("standard number_of_bodies").value_or("(failure)"), QByteArray("2"));
    QCOMPARE(backend.request("body desc standard b01").value_or("(failure)"), QByteArray("\"walk.day 1\""));
    QCOMPARE(backend.request("body calibrated standard b02").value_or("(failure)"), QByteArray("yes"));
    QVERIFY(backend.command("output active chmon 6d yes"));
    const auto placeAt = [&backend](std::chrono::milliseconds time, int body) {
        const ReadLine line = readLine(backend.linesAt(time).first().text, "6d");
        return line.count == 2 ? line.blocks[3 * body + 1][0] : -1.0;
    };
    QCOMPARE(placeAt(0ms, 0), 1000.0);
    QCOMPARE(placeAt(0ms, 1), 1.0);
    QCOMPARE(placeAt(600ms, 0), 1000.0);
    QCOMPARE(placeAt(600ms, 1), 2.0);
    QCOMPARE(placeAt(1100ms, 0), 2000.0);
    QCOMPARE(placeAt(1100ms, 1), 1.0); // anew
}

void TestScenarios::replaysAtTheRateOfTheRecording_data()
{
    QTest::addColumn<double>("recorded"); // samples a second
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("rate");
    QTest::newRow("300 a second") << 300.0 << 4 << 300.0;
    QTest::newRow("as many as the times in the file are fine enough for") << 5000.0 << 6 << 5000.0;
    QTest::newRow("one in 20 s") << 0.05 << 4 << 0.1;
    QTest::newRow("too many") << 20000.0 << 6 << 5000.0;
}

void TestScenarios::replaysAtTheRateOfTheRecording()
{
    QFETCH(double, recorded);
    QFETCH(int, decimals);
    QFETCH(double, rate);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const int samples = 600;
    QByteArray text;
    for (int i = 0; i < samples; ++i)
        text +=
            QByteArray::number(100.0 + i / recorded, 'f', decimals) + ' ' + QByteArray::number(i) + " 0 0 0 0 0 1\n";
    const ScenarioResult result = replayScenario({write(folder, "recording.txt", text)});
    QVERIFY2(result.scenario, qPrintable(result.error));
    QVERIFY2(std::abs(result.scenario->rate / rate - 1.0) < 1.0e-3, qPrintable(QString::number(result.scenario->rate)));
    QCOMPARE(result.warnings.isEmpty(), recorded <= 5000.0); // else some are left out
    if (recorded != rate)
        return;
    int shownOnce = 0;
    for (int frame = 0; frame < samples; ++frame) {
        const double seconds = frame / result.scenario->rate;
        const double x = poseAt(result.scenario->bodies.first().motion, seconds).position[0];
        shownOnce += qRound(x / 1000.0) == frame ? 1 : 0;
    }
    QCOMPARE(shownOnce, samples);
}

void TestScenarios::knowsTheBodiesOfAReplayToBe()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString good = write(folder, "good.txt", "x\n5 1 2 3 0 0 0 1\n");
    const ScenarioResult result = replayScenarioToBe({good, good});
    QVERIFY2(result.scenario, qPrintable(result.error));
    QVERIFY(result.warnings.isEmpty());
    SimulatedBackend backend(*result.scenario);
    QCOMPARE(backend.name(), QStringLiteral("replay: good.txt, good.txt"));
    QCOMPARE(backend.request("standard number_of_bodies").value_or("(failure)"), QByteArray("2"));
    const QString empty = write(folder, "empty.txt", "x\n");
    QVERIFY(replayScenarioToBe({good, empty}).error.startsWith(empty));
}

void TestScenarios::replayErrors()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString good = write(folder, "good.txt", "5 1 2 3 0 0 0 1\n");
    const QString empty = write(folder, "empty.txt", "# nothing\n");
    QVERIFY(replayScenario({good}).scenario);
    QVERIFY(!replayScenario({good, empty}).scenario);
    QVERIFY(replayScenario({good, empty})
                .error.startsWith(empty + QStringLiteral(" holds no usable line of a trajectory.")));
    QCOMPARE(replayScenario({}).error, QStringLiteral("There is no file to replay."));
}

QTEST_GUILESS_MAIN(TestScenarios)
#include "tst_scenarios.moc"
