// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "tests/support/heap.h"

#include <QtTest>

namespace {

const QByteArray body = QByteArrayLiteral(" [7 1 0.5] [1 2 3] [1 2 3 4 5 6 7 8 9]");
const QByteArray hugeFrame = QByteArrayLiteral("6di 1000000 [0 2 1]");

QByteArray frameOf(int count)
{
    return "6di " + QByteArray::number(count) + body.repeated(count);
}

std::size_t capacityOf(TrackingData &data)
{
    return data.lock()->bodyRecords.capacity();
}

} // namespace

/// How long the stores keep the memory of a frame.
class StoreMemoryTest : public QObject {
    Q_OBJECT

private slots:
    void aHugeFrameGivesItsMemoryBack_data();
    void aHugeFrameGivesItsMemoryBack();
    void clearingGivesAllMemoryBack();
    void framesThatVaryAllocateNothing();
    void recordsSurviveTheReturn();
};

void StoreMemoryTest::aHugeFrameGivesItsMemoryBack_data()
{
    QTest::addColumn<int>("announced");
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<int>("room");
    const auto row = [](const char *name, int announced, const QByteArray &next, int room) {
        QTest::newRow(name) << announced << next << room;
    };
    row("a million, to the next frame", 1000000, frameOf(1), 1);
    row("a million, to a frame of 200", 1000000, frameOf(200), 200);
    row("a million, to a frame of none", 1000000, "6di 0", 0);
    row("a million, to a frame with a fault", 1000000, "6di 3 [1", 3);
    row("a million, to a frame of less than a quarter", 1000000, "6di 249999", 249999);
    row("a million, kept for a frame of a quarter", 1000000, "6di 250000", 1000000);
    row("a million, kept by a line without a count", 1000000, "6di ", 1000000);
    row("a little more than usual, to the next frame", 1001, frameOf(1), 1);
    row("as much as is kept anyway", 1000, frameOf(1), 1000);
}

void StoreMemoryTest::aHugeFrameGivesItsMemoryBack()
{
    QFETCH(const int, announced);
    QFETCH(const QByteArray, next);
    QFETCH(const int, room);
    TrackingData data;
    data.useInertialFormat = true;
    const QByteArray announcement = "6di " + QByteArray::number(announced) + " [0 2 1]";
    QCOMPARE(data.receive("6di", announcement.constData()), LineOutcome::Malformed);
    QCOMPARE(capacityOf(data), static_cast<std::size_t>(announced));
    data.receive("6di", next.constData());
    QCOMPARE(capacityOf(data), static_cast<std::size_t>(room));
}

void StoreMemoryTest::clearingGivesAllMemoryBack()
{
    TrackingData data;
    data.useInertialFormat = true;
    data.receive("6di", hugeFrame.constData());
    data.clearBodies();
    QCOMPARE(capacityOf(data), std::size_t(0));
    data.receive("6di", hugeFrame.constData());
    data.receive("3d", "3d 300");
    data.clear();
    QCOMPARE(capacityOf(data), std::size_t(0));
    QCOMPARE(data.lock()->markerRecords.capacity(), std::size_t(0));
}

void StoreMemoryTest::framesThatVaryAllocateNothing()
{
    TrackingData data;
    data.useInertialFormat = true;
    const std::array<QByteArray, 5> frames{frameOf(1000), frameOf(1), QByteArray("6di 0"), frameOf(200), frameOf(2)};
    const quint64 atStart = allocationCount();
    data.receive("6di", frames[0].constData());
    QVERIFY2(allocationCount() > atStart, "The allocations are not counted.");
    const quint64 before = allocationCount();
    for (int round = 0; round < 20; ++round) {
        for (const QByteArray &frame : frames)
            QCOMPARE(data.receive("6di", frame.constData()), LineOutcome::Stored);
    }
    QCOMPARE(allocationCount(), before);
}

void StoreMemoryTest::recordsSurviveTheReturn()
{
    TrackingData data;
    data.useInertialFormat = true;
    data.receive("6di", frameOf(2).constData());
    data.receive("6di", hugeFrame.constData());
    data.receive("6di", "6di 2");
    const TrackingData::Locked stores = data.lock();
    QCOMPARE(stores->bodyRecords.size(), std::size_t(2));
    QCOMPARE(stores->bodyRecords[0].id, 0); // of the huge frame's only block
    QCOMPARE(stores->bodyRecords[0].position, (std::array<float, 3>{1, 2, 3}));
    QCOMPARE(stores->bodyRecords[1].id, 7);
    QCOMPARE(stores->bodyRecords[1].quality, -1.0F);
    QCOMPARE(stores->bodyRecords[1].rotation[8], 9.0F);
}

QTEST_APPLESS_MAIN(StoreMemoryTest)

#include "tst_storememory.moc"
