// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include <QtTest>

#include <algorithm>
#include <mutex>
#include <thread>

namespace {

constexpr int bodyCount = 5;
constexpr int enoughLines = 3000;
constexpr int enoughLooks = 3000;
constexpr qint32 absentRow = 2;

/// A line of type \a tag in which every number but the ids is \a frame.
QByteArray lineOfFrame(const QByteArray &tag, int frame)
{
    const QByteArray number = QByteArray::number(frame) + ' ';
    QByteArray line = tag + ' ' + QByteArray::number(bodyCount);
    for (int i = 0; i < bodyCount; ++i) {
        const QByteArray id = " [" + QByteArray::number(i) + ' ';
        if (tag == "6d")
            line += id + number + "] [" + number.repeated(6) + "] [" + number.repeated(9) + ']';
        else if (tag == "6di")
            line += id + "1 " + number + "] [" + number.repeated(3) + "] [" + number.repeated(9) + ']';
        else
            line += id + number + "] [" + number.repeated(3) + ']';
    }
    return line;
}

/// Lines from one thread, at work until stopped; counts what became of them.
class Feeder {
public:
    explicit Feeder(TrackingData &data)
        : thread([this, &data] { feed(data); })
    {
    }
    ~Feeder()
    {
        stop = true;
        thread.join();
    }
    Q_DISABLE_COPY_MOVE(Feeder)

    std::atomic<int> stored{0};
    std::atomic<int> firstBodies{0};
    std::atomic<int> dropped{0};
    std::atomic<int> malformed{0};

private:
    void feed(TrackingData &data)
    {
        const std::array<QByteArray, 3> tags{"6d", "6di", "3d"};
        for (int frame = 1; !stop; frame = frame % 10000 + 1) {
            for (const QByteArray &tag : tags) {
                QByteArray line = lineOfFrame(tag, frame);
                count(data.receive(tag.constData(), line.data()));
            }
            std::this_thread::yield();
        }
    }
    void count(LineOutcome outcome)
    {
        stored += outcome == LineOutcome::Stored;
        firstBodies += outcome == LineOutcome::StoredFirstBodies;
        dropped += outcome == LineOutcome::Dropped;
        malformed += outcome == LineOutcome::Malformed;
    }

    std::atomic<bool> stop{false};
    std::thread thread; // last, so that it starts when everything it uses is there
};

/// True if all numbers of the records are of one frame.
bool showsOneFrame(const TrackingData &data)
{
    for (const BodyRecord &body : data.bodyRecords) {
        const float frame = data.bodyRecords.front().quality;
        const auto isOfFrame = [frame](float number) { return number == frame; };
        if (!isOfFrame(body.quality) || !std::all_of(body.position.begin(), body.position.end(), isOfFrame)
            || !std::all_of(body.rotation.begin(), body.rotation.end(), isOfFrame))
            return false;
    }
    for (const std::unique_ptr<MarkerRecord> &marker : data.markerRecords) {
        const float frame = data.markerRecords.front()->quality;
        const auto isOfFrame = [frame](float number) { return number == frame; };
        if (!isOfFrame(marker->quality) || !std::all_of(marker->position.begin(), marker->position.end(), isOfFrame))
            return false;
    }
    return true;
}

} // namespace

class TrackingThreadsTest : public QObject {
    Q_OBJECT

private slots:
    void aReaderSeesWholeFrames();
    void configurationsAndLinesMeet();
};

void TrackingThreadsTest::aReaderSeesWholeFrames()
{
    TrackingData data;
    Feeder feeder(data);
    int fullLooks = 0;
    while (fullLooks < enoughLooks || feeder.stored < enoughLines) {
        {
            const std::lock_guard lock(data.dataMutex);
            QVERIFY(showsOneFrame(data));
            fullLooks += data.bodyRecords.size() == bodyCount && data.markerRecords.size() == bodyCount;
            for (BodyRecord &body : data.bodyRecords)
                body.angles = {1, 2, 3};
        }
        std::this_thread::yield();
    }
    QCOMPARE(feeder.malformed.load(), 0);
    QCOMPARE(feeder.firstBodies.load(), 0);
}

void TrackingThreadsTest::configurationsAndLinesMeet()
{
    TrackingData data;
    int configurations = 0;
    int resets = 0;
    Feeder feeder(data);
    while (feeder.stored < enoughLines || feeder.firstBodies < 100 || resets < 100) {
        data.clearAbsentSensorRows();
        data.clearBodies();
        data.useInertialFormat = configurations % 2 == 0;
        data.addAbsentSensorRow(absentRow);
        data.configured = true;
        ++configurations;
        for (int look = 0; look < 20; ++look) {
            {
                const std::lock_guard lock(data.dataMutex);
                QVERIFY(showsOneFrame(data));
            }
            resets += data.sensorScheduleReset.exchange(false);
            std::this_thread::yield();
        }
        if (configurations % 8 == 0)
            data.clear();
    }
    QVERIFY(feeder.firstBodies <= configurations);
    QCOMPARE(feeder.malformed.load(), 0);
}

QTEST_APPLESS_MAIN(TrackingThreadsTest)

#include "tst_trackingthreads.moc"
