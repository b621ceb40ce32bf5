// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/readingprogress.h"
#include "backend/scenarios.h"
#include "backend/trajectory.h"
#include "tests/backend/recordedfile.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace backend;

class TestTrajectory : public QObject {
    Q_OBJECT

private slots:
    void init();
    void keepsTheShippedFile();
    void loops();
    void holdsTheLastSample_data();
    void holdsTheLastSample();
    void skipsLines_data();
    void skipsLines();
    void reads_data();
    void reads();
    void reportsAHundredLines();
    void errors_data();
    void errors();
    void longLines();
    void knowsTheRateOfTheRecording_data();
    void knowsTheRateOfTheRecording();
    void readsAsFarAsTheFirstSample();
    void saysHowFarItIs();
    void givesUpWhenCancelled();

private:
    QString write(const QByteArray &text) const;

    std::unique_ptr<QTemporaryDir> folder;
};

namespace {

const QString shippedFile = QStringLiteral(":/backend/data/fr1_xyz_groundtruth.txt");

QByteArray line(const char *time, const char *x = "1")
{
    return QByteArray(time) + ' ' + x + " 2 3 0 0 0 1\n";
}

} // namespace

void TestTrajectory::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
    QVERIFY(!scenarioNames().isEmpty()); // makes the shipped files known
}

QString TestTrajectory::write(const QByteArray &text) const
{
    QFile file(folder->filePath(QStringLiteral("recording.txt")));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

void TestTrajectory::keepsTheShippedFile()
{
    const QVector<RecordedLine> lines = readRecordedFile(shippedFile);
    QCOMPARE(lines.size(), 3000);
    const TrajectoryResult result = loadTrajectory(shippedFile);
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.skippedCount, 0);
    const QVector<Trajectory::Sample> &samples = result.trajectory->samples();
    QCOMPARE(samples.size(), lines.size());
    for (int i = 0; i < lines.size(); ++i) {
        QCOMPARE(samples[i].time, lines[i].time - lines[0].time);
        const std::array<double, 9> matrix = matrixOf(lines[i].quaternion);
        for (std::size_t k = 0; k < 3; ++k)
            QVERIFY(std::abs(samples[i].pose.position[k] - 1000.0 * lines[i].place[k]) < 1.0e-9);
        for (std::size_t k = 0; k < 9; ++k)
            QVERIFY(std::abs(samples[i].pose.rotation[k] - matrix[k]) < 1.0e-12);
    }
}

void TestTrajectory::loops()
{
    const TrajectoryResult result =
        loadTrajectory(write(line("100", "1") + line("101", "2") + line("103", "3") + line("104", "4")));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->duration(), 5.0); // 4 s and the usual step of 1 s
}

void TestTrajectory::holdsTheLastSample_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("x");
    QTest::newRow("at the start") << 0.0 << 1000.0;
    QTest::newRow("before the start") << -1.0 << 1000.0;
    QTest::newRow("just before the second sample") << 0.999 << 1000.0;
    QTest::newRow("at the second sample") << 1.0 << 2000.0;
    QTest::newRow("in a gap") << 2.9 << 2000.0;
    QTest::newRow("after the gap") << 3.0 << 3000.0;
    QTest::newRow("at the last sample") << 4.0 << 4000.0;
    QTest::newRow("just before the repetition") << 4.999 << 4000.0;
    QTest::newRow("at the repetition") << 5.0 << 1000.0;
    QTest::newRow("in the second round") << 6.0 << 2000.0;
    QTest::newRow("in round one million") << 5.0e6 + 3.5 << 3000.0;
}

void TestTrajectory::holdsTheLastSample()
{
    QFETCH(double, seconds);
    QFETCH(double, x);
    const TrajectoryResult result =
        loadTrajectory(write(line("100", "1") + line("101", "2") + line("103", "3") + line("104", "4")));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->poseAt(seconds).position[0], x);
}

void TestTrajectory::skipsLines_data()
{
    QTest::addColumn<QByteArray>("bad");
    QTest::addColumn<QString>("reason");
    const auto add = [](const char *name, const char *bad, const char *reason) {
        QTest::newRow(name) << QByteArray(bad) << QString::fromUtf8(reason);
    };
    add("too few fields", "1.5 1 2 3 0 0 0", "7 instead of 8 fields");
    add("a word", "1.5 1 two 3 0 0 0 1", "\"two\" is not a number");
    add("a decimal comma", "1.5 1 2,5 3 0 0 0 1", "\"2,5\" is not a number");
    add("an undefined number", "1.5 1 nan 3 0 0 0 1", "\"nan\" is not a number");
    add("an infinite number", "1.5 1 2 -inf 0 0 0 1", "\"-inf\" is not a number");
    add("a number beyond a double", "1.5 1 2 1e999 0 0 0 1", "\"1e999\" is not a number");
    add("the same time again", "1.0 1 2 3 0 0 0 1", "its time is not later than that of the line before");
    add("an earlier time", "0.5 1 2 3 0 0 0 1", "its time is not later than that of the line before");
    add("a time out of range", "1e300 1 2 3 0 0 0 1", "the time is out of range");
    add("a quaternion of length 0", "1.5 1 2 3 0 0 0 0", "the quaternion has no direction");
    add("a quaternion without a finite length", "1.5 1 2 3 1e308 1e308 1e308 1e308", "the quaternion has no direction");
    add("a place on the moon", "1.5 1 2 384400000 0 0 0 1", "the place is more than 1000 km away");
}

void TestTrajectory::skipsLines()
{
    QFETCH(QByteArray, bad);
    QFETCH(QString, reason);
    const TrajectoryResult result =
        loadTrajectory(write("# time and so on\n\n" + line("1", "1") + bad + '\n' + line("2", "2")));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->samples().size(), 2);
    QCOMPARE(result.skippedCount, 1);
    QCOMPARE(result.skipped.first().number, 4);
    QCOMPARE(result.skipped.first().reason, reason);
    QCOMPARE(result.warnings(QStringLiteral("a.txt")),
             QStringList(QStringLiteral("a.txt: line 4 is skipped: %1.").arg(reason)));
}

void TestTrajectory::reads_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("line ends of Windows") << QByteArray("# a\r\n1 1 2 3 0 0 0 1\r\n2 1 2 3 0 0 0 1\r\n");
    QTest::newRow("a byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                     "1 1 2 3 0 0 0 1\n2 1 2 3 0 0 0 1\n");
    QTest::newRow("a byte order mark and a comment")
        << QByteArray("\xEF\xBB\xBF# a\n1 1 2 3 0 0 0 1\n2 1 2 3 0 0 0 1\n");
    QTest::newRow("no line end at the end") << QByteArray("1 1 2 3 0 0 0 1\n2 1 2 3 0 0 0 1");
    QTest::newRow("tabs and several blanks") << QByteArray("1\t1  2 3 0 0 0 1\n  2 1 2\t3 0 0 0 1 \n");
    QTest::newRow("more fields than needed") << QByteArray("1 1 2 3 0 0 0 1 9 x\n2 1 2 3 0 0 0 1 9\n");
    QTest::newRow("exponents and signs") << QByteArray("+1e0 1 2 +3 0 0 -0 1\n20.0e-1 1 2 3 0 0 0 1\n");
    QTest::newRow("quaternions of any length") << QByteArray("1 1 2 3 0 0 0 5\n2 1 2 3 0 0 0 1e-9\n");
}

void TestTrajectory::reads()
{
    QFETCH(QByteArray, text);
    const TrajectoryResult result = loadTrajectory(write(text));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.skippedCount, 0);
    QCOMPARE(result.trajectory->samples().size(), 2);
    QCOMPARE(result.trajectory->samples().last().time, 1.0);
    for (const Trajectory::Sample &sample : result.trajectory->samples()) {
        QCOMPARE(sample.pose.position, Vector3({1000.0, 2000.0, 3000.0}));
        QCOMPARE(sample.pose.rotation, Rotation({1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}));
    }
}

void TestTrajectory::reportsAHundredLines()
{
    const TrajectoryResult result = loadTrajectory(write(line("1") + QByteArray("x\n").repeated(105)));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.skippedCount, 105);
    const QStringList warnings = result.warnings(QStringLiteral("a.txt"));
    QCOMPARE(warnings.size(), 101);
    QCOMPARE(warnings.last(), QStringLiteral("a.txt: 5 more lines are skipped."));
}

void TestTrajectory::errors_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &text, const char *reason) {
        QTest::newRow(name) << text << QString::fromUtf8(reason);
    };
    row("an empty file", "", "");
    row("comments only", "# a\n# b\n", "");
    row("the first line's reason", "# a\n1 2 3\nx\n", "Line 2: 3 instead of 8 fields. ");
    row("a word", "1 2 3 four 5 6 7 8\n", "Line 1: \"four\" is not a number. ");
    row("commas", "1,2,3\n", "Line 1: 3 instead of 8 fields. ");
    row("seconds with commas", "1.5,1,2,3,1,0,0,0\n", "Line 1: \"1.5\" is not a whole number of nanoseconds. ");
    row("bytes", QByteArray(100000, '\xff'), "Line 1: it is too long. ");
    row("zeros", QByteArray(100000, '\0'), "Line 1: it is too long. ");
}

void TestTrajectory::errors()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    const QString fileName = write(text);
    const TrajectoryResult result = loadTrajectory(fileName);
    QVERIFY(!result.trajectory);
    QCOMPARE(result.error,
             fileName + QStringLiteral(" holds no usable line of a trajectory. ") + reason
                 + QStringLiteral("Columns wanted: timestamp tx ty tz qx qy qz qw [s, m, quaternion] with blanks "
                                  "between them, or timestamp,px,py,pz,qw,qx,qy,qz [ns, m, quaternion]."));

    const QString missing = folder->filePath(QStringLiteral("missing.txt"));
    QVERIFY(loadTrajectory(missing).error.startsWith(missing + QStringLiteral(" cannot be read: ")));
    QVERIFY(loadTrajectory(folder->path()).error.startsWith(folder->path() + QStringLiteral(" cannot be read: ")));
}

void TestTrajectory::longLines()
{
    const QByteArray padding(5000000, ' ');
    const TrajectoryResult result = loadTrajectory(write(line("1") + "2 1 2 3 0 0 0" + padding + "1\n" + line("3")));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->samples().size(), 2);
    QCOMPARE(result.skipped.first().number, 2);
    QCOMPARE(result.skipped.first().reason, QStringLiteral("it is too long"));
}

void TestTrajectory::knowsTheRateOfTheRecording_data()
{
    QTest::addColumn<QVector<double>>("times"); // [s]
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("tolerance");
    const auto regular = [](int count, double rate) {
        QVector<double> times;
        for (int i = 0; i < count; ++i)
            times.append(1.0e6 + i / rate);
        return times;
    };
    QTest::newRow("a single sample has none") << regular(1, 1.0) << 4 << 0.0 << 0.0;
    QTest::newRow("two samples") << QVector<double>{1.0, 1.5} << 4 << 2.0 << 1.0e-9;
    QTest::newRow("300 a second in steps of 0.0033 and 0.0034") << regular(3000, 300.0) << 4 << 300.0 << 0.05;
    QTest::newRow("1 a second") << regular(20, 1.0) << 4 << 1.0 << 1.0e-6;
    QTest::newRow("5000 a second") << regular(20000, 5000.0) << 6 << 5000.0 << 0.1;
    QVector<double> withGaps;
    for (int i = 0; i < 1000; ++i)
        withGaps.append(i / 100.0 + i / 50 * 3.0);
    QTest::newRow("gaps do not count") << withGaps << 4 << 100.0 << 1.0e-3;
}

void TestTrajectory::knowsTheRateOfTheRecording()
{
    QFETCH(QVector<double>, times);
    QFETCH(int, decimals);
    QFETCH(double, rate);
    QFETCH(double, tolerance);
    QByteArray text;
    for (const double time : times)
        text += line(QByteArray::number(time, 'f', decimals).constData());
    const TrajectoryResult result = loadTrajectory(write(text));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QVERIFY2(std::abs(result.trajectory->rate() - rate) <= tolerance,
             qPrintable(QString::number(result.trajectory->rate(), 'f', 6)));
}

void TestTrajectory::readsAsFarAsTheFirstSample()
{
    const QString file = write("# a\nx\n" + line("1", "4") + "y\n" + line("2", "5"));
    const TrajectoryResult result = loadTrajectory(file, nullptr, ReadTrajectory::FirstSample);
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->samples().size(), 1);
    QCOMPARE(result.trajectory->samples().first().pose.position[0], 4000.0);
    QCOMPARE(result.skippedCount, 1);
}

void TestTrajectory::saysHowFarItIs()
{
    const QByteArray text = line("1") + line("2") + "x\n" + QByteArray(20000, ' ') + '\n' + line("3");
    const QString file = write(text);
    ReadingProgress progress;
    QVERIFY(loadTrajectory(file, &progress).trajectory);
    QCOMPARE(progress.read.load(), qint64(text.size()));
    QVERIFY(loadTrajectory(file, &progress).trajectory);
    QCOMPARE(progress.read.load(), 2 * qint64(text.size())); // of both files together
}

void TestTrajectory::givesUpWhenCancelled()
{
    const QString file = write(line("1") + line("2"));
    ReadingProgress progress;
    progress.cancelled = true;
    const TrajectoryResult result = loadTrajectory(file, &progress);
    QVERIFY(!result.trajectory);
    QCOMPARE(result.error, QStringLiteral("The reading of %1 was cancelled.").arg(file));
}

QTEST_GUILESS_MAIN(TestTrajectory)
#include "tst_trajectory.moc"
