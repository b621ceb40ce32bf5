// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/monkey.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <array>

namespace {

constexpr std::array<Qt::Key, 16> keys{Qt::Key_Up,     Qt::Key_Down,  Qt::Key_Return, Qt::Key_Escape,
                                       Qt::Key_Tab,    Qt::Key_Space, Qt::Key_F10,    Qt::Key_1,
                                       Qt::Key_Enter,  Qt::Key_Left,  Qt::Key_Right,  Qt::Key_End,
                                       Qt::Key_PageUp, Qt::Key_A,     Qt::Key_F4,     Qt::Key_Backspace};

} // namespace

/// Through the window system, as a real mouse does; nothing of the target is touched once its window is gone.
void Monkey::click(Qt::MouseButton button, const QWidget *target, QPoint place)
{
    const QPointer<QWindow> handle(target->window()->windowHandle());
    if (!handle)
        return;
    const QPoint inWindow = target->mapTo(target->window(), place);
    QTest::mousePress(handle, button, Qt::NoModifier, inWindow);
    if (handle)
        QTest::mouseRelease(handle, button, Qt::NoModifier, inWindow);
}

void Monkey::clickCell(Qt::MouseButton button, int operand)
{
    const DataDisplay *const shown = panel;
    if (!shown || !shown->isVisible())
        return;
    const QTableWidget &table = tableOf(*shown, "tableWidget6d");
    const int column = operand < 200 ? int(FilterColumn) : operand % Column6dCount;
    const QTableWidgetItem *const item = table.item(operand % 4, column);
    const QRect cell = item ? table.visualItemRect(item) : QRect(5, 5, 1, 1);
    click(button, table.viewport(), cell.center());
}

void Monkey::clickInDialog(int operand)
{
    QWidget *const dialog = QApplication::activeModalWidget();
    if (!dialog)
        return;
    QList<QWidget *> targets;
    const auto children = dialog->findChildren<QWidget *>();
    for (QWidget *const child : children) {
        const bool isControl = qobject_cast<QComboBox *>(child) || qobject_cast<QAbstractButton *>(child)
            || qobject_cast<QAbstractSpinBox *>(child);
        if (isControl && child->isVisible() && child->isEnabled() && child->window() == dialog)
            targets << child;
    }
    if (targets.isEmpty())
        return;
    QWidget *const target = targets.at(operand % targets.size());
    click(Qt::LeftButton, target, QPoint(8, target->height() / 2));
}

void Monkey::pressKey(int operand)
{
    QWidget *target = QApplication::activePopupWidget();
    if (!target)
        target = QApplication::activeModalWidget();
    if (!target)
        target = &window;
    const QPointer<QWindow> handle(target->window()->windowHandle());
    if (!handle)
        return;
    const Qt::Key key = keys[static_cast<std::size_t>(operand) % keys.size()];
    const Qt::KeyboardModifiers modifiers = operand > 240 ? Qt::AltModifier : Qt::NoModifier;
    const char ascii = QTest::keyToAscii(key);
    const QString text = ascii != 0 ? QString(QLatin1Char(ascii)) : QString();
    // QTest::keyPress would press Alt itself before, and go on with a window that may be gone by then.
    for (const bool press : {true, false}) {
        if (handle)
            QTest::simulateEvent(handle, press, key, modifiers, text, false);
    }
}

void Monkey::chooseInMenu()
{
    const QPointer<QMenu> menu(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    if (!menu)
        return;
    const QPointer<QWindow> handle(menu->windowHandle());
    QTest::keyPress(handle, Qt::Key_Down);
    if (handle && menu)
        QTest::keyPress(handle, Qt::Key_Return);
}
