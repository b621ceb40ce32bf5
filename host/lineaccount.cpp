// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/lineaccount.h"

#include "interface/moduleinterface.h"

#include <QStringList>
#include <QVariant>
#include <QWidget>

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

QString LineAccount::text(const LineTotals &counts, const std::optional<PanelLineCounts> &panels)
{
    QStringList parts{tr("%1 sent").arg(counts.sent)};
    if (panels) {
        parts << tr("%1 stored").arg(panels->stored)
              << tr("%1 dropped while the display was drawing").arg(panels->dropped);
    }
    parts << tr("%1 refused").arg(counts.refused);
    if (panels) {
        const quint64 ignored = panels->ignored + counts.ignored;
        parts << tr("%1 ignored").arg(ignored);
        const quint64 accounted = panels->stored + panels->dropped + counts.refused + ignored;
        if (accounted < counts.sent)
            parts << tr("%1 unaccounted for").arg(counts.sent - accounted);
        else if (accounted > counts.sent)
            parts << tr("%1 more accounted for than sent").arg(accounted - counts.sent);
    }
    if (counts.skippedFrames > 0)
        parts << tr("%1 frames left out because the host was late").arg(counts.skippedFrames);
    return tr("lines: %1").arg(parts.join(QStringLiteral(", ")));
}

} // namespace host
