// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/exchangetimes.h"
#include "backend/simulatedbackend.h"
#include "backend/timedbackend.h"
#include "tests/backend/model.h"

#include <QtTest>

#include <atomic>
#include <stdexcept>
#include <thread>

using namespace backend;

using namespace std::chrono_literals;

namespace {

/// A backend that takes the next of some durations for each exchange, by a clock of its own.
class SlowBackend : public SimulatedBackend {
public:
    SlowBackend()
        : SimulatedBackend(everything())
    {
    }
    std::optional<QByteArray> request(const QByteArray &query) override
    {
        pass();
        return SimulatedBackend::request(query);
    }
    bool command(const QByteArray &text) override
    {
        pass();
        return SimulatedBackend::command(text);
    }

    std::function<void()> meanwhile;
    QVector<std::chrono::milliseconds> durations;
    Exchange::Clock::time_point time{};

private:
    void pass()
    {
        if (!durations.isEmpty())
            time += durations.takeFirst();
        if (meanwhile)
            meanwhile();
    }
};

/// A slow backend that is measured by its own clock.
struct Bench {
    std::shared_ptr<SlowBackend> slow = std::make_shared<SlowBackend>();
    std::vector<std::chrono::nanoseconds> told;
    std::shared_ptr<ExchangeTimes> times = std::make_shared<ExchangeTimes>(
        [this](const Exchange &, std::chrono::nanoseconds duration) { told.push_back(duration); },
        [this] { return slow->time; });
    TimedBackend timed{slow, times};
};

const QByteArray bodies("standard number_of_bodies");
const QByteArray name("body desc standard b01");

} // namespace

class TestTimedBackend : public QObject {
    Q_OBJECT

private slots:
    void passesEverythingOn();
    void measuresEachExchange();
    void knowsWhatRuns();
    void endsTheMeasurementOfWhatThrows();
    void survivesAListenerThatThrows();
    void knowsTheMedian_data();
    void knowsTheMedian();
    void takesTheMedianOfTheLatest();
    void listsSlowTextsOnly();
    void keepsSlowTextsAmongManyFastOnes();
    void measuresOnSeveralThreads();
    void costsLittle();
};

void TestTimedBackend::passesEverythingOn()
{
    Bench bench;
    SimulatedBackend plain(everything());
    QCOMPARE(bench.timed.name(), plain.name());
    QCOMPARE(bench.timed.version().minor, plain.version().minor);
    QCOMPARE(bench.timed.request(name), plain.request(name));
    QCOMPARE(bench.timed.request("no such question"), std::nullopt);
    QVERIFY(bench.timed.command("output active chmon 6d yes"));
    QVERIFY(!bench.timed.command("no such command"));
}

void TestTimedBackend::measuresEachExchange()
{
    Bench bench;
    QCOMPARE(bench.times->lastDuration(), 0ns);
    bench.slow->durations = {30ms, 7ms};
    bench.timed.request(name);
    QCOMPARE(bench.times->lastDuration(), std::chrono::nanoseconds(30ms));
    bench.timed.command("no such command");
    QCOMPARE(bench.times->lastDuration(), std::chrono::nanoseconds(7ms));
    QCOMPARE(bench.times->count(), quint64(2));
    QCOMPARE(bench.told, (std::vector<std::chrono::nanoseconds>{30ms, 7ms}));
}

void TestTimedBackend::knowsWhatRuns()
{
    Bench bench;
    std::vector<Exchange> running;
    bench.slow->meanwhile = [&] { running = bench.times->running(); };
    bench.timed.request(name);
    QCOMPARE(running.size(), std::size_t(1));
    QCOMPARE(running[0].text, name);
    QCOMPARE(running[0].number, quint64(1));
    QVERIFY(running[0].onOwnThread);
    QVERIFY(bench.times->running().empty());
    std::thread other([&] { bench.timed.request(bodies); });
    other.join();
    QCOMPARE(running[0].number, quint64(2));
    QVERIFY(!running[0].onOwnThread);
}

void TestTimedBackend::endsTheMeasurementOfWhatThrows()
{
    Bench bench;
    bench.slow->meanwhile = [] { throw std::runtime_error("thrown"); };
    QVERIFY_EXCEPTION_THROWN(bench.timed.request(name), std::runtime_error);
    QVERIFY(bench.times->running().empty());
    QCOMPARE(bench.times->count(), quint64(1));
}

void TestTimedBackend::survivesAListenerThatThrows()
{
    ExchangeTimes times([](const Exchange &, std::chrono::nanoseconds) { throw std::bad_alloc(); });
    times.end(times.begin(name));
    QCOMPARE(times.count(), quint64(1));
}

void TestTimedBackend::knowsTheMedian_data()
{
    QTest::addColumn<QVector<int>>("durations");
    QTest::addColumn<int>("median");
    QTest::addColumn<int>("worst");
    const auto row = [](const char *sentence, const QVector<int> &durations, int median, int worst) {
        QTest::newRow(sentence) << durations << median << worst;
    };
    row("of one it is that one", {200}, 200, 200);
    row("of two it is their mean", {300, 200}, 250, 300);
    row("of three it is the one in the middle", {900, 1, 2}, 2, 900);
    row("of four it is the mean of the two in the middle", {150, 1, 140, 500}, 145, 500);
}

void TestTimedBackend::knowsTheMedian()
{
    QFETCH(const QVector<int>, durations);
    Bench bench;
    for (const int duration : durations) {
        bench.slow->durations = {std::chrono::milliseconds(duration)};
        bench.timed.request(name);
    }
    const QVector<TextTimes> slow = bench.times->slowerThan(100ms);
    QCOMPARE(slow.size(), 1);
    QCOMPARE(slow[0].text, name);
    QCOMPARE(slow[0].count, quint64(durations.size()));
    QTEST(int(slow[0].median / 1ms), "median");
    QTEST(int(slow[0].worst / 1ms), "worst");
}

void TestTimedBackend::takesTheMedianOfTheLatest()
{
    Bench bench;
    for (const auto duration : {500ms, 3ms}) {
        for (int i = 0; i < 101; ++i) {
            bench.slow->durations = {duration};
            bench.timed.request(name);
        }
        QCOMPARE(bench.times->slowerThan(100ms).value(0).median, std::chrono::nanoseconds(duration));
    }
    QCOMPARE(bench.times->slowerThan(100ms).value(0).count, quint64(202));
    QCOMPARE(bench.times->slowerThan(100ms).value(0).worst, std::chrono::nanoseconds(500ms));
}

void TestTimedBackend::listsSlowTextsOnly()
{
    Bench bench;
    bench.slow->durations = {100ms, 101ms, 300ms};
    bench.timed.request("in time");
    bench.timed.request(name);
    bench.timed.request(bodies);
    const QVector<TextTimes> slow = bench.times->slowerThan(100ms);
    QCOMPARE(slow.size(), 2);
    QCOMPARE(slow[0].text, bodies);
    QCOMPARE(slow[1].text, name);
}

void TestTimedBackend::keepsSlowTextsAmongManyFastOnes()
{
    Bench bench;
    bench.slow->durations = {300ms};
    bench.timed.request(name);
    for (int i = 0; i < 5 * ExchangeTimes::keptTexts; ++i) {
        bench.slow->durations = {std::chrono::milliseconds(i % 50)};
        bench.timed.request("body filter6d_strength standard b01 " + QByteArray::number(i));
        if (i % 500 == 0)
            QVERIFY(bench.times->slowerThan(-1ms).size() <= ExchangeTimes::keptTexts);
    }
    QCOMPARE(bench.times->slowerThan(100ms).size(), 1);
    QVERIFY(bench.times->slowerThan(-1ms).size() <= ExchangeTimes::keptTexts);
}

void TestTimedBackend::measuresOnSeveralThreads()
{
    constexpr int threadCount = 4;
    constexpr int exchanges = 2000;
    const auto times = std::make_shared<ExchangeTimes>();
    TimedBackend timed(std::make_shared<SimulatedBackend>(everything()), times);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&] {
            for (int j = 0; j < exchanges; ++j)
                timed.request(name);
        });
    std::size_t most = 0;
    while (times->count() < threadCount * exchanges)
        most = std::max(most, times->running().size());
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(most <= threadCount);
    QVERIFY(times->running().empty());
    QCOMPARE(times->slowerThan(-1ms).value(0).count, quint64(threadCount * exchanges));
}

/// The simulation, which answers at once, is the fastest backend there is. The bound is wide, for a busy machine.
void TestTimedBackend::costsLittle()
{
    constexpr int exchanges = 20000;
    ExchangeTimes times;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < exchanges; ++i)
        times.end(times.begin(name));
    const auto each = (std::chrono::steady_clock::now() - start) / exchanges;
    QVERIFY2(each < 20us, qPrintable(QString::number(each.count())));
}

QTEST_APPLESS_MAIN(TestTimedBackend)
#include "tst_timedbackend.moc"
