// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

#include <cmath>

namespace {

const QBrush black(Qt::black);
const QBrush white(Qt::white);
const QBrush red(Qt::red);
const QBrush green(Qt::green);
const QBrush yellow(Qt::yellow);
const QBrush blue(Qt::blue);
const QBrush transparent(Qt::transparent);
const QBrush mark(Qt::magenta); // what no redraw sets

/// Three bodies on a backend that sends "6di" (1.24).
struct ThreeBodies : PanelFixture {
    ThreeBodies() { answerBodies(3); }

    /// Paints the body and name cells of \a row so that a redraw that leaves them alone is seen.
    void markRow(int row) const
    {
        for (const int column : {BodyIdColumn, NameColumn}) {
            table6d().item(row, column)->setBackground(mark);
            table6d().item(row, column)->setForeground(mark);
        }
    }
    void draw(const QByteArray &line)
    {
        QCOMPARE(send(line.startsWith("6di") ? "6di" : "6d", line), 0);
        panel->updateView6d();
    }
    QStringList coordinates(int row) const
    {
        QStringList texts;
        for (int column = XColumn; column <= RzColumn; ++column)
            texts << text(row, column);
        return texts;
    }
};

const QStringList noCoordinates{QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("-"),
                                QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("-")};

/// rx, ry, rz as the table shows them, by the formula for the columns of Rx(rx) * Ry(ry) * Rz(rz).
QStringList angleTexts(const std::array<float, 9> &r)
{
    constexpr double degrees = 57.29577951308232;
    float rx = static_cast<float>(-std::atan2(r[7], r[8]) * degrees);
    const float ry = static_cast<float>(std::asin(r[6]) * degrees);
    float rz = static_cast<float>(-std::atan2(r[3], r[0]) * degrees);
    if ((r[7] == 0.0F && r[8] == 0.0F) || (r[3] == 0.0F && r[0] == 0.0F)) {
        rz = 0.0F;
        rx = static_cast<float>(std::atan2(r[5], r[4]) * degrees);
    }
    QStringList texts;
    for (const float angle : {rx, ry, rz})
        texts << QString::number(static_cast<double>(angle), 'f', 2);
    return texts;
}

} // namespace

class TestViews : public QObject {
    Q_OBJECT

private slots:
    void coloursOfStates_data();
    void coloursOfStates();
    void everyTracked6dBodyIsGreen();
    void coordinates();
    void angles_data();
    void angles();
    void lostBodyKeepsItsTexts();
    void missingRecordIsNotTracked();
    void uncalibratedAndInactiveRows_data();
    void uncalibratedAndInactiveRows();
    void firstOfEqualIdsCounts();
    void redrawNeverChangesTheRows();
    void referenceRow();
    void untrackedReferenceRow();
    void readyHeadRow();
    void headRowThatIsNotReady();
};

void TestViews::coloursOfStates_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QByteArray>("quality");
    QTest::addColumn<QBrush>("foreground");
    QTest::addColumn<QBrush>("background");
    QTest::newRow("state 2 is black on green") << QByteArray("2") << QByteArray("1.0") << black << green;
    QTest::newRow("state 3 is black on green") << QByteArray("3") << QByteArray("1.0") << black << green;
    QTest::newRow("a large state is black on green") << QByteArray("0x7fffffff") << QByteArray("1.0") << black << green;
    QTest::newRow("state 1 is black on yellow") << QByteArray("1") << QByteArray("1.0") << black << yellow;
    QTest::newRow("state 0 is black on red") << QByteArray("0") << QByteArray("1.0") << black << red;
    QTest::newRow("a negative state leaves the colours") << QByteArray("-1") << QByteArray("1.0") << mark << mark;
    QTest::newRow("a quality of 0 is tracked") << QByteArray("2") << QByteArray("0") << black << green;
    QTest::newRow("a quality below 0 is not tracked") << QByteArray("2") << QByteArray("-0.001") << black << red;
    QTest::newRow("not tracked counts before the state") << QByteArray("-1") << QByteArray("-1.0") << black << red;
}

void TestViews::coloursOfStates()
{
    QFETCH(const QByteArray, state);
    QFETCH(const QByteArray, quality);
    QFETCH(const QBrush, foreground);
    QFETCH(const QBrush, background);
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.markRow(1);
    fixture.draw("6di 1 " + bodyText(1, state.constData(), quality.constData(), "1 2 3"));
    QCOMPARE(fixture.foreground(1, BodyIdColumn), foreground);
    QCOMPARE(fixture.background(1, BodyIdColumn), background);
    QCOMPARE(fixture.background(1, NameColumn), transparent);
    QCOMPARE(fixture.foreground(1, NameColumn), mark); // the text colour of the name isn't reset
}

void TestViews::everyTracked6dBodyIsGreen()
{
    ThreeBodies fixture;
    fixture.versions.backendMinor = 11;
    fixture.createConfiguredPanel();
    fixture.draw("6d 2 [0 1.0][1 2 3 40 50 60][1 0 0 0 1 0 0 0 1] [1 -1][1 2 3 4 5 6][1 0 0 0 1 0 0 0 1]");
    QCOMPARE(fixture.background(0, BodyIdColumn), green);
    QCOMPARE(fixture.background(1, BodyIdColumn), red);
    QCOMPARE(fixture.background(2, BodyIdColumn), red);
    // The rotation counts, not the angles of the line.
    QCOMPARE(fixture.coordinates(0).mid(3), angleTexts({1, 0, 0, 0, 1, 0, 0, 0, 1}));
    QCOMPARE(fixture.coordinates(1), noCoordinates);
}

void TestViews::coordinates()
{
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.draw("6di 3 " + bodyText(2, "2", "1", "-0.004 1234567.5 1e9") + bodyText(0, "2", "1", "0.125 inf nan")
                 + bodyText(1, "2", "1", "-1.999 0 -2"));
    QCOMPARE(fixture.coordinates(2).mid(0, 3),
             QStringList({QStringLiteral("-0.00"), QStringLiteral("1234567.50"), QStringLiteral("1000000000.00")}));
    QCOMPARE(fixture.coordinates(0).mid(1, 2), QStringList({QStringLiteral("inf"), QStringLiteral("nan")}));
    QCOMPARE(fixture.coordinates(1).mid(0, 3),
             QStringList({QStringLiteral("-2.00"), QStringLiteral("0.00"), QStringLiteral("-2.00")}));
    for (int column = XColumn; column <= RzColumn; ++column)
        QCOMPARE(fixture.table6d().item(0, column)->textAlignment(), int(Qt::AlignRight | Qt::AlignVCenter));
}

void TestViews::angles_data()
{
    QTest::addColumn<QByteArray>("rotation");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("not rotated") << QByteArray("1 0 0 0 1 0 0 0 1") << angleTexts({1, 0, 0, 0, 1, 0, 0, 0, 1});
    QTest::newRow("30 degrees about each axis")
        << QByteArray("0.75 0.649519 -0.125 -0.433013 0.625 0.649519 0.5 -0.433013 0.75")
        << QStringList{QStringLiteral("30.00"), QStringLiteral("30.00"), QStringLiteral("30.00")};
    QTest::newRow("r7 and r8 of 0: rz is 0 and rx keeps its sign")
        << QByteArray("0 0.5 0 0 0.866025 0.5 1 0 0")
        << QStringList{QStringLiteral("30.00"), QStringLiteral("90.00"), QStringLiteral("0.00")};
    QTest::newRow("r3 and r0 of 0: rz is 0 and rx keeps its sign")
        << QByteArray("0 0.5 0 0 0.5 -0.866025 -1 0.25 0.25")
        << QStringList{QStringLiteral("-60.00"), QStringLiteral("-90.00"), QStringLiteral("0.00")};
    QTest::newRow("minus 0 is exactly 0")
        << QByteArray("0.5 0 0 0 0 1 1 -0 -0")
        << QStringList{QStringLiteral("90.00"), QStringLiteral("90.00"), QStringLiteral("0.00")};
    QTest::newRow("beyond the sine's range")
        << QByteArray("1 0 0 0 1 0 1.5 0 1")
        << QStringList{QStringLiteral("0.00"), QStringLiteral("nan"), QStringLiteral("0.00")};
}

void TestViews::angles()
{
    QFETCH(const QByteArray, rotation);
    QFETCH(const QStringList, texts);
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.draw("6di 1 [0 2 1.0][1 2 3][" + rotation + "]");
    QCOMPARE(fixture.coordinates(0).mid(3).join(QLatin1Char(' ')), texts.join(QLatin1Char(' ')));
}

void TestViews::lostBodyKeepsItsTexts()
{
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.draw("6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    const QStringList texts = fixture.coordinates(0);
    QCOMPARE(texts.at(0), QStringLiteral("1.00"));
    fixture.draw("6di 1 " + bodyText(0, "2", "-1.0", "7 8 9"));
    QCOMPARE(fixture.coordinates(0), texts);
    QCOMPARE(fixture.background(0, BodyIdColumn), red);
    QCOMPARE(fixture.foreground(0, BodyIdColumn), black);
}

void TestViews::missingRecordIsNotTracked()
{
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.draw("6di 1 " + bodyText(0, "2", "1.0", "1 2 3"));
    fixture.draw("6di 0");
    QCOMPARE(fixture.background(0, BodyIdColumn), red);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
    fixture.draw("6di 1 " + bodyText(77, "2", "1.0", "1 2 3"));
    QCOMPARE(fixture.background(0, BodyIdColumn), red);
}

void TestViews::uncalibratedAndInactiveRows_data()
{
    QTest::addColumn<QString>("question");
    QTest::newRow("not calibrated") << "body calibrated standard b02";
    QTest::newRow("not active") << "body active standard b02";
}

void TestViews::uncalibratedAndInactiveRows()
{
    QFETCH(const QString, question);
    ThreeBodies fixture;
    fixture.answer(question, QStringLiteral("no"));
    fixture.createConfiguredPanel();
    fixture.markRow(1);
    fixture.draw("6di 2 " + bodyText(0, "2", "1.0", "1 2 3") + bodyText(1, "2", "1.0", "4 5 6"));
    QCOMPARE(fixture.background(1, BodyIdColumn), transparent);
    QCOMPARE(fixture.foreground(1, BodyIdColumn), mark);
    QCOMPARE(fixture.background(1, NameColumn), mark);
    QCOMPARE(fixture.coordinates(1), noCoordinates);
    QCOMPARE(fixture.background(0, BodyIdColumn), green);
}

void TestViews::firstOfEqualIdsCounts()
{
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    fixture.draw("6di 2 " + bodyText(0, "2", "1.0", "1 2 3") + bodyText(0, "1", "1.0", "4 5 6"));
    QCOMPARE(fixture.background(0, BodyIdColumn), green);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
    fixture.draw("6di 2 " + bodyText(0, "2", "-1.0", "7 8 9") + bodyText(0, "2", "1.0", "4 5 6"));
    QCOMPARE(fixture.background(0, BodyIdColumn), red);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
}

void TestViews::redrawNeverChangesTheRows()
{
    ThreeBodies fixture;
    fixture.createConfiguredPanel();
    const QTableWidgetItem *const cell = fixture.table6d().item(0, XColumn);
    QByteArray line = "6di 5";
    for (int id = 0; id < 5; ++id)
        line += ' ' + bodyText(id, "2", "1.0", "1 2 3");
    fixture.draw(line);
    QCOMPARE(fixture.table6d().rowCount(), 3);
    QCOMPARE(fixture.table6d().item(0, XColumn), cell);
}

void TestViews::referenceRow()
{
    ThreeBodies fixture;
    fixture.answer("tracking reference", "standard b02");
    fixture.createConfiguredPanel();
    fixture.draw("6di 2 " + bodyText(0, "2", "1.0", "1 2 3") + bodyText(1, "2", "1.0", "4 5 6"));
    QCOMPARE(fixture.foreground(1, NameColumn), white);
    QCOMPARE(fixture.background(1, NameColumn), blue);
    QCOMPARE(fixture.text(1, NameColumn), QStringLiteral("Body 2"));
    QCOMPARE(fixture.background(0, NameColumn), transparent);
    QCOMPARE(fixture.text(0, NameColumn), QStringLiteral("Body 1"));
}

void TestViews::untrackedReferenceRow()
{
    ThreeBodies fixture;
    fixture.answer("tracking reference", "standard b01");
    fixture.answer("body desc standard b01", "  ");
    fixture.createConfiguredPanel();
    fixture.draw("6di 0");
    QCOMPARE(fixture.background(0, BodyIdColumn), red);
    QCOMPARE(fixture.foreground(0, NameColumn), white);
    QCOMPARE(fixture.background(0, NameColumn), blue);
    QCOMPARE(fixture.text(0, NameColumn), QStringLiteral("reference"));

    fixture.answer("body active standard b01", "no");
    fixture.panel->configurationChanged();
    fixture.draw("6di 0");
    QVERIFY(fixture.background(0, NameColumn) != blue); // a body that is not active is skipped
}

void TestViews::readyHeadRow()
{
    ThreeBodies fixture;
    fixture.answerHead();
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.table6d().rowCount(), 4);
    fixture.draw("6di 2 " + bodyText(0, "1", "1.0", "1 2 3") + bodyText(1, "2", "1.0", "4 5 6"));
    QCOMPARE(fixture.background(0, BodyIdColumn), yellow);
    QCOMPARE(fixture.text(0, XColumn), QStringLiteral("1.00"));
    QCOMPARE(fixture.text(0, BodyIdColumn), QStringLiteral("MUH"));
    QCOMPARE(fixture.text(1, XColumn), QStringLiteral("4.00"));
    QCOMPARE(fixture.background(3, BodyIdColumn), red);
}

void TestViews::headRowThatIsNotReady()
{
    ThreeBodies fixture;
    fixture.answerHead();
    fixture.answer("body active multiuserwandor_head b01", "no");
    fixture.createConfiguredPanel();
    fixture.markRow(0);
    fixture.draw("6di 2 " + bodyText(0, "1", "1.0", "1 2 3") + bodyText(1, "2", "1.0", "4 5 6"));
    QCOMPARE(fixture.background(0, BodyIdColumn), mark);
    QCOMPARE(fixture.background(0, NameColumn), mark);
    QCOMPARE(fixture.coordinates(0), noCoordinates);
    QCOMPARE(fixture.background(1, BodyIdColumn), green);
}

QTEST_MAIN(TestViews)
#include "tst_views.moc"
