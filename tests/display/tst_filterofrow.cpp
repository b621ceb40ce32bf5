// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"
#include "filter/filterdialog.h"
#include "tests/support/openwidgets.h"
#include "tests/support/panelfixture.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

/// The dialog that the body table opens for a row, without its menu.
class TestFilterOfRow : public QObject {
    Q_OBJECT

private slots:
    void opensTheDialogForTheBodyOfTheRow_data();
    void opensTheDialogForTheBodyOfTheRow();
    void followsTheHeadRow();
    void leavesNoDialogBehind();
    void asksNothingOfAnOldBackend();
};

void TestFilterOfRow::opensTheDialogForTheBodyOfTheRow_data()
{
    QTest::addColumn<bool>("head");
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("without head row, the first row is body 1") << false << 0 << QByteArray("standard b01");
    QTest::newRow("without head row, the third row is body 3") << false << 2 << QByteArray("standard b03");
    QTest::newRow("with head row, row 3 is body 3") << true << 3 << QByteArray("standard b03");
    QTest::newRow("the head row itself opens body 1") << true << 0 << QByteArray("standard b01");
}

void TestFilterOfRow::opensTheDialogForTheBodyOfTheRow()
{
    QFETCH(bool, head);
    QFETCH(int, row);
    QFETCH(QByteArray, body);
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.answer("filter6d available standard", "yes");
    if (head)
        fixture.answerHead();
    fixture.createConfiguredPanel();
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    QSignalSpy refreshed(&table, &ZelTableWidget::updateFilterActiveStatus);
    table.onCellPressed(row, FilterColumn);
    onceOpen(openDialog, [](QWidget *dialog) { dialog->close(); });
    table.displayFilterDlg();
    QVERIFY(
        fixture.takeCalls().contains(QStringLiteral("requestString body filter6d_preset ") + QString::fromUtf8(body)));
    QCOMPARE(refreshed.size(), 1);
    QCOMPARE(refreshed.first().first().toInt(), row); // the row, not the body
}

void TestFilterOfRow::followsTheHeadRow()
{
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.answer("filter6d available standard", "yes");
    fixture.answerHead();
    fixture.createConfiguredPanel();
    fixture.answer("wandor multiuser", "no");
    fixture.reconfigure();
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    table.onCellPressed(1, FilterColumn);
    onceOpen(openDialog, [](QWidget *dialog) { dialog->close(); });
    table.displayFilterDlg();
    QVERIFY(fixture.takeCalls().contains(QStringLiteral("requestString body filter6d_preset standard b02")));
}

void TestFilterOfRow::leavesNoDialogBehind()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("filter6d available standard", "yes");
    fixture.createConfiguredPanel();
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    QPointer<QWidget> opened;
    int refreshed = 0;
    connect(&table, &ZelTableWidget::updateFilterActiveStatus, this, [&] {
        QVERIFY(!openDialog());
        ++refreshed;
    });
    onceOpen(openDialog, [&](QWidget *dialog) {
        opened = dialog;
        QCOMPARE(dialog->parentWidget(), &table);
        dialog->close();
    });
    table.displayFilterDlg(); // for the first row, as long as no cell was pressed
    QVERIFY(fixture.takeCalls().contains(QStringLiteral("requestString body filter6d_preset standard b01")));
    QCOMPARE(refreshed, 1);
    QVERIFY(!opened);
    QVERIFY(table.findChildren<FilterDialog *>().isEmpty());
}

void TestFilterOfRow::asksNothingOfAnOldBackend()
{
    PanelFixture fixture(1, 11);
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    QSignalSpy refreshed(&table, &ZelTableWidget::updateFilterActiveStatus);
    table.displayFilterDlg();
    QCOMPARE(fixture.takeCalls(), QStringList());
    QCOMPARE(refreshed.size(), 0);
}

QTEST_MAIN(TestFilterOfRow)
#include "tst_filterofrow.moc"
