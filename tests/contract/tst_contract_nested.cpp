// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/nestedsession.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

void addActions()
{
    QTest::addColumn<QByteArray>("action");
    QTest::newRow("in a configuration") << QByteArray("configuration");
    QTest::newRow("in a sensor pass") << QByteArray("sensor pass");
    QTest::newRow("in a question for a filter") << QByteArray("filter state");
}

} // namespace

/// A host that runs an event loop while the panel waits for it, and calls in again from there: in each of the calls.
class TestContractNested : public QObject {
    Q_OBJECT

private slots:
    void init();
    void releaseIsSurvived_data();
    void releaseIsSurvived();
    void releaseInTheFirstConfigurationIsSurvived();
    void clearDataWins_data();
    void clearDataWins();
    void configurationWins_data();
    void configurationWins();
    void configurationThenClearDataWins();
    void redrawSeesOneWholeState_data();
    void redrawSeesOneWholeState();
    void trackedRowsStayTracked();
    void panelIsCalledWhileItIsMade_data();
    void panelIsCalledWhileItIsMade();

private:
    QTemporaryDir home;
};

void TestContractNested::init()
{
    qputenv("HOME", QFile::encodeName(home.path()));
}

void TestContractNested::releaseIsSurvived_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QByteArrayList>("steps");
    for (const char *const action : {"configuration", "sensor pass", "filter state"}) {
        QTest::addRow("unloaded in a %s", action)
            << QByteArray(action) << QByteArrayList{"aboutToUnload", "releaseWidgets"};
        QTest::addRow("only released in a %s", action) << QByteArray(action) << QByteArrayList{"releaseWidgets"};
        QTest::addRow("window deleted in a %s", action) << QByteArray(action) << QByteArrayList{"window"};
        QTest::addRow("dock deleted in a %s", action) << QByteArray(action) << QByteArrayList{"dock"};
        QTest::addRow("cleared, then unloaded in a %s", action)
            << QByteArray(action) << QByteArrayList{"clearData", "aboutToUnload", "releaseWidgets"};
        QTest::addRow("configured, then released in a %s", action)
            << QByteArray(action) << QByteArrayList{"configurationChanged", "releaseWidgets"};
    }
}

void TestContractNested::releaseIsSurvived()
{
    QFETCH(const QByteArray, action);
    QFETCH(const QByteArrayList, steps);
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const int calls = session.callsOf(action);
    QVERIFY(calls > 0);
    for (int k = 1; k <= calls; ++k) {
        int callsUntilThen = 0;
        insideCall(session.host, k, [&] {
            for (const QByteArray &step : steps)
                session.take(step);
            callsUntilThen = session.host.calls.size();
        });
        session.act(action);
        QVERIFY(callsUntilThen > 0);
        QCOMPARE(session.host.calls.mid(callsUntilThen), QByteArrayList()); // a panel that is gone asks nothing
        QVERIFY(!session.dock);
        QCOMPARE(session.host.isRequesterRegistered,
                 steps == QByteArrayList{"releaseWidgets"} || steps.contains("configurationChanged"));

        session.host.isRequesterRegistered = false;
        QVERIFY(session.startWith(firstSetup));
        session.configurationChanged();
        QCOMPARE(session.table6d()->rowCount(), 3);
    }
}

void TestContractNested::releaseInTheFirstConfigurationIsSurvived()
{
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    const int calls = session.callsOf("configuration");
    QVERIFY(calls > 20);
    for (int k = 1; k <= calls; ++k) {
        session.release();
        QVERIFY(session.startWith(firstSetup));
        insideCall(session.host, k, [&] { session.release(); });
        session.configurationChanged();
        QVERIFY(!session.dock);
    }
}

void TestContractNested::clearDataWins_data()
{
    addActions();
}

void TestContractNested::clearDataWins()
{
    QFETCH(const QByteArray, action);
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const int calls = session.callsOf(action);
    for (int k = 1; k <= calls; ++k) {
        session.configurationChanged();
        session.deliverFrame(3, "1");
        session.redraw();
        session.host.calls.clear();
        int asked = 0;
        insideCall(session.host, k, [&] {
            session.clearData();
            asked = callsIn(session.host.calls);
        });
        session.act(action);
        session.host.onCall = nullptr;
        QCOMPARE(callsIn(session.host.calls), asked); // what is no longer wanted is not asked for
        QCOMPARE(session.table6d()->rowCount(), 0);
        QCOMPARE(session.table3d()->rowCount(), 0);
        QVERIFY(session.table6d()->isVisible());
        QVERIFY(!session.isTimerActive("viewTimer"));
        QVERIFY(!session.isTimerActive("sensorTimer"));
        session.redraw();
        session.act("sensor pass");
        QCOMPARE(session.table6d()->rowCount(), 0);
    }
}

void TestContractNested::configurationWins_data()
{
    addActions();
}

void TestContractNested::configurationWins()
{
    QFETCH(const QByteArray, action);
    QStringList expected;
    {
        NestedSession session;
        QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
        session.configurationChanged();
        session.host.changeScript(secondSetup);
        session.configurationChanged();
        expected = session.seen();
    }
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const int calls = session.callsOf(action);
    for (int k = 1; k <= calls; ++k) {
        session.host.changeScript(firstSetup);
        session.clearData();
        session.configurationChanged();
        session.host.calls.clear();
        int asked = 0;
        insideCall(session.host, k, [&] {
            session.host.changeScript(secondSetup);
            session.configurationChanged();
            asked = callsIn(session.host.calls);
        });
        session.act(action);
        session.host.onCall = nullptr;
        QCOMPARE(callsIn(session.host.calls), asked);
        QCOMPARE(session.seen(), expected);
        QVERIFY(session.isTimerActive("viewTimer"));
        QVERIFY(session.isTimerActive("sensorTimer"));
    }
}

void TestContractNested::configurationThenClearDataWins()
{
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    const int calls = session.callsOf("configuration");
    for (int k = 1; k <= calls; ++k) {
        insideCall(session.host, k, [&] {
            session.configurationChanged();
            session.clearData();
        });
        session.configurationChanged();
        session.host.onCall = nullptr;
        QCOMPARE(session.table6d()->rowCount(), 0);
        QVERIFY(session.table6d()->isVisible());
        QVERIFY(!session.isTimerActive("viewTimer"));
        session.configurationChanged();
        QCOMPARE(session.table6d()->rowCount(), 3);
        QVERIFY(session.isTimerActive("viewTimer"));
    }
}

void TestContractNested::redrawSeesOneWholeState_data()
{
    addActions();
}

void TestContractNested::redrawSeesOneWholeState()
{
    QFETCH(const QByteArray, action);
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const bool isConfiguration = action == "configuration";
    session.host.changeScript(isConfiguration ? secondSetup : firstSetup);
    const int calls = session.callsOf(action);
    for (int k = 1; k <= calls; ++k) {
        session.host.changeScript(firstSetup);
        session.configurationChanged();
        session.deliverFrame(3, "1");
        session.redraw();
        const QStringList before = session.seenBodies();
        QStringList inside;
        insideCall(session.host, k, [&] {
            session.redraw();
            inside = session.seenBodies();
        });
        if (isConfiguration)
            session.host.changeScript(secondSetup);
        session.act(action);
        session.host.onCall = nullptr;
        const QStringList after = session.seenBodies();
        QVERIFY(!inside.isEmpty());
        QVERIFY2(inside == before || inside == after, qPrintable(inside.join(QLatin1Char('\n'))));
        QCOMPARE(before != after, isConfiguration);
    }
}

void TestContractNested::trackedRowsStayTracked()
{
    NestedSession session;
    QVERIFY2(session.startWith(firstSetup), qPrintable(session.loader.errorString()));
    session.configurationChanged();
    const int calls = session.callsOf("configuration");
    for (int k = 1; k <= calls; ++k) {
        session.deliverFrame(3, "1");
        session.redraw();
        const QStringList before = session.seenBodies();
        QVERIFY(before.first().contains(QLatin1String("#ff00ff00"))); // green
        QStringList inside;
        insideCall(session.host, k, [&] {
            session.deliverFrame(3, "1"); // as backends do all the time
            session.redraw();
            inside = session.seenBodies();
        });
        session.configurationChanged();
        session.host.onCall = nullptr;
        QCOMPARE(inside, before);
        QCOMPARE(session.seenBodies(), before);
    }
}

void TestContractNested::panelIsCalledWhileItIsMade_data()
{
    QTest::addColumn<QByteArray>("step");
    QTest::newRow("a configuration") << QByteArray("configurationChanged");
    QTest::newRow("a clearing") << QByteArray("clearData");
}

void TestContractNested::panelIsCalledWhileItIsMade()
{
    QFETCH(const QByteArray, step);
    NestedSession session;
    session.host.calls.clear();
    QVERIFY2(session.startInMainWindow(true), qPrintable(session.loader.errorString()));
    const int calls = session.host.calls.size();
    for (int k = 1; k <= calls; ++k) { // from the registration on
        session.host.onCall = nullptr;
        session.release();
        session.host.onCall = [&, left = k]() mutable {
            if (--left == 0)
                session.take(step);
        };
        QVERIFY(session.startWith(firstSetup));
        QCOMPARE(session.table6d()->rowCount(), step == "clearData" ? 0 : 3);
        QCOMPARE(session.isTimerActive("viewTimer"), step != "clearData");
        session.configurationChanged();
        QCOMPARE(session.table6d()->rowCount(), 3);
        QCOMPARE(session.rowOf(session.table6d(), 1).value(1), QStringLiteral("Left hand"));
        QCOMPARE(session.host.violations, QByteArrayList());
    }
}

QTEST_MAIN(TestContractNested)
#include "tst_contract_nested.moc"
