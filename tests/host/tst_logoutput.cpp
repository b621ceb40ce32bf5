// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/hostlog.h"
#include "host/logoutput.h"
#include "host/standarderror.h"
#include "tests/host/capturederror.h"
#include "tests/support/fulldisk.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>

using namespace host;

namespace {

/// Warnings of a log with \a file, flushed.
QByteArray printedWith(std::unique_ptr<LogFile> file, const QStringList &warnings)
{
    HostLog log;
    const LogOutput output(log, std::move(file));
    const CapturedError captured;
    for (const QString &text : warnings) {
        log.warning(text);
        log.flush();
    }
    log.flush(); // what the output itself had to say
    return captured.take();
}

} // namespace

/// Where the log goes besides its dock.
class LogOutputTest : public QObject {
    Q_OBJECT

private slots:
    void printsATextAsOneLine_data();
    void printsATextAsOneLine();
    void printsWarningsAlone();
    void printsFromAnyThreadInWholeLines();
    void givesUpLinesThatNobodyReads();
    void printsNothingWhereStandardErrorIsClosed();
    void writesEveryEntryToTheFile();
    void replacesTheFile();
    void saysWhyAFileCannotBeWritten();
    void keepsWholeLinesOnAFullDisk();

private:
    QTemporaryDir folder;
};

void LogOutputTest::printsATextAsOneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char *name, const QString &text, const QByteArray &line) {
        QTest::newRow(name) << text << line;
    };
    row("a text", QStringLiteral("no answer"), "trackhost: no answer\n");
    row("line feeds are \\n", QStringLiteral("one\ntwo\n"), "trackhost: one\\ntwo\\n\n");
    row("a tabulator stays", QStringLiteral("one\ttwo"), "trackhost: one\ttwo\n");
    row("control characters do not reach the terminal", QStringLiteral("\x1b[2J\r\x7f"),
        "trackhost: \\x1b[2J\\x0d\\x7f\n");
    row("an empty text", QString(), "trackhost: \n");
    row("letters of any script", QString::fromUtf8("Büro 東"), "trackhost: Büro 東\n");
    row("a line has 4 KiB at most", QString(5000, QLatin1Char('x')),
        "trackhost: " + QByteArray(4092 - 11, 'x') + "...\n");
    row("a long line ends with a whole character", QLatin1Char('x') + QString(5000, QChar(0xe4)),
        "trackhost: x" + QByteArray("\xc3\xa4").repeated((4092 - 12) / 2) + "...\n");
}

void LogOutputTest::printsATextAsOneLine()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, line);
    const CapturedError captured;
    printError(text);
    QCOMPARE(captured.take(), line);
}

void LogOutputTest::printsWarningsAlone()
{
    HostLog log;
    const LogOutput output(log, nullptr);
    const CapturedError captured;
    log.info(QStringLiteral("connected"));
    log.warning(QStringLiteral("no\nanswer"));
    log.add(3, QStringLiteral("standard"), QStringLiteral("VORNAK4"), QStringLiteral("Error: Unable"));
    QCOMPARE(captured.take(), QByteArray());
    log.flush();
    QCOMPARE(captured.take(), QByteArray("trackhost: warning: no\\nanswer\ntrackhost: warning: Error: Unable\n"));
    log.flush();
    QCOMPARE(captured.take(), QByteArray());
}

void LogOutputTest::printsFromAnyThreadInWholeLines()
{
    const CapturedError captured;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([] {
            for (int line = 0; line < 50; ++line)
                printWarning(QStringLiteral("a line"));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(captured.take(), QByteArray("trackhost: warning: a line\n").repeated(200));
}

void LogOutputTest::givesUpLinesThatNobodyReads()
{
    const CapturedError captured;
    const QString text(1000, QLatin1Char('x'));
    for (int line = 0; line < 1000; ++line)
        printError(text);
    const QByteArray before = captured.take();
    QVERIFY2(before.endsWith("x\n"), before.right(20));
    const int written = before.count('\n');
    QVERIFY(written < 1000);
    printError(QStringLiteral("again"));
    QCOMPARE(captured.take(),
             QStringLiteral("trackhost: warning: %1 lines that nobody read are missing here\ntrackhost: again\n")
                 .arg(1000 - written)
                 .toUtf8());
    printError(QStringLiteral("and on"));
    QCOMPARE(captured.take(), QByteArray("trackhost: and on\n"));
}

void LogOutputTest::printsNothingWhereStandardErrorIsClosed()
{
    const CapturedError captured;
    ::close(STDERR_FILENO);
    printError(QStringLiteral("unheard"));
    ::dup2(STDOUT_FILENO, STDERR_FILENO);
    QCOMPARE(captured.take(), QByteArray());
}

void LogOutputTest::writesEveryEntryToTheFile()
{
    const QString name = folder.filePath(QStringLiteral("run.log"));
    HostLog log;
    QString error;
    const LogOutput output(log, LogFile::open(name, &error));
    QCOMPARE(error, QString());
    const CapturedError captured;
    log.info(QStringLiteral("connected"));
    log.add(2, QStringLiteral("standard"), QStringLiteral("VORNAK4"), QString::fromUtf8("Error:\nBüro"));
    log.flush();
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString time = QStringLiteral(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
    const QRegularExpression expected(QStringLiteral("\\A%1 info trackhost: connected\n"
                                                     "%1 warning VORNAK4: Error:\\\\nBüro\n\\z")
                                          .arg(time));
    const QString content = QString::fromUtf8(file.readAll());
    QVERIFY2(expected.match(content).hasMatch(), qPrintable(content));
    const QDateTime entryTime = QDateTime::fromString(content.section(QLatin1Char(' '), 0, 0), Qt::ISODateWithMs);
    QVERIFY(qAbs(entryTime.secsTo(QDateTime::currentDateTimeUtc())) < 60);
}

void LogOutputTest::replacesTheFile()
{
    const QString name = folder.filePath(QStringLiteral("old.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("something old"), 13);
    file.close();
    QString error;
    QVERIFY(LogFile::open(name, &error));
    QCOMPARE(file.size(), 0);
}

void LogOutputTest::saysWhyAFileCannotBeWritten()
{
    QString error;
    QVERIFY(!LogFile::open(QStringLiteral("/nonexistent/run.log"), &error));
    QVERIFY(!error.isEmpty());
    error.clear();
    QVERIFY(!LogFile::open(folder.path(), &error));
    QVERIFY(!error.isEmpty());
}

void LogOutputTest::keepsWholeLinesOnAFullDisk()
{
    const QString name = folder.filePath(QStringLiteral("full.log"));
    QString error;
    std::unique_ptr<LogFile> file = LogFile::open(name, &error);
    LogFile *const log = file.get();
    const LogEntry entry{QDateTime::currentDateTime(), 0, {}, QStringLiteral("trackhost"), QStringLiteral("an entry")};
    const QByteArray line = logLine(entry).toUtf8() + '\n';
    {
        const FullDisk disk(static_cast<rlim_t>(3 * line.size() - 1)); // two lines and most of a third
        QVERIFY(log->write(entry));
        QVERIFY(log->write(entry));
        QVERIFY(!log->write(entry));
        QVERIFY(!log->write(entry));
        QVERIFY(!log->error().isEmpty());
        QFile reader(name);
        QVERIFY(reader.open(QIODevice::ReadOnly));
        QCOMPARE(reader.readAll(), line.repeated(2));
        const QByteArray printed = printedWith(std::move(file), {QStringLiteral("first"), QStringLiteral("second")});
        QCOMPARE(printed.count("trackhost: warning: The log file " + name.toLocal8Bit() + " can't be written: "), 1);
        QVERIFY2(printed.startsWith("trackhost: warning: first\n"), printed);
        QVERIFY2(printed.contains("trackhost: warning: second\n"), printed);
    }
    file = LogFile::open(name, &error);
    {
        const FullDisk disk(10);
        QVERIFY(!file->write(entry));
        QVERIFY(!file->write(entry));
    }
    QVERIFY(file->write(entry));
    QFile reader(name);
    QVERIFY(reader.open(QIODevice::ReadOnly));
    const QByteArray content = reader.readAll();
    QVERIFY2(content.contains(" warning trackhost: 2 entries are missing here.\n"), content);
    QVERIFY2(content.endsWith(line), content);
    QCOMPARE(content.count('\n'), 2);
}

QTEST_GUILESS_MAIN(LogOutputTest)
#include "tst_logoutput.moc"
