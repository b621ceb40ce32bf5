// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "storetext.h"

#include <QtTest>

Q_DECLARE_METATYPE(LineOutcome)

namespace {

// The store in words, as long as nothing was received.
#define ZERO_ROTATION "0 0 0 0 0 0 0 0 0"
#define UNREACHED(id) id " -1 0 0 | 0 0 0 | 0 0 0 | " ZERO_ROTATION

// Blocks of one "6d" body, and what they store.
#define ROTATION "[1 2 3 4 5 6 7 8 9]"
#define POSE "[10 20 30 40 50 60]"
#define BODY(id) "[" id " 0.5] " POSE " " ROTATION " "
#define STORED_BODY(id) id " 0.5 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9"

// Blocks of one "6di" body, and what they store into a new record.
#define INERTIAL_BODY(id, state) "[" id " " state " 0.25] [11 21 31] " ROTATION " "
#define STORED_INERTIAL(id, state) id " 0.25 " state " 0 | 11 21 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9"

#define MARKER(id) "[" id " 0.5] [1 2 3] "
#define STORED_MARKER(id) id " 0.5 | 1 2 3"

} // namespace

class TrackingDataTest : public QObject {
    Q_OBJECT

private slots:
    void bodyLines_data();
    void bodyLines();
    void inertialLines_data();
    void inertialLines();
    void markerLines_data();
    void markerLines();
    void tags_data();
    void tags();
    void nothingIsReadBehindTheTerminator_data();
    void nothingIsReadBehindTheTerminator();

private:
    void checkBodies(const char *tag, bool inertial);
};

void TrackingDataTest::checkBodies(const char *tag, bool inertial)
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, line);
    QFETCH(const LineOutcome, outcome);
    QFETCH(const QByteArray, bodies);
    TrackingData data;
    data.useInertialFormat = inertial;
    QCOMPARE(receiveCopy(data, "3d", "3d 1 " MARKER("5")), LineOutcome::Stored);
    if (!before.isEmpty())
        QCOMPARE(receiveCopy(data, tag, before), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, tag, line), outcome);
    QCOMPARE(bodiesText(data), bodies);
    QCOMPARE(markersText(data), QByteArray(STORED_MARKER("5")));
    QVERIFY(!data.configured);
    QVERIFY(!data.sensorScheduleReset);
}

void TrackingDataTest::bodyLines_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<LineOutcome>("outcome");
    QTest::addColumn<QByteArray>("bodies");
    const auto row = [](const char *name, const char *before, const char *line, LineOutcome outcome,
                        const char *bodies) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(line) << outcome << QByteArray(bodies);
    };
    const LineOutcome stored = LineOutcome::Stored;
    const LineOutcome malformed = LineOutcome::Malformed;
    row("one body", "", "6d 1 " BODY("7"), stored, STORED_BODY("7"));
    row("two bodies in the order of the line", "", "6d 2 " BODY("9") BODY("4"), stored,
        STORED_BODY("9") "; " STORED_BODY("4"));
    row("no blanks between the blocks", "", "6d 1[7 0.5]" POSE ROTATION, stored, STORED_BODY("7"));
    row("other text between the blocks", "", "6d 1 a [7 0.5] ,b] " POSE "\n" ROTATION " c", stored, STORED_BODY("7"));
    row("numbers left over in each block", "", "6d 1 [7 0.5 1] [10 20 30 40 50 60 1] [1 2 3 4 5 6 7 8 9 1]", stored,
        STORED_BODY("7"));
    row("bodies left over behind the count", "", "6d 1 " BODY("7") BODY("8"), stored, STORED_BODY("7"));
    row("the count 0 empties the store", "6d 1 " BODY("7"), "6d 0", stored, "");
    row("the count 0 reads no block", "6d 1 " BODY("7"), "6d 0 " BODY("7"), stored, "");
    row("a negative count empties the store", "6d 1 " BODY("7"), "6d -5 " BODY("7"), stored, "");
    row("any separator is skipped", "", "6d:1 " BODY("7"), stored, STORED_BODY("7"));
    row("a digit as separator is not of the count", "", "6d51 " BODY("7"), stored, STORED_BODY("7"));
    row("a bracket as separator opens no block", "", "6d[1 " BODY("7"), stored, STORED_BODY("7"));
    row("the first two characters are not looked at", "", "xy 1 " BODY("7"), stored, STORED_BODY("7"));
    row("blanks before the count", "", "6d \t\n 1 " BODY("7"), stored, STORED_BODY("7"));
    row("a plus sign before the count", "", "6d +1 " BODY("7"), stored, STORED_BODY("7"));
    row("a hexadecimal count", "", "6d 0x2 " BODY("7") BODY("8"), stored, STORED_BODY("7") "; " STORED_BODY("8"));
    row("an octal count", "", "6d 02 " BODY("7") BODY("8"), stored, STORED_BODY("7") "; " STORED_BODY("8"));
    row("08 is the count 0", "6d 1 " BODY("7"), "6d 08 " BODY("7"), stored, "");
    row("0x is the count 0", "6d 1 " BODY("7"), "6d 0x " BODY("7"), stored, "");
    row("a point ends the count", "", "6d 1.9 " BODY("7"), stored, STORED_BODY("7"));
    row("a count beyond 32 bits is cut", "", "6d 4294967297 " BODY("7"), stored, STORED_BODY("7"));
    row("a count beyond long is cut to -1", "6d 1 " BODY("7"), "6d 99999999999999999999 " BODY("7"), stored, "");
    row("a count below long is cut to 0", "6d 1 " BODY("7"), "6d -99999999999999999999 " BODY("7"), stored, "");
    for (const char *line : {"", "6", "6d", "6d ", "6d \n", "6d x", "6d -", "6d +-1", "6d [1]", "6d .5"}) {
        QTest::newRow(qPrintable(QStringLiteral("no count in \"%1\": the store stays").arg(QLatin1String(line))))
            << QByteArray("6d 1 " BODY("7")) << QByteArray(line) << malformed << QByteArray(STORED_BODY("7"));
    }
    row("the second body is missing", "", "6d 2 " BODY("7"), malformed, STORED_BODY("7") "; " UNREACHED("1"));
    row("no block at all", "", "6d 2", malformed, UNREACHED("0") "; " UNREACHED("1"));
    row("bodies not reached get id and quality anew, and keep the rest", "6d 3 " BODY("7") BODY("8") BODY("9"),
        "6d 3 [4 1]", malformed,
        "4 1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9; 1 -1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9; "
        "2 -1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9");
    row("a growing store keeps its records and adds zeros", "6d 1 " BODY("7"), "6d 2", malformed,
        "0 -1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9; " UNREACHED("1"));
    row("a shrinking store drops the last", "6d 2 " BODY("7") "[8 1] [0 0 0 0 0 0] " ROTATION, "6d 1", malformed,
        "0 -1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9");
    row("a record dropped and added again is zero", "6d 0", "6d 1", malformed, UNREACHED("0"));
    row("an id without quality changes nothing", "", "6d 1 [7] " POSE ROTATION, malformed, UNREACHED("0"));
    row("an id that is a word changes nothing", "", "6d 1 [x 0.5] " POSE ROTATION, malformed, UNREACHED("0"));
    row("an unclosed first block changes nothing", "", "6d 1 [7 0.5", malformed, UNREACHED("0"));
    row("a pose of five numbers changes nothing but the first block's", "", "6d 1 [7 0.5] [10 20 30 40 50] " ROTATION,
        malformed, "7 0.5 2 0 | 0 0 0 | 0 0 0 | " ZERO_ROTATION);
    row("a missing pose too", "", "6d 1 [7 0.5]", malformed, "7 0.5 2 0 | 0 0 0 | 0 0 0 | " ZERO_ROTATION);
    row("a rotation of seven numbers stores the seven", "6d 1 " BODY("6"),
        "6d 1 [7 0.75] [11 21 31 41 51 61] [91 92 93 94 95 96 97]", malformed,
        "7 0.75 2 0 | 11 21 31 | 41 51 61 | 91 92 93 94 95 96 97 8 9");
    row("a word in the rotation stores what came before", "", "6d 1 [7 0.5] " POSE " [1 2 x 4 5 6 7 8 9]", malformed,
        "7 0.5 2 0 | 10 20 30 | 40 50 60 | 1 2 0 0 0 0 0 0 0");
    row("an unclosed rotation stores none of it", "", "6d 1 [7 0.5] " POSE " [1 2 3 4 5 6 7 8 9", malformed,
        "7 0.5 2 0 | 10 20 30 | 40 50 60 | " ZERO_ROTATION);
    row("a fault in the second body leaves the first", "", "6d 2 " BODY("7") "[8 0.5] [1]", malformed,
        STORED_BODY("7") "; 8 0.5 2 0 | 0 0 0 | 0 0 0 | " ZERO_ROTATION);
    row("an id in hexadecimal, cut to 32 bits", "", "6d 1 [0x100000007 0.5] " POSE ROTATION, stored, STORED_BODY("7"));
    row("an untracked body is stored like any other", "", "6d 1 [7 -1] " POSE ROTATION, stored,
        "7 -1 2 0 | 10 20 30 | 40 50 60 | 1 2 3 4 5 6 7 8 9");
}

void TrackingDataTest::bodyLines()
{
    checkBodies("6d", false);
}

void TrackingDataTest::inertialLines_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<LineOutcome>("outcome");
    QTest::addColumn<QByteArray>("bodies");
    const auto row = [](const char *name, const char *before, const char *line, LineOutcome outcome,
                        const char *bodies) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(line) << outcome << QByteArray(bodies);
    };
    const LineOutcome stored = LineOutcome::Stored;
    const LineOutcome malformed = LineOutcome::Malformed;
    const char *const one = "6di 1 " INERTIAL_BODY("7", "3");
    row("one body", "", one, stored, STORED_INERTIAL("7", "3"));
    row("two bodies", "", "6di 2 " INERTIAL_BODY("7", "0") INERTIAL_BODY("8", "-1"), stored,
        STORED_INERTIAL("7", "0") "; " STORED_INERTIAL("8", "-1"));
    row("the count is behind the fourth character", "", "6di91 " INERTIAL_BODY("7", "3"), stored,
        STORED_INERTIAL("7", "3"));
    row("a hexadecimal count", "", "6di 0x1 " INERTIAL_BODY("7", "3"), stored, STORED_INERTIAL("7", "3"));
    row("the count 0 empties the store", one, "6di 0", stored, "");
    row("a negative count empties the store", one, "6di -1", stored, "");
    for (const char *line : {"", "6", "6d", "6di", "6di ", "6d 1", "6di x", "6di [1]"}) {
        QTest::newRow(qPrintable(QStringLiteral("no count in \"%1\": the store stays").arg(QLatin1String(line))))
            << QByteArray(one) << QByteArray(line) << malformed << QByteArray(STORED_INERTIAL("7", "3"));
    }
    row("bodies not reached keep their id", "6di 2 " INERTIAL_BODY("7", "3") INERTIAL_BODY("8", "4"),
        "6di 2 [5 6 1] [1 2 3] " ROTATION, malformed,
        "5 1 6 0 | 1 2 3 | 0 0 0 | 1 2 3 4 5 6 7 8 9; 8 -1 4 0 | 11 21 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
    row("new bodies not reached have the id 0", "", "6di 2", malformed, UNREACHED("0") "; " UNREACHED("0"));
    row("a first block of two numbers changes nothing", one, "6di 1 [5 6] [1 2 3] " ROTATION, malformed,
        "7 -1 3 0 | 11 21 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
    row("a first block of one number changes nothing", one, "6di 1 [5]", malformed,
        "7 -1 3 0 | 11 21 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
    row("a position of two numbers stores the two", one, "6di 1 [5 6 1] [1 2] " ROTATION, malformed,
        "5 1 6 0 | 1 2 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
    row("a missing position stores none", one, "6di 1 [5 6 1]", malformed,
        "5 1 6 0 | 11 21 31 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
    row("a rotation of eight numbers stores the eight", one, "6di 1 [5 6 1] [1 2 3] [9 8 7 6 5 4 3 2]", malformed,
        "5 1 6 0 | 1 2 3 | 0 0 0 | 9 8 7 6 5 4 3 2 9");
    row("a plain line's body reads, its point begins the quality", one, "6di 1 " BODY("5"), stored,
        "5 0.5 0 0 | 10 20 30 | 0 0 0 | 1 2 3 4 5 6 7 8 9");
}

void TrackingDataTest::inertialLines()
{
    checkBodies("6di", true);
}

void TrackingDataTest::markerLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<LineOutcome>("outcome");
    QTest::addColumn<QByteArray>("markers");
    const auto row = [](const char *name, const char *line, LineOutcome outcome, const char *markers) {
        QTest::newRow(name) << QByteArray(line) << outcome << QByteArray(markers);
    };
    const LineOutcome stored = LineOutcome::Stored;
    const LineOutcome malformed = LineOutcome::Malformed;
    row("one marker of two", "3d 1 [9 1] [4 5 6]", stored, "9 1 | 4 5 6");
    row("three markers", "3d 3 " MARKER("1") MARKER("2") MARKER("3"), stored,
        STORED_MARKER("1") "; " STORED_MARKER("2") "; " STORED_MARKER("3"));
    row("a hexadecimal count", "3d 0x1 " MARKER("1"), stored, STORED_MARKER("1"));
    row("an octal count", "3d 01 " MARKER("1"), stored, STORED_MARKER("1"));
    row("the count 0 empties the store", "3d 0", stored, "");
    row("a negative count empties the store", "3d -3 " MARKER("1"), stored, "");
    row("a count beyond long is cut to -1", "3d 99999999999999999999 " MARKER("1"), stored, "");
    row("a count beyond 32 bits is cut", "3d 4294967297 " MARKER("1"), stored, STORED_MARKER("1"));
    row("numbers left over", "3d 1 [1 0.5 7] [1 2 3 4]", stored, STORED_MARKER("1"));
    for (const char *line : {"", "3", "3d", "3d ", "3d \t", "3d x", "3d [1 1]", "3d +"}) {
        QTest::newRow(qPrintable(QStringLiteral("no count in \"%1\" empties the store").arg(QLatin1String(line))))
            << QByteArray(line) << malformed << QByteArray();
    }
    row("markers not reached stay as they were", "3d 2 [9 1] [4 5 6]", malformed, "9 1 | 4 5 6; " STORED_MARKER("72"));
    row("new markers not reached are zero", "3d 3", malformed,
        STORED_MARKER("71") "; " STORED_MARKER("72") "; 0 0 | 0 0 0");
    row("an id without quality is stored", "3d 2 [9] [4 5 6]", malformed, "9 0.5 | 1 2 3; " STORED_MARKER("72"));
    row("a word for the id stores nothing", "3d 2 [x 1] [4 5 6]", malformed,
        STORED_MARKER("71") "; " STORED_MARKER("72"));
    row("an unclosed block stores nothing of it", "3d 1 [9 1", malformed, STORED_MARKER("71"));
    row("a position of two numbers stores the two", "3d 1 [9 1] [4 5]", malformed, "9 1 | 4 5 3");
    row("a missing position stores none", "3d 1 [9 1]", malformed, "9 1 | 1 2 3");
}

void TrackingDataTest::markerLines()
{
    QFETCH(const QByteArray, line);
    QFETCH(const LineOutcome, outcome);
    QFETCH(const QByteArray, markers);
    for (const bool inertial : {false, true}) {
        TrackingData data;
        QCOMPARE(receiveCopy(data, "6d", "6d 1 " BODY("5")), LineOutcome::Stored);
        QCOMPARE(receiveCopy(data, "3d", "3d 2 " MARKER("71") MARKER("72")), LineOutcome::Stored);
        data.useInertialFormat = inertial;
        data.configured = true;
        QCOMPARE(receiveCopy(data, "3d", line), outcome);
        QCOMPARE(markersText(data), markers);
        QCOMPARE(bodiesText(data), QByteArray(STORED_BODY("5")));
        QVERIFY(data.configured);
    }
}

void TrackingDataTest::tags_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<bool>("inertial");
    QTest::addColumn<LineOutcome>("outcome");
    for (const bool inertial : {false, true}) {
        const auto row = [inertial](const char *tag, LineOutcome outcome) {
            const QString name = inertial ? QStringLiteral("\"%1\" in the inertial format")
                                          : QStringLiteral("\"%1\" in the plain format");
            QTest::newRow(qPrintable(name.arg(QLatin1String(tag)))) << QByteArray(tag) << inertial << outcome;
        };
        row("6d", inertial ? LineOutcome::Ignored : LineOutcome::Stored);
        row("6di", inertial ? LineOutcome::Stored : LineOutcome::Ignored);
        row("3d", LineOutcome::Stored);
        for (const char *tag : {"",    "6", "6D", "6d ",  " 6d", "6d\n", "6d2", "6DI", "6di ", "6dix",
                                "6dI", "3", "3D", "3d\n", "3di", "3dd",  "2d",  "3i",  "di",   "ts"})
            row(tag, LineOutcome::Ignored);
    }
}

void TrackingDataTest::tags()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const bool, inertial);
    QFETCH(const LineOutcome, outcome);
    TrackingData data;
    QCOMPARE(receiveCopy(data, "6d", "6d 1 " BODY("5")), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "3d", "3d 1 " MARKER("5")), LineOutcome::Stored);
    data.useInertialFormat = inertial;
    QCOMPARE(receiveCopy(data, tag.constData(), "xxx 0 "), outcome);
    const bool isBodyTag = tag.startsWith("6d");
    const bool emptied = outcome == LineOutcome::Stored;
    QCOMPARE(data.lock()->bodyRecords.empty(), emptied && isBodyTag);
    QCOMPARE(data.lock()->markerRecords.empty(), emptied && !isBodyTag);
}

void TrackingDataTest::nothingIsReadBehindTheTerminator_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("hidden");
    for (const QByteArray tag : {"6d", "6di", "3d"}) {
        const QByteArray whole = tag + " 1 [1 1 1] [1 2 3 4 5 6] " ROTATION;
        for (int length = 0; length <= tag.size() + 1; ++length) {
            QTest::newRow(qPrintable(QStringLiteral("\"%1\" after %2 characters").arg(QLatin1String(tag)).arg(length)))
                << tag << whole.left(length) << whole.mid(length + 1);
        }
    }
}

void TrackingDataTest::nothingIsReadBehindTheTerminator()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    QFETCH(const QByteArray, hidden);
    TrackingData data;
    data.useInertialFormat = tag == "6di";
    QByteArray text = line;
    text.append('\0').append(hidden).append("1 1 1");
    QCOMPARE(receiveCopy(data, tag.constData(), text), LineOutcome::Malformed);
    QVERIFY(data.lock()->bodyRecords.empty());
    QVERIFY(data.lock()->markerRecords.empty());
}

QTEST_APPLESS_MAIN(TrackingDataTest)

#include "tst_trackingdata.moc"
