// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

class QAbstractItemModel;

/// The smallest rectangle of cells around those that a redraw has changed.
class CellRange {
public:
    bool isEmpty() const { return bottom < top; }
    void add(int row, int column) noexcept;
    /// Adds the first \a columns cells of \a row.
    void addRow(int row, int columns) noexcept;
    /// Lets \a model emit one dataChanged() for the cells of the range, which is not empty.
    void emitDataChanged(QAbstractItemModel &model) const;

private:
    int top = 0;
    int bottom = -1;
    int left = 0;
    int right = -1;
};
