// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/figuretable.h"

#include <utility>

namespace host {

namespace {

QString csvField(QString text)
{
    const bool needsQuotes = text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"'))
        || text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
    if (!needsQuotes)
        return text;
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

} // namespace

FigureTable::FigureTable(QStringList titles, QObject *parent)
    : QAbstractTableModel(parent)
    , titles(std::move(titles))
{
}

void FigureTable::setRows(std::vector<Row> newRows)
{
    const auto before = static_cast<int>(rows.size());
    const auto after = static_cast<int>(newRows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        rows = std::move(newRows);
        endRemoveRows();
    } else if (after > before) {
        beginInsertRows({}, before, after - 1);
        rows = std::move(newRows);
        endInsertRows();
    } else {
        rows = std::move(newRows);
    }
    if (qMin(before, after) > 0)
        emit dataChanged(index(0, 0), index(qMin(before, after) - 1, titles.size() - 1));
}

int FigureTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

int FigureTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : titles.size();
}

QVariant FigureTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Figure &figure = rows[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
    if (role == Qt::DisplayRole)
        return figure.text;
    if (role == Qt::UserRole)
        return figure.value;
    if (role == Qt::TextAlignmentRole) {
        const bool isText = figure.value.type() == QVariant::String;
        return static_cast<int>((isText ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    return {};
}

QVariant FigureTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    return orientation == Qt::Horizontal ? QVariant(titles.value(section)) : QVariant(section + 1);
}

QByteArray csvOf(const QAbstractItemModel &model)
{
    QString csv;
    for (int row = -1; row < model.rowCount(); ++row) {
        QStringList fields;
        for (int column = 0; column < model.columnCount(); ++column) {
            const QVariant text = row < 0 ? model.headerData(column, Qt::Horizontal) : model.index(row, column).data();
            fields << csvField(text.toString());
        }
        csv += fields.join(QLatin1Char(',')) + QLatin1String("\r\n");
    }
    return csv.toUtf8();
}

} // namespace host
