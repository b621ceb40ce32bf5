// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/filtersetting.h"

#include <QAbstractTableModel>
#include <QDateTime>

#include <deque>
#include <mutex>

namespace host {

/// One command that was sent to change a setting.
struct JournalEntry {
    enum class OldValue { Known, NotAsked, NotAnswered };
    enum class Sender { Module, Journal };

    QDateTime time;
    FilterSetting setting;
    OldValue oldValueState = OldValue::NotAsked;
    QByteArray oldValue; ///< as the backend answered; for Known alone
    bool accepted = false;
    Sender sender = Sender::Module;
    int connection = 0; ///< which of the backends that were connected one after the other; from 1
};

/// The commands that changed settings, one row each, the oldest first. Entries are added from any thread and come into
/// the table on its own. Beyond a limit the oldest go.
class CommandJournal : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { TimeColumn, BodyColumn, SettingColumn, ChangeColumn, OutcomeColumn, SenderColumn, ColumnCount };

    static constexpr std::size_t maximumEntries = 1000;

    explicit CommandJournal(QObject *parent = nullptr);

    void add(const JournalEntry &entry); ///< any thread
    const JournalEntry &entry(int row) const { return entries.at(static_cast<std::size_t>(row)); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void entriesWaiting(); ///< from any thread, for this object alone

private:
    void flush();

    std::deque<JournalEntry> entries;
    std::mutex mutex; // guards the next two, which any thread touches
    std::deque<JournalEntry> waiting;
    bool flushIsDue = false;
};

} // namespace host
