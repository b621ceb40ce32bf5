// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/hostile/hostilefile.h"
#include "tests/support/panelfixture.h"

#include <QtTest>

namespace {

const QString folder = QStringLiteral("lines");
constexpr int stored = 0;
constexpr int malformed = -1;
constexpr int shownRows = 3; // of the markers' table, before they are only counted
const char *const unchanged = "1.00 2.00 3.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 green";
const char *const lost = "1.00 2.00 3.00 0.00 0.00 0.00 red; 4.00 5.00 6.00 0.00 0.00 0.00 red";
const char *const kept = "1.00 2.00 3.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red";
const char *const first = "10.00 20.00 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red";

struct Row {
    const char *name;
    const char *file;
    int result; ///< what the host gets
    const char *shown; ///< after a good line and this one; for "3d" the markers' table
};

const std::initializer_list<Row> rows{
    {"an empty text is no line", "empty.6d", malformed, unchanged},
    {"a tag alone is no line", "tag-only.6d", malformed, unchanged},
    {"a line that ends before its count is none", "shorter-than-the-place-of-the-count.6di", malformed, unchanged},
    {"a line of markers that ends before its count empties the table", "shorter-than-the-place-of-the-count.3d",
     malformed, ""},
    {"ten megabytes of opening brackets lose the bodies", "ten-megabytes-of-brackets.6d.recipe", malformed, lost},
    {"ten megabytes of blanks are passed over", "ten-megabytes-of-blanks.3d.recipe", stored, "1 7.00 8.00 9.00"},
    {"a megabyte of zeros is the count 0", "megabyte-of-digits-as-the-count.6d.recipe", stored, lost},
    {"a coordinate of a megabyte of digits is read", "megabyte-of-digits-as-a-coordinate.6d.recipe", stored,
     "0.33 20.00 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a negative count is none at all", "negative-count.6d", stored, lost},
    {"a word is no count", "count-of-words.6d", malformed, unchanged},
    {"a count beyond 32 bits is cut to them", "count-beyond-32-bits.6d", stored, first},
    {"a count beyond 64 bits is the largest, cut to -1", "count-beyond-64-bits.6d", stored, lost},
    {"more than a million bodies are not stored", "a-million-and-one-bodies.6d", stored, unchanged},
    {"a greater count than bodies keeps those there are", "greater-count-than-bodies.6d", malformed,
     "10.00 20.00 30.00 0.00 0.00 0.00 green; 40.00 50.00 60.00 0.00 0.00 0.00 green"},
    {"a smaller count than bodies leaves the rest out", "smaller-count-than-bodies.6d", stored, first},
    {"300 markers are the most", "count-of-500-markers.3d", malformed,
     "1 7.00 8.00 9.00; 0 0.00 0.00 0.00; 0 0.00 0.00 0.00; 300 in all"},
    {"without an opening bracket the next one counts", "missing-opening-bracket.6d", malformed, lost},
    {"without the last closing bracket the rotation is missing", "missing-closing-bracket.6d", malformed, first},
    {"a bracket in a bracket is no number", "nested-brackets.6d", malformed, lost},
    {"brackets the wrong way round hold other numbers", "reversed-brackets.6d", malformed, lost},
    {"one number too few in a pose", "one-number-too-few.6d", malformed, kept},
    {"one number too few in a rotation", "one-number-too-few-in-a-rotation.6di", malformed, first},
    {"numbers left over are skipped", "one-number-too-many.6d", stored, first},
    {"a coordinate that is not a number is shown as such", "nan-as-a-coordinate.6d", stored,
     "nan 20.00 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"infinite coordinates are shown as such", "infinite-coordinates.6d", stored,
     "inf -inf 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"what no float holds is infinite", "more-than-a-float-holds.6d", stored,
     "inf -inf 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"denormal coordinates are as good as 0", "denormal-coordinates.6d", stored,
     "0.00 0.00 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a coordinate of 400 digits is infinite, or one digit of them shown", "four-hundred-digits.6d", stored,
     "inf 0.56 30.00 0.00 0.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a decimal comma ends the numbers", "decimal-comma.6d", malformed, kept},
    {"a quality that is not a number is not below 0", "nan-as-the-quality.6d", stored, first},
    {"of equal ids the first is shown", "repeated-id.6d", stored, first},
    {"a negative id is no row", "negative-id.6d", stored, lost},
    {"the smallest id is no row", "smallest-id.6d", stored, lost},
    {"an id beyond 32 bits is cut to them", "id-beyond-32-bits.6d", stored, first},
    {"a rotation of zeros has no angles", "rotation-of-zeros.6d", stored, first},
    {"a reflection has angles", "reflection.6d", stored,
     "10.00 20.00 30.00 0.00 0.00 -180.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a rotation of nan has angles of nan", "rotation-of-nan.6d", stored,
     "10.00 20.00 30.00 nan nan nan green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"an exact quarter turn", "quarter-turn-exactly.6d", stored,
     "10.00 20.00 30.00 0.00 90.00 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a quarter turn, one step less", "quarter-turn-one-step-less.6d", stored,
     "10.00 20.00 30.00 0.00 89.98 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"a quarter turn, one step more", "quarter-turn-one-step-more.6d", stored,
     "10.00 20.00 30.00 0.00 nan 0.00 green; 4.00 5.00 6.00 0.00 0.00 0.00 red"},
    {"states out of range", "states-out-of-range.6di", stored,
     "10.00 20.00 30.00 0.00 0.00 0.00 green; 40.00 50.00 60.00 0.00 0.00 0.00 green"},
    {"a zero byte ends the line", "zero-byte-inside.6d", malformed, kept},
    {"conversions are text", "conversions.6d", malformed, unchanged},
    {"markers of any size are shown", "nan-and-huge-markers.3d", stored, "1 nan inf -inf; 2147483647 0.00 0.00 0.00"},
    {"markers may share an id", "repeated-ids-of-markers.3d", stored,
     "-2147483648 1.00 2.00 3.00; -2147483648 4.00 5.00 6.00"},
};

QByteArray colourName(const QBrush &brush)
{
    const QColor colour = brush.color();
    if (colour == QColor(Qt::green))
        return "green";
    return colour == QColor(Qt::red) ? "red" : colour.name().toLatin1();
}

QByteArray shownBodies(const PanelFixture &fixture)
{
    QByteArrayList bodies;
    for (int row = 0; row < fixture.table6d().rowCount(); ++row) {
        QByteArrayList words;
        for (int column = XColumn; column <= RzColumn; ++column)
            words << fixture.text(row, column).toUtf8();
        words << colourName(fixture.background(row, BodyIdColumn));
        bodies << words.join(' ');
    }
    return bodies.join("; ");
}

QByteArray shownMarkers(const PanelFixture &fixture)
{
    QByteArrayList markers;
    for (int row = 0; row < fixture.table3d().rowCount(); ++row) {
        QByteArrayList words;
        for (int column = 0; column < fixture.table3d().columnCount(); ++column)
            words << fixture.table3d().item(row, column)->text().toUtf8();
        markers << words.join(' ');
    }
    const int count = markers.size();
    if (count > shownRows)
        markers = QByteArrayList(markers.mid(0, shownRows)) << QByteArray::number(count) + " in all";
    return markers.join("; ");
}

QByteArray goodLine(const QByteArray &tag)
{
    if (tag == "3d")
        return "3d 1 [5 1][1 2 3]";
    const QByteArray rest = "[1 0 0 0 1 0 0 0 1]";
    if (tag == "6di")
        return "6di 2 [0 2 1][1 2 3]" + rest + "[1 2 1][4 5 6]" + rest;
    return "6d 2 [0 1][1 2 3 0 0 0]" + rest + "[1 1][4 5 6 0 0 0]" + rest;
}

QByteArray shownAfter(PanelFixture &fixture, const QByteArray &tag)
{
    fixture.panel->updateView6d();
    fixture.panel->updateView3d();
    return tag == "3d" ? shownMarkers(fixture) : shownBodies(fixture);
}

} // namespace

class TestHostileLines : public QObject {
    Q_OBJECT

private slots:
    void everyFileHasItsRow();
    void lines_data();
    void lines();
};

void TestHostileLines::everyFileHasItsRow()
{
    QStringList files;
    for (const Row &row : rows)
        files << QLatin1String(row.file);
    files.sort();
    QCOMPARE(files, hostileNames(folder));
}

void TestHostileLines::lines_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("shown");
    for (const Row &row : rows)
        QTest::newRow(row.name) << QString::fromLatin1(row.file) << row.result << QByteArray(row.shown);
}

void TestHostileLines::lines()
{
    QFETCH(const QString, file);
    QFETCH(const int, result);
    QFETCH(const QByteArray, shown);
    const QByteArray tag = file.section(QLatin1Char('.'), 1, 1).toLatin1();
    PanelFixture fixture(1, tag == "6di" ? 24 : 11); // before 1.12 the format with measured angles is read
    fixture.answerBodies(2);
    fixture.createConfiguredPanel();
    const QByteArray good = goodLine(tag);
    QCOMPARE(fixture.send(tag.constData(), good), stored);
    const QByteArray shownBefore = shownAfter(fixture, tag);

    const QByteArray line = hostileInput(folder, file);
    QCOMPARE(fixture.send(tag.constData(), line), result);
    QCOMPARE(shownAfter(fixture, tag), shown);
    QCOMPARE(PanelFixture::logs(fixture.takeCalls()), QStringList());

    QCOMPARE(fixture.send(tag.constData(), good), stored);
    QCOMPARE(shownAfter(fixture, tag), shownBefore);
}

QTEST_MAIN(TestHostileLines)

#include "tst_hostile_lines.moc"
