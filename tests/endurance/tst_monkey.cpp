// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/monkey.h"
#include "tests/support/repetitions.h"
#include "tests/support/sanitizers.h"

#include <QApplication>
#include <QFileInfo>
#include <QFont>
#include <QLoggingCategory>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <QtTest>

#include <csignal>
#include <memory>
#include <random>
#include <vector>

#include <unistd.h>

namespace {

constexpr std::size_t mostBytes = 20;

std::array<char, 2 * mostBytes + 96> playing{}; // the sequence that is being played, for the last words of the process

void tellSequence()
{
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, playing.data(), qstrlen(playing.data()));
}

#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER

// GCC has the function, but not its header.
extern "C" void __sanitizer_set_death_callback(void (*callback)());

void prepareLastWords()
{
    __sanitizer_set_death_callback(tellSequence);
}

#else

extern "C" void tellAndDie(int signal)
{
    tellSequence();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void prepareLastWords()
{
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGTERM})
        std::signal(signal, tellAndDie);
}

#endif

QByteArray randomSequence(std::mt19937 &random)
{
    QByteArray bytes;
    const std::size_t length = 4 + random() % (mostBytes - 4);
    while (static_cast<std::size_t>(bytes.size()) < length)
        bytes.append(static_cast<char>(random() & 0xffU));
    return bytes;
}

/// \a number: in its series, from 0.
void setPlaying(const QByteArray &bytes, qint64 number)
{
    const QByteArray text =
        "\nVORNAK_MONKEY=" + bytes.toHex() + ", sequence " + QByteArray::number(number) + ", was being played\n";
    std::copy_n(text.constData(), text.size() + 1, playing.begin());
}

/// One of the processes that share a series.
std::unique_ptr<QProcess> startPart(qint64 first, qint64 count, qint64 minutes)
{
    auto part = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VORNAK_MONKEY_FROM"), QString::number(first));
    environment.insert(QStringLiteral("VORNAK_MONKEY_COUNT"), QString::number(count));
    environment.insert(QStringLiteral("VORNAK_LONG_MINUTES"), QString::number(minutes));
    part->setProcessEnvironment(environment);
    part->setProcessChannelMode(QProcess::MergedChannels);
    part->start(QCoreApplication::applicationFilePath(), {QStringLiteral("randomSequences")});
    return part;
}

} // namespace

/// Calls, clicks, keys and lines in orders that nobody thought of. VORNAK_MONKEY=<hexadecimal bytes> plays one
/// sequence again, VORNAK_MONKEY_SEED=<number> another series than the usual one, VORNAK_MONKEY_FROM=<number> begins at
/// that sequence of the series, VORNAK_MONKEY_COUNT=<number> plays so many: what breaks late may have been broken by
/// one before. A long run is shared by processes, as one that has played for an hour is three times as slow.
class TestMonkey : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void knownSequences_data();
    void knownSequences();
    void randomSequences();

private:
    void play(qint64 first, const Repetitions &repetitions);
    void share(qint64 first, const Repetitions &repetitions);
};

void TestMonkey::initTestCase()
{
    prepareLastWords();
    // The home of the panels, which save their preferences at every unloading and wait for the disk then.
    if (!qEnvironmentVariableIsSet("TMPDIR") && QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    // Shaping takes a tenth of the time, and the texts are not what is on trial.
    QFont font = QApplication::font();
    font.setStyleStrategy(QFont::PreferNoShaping);
    QApplication::setFont(font);
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // thousands, of the offscreen platform
}

void TestMonkey::knownSequences_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("unloaded inside the open menu") << QByteArray::fromHex("06001000");
    QTest::newRow("unloaded inside the open dialog") << QByteArray::fromHex("0c001000");
    QTest::newRow("unloaded and loaded inside the open dialog") << QByteArray::fromHex("0c0010001001");
    QTest::newRow("reconfigured and cleared inside the open menu") << QByteArray::fromHex("060000030200");
    QTest::newRow("the dialog from the menu, then unloaded") << QByteArray::fromHex("06000b001000");
    if (qEnvironmentVariableIsSet("VORNAK_MONKEY"))
        QTest::newRow("the given one") << QByteArray::fromHex(qgetenv("VORNAK_MONKEY"));
}

void TestMonkey::knownSequences()
{
    QFETCH(const QByteArray, bytes);
    Monkey monkey;
    setPlaying(bytes.left(mostBytes), 0);
    QCOMPARE(monkey.play(bytes), QString());
    QVERIFY(monkey.stepsInside() > 0 || qEnvironmentVariableIsSet("VORNAK_MONKEY"));
}

void TestMonkey::randomSequences()
{
    const qint64 first = qEnvironmentVariableIntValue("VORNAK_MONKEY_FROM");
    const Repetitions usual = repetitions(10'000, 1'000'000);
    bool isGiven = false;
    const qint64 given = qEnvironmentVariableIntValue("VORNAK_MONKEY_COUNT", &isGiven);
    if (isGiven)
        play(first, {given, 1}); // by somebody who also chose the time
    else if (isLongRun())
        share(first, usual);
    else
        play(first, usual);
}

void TestMonkey::play(qint64 first, const Repetitions &repetitions)
{
    bool isNumber = false;
    const int givenSeed = qEnvironmentVariableIntValue("VORNAK_MONKEY_SEED", &isNumber);
    std::mt19937 random(isNumber ? static_cast<unsigned>(givenSeed) : 20260U);
    Monkey monkey;
    const TimeLimit limit(60'000);
    for (qint64 i = 0; i < first; ++i)
        randomSequence(random);
    qint64 played = 0;
    for (; played < repetitions.wanted && !limit.isOver(); ++played) {
        const QByteArray bytes = randomSequence(random);
        setPlaying(bytes, first + played);
        const QString problem = monkey.play(bytes);
        QVERIFY2(problem.isEmpty(),
                 qPrintable(QStringLiteral("VORNAK_MONKEY=%1, sequence %2: %3")
                                .arg(QString::fromLatin1(bytes.toHex()))
                                .arg(first + played)
                                .arg(problem)));
        if ((first + played) % 64 == 63)
            monkey.unload();
    }
    qInfo("%lld of %lld sequences, %lld steps inside a menu or dialog", played, repetitions.wanted,
          monkey.stepsInside());
    QVERIFY(played >= repetitions.least);
    QVERIFY(monkey.stepsInside() > 0);
}

void TestMonkey::share(qint64 first, const Repetitions &repetitions)
{
    constexpr qint64 countOfPart = 20'000;
    const TimeLimit limit(0);
    const qint64 end = first + repetitions.wanted;
    qint64 next = first;
    qint64 played = 0;
    qint64 stepsInside = 0;
    std::vector<std::unique_ptr<QProcess>> parts;
    while (!parts.empty() || (next < end && !limit.isOver())) {
        while (next < end && !limit.isOver() && parts.size() < static_cast<std::size_t>(QThread::idealThreadCount())) {
            const qint64 count = qMin(countOfPart, end - next);
            parts.push_back(startPart(next, count, limit.minutesLeft()));
            next += count;
        }
        const std::unique_ptr<QProcess> part = std::move(parts.front());
        parts.erase(parts.begin());
        QVERIFY(part->waitForFinished(-1));
        const QByteArray output = part->readAll();
        static const QRegularExpression counts(
            QStringLiteral("(\\d+) of \\d+ sequences, (\\d+) steps inside a menu or dialog"));
        const QRegularExpressionMatch match = counts.match(QString::fromLocal8Bit(output));
        QVERIFY2(part->exitStatus() == QProcess::NormalExit && part->exitCode() == 0 && match.hasMatch(),
                 output.constData());
        played += match.captured(1).toLongLong();
        stepsInside += match.captured(2).toLongLong();
    }
    qInfo("%lld of %lld sequences, %lld steps inside a menu or dialog", played, repetitions.wanted, stepsInside);
    QVERIFY(played >= repetitions.least);
}

QTEST_MAIN(TestMonkey)
#include "tst_monkey.moc"
