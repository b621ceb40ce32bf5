// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/programrun.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

Q_DECLARE_METATYPE(QProcessEnvironment)

namespace {

const QString hint = QStringLiteral("Try 'trackhost --help' for the options.\n");

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QLatin1String(name));
    return environment;
}

void send(const QProcess &process, int signal)
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
}

} // namespace

/// How the built program ends: by a signal, by what it is asked to save, or before it has begun.
class TrackhostEndTest : public QObject {
    Q_OBJECT

private slots:
    void refusesWithoutADisplay_data();
    void refusesWithoutADisplay();
    void saysThatThereIsNoDisplay_data();
    void saysThatThereIsNoDisplay();
    void endsInOrderOnASignal_data();
    void endsInOrderOnASignal();
    void endsInOrderOnASignalWhileItStarts();
    void endsHardOnASecondSignal();
    void leavesIgnoredSignalsIgnored();
    void savesThePictureInTheFormatOfItsName_data();
    void savesThePictureInTheFormatOfItsName();
    void savesWhatTheTablesShow();
    void runsTheScriptOfTheReadme();
    void endsWithOneWhenTablesCannotBeSaved_data();
    void endsWithOneWhenTablesCannotBeSaved();

private:
    /// Starts the program and waits until its log file is there, which the program opens early, and contains \a text.
    void startIn(QProcess &process, const QStringList &arguments, const QByteArray &text = "Loaded ");

    QTemporaryDir folder;
    const QString program = QStringLiteral(TRACKHOST);
    const QStringList modules{QStringLiteral("--modules"), QStringLiteral(TEST_MODULES "/testmodule")};
};

void TrackhostEndTest::startIn(QProcess &process, const QStringList &arguments, const QByteArray &text)
{
    const QString name = folder.filePath(QStringLiteral("started.log"));
    QFile::remove(name);
    process.start(program, QStringList{QStringLiteral("--log"), name} + arguments);
    const auto hasStarted = [&] {
        QFile log(name);
        return log.open(QIODevice::ReadOnly) && log.readAll().contains(text);
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasStarted(), 30000);
}

void TrackhostEndTest::refusesWithoutADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *name, const QStringList &arguments, const QString &complaint) {
        QTest::newRow(name) << arguments << complaint;
    };
    row("an unknown option", {QStringLiteral("--fast")}, QStringLiteral("Unknown option 'fast'."));
    row("an unknown scenario", {QStringLiteral("no-such")}, QStringLiteral("no-such is neither a file nor "));
    row("a file to replay that is not there", {QStringLiteral("--replay"), QStringLiteral("/nonexistent/a.txt")},
        QStringLiteral("/nonexistent/a.txt"));
    row("modules in a folder that is not there", {QStringLiteral("--modules"), QStringLiteral("/nonexistent")},
        QStringLiteral("--modules takes a folder, which \"/nonexistent\" is not."));
    row("modules in a file", {QStringLiteral("--modules"), program},
        QStringLiteral("--modules takes a folder, which \"%1\" is not.").arg(program));
    row("a log in a folder that is not there", {QStringLiteral("--log"), QStringLiteral("/nonexistent/a.log")},
        QStringLiteral("The log file /nonexistent/a.log can't be written: "));
    row("a picture in an unknown format", {QStringLiteral("--screenshot"), QStringLiteral("a.foo")},
        QStringLiteral("--screenshot can't save a picture in the format of \"a.foo\"."));
    row("exclusive sources", {QStringLiteral("--stdin"), QStringLiteral("--replay"), QStringLiteral("a.txt")},
        QStringLiteral("--stdin and --replay exclude each other."));
}

void TrackhostEndTest::refusesWithoutADisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const ProgramRun run = runProgram(program, arguments, withoutDisplay());
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("trackhost: ") + complaint), qPrintable(run.err));
    QVERIFY2(run.err.endsWith(QLatin1Char('\n') + hint), qPrintable(run.err));
    QCOMPARE(run.err.count(QLatin1Char('\n')), 2);
    QCOMPARE(run.out, QString());
}

void TrackhostEndTest::saysThatThereIsNoDisplay_data()
{
    QTest::addColumn<QProcessEnvironment>("environment");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *name, const QProcessEnvironment &environment, const QStringList &arguments,
                        const QString &complaint) { QTest::newRow(name) << environment << arguments << complaint; };
    const QProcessEnvironment none = withoutDisplay();
    row("none", none, {}, QStringLiteral("There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set. "));
    row("none of an option", none, {QStringLiteral("-display"), QStringLiteral("nowhere:77")},
        QStringLiteral("No window can be shown on the display \"nowhere:77\"."));
    row("a platform that Qt does not know", none, {QStringLiteral("-platform"), QStringLiteral("foo")},
        QStringLiteral("No window can be shown by Qt's platform \"foo\"."));
    QProcessEnvironment x = none;
    x.insert(QStringLiteral("DISPLAY"), QStringLiteral("nowhere:77"));
    row("one that is not there", x, {}, QStringLiteral("No window can be shown on the display \"nowhere:77\"."));
}

void TrackhostEndTest::saysThatThereIsNoDisplay()
{
    QFETCH(QProcessEnvironment, environment);
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const ProgramRun run = runProgram(program, modules + arguments, environment);
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("trackhost: ") + complaint), qPrintable(run.err));
    QCOMPARE(run.err.count(QLatin1Char('\n')), 1);
    QCOMPARE(run.out, QString());
}

void TrackhostEndTest::endsInOrderOnASignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TrackhostEndTest::endsInOrderOnASignal()
{
    QFETCH(int, signal);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QTemporaryDir home;
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    process.setProcessEnvironment(environment);
    startIn(process, modules);
    send(process, signal);
    const ProgramRun run = endOf(process);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
    QCOMPARE(run.err, QString());
    const QSettings settings(home.filePath(QStringLiteral("VORNAK/trackhost.conf")), QSettings::IniFormat);
    QVERIFY(!settings.value(QStringLiteral("window/state")).toByteArray().isEmpty());
}

void TrackhostEndTest::endsInOrderOnASignalWhileItStarts()
{
    QProcess process;
    startIn(process, modules + QStringList{QStringLiteral("--latency"), QStringLiteral("50")}, QByteArray());
    send(process, SIGTERM);
    const ProgramRun run = endOf(process);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
}

void TrackhostEndTest::endsHardOnASecondSignal()
{
    QProcess process;
    startIn(process, modules + QStringList{QStringLiteral("--latency"), QStringLiteral("60000")}, QByteArray());
    send(process, SIGTERM);
    QTest::qWait(50); // two at once would be one
    send(process, SIGINT);
    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), SIGINT);
}

void TrackhostEndTest::leavesIgnoredSignalsIgnored()
{
    void (*const before)(int) = std::signal(SIGHUP, SIG_IGN); // as nohup does
    QProcess process;
    startIn(process, modules);
    std::signal(SIGHUP, before);
    send(process, SIGHUP);
    QVERIFY(!process.waitForFinished(300));
    send(process, SIGTERM);
    QCOMPARE(endOf(process).exitCode, 0);
}

void TrackhostEndTest::savesThePictureInTheFormatOfItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("JPEG") << QStringLiteral("a.jpg") << QByteArray("jpeg");
    QTest::newRow("in capitals") << QStringLiteral("b.JPEG") << QByteArray("jpeg");
    QTest::newRow("bitmap") << QStringLiteral("c.bmp") << QByteArray("bmp");
    QTest::newRow("PNG") << QStringLiteral("d.x.png") << QByteArray("png");
    QTest::newRow("PNG without a suffix") << QStringLiteral("picture") << QByteArray("png");
}

void TrackhostEndTest::savesThePictureInTheFormatOfItsName()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString file = folder.filePath(name);
    const ProgramRun run = runProgram(
        program,
        modules + QStringList{QStringLiteral("--screenshot"), file, QStringLiteral("--after"), QStringLiteral("1")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(QImageReader::imageFormat(file), format);
}

void TrackhostEndTest::savesWhatTheTablesShow()
{
    const QString tables = folder.filePath(QStringLiteral("new/tables"));
    const ProgramRun run = runProgram(program,
                                      {QStringLiteral("--modules"), QStringLiteral(DATADISPLAY_FOLDER),
                                       QStringLiteral("sensors"), QStringLiteral("--save-tables"), tables});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QString());
    QFile file(tables + QStringLiteral("/tableWidget6d.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.constFirst(),
             QStringLiteral("Body ID,Name,Filter,Sensor ID,x [mm],y [mm],z [mm],rx [deg],ry [deg],rz [deg],Battery,"
                            "Temp. [°C]"));
    QVERIFY2(lines.at(1).startsWith(QStringLiteral("1,Drains,,A01,")), qPrintable(lines.at(1)));
    QVERIFY2(lines.at(1).endsWith(QStringLiteral("°C")), qPrintable(lines.at(1)));
    QVERIFY2(lines.at(1).section(QLatin1Char(','), 10, 10).endsWith(QLatin1Char('%')), qPrintable(lines.at(1)));
    QVERIFY(QFile::exists(tables + QStringLiteral("/tableWidget3d.csv")));
}

void TrackhostEndTest::runsTheScriptOfTheReadme()
{
    QFile readme(QStringLiteral(README));
    QVERIFY(readme.open(QIODevice::ReadOnly));
    const QStringList blocks = QString::fromUtf8(readme.readAll()).split(QStringLiteral("```"));
    QStringList scripts = blocks.filter(QStringLiteral("./run --stdin"));
    QCOMPARE(scripts.size(), 1);
    QProcess shell;
    shell.setWorkingDirectory(folder.path());
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), scripts.first().replace(QStringLiteral("./run"), program)});
    const ProgramRun run = endOf(shell);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QString());
    const QStringList lines = run.out.split(QLatin1Char('\n'));
    QVERIFY2(lines.value(0).startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
    QVERIFY2(lines.value(1).startsWith(QStringLiteral("Body ID,")), qPrintable(run.out));
    static const QRegularExpression body(
        QStringLiteral("\\A1,.*,\\d+\\.00,20\\.00,1500\\.00,0\\.00,0\\.00,0\\.00\r\\z"));
    QVERIFY2(body.match(lines.value(2)).hasMatch(), qPrintable(run.out));
}

void TrackhostEndTest::endsWithOneWhenTablesCannotBeSaved_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("complaint");
    const QStringList real{QStringLiteral("--modules"), QStringLiteral(DATADISPLAY_FOLDER)};
    const QStringList soon{QStringLiteral("--after"), QStringLiteral("1")};
    QTest::newRow("in a folder that can't be made")
        << real + soon + QStringList{QStringLiteral("--save-tables"), program + QStringLiteral("/tables")}
        << QStringLiteral("trackhost: The folder %1/tables for the tables can't be made.").arg(program);
    const QString taken = folder.filePath(QStringLiteral("taken"));
    QVERIFY(QDir().mkpath(taken + QStringLiteral("/tableWidget6d.csv")));
    QTest::newRow("where a folder has the name of one")
        << real + soon + QStringList{QStringLiteral("--save-tables"), taken}
        << QStringLiteral("trackhost: The table %1/tableWidget6d.csv can't be saved: ").arg(taken);
    QTest::newRow("when the run ends before")
        << real + QStringList{QStringLiteral("--save-tables"), taken, QStringLiteral("--duration"), QStringLiteral("1")}
        << QStringLiteral("trackhost: The tables could not be saved in %1: the run ended before their time.")
               .arg(taken);
}

void TrackhostEndTest::endsWithOneWhenTablesCannotBeSaved()
{
    QFETCH(QStringList, options);
    QFETCH(QString, complaint);
    const ProgramRun run = runProgram(program, options);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.startsWith(complaint), qPrintable(run.err));
    QVERIFY2(run.out.startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
}

QTEST_GUILESS_MAIN(TrackhostEndTest)
#include "tst_trackhostend.moc"
