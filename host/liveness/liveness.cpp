// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/liveness.h"

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;
using Level = Liveness::Level;
using Phase = backend::StreamState::Phase;
using Time = std::chrono::nanoseconds;

constexpr Time shortestFrozen = 1s;
constexpr Time shortestGone = 10s;
constexpr int frozenFrames = 10;
constexpr int goneFrames = 20;
constexpr Time shownAge = 1s; // from here on an age is told in every level
constexpr Time largestFrame = 1h; // so that no multiple of it overflows

Time frameOf(const HealthSnapshot &snapshot)
{
    return std::min(snapshot.frameTime.value_or(0s), largestFrame);
}

Time frozenLimit(const HealthSnapshot &snapshot)
{
    return std::max(shortestFrozen, frozenFrames * frameOf(snapshot));
}

/// How long lines have been missing that somebody wanted: a module that has just begun to want them has not missed
/// those of the time before.
Time silenceOf(const HealthSnapshot &snapshot, const SourceFacts &facts)
{
    return std::min(snapshot.age.value_or(0s), facts.wantedFor.value_or(0s));
}

Level levelByAge(const HealthSnapshot &snapshot, const SourceFacts &facts)
{
    if (*snapshot.age < frozenLimit(snapshot))
        return Level::Live;
    if (!facts.wantedFor)
        return Level::Unwanted;
    const Time silence = silenceOf(snapshot, facts);
    if (silence < frozenLimit(snapshot))
        return Level::Waiting;
    return silence >= std::max(shortestGone, goneFrames * frameOf(snapshot)) ? Level::Gone : Level::Frozen;
}

Level levelOf(const HealthSnapshot &snapshot, const SourceFacts &facts)
{
    if (!facts.connected)
        return Level::Disconnected;
    if (facts.state.phase == Phase::Ended)
        return Level::Ended;
    const bool isLost = facts.state.phase == Phase::Lost;
    if (!snapshot.age)
        return facts.wantedFor || isLost ? Level::Waiting : Level::Unwanted;
    return isLost ? Level::Gone : levelByAge(snapshot, facts);
}

QString rateText(const Liveness::Rate &rate)
{
    const QString tag = QString::fromUtf8(rate.tag);
    return rate.perSecond ? QStringLiteral("%1 %2/s").arg(tag, QString::number(*rate.perSecond, 'f', 1)) : tag;
}

} // namespace

quint64 lostOnTheWay(const HealthSnapshot &snapshot, const SourceFacts &facts)
{
    return snapshot.missing - std::min(snapshot.missing, facts.late);
}

Liveness judge(const HealthSnapshot &snapshot, const SourceFacts &facts)
{
    Liveness liveness;
    liveness.level = levelOf(snapshot, facts);
    liveness.silent = (liveness.level == Level::Frozen || liveness.level == Level::Gone)
        && silenceOf(snapshot, facts) >= frozenLimit(snapshot);
    liveness.age = snapshot.age;
    liveness.lastSilence = snapshot.lastSilence;
    liveness.reason = facts.state.phase == Phase::Lost ? facts.state.reason : QString();
    for (const StreamFigures &stream : snapshot.streams)
        liveness.rates.append({stream.tag, stream.rate1});
    liveness.lost = facts.lostBefore + lostOnTheWay(snapshot, facts) + facts.late + facts.dropped.value_or(0);
    liveness.unreadable = facts.unreadable;
    return liveness;
}

QString LivenessWords::sentence(const Liveness &liveness)
{
    QStringList parts;
    const bool showsAge = liveness.age && (liveness.level != Level::Live || *liveness.age >= shownAge);
    switch (liveness.level) {
    case Level::Disconnected:
        return tr("disconnected");
    case Level::Waiting:
        parts << tr("waiting for the first line");
        break;
    case Level::Unwanted:
        parts << tr("no module wants lines");
        break;
    case Level::Live:
        parts << tr("live");
        for (const Liveness::Rate &rate : liveness.rates)
            parts << rateText(rate);
        if (!showsAge || liveness.lost > 0)
            parts << tr("%1 lost").arg(liveness.lost);
        break;
    case Level::Frozen:
        parts << tr("DATA FROZEN");
        break;
    case Level::Gone:
        parts << tr("DATA GONE");
        break;
    case Level::Ended:
        parts << tr("SOURCE ENDED");
        if (!liveness.age)
            parts << tr("no line came");
        break;
    }
    if (showsAge)
        parts << tr("last line %1 ago").arg(duration(*liveness.age));
    if (!liveness.reason.isEmpty())
        parts << liveness.reason;
    return parts.join(QString::fromUtf8(" \xc2\xb7 "));
}

QString LivenessWords::titlePrefix(const Liveness &liveness)
{
    const QString age = duration(liveness.age.value_or(0s));
    switch (liveness.level) {
    case Level::Waiting:
        return tr("(waiting) ");
    case Level::Frozen:
        return tr("(frozen %1) ").arg(age);
    case Level::Gone:
        return tr("(gone %1) ").arg(age);
    case Level::Ended:
        return tr("(ended) ");
    default:
        return {};
    }
}

QString LivenessWords::duration(Time time)
{
    const qint64 seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    if (seconds < 120)
        return tr("%1 s").arg(seconds);
    if (seconds < 7200)
        return tr("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
    return tr("%1 h %2 min").arg(seconds / 3600).arg(seconds % 3600 / 60);
}

QStringList LivenessReport::next(const Liveness &liveness)
{
    QStringList texts;
    const auto seconds = [](Time time) { return QString::number(std::chrono::duration<double>(time).count(), 'f', 1); };
    if (liveness.silent && !silent)
        texts << tr("no line for %1 s: the data are frozen").arg(seconds(liveness.age.value_or(0s)));
    else if (silent && liveness.level == Level::Live)
        texts << tr("live again after %1 s").arg(seconds(liveness.lastSilence));
    // A silence that is followed by the end, or by a source that says it is lost, is not told again.
    silent = liveness.silent || (silent && liveness.level != Level::Live);
    if (liveness.level == Level::Ended && !ended)
        texts << tr("the source has ended");
    ended = liveness.level == Level::Ended;
    return texts;
}

} // namespace host
