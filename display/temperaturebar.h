// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProgressBar>

/// How far an inertial sensor has warmed up [%], with its temperature as text. Setting a value never shows a hidden
/// bar.
class TemperatureBar : public QProgressBar {
    Q_OBJECT

public:
    explicit TemperatureBar(QWidget *parent = nullptr);

public slots:
    /// Shows \a _value percent; below 0 hides the bar.
    void setValue(int _value);
    /// Shows \a _value percent without its fraction; below 0 hides the bar.
    void setValue(double _value);
    /// Sets the bar's text to \a _temp [°C], whatever the bar's value is.
    void setTemperature(double _temp);
};
