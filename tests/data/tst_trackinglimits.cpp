// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "storetext.h"
#include "tests/support/heap.h"
#include "tests/support/lockstate.h"

#include <QtTest>

#include <future>

namespace {

const QByteArray oneBody = QByteArrayLiteral("6d 1 [7 0.5] [1 2 3 4 5 6] [1 2 3 4 5 6 7 8 9]");
const QByteArray oneMarker = QByteArrayLiteral("3d 1 [7 0.5] [1 2 3]");

/// A "6di" line of one body with the id and state given.
QByteArray inertialLine(int id, int state)
{
    return "6di 1 [" + QByteArray::number(id) + ' ' + QByteArray::number(state) + " 1] [1 2 3] [1 2 3 4 5 6 7 8 9]";
}

QByteArray manyMarkers(int announced, int delivered)
{
    QByteArray line = "3d " + QByteArray::number(announced);
    for (int i = 0; i < delivered; ++i)
        line += " [" + QByteArray::number(i) + " 1] [1 2 3]";
    return line;
}

} // namespace

class TrackingLimitsTest : public QObject {
    Q_OBJECT

private slots:
    void firstBodiesAfterAConfiguration_data();
    void firstBodiesAfterAConfiguration();
    void sensorIsBack_data();
    void sensorIsBack();
    void sensorRowsAreForgotten();
    void resetStaysUntilTaken();
    void atMost300Markers();
    void markersStayTheSameObjects();
    void reservedIsNotWritten();
    void aMillionBodiesAndNoMore();
    void heldLockDropsTheLine_data();
    void heldLockDropsTheLine();
    void clearEmptiesTheStores();
    void countsTheLines();
    void tenMegabytes_data();
    void tenMegabytes();
    void nothingIsAllocatedForTheSameCount_data();
    void nothingIsAllocatedForTheSameCount();
};

void TrackingLimitsTest::firstBodiesAfterAConfiguration_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<bool>("inertial");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("outcome");
    const int first = static_cast<int>(LineOutcome::StoredFirstBodies);
    const int stored = static_cast<int>(LineOutcome::Stored);
    const int malformed = static_cast<int>(LineOutcome::Malformed);
    const int ignored = static_cast<int>(LineOutcome::Ignored);
    const auto row = [](const char *name, const char *tag, bool inertial, const QByteArray &line, int outcome) {
        QTest::newRow(name) << QByteArray(tag) << inertial << line << outcome;
    };
    row("a body line is the first", "6d", false, oneBody, first);
    row("a line of no bodies is the first", "6d", false, "6d 0", first);
    row("a negative count is the first", "6d", false, "6d -5", first);
    row("a missing count is not", "6d", false, "6d ", malformed);
    row("a line with a fault is not", "6d", false, "6d 1 [7 0.5]", malformed);
    row("an inertial line is the first", "6di", true, inertialLine(1, 0), first);
    row("an inertial line of no bodies is the first", "6di", true, "6di 0", first);
    row("an inertial line with a fault is not", "6di", true, "6di 1 [7 0 0.5]", malformed);
    row("a marker line is not", "3d", false, oneMarker, stored);
    row("a marker line is not in the inertial format", "3d", true, oneMarker, stored);
    row("an ignored line is not", "6d", true, oneBody, ignored);
    row("an ignored inertial line is not", "6di", false, inertialLine(1, 0), ignored);
}

void TrackingLimitsTest::firstBodiesAfterAConfiguration()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const bool, inertial);
    QFETCH(const QByteArray, line);
    QFETCH(const int, outcome);
    TrackingData data;
    QVERIFY(!data.configured);
    data.useInertialFormat = inertial;
    data.configured = true;
    QCOMPARE(static_cast<int>(receiveCopy(data, tag.constData(), line)), outcome);
    const bool taken = outcome == static_cast<int>(LineOutcome::StoredFirstBodies);
    QCOMPARE(data.configured.load(), !taken);
    if (taken)
        QCOMPARE(receiveCopy(data, tag.constData(), line), LineOutcome::Stored);
}

void TrackingLimitsTest::sensorIsBack_data()
{
    QTest::addColumn<QVector<qint32>>("absentRows");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("reset");
    using Rows = QVector<qint32>;
    const QByteArray whole = "[1 2 3] [1 2 3 4 5 6 7 8 9]";
    QTest::newRow("a listed id with the lowest bit") << Rows{3, 5} << inertialLine(5, 1) << true;
    QTest::newRow("the lowest bit among others") << Rows{5} << inertialLine(5, 7) << true;
    QTest::newRow("the lowest bit of a negative state") << Rows{5} << inertialLine(5, -1) << true;
    QTest::newRow("the id 0 is listed as 0") << Rows{0} << inertialLine(0, 1) << true;
    QTest::newRow("a listed id without the lowest bit") << Rows{5} << inertialLine(5, 6) << false;
    QTest::newRow("a state of 0") << Rows{5} << inertialLine(5, 0) << false;
    QTest::newRow("an id that is not listed") << Rows{3, 5} << inertialLine(4, 1) << false;
    QTest::newRow("the id beside a listed one") << Rows{4} << inertialLine(5, 1) << false;
    QTest::newRow("an empty list") << Rows{} << inertialLine(0, 1) << false;
    QTest::newRow("no bodies") << Rows{0, 5} << QByteArray("6di 0 [5 1 1]") << false;
    QTest::newRow("a fault in the first block") << Rows{5} << QByteArray("6di 1 [5 1] " + whole) << false;
    QTest::newRow("a fault in the position") << Rows{5} << QByteArray("6di 1 [5 1 1] [1 2]") << false;
    QTest::newRow("a fault in the rotation") << Rows{5} << QByteArray("6di 1 [5 1 1] [1 2 3] [1]") << false;
    QTest::newRow("a fault in a later body") << Rows{5} << QByteArray("6di 2 [5 1 1] " + whole + "[6 1 1]") << false;
    QTest::newRow("the second body of two")
        << Rows{5} << QByteArray("6di 2 [4 1 1] " + whole + "[5 1 1]" + whole) << true;
    QTest::newRow("the first body of two")
        << Rows{5} << QByteArray("6di 2 [5 1 1] " + whole + "[4 0 1]" + whole) << true;
    QTest::newRow("an untracked body") << Rows{5} << QByteArray("6di 1 [5 1 -1]" + whole) << true;
}

void TrackingLimitsTest::sensorIsBack()
{
    QFETCH(const QVector<qint32>, absentRows);
    QFETCH(const QByteArray, line);
    QFETCH(const bool, reset);
    TrackingData data;
    QVERIFY(!data.sensorScheduleReset);
    data.useInertialFormat = true;
    for (const qint32 row : absentRows)
        data.lock()->absentSensorRows.append(row);
    receiveCopy(data, "6di", line);
    QCOMPARE(data.sensorScheduleReset.load(), reset);
    QCOMPARE(data.lock()->absentSensorRows, absentRows);
}

void TrackingLimitsTest::sensorRowsAreForgotten()
{
    TrackingData data;
    data.useInertialFormat = true;
    data.lock()->absentSensorRows.append(5);
    data.lock()->absentSensorRows.clear();
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 1)), LineOutcome::Stored);
    QVERIFY(!data.sensorScheduleReset);
}

void TrackingLimitsTest::resetStaysUntilTaken()
{
    TrackingData data;
    data.useInertialFormat = true;
    data.lock()->absentSensorRows.append(5);
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 1)), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 0)), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "6di", "6di 0"), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "6di", "6di"), LineOutcome::Malformed);
    QVERIFY(data.sensorScheduleReset);
    QVERIFY(data.sensorScheduleReset.exchange(false));
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 1)), LineOutcome::Stored);
    QVERIFY(data.sensorScheduleReset);
}

void TrackingLimitsTest::atMost300Markers()
{
    for (const int announced : {300, 301, 500, 2000000000}) {
        TrackingData data;
        QCOMPARE(receiveCopy(data, "3d", manyMarkers(announced, 500)), LineOutcome::Stored);
        QCOMPARE(data.lock()->markerRecords.size(), std::size_t(300));
        QCOMPARE(data.lock()->markerRecords.back()->id, 299);
    }
    TrackingData data;
    QCOMPARE(receiveCopy(data, "3d", manyMarkers(299, 500)), LineOutcome::Stored);
    QCOMPARE(data.lock()->markerRecords.size(), std::size_t(299));
    QCOMPARE(receiveCopy(data, "3d", manyMarkers(500, 299)), LineOutcome::Malformed);
    QCOMPARE(data.lock()->markerRecords.size(), std::size_t(300));
    QCOMPARE(data.lock()->markerRecords.back()->quality, 0.0F);
}

void TrackingLimitsTest::markersStayTheSameObjects()
{
    TrackingData data;
    QCOMPARE(receiveCopy(data, "3d", manyMarkers(3, 3)), LineOutcome::Stored);
    const MarkerRecord *const first = data.lock()->markerRecords.front().get();
    QCOMPARE(receiveCopy(data, "3d", manyMarkers(200, 200)), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "3d", manyMarkers(1, 1)), LineOutcome::Stored);
    QCOMPARE(data.lock()->markerRecords.size(), std::size_t(1));
    QCOMPARE(data.lock()->markerRecords.front().get(), first);
}

void TrackingLimitsTest::reservedIsNotWritten()
{
    TrackingData data;
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
    QCOMPARE(data.lock()->bodyRecords.front().reserved, 0);
    data.lock()->bodyRecords.front().reserved = 123;
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
    data.useInertialFormat = true;
    data.lock()->bodyRecords.front().angles = {7, 8, 9};
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 1)), LineOutcome::Stored);
    QCOMPARE(data.lock()->bodyRecords.front().reserved, 123);
    QCOMPARE(data.lock()->bodyRecords.front().angles, (std::array<float, 3>{7, 8, 9}));
}

void TrackingLimitsTest::aMillionBodiesAndNoMore()
{
    for (const bool inertial : {false, true}) {
        const char *const tag = inertial ? "6di" : "6d";
        const QByteArray start = QByteArray(tag) + ' ';
        TrackingData data;
        QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
        const QByteArray before = bodiesText(data);
        data.useInertialFormat = inertial;
        data.configured = true;
        for (const char *count : {"1000001", "2000000000", "2147483647", "0x7fffffff"}) {
            QByteArray line = start + count + oneBody.mid(4);
            const QByteArray lineBefore(line.constData(), line.size());
            QVERIFY_EXCEPTION_THROWN(data.receive(tag, line.data()), std::exception);
            QCOMPARE(line, lineBefore);
            QVERIFY(isLockFree(data));
            QCOMPARE(bodiesText(data), before);
            QVERIFY(data.configured);
        }
        QCOMPARE(receiveCopy(data, tag, start + "1000000"), LineOutcome::Malformed);
        QCOMPARE(data.lock()->bodyRecords.size(), std::size_t(1000000));
        QCOMPARE(data.lock()->bodyRecords.back().quality, -1.0F);
        QCOMPARE(data.lock()->bodyRecords.back().id, inertial ? 0 : 999999);
        QCOMPARE(receiveCopy(data, tag, start + '0'), LineOutcome::StoredFirstBodies);
        QVERIFY(data.lock()->bodyRecords.empty());
    }
}

void TrackingLimitsTest::heldLockDropsTheLine_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    const QByteArray tags[] = {"6d", "6di", "3d"};
    for (const QByteArray &tag : tags) {
        for (const char *rest : {" 0", " 1 [9 1 1] [9 9 9 9 9 9] [9 9 9 9 9 9 9 9 9]", "", " 2000000000", " 1 ["}) {
            QTest::newRow(qPrintable(QStringLiteral("\"%1\"").arg(QLatin1String(tag + rest)))) << tag << tag + rest;
        }
    }
}

void TrackingLimitsTest::heldLockDropsTheLine()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    TrackingData data;
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "3d", oneMarker), LineOutcome::Stored);
    const QByteArray bodies = bodiesText(data);
    const QByteArray markers = markersText(data);
    data.lock()->absentSensorRows.append(9);
    data.useInertialFormat = tag == "6di";
    data.configured = true;

    QByteArray copy(line.constData(), line.size());
    LineOutcome outcome = LineOutcome::Stored;
    {
        const TrackingData::Locked stores = data.lock();
        outcome = std::async(std::launch::async, [&] { return data.receive(tag.constData(), copy.data()); }).get();
    }

    QCOMPARE(outcome, LineOutcome::Dropped);
    QCOMPARE(copy, line);
    QCOMPARE(bodiesText(data), bodies);
    QCOMPARE(markersText(data), markers);
    QVERIFY(data.configured);
    QVERIFY(!data.sensorScheduleReset);
    QVERIFY(receiveCopy(data, tag.constData(), tag + " 0") != LineOutcome::Dropped);
}

void TrackingLimitsTest::clearEmptiesTheStores()
{
    TrackingData data;
    receiveCopy(data, "6d", oneBody);
    receiveCopy(data, "3d", oneMarker);
    data.clearBodies();
    QVERIFY(data.lock()->bodyRecords.empty());
    QCOMPARE(data.lock()->markerRecords.size(), std::size_t(1));
    receiveCopy(data, "6d", oneBody);
    QCOMPARE(data.lock()->bodyRecords.size(), std::size_t(1));
    data.clear();
    QVERIFY(data.lock()->bodyRecords.empty());
    QVERIFY(data.lock()->markerRecords.empty());
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
}

void TrackingLimitsTest::countsTheLines()
{
    TrackingData data;
    data.configured = true;
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::StoredFirstBodies);
    QCOMPARE(receiveCopy(data, "6d", "6d 0"), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "3d", oneMarker), LineOutcome::Stored);
    QCOMPARE(receiveCopy(data, "3d", "3d"), LineOutcome::Malformed);
    QCOMPARE(receiveCopy(data, "6di", inertialLine(5, 1)), LineOutcome::Ignored);
    QCOMPARE(receiveCopy(data, "2d", oneMarker), LineOutcome::Ignored);
    {
        const TrackingData::Locked stores = data.lock();
        QByteArray copy(oneMarker.constData(), oneMarker.size());
        QCOMPARE(data.receive("3d", copy.data()), LineOutcome::Dropped);
    }
    QCOMPARE(data.lineCounts.stored.load(), quint64(3));
    QCOMPARE(data.lineCounts.ignored.load(), quint64(2));
    QCOMPARE(data.lineCounts.dropped.load(), quint64(1));
}

void TrackingLimitsTest::tenMegabytes_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isStored");
    const int size = 10000000;
    const QByteArray rotation = "[1 2 3 4 5 6 7 8 9]";
    QTest::newRow("no end of bracket") << "6d 1 [" + QByteArray(size, '1') << false;
    QTest::newRow("nothing but opening brackets") << "6d 1000 " + QByteArray(size, '[') << false;
    QTest::newRow("nothing but closing brackets") << "6d 1000 " + QByteArray(size, ']') << false;
    QTest::newRow("no bracket") << "6d 1" + QByteArray(size, ' ') << false;
    QTest::newRow("a count of ten million digits") << "6d " + QByteArray(size, '0') << true;
    QTest::newRow("a quality of ten million digits")
        << "6d 1 [1 0." + QByteArray(size, '3') + "] [1 2 3 4 5 6]" + rotation << true;
    QTest::newRow("two hundred thousand bodies")
        << "6d 200000 " + QByteArray("[1 1] [1 2 3 4 5 6]" + rotation + "            ").repeated(200000) << true;
    QTest::newRow("two hundred thousand bodies, and the last one missing")
        << "6d 200001 " + QByteArray("[1 1] [1 2 3 4 5 6]" + rotation + "            ").repeated(200000) << false;
}

void TrackingLimitsTest::tenMegabytes()
{
    QFETCH(const QByteArray, line);
    QFETCH(const bool, isStored);
    TrackingData data;
    QCOMPARE(receiveCopy(data, "6d", line), isStored ? LineOutcome::Stored : LineOutcome::Malformed);
    QCOMPARE(receiveCopy(data, "6d", oneBody), LineOutcome::Stored);
    QCOMPARE(bodiesText(data), QByteArray("7 0.5 2 0 | 1 2 3 | 4 5 6 | 1 2 3 4 5 6 7 8 9"));
}

void TrackingLimitsTest::nothingIsAllocatedForTheSameCount_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    const QByteArray odd = " 1 [0x7 1e-300] [nan 0x1p3 123456789012345678901234567890 inf 1e39 6] "
                           "[1.00000005960464477539062500000000000001 2 3 4 5 6 7 8 9]";
    QTest::newRow("a body line") << QByteArray("6d") << oneBody;
    QTest::newRow("a body line with odd numbers") << QByteArray("6d") << "6d" + odd;
    QTest::newRow("a body line with a fault") << QByteArray("6d") << QByteArray("6d 1 [7 1] [1 2 3 4 5 6] [1 2");
    QTest::newRow("a body line without a count") << QByteArray("6d") << QByteArray("6d ");
    QTest::newRow("an inertial line") << QByteArray("6di") << inertialLine(5, 1);
    QTest::newRow("a line of 300 markers") << QByteArray("3d") << manyMarkers(300, 300);
    QTest::newRow("a line of 500 markers") << QByteArray("3d") << manyMarkers(500, 500);
}

void TrackingLimitsTest::nothingIsAllocatedForTheSameCount()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    const quint64 atStart = allocationCount();
    TrackingData data;
    data.useInertialFormat = tag == "6di";
    data.lock()->absentSensorRows.append(5);
    QByteArray copy(line.constData(), line.size());
    data.receive(tag.constData(), copy.data());
    QVERIFY2(allocationCount() > atStart, "The allocations are not counted.");

    const quint64 before = allocationCount();
    for (int i = 0; i < 100; ++i)
        data.receive(tag.constData(), copy.data());
    QCOMPARE(allocationCount(), before);
}

QTEST_APPLESS_MAIN(TrackingLimitsTest)

#include "tst_trackinglimits.moc"
