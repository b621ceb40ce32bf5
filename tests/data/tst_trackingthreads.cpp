// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include <QtTest>

#include <algorithm>
#include <thread>
#include <type_traits>

namespace {

template<typename Use> constexpr bool compiles(Use)
{
    return std::is_invocable_v<Use, TrackingData &>;
}

// What the lock guards can't be named without it.
static_assert(compiles([](auto &data) -> decltype(data.lock()->absentSensorRows) { return {}; }));
static_assert(!compiles([](auto &data) -> decltype(data.absentSensorRows) { return {}; }));
static_assert(!compiles([](auto &data) -> decltype(data.bodyRecords) { return {}; }));
static_assert(!compiles([](auto &data) -> decltype(data.markerRecords) { return {}; }));
static_assert(!compiles([](auto &data) -> decltype(data.stores) { return {}; }));
static_assert(!compiles([](auto &data) -> decltype(data.dataMutex.lock()) { return; }));
static_assert(!std::is_copy_constructible_v<TrackingData::Locked>);

constexpr int bodyCount = 5;
constexpr int enoughLines = 3000;
constexpr int enoughLooks = 3000;
constexpr int mostMarkers = 300;
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

QByteArrayList linesOfFrame(int frame)
{
    return {lineOfFrame("6d", frame), lineOfFrame("6di", frame), lineOfFrame("3d", frame)};
}

/// All markers there may be, and none: the store grows and shrinks as much as it can.
QByteArrayList manyMarkersAndNone(int /*frame*/)
{
    return {"3d 300" + QByteArray(" [1 1] [1 1 1]").repeated(mostMarkers), "3d 0"};
}

/// Lines from one thread, at work until stopped; counts what became of them.
class Feeder {
public:
    Feeder(TrackingData &data, QByteArrayList (*linesOf)(int frame))
        : thread([this, &data, linesOf] { feed(data, linesOf); })
    {
    }
    ~Feeder()
    {
        stop = true;
        thread.join();
        qInfo("%d lines stored, %d dropped", stored + firstBodies, dropped.load());
    }
    Q_DISABLE_COPY_MOVE(Feeder)

    /// For a thread that must not meet the feeder's otherwise: synchronizes nothing.
    bool hasStored(int lines) const { return stored.load(std::memory_order_relaxed) >= lines; }

    std::atomic<int> stored{0};
    std::atomic<int> firstBodies{0};
    std::atomic<int> dropped{0};
    std::atomic<int> malformed{0};

private:
    void feed(TrackingData &data, QByteArrayList (*linesOf)(int frame))
    {
        for (int frame = 1; !stop; frame = frame % 10000 + 1) {
            for (const QByteArray &line : linesOf(frame)) {
                count(data.receive(line.left(line.indexOf(' ')).constData(), line.constData()));
                std::this_thread::yield();
            }
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
bool showsOneFrame(const Stores &stores)
{
    for (const BodyRecord &body : stores.bodyRecords) {
        const float frame = stores.bodyRecords.front().quality;
        const auto isOfFrame = [frame](float number) { return number == frame; };
        if (!isOfFrame(body.quality) || !std::all_of(body.position.begin(), body.position.end(), isOfFrame)
            || !std::all_of(body.rotation.begin(), body.rotation.end(), isOfFrame))
            return false;
    }
    for (const std::unique_ptr<MarkerRecord> &marker : stores.markerRecords) {
        const float frame = stores.markerRecords.front()->quality;
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
    void absentRowsChangeWhileLinesAreRead();
    void markersAreCountedWhileTheyComeAndGo();
};

void TrackingThreadsTest::aReaderSeesWholeFrames()
{
    TrackingData data;
    Feeder feeder(data, linesOfFrame);
    int fullLooks = 0;
    while (fullLooks < enoughLooks || feeder.stored < enoughLines) {
        {
            const TrackingData::Locked stores = data.lock();
            QVERIFY(showsOneFrame(*stores));
            fullLooks += stores->bodyRecords.size() == bodyCount && stores->markerRecords.size() == bodyCount;
            for (BodyRecord &body : stores->bodyRecords)
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
    Feeder feeder(data, linesOfFrame);
    while (feeder.stored < enoughLines || feeder.firstBodies < 100 || resets < 100) {
        data.lock()->absentSensorRows.clear();
        data.clearBodies();
        data.useInertialFormat = configurations % 2 == 0;
        data.lock()->absentSensorRows.append(absentRow);
        data.configured = true;
        ++configurations;
        for (int look = 0; look < 20; ++look) {
            QVERIFY(showsOneFrame(*data.lock()));
            resets += data.sensorScheduleReset.exchange(false);
            std::this_thread::yield();
        }
        if (configurations % 8 == 0)
            data.clear();
    }
    QVERIFY(feeder.firstBodies <= configurations);
    QCOMPARE(feeder.malformed.load(), 0);
    qInfo("%d configurations", configurations);
}

// The next two do nothing else than what they are named after: whatever else two threads share brings an order between
// them, which hides a missing lock from the thread sanitizer in most runs.

void TrackingThreadsTest::absentRowsChangeWhileLinesAreRead()
{
    TrackingData data;
    data.useInertialFormat = true;
    Feeder feeder(data, linesOfFrame);
    int changes = 0;
    for (; !feeder.hasStored(enoughLines); ++changes) {
        {
            const TrackingData::Locked stores = data.lock();
            if (stores->absentSensorRows.size() > 20)
                stores->absentSensorRows.clear();
            else
                stores->absentSensorRows.append(absentRow);
        }
        std::this_thread::yield();
    }
    QVERIFY(data.sensorScheduleReset);
    QCOMPARE(feeder.malformed.load(), 0);
    qInfo("%d changes", changes);
}

void TrackingThreadsTest::markersAreCountedWhileTheyComeAndGo()
{
    TrackingData data;
    Feeder feeder(data, manyMarkersAndNone);
    std::array<int, 2> looks{}; // at no markers, and at all of them
    while (!feeder.hasStored(enoughLines) || looks[0] < 100 || looks[1] < 100) {
        const std::size_t count = data.lock()->markerRecords.size();
        QVERIFY2(count == 0 || count == mostMarkers, qPrintable(QString::number(count)));
        ++looks[count == 0 ? 0 : 1];
        std::this_thread::yield();
    }
    QCOMPARE(feeder.malformed.load(), 0);
    qInfo("%d looks at none, %d at all", looks[0], looks[1]);
}

QTEST_APPLESS_MAIN(TrackingThreadsTest)

#include "tst_trackingthreads.moc"
