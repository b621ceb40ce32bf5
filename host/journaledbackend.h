// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"
#include "host/commandjournal.h"

#include <functional>
#include <memory>

namespace host {

/// Passes everything on to another backend and notes each command that changes a setting in the journal. In front of
/// such a command it asks for the value that will be changed, unless the backend is slow: the sender would wait twice.
/// What the backend answers and accepts stays the same. All operations may be called from any thread.
class JournaledBackend : public backend::TrackingBackend {
public:
    using Condition = std::function<bool()>;

    /// \a journal outlives this object. \a connection is noted with each entry.
    JournaledBackend(std::shared_ptr<TrackingBackend> inner, CommandJournal &journal, int connection, Condition isSlow);

    QString name() const override;
    backend::ProtocolVersion version() const override;
    std::optional<QByteArray> request(const QByteArray &query) override;
    bool command(const QByteArray &command) override;
    std::unique_ptr<backend::LineStream> open(backend::LineStream::Clock::time_point epoch) override;

    /// Sends \a value for the setting that \a question asks for, on behalf of the journal. \a present is what the
    /// backend has just answered. Returns whether it was accepted.
    bool putBack(const QByteArray &question, const QByteArray &value, const std::optional<QByteArray> &present);

private:
    std::optional<JournalEntry> entryBefore(const QByteArray &command) noexcept;
    void note(JournalEntry &entry, bool accepted) noexcept;

    const std::shared_ptr<TrackingBackend> inner;
    CommandJournal &journal;
    const int connection;
    const Condition isSlow;
};

} // namespace host
