// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "host/options.h"

#include <QTest>

using namespace backend;
using namespace host;

using Kind = OptionsResult::Kind;

Q_DECLARE_METATYPE(OptionsResult::Kind)

namespace {

OptionsResult read(const QString &commandLine)
{
    return OptionsResult::read(QStringList{QStringLiteral("trackhost")}
                               + commandLine.split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

} // namespace

class HostOptionsTest : public QObject {
    Q_OBJECT

private slots:
    void simulatesTheDefaultScenario();
    void findsTheScenario_data();
    void findsTheScenario();
    void takesFilesToReplay();
    void takesStandardInput_data();
    void takesStandardInput();
    void takesTheBackendsSettings();
    void takesAVersion_data();
    void takesAVersion();
    void takesWhatTheProgramDoes();
    void refusesWhatItCannotFollow_data();
    void refusesWhatItCannotFollow();
    void answersWithATextAlone_data();
    void answersWithATextAlone();
    void listsEveryScenario();
};

void HostOptionsTest::simulatesTheDefaultScenario()
{
    const OptionsResult result = read(QString());
    QCOMPARE(result.kind, Kind::Run);
    QCOMPARE(result.options.choice.scenario, QStringLiteral("default"));
    QVERIFY(result.options.choice.replayFiles.isEmpty());
    QVERIFY(!result.options.settings.rate);
    QVERIFY(!result.options.settings.version);
    QVERIFY(result.options.settings.faults.isEmpty());
    QCOMPARE(result.options.settings.latency.count(), 0);
    QVERIFY(!result.options.observer);
    QVERIFY(!result.options.choice.standardInput);
    QVERIFY(!result.options.savesAndQuits());
    QCOMPARE(result.options.saveAfter.count(), 2000);
    QVERIFY(result.options.logFile.isEmpty());
    QVERIFY(!result.options.duration);
}

void HostOptionsTest::findsTheScenario_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("scenario");
    QTest::newRow("without a name it is the default") << QStringLiteral("--simulate") << QStringLiteral("default");
    QTest::newRow("a name behind the option") << QStringLiteral("--simulate heads") << QStringLiteral("heads");
    QTest::newRow("a name joined to the option") << QStringLiteral("--simulate=heads") << QStringLiteral("heads");
    QTest::newRow("a name alone") << QStringLiteral("heads") << QStringLiteral("heads");
    QTest::newRow("a path") << QStringLiteral("--simulate /tmp/my.json") << QStringLiteral("/tmp/my.json");
    QTest::newRow("another option behind the option is not the name")
        << QStringLiteral("--simulate --rate 30") << QStringLiteral("default");
}

void HostOptionsTest::findsTheScenario()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, scenario);
    const OptionsResult result = read(commandLine);
    QCOMPARE(result.kind, Kind::Run);
    QCOMPARE(result.options.choice.scenario, scenario);
}

void HostOptionsTest::takesFilesToReplay()
{
    const OptionsResult result = read(QStringLiteral("--replay a.txt --replay b.txt"));
    QCOMPARE(result.kind, Kind::Run);
    QCOMPARE(result.options.choice.replayFiles, (QStringList{QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
}

void HostOptionsTest::takesStandardInput_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("scenario");
    QTest::newRow("alone, what was seen answers") << QStringLiteral("--stdin") << QString();
    QTest::newRow("a scenario answers") << QStringLiteral("--stdin --simulate heads") << QStringLiteral("heads");
    QTest::newRow("the default scenario answers") << QStringLiteral("--simulate --stdin") << QStringLiteral("default");
    QTest::newRow("a scenario of a version")
        << QStringLiteral("--stdin heads --backend-version 1.12.0") << QStringLiteral("heads");
    QTest::newRow("late and failing answers") << QStringLiteral("--stdin --latency 5 --fail a") << QString();
}

void HostOptionsTest::takesStandardInput()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, scenario);
    const OptionsResult result = read(commandLine);
    QCOMPARE(result.kind, Kind::Run);
    QVERIFY(result.options.choice.standardInput);
    QCOMPARE(result.options.choice.scenario, scenario);
}

void HostOptionsTest::takesTheBackendsSettings()
{
    const BackendSettings settings =
        read(QStringLiteral("--rate 59.5 --fail filter6d* --fail output?active=0.25 --latency 150")).options.settings;
    QCOMPARE(settings.rate.value_or(0.0), 59.5);
    QCOMPARE(settings.latency.count(), 150);
    QCOMPARE(settings.faults.size(), 2);
    QCOMPARE(settings.faults.at(0).pattern, QStringLiteral("filter6d*"));
    QCOMPARE(settings.faults.at(0).rate, 1.0);
    QCOMPARE(settings.faults.at(1).pattern, QStringLiteral("output?active"));
    QCOMPARE(settings.faults.at(1).rate, 0.25);
}

void HostOptionsTest::takesAVersion_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<int>>("version"); // empty: refused
    QTest::newRow("three numbers") << QStringLiteral("1.21.3") << QVector<int>{1, 21, 3};
    QTest::newRow("two numbers leave the patch level open") << QStringLiteral("0.13") << QVector<int>{0, 13, -1};
    QTest::newRow("an open patch level") << QStringLiteral("1.12.-1") << QVector<int>{1, 12, -1};
    QTest::newRow("a single number is refused") << QStringLiteral("2") << QVector<int>{};
    QTest::newRow("four numbers are refused") << QStringLiteral("1.2.3.4") << QVector<int>{};
    QTest::newRow("a letter is refused") << QStringLiteral("1.2.x") << QVector<int>{};
    QTest::newRow("a number beyond any version is refused") << QStringLiteral("1.99999999999.0") << QVector<int>{};
}

void HostOptionsTest::takesAVersion()
{
    QFETCH(QString, text);
    QFETCH(QVector<int>, version);
    const OptionsResult result = read(QStringLiteral("--backend-version ") + text);
    QCOMPARE(result.kind, version.isEmpty() ? Kind::Error : Kind::Run);
    const std::optional<ProtocolVersion> read = result.options.settings.version;
    QCOMPARE(read ? QVector<int>({read->major, read->minor, read->patch}) : QVector<int>(), version);
}

void HostOptionsTest::takesWhatTheProgramDoes()
{
    const OptionsResult result = read(QStringLiteral(
        "--modules /m --observer --screenshot a.png --save-tables t --after 50 --duration 900 --log a.log"));
    QCOMPARE(result.kind, Kind::Run);
    QCOMPARE(result.options.modulesFolder, QStringLiteral("/m"));
    QVERIFY(result.options.observer);
    QCOMPARE(result.options.screenshotFile, QStringLiteral("a.png"));
    QCOMPARE(result.options.tablesFolder, QStringLiteral("t"));
    QCOMPARE(result.options.saveAfter.count(), 50);
    QVERIFY(result.options.duration.has_value());
    QCOMPARE(result.options.duration->count(), 900);
    QCOMPARE(result.options.logFile, QStringLiteral("a.log"));
}

void HostOptionsTest::refusesWhatItCannotFollow_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("an unknown option") << QStringLiteral("--fast") << QStringLiteral("fast");
    QTest::newRow("an option without its value") << QStringLiteral("--replay") << QStringLiteral("replay");
    QTest::newRow("two scenarios") << QStringLiteral("--simulate heads crowd") << QStringLiteral("heads, crowd");
    QTest::newRow("a scenario and a file to replay")
        << QStringLiteral("heads --replay a.txt") << QStringLiteral("--replay");
    QTest::newRow("a simulation and a file to replay")
        << QStringLiteral("--simulate --replay a.txt") << QStringLiteral("--replay");
    QTest::newRow("a rate of zero") << QStringLiteral("--rate 0") << QStringLiteral("\"0\"");
    QTest::newRow("a negative rate") << QStringLiteral("--rate=-5") << QStringLiteral("\"-5\"");
    QTest::newRow("a rate that is no number") << QStringLiteral("--rate nan") << QStringLiteral("\"nan\"");
    QTest::newRow("a rate beyond every backend") << QStringLiteral("--rate 1e9") << QStringLiteral("\"1e9\"");
    QTest::newRow("a latency that is no number") << QStringLiteral("--latency soon") << QStringLiteral("\"soon\"");
    QTest::newRow("a negative latency") << QStringLiteral("--latency=-1") << QStringLiteral("\"-1\"");
    QTest::newRow("a duration beyond an int")
        << QStringLiteral("--duration 99999999999") << QStringLiteral("\"99999999999\"");
    QTest::newRow("a rate of failures above one") << QStringLiteral("--fail a*=1.5") << QStringLiteral("a*=1.5");
    QTest::newRow("a failure without a pattern") << QStringLiteral("--fail =0.5") << QStringLiteral("=0.5");
    QTest::newRow("a time for no picture") << QStringLiteral("--after 100") << QStringLiteral("--screenshot");
    QTest::newRow("standard input and a file to replay")
        << QStringLiteral("--stdin --replay a.txt") << QStringLiteral("--stdin and --replay");
    QTest::newRow("a rate of lines that come when they come")
        << QStringLiteral("--stdin --rate 30") << QStringLiteral("--rate");
    QTest::newRow("a rate of a scenario that only answers")
        << QStringLiteral("--stdin --simulate heads --rate 30") << QStringLiteral("--rate");
    QTest::newRow("a version of what was seen")
        << QStringLiteral("--stdin --backend-version 1.12.0") << QStringLiteral("--backend-version");
    QTest::newRow("a time for no tables") << QStringLiteral("--after 100") << QStringLiteral("--save-tables");
    QTest::newRow("a picture in an unknown format") << QStringLiteral("--screenshot a.foo") << QStringLiteral("a.foo");
    QTest::newRow("tables in no folder") << QStringLiteral("--save-tables=") << QStringLiteral("--save-tables");
    QTest::newRow("modules in no folder") << QStringLiteral("--modules=") << QStringLiteral("--modules");
    QTest::newRow("a log without a name") << QStringLiteral("--log=") << QStringLiteral("--log");
    QTest::newRow("a picture without a name") << QStringLiteral("--screenshot=") << QStringLiteral("--screenshot");
}

void HostOptionsTest::refusesWhatItCannotFollow()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, complaint);
    const OptionsResult result = read(commandLine);
    QCOMPARE(result.kind, Kind::Error);
    QVERIFY2(result.text.contains(complaint), qPrintable(result.text));
}

void HostOptionsTest::answersWithATextAlone_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("answered");
    for (const char *argument : {"--help", "-h", "--version", "-v", "--list-scenarios"})
        QTest::newRow(argument) << QString::fromLatin1(argument) << true;
    for (const char *argument : {"--simulate", "--observer"})
        QTest::newRow(argument) << QString::fromLatin1(argument) << false;
}

void HostOptionsTest::answersWithATextAlone()
{
    QFETCH(QString, argument);
    QFETCH(bool, answered);
    const OptionsResult result = read(argument);
    QCOMPARE(result.kind, answered ? Kind::Answer : Kind::Run);
    QCOMPARE(result.text.isEmpty(), !answered);
}

void HostOptionsTest::listsEveryScenario()
{
    const QStringList lines = read(QStringLiteral("--list-scenarios")).text.split(QLatin1Char('\n'));
    const QStringList names = scenarioNames();
    QVERIFY(names.size() >= 2);
    QCOMPARE(lines.size(), names.size());
    for (int row = 0; row < names.size(); ++row) {
        QVERIFY(lines.at(row).startsWith(names.at(row) + QLatin1Char(' ')));
        QVERIFY(!scenarioDescription(names.at(row)).isEmpty());
        QVERIFY(lines.at(row).endsWith(scenarioDescription(names.at(row))));
    }
}

QTEST_GUILESS_MAIN(HostOptionsTest)
#include "tst_hostoptions.moc"
