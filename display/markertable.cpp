// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/markertable.h"

#include "data/trackingdata.h"
#include "display/applicationfont.h"
#include "display/celldelegate.h"
#include "display/cellitems.h"
#include "display/columns.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QTableWidget>

#include <algorithm>

namespace {

int markerCount(TrackingData &data)
{
    return static_cast<int>(data.lock()->markerRecords.size());
}

} // namespace

MarkerTable::MarkerTable(QTableWidget &tableWidget)
    : table(tableWidget)
{
    table.setColumnCount(Column3dCount);
    table.setHorizontalHeaderLabels({tr("3DOF ID"), tr("x [mm]"), tr("y [mm]"), tr("z [mm]")});
    for (int column = MarkerXColumn; column <= MarkerZColumn; ++column)
        table.horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight);
    QHeaderView *header = table.horizontalHeader();
    header->setMinimumHeight(headerHeight);
    header->setSectionResizeMode(MarkerZColumn, QHeaderView::Stretch);
    table.verticalHeader()->setDefaultSectionSize(rowHeight);
    table.verticalHeader()->hide();

    table.setRowCount(1); // a template that gives the columns their widths
    table.setItem(0, MarkerIdColumn, new QTableWidgetItem(QStringLiteral("0")));
    for (int column = MarkerXColumn; column <= MarkerZColumn; ++column)
        table.setItem(0, column, new QTableWidgetItem(QStringLiteral("-0.00")));
    // Twice: the first pass can change the sizes that the second one starts from.
    table.resizeColumnsToContents();
    table.resizeColumnsToContents();
    for (int column = MarkerIdColumn; column < Column3dCount; ++column)
        table.setColumnWidth(column, table.columnWidth(column) + columnMargin);
    // y stands for z, whose column stretches: the three coordinates are equally wide here.
    table.setMaximumWidth(table.columnWidth(MarkerIdColumn) + table.columnWidth(MarkerXColumn)
                          + 2 * table.columnWidth(MarkerYColumn) + columnMargin);
    table.setRowCount(0);
    table.setItemDelegate(new CellDelegate(&table));
    followApplicationFont(table);
}

void MarkerTable::clear()
{
    table.setRowCount(0);
}

void MarkerTable::redraw(TrackingData &data) noexcept
try {
    const QString idFormat = tr("%1"); // before the lock: a translator is somebody else's code
    makeRows(data);
    const CellRange changed = fillRows(data, idFormat);
    if (!changed.isEmpty())
        changed.emitDataChanged(*table.model());
} catch (...) {
    return;
}

void MarkerTable::makeRows(TrackingData &data)
{
    // Rows are made without the lock, since the table signals them. A frame with another number of markers may come in
    // meanwhile: once more, then the next redraw brings the rest.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const int count = markerCount(data);
        if (table.rowCount() == count)
            return;
        table.setRowCount(count);
    }
}

CellRange MarkerTable::fillRows(TrackingData &data, const QString &idFormat)
{
    const QSignalBlocker quiet(table.model()); // outlives the lock: nobody else's code runs under it
    const TrackingData::Locked stores = data.lock(); // over all rows, so that they show the same frame
    const int rows = std::min(table.rowCount(), static_cast<int>(stores->markerRecords.size()));
    CellRange changed;
    for (int row = 0; row < rows; ++row) {
        const MarkerRecord &record = *stores->markerRecords[static_cast<std::size_t>(row)];
        table.setItem(row, MarkerIdColumn, new MarkerIdItem(idFormat, record.id));
        table.setItem(row, MarkerXColumn, new CoordinateItem(record.position[0]));
        table.setItem(row, MarkerYColumn, new CoordinateItem(record.position[1]));
        table.setItem(row, MarkerZColumn, new CoordinateItem(record.position[2]));
        changed.addRow(row, Column3dCount);
    }
    return changed;
}
