// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/dockcycle.h"

#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

using namespace host;

/// F6 and Shift+F6 in a window with three docks: "left" and "right" side by side, "low" below them.
class DockCycleTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { window.reset(); }

    void goesLineByLineAndAround();
    void startsAtTheNearEnd_data();
    void startsAtTheNearEnd();
    void passesOverWhatTakesNoFocus_data();
    void passesOverWhatTakesNoFocus();
    void returnsToWhereADockWasLeft();
    void bringsEveryTabToTheFront();
    void floatingDocksComeLast();
    void staysWhereItIsWithoutDocks();

private:
    /// Two fields, named after the dock, the second with a 2.
    QDockWidget *addDock(const QString &name, Qt::DockWidgetArea area);
    QDockWidget *dock(const char *name) const { return window->findChild<QDockWidget *>(QLatin1String(name)); }
    /// The names of the fields that each F6, or Shift+F6, leads to.
    QString walk(int steps, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    static QString focusName()
    {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    }

    std::unique_ptr<QMainWindow> window;
};

QDockWidget *DockCycleTest::addDock(const QString &name, Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(name, window.get());
    dock->setObjectName(name);
    auto *panel = new QWidget;
    auto *layout = new QVBoxLayout(panel);
    for (const char *number : {"", "2"}) {
        auto *field = new QLineEdit;
        field->setObjectName(QStringLiteral("in ") + name + QLatin1String(number));
        layout->addWidget(field);
    }
    dock->setWidget(panel);
    window->addDockWidget(area, dock);
    return dock;
}

void DockCycleTest::init()
{
    window = std::make_unique<QMainWindow>();
    window->resize(600, 400);
    auto *centre = new QPushButton(window.get());
    centre->setObjectName(QStringLiteral("centre"));
    window->setCentralWidget(centre);
    addDock(QStringLiteral("low"), Qt::BottomDockWidgetArea);
    addDock(QStringLiteral("right"), Qt::RightDockWidgetArea);
    addDock(QStringLiteral("left"), Qt::LeftDockWidgetArea);
    new DockCycle(window.get());
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    centre->setFocus();
    QTRY_COMPARE(focusName(), QStringLiteral("centre"));
}

QString DockCycleTest::walk(int steps, Qt::KeyboardModifiers modifiers) const
{
    QStringList names;
    for (int i = 0; i < steps; ++i) {
        QWidget *const active = QApplication::activeWindow();
        QTest::keyClick(active ? active : window.get(), Qt::Key_F6, modifiers);
        QCoreApplication::processEvents();
        names << focusName();
    }
    return names.join(QStringLiteral(", "));
}

void DockCycleTest::goesLineByLineAndAround()
{
    QCOMPARE(walk(4), QStringLiteral("in left, in right, in low, in left"));
    QCOMPARE(walk(4, Qt::ShiftModifier), QStringLiteral("in low, in right, in left, in low"));
}

void DockCycleTest::startsAtTheNearEnd_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("first");
    QTest::newRow("F6 from outside goes to the first") << Qt::KeyboardModifiers(Qt::NoModifier) << "in left";
    QTest::newRow("Shift+F6 from outside goes to the last") << Qt::KeyboardModifiers(Qt::ShiftModifier) << "in low";
}

void DockCycleTest::startsAtTheNearEnd()
{
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QTEST(walk(1, modifiers), "first");
}

void DockCycleTest::passesOverWhatTakesNoFocus_data()
{
    QTest::addColumn<int>("what");
    QTest::newRow("a closed dock") << 0;
    QTest::newRow("a dock with a label alone") << 1;
    QTest::newRow("a disabled dock") << 2;
    QTest::newRow("a dock whose fields are hidden") << 3;
    QTest::newRow("a dock whose fields want the mouse") << 4;
}

void DockCycleTest::passesOverWhatTakesNoFocus()
{
    QFETCH(const int, what);
    QDockWidget *const right = dock("right");
    const QList<QLineEdit *> fields = right->findChildren<QLineEdit *>();
    if (what == 0)
        right->close();
    else if (what == 1)
        right->setWidget(new QLabel(QStringLiteral("nothing to reach")));
    else if (what == 2)
        right->widget()->setEnabled(false);
    for (QLineEdit *field : fields) {
        if (what == 3)
            field->hide();
        else if (what == 4)
            field->setFocusPolicy(Qt::ClickFocus);
    }
    QCOMPARE(walk(3), QStringLiteral("in left, in low, in left"));
}

void DockCycleTest::returnsToWhereADockWasLeft()
{
    dock("left")->findChild<QLineEdit *>(QStringLiteral("in left2"))->setFocus();
    QCOMPARE(walk(3), QStringLiteral("in right, in low, in left2"));
    QCOMPARE(walk(1), QStringLiteral("in right"));
    dock("left")->findChild<QLineEdit *>(QStringLiteral("in left2"))->setEnabled(false);
    QCOMPARE(walk(2), QStringLiteral("in low, in left"));
}

void DockCycleTest::bringsEveryTabToTheFront()
{
    QDockWidget *const third = addDock(QStringLiteral("third"), Qt::LeftDockWidgetArea);
    window->tabifyDockWidget(dock("left"), dock("right"));
    window->tabifyDockWidget(dock("left"), third);
    QCoreApplication::processEvents();
    QCOMPARE(walk(4), QStringLiteral("in left, in right, in third, in low"));
    QCOMPARE(walk(2, Qt::ShiftModifier), QStringLiteral("in third, in right"));
    QCOMPARE(walk(1), QStringLiteral("in third"));
    QVERIFY(!third->visibleRegion().isEmpty());
}

void DockCycleTest::floatingDocksComeLast()
{
    dock("left")->setFloating(true);
    QVERIFY(QTest::qWaitForWindowExposed(dock("left")));
    QCOMPARE(walk(2), QStringLiteral("in right, in low"));
    walk(1);
    QTRY_COMPARE(QApplication::activeWindow(), dock("left"));
    QTRY_COMPARE(focusName(), QStringLiteral("in left"));
    walk(1);
    QTRY_COMPARE(QApplication::activeWindow(), window.get());
    QTRY_COMPARE(focusName(), QStringLiteral("in right"));
}

void DockCycleTest::staysWhereItIsWithoutDocks()
{
    for (const char *name : {"left", "right", "low"})
        dock(name)->close();
    QCOMPARE(walk(2), QStringLiteral("centre, centre"));
}

QTEST_MAIN(DockCycleTest)
#include "tst_dockcycle.moc"
