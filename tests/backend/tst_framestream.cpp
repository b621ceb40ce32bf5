// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/framestream.h"
#include "backend/simulatedbackend.h"

#include <QTest>

#include <cmath>
#include <thread>

using namespace backend;

using namespace std::chrono_literals;

namespace {

using Clock = LineStream::Clock;

/// A line of each of two types that says which frame it belongs to.
FrameStream::LinesAt numberedFrames(double rate)
{
    return [rate](std::chrono::nanoseconds time) {
        const QByteArray frame =
            QByteArray::number(std::floor(static_cast<double>(time.count()) * 1e-9 * rate), 'f', 0);
        return QVector<OutputLine>{{"6d", "6d " + frame}, {"3d", "3d " + frame}};
    };
}

qint64 frameOf(const ReceivedLine &line)
{
    return line.line.text.mid(3).toLongLong();
}

/// The lines of the next \a frames frames.
QVector<ReceivedLine> takeFrames(FrameStream *stream, int frames)
{
    QVector<ReceivedLine> lines;
    while (lines.size() < 2 * frames) {
        const QVector<ReceivedLine> taken = stream->take(Clock::now() + 30s);
        if (taken.isEmpty())
            break;
        lines += taken;
    }
    return lines;
}

} // namespace

class TestFrameStream : public QObject {
    Q_OBJECT

private slots:
    void givesEveryFrameOnce_data();
    void givesEveryFrameOnce();
    void beginsWithTheFrameOfTheMoment();
    void tellsWhenAFrameWasDue();
    void waitsNoLongerThanItMay();
    void passesOverFramesWithoutALine();
    void catchesUpWithWhatWasLateAndCountsTheRest();
    void countsTheLinesWithoutAGap();
    void isWokenOnce();
    void isWokenWhileItWaits();
    void isLive();
    void simulationsAreFrames();
};

void TestFrameStream::givesEveryFrameOnce_data()
{
    QTest::addColumn<double>("rate");
    QTest::newRow("at 60 Hz") << 60.0;
    QTest::newRow("at a rate without an even period") << 333.3;
    QTest::newRow("at 1000 Hz") << 1000.0;
}

void TestFrameStream::givesEveryFrameOnce()
{
    QFETCH(double, rate);
    FrameStream stream(rate, numberedFrames(rate), Clock::now());
    const QVector<ReceivedLine> lines = takeFrames(&stream, 30);
    QVERIFY(lines.size() >= 60);
    for (int i = 2; i < lines.size(); ++i)
        QCOMPARE(frameOf(lines[i]), frameOf(lines[i - 2]) + 1);
    QCOMPARE(stream.losses().skippedFrames, 0U);
}

void TestFrameStream::beginsWithTheFrameOfTheMoment()
{
    FrameStream stream(10.0, numberedFrames(10.0), Clock::now() - 1h);
    const QVector<ReceivedLine> lines = takeFrames(&stream, 1);
    QVERIFY(!lines.isEmpty());
    QVERIFY(frameOf(lines.first()) >= 36000);
    QVERIFY(frameOf(lines.first()) < 36600); // a minute for a machine that is very busy
}

void TestFrameStream::tellsWhenAFrameWasDue()
{
    const auto epoch = Clock::now() - 1h;
    FrameStream stream(100.0, numberedFrames(100.0), epoch);
    const QVector<ReceivedLine> lines = takeFrames(&stream, 20);
    QVERIFY(lines.size() >= 40);
    for (const ReceivedLine &line : lines) {
        QCOMPARE(line.time.count(), frameOf(line) * 10'000'000);
        QVERIFY(epoch + line.time <= Clock::now());
    }
}

void TestFrameStream::waitsNoLongerThanItMay()
{
    FrameStream stream(0.001, numberedFrames(0.001), Clock::now());
    QCOMPARE(takeFrames(&stream, 1).size(), 2); // frame 0 is due at once
    const auto deadline = Clock::now() + 20ms;
    QVERIFY(stream.take(deadline).isEmpty());
    QVERIFY(Clock::now() >= deadline);
    QVERIFY(stream.take(Clock::now() - 1h).isEmpty());
}

void TestFrameStream::passesOverFramesWithoutALine()
{
    int asked = 0;
    const auto every7th = [&asked](std::chrono::nanoseconds) {
        return ++asked % 7 == 0 ? QVector<OutputLine>{{"6d", "6d 0"}} : QVector<OutputLine>();
    };
    FrameStream stream(1000.0, every7th, Clock::now());
    QCOMPARE(stream.take(Clock::now() + 30s).size(), 1);
    QCOMPARE(asked, 7);
}

void TestFrameStream::catchesUpWithWhatWasLateAndCountsTheRest()
{
    FrameStream stream(100.0, numberedFrames(100.0), Clock::now());
    const QVector<ReceivedLine> first = takeFrames(&stream, 1);
    QVERIFY(!first.isEmpty());
    std::this_thread::sleep_for(1500ms); // longer than the second for which frames are caught up
    const auto begin = Clock::now();
    const QVector<ReceivedLine> later = takeFrames(&stream, 100);
    QCOMPARE(later.size(), 200);
    const auto duration = Clock::now() - begin;
    const qint64 skipped = static_cast<qint64>(stream.losses().skippedFrames);
    QVERIFY(skipped >= 30);
    QCOMPARE(frameOf(later.first()) - frameOf(first.first()) - 1, skipped); // the oldest are the ones left out
    QCOMPARE(frameOf(later.last()) - frameOf(later.first()), 99);
    QVERIFY2(duration < 800ms || skipped > 130, "what is late comes at once, unless the machine was away");
}

void TestFrameStream::countsTheLinesWithoutAGap()
{
    FrameStream stream(1000.0, numberedFrames(1000.0), Clock::now() - 1h);
    quint64 expected = 0;
    for (const ReceivedLine &line : takeFrames(&stream, 20))
        QCOMPARE(line.sequence, expected++);
    QVERIFY(expected >= 40);
}

void TestFrameStream::isWokenOnce()
{
    FrameStream stream(1000.0, numberedFrames(1000.0), Clock::now());
    stream.wake();
    QVERIFY(stream.take(Clock::now() + 30s).isEmpty());
    QVERIFY(!stream.take(Clock::now() + 30s).isEmpty());
}

void TestFrameStream::isWokenWhileItWaits()
{
    FrameStream stream(0.001, numberedFrames(0.001), Clock::now());
    takeFrames(&stream, 1);
    std::thread waker([&stream] {
        std::this_thread::sleep_for(20ms);
        stream.wake();
    });
    const auto deadline = Clock::now() + 60s;
    const bool cameLines = !stream.take(deadline).isEmpty();
    const bool wasWoken = Clock::now() < deadline;
    waker.join();
    QVERIFY(!cameLines);
    QVERIFY(wasWoken);
}

void TestFrameStream::isLive()
{
    const FrameStream stream(60.0, numberedFrames(60.0), Clock::now());
    QVERIFY(stream.state().phase == StreamState::Phase::Live);
    QVERIFY(stream.state().reason.isEmpty());
    QCOMPARE(stream.configurationChanges(), 0U);
}

void TestFrameStream::simulationsAreFrames()
{
    Scenario scenario;
    scenario.rate = 250.0;
    SimulatedBackend backend(scenario);
    QVERIFY(backend.command("output active chmon 6d yes"));
    const std::unique_ptr<LineStream> stream = backend.open(Clock::now() - 1h);
    std::optional<std::chrono::nanoseconds> previous;
    for (int frame = 0; frame < 10; ++frame) {
        const QVector<ReceivedLine> received = stream->take(Clock::now() + 30s);
        QVERIFY(!received.isEmpty());
        const QVector<OutputLine> lines = backend.linesAt(received.first().time);
        QCOMPARE(received.size(), lines.size());
        for (int i = 0; i < lines.size(); ++i) {
            QCOMPARE(received[i].line.tag, lines[i].tag);
            QCOMPARE(received[i].line.text, lines[i].text);
        }
        if (previous)
            QCOMPARE((received.first().time - *previous).count(), 4'000'000);
        previous = received.first().time;
    }
}

QTEST_GUILESS_MAIN(TestFrameStream)
#include "tst_framestream.moc"
