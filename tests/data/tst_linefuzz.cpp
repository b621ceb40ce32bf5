// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "data/trackingdata.h"

#include "randomtext.h"
#include "tests/support/lockstate.h"
#include "tests/support/referencereader.h"

#include <QtTest>

#include <algorithm>
#include <numeric>
#include <optional>

namespace {

using Bytes = std::vector<char>;

Bytes zeroTerminated(const std::string &line)
{
    Bytes bytes(line.begin(), line.end());
    bytes.push_back('\0');
    return bytes;
}

/// The line reader and its rival, which get the same lines.
struct Pair {
    TrackingData data;
    ReferenceReader reference;
    std::optional<LineOutcome> outcome; ///< of the last line; none if it threw

    void setFormat(bool inertial)
    {
        data.useInertialFormat = inertial;
        reference.useInertialFormat = inertial;
    }
    void setConfigured()
    {
        data.configured = true;
        reference.configured = true;
    }
    void takeSensorScheduleReset()
    {
        data.sensorScheduleReset = false;
        reference.sensorScheduleReset = false;
    }
    void setAbsentRows(const std::vector<qint32> &rows)
    {
        data.lock()->absentSensorRows.clear();
        for (const qint32 row : rows)
            data.lock()->absentSensorRows.append(row);
        reference.absentSensorRows = rows;
    }
    void clear()
    {
        data.clear();
        reference.bodies.clear();
        reference.markers.clear();
    }
};

/// The outcome of the line, or none if it threw.
template<typename Reader> std::optional<LineOutcome> outcomeOf(const Reader &read)
{
    try {
        return read();
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

/// What differs after both read \a line; empty if nothing does.
QByteArray disagreement(Pair &pair, const std::string &tag, const std::string &line)
{
    Bytes bytes = zeroTerminated(line);
    const Bytes before = bytes;
    pair.outcome = outcomeOf([&] { return pair.data.receive(tag.c_str(), bytes.data()); });
    const std::optional<LineOutcome> expected = outcomeOf([&] { return pair.reference.receive(tag, line); });
    if (bytes != before)
        return "the line was changed";
    if (!isLockFree(pair.data))
        return "the lock is still held";
    if (pair.outcome != expected) {
        return "the outcome is " + QByteArray::number(pair.outcome ? static_cast<int>(*pair.outcome) : -1)
            + " instead of " + QByteArray::number(expected ? static_cast<int>(*expected) : -1);
    }
    if (pair.data.configured != pair.reference.configured)
        return "configured";
    if (pair.data.sensorScheduleReset != pair.reference.sensorScheduleReset)
        return "sensorScheduleReset";
    const TrackingData::Locked stores = pair.data.lock();
    const bool sameBodies =
        std::equal(stores->bodyRecords.begin(), stores->bodyRecords.end(), pair.reference.bodies.begin(),
                   pair.reference.bodies.end(),
                   [](const BodyRecord &one, const BodyRecord &other) { return sameBits(one, other); });
    if (!sameBodies)
        return "the bodies";
    const bool sameMarkers = std::equal(
        stores->markerRecords.begin(), stores->markerRecords.end(), pair.reference.markers.begin(),
        pair.reference.markers.end(),
        [](const std::unique_ptr<MarkerRecord> &one, const MarkerRecord &other) { return sameBits(*one, other); });
    return sameMarkers ? QByteArray() : QByteArray("the markers");
}

QByteArray report(const QByteArray &problem, const std::string &line)
{
    return problem + " after " + QByteArray::fromStdString(line).toPercentEncoding(" []+");
}

} // namespace

class LineFuzzTest : public QObject {
    Q_OBJECT

private slots:
    void theReferenceReadsByTheRules();
    void agreesOnRandomLines_data();
    void agreesOnRandomLines();
    void everyPrefixOfALine_data();
    void everyPrefixOfALine();
};

void LineFuzzTest::theReferenceReadsByTheRules()
{
    ReferenceReader reader;
    reader.configured = true;
    QCOMPARE(reader.receive("6d", "6d 2 [7 0.5] [1 2 3 4 5 6] [1 2 3 4 5 6 7 8 9]"), LineOutcome::Malformed);
    QCOMPARE(reader.bodies.size(), std::size_t(2));
    QCOMPARE(reader.bodies[0].id, 7);
    QCOMPARE(reader.bodies[0].angles, (std::array<float, 3>{4, 5, 6}));
    QCOMPARE(reader.bodies[1].id, 1);
    QCOMPARE(reader.bodies[1].quality, -1.0F);
    QCOMPARE(reader.receive("6d", "6d 0"), LineOutcome::StoredFirstBodies);
    QVERIFY_EXCEPTION_THROWN(reader.receive("6d", "6d 1000001"), std::length_error);
    QCOMPARE(reader.receive("3d", "3d 1 [7 0.5] [1 2 3]"), LineOutcome::Stored);
    QCOMPARE(reader.markers.size(), std::size_t(1));
    QCOMPARE(reader.receive("3d", "3d "), LineOutcome::Malformed);
    QVERIFY(reader.markers.empty());
}

void LineFuzzTest::agreesOnRandomLines_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 4; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void LineFuzzTest::agreesOnRandomLines()
{
    QFETCH(const int, seed);
    static const std::array<std::string, 4> tags{"6d", "6di", "3d", "6dx"};
    RandomText random(static_cast<quint64>(seed));
    Pair pair;
    std::array<int, 6> outcomes{}; // one for each outcome, the last for lines that threw
    const auto check = [&](const std::string &tag, const std::string &line) {
        const QByteArray problem = disagreement(pair, tag, line);
        ++outcomes[pair.outcome ? static_cast<std::size_t>(*pair.outcome) : 5];
        return problem.isEmpty() ? problem : report(problem, line);
    };
    for (int i = 0, count = sweepSize(10000, 250000); i < count; ++i) {
        if (random.oneIn(4))
            pair.setFormat(random.oneIn(2));
        if (random.oneIn(4))
            pair.setConfigured();
        if (random.oneIn(3))
            pair.takeSensorScheduleReset();
        if (random.oneIn(20))
            pair.setAbsentRows({random.below(20), random.below(20), random.below(20)});
        if (random.oneIn(100))
            pair.clear();

        const std::string &tag = random.oneIn(3) ? tags[static_cast<std::size_t>(random.below(4))]
            : pair.data.useInertialFormat        ? tags[1]
                                                 : tags[0];
        const std::string good = random.goodLine(tag, 6);
        const std::string bad = random.injured(random.goodLine(tag, 6));
        const std::string half = random.numberSoup(6) + " [" + good.substr(good.size() / 2);
        for (const std::string &line : {bad, half, good}) {
            const QByteArray problem = check(tag, line);
            QVERIFY2(problem.isEmpty(), problem.constData());
        }
        const bool isRead = pair.outcome == LineOutcome::Stored || pair.outcome == LineOutcome::StoredFirstBodies
            || pair.outcome == LineOutcome::Ignored;
        QVERIFY2(isRead, report("a good line fails", good).constData());
    }
    const auto countOf = [&outcomes](LineOutcome outcome) { return outcomes[static_cast<std::size_t>(outcome)]; };
    QVERIFY(countOf(LineOutcome::Stored) > sweepSize(1000, 1000));
    QVERIFY(countOf(LineOutcome::StoredFirstBodies) > sweepSize(1000, 1000));
    QVERIFY(countOf(LineOutcome::Malformed) > sweepSize(1000, 1000));
    QVERIFY(countOf(LineOutcome::Ignored) > sweepSize(1000, 1000));
    QCOMPARE(countOf(LineOutcome::Dropped), 0);
    QVERIFY2(outcomes[5] > sweepSize(10, 10), "Hardly a line asks for too many bodies.");
    qInfo("%d lines, 0 differences", std::accumulate(outcomes.begin(), outcomes.end(), 0));
}

void LineFuzzTest::everyPrefixOfALine_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("6d") << QByteArray("6d")
                        << QByteArray("6d 2 [0x1f 0.5] [1.5 -2 3e2 4 5 6] [1 2 3 4 5 6 7 8 9] [-12 1.25] "
                                      "[10 20 30 40 50 60] [.1 .2 .3 .4 .5 .6 .7 .8 .9]");
    QTest::newRow("6di") << QByteArray("6di")
                         << QByteArray("6di 2 [1 33 0.5] [1.5 -2 3e2] [1 2 3 4 5 6 7 8 9] [12 010 1.25] "
                                       "[10 20 30] [.1 .2 .3 .4 .5 .6 .7 .8 .9]");
    QTest::newRow("3d") << QByteArray("3d")
                        << QByteArray("3d 3 [1 0.5] [1.5 -2 3e2] [12 1.25] [10 20 30] [3 1] [1 2 3]");
}

void LineFuzzTest::everyPrefixOfALine()
{
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    const std::string text = line.toStdString();
    for (std::size_t length = 0; length <= text.size(); ++length) {
        for (std::size_t missing = 0; missing < 3; ++missing) {
            Pair pair;
            pair.setFormat(tag == "6di");
            pair.setConfigured();
            pair.setAbsentRows({12, 1});
            std::string part = text.substr(0, length);
            QByteArray problem = disagreement(pair, tag.toStdString(), part);
            QVERIFY2(problem.isEmpty(), report(problem, part).constData());
            // The whole line without a few characters, on the store that the prefix has left.
            part = text.substr(0, length);
            if (length + missing < text.size())
                part += text.substr(length + missing);
            problem = disagreement(pair, tag.toStdString(), part);
            QVERIFY2(problem.isEmpty(), report(problem, part).constData());
        }
    }
}

QTEST_APPLESS_MAIN(LineFuzzTest)

#include "tst_linefuzz.moc"
