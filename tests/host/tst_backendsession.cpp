// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendsession.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "tests/host/fakebackend.h"
#include "tests/host/fakerequester.h"
#include "tests/host/fakestream.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <stdexcept>

using namespace backend;
using namespace host;

using namespace std::chrono_literals;

/// Notes, with each call of the host, what the host's version record and command channel say at that moment.
class Observer : public FakeRequester {
public:
    Observer(HostIOManager &manager, const BackendVersions &versions)
    {
        const auto note = [&, this](const char *call) {
            qint32 bodies = -1;
            const bool answered = manager.requestInt(&bodies, "standard number_of_bodies") == 0;
            calls << QStringLiteral("%1: version %2.%3.%4, %5")
                         .arg(QLatin1String(call))
                         .arg(versions.backendMajor)
                         .arg(versions.backendMinor)
                         .arg(versions.backendPatch)
                         .arg(answered ? QString::number(bodies) : QStringLiteral("no answer"));
        };
        onConfiguration = [note] { note("configurationChanged"); };
        onClear = [note] { note("clearData"); };
    }

    QStringList calls;
};

class BackendSessionTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void opensAStreamForEachConnection();
    void countsWhatStreamsLose();
    void clearsTheDataOfAStreamThatStaysLost();
    void keepsThePictureOfAStreamThatIsBackInTime();
    void keepsThePictureOfAnEndedStream();
    void readsAConfigurationThatHasChanged();
    void followsNothingOnceItIsStopped();
    void endsWhileAStreamIsLost();
    void logsWhatAStreamWarnsOf();

private:
    static std::shared_ptr<FakeBackend> backendWith(int bodies, ProtocolVersion version);
    bool comesALineAfter(quint64 sent) const;
    FakeStream *startOnAStream();
    void follow(StreamState::Phase phase, std::chrono::milliseconds time);

    std::unique_ptr<HostLog> log;
    std::unique_ptr<HostIOManager> manager;
    std::unique_ptr<BackendVersions> versions;
    std::unique_ptr<Observer> observer;
    std::unique_ptr<BackendSession> session;
    FakeStream *stream = nullptr; // of startOnAStream(); the session's
};

void BackendSessionTest::init()
{
    log = std::make_unique<HostLog>();
    manager = std::make_unique<HostIOManager>(*log);
    versions = std::make_unique<BackendVersions>();
    observer = std::make_unique<Observer>(*manager, *versions);
    session = std::make_unique<BackendSession>(*manager, *versions, *log);
    manager->registerRequester(observer.get());
    manager->startOutput("6d", observer.get());
}

void BackendSessionTest::cleanup()
{
    session.reset();
    observer.reset();
    versions.reset();
    manager.reset();
    log.reset();
}

std::shared_ptr<FakeBackend> BackendSessionTest::backendWith(int bodies, ProtocolVersion version)
{
    auto backend = std::make_shared<FakeBackend>();
    backend->backendVersion = version;
    backend->answers.insert("standard number_of_bodies", QByteArray::number(bodies));
    return backend;
}

/// Gives a data thread that runs hundreds of frames of time for another line than the first \a sent ones.
bool BackendSessionTest::comesALineAfter(quint64 sent) const
{
    return QTest::qWaitFor([this, sent] { return session->counts().sent > sent; }, 300);
}

/// Starts on a stream of the test's own, and forgets the calls by then.
FakeStream *BackendSessionTest::startOnAStream()
{
    const auto backend = backendWith(4, {1, 21, 0});
    backend->opened = [this] {
        auto made = std::make_unique<FakeStream>();
        stream = made.get();
        return made;
    };
    session->open(backend);
    session->start();
    observer->calls.clear();
    return stream;
}

/// Lets the stream be in \a phase, a \a time after the start that is far from the one of the session's own timer.
void BackendSessionTest::follow(StreamState::Phase phase, std::chrono::milliseconds time)
{
    const bool isLost = phase == StreamState::Phase::Lost;
    stream->setState({phase, isLost ? QStringLiteral("The cable is out.") : QString()});
    session->followStream(LineStream::Clock::time_point(time));
}

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

void BackendSessionTest::opensAStreamForEachConnection()
{
    QSignalSpy opened(session.get(), &BackendSession::streamOpened);
    int streams = 0;
    const auto backend = backendWith(4, {1, 21, 0});
    backend->opened = [&streams] {
        ++streams;
        return std::make_unique<FakeStream>();
    };
    session->open(backend);
    QVERIFY(session->streamState().phase == StreamState::Phase::Connecting);
    QCOMPARE(streams, 0);
    session->start();
    QVERIFY(session->streamState().phase == StreamState::Phase::Live);
    session->disconnectBackend();
    QVERIFY(session->streamState().phase == StreamState::Phase::Connecting);
    session->reconnect();
    QCOMPARE(streams, 2);
    QCOMPARE(opened.size(), 2);
}

void BackendSessionTest::countsWhatStreamsLose()
{
    startOnAStream();
    stream->setLosses({1, 20, 300, 4000});
    stream->put("6d", "6d 0");
    QTRY_COMPARE(session->counts().sent, 21U); // what the stream refused counts as sent, and as refused
    session->disconnectBackend();
    session->reconnect();
    stream->setLosses({2, 30, 400, 5000});
    const LineTotals counts = session->counts();
    QCOMPARE(counts.sent, 51U);
    QCOMPARE(counts.refused, 50U);
    QCOMPARE(counts.ignored, 0U);
    QCOMPARE(counts.late, 3U);
    QCOMPARE(counts.unknown, 700U);
    QCOMPARE(counts.skippedFrames, 9000U);
}

void BackendSessionTest::clearsTheDataOfAStreamThatStaysLost()
{
    using Phase = StreamState::Phase;
    startOnAStream();
    QSignalSpy changes(session.get(), &BackendSession::streamStateChanged);
    QStringList texts;
    const QObject listening; // ends before the list does, while the log lives on
    log->flush();
    connect(log.get(), &HostLog::entryAdded, &listening, [&](const LogEntry &entry) { texts.append(entry.text); });

    follow(Phase::Lost, 0ms);
    QVERIFY(session->streamState().phase == Phase::Lost);
    QCOMPARE(session->streamState().reason, QStringLiteral("The cable is out."));
    follow(Phase::Lost, 9999ms);
    QCOMPARE(observer->calls, QStringList());
    follow(Phase::Lost, 10000ms);
    follow(Phase::Lost, 60000ms);
    QCOMPARE(observer->calls, QStringList{QStringLiteral("clearData: version 1.21.0, 4")}); // still asked
    QVERIFY(session->isConnected());

    follow(Phase::Live, 70000ms);
    QCOMPARE(observer->calls.mid(1), QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4")});
    QCOMPARE(changes.size(), 2);
    log->flush();
    QCOMPARE(texts,
             (QStringList{QStringLiteral("The connection to fake is lost: The cable is out."),
                          QStringLiteral("fake has been lost for 10 s: its data are cleared; trying again."),
                          QStringLiteral("The connection to fake stands.")}));
    stream->put("6d", "6d 0");
    QTRY_VERIFY(observer->lines > 0);
}

void BackendSessionTest::keepsThePictureOfAStreamThatIsBackInTime()
{
    using Phase = StreamState::Phase;
    startOnAStream();
    follow(Phase::Lost, 0ms);
    follow(Phase::Connecting, 5000ms);
    follow(Phase::Live, 9000ms);
    follow(Phase::Live, 30000ms);
    QCOMPARE(observer->calls, QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4")});
}

void BackendSessionTest::keepsThePictureOfAnEndedStream()
{
    startOnAStream();
    follow(StreamState::Phase::Ended, 0ms);
    follow(StreamState::Phase::Ended, 3600000ms);
    QCOMPARE(observer->calls, QStringList());
    QVERIFY(session->streamState().phase == StreamState::Phase::Ended);
    QVERIFY(session->isConnected());
}

void BackendSessionTest::readsAConfigurationThatHasChanged()
{
    startOnAStream()->changeConfiguration();
    QTRY_COMPARE(observer->calls, QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4")});
    stream->changeConfiguration();
    stream->changeConfiguration();
    QTRY_COMPARE(observer->calls.size(), 2); // by the session's own timer
}

void BackendSessionTest::followsNothingOnceItIsStopped()
{
    startOnAStream();
    session->stopOutput();
    session->followStream(LineStream::Clock::now());
    QVERIFY(session->streamState().phase == StreamState::Phase::Connecting);
    QCOMPARE(observer->calls, QStringList());
}

void BackendSessionTest::endsWhileAStreamIsLost()
{
    startOnAStream();
    follow(StreamState::Phase::Lost, 0ms);
    session->disconnectBackend();
    QCOMPARE(observer->clears, 1);
    session->reconnect();
    follow(StreamState::Phase::Lost, 20000ms);
    follow(StreamState::Phase::Lost, 29999ms);
    QCOMPARE(observer->clears, 1); // the time counts for each stream anew
}

void BackendSessionTest::logsWhatAStreamWarnsOf()
{
    startOnAStream();
    log->flush();
    QStringList texts;
    const QObject listening; // ends before the list does, while the log lives on
    connect(log.get(), &HostLog::entryAdded, &listening, [&](const LogEntry &entry) {
        if (entry.isWarning())
            texts.append(entry.text);
    });
    stream->warn(QStringLiteral("One."));
    QTRY_COMPARE(texts, QStringList{QStringLiteral("One.")});
    stream->warn(QStringLiteral("Two."));
    session->stopOutput(); // at once, so that none is lost
    log->flush();
    QCOMPARE(texts, (QStringList{QStringLiteral("One."), QStringLiteral("Two.")}));
}

QTEST_GUILESS_MAIN(BackendSessionTest)
#include "tst_backendsession.moc"
