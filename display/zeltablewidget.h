// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableWidget>
#include <QVector>

#include <utility>

class IOManager;
class QAction;
class QMenu;
struct BackendVersions;

/// The table of bodies. A right click in its filter column offers the settings of that body's 6DOF filter, and so do
/// the menu keys for the current cell.
class ZelTableWidget : public QTableWidget {
    Q_OBJECT

public:
    explicit ZelTableWidget(QWidget *parent = nullptr);

    void setVersions(BackendVersions *backendVersions) { versions = backendVersions; } ///< the host's
    void setIOManager(IOManager *io) { ioManager = io; } ///< the host's
    void setTabIndex(int index) { tabIndex = index; } ///< 0: standard bodies, 1: hand-held devices
    /// One flag per row: whether its body is calibrated and so has a menu. Rows beyond them have none.
    void setRowEnabled(QVector<bool> enabled) { rowEnabled = std::move(enabled); }
    /// Row 0 is the head target, so that rows and the backend's body numbers differ by one.
    void setHeadRowPresent(bool present) { headRowPresent = present; }

    /// Shows or hides the widget in a cell, if there is one. A view shows its cell widgets when they are set and
    /// whenever it lays them out; here a widget that was hidden, by this or by its own hide(), stays so in layouts. One
    /// that is to be shown while its column is hidden is seen when the column is.
    void setCellWidgetShown(int row, int column, bool shown);
    /// Takes the widgets out of all cells and deletes them at once: left to the event loop, as the view does it, they
    /// pile up where the host runs none. (They are while a mouse button is down.) Not to be called from an event
    /// filter of such a widget.
    void deleteCellWidgets();

signals:
    /// The filter dialog of this table row was open.
    void updateFilterActiveStatus(int);

public slots:
    void displayFilterDlg();
    void onCellPressed(int row, int column);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void updateEditorGeometries() override;

private:
    bool hasFilterMenu() const;
    void openMenuOfCurrentCell(); ///< which counts as pressed

    BackendVersions *versions = nullptr;
    IOManager *ioManager = nullptr;
    QMenu *contextMenu = nullptr; ///< ours, as a child
    QAction *filterAction = nullptr; ///< ours, as a child
    qint32 pressedRow = 0;
    qint32 pressedColumn = 0;
    qint32 tabIndex = 0;
    QVector<bool> rowEnabled;
    bool headRowPresent = false;
};
