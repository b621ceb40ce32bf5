// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/angles.h"
#include "display/columns.h"
#include "display/datadisplay.h"
#include "module/channel/version.h"

#include <QHeaderView>

#include <algorithm>
#include <mutex>

namespace {

constexpr int headerHeight = 28;
constexpr int rowHeight = 20;
constexpr int columnMargin = 20;

QString coordinateText(float value)
{
    return QString::number(static_cast<double>(value), 'f', 2);
}

QTableWidgetItem *newCoordinateItem(float value)
{
    auto *item = new QTableWidgetItem(coordinateText(value));
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

void setColours(QTableWidgetItem *item, Qt::GlobalColor text, Qt::GlobalColor background)
{
    item->setForeground(QBrush(text));
    item->setBackground(QBrush(background));
}

void showState(QTableWidgetItem *item, qint32 state)
{
    if (state >= 2)
        setColours(item, Qt::black, Qt::green);
    else if (state == 1)
        setColours(item, Qt::black, Qt::yellow);
    else if (state == 0)
        setColours(item, Qt::black, Qt::red);
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
}

void DataDisplay::updateView6d()
{
    const std::lock_guard lock(data.dataMutex); // over the whole redraw, so that every row shows the same frame
    for (int row = 0; row < tableWidget6d->rowCount(); ++row) {
        const bool calibrated = calibratedBodies.value(row);
        if (hasHeadRow && row == 0 && !calibrated)
            continue;
        if (calibrated && activeBodies.value(row))
            showBody(row);
        else
            tableWidget6d->item(row, BodyIdColumn)->setBackground(QBrush(Qt::transparent));
    }
}

void DataDisplay::showBody(int row)
{
    const auto record = std::find_if(data.bodyRecords.begin(), data.bodyRecords.end(),
                                     [row](const BodyRecord &body) { return body.id == row; });
    QTableWidgetItem *idItem = tableWidget6d->item(row, BodyIdColumn);
    if (record == data.bodyRecords.end() || record->quality < 0.0F) {
        setColours(idItem, Qt::black, Qt::red); // and the last pose stays in the cells
    } else {
        showState(idItem, record->state);
        record->angles = anglesOfRotation(record->rotation);
        for (int i = 0; i < 3; ++i) {
            const auto axis = static_cast<std::size_t>(i);
            tableWidget6d->item(row, XColumn + i)->setText(coordinateText(record->position[axis]));
            tableWidget6d->item(row, RxColumn + i)->setText(coordinateText(record->angles[axis]));
        }
    }
    QTableWidgetItem *nameItem = tableWidget6d->item(row, NameColumn);
    if (row == referenceRow) {
        setColours(nameItem, Qt::white, Qt::blue);
        nameItem->setText(referenceName);
    } else {
        nameItem->setBackground(QBrush(Qt::transparent));
    }
}

void DataDisplay::updateView3d()
{
    const std::lock_guard lock(data.dataMutex);
    tableWidget3d->setRowCount(static_cast<int>(data.markerRecords.size()));
    tableWidget3d->clearContents();
    int row = 0;
    for (const std::unique_ptr<MarkerRecord> &record : data.markerRecords) {
        auto *idItem = new QTableWidgetItem(tr("%1").arg(record->id, 0, 10, QLatin1Char(' ')));
        idItem->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        tableWidget3d->setItem(row, MarkerIdColumn, idItem);
        tableWidget3d->setItem(row, MarkerXColumn, newCoordinateItem(record->position[0]));
        tableWidget3d->setItem(row, MarkerYColumn, newCoordinateItem(record->position[1]));
        tableWidget3d->setItem(row, MarkerZColumn, newCoordinateItem(record->position[2]));
        ++row;
    }
}
