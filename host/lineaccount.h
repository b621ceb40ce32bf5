// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/linetotals.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <optional>

struct ModuleEntry;
class QWidget;

namespace host {

/// What panels report about the lines they were given.
struct PanelLineCounts {
    quint64 stored = 0;
    quint64 dropped = 0; ///< lost because the panel was drawing
    quint64 ignored = 0;
};

/// Adds up the properties "storedLines", "droppedLines" and "ignoredLines" of every widget in the entries' docks that
/// has the second of them. A result code can't tell a dropped line from a stored one, so a panel that counts says it
/// this way. Nothing when no widget does. GUI thread.
std::optional<PanelLineCounts> panelLineCounts(const QList<ModuleEntry *> &entries);
/// The same of the widgets in \a docks.
std::optional<PanelLineCounts> lineCountsInDocks(const QList<QWidget *> &docks);

/// The account of all lines, for the end of a run.
struct LineAccount {
    Q_DECLARE_TR_FUNCTIONS(LineAccount)

public:
    /// One line, which says so when the numbers do not add up.
    static QString text(const LineTotals &counts, const std::optional<PanelLineCounts> &panels);
};

} // namespace host
