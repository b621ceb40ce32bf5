// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/dockbackground.h"

#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>

#include <utility>

namespace host {

DockBackground::DockBackground(QMainWindow &window, QString nameOfLog)
    : QLabel(&window)
    , window(window)
    , nameOfLog(std::move(nameOfLog))
{
    setObjectName(QStringLiteral("dockBackground"));
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    window.setCentralWidget(this);
    window.installEventFilter(this);
    followDocks();
}

bool DockBackground::eventFilter(QObject *watched, QEvent *event)
{
    // Posted whenever a dock is shown, hidden, moved, floated or removed.
    if (watched == &window && event->type() == QEvent::LayoutRequest)
        followDocks();
    return QLabel::eventFilter(watched, event);
}

void DockBackground::followDocks()
{
    bool hasPanel = false;
    bool isBesidePanel = false;
    bool isBetweenPanels = false;
    const QList<QDockWidget *> docks = window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QDockWidget *dock : docks) {
        if (dock->isHidden() || dock->objectName() == nameOfLog)
            continue;
        hasPanel = true;
        if (dock->isFloating())
            continue;
        const Qt::DockWidgetArea area = window.dockWidgetArea(dock);
        isBesidePanel = isBesidePanel || area == Qt::LeftDockWidgetArea || area == Qt::RightDockWidgetArea;
        isBetweenPanels = isBetweenPanels || area == Qt::TopDockWidgetArea || area == Qt::BottomDockWidgetArea;
    }
    const int width = hasPanel ? 0 : QWIDGETSIZE_MAX;
    const bool isShown = isBesidePanel || !isBetweenPanels;
    if (maximumWidth() != width) {
        setText(hasPanel ? QString() : tr("All panels are hidden: View menu, F10"));
        setMaximumWidth(width);
    }
    if (isHidden() == isShown)
        setVisible(isShown);
}

} // namespace host
