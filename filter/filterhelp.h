// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class FilterHelpClass;
}

/// Explains the parameters and modes of the 6DOF filter. As large as its texts, and not resizable.
class FilterHelp : public QDialog {
    Q_OBJECT

public:
    explicit FilterHelp(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~FilterHelp() override;

private slots:
    void on_pushButton_exit_clicked();

private:
    std::unique_ptr<Ui::FilterHelpClass> ui;
};
