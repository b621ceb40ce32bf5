// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendmenu.h"
#include "host/logdock.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QTableWidget>
#include <QTest>

using namespace host;

/// How the window divides its room, with the data display in it.
class WindowTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { end(); }

    void tablesGrowWithTheWindow();
    void tablesGrowWithARestoredWindow();
    void theLogKeepsItsHeightWhileThePanelIsAway_data();
    void theLogKeepsItsHeightWhileThePanelIsAway();
    void saysWhereThePanelsAre();
    void panelsAboveTheLogShareTheRoom();
    void titleNamesTheSource();
    void viewMenuHoldsModulesThenOwnEntriesThenTheLog();

private:
    int tableHeight() const
    {
        return host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d"))->height();
    }
    int logHeight() const { return log()->height(); }
    LogDock *log() const { return host->window().findChild<LogDock *>(); }
    QLabel *background() const { return qobject_cast<QLabel *>(host->window().centralWidget()); }
    QDockWidget *panel() const;
    void resizeTo(int width, int height);

    static QStringList panelModule() { return {QStringLiteral(MODULES)}; }
};

void WindowTest::init()
{
    startAnew();
    start(panelModule());
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    QVERIFY(panel());
    resizeTo(1280, 560);
    QTRY_VERIFY(tableHeight() > 2 * logHeight());
}

QDockWidget *WindowTest::panel() const
{
    const QList<QDockWidget *> docks = host->window().findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks) {
        if (dock->findChild<QTableWidget *>(QStringLiteral("tableWidget6d")))
            return dock;
    }
    return nullptr;
}

void WindowTest::resizeTo(int width, int height)
{
    host->window().resize(width, height);
    QTRY_COMPARE(host->window().size(), QSize(width, height));
    QCoreApplication::processEvents();
}

void WindowTest::tablesGrowWithTheWindow()
{
    const int table = tableHeight();
    const int log = logHeight();
    resizeTo(1280, 1005);
    QTRY_COMPARE(tableHeight(), table + 445);
    QCOMPARE(logHeight(), log);
    resizeTo(1280, 560);
    QTRY_COMPARE(tableHeight(), table);
    QCOMPARE(logHeight(), log);
    resizeTo(1900, 560);
    QTRY_VERIFY(panel()->width() > 1880);
    QCOMPARE(logHeight(), log);
}

void WindowTest::tablesGrowWithARestoredWindow()
{
    resizeTo(1280, 700);
    const int table = tableHeight();
    const int log = logHeight();
    host->window().saveLayout();
    start(panelModule());
    QTRY_COMPARE(tableHeight(), table);
    QCOMPARE(logHeight(), log);
    resizeTo(1280, 760);
    QTRY_COMPARE(tableHeight(), table + 60);
    QCOMPARE(logHeight(), log);
}

void WindowTest::theLogKeepsItsHeightWhileThePanelIsAway_data()
{
    QTest::addColumn<bool>("floating");
    QTest::newRow("hidden and shown by its key") << false;
    QTest::newRow("undocked and back") << true;
}

void WindowTest::theLogKeepsItsHeightWhileThePanelIsAway()
{
    QFETCH(const bool, floating);
    const int table = tableHeight();
    const int log = logHeight();
    if (floating)
        panel()->setFloating(true);
    else
        QTest::keyClick(&host->window(), Qt::Key_F10);
    QTRY_COMPARE(panel()->isHidden() || panel()->isFloating(), true);
    QCoreApplication::processEvents();
    QCOMPARE(logHeight(), log);
    if (floating)
        panel()->setFloating(false);
    else
        QTest::keyClick(&host->window(), Qt::Key_F10);
    QTRY_COMPARE(tableHeight(), table);
    QCOMPARE(logHeight(), log);
}

void WindowTest::saysWhereThePanelsAre()
{
    const QString hint = QStringLiteral("All panels are hidden: View menu, F10");
    QCOMPARE(background()->width(), 0);
    QCOMPARE(background()->text(), QString());
    panel()->close();
    QTRY_COMPARE(background()->text(), hint);
    log()->close();
    QTRY_VERIFY(background()->width() > 1200);
    QTRY_VERIFY(background()->height() > 400);
    QVERIFY(background()->isVisible());
    QTest::keyClick(&host->window(), Qt::Key_F10);
    QTRY_VERIFY(panel()->isVisible());
    QTRY_COMPARE(background()->text(), QString());
    QTRY_VERIFY(panel()->width() > 1260);
}

void WindowTest::panelsAboveTheLogShareTheRoom()
{
    host->window().addDockWidget(Qt::TopDockWidgetArea, panel());
    QTRY_VERIFY(background()->isHidden());
    QTRY_COMPARE(log()->geometry().top() - panel()->geometry().bottom() < 20, true);
    host->window().addDockWidget(Qt::LeftDockWidgetArea, panel());
    QTRY_VERIFY(background()->isVisible());
}

void WindowTest::titleNamesTheSource()
{
    QCOMPARE(host->window().windowTitle(),
             QStringLiteral("simulation: default — %1").arg(QGuiApplication::applicationDisplayName()));
    action("disconnectAction")->trigger();
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("simulation: default — ")));
    host->window().setStateInTitle(QStringLiteral("(frozen 3 s) "));
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("(frozen 3 s) simulation: default — ")));
    QVERIFY(host->window().backendMenu()->choose({QStringLiteral("heads"), {}}));
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("(frozen 3 s) simulation: heads — ")));
    host->window().setStateInTitle(QString());
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("simulation: heads — ")));
}

void WindowTest::viewMenuHoldsModulesThenOwnEntriesThenTheLog()
{
    host->window().addViewAction(new QAction(QStringLiteral("One"), &host->window()));
    host->window().addViewAction(new QAction(QStringLiteral("Two"), &host->window()));
    const QStringList before = menuTexts("viewMenu");
    QCOMPARE(before.first(), QStringLiteral("&Data"));
    QCOMPARE(before.mid(before.size() - 3),
             (QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("&Log")}));
    host->shutDown();
    QCOMPARE(menuTexts("viewMenu"), before.mid(1));
}

QTEST_MAIN(WindowTest)
#include "tst_window.moc"
