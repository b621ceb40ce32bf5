// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/dockcycle.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>

#include <algorithm>
#include <tuple>

namespace host {

namespace {

bool takesFocus(const QDockWidget &dock, const QWidget &widget)
{
    return widget.isVisibleTo(&dock) && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0;
}

/// The widget of the dock that had the focus last, or else the first that Tab reaches; null for none.
QWidget *entryOf(const QDockWidget &dock)
{
    QWidget *const last = dock.focusWidget();
    if (last && last != &dock && takesFocus(dock, *last))
        return last;
    for (QWidget *widget = dock.nextInFocusChain(); widget && widget != &dock; widget = widget->nextInFocusChain()) {
        if (dock.isAncestorOf(widget) && takesFocus(dock, *widget))
            return widget;
    }
    return nullptr;
}

} // namespace

DockCycle::DockCycle(QMainWindow *window)
    : QObject(window)
    , window(window)
{
    addStep(QStringLiteral("nextPanelAction"), tr("Next Panel"), Qt::Key_F6, 1);
    addStep(QStringLiteral("previousPanelAction"), tr("Previous Panel"), int{Qt::SHIFT} | int{Qt::Key_F6}, -1);
}

void DockCycle::addStep(const QString &name, const QString &text, const QKeySequence &key, int direction)
{
    auto *action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, [this, direction] { step(direction); });
    window->addAction(action);
}

void DockCycle::step(int direction)
{
    const QList<QDockWidget *> docks = docksInOrder();
    const QWidget *const focus = QApplication::focusWidget();
    const auto current = std::find_if(docks.begin(), docks.end(),
                                      [focus](const QDockWidget *dock) { return focus && dock->isAncestorOf(focus); });
    const int count = docks.size();
    const bool isOutside = current == docks.end();
    int place = isOutside ? (direction > 0 ? -1 : 0) : static_cast<int>(current - docks.begin());
    for (int tried = 0; tried < count; ++tried) {
        place = (place + direction + count) % count;
        QDockWidget *const dock = docks.at(place);
        if (QWidget *const entry = entryOf(*dock)) {
            dock->raise(); // it may lie behind others as a tab
            entry->activateWindow(); // a floating dock is a window of its own
            entry->setFocus(Qt::ShortcutFocusReason);
            return;
        }
    }
}

QList<QDockWidget *> DockCycle::docksInOrder() const
{
    QList<QDockWidget *> docks = window->findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    const auto isClosed = [](const QDockWidget *dock) { return dock->isHidden(); };
    docks.erase(std::remove_if(docks.begin(), docks.end(), isClosed), docks.end());
    const auto place = [this](QDockWidget *dock) {
        QPoint corner = dock->pos();
        const QList<QDockWidget *> tabs = window->tabifiedDockWidgets(dock);
        for (const QDockWidget *tab : tabs) { // all but the one in front are parked above the window
            if (tab->y() > corner.y())
                corner = tab->pos();
        }
        return std::make_tuple(dock->isFloating(), corner.y(), corner.x(), dock->objectName());
    };
    std::sort(docks.begin(), docks.end(),
              [place](QDockWidget *left, QDockWidget *right) { return place(left) < place(right); });
    return docks;
}

} // namespace host
