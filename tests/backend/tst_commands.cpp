// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/simulatedbackend.h"
#include "tests/backend/model.h"

#include <QtTest>

using namespace backend;

class TestCommands : public QObject {
    Q_OBJECT

private slots:
    void changesTheModel_data();
    void changesTheModel();
    void aPresetBringsItsValues();
    void aCustomPresetKeepsTheValues();
    void refused_data();
    void refused();
    void refusedWhileLocked_data();
    void refusedWhileLocked();
    void refusedBeforeItsVersion();
};

namespace {

/// Every answer that a command may change.
QByteArrayList allSettings(SimulatedBackend &backend)
{
    QByteArrayList answers;
    for (const char *tag : {"6d", "6di", "3d"})
        answers << backend.request(QByteArray("output active chmon ") + tag).value_or("(failure)");
    for (const char *what : {"enabled", "preset", "strength", "prediction", "mode"}) {
        for (const char *body : {"standard b01", "standard b02", "standard b03", "wandor b01", "wandor b02"})
            answers << backend.request(QByteArray("body filter6d_") + what + ' ' + body).value_or("(failure)");
    }
    return answers;
}

void addRow(const char *name, const char *command)
{
    QTest::newRow(name) << QByteArray(command);
}

} // namespace

void TestCommands::changesTheModel_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("answer");
    const auto add = [](const char *command, const char *query, const char *answer) {
        QTest::newRow(command) << QByteArray(command) << QByteArray(query) << QByteArray(answer);
    };
    add("output active chmon 6d yes", "output active chmon 6d", "yes");
    add("output active chmon 6di yes", "output active chmon 6di", "yes");
    add("output active chmon 3d no", "output active chmon 3d", "no");
    add("body filter6d_enabled standard b01 no", "body filter6d_enabled standard b01", "no");
    add("body filter6d_enabled standard b02 yes", "body filter6d_enabled standard b02", "yes");
    add("body filter6d_enabled wandor b01 no", "body filter6d_enabled wandor b01", "no");
    add("body filter6d_preset standard b01 preset6d_still", "body filter6d_preset standard b01", "preset6d_still");
    add("body filter6d_preset wandor b01 preset6d_default", "body filter6d_preset wandor b01", "preset6d_default");
    add("body filter6d_mode standard b01 mode_fast", "body filter6d_mode standard b01", "mode_fast");
    add("body filter6d_strength standard b01 0.990000", "body filter6d_strength standard b01", "0.990000");
    add("body filter6d_strength wandor b01 0.010000", "body filter6d_strength wandor b01", "0.010000");
    add("body filter6d_prediction standard b01 -0.066000", "body filter6d_prediction standard b01", "-0.066000");
}

void TestCommands::changesTheModel()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, answer);
    SimulatedBackend backend(everything());
    QVERIFY(backend.request(query) != answer);
    QVERIFY(backend.command(command));
    QCOMPARE(backend.request(query).value_or("(failure)"), answer);
}

void TestCommands::aPresetBringsItsValues()
{
    SimulatedBackend backend(everything());
    QVERIFY(backend.command("body filter6d_preset standard b01 preset6d_still"));
    const FilterSettings filter = backend.scenario().bodies[0].filter;
    QVERIFY(filter.enabled);
    QCOMPARE(filter.strength, 0.9);
    QCOMPARE(filter.prediction, -0.05);
    QCOMPARE(filter.mode, QByteArray("mode_static"));

    QVERIFY(backend.command("body filter6d_preset wandor b01 preset6d_default"));
    const FilterSettings wandor = backend.scenario().wandor.devices[0].filter;
    QCOMPARE(wandor.strength, 0.5);
    QCOMPARE(wandor.prediction, 0.0);
    QCOMPARE(wandor.mode, QByteArray("mode_fast"));
}

void TestCommands::aCustomPresetKeepsTheValues()
{
    SimulatedBackend backend(everything());
    QVERIFY(backend.command("body filter6d_preset standard b02 preset6d_custom"));
    const FilterSettings filter = backend.scenario().bodies[1].filter;
    QCOMPARE(filter.preset, QByteArray("preset6d_custom"));
    QCOMPARE(filter.strength, 0.5);
    QCOMPARE(filter.mode, QByteArray("mode_fast"));
}

void TestCommands::refused_data()
{
    QTest::addColumn<QByteArray>("command");
    addRow("an unknown command", "make coffee");
    addRow("an empty command", "");
    addRow("a query", "output active chmon 6d");
    addRow("an unknown output", "output active chmon 2d yes");
    addRow("neither yes nor no for an output", "output active chmon 6d maybe");
    addRow("an unknown body", "body filter6d_enabled standard b04 yes");
    addRow("an unknown kind of body", "body filter6d_enabled head b01 yes");
    addRow("neither yes nor no for a filter", "body filter6d_enabled standard b01 2");
    addRow("no preset at all", "body filter6d_preset standard b01 ");
    addRow("an unknown preset", "body filter6d_preset standard b01 preset6d_none");
    addRow("a preset that the body is not offered", "body filter6d_preset standard b02 preset6d_still");
    addRow("an unknown mode", "body filter6d_mode standard b01 mode_none");
    addRow("a mode that the body is not offered", "body filter6d_mode wandor b01 mode_static");
    addRow("a mode while the preset decides it", "body filter6d_mode standard b02 mode_fast");
    addRow("a strength below the limit", "body filter6d_strength standard b01 0.009");
    addRow("a strength above the limit", "body filter6d_strength standard b01 0.991");
    addRow("a strength that is no number", "body filter6d_strength standard b01 0,5");
    addRow("an undefined strength", "body filter6d_strength standard b01 nan");
    addRow("a strength while the preset decides it", "body filter6d_strength standard b02 0.7");
    addRow("a prediction above the limit", "body filter6d_prediction standard b01 0.1");
    addRow("an infinite prediction", "body filter6d_prediction standard b01 -inf");
    addRow("a prediction while the preset decides it", "body filter6d_prediction standard b02 0.01");
}

void TestCommands::refused()
{
    QFETCH(QByteArray, command);
    SimulatedBackend backend(everything());
    const QByteArrayList before = allSettings(backend);
    QVERIFY(!backend.command(command));
    QCOMPARE(allSettings(backend), before);
}

void TestCommands::refusedWhileLocked_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char *command :
         {"output active chmon 6d yes", "body filter6d_enabled standard b01 no",
          "body filter6d_preset standard b01 preset6d_still", "body filter6d_mode standard b01 mode_fast",
          "body filter6d_strength standard b01 0.7", "body filter6d_prediction standard b01 0.01"})
        addRow(command, command);
}

void TestCommands::refusedWhileLocked()
{
    QFETCH(QByteArray, command);
    Scenario scenario = everything();
    SimulatedBackend open(scenario);
    QVERIFY(open.command(command));

    scenario.changeable = false;
    SimulatedBackend locked(scenario);
    const QByteArrayList before = allSettings(locked);
    QVERIFY(!locked.command(command));
    QCOMPARE(allSettings(locked), before);
    QCOMPARE(locked.request("config is_changeable").value_or("(failure)"), QByteArray("no"));
}

void TestCommands::refusedBeforeItsVersion()
{
    SimulatedBackend backend(withVersion(everything(), {1, 11, 7}));
    QVERIFY(!backend.command("output active chmon 6di yes"));
    QVERIFY(!backend.command("body filter6d_enabled standard b01 no"));
    QVERIFY(backend.command("output active chmon 6d yes"));
}

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
