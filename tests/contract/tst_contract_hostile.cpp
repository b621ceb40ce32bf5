// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/contract/guestsession.h"

#include <QTemporaryDir>
#include <QTest>

class TestContractHostile : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void wordsAreShownAsTheyAre_data();
    void wordsAreShownAsTheyAre();
    void everyAnswerIsTheSameNonsense_data();
    void everyAnswerIsTheSameNonsense();
    void everythingFails();
    void countsAreNotBelieved_data();
    void countsAreNotBelieved();

private:
    QTemporaryDir home;
};

namespace {

void addNonsense()
{
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("199 characters") << QByteArray(199, 'W');
    QTest::newRow("conversions") << QByteArray("%n%s%s%d%*.*f%1%2%");
    QTest::newRow("bytes that are not UTF-8") << QByteArray("a\xff\xfe\xc3(\x80z");
    QTest::newRow("a UTF-8 name") << QByteArray("Linke Hand \xc3\xa4\xe2\x82\xac");
    QTest::newRow("markup") << QByteArray("<b>x</b><img src='file:///etc/hostname'>&amp;");
    QTest::newRow("control characters") << QByteArray("\x01\x1b[31m\ttab\rreturn");
    QTest::newRow("199 blanks") << QByteArray(199, ' ');
    QTest::newRow("nothing") << QByteArray("");
}

} // namespace

void TestContractHostile::initTestCase()
{
    QVERIFY(home.isValid());
    qputenv("HOME", home.path().toLocal8Bit());
}

void TestContractHostile::wordsAreShownAsTheyAre_data()
{
    addNonsense();
}

void TestContractHostile::wordsAreShownAsTheyAre()
{
    QFETCH(const QByteArray, words);
    GuestSession session;
    session.host.changeScript("inertial available=yes\ninertial number_of_sensors=2\n"
                              "inertial sensor d02=s8\ninertial body_of_sensor s8=none");
    session.host.answers.insert("body desc standard b01", words);
    session.host.answers.insert("body inertial_sensor standard b01", words);
    session.host.answers.insert("inertial sensor d01", words);
    session.host.answers.insert("inertial body_of_sensor " + words, "none");
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.host.takeCalls();
    session.configurationChanged();
    const QString text = QString::fromUtf8(words);
    QCOMPARE(session.table6d()->item(0, 1)->text(), text);
    QCOMPARE(session.table6d()->item(0, 3)->data(256).toString(), text);
    const QByteArrayList calls = session.host.takeCalls();
    // The sensor's name goes back to the backend byte by byte, and both sensors are asked for.
    QVERIFY2(calls.contains("requestString: inertial body_of_sensor " + words), words.constData());
    QVERIFY(calls.contains("requestString: inertial body_of_sensor s8"));
    QCOMPARE(session.host.violations, QByteArrayList());
    session.window.grab();
    QCoreApplication::processEvents();
}

void TestContractHostile::everyAnswerIsTheSameNonsense_data()
{
    addNonsense();
}

void TestContractHostile::everyAnswerIsTheSameNonsense()
{
    QFETCH(const QByteArray, words);
    GuestSession session;
    session.host.changeScript("wandor multiuser=yes\nwandor multiuser_with_head_available=yes\n"
                              "wandor multiuser_with_head=yes\nbody calibrated multiuserwandor_head b01=yes\n"
                              "body active multiuserwandor_head b01=yes\nbody active standard b03=yes");
    for (QByteArray &answer : session.host.answers)
        answer = words;
    session.host.changeScript("standard number_of_bodies=2\nbody number_of_bodies multiuserwandor_head=1\n"
                              "standard fixed_angle_present=no");
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.show();
    session.configurationChanged();
    // Only "no" is no to the questions about heads, and only "yes" is yes to those about bodies.
    QCOMPARE(session.table6d()->rowCount(), 3);
    QCOMPARE(session.table6d()->item(0, 0)->text(), QStringLiteral("MUH"));
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(session.table6d()->item(row, 0)->whatsThis(), QStringLiteral(" This body is not yet calibrated."));
        QCOMPARE(session.table6d()->item(row, 1)->text(), QString());
        QCOMPARE(session.table6d()->item(row, 2)->text(), QString());
    }
    QCOMPARE(session.host.takeLog(), QByteArrayList());
    QCOMPARE(session.host.violations, QByteArrayList());
    session.window.grab();
    QCoreApplication::processEvents();
}

void TestContractHostile::everythingFails()
{
    GuestSession session;
    session.host.answers.clear();
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.show();
    session.configurationChanged();
    QCOMPARE(session.table6d()->rowCount(), 0);
    QCOMPARE(session.host.takeLog(), linesOf(R"(
        standard VORNAK4 1 Error: Unable to get number of bodies
        standard VORNAK4 1 Error: Unable to get info multiuser wandor available
        standard VORNAK4 1 Error: Unable to get fixed angle present
        standard VORNAK4 1 Error: Unable to get info output 6di available
    )"));
    QCOMPARE(session.host.violations, QByteArrayList());
}

void TestContractHostile::countsAreNotBelieved_data()
{
    QTest::addColumn<QByteArray>("changes");
    QTest::addColumn<int>("rows");
    QTest::newRow("minus five bodies") << QByteArray("standard number_of_bodies=-5") << 0;
    QTest::newRow("the least number of bodies") << QByteArray("standard number_of_bodies=-2147483648") << 0;
    QTest::newRow("minus one head") << QByteArray("wandor multiuser_available=yes\nwandor multiuser=yes\n"
                                                  "wandor multiuser_with_head_available=yes\n"
                                                  "wandor multiuser_with_head=yes\n"
                                                  "body number_of_bodies multiuserwandor_head=-1")
                                    << 2;
    QTest::newRow("minus one sensor") << QByteArray("inertial available=yes\ninertial number_of_sensors=-1") << 2;
    QTest::newRow("a reference far outside") << QByteArray("tracking reference=standard b2147483647") << 2;
    QTest::newRow("a reference before the first") << QByteArray("tracking reference=standard b-2147483648") << 2;
    QTest::newRow("a reference beyond 32 bits") << QByteArray("tracking reference=standard b99999999999") << 2;
    QTest::newRow("a reference without a number") << QByteArray("tracking reference=standard ") << 2;
    QTest::newRow("a hundred bodies") << QByteArray("standard number_of_bodies=100") << 100;
}

void TestContractHostile::countsAreNotBelieved()
{
    QFETCH(const QByteArray, changes);
    QFETCH(const int, rows);
    GuestSession session;
    session.host.changeScript(changes);
    QVERIFY2(session.start(), qPrintable(session.loader.errorString()));
    session.host.takeCalls();
    session.configurationChanged();
    QCOMPARE(session.table6d()->rowCount(), rows);
    const QByteArrayList calls = session.host.takeCalls();
    QCOMPARE(calls.contains("requestString: body active standard b100"), rows == 100);
    QCOMPARE(session.host.violations, QByteArrayList());
    QCOMPARE(session.deliver("6di", "6di 1 [0 2 1][1 2 3][1 0 0 0 1 0 0 0 1]"), 0);
    session.show();
    if (rows > 0)
        QTRY_COMPARE(session.table6d()->item(0, 4)->text(), QStringLiteral("1.00"));
    session.clearData();
    QCOMPARE(session.table6d()->rowCount(), 0);
}

QTEST_MAIN(TestContractHostile)
#include "tst_contract_hostile.moc"
