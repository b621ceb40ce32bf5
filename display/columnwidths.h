// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

class IOManager;
class QTableWidget;
class QXmlStreamReader;

/// The widths of the columns of both tables, kept in a file from one run of the host to the next. What goes wrong is
/// logged, and the tables keep the widths they have. GUI thread.
class ColumnWidths {
public:
    /// The file is in \a directory. Messages go to \a io, which outlives this object, as do the tables.
    ColumnWidths(IOManager &io, QTableWidget &bodies, QTableWidget &markers, QString directory);

    /// Sets the widths that the file has, all of them or, where it can't be read, none.
    void loadPreferences() const;
    /// Writes the file, and its folder where that is missing.
    void savePreferences() const;

private:
    struct Column {
        QTableWidget *table;
        int index;
        QString elementName;
        int widthOfNone; ///< what is saved for a column without a width [px]
    };
    struct Width {
        const Column *column;
        int width; ///< [px]
    };

    QString fileName() const;
    QVector<Width> readWidths(QXmlStreamReader &xml, QString &rootName) const;
    void appendWidths(const QXmlStreamReader &element, QVector<Width> &widths) const;
    void log(const QString &text) const;

    IOManager &ioManager;
    QString preferencesDir;
    QVector<Column> columns;
};
