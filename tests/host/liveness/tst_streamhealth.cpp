// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/streamhealth.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace backend;
using namespace host;
using namespace std::chrono_literals;
using Time = std::chrono::nanoseconds;

/// The figures of streams and bodies, and their way from one thread to another.
class StreamHealthTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsKnownBeforeTheFirstLine();
    void eachTagIsAStream();
    void tagsAreBounded();
    void gapsInTheSequenceAreMissing();
    void aSequenceThatBeginsAgainMissesNothing();
    void theLastSilenceIsOfAllStreams();
    void aLostBodyIsNotTracked();
    void lossesAreThoseOfTheLastMinute();
    void aBodyIsNotLostBeforeItIsSeen();
    void aBodyTwiceInALineCountsOnce();
    void bodiesAreBounded();
    void theOrderOfBodiesMayChange();
    void aClearedHealthKnowsNothing();
    void allLinesArriveFromAnotherThread();
};

namespace {

QByteArray lineOf(const QVector<QPair<int, bool>> &bodies)
{
    QByteArray line = "6d " + QByteArray::number(bodies.size());
    for (const QPair<int, bool> &body : bodies)
        line += " [" + QByteArray::number(body.first) + (body.second ? " 1.0][" : " -1.0][")
            + "0 0 0 0 0 0][1 0 0 0 1 0 0 0 1]";
    return line;
}

/// Feeds lines of "6d" with the sequence numbers of a source.
struct Feeder {
    void add(Time time, const QByteArray &text, const QByteArray &tag = "6d")
    {
        health.add({{tag, text}, time, sequence++});
    }
    BodyFigures body(Time now, int index) { return health.snapshot(now).bodies.at(index); }

    StreamHealth health;
    quint64 sequence = 0;
};

} // namespace

void StreamHealthTest::nothingIsKnownBeforeTheFirstLine()
{
    StreamHealth health;
    const HealthSnapshot snapshot = health.snapshot(5s);
    QVERIFY(snapshot.streams.isEmpty());
    QVERIFY(snapshot.bodies.isEmpty());
    QVERIFY(!snapshot.age.has_value());
    QVERIFY(!snapshot.frameTime.has_value());
}

void StreamHealthTest::eachTagIsAStream()
{
    Feeder source;
    for (int frame = 0; frame < 20; ++frame) {
        source.add(frame * 100ms, "6d 0");
        if (frame % 4 == 0)
            source.add(frame * 100ms, "3d 0", "3d");
    }
    const HealthSnapshot snapshot = source.health.snapshot(2500ms);
    QCOMPARE(snapshot.streams.size(), 2);
    QCOMPARE(snapshot.streams.at(0).tag, QByteArray("6d"));
    QCOMPARE(snapshot.streams.at(0).lines, quint64(20));
    QCOMPARE(snapshot.streams.at(0).age, Time(600ms));
    QCOMPARE(*snapshot.streams.at(0).frameTime, Time(100ms));
    QCOMPARE(snapshot.streams.at(1).lines, quint64(5));
    QCOMPARE(snapshot.streams.at(1).age, Time(900ms));
    QCOMPARE(snapshot.streams.at(1).longestGap, Time(900ms));
    QCOMPARE(*snapshot.age, Time(600ms)); // of the youngest
    QCOMPARE(snapshot.all.lines, quint64(25));
    QCOMPARE(snapshot.all.longestGap, Time(600ms));
    QCOMPARE(*snapshot.frameTime, Time(400ms)); // the longest
    QVERIFY(snapshot.bodies.isEmpty());
}

void StreamHealthTest::tagsAreBounded()
{
    Feeder source;
    for (int tag = 0; tag < 100; ++tag)
        source.add(tag * 10ms, "text", QByteArray::number(tag));
    const HealthSnapshot snapshot = source.health.snapshot(1s);
    QCOMPARE(snapshot.streams.size(), 8);
    QCOMPARE(*snapshot.age, Time(10ms)); // those left out are lines, too
}

void StreamHealthTest::gapsInTheSequenceAreMissing()
{
    Feeder source;
    source.sequence = 1000; // who comes later has lost nothing
    source.add(1s, "6d 0");
    source.add(1s, "3d 0", "3d");
    QCOMPARE(source.health.snapshot(2s).missing, quint64(0));
    source.sequence += 3;
    source.add(2s, "6d 0");
    source.sequence += 4;
    source.add(2s, "3d 0", "3d");
    QCOMPARE(source.health.snapshot(2s).missing, quint64(7));
}

void StreamHealthTest::aSequenceThatBeginsAgainMissesNothing()
{
    Feeder source;
    source.sequence = 500;
    source.add(1s, "6d 0");
    source.sequence = 3;
    source.add(2s, "6d 0");
    source.add(3s, "6d 0");
    QCOMPARE(source.health.snapshot(3s).missing, quint64(0));
}

void StreamHealthTest::theLastSilenceIsOfAllStreams()
{
    Feeder source;
    source.add(1s, "6d 0");
    source.add(2500ms, "3d 0", "3d");
    QCOMPARE(source.health.snapshot(3s).lastSilence, Time(1500ms));
    source.add(3400ms, "6d 0"); // 2.4 s after the last one of its own, but not of the others
    QCOMPARE(source.health.snapshot(4s).lastSilence, Time(1500ms));
    source.add(7s, "6d 0");
    QCOMPARE(source.health.snapshot(7s).lastSilence, Time(3600ms));
}

void StreamHealthTest::aLostBodyIsNotTracked()
{
    Feeder source;
    source.add(1s, lineOf({{1, true}, {2, true}}));
    source.add(2s, lineOf({{1, true}, {2, false}}));
    source.add(4s, lineOf({{1, true}})); // one that is not in the line is lost as well
    const BodyFigures first = source.body(4500ms, 0);
    QCOMPARE(first.id, 1);
    QVERIFY(first.tracked);
    QCOMPARE(*first.lossPercent, 0.0);
    QCOMPARE(first.longestGap, Time(2s));
    QCOMPARE(*first.sinceTracked, Time(500ms));
    const BodyFigures second = source.body(4500ms, 1);
    QCOMPARE(second.id, 2);
    QVERIFY(!second.tracked);
    QVERIFY(std::abs(*second.lossPercent - 200.0 / 3.0) < 1e-9);
    QCOMPARE(second.longestGap, Time(3500ms));
    source.add(9s, lineOf({{1, true}, {2, true}}));
    QVERIFY(source.body(9s, 1).tracked);
    QCOMPARE(source.body(9s, 1).longestGap, Time(8s));
}

void StreamHealthTest::lossesAreThoseOfTheLastMinute()
{
    Feeder source; // lost for the first half of two minutes, and then in one of four lines
    for (int frame = 0; frame < 1200; ++frame)
        source.add(frame * 100ms, lineOf({{1, frame >= 600 && frame % 4 != 0}}));
    QVERIFY(std::abs(*source.body(119900ms, 0).lossPercent - 25.0) < 1.0);
    QVERIFY(std::abs(*source.body(150s, 0).lossPercent - 25.0) < 1.0); // of the lines that there were
    QVERIFY(!source.body(200s, 0).lossPercent.has_value());
    source.add(200s, lineOf({{1, false}}));
    QCOMPARE(*source.body(200s, 0).lossPercent, 100.0);
}

void StreamHealthTest::aBodyIsNotLostBeforeItIsSeen()
{
    Feeder source;
    for (int frame = 0; frame < 100; ++frame)
        source.add(frame * 100ms, frame < 50 ? lineOf({{1, true}}) : lineOf({{1, true}, {2, frame >= 75}}));
    QCOMPARE(*source.body(10s, 1).lossPercent, 50.0);
    QCOMPARE(source.body(10s, 1).longestGap, Time(2500ms));

    Feeder never;
    never.add(1s, lineOf({{1, false}}));
    QVERIFY(!never.body(4s, 0).sinceTracked.has_value());
    QCOMPARE(never.body(4s, 0).longestGap, Time(3s));
}

void StreamHealthTest::aBodyTwiceInALineCountsOnce()
{
    Feeder source;
    for (int frame = 0; frame < 10; ++frame)
        source.add(frame * 100ms, lineOf({{1, true}, {1, true}, {1, false}}));
    QCOMPARE(source.health.snapshot(1s).bodies.size(), 1);
    QCOMPARE(*source.body(1s, 0).lossPercent, 0.0);
}

void StreamHealthTest::bodiesAreBounded()
{
    Feeder source;
    for (int frame = 0; frame < 30; ++frame) {
        QVector<QPair<int, bool>> bodies;
        for (int body = 0; body < 50; ++body)
            bodies.append({frame * 50 + body, true});
        source.add(frame * 100ms, lineOf(bodies));
    }
    QCOMPARE(source.health.snapshot(3s).bodies.size(), 1000);
}

void StreamHealthTest::theOrderOfBodiesMayChange()
{
    Feeder source;
    source.add(1s, lineOf({{3, true}, {1, true}, {2, true}}));
    source.add(2s, lineOf({{1, false}, {2, true}, {3, true}}));
    QCOMPARE(source.body(2s, 0).id, 3);
    QVERIFY(source.body(2s, 0).tracked);
    QVERIFY(!source.body(2s, 1).tracked);
    QVERIFY(source.body(2s, 2).tracked);
}

void StreamHealthTest::aClearedHealthKnowsNothing()
{
    Feeder source;
    source.add(1s, lineOf({{1, true}}));
    source.sequence = 100;
    source.add(9s, lineOf({{1, true}}));
    source.health.clear();
    const HealthSnapshot snapshot = source.health.snapshot(9s);
    QVERIFY(snapshot.streams.isEmpty() && snapshot.bodies.isEmpty());
    QVERIFY(!snapshot.age.has_value());
    QCOMPARE(snapshot.missing, quint64(0));
    QCOMPARE(snapshot.lastSilence, Time(0));
}

void StreamHealthTest::allLinesArriveFromAnotherThread()
{
    constexpr quint64 lines = 20000;
    StreamHealth health;
    std::atomic<bool> done{false};
    std::thread feeder([&] {
        const QByteArray text = lineOf({{1, true}, {2, false}});
        for (quint64 line = 0; line < lines; ++line)
            health.add({{"6d", text}, Time(line * 1000), line});
        done = true;
    });
    quint64 snapshots = 0;
    for (; !done; ++snapshots)
        health.snapshot(1s);
    feeder.join();
    QVERIFY(snapshots > 0);
    const HealthSnapshot snapshot = health.snapshot(1s);
    QCOMPARE(snapshot.streams.at(0).lines + snapshot.unwatched, lines);
    QCOMPARE(snapshot.missing, quint64(0));
}

QTEST_APPLESS_MAIN(StreamHealthTest)
#include "tst_streamhealth.moc"
