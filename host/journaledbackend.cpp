// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/journaledbackend.h"

#include <utility>

namespace host {

namespace {

void setOldValue(JournalEntry &entry, const std::optional<QByteArray> &answer)
{
    entry.oldValueState = answer ? JournalEntry::OldValue::Known : JournalEntry::OldValue::NotAnswered;
    entry.oldValue = answer.value_or(QByteArray());
}

} // namespace

JournaledBackend::JournaledBackend(std::shared_ptr<TrackingBackend> inner, CommandJournal &journal, int connection,
                                   Condition isSlow)
    : inner(std::move(inner))
    , journal(journal)
    , connection(connection)
    , isSlow(std::move(isSlow))
{
}

QString JournaledBackend::name() const
{
    return inner->name();
}

backend::ProtocolVersion JournaledBackend::version() const
{
    return inner->version();
}

std::optional<QByteArray> JournaledBackend::request(const QByteArray &query)
{
    return inner->request(query);
}

bool JournaledBackend::command(const QByteArray &command)
{
    std::optional<JournalEntry> entry = entryBefore(command);
    const bool accepted = inner->command(command);
    if (entry)
        note(*entry, accepted);
    return accepted;
}

std::unique_ptr<backend::LineStream> JournaledBackend::open(backend::LineStream::Clock::time_point epoch)
{
    return inner->open(epoch);
}

bool JournaledBackend::putBack(const QByteArray &question, const QByteArray &value,
                               const std::optional<QByteArray> &present)
{
    JournalEntry entry;
    entry.setting = {question, value};
    entry.sender = JournalEntry::Sender::Journal;
    setOldValue(entry, present);
    const bool accepted = inner->command(question + ' ' + value);
    note(entry, accepted);
    return accepted;
}

std::optional<JournalEntry> JournaledBackend::entryBefore(const QByteArray &command) noexcept
try {
    const std::optional<FilterSetting> setting = filterSettingOf(command);
    if (!setting)
        return std::nullopt;
    JournalEntry entry;
    entry.setting = *setting;
    if (!isSlow())
        setOldValue(entry, inner->request(setting->question));
    return entry;
} catch (...) {
    return std::nullopt; // the command matters more than its entry
}

void JournaledBackend::note(JournalEntry &entry, bool accepted) noexcept
try {
    entry.time = QDateTime::currentDateTime();
    entry.accepted = accepted;
    entry.connection = connection;
    journal.add(entry);
} catch (...) {
    return; // as above
}

} // namespace host
