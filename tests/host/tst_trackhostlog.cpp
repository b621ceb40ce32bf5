// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/programrun.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// What the built program says without a window that anybody sees.
class TrackhostLogTest : public QObject {
    Q_OBJECT

private slots:
    void printsWarnings();
    void writesItsLogToAFile();
    void endsWithTwoWhenTheLogCannotBeWritten_data();
    void endsWithTwoWhenTheLogCannotBeWritten();
    void runsWithClosedStandardFiles();
    void runsOnWhenNobodyReadsItsOutput();
    void endsWithOneWithoutAModule();
    void saysWhileItLastsWhatTheBackendDoesNotAnswer();

private:
    QString contentOf(const QString &name);

    QTemporaryDir folder;
    const QString program = QStringLiteral(TRACKHOST);
    const QStringList briefly{QStringLiteral("--modules"), QStringLiteral(TEST_MODULES "/testmodule"),
                              QStringLiteral("--duration"), QStringLiteral("200")};
};

QString TrackhostLogTest::contentOf(const QString &name)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s could not be read", qPrintable(file.fileName()));
    return QString::fromUtf8(file.readAll());
}

void TrackhostLogTest::printsWarnings()
{
    const ProgramRun quiet = runProgram(program, briefly);
    QCOMPARE(quiet.exitCode, 0);
    QCOMPARE(quiet.err, QString());
    QTemporaryDir modules;
    QFile noModule(modules.filePath(QStringLiteral("broken.so")));
    QVERIFY(noModule.open(QIODevice::WriteOnly));
    const ProgramRun run = runProgram(
        program, {QStringLiteral("--modules"), modules.path(), QStringLiteral("--duration"), QStringLiteral("200")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err,
             QStringLiteral("trackhost: warning: %1 is not a module: it has no plug-in metadata that this "
                            "program can read.\n")
                 .arg(QFileInfo(noModule).canonicalFilePath()));
}

void TrackhostLogTest::writesItsLogToAFile()
{
    const QString name = folder.filePath(QStringLiteral("run.log"));
    const ProgramRun run = runProgram(program, briefly + QStringList{QStringLiteral("--log"), name});
    QCOMPARE(run.exitCode, 0);
    const QString log = contentOf(QStringLiteral("run.log"));
    QVERIFY2(log.contains(QStringLiteral("Z info trackhost: Connected to ")), qPrintable(log));
    QVERIFY2(log.contains(QStringLiteral("testmodule")), qPrintable(log));
    QVERIFY2(log.endsWith(QLatin1Char('\n')), qPrintable(log));
}

void TrackhostLogTest::endsWithTwoWhenTheLogCannotBeWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("in no folder") << QStringLiteral("/nonexistent/run.log");
    QTest::newRow("a folder") << folder.path();
}

void TrackhostLogTest::endsWithTwoWhenTheLogCannotBeWritten()
{
    QFETCH(QString, name);
    const ProgramRun run = runProgram(program, briefly + QStringList{QStringLiteral("--log"), name});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("trackhost: The log file %1 can't be written: ").arg(name)),
             qPrintable(run.err));
    QCOMPARE(run.out, QString());
}

void TrackhostLogTest::runsWithClosedStandardFiles()
{
    const QString name = folder.filePath(QStringLiteral("closed.log"));
    const ProgramRun run =
        runProgram(QStringLiteral("/bin/sh"),
                   QStringList{QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$@\" 0<&- 1>&- 2>&-"), program}
                       + briefly + QStringList{QStringLiteral("--log"), name});
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = contentOf(QStringLiteral("closed.log")).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY(!lines.isEmpty());
    for (const QString &line : lines)
        QVERIFY2(line.contains(QStringLiteral("Z info ")), qPrintable(line));
}

void TrackhostLogTest::runsOnWhenNobodyReadsItsOutput()
{
    QProcess process;
    process.start(program,
                  briefly
                      + QStringList{QStringLiteral("--replay"), QStringLiteral(TRAJECTORY), QStringLiteral("--fail"),
                                    QStringLiteral("*")});
    QVERIFY(process.waitForStarted());
    process.closeReadChannel(QProcess::StandardOutput);
    process.closeReadChannel(QProcess::StandardError);
    QCOMPARE(endOf(process).exitCode, 0);
}

void TrackhostLogTest::endsWithOneWithoutAModule()
{
    // The program looks beside itself, too.
    const QString lonely = folder.filePath(QStringLiteral("trackhost"));
    QVERIFY(QFile::copy(program, lonely));
    QTemporaryDir empty;
    QProcess process;
    process.start(lonely,
                  {QStringLiteral("--modules"), empty.path(), QStringLiteral("--duration"), QStringLiteral("1500")});
    QVERIFY(process.waitForStarted());
    QByteArray told;
    while (!told.endsWith('\n') && process.waitForReadyRead(30000))
        told = process.readAllStandardError();
    QVERIFY2(told.startsWith("trackhost: warning: There is no module in any of these folders: "), told);
    QVERIFY2(told.contains(empty.path().toUtf8()), told);
    QCOMPARE(process.state(), QProcess::Running); // told at once, given at the end
    const ProgramRun run = endOf(process);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.err, QString());
    QVERIFY2(run.out.startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
}

void TrackhostLogTest::saysWhileItLastsWhatTheBackendDoesNotAnswer()
{
    const QString lonely = folder.filePath(QStringLiteral("slow")); // of all modules, it finds the one that asks once
    QVERIFY(QFile::copy(program, lonely));
    const QString name = folder.filePath(QStringLiteral("slow.log"));
    QProcess process;
    process.start(
        lonely,
        briefly + QStringList{QStringLiteral("--latency"), QStringLiteral("5000"), QStringLiteral("--log"), name});
    process.setReadChannel(QProcess::StandardError);
    QTRY_VERIFY_WITH_TIMEOUT(process.canReadLine(), 60000);
    QCOMPARE(process.readLine(),
             QByteArray("trackhost: warning: the backend has not answered \"standard number_of_bodies\" for 1.0 s; the "
                        "window stands still\n"));
    QVERIFY(!contentOf(QStringLiteral("slow.log")).contains(QStringLiteral(" ms to answer"))); // it lasts
    const ProgramRun run = endOf(process);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QString());
    static const QRegularExpression entry(
        QStringLiteral("Z info trackhost: The backend took 5,\\d\\d\\d ms to answer \"standard number_of_bodies\"; the "
                       "window stood still meanwhile\\."));
    const QString log = contentOf(QStringLiteral("slow.log"));
    QVERIFY2(log.contains(entry), qPrintable(log));
}

QTEST_GUILESS_MAIN(TrackhostLogTest)
#include "tst_trackhostlog.moc"
