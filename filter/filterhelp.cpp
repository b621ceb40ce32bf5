// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "filter/filterhelp.h"

#include "ui_filterhelp.h"

#include <QLayout>

FilterHelp::FilterHelp(QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , ui(std::make_unique<Ui::FilterHelpClass>())
{
    ui->setupUi(this);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

FilterHelp::~FilterHelp() = default;

void FilterHelp::on_pushButton_exit_clicked()
{
    accept();
}
