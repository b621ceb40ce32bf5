// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/programrun.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

// Both unknown to the program, which says so once it has read all before them.
const QByteArray firstWord("the-start");
const QByteArray lastWord("the-end");

/// A line of some bodies that says which one it is, as a tracker would print it.
QByteArray line6d(int number)
{
    QByteArray line = "6d 5";
    for (int body = 0; body < 5; ++body) {
        line += " [" + QByteArray::number(body) + " 1.0][" + QByteArray::number(number)
            + ".250 -20.500 1500.125 0 0 0][1 0 0 0 1 0 0 0 1]";
    }
    return line + '\n';
}

QByteArray line3d(int number)
{
    return "3d 1 [1 1.0][" + QByteArray::number(number) + " 2 3]\r\n";
}

/// The numbers of an account of the lines.
struct Account {
    quint64 sent = 0;
    quint64 stored = 0;
    quint64 dropped = 0;
    quint64 refused = 0;
    quint64 ignored = 0;
    quint64 late = 0;
    quint64 unknown = 0;
};

/// The account that stands in \a out and nothing else; nothing where it is another text, such as one of lines that
/// nobody can account for.
std::optional<Account> accountIn(const QString &out)
{
    static const QRegularExpression expected(
        QStringLiteral("\\Alines: (\\d+) sent, (\\d+) stored, (\\d+) dropped while the display was drawing, (\\d+) "
                       "refused, (\\d+) ignored(?:, (\\d+) late)?, (\\d+) unknown\n\\z"));
    const QRegularExpressionMatch match = expected.match(out);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = [&match](int index) { return match.captured(index).toULongLong(); };
    return Account{number(1), number(2), number(3), number(4), number(5), number(6), number(7)};
}

/// The program, fed by the test as by a tracker.
class FedProgram {
public:
    explicit FedProgram(const QStringList &arguments = {})
    {
        process.setReadChannel(QProcess::StandardError);
        process.start(QStringLiteral(TRACKHOST),
                      QStringList{QStringLiteral("--stdin"), QStringLiteral("--modules"), QStringLiteral(MODULES)}
                          + arguments);
    }

    void feed(const QByteArray &bytes)
    {
        process.write(bytes);
        while (process.bytesToWrite() > 0 && process.waitForBytesWritten(30000)) { }
    }
    /// Begins the input with an unknown word. Returns whether the program has read it: the panel is there by then.
    bool feedTheStart()
    {
        feed(firstWord + '\n');
        return hasSaid(firstWord);
    }
    /// Ends the input with an unknown word, and without a line feed. Returns whether the program has read it.
    bool feedTheEnd()
    {
        feed(lastWord);
        process.closeWriteChannel();
        return hasSaid(lastWord);
    }
    bool isRunning() const { return process.state() == QProcess::Running; }
    ProgramRun waitForTheEnd() { return endOf(process); }
    /// Ends the program as a terminal or a session does.
    ProgramRun end()
    {
        process.terminate();
        ProgramRun run = endOf(process);
        run.err.prepend(QString::fromUtf8(said));
        return run;
    }

private:
    bool hasSaid(const QByteArray &word)
    {
        while (!said.contains(word) && process.waitForReadyRead(60000))
            said += process.readAllStandardError();
        return said.contains(word);
    }

    QProcess process;
    QByteArray said; // on standard error
};

} // namespace

/// The built program and the real panel, with lines from standard input.
class StandardInputTest : public QObject {
    Q_OBJECT

private slots:
    void accountsForEveryLine_data();
    void accountsForEveryLine();
    void accountsForHostileInput();
    void letsAScenarioAnswer();
    void endsWhileItWaitsForALine();
    void runsWithAClosedInput();
};

void StandardInputTest::accountsForEveryLine_data()
{
    QTest::addColumn<int>("rate"); // lines per second; 0: as fast as they are read
    QTest::addColumn<int>("lines");
    QTest::newRow("60 lines a second") << 60 << 60;
    QTest::newRow("1000 lines a second") << 1000 << 1000;
    QTest::newRow("5000 lines a second") << 5000 << 10000;
    QTest::newRow("as fast as they are read") << 0 << 20000;
}

void StandardInputTest::accountsForEveryLine()
{
    QFETCH(const int, rate);
    QFETCH(const int, lines);
    FedProgram program;
    QVERIFY(program.feedTheStart());
    const auto begin = Clock::now();
    for (int fed = 0; fed < lines;) {
        const auto elapsed = std::chrono::duration<double>(Clock::now() - begin).count();
        const int due = rate > 0 ? static_cast<int>(elapsed * rate) + 1 : lines;
        QByteArray bytes;
        for (; fed < std::min(due, lines); ++fed)
            bytes += fed % 2 == 0 ? line6d(fed) : line3d(fed);
        program.feed(bytes);
        std::this_thread::sleep_for(2ms);
    }
    QVERIFY(program.feedTheEnd());
    QVERIFY(program.isRunning()); // the last picture stays
    const ProgramRun run = program.end();
    QCOMPARE(run.exitCode, 0);
    const std::optional<Account> account = accountIn(run.out);
    QVERIFY2(account, qPrintable(run.out));
    QCOMPARE(account->sent + account->late, static_cast<quint64>(lines));
    QCOMPARE(account->stored + account->dropped + account->refused + account->ignored, account->sent);
    QCOMPARE(account->refused, 0U);
    QCOMPARE(account->unknown, 2U);
    QVERIFY(account->stored > 0);
}

void StandardInputTest::accountsForHostileInput()
{
    QByteArray noise;
    for (int i = 0; i < 200000; ++i)
        noise += static_cast<char>((i * 7919 + i / 251) % 256);
    noise.replace('\n', ' ');
    const QByteArray body("[0 1.0][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]");
    FedProgram program;
    program.feed(line6d(1) + "\x7f" + noise + "\n\n \t\n\r\n"); // unknown, and three blank lines
    program.feed("6d 1 " + QByteArray(3'000'000, '[') + '\n'); // too long
    program.feed("6d 1 [1000 1.0]" + body.mid(7) + '\n'); // a body too many
    program.feed("6d 1 [0 1.0][1 2\n"); // what the panel can't read
    program.feed("6d 300 " + body + '\n'); // more promised than there is
    program.feed("6d\n3d many\n6d 1 " + body + "\r\n" + QByteArray(500'000, 'x') + '\n'); // the last one unknown
    QVERIFY(program.feedTheEnd());
    const ProgramRun run = program.end();
    QCOMPARE(run.exitCode, 0);
    const std::optional<Account> account = accountIn(run.out);
    QVERIFY2(account, qPrintable(run.out));
    QCOMPARE(account->sent + account->late, 8U);
    QCOMPARE(account->stored + account->dropped + account->refused + account->ignored, account->sent);
    QVERIFY(account->refused >= 2); // by the host; the panel may not have been shown yet
    QVERIFY(account->refused <= 6);
    QCOMPARE(account->unknown, 3U);
    QVERIFY2(run.err.contains(QStringLiteral("trackhost: warning: A line of more than 1048576 bytes was refused.\n")),
             qPrintable(run.err.left(2000)));
    QVERIFY(run.err.contains(QStringLiteral("trackhost: warning: A line with more than 1000 bodies was refused.\n")));
}

void StandardInputTest::letsAScenarioAnswer()
{
    QTemporaryDir folder;
    FedProgram program({QStringLiteral("--simulate"), QStringLiteral("default"), QStringLiteral("--log"),
                        folder.filePath(QStringLiteral("log"))});
    program.feed(line6d(1) + line3d(2));
    QVERIFY(program.feedTheEnd());
    const ProgramRun run = program.end();
    QCOMPARE(run.exitCode, 0);
    const std::optional<Account> account = accountIn(run.out);
    QVERIFY2(account, qPrintable(run.out));
    QCOMPARE(account->sent + account->late, 2U); // none of the scenario's own
    QFile log(folder.filePath(QStringLiteral("log")));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("Connected to standard input, version "));
}

void StandardInputTest::endsWhileItWaitsForALine()
{
    FedProgram program({QStringLiteral("--duration"), QStringLiteral("200")});
    program.feed("6d 5 [0 1"); // and nothing more, with the input open
    const ProgramRun run = program.waitForTheEnd();
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(accountIn(run.out), qPrintable(run.out));
    QCOMPARE(accountIn(run.out)->sent, 0U);
}

void StandardInputTest::runsWithAClosedInput()
{
    const ProgramRun run =
        runProgram(QStringLiteral("/bin/sh"),
                   {QStringLiteral("-c"), QStringLiteral("exec \"$0\" --stdin --modules \"$1\" --duration 300 <&-"),
                    QStringLiteral(TRACKHOST), QStringLiteral(MODULES)});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(accountIn(run.out), qPrintable(run.out));
    QCOMPARE(accountIn(run.out)->sent, 0U);
}

QTEST_GUILESS_MAIN(StandardInputTest)
#include "tst_standardinput.moc"
