// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace host {

/// \a text as one line of a log or a terminal: line feeds as \n, other control characters as \xNN, so that a text from
/// outside neither makes a line of its own nor speaks to the terminal.
QString onOneLine(const QString &text);

/// Prints "trackhost: TEXT" on standard error, as one line. Any thread.
///
/// Never waits: while nobody reads the other end, lines are given up, and their number is printed when it goes on.
/// Lines beyond 4 KiB are cut.
void printError(const QString &text);
/// The same with "trackhost: warning: TEXT".
void printWarning(const QString &text);

} // namespace host
