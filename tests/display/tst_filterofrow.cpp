// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"
#include "filter/filterdialog.h"
#include "tests/support/openwidgets.h"
#include "tests/support/panelfixture.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <new>

/// The dialog that the body table opens for a row, without its menu.
class TestFilterOfRow : public QObject {
    Q_OBJECT

private slots:
    void opensTheDialogForTheBodyOfTheRow_data();
    void opensTheDialogForTheBodyOfTheRow();
    void followsTheHeadRow();
    void leavesNoDialogBehind();
    void asksNothingOfAnOldBackend();
    void keepsItsCellWithoutMemoryForTheAnswer();
    void hostMayReleaseThePanelMeanwhile_data();
    void hostMayReleaseThePanelMeanwhile();
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

void TestFilterOfRow::keepsItsCellWithoutMemoryForTheAnswer()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answer("body filter6d_enabled standard b01", "yes");
    fixture.createConfiguredPanel();
    fixture.answer("body filter6d_enabled standard b01", "no");
    fixture.host.onCall = [] { throw std::bad_alloc(); };
    fixture.panel->onUpdateFilterActiveStatus(0);
    fixture.host.onCall = nullptr;
    QCOMPARE(fixture.text(0, FilterColumn), QStringLiteral("active"));
    fixture.panel->onUpdateFilterActiveStatus(0);
    QCOMPARE(fixture.text(0, FilterColumn), QString());
}

void TestFilterOfRow::hostMayReleaseThePanelMeanwhile_data()
{
    QTest::addColumn<QByteArray>("nested");
    QTest::addColumn<int>("refreshes");
    QTest::newRow("a released panel refreshes no row") << QByteArray("release") << 0;
    QTest::newRow("cleared, the row is refreshed") << QByteArray("clear") << 1;
    QTest::newRow("configured anew, the row is refreshed") << QByteArray("configure") << 1;
}

void TestFilterOfRow::hostMayReleaseThePanelMeanwhile()
{
    QFETCH(QByteArray, nested);
    QFETCH(int, refreshes);
    bool acted = true;
    for (int k = 1; acted; ++k) {
        PanelFixture fixture(1, 20);
        fixture.answerBodies(2);
        fixture.answer("filter6d available standard", "yes");
        fixture.createConfiguredPanel();
        auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
        int refreshed = 0;
        connect(&table, &ZelTableWidget::updateFilterActiveStatus, this, [&refreshed] { ++refreshed; });
        int left = k;
        acted = false;
        fixture.host.onCall = [&] {
            if (acted || --left > 0)
                return;
            acted = true;
            if (nested == "release")
                fixture.panel.reset();
            else if (nested == "clear")
                fixture.panel->clearData();
            else
                fixture.panel->configurationChanged();
        };
        QTimer close;
        connect(&close, &QTimer::timeout, this, [&fixture] {
            fixture.host.onCall = nullptr; // from here on the row is refreshed, which is no longer the dialog's
            if (QWidget *dialog = openDialog())
                dialog->close();
        });
        close.start(1);
        table.displayFilterDlg();
        fixture.host.onCall = nullptr;
        QCOMPARE(refreshed, acted ? refreshes : 1);
        QCOMPARE(fixture.panel == nullptr, acted && nested == "release");
        QVERIFY(!openDialog());
        QVERIFY(k < 100);
    }
}

QTEST_MAIN(TestFilterOfRow)
#include "tst_filterofrow.moc"
