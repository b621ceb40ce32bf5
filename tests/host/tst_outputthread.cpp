// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/linesink.h"
#include "host/outputthread.h"
#include "tests/host/fakestream.h"

#include <QTest>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

using namespace backend;
using namespace host;

/// Notes the lines that it gets, and its name in a list that it shares with others.
class NotingSink : public LineSink {
public:
    explicit NotingSink(QString name = {}, QStringList *order = nullptr)
        : name(std::move(name))
        , order(order)
    {
    }

    void receive(const ReceivedLine &line) override
    {
        if (onLine)
            onLine();
        const std::lock_guard lock(mutex);
        seen.push_back(line);
        if (order)
            order->append(name + QString::fromLatin1(line.line.text));
    }
    std::vector<ReceivedLine> lines() const
    {
        const std::lock_guard lock(mutex);
        return seen;
    }
    quint64 count() const { return lines().size(); }

    std::function<void()> onLine; // on the data thread

private:
    const QString name;
    QStringList *order = nullptr;
    mutable std::mutex mutex; // guards the next
    std::vector<ReceivedLine> seen;
};

class OutputThreadTest : public QObject {
    Q_OBJECT

private slots:
    void handsOutEachLineAsItWasReceived();
    void handsEachLineToAllSinksInTheirOrder();
    void handsOutNothingAfterTheStop();
    void handsOutWhatHasComeBeforeItStops();
    void stopsWhileItWaits();
    void changesTheStreamWhileItRuns();
};

void OutputThreadTest::handsOutEachLineAsItWasReceived()
{
    FakeStream stream;
    NotingSink sink;
    OutputThread output(sink);
    output.start(stream);
    for (quint64 i = 0; i < 1000; ++i)
        stream.put({{"6d", QByteArray::number(i)}, std::chrono::nanoseconds(7 * i), 3 * i});
    QTRY_COMPARE(sink.count(), 1000U);
    const std::vector<ReceivedLine> lines = sink.lines();
    for (quint64 i = 0; i < 1000; ++i) {
        QCOMPARE(lines[i].line.tag, QByteArray("6d"));
        QCOMPARE(lines[i].line.text, QByteArray::number(i));
        QCOMPARE(lines[i].time, std::chrono::nanoseconds(7 * i));
        QCOMPARE(lines[i].sequence, 3 * i);
    }
    QCOMPARE(output.received(), 1000U);
}

void OutputThreadTest::handsEachLineToAllSinksInTheirOrder()
{
    QStringList order;
    NotingSink last(QStringLiteral("last"), &order);
    NotingSink first(QStringLiteral("first"), &order);
    NotingSink second(QStringLiteral("second"), &order);
    FakeStream stream;
    OutputThread output(last);
    output.addSink(first);
    output.addSink(second);
    output.start(stream);
    stream.put("6d", "1");
    stream.put("3d", "2");
    QTRY_COMPARE(last.count(), 2U);
    output.stop();
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("first1 second1 last1 first2 second2 last2"));
    QCOMPARE(output.received(), 2U);
}

void OutputThreadTest::handsOutNothingAfterTheStop()
{
    FakeStream stream;
    NotingSink sink;
    OutputThread output(sink);
    output.stop();
    for (int round = 0; round < 20; ++round) {
        output.start(stream);
        const quint64 before = sink.count();
        stream.put("6d", "6d 0");
        QTRY_COMPARE(sink.count(), before + 1);
        output.stop();
        stream.put("6d", "6d 0");
        QCOMPARE(sink.count(), before + 1);
        QCOMPARE(output.received(), before + 1);
        stream.take({});
    }
}

void OutputThreadTest::handsOutWhatHasComeBeforeItStops()
{
    FakeStream stream;
    NotingSink sink;
    std::atomic<bool> isBlocked{true};
    std::atomic<bool> isReached{false};
    sink.onLine = [&] {
        isReached = true;
        while (isBlocked)
            std::this_thread::yield();
    };
    for (int i = 0; i < 100; ++i)
        stream.put("6d", "6d 0"); // all in one take
    OutputThread output(sink);
    output.start(stream);
    QTRY_VERIFY(isReached);
    for (int i = 0; i < 10; ++i)
        stream.put("6d", "6d 0"); // they wait for the next
    std::thread release([&isBlocked] { isBlocked = false; });
    output.stop();
    release.join();
    QCOMPARE(sink.count(), 110U);
    QCOMPARE(output.received(), 110U);
}

void OutputThreadTest::stopsWhileItWaits()
{
    FakeStream stream;
    NotingSink sink;
    OutputThread output(sink);
    const auto begin = LineStream::Clock::now();
    for (int round = 0; round < 50; ++round) {
        output.start(stream);
        output.stop();
    }
    QVERIFY(LineStream::Clock::now() - begin < std::chrono::seconds(30)); // each wait may last for ten
    QCOMPARE(sink.count(), 0U);
}

void OutputThreadTest::changesTheStreamWhileItRuns()
{
    NotingSink sink;
    FakeStream second;
    auto first = std::make_unique<FakeStream>();
    OutputThread output(sink);
    output.start(*first);
    first->put("6d", "first");
    QTRY_COMPARE(sink.count(), 1U);
    output.start(second);
    first.reset(); // the thread has let go of it
    second.put("6d", "second");
    QTRY_COMPARE(sink.count(), 2U);
    QCOMPARE(sink.lines().back().line.text, QByteArray("second"));
}

QTEST_GUILESS_MAIN(OutputThreadTest)
#include "tst_outputthread.moc"
