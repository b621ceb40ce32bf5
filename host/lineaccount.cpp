// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/lineaccount.h"

#include "interface/moduleinterface.h"

#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <algorithm>

namespace host {

std::optional<PanelLineCounts> panelLineCounts(const QList<ModuleEntry *> &entries)
{
    QList<QWidget *> docks;
    for (const ModuleEntry *entry : entries) {
        if (entry->widget)
            docks.append(entry->widget);
    }
    return lineCountsInDocks(docks);
}

std::optional<PanelLineCounts> lineCountsInDocks(const QList<QWidget *> &docks)
{
    std::optional<PanelLineCounts> total;
    for (const QWidget *dock : docks) {
        const QList<QWidget *> widgets = dock->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            const QVariant dropped = widget->property("droppedLines");
            if (!dropped.isValid())
                continue;
            if (!total)
                total.emplace();
            total->stored += widget->property("storedLines").toULongLong();
            total->dropped += dropped.toULongLong();
            total->ignored += widget->property("ignoredLines").toULongLong();
        }
    }
    return total;
}

PanelLineCounts operator+(const PanelLineCounts &a, const PanelLineCounts &b)
{
    return {a.stored + b.stored, a.dropped + b.dropped, a.ignored + b.ignored, a.taken + b.taken};
}

quint64 uncountedLines(const LineTotals &counts, const std::optional<PanelLineCounts> &panels)
{
    const quint64 known = counts.refused + counts.ignored + (panels ? panels->taken : 0);
    return counts.sent - std::min(counts.sent, known);
}

QString LineAccount::text(const LineTotals &counts, const std::optional<PanelLineCounts> &panels, quint64 uncounted)
{
    const PanelLineCounts counted = panels.value_or(PanelLineCounts());
    const quint64 ignored = counted.ignored + counts.ignored;
    QStringList parts{tr("%1 sent").arg(counts.sent)};
    if (panels) {
        parts << tr("%1 stored").arg(counted.stored)
              << tr("%1 dropped while the display was drawing").arg(counted.dropped);
    }
    parts << tr("%1 refused").arg(counts.refused);
    if (panels || ignored > 0)
        parts << tr("%1 ignored").arg(ignored);
    const quint64 accounted = counted.stored + counted.dropped + counts.refused + ignored + uncounted;
    if (panels && accounted < counts.sent)
        parts << tr("%1 unaccounted for").arg(counts.sent - accounted);
    else if (panels && accounted > counts.sent)
        parts << tr("%1 more accounted for than sent").arg(accounted - counts.sent);
    if (counts.skippedFrames > 0)
        parts << tr("%1 frames left out because the host was late").arg(counts.skippedFrames);
    if (counts.late > 0)
        parts << tr("%1 late").arg(counts.late);
    if (counts.unknown)
        parts << tr("%1 unknown").arg(*counts.unknown);
    if (uncounted > 0)
        parts << tr("%1 to modules that do not count").arg(uncounted);
    return tr("lines: %1").arg(parts.join(QStringLiteral(", ")));
}

} // namespace host
