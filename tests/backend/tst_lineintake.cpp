// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/lineintake.h"
#include "backend/receivequeue.h"
#include "backend/seenbodies.h"

#include <QTest>

using namespace backend;

using namespace std::chrono_literals;

/// An intake with what it needs.
struct Intake {
    void add(const QByteArray &text) { lines.add({text, false}, 1s); }
    QVector<ReceivedLine> taken() { return queue.take(ReceiveQueue::Clock::now()); }

    SeenBodies bodies;
    ReceiveQueue queue;
    LineIntake lines{bodies, queue};
};

class TestLineIntake : public QObject {
    Q_OBJECT

private slots:
    void sortsLines_data();
    void sortsLines();
    void numbersTheLinesOfOutputAlone();
    void tellsEachUnknownWordOnce();
    void tellsOfNoMoreThanSoManyWords();
    void showsAWordWhateverItsBytes_data();
    void showsAWordWhateverItsBytes();
    void refusesAndTells();
    void tellsOfSomeRefusedLinesOnly();
};

void TestLineIntake::sortsLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("tag"); // empty: no line of output
    QTest::addColumn<int>("unknown");
    const auto row = [](const char *name, const QByteArray &text, const char *tag, int unknown) {
        QTest::newRow(name) << text << QByteArray(tag) << unknown;
    };
    row("6d", "6d 0", "6d", 0);
    row("6di", "6di 0", "6di", 0);
    row("3d", "3d 0", "3d", 0);
    row("the type alone", "6d", "6d", 0);
    row("with a carriage return", "3d\r", "3d", 0);
    row("a tab ends the word", "3d\t0", "3d", 0);
    row("blanks before the word", " \t3d 0", "3d", 0);
    row("what can't be read is the modules' to refuse", "6d banana", "6d", 0);
    row("another type", "5d 0", "", 1);
    row("a longer word", "6dx 0", "", 1);
    row("a shorter word", "6 0", "", 1);
    row("upper case", "6D 0", "", 1);
    row("a zero is no blank", QByteArray("6d\0 0", 5), "", 1);
    row("nothing", "", "", 0);
    row("blanks", " \t ", "", 0);
    row("a carriage return", "\r", "", 0);
}

void TestLineIntake::sortsLines()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, tag);
    QFETCH(const int, unknown);
    Intake intake;
    intake.add(text);
    const QVector<ReceivedLine> lines = intake.taken();
    QCOMPARE(lines.size(), tag.isEmpty() ? 0 : 1);
    if (!lines.isEmpty()) {
        QCOMPARE(lines[0].line.tag, tag);
        QCOMPARE(lines[0].line.text, text);
        QCOMPARE(lines[0].time, std::chrono::nanoseconds(1s));
    }
    QCOMPARE(intake.lines.unknown(), static_cast<quint64>(unknown));
    QCOMPARE(intake.lines.takeWarnings().size(), unknown);
    QCOMPARE(intake.lines.refused(), 0U);
}

void TestLineIntake::numbersTheLinesOfOutputAlone()
{
    Intake intake;
    for (const char *text : {"6d 0", "hello", "", "3d 0", "6d 1 [5000 1][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]", "6di 0"})
        intake.add(text);
    QByteArrayList seen;
    for (const ReceivedLine &line : intake.taken())
        seen.append(QByteArray::number(line.sequence) + ' ' + line.line.tag);
    QCOMPARE(seen, (QByteArrayList{"0 6d", "1 3d", "2 6di"}));
}

void TestLineIntake::tellsEachUnknownWordOnce()
{
    Intake intake;
    for (const char *text : {"hello world", "hello again", "bye", "hello"})
        intake.add(text);
    QCOMPARE(
        intake.lines.takeWarnings(),
        (QStringList{QStringLiteral("Lines that begin with \"hello\" are left out: they are none of 6d, 6di and 3d."),
                     QStringLiteral("Lines that begin with \"bye\" are left out: they are none of 6d, 6di and 3d.")}));
    intake.add("bye");
    QVERIFY(intake.lines.takeWarnings().isEmpty());
    QCOMPARE(intake.lines.unknown(), 5U);
}

void TestLineIntake::tellsOfNoMoreThanSoManyWords()
{
    Intake intake;
    for (int i = 0; i < 1000; ++i)
        intake.add("word" + QByteArray::number(i));
    QCOMPARE(intake.lines.takeWarnings().size(), 20);
    QCOMPARE(intake.lines.unknown(), 1000U);
}

void TestLineIntake::showsAWordWhateverItsBytes_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<QString>("shown");
    QTest::newRow("bytes that can't be printed")
        << QByteArray("\x1b[2Jx\0\xff", 7) << QStringLiteral("\"\\x1b[2Jx\\x00\\xff\"");
    QTest::newRow("a word without an end")
        << QByteArray(100000, 'y') << QLatin1Char('"') + QString(40, QLatin1Char('y')) + QStringLiteral("...\"");
    QTest::newRow("the place of a value") << QByteArray("%1") << QStringLiteral("\"%1\"");
}

void TestLineIntake::showsAWordWhateverItsBytes()
{
    QFETCH(const QByteArray, word);
    QFETCH(const QString, shown);
    Intake intake;
    intake.add(word);
    const QStringList warnings = intake.lines.takeWarnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings[0].contains(shown), qPrintable(warnings[0]));
}

void TestLineIntake::refusesAndTells()
{
    Intake intake;
    intake.lines.add({{}, true}, 1s);
    intake.add("6d 1 [1000 1][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]");
    QVERIFY(intake.taken().isEmpty());
    QCOMPARE(intake.lines.refused(), 2U);
    QCOMPARE(intake.lines.unknown(), 0U);
    QCOMPARE(intake.lines.takeWarnings(),
             (QStringList{QStringLiteral("A line of more than 1048576 bytes was refused."),
                          QStringLiteral("A line with more than 1000 bodies was refused.")}));
}

void TestLineIntake::tellsOfSomeRefusedLinesOnly()
{
    Intake intake;
    for (int i = 0; i < 1000; ++i)
        intake.lines.add({{}, true}, 1s);
    QCOMPARE(intake.lines.refused(), 1000U);
    QCOMPARE(intake.lines.takeWarnings().size(), 20);
}

QTEST_APPLESS_MAIN(TestLineIntake)
#include "tst_lineintake.moc"
