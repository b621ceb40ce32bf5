// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/figuretable.h"

#include <QDockWidget>

class QAbstractItemModel;
class QTableView;

namespace host {

class LivenessMonitor;

/// The figures behind the state of the source: a table of its streams and one of its bodies. Closed at first.
class HealthDock : public QDockWidget {
    Q_OBJECT

public:
    /// \a monitor outlives this object.
    explicit HealthDock(const LivenessMonitor &monitor, QWidget *parent = nullptr);

    /// Renews the figures, once a second however often it is called, and not at all while nobody sees them.
    void refresh();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Table {
        FigureTable *model = nullptr;
        QTableView *view = nullptr;
    };

    /// A view with a button that copies it, in the dock's contents.
    Table addTable(const char *name, const QString &title, const QStringList &columns);
    static void copy(const QAbstractItemModel &model);
    void showFigures();

    const LivenessMonitor &monitor;
    Table streams;
    Table bodies;
    qint64 shownSecond = -1; // of the steady clock
};

} // namespace host
