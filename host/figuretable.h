// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QVariant>

#include <vector>

namespace host {

/// A text to show and the value to sort it by.
struct Figure {
    QString text;
    QVariant value; ///< under Qt::UserRole; texts that stand for no number have none, and come first
};

/// A table of figures that are renewed together. Rows keep their places, so that a selection does.
class FigureTable : public QAbstractTableModel {
    Q_OBJECT

public:
    using Row = std::vector<Figure>;

    explicit FigureTable(QStringList titles, QObject *parent = nullptr);

    /// Each of \a newRows has a figure for each title.
    void setRows(std::vector<Row> newRows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QStringList titles;
    std::vector<Row> rows;
};

/// The titles and texts of \a model in its order, as RFC 4180 has it: commas, CR LF, quotes where they are needed.
QByteArray csvOf(const QAbstractItemModel &model);

} // namespace host
