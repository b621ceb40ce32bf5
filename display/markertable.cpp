// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/markertable.h"

#include "data/trackingdata.h"
#include "display/applicationfont.h"
#include "display/celldelegate.h"
#include "display/cellitems.h"
#include "display/columns.h"
#include "display/prefetch.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QTableWidget>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace {

int markerCount(TrackingData &data)
{
    return static_cast<int>(data.lock()->markerRecords.size());
}

/// The cells of a row that are not in the table yet.
struct MarkerCells {
    explicit MarkerCells(const QString &idFormat)
        : id(std::make_unique<MarkerIdItem>(idFormat, 0))
    {
        for (std::unique_ptr<CoordinateItem> &item : position)
            item = std::make_unique<CoordinateItem>();
    }

    std::unique_ptr<MarkerIdItem> id;
    std::array<std::unique_ptr<CoordinateItem>, 3> position;
};

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
    table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // else the columns jump when markers come and go

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
    // Memory is taken before the lock and given back after it: that is most of what new cells cost.
    std::vector<MarkerCells> fresh;
    fresh.reserve(static_cast<std::size_t>(table.rowCount()));
    for (int row = 0; row < table.rowCount(); ++row) {
        fresh.emplace_back(idFormat);
        prefetchCells(table, row, MarkerIdColumn, MarkerZColumn);
    }
    std::vector<std::unique_ptr<QTableWidgetItem>> replaced;
    replaced.reserve(fresh.size() * Column3dCount);

    const QSignalBlocker quiet(table.model()); // outlives the lock: nobody else's code runs under it
    const TrackingData::Locked stores = data.lock(); // over all rows, so that they show the same frame
    const int rows = std::min(table.rowCount(), static_cast<int>(stores->markerRecords.size()));
    CellRange changed;
    const auto show = [&](int row, int column, std::unique_ptr<QTableWidgetItem> item) {
        replaced.emplace_back(table.takeItem(row, column));
        table.setItem(row, column, item.release());
    };
    for (int row = 0; row < rows; ++row) {
        const auto index = static_cast<std::size_t>(row);
        const MarkerRecord &record = *stores->markerRecords[index];
        MarkerCells &cells = fresh[index];
        cells.id->setId(record.id);
        show(row, MarkerIdColumn, std::move(cells.id));
        for (std::size_t axis = 0; axis < cells.position.size(); ++axis) {
            cells.position[axis]->setNumber(record.position[axis]);
            show(row, MarkerXColumn + static_cast<int>(axis), std::move(cells.position[axis]));
        }
        changed.addRow(row, Column3dCount);
    }
    return changed;
}
