// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QProgressBar;

/// How a small progress bar in a table cell looks: green, or red below a limit, or not seen at all.
struct BarLevel {
    bool hidden = false;
    int value = 0; ///< [%]
    QString styleSheet; ///< empty for a hidden bar, which keeps the one it has
};

/// The level for \a value [%]; below 0 it is hidden. \a styleClass: the class name that the style sheet names.
/// \a lowBelow: values below it are shown in red.
BarLevel barLevel(int value, const QString &styleClass, int lowBelow);

/// Gives \a bar the style and the value of \a level, or hides it. Never shows it: that is the caller's.
void setLevel(QProgressBar &bar, const BarLevel &level);
