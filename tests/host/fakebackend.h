// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/trackingbackend.h"

#include <QByteArrayList>
#include <QHash>

#include <atomic>
#include <mutex>

/// A backend with answers from a table, which notes what it was asked and told.
class FakeBackend : public backend::TrackingBackend {
public:
    QString name() const override { return backendName; }
    backend::ProtocolVersion version() const override { return backendVersion; }
    double frameRate() const override { return rate; }

    std::optional<QByteArray> request(const QByteArray &query) override
    {
        const std::lock_guard lock(mutex);
        texts.append(query);
        const auto found = answers.constFind(query);
        return found == answers.constEnd() ? std::nullopt : std::optional<QByteArray>(*found);
    }

    bool command(const QByteArray &command) override
    {
        const std::lock_guard lock(mutex);
        texts.append(command);
        return !command.startsWith("refused");
    }

    /// One line of each tag that says which frame it belongs to.
    QVector<backend::OutputLine> linesAt(std::chrono::nanoseconds time) const override
    {
        const auto frame = static_cast<qint64>(static_cast<double>(time.count()) * 1e-9 * rate);
        QVector<backend::OutputLine> lines;
        for (const QByteArray &tag : tags)
            lines.append({tag, tag + ' ' + QByteArray::number(frame)});
        return lines;
    }

    QByteArrayList asked() const
    {
        const std::lock_guard lock(mutex);
        return texts;
    }

    // Set before the backend is used.
    QString backendName = QStringLiteral("fake");
    backend::ProtocolVersion backendVersion{1, 21, 3};
    double rate = 1000.0;
    QByteArrayList tags{"6d", "3d"};
    QHash<QByteArray, QByteArray> answers;

private:
    mutable std::mutex mutex; // guards the next
    QByteArrayList texts;
};
