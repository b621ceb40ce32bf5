// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/livelines.h"
#include "bench/lockwatch.h"
#include "bench/naivetables.h"
#include "tests/support/panelfixture.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int tickMilliseconds = 200;
constexpr int runMilliseconds = 75 * tickMilliseconds; // at 1000 lines a second, 15 000 lines to lose some of

/// Times how long what hangs on a timer of this thread, the two redraws, holds the lock.
class TickWatch : public QObject {
public:
    std::vector<double> milliseconds; ///< of each tick

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (busy || event->type() != QEvent::Timer || object->metaObject() != &QTimer::staticMetaObject)
            return false;
        busy = true;
        takeLockedSeconds();
        object->event(event);
        milliseconds.push_back(takeLockedSeconds() * 1000.0);
        busy = false;
        return true;
    }

private:
    bool busy = false;
};

/// Hands lines to \a receive from a thread of its own, 1000 in a second, until it is destroyed.
class LineThread {
public:
    LineThread(int bodies, int markers, std::function<void(const char *, const QByteArray &)> receive)
        : thread([this, bodies, markers, receive = std::move(receive)] {
            LiveLines bodyLines("6di", bodies);
            LiveLines markerLines("3d", markers);
            auto due = Clock::now();
            while (!stop) {
                receive("6di", bodyLines.next());
                due += std::chrono::milliseconds(1);
                std::this_thread::sleep_until(due);
                receive("3d", markerLines.next());
                due += std::chrono::milliseconds(1);
                std::this_thread::sleep_until(due);
            }
        })
    {
    }
    ~LineThread()
    {
        stop = true;
        thread.join();
    }
    LineThread(const LineThread &) = delete;
    LineThread &operator=(const LineThread &) = delete;

private:
    std::atomic<bool> stop{false};
    std::thread thread;
};

void run(benchmark::State &state, int bodies, int markers, bool naive)
{
    PanelFixture fixture;
    fixture.answerBodies(bodies);
    fixture.createConfiguredPanel();
    NaiveTables tables(fixture.table6d(), fixture.table3d());
    tables.data.useInertialFormat = true;
    QWidget &window = naive ? static_cast<QWidget &>(tables) : *fixture.panel;
    if (naive) {
        fixture.panel->clearData(); // and its timer stops
        tables.startTicks();
    }
    window.resize(1100, 900);
    window.show();
    QApplication::processEvents();

    TickWatch watch;
    qApp->installEventFilter(&watch);
    for ([[maybe_unused]] auto iteration : state) {
        const LineThread lines(bodies, markers, [&](const char *tag, const QByteArray &line) {
            if (!naive) {
                fixture.send(tag, line);
                return;
            }
            QByteArray copy(line.constData());
            tables.data.receive(tag, copy.data());
        });
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < runMilliseconds)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    qApp->removeEventFilter(&watch);

    const LineCounts &naiveCounts = tables.data.lineCounts;
    const quint64 stored = naive ? naiveCounts.stored.load() : fixture.panel->storedLines();
    const quint64 dropped = naive ? naiveCounts.dropped.load() : fixture.panel->droppedLines();
    if (watch.milliseconds.empty() || stored == 0) {
        state.SkipWithError("nothing was drawn or stored");
        return;
    }
    // The middle one: a tick that another program interrupts says nothing of us.
    std::sort(watch.milliseconds.begin(), watch.milliseconds.end());
    const double redraw = watch.milliseconds[watch.milliseconds.size() / 2];
    state.counters["locked_percent"] = 100.0 * redraw / tickMilliseconds;
    state.counters["lost_percent"] = 100.0 * static_cast<double>(dropped) / static_cast<double>(stored + dropped);
    state.counters["lines"] = static_cast<double>(stored + dropped);
}

double least(const std::vector<double> &runs)
{
    return *std::min_element(runs.begin(), runs.end());
}

double most(const std::vector<double> &runs)
{
    return *std::max_element(runs.begin(), runs.end());
}

void severalTimes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Iterations(1)->UseRealTime()->ComputeStatistics("least", least)->ComputeStatistics("most", most);
}

BENCHMARK_CAPTURE(run, ours, 50, 100, false)->Name("threads/50+100/ours")->Apply(severalTimes);
BENCHMARK_CAPTURE(run, naive, 50, 100, true)->Name("threads/50+100/naive")->Apply(severalTimes);
BENCHMARK_CAPTURE(run, ours, 200, 300, false)->Name("threads/200+300/ours")->Apply(severalTimes);
BENCHMARK_CAPTURE(run, naive, 200, 300, true)->Name("threads/200+300/naive")->Apply(severalTimes);

} // namespace
