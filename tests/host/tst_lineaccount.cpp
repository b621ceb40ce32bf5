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
    void looksForNothingWithoutWidgets();
};

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
        lines = PanelLineCounts{displayed[0], displayed[1], displayed[2]};
    LineTotals totals;
    totals.sent = counts[0];
    totals.refused = counts[1];
    totals.skippedFrames = counts[2];
    QCOMPARE(LineAccount::text(totals, lines), text);
}

void LineAccountTest::looksForNothingWithoutWidgets()
{
    ModuleEntry entry;
    QVERIFY(!panelLineCounts({}));
    QVERIFY(!panelLineCounts({&entry}));
}

QTEST_GUILESS_MAIN(LineAccountTest)
#include "tst_lineaccount.moc"
