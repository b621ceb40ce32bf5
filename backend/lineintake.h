// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linesplitter.h"
#include "backend/linestream.h"

#include <QSet>
#include <QStringList>

#include <mutex>

namespace backend {

class ReceiveQueue;
class SeenBodies;

/// Sorts the lines of a source that any program may be: lines of output go into the queue, the others are counted, and
/// told of in words as long as that helps. One thread adds; the rest is for any.
class LineIntake {
public:
    static constexpr int mostWarnings = 20; ///< of a kind

    /// Both outlive this object.
    LineIntake(SeenBodies &bodies, ReceiveQueue &queue);

    /// Takes the \a line that came at \a time, which is not before the ones of earlier lines. Blank lines are skipped.
    void add(const LineSplitter::Line &line, std::chrono::nanoseconds time);

    quint64 refused() const; ///< too long, or with too many bodies
    quint64 unknown() const; ///< neither blank nor of output
    QStringList takeWarnings(); ///< whole sentences since the last call

private:
    void refuse(const QString &reason);
    void countUnknown(const QByteArray &firstWord);

    SeenBodies &bodies;
    ReceiveQueue &queue;
    quint64 nextSequence = 0; // the adding thread
    QSet<QByteArray> unknownWords; // the adding thread
    mutable std::mutex mutex; // guards what follows
    quint64 refusedLines = 0;
    quint64 unknownLines = 0;
    QStringList warnings;
};

} // namespace backend
