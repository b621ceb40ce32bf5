// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/host/programrun.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

/// What standard error tells of a source that stops, goes on and ends, as a script sees it.
class TrackhostLivenessTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aStoppedSourceIsToldInTime();
    void aSourceThatGoesOnIsLiveAgain();
    void anEndedSourceIsTold();

private:
    /// Waits until standard error holds \a text; returns whether it does.
    bool awaitError(const QString &text);
    /// The source alone gets a signal: it stops in the middle of its work, as a hung tracker does.
    void send(int signal) { QVERIFY(::kill(static_cast<pid_t>(source.processId()), signal) == 0); }

    QProcess source; // fifty lines a second
    QProcess host;
    QString errors;
};

void TrackhostLivenessTest::init()
{
    errors.clear();
    source.setStandardOutputProcess(&host);
    source.start(QStringLiteral("/bin/sh"),
                 {QStringLiteral("-c"), QStringLiteral("while :; do echo '6d 0'; sleep 0.02; done")});
    host.start(QStringLiteral(TRACKHOST),
               {QStringLiteral("--stdin"), QStringLiteral("--modules"), QStringLiteral(TEST_MODULES "/testmodule"),
                QStringLiteral("--duration"), QStringLiteral("60000")});
    QVERIFY(source.waitForStarted());
    QVERIFY(host.waitForStarted());
    QTest::qWait(2000); // some lines have been taken
}

void TrackhostLivenessTest::cleanup()
{
    source.kill();
    source.waitForFinished();
    host.terminate();
    QVERIFY(host.waitForFinished());
}

bool TrackhostLivenessTest::awaitError(const QString &text)
{
    QElapsedTimer clock;
    clock.start();
    while (!errors.contains(text) && clock.elapsed() < 20000) {
        QTest::qWait(20);
        errors += QString::fromUtf8(host.readAllStandardError());
    }
    return errors.contains(text);
}

void TrackhostLivenessTest::aStoppedSourceIsToldInTime()
{
    qint64 best = 20000; // of three, since the machine may be busy
    for (int attempt = 0; attempt < 3 && best > 1500; ++attempt) {
        errors.clear();
        send(SIGSTOP);
        QElapsedTimer sinceTheStop;
        sinceTheStop.start();
        QVERIFY2(awaitError(QStringLiteral("trackhost: warning: no line for 1.")), qPrintable(errors));
        best = qMin(best, sinceTheStop.elapsed());
        QVERIFY(errors.contains(QStringLiteral(" s: the data are frozen\n")));
        send(SIGCONT);
        QVERIFY(awaitError(QStringLiteral("trackhost: warning: live again after ")));
    }
    QVERIFY2(best <= 1500, qPrintable(QString::number(best)));
}

void TrackhostLivenessTest::aSourceThatGoesOnIsLiveAgain()
{
    send(SIGSTOP);
    QVERIFY(awaitError(QStringLiteral("the data are frozen")));
    QTest::qWait(1500); // a silence is told once, however long it lasts
    send(SIGCONT);
    QVERIFY(awaitError(QStringLiteral("live again after ")));
    const int end = errors.indexOf(QStringLiteral("live again after "));
    const double silence = errors.mid(end + 17).section(QLatin1Char(' '), 0, 0).toDouble();
    QVERIFY2(silence >= 2.4, qPrintable(errors));
    QCOMPARE(errors.count(QStringLiteral("the data are frozen")), 1);
}

void TrackhostLivenessTest::anEndedSourceIsTold()
{
    source.kill();
    QVERIFY2(awaitError(QStringLiteral("trackhost: warning: the source has ended\n")), qPrintable(errors));
    QTest::qWait(1500);
    errors += QString::fromUtf8(host.readAllStandardError());
    QCOMPARE(errors.count(QStringLiteral("the source has ended")), 1);
    QVERIFY(!errors.contains(QStringLiteral("frozen")));
}

QTEST_GUILESS_MAIN(TrackhostLivenessTest)
#include "tst_trackhostliveness.moc"
