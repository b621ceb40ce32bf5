// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/applicationfont.h"
#include "display/celldelegate.h"
#include "display/cellitems.h"
#include "display/columns.h"
#include "display/datadisplay.h"
#include "channel/version.h"

#include <QHeaderView>
#include <QScopeGuard>
#include <QSignalBlocker>

#include <utility>

namespace {

constexpr int headerHeight = 28;
constexpr int rowHeight = 20;
constexpr int columnMargin = 20;

/// Tells whether the item changed.
bool showState(QTableWidgetItem &item, qint32 state)
{
    if (state >= 2)
        return setColours(item, Qt::black, Qt::green);
    if (state == 1)
        return setColours(item, Qt::black, Qt::yellow);
    if (state == 0)
        return setColours(item, Qt::black, Qt::red);
    return false;
}

void widenColumns(QTableWidget *table, int firstColumn)
{
    for (int column = firstColumn; column < table->columnCount(); ++column)
        table->setColumnWidth(column, table->columnWidth(column) + columnMargin);
}

} // namespace

void DataDisplay::setupTable6d()
{
    tableWidget6d->setColumnCount(Column6dCount);
    tableWidget6d->setRowCount(0);
    tableWidget6d->setHorizontalHeaderLabels({tr("Body ID"), tr("Name"), tr("Filter"), tr("Sensor ID"), tr("x [mm]"),
                                              tr("y [mm]"), tr("z [mm]"), tr("rx [deg]"), tr("ry [deg]"),
                                              tr("rz [deg]"), tr("Battery"), tr("Temp. [\302\260C]"), QString()});
    for (int column = XColumn; column <= RzColumn; ++column)
        tableWidget6d->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        tableWidget6d->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    QHeaderView *header = tableWidget6d->horizontalHeader();
    header->setSectionResizeMode(StretchColumn, QHeaderView::Stretch);
    header->setMinimumHeight(headerHeight);
    tableWidget6d->resizeColumnsToContents();
    widenColumns(tableWidget6d, NameColumn); // the ID column keeps the width of its header
    tableWidget6d->verticalHeader()->setDefaultSectionSize(rowHeight);
    tableWidget6d->verticalHeader()->hide();
    setSensorColumnsHidden(true);
    if (!versionAtLeast(*versions, 1, 12))
        tableWidget6d->hideColumn(FilterColumn);
    tableWidget6d->setItemDelegate(new CellDelegate(tableWidget6d));
    followApplicationFont(*tableWidget6d);
    // Every way in which cells become others.
    const auto count = [this] { ++cellChanges; };
    const QAbstractItemModel *const cells = tableWidget6d->model();
    connect(cells, &QAbstractItemModel::dataChanged, &cellWatch, count);
    connect(cells, &QAbstractItemModel::modelReset, &cellWatch, count);
    connect(cells, &QAbstractItemModel::layoutChanged, &cellWatch, count);
    connect(cells, &QAbstractItemModel::rowsInserted, &cellWatch, count);
    connect(cells, &QAbstractItemModel::rowsRemoved, &cellWatch, count);
    connect(cells, &QAbstractItemModel::rowsMoved, &cellWatch, count);
    connect(cells, &QAbstractItemModel::columnsInserted, &cellWatch, count);
    connect(cells, &QAbstractItemModel::columnsRemoved, &cellWatch, count);
    connect(cells, &QAbstractItemModel::columnsMoved, &cellWatch, count);
}

void DataDisplay::setupTable3d()
{
    tableWidget3d->setColumnCount(Column3dCount);
    tableWidget3d->setHorizontalHeaderLabels({tr("3DOF ID"), tr("x [mm]"), tr("y [mm]"), tr("z [mm]")});
    for (int column = MarkerXColumn; column <= MarkerZColumn; ++column)
        tableWidget3d->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight);
    QHeaderView *header = tableWidget3d->horizontalHeader();
    header->setMinimumHeight(headerHeight);
    header->setSectionResizeMode(MarkerZColumn, QHeaderView::Stretch);
    tableWidget3d->verticalHeader()->setDefaultSectionSize(rowHeight);
    tableWidget3d->verticalHeader()->hide();

    tableWidget3d->setRowCount(1); // a template that gives the columns their widths
    tableWidget3d->setItem(0, MarkerIdColumn, new QTableWidgetItem(QStringLiteral("0")));
    for (int column = MarkerXColumn; column <= MarkerZColumn; ++column)
        tableWidget3d->setItem(0, column, new QTableWidgetItem(QStringLiteral("-0.00")));
    // Twice: the first pass can change the sizes that the second one starts from.
    tableWidget3d->resizeColumnsToContents();
    tableWidget3d->resizeColumnsToContents();
    widenColumns(tableWidget3d, MarkerIdColumn);
    // y stands for z, whose column stretches: the three coordinates are equally wide here.
    tableWidget3d->setMaximumWidth(tableWidget3d->columnWidth(MarkerIdColumn)
                                   + tableWidget3d->columnWidth(MarkerXColumn)
                                   + 2 * tableWidget3d->columnWidth(MarkerYColumn) + columnMargin);
    tableWidget3d->setRowCount(0);
    tableWidget3d->setItemDelegate(new CellDelegate(tableWidget3d));
    followApplicationFont(*tableWidget3d);
}

void DataDisplay::updateView6d() noexcept
try {
    redraw6d();
    if (untold6d.isEmpty())
        return;
    const CellRange changed = std::exchange(untold6d, CellRange());
    auto keepUntold = qScopeGuard([&] { untold6d = changed; });
    changed.tell(*tableWidget6d->model());
    keepUntold.dismiss();
    if (cellChanges == knownCellChanges + 1) // and nobody else's, in answer to ours
        knownCellChanges = cellChanges;
} catch (...) {
    forgetShownRows(); // out of memory: the next redraw shows the rows, and tells what has changed by now
}

void DataDisplay::redraw6d()
{
    const QSignalBlocker quiet(tableWidget6d->model()); // outlives the lock: nobody else's code runs under it
    const TrackingData::Locked stores = data.lock(); // over the whole redraw, so that every row shows the same frame
    indexRecords(stores->bodyRecords);
    if (cellChanges != knownCellChanges)
        forgetShownRows();
    const int rows = rowsBuilt();
    for (int row = 0; row < rows; ++row) {
        const bool calibrated = calibratedBodies.value(row);
        if (hasHeadRow && row == 0 && !calibrated)
            continue;
        if (calibrated && activeBodies.value(row))
            showBody(row);
        else
            showInactive(row);
    }
}

void DataDisplay::indexRecords(std::vector<BodyRecord> &records)
{
    const auto rows = static_cast<std::size_t>(tableWidget6d->rowCount());
    recordOfRow.assign(rows, nullptr);
    shownRows.resize(rows);
    // Backwards, so that of several records with one id the first is the one that stays.
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
        const auto row = static_cast<std::size_t>(record->id); // a negative id is beyond all rows
        if (row < rows)
            recordOfRow[row] = &*record;
    }
}

void DataDisplay::forgetShownRows() noexcept
{
    for (ShownRow &shown : shownRows)
        shown.kind = ShownRow::Kind::Unknown;
    knownCellChanges = cellChanges;
}

void DataDisplay::showInactive(int row)
{
    ShownRow &shown = shownRows[static_cast<std::size_t>(row)];
    if (shown.kind == ShownRow::Kind::Inactive)
        return;
    shown.kind = ShownRow::Kind::Inactive;
    if (setBackground(*tableWidget6d->item(row, BodyIdColumn), Qt::transparent))
        untold6d.add(row, BodyIdColumn);
}

void DataDisplay::showBody(int row)
{
    BodyRecord *const record = recordOfRow[static_cast<std::size_t>(row)];
    ShownRow &shown = shownRows[static_cast<std::size_t>(row)];
    if (!record || record->quality < 0.0F) {
        if (shown.kind == ShownRow::Kind::Lost)
            return;
        shown.kind = ShownRow::Kind::Lost; // and the last pose stays in the cells
        if (setColours(*tableWidget6d->item(row, BodyIdColumn), Qt::black, Qt::red))
            untold6d.add(row, BodyIdColumn);
    } else {
        const bool isNew = shown.take(*record);
        record->angles = shown.angles;
        if (!isNew)
            return;
        showPose(row, *record);
    }
    showReference(row);
}

void DataDisplay::showPose(int row, const BodyRecord &record)
{
    if (showState(*tableWidget6d->item(row, BodyIdColumn), record.state))
        untold6d.add(row, BodyIdColumn);
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        showCoordinate(row, XColumn + i, record.position[axis]);
        showCoordinate(row, RxColumn + i, record.angles[axis]);
    }
}

void DataDisplay::showCoordinate(int row, int column, float number)
{
    if (setNumber(*tableWidget6d->item(row, column), number))
        untold6d.add(row, column);
}

void DataDisplay::showReference(int row)
{
    QTableWidgetItem &nameItem = *tableWidget6d->item(row, NameColumn);
    bool nameChanged = false;
    if (row == referenceRow) {
        nameChanged = setColours(nameItem, Qt::white, Qt::blue);
        if (nameItem.text() != referenceName) {
            nameItem.setText(referenceName);
            nameChanged = true;
        }
    } else {
        nameChanged = setBackground(nameItem, Qt::transparent);
    }
    if (nameChanged)
        untold6d.add(row, NameColumn);
}

void DataDisplay::updateView3d() noexcept
try {
    const CellRange changed = redraw3d(tr("%1"));
    if (!changed.isEmpty())
        changed.tell(*tableWidget3d->model());
} catch (...) {
    return; // out of memory: the next redraw makes all rows anew
}

CellRange DataDisplay::redraw3d(const QString &idFormat)
{
    const TrackingData::Locked stores = data.lock();
    const int rows = static_cast<int>(stores->markerRecords.size());
    tableWidget3d->setRowCount(rows);
    tableWidget3d->clearContents();
    const QSignalBlocker quiet(tableWidget3d->model());
    CellRange changed;
    for (int row = 0; row < rows; ++row) {
        const MarkerRecord &record = *stores->markerRecords[static_cast<std::size_t>(row)];
        tableWidget3d->setItem(row, MarkerIdColumn, new MarkerIdItem(idFormat, record.id));
        tableWidget3d->setItem(row, MarkerXColumn, new CoordinateItem(record.position[0]));
        tableWidget3d->setItem(row, MarkerYColumn, new CoordinateItem(record.position[1]));
        tableWidget3d->setItem(row, MarkerZColumn, new CoordinateItem(record.position[2]));
        changed.addRow(row, Column3dCount);
    }
    return changed;
}
