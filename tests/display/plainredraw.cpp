// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/display/plainredraw.h"

#include <algorithm>
#include <cmath>

namespace {

QString coordinateText(float value)
{
    return QString::number(static_cast<double>(value), 'f', 2);
}

std::array<float, 3> plainAngles(const std::array<float, 9> &r)
{
    constexpr double degrees = 57.29577951308232;
    const auto scaled = [](float radians) { return static_cast<float>(static_cast<double>(radians) * degrees); };
    const float ry = scaled(std::asin(r[6]));
    if ((r[7] == 0.0F && r[8] == 0.0F) || (r[3] == 0.0F && r[0] == 0.0F))
        return {scaled(std::atan2(r[5], r[4])), ry, 0.0F};
    return {scaled(-std::atan2(r[7], r[8])), ry, scaled(-std::atan2(r[3], r[0]))};
}

void setBrushes(QTableWidgetItem *item, Qt::GlobalColor text, Qt::GlobalColor background)
{
    item->setForeground(QBrush(text));
    item->setBackground(QBrush(background));
}

QString brushText(const QBrush &brush)
{
    return QStringLiteral("%1/%2").arg(int(brush.style())).arg(brush.color().name(QColor::HexArgb));
}

} // namespace

PlainBodies::PlainBodies(const QTableWidget &panelTable)
    : table(panelTable.rowCount(), panelTable.columnCount())
{
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            const QTableWidgetItem *const original = panelTable.item(row, column);
            if (!original)
                continue;
            auto *item = new QTableWidgetItem(original->text());
            item->setTextAlignment(original->textAlignment());
            item->setFlags(original->flags());
            item->setForeground(original->foreground());
            item->setBackground(original->background());
            table.setItem(row, column, item);
        }
    }
}

void PlainBodies::redraw(const std::vector<BodyRecord> &records)
{
    for (int row = 0; row < table.rowCount(); ++row) {
        if (hasHeadRow && row == 0 && !calibratedHead)
            continue;
        if (shownRows.at(row))
            showBody(row, records);
        else
            table.item(row, BodyIdColumn)->setBackground(QBrush(Qt::transparent));
    }
}

void PlainBodies::showBody(int row, const std::vector<BodyRecord> &records)
{
    const auto record =
        std::find_if(records.begin(), records.end(), [row](const BodyRecord &body) { return body.id == row; });
    QTableWidgetItem *const idItem = table.item(row, BodyIdColumn);
    if (record == records.end() || record->quality < 0.0F) {
        setBrushes(idItem, Qt::black, Qt::red);
    } else {
        if (record->state >= 0)
            setBrushes(idItem, Qt::black, record->state >= 2 ? Qt::green : record->state == 1 ? Qt::yellow : Qt::red);
        const std::array<float, 3> angles = plainAngles(record->rotation);
        for (int i = 0; i < 3; ++i) {
            const auto axis = static_cast<std::size_t>(i);
            table.item(row, XColumn + i)->setText(coordinateText(record->position[axis]));
            table.item(row, RxColumn + i)->setText(coordinateText(angles[axis]));
        }
    }
    QTableWidgetItem *const nameItem = table.item(row, NameColumn);
    if (row == referenceRow) {
        setBrushes(nameItem, Qt::white, Qt::blue);
        nameItem->setText(referenceName);
    } else {
        nameItem->setBackground(QBrush(Qt::transparent));
    }
}

void redrawPlainMarkers(QTableWidget &table, const std::vector<MarkerRecord> &records)
{
    table.setRowCount(static_cast<int>(records.size()));
    table.clearContents();
    int row = 0;
    for (const MarkerRecord &record : records) {
        auto *idItem = new QTableWidgetItem(QString::number(record.id));
        idItem->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
        table.setItem(row, MarkerIdColumn, idItem);
        for (int i = 0; i < 3; ++i) {
            auto *item = new QTableWidgetItem(coordinateText(record.position[static_cast<std::size_t>(i)]));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table.setItem(row, MarkerXColumn + i, item);
        }
        ++row;
    }
}

QStringList cellsOf(const QTableWidget &table)
{
    QStringList cells;
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            const QTableWidgetItem *const item = table.item(row, column);
            cells << (item ? QStringLiteral("%1,%2: %3 %4 on %5 aligned %6 flags %7")
                                 .arg(row)
                                 .arg(column)
                                 .arg(item->text(), brushText(item->foreground()), brushText(item->background()))
                                 .arg(item->textAlignment())
                                 .arg(int(item->flags()))
                           : QStringLiteral("%1,%2: no item").arg(row).arg(column));
        }
    }
    return cells;
}
