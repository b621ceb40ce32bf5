// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/commandjournal.h"

#include <utility>

namespace host {

namespace {

QString oldValueOf(const JournalEntry &entry)
{
    switch (entry.oldValueState) {
    case JournalEntry::OldValue::Known:
        return shownValue(entry.oldValue);
    case JournalEntry::OldValue::NotAsked:
        return CommandJournal::tr("not asked");
    case JournalEntry::OldValue::NotAnswered:
        return CommandJournal::tr("not answered");
    }
    return {};
}

QString textOf(const JournalEntry &entry, int column)
{
    switch (column) {
    case CommandJournal::TimeColumn:
        return entry.time.toString(QStringLiteral("hh:mm:ss.zzz"));
    case CommandJournal::BodyColumn:
        return entry.setting.body();
    case CommandJournal::SettingColumn:
        return entry.setting.name();
    case CommandJournal::ChangeColumn:
        return CommandJournal::tr("%1 \342\206\222 %2").arg(oldValueOf(entry), shownValue(entry.setting.value));
    case CommandJournal::OutcomeColumn:
        return entry.accepted ? CommandJournal::tr("accepted") : CommandJournal::tr("refused");
    case CommandJournal::SenderColumn:
        return entry.sender == JournalEntry::Sender::Module ? CommandJournal::tr("module")
                                                            : CommandJournal::tr("journal");
    default:
        return {};
    }
}

} // namespace

CommandJournal::CommandJournal(QObject *parent)
    : QAbstractTableModel(parent)
{
    connect(this, &CommandJournal::entriesWaiting, this, &CommandJournal::flush, Qt::QueuedConnection);
}

void CommandJournal::add(const JournalEntry &entry)
{
    {
        const std::lock_guard lock(mutex);
        if (waiting.size() == maximumEntries)
            waiting.pop_front(); // the GUI thread is busy, and would show no more of them
        waiting.push_back(entry);
        if (flushIsDue)
            return;
        flushIsDue = true;
    }
    emit entriesWaiting();
}

int CommandJournal::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries.size());
}

int CommandJournal::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CommandJournal::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return textOf(entry(index.row()), index.column());
}

QVariant CommandJournal::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QStringList titles{tr("Time"),    tr("Body"), tr("Setting"), tr("Old \342\206\222 New"),
                             tr("Outcome"), tr("Who")};
    return titles.value(section);
}

void CommandJournal::flush()
{
    std::deque<JournalEntry> added;
    {
        const std::lock_guard lock(mutex);
        added.swap(waiting);
        flushIsDue = false;
    }
    if (added.empty())
        return;
    const int kept = static_cast<int>(maximumEntries - added.size());
    if (const int excess = rowCount() - kept; excess > 0) {
        beginRemoveRows({}, 0, excess - 1);
        entries.erase(entries.begin(), entries.begin() + excess);
        endRemoveRows();
    }
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
    entries.insert(entries.end(), added.begin(), added.end());
    endInsertRows();
}

} // namespace host
