// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/display/panelbench.h"
#include "tests/endurance/amounts.h"
#include "tests/endurance/failingheap.h"

#include <QLoggingCategory>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <functional>
#include <limits>
#include <new>
#include <thread>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr long always = std::numeric_limits<long>::max();

QByteArray bodyLine(bool inertial, int count)
{
    QByteArray line = (inertial ? "6di " : "6d ") + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += bodyText(i, inertial ? "2" : "", "1.0", inertial ? "1 2 3" : "1 2 3 0 0 0");
    return line;
}

QByteArray markerLine(int count)
{
    QByteArray line = "3d " + QByteArray::number(count);
    for (int i = 0; i < count; ++i)
        line += "[" + QByteArray::number(i) + " 1.0][1 2 3]";
    return line;
}

struct Outcome {
    int result = 1;
    long allocations = 0;
};

/// Delivers a line on a thread of its own, whose allocations from number \a first to \a last fail.
Outcome deliver(DataDisplay &panel, const char *tag, const QByteArray &line, long first = 0, long last = 0)
{
    Outcome outcome;
    std::thread([&] {
        const FailingHeap heap(first, last);
        outcome.result = panel.processOutput(tag, line.constData());
        outcome.allocations = FailingHeap::count();
    }).join();
    return outcome;
}

quint64 accounted(const DataDisplay &panel)
{
    return panel.storedLines() + panel.droppedLines() + panel.ignoredLines();
}

enum Stage : int { Preparing, Struck, DataThread, Done };

/// Lets \a act run into the failure of its \a k-th allocation in a process of its own, as Qt may not survive that, and
/// then a line arrive. Returns how far it came, and in \a allocations what \a act took in all.
Stage strike(PanelBench &bench, const std::function<void()> &act, long k, long *allocations)
{
    struct Shared {
        volatile Stage stage;
        volatile long allocations;
    };
    void *const memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto *const shared = new (memory) Shared{Preparing, 0};
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(20);
        for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE})
            std::signal(signal, SIG_DFL); // not Qt Test's long report
        std::fclose(stdout);
        std::fclose(stderr);
        shared->stage = Struck;
        try {
            const FailingHeap heap(k, k);
            act();
            shared->allocations = FailingHeap::count();
        } catch (const std::bad_alloc &) {
            shared->allocations = k; // thrown to whoever runs the event loop, and no crash
        }
        shared->stage = DataThread;
        const quint64 stored = bench.panel->storedLines();
        const bool taken = deliver(*bench.panel, "6di", bodyLine(true, 4)).result == 0
            && deliver(*bench.panel, "3d", markerLine(4)).result == 0 && bench.panel->storedLines() == stored + 2;
        if (taken)
            shared->stage = Done;
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    const Stage stage = shared->stage;
    *allocations = shared->allocations;
    ::munmap(memory, sizeof(Shared));
    return stage;
}

} // namespace

/// The heap is exhausted, for one allocation or from it on, at every allocation there is.
class TestAllocation : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void line_data();
    void line();
    void guiThread_data();
    void guiThread();
};

void TestAllocation::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestAllocation::line_data()
{
    QTest::addColumn<bool>("inertial");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("first"); // after the configuration
    QTest::newRow("the store of bodies is made")
        << true << QByteArray("6di") << QByteArray() << bodyLine(true, 4) << false;
    QTest::newRow("the store of bodies grows")
        << true << QByteArray("6di") << bodyLine(true, 4) << bodyLine(true, 50) << false;
    QTest::newRow("the store of bodies grows, plain format")
        << false << QByteArray("6d") << bodyLine(false, 4) << bodyLine(false, 50) << false;
#if !defined(__SANITIZE_ADDRESS__) // Qt keeps a reference for good when it can't allocate a queued signal's event
    QTest::newRow("the first bodies of a configuration")
        << true << QByteArray("6di") << QByteArray() << bodyLine(true, 4) << true;
#endif
    QTest::newRow("the store of markers is made")
        << true << QByteArray("3d") << QByteArray() << markerLine(20) << false;
    QTest::newRow("the store of markers grows")
        << true << QByteArray("3d") << markerLine(20) << markerLine(300) << false;
    QTest::newRow("the store of markers shrinks")
        << true << QByteArray("3d") << markerLine(300) << markerLine(20) << false;
    QTest::newRow("a line that is malformed")
        << true << QByteArray("6di") << bodyLine(true, 4) << bodyLine(true, 9).chopped(3) << false;
}

void TestAllocation::line()
{
    QFETCH(const bool, inertial);
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, line);
    QFETCH(const bool, first);
    PanelBench bench;
    bench.answerBodies(4);
    bench.answer("standard fixed_angle_present", inertial ? "false" : "true");
    bench.createConfiguredPanel();
    const QByteArray bodyTag = inertial ? "6di" : "6d";

    for (const bool fromThenOn : {false, true}) {
        for (long k = 1;; ++k) {
            bench.panel->clearData();
            bench.panel->configurationChanged();
            if (!first)
                QCOMPARE(deliver(*bench.panel, bodyTag, bodyLine(inertial, 0)).result, 0);
            if (!before.isEmpty())
                QCOMPARE(deliver(*bench.panel, tag, before).result, 0);
            QCoreApplication::processEvents();
            const quint64 sumBefore = accounted(*bench.panel);
            const quint64 storedBefore = bench.panel->storedLines();
            const Outcome outcome = deliver(*bench.panel, tag, line, k, fromThenOn ? always : k);
            const bool isStruck = outcome.allocations >= k;
            if (!isStruck) {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
                QVERIFY(k > 1); // there is at least the copy of the line
#endif
                break;
            }
            QVERIFY(outcome.result == 0 || outcome.result == -1);
            const auto refused = static_cast<quint64>(outcome.result == -1 ? 1 : 0);
            QCOMPARE(accounted(*bench.panel) + refused, sumBefore + 1);

            const quint64 stored = bench.panel->storedLines();
            QVERIFY(stored <= storedBefore + 1);
            const QByteArray place = QByteArray::number(qlonglong{10 + k});
            const QByteArray body = "[0" + QByteArray(inertial ? " 2" : "") + " 1.0][" + place
                + (inertial ? " 2 3]" : " 2 3 0 0 0]") + "[1 0 0 0 1 0 0 0 1]";
            QCOMPARE(deliver(*bench.panel, bodyTag, bodyTag + " 1 " + body).result, 0);
            QCOMPARE(deliver(*bench.panel, "3d", "3d 1 [7 1.0][" + place + " 2 3]").result, 0);
            QCOMPARE(bench.panel->storedLines(), stored + 2); // so that the lock is free
            bench.panel->updateView6d();
            bench.panel->updateView3d();
            QCOMPARE(bench.text(0, XColumn), QString::fromLatin1(place + ".00"));
            QCOMPARE(bench.table3d().rowCount(), 1);
            QCOMPARE(bench.table3d().item(0, 1)->text(), QString::fromLatin1(place + ".00"));
        }
    }
}

void TestAllocation::guiThread_data()
{
    QTest::addColumn<QByteArray>("action");
    for (const char *const action : {"redraw", "configuration", "clearing", "sensor pass"})
        QTest::newRow(action) << QByteArray(action);
}

/// Whatever the GUI thread runs into, the data thread's calls come back and find the lock free.
void TestAllocation::guiThread()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("The sanitizers' heap can't be made to fail, and they survive no fork of a process with threads.");
#endif
    QFETCH(const QByteArray, action);
    PanelBench bench;
    bench.answerBodies(4);
    bench.answerSensors({1, 2});
    bench.createConfiguredPanel();
    deliver(*bench.panel, "6di", bodyLine(true, 4));
    deliver(*bench.panel, "3d", markerLine(20));
    const std::function<void()> act = [&] {
        if (action == "redraw") {
            bench.panel->updateView6d();
            bench.panel->updateView3d();
        } else if (action == "configuration") {
            bench.panel->configurationChanged();
        } else if (action == "clearing") {
            bench.panel->clearData();
        } else {
            bench.panel->timerUpdateInertialSensorInfo();
        }
    };
    long all = 0;
    QCOMPARE(strike(bench, act, always, &all), Done);
    QVERIFY(all > 0);
    const long stride = isLongRun() ? 1 : qMax(1L, all / 25);
    const TimeLimit limit(4'000);
    long struck = 0;
    long crashedInside = 0;
    for (long k = 1; k <= all && !limit.isOver(); k += stride) {
        ++struck;
        long ignored = 0;
        const Stage stage = strike(bench, act, k, &ignored);
        QVERIFY2(stage != DataThread, qPrintable(QStringLiteral("allocation %1: the line was not taken").arg(k)));
        if (stage == Struck)
            ++crashedInside;
    }
    qInfo("%ld of %ld allocations failed; %ld ended the GUI thread's own call", struck, all, crashedInside);
    QVERIFY(crashedInside < struck); // else nothing was seen of the data thread
}

QTEST_MAIN(TestAllocation)
#include "tst_allocation.moc"
