// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/barlevel.h"

#include <QProgressBar>

BarLevel barLevel(int value, const QString &styleClass, int lowBelow)
{
    if (value < 0)
        return {true, 0, QString()};
    const QString sheet =
        QStringLiteral("%1 {color:black;background-color:#c0c0c0;text-align: center; border-radius: 4px; "
                       "border-left: 0.5px solid white;border-right: 0.5px solid white;border-top: 1px solid white;"
                       "border-bottom: 1px solid white;margin: 2px; margin-left: 5px; margin-right: 5px;\t}"
                       "%1::chunk { background-color: %2;border-top-left-radius: 4px;border-bottom-left-radius: 4px;"
                       "border-top-right-radius: %3;border-bottom-right-radius: %3; }");
    const QString colour = value < lowBelow ? QStringLiteral("#ff0000") : QStringLiteral("#4cff00");
    const QString rightRadius = value >= 100 ? QStringLiteral("4px") : QStringLiteral("0px");
    return {false, value, sheet.arg(styleClass, colour, rightRadius)};
}

void setLevel(QProgressBar &bar, const BarLevel &level)
{
    if (!level.hidden && bar.styleSheet() != level.styleSheet)
        bar.setStyleSheet(level.styleSheet);
    bar.setValue(level.value);
    if (level.hidden)
        bar.hide();
}
