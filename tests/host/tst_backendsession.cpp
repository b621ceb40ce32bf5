// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/sessionfixture.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <stdexcept>

using namespace backend;
using namespace host;

class BackendSessionTest : public QObject, private SessionFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

    void fillsInTheVersionsBeforeModulesAreTold();
    void logsTheVersion_data();
    void logsTheVersion();
    void sendsNoLineBeforeTheConfigurationIsKnown();
    void disconnectsAndConnectsAgain();
    void sendsNoLineAfterTheDataIsCleared();
    void changesTheBackend();
    void staysDownWhenTheConfigurationEndsInADisconnection();
    void survivesARequesterThatThrows();
    void letsGoOfABackendThatIsChanged();
};

void BackendSessionTest::fillsInTheVersionsBeforeModulesAreTold()
{
    QVERIFY(!session->isConnected());
    session->open(backendWith(4, {1, 21, -1}));
    QVERIFY(session->isConnected());
    QVERIFY(observer->calls.isEmpty()); // modules may not be there yet
    session->start();
    QCOMPARE(observer->calls, QStringList{QStringLiteral("configurationChanged: version 1.21.-1, 4")});
}

void BackendSessionTest::logsTheVersion_data()
{
    QTest::addColumn<int>("patch");
    QTest::addColumn<QString>("version");
    QTest::newRow("with its patch level") << 3 << QStringLiteral("1.21.3");
    QTest::newRow("without a patch level that is not known") << -1 << QStringLiteral("1.21");
}

void BackendSessionTest::logsTheVersion()
{
    QFETCH(int, patch);
    QFETCH(QString, version);
    QStringList texts;
    const QObject listening; // ends before the list does, while the log lives on
    connect(log.get(), &HostLog::entryAdded, &listening, [&](const LogEntry &entry) { texts.append(entry.text); });
    const std::shared_ptr<FakeBackend> backend = backendWith(4, {1, 21, patch});
    session->open(backend);
    QTRY_COMPARE(texts,
                 QStringList(QStringLiteral("Connected to ") + backend->name() + QStringLiteral(", version ") + version
                             + QLatin1Char('.')));
}

void BackendSessionTest::sendsNoLineBeforeTheConfigurationIsKnown()
{
    int linesAtConfiguration = -1;
    observer->onConfiguration = [&] { linesAtConfiguration = observer->lines; };
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    QCOMPARE(linesAtConfiguration, 0);
    QTRY_VERIFY(session->counts().sent > 0);
}

void BackendSessionTest::disconnectsAndConnectsAgain()
{
    QSignalSpy changes(session.get(), &BackendSession::connectionChanged);
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    QTRY_VERIFY(session->counts().sent > 0);
    observer->calls.clear();

    session->disconnectBackend();
    QVERIFY(!session->isConnected());
    const quint64 sent = session->counts().sent;
    QCOMPARE(observer->calls, QStringList{QStringLiteral("clearData: version 1.21.0, no answer")});
    QCOMPARE(versions->backendMajor, 0);
    session->disconnectBackend();
    QCOMPARE(observer->calls.size(), 1);
    QCOMPARE(session->counts().sent, sent);

    session->reconnect();
    session->reconnect();
    QCOMPARE(observer->calls.size(), 2);
    QCOMPARE(observer->calls.constLast(), QStringLiteral("configurationChanged: version 1.21.0, 4"));
    QTRY_VERIFY(session->counts().sent > sent);
    QCOMPARE(changes.size(), 3);
}

void BackendSessionTest::sendsNoLineAfterTheDataIsCleared()
{
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    QTRY_VERIFY(session->counts().sent > 0);
    bool lineCame = false;
    observer->onClear = [&] { lineCame = comesALineAfter(session->counts().sent); };
    session->disconnectBackend();
    QCOMPARE(observer->clears, 1);
    QVERIFY(!lineCame);
}

void BackendSessionTest::changesTheBackend()
{
    session->reconnect(); // there is none yet
    QVERIFY(!session->isConnected());
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    session->change(backendWith(2, {0, 12, 0}));
    QCOMPARE(observer->calls,
             (QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4"),
                          QStringLiteral("clearData: version 1.21.0, no answer"),
                          QStringLiteral("configurationChanged: version 0.12.0, 2")}));
}

void BackendSessionTest::staysDownWhenTheConfigurationEndsInADisconnection()
{
    observer->onConfiguration = [&] { session->disconnectBackend(); };
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    QVERIFY(!session->isConnected());
    QCOMPARE(observer->clears, 1);
    QVERIFY(!comesALineAfter(0));
}

void BackendSessionTest::survivesARequesterThatThrows()
{
    FakeRequester second;
    manager->registerRequester(&second);
    observer->onConfiguration = [] { throw std::runtime_error("thrown"); };
    observer->onClear = [] { throw 1; };
    session->open(backendWith(4, {1, 21, 0}));
    session->start();
    QTRY_VERIFY(session->counts().sent > 0);
    session->disconnectBackend();
    QVERIFY(!session->isConnected());
    QCOMPARE(second.configurations, 1);
    QCOMPARE(second.clears, 1);
    manager->unregisterRequester(&second);
}

void BackendSessionTest::letsGoOfABackendThatIsChanged()
{
    std::shared_ptr<FakeBackend> first = backendWith(4, {1, 21, 0});
    const std::weak_ptr<FakeBackend> watched = first;
    session->open(std::move(first));
    session->start();
    QTRY_VERIFY(session->counts().sent > 0);
    session->change(backendWith(2, {0, 12, 0}));
    QVERIFY(watched.expired());
    QVERIFY(comesALineAfter(session->counts().sent));
}

QTEST_GUILESS_MAIN(BackendSessionTest)
#include "tst_backendsession.moc"
