// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/linestream.h"
#include "host/liveness/healthsnapshot.h"

#include <QCoreApplication>
#include <QStringList>

#include <optional>

namespace host {

/// What is known of a source besides its lines.
struct SourceFacts {
    bool connected = true; ///< false: the operator has disconnected it
    backend::StreamState state;
    quint64 late = 0; ///< lines given up before anybody took them, of this source
    quint64 lostBefore = 0; ///< lines lost on the way or late while other sources were open
    quint64 unreadable = 0; ///< lines that a module could not read
    std::optional<quint64> dropped; ///< lines that panels lost while they were drawing; none where no panel counts
    /// For how long a module has wanted lines; none when none does: a source need not send what nobody wants.
    std::optional<std::chrono::nanoseconds> wantedFor = std::chrono::nanoseconds::max();
};

/// How far the picture can be trusted.
struct Liveness {
    enum class Level {
        Disconnected,
        Waiting, ///< for the first line, or the first since one was wanted again
        Unwanted, ///< no line comes, and none is wanted
        Live,
        Frozen,
        Gone,
        Ended,
    };
    struct Rate {
        QByteArray tag;
        std::optional<double> perSecond;
    };

    Level level = Level::Disconnected;
    bool silent = false; ///< frozen by age, whatever the level says of the reason
    std::optional<std::chrono::nanoseconds> age; ///< of the youngest line; none before the first
    std::chrono::nanoseconds lastSilence{0}; ///< the last silence that is over
    QString reason; ///< why the source is gone, in words; or empty
    QVector<Rate> rates;
    quint64 lost = 0; ///< on the way, late, or dropped by panels
    quint64 unreadable = 0;

    bool isTrustworthy() const { return level == Level::Live; }
};

/// Lines of this source that the sequence numbers miss and that were not given up as late.
quint64 lostOnTheWay(const HealthSnapshot &snapshot, const SourceFacts &facts);

/// Frozen from 1 s or 10 frame times on, gone from 10 s or 20 frame times on, whichever is longer, or as soon as the
/// source says that it is lost; before the first line it is waiting, whatever the time.
Liveness judge(const HealthSnapshot &snapshot, const SourceFacts &facts);

/// The words for the liveness of a source.
struct LivenessWords {
    Q_DECLARE_TR_FUNCTIONS(LivenessWords)

public:
    /// For the status bar and the banner.
    static QString sentence(const Liveness &liveness);
    /// In front of the window's title, with a blank at its end; empty where the picture can be trusted.
    static QString titlePrefix(const Liveness &liveness);
    /// "3 s", "2 min 5 s", "1 h 12 min".
    static QString duration(std::chrono::nanoseconds time);
};

/// What standard error and the log say when the liveness changes: each silence, its end, and the end of the source,
/// once each.
class LivenessReport {
    Q_DECLARE_TR_FUNCTIONS(LivenessReport)

public:
    /// What is to be said now. To be called as often as the liveness is looked at.
    QStringList next(const Liveness &liveness);
    /// Begins anew, for a new source.
    void clear() { *this = {}; }

private:
    bool silent = false; // and told
    bool ended = false; // likewise
};

} // namespace host
