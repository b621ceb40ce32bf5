// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/simulatedbackend.h"
#include "host/hostiomanager.h"
#include "host/hostlog.h"
#include "tests/host/fakebackend.h"
#include "tests/host/fakerequester.h"

#include <QSignalSpy>
#include <QTest>

#include <array>
#include <clocale>
#include <cmath>
#include <cstring>

using namespace backend;
using namespace host;

Q_DECLARE_METATYPE(LogEntry)

/// A command channel on a backend with answers from a table.
class HostIOManagerTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void answersATextQuery();
    void cutsALongTextAnswer_data();
    void cutsALongTextAnswer();
    void cutsWhatTheSimulationAnswersInFull();
    void answersAWholeNumber_data();
    void answersAWholeNumber();
    void answersANumber_data();
    void answersANumber();
    void answersYesOrNo_data();
    void answersYesOrNo();
    void answersSeveralNumbers_data();
    void answersSeveralNumbers();
    void formatsAsPrintfInTheCLocale();
    void formatsCommandsOfAnyLength();
    void logsARefusedCommand();
    void failsAndLogsWithoutABackend();
    void failsAndLogsWhenTheBackendHasNoAnswer();
    void refusesOutputForAStrangersRequester();
    void takesLogTextsAsLatin1();
    void tellsRequestersOfTheConfiguration();
    void skipsARequesterThatAnotherTookAlong();

private:
    QStringList logged();

    std::unique_ptr<HostLog> log;
    std::unique_ptr<HostIOManager> manager;
    std::shared_ptr<FakeBackend> backend;
    std::unique_ptr<QSignalSpy> entries;
};

void HostIOManagerTest::initTestCase()
{
    qRegisterMetaType<LogEntry>("host::LogEntry");
}

void HostIOManagerTest::init()
{
    log = std::make_unique<HostLog>();
    manager = std::make_unique<HostIOManager>(*log);
    backend = std::make_shared<FakeBackend>();
    manager->setBackend(backend);
    entries = std::make_unique<QSignalSpy>(log.get(), &HostLog::entryAdded);
}

void HostIOManagerTest::cleanup()
{
    std::setlocale(LC_ALL, "C.UTF-8");
    entries.reset();
    manager.reset();
    log.reset();
}

QStringList HostIOManagerTest::logged()
{
    QCoreApplication::processEvents();
    QStringList texts;
    for (const QList<QVariant> &arguments : qAsConst(*entries))
        texts << arguments.at(0).value<LogEntry>().text;
    return texts;
}

void HostIOManagerTest::answersATextQuery()
{
    backend->answers.insert("body desc standard b07", "Gl\xC3\xA4ser \"2\"");
    std::array<char, 200> answer{};
    QCOMPARE(manager->requestString(answer.data(), "body desc standard b%.2d", 7), 0);
    QCOMPARE(QString::fromUtf8(answer.data()), QStringLiteral("Gl\u00E4ser \"2\""));
    QVERIFY(logged().isEmpty());
}

void HostIOManagerTest::cutsALongTextAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("199 bytes fit") << QByteArray(199, 'x') << QByteArray(199, 'x');
    QTest::newRow("200 bytes lose one") << QByteArray(200, 'x') << QByteArray(199, 'x');
    QTest::newRow("ten thousand bytes are cut to 199") << QByteArray(10000, 'x') << QByteArray(199, 'x');
    QTest::newRow("a character of two bytes across the end goes whole")
        << QByteArray(QByteArray(198, 'x') + "\xC3\xA4y") << QByteArray(198, 'x');
    QTest::newRow("a character of four bytes across the end goes whole")
        << QByteArray(QByteArray(196, 'x') + "\xF0\x9F\x8E\xA5y") << QByteArray(196, 'x');
    QTest::newRow("a character that ends at byte 199 stays")
        << QByteArray(QByteArray(197, 'x') + "\xC3\xA4y") << QByteArray(QByteArray(197, 'x') + "\xC3\xA4");
}

void HostIOManagerTest::cutsALongTextAnswer()
{
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, expected);
    backend->answers.insert("q", answer);
    std::array<char, 201> buffer{};
    buffer.fill('#');
    QCOMPARE(manager->requestString(buffer.data(), "q"), 0);
    QCOMPARE(QByteArray(buffer.data()), expected);
    QCOMPARE(buffer.back(), '#');
}

void HostIOManagerTest::cutsWhatTheSimulationAnswersInFull()
{
    Scenario scenario;
    scenario.bodies.resize(1);
    scenario.bodies[0].name = QStringLiteral("x") + QString(300, QChar(0x00F6));
    manager->setBackend(std::make_shared<SimulatedBackend>(scenario));
    std::array<char, 200> answer{};
    QCOMPARE(manager->requestString(answer.data(), "body desc standard b01"), 0);
    QCOMPARE(QString::fromUtf8(answer.data()), QStringLiteral("\"x") + QString(98, QChar(0x00F6))); // 198 bytes
}

void HostIOManagerTest::answersAWholeNumber_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("expected");
    QTest::newRow("a count") << QByteArray("12") << true << 12;
    QTest::newRow("a negative number") << QByteArray("-3") << true << -3;
    QTest::newRow("blanks around it") << QByteArray(" 4\n") << true << 4;
    QTest::newRow("no octal") << QByteArray("010") << true << 10;
    QTest::newRow("the largest") << QByteArray("2147483647") << true << 2147483647;
    QTest::newRow("one more than the largest fails") << QByteArray("2147483648") << false << 0;
    QTest::newRow("a broken number fails") << QByteArray("1.5") << false << 0;
    QTest::newRow("text behind it fails") << QByteArray("3 bodies") << false << 0;
    QTest::newRow("a word fails") << QByteArray("none") << false << 0;
    QTest::newRow("an empty answer fails") << QByteArray("") << false << 0;
}

void HostIOManagerTest::answersAWholeNumber()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, valid);
    QFETCH(int, expected);
    backend->answers.insert("count", answer);
    qint32 number = 77;
    QCOMPARE(manager->requestInt(&number, "count") == 0, valid);
    QCOMPARE(number, valid ? expected : 77);
    QCOMPARE(logged().size(), valid ? 0 : 1);
}

void HostIOManagerTest::answersANumber_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<double>("expected");
    QTest::newRow("a broken number") << QByteArray("0.25") << true << 0.25;
    QTest::newRow("a whole number") << QByteArray("-4") << true << -4.0;
    QTest::newRow("an exponent") << QByteArray("1e3") << true << 1000.0;
    QTest::newRow("a decimal comma fails") << QByteArray("0,25") << false << 0.0;
    QTest::newRow("a word fails") << QByteArray("full") << false << 0.0;
    QTest::newRow("an empty answer fails") << QByteArray("") << false << 0.0;
}

void HostIOManagerTest::answersANumber()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, valid);
    QFETCH(double, expected);
    QVERIFY2(std::setlocale(LC_ALL, "de_DE.UTF-8"), "the locale de_DE.UTF-8 is not installed");
    backend->answers.insert("level", answer);
    double number = 7.5;
    QCOMPARE(manager->requestDouble(&number, "level") == 0, valid);
    QCOMPARE(number, valid ? expected : 7.5);
    QCOMPARE(logged().size(), valid ? 0 : 1);
}

void HostIOManagerTest::answersYesOrNo_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("expected");
    for (const char *word : {"yes", "true", "1", " yes "})
        QTest::newRow(word) << QByteArray(word) << true << true;
    for (const char *word : {"no", "false", "0"})
        QTest::newRow(word) << QByteArray(word) << true << false;
    for (const char *word : {"", "maybe", "YES", "2"})
        QTest::addRow("\"%s\" fails", word) << QByteArray(word) << false << false;
}

void HostIOManagerTest::answersYesOrNo()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, valid);
    QFETCH(bool, expected);
    backend->answers.insert("flag", answer);
    for (const bool before : {true, false}) {
        bool flag = before;
        QCOMPARE(manager->requestBool(&flag, "flag") == 0, valid);
        QCOMPARE(flag, valid ? expected : before);
    }
    QCOMPARE(logged().size(), valid ? 0 : 2);
}

void HostIOManagerTest::answersSeveralNumbers_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("valid");
    QTest::newRow("two of two") << QByteArray("21.5 0.75") << 2 << true;
    QTest::newRow("more blanks between them") << QByteArray("  21.5\t 0.75\n") << 2 << true;
    QTest::newRow("none of none") << QByteArray("") << 0 << true;
    QTest::newRow("one too few fails") << QByteArray("21.5") << 2 << false;
    QTest::newRow("one too many fails") << QByteArray("21.5 0.75 3") << 2 << false;
    QTest::newRow("a word among them fails") << QByteArray("21.5 warm") << 2 << false;
    QTest::newRow("an empty answer fails") << QByteArray("") << 2 << false;
}

void HostIOManagerTest::answersSeveralNumbers()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, count);
    QFETCH(bool, valid);
    backend->answers.insert("temperature d01", answer);
    std::array<double, 3> numbers{7.0, 8.0, 9.0};
    const int result = manager->requestDoubles(numbers.data(), count, "temperature %s", "d01");
    QCOMPARE(result == 0, valid);
    const bool written = valid && count == 2;
    QCOMPARE(numbers[0], written ? 21.5 : 7.0);
    QCOMPARE(numbers[1], written ? 0.75 : 8.0);
    QCOMPARE(numbers[2], 9.0);
    QCOMPARE(logged().size(), valid ? 0 : 1);
}

void HostIOManagerTest::formatsAsPrintfInTheCLocale()
{
    QVERIFY2(std::setlocale(LC_ALL, "de_DE.UTF-8"), "the locale de_DE.UTF-8 is not installed");
    QCOMPARE(manager->sendCommand("a b%2.2d b%.2d b%02d", 3, 4, 125), 0);
    QCOMPARE(manager->sendCommand("body filter6d_strength %s %f", "standard b01", 0.5), 0);
    QCOMPARE(manager->sendCommand("%s", "%d %s 100%"), 0);
    QCOMPARE(backend->asked(),
             (QByteArrayList{"a b03 b04 b125", "body filter6d_strength standard b01 0.500000", "%d %s 100%"}));
    QCOMPARE(QByteArray(std::localeconv()->decimal_point), QByteArray(",")); // only the formatting is in C
}

void HostIOManagerTest::formatsCommandsOfAnyLength()
{
    for (const int length : {0, 254, 255, 256, 257, 5000}) {
        const QByteArray text(length, 'y');
        QCOMPARE(manager->sendCommand("%s", text.constData()), 0);
        QCOMPARE(backend->asked().constLast(), text);
    }
}

void HostIOManagerTest::logsARefusedCommand()
{
    QVERIFY(manager->sendCommand("refused %s", "100%n %1") != 0);
    const QStringList texts = logged();
    QCOMPARE(texts.size(), 1);
    QVERIFY2(texts.constFirst().contains(QStringLiteral("\"refused 100%n %1\"")), qPrintable(texts.constFirst()));
    QCOMPARE(entries->at(0).at(0).value<LogEntry>().level, 1);
}

void HostIOManagerTest::failsAndLogsWithoutABackend()
{
    manager->setBackend(nullptr);
    std::array<char, 200> text{'t', '\0'};
    qint32 whole = 1;
    double number = 2.0;
    bool flag = true;
    QVERIFY(manager->requestString(text.data(), "a") != 0);
    QVERIFY(manager->requestInt(&whole, "b") != 0);
    QVERIFY(manager->requestDouble(&number, "c") != 0);
    QVERIFY(manager->requestBool(&flag, "d") != 0);
    QVERIFY(manager->requestDoubles(&number, 1, "e") != 0);
    QVERIFY(manager->sendCommand("f") != 0);
    QCOMPARE(text[0], 't');
    QCOMPARE(whole, 1);
    QCOMPARE(number, 2.0);
    QVERIFY(flag);
    QCOMPARE(logged().size(), 6);
    QVERIFY(backend->asked().isEmpty());
}

void HostIOManagerTest::failsAndLogsWhenTheBackendHasNoAnswer()
{
    std::array<char, 200> text{};
    qint32 whole = 1;
    double number = 2.0;
    bool flag = true;
    QVERIFY(manager->requestString(text.data(), "a") != 0);
    QVERIFY(manager->requestInt(&whole, "b") != 0);
    QVERIFY(manager->requestDouble(&number, "c") != 0);
    QVERIFY(manager->requestBool(&flag, "d") != 0);
    QVERIFY(manager->requestDoubles(&number, 1, "e %d", 5) != 0);
    const QStringList texts = logged();
    QCOMPARE(texts.size(), 5);
    QVERIFY2(texts.constLast().contains(QStringLiteral("\"e 5\"")), qPrintable(texts.constLast()));
}

void HostIOManagerTest::refusesOutputForAStrangersRequester()
{
    FakeRequester requester;
    manager->startOutput("3d", &requester);
    QCOMPARE(logged().size(), 1);
    QCOMPARE(manager->subscriptions().deliver({"3d", "3d"}).sent, 0U);
    manager->registerRequester(&requester);
    manager->startOutput("3d", &requester);
    QCOMPARE(manager->subscriptions().deliver({"3d", "3d"}).sent, 1U);
    manager->unregisterRequester(&requester);
    manager->stopOutput("3d", &requester); // as a panel does that is hidden while it is deleted
    QCOMPARE(logged().size(), 1);
}

void HostIOManagerTest::takesLogTextsAsLatin1()
{
    manager->logMessage("standard", "VORNAK4", 1, "Error: Unable to find K\xF6rper <b>%1</b>");
    manager->logMessage(nullptr, nullptr, 0, nullptr);
    QTRY_COMPARE(entries->size(), 2);
    const auto entry = entries->at(0).at(0).value<LogEntry>();
    QCOMPARE(entry.text, QStringLiteral("Error: Unable to find K\u00F6rper <b>%1</b>"));
    QCOMPARE(entry.category, QStringLiteral("standard"));
    QCOMPARE(entry.sender, QStringLiteral("VORNAK4"));
    QCOMPARE(entry.level, 1);
    QVERIFY(entry.time.isValid());
}

void HostIOManagerTest::tellsRequestersOfTheConfiguration()
{
    FakeRequester first;
    FakeRequester second;
    manager->registerRequester(&first);
    manager->registerRequester(&first);
    manager->registerRequester(&second);
    manager->announceConfiguration();
    manager->announceDisconnect();
    QCOMPARE(first.configurations, 1);
    QCOMPARE(first.clears, 1);
    QCOMPARE(second.configurations, 1);
    QCOMPARE(second.clears, 1);
}

void HostIOManagerTest::skipsARequesterThatAnotherTookAlong()
{
    FakeRequester first;
    FakeRequester second;
    first.onConfiguration = [&] { manager->unregisterRequester(&second); };
    first.onClear = [&] { manager->unregisterRequester(&second); };
    manager->registerRequester(&first);
    manager->registerRequester(&second);
    manager->announceConfiguration();
    QCOMPARE(second.configurations, 0);
    manager->registerRequester(&second);
    manager->announceDisconnect();
    QCOMPARE(second.clears, 0);
    QCOMPARE(first.clears, 1);
}

QTEST_GUILESS_MAIN(HostIOManagerTest)
#include "tst_hostiomanager.moc"
