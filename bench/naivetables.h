// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/trackingdata.h"
#include "ui_datadisplay.h"

#include <QStandardItemModel>
#include <QTableView>
#include <QTimer>
#include <QWidget>

/// The panel's two tables as one would write them first, to compare with: on every redraw it searches the record of
/// each row, sets the text of every coordinate, both brushes of the ID and the background of the name, and makes the
/// items of the markers anew. The stock delegate, the same look and the same lock.
class NaiveTables : public QWidget, private Ui::DataDisplayWidget {
    Q_OBJECT

public:
    /// Looks like the tables of a panel, rows included.
    NaiveTables(const QTableWidget &panelBodies, const QTableWidget &panelMarkers);

    void updateView6d();
    void updateView3d();
    void startTicks(); ///< redraws both every 200 ms
    QTableWidget &table6d() { return *tableWidget6d; }
    QTableWidget &table3d() { return *tableWidget3d; }

    TrackingData data;

private:
    QTimer viewTimer;
};

/// The same on standard models with plain table views.
class ModelTables : public QWidget {
    Q_OBJECT

public:
    ModelTables(const QTableWidget &panelBodies, const QTableWidget &panelMarkers);

    void updateView6d();
    void updateView3d();

    TrackingData data;

private:
    QTableView *addView(QStandardItemModel &model, const QTableWidget &pattern);

    QStandardItemModel bodies;
    QStandardItemModel markers;
};
