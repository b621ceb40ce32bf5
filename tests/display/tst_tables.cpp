// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QHeaderView>
#include <QtTest>

namespace {

const QStringList headers6d{QStringLiteral("Body ID"),
                            QStringLiteral("Name"),
                            QStringLiteral("Filter"),
                            QStringLiteral("Sensor ID"),
                            QStringLiteral("x [mm]"),
                            QStringLiteral("y [mm]"),
                            QStringLiteral("z [mm]"),
                            QStringLiteral("rx [deg]"),
                            QStringLiteral("ry [deg]"),
                            QStringLiteral("rz [deg]"),
                            QStringLiteral("Battery"),
                            QStringLiteral("Temp. [") + QChar(0xB0) + QStringLiteral("C]"),
                            QString()};
const QStringList headers3d{QStringLiteral("3DOF ID"), QStringLiteral("x [mm]"), QStringLiteral("y [mm]"),
                            QStringLiteral("z [mm]")};

/// Gives \a table, which is to serve as a pattern, the look of the panel's tables.
void dressAsPanelTable(QTableWidget &table)
{
    QFont font(QStringLiteral("Sans Serif"), 8);
    font.setWeight(75);
    table.setFont(font);
    table.setStyleSheet(QStringLiteral("QHeaderView::section{border: none; font: normal;}"));
    table.setFrameShape(QFrame::NoFrame);
    table.setLineWidth(0);
    table.setShowGrid(false);
    table.setWordWrap(false);
}

QList<int> columnWidths(const QTableWidget &table)
{
    QList<int> widths;
    for (int column = 0; column < table.columnCount(); ++column)
        widths << table.columnWidth(column);
    return widths;
}

QStringList headerTexts(const QTableWidget &table)
{
    QStringList texts;
    for (int column = 0; column < table.columnCount(); ++column)
        texts << table.horizontalHeaderItem(column)->text();
    return texts;
}

QList<int> headerAlignments(const QTableWidget &table)
{
    QList<int> alignments;
    for (int column = 0; column < table.columnCount(); ++column)
        alignments << table.horizontalHeaderItem(column)->textAlignment();
    return alignments;
}

} // namespace

class TestTables : public QObject {
    Q_OBJECT

private slots:
    void headersOfBodies();
    void headersOfMarkers();
    void hiddenColumns_data();
    void hiddenColumns();
    void widthsOfBodies();
    void widthsOfMarkers();
    void markerRows();
    void markerTexts_data();
    void markerTexts();
    void fewerMarkersLeaveFewerRows();
};

void TestTables::headersOfBodies()
{
    PanelFixture fixture;
    fixture.createPanel();
    const QTableWidget &table = fixture.table6d();
    QCOMPARE(table.columnCount(), 13);
    QCOMPARE(headerTexts(table), headers6d);
    constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
    constexpr int centre = Qt::AlignHCenter | Qt::AlignVCenter;
    QCOMPARE(headerAlignments(table),
             QList<int>({0, 0, 0, centre, right, right, right, right, right, right, centre, centre, 0}));
    QCOMPARE(table.horizontalHeader()->sectionResizeMode(12), QHeaderView::Stretch);
    QCOMPARE(table.horizontalHeader()->minimumHeight(), 28);
    QCOMPARE(table.verticalHeader()->defaultSectionSize(), 20);
    QVERIFY(table.verticalHeader()->isHidden());
}

void TestTables::headersOfMarkers()
{
    PanelFixture fixture;
    fixture.createPanel();
    const QTableWidget &table = fixture.table3d();
    QCOMPARE(table.columnCount(), 4);
    QCOMPARE(headerTexts(table), headers3d);
    QCOMPARE(headerAlignments(table), QList<int>({0, Qt::AlignRight, Qt::AlignRight, Qt::AlignRight}));
    QCOMPARE(table.horizontalHeader()->sectionResizeMode(3), QHeaderView::Stretch);
    QCOMPARE(table.horizontalHeader()->minimumHeight(), 28);
    QCOMPARE(table.verticalHeader()->defaultSectionSize(), 20);
    QVERIFY(table.verticalHeader()->isHidden());
    QCOMPARE(table.rowCount(), 0);
}

void TestTables::hiddenColumns_data()
{
    QTest::addColumn<int>("minorVersion");
    QTest::addColumn<int>("patch");
    QTest::addColumn<QList<int>>("hidden");
    QTest::newRow("1.11 has no filter column") << 11 << 5 << QList<int>{2, 3, 10, 11};
    QTest::newRow("1.12 has a filter column") << 12 << 0 << QList<int>{3, 10, 11};
    QTest::newRow("1.12 without a patch level has a filter column") << 12 << -1 << QList<int>{3, 10, 11};
    QTest::newRow("a patch level of -2 is older than 1.12") << 12 << -2 << QList<int>{2, 3, 10, 11};
}

void TestTables::hiddenColumns()
{
    QFETCH(const int, minorVersion);
    QFETCH(const int, patch);
    QFETCH(const QList<int>, hidden);
    PanelFixture fixture(1, minorVersion, patch);
    fixture.createPanel();
    QList<int> found;
    for (int column = 0; column < fixture.table6d().columnCount(); ++column) {
        if (fixture.table6d().isColumnHidden(column))
            found << column;
    }
    QCOMPARE(found, hidden);
}

void TestTables::widthsOfBodies()
{
    PanelFixture fixture;
    fixture.createPanel();
    QWidget form;
    QTableWidget pattern(&form);
    dressAsPanelTable(pattern);
    pattern.setColumnCount(13);
    pattern.setHorizontalHeaderLabels(headers6d);
    pattern.horizontalHeader()->setSectionResizeMode(12, QHeaderView::Stretch);
    pattern.horizontalHeader()->setMinimumHeight(28);
    pattern.resizeColumnsToContents();
    for (int column = 1; column < 13; ++column)
        pattern.setColumnWidth(column, pattern.columnWidth(column) + 20);

    for (const int column : {3, 10, 11})
        fixture.table6d().setColumnHidden(column, false);
    QCOMPARE(columnWidths(fixture.table6d()).mid(0, 12), columnWidths(pattern).mid(0, 12));
}

void TestTables::widthsOfMarkers()
{
    PanelFixture fixture;
    fixture.createPanel();
    QWidget form;
    QTableWidget pattern(&form);
    dressAsPanelTable(pattern);
    pattern.setColumnCount(4);
    pattern.setHorizontalHeaderLabels(headers3d);
    for (int column = 1; column < 4; ++column)
        pattern.horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight);
    pattern.horizontalHeader()->setMinimumHeight(28);
    pattern.horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    pattern.verticalHeader()->setDefaultSectionSize(20);
    pattern.verticalHeader()->hide();
    pattern.setRowCount(1);
    for (int column = 0; column < 4; ++column)
        pattern.setItem(0, column, new QTableWidgetItem(column == 0 ? QStringLiteral("0") : QStringLiteral("-0.00")));
    pattern.resizeColumnsToContents();
    pattern.resizeColumnsToContents();
    for (int column = 0; column < 4; ++column)
        pattern.setColumnWidth(column, pattern.columnWidth(column) + 20);

    const QTableWidget &table = fixture.table3d();
    QCOMPARE(columnWidths(table).mid(0, 3), columnWidths(pattern).mid(0, 3));
    QCOMPARE(table.columnWidth(1), table.columnWidth(2));
    QCOMPARE(table.maximumWidth(),
             table.columnWidth(0) + table.columnWidth(1) + table.columnWidth(2) + table.columnWidth(2) + 20);
}

void TestTables::markerRows()
{
    PanelFixture fixture;
    fixture.createPanel();
    QCOMPARE(fixture.send("3d", "3d 3 [12 1.0][1 2 3] [-4 -1][4 5 6] [12 0][7 8 9]"), 0);
    fixture.panel->updateView3d();
    const QTableWidget &table = fixture.table3d();
    QCOMPARE(table.rowCount(), 3);
    QStringList texts;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) {
            texts << table.item(row, column)->text();
            const int horizontal = column == 0 ? Qt::AlignHCenter : Qt::AlignRight;
            QCOMPARE(table.item(row, column)->textAlignment(), horizontal | Qt::AlignVCenter);
        }
    }
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("12 1.00 2.00 3.00 -4 4.00 5.00 6.00 12 7.00 8.00 9.00"));
}

void TestTables::markerTexts_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("two decimals") << QByteArray("1.5") << "1.50";
    QTest::newRow("a small negative number keeps its sign") << QByteArray("-0.001") << "-0.00";
    QTest::newRow("no exponent") << QByteArray("1e10") << "10000000000.00";
    QTest::newRow("no thousands separator") << QByteArray("-12345.678") << "-12345.68";
    QTest::newRow("infinity") << QByteArray("-inf") << "-inf";
    QTest::newRow("not a number") << QByteArray("nan") << "nan";
}

void TestTables::markerTexts()
{
    QFETCH(const QByteArray, number);
    QFETCH(const QString, text);
    PanelFixture fixture;
    fixture.createPanel();
    QCOMPARE(fixture.send("3d", "3d 1 [1 1.0][" + number + " 0 " + number + "]"), 0);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().item(0, 1)->text(), text);
    QCOMPARE(fixture.table3d().item(0, 2)->text(), QStringLiteral("0.00"));
    QCOMPARE(fixture.table3d().item(0, 3)->text(), text);
}

void TestTables::fewerMarkersLeaveFewerRows()
{
    PanelFixture fixture;
    fixture.createPanel();
    QByteArray line = "3d 500";
    for (int i = 0; i < 500; ++i)
        line += " [" + QByteArray::number(i) + " 1.0][1 2 3]";
    QCOMPARE(fixture.send("3d", line), 0);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 300);
    QCOMPARE(fixture.table3d().item(299, 0)->text(), QStringLiteral("299"));

    QCOMPARE(fixture.send("3d", "3d 1 [9 1.0][4 5 6]"), 0);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 1);
    QCOMPARE(fixture.table3d().item(0, 3)->text(), QStringLiteral("6.00"));

    // A fault in the line leaves what was read before it.
    QCOMPARE(fixture.send("3d", "3d 2 [9 1.0][7 5 6] [10 1.0][8]"), -1);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 2);
    QCOMPARE(fixture.table3d().item(0, 1)->text(), QStringLiteral("7.00"));
    QCOMPARE(fixture.table3d().item(1, 0)->text(), QStringLiteral("10"));

    QCOMPARE(fixture.send("3d", "3d 0"), 0);
    fixture.panel->updateView3d();
    QCOMPARE(fixture.table3d().rowCount(), 0);
}

QTEST_MAIN(TestTables)
#include "tst_tables.moc"
