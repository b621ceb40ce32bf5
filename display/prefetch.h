// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableWidget>

/// Fetches the cells of \a row from memory, from \a first to \a last: most of what a redraw does under the lock would
/// otherwise be waiting for them, since other work has been through the processor's caches meanwhile.
inline void prefetchCells(const QTableWidget &table, int row, int first, int last)
{
    for (int column = first; column <= last; ++column)
        __builtin_prefetch(table.item(row, column), 1);
}
