// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/linesplitter.h"

#include <QTest>

using backend::LineSplitter;

namespace {

constexpr int longest = LineSplitter::longestLine;

QVector<LineSplitter::Line> add(LineSplitter *splitter, const QByteArray &bytes)
{
    return splitter->add(bytes.constData(), bytes.size());
}

/// All lines of \a bytes that come in pieces of \a size, the rest included. "TOO LONG" stands for one that is.
QByteArrayList linesOf(const QByteArray &bytes, int size)
{
    LineSplitter splitter;
    QByteArrayList texts;
    const auto note = [&texts](const LineSplitter::Line &line) {
        texts.append(line.isTooLong ? QByteArray("TOO LONG") : line.text);
    };
    for (int place = 0; place < bytes.size(); place += size) {
        for (const LineSplitter::Line &line : add(&splitter, bytes.mid(place, size)))
            note(line);
    }
    if (const std::optional<LineSplitter::Line> rest = splitter.rest())
        note(*rest);
    return texts;
}

} // namespace

class TestLineSplitter : public QObject {
    Q_OBJECT

private slots:
    void splits_data();
    void splits();
    void refusesLinesThatAreTooLong_data();
    void refusesLinesThatAreTooLong();
    void forgetsTheRest();
};

void TestLineSplitter::splits_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("lines");
    const auto row = [](const char *name, const QByteArray &bytes, const QByteArrayList &lines) {
        QTest::newRow(name) << bytes << lines;
    };
    row("nothing is no line", "", {});
    row("each line feed ends a line", "one\ntwo\n", {"one", "two"});
    row("blank lines are lines", "\n\na\n\n", {"", "", "a", ""});
    row("what follows the last line feed is a line", "one\ntwo", {"one", "two"});
    row("a carriage return belongs to its line", "one\r\ntwo\r", {"one\r", "two\r"});
    row("a carriage return ends no line", "one\rtwo\n", {"one\rtwo"});
    row("zeros and other bytes are as good as any", QByteArray("a\0b\xff\n\0\n", 7),
        {QByteArray("a\0b\xff", 4), QByteArray("\0", 1)});
}

void TestLineSplitter::splits()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, lines);
    for (int size = 1; size <= 8; ++size)
        QCOMPARE(linesOf(bytes, size), lines);
}

void TestLineSplitter::refusesLinesThatAreTooLong_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("lines");
    const auto row = [](const char *name, const QByteArray &bytes, const QByteArrayList &lines) {
        QTest::newRow(name) << bytes << lines;
    };
    const QByteArray most(longest, 'x');
    row("the longest line is read", most + "\nb\n", {most, "b"});
    row("one more byte is too long", most + "x\nb\n", {"TOO LONG", "b"});
    row("a carriage return counts", most + "\r\n\n", {"TOO LONG", ""});
    row("a line that never ends is told at the end of the source", most + most + most, {"TOO LONG"});
    row("one after the other", most + "y\n" + most + "z\n", {"TOO LONG", "TOO LONG"});
}

void TestLineSplitter::refusesLinesThatAreTooLong()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, lines);
    for (const int size : {1000, 65536, 3 * longest}) {
        const QByteArrayList split = linesOf(bytes, size);
        QCOMPARE(split.size(), lines.size());
        for (int i = 0; i < lines.size(); ++i)
            QVERIFY(split[i] == lines[i]); // a megabyte says nothing in a message
    }
}

void TestLineSplitter::forgetsTheRest()
{
    LineSplitter splitter;
    QVERIFY(!splitter.rest());
    QVERIFY(add(&splitter, "half").isEmpty());
    QCOMPARE(splitter.rest()->text, QByteArray("half"));
    QVERIFY(!splitter.rest());
    QVERIFY(add(&splitter, QByteArray(longest + 1, 'x')).isEmpty());
    QVERIFY(splitter.rest()->isTooLong);
    QCOMPARE(add(&splitter, "whole\n").first().text, QByteArray("whole"));
}

QTEST_APPLESS_MAIN(TestLineSplitter)
#include "tst_linesplitter.moc"
