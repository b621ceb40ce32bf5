// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trajectory.h"
#include "tests/backend/recordedfile.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace backend;

/// Trajectory files with commas between their fields.
class TestTrajectoryLayouts : public QObject {
    Q_OBJECT

private slots:
    void init();
    void readsCommas_data();
    void readsCommas();
    void theFirstUsableLineTellsTheLayout();
    void skipsLinesOfCommas_data();
    void skipsLinesOfCommas();
    void keepsNanoseconds();

private:
    QString write(const QByteArray &text) const;

    std::unique_ptr<QTemporaryDir> folder;
};

void TestTrajectoryLayouts::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

QString TestTrajectoryLayouts::write(const QByteArray &text) const
{
    QFile file(folder->filePath(QStringLiteral("data.csv")));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? file.fileName() : QString();
}

void TestTrajectoryLayouts::readsCommas_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray first = "1403636579758555392,1,2,3,0.5,0.1,-0.5,0.7";
    const QByteArray second = "1403636580758555392,1,2,3,0.5,0.1,-0.5,0.7";
    QTest::newRow("as published, with a heading and seventeen columns")
        << "#timestamp, p_RS_R_x [m], p_RS_R_y [m], p_RS_R_z [m], q_RS_w [], q_RS_x [], q_RS_y [], q_RS_z []\r\n"
            + first + ",0.1,0.2,0.3,0,0,0,0,0,0\r\n" + second + ",0.1,0.2,0.3,0,0,0,0,0,0\r\n";
    QTest::newRow("eight columns and a byte order mark") << "\xEF\xBB\xBF" + first + '\n' + second;
    QByteArray spacious = first + '\n' + second;
    QTest::newRow("blanks after the commas") << spacious.replace(",", ", ");
    QTest::newRow("blanks around the commas and at the ends")
        << " " + spacious.replace(", ", "\t, ").replace("\n", " \n\n ");
    QTest::newRow("quaternions of any length")
        << QByteArray("1403636579758555392,1,2,3,5,1,-5,7\n1403636580758555392,1,2,3,5e-9,1e-9,-5e-9,7e-9\n");
    QTest::newRow("a comment with blanks and commas at the end") << first + ",a b c d e f g h\n" + second + ",1,2 3\n";
}

void TestTrajectoryLayouts::readsCommas()
{
    QFETCH(QByteArray, text);
    const TrajectoryResult result = loadTrajectory(write(text));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.skippedCount, 0);
    QCOMPARE(result.trajectory->samples().size(), 2);
    QCOMPARE(result.trajectory->samples().last().time, 1.0);
    const std::array<double, 9> matrix = matrixOf({0.1, -0.5, 0.7, 0.5});
    for (const Trajectory::Sample &sample : result.trajectory->samples()) {
        QCOMPARE(sample.pose.position, Vector3({1000.0, 2000.0, 3000.0}));
        for (std::size_t k = 0; k < 9; ++k)
            QVERIFY(std::abs(sample.pose.rotation[k] - matrix[k]) < 1.0e-12);
    }
}

void TestTrajectoryLayouts::theFirstUsableLineTellsTheLayout()
{
    const TrajectoryResult commas = loadTrajectory(
        write("time,x,y,z,w,x,y,z\n1000000000,1,2,3,1,0,0,0\n2 1 2 3 0 0 0 1\n2000000000,1,2,3,1,0,0,0\n"));
    QVERIFY2(commas.trajectory, qPrintable(commas.error));
    QCOMPARE(commas.trajectory->samples().size(), 2);
    QCOMPARE(commas.skipped.at(0).reason, QStringLiteral("\"time\" is not a whole number of nanoseconds"));
    QCOMPARE(commas.skipped.at(1).reason, QStringLiteral("1 instead of 8 fields"));

    const TrajectoryResult blanks =
        loadTrajectory(write("1 1 2 3 0 0 0 1 a, b, c, d, e, f, g, h\n2000000000,1,2,3,1,0,0,0\n3 1 2 3 0 0 0 1\n"));
    QVERIFY2(blanks.trajectory, qPrintable(blanks.error));
    QCOMPARE(blanks.trajectory->samples().size(), 2);
    QCOMPARE(blanks.trajectory->samples().last().time, 2.0);
    QCOMPARE(blanks.skipped.first().reason, QStringLiteral("1 instead of 8 fields"));
}

void TestTrajectoryLayouts::skipsLinesOfCommas_data()
{
    QTest::addColumn<QByteArray>("bad");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *bad, const char *reason) {
        QTest::newRow(name) << QByteArray(bad) << QString::fromUtf8(reason);
    };
    row("too few fields", "1500000000,1,2,3,1,0,0", "7 instead of 8 fields");
    row("a field that is empty", "1500000000,1,,3,1,0,0,0", "\"\" is not a number");
    row("a time with an exponent", "1.5e9,1,2,3,1,0,0,0", "\"1.5e9\" is not a whole number of nanoseconds");
    row("a time beyond 64 bits", "99999999999999999999,1,2,3,1,0,0,0",
        "\"99999999999999999999\" is not a whole number of nanoseconds");
    row("a time out of range", "9000000000000000000,1,2,3,1,0,0,0", "the time is out of range");
    row("a negative time out of range", "-9223372036854775808,1,2,3,1,0,0,0", "the time is out of range");
    row("the same time again", "1000000000,1,2,3,1,0,0,0", "its time is not later than that of the line before");
    row("a quaternion of length 0", "1500000000,1,2,3,0,0,0,0", "the quaternion has no direction");
}

void TestTrajectoryLayouts::skipsLinesOfCommas()
{
    QFETCH(QByteArray, bad);
    QFETCH(QString, reason);
    const TrajectoryResult result =
        loadTrajectory(write("1000000000,1,2,3,1,0,0,0\n" + bad + "\n2000000000,1,2,3,1,0,0,0\n"));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->samples().size(), 2);
    QCOMPARE(result.skippedCount, 1);
    QCOMPARE(result.skipped.first().reason, reason);
}

void TestTrajectoryLayouts::keepsNanoseconds()
{
    // A double holds such a time to 256 ns.
    const TrajectoryResult result =
        loadTrajectory(write("1403636579758555392,1,2,3,1,0,0,0\n1403636579758555393,1,2,3,1,0,0,0\n"
                             "1403636579758555395,1,2,3,1,0,0,0\n"));
    QVERIFY2(result.trajectory, qPrintable(result.error));
    QCOMPARE(result.trajectory->samples().size(), 3);
    QCOMPARE(result.trajectory->samples().at(1).time, 1.0e-9);
    QCOMPARE(result.trajectory->samples().at(2).time, 3.0e-9);
}

QTEST_GUILESS_MAIN(TestTrajectoryLayouts)
#include "tst_trajectorylayouts.moc"
