// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

/// Which row the backend names as its tracking reference.
class TestTrackingReference : public QObject {
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void hostileReferences_data();
    void hostileReferences();
    void referenceMayGo();
    void olderBackendHasNoReference();
};

void TestTrackingReference::rows_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("head");
    QTest::addColumn<int>("row"); // -1: none
    QTest::newRow("b03 is row 2") << "standard b03" << false << 2;
    QTest::newRow("b03 is row 3 below a head row") << "standard b03" << true << 3;
    QTest::newRow("any first character is dropped") << "standard 72" << false << 1;
    QTest::newRow("more parts don't matter") << "standard b01 x y" << false << 0;
    QTest::newRow("none") << "none" << false << -1;
    QTest::newRow("other bodies are none") << "wandor b01" << false << -1;
    QTest::newRow("upper case is another word") << "Standard b01" << false << -1;
    QTest::newRow("an empty part counts") << "standard  b01" << false << -1;
    QTest::newRow("an empty part in front counts") << " standard b01" << false << -1;
    QTest::newRow("one part") << "standard" << false << -1;
    QTest::newRow("no number") << "standard b" << false << -1;
    QTest::newRow("not decimal") << "standard b0x1" << false << -1;
    QTest::newRow("empty") << "" << false << -1;
    QTest::newRow("b0 is no row") << "standard b0" << false << -1;
}

void TestTrackingReference::rows()
{
    QFETCH(const QString, answer);
    QFETCH(const bool, head);
    QFETCH(const int, row);
    PanelFixture fixture;
    fixture.answerBodies(3);
    if (head)
        fixture.answerHead();
    fixture.answer("body desc standard b03", " \"Hand\"  ");
    fixture.answer(QStringLiteral("tracking reference"), answer);
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QCOMPARE(calls.at(calls.indexOf(QStringLiteral("requestString tracking reference")) + 1)
                 .startsWith(QLatin1String("requestString body desc standard b")),
             row >= 0);
    QList<int> blueRows;
    for (int i = 0; i < fixture.table6d().rowCount(); ++i) {
        if (fixture.background(i, NameColumn) == QBrush(Qt::blue))
            blueRows << i;
    }
    QCOMPARE(blueRows, row < 0 ? QList<int>() : QList<int>{row});
    if (answer == QLatin1String("standard b03"))
        QCOMPARE(fixture.text(row, NameColumn), QStringLiteral("Hand"));
}

void TestTrackingReference::hostileReferences_data()
{
    QTest::addColumn<QString>("number");
    for (const char *const number : {"-1", "-5", "4", "5", "99999", "2147483647", "-2147483648", "99999999999"})
        QTest::newRow(number) << number;
}

void TestTrackingReference::hostileReferences()
{
    QFETCH(const QString, number);
    PanelFixture fixture;
    fixture.answerBodies(3);
    fixture.createPanel();
    fixture.answer(QStringLiteral("tracking reference"), QStringLiteral("standard b") + number);
    for (const bool head : {false, true}) {
        if (head)
            fixture.answerHead();
        QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
        for (int row = 0; row < 3; ++row)
            QVERIFY(fixture.background(row, NameColumn) != QBrush(Qt::blue));
    }
}

void TestTrackingReference::referenceMayGo()
{
    PanelFixture fixture;
    fixture.answerBodies(1);
    fixture.answer("tracking reference", "standard b01");
    fixture.answer("body desc standard b01", "");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.text(0, NameColumn), QStringLiteral("reference"));
    fixture.refuse("tracking reference");
    QCOMPARE(PanelFixture::logs(fixture.reconfigure()), QStringList());
    QCOMPARE(fixture.text(0, NameColumn), QString());
    QCOMPARE(fixture.background(0, NameColumn), QBrush(Qt::transparent));
}

void TestTrackingReference::olderBackendHasNoReference()
{
    PanelFixture fixture;
    fixture.answerBodies(2);
    fixture.answer("tracking reference", "standard b02");
    fixture.createConfiguredPanel();
    QCOMPARE(fixture.background(1, NameColumn), QBrush(Qt::blue));
    fixture.versions.backendMinor = 23;
    QVERIFY(!fixture.reconfigure().contains(QStringLiteral("requestString tracking reference")));
    fixture.panel->updateView6d();
    QCOMPARE(fixture.background(1, NameColumn), QBrush(Qt::transparent));
    QCOMPARE(fixture.text(1, NameColumn), QStringLiteral("Body 2"));
}

QTEST_MAIN(TestTrackingReference)
#include "tst_trackingreference.moc"
