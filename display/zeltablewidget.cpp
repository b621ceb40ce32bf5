// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"

#include "display/columns.h"
#include "filter/filterdialog.h"
#include "channel/version.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>

namespace {

constexpr int filterColumnOfHandHelds = 22;

} // namespace

ZelTableWidget::ZelTableWidget(QWidget *parent)
    : QTableWidget(parent)
    , contextMenu(new QMenu(this))
    , filterAction(new QAction(tr("Filter"), this))
{
    contextMenu->addAction(filterAction);
    // Queued: the menu still works on its members when its action is done, and a dialog that the action opens at once
    // would let the host delete the menu before that.
    connect(filterAction, &QAction::triggered, this, &ZelTableWidget::displayFilterDlg, Qt::QueuedConnection);
    connect(this, &QTableWidget::cellPressed, this, &ZelTableWidget::onCellPressed);
}

void ZelTableWidget::onCellPressed(int row, int column)
{
    pressedRow = row;
    pressedColumn = column;
}

void ZelTableWidget::mousePressEvent(QMouseEvent *event)
{
    // The view reports no press on a cell that is not enabled, and the menu would be that of the cell before.
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid())
        onCellPressed(index.row(), index.column());
    QTableWidget::mousePressEvent(event);
}

bool ZelTableWidget::hasFilterMenu() const
{
    if (tabIndex == 0 && pressedColumn != FilterColumn)
        return false;
    if (tabIndex == 1 && pressedColumn != filterColumnOfHandHelds)
        return false;
    if (!versionAtLeast(*versions, 1, 12) || rowCount() == 0)
        return false;
    return rowEnabled.value(pressedRow);
}

void ZelTableWidget::contextMenuEvent(QContextMenuEvent *event)
{
    Q_UNUSED(event) // the cell is the one that the same click has just pressed
    if (hasFilterMenu())
        contextMenu->exec(QCursor::pos());
}

void ZelTableWidget::displayFilterDlg()
{
    if (!versionAtLeast(*versions, 1, 12))
        return;
    const QPointer<FilterDialog> dialog(new FilterDialog(ioManager, this, versions));
    const bool leavesHeadRowOut = headRowPresent && pressedRow > 0;
    dialog->update_and_exec(tabIndex, leavesHeadRowOut ? pressedRow - 1 : pressedRow);
    if (!dialog)
        return; // released while it was open, and this table with it
    delete dialog;
    emit updateFilterActiveStatus(pressedRow);
}
