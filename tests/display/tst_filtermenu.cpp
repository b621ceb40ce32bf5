// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/batterybar.h"
#include "display/zeltablewidget.h"
#include "tests/support/openwidgets.h"
#include "tests/support/panelfixture.h"

#include <QAction>
#include <QCursor>
#include <QHeaderView>
#include <QMenu>
#include <QMetaMethod>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWindow>

/// The filter menu of the body table, by real clicks.
class TestFilterMenu : public QObject {
    Q_OBJECT

private slots:
    void hasItsMethodsInOrder();
    void offersTheFilterAtTheCursor();
    void opensForCalibratedBodiesInTheFilterColumn_data();
    void opensForCalibratedBodiesInTheFilterColumn();
    void staysClosedOnACellThatIsNotEnabled();
    void staysClosedWithoutRows();
    void staysClosedWithoutARowList();
    void treatsARowBehindTheListAsNotCalibrated();
    void looksForColumn22InATableOfHandHelds();
    void refreshesTheCellOfTheRow();
    void survivesWhatTheHostDoesMeanwhile_data();
    void survivesWhatTheHostDoesMeanwhile();

private:
    static void click(Qt::MouseButton button, const QTableWidget &table, int row, int column);
    static bool menuOpensAt(const QTableWidget &table, int row, int column);
};

/// Through the window system, so that a right click makes its context menu event.
void TestFilterMenu::click(Qt::MouseButton button, const QTableWidget &table, int row, int column)
{
    const QPoint place = table.visualItemRect(table.item(row, column)).center();
    QWidget *window = table.window();
    QTest::mouseClick(window->windowHandle(), button, Qt::NoModifier, table.viewport()->mapTo(window, place));
}

bool TestFilterMenu::menuOpensAt(const QTableWidget &table, int row, int column)
{
    bool opened = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *menu = openMenu()) {
            opened = true;
            menu->close();
        }
    });
    poll.start(0);
    click(Qt::RightButton, table, row, column);
    QCoreApplication::processEvents();
    return opened;
}

void TestFilterMenu::hasItsMethodsInOrder()
{
    const QMetaObject &meta = ZelTableWidget::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(meta.method(i).methodSignature());
    QCOMPARE(methods,
             QByteArrayList({"updateFilterActiveStatus(int)", "displayFilterDlg()", "onCellPressed(int,int)"}));
}

void TestFilterMenu::offersTheFilterAtTheCursor()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.createConfiguredPanel();
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    const QPoint cursor = fixture.panel->mapToGlobal(QPoint(40, 60));
    QCursor::setPos(cursor);
    QStringList texts;
    QPoint place;
    onceOpen(openMenu, [&](QWidget *menu) {
        const QList<QAction *> actions = menu->actions();
        for (const QAction *action : actions)
            texts << action->text();
        place = menu->pos() - QCursor::pos();
        menu->close();
    });
    click(Qt::RightButton, fixture.table6d(), 1, FilterColumn);
    QTRY_COMPARE(texts, QStringList{QStringLiteral("Filter")});
    QCOMPARE(place, QPoint(0, 0));
}

void TestFilterMenu::opensForCalibratedBodiesInTheFilterColumn_data()
{
    QTest::addColumn<int>("minor");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("opens");
    QTest::newRow("filter cell of a calibrated body") << 24 << 0 << int(FilterColumn) << true;
    QTest::newRow("filter cell of a body that is not calibrated") << 24 << 1 << int(FilterColumn) << false;
    QTest::newRow("filter cell of the last calibrated body") << 24 << 2 << int(FilterColumn) << true;
    QTest::newRow("ID cell") << 24 << 0 << int(BodyIdColumn) << false;
    QTest::newRow("name cell") << 24 << 0 << int(NameColumn) << false;
    QTest::newRow("coordinate cell") << 24 << 0 << int(XColumn) << false;
    QTest::newRow("the first backend that has the filter") << 12 << 0 << int(FilterColumn) << true;
    QTest::newRow("a backend before the filter") << 11 << 0 << int(FilterColumn) << false;
}

void TestFilterMenu::opensForCalibratedBodiesInTheFilterColumn()
{
    QFETCH(int, minor);
    QFETCH(int, row);
    QFETCH(int, column);
    PanelFixture fixture(1, minor);
    fixture.answerBodies(3);
    fixture.answer("body calibrated standard b02", "no");
    fixture.createConfiguredPanel();
    fixture.table6d().showColumn(FilterColumn); // which an old backend hides
    fixture.panel->resize(900, 300);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    QTEST(menuOpensAt(fixture.table6d(), row, column), "opens");
}

void TestFilterMenu::staysClosedOnACellThatIsNotEnabled()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answerSensors({1, 2});
    fixture.createConfiguredPanel();
    fixture.panel->resize(1100, 300);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    QVERIFY(menuOpensAt(fixture.table6d(), 0, FilterColumn));
    QVERIFY(!menuOpensAt(fixture.table6d(), 1, BatteryColumn));
    // Nor where the bar itself is under the mouse.
    auto *bar = qobject_cast<BatteryBar *>(fixture.table6d().cellWidget(1, BatteryColumn));
    QVERIFY(bar);
    static_cast<ZelTableWidget &>(fixture.table6d()).setCellWidgetShown(1, BatteryColumn, true);
    bar->setValue(50);
    QVERIFY(menuOpensAt(fixture.table6d(), 0, FilterColumn));
    QVERIFY(!menuOpensAt(fixture.table6d(), 1, BatteryColumn));
}

void TestFilterMenu::staysClosedWithoutRows()
{
    BackendVersions versions;
    versions.backendMajor = 2;
    ScriptedHost host;
    ZelTableWidget table;
    table.setColumnCount(Column6dCount);
    table.setVersions(&versions);
    table.setIOManager(&host);
    table.setRowEnabled({true});
    table.onCellPressed(0, FilterColumn);
    table.resize(600, 200);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    bool opened = false;
    QTimer::singleShot(0, &table, [&] {
        opened = openMenu() != nullptr;
        if (opened)
            openMenu()->close();
    });
    QTest::mouseClick(table.windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    QCoreApplication::processEvents();
    QVERIFY(!opened);
}

void TestFilterMenu::staysClosedWithoutARowList()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.createConfiguredPanel();
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    QVERIFY(menuOpensAt(table, 0, FilterColumn));
    table.setRowEnabled({});
    QVERIFY(!menuOpensAt(table, 0, FilterColumn));
}

void TestFilterMenu::treatsARowBehindTheListAsNotCalibrated()
{
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.createConfiguredPanel();
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    auto &table = static_cast<ZelTableWidget &>(fixture.table6d());
    table.setRowEnabled({true});
    QVERIFY(menuOpensAt(table, 0, FilterColumn));
    QVERIFY(!menuOpensAt(table, 1, FilterColumn)); // equal to the list's length
    QVERIFY(!menuOpensAt(table, 2, FilterColumn));
}

void TestFilterMenu::looksForColumn22InATableOfHandHelds()
{
    BackendVersions versions;
    versions.backendMajor = 2;
    ScriptedHost host;
    ZelTableWidget table;
    table.setColumnCount(24);
    table.setRowCount(1);
    table.horizontalHeader()->setMinimumSectionSize(10);
    for (int column = 0; column < 24; ++column) {
        table.setItem(0, column, new QTableWidgetItem);
        table.setColumnWidth(column, 24);
    }
    table.setVersions(&versions);
    table.setIOManager(&host);
    table.setRowEnabled({true});
    table.resize(800, 200);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    table.setTabIndex(1);
    QVERIFY(menuOpensAt(table, 0, 22));
    QVERIFY(!menuOpensAt(table, 0, 2));
    table.setTabIndex(7); // no column test
    QVERIFY(menuOpensAt(table, 0, 5));
}

void TestFilterMenu::refreshesTheCellOfTheRow()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("filter6d available standard", "yes");
    fixture.createConfiguredPanel();
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    QCOMPARE(fixture.text(1, FilterColumn), QString());
    onceOpen(openMenu,
             [](QWidget *menu) { QTest::keyClick(menu, Qt::Key_Down), QTest::keyClick(menu, Qt::Key_Return); });
    onceOpen(openDialog, [&fixture](QWidget *dialog) {
        fixture.answer("body filter6d_enabled standard b02", "yes");
        dialog->close();
    });
    click(Qt::RightButton, fixture.table6d(), 1, FilterColumn);
    QTRY_COMPARE(fixture.text(1, FilterColumn), QStringLiteral("active"));
    QCOMPARE(fixture.text(0, FilterColumn), QString());
}

void TestFilterMenu::survivesWhatTheHostDoesMeanwhile_data()
{
    QTest::addColumn<QString>("open");
    QTest::addColumn<QString>("deed");
    for (const char *open : {"menu", "dialog"}) {
        for (const char *deed : {"reconfigure", "fewer bodies", "clear", "release"})
            QTest::addRow("%s open: %s", open, deed) << QString::fromLatin1(open) << QString::fromLatin1(deed);
    }
}

void TestFilterMenu::survivesWhatTheHostDoesMeanwhile()
{
    QFETCH(QString, open);
    QFETCH(QString, deed);
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.answer("filter6d available standard", "yes");
    fixture.createConfiguredPanel();
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.panel.get()));
    const auto hostActs = [&](const QPointer<QWidget> &opened) {
        if (deed == QLatin1String("reconfigure")) {
            fixture.panel->configurationChanged();
        } else if (deed == QLatin1String("fewer bodies")) {
            fixture.answer("standard number_of_bodies", "1");
            fixture.panel->configurationChanged();
        } else if (deed == QLatin1String("clear")) {
            fixture.panel->clearData();
        } else {
            fixture.panel->prepareShutdown();
            fixture.panel.reset();
        }
        if (opened)
            opened->close();
    };
    bool acted = false;
    onceOpen(openMenu, [&](QWidget *menu) {
        if (open == QLatin1String("menu")) {
            acted = true;
            hostActs(menu);
            return;
        }
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    if (open == QLatin1String("dialog")) {
        onceOpen(openDialog, [&](QWidget *dialog) {
            acted = true;
            hostActs(dialog);
        });
    }
    click(Qt::RightButton, fixture.table6d(), 2, FilterColumn);
    QTRY_VERIFY(acted);
    QCoreApplication::processEvents();
    if (deed == QLatin1String("release")) {
        QVERIFY(!fixture.panel);
        return;
    }
    fixture.answerBodies(3);
    fixture.reconfigure();
    QCOMPARE(fixture.table6d().rowCount(), 3);
    QVERIFY(menuOpensAt(fixture.table6d(), 2, FilterColumn));
}

QTEST_MAIN(TestFilterMenu)
#include "tst_filtermenu.moc"
