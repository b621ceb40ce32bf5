// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "tests/support/panelfixture.h"

#include <QtTest>

/// Whether a head target leads the table, and whether it is ready.
class TestHeadTarget : public QObject {
    Q_OBJECT

private slots:
    void headDetection_data();
    void headDetection();
    void headCalibration_data();
    void headCalibration();
    void countFailsWhenAskedAgain();
};

void TestHeadTarget::headDetection_data()
{
    QTest::addColumn<int>("minor");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("answer"); // "": it fails
    QTest::addColumn<QString>("log");
    QTest::addColumn<int>("questions"); // asked in all
    QTest::addColumn<bool>("head");
    const QString available = QStringLiteral("wandor multiuser_available");
    const QString active = QStringLiteral("wandor multiuser");
    const QString headAvailable = QStringLiteral("wandor multiuser_with_head_available");
    const QString headActive = QStringLiteral("wandor multiuser_with_head");
    const QString count = QStringLiteral("body number_of_bodies multiuserwandor_head");
    QTest::newRow("all yes") << 24 << available << "yes"
                             << "" << 5 << true;
    QTest::newRow("available fails") << 24 << available << ""
                                     << "Error: Unable to get info multiuser wandor available" << 1 << false;
    QTest::newRow("not available") << 24 << available << "no"
                                   << "" << 1 << false;
    QTest::newRow("No with a capital letter is not no") << 24 << available << "No"
                                                        << "" << 5 << true;
    QTest::newRow("an empty answer is not no") << 24 << active << "<empty>"
                                               << "" << 5 << true;
    QTest::newRow("active fails") << 24 << active << ""
                                  << "Error: Unable to get info multiuser wandor activated" << 2 << false;
    QTest::newRow("not active") << 24 << active << "no"
                                << "" << 2 << false;
    QTest::newRow("head available fails")
        << 24 << headAvailable << ""
        << "Error: Unable to get info multiuser wandor with head available" << 3 << false;
    QTest::newRow("head not available") << 24 << headAvailable << "no"
                                        << "" << 3 << false;
    QTest::newRow("0.12 asks not for head available") << -12 << headAvailable << ""
                                                      << "" << 4 << true;
    QTest::newRow("0.13 asks for head available") << -13 << headAvailable << "no"
                                                  << "" << 3 << false;
    QTest::newRow("head active fails") << 24 << headActive << ""
                                       << "Error: Unable to get info multiuser wandor with head activated" << 4
                                       << false;
    QTest::newRow("head not active") << 24 << headActive << "no"
                                     << "" << 4 << false;
    QTest::newRow("the count fails") << 24 << count << ""
                                     << "Error: Unable to get number of multiuser head targets" << 5 << false;
    QTest::newRow("no head targets") << 24 << count << "0"
                                     << "" << 5 << false;
    QTest::newRow("a negative count of head targets") << 24 << count << "-3"
                                                      << "" << 5 << false;
}

void TestHeadTarget::headDetection()
{
    QFETCH(const int, minor); // negative: of major version 0
    QFETCH(const QString, question);
    QFETCH(const QString, answer);
    QFETCH(const QString, log);
    QFETCH(const int, questions);
    QFETCH(const bool, head);
    PanelFixture fixture(minor < 0 ? 0 : 1, qAbs(minor), -1);
    fixture.answerBodies(1);
    fixture.answerHead();
    if (answer.isEmpty())
        fixture.refuse(question);
    else
        fixture.answer(question, answer == QLatin1String("<empty>") ? QString() : answer);
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    int asked = 0;
    for (int i = 1; i < calls.size() && (calls.at(i).contains(QLatin1String("multiuser"))); ++i)
        asked += calls.at(i).startsWith(QLatin1String("log ")) ? 0 : 1;
    QCOMPARE(asked, questions);
    QCOMPARE(PanelFixture::logs(calls), log.isEmpty() ? QStringList() : QStringList{log});
    QCOMPARE(fixture.table6d().rowCount(), head ? 2 : 1);
    QCOMPARE(fixture.text(0, BodyIdColumn), head ? QStringLiteral("MUH") : QStringLiteral("1"));
}

void TestHeadTarget::headCalibration_data()
{
    QTest::addColumn<QStringList>("answers"); // of calibrated and active of b01, b02 and b03; "": it fails
    QTest::addColumn<QStringList>("questions");
    QTest::addColumn<QString>("log");
    QTest::addColumn<bool>("ready");
    const auto list = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(',')); };
    QTest::newRow("the second one alone is ready")
        << list("no,yes,yes,yes,no,yes") << list("c1,c2,a2,c3") << "" << true;
    QTest::newRow("calibrated is not active")
        << list("yes,no,yes,no,yes,no") << list("c1,a1,c2,a2,c3,a3") << "" << false;
    QTest::newRow("only exactly yes counts") << list("Yes,yes,yes,YES,yes ,yes") << list("c1,c2,a2,c3") << "" << false;
    QTest::newRow("a failure ends the questions, and nothing is ready")
        << list("yes,yes,,yes,yes,yes") << list("c1,a1,c2")
        << "Error: Unable to get info multiuser head target is calibrated" << false;
    QTest::newRow("a failure of active ends the questions, and nothing is ready")
        << list("yes,yes,yes,,yes,yes") << list("c1,a1,c2,a2")
        << "Error: Unable to get info multiuser head target is activated" << false;
}

void TestHeadTarget::headCalibration()
{
    QFETCH(const QStringList, answers);
    QFETCH(const QStringList, questions);
    QFETCH(const QString, log);
    QFETCH(const bool, ready);
    PanelFixture fixture;
    fixture.answerHead();
    fixture.answer("body number_of_bodies multiuserwandor_head", "3");
    for (int i = 0; i < answers.size(); ++i) {
        const QString command = QStringLiteral("body %1 multiuserwandor_head b0%2")
                                    .arg(i % 2 == 0 ? QStringLiteral("calibrated") : QStringLiteral("active"))
                                    .arg(i / 2 + 1);
        fixture.refuse(command);
        if (!answers.at(i).isEmpty())
            fixture.answer(command, answers.at(i));
    }
    fixture.createPanel();
    const QStringList calls = fixture.reconfigure();
    QStringList asked;
    for (const QString &call : calls) {
        if (call.contains(QLatin1String("multiuserwandor_head b0")))
            asked << call.mid(19, 1) + call.right(1);
    }
    QCOMPARE(asked, questions);
    QCOMPARE(PanelFixture::logs(calls), log.isEmpty() ? QStringList() : QStringList{log});
    QCOMPARE(fixture.table6d().rowCount(), 1);
    QCOMPARE(fixture.table6d().item(0, BodyIdColumn)->whatsThis(),
             ready ? QString() : QStringLiteral(" This body is not yet calibrated."));
    QCOMPARE(fixture.background(0, BodyIdColumn), QBrush(ready ? Qt::red : Qt::transparent));
}

void TestHeadTarget::countFailsWhenAskedAgain()
{
    PanelFixture fixture;
    fixture.answerHead();
    fixture.createPanel();
    const QString count = QStringLiteral("requestInt body number_of_bodies multiuserwandor_head");
    const QStringList whole = fixture.reconfigure();
    QCOMPARE(whole.count(count), 2);
    const int second = whole.lastIndexOf(count);
    const int requests = whole.mid(0, second + 1).filter(QRegularExpression(QStringLiteral("^request"))).size();
    fixture.host.failCall = requests;
    const QStringList calls = fixture.reconfigure();
    QVERIFY(!calls.contains(QStringLiteral("requestString body calibrated multiuserwandor_head b01")));
    QCOMPARE(PanelFixture::logs(calls),
             QStringList{QStringLiteral("Error: Unable to get number of multiuser head targets")});
    QCOMPARE(fixture.text(0, BodyIdColumn), QStringLiteral("MUH"));
    QCOMPARE(fixture.table6d().item(0, BodyIdColumn)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
}

QTEST_MAIN(TestHeadTarget)
#include "tst_headtarget.moc"
