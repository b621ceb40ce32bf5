// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"

#include "channel/version.h"
#include "display/columns.h"
#include "filter/filterdialog.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QVector>

namespace {

constexpr int filterColumnOfHandHelds = 22;

// Qt's own record of whose wish a hidden widget is: its owner's, by hide(), or nobody's. A widget whose column is
// hidden is of the second kind, so that a hide() of its owner still counts meanwhile.
bool isHiddenByOwner(const QWidget &widget)
{
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

void leaveHidingToTheView(QWidget &hidden)
{
    hidden.setAttribute(Qt::WA_WState_ExplicitShowHide, false);
}

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

void ZelTableWidget::setCellWidgetShown(int row, int column, bool shown)
{
    QWidget *const widget = cellWidget(row, column);
    if (!widget)
        return;
    if (!shown) {
        widget->hide();
        return;
    }
    if (!widget->isHidden())
        return;
    const QModelIndex cell = model()->index(row, column);
    QStyleOptionViewItem option = viewOptions();
    option.rect = visualRect(cell);
    if (!option.rect.isValid()) {
        leaveHidingToTheView(*widget);
        return;
    }
    // At its place at once: the view's layout may come only after the next painting.
    itemDelegate(cell)->updateEditorGeometry(widget, option, cell);
    widget->show();
}

void ZelTableWidget::deleteCellWidgets()
{
    // It may be the press of the mouse on such a widget that has led here, and Qt uses the widget after that.
    const bool isMousePressed = QGuiApplication::mouseButtons() != Qt::NoButton;
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            const QPointer<QWidget> widget = cellWidget(row, column);
            if (!widget)
                continue;
            removeCellWidget(row, column); // which deletes it in the event loop
            if (isMousePressed)
                widget->hide();
            else
                delete widget;
        }
    }
}

void ZelTableWidget::updateEditorGeometries()
{
    QVector<QPointer<QWidget>> hidden;
    QVector<QPointer<QWidget>> others;
    const QList<QWidget *> widgets = viewport()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *const widget : widgets)
        (isHiddenByOwner(*widget) ? hidden : others).append(widget);
    QTableWidget::updateEditorGeometries();
    for (const QPointer<QWidget> &guarded : hidden) {
        if (QWidget *const widget = guarded)
            widget->hide();
    }
    for (const QPointer<QWidget> &guarded : others) {
        if (QWidget *const widget = guarded; widget && widget->isHidden())
            leaveHidingToTheView(*widget);
    }
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
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
        openMenuOfCurrentCell();
        return;
    }
    if (hasFilterMenu()) // of the cell that the same click has just pressed
        contextMenu->exec(QCursor::pos());
}

void ZelTableWidget::keyPressEvent(QKeyEvent *event)
{
    // The other menu key: of this one Qt makes no event for menus.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier && currentIndex().isValid()) {
        openMenuOfCurrentCell();
        return;
    }
    QTableWidget::keyPressEvent(event);
}

void ZelTableWidget::openMenuOfCurrentCell()
{
    const QModelIndex cell = currentIndex();
    onCellPressed(cell.row(), cell.column());
    if (hasFilterMenu())
        contextMenu->exec(viewport()->mapToGlobal(visualRect(cell).center()));
}

void ZelTableWidget::displayFilterDlg()
{
    if (!versionAtLeast(*versions, 1, 12))
        return;
    // The host may release the table meanwhile: while the dialog waits for an answer it stays, while it is open it is
    // destroyed with the table.
    const QPointer<ZelTableWidget> self(this);
    const QPointer<FilterDialog> dialog(new FilterDialog(ioManager, this, versions));
    if (self) {
        const bool leavesHeadRowOut = headRowPresent && pressedRow > 0;
        dialog->update_and_exec(tabIndex, leavesHeadRowOut ? pressedRow - 1 : pressedRow);
    }
    delete dialog;
    if (self)
        emit updateFilterActiveStatus(pressedRow);
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): a dialog that is gone was deleted by its parent
