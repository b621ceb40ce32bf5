// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/panelfixture.h"
#include "tests/support/repetitions.h"

#include <QLoggingCategory>
#include <QtTest>

#include <array>
#include <atomic>
#include <thread>

namespace {

struct Sent {
    quint64 lines = 0;
    quint64 refused = 0; ///< answered with -1
};

QByteArray bodies(const char *tag, const char *state, const char *position)
{
    QByteArray line = QByteArray(tag) + " 50";
    for (int i = 0; i < 50; ++i)
        line += bodyText(i, state, "1.0", position);
    return line;
}

quint64 lineCount(const DataDisplay &panel, const char *name)
{
    return panel.property(name).toULongLong();
}

} // namespace

/// No line is lost unseen: each that the data thread sends is stored, refused, dropped or ignored, and counted once.
class TestLineAccounting : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyLineIsAccountedFor_data();
    void everyLineIsAccountedFor();
};

void TestLineAccounting::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of the offscreen platform
}

void TestLineAccounting::everyLineIsAccountedFor_data()
{
    QTest::addColumn<bool>("reconfigured");
    QTest::newRow("while the views redraw") << false;
    QTest::newRow("while the views redraw and the configuration comes and goes") << true;
}

void TestLineAccounting::everyLineIsAccountedFor()
{
    QFETCH(const bool, reconfigured);
    PanelFixture fixture;
    fixture.answerBodies(50);
    fixture.createConfiguredPanel().show();
    DataDisplay &panel = *fixture.panel;

    struct Line {
        QByteArray tag;
        QByteArray text;
    };
    const std::array<Line, 6> lines{{{"6di", bodies("6di", "2", "1 2 3")},
                                     {"3d", "3d 2 [1 1.0][1 2 3][2 1.0][4 5 6]"},
                                     {"6d", bodies("6d", "", "1 2 3 0 0 0")},
                                     {"6di", "6di 2 [0 2 1.0][1 2"},
                                     {"3d", "3d"},
                                     {"stats", "stats 1"}}};
    // A day of three lines, sixty times a second, in a long run.
    const Repetitions planned = repetitions(400'000, 24LL * 3600 * 60 * 3);
    const auto wanted = static_cast<quint64>(planned.wanted);
    const TimeLimit limit(6'000);
    Sent sent;
    std::atomic<bool> done{false};
    std::thread sender([&] {
        // On until the two threads have met, however fast they are.
        for (; sent.lines < wanted || panel.droppedLines() == 0; ++sent.lines) {
            if (sent.lines % 256 == 0 && limit.isOver())
                break;
            // Two of three lines are good ones.
            const Line &line = lines[sent.lines % 3 == 2 ? 2 + sent.lines / 3 % 4 : sent.lines % 3];
            const int result = panel.processOutput(line.tag.constData(), line.text.constData());
            sent.refused += result == -1 ? 1 : 0;
        }
        done = true;
    });
    int redraws = 0;
    while (!done) {
        panel.updateView6d();
        panel.updateView3d();
        ++redraws;
        if (reconfigured && redraws % 8 == 0)
            panel.configurationChanged();
        if (reconfigured && redraws % 32 == 0)
            panel.clearData();
        QCoreApplication::processEvents();
        fixture.takeCalls();
    }
    sender.join();

    const quint64 stored = lineCount(panel, "storedLines");
    const quint64 dropped = lineCount(panel, "droppedLines");
    const quint64 ignored = lineCount(panel, "ignoredLines");
    qInfo("%llu sent, %llu wanted = %llu stored + %llu refused + %llu dropped + %llu ignored, %d redraws", sent.lines,
          wanted, stored, sent.refused, dropped, ignored, redraws);
    QVERIFY(sent.lines >= static_cast<quint64>(planned.least));
    QCOMPARE(stored + sent.refused + dropped + ignored, sent.lines);
    QVERIFY(stored > 0);
    QVERIFY(sent.refused > 0);
    QVERIFY(dropped > 0 || limit.isOver());
    QVERIFY(ignored > 0);
}

QTEST_MAIN(TestLineAccounting)
#include "tst_lineaccounting.moc"
