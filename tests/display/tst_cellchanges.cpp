// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/cellrange.h"
#include "tests/support/panelfixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <utility>

Q_DECLARE_METATYPE(std::function<void(QTableWidget &)>)

namespace {

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

/// What a redraw says of the cells that changed, and what it does to cells that others have changed.
class TestCellChanges : public QObject {
    Q_OBJECT

private slots:
    void changesAreToldOnce_data();
    void changesAreToldOnce();
    void changedRectangle();
    void rangeTakesCellsInAnyOrder();
    void markersAreToldOnce();
    void changesAreToldWithoutTheLock();
    void whatOthersPutIntoCellsIsReplaced();
    void nameThatIsPutBackIsTold();
    void bodyThatReturnsToTheOriginIsShownThere();
    void cellsThatOthersShiftAreDrawnAnew_data();
    void cellsThatOthersShiftAreDrawnAnew();
    void whatOthersPutThereInAnswerIsReplaced();
    void coloursOfOthersAreReplaced_data();
    void coloursOfOthersAreReplaced();
    void cellsThatOthersTookAreLeftOut_data();
    void cellsThatOthersTookAreLeftOut();
    void stillBodiesAreNotRepainted();
};

void TestCellChanges::changesAreToldOnce_data()
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

void TestCellChanges::changesAreToldOnce()
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

void TestCellChanges::changedRectangle()
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

void TestCellChanges::rangeTakesCellsInAnyOrder()
{
    QTableWidget table(9, 9);
    QSignalSpy spy(table.model(), &QAbstractItemModel::dataChanged);
    CellRange range;
    QVERIFY(range.isEmpty());
    range.add(4, 4);
    range.add(2, 5);
    range.add(6, 3);
    range.emitDataChanged(*table.model());
    range.addRow(1, 2);
    range.emitDataChanged(*table.model());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toModelIndex(), table.model()->index(2, 3));
    QCOMPARE(spy.at(0).at(1).toModelIndex(), table.model()->index(6, 5));
    QCOMPARE(spy.at(1).at(0).toModelIndex(), table.model()->index(1, 0));
    QCOMPARE(spy.at(1).at(1).toModelIndex(), table.model()->index(6, 5));
}

void TestCellChanges::markersAreToldOnce()
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

void TestCellChanges::changesAreToldWithoutTheLock()
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

void TestCellChanges::whatOthersPutIntoCellsIsReplaced()
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

void TestCellChanges::nameThatIsPutBackIsTold()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("tracking reference", "standard b02");
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    fixture.table6d().item(1, NameColumn)->setText(QStringLiteral("?"));
    const QSignalSpy spy(fixture.table6d().model(), &QAbstractItemModel::dataChanged);
    panel.updateView6d();
    QCOMPARE(fixture.text(1, NameColumn), QStringLiteral("Body 2"));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toModelIndex(), fixture.table6d().model()->index(1, NameColumn));
}

void TestCellChanges::bodyThatReturnsToTheOriginIsShownThere()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    DataDisplay &panel = fixture.createConfiguredPanel();
    for (const char *const x : {"0", "1", "0", "1"}) {
        const QByteArray position = QByteArray(x) + " 0 0";
        QCOMPARE(fixture.send("6di", "6di 1 " + bodyText(0, "2", "1.0", position.constData())), 0);
        panel.updateView6d();
        QCOMPARE(fixture.text(0, XColumn), QString::fromUtf8(x) + QStringLiteral(".00"));
    }
}

void TestCellChanges::cellsThatOthersShiftAreDrawnAnew_data()
{
    QTest::addColumn<std::function<void(QTableWidget &)>>("shift");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("x"); // of that row, after the shift and a redraw
    const auto row = [](const char *name, const std::function<void(QTableWidget &)> &shift, int index, const char *x) {
        QTest::newRow(name) << shift << index << QString::fromUtf8(x);
    };
    row(
        "a row is removed", [](QTableWidget &table) { table.removeRow(0); }, 0, "1.00");
    row(
        "a row is inserted", [](QTableWidget &table) { table.insertRow(0); }, 1, "4.00");
    row(
        "a column is removed", [](QTableWidget &table) { table.removeColumn(NameColumn); }, 0, "1.00");
    row(
        "a column is inserted", [](QTableWidget &table) { table.insertColumn(YColumn - 1); }, 0, "<no item>");
    row(
        "the rows are sorted", [](QTableWidget &table) { table.sortItems(YColumn, Qt::DescendingOrder); }, 0, "1.00");
}

void TestCellChanges::cellsThatOthersShiftAreDrawnAnew()
{
    QFETCH(const std::function<void(QTableWidget &)>, shift);
    QFETCH(const int, row);
    PanelFixture fixture;
    fixture.answerBodies(2);
    DataDisplay &panel = fixture.createConfiguredPanel();
    QCOMPARE(fixture.send("6di", twoBodies), 0);
    panel.updateView6d();
    shift(fixture.table6d());
    panel.updateView6d();
    QTEST(fixture.text(row, XColumn), "x");
    QCOMPARE(fixture.text(row, YColumn), row == 0 ? QStringLiteral("2.00") : QStringLiteral("5.00"));
}

void TestCellChanges::whatOthersPutThereInAnswerIsReplaced()
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

void TestCellChanges::coloursOfOthersAreReplaced_data()
{
    QTest::addColumn<QByteArray>("active");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QBrush>("expected");
    QTest::newRow("tracked") << QByteArray("yes") << QByteArray(twoBodies) << QBrush(Qt::green);
    QTest::newRow("lost") << QByteArray("yes") << QByteArray("6di 0 ") << QBrush(Qt::red);
    QTest::newRow("inactive") << QByteArray("no") << QByteArray(twoBodies) << QBrush(Qt::transparent);
}

void TestCellChanges::coloursOfOthersAreReplaced()
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
        const QSignalSpy spy(fixture.table6d().model(), &QAbstractItemModel::dataChanged);
        panel.updateView6d();
        QTEST(fixture.background(0, BodyIdColumn), "expected");
        QCOMPARE(spy.count(), 1);
    }
}

void TestCellChanges::cellsThatOthersTookAreLeftOut_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QByteArray>("active");
    QTest::addColumn<QByteArray>("first"); // what the line says of the body
    const auto row = [](const char *name, int column, const char *active, const char *quality) {
        QTest::newRow(name) << column << QByteArray(active) << bodyText(0, "2", quality, "1 2 3");
    };
    row("the number of a tracked body", BodyIdColumn, "yes", "1.0");
    row("the number of a lost body", BodyIdColumn, "yes", "-1.0");
    row("the number of an inactive body", BodyIdColumn, "no", "1.0");
    row("a name", NameColumn, "yes", "1.0");
    row("a coordinate", YColumn, "yes", "1.0");
}

void TestCellChanges::cellsThatOthersTookAreLeftOut()
{
    QFETCH(const int, column);
    QFETCH(const QByteArray, active);
    QFETCH(const QByteArray, first);
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("body active standard b01", active);
    DataDisplay &panel = fixture.createConfiguredPanel();
    delete fixture.table6d().takeItem(0, column);
    QCOMPARE(fixture.send("6di", "6di 2 " + first + bodyText(1, "2", "1.0", "4 5 6")), 0);
    panel.updateView6d();
    QVERIFY(!fixture.table6d().item(0, column));
    const bool isTracked = active == "yes" && !first.contains("-1.0");
    QCOMPARE(fixture.text(0, ZColumn), isTracked ? QStringLiteral("3.00") : QStringLiteral("-"));
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("4.00"));
    QCOMPARE(fixture.background(1, BodyIdColumn), QBrush(Qt::green));
}

void TestCellChanges::stillBodiesAreNotRepainted()
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

QTEST_MAIN(TestCellChanges)
#include "tst_cellchanges.moc"
