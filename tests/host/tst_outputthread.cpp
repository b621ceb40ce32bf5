// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/outputsubscriptions.h"
#include "host/outputthread.h"
#include "tests/host/fakebackend.h"
#include "tests/host/fakerequester.h"

#include <QTest>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

using namespace backend;
using namespace host;

using namespace std::chrono_literals;

/// Notes the frames of the lines that it gets.
class FrameRecorder : public FakeRequester {
public:
    FrameRecorder()
    {
        onLine = [this](const QByteArray &tag, const QByteArray &line) {
            const std::lock_guard lock(mutex);
            seen.push_back(line.mid(tag.size() + 1).toLongLong());
        };
    }
    std::vector<qint64> frames() const
    {
        const std::lock_guard lock(mutex);
        return seen;
    }

private:
    mutable std::mutex mutex;
    std::vector<qint64> seen;
};

class OutputThreadTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void deliversEveryFrameOnce_data();
    void deliversEveryFrameOnce();
    void beginsWithTheFrameOfTheMoment();
    void catchesUpWithWhatWasLateAndCountsTheRest();
    void countsWhatItSends();
    void sendsNothingAfterTheStop();
    void changesTheBackendWhileItRuns();

private:
    std::unique_ptr<OutputSubscriptions> subscriptions;
    std::unique_ptr<FrameRecorder> recorder;
    std::shared_ptr<FakeBackend> backend;
};

void OutputThreadTest::init()
{
    subscriptions = std::make_unique<OutputSubscriptions>();
    recorder = std::make_unique<FrameRecorder>();
    subscriptions->add(recorder.get());
    QVERIFY(subscriptions->subscribe("6d", recorder.get()));
    backend = std::make_shared<FakeBackend>();
}

void OutputThreadTest::cleanup()
{
    recorder.reset();
    subscriptions.reset();
}

void OutputThreadTest::deliversEveryFrameOnce_data()
{
    QTest::addColumn<double>("rate");
    QTest::newRow("at 60 Hz") << 60.0;
    QTest::newRow("at a rate without an even period") << 333.3;
    QTest::newRow("at 1000 Hz") << 1000.0;
}

void OutputThreadTest::deliversEveryFrameOnce()
{
    QFETCH(double, rate);
    backend->rate = rate;
    OutputThread output(*subscriptions);
    output.start(backend, OutputThread::Clock::now());
    QTRY_VERIFY(recorder->frames().size() >= 30);
    output.stop();
    const std::vector<qint64> frames = recorder->frames();
    for (std::size_t index = 1; index < frames.size(); ++index)
        QCOMPARE(frames[index], frames[index - 1] + 1);
    QCOMPARE(output.counts().skippedFrames, 0U);
}

void OutputThreadTest::beginsWithTheFrameOfTheMoment()
{
    backend->rate = 10.0;
    OutputThread output(*subscriptions);
    output.start(backend, OutputThread::Clock::now() - 1h);
    QTRY_VERIFY(!recorder->frames().empty());
    output.stop();
    QVERIFY(recorder->frames().front() >= 36000);
    QVERIFY(recorder->frames().front() < 36600); // a minute for a machine that is very busy
}

void OutputThreadTest::catchesUpWithWhatWasLateAndCountsTheRest()
{
    backend->rate = 100.0;
    std::atomic<bool> blocked{true};
    recorder->onLine = [&, record = recorder->onLine](const QByteArray &tag, const QByteArray &line) {
        record(tag, line);
        while (blocked)
            std::this_thread::yield();
    };
    OutputThread output(*subscriptions);
    const auto begin = OutputThread::Clock::now();
    output.start(backend, begin);
    // The first line is held for 1.5 s, longer than the second for which frames are caught up.
    QTRY_VERIFY(OutputThread::Clock::now() - begin > 1500ms);
    blocked = false;
    QTRY_VERIFY(recorder->frames().size() > 100);
    output.stop();
    const std::vector<qint64> frames = recorder->frames();
    const quint64 skipped = output.counts().skippedFrames;
    QVERIFY(skipped >= 30);
    QCOMPARE(static_cast<quint64>(frames.back() - frames.front() + 1), skipped + frames.size());
    QCOMPARE(static_cast<quint64>(frames[1] - frames[0] - 1), skipped); // the oldest are the ones left out
}

void OutputThreadTest::countsWhatItSends()
{
    FakeRequester refusing;
    refusing.result = -1;
    subscriptions->add(&refusing);
    QVERIFY(subscriptions->subscribe("3d", &refusing));
    OutputThread output(*subscriptions);
    output.start(backend, OutputThread::Clock::now());
    QTRY_VERIFY(refusing.lines > 10);
    output.stop();
    QCOMPARE(output.counts().refused, static_cast<quint64>(refusing.lines));
    QCOMPARE(output.counts().sent, static_cast<quint64>(refusing.lines + recorder->lines));
}

void OutputThreadTest::sendsNothingAfterTheStop()
{
    OutputThread output(*subscriptions);
    output.stop();
    for (int round = 0; round < 20; ++round) {
        output.start(backend, OutputThread::Clock::now());
        const int before = recorder->lines;
        QTRY_VERIFY(recorder->lines > before);
        output.stop();
        const int after = recorder->lines;
        QCOMPARE(static_cast<quint64>(after), output.counts().sent);
        QCOMPARE(recorder->entered.load(), after);
    }
}

void OutputThreadTest::changesTheBackendWhileItRuns()
{
    auto other = std::make_shared<FakeBackend>();
    const auto now = OutputThread::Clock::now();
    OutputThread output(*subscriptions);
    output.start(backend, now);
    QTRY_VERIFY(recorder->lines > 0);
    output.start(other, now - 10h);
    const std::weak_ptr<FakeBackend> watched = backend;
    backend.reset();
    QVERIFY(watched.expired()); // the thread has let go of it
    QTRY_VERIFY(recorder->frames().back() > 1000000);
}

QTEST_GUILESS_MAIN(OutputThreadTest)
#include "tst_outputthread.moc"
