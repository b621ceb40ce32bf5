// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/applicationfont.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableView>

void followApplicationFont(QTableView &table)
{
    QObject::connect(qApp, &QGuiApplication::fontChanged, &table, [&table] {
        // Of a font that is set only what it says by itself counts, and the rest is looked up anew.
        table.setFont(table.font());
        table.horizontalHeader()->setFont(table.horizontalHeader()->font());
    });
}
