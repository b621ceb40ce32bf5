// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/framestream.h"
#include "backend/trackingbackend.h"

#include <QByteArrayList>
#include <QHash>

#include <cmath>
#include <functional>
#include <memory>
#include <mutex>

/// A backend with answers from a table, which notes what it was asked and told.
class FakeBackend : public backend::TrackingBackend {
public:
    QString name() const override { return backendName; }
    backend::ProtocolVersion version() const override { return backendVersion; }

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

    std::unique_ptr<backend::LineStream> open(backend::LineStream::Clock::time_point epoch) override
    {
        if (opened)
            return opened();
        return std::make_unique<backend::FrameStream>(
            rate, [this](std::chrono::nanoseconds time) { return linesAt(time); }, epoch);
    }

    /// One line of each tag that says which frame it belongs to.
    QVector<backend::OutputLine> linesAt(std::chrono::nanoseconds time) const
    {
        const auto frame = static_cast<qint64>(std::floor(static_cast<double>(time.count()) * 1e-9 * rate));
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
    std::function<std::unique_ptr<backend::LineStream>()> opened; // in place of a stream of frames

private:
    mutable std::mutex mutex; // guards the next
    QByteArrayList texts;
};
