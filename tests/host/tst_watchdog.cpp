// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/slowexchanges.h"
#include "host/watchdog.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace backend;
using namespace host;

using namespace std::chrono_literals;

namespace {

using Clock = Exchange::Clock;

const QByteArray name("body desc standard b07");

Exchange exchangeAt(std::chrono::milliseconds start, const QByteArray &text = name, bool onOwnThread = true)
{
    return {1, text, Clock::time_point(start), onOwnThread};
}

/// A watchdog over exchanges by a clock that stands where it is put.
struct Kennel {
    Clock::time_point time{};
    ExchangeTimes times{{}, [this] { return time; }};
    QStringList reports;
    Watchdog watchdog{times, 1s, [this](const Exchange &exchange, std::chrono::nanoseconds duration) {
                          reports << QStringLiteral("%1: %2").arg(QString::fromUtf8(exchange.text)).arg(duration / 1ms);
                      }};

    /// Looks at \a milliseconds. Returns when the watchdog wants to look again [ms].
    int lookAt(int milliseconds)
    {
        return static_cast<int>(
            watchdog.look(Clock::time_point(std::chrono::milliseconds(milliseconds))).time_since_epoch() / 1ms);
    }
};

} // namespace

class WatchdogTest : public QObject {
    Q_OBJECT

private slots:
    void saysHowLongItTook_data();
    void saysHowLongItTook();
    void saysEachTextOnceInTenSeconds();
    void saysWhatHangs_data();
    void saysWhatHangs();
    void looksWhenAnExchangeIsDue();
    void reportsEachExchangeOnce();
    void reportsWhileTheExchangeLasts();
    void endsAtOnceWhileAnExchangeLasts();
    void endsWithoutHavingStarted();
    void survivesAReportThatThrows();
};

void WatchdogTest::saysHowLongItTook_data()
{
    QTest::addColumn<int>("duration");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("entry"); // empty: none
    const auto row = [](const char *sentence, int duration, const char *text, const char *entry) {
        QTest::newRow(sentence) << duration << QByteArray(text) << QString::fromUtf8(entry);
    };
    row("100 ms are no reason", 100, "body desc standard b07", "");
    row("more are", 101, "body desc standard b07",
        "The backend took 101 ms to answer \"body desc standard b07\"; the window stood still meanwhile.");
    row("thousands are set apart", 1240, "body desc standard b07",
        "The backend took 1,240 ms to answer \"body desc standard b07\"; the window stood still meanwhile.");
    row("a percent sign is no place for a number", 200, "body %1 %2",
        "The backend took 200 ms to answer \"body %1 %2\"; the window stood still meanwhile.");
    row("an entry is one line", 200, "body\n<b>x</b>",
        "The backend took 200 ms to answer \"body\\n<b>x</b>\"; the window stood still meanwhile.");
}

void WatchdogTest::saysHowLongItTook()
{
    QFETCH(const int, duration);
    QFETCH(const QByteArray, text);
    SlowExchanges slow;
    const auto entry = slow.entryFor(exchangeAt(0ms, text), std::chrono::milliseconds(duration));
    QTEST(entry.value_or(QString()), "entry");
}

void WatchdogTest::saysEachTextOnceInTenSeconds()
{
    SlowExchanges slow;
    QVERIFY(slow.entryFor(exchangeAt(0ms), 200ms)); // ends at 0.2 s
    QVERIFY(slow.entryFor(exchangeAt(300ms, "another"), 200ms));
    QVERIFY(!slow.entryFor(exchangeAt(500ms), 200ms));
    QVERIFY(!slow.entryFor(exchangeAt(9900ms), 299ms));
    QVERIFY(slow.entryFor(exchangeAt(9900ms), 300ms));
    QVERIFY(!slow.entryFor(exchangeAt(10200ms), 200ms));
    QVERIFY(slow.entryFor(exchangeAt(20000ms), 200ms));
}

void WatchdogTest::saysWhatHangs_data()
{
    QTest::addColumn<bool>("onOwnThread");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<QString>("result");
    QTest::newRow("the window stands still")
        << true
        << QStringLiteral("the backend has not answered \"body desc standard b07\" for 1.0 s; the window stands still")
        << QStringLiteral("The backend took 1,003 ms to answer \"body desc standard b07\"; the window stood still "
                          "meanwhile.");
    QTest::newRow("but not for a command of another thread")
        << false << QStringLiteral("the backend has not answered \"body desc standard b07\" for 1.0 s")
        << QStringLiteral("The backend took 1,003 ms to answer \"body desc standard b07\".");
}

void WatchdogTest::saysWhatHangs()
{
    QFETCH(const bool, onOwnThread);
    const Exchange exchange = exchangeAt(0ms, name, onOwnThread);
    QTEST(SlowExchanges::warningFor(exchange, 1003ms), "warning");
    QTEST(SlowExchanges::resultFor(exchange, 1003ms), "result");
}

void WatchdogTest::looksWhenAnExchangeIsDue()
{
    Kennel kennel;
    QCOMPARE(kennel.lookAt(100), 350); // each quarter of the limit
    kennel.time += 200ms;
    const quint64 number = kennel.times.begin(name);
    QCOMPARE(kennel.lookAt(350), 600);
    QCOMPARE(kennel.lookAt(1100), 1200);
    QVERIFY(kennel.reports.isEmpty());
    QCOMPARE(kennel.lookAt(1200), 1450);
    QCOMPARE(kennel.reports, QStringList{QStringLiteral("body desc standard b07: 1000")});
    kennel.times.end(number);
}

void WatchdogTest::reportsEachExchangeOnce()
{
    Kennel kennel;
    const quint64 first = kennel.times.begin("first");
    kennel.time += 500ms;
    const quint64 second = kennel.times.begin("second");
    kennel.lookAt(1100);
    kennel.lookAt(1200);
    QCOMPARE(kennel.reports, QStringList{QStringLiteral("first: 1100")});
    kennel.times.end(first);
    kennel.lookAt(1500);
    kennel.times.end(second);
    kennel.lookAt(5000);
    QCOMPARE(kennel.reports, (QStringList{QStringLiteral("first: 1100"), QStringLiteral("second: 1000")}));
    kennel.time += 5s;
    kennel.times.end(kennel.times.begin("first"));
    kennel.lookAt(9000);
    QCOMPARE(kennel.reports.size(), 2); // it had ended by then
}

void WatchdogTest::reportsWhileTheExchangeLasts()
{
    ExchangeTimes times;
    std::atomic<int> reports{0};
    std::atomic<bool> onOtherThread{false};
    const auto own = std::this_thread::get_id();
    Watchdog watchdog(times, 50ms, [&](const Exchange &exchange, std::chrono::nanoseconds duration) {
        onOtherThread = std::this_thread::get_id() != own && exchange.text == name && duration >= 50ms;
        ++reports;
    });
    watchdog.start();
    watchdog.start(); // runs already
    const quint64 number = times.begin(name);
    const auto start = Clock::now();
    while (reports == 0 && Clock::now() - start < 10s)
        std::this_thread::yield(); // as one that waits for a backend does: no event loop runs
    QCOMPARE(reports.load(), 1);
    QVERIFY(onOtherThread);
    times.end(number);
}

void WatchdogTest::endsAtOnceWhileAnExchangeLasts()
{
    ExchangeTimes times;
    times.begin(name);
    const auto start = Clock::now();
    {
        Watchdog watchdog(times, 1h, [](const Exchange &, std::chrono::nanoseconds) {});
        watchdog.start();
        std::this_thread::sleep_for(5ms); // so that it may have fallen asleep for a quarter of an hour
    }
    QVERIFY(Clock::now() - start < 60s);
}

void WatchdogTest::endsWithoutHavingStarted()
{
    const ExchangeTimes times;
    const Watchdog watchdog(times, 1s, {});
    QCOMPARE(times.count(), quint64(0));
}

void WatchdogTest::survivesAReportThatThrows()
{
    ExchangeTimes times;
    std::atomic<int> reports{0};
    Watchdog watchdog(times, 1ms, [&](const Exchange &, std::chrono::nanoseconds) {
        ++reports;
        throw std::bad_alloc();
    });
    times.begin(name);
    watchdog.start();
    const auto start = Clock::now();
    while (reports == 0 && Clock::now() - start < 10s)
        std::this_thread::yield();
    QCOMPARE(reports.load(), 1);
}

QTEST_GUILESS_MAIN(WatchdogTest)
#include "tst_watchdog.moc"
