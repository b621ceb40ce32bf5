// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QVector>

class QTableView;
class QWidget;
struct ModuleEntry;

namespace host {

/// What \a table shows as CSV, as RFC 4180 has it: its visible columns that have a name, and its visible rows, in the
/// order on the screen, UTF-8, each record ended by CR LF. A cell with a widget has the text of the widget, a bar for
/// example. Numbers that a model gives as such have a decimal point. GUI thread.
///
/// Not supported: cells that span others, and what a delegate of the module's own paints in place of the text.
QByteArray csvOf(const QTableView &table);

/// A table as a file.
struct TableFile {
    QString name;
    QByteArray content;
};

/// Saves what the tables of modules show. GUI thread.
class TableWriter {
    Q_DECLARE_TR_FUNCTIONS(TableWriter)

public:
    /// Takes what every table in the entries' docks shows now, where neither the table nor its dock is closed. The
    /// files are named after the tables' object names; a name that comes twice gets a number.
    explicit TableWriter(const QList<ModuleEntry *> &entries);

    /// Writes the files in \a folder, which is made when it is not there; files of their names are replaced, each as a
    /// whole. Returns what failed; empty: nothing. That there is no table is a failure, too.
    QString write(const QString &folder) const;
    QVector<TableFile> files() const { return tableFiles; }

private:
    QString freeName(const QString &objectName) const;

    QVector<TableFile> tableFiles;
};

} // namespace host
