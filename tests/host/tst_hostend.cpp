// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/logdock.h"
#include "host/windowpicture.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QMenu>
#include <QRegularExpression>
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
    void accountsForModulesThatDoNotCount();
    void sendsLinesUntilTheModulesAreWarned();
    void endsAnOpenDialogBeforeTheModulesGo();
    void runsWithoutAnyModule();
    void leavesTheLayoutAloneForAPicture();
    void countsTheTimeOfAPictureFromTheStartOfTheProgram();
    void takesThePictureWithFloatingDocks();
    void endsWhereverItIsToldTo_data();
    void endsWhereverItIsToldTo();
    void endsWithOneWithoutAnyModule();
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
    const quint64 ignored = host->backendSession().counts().ignored; // a line after the module's warning
    QVERIFY(ignored <= sent / 10);
    const quint64 dropped = (sent - ignored) / 10; // as the module does
    QCOMPARE(summary,
             QStringLiteral("lines: %1 sent, %2 stored, %3 dropped while the display was drawing, "
                            "0 refused, %4 ignored")
                 .arg(sent)
                 .arg(sent - ignored - dropped)
                 .arg(dropped)
                 .arg(ignored));
    QCOMPARE(menuTexts("viewMenu"),
             (QStringList{QStringLiteral("Stream &Health"), QStringLiteral("Free&ze"),
                          QStringLiteral("&Command Journal"), QStringLiteral("&Bodies"), QStringLiteral("&Log")}));
    QVERIFY(host->shutDown().isEmpty());
}

void HostEndTest::accountsForModulesThatDoNotCount()
{
    start(testModule() + QStringList{QStringLiteral(TEST_MODULES "/listeningmodule")});
    QTRY_VERIFY(host->backendSession().counts().sent > 40);
    const QString summary = host->shutDown();
    const LineTotals counts = host->backendSession().counts();
    static const QRegularExpression expected(QStringLiteral(
        "\\Alines: (\\d+) sent, (\\d+) stored, (\\d+) dropped while the display was drawing, (\\d+) refused, "
        "(\\d+) ignored, (\\d+) to modules that do not count\\z"));
    const QRegularExpressionMatch match = expected.match(summary);
    QVERIFY2(match.hasMatch(), qPrintable(summary));
    const auto number = [&match](int index) { return match.captured(index).toULongLong(); };
    QCOMPARE(number(1), counts.sent);
    QCOMPARE(number(2) + number(3) + number(4) + number(5) + number(6), counts.sent);
    QVERIFY(number(4) > 0); // the listening module refuses each third line
    QVERIFY(number(6) / 2 <= number(4) + 1 && number(4) <= number(6) / 2 + 1);
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
    QTRY_VERIFY(host->backendSession().counts().sent > 0); // nobody wants them
    const QString summary = host->shutDown();
    QCOMPARE(summary,
             QStringLiteral("lines: %1 sent, 0 refused, %1 ignored").arg(host->backendSession().counts().sent));
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
    options.saveAfter = std::chrono::milliseconds(0);
    start(testModule(), options);
    QVERIFY(host->window().findChild<LogDock *>()->isVisible()); // the same picture on every machine
    QCOMPARE(host->run(), 0);
    QVERIFY(QFile::exists(options.screenshotFile));
    QCOMPARE(QSettings().value(key), saved);
}

void HostEndTest::countsTheTimeOfAPictureFromTheStartOfTheProgram()
{
    HostOptions options;
    options.screenshotFile = home->filePath(QStringLiteral("picture.png"));
    options.saveAfter = std::chrono::hours(1);
    options.start -= std::chrono::hours(1);
    start(testModule(), options);
    QTimer::singleShot(30000, &host->window(), &QCoreApplication::quit);
    QCOMPARE(host->run(), 0);
    QVERIFY(QFile::exists(options.screenshotFile));
}

void HostEndTest::takesThePictureWithFloatingDocks()
{
    QCOMPARE(pictureOf(host->window()).toImage(), host->window().grab().toImage());
    auto *log = host->window().findChild<LogDock *>();
    QVERIFY(log);
    host->window().move(100, 100);
    log->setFloating(true);
    log->resize(300, 200);
    log->move(20, 60);
    QTRY_COMPARE(log->pos(), QPoint(20, 60));
    const QRect window(host->window().mapToGlobal(QPoint()), host->window().size());
    const QRect dock(log->mapToGlobal(QPoint()), log->size());
    const QImage picture = pictureOf(host->window()).toImage();
    QCOMPARE(picture.size(), (window | dock).size());
    QCOMPARE(picture.copy(QRect(QPoint(), dock.size())), log->grab().toImage());
    QCOMPARE(picture.copy(QRect(window.bottomRight() - dock.topLeft() - QPoint(200, 200), QSize(200, 200))),
             host->window().grab().toImage().copy(QRect(window.width() - 201, window.height() - 201, 200, 200)));
    log->hide();
    QCOMPARE(pictureOf(host->window()).size(), window.size());
}

void HostEndTest::endsWhereverItIsToldTo_data()
{
    QTest::addColumn<int>("place");
    QTest::newRow("before it runs") << 0;
    QTest::newRow("while it runs") << 1;
    QTest::newRow("in a dialog") << 2;
    QTest::newRow("in a menu") << 3;
}

void HostEndTest::endsWhereverItIsToldTo()
{
    QFETCH(int, place);
    takeCalls();
    QDialog dialog(&host->window());
    auto *menu = host->window().findChild<QMenu *>(QStringLiteral("fileMenu"));
    if (place == 0)
        host->end();
    else
        QTimer::singleShot(50, &host->window(), [this] { host->end(); });
    if (place == 2)
        QTimer::singleShot(0, &dialog, &QDialog::exec);
    if (place == 3)
        QTimer::singleShot(0, menu, [menu] { menu->exec(); });
    QCOMPARE(host->run(), 0);
    QCOMPARE(
        takeCalls(),
        (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"), QStringLiteral("destroyed")}));
}

void HostEndTest::endsWithOneWithoutAnyModule()
{
    QTemporaryDir empty;
    start({empty.path()});
    QTimer::singleShot(0, &host->window(), [this] { host->end(); });
    QCOMPARE(host->run(), 1);
}

QTEST_MAIN(HostEndTest)
#include "tst_hostend.moc"
