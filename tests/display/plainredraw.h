// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/records.h"
#include "display/columns.h"

#include <QList>
#include <QStringList>
#include <QTableWidget>

#include <vector>

/// The redraw of the bodies in the plainest way, on a table of plain items: every text and brush anew, every time.
class PlainBodies {
public:
    /// Starts as \a panelTable looks.
    explicit PlainBodies(const QTableWidget &panelTable);

    void redraw(const std::vector<BodyRecord> &records);

    QTableWidget table;
    QList<bool> shownRows; ///< calibrated and active
    bool hasHeadRow = false;
    bool calibratedHead = false;
    int referenceRow = -2;
    QString referenceName;

private:
    void showBody(int row, const std::vector<BodyRecord> &records);
};

/// The redraw of the markers in the plainest way: all items anew, every time.
void redrawPlainMarkers(QTableWidget &table, const std::vector<MarkerRecord> &records);

/// What a reader of the table sees, cell by cell: text, brushes, alignment and flags.
QStringList cellsOf(const QTableWidget &table);
