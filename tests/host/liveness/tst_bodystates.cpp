// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/bodystates.h"

#include <QTest>

using namespace host;
using namespace std::chrono_literals;
using Level = Liveness::Level;
using Since = std::optional<std::chrono::nanoseconds>;

Q_DECLARE_METATYPE(BodyFigures)
Q_DECLARE_METATYPE(host::Liveness::Level)

namespace {

BodyFigures body(const QByteArray &tag, qint32 id, bool tracked, Since since)
{
    BodyFigures figures;
    figures.tag = tag;
    figures.id = id;
    figures.tracked = tracked;
    figures.sinceTracked = since;
    return figures;
}

/// "0 tracked, 3 lost for 4 s" of what the bodies of a snapshot come to.
QString told(const QVector<BodyFigures> &bodies, Level level)
{
    HealthSnapshot snapshot;
    snapshot.bodies = bodies;
    Liveness liveness;
    liveness.level = level;
    QStringList texts;
    const QVector<BodyState> states = bodyStates(snapshot, liveness);
    for (const BodyState &state : states)
        texts << QString::number(state.id) + QLatin1Char(' ') + state.words();
    return texts.join(QStringLiteral("; "));
}

} // namespace

class BodyStatesTest : public QObject {
    Q_OBJECT

private slots:
    void wordsOfOneBody_data();
    void wordsOfOneBody();
    void linesOfSeveral_data();
    void linesOfSeveral();
};

void BodyStatesTest::wordsOfOneBody_data()
{
    QTest::addColumn<BodyFigures>("figures");
    QTest::addColumn<Liveness::Level>("level");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, bool tracked, Since since, Level level, const char *words) {
        QTest::newRow(name) << body("6d", 0, tracked, since) << level << QString::fromLatin1(words);
    };
    row("tracked in the last line", true, 16ms, Level::Live, "0 tracked");
    row("still without an age just below a second", true, 999ms, Level::Live, "0 tracked");
    row("a slow source has an age", true, 8s, Level::Live, "0 tracked 8 s ago");
    row("lost a moment ago", false, 200ms, Level::Live, "0 lost for 0 s");
    row("lost for long", false, 125s, Level::Live, "0 lost for 2 min 5 s");
    row("never tracked", false, std::nullopt, Level::Live, "0 not tracked yet");
    row("tracked in the last line of a frozen source", true, 3s, Level::Frozen, "0 unknown, last tracked 3 s ago");
    row("lost when the source froze", false, 30s, Level::Gone, "0 unknown, last tracked 30 s ago");
    row("never tracked before the source ended", false, std::nullopt, Level::Ended, "0 unknown, never tracked");
    row("a module has just begun to want lines", true, 90s, Level::Waiting, "0 unknown, last tracked 90 s ago");
    row("nobody wants lines", true, 5s, Level::Unwanted, "0 unknown, last tracked 5 s ago");
    row("disconnected", true, 5s, Level::Disconnected, "0 unknown, last tracked 5 s ago");
}

void BodyStatesTest::wordsOfOneBody()
{
    QFETCH(const BodyFigures, figures);
    QFETCH(const Liveness::Level, level);
    QTEST(told({figures}, level), "words");
}

void BodyStatesTest::linesOfSeveral_data()
{
    QTest::addColumn<QVector<BodyFigures>>("bodies");
    QTest::addColumn<QString>("lines");
    const auto row = [](const char *name, const QVector<BodyFigures> &bodies, const char *lines) {
        QTest::newRow(name) << bodies << QString::fromLatin1(lines);
    };
    row("none", {}, "");
    row("in the order of their ids", {body("6d", 7, true, 10ms), body("6d", -1, true, 10ms), body("6d", 0, false, 2s)},
        "-1 tracked; 0 lost for 2 s; 7 tracked");
    row("in two streams, tracked in one",
        {body("6d", 0, false, 5s), body("6d", 1, true, 10ms), body("6di", 0, true, 10ms), body("6di", 1, false, 5s)},
        "0 tracked; 1 tracked");
    row("in two streams, tracked earlier in one", {body("6d", 0, false, std::nullopt), body("6di", 0, false, 3s)},
        "0 lost for 3 s");
    row("in two streams, the youngest age counts", {body("6d", 0, false, 2s), body("6di", 0, false, 9s)},
        "0 lost for 2 s");
}

void BodyStatesTest::linesOfSeveral()
{
    QFETCH(const QVector<BodyFigures>, bodies);
    QTEST(told(bodies, Level::Live), "lines");
}

QTEST_GUILESS_MAIN(BodyStatesTest)
#include "tst_bodystates.moc"
