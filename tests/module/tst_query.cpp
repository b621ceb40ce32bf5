// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT

#include "channel/query.h"
#include "numbers/saturatedint.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

#include <cstring>

namespace {

QStringList takeCalls(ScriptedHost &host)
{
    QStringList taken;
    for (const QByteArray &call : host.takeCalls())
        taken << QString::fromLatin1(call);
    return taken;
}

} // namespace

class TestQuery : public QObject {
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
    void yesAndNo_data();
    void yesAndNo();
    void failuresGiveDefaults_data();
    void failuresGiveDefaults();
    void counts_data();
    void counts();
    void otherAnswers();
    void buffersStartEmpty();
    void logTexts_data();
    void logTexts();
    void textsOfTheBackendAreNoFormats();
    void quotesAreRemoved_data();
    void quotesAreRemoved();
    void saturation_data();
    void saturation();
};

void TestQuery::texts_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("a word") << QByteArray("standard b01");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("blanks and line ends stay") << QByteArray(" a \t\r\n");
    QTest::newRow("bytes beyond ASCII stay") << QByteArray("K\xC3\xB6rper \xFF");
    QTest::newRow("printf's words") << QByteArray("%n%s%1");
    QTest::newRow("199 bytes") << QByteArray(199, 'x');
    QTest::newRow("200 bytes without a terminator") << QByteArray(200, 'x');
}

void TestQuery::texts()
{
    QFETCH(const QByteArray, answer);
    ScriptedHost host;
    Query query(host);
    char *const buffer = query.textBuffer();
    std::memcpy(buffer, answer.constData(), static_cast<size_t>(qMin(answer.size() + 1, 200)));
    const std::optional<QByteArray> text = query.text(0, "get it");
    QVERIFY(text.has_value());
    QCOMPARE(*text, answer);
    QCOMPARE(takeCalls(host), QStringList());
}

void TestQuery::yesAndNo_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<bool>("notNo");
    QTest::newRow("yes") << QByteArray("yes") << true << true;
    QTest::newRow("no") << QByteArray("no") << false << false;
    QTest::newRow("empty") << QByteArray("") << false << true;
    QTest::newRow("Yes") << QByteArray("Yes") << false << true;
    QTest::newRow("No") << QByteArray("No") << false << true;
    QTest::newRow("yes with a blank") << QByteArray("yes ") << false << true;
    QTest::newRow("no with a line end") << QByteArray("no\n") << false << true;
    QTest::newRow("a word that begins with no") << QByteArray("none") << false << true;
    QTest::newRow("a word that begins with yes") << QByteArray("yesterday") << false << true;
}

void TestQuery::yesAndNo()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const bool, yes);
    QFETCH(const bool, notNo);
    ScriptedHost host;
    Query query(host);
    std::strcpy(query.textBuffer(), answer.constData());
    QCOMPARE(query.isYes(0, "get it"), yes);
    std::strcpy(query.textBuffer(), answer.constData());
    QCOMPARE(query.isNotNo(0, "get it"), notNo);
    QCOMPARE(takeCalls(host), QStringList());
}

void TestQuery::failuresGiveDefaults_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("1") << 1;
    QTest::newRow("-1") << -1;
    QTest::newRow("256, whose lowest byte is 0") << 256;
    QTest::newRow("the smallest int") << std::numeric_limits<int>::min();
}

void TestQuery::failuresGiveDefaults()
{
    QFETCH(const int, result);
    ScriptedHost host;
    Query query(host);
    for (const char *const action : {static_cast<const char *>(nullptr), "ask"}) {
        std::strcpy(query.textBuffer(), "yes");
        QVERIFY(!query.text(result, action).has_value());
        std::strcpy(query.textBuffer(), "yes");
        QVERIFY(!query.isYes(result, action));
        std::strcpy(query.textBuffer(), "yes");
        QVERIFY(!query.isNotNo(result, action));
        *query.intBuffer() = 7;
        QCOMPARE(query.count(result, action), 0);
        *query.doubleBuffer() = 0.7;
        QCOMPARE(query.number(result, action), 0.0);
        *query.boolBuffer() = true;
        QVERIFY(!query.flag(result, action));
        QVERIFY(!query.accepted(result, action));
        QStringList logs;
        for (int i = 0; i < (action ? 7 : 0); ++i)
            logs << QStringLiteral("log Error: Unable to ask");
        QCOMPARE(takeCalls(host), logs);
    }
}

void TestQuery::counts_data()
{
    QTest::addColumn<qint32>("answer");
    QTest::addColumn<qint32>("count");
    QTest::addColumn<bool>("logged");
    QTest::newRow("none") << 0 << 0 << false;
    QTest::newRow("some") << 12 << 12 << false;
    QTest::newRow("below 0 stays") << -5 << -5 << false;
    QTest::newRow("the smallest stays") << std::numeric_limits<qint32>::min() << std::numeric_limits<qint32>::min()
                                        << false;
    QTest::newRow("a million") << 1'000'000 << 1'000'000 << false;
    QTest::newRow("more than a million is a failure") << 1'000'001 << 0 << true;
    QTest::newRow("the largest is a failure") << std::numeric_limits<qint32>::max() << 0 << true;
}

void TestQuery::counts()
{
    QFETCH(const qint32, answer);
    QFETCH(const qint32, count);
    QFETCH(const bool, logged);
    ScriptedHost host;
    Query query(host);
    *query.intBuffer() = answer;
    QCOMPARE(query.count(0, "get number of bodies"), count);
    QCOMPARE(takeCalls(host),
             logged ? QStringList{QStringLiteral("log Error: Unable to get number of bodies")} : QStringList());
}

void TestQuery::otherAnswers()
{
    ScriptedHost host;
    Query query(host);
    *query.doubleBuffer() = -0.25;
    QCOMPARE(query.number(0, "x"), -0.25);
    *query.boolBuffer() = true;
    QVERIFY(query.flag(0, "x"));
    *query.boolBuffer() = false;
    QVERIFY(!query.flag(0, "x"));
    QVERIFY(query.accepted(0, "x"));
    QCOMPARE(takeCalls(host), QStringList());
}

void TestQuery::buffersStartEmpty()
{
    ScriptedHost host;
    Query query(host);
    std::memset(query.textBuffer(), 'x', 200);
    *query.intBuffer() = 7;
    *query.doubleBuffer() = 0.7;
    *query.boolBuffer() = true;

    // A host that answers without writing anything must not repeat the answer of before.
    query.textBuffer();
    QCOMPARE(query.text(0).value_or("failed"), QByteArray());
    query.intBuffer();
    QCOMPARE(query.count(0), 0);
    query.doubleBuffer();
    QCOMPARE(query.number(0), 0.0);
    query.boolBuffer();
    QVERIFY(!query.flag(0));
}

void TestQuery::logTexts_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("text");
    QTest::newRow("the subject is filled in") << QByteArray("activate output %1") << "6di"
                                              << "activate output 6di";
    QTest::newRow("in the middle") << QByteArray("get info output %1 active") << "3d"
                                   << "get info output 3d active";
    QTest::newRow("without a place for it") << QByteArray("get number of bodies") << ""
                                            << "get number of bodies";
    QTest::newRow("a subject with a place of its own") << QByteArray("set %1 now") << "%1%2"
                                                       << "set %1%2 now";
    QTest::newRow("a subject with printf's words") << QByteArray("set %1") << "%n%s%d"
                                                   << "set %n%s%d";
    QTest::newRow("Latin-1 letters stay")
        << QByteArray("set %1") << QStringLiteral("K\u00F6rper") << QStringLiteral("set K\u00F6rper");
    QTest::newRow("others become question marks")
        << QByteArray("set %1") << QStringLiteral("\u5B57\u20AC") << QStringLiteral("set ??");
}

void TestQuery::logTexts()
{
    QFETCH(const QByteArray, action);
    QFETCH(const QString, subject);
    QFETCH(const QString, text);
    ScriptedHost host;
    Query query(host);
    QVERIFY(!query.accepted(1, action.constData(), subject));
    QCOMPARE(takeCalls(host), QStringList{QStringLiteral("log Error: Unable to ") + text});
    QVERIFY(query.accepted(0, action.constData(), subject));
    QCOMPARE(takeCalls(host), QStringList());
    logToHost(host, QStringLiteral("WARNING: ") + subject);
    QCOMPARE(takeCalls(host).size(), 1);
}

void TestQuery::textsOfTheBackendAreNoFormats()
{
    ScriptedHost host;
    host.answers.insert(QByteArrayLiteral("inertial sensor d01"), QByteArrayLiteral("%n%s%d"));
    host.answers.insert(QByteArrayLiteral("inertial body_of_sensor %n%s%d"), QByteArrayLiteral("none"));
    Query query(host);
    const QByteArray sensor =
        query.text(host.requestString(query.textBuffer(), "inertial sensor d%.2d", 1)).value_or("");
    QCOMPARE(sensor, QByteArray("%n%s%d"));
    const auto body =
        query.text(host.requestString(query.textBuffer(), "inertial body_of_sensor %s", sensor.constData()));
    QCOMPARE(body.value_or("failed"), QByteArray("none"));
    logToHost(host, QString::fromLatin1(sensor));
    QCOMPARE(takeCalls(host).last(), QStringLiteral("log %n%s%d"));
}

void TestQuery::quotesAreRemoved_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("shown");
    QTest::newRow("no answer shows nothing") << QByteArray() << QString();
    QTest::newRow("an empty answer shows nothing") << QByteArray("") << QString();
    QTest::newRow("a text without quotes stays") << QByteArray("hand") << QStringLiteral("hand");
    QTest::newRow("the quotes around a description go") << QByteArray("\"left hand\"") << QStringLiteral("left hand");
    QTest::newRow("quotes inside go too") << QByteArray("\"a \"b\" c\"") << QStringLiteral("a b c");
    QTest::newRow("UTF-8 is read") << QByteArray("\"K\xC3\xB6rper\"") << QStringLiteral("K\u00F6rper");
}

void TestQuery::quotesAreRemoved()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, shown);
    QCOMPARE(unquoted(answer), shown);
}

void TestQuery::saturation_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("integer");
    QTest::newRow("the fraction is cut") << 2.999 << 2;
    QTest::newRow("toward zero") << -2.999 << -2;
    QTest::newRow("minus 0") << -0.0 << 0;
    QTest::newRow("the largest int") << 2147483647.0 << 2147483647;
    QTest::newRow("just above the largest int") << 2147483648.0 << 2147483647;
    QTest::newRow("just above the smallest int") << -2147483647.9 << -2147483647;
    QTest::newRow("the smallest int") << -2147483648.0 << std::numeric_limits<int>::min();
    QTest::newRow("far below the smallest int") << -1e300 << std::numeric_limits<int>::min();
    QTest::newRow("infinity") << infinity << 2147483647;
    QTest::newRow("minus infinity") << -infinity << std::numeric_limits<int>::min();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void TestQuery::saturation()
{
    QFETCH(const double, number);
    QFETCH(const int, integer);
    QCOMPARE(saturatedInt(number), integer);
}

QTEST_APPLESS_MAIN(TestQuery)
#include "tst_query.moc"
