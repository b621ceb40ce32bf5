// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/windowedsession.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// Hosts that quit in an order of their own.
class TestContractQuitting : public QObject {
    Q_OBJECT

private slots:
    void init();
    void anyOrder_data();
    void anyOrder();
    void windowTakesThePanelAlong_data();
    void windowTakesThePanelAlong();
    void releaseAloneLeavesTheRequester();
    void panelThatMovedOutOfItsDock();
    void linesUntilItIsUnregistered();
    void savesOnlyWhenTold();

private:
    QTemporaryDir home;
};

void TestContractQuitting::init()
{
    qputenv("HOME", QFile::encodeName(home.path()));
}

void TestContractQuitting::anyOrder_data()
{
    QTest::addColumn<QByteArrayList>("steps");
    QTest::addColumn<bool>("shown");
    const auto row = [](const char *name, const QByteArrayList &steps) {
        for (const bool shown : {false, true})
            QTest::addRow("%s, %s", name, shown ? "shown" : "hidden") << steps << shown;
    };
    row("the window is deleted first", {"window", "aboutToUnload", "releaseWidgets"});
    row("the dock is deleted first", {"dock", "aboutToUnload", "releaseWidgets"});
    row("the window is deleted first, and the rest comes backwards", {"window", "releaseWidgets", "aboutToUnload"});
    row("the dock is deleted first, and the rest comes backwards", {"dock", "releaseWidgets", "aboutToUnload"});
    row("the window is deleted between the two", {"aboutToUnload", "window", "releaseWidgets"});
    row("the dock is deleted between the two", {"aboutToUnload", "dock", "releaseWidgets"});
    row("the window is deleted last", {"aboutToUnload", "releaseWidgets", "window"});
    row("only the window is deleted", {"window"});
    row("dock and window are deleted", {"dock", "window", "aboutToUnload", "releaseWidgets"});
    row("both calls come twice", {"window", "aboutToUnload", "aboutToUnload", "releaseWidgets", "releaseWidgets"});
}

void TestContractQuitting::anyOrder()
{
    QFETCH(const QByteArrayList, steps);
    QFETCH(const bool, shown);
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(shown), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    session.host.takeCalls();
    for (const QByteArray &step : steps)
        session.take(step);
    QCOMPARE(session.host.takeCalls().count("unregisterRequester"), 1);
    QVERIFY(!session.host.isRequesterRegistered);
    QVERIFY(!session.dock);
    QVERIFY(session.isEntryNull());

    // The module stays usable; without a main window the new dock has no parent.
    QVERIFY(session.takeEntries());
    QVERIFY(session.host.isRequesterRegistered);
    session.configurationChanged();
    QCOMPARE(session.table6d()->rowCount(), 2);
    session.release();
    QVERIFY(!session.host.isRequesterRegistered);
}

void TestContractQuitting::windowTakesThePanelAlong_data()
{
    QTest::addColumn<QByteArray>("deleted");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<QByteArrayList>("calls");
    const QByteArrayList hidden{"unregisterRequester"};
    const QByteArrayList shown{"stopOutput: 6di", "stopOutput: 3d", "unregisterRequester"};
    QTest::newRow("the hidden window") << QByteArray("window") << false << hidden;
    QTest::newRow("the hidden dock") << QByteArray("dock") << false << hidden;
    QTest::newRow("the shown window") << QByteArray("window") << true << shown;
    QTest::newRow("the shown dock, which Qt deletes without hiding") << QByteArray("dock") << true << hidden;
}

void TestContractQuitting::windowTakesThePanelAlong()
{
    QFETCH(const QByteArray, deleted);
    QFETCH(const bool, shown);
    QFETCH(const QByteArrayList, calls);
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(shown), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.take(deleted);
    QCOMPARE(session.host.takeCalls(), calls);
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractQuitting::releaseAloneLeavesTheRequester()
{
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(false), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.take("releaseWidgets");
    QVERIFY(!session.dock);
    QVERIFY(session.isEntryNull());
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
}

void TestContractQuitting::panelThatMovedOutOfItsDock()
{
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(false), qPrintable(session.loader.errorString()));
    auto elsewhere = std::make_unique<QWidget>(); // as of a host that shows the panel in a window of its own
    session.dock->widget()->setParent(elsewhere.get());
    session.host.takeCalls();
    session.take("dock");
    QCOMPARE(session.host.takeCalls(), QByteArrayList());
    elsewhere.reset();
    QCOMPARE(session.host.takeCalls(), QByteArrayList{"unregisterRequester"});
}

void TestContractQuitting::linesUntilItIsUnregistered()
{
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(true), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    int result = 1;
    session.host.onCall = [&] {
        if (session.host.calls.last() == "unregisterRequester")
            result = session.deliver("6di", "6di 1 [0 2 1.0][1 2 3][1 0 0 0 1 0 0 0 x]");
    };
    session.take("window");
    QCOMPARE(result, -1); // read to its malformed end
}

void TestContractQuitting::savesOnlyWhenTold()
{
    const QString file =
        home.path() + QStringLiteral("/.ZEL/VORNAK4/modules/datadisplay/v2.2.6/config/datadisplay-preferences.xml");
    QFile::remove(file);
    WindowedSession session;
    QVERIFY2(session.startInMainWindow(false), qPrintable(session.loader.errorString()));
    session.take("window");
    session.take("aboutToUnload");
    session.take("releaseWidgets");
    QVERIFY(!QFile::exists(file));
}

QTEST_MAIN(TestContractQuitting)
#include "tst_contract_quitting.moc"
