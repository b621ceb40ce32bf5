// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/batterybar.h"
#include "display/zeltablewidget.h"
#include "tests/support/eventcount.h"
#include "tests/support/sensorfixture.h"

#include <QHeaderView>
#include <QTest>
#include <QWindow>

namespace {

/// A table on the screen with a bar of 50 percent in each cell of column 1.
struct BarsInATable {
    BarsInATable()
    {
        table.setRowCount(3);
        table.setColumnCount(3);
        setBars();
        table.resize(500, 200);
        table.show();
    }
    void setBars()
    {
        for (int row = 0; row < table.rowCount(); ++row) {
            auto *bar = new BatteryBar;
            bar->setValue(50);
            table.setCellWidget(row, 1, bar);
        }
    }
    BatteryBar *bar(int row) { return qobject_cast<BatteryBar *>(table.cellWidget(row, 1)); }
    QRect cell(int row) const { return table.visualRect(table.model()->index(row, 1)); }
    int barsAlive() const { return table.findChildren<BatteryBar *>().size(); }

    ZelTableWidget table;
};

} // namespace

/// Which widgets in the cells of the body table are seen, and where, and how long they live.
class TestCellWidgets : public QObject {
    Q_OBJECT

private slots:
    void layoutsKeepWhatTheOwnerHid_data();
    void layoutsKeepWhatTheOwnerHid();
    void shownWhileTheColumnIsHidden_data();
    void shownWhileTheColumnIsHidden();
    void isShownAtItsPlaceAtOnce();
    void aSensorPassOverHiddenColumns();
    void aHiddenWidgetLeavesTheTableAtRest();
    void noWidgetPilesUp();
    void aPressOnAWidgetThatGoesMeanwhile_data();
    void aPressOnAWidgetThatGoesMeanwhile();
};

void TestCellWidgets::layoutsKeepWhatTheOwnerHid_data()
{
    QTest::addColumn<bool>("byTheTable");
    QTest::newRow("hidden by the table's function") << true;
    QTest::newRow("hidden by itself") << false;
}

void TestCellWidgets::layoutsKeepWhatTheOwnerHid()
{
    QFETCH(const bool, byTheTable);
    BarsInATable bars;
    QCoreApplication::processEvents();
    if (byTheTable)
        bars.table.setCellWidgetShown(1, 1, false);
    else
        bars.bar(1)->hide();
    for (int round = 0; round < 3; ++round) {
        bars.table.setColumnWidth(1, 100 + 10 * round);
        QCoreApplication::processEvents();
        QVERIFY(bars.bar(0)->isVisible());
        QVERIFY(!bars.bar(1)->isVisible());
        QVERIFY(bars.bar(2)->isVisible());
    }
    bars.table.setCellWidgetShown(1, 1, true);
    QVERIFY(bars.bar(1)->isVisible());
    QCOMPARE(bars.bar(1)->geometry(), bars.bar(0)->geometry().translated(0, bars.cell(1).y() - bars.cell(0).y()));
    bars.table.setCellWidgetShown(1, 2, true); // a cell without a widget
}

void TestCellWidgets::shownWhileTheColumnIsHidden_data()
{
    QTest::addColumn<bool>("hiddenBefore");
    QTest::addColumn<QString>("deeds");
    QTest::addColumn<bool>("visible");
    QTest::newRow("shown: seen with its column") << true << "show" << true;
    QTest::newRow("not touched, seen before: seen again") << false << "" << true;
    QTest::newRow("not touched, hidden before: still hidden") << true << "" << false;
    QTest::newRow("hidden: hidden") << false << "hide" << false;
    QTest::newRow("a value below 0: hidden") << false << "below 0" << false;
    QTest::newRow("hidden by itself: hidden") << false << "hide()" << false;
    QTest::newRow("shown, hidden: hidden") << true << "show,hide" << false;
    QTest::newRow("shown, laid out, hidden: hidden") << true << "show,lay out,hide" << false;
    QTest::newRow("shown, laid out, a value below 0: hidden") << true << "show,lay out,below 0" << false;
    QTest::newRow("hidden, laid out, shown, laid out: seen") << false << "hide,lay out,show,lay out" << true;
}

void TestCellWidgets::shownWhileTheColumnIsHidden()
{
    QFETCH(const bool, hiddenBefore);
    QFETCH(const QString, deeds);
    QFETCH(const bool, visible);
    BarsInATable bars;
    bars.table.setCellWidgetShown(1, 1, !hiddenBefore);
    QCoreApplication::processEvents();
    bars.table.setColumnHidden(1, true);
    QCoreApplication::processEvents();
    for (const QString &deed : deeds.split(QLatin1Char(','))) {
        if (deed == QLatin1String("show"))
            bars.table.setCellWidgetShown(1, 1, true);
        else if (deed == QLatin1String("hide"))
            bars.table.setCellWidgetShown(1, 1, false);
        else if (deed == QLatin1String("hide()"))
            bars.bar(1)->hide();
        else if (deed == QLatin1String("below 0"))
            bars.bar(1)->setValue(-1);
        else if (deed == QLatin1String("lay out"))
            bars.table.setColumnWidth(0, bars.table.columnWidth(0) + 10);
        QVERIFY2(!bars.bar(1)->isVisible(), "seen in a hidden column");
        QCoreApplication::processEvents();
        QVERIFY2(!bars.bar(1)->isVisible(), "seen in a hidden column");
    }
    bars.table.setColumnHidden(1, false);
    QCoreApplication::processEvents();
    QCOMPARE(bars.bar(1)->isVisible(), visible);
    QVERIFY(bars.cell(1).contains(bars.bar(1)->geometry()));
    QVERIFY(bars.bar(0)->isVisible());
}

void TestCellWidgets::isShownAtItsPlaceAtOnce()
{
    BarsInATable bars;
    bars.table.setCellWidgetShown(1, 1, false);
    bars.table.setColumnHidden(1, true);
    QCoreApplication::processEvents();
    bars.table.setColumnWidth(0, 200);
    QCoreApplication::processEvents();
    bars.table.setColumnHidden(1, false); // and the layout is still to come
    bars.table.setCellWidgetShown(1, 1, true);
    QVERIFY(bars.bar(1)->isVisible());
    const QRect place = bars.bar(1)->geometry();
    QVERIFY(bars.cell(1).contains(place));
    QCoreApplication::processEvents();
    QCOMPARE(bars.bar(1)->geometry(), place);
}

void TestCellWidgets::aSensorPassOverHiddenColumns()
{
    SensorFixture fixture;
    fixture.createConfiguredPanel();
    fixture.panel->resize(1100, 200);
    fixture.panel->show();
    QCoreApplication::processEvents();
    for (const int column : {BatteryColumn, TemperatureColumn})
        fixture.table6d().setColumnHidden(column, true);
    QCoreApplication::processEvents();
    fixture.tick();
    QVERIFY(!fixture.battery().isVisible());
    QVERIFY(!fixture.temperature().isVisible());
    for (const int column : {BatteryColumn, TemperatureColumn})
        fixture.table6d().setColumnHidden(column, false);
    QCoreApplication::processEvents();
    QVERIFY2(fixture.battery().isVisible(), "the battery is missing until the next pass");
    QVERIFY2(fixture.temperature().isVisible(), "the temperature is missing until the next pass");
    QCOMPARE(fixture.battery().value(), 50);
    const QModelIndex cell = fixture.table6d().model()->index(1, BatteryColumn);
    QVERIFY(fixture.table6d().visualRect(cell).contains(fixture.battery().geometry()));
}

void TestCellWidgets::aHiddenWidgetLeavesTheTableAtRest()
{
    BarsInATable bars;
    bars.table.setCellWidgetShown(1, 1, false);
    QTRY_VERIFY(bars.bar(0)->isVisible());
    QTest::qWait(50);
    const EventCount shown(bars.bar(1), QEvent::Show);
    for (int round = 0; round < 100; ++round)
        QCoreApplication::processEvents();
    QCOMPARE(shown.count, 0);
}

void TestCellWidgets::noWidgetPilesUp()
{
    BarsInATable bars;
    QCOMPARE(bars.barsAlive(), 3);
    for (int i = 0; i < 200; ++i) {
        bars.table.deleteCellWidgets();
        QCOMPARE(bars.barsAlive(), 0);
        QVERIFY(!bars.bar(0));
        bars.setBars();
        QCOMPARE(bars.barsAlive(), 3);
    }
    bars.table.setColumnHidden(1, true);
    bars.table.deleteCellWidgets();
    QCOMPARE(bars.barsAlive(), 0);
    bars.table.setColumnHidden(1, false);
    bars.setBars();
    QCoreApplication::processEvents();
    QVERIFY(bars.bar(2)->isVisible());
}

void TestCellWidgets::aPressOnAWidgetThatGoesMeanwhile_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left button") << int(Qt::LeftButton);
    QTest::newRow("right button, whose menu event follows") << int(Qt::RightButton);
}

void TestCellWidgets::aPressOnAWidgetThatGoesMeanwhile()
{
    QFETCH(const int, button);
    BarsInATable bars;
    QVERIFY(QTest::qWaitForWindowExposed(&bars.table));
    int presses = 0;
    QObject::connect(&bars.table, &QTableWidget::cellPressed, &bars.table, [&] {
        ++presses;
        bars.table.deleteCellWidgets();
        bars.table.setRowCount(0);
    });
    const QPoint place = bars.bar(1)->mapTo(&bars.table, bars.bar(1)->rect().center());
    QTest::mouseClick(bars.table.windowHandle(), Qt::MouseButton(button), Qt::NoModifier, place);
    QCOMPARE(presses, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QCOMPARE(bars.barsAlive(), 0);
}

QTEST_MAIN(TestCellWidgets)
#include "tst_cellwidgets.moc"
