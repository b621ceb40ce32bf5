// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "host/backendmenu.h"
#include "host/logdock.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWhatsThis>

using namespace backend;
using namespace host;

/// What the program shows and does while it runs.
class HostTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

    void showsTheModuleInMenusAndDocks();
    void keepsTheLogLastInTheViewMenu();
    void givesModulesABackendBeforeTheyMakeTheirEntries();
    void disconnectsAndConnectsByMenu();
    void choosesAScenarioByMenu();
    void keepsTheBackendWhenAChoiceFails();
    void showsLogEntriesAsPlainText();
    void keepsTheLogBounded();
    void showsRatesAndUnreadableLines();
    void countsUnreadableLines();
    void tellsAboutItself();
    void entersAndLeavesWhatsThisMode();
};

void HostTest::showsTheModuleInMenusAndDocks()
{
    QStringList titles;
    const QList<QAction *> menus = host->window().menuBar()->actions();
    for (const QAction *menu : menus)
        titles << menu->text();
    QCOMPARE(titles,
             (QStringList{QStringLiteral("&File"), QStringLiteral("&View"), QStringLiteral("&Backend"),
                          QStringLiteral("&Tools"), QStringLiteral("&Help")}));
    QCOMPARE(menuTexts("viewMenu"),
             (QStringList{QStringLiteral("First"), QStringLiteral("Second"), QStringLiteral("Stream &Health"),
                          QStringLiteral("Free&ze"), QStringLiteral("&Command Journal"), QStringLiteral("&Bodies"),
                          QStringLiteral("&Log")}));
    QCOMPARE(menuTexts("fileMenu"),
             (QStringList{QStringLiteral("&Open Recording…"), QStringLiteral("Open &Recent"), QString(),
                          QStringLiteral("Save &Tables…"), QStringLiteral("&Quit")}));
    QCOMPARE(menuTexts("helpMenu").size(), 4);
    QVERIFY(action("whatsThisAction")->isEnabled());

    QDockWidget *dock = nullptr;
    const QList<QDockWidget *> docks = host->window().findChildren<QDockWidget *>();
    for (QDockWidget *each : docks) {
        QVERIFY(!each->objectName().isEmpty());
        if (each->windowTitle() == QLatin1String("First"))
            dock = each;
    }
    QVERIFY(dock);
    QCOMPARE(host->window().dockWidgetArea(dock), Qt::RightDockWidgetArea);
    QVERIFY(dock->isVisible());
    QTRY_VERIFY(dock->height() > 2 * host->window().findChild<LogDock *>()->height());
    dock->toggleViewAction()->trigger();
    QVERIFY(!dock->isVisible());
}

void HostTest::keepsTheLogLastInTheViewMenu()
{
    auto *log = host->window().findChild<LogDock *>();
    QVERIFY(log);
    QVERIFY(log->isVisible());
    auto *viewMenu = host->window().findChild<QMenu *>(QStringLiteral("viewMenu"));
    QCOMPARE(viewMenu->actions().constLast(), log->toggleViewAction());
    viewMenu->actions().constLast()->trigger();
    QVERIFY(!log->isVisible());
}

void HostTest::givesModulesABackendBeforeTheyMakeTheirEntries()
{
    const QStringList calls = takeCalls();
    QVERIFY2(calls.contains(QStringLiteral("BackendVersions: backend 2")), qPrintable(calls.join(QLatin1Char('\n'))));
    QCOMPARE(calls.count(QStringLiteral("configurationChanged")), 1);
    QCOMPARE(calls.constLast(), QStringLiteral("configurationChanged"));
    QTRY_VERIFY(host->backendSession().counts().sent > 0);
}

void HostTest::disconnectsAndConnectsByMenu()
{
    takeCalls();
    const QString name = label("backendLabel");
    QVERIFY(!name.isEmpty());
    QVERIFY(!action("connectAction")->isEnabled());
    action("disconnectAction")->trigger();
    QCOMPARE(takeCalls(), QStringList{QStringLiteral("clearData")});
    QCOMPARE(label("backendLabel"), name + QStringLiteral(" (disconnected)"));
    QVERIFY(!action("disconnectAction")->isEnabled());
    QVERIFY(action("connectAction")->isEnabled());
    const quint64 sent = host->backendSession().counts().sent;
    action("connectAction")->trigger();
    QCOMPARE(takeCalls(), QStringList{QStringLiteral("configurationChanged")});
    QCOMPARE(label("backendLabel"), name);
    QTRY_VERIFY(host->backendSession().counts().sent > sent);
}

void HostTest::choosesAScenarioByMenu()
{
    takeCalls();
    const QString before = label("backendLabel");
    QStringList names = menuTexts("scenarioMenu");
    names.erase(names.end() - 2, names.end()); // a separator and the choice of a file
    QCOMPARE(names, scenarioNames());
    auto *menu = host->window().findChild<QMenu *>(QStringLiteral("scenarioMenu"));
    QVERIFY(menu->actions().at(0)->isChecked());
    menu->actions().at(1)->trigger();
    QCOMPARE(takeCalls(), (QStringList{QStringLiteral("clearData"), QStringLiteral("configurationChanged")}));
    QVERIFY(label("backendLabel") != before);
    QVERIFY(!menu->actions().at(0)->isChecked());
    QVERIFY(menu->actions().at(1)->isChecked());
}

void HostTest::keepsTheBackendWhenAChoiceFails()
{
    takeCalls();
    const QString before = label("backendLabel");
    QSignalSpy failures(host->window().backendMenu(), &BackendMenu::failed);
    QVERIFY(!host->window().backendMenu()->choose({QStringLiteral("/nonexistent/scenario.json"), {}}));
    QVERIFY(!host->window().backendMenu()->choose({QString(), {QStringLiteral("/nonexistent/track.txt")}}));
    QCOMPARE(failures.size(), 2);
    QTRY_VERIFY(logText().contains(QStringLiteral("/nonexistent/scenario.json")));
    QVERIFY(logText().contains(QStringLiteral("/nonexistent/track.txt")));
    QCOMPARE(label("backendLabel"), before);
    QVERIFY(host->backendSession().isConnected());
    QVERIFY(takeCalls().isEmpty());
    auto *menu = host->window().findChild<QMenu *>(QStringLiteral("scenarioMenu"));
    QVERIFY(menu->actions().at(0)->isChecked());
}

void HostTest::showsLogEntriesAsPlainText()
{
    host->log().add(1, QStringLiteral("standard"), QStringLiteral("VORNAK4"),
                    QStringLiteral("Error: <b>Unable</b> to\nfind &amp;"));
    QTRY_VERIFY(logText().contains(QStringLiteral("warning  VORNAK4  Error: <b>Unable</b> to find &amp;")));
}

void HostTest::keepsTheLogBounded()
{
    LogDock dock;
    for (int entry = 0; entry < LogDock::maximumLines + 10; ++entry)
        dock.append({QDateTime::currentDateTime(), 0, {}, {}, QString::number(entry)});
    auto *view = dock.findChild<QPlainTextEdit *>();
    QCOMPARE(view->blockCount(), LogDock::maximumLines);
    QVERIFY(view->toPlainText().endsWith(QString::number(LogDock::maximumLines + 9)));
}

void HostTest::showsRatesAndUnreadableLines()
{
    QCOMPARE(label("unreadableLabel"), QStringLiteral("0 unreadable"));
    const auto rate = [this] {
        return label("livenessLabel").section(QLatin1Char(' '), 3, 3).section(QLatin1Char('/'), 0, 0);
    };
    QTRY_VERIFY2(rate().toDouble() > 0.0, qPrintable(label("livenessLabel")));
    action("disconnectAction")->trigger();
    QTRY_COMPARE(label("livenessLabel"), QStringLiteral("disconnected"));
}

void HostTest::countsUnreadableLines()
{
    auto *panel = host->window().findChild<QWidget *>(QStringLiteral("countingPanel"));
    QVERIFY(panel);
    QVERIFY(panel->setProperty("refusing", true));
    QTRY_VERIFY(label("unreadableLabel").section(QLatin1Char(' '), 0, 0).toInt() > 0);
    QVERIFY(label("unreadableLabel").endsWith(QStringLiteral(" unreadable")));
    const QString summary = host->shutDown();
    const quint64 refused = host->backendSession().counts().refused;
    QVERIFY2(summary.contains(QStringLiteral(", %1 refused, ").arg(refused)), qPrintable(summary));
}

void HostTest::tellsAboutItself()
{
    QString text;
    QTimer poll; // the box runs an event loop of its own
    connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        text = box->text();
        box->accept();
    });
    poll.start(0);
    action("aboutAction")->trigger();
    QVERIFY2(text.startsWith(QApplication::applicationDisplayName()), qPrintable(text));
    QVERIFY(host->window().isVisible());
}

void HostTest::entersAndLeavesWhatsThisMode()
{
    QVERIFY(!QWhatsThis::inWhatsThisMode());
    action("whatsThisAction")->trigger();
    QVERIFY(QWhatsThis::inWhatsThisMode());
    QWhatsThis::leaveWhatsThisMode();
}

QTEST_MAIN(HostTest)
#include "tst_host.moc"
