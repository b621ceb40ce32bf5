// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/linestream.h"
#include "host/outputsubscriptions.h"
#include "tests/host/fakerequester.h"

#include <QDeadlineTimer>
#include <QTest>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

using namespace backend;
using namespace host;

/// Delivers lines of two tags on a thread of its own, as fast as it can, until it is destroyed.
class Flood {
public:
    explicit Flood(OutputSubscriptions &target)
        : thread([this, &target] {
            while (!stopping) {
                for (const char *tag : {"6d", "3d"})
                    target.deliver({tag, QByteArray(tag) + " 0"});
                ++rounds;
            }
        })
    {
    }
    ~Flood()
    {
        stopping = true;
        thread.join();
    }

    std::atomic<int> rounds{0};

private:
    std::atomic<bool> stopping{false};
    std::thread thread;
};

/// Waits for the other thread without the pauses of QTRY_VERIFY, as there are hundreds of waits.
template<typename Condition> bool comesTrue(Condition condition)
{
    const QDeadlineTimer deadline(30000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::yield();
    }
    return true;
}

class OutputSubscriptionsTest : public QObject {
    Q_OBJECT

private slots:
    void deliversOnlyWhatIsSubscribed();
    void deliversOnceHoweverOftenSubscribed();
    void countsRefusedLines();
    void countsWhatItReceives();
    void countsForEachRegistration();
    void survivesARequesterThatThrows();
    void forgetsTheTagsOfARemovedRequester();
    void callsNoRemovedRequester();
    void sendsNoLineOfATagAfterItsEnd();
    void waitsForTheLineThatIsBeingProcessed();
    void letsARequesterLeaveFromItsOwnLine();
    void skipsARequesterRemovedDuringTheLine();
};

void OutputSubscriptionsTest::deliversOnlyWhatIsSubscribed()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    QVERIFY(!subscriptions.subscribe("3d", &requester));
    subscriptions.add(&requester);
    QCOMPARE(subscriptions.deliver({"3d", "3d 0"}).sent, 0U);
    QVERIFY(subscriptions.subscribe("3d", &requester));
    QByteArray seen;
    requester.onLine = [&](const QByteArray &tag, const QByteArray &line) { seen = tag + '|' + line; };
    QCOMPARE(subscriptions.deliver({"3d", "3d 0"}).sent, 1U);
    QCOMPARE(seen, QByteArray("3d|3d 0"));
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 0U);
    QCOMPARE(subscriptions.deliver({"3di", "3di 0"}).sent, 0U);
    QCOMPARE(requester.lines.load(), 1);
}

void OutputSubscriptionsTest::deliversOnceHoweverOftenSubscribed()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    subscriptions.add(&requester);
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("6d", &requester));
    QVERIFY(subscriptions.subscribe("6d", &requester));
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 1U);
    QCOMPARE(requester.lines.load(), 1);
    subscriptions.unsubscribe("6d", &requester);
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 0U);
    QCOMPARE(subscriptions.all().size(), std::size_t(1));
}

void OutputSubscriptionsTest::countsRefusedLines()
{
    OutputSubscriptions subscriptions;
    FakeRequester good;
    FakeRequester bad;
    bad.result = -1;
    for (FakeRequester *requester : {&good, &bad}) {
        subscriptions.add(requester);
        QVERIFY(subscriptions.subscribe("6d", requester));
    }
    const OutputSubscriptions::Delivered delivered = subscriptions.deliver({"6d", "6d"});
    QCOMPARE(delivered.sent, 2U);
    QCOMPARE(delivered.refused, 1U);
}

void OutputSubscriptionsTest::countsWhatItReceives()
{
    OutputSubscriptions subscriptions;
    FakeRequester taking;
    FakeRequester refusing;
    refusing.result = -1;
    subscriptions.add(&taking);
    subscriptions.add(&refusing);
    subscriptions.receive({{"6d", "6d 0"}, {}, 0});
    QCOMPARE(subscriptions.totals().sent, 1U); // nobody wants it
    QCOMPARE(subscriptions.totals().ignored, 1U);
    QVERIFY(subscriptions.subscribe("6d", &taking));
    subscriptions.receive({{"6d", "6d 0"}, {}, 1});
    QCOMPARE(subscriptions.totals().sent, 2U);
    QVERIFY(subscriptions.subscribe("6d", &refusing));
    for (quint64 i = 2; i < 12; ++i)
        subscriptions.receive({{"6d", "6d 0"}, {}, i});
    QCOMPARE(subscriptions.totals().sent, 22U); // each counts for both
    QCOMPARE(subscriptions.totals().refused, 10U);
    QCOMPARE(subscriptions.totals().ignored, 1U);
    QCOMPARE(taking.lines.load(), 11);
}

void OutputSubscriptionsTest::countsForEachRegistration()
{
    OutputSubscriptions subscriptions;
    FakeRequester first;
    FakeRequester second;
    second.result = -1;
    const auto subscribe = [&subscriptions](FakeRequester *requester) {
        subscriptions.add(requester);
        return subscriptions.subscribe("6d", requester);
    };
    QCOMPARE(subscriptions.registrations(), 0);
    QVERIFY(subscribe(&first));
    QVERIFY(subscribe(&second));
    subscriptions.add(&first); // known
    QCOMPARE(subscriptions.registrations(), 2);
    subscriptions.receive({{"6d", "6d 0"}, {}, 0});
    subscriptions.remove(&first);
    subscriptions.receive({{"6d", "6d 0"}, {}, 1});
    QVERIFY(subscribe(&first));
    QCOMPARE(subscriptions.registrations(), 3);
    subscriptions.receive({{"6d", "6d 0"}, {}, 2});
    subscriptions.receive({{"6d", "6d 0"}, {}, 3});
    QCOMPARE(subscriptions.deliveredTo(0, 1).sent, 1U); // also once it is removed
    QCOMPARE(subscriptions.deliveredTo(0, 1).refused, 0U);
    QCOMPARE(subscriptions.deliveredTo(1, 2).sent, 4U);
    QCOMPARE(subscriptions.deliveredTo(1, 2).refused, 4U);
    QCOMPARE(subscriptions.deliveredTo(2, 3).sent, 2U);
    QCOMPARE(subscriptions.deliveredTo(0, 3).sent, 7U);
    QCOMPARE(subscriptions.deliveredTo(1, 1).sent, 0U);
}

void OutputSubscriptionsTest::survivesARequesterThatThrows()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    requester.onLine = [](const QByteArray &, const QByteArray &) { throw std::runtime_error("thrown"); };
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("6d", &requester));
    const OutputSubscriptions::Delivered delivered = subscriptions.deliver({"6d", "6d"});
    QCOMPARE(delivered.sent, 1U);
    QCOMPARE(delivered.refused, 1U);
    subscriptions.remove(&requester); // does not wait for the line
}

void OutputSubscriptionsTest::forgetsTheTagsOfARemovedRequester()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("6d", &requester));
    subscriptions.remove(&requester);
    subscriptions.remove(&requester);
    QVERIFY(!subscriptions.contains(&requester));
    subscriptions.add(&requester);
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 0U);
}

void OutputSubscriptionsTest::callsNoRemovedRequester()
{
    OutputSubscriptions subscriptions;
    Flood flood(subscriptions);
    int reached = 0;
    for (int round = 0; round < 500; ++round) {
        auto requester = std::make_unique<FakeRequester>(); // deleted with the round: a late call would be seen
        subscriptions.add(requester.get());
        QVERIFY(subscriptions.subscribe("6d", requester.get()));
        QVERIFY(subscriptions.subscribe("3d", requester.get()));
        if (round % 2 == 0)
            QVERIFY(comesTrue([&] { return requester->lines > 0; }));
        subscriptions.remove(requester.get());
        const int entered = requester->entered;
        QCOMPARE(requester->lines.load(), entered);
        const int roundsNow = flood.rounds;
        if (round % 50 == 0) // two whole rounds later there still was no call
            QVERIFY(comesTrue([&] { return flood.rounds > roundsNow + 2; }));
        QCOMPARE(requester->entered.load(), entered);
        reached += entered > 0 ? 1 : 0;
    }
    QVERIFY(reached >= 250);
}

void OutputSubscriptionsTest::sendsNoLineOfATagAfterItsEnd()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    std::atomic<int> lines6d{0};
    requester.onLine = [&](const QByteArray &tag, const QByteArray &) {
        if (tag == "6d")
            ++lines6d;
    };
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("3d", &requester));
    Flood flood(subscriptions);
    for (int round = 0; round < 50; ++round) {
        const int before = lines6d;
        QVERIFY(subscriptions.subscribe("6d", &requester));
        QVERIFY(comesTrue([&] { return lines6d > before; }));
        subscriptions.unsubscribe("6d", &requester);
        const int after = lines6d;
        const int linesNow = requester.lines;
        QVERIFY(comesTrue([&] { return requester.lines > linesNow + 4; })); // the other tag goes on
        QCOMPARE(lines6d.load(), after);
    }
}

void OutputSubscriptionsTest::waitsForTheLineThatIsBeingProcessed()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    std::atomic<bool> inside{false};
    std::atomic<bool> mayLeave{false};
    std::atomic<bool> removed{false};
    std::atomic<bool> removedTooEarly{false};
    requester.onLine = [&](const QByteArray &, const QByteArray &) {
        inside = true;
        while (!mayLeave)
            std::this_thread::yield();
        removedTooEarly = removed.load();
    };
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("6d", &requester));
    std::thread data([&] { subscriptions.deliver({"6d", "6d 0"}); });
    QVERIFY(comesTrue([&] { return inside.load(); }));
    std::thread remover([&] {
        subscriptions.remove(&requester);
        removed = true;
    });
    QVERIFY(comesTrue([&] { return !subscriptions.contains(&requester); })); // it is forgotten, and now waits
    mayLeave = true;
    remover.join();
    data.join();
    QVERIFY(!removedTooEarly);
    QCOMPARE(requester.lines.load(), 1);
}

void OutputSubscriptionsTest::letsARequesterLeaveFromItsOwnLine()
{
    OutputSubscriptions subscriptions;
    FakeRequester requester;
    requester.onLine = [&](const QByteArray &tag, const QByteArray &) {
        subscriptions.unsubscribe(tag, &requester);
        subscriptions.remove(&requester);
    };
    subscriptions.add(&requester);
    QVERIFY(subscriptions.subscribe("6d", &requester));
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 1U);
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 0U);
    QVERIFY(subscriptions.all().empty());
}

void OutputSubscriptionsTest::skipsARequesterRemovedDuringTheLine()
{
    OutputSubscriptions subscriptions;
    FakeRequester first;
    FakeRequester second;
    first.onLine = [&](const QByteArray &, const QByteArray &) { subscriptions.remove(&second); };
    for (FakeRequester *requester : {&first, &second}) {
        subscriptions.add(requester);
        QVERIFY(subscriptions.subscribe("6d", requester));
    }
    QCOMPARE(subscriptions.deliver({"6d", "6d 0"}).sent, 1U);
    QCOMPARE(second.lines.load(), 0);
}

QTEST_GUILESS_MAIN(OutputSubscriptionsTest)
#include "tst_outputsubscriptions.moc"
