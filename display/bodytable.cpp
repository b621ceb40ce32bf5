// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/bodytable.h"

#include "display/applicationfont.h"
#include "display/batterybar.h"
#include "display/celldelegate.h"
#include "display/cellitems.h"
#include "display/columns.h"
#include "display/sensorpolling.h"
#include "display/temperaturebar.h"
#include "display/zeltablewidget.h"
#include "numbers/saturatedint.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include <cmath>
#include <utility>

namespace {

constexpr int sensorIdRole = Qt::UserRole; ///< the backend's whole answer, as text

QTableWidgetItem *newItem(const QString &text, int alignment)
{
    auto *item = new QTableWidgetItem(text);
    item->setTextAlignment(alignment);
    return item;
}

} // namespace

BodyTable::BodyTable(ZelTableWidget &tableWidget, bool hasFilter)
    : table(tableWidget)
    , foreignChanges(*tableWidget.model())
{
    table.setColumnCount(Column6dCount);
    table.setRowCount(0);
    table.setHorizontalHeaderLabels({tr("Body ID"), tr("Name"), tr("Filter"), tr("Sensor ID"), tr("x [mm]"),
                                     tr("y [mm]"), tr("z [mm]"), tr("rx [deg]"), tr("ry [deg]"), tr("rz [deg]"),
                                     tr("Battery"), tr("Temp. [\302\260C]"), QString()});
    for (int column = XColumn; column <= RzColumn; ++column)
        table.horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        table.horizontalHeaderItem(column)->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    QHeaderView *header = table.horizontalHeader();
    header->setSectionResizeMode(StretchColumn, QHeaderView::Stretch);
    header->setMinimumHeight(headerHeight);
    table.resizeColumnsToContents();
    for (int column = NameColumn; column < Column6dCount; ++column) // the ID column keeps the width of its header
        table.setColumnWidth(column, table.columnWidth(column) + columnMargin);
    table.verticalHeader()->setDefaultSectionSize(rowHeight);
    table.verticalHeader()->hide();
    setSensorColumnsHidden(true);
    if (!hasFilter)
        table.hideColumn(FilterColumn);
    table.setItemDelegate(new CellDelegate(&table));
    followApplicationFont(table);
}

void BodyTable::setSensorColumnsHidden(bool hidden)
{
    for (const int column : {SensorColumn, BatteryColumn, TemperatureColumn})
        table.setColumnHidden(column, hidden);
}

void BodyTable::clear()
{
    shownRows.clear();
    pendingCells = {};
    table.deleteCellWidgets();
    table.setRowCount(0);
}

void BodyTable::build(BodyConfiguration next)
{
    shownRows.clear();
    pendingCells = {};
    table.deleteCellWidgets();
    bodies = std::move(next);
    table.setHeadRowPresent(bodies.hasHeadRow);
    table.setRowEnabled(bodies.calibratedRows());

    const int rows = bodies.rows.size();
    // Somebody who hears of the new rows, or of their emptiness, may call the panel again.
    const auto isSuperseded = [&] {
        return table.rowCount() != rows || bodies.rows.size() != rows || !shownRows.empty();
    };
    table.setRowCount(rows);
    if (isSuperseded())
        return;
    table.clearContents();
    if (isSuperseded())
        return;
    {
        const QSignalBlocker quiet(table.model()); // one signal for all cells, when all are there
        for (int row = 0; row < rows; ++row) {
            fillRow(row);
            if (!bodies.isHeadRow(row))
                fillSensorCells(row);
        }
    }
    shownRows.resize(static_cast<std::size_t>(rows));
    for (const int column : {BatteryColumn, TemperatureColumn})
        table.horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    if (rows == 0)
        return;
    CellRange all;
    all.addRow(0, Column6dCount);
    all.addRow(rows - 1, Column6dCount);
    all.emitDataChanged(*table.model());
}

void BodyTable::fillRow(int row)
{
    const BodyRow &body = bodies.rows.at(row);
    // With a head row the number is one more than the backend's: operators count the rows.
    QTableWidgetItem *idItem =
        newItem(bodies.isHeadRow(row) ? QStringLiteral("MUH") : QString::number(row + 1), Qt::AlignCenter);
    if (!body.calibrated) {
        idItem->setBackground(QBrush(Qt::transparent));
        idItem->setWhatsThis(tr(" This body is not yet calibrated."));
        idItem->setData(Qt::AccessibleTextRole, tr("%1, not calibrated").arg(idItem->text()));
    }
    table.setItem(row, BodyIdColumn, idItem);
    table.setItem(row, NameColumn, newItem(body.name, Qt::AlignCenter));
    table.setItem(row, FilterColumn, newItem(filterActiveText(body.filterActive), Qt::AlignCenter));
    for (int column = XColumn; column <= RzColumn; ++column) {
        auto *coordinateItem = new CoordinateItem;
        coordinateItem->setText(QStringLiteral("-"));
        table.setItem(row, column, coordinateItem);
    }
}

void BodyTable::fillSensorCells(int row)
{
    const BodyRow &body = bodies.rows.at(row);
    const QString sensor = QString::fromUtf8(body.sensor);
    QTableWidgetItem *sensorItem = newItem(QString(), Qt::AlignCenter);
    sensorItem->setData(sensorIdRole, sensor);
    table.setItem(row, SensorColumn, sensorItem);
    for (const int column : {BatteryColumn, TemperatureColumn}) {
        QTableWidgetItem *barItem = newItem(QString(), Qt::AlignCenter);
        barItem->setFlags(Qt::NoItemFlags);
        table.setItem(row, column, barItem);
    }
    if (!body.hasSensor())
        return;
    auto *batteryBar = new BatteryBar;
    batteryBar->setValue(-1);
    table.setCellWidget(row, BatteryColumn, batteryBar);
    auto *temperatureBar = new TemperatureBar;
    temperatureBar->setValue(-1);
    temperatureBar->setTemperature(0.0);
    table.setCellWidget(row, TemperatureColumn, temperatureBar);
    for (const int column : {BatteryColumn, TemperatureColumn})
        table.setCellWidgetShown(row, column, false);
    sensorItem->setText(sensor.split(QLatin1Char(' ')).value(2).remove(QLatin1Char('\'')));
}

void BodyTable::showFilterState(int row, const QString &text)
{
    if (QTableWidgetItem *item = table.item(row, FilterColumn))
        item->setText(text);
}

QByteArray BodyTable::sensorOfRow(int row) const
{
    const BodyRow body = bodies.rows.value(row);
    const QTableWidgetItem *item = table.item(row, SensorColumn);
    if (!item || !body.hasSensor())
        return "none";
    // The backend's own bytes, unless somebody has put another sensor into the cell.
    const QString sensor = item->data(sensorIdRole).toString();
    return sensor == QString::fromUtf8(body.sensor) ? body.sensor : sensor.toUtf8();
}

void BodyTable::showSensor(int row, const SensorReading &reading)
{
    QTableWidgetItem *item = table.item(row, SensorColumn);
    if (!item)
        return;
    const bool present = reading.presence == SensorReading::Presence::Present;
    item->setBackground(QBrush(present ? Qt::transparent : Qt::red));
    if (reading.presence == SensorReading::Presence::Unknown)
        return; // and the bars keep what they show
    showBattery(row, reading.battery);
    showTemperature(row, reading.temperature, reading.warmth);
}

void BodyTable::showBattery(int row, double charge)
{
    auto *bar = qobject_cast<BatteryBar *>(table.cellWidget(row, BatteryColumn));
    QTableWidgetItem *item = table.item(row, BatteryColumn);
    if (!bar || !item)
        return;
    const bool shown = charge > 0.0;
    table.setCellWidgetShown(row, BatteryColumn, shown);
    QString spoken;
    if (shown) {
        const int percent = saturatedInt(charge * 100.0);
        bar->setValue(percent);
        spoken = tr("%1 %").arg(percent);
    }
    item->setData(Qt::AccessibleTextRole, spoken);
}

void BodyTable::showTemperature(int row, double temperature, double warmth)
{
    auto *bar = qobject_cast<TemperatureBar *>(table.cellWidget(row, TemperatureColumn));
    QTableWidgetItem *item = table.item(row, TemperatureColumn);
    if (!bar || !item)
        return;
    const double level = std::floor(warmth * 100.0);
    const bool shown = temperature > 0.0 && !(level < 0.0); // a bar below 0 hides itself
    table.setCellWidgetShown(row, TemperatureColumn, shown);
    if (temperature > 0.0) {
        bar->setTemperature(temperature);
        bar->setValue(level);
    }
    item->setData(Qt::AccessibleTextRole,
                  shown ? tr("%1 \302\260C").arg(QString::number(temperature, 'f', 1)) : QString());
}
