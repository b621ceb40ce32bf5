// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/programrun.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

namespace {

ProgramRun trackhost(const QStringList &arguments)
{
    return runProgram(QStringLiteral(TRACKHOST), arguments);
}

} // namespace

/// The built program, by its command line.
class TrackhostTest : public QObject {
    Q_OBJECT

private slots:
    void answersWithoutADisplay_data();
    void answersWithoutADisplay();
    void endsWithTwoWhenItCannotStart_data();
    void endsWithTwoWhenItCannotStart();
    void reportsLinesOfAReplayThatItSkips();
    void savesAPicture();
    void warnsOfNothingThatIsUsualWithoutADisplay_data();
    void warnsOfNothingThatIsUsualWithoutADisplay();
    void endsWithOneWhenThePictureCannotBeSaved();
    void accountsForTheLinesOfARun();
    void showsFailuresOfTheBackendWithoutFailing();

private:
    QString write(const QString &name, const QByteArray &content);

    QTemporaryDir folder;
    const QStringList modules{QStringLiteral("--modules"), QStringLiteral(TEST_MODULES "/testmodule")};
};

QString TrackhostTest::write(const QString &name, const QByteArray &content)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s could not be written", qPrintable(file.fileName()));
    return file.fileName();
}

void TrackhostTest::answersWithoutADisplay_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected");
    QTest::newRow("help names the options") << QStringLiteral("--help") << QStringLiteral("--screenshot");
    QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("trackhost " TRACKHOST_VERSION);
    QTest::newRow("short help") << QStringLiteral("-h") << QStringLiteral("--replay");
    QTest::newRow("scenarios") << QStringLiteral("--list-scenarios") << QStringLiteral("default");
}

void TrackhostTest::answersWithoutADisplay()
{
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "no-such-platform");
    const ProgramRun run = trackhost({argument});
    qputenv("QT_QPA_PLATFORM", platform);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(expected), qPrintable(run.out));
    QCOMPARE(run.err, QString());
}

void TrackhostTest::endsWithTwoWhenItCannotStart_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const QString broken = write(QStringLiteral("broken.json"), "{\n \"bodies\": [\n}\n");
    const QString wrong = write(QStringLiteral("wrong.json"), "{\"rate\": \"fast\"}");
    const QString empty = write(QStringLiteral("empty.txt"), "# nothing\n");
    const QString simulate = QStringLiteral("--simulate");
    const QString replay = QStringLiteral("--replay");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("--fast")} << QStringLiteral("fast");
    QTest::newRow("unknown scenario") << QStringList{simulate, QStringLiteral("no-such-scenario")}
                                      << QStringLiteral("no-such-scenario");
    QTest::newRow("scenario that is no JSON names the file") << QStringList{simulate, broken} << broken;
    QTest::newRow("scenario with a wrong value names the key")
        << QStringList{simulate, wrong} << QStringLiteral("rate");
    QTest::newRow("missing file to replay")
        << QStringList{replay, QStringLiteral("/nonexistent/a.txt")} << QStringLiteral("/nonexistent/a.txt");
    QTest::newRow("folder to replay") << QStringList{replay, folder.path()} << folder.path();
    QTest::newRow("file to replay without a line") << QStringList{replay, empty} << empty;
}

void TrackhostTest::endsWithTwoWhenItCannotStart()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const ProgramRun run = trackhost(arguments);
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(complaint), qPrintable(run.err));
    QCOMPARE(run.out, QString());
}

void TrackhostTest::reportsLinesOfAReplayThatItSkips()
{
    const QString file = write(QStringLiteral("track.txt"),
                               "# a track\n"
                               "0.00 1 2 3 0 0 0 1\n"
                               "0.01 1 2 x 0 0 0 1\n"
                               "0.02 1 2 3 0 0 0 1\n");
    const ProgramRun run = trackhost(
        QStringList{QStringLiteral("--replay"), file, QStringLiteral("--duration"), QStringLiteral("50")} + modules);
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = run.err.split(QLatin1Char('\n')).filter(file);
    QVERIFY2(lines.size() == 1, qPrintable(run.err));
    QVERIFY2(lines.constFirst().contains(QStringLiteral("line 3")), qPrintable(run.err));
}

void TrackhostTest::savesAPicture()
{
    const QString file = folder.filePath(QStringLiteral("picture.png"));
    const ProgramRun run = trackhost(
        QStringList{QStringLiteral("--screenshot"), file, QStringLiteral("--after"), QStringLiteral("300")} + modules);
    QCOMPARE(run.exitCode, 0);
    const QImage picture(file);
    QCOMPARE(picture.size(), QSize(1280, 560));
    QSet<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, y));
    }
    QVERIFY2(colors.size() > 10, "a window with texts has more than a few colours");
    QVERIFY(run.out.startsWith(QStringLiteral("lines: ")));
}

void TrackhostTest::warnsOfNothingThatIsUsualWithoutADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("warning");
    QTest::newRow("a picture is taken without a warning") << QStringList{} << QString();
    QTest::newRow("other warnings of Qt are printed")
        << QStringList{QStringLiteral("-style"), QStringLiteral("no-such-style")} << QStringLiteral("no-such-style");
}

void TrackhostTest::warnsOfNothingThatIsUsualWithoutADisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, warning);
    const QString file = folder.filePath(QStringLiteral("quiet.png"));
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    const ProgramRun run =
        trackhost(modules + arguments
                  + QStringList{QStringLiteral("--screenshot"), file, QStringLiteral("--after"), QStringLiteral("50")});
    qputenv("XDG_RUNTIME_DIR", runtimeFolder);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err.isEmpty(), warning.isEmpty());
    QVERIFY2(run.err.contains(warning), qPrintable(run.err));
    QVERIFY2(!run.err.contains(QLatin1String("XDG_RUNTIME_DIR")), qPrintable(run.err));
}

void TrackhostTest::endsWithOneWhenThePictureCannotBeSaved()
{
    const QString file = QStringLiteral("/nonexistent/folder/picture.png");
    const ProgramRun run = trackhost(
        QStringList{QStringLiteral("--screenshot"), file, QStringLiteral("--after"), QStringLiteral("0")} + modules);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(file), qPrintable(run.err));
}

void TrackhostTest::accountsForTheLinesOfARun()
{
    const ProgramRun run = trackhost(QStringList{QStringLiteral("--duration"), QStringLiteral("1000"),
                                                 QStringLiteral("--rate"), QStringLiteral("100")}
                                     + modules);
    QCOMPARE(run.exitCode, 0);
    static const QRegularExpression summary(
        QStringLiteral("\\Alines: (\\d+) sent, (\\d+) stored, (\\d+) dropped while the display was drawing, "
                       "0 refused, (\\d+) ignored\n\\z"));
    const QRegularExpressionMatch match = summary.match(run.out);
    QVERIFY2(match.hasMatch(), qPrintable(run.out));
    const int sent = match.captured(1).toInt();
    QVERIFY(sent > 20);
    QCOMPARE(sent, match.captured(2).toInt() + match.captured(3).toInt() + match.captured(4).toInt());
}

void TrackhostTest::showsFailuresOfTheBackendWithoutFailing()
{
    const ProgramRun run =
        trackhost(QStringList{QStringLiteral("--fail"), QStringLiteral("*"), QStringLiteral("--latency"),
                              QStringLiteral("1"), QStringLiteral("--duration"), QStringLiteral("100")}
                  + modules);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.startsWith(QStringLiteral("lines: ")), qPrintable(run.out));
}

QTEST_GUILESS_MAIN(TrackhostTest)
#include "tst_trackhost.moc"
