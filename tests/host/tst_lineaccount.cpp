// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/lineaccount.h"
#include "interface/moduleinterface.h"

#include <QTest>

using namespace host;

class LineAccountTest : public QObject {
    Q_OBJECT

private slots:
    void accountsForEveryLine_data();
    void accountsForEveryLine();
    void accountsForWhatPanelsDoNotSee_data();
    void accountsForWhatPanelsDoNotSee();
    void looksForNothingWithoutWidgets();
};

Q_DECLARE_METATYPE(LineTotals)
Q_DECLARE_METATYPE(std::optional<PanelLineCounts>)

void LineAccountTest::accountsForEveryLine_data()
{
    QTest::addColumn<QVector<quint64>>("counts"); // sent, refused, skipped frames
    QTest::addColumn<QVector<quint64>>("displayed"); // stored, dropped, ignored; empty: the display does not count
    QTest::addColumn<QString>("text");
    using Numbers = QVector<quint64>;
    QTest::newRow("numbers that add up")
        << Numbers{7200, 0, 0} << Numbers{7195, 5, 0}
        << QStringLiteral(
               "lines: 7200 sent, 7195 stored, 5 dropped while the display was drawing, 0 refused, 0 ignored");
    QTest::newRow("refused and ignored lines are in the sum")
        << Numbers{10, 2, 0} << Numbers{4, 1, 3}
        << QStringLiteral("lines: 10 sent, 4 stored, 1 dropped while the display was drawing, 2 refused, 3 ignored");
    QTest::newRow("a line that is missing is told")
        << Numbers{10, 0, 0} << Numbers{8, 1, 0}
        << QStringLiteral("lines: 10 sent, 8 stored, 1 dropped while the display was drawing, 0 refused, 0 ignored, 1 "
                          "unaccounted for");
    QTest::newRow("lines too many are told")
        << Numbers{10, 0, 0} << Numbers{12, 0, 0}
        << QStringLiteral("lines: 10 sent, 12 stored, 0 dropped while the display was drawing, 0 refused, 0 ignored, "
                          "2 more accounted for than sent");
    QTest::newRow("a display that does not count")
        << Numbers{10, 2, 0} << Numbers{} << QStringLiteral("lines: 10 sent, 2 refused");
    QTest::newRow("frames that were left out are told")
        << Numbers{10, 2, 7} << Numbers{}
        << QStringLiteral("lines: 10 sent, 2 refused, 7 frames left out because the host was late");
}

void LineAccountTest::accountsForEveryLine()
{
    QFETCH(QVector<quint64>, counts);
    QFETCH(QVector<quint64>, displayed);
    QFETCH(QString, text);
    std::optional<PanelLineCounts> lines;
    if (!displayed.isEmpty())
        lines = PanelLineCounts{displayed[0], displayed[1], displayed[2], 0};
    LineTotals totals;
    totals.sent = counts[0];
    totals.refused = counts[1];
    totals.skippedFrames = counts[2];
    QCOMPARE(LineAccount::text(totals, lines), text);
}

void LineAccountTest::accountsForWhatPanelsDoNotSee_data()
{
    QTest::addColumn<LineTotals>("counts"); // sent, refused, ignored, late, unknown, skipped frames
    QTest::addColumn<std::optional<PanelLineCounts>>("panels"); // stored, dropped, ignored, taken
    QTest::addColumn<QString>("text");
    using Panels = std::optional<PanelLineCounts>;
    const auto row = [](const char *name, const LineTotals &counts, const Panels &panels, const char *text) {
        QTest::newRow(name) << counts << panels << QString::fromLatin1(text);
    };
    row("two modules, of which one counts", {240, 3, 0, 0, {}, 0}, PanelLineCounts{117, 2, 1, 120},
        "lines: 240 sent, 117 stored, 2 dropped while the display was drawing, 3 refused, 1 ignored, 117 to modules "
        "that do not count");
    row("lines that a counting module loses are no other module's", {240, 0, 0, 0, {}, 0},
        PanelLineCounts{110, 0, 0, 120},
        "lines: 240 sent, 110 stored, 0 dropped while the display was drawing, 0 refused, 0 ignored, 10 unaccounted "
        "for, 120 to modules that do not count");
    row("modules that do not count alone", {10, 2, 0, 0, {}, 0}, {},
        "lines: 10 sent, 2 refused, 8 to modules that do not count");
    row("lines that nobody has subscribed to", {10, 0, 4, 0, {}, 0}, PanelLineCounts{5, 0, 1, 6},
        "lines: 10 sent, 5 stored, 0 dropped while the display was drawing, 0 refused, 5 ignored");
    row("lines that nobody has subscribed to, and no panel", {10, 0, 10, 0, {}, 0}, {},
        "lines: 10 sent, 0 refused, 10 ignored");
    row("a source of any lines tells of unknown ones, also of none", {1, 0, 0, 0, 0, 0}, PanelLineCounts{1, 0, 0, 1},
        "lines: 1 sent, 1 stored, 0 dropped while the display was drawing, 0 refused, 0 ignored, 0 unknown");
    row("late and unknown lines are not in the sum", {3, 1, 0, 7, 9, 0}, PanelLineCounts{2, 0, 0, 2},
        "lines: 3 sent, 2 stored, 0 dropped while the display was drawing, 1 refused, 0 ignored, 7 late, 9 unknown");
    row("all at once", {10, 1, 1, 7, 9, 5}, PanelLineCounts{2, 2, 1, 6},
        "lines: 10 sent, 2 stored, 2 dropped while the display was drawing, 1 refused, 2 ignored, 1 unaccounted for, "
        "5 frames left out because the host was late, 7 late, 9 unknown, 2 to modules that do not count");
}

void LineAccountTest::accountsForWhatPanelsDoNotSee()
{
    QFETCH(const LineTotals, counts);
    QFETCH(const std::optional<PanelLineCounts>, panels);
    QFETCH(const QString, text);
    QCOMPARE(LineAccount::text(counts, panels, uncountedLines(counts, panels)), text);
}

void LineAccountTest::looksForNothingWithoutWidgets()
{
    ModuleEntry entry;
    QVERIFY(!panelLineCounts({}));
    QVERIFY(!panelLineCounts({&entry}));
}

QTEST_GUILESS_MAIN(LineAccountTest)
#include "tst_lineaccount.moc"
