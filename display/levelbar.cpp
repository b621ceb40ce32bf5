// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "display/levelbar.h"

namespace {

constexpr int full = 100;

} // namespace

LevelBar::LevelBar(QWidget *parent, const char *styleClassName, int lowBelowValue)
    : QProgressBar(parent)
    , styleClass(styleClassName)
    , lowBelow(lowBelowValue)
{
    setRange(0, full);
}

void LevelBar::setShown(bool wanted)
{
    shown = wanted;
    setVisible(wanted);
}

void LevelBar::setVisible(bool visible)
{
    QProgressBar::setVisible(visible && shown);
}

void LevelBar::setLevel(int value)
{
    if (value < 0) {
        QProgressBar::setValue(0);
        setShown(false);
        return;
    }
    const QString sheet = styleSheetFor(value);
    if (styleSheet() != sheet)
        setStyleSheet(sheet);
    QProgressBar::setValue(value);
}

QString LevelBar::styleSheetFor(int value) const
{
    const QString sheet =
        QStringLiteral("%1 {color:black;background-color:#c0c0c0;text-align: center; border-radius: 4px; "
                       "border-left: 0.5px solid white;border-right: 0.5px solid white;border-top: 1px solid white;"
                       "border-bottom: 1px solid white;margin: 2px; margin-left: 5px; margin-right: 5px;\t}"
                       "%1::chunk { background-color: %2;border-top-left-radius: 4px;border-bottom-left-radius: 4px;"
                       "border-top-right-radius: %3;border-bottom-right-radius: %3; }");
    const QString colour = value < lowBelow ? QStringLiteral("#ff0000") : QStringLiteral("#4cff00");
    const QString rightRadius = value >= full ? QStringLiteral("4px") : QStringLiteral("0px");
    return sheet.arg(QLatin1String(styleClass), colour, rightRadius);
}
