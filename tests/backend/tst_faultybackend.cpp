// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/faultybackend.h"
#include "backend/simulatedbackend.h"
#include "tests/backend/model.h"

#include <QtTest>

using namespace backend;

using namespace std::chrono_literals;

class TestFaultyBackend : public QObject {
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void matches_data();
    void matches();
    void failingCommandsChangeNothing();
    void failsAtItsRate_data();
    void failsAtItsRate();
    void failsAlikeWithTheSameSeed();
    void rulesDoNotInfluenceEachOther_data();
    void rulesDoNotInfluenceEachOther();
    void waitsBeforeAnswers();
    void passesTheRestOn();
};

namespace {

std::unique_ptr<SimulatedBackend> simulated()
{
    return std::make_unique<SimulatedBackend>(everything());
}

/// Which of a thousand queries of two kinds fail, where each rule matches one kind or both.
QVector<bool> failures(const QVector<FaultRule> &rules, quint32 seed)
{
    FaultyBackend backend(simulated(), rules, 0ms, seed);
    QVector<bool> failed;
    for (int i = 0; i < 1000; ++i)
        failed.append(!backend.request(i % 3 == 0 ? "body desc standard b01" : "standard number_of_bodies"));
    return failed;
}

QVector<bool> failures(double rate, quint32 seed)
{
    return failures({{QStringLiteral("*"), rate}}, seed);
}

} // namespace

void TestFaultyBackend::parses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<double>("rate");
    QTest::newRow("a pattern alone fails always") << "body desc *"
                                                  << "body desc *" << 1.0;
    QTest::newRow("a rate may follow") << "body desc *=0.25"
                                       << "body desc *" << 0.25;
    QTest::newRow("a rate of 0 never fails") << "*=0"
                                             << "*" << 0.0;
    QTest::newRow("only the last equals sign divides") << "a=b=1"
                                                       << "a=b" << 1.0;
    QTest::newRow("a rate above 1 is refused") << "*=1.5"
                                               << "" << -1.0;
    QTest::newRow("a rate below 0 is refused") << "*=-0.1"
                                               << "" << -1.0;
    QTest::newRow("an undefined rate is refused") << "*=nan"
                                                  << "" << -1.0;
    QTest::newRow("a rate with a decimal comma is refused") << "*=0,5"
                                                            << "" << -1.0;
    QTest::newRow("a rate that is missing is refused") << "*="
                                                       << "" << -1.0;
    QTest::newRow("an empty pattern is refused") << "=0.5"
                                                 << "" << -1.0;
    QTest::newRow("an empty text is refused") << ""
                                              << "" << -1.0;
}

void TestFaultyBackend::parses()
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QFETCH(double, rate);
    const FaultRule rule = parseFaultRule(text).value_or(FaultRule{QString(), -1.0});
    QCOMPARE(rule.pattern, pattern);
    QCOMPARE(rule.rate, rate);
}

void TestFaultyBackend::matches_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("fails");
    QTest::newRow("the very text") << "body desc standard b01" << true;
    QTest::newRow("any number") << "body desc standard *" << true;
    QTest::newRow("a part between stars") << "*desc*" << true;
    QTest::newRow("one unknown character") << "body desc standard b0?" << true;
    QTest::newRow("a star stands for nothing, too") << "body desc standard b01*" << true;
    QTest::newRow("the beginning alone does not fit") << "body desc" << false;
    QTest::newRow("the end alone does not fit") << "b01" << false;
    QTest::newRow("a question mark needs a character") << "body desc standard b01?" << false;
    QTest::newRow("dots and brackets mean themselves") << "body.desc.standard.b[0]1" << false;
    QTest::newRow("case counts") << "BODY desc *" << false;
}

void TestFaultyBackend::matches()
{
    QFETCH(QString, pattern);
    QFETCH(bool, fails);
    FaultyBackend backend(simulated(), {{pattern, 1.0}}, 0ms);
    QCOMPARE(!backend.request("body desc standard b01"), fails);
}

void TestFaultyBackend::failingCommandsChangeNothing()
{
    FaultyBackend backend(simulated(), {{QStringLiteral("* 6d yes"), 1.0}}, 0ms);
    QVERIFY(!backend.command("output active chmon 6d yes"));
    QCOMPARE(backend.request("output active chmon 6d").value_or("(failure)"), QByteArray("no"));
    QVERIFY(backend.command("output active chmon 6di yes"));
    QCOMPARE(backend.request("output active chmon 6di").value_or("(failure)"), QByteArray("yes"));
}

void TestFaultyBackend::failsAtItsRate_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("never") << 0.0 << 0 << 0;
    QTest::newRow("now and then") << 0.1 << 60 << 140;
    QTest::newRow("every other time") << 0.5 << 440 << 560;
    QTest::newRow("always") << 1.0 << 1000 << 1000;
}

void TestFaultyBackend::failsAtItsRate()
{
    QFETCH(double, rate);
    QFETCH(int, least);
    QFETCH(int, most);
    const int failed = failures(rate, 7).count(true);
    QVERIFY2(failed >= least && failed <= most, qPrintable(QString::number(failed)));
}

void TestFaultyBackend::failsAlikeWithTheSameSeed()
{
    QCOMPARE(failures(0.5, 7), failures(0.5, 7));
    QVERIFY(failures(0.5, 7) != failures(0.5, 8));
}

void TestFaultyBackend::rulesDoNotInfluenceEachOther_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    const auto row = [](const char *name, const char *first, const char *second) {
        QTest::newRow(name) << first << second;
    };
    row("rules for different texts", "body *", "standard *");
    row("the first takes the texts of the second, too", "*", "standard *");
    row("the second takes the texts of the first, too", "body *", "*");
    row("both take all texts", "*", "*?");
}

void TestFaultyBackend::rulesDoNotInfluenceEachOther()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    const FaultRule never{QStringLiteral("no such text"), 1.0};
    const QVector<bool> ofFirst = failures({{first, 0.5}, never}, 7);
    const QVector<bool> ofSecond = failures({never, {second, 0.5}}, 7);
    QVERIFY(ofFirst != ofSecond);
    QVector<bool> ofEither;
    for (int i = 0; i < ofFirst.size(); ++i)
        ofEither.append(ofFirst[i] || ofSecond[i]);
    QCOMPARE(failures({{first, 0.5}, {second, 0.5}}, 7), ofEither);
}

void TestFaultyBackend::waitsBeforeAnswers()
{
    QVector<qint64> waits;
    FaultyBackend backend(simulated(), {{QStringLiteral("*b02"), 1.0}}, 250ms, 1,
                          [&waits](std::chrono::milliseconds time) { waits.append(time.count()); });
    QVERIFY(backend.request("body desc standard b01"));
    QVERIFY(!backend.request("body desc standard b02"));
    QVERIFY(backend.command("output active chmon 6d yes"));
    const auto now = LineStream::Clock::now();
    QVERIFY(!backend.open(now)->take(now + 30s).isEmpty());
    QCOMPARE(waits, QVector<qint64>({250, 250, 250})); // lines are not waited for

    waits.clear();
    FaultyBackend prompt(simulated(), {}, 0ms, 1,
                         [&waits](std::chrono::milliseconds time) { waits.append(time.count()); });
    QVERIFY(prompt.request("body desc standard b01"));
    QVERIFY(waits.isEmpty());

    QElapsedTimer timer;
    timer.start();
    FaultyBackend late(simulated(), {}, 20ms);
    QVERIFY(late.request("body desc standard b01"));
    QVERIFY(timer.elapsed() >= 20);
}

void TestFaultyBackend::passesTheRestOn()
{
    FaultyBackend backend(simulated(), {}, 0ms);
    const auto plain = simulated();
    QCOMPARE(backend.name(), plain->name());
    QCOMPARE(backend.version().major, 2);
    const std::unique_ptr<LineStream> stream = backend.open(LineStream::Clock::now());
    const QVector<ReceivedLine> lines = stream->take(LineStream::Clock::now() + 30s);
    QVERIFY(!lines.isEmpty());
    QCOMPARE(lines.first().line.text, plain->linesAt(lines.first().time).first().text);
    QCOMPARE(lines.first().line.tag, plain->linesAt(lines.first().time).first().tag);
}

QTEST_GUILESS_MAIN(TestFaultyBackend)
#include "tst_faultybackend.moc"
