// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/receivequeue.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace backend;

using namespace std::chrono_literals;

namespace {

using Clock = LineStream::Clock;

ReceivedLine lineAt(std::chrono::nanoseconds time, int size = 10)
{
    static quint64 sequence = 0;
    return {{QByteArrayLiteral("6d"), QByteArray(size, 'x')}, time, sequence++};
}

QVector<ReceivedLine> takeAll(ReceiveQueue *queue)
{
    return queue->take(Clock::now());
}

} // namespace

class TestReceiveQueue : public QObject {
    Q_OBJECT

private slots:
    void givesLinesInTheirOrder();
    void holdsASecondOfLines();
    void holdsSoManyBytes_data();
    void holdsSoManyBytes();
    void keepsASingleLineWhateverItsSize();
    void countsWhatIsCleared();
    void waitsForALine();
    void isWokenOnce();
    void isFinishedOnceAllIsTaken();
    void accountsForEveryLineBetweenThreads();
};

void TestReceiveQueue::givesLinesInTheirOrder()
{
    ReceiveQueue queue;
    for (int i = 0; i < 100; ++i)
        queue.push(lineAt(i * 1ms));
    const QVector<ReceivedLine> lines = takeAll(&queue);
    QCOMPARE(lines.size(), 100);
    for (int i = 1; i < 100; ++i)
        QCOMPARE(lines[i].sequence, lines[i - 1].sequence + 1);
    QVERIFY(takeAll(&queue).isEmpty());
    QCOMPARE(queue.late(), 0U);
}

void TestReceiveQueue::holdsASecondOfLines()
{
    ReceiveQueue queue;
    for (int i = 0; i <= 2500; ++i)
        queue.push(lineAt(i * 1ms));
    const QVector<ReceivedLine> lines = takeAll(&queue);
    QCOMPARE(lines.size(), 1001); // the second and its ends
    QCOMPARE(lines.first().time, std::chrono::nanoseconds(1500ms));
    QCOMPARE(lines.last().time, std::chrono::nanoseconds(2500ms));
    QCOMPARE(queue.late(), 1500U);

    queue.push(lineAt(10s));
    queue.push(lineAt(20s)); // after a silence the newest alone
    QCOMPARE(takeAll(&queue).size(), 1);
    QCOMPARE(queue.late(), 1501U);
}

void TestReceiveQueue::holdsSoManyBytes_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("of the longest lines") << 1024 * 1024;
    QTest::newRow("of usual lines") << 8000;
    QTest::newRow("of the shortest lines, whose text is the least of it") << 2;
}

void TestReceiveQueue::holdsSoManyBytes()
{
    QFETCH(const int, size);
    ReceiveQueue queue;
    constexpr auto most = static_cast<quint64>(ReceiveQueue::mostBytes);
    const quint64 pushed = most / static_cast<quint64>(size) + 1000;
    for (quint64 i = 0; i < pushed; ++i)
        queue.push(lineAt(5s, size));
    const auto kept = static_cast<quint64>(takeAll(&queue).size());
    QCOMPARE(kept + queue.late(), pushed);
    QVERIFY(kept * static_cast<quint64>(size) <= most);
    QVERIFY(kept * (sizeof(ReceivedLine) + static_cast<quint64>(size)) <= most);
    QVERIFY(kept * static_cast<quint64>(size + 200) > most - 1024 * 1024 - 200);
    queue.push(lineAt(5s, size));
    QCOMPARE(takeAll(&queue).size(), 1); // there is room again
}

void TestReceiveQueue::keepsASingleLineWhateverItsSize()
{
    ReceiveQueue queue;
    queue.push(lineAt(1s, 9'000'000));
    QCOMPARE(takeAll(&queue).size(), 1);
    QCOMPARE(queue.late(), 0U);
}

void TestReceiveQueue::countsWhatIsCleared()
{
    ReceiveQueue queue;
    queue.push(lineAt(1s));
    queue.push(lineAt(1s));
    queue.clear();
    QVERIFY(takeAll(&queue).isEmpty());
    QCOMPARE(queue.late(), 2U);
}

void TestReceiveQueue::waitsForALine()
{
    ReceiveQueue queue;
    const auto deadline = Clock::now() + 20ms;
    QVERIFY(queue.take(deadline).isEmpty());
    QVERIFY(Clock::now() >= deadline);

    std::thread pusher([&queue] {
        std::this_thread::sleep_for(20ms);
        queue.push(lineAt(1s));
    });
    const QVector<ReceivedLine> lines = queue.take(Clock::now() + 60s);
    pusher.join();
    QCOMPARE(lines.size(), 1);
}

void TestReceiveQueue::isWokenOnce()
{
    ReceiveQueue queue;
    queue.wake();
    const auto begin = Clock::now();
    QVERIFY(queue.take(begin + 60s).isEmpty());
    QVERIFY(Clock::now() < begin + 60s);
    const auto deadline = Clock::now() + 20ms;
    QVERIFY(queue.take(deadline).isEmpty());
    QVERIFY(Clock::now() >= deadline);
}

void TestReceiveQueue::isFinishedOnceAllIsTaken()
{
    ReceiveQueue queue;
    QVERIFY(!queue.isFinished());
    queue.push(lineAt(1s));
    queue.finish();
    QVERIFY(!queue.isFinished());
    takeAll(&queue);
    QVERIFY(queue.isFinished());
}

void TestReceiveQueue::accountsForEveryLineBetweenThreads()
{
    constexpr quint64 pushed = 200'000;
    ReceiveQueue queue;
    std::atomic<bool> isDone{false};
    std::thread pusher([&] {
        for (quint64 i = 0; i < pushed; ++i)
            queue.push({{QByteArrayLiteral("3d"), QByteArrayLiteral("3d 0")}, std::chrono::nanoseconds(i * 100us), i});
        queue.finish();
        isDone = true;
    });
    quint64 taken = 0;
    quint64 missing = 0;
    quint64 next = 0;
    while (!isDone || !queue.isFinished()) {
        for (const ReceivedLine &line : queue.take(Clock::now() + 1ms)) {
            missing += line.sequence - next;
            next = line.sequence + 1;
            ++taken;
        }
    }
    pusher.join();
    QCOMPARE(taken + queue.late(), pushed);
    QCOMPARE(missing, queue.late()); // a gap for each line that went
    QVERIFY(taken > 0);
}

QTEST_APPLESS_MAIN(TestReceiveQueue)
#include "tst_receivequeue.moc"
