// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/plainredraw.h"
#include "tests/support/panelfixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

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

struct CountedPaints : QObject {
    explicit CountedPaints(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++count;
        return QObject::eventFilter(object, event);
    }
    int count = 0;
};

const QByteArray twoBodies = "6di 2 " + bodyText(0, "2", "1.0", "1 2 3") + bodyText(1, "2", "1.0", "4 5 6");

} // namespace

class TestRedraw : public QObject {
    Q_OBJECT

private slots:
    void bodiesAsAPlainRedrawShowsThem_data();
    void bodiesAsAPlainRedrawShowsThem();
    void markersAsAPlainRedrawShowsThem();
    void changesAreToldOnce_data();
    void changesAreToldOnce();
    void changedRectangle();
    void markersAreToldOnce();
    void changesAreToldWithoutTheLock();
    void whatOthersPutIntoCellsIsReplaced();
    void whatOthersPutThereInAnswerIsReplaced();
    void coloursOfOthersAreReplaced_data();
    void coloursOfOthersAreReplaced();
    void stillBodiesAreNotRepainted();
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

void TestRedraw::changesAreToldOnce_data()
{
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("the same frame again changes nothing") << twoBodies << 0;
    QTest::newRow("numbers with other texts but the same bits change nothing")
        << "6di 2 " + bodyText(0, "2", "0.5", "1.000 2e0 +3") + bodyText(1, "3", "1.0", "4 5 6") << 0;
    QTest::newRow("everything moves") << "6di 2 " + bodyText(0, "1", "1.0", "7 8 9")
            + bodyText(1, "0", "1.0", "10 11 12")
                                      << 1;
    QTest::newRow("one number changes") << "6di 2 " + bodyText(0, "2", "1.0", "1 2 3")
            + bodyText(1, "2", "1.0", "4 5 7")
                                        << 1;
    QTest::newRow("a body is lost") << "6di 1 " + bodyText(0, "2", "1.0", "1 2 3") << 1;
}

void TestRedraw::changesAreToldOnce()
{
    QFETCH(const QByteArray, next);
    QFETCH(const int, signalCount);
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    const QSignalSpy spy(fixture.table6d().model(), &QAbstractItemModel::dataChanged);
    QCOMPARE(fixture.send("6di", next), 0);
    panel.updateView6d();
    QCOMPARE(spy.count(), signalCount);
}

void TestRedraw::changedRectangle()
{
    PanelFixture fixture;
    fixture.answerBodies(4);
    DataDisplay &panel = fixture.createConfiguredPanel();
    const auto draw = [&](const char *second, const char *third) {
        const QByteArray line = "6di 4 " + bodyText(0, "2", "1", "1 2 3") + bodyText(1, "2", "1", second)
            + bodyText(2, "2", "1", third) + bodyText(3, "2", "1", "1 2 3");
        QCOMPARE(fixture.send("6di", line), 0);
        panel.updateView6d();
    };
    draw("1 2 3", "1 2 3");
    QSignalSpy spy(fixture.table6d().model(), &QAbstractItemModel::dataChanged);
    draw("1 7 3", "1 2 8");
    QCOMPARE(spy.count(), 1);
    const QModelIndex topLeft = spy.at(0).at(0).toModelIndex();
    const QModelIndex bottomRight = spy.at(0).at(1).toModelIndex();
    QCOMPARE(topLeft, fixture.table6d().model()->index(1, YColumn));
    QCOMPARE(bottomRight, fixture.table6d().model()->index(2, ZColumn));
}

void TestRedraw::markersAreToldOnce()
{
    PanelFixture fixture;
    DataDisplay &panel = fixture.createPanel();
    const QSignalSpy spy(fixture.table3d().model(), &QAbstractItemModel::dataChanged);
    panel.updateView3d();
    QCOMPARE(spy.count(), 0); // not a single marker, not a single cell
    QCOMPARE(fixture.send("3d", "3d 3 [12 1.0][1 2 3] [-4 -1][4 5 6] [12 0][7 8 9]"), 0);
    panel.updateView3d();
    QCOMPARE(spy.count(), 1);
    const QAbstractItemModel *const model = fixture.table3d().model();
    QCOMPARE(spy.at(0).at(0).toModelIndex(), model->index(0, MarkerIdColumn));
    QCOMPARE(spy.at(0).at(1).toModelIndex(), model->index(2, MarkerZColumn));
}

void TestRedraw::changesAreToldWithoutTheLock()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    int told = 0;
    const auto storeLines = [&] {
        ++told;
        const quint64 before = panel.storedLines();
        QCOMPARE(fixture.send("6di", twoBodies), 0);
        QCOMPARE(fixture.send("3d", "3d 1 [1 1.0][1 2 3]"), 0);
        QCOMPARE(panel.storedLines(), before + 2); // while the lock is held a line is dropped
    };
    connect(fixture.table6d().model(), &QAbstractItemModel::dataChanged, this, storeLines);
    connect(fixture.table3d().model(), &QAbstractItemModel::dataChanged, this, storeLines);
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    QCOMPARE(told, 1);
    panel.updateView3d();
    QCOMPARE(told, 2);
}

void TestRedraw::whatOthersPutIntoCellsIsReplaced()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("tracking reference", "standard b02");
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    QTableWidget &table = fixture.table6d();
    table.item(0, XColumn)->setText(QStringLiteral("?"));
    table.setItem(0, YColumn, new QTableWidgetItem(QStringLiteral("?")));
    table.setItem(0, BodyIdColumn, new QTableWidgetItem(QStringLiteral("?")));
    table.item(1, BodyIdColumn)->setBackground(Qt::magenta);
    table.item(1, NameColumn)->setText(QStringLiteral("?"));
    panel.updateView6d();
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
    QCOMPARE(fixture.text(0, YColumn), QStringLiteral("2.00"));
    QCOMPARE(fixture.background(0, BodyIdColumn), QBrush(Qt::green));
    QCOMPARE(fixture.foreground(0, BodyIdColumn), QBrush(Qt::black));
    QCOMPARE(fixture.background(1, BodyIdColumn), QBrush(Qt::green));
    QCOMPARE(fixture.text(1, NameColumn), QStringLiteral("Body 2"));
}

void TestRedraw::whatOthersPutThereInAnswerIsReplaced()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    QTableWidgetItem &cell = *fixture.table6d().item(0, XColumn);
    bool answers = true;
    connect(fixture.table6d().model(), &QAbstractItemModel::dataChanged, this, [&] {
        if (std::exchange(answers, false))
            cell.setText(QStringLiteral("?"));
    });
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    QCOMPARE(cell.text(), QStringLiteral("?"));
    panel.updateView6d();
    QCOMPARE(cell.text(), QStringLiteral("1.00"));
}

void TestRedraw::coloursOfOthersAreReplaced_data()
{
    QTest::addColumn<QByteArray>("active");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QBrush>("expected");
    QTest::newRow("tracked") << QByteArray("yes") << QByteArray(twoBodies) << QBrush(Qt::green);
    QTest::newRow("lost") << QByteArray("yes") << QByteArray("6di 0 ") << QBrush(Qt::red);
    QTest::newRow("inactive") << QByteArray("no") << QByteArray(twoBodies) << QBrush(Qt::transparent);
}

void TestRedraw::coloursOfOthersAreReplaced()
{
    QFETCH(const QByteArray, active);
    QFETCH(const QByteArray, line);
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("body active standard b01", active);
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", line), 0);
    panel.updateView6d();
    for (int round = 0; round < 2; ++round) {
        fixture.table6d().item(0, BodyIdColumn)->setBackground(Qt::magenta);
        panel.updateView6d();
        QTEST(fixture.background(0, BodyIdColumn), "expected");
    }
}

void TestRedraw::stillBodiesAreNotRepainted()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    panel.resize(900, 300);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    QCoreApplication::processEvents();
    const CountedPaints paints(fixture.table6d().viewport());
    for (int tick = 0; tick < 10; ++tick) {
        QCOMPARE(fixture.send("6di", twoBodies), 0);
        panel.updateView6d();
        QCoreApplication::processEvents();
    }
    QCOMPARE(paints.count, 0);

    QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", "1 2 4")), 0);
    panel.updateView6d();
    QTRY_COMPARE(paints.count, 1);
}

QTEST_MAIN(TestRedraw)
#include "tst_redraw.moc"
