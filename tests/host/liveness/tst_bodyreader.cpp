// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/bodyreader.h"

#include <QTest>

#include <clocale>

using namespace host;

/// Which bodies a line has, and which of them are tracked.
class BodyReaderTest : public QObject {
    Q_OBJECT

private slots:
    void readsIdsAndStates_data();
    void readsIdsAndStates();
    void readsNoMoreThanAThousandBodies();
    void readsNumbersInAnyLocale();
};

namespace {

/// As "1+ 2-": each id with a plus where the body is tracked.
QString textOf(const QByteArray &tag, const QByteArray &line)
{
    BodyList list;
    readBodies(tag, line, list);
    QStringList texts;
    for (std::size_t i = 0; i < list.count; ++i) {
        const BodySighting &body = list.sightings[i];
        texts << QString::number(body.id) + (body.tracked ? QLatin1Char('+') : QLatin1Char('-'));
    }
    return texts.join(QLatin1Char(' '));
}

QByteArray blockOf(const QByteArray &header)
{
    return " [" + header + "][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]";
}

} // namespace

void BodyReaderTest::readsIdsAndStates_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *tag, const QByteArray &line, const char *expected) {
        QTest::newRow(name) << QByteArray(tag) << line << QString::fromLatin1(expected);
    };
    const auto one = [](const char *header) -> QByteArray { return "6d 1" + blockOf(header); };
    row("a quality above 0 is tracked", "6d", "6d 2" + blockOf("1 0.5") + blockOf("2 -1.000"), "1+ 2-");
    row("a quality of 0 is tracked", "6d", one("1 0"), "1+");
    row("so is one of minus 0", "6d", one("1 -0.00"), "1+");
    row("a little below 0 is not", "6d", one("1 -0.0001"), "1-");
    row("an exponent is read", "6d", one("1 -1e-3"), "1-");
    row("a plus is read", "6d", one("1 +0.5"), "1+");
    row("infinity is tracked", "6d", one("1 inf"), "1+");
    row("its opposite is not", "6d", one("1 -inf"), "1-");
    row("what is no number is not below 0", "6d", one("1 nan"), "1+");
    row("a hexadecimal id is read", "6d", one("0x1F 1"), "31+");
    row("an octal id is read", "6d", one("010 1"), "8+");
    row("a negative id is read", "6d", one("-3 1"), "-3+");
    row("id 0 is read", "6d", one("0 1"), "0+");
    row("blanks before the numbers are skipped", "6d", one("   1   -1"), "1-");
    row("with a state, one above 0 is tracked", "6di", "6di 2" + blockOf("1 2 1") + blockOf("2 1 1"), "1+ 2+");
    row("a state of 0 is not", "6di", "6di 1" + blockOf("1 0 1"), "1-");
    row("nor a quality below 0", "6di", "6di 1" + blockOf("1 3 -1"), "1-");
    row("bodies count by their blocks", "6d", "6d 7" + blockOf("1 1") + blockOf("2 1"), "1+ 2+");
    row("a word instead of a number ends the reading", "6d", one("1 1") + blockOf("two 1") + blockOf("3 1"), "1+");
    row("so does a missing quality", "6d", one("1 1") + blockOf("2"), "1+");
    row("so does an empty block", "6d", one("1 1") + blockOf(""), "1+");
    row("a body without its rotation is left out", "6d", "6d 1 [1 1][1 2 3 4 5 6]", "");
    row("a block that is not closed is left out", "6d", "6d 1 [1 1][1 2 3 4 5 6][1 0 0", "");
    row("a line without blocks has no bodies", "6d", "6d 0", "");
    row("an empty line has none", "6d", "", "");
    row("zeros within a line do no harm", "6d", QByteArray("6d 1 [1\0 1][2][3]", 17), "");
    row("markers are no bodies", "3d", "3d 1 [1 1][1 2 3]", "");
    row("unknown tags have none", "7d", one("1 1"), "");
}

void BodyReaderTest::readsIdsAndStates()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    QFETCH(const QString, expected);
    QCOMPARE(textOf(tag, line), expected);
}

void BodyReaderTest::readsNoMoreThanAThousandBodies()
{
    QByteArray line = "6d 1100";
    for (int id = 0; id < 1100; ++id)
        line += blockOf(QByteArray::number(id) + " 1");
    BodyList list;
    readBodies("6d", line, list);
    QCOMPARE(list.count, std::size_t(1000));
    QCOMPARE(list.sightings.back().id, 999);
}

void BodyReaderTest::readsNumbersInAnyLocale()
{
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8"))
        QSKIP("The locale de_DE.UTF-8 is missing.");
    const QString text = textOf("6d", "6d 2" + blockOf("1 -0.5") + blockOf("2 -0.5e0"));
    std::setlocale(LC_NUMERIC, "C");
    QCOMPARE(text, QStringLiteral("1- 2-"));
}

QTEST_APPLESS_MAIN(BodyReaderTest)
#include "tst_bodyreader.moc"
