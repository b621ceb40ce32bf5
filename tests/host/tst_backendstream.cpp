// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/fakestream.h"
#include "tests/host/sessionfixture.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace backend;
using namespace host;

using namespace std::chrono_literals;

/// What a session does about the stream of its backend.
class BackendStreamTest : public QObject, private SessionFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

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
    FakeStream *startOnAStream();
    void follow(StreamState::Phase phase, std::chrono::milliseconds time);

    FakeStream *stream = nullptr; // of startOnAStream(); the session's
};

/// Starts on a stream of the test's own, and forgets the calls by then.
FakeStream *BackendStreamTest::startOnAStream()
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
void BackendStreamTest::follow(StreamState::Phase phase, std::chrono::milliseconds time)
{
    const bool isLost = phase == StreamState::Phase::Lost;
    stream->setState({phase, isLost ? QStringLiteral("The cable is out.") : QString()});
    session->followStream(LineStream::Clock::time_point(time));
}

void BackendStreamTest::opensAStreamForEachConnection()
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

void BackendStreamTest::countsWhatStreamsLose()
{
    startOnAStream();
    QVERIFY(!session->counts().unknown); // it says nothing of such lines
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
    QCOMPARE(counts.unknown, std::optional<quint64>(700));
    QCOMPARE(counts.skippedFrames, 9000U);
}

void BackendStreamTest::clearsTheDataOfAStreamThatStaysLost()
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

void BackendStreamTest::keepsThePictureOfAStreamThatIsBackInTime()
{
    using Phase = StreamState::Phase;
    startOnAStream();
    follow(Phase::Lost, 0ms);
    follow(Phase::Connecting, 5000ms);
    follow(Phase::Live, 9000ms);
    follow(Phase::Live, 30000ms);
    QCOMPARE(observer->calls, QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4")});
}

void BackendStreamTest::keepsThePictureOfAnEndedStream()
{
    startOnAStream();
    follow(StreamState::Phase::Ended, 0ms);
    follow(StreamState::Phase::Ended, 3600000ms);
    QCOMPARE(observer->calls, QStringList());
    QVERIFY(session->streamState().phase == StreamState::Phase::Ended);
    QVERIFY(session->isConnected());
}

void BackendStreamTest::readsAConfigurationThatHasChanged()
{
    startOnAStream()->changeConfiguration();
    QTRY_COMPARE(observer->calls, QStringList{QStringLiteral("configurationChanged: version 1.21.0, 4")});
    stream->changeConfiguration();
    stream->changeConfiguration();
    QTRY_COMPARE(observer->calls.size(), 2); // by the session's own timer
}

void BackendStreamTest::followsNothingOnceItIsStopped()
{
    startOnAStream();
    session->stopOutput();
    session->followStream(LineStream::Clock::now());
    QVERIFY(session->streamState().phase == StreamState::Phase::Connecting);
    QCOMPARE(observer->calls, QStringList());
}

void BackendStreamTest::endsWhileAStreamIsLost()
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

void BackendStreamTest::logsWhatAStreamWarnsOf()
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

QTEST_GUILESS_MAIN(BackendStreamTest)
#include "tst_backendstream.moc"
