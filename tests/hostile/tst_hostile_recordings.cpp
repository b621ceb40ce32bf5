// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/replay.h"
#include "backend/scenarios.h"
#include "backend/trajectory.h"
#include "tests/hostile/hostilefile.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace backend;

namespace {

const QString folder = QStringLiteral("recordings");
const char *const noUsableLine = " holds no usable line of a trajectory. ";
const char *const wantedColumns =
    "Columns wanted: timestamp tx ty tz qx qy qz qw [s, m, quaternion] with blanks between "
    "them, or timestamp,px,py,pz,qw,qx,qy,qz [ns, m, quaternion].";

struct Row {
    const char *name;
    const char *file;
    int samples; ///< 0: refused, with \a message behind the file's name
    int skipped;
    const char *message; ///< on the first skipped line, if there is one; nullptr: see \a reason
    const char *reason = nullptr; ///< why no line is usable
};

const std::initializer_list<Row> rows{
    {"a recording that ends in a line loses this line", "truncated-in-a-line.txt", 2, 1,
     "line 3 is skipped: 6 instead of 8 fields."},
    {"a quaternion that is cut to zeros is skipped", "truncated-in-a-number.txt", 2, 1,
     "line 3 is skipped: the quaternion has no direction."},
    {"a line from the past is skipped", "time-backwards.txt", 3, 1,
     "line 3 is skipped: its time is not later than that of the line before."},
    {"of lines of the same time the first counts", "time-standing-still.txt", 1, 2,
     "line 2 is skipped: its time is not later than that of the line before."},
    {"line ends of Windows are line ends", "windows-line-ends.txt", 2, 0, ""},
    {"carriage returns alone are blanks", "old-mac-line-ends.txt", 1, 0, ""},
    {"a byte order mark is passed over", "byte-order-mark.txt", 2, 0, ""},
    {"16-bit characters are no recording", "byte-order-mark-of-utf-16.txt", 0, 3, nullptr,
     "Line 1: \"\uFFFD\uFFFD1\" is not a number. "},
    {"a quaternion of zeros has no direction", "zero-quaternion.txt", 2, 1,
     "line 2 is skipped: the quaternion has no direction."},
    {"a quaternion of a few denormal steps has no direction", "quaternion-too-small-for-a-direction.txt", 2, 1,
     "line 2 is skipped: the quaternion has no direction."},
    {"what is no finite number is skipped", "nan-and-inf.txt", 1, 3, "line 2 is skipped: \"nan\" is not a number."},
    {"decimal commas are no numbers", "decimal-commas.txt", 1, 2, "line 2 is skipped: \"1,5\" is not a number."},
    {"a recording that is being written has its whole lines", "growing.txt", 2, 1,
     "line 3 is skipped: 4 instead of 8 fields."},
    {"an empty file is no recording", "empty.txt", 0, 0, nullptr, ""},
    {"zero bytes are no recording", "zero-bytes.txt", 0, 1, nullptr, "Line 1: it is too long. "},
    {"a pipe is not waited for", "pipe.place", 0, 0, " cannot be read: it is a pipe or a device."},
    {"a device without an end is not read", "device.place", 0, 0, " cannot be read: it is a pipe or a device."},
    {"a line of five megabytes is skipped", "line-of-five-megabytes.txt.recipe", 0, 1, nullptr,
     "Line 1: it is too long. "},
};

} // namespace

class TestHostileRecordings : public QObject {
    Q_OBJECT

private slots:
    void everyFileHasItsRow();
    void recordings_data();
    void recordings();
    void aRecordingGrowsWhileItIsReplayed();

private:
    QString copyOf(const QString &file);

    QTemporaryDir home;
};

QString TestHostileRecordings::copyOf(const QString &file)
{
    const QString pipe = home.filePath(QStringLiteral("pipe"));
    if (file == QLatin1String("pipe.place")) {
        mkfifo(QFile::encodeName(pipe).constData(), 0600);
        return pipe;
    }
    if (file == QLatin1String("device.place"))
        return QStringLiteral("/dev/zero");
    QFile copy(home.filePath(QStringLiteral("recording.txt")));
    if (!copy.open(QIODevice::WriteOnly) || copy.write(hostileInput(folder, file)) < 0)
        qFatal("the test can't write its recording");
    return copy.fileName();
}

void TestHostileRecordings::everyFileHasItsRow()
{
    QStringList files;
    for (const Row &row : rows)
        files << QLatin1String(row.file);
    files.sort();
    QCOMPARE(files, hostileNames(folder));
}

void TestHostileRecordings::recordings_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("skipped");
    QTest::addColumn<QString>("message");
    for (const Row &row : rows) {
        const QString none = QLatin1String(noUsableLine) + QString::fromUtf8(row.reason) + QLatin1String(wantedColumns);
        const QString message = row.message ? QString::fromUtf8(row.message) : none;
        QTest::newRow(row.name) << QString::fromLatin1(row.file) << row.samples << row.skipped << message;
    }
}

void TestHostileRecordings::recordings()
{
    QFETCH(const QString, file);
    QFETCH(const int, samples);
    QFETCH(const int, skipped);
    QFETCH(const QString, message);
    const QString path = copyOf(file);
    const TrajectoryResult result = loadTrajectory(path);
    QCOMPARE(result.trajectory ? result.trajectory->samples().size() : 0, samples);
    QCOMPARE(result.skippedCount, skipped);
    const ScenarioResult replay = replayScenario({path});
    QCOMPARE(replay.scenario.has_value(), samples > 0);
    if (samples == 0)
        QCOMPARE(replay.error, QString(path + message));
    else if (skipped > 0)
        QCOMPARE(replay.warnings.value(0), QString(path + QStringLiteral(": ") + message));
    else
        QCOMPARE(replay.warnings, QStringList());
    // A scenario in the same place is as bad.
    if (file.endsWith(QLatin1String(".place")))
        QCOMPARE(loadScenario(path).error, QString(path + message));
}

void TestHostileRecordings::aRecordingGrowsWhileItIsReplayed()
{
    const QString path = copyOf(QStringLiteral("growing.txt"));
    const TrajectoryResult before = loadTrajectory(path);
    QVERIFY2(before.trajectory, qPrintable(before.error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    QVERIFY(file.write(" 0 0 0 1\n4 1 2 3 0 0 0 1\n") > 0);
    file.close();
    QCOMPARE(before.trajectory->samples().size(), 2);
    QCOMPARE(before.trajectory->duration(), 2.0);
    const TrajectoryResult after = loadTrajectory(path);
    QVERIFY2(after.trajectory, qPrintable(after.error));
    QCOMPARE(after.trajectory->samples().size(), 4);
    QCOMPARE(after.skippedCount, 0);
}

QTEST_GUILESS_MAIN(TestHostileRecordings)

#include "tst_hostile_recordings.moc"
