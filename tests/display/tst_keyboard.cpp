// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"
#include "tests/support/openwidgets.h"
#include "tests/support/panelfixture.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWindow>

/// The tables by keyboard and for screen readers.
class TestKeyboard : public QObject {
    Q_OBJECT

private slots:
    void tabLeavesTheTables();
    void arrowsMoveTheCurrentCell();
    void menuKeysOpenTheMenuOfTheCurrentCell_data();
    void menuKeysOpenTheMenuOfTheCurrentCell();
    void aClickComesBeforeTheCurrentCell();
    void tablesHaveNames();

private:
    /// A panel with three bodies, of which the second is not calibrated, on the screen with the focus on its 6DOF
    /// table.
    static void open(PanelFixture &fixture);
    static void pressMenuKey(const QWidget &widget, const QString &key);
};

void TestKeyboard::open(PanelFixture &fixture)
{
    fixture.answerBodies(3);
    fixture.answer("body calibrated standard b02", "no");
    fixture.answer("filter6d available standard", "yes");
    fixture.createConfiguredPanel();
    fixture.panel->resize(1000, 300);
    fixture.panel->show();
    QVERIFY(QTest::qWaitForWindowActive(fixture.panel.get()));
    fixture.table6d().setFocus();
    QTRY_VERIFY(fixture.table6d().hasFocus());
}

void TestKeyboard::pressMenuKey(const QWidget &widget, const QString &key)
{
    QWindow *const window = widget.window()->windowHandle();
    if (key == QLatin1String("Shift+F10")) {
        QTest::keyClick(window, Qt::Key_F10, Qt::ShiftModifier);
        return;
    }
    // What a window gets from its platform for the menu key; the offscreen platform makes no such event.
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint(), Qt::NoModifier);
    QCoreApplication::sendEvent(window, &event);
}

void TestKeyboard::tabLeavesTheTables()
{
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.createConfiguredPanel();
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    auto *before = new QLineEdit;
    auto *after = new QLineEdit;
    layout->addWidget(before);
    layout->addWidget(fixture.panel.get());
    layout->addWidget(after);
    const auto takeBack = qScopeGuard([&] { fixture.panel->setParent(nullptr); });
    QCOMPARE(fixture.send("3d", "3d 1 [1 1][1 2 3]"), 0);
    fixture.panel->updateView3d();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    before->setFocus();
    const QWidget *const stops[] = {&fixture.table6d(), &fixture.table3d(), after};
    for (const QWidget *stop : stops) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), stop);
    }
    for (const QWidget *stop : {stops[1], stops[0], static_cast<const QWidget *>(before)}) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), stop);
    }
}

void TestKeyboard::arrowsMoveTheCurrentCell()
{
    PanelFixture fixture;
    open(fixture);
    fixture.table6d().setCurrentCell(0, BodyIdColumn);
    QTest::keyClick(fixture.panel->windowHandle(), Qt::Key_Down);
    QTest::keyClick(fixture.panel->windowHandle(), Qt::Key_Right);
    QCOMPARE(fixture.table6d().currentRow(), 1);
    QCOMPARE(fixture.table6d().currentColumn(), int(NameColumn));
}

void TestKeyboard::menuKeysOpenTheMenuOfTheCurrentCell_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("downs");
    QTest::addColumn<int>("rights");
    QTest::addColumn<QByteArray>("body"); // whose dialog opens, or empty
    for (const char *key : {"Menu", "Shift+F10"}) {
        const auto row = [key](const char *sentence, int downs, int rights, const char *body) {
            QTest::addRow("%s: %s", key, sentence) << QString::fromLatin1(key) << downs << rights << QByteArray(body);
        };
        row("the filter cell of body 1", 0, 2, "b01");
        row("the filter cell of body 3", 2, 2, "b03");
        row("the filter cell of a body that is not calibrated has none", 1, 2, "");
        row("a name has none", 0, 1, "");
        row("a coordinate has none", 2, 4, "");
    }
}

void TestKeyboard::menuKeysOpenTheMenuOfTheCurrentCell()
{
    QFETCH(const QString, key);
    QFETCH(const int, downs);
    QFETCH(const int, rights);
    QFETCH(const QByteArray, body);
    PanelFixture fixture;
    open(fixture);
    QTableWidget &table = fixture.table6d();
    table.setCurrentCell(0, BodyIdColumn);
    for (int i = 0; i < downs; ++i)
        QTest::keyClick(fixture.panel->windowHandle(), Qt::Key_Down);
    for (int i = 0; i < rights; ++i)
        QTest::keyClick(fixture.panel->windowHandle(), Qt::Key_Right);
    const QRect cell = table.visualRect(table.currentIndex());
    const QRect onScreen(table.viewport()->mapToGlobal(cell.topLeft()), cell.size());
    int menus = 0;
    QPoint place;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget *const menu = openMenu();
        if (!menu)
            return;
        ++menus;
        place = menu->pos();
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QTimer dialogs;
    connect(&dialogs, &QTimer::timeout, &dialogs, [] {
        if (QWidget *const dialog = openDialog())
            dialog->close();
    });
    poll.start(0);
    dialogs.start(0);
    fixture.takeCalls();
    pressMenuKey(table, key);
    QCoreApplication::processEvents(); // the dialog opens after the menu is done
    QCoreApplication::processEvents();
    poll.stop();
    QCOMPARE(menus, body.isEmpty() ? 0 : 1);
    const QString question = QStringLiteral("requestString body filter6d_preset standard ");
    const QStringList asked = fixture.takeCalls().filter(question);
    if (body.isEmpty()) {
        QCOMPARE(asked, QStringList());
        return;
    }
    QVERIFY(onScreen.contains(place));
    QCOMPARE(asked.value(0), QString(question + QString::fromLatin1(body)));
}

void TestKeyboard::aClickComesBeforeTheCurrentCell()
{
    PanelFixture fixture;
    open(fixture);
    QTableWidget &table = fixture.table6d();
    table.setCurrentCell(0, FilterColumn);
    int menus = 0;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *const menu = openMenu()) {
            ++menus;
            menu->close();
        }
    });
    poll.start(0);
    const QPoint place = table.visualItemRect(table.item(0, XColumn)).center();
    QTest::mouseClick(fixture.panel->windowHandle(), Qt::RightButton, Qt::NoModifier,
                      table.viewport()->mapTo(fixture.panel.get(), place));
    QCoreApplication::processEvents();
    QCOMPARE(menus, 0);
}

void TestKeyboard::tablesHaveNames()
{
    PanelFixture fixture;
    open(fixture);
    const auto nameOf = [](QTableWidget &table) {
        QAccessibleInterface *const face = QAccessible::queryAccessibleInterface(&table);
        return face ? face->text(QAccessible::Name) : QString();
    };
    QCOMPARE(nameOf(fixture.table6d()), QStringLiteral("Bodies"));
    QCOMPARE(nameOf(fixture.table3d()), QStringLiteral("Markers"));
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
