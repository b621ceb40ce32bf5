// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QAction>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

namespace {

const Version inertialBackend{2, 0, 0};
const Version plainBackend{1, 11, 0};

// The rotation gives the angles 60, 30 and 45 degrees.
const char goodInertialLine[] = "6di 1 [0 2 1.0][1.25 -2.5 1000.004][1 0 0 -1 0 0 0.5 -1.7320508 1]";
const char goodPlainLine[] = "6d 1 [0 1.0][1.25 -2.5 1000.004 7 8 9][1 0 0 -1 0 0 0.5 -1.7320508 1]";
const char otherInertialLine[] = "6di 1 [0 1 1.0][-0.001 0 3][1 0 0 -1 0 0 0.5 -1.7320508 1]";
const char otherPlainLine[] = "6d 1 [0 1.0][-0.001 0 3 7 8 9][1 0 0 -1 0 0 0.5 -1.7320508 1]";
const char goodMarkerLine[] = "3d 2 [4 0.5][1 2 3][17 0.5][-0.001 20.5 300.25]";

QStringList coordinates(const GuestSession &session, int row = 0)
{
    return session.rowOf(session.table6d(), row).mid(4, 6);
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

class TestContractLines : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void showingStartsAndHidingStops_data();
    void showingStartsAndHidingStops();
    void linesReachTheTables_data();
    void linesReachTheTables();
    void resultTellsWhatBecameOfALine_data();
    void resultTellsWhatBecameOfALine();
    void hostsTextIsLeftAlone();
    void missingMarkerCountEmptiesTheMarkers();
    void markersEndAtThreeHundred();
    void lostBodyKeepsItsCoordinates();
    void clearingEmptiesTheTables();
    void linesFlowWhileTheHostReconfigures();

private:
    QTemporaryDir home;
};

void TestContractLines::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
}

void TestContractLines::showingStartsAndHidingStops_data()
{
    QTest::addColumn<Version>("version");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("inertial format") << inertialBackend << QByteArray("6di");
    QTest::newRow("plain format") << plainBackend << QByteArray("6d");
}

void TestContractLines::showingStartsAndHidingStops()
{
    QFETCH(const Version, version);
    QFETCH(const QByteArray, tag);
    GuestSession session(version);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    session.host.takeCalls();
    const QByteArrayList started{"startOutput: " + tag, "startOutput: 3d"};
    const QByteArrayList stopped{"stopOutput: " + tag, "stopOutput: 3d"};
    session.show();
    QCOMPARE(session.host.takeCalls(), started);
    session.entry.action->trigger();
    QVERIFY(!session.dock->isVisible());
    QCOMPARE(session.host.takeCalls(), stopped);
    session.entry.action->trigger();
    QVERIFY(session.dock->isVisible());
    QCOMPARE(session.host.takeCalls(), started);
    session.window.hide();
    QCOMPARE(session.host.takeCalls(), stopped);
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractLines::linesReachTheTables_data()
{
    QTest::addColumn<Version>("version");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("inertial") << inertialBackend << QByteArray("6di") << QByteArray(goodInertialLine)
                              << QColor(Qt::green);
    QTest::newRow("plain, whose own angles are replaced")
        << plainBackend << QByteArray("6d") << QByteArray(goodPlainLine) << QColor(Qt::green);
    QTest::newRow("state 1") << inertialBackend << QByteArray("6di")
                             << QByteArray(goodInertialLine).replace("[0 2", "[0 1") << QColor(Qt::yellow);
    QTest::newRow("state 0") << inertialBackend << QByteArray("6di")
                             << QByteArray(goodInertialLine).replace("[0 2", "[0 0") << QColor(Qt::red);
}

void TestContractLines::linesReachTheTables()
{
    QFETCH(const Version, version);
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    QFETCH(const QColor, colour);
    GuestSession session(version);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    QCOMPARE(coordinates(session), words("- - - - - -"));
    QCOMPARE(session.deliver(tag, line), 0);
    QTRY_COMPARE(coordinates(session), words("1.25 -2.50 1000.00 60.00 30.00 45.00"));
    QCOMPARE(session.table6d()->item(0, 0)->background().color(), colour);
    QCOMPARE(session.table6d()->item(0, 0)->foreground().color(), QColor(Qt::black));
    QCOMPARE(coordinates(session, 1), words("- - - - - -"));

    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);
    QTRY_COMPARE(session.table3d()->rowCount(), 2);
    QCOMPARE(session.rowOf(session.table3d(), 0), words("4 1.00 2.00 3.00"));
    QCOMPARE(session.rowOf(session.table3d(), 1), words("17 -0.00 20.50 300.25"));
}

void TestContractLines::resultTellsWhatBecameOfALine_data()
{
    QTest::addColumn<Version>("version");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("result");
    const auto row = [](const char *name, const Version &version, const char *tag, const QByteArray &line, int result) {
        QTest::newRow(name) << version << QByteArray(tag) << line << result;
    };
    const QByteArray blanks(10 * 1024 * 1024, ' ');
    const QByteArray rotation("[1 0 0 0 1 0 0 0 1]");
    row("6di: no count", inertialBackend, "6di", "6di ", -1);
    row("6di: the line ends before the count", inertialBackend, "6di", "6d", -1);
    row("6di: an empty line", inertialBackend, "6di", QByteArray(""), -1);
    row("6di: a word for a count", inertialBackend, "6di", "6di two", -1);
    row("6di: a body too few", inertialBackend, "6di", QByteArray("6di 2 [0 2 1][1 2 3]") + rotation, -1);
    row("6di: a count of two thousand million", inertialBackend, "6di", "6di 2000000000 [0 2 1]", 0);
    row("6di: a negative count", inertialBackend, "6di", "6di -5 [0 2 1]", 0);
    row("6di: a count of 0", inertialBackend, "6di", "6di 0", 0);
    row("6di: a count beyond 64 bits", inertialBackend, "6di", "6di 99999999999999999999", 0);
    row("6di: no bracket opens", inertialBackend, "6di", "6di 1 0 2 1.0]", -1);
    row("6di: no bracket closes", inertialBackend, "6di", "6di 1 [0 2 1.0", -1);
    row("6di: a number too few", inertialBackend, "6di", "6di 1 [0 2][1 2 3]" + rotation, -1);
    row("6di: a decimal comma", inertialBackend, "6di", "6di 1 [0 2 1][1,5 2 3]" + rotation, -1);
    row("6di: 10 MB without a bracket", inertialBackend, "6di", "6di 1 " + blanks, -1);
    row("6di: 10 MB in a bracket", inertialBackend, "6di", "6di 1 [0 2 1" + blanks + "][1 2 3]" + rotation, 0);
    row("6di: 10 MB and no bracket closes", inertialBackend, "6di", "6di 1 [0 2 1" + blanks, -1);
    row("6di: ten thousand numbers too many", inertialBackend, "6di",
        "6di 1 [0 2 1" + QByteArray(" 7").repeated(10000) + "][1 2 3]" + rotation, 0);
    row("6di: a plain line is not for this panel", inertialBackend, "6d", "6d x", 0);
    row("6di: bytes beyond ASCII", inertialBackend, "6di", "6di \xff\xfe\x80", -1);
    row("6d: no count", plainBackend, "6d", "6d ", -1);
    row("6d: a body too few", plainBackend, "6d", "6d 2 [0 1][1 2 3 4 5 6]" + rotation, -1);
    row("6d: a count of two thousand million", plainBackend, "6d", "6d 2000000000 [0 1]", 0);
    row("6d: a negative count", plainBackend, "6d", "6d -5", 0);
    row("6d: hexadecimal counts", plainBackend, "6d", "6d 0x1 [0 1][1 2 3 4 5 6]" + rotation, 0);
    row("6d: an inertial line is not for this panel", plainBackend, "6di", "6di x", 0);
    row("3d: no count", inertialBackend, "3d", "3d ", -1);
    row("3d: the line ends before the count", inertialBackend, "3d", "3d", -1);
    row("3d: a count of two thousand million and no blocks", inertialBackend, "3d", "3d 2000000000", -1);
    row("3d: a negative count", inertialBackend, "3d", "3d -5", 0);
    row("3d: a marker too few", inertialBackend, "3d", "3d 2 [1 1][1 2 3]", -1);
    for (const char *tag : {"", "6", "6d ", "6dii", "6dI", "3", "3D", "3dx", "gl", "%s%n"})
        row(qPrintable(QStringLiteral("another tag: '%1'").arg(QLatin1String(tag))), inertialBackend, tag, "x", 0);
}

void TestContractLines::resultTellsWhatBecameOfALine()
{
    QFETCH(const Version, version);
    QFETCH(const QByteArray, tag);
    QFETCH(const QByteArray, line);
    QFETCH(const int, result);
    GuestSession session(version);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    const bool isPlain = version == plainBackend;
    const char *const format = isPlain ? "6d" : "6di";
    QCOMPARE(session.deliver(format, isPlain ? goodPlainLine : goodInertialLine), 0);
    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);

    QCOMPARE(session.deliver(tag, line), result);
    QCOMPARE(session.deliver(nullptr, line), 0);
    QCOMPARE(session.deliver(tag, nullptr), 0);
    QCOMPARE(session.deliver(nullptr, nullptr), 0);

    // Whatever it was: the lock is free, and the next good lines are shown.
    QCOMPARE(session.deliver(format, isPlain ? otherPlainLine : otherInertialLine), 0);
    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);
    QTRY_COMPARE(coordinates(session), words("-0.00 0.00 3.00 60.00 30.00 45.00"));
    QTRY_COMPARE(session.table3d()->rowCount(), 2);
}

void TestContractLines::hostsTextIsLeftAlone()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    for (const char *text : {goodInertialLine, "6di 2 [0 2 1.0][1 2", "6di 1 [0 2 x][1 2 3]"}) {
        QByteArray line(text);
        session.deliver("6di", line.data());
        QCOMPARE(line, QByteArray(text));
        QCOMPARE(int(qstrlen(line.constData())), line.size());
    }
}

void TestContractLines::missingMarkerCountEmptiesTheMarkers()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);
    QTRY_COMPARE(session.table3d()->rowCount(), 2);
    QCOMPARE(session.deliver("3d", "3d "), -1);
    QTRY_COMPARE(session.table3d()->rowCount(), 0);
}

void TestContractLines::markersEndAtThreeHundred()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    QByteArray line("3d 500 ");
    for (int i = 1; i <= 500; ++i)
        line += '[' + QByteArray::number(i) + " 1.0][1 2 3]";
    QCOMPARE(session.deliver("3d", line), 0);
    QTRY_COMPARE(session.table3d()->rowCount(), 300);
    QCOMPARE(session.rowOf(session.table3d(), 299), words("300 1.00 2.00 3.00"));
}

void TestContractLines::lostBodyKeepsItsCoordinates()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    QCOMPARE(session.deliver("6di", goodInertialLine), 0);
    const QTableWidgetItem *const id = session.table6d()->item(0, 0);
    QTRY_COMPARE(id->background().color(), QColor(Qt::green));
    // A count that can't be held leaves the store as it was, so the body is still tracked after a redraw.
    QCOMPARE(session.deliver("6di", "6di 2000000000"), 0);
    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);
    QTRY_COMPARE(session.table3d()->rowCount(), 2);
    QCOMPARE(id->background().color(), QColor(Qt::green));
    QCOMPARE(session.deliver("6di", "6di -5"), 0);
    QTRY_COMPARE(id->background().color(), QColor(Qt::red));
    QCOMPARE(coordinates(session), words("1.25 -2.50 1000.00 60.00 30.00 45.00"));
}

void TestContractLines::clearingEmptiesTheTables()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    QCOMPARE(session.deliver("6di", goodInertialLine), 0);
    QCOMPARE(session.deliver("3d", goodMarkerLine), 0);
    QTRY_COMPARE(session.table3d()->rowCount(), 2);
    session.host.takeCalls();
    session.clearData();
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
    QCOMPARE(session.table6d()->rowCount(), 0);
    QCOMPARE(session.table3d()->rowCount(), 0);
    session.clearData();

    // The stores are empty too: a new configuration shows nothing of the old frame.
    session.configurationChanged();
    QCOMPARE(session.table6d()->rowCount(), 2);
    QCOMPARE(coordinates(session), words("- - - - - -"));
    QCOMPARE(session.table6d()->item(0, 0)->background().color(), QColor(Qt::red));
    QCOMPARE(session.deliver("6di", goodInertialLine), 0);
    QTRY_COMPARE(coordinates(session), words("1.25 -2.50 1000.00 60.00 30.00 45.00"));
    QCOMPARE(session.table3d()->rowCount(), 0);
}

void TestContractLines::linesFlowWhileTheHostReconfigures()
{
    GuestSession session;
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    void *const requester = session.host.requester;
    std::atomic<bool> isFlowing{true};
    std::atomic<int> delivered{0};
    std::atomic<int> failed{0};
    std::thread receiver([&] {
        while (isFlowing) {
            for (const auto &[tag, line] : {std::pair{"6di", goodInertialLine}, std::pair{"3d", goodMarkerLine}}) {
                if (callEntry<int, const char *, const char *>(requester, ProcessOutput, tag, line) != 0)
                    ++failed;
            }
            ++delivered;
        }
    });
    for (int round = 0; round < 20; ++round) {
        const int before = delivered;
        session.configurationChanged();
        session.host.changeScript(round % 2 == 0 ? "standard fixed_angle_present=yes"
                                                 : "standard fixed_angle_present=no");
        while (delivered < before + 20)
            QCoreApplication::processEvents();
        session.clearData();
    }
    isFlowing = false;
    receiver.join();
    QCOMPARE(failed.load(), 0);
    QCOMPARE(session.host.violations, QByteArrayList());

    session.configurationChanged();
    QCOMPARE(session.deliver("6di", goodInertialLine), 0);
    QTRY_COMPARE(coordinates(session), words("1.25 -2.50 1000.00 60.00 30.00 45.00"));
}

QTEST_MAIN(TestContractLines)
#include "tst_contract_lines.moc"
