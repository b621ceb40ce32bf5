// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/cellrange.h"

#include <QCoreApplication>

class QTableWidget;
class TrackingData;

/// The rows and cells of the 3DOF table: as many rows as there are markers. GUI thread.
class MarkerTable {
    Q_DECLARE_TR_FUNCTIONS(DataDisplay)

public:
    /// Sets up the columns of \a tableWidget, which outlives this object.
    explicit MarkerTable(QTableWidget &tableWidget);

    /// Shows the markers of \a data, all of one frame, and signals it when the lock is free again. Where memory runs
    /// out, the next redraw makes all cells anew.
    void redraw(TrackingData &data) noexcept;
    /// Removes all rows.
    void clear();

private:
    void makeRows(TrackingData &data);
    CellRange fillRows(TrackingData &data, const QString &idFormat);

    QTableWidget &table;
};
