// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/outputlines.h"
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "tests/backend/linereader.h"
#include "tests/backend/model.h"
#include "tests/backend/recordedfile.h"

#include <QtTest>

#include <atomic>
#include <cmath>
#include <memory>
#include <thread>

using namespace backend;

using namespace std::chrono_literals;

class TestOutputLines : public QObject {
    Q_OBJECT

private slots:
    void formats();
    void emptyLines();
    void sendsActiveOutputs_data();
    void sendsActiveOutputs();
    void unavailableOutputsStaySilent();
    void anglesComeOutOfTheRotation_data();
    void anglesComeOutOfTheRotation();
    void showsTheRecordedFile();
    void sameTimeSameBytes_data();
    void sameTimeSameBytes();
    void otherSeedOtherBytes();
    void framesBeginInTime_data();
    void framesBeginInTime();
    void linesWhileCommandsChangeTheModel();
};

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

QByteArray textOf(const QVector<OutputLine> &lines, const QByteArray &tag)
{
    for (const OutputLine &line : lines) {
        if (line.tag == tag)
            return line.text;
    }
    return {};
}

/// The angles [deg] that a reader of single precision works out of the nine numbers.
std::array<double, 3> readAngles(const QVector<double> &r)
{
    const auto f = [&r](int i) { return static_cast<float>(r[i]); };
    return {-static_cast<double>(std::atan2(f(7), f(8))) * degreesPerRadian,
            static_cast<double>(std::asin(f(6))) * degreesPerRadian,
            -static_cast<double>(std::atan2(f(3), f(0))) * degreesPerRadian};
}

std::chrono::nanoseconds nanoseconds(double seconds)
{
    return std::chrono::nanoseconds(static_cast<qint64>(seconds * 1.0e9));
}

} // namespace

void TestOutputLines::formats()
{
    BodySample seen;
    seen.optical = true;
    seen.pose.position = {1.0, -2.0005, 1234.5678};
    BodySample turned;
    turned.id = 1;
    turned.inertial = true;
    BodySample lost;
    lost.id = 2;
    const QByteArray rotation("[1.000000000 0.000000000 0.000000000 0.000000000 1.000000000 0.000000000 "
                              "0.000000000 0.000000000 1.000000000]");
    const QByteArray nothing("[0.000000000 0.000000000 0.000000000 0.000000000 0.000000000 0.000000000 "
                             "0.000000000 0.000000000 0.000000000]");
    const QByteArray line = line6d({seen, lost});
    QVERIFY2(line.startsWith("6d 2 [0 1.000][1.000 -2.00"), line.constData());
    QVERIFY2(line.endsWith(rotation + " [2 -1.000][0.000 0.000 0.000 0.0000 0.0000 0.0000]" + nothing),
             line.constData());

    const QByteArray inertialLine = line6di({seen, turned, lost});
    QVERIFY2(inertialLine.startsWith("6di 3 [0 2 1.000][1.000 -2.00"), inertialLine.constData());
    QVERIFY2(inertialLine.endsWith(" [1 1 1.000][0.000 0.000 0.000]" + rotation + " [2 0 -1.000][0.000 0.000 0.000]"
                                   + nothing),
             inertialLine.constData());

    seen.inertial = true;
    QVERIFY(line6di({seen}).startsWith("6di 1 [0 3 1.000]["));
    QVERIFY(line6d({turned}).startsWith("6d 1 [1 -1.000][0.000")); // the cameras don't see it
    QCOMPARE(line3d({{1, {1.0, 2.0, 3.0}}, {7, {-0.5, 0.25, 1000.0}}}),
             QByteArray("3d 2 [1 1.000][1.000 2.000 3.000] [7 1.000][-0.500 0.250 1000.000]"));
}

void TestOutputLines::emptyLines()
{
    QCOMPARE(line6d({}), QByteArray("6d 0"));
    QCOMPARE(line6di({}), QByteArray("6di 0"));
    QCOMPARE(line3d({}), QByteArray("3d 0"));
}

void TestOutputLines::sendsActiveOutputs_data()
{
    QTest::addColumn<QByteArrayList>("commands");
    QTest::addColumn<int>("minor");
    QTest::addColumn<QByteArrayList>("tags");
    const QByteArray on6d("output active chmon 6d yes");
    const QByteArray on6di("output active chmon 6di yes");
    const QByteArray off3d("output active chmon 3d no");
    QTest::newRow("markers at first") << QByteArrayList{} << 12 << QByteArrayList{"3d"};
    QTest::newRow("bodies when asked for") << QByteArrayList{on6d} << 12 << QByteArrayList{"6d", "3d"};
    QTest::newRow("both kinds of bodies") << QByteArrayList{on6di, on6d} << 12 << QByteArrayList{"6d", "6di", "3d"};
    QTest::newRow("nothing when all is off") << QByteArrayList{off3d} << 12 << QByteArrayList{};
    QTest::newRow("no inertial output before 1.12") << QByteArrayList{on6di, on6d} << 11 << QByteArrayList{"6d", "3d"};
}

void TestOutputLines::sendsActiveOutputs()
{
    QFETCH(QByteArrayList, commands);
    QFETCH(int, minor);
    QFETCH(QByteArrayList, tags);
    SimulatedBackend backend(withVersion(everything(), {1, minor, 0}));
    for (const QByteArray &command : commands)
        backend.command(command);
    QByteArrayList sent;
    for (const OutputLine &line : backend.linesAt(1s)) {
        QVERIFY(line.text.startsWith(line.tag + ' '));
        sent << line.tag;
    }
    QCOMPARE(sent, tags);
}

void TestOutputLines::unavailableOutputsStaySilent()
{
    Scenario scenario = everything();
    scenario.output6d = {false, true};
    SimulatedBackend backend(scenario);
    QVERIFY(textOf(backend.linesAt(0s), "6d").isEmpty());
    QCOMPARE(backend.request("output available 6d").value_or("(failure)"), QByteArray("no"));
    QCOMPARE(backend.request("output active chmon 6d").value_or("(failure)"), QByteArray("no"));
    QVERIFY(!backend.command("output active chmon 6d yes"));
}

void TestOutputLines::anglesComeOutOfTheRotation_data()
{
    QTest::addColumn<QString>("scenario");
    for (const char *name : {"default", "sensors", "crowd", "heads"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestOutputLines::anglesComeOutOfTheRotation()
{
    QFETCH(QString, scenario);
    const ScenarioResult loaded = loadScenario(scenario);
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    SimulatedBackend backend(*loaded.scenario);
    QVERIFY(backend.command("output active chmon 6d yes"));
    int compared = 0;
    for (int frame = 0; frame < 600; ++frame) {
        const ReadLine line = readLine(textOf(backend.linesAt(frame * 100ms), "6d"), "6d");
        QVERIFY(line.count > 0);
        QCOMPARE(line.blocks.size(), 3 * line.count);
        for (int body = 0; body < line.count; ++body) {
            QCOMPARE(line.blocks[3 * body].size(), 2);
            QCOMPARE(line.blocks[3 * body][0], static_cast<double>(body));
            const QVector<double> &placeAndAngles = line.blocks[3 * body + 1];
            const QVector<double> &rotation = line.blocks[3 * body + 2];
            QCOMPARE(placeAndAngles.size(), 6);
            QCOMPARE(rotation.size(), 9);
            if (line.blocks[3 * body][1] < 0.0)
                continue;
            const std::array<double, 3> angles = readAngles(rotation);
            for (int i = 0; i < 3; ++i) {
                const double difference = placeAndAngles[3 + i] - angles[static_cast<std::size_t>(i)];
                QVERIFY2(std::abs(std::remainder(difference, 360.0)) < 1.0e-3, qPrintable(QString::number(difference)));
            }
            ++compared;
        }
    }
    QVERIFY(compared > 500);
}

void TestOutputLines::showsTheRecordedFile()
{
    ScenarioResult loaded = loadScenario(QStringLiteral("default"));
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    loaded.scenario->rate = 1000.0;
    SimulatedBackend backend(*loaded.scenario);
    QVERIFY(backend.command("output active chmon 6d yes"));
    QVERIFY(backend.command("output active chmon 6di yes"));
    const QVector<RecordedLine> lines = readRecordedFile(QStringLiteral(":/backend/data/fr1_xyz_groundtruth.txt"));
    QCOMPARE(lines.size(), 3000);
    const double step = 0.01; // the usual one; one more makes a round
    const double round = lines.last().time - lines.first().time + step;
    for (int i = 0; i < 2 * lines.size(); ++i) {
        const RecordedLine &expected = lines[i % lines.size()];
        const double time = expected.time - lines.first().time + (i < lines.size() ? 0.0 : round);
        const QVector<OutputLine> sent = backend.linesAt(nanoseconds(time + 0.003));
        const ReadLine plain = readLine(textOf(sent, "6d"), "6d");
        const ReadLine inertial = readLine(textOf(sent, "6di"), "6di");
        QCOMPARE(plain.count, 6);
        QCOMPARE(inertial.count, 6);
        QCOMPARE(inertial.blocks[0], QVector<double>({0.0, 2.0, 1.0}));
        const std::array<double, 9> matrix = matrixOf(expected.quaternion);
        for (int k = 0; k < 3; ++k) {
            const double place = 1000.0 * expected.place[static_cast<std::size_t>(k)];
            QVERIFY(std::abs(plain.blocks[1][k] - place) < 1.0e-3);
            QVERIFY(std::abs(inertial.blocks[1][k] - place) < 1.0e-3);
        }
        for (int k = 0; k < 9; ++k) {
            QVERIFY(std::abs(plain.blocks[2][k] - matrix[static_cast<std::size_t>(k)]) < 1.0e-8);
            QVERIFY(std::abs(inertial.blocks[2][k] - matrix[static_cast<std::size_t>(k)]) < 1.0e-8);
        }
    }
}

void TestOutputLines::sameTimeSameBytes_data()
{
    QTest::addColumn<QString>("scenario");
    for (const QString &name : scenarioNames())
        QTest::newRow(qPrintable(name)) << name;
}

void TestOutputLines::sameTimeSameBytes()
{
    QFETCH(QString, scenario);
    const ScenarioResult loaded = loadScenario(scenario);
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    SimulatedBackend one(*loaded.scenario);
    SimulatedBackend other(*loaded.scenario);
    one.command("output active chmon 6d yes");
    other.command("output active chmon 6d yes");
    QByteArrayList forwards;
    QByteArrayList backwards;
    for (int second = 0; second < 100; ++second) {
        for (const OutputLine &line : one.linesAt(std::chrono::seconds(second * 36)))
            forwards << line.text;
    }
    for (int second = 99; second >= 0; --second) {
        const QVector<OutputLine> lines = other.linesAt(std::chrono::seconds(second * 36));
        for (auto line = lines.crbegin(); line != lines.crend(); ++line)
            backwards.prepend(line->text);
    }
    QVERIFY(forwards.size() >= 100);
    QCOMPARE(forwards, backwards);
}

void TestOutputLines::otherSeedOtherBytes()
{
    const ScenarioResult loaded = loadScenario(QStringLiteral("crowd"));
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    const SimulatedBackend one(*loaded.scenario, 1);
    const SimulatedBackend other(*loaded.scenario, 2);
    QVERIFY(textOf(one.linesAt(1s), "3d") != textOf(other.linesAt(1s), "3d"));
}

void TestOutputLines::framesBeginInTime_data()
{
    QTest::addColumn<qint64>("time"); // [ns]
    QTest::addColumn<qint64>("frame");
    QTest::newRow("the first frame at the start") << qint64(0) << qint64(0);
    QTest::newRow("the first frame before the start") << qint64(-5000000000) << qint64(0);
    QTest::newRow("the first frame until the second") << qint64(16666000) << qint64(0);
    QTest::newRow("the second frame from its nanosecond on") << qint64(16666666) << qint64(1);
    QTest::newRow("the second frame until the third") << qint64(33333000) << qint64(1);
    QTest::newRow("a frame of the second day") << qint64(100000016666666) << qint64(6000001);
}

void TestOutputLines::framesBeginInTime()
{
    QFETCH(qint64, time);
    QFETCH(qint64, frame);
    Scenario scenario;
    scenario.bodies.resize(1);
    scenario.bodies[0].motion.kind = Motion::Kind::Orbit;
    scenario.bodies[0].motion.radius = 1000.0;
    scenario.bodies[0].motion.period = 7.0;
    scenario.output6d.active = true;
    const SimulatedBackend backend(scenario);
    const ReadLine line = readLine(textOf(backend.linesAt(std::chrono::nanoseconds(time)), "6d"), "6d");
    QCOMPARE(line.count, 1);
    const double angle = 6.283185307179586 * std::fmod(static_cast<double>(frame) / 60.0, 7.0) / 7.0;
    QVERIFY(std::abs(line.blocks[1][0] - 1000.0 * std::cos(angle)) < 1.0e-3);
    QVERIFY(std::abs(line.blocks[1][1] - 1000.0 * std::sin(angle)) < 1.0e-3);
}

void TestOutputLines::linesWhileCommandsChangeTheModel()
{
    const ScenarioResult loaded = loadScenario(QStringLiteral("default"));
    QVERIFY2(loaded.scenario, qPrintable(loaded.error));
    SimulatedBackend backend(*loaded.scenario);
    std::atomic<bool> done{false};
    std::atomic<int> malformed{0};
    std::atomic<int> read{0};
    std::thread reader([&backend, &done, &malformed, &read] {
        for (int frame = 0; !done || frame < 200; ++frame) {
            for (const OutputLine &line : backend.linesAt(frame * 16ms)) {
                malformed += readLine(line.text, line.tag).count < 0 ? 1 : 0;
                ++read;
            }
        }
    });
    int refused = 0;
    for (int i = 0; i < 2000; ++i) {
        const QByteArray yesOrNo = i % 2 == 0 ? "yes" : "no";
        refused += backend.command("output active chmon 6d " + yesOrNo) ? 0 : 1;
        refused += backend.command("body filter6d_enabled standard b01 " + yesOrNo) ? 0 : 1;
        refused += backend.request("body filter6d_enabled standard b01").value_or("") == yesOrNo ? 0 : 1;
        refused += backend.request("inertial sensor_battery d01") ? 0 : 1;
    }
    done = true;
    reader.join();
    QCOMPARE(refused, 0);
    QCOMPARE(malformed.load(), 0);
    QVERIFY(read >= 200);
}

QTEST_GUILESS_MAIN(TestOutputLines)
#include "tst_outputlines.moc"
