// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/plainredraw.h"
#include "tests/support/panelfixture.h"

#include <QtTest>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>

namespace {

QByteArray join(const QByteArrayList &words)
{
    return words.join(' ');
}

/// A frame of bodies or markers by chance: the line, and the records that it says.
class RandomFrames {
public:
    explicit RandomFrames(unsigned seed)
        : generator(seed)
    {
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(generator); }

    QByteArray bodyLine(int rows, std::vector<BodyRecord> &records)
    {
        records.assign(static_cast<std::size_t>(below(2 * rows + 1)), BodyRecord());
        QByteArray line = "6di " + QByteArray::number(static_cast<int>(records.size()));
        for (BodyRecord &record : records) {
            record.id = below(12) == 0 ? anyId() : below(rows + 2); // many of them twice
            record.state = below(6) - 1;
            line += " [" + QByteArray::number(record.id) + ' ' + QByteArray::number(record.state) + ' '
                + text(record.quality) + "][" + texts(record.position) + "][" + texts(record.rotation) + ']';
        }
        return line;
    }

    /// The bodies of \a records again, some of them lost or found, in another state or place, most just as they were.
    QByteArray nearlySameBodyLine(std::vector<BodyRecord> &records)
    {
        QByteArray line = "6di " + QByteArray::number(static_cast<int>(records.size()));
        for (BodyRecord &record : records) {
            if (below(5) == 0)
                record.quality = -record.quality;
            if (below(5) == 0)
                record.state = below(6) - 1;
            if (below(5) == 0)
                text(record.position[static_cast<std::size_t>(below(3))]);
            line += " [" + QByteArray::number(record.id) + ' ' + QByteArray::number(record.state) + ' '
                + textOf(record.quality) + "][" + textsOf(record.position) + "][" + textsOf(record.rotation) + ']';
        }
        return line;
    }

    QByteArray markerLine(std::vector<MarkerRecord> &records)
    {
        records.assign(static_cast<std::size_t>(below(30)), MarkerRecord());
        QByteArray line = "3d " + QByteArray::number(static_cast<int>(records.size()));
        for (MarkerRecord &record : records) {
            record.id = below(4) == 0 ? anyId() : below(300);
            line +=
                " [" + QByteArray::number(record.id) + ' ' + text(record.quality) + "][" + texts(record.position) + ']';
        }
        return line;
    }

private:
    qint32 anyId()
    {
        constexpr qint32 ids[] = {-1, 1'000'000, std::numeric_limits<qint32>::min(),
                                  std::numeric_limits<qint32>::max()};
        return ids[below(4)];
    }

    static QByteArray textOf(float number)
    {
        std::array<char, 32> text{};
        std::to_chars(text.begin(), text.end(), number); // keeps the sign of a zero
        return text.data();
    }

    template<std::size_t Count> static QByteArray textsOf(const std::array<float, Count> &numbers)
    {
        QByteArrayList words;
        for (const float number : numbers)
            words << textOf(number);
        return join(words);
    }

    template<std::size_t Count> QByteArray texts(std::array<float, Count> &numbers)
    {
        QByteArrayList words;
        for (float &number : numbers)
            words << text(number);
        return join(words);
    }

    /// Puts a number into \a number and returns a text of it that reads back as the same bits.
    QByteArray text(float &number)
    {
        constexpr float special[] = {std::numeric_limits<float>::quiet_NaN(),
                                     std::numeric_limits<float>::infinity(),
                                     -std::numeric_limits<float>::infinity(),
                                     std::numeric_limits<float>::max(),
                                     0.0F,
                                     -0.0F,
                                     -0.001F,
                                     0.005F,
                                     -0.005F,
                                     1.0F};
        if (below(4) == 0)
            number = special[below(10)];
        else
            number = std::uniform_real_distribution<float>(-2000.0F, 2000.0F)(generator);
        if (below(3) == 0)
            number /= 2000.0F; // as rotations are
        if (number == 0.0F && std::signbit(number))
            return "-0"; // which Qt writes as 0
        return QByteArray::number(static_cast<double>(number), 'g', 9);
    }

    std::mt19937 generator;
};

} // namespace

class TestRedraw : public QObject {
    Q_OBJECT

private slots:
    void bodiesAsAPlainRedrawShowsThem_data();
    void bodiesAsAPlainRedrawShowsThem();
    void markersAsAPlainRedrawShowsThem();
};

void TestRedraw::bodiesAsAPlainRedrawShowsThem_data()
{
    QTest::addColumn<int>("bodies");
    QTest::addColumn<bool>("head");
    QTest::addColumn<bool>("headReady");
    QTest::addColumn<QByteArray>("reference");
    QTest::newRow("without a reference") << 9 << false << false << QByteArray("none");
    QTest::newRow("with a reference") << 9 << false << false << QByteArray("standard b03");
    QTest::newRow("with a head row") << 9 << true << true << QByteArray("standard b02");
    QTest::newRow("with a head row that isn't ready") << 5 << true << false << QByteArray("none");
    QTest::newRow("a single body") << 1 << false << false << QByteArray("standard b01");
}

void TestRedraw::bodiesAsAPlainRedrawShowsThem()
{
    QFETCH(const int, bodies);
    QFETCH(const bool, head);
    QFETCH(const bool, headReady);
    QFETCH(const QByteArray, reference);
    PanelFixture fixture;
    fixture.answerBodies(bodies);
    if (bodies > 4) {
        fixture.answer("body calibrated standard b04", "no");
        fixture.answer("body active standard b05", "no");
    }
    if (head)
        fixture.answerHead();
    if (head && !headReady)
        fixture.answer("body active multiuserwandor_head b01", "no");
    fixture.answer("tracking reference", reference.constData());
    DataDisplay &panel = fixture.createConfiguredPanel();

    PlainBodies plain(fixture.table6d());
    plain.hasHeadRow = head;
    for (int row = 0; row < fixture.table6d().rowCount(); ++row) {
        const int body = head ? row - 1 : row;
        plain.shownRows << (body < 0 ? headReady : body != 3 && body != 4);
    }
    if (head)
        plain.calibratedHead = headReady;
    if (reference != "none") {
        plain.referenceRow = reference.right(1).toInt() - (head ? 0 : 1);
        plain.referenceName = fixture.text(plain.referenceRow, NameColumn);
    }
    RandomFrames frames(static_cast<unsigned>(bodies));
    std::vector<BodyRecord> records;
    for (int frame = 0; frame < 600; ++frame) {
        const QByteArray line = frame % 4 == 0 ? frames.bodyLine(fixture.table6d().rowCount(), records)
                                               : frames.nearlySameBodyLine(records);
        QCOMPARE(fixture.send("6di", line), 0);
        panel.updateView6d();
        plain.redraw(records);
        QCOMPARE(cellsOf(fixture.table6d()), cellsOf(plain.table));
    }
}

void TestRedraw::markersAsAPlainRedrawShowsThem()
{
    PanelFixture fixture;
    DataDisplay &panel = fixture.createPanel();
    QTableWidget plain(0, Column3dCount);
    RandomFrames frames(3);
    std::vector<MarkerRecord> records;
    for (int frame = 0; frame < 300; ++frame) {
        QCOMPARE(fixture.send("3d", frames.markerLine(records)), 0);
        panel.updateView3d();
        redrawPlainMarkers(plain, records);
        QCOMPARE(cellsOf(fixture.table3d()), cellsOf(plain));
    }
}

QTEST_MAIN(TestRedraw)
#include "tst_redraw.moc"
