// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/temperaturebar.h"

#include "numbers/saturatedint.h"

TemperatureBar::TemperatureBar(QWidget *parent)
    : LevelBar(parent, "TemperatureBar", 95)
{
}

void TemperatureBar::setValue(int _value)
{
    setLevel(_value);
}

void TemperatureBar::setValue(double _value)
{
    setLevel(saturatedInt(_value));
}

void TemperatureBar::setTemperature(double _temp)
{
    setFormat(QString::number(_temp, 'f', 1) + QStringLiteral(u"\u00B0C"));
}
