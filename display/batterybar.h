// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProgressBar>

/// The battery charge of an inertial sensor [%]. Setting a value never shows a hidden bar.
class BatteryBar : public QProgressBar {
    Q_OBJECT

public:
    explicit BatteryBar(QWidget *parent = nullptr);

public slots:
    /// Shows \a _value percent; below 0 hides the bar.
    void setValue(int _value);
    /// Shows a charge from 0 to 1, more than 1 being full; below 0 hides the bar.
    void setValue(double _value);
};
