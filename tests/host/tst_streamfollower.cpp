// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/streamfollower.h"

#include <QTest>

using namespace host;

using backend::StreamState;
using Phase = backend::StreamState::Phase;

/// What is to be done at a time: 's' the state has changed, 'c' clear the data, 'k' configure.
struct Moment {
    int milliseconds;
    Phase phase;
    const char *steps;
    quint64 configurationChanges = 0;
    const char *reason = "";
};

class StreamFollowerTest : public QObject {
    Q_OBJECT

private slots:
    void follows_data();
    void follows();
};

Q_DECLARE_METATYPE(Phase)
Q_DECLARE_METATYPE(QVector<Moment>)

void StreamFollowerTest::follows_data()
{
    QTest::addColumn<Phase>("initial");
    QTest::addColumn<QVector<Moment>>("moments");
    const auto row = [](const char *name, Phase initial, const QVector<Moment> &moments) {
        QTest::newRow(name) << initial << moments;
    };
    const Phase live = Phase::Live;
    const Phase lost = Phase::Lost;
    const Phase connecting = Phase::Connecting;
    const Phase ended = Phase::Ended;
    row("a live stream needs nothing", live, {{0, live, ""}, {60000, live, ""}});
    row("a stream that comes up is configured", connecting, {{0, connecting, ""}, {50, live, "sk"}, {99, live, ""}});
    row("a lost stream is cleared once, after ten seconds", live,
        {{7, lost, "s"}, {10006, lost, ""}, {10007, lost, "c"}, {10008, lost, ""}, {30000, lost, ""}});
    row("a stream that is looked at seldom is cleared, too", live, {{0, lost, "s"}, {50000, lost, "c"}});
    row("trying again does not start the ten seconds anew", live,
        {{0, lost, "s"}, {4000, connecting, "s"}, {8000, lost, "s"}, {10000, connecting, "sc"}, {22000, lost, "s"}});
    row("a stream that is back is configured, and has ten seconds again", live,
        {{0, lost, "s"}, {9000, live, "sk"}, {9500, lost, "s"}, {19499, lost, ""}, {19500, lost, "c"}});
    row("a stream that was cleared is configured when it is back, and cleared again", live,
        {{0, lost, "s"}, {10000, lost, "c"}, {20000, live, "sk"}, {21000, lost, "s"}, {31000, lost, "c"}});
    row("a stream that was never there has nothing to clear", connecting,
        {{0, lost, "s"}, {60000, lost, ""}, {70000, live, "sk"}});
    row("a stream that is lost as it is opened has nothing to clear", lost, {{0, lost, ""}, {60000, lost, ""}});
    row("an ended stream keeps its picture", live, {{0, ended, "s"}, {3600000, ended, ""}});
    row("a lost stream that ends keeps its picture", live, {{0, lost, "s"}, {5000, ended, "s"}, {60000, ended, ""}});
    row("another reason is another state", live,
        {{0, lost, "s", 0, "a"}, {1, lost, "", 0, "a"}, {2, lost, "s", 0, "b"}, {10000, lost, "c", 0, "b"}});
    row("a changed configuration is read", live, {{0, live, "", 0}, {1, live, "k", 1}, {2, live, "", 1}});
    row("several changes at once are read once", live, {{0, live, "k", 5}, {1, live, "", 5}});
    row("a change while it is lost is read when it is back", live,
        {{0, lost, "s", 0}, {1, lost, "", 1}, {2, live, "sk", 1}, {3, live, "", 1}});
    row("a change with the last line of an ended stream is read", live, {{0, ended, "sk", 1}, {1, ended, "", 1}});
}

void StreamFollowerTest::follows()
{
    QFETCH(const Phase, initial);
    QFETCH(const QVector<Moment>, moments);
    StreamFollower follower(StreamState{initial, {}});
    for (const Moment &moment : moments) {
        const StreamFollower::Clock::time_point now{std::chrono::milliseconds(moment.milliseconds)};
        const StreamFollower::Step step =
            follower.follow({moment.phase, QString::fromLatin1(moment.reason)}, moment.configurationChanges, now);
        QByteArray steps;
        steps += step.stateChanged ? "s" : "";
        steps += step.clearData ? "c" : "";
        steps += step.configure ? "k" : "";
        QVERIFY2(steps == moment.steps, qPrintable(QStringLiteral("at %1 ms").arg(moment.milliseconds)));
        QVERIFY(follower.state().phase == moment.phase);
    }
}

QTEST_APPLESS_MAIN(StreamFollowerTest)
#include "tst_streamfollower.moc"
