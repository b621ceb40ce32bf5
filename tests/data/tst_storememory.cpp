// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "allocationcount.h"

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
    QTest::addColumn<QByteArray>("next");
    QTest::newRow("to the next frame") << frameOf(1);
    QTest::newRow("to a frame of 200 bodies") << frameOf(200);
    QTest::newRow("to a frame of no bodies") << QByteArray("6di 0");
    QTest::newRow("to a frame with a fault") << QByteArray("6di 3 [1");
    QTest::newRow("to a frame of half a hundred thousand") << frameOf(50000);
}

void StoreMemoryTest::aHugeFrameGivesItsMemoryBack()
{
    QFETCH(const QByteArray, next);
    TrackingData data;
    data.useInertialFormat = true;
    QCOMPARE(data.receive("6di", hugeFrame.constData()), LineOutcome::Malformed);
    QVERIFY(capacityOf(data) >= 1000000);
    data.receive("6di", next.constData());
    const std::size_t size = data.lock()->bodyRecords.size();
    QVERIFY2(capacityOf(data) <= 4 * size + 1000, qPrintable(QString::number(capacityOf(data))));
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
