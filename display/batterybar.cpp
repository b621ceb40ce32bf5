// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/batterybar.h"

#include "numbers/saturatedint.h"

#include <algorithm>

BatteryBar::BatteryBar(QWidget *parent)
    : LevelBar(parent, "BatteryBar", 20)
{
}

void BatteryBar::setValue(int _value)
{
    setLevel(_value);
}

void BatteryBar::setValue(double _value)
{
    setLevel(std::min(saturatedInt(_value * 100.0), 100));
}
