// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

class QTableView;

/// Lets \a table, which has a style sheet of its own, follow changes of the application's font in whatever its own font
/// leaves open. Qt hands a font down to such a widget only before its style sheet is set.
void followApplicationFont(QTableView &table);
