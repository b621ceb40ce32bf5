// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logdock.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QSettings>
#include <QTest>
#include <QTimer>

using namespace host;

/// How a run of the program ends, and what is left of it.
class HostEndTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

    void quitsByMenu();
    void keepsTheLayout();
    void shutsDownInOrderAndAccountsForTheLines();
    void sendsLinesUntilTheModulesAreWarned();
    void endsAnOpenDialogBeforeTheModulesGo();
    void runsWithoutAnyModule();
    void leavesTheLayoutAloneForAPicture();
};

void HostEndTest::quitsByMenu()
{
    takeCalls();
    QTimer::singleShot(0, action("quitAction"), &QAction::trigger);
    QCOMPARE(host->run(), 0);
    QVERIFY(!host->window().isVisible());
    QCOMPARE(
        takeCalls(),
        (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
}

void HostEndTest::keepsTheLayout()
{
    host->window().resize(900, 500);
    host->window().findChild<LogDock *>()->hide();
    QTimer::singleShot(0, action("quitAction"), &QAction::trigger);
    QCOMPARE(host->run(), 0);
    start(testModule());
    QVERIFY(!host->window().findChild<LogDock *>()->isVisible());
    QCOMPARE(host->window().size(), QSize(900, 500));
}

void HostEndTest::shutsDownInOrderAndAccountsForTheLines()
{
    QTRY_VERIFY(host->backendSession().counts().sent > 20);
    takeCalls();
    const QString summary = host->shutDown();
    QCOMPARE(
        takeCalls(),
        (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
    const quint64 sent = host->backendSession().counts().sent;
    const quint64 dropped = sent / 10; // as the module does
    QCOMPARE(summary,
             QStringLiteral("lines: %1 sent, %2 stored, %3 dropped while the display was drawing, "
                            "0 refused, 0 ignored")
                 .arg(sent)
                 .arg(sent - dropped)
                 .arg(dropped));
    QCOMPARE(menuTexts("viewMenu"), (QStringList{QStringLiteral("&Command Journal"), QStringLiteral("&Log")}));
    QVERIFY(host->shutDown().isEmpty());
}

void HostEndTest::sendsLinesUntilTheModulesAreWarned()
{
    auto *panel = host->window().findChild<QWidget *>(QStringLiteral("countingPanel"));
    QVERIFY(panel);
    QTRY_VERIFY(host->backendSession().counts().sent > 0);
    takeCalls();
    QVERIFY(panel->setProperty("awaitingLine", true));
    host->shutDown();
    QCOMPARE(takeCalls(),
             (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("a line came"),
                          QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
}

void HostEndTest::endsAnOpenDialogBeforeTheModulesGo()
{
    host.reset();
    takeCalls();
    HostOptions options;
    options.duration = std::chrono::milliseconds(100);
    start(testModule(), options);
    QStringList callsAtItsEnd;
    QTimer::singleShot(0, &host->window(), [&] {
        QDialog dialog(&host->window());
        dialog.exec();
        callsAtItsEnd = takeCalls();
    });
    QCOMPARE(host->run(), 0);
    QVERIFY(callsAtItsEnd.contains(QStringLiteral("configurationChanged")));
    QVERIFY(!callsAtItsEnd.contains(QStringLiteral("aboutToUnload")));
    QCOMPARE(
        takeCalls(),
        (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
}

void HostEndTest::runsWithoutAnyModule()
{
    QTemporaryDir empty;
    start({empty.path()});
    QTRY_VERIFY(logText().contains(empty.path()));
    QVERIFY(host->window().isVisible());
    QCOMPARE(host->shutDown(), QStringLiteral("lines: 0 sent, 0 refused"));
}

void HostEndTest::leavesTheLayoutAloneForAPicture()
{
    const QString key = QStringLiteral("window/state");
    host->window().findChild<LogDock *>()->hide();
    host->window().saveLayout();
    const QVariant saved = QSettings().value(key);
    QVERIFY(saved.isValid());
    HostOptions options;
    options.screenshotFile = home->filePath(QStringLiteral("picture.png"));
    options.screenshotDelay = std::chrono::milliseconds(0);
    start(testModule(), options);
    QVERIFY(host->window().findChild<LogDock *>()->isVisible()); // the same picture on every machine
    QCOMPARE(host->run(), 0);
    QVERIFY(QFile::exists(options.screenshotFile));
    QCOMPARE(QSettings().value(key), saved);
}

QTEST_MAIN(HostEndTest)
#include "tst_hostend.moc"
