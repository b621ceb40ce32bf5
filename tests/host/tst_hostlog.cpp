// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/hostlog.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QVector>

#include <numeric>
#include <thread>
#include <vector>

using namespace host;

Q_DECLARE_METATYPE(LogEntry)

class HostLogTest : public QObject {
    Q_OBJECT

private slots:
    void flushesOnItsOwnThreadInOrder();
    void dropsTheOldestWhenTheyComeTooFast();
};

void HostLogTest::flushesOnItsOwnThreadInOrder()
{
    constexpr int threads = 4;
    constexpr int entriesOfEach = 50;
    HostLog log;
    QVector<QVector<int>> seen(threads);
    int wrongThread = 0;
    connect(&log, &HostLog::entryAdded, this, [&](const LogEntry &entry) {
        seen[entry.level].append(entry.text.toInt());
        wrongThread += QThread::currentThread() == thread() ? 0 : 1;
    });
    std::vector<std::thread> writers;
    for (int writer = 0; writer < threads; ++writer) {
        writers.emplace_back([&log, writer] {
            for (int entry = 0; entry < entriesOfEach; ++entry)
                log.add(writer, QStringLiteral("test"), QStringLiteral("writer"), QString::number(entry));
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    QVector<int> expected(entriesOfEach);
    std::iota(expected.begin(), expected.end(), 0);
    for (int writer = 0; writer < threads; ++writer)
        QTRY_COMPARE(seen.at(writer), expected);
    QCOMPARE(wrongThread, 0);
}

void HostLogTest::dropsTheOldestWhenTheyComeTooFast()
{
    HostLog log(3);
    QStringList texts;
    connect(&log, &HostLog::entryAdded, this, [&](const LogEntry &entry) { texts << entry.text; });
    for (int entry = 0; entry < 10; ++entry)
        log.info(QString::number(entry));
    QTRY_COMPARE(texts.size(), 4);
    QVERIFY2(texts.takeFirst().startsWith(QStringLiteral("7 entries")), "the number of lost entries comes first");
    QCOMPARE(texts, (QStringList{QStringLiteral("7"), QStringLiteral("8"), QStringLiteral("9")}));
    log.warning(QStringLiteral("later"));
    QTRY_COMPARE(texts.size(), 4);
    QCOMPARE(texts.constLast(), QStringLiteral("later"));
}

QTEST_GUILESS_MAIN(HostLogTest)
#include "tst_hostlog.moc"
