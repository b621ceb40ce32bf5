// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/zeltablewidget.h"

ZelTableWidget::ZelTableWidget(QWidget *parent)
    : QTableWidget(parent)
{
    connect(this, &QTableWidget::cellPressed, this, &ZelTableWidget::onCellPressed);
}

void ZelTableWidget::onCellPressed(int row, int column)
{
    pressedRow = row;
    pressedColumn = column;
}
