// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/liveness.h"

#include <QTest>

using namespace backend;
using namespace host;
using namespace std::chrono_literals;
using Level = Liveness::Level;
using Phase = StreamState::Phase;
using Time = std::chrono::nanoseconds;

Q_DECLARE_METATYPE(host::Liveness)
Q_DECLARE_METATYPE(host::Liveness::Level)

/// What a source is called at which age, and the words for it.
class LivenessTest : public QObject {
    Q_OBJECT

private slots:
    void levelsFollowTheAge_data();
    void levelsFollowTheAge();
    void theSourceHasTheLastWord();
    void aSourceNeedNotSendWhatNobodyWants();
    void lossesAddUp();
    void sentences_data();
    void sentences();
    void titlePrefixes();
    void durations();
    void aSilenceIsReportedOnce();
    void aSilenceThatEndsTheSourceIsNotOver();
    void aSourceThatTellsOfItsLossIsReportedByItsSilence();
};

namespace {

HealthSnapshot snapshotOf(std::optional<Time> age, std::optional<Time> frame = Time(16666666))
{
    HealthSnapshot snapshot;
    snapshot.age = age;
    snapshot.frameTime = frame;
    if (age)
        snapshot.streams.append({"6d", 100, 60.0, 60.0, *age, {}, frame});
    return snapshot;
}

SourceFacts factsOf(Phase phase = Phase::Live, const QString &reason = {})
{
    SourceFacts facts;
    facts.state = {phase, reason};
    return facts;
}

Liveness livenessOf(Level level, std::optional<Time> age, const QString &reason = {})
{
    Liveness liveness;
    liveness.level = level;
    liveness.age = age;
    liveness.reason = reason;
    return liveness;
}

} // namespace

void LivenessTest::levelsFollowTheAge_data()
{
    QTest::addColumn<qint64>("age");
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<Level>("expected");
    const auto row = [](const char *name, std::chrono::milliseconds age, std::chrono::milliseconds frame, Level level) {
        QTest::newRow(name) << qint64(age.count()) << qint64(frame.count()) << level;
    };
    row("a young line is live", 20ms, 16ms, Level::Live);
    row("just below a second is live", 999ms, 16ms, Level::Live);
    row("a second is frozen", 1000ms, 16ms, Level::Frozen);
    row("nearly ten seconds are frozen", 9999ms, 16ms, Level::Frozen);
    row("ten seconds are gone", 10000ms, 16ms, Level::Gone);
    row("at 2 Hz four seconds are live", 4999ms, 500ms, Level::Live);
    row("ten frames are frozen", 5000ms, 500ms, Level::Frozen);
    row("at 1 Hz ten seconds are frozen", 10000ms, 1000ms, Level::Frozen);
    row("twenty frames are gone", 20000ms, 1000ms, Level::Gone);
    row("at 0.1 Hz a minute is live", 60000ms, 10000ms, Level::Live);
    row("at 0.1 Hz two minutes are frozen", 120000ms, 10000ms, Level::Frozen);
    row("without a frame time a second counts", 1000ms, 0ms, Level::Frozen);
}

void LivenessTest::levelsFollowTheAge()
{
    QFETCH(const qint64, age);
    QFETCH(const qint64, frame);
    QFETCH(const Level, expected);
    const std::optional<Time> frameTime =
        frame > 0 ? std::optional<Time>(std::chrono::milliseconds(frame)) : std::nullopt;
    QCOMPARE(judge(snapshotOf(std::chrono::milliseconds(age), frameTime), factsOf()).level, expected);
}

void LivenessTest::theSourceHasTheLastWord()
{
    QCOMPARE(judge(snapshotOf(std::nullopt), factsOf()).level, Level::Waiting);
    QCOMPARE(judge(snapshotOf(std::nullopt), factsOf(Phase::Connecting)).level, Level::Waiting);
    QCOMPARE(judge(snapshotOf(std::nullopt), factsOf(Phase::Lost)).level, Level::Waiting);
    QCOMPARE(judge(snapshotOf(Time(20ms)), factsOf(Phase::Lost)).level, Level::Gone);
    QCOMPARE(judge(snapshotOf(Time(20ms)), factsOf(Phase::Ended)).level, Level::Ended);
    QCOMPARE(judge(snapshotOf(std::nullopt), factsOf(Phase::Ended)).level, Level::Ended);
    SourceFacts facts = factsOf();
    facts.connected = false;
    QCOMPARE(judge(snapshotOf(Time(20ms)), facts).level, Level::Disconnected);
}

void LivenessTest::aSourceNeedNotSendWhatNobodyWants()
{
    SourceFacts facts = factsOf();
    facts.wantedFor = std::nullopt;
    QCOMPARE(judge(snapshotOf(Time(20s)), facts).level, Level::Unwanted);
    QVERIFY(!judge(snapshotOf(Time(20s)), facts).silent);
    QCOMPARE(judge(snapshotOf(std::nullopt), facts).level, Level::Unwanted);
    QCOMPARE(judge(snapshotOf(Time(20ms)), facts).level, Level::Live);
    facts.wantedFor = Time(500ms);
    QCOMPARE(judge(snapshotOf(Time(20s)), facts).level, Level::Waiting);
    facts.wantedFor = Time(1s);
    QCOMPARE(judge(snapshotOf(Time(20s)), facts).level, Level::Frozen);
}

void LivenessTest::lossesAddUp()
{
    HealthSnapshot snapshot = snapshotOf(Time(20ms));
    snapshot.missing = 10;
    SourceFacts facts = factsOf();
    facts.late = 4; // these left gaps in the sequence, too
    facts.dropped = 100;
    QCOMPARE(lostOnTheWay(snapshot, facts), quint64(6));
    QCOMPARE(judge(snapshot, facts).lost, quint64(110));
    facts.dropped.reset();
    QCOMPARE(judge(snapshot, facts).lost, quint64(10));
    facts.lostBefore = 7;
    QCOMPARE(judge(snapshot, facts).lost, quint64(17));
    snapshot.missing = 0; // late ones may be known before the gap that they leave
    QCOMPARE(lostOnTheWay(snapshot, facts), quint64(0));
}

void LivenessTest::sentences_data()
{
    QTest::addColumn<Liveness>("liveness");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const Liveness &liveness, const char *expected) {
        QTest::newRow(name) << liveness << QString::fromUtf8(expected);
    };
    Liveness live = livenessOf(Level::Live, Time(20ms));
    live.rates = {{"6d", 60.0}, {"3d", 59.96}};
    row("live", live, "live · 6d 60.0/s · 3d 60.0/s · 0 lost");
    live.lost = 3;
    row("live with losses", live, "live · 6d 60.0/s · 3d 60.0/s · 3 lost");
    live.age = 1s;
    row("live with losses and an age", live, "live · 6d 60.0/s · 3d 60.0/s · 3 lost · last line 1 s ago");
    Liveness slow = livenessOf(Level::Live, Time(8900ms));
    slow.rates = {{"6d", 0.1}};
    row("live and slow", slow, "live · 6d 0.1/s · last line 8 s ago");
    slow.rates = {{"6d", std::nullopt}};
    row("live after one line", slow, "live · 6d · last line 8 s ago");
    row("waiting", livenessOf(Level::Waiting, std::nullopt), "waiting for the first line");
    row("frozen", livenessOf(Level::Frozen, Time(3s)), "DATA FROZEN · last line 3 s ago");
    row("gone", livenessOf(Level::Gone, Time(12s)), "DATA GONE · last line 12 s ago");
    row("gone at once", livenessOf(Level::Gone, Time(100ms), QStringLiteral("the broker says: offline")),
        "DATA GONE · last line 0 s ago · the broker says: offline");
    row("gone with a reason", livenessOf(Level::Gone, Time(12s), QStringLiteral("the broker says: offline")),
        "DATA GONE · last line 12 s ago · the broker says: offline");
    row("ended", livenessOf(Level::Ended, Time(12s)), "SOURCE ENDED · last line 12 s ago");
    row("ended without a line", livenessOf(Level::Ended, std::nullopt), "SOURCE ENDED · no line came");
    row("unwanted", livenessOf(Level::Unwanted, Time(12s)), "no module wants lines · last line 12 s ago");
    row("disconnected", livenessOf(Level::Disconnected, Time(12s)), "disconnected");
}

void LivenessTest::sentences()
{
    QFETCH(const Liveness, liveness);
    QFETCH(const QString, expected);
    QCOMPARE(LivenessWords::sentence(liveness), expected);
}

void LivenessTest::titlePrefixes()
{
    const auto prefix = [](Level level) { return LivenessWords::titlePrefix(livenessOf(level, Time(3500ms))); };
    QCOMPARE(prefix(Level::Live), QString());
    QCOMPARE(prefix(Level::Waiting), QStringLiteral("(waiting) "));
    QCOMPARE(prefix(Level::Frozen), QStringLiteral("(frozen 3 s) "));
    QCOMPARE(prefix(Level::Gone), QStringLiteral("(gone 3 s) "));
    QCOMPARE(prefix(Level::Ended), QStringLiteral("(ended) "));
    QCOMPARE(prefix(Level::Disconnected), QString());
}

void LivenessTest::durations()
{
    QCOMPARE(LivenessWords::duration(999ms), QStringLiteral("0 s"));
    QCOMPARE(LivenessWords::duration(119s), QStringLiteral("119 s"));
    QCOMPARE(LivenessWords::duration(125s), QStringLiteral("2 min 5 s"));
    QCOMPARE(LivenessWords::duration(7200s), QStringLiteral("2 h 0 min"));
}

void LivenessTest::aSilenceIsReportedOnce()
{
    LivenessReport report;
    const auto at = [&](Time age) { return report.next(judge(snapshotOf(age), factsOf())); };
    QCOMPARE(report.next(judge(snapshotOf(std::nullopt), factsOf())), QStringList());
    QCOMPARE(at(20ms), QStringList());
    QCOMPARE(at(900ms), QStringList());
    QCOMPARE(at(1049ms), QStringList{QStringLiteral("no line for 1.0 s: the data are frozen")});
    QCOMPARE(at(2s), QStringList());
    QCOMPARE(at(12s), QStringList()); // gone adds no line of its own
    HealthSnapshot back = snapshotOf(Time(20ms));
    back.lastSilence = 12345ms;
    QCOMPARE(report.next(judge(back, factsOf())), QStringList{QStringLiteral("live again after 12.3 s")});
    QCOMPARE(at(20ms), QStringList());
    at(5s);
    report.clear();
    QCOMPARE(at(20ms), QStringList()); // another source: nothing came back
}

void LivenessTest::aSilenceThatEndsTheSourceIsNotOver()
{
    LivenessReport report;
    QCOMPARE(report.next(judge(snapshotOf(Time(2s)), factsOf())).size(), 1);
    QCOMPARE(report.next(judge(snapshotOf(Time(3s)), factsOf(Phase::Ended))),
             QStringList{QStringLiteral("the source has ended")});
    QCOMPARE(report.next(judge(snapshotOf(Time(9s)), factsOf(Phase::Ended))), QStringList());
}

void LivenessTest::aSourceThatTellsOfItsLossIsReportedByItsSilence()
{
    LivenessReport report;
    QCOMPARE(report.next(judge(snapshotOf(Time(200ms)), factsOf(Phase::Lost))), QStringList());
    QCOMPARE(report.next(judge(snapshotOf(Time(1100ms)), factsOf(Phase::Lost))),
             QStringList{QStringLiteral("no line for 1.1 s: the data are frozen")});
}

QTEST_APPLESS_MAIN(LivenessTest)
#include "tst_liveness.moc"
