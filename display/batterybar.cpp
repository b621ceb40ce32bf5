// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/batterybar.h"

#include "display/barlevel.h"
#include "numbers/saturatedint.h"

#include <algorithm>

BatteryBar::BatteryBar(QWidget *parent)
    : QProgressBar(parent)
{
    setRange(0, 100);
}

void BatteryBar::setValue(int _value)
{
    setLevel(*this, barLevel(_value, QStringLiteral("BatteryBar"), 20));
}

void BatteryBar::setValue(double _value)
{
    setValue(std::min(saturatedInt(_value * 100.0), 100));
}
