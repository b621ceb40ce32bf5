// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"

#include <condition_variable>
#include <mutex>
#include <utility>

/// A stream of the lines and states that a test puts in, from any thread.
class FakeStream : public backend::LineStream {
public:
    void put(const backend::ReceivedLine &line)
    {
        const std::lock_guard lock(mutex);
        waiting.append(line);
        changed.notify_all();
    }
    void put(const QByteArray &tag, const QByteArray &text, quint64 sequence = 0)
    {
        put(backend::ReceivedLine{{tag, text}, {}, sequence});
    }
    void setState(const backend::StreamState &newState)
    {
        const std::lock_guard lock(mutex);
        current = newState;
    }
    void setLosses(const backend::StreamLosses &newLosses)
    {
        const std::lock_guard lock(mutex);
        lost = newLosses;
    }
    void warn(const QString &warning)
    {
        const std::lock_guard lock(mutex);
        warnings.append(warning);
    }
    void changeConfiguration()
    {
        const std::lock_guard lock(mutex);
        ++changes;
    }

    QVector<backend::ReceivedLine> take(Clock::time_point deadline) override
    {
        std::unique_lock lock(mutex);
        changed.wait_until(lock, deadline, [this] { return woken || !waiting.isEmpty(); });
        woken = false;
        QVector<backend::ReceivedLine> taken;
        taken.swap(waiting);
        return taken;
    }
    void wake() noexcept override
    {
        const std::lock_guard lock(mutex);
        woken = true;
        changed.notify_all();
    }
    backend::StreamState state() const override
    {
        const std::lock_guard lock(mutex);
        return current;
    }
    backend::StreamLosses losses() const override
    {
        const std::lock_guard lock(mutex);
        return lost;
    }
    quint64 configurationChanges() const override
    {
        const std::lock_guard lock(mutex);
        return changes;
    }
    QStringList takeWarnings() override
    {
        const std::lock_guard lock(mutex);
        return std::exchange(warnings, {});
    }

private:
    mutable std::mutex mutex; // guards all that follows
    std::condition_variable changed;
    QVector<backend::ReceivedLine> waiting;
    bool woken = false;
    backend::StreamState current{backend::StreamState::Phase::Live, {}};
    backend::StreamLosses lost;
    quint64 changes = 0;
    QStringList warnings;
};
