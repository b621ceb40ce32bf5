// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"
#include "display/bodytable.h"
#include "display/cellitems.h"
#include "display/columns.h"
#include "display/prefetch.h"
#include "display/zeltablewidget.h"

#include <QScopeGuard>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

void BodyTable::redraw(TrackingData &data) noexcept
try {
    drawRows(data);
    if (pendingCells.isEmpty())
        return;
    const CellRange changed = std::exchange(pendingCells, CellRange());
    auto keepPending = qScopeGuard([&] { pendingCells = changed; });
    changed.emitDataChanged(*table.model());
    keepPending.dismiss();
    if (foreignChanges.sinceLast() == 1) // ours, and nobody else's in answer to it
        foreignChanges.accept();
} catch (...) {
    forgetShownRows(); // out of memory: the next redraw shows the rows, and signals what has changed by now
}

void BodyTable::drawRows(TrackingData &data)
{
    const auto rows = static_cast<std::size_t>(std::min(builtRowCount(), table.rowCount()));
    std::vector<BodyRecord *> recordOfRow(rows); // null for none
    // Before the lock: a translator is somebody else's code.
    words = {tr("not calibrated"), tr("not active"), tr("lost"), tr("tracked by cameras"),
             tr("tracked by its sensor alone")};
    for (int row = 0; row < static_cast<int>(rows); ++row)
        prefetchCells(table, row, XColumn, RzColumn);
    const QSignalBlocker quiet(table.model()); // outlives the lock: nobody else's code runs under it
    const TrackingData::Locked stores = data.lock(); // over the whole redraw, so that every row shows the same frame
    // Backwards, so that of several records with one id the first is the one that stays.
    for (auto record = stores->bodyRecords.rbegin(); record != stores->bodyRecords.rend(); ++record) {
        const auto row = static_cast<std::size_t>(record->id); // a negative id is beyond all rows
        if (row < rows)
            recordOfRow[row] = &*record;
    }
    if (foreignChanges.sinceLast() != 0)
        forgetShownRows();
    for (std::size_t index = 0; index < rows; ++index) {
        const int row = static_cast<int>(index);
        const BodyRow &body = bodies.rows.at(row);
        if (bodies.isHeadRow(row) && !body.calibrated)
            continue;
        if (body.calibrated && body.active)
            showBody(row, recordOfRow[index]);
        else
            showInactive(row);
    }
}

void BodyTable::forgetShownRows() noexcept
{
    for (ShownRow &shown : shownRows)
        shown.kind = ShownRow::Kind::Stale;
    foreignChanges.accept();
}

void BodyTable::showInactive(int row)
{
    ShownRow &shown = shownRows[static_cast<std::size_t>(row)];
    if (shown.kind == ShownRow::Kind::Inactive)
        return;
    shown.kind = ShownRow::Kind::Inactive;
    QTableWidgetItem *item = table.item(row, BodyIdColumn);
    if (!item)
        return;
    const QString &state = bodies.rows.at(row).calibrated ? words.notActive : words.notCalibrated;
    const bool changed = setBackground(*item, Qt::transparent);
    if (setAccessibleText(*item, accessibleText(row, state)) || changed)
        pendingCells.add(row, BodyIdColumn);
}

void BodyTable::showBody(int row, BodyRecord *record)
{
    ShownRow &shown = shownRows[static_cast<std::size_t>(row)];
    if (!shown.showsBody())
        showReference(row);
    if (!record || record->quality < 0.0F) {
        if (shown.kind != ShownRow::Kind::Lost)
            showLost(row);
        shown.kind = ShownRow::Kind::Lost; // and the last pose stays in the cells
        return;
    }
    const bool hasColours = shown.hasColoursOf(*record);
    const bool changed = shown.update(*record);
    record->angles = shown.angles;
    if (!hasColours)
        showState(row, record->state);
    if (changed)
        showPose(row, *record);
}

void BodyTable::showLost(int row)
{
    setState(row, Qt::red, words.lost);
}

void BodyTable::showState(int row, qint32 state)
{
    if (state >= 2)
        setState(row, Qt::green, words.byCameras);
    else if (state == 1)
        setState(row, Qt::yellow, words.bySensor);
    else if (state == 0)
        setState(row, Qt::red, words.lost);
}

void BodyTable::setState(int row, Qt::GlobalColor background, const QString &state)
{
    QTableWidgetItem *item = table.item(row, BodyIdColumn);
    if (!item)
        return;
    const bool changed = setColours(*item, Qt::black, background);
    if (setAccessibleText(*item, accessibleText(row, state)) || changed)
        pendingCells.add(row, BodyIdColumn);
}

QString BodyTable::accessibleText(int row, const QString &state) const
{
    return table.item(row, BodyIdColumn)->text() + QLatin1String(", ") + state;
}

void BodyTable::showPose(int row, const BodyRecord &record)
{
    const auto show = [&](int column, float number) {
        QTableWidgetItem *item = table.item(row, column);
        if (item && setNumber(*item, number))
            pendingCells.add(row, column);
    };
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        show(XColumn + i, record.position[axis]);
        show(RxColumn + i, record.angles[axis]);
    }
}

void BodyTable::showReference(int row)
{
    QTableWidgetItem *item = table.item(row, NameColumn);
    if (!item)
        return;
    bool changed = false;
    if (row == bodies.referenceRow) {
        changed = setColours(*item, Qt::white, Qt::blue);
        if (item->text() != bodies.referenceName) {
            item->setText(bodies.referenceName);
            changed = true;
        }
    } else {
        changed = setBackground(*item, Qt::transparent);
    }
    if (changed)
        pendingCells.add(row, NameColumn);
}
