// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/cellrange.h"

#include <QAbstractItemModel>

#include <algorithm>

void CellRange::add(int row, int column) noexcept
{
    if (isEmpty()) {
        top = bottom = row;
        left = right = column;
        return;
    }
    top = std::min(top, row);
    bottom = std::max(bottom, row);
    left = std::min(left, column);
    right = std::max(right, column);
}

void CellRange::addRow(int row, int columns) noexcept
{
    add(row, 0);
    add(row, columns - 1);
}

void CellRange::emitDataChanged(QAbstractItemModel &model) const
{
    emit model.dataChanged(model.index(top, left), model.index(bottom, right));
}
