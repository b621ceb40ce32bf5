// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "display/bodyconfiguration.h"
#include "display/cellrange.h"
#include "display/foreignchanges.h"
#include "display/shownrow.h"

#include <QCoreApplication>

#include <vector>

class QTableWidgetItem;
class TrackingData;
class ZelTableWidget;
struct SensorReading;

/// The rows and cells of the 6DOF table. A configuration makes the rows; a redraw changes only what is in them.
/// GUI thread.
class BodyTable {
    Q_DECLARE_TR_FUNCTIONS(DataDisplay)

public:
    /// Sets up the columns of \a tableWidget, which outlives this object. The filter's column is hidden where the
    /// backend has no filter.
    BodyTable(ZelTableWidget &tableWidget, bool hasFilter);

    /// Replaces all rows by those of \a next.
    void build(BodyConfiguration next);
    /// Removes all rows.
    void clear();
    /// What the rows show.
    const BodyConfiguration &configuration() const { return bodies; }
    /// How many rows have their cells; 0 while they are made.
    int builtRowCount() const { return static_cast<int>(shownRows.size()); }

    /// Shows the bodies of \a data, all of one frame, and signals what changed when the lock is free again. Where
    /// memory runs out, the cells not yet reached stay as they are, and the next redraw shows them.
    void redraw(TrackingData &data) noexcept;

    /// Sets the text of the filter cell of \a row, where it exists.
    void showFilterState(int row, const QString &text);
    /// The sensor to be polled for \a row, in the backend's bytes; "none" for none.
    QByteArray sensorOfRow(int row) const;
    void showSensor(int row, const SensorReading &reading);
    void setSensorColumnsHidden(bool hidden);

private:
    /// What a screen reader says of a row's state.
    struct StateWords {
        QString notCalibrated;
        QString notActive;
        QString lost;
        QString byCameras;
        QString bySensor;
    };

    void fillRow(int row);
    void fillSensorCells(int row);
    void showBattery(int row, double charge);
    void showTemperature(int row, double temperature, double warmth);

    void drawRows(TrackingData &data);
    void showBody(int row, BodyRecord *record);
    void showInactive(int row);
    void showLost(int row);
    void showPose(int row, const BodyRecord &record);
    void showState(int row, qint32 state);
    void showReference(int row);
    void setState(int row, Qt::GlobalColor background, const QString &state);
    QString accessibleText(int row, const QString &state) const;
    void forgetShownRows() noexcept;

    ZelTableWidget &table;
    BodyConfiguration bodies;
    std::vector<ShownRow> shownRows; ///< one per row that has its cells
    CellRange pendingCells; ///< changed, and not yet signalled
    ForeignChanges foreignChanges;
    StateWords words; ///< translated anew for each redraw
};
