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
    quint64 taken = 0; ///< lines handed to the panels' modules, and not refused, as the host counts them
};

PanelLineCounts operator+(const PanelLineCounts &a, const PanelLineCounts &b);

/// Adds up the properties "storedLines", "droppedLines" and "ignoredLines" of every widget in the entries' docks that
/// has the second of them. A result code can't tell a dropped line from a stored one, so a panel that counts says it
/// this way. What they were handed is not filled in. Nothing when no widget counts. GUI thread.
std::optional<PanelLineCounts> panelLineCounts(const QList<ModuleEntry *> &entries);
/// The same of the widgets in \a docks.
std::optional<PanelLineCounts> lineCountsInDocks(const QList<QWidget *> &docks);

/// Lines that were handed to modules without a panel that counts, and not refused.
quint64 uncountedLines(const LineTotals &counts, const std::optional<PanelLineCounts> &panels);

/// The account of all lines, for the end of a run.
struct LineAccount {
    Q_DECLARE_TR_FUNCTIONS(LineAccount)

public:
    /// One line, which says so when the numbers do not add up. \a uncounted lines were handed to modules that do not
    /// count.
    static QString text(const LineTotals &counts, const std::optional<PanelLineCounts> &panels, quint64 uncounted = 0);
};

} // namespace host
