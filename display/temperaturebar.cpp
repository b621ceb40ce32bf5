// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/temperaturebar.h"

#include "display/barlevel.h"
#include "numbers/saturatedint.h"

TemperatureBar::TemperatureBar(QWidget *parent)
    : QProgressBar(parent)
{
    setRange(0, 100);
}

void TemperatureBar::setValue(int _value)
{
    setLevel(*this, barLevel(_value, QStringLiteral("TemperatureBar"), 95));
}

void TemperatureBar::setValue(double _value)
{
    setValue(saturatedInt(_value));
}

void TemperatureBar::setTemperature(double _temp)
{
    setFormat(QString::number(_temp, 'f', 1) + QStringLiteral(u"\u00B0C"));
}
