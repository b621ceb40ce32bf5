// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendmenu.h"
#include "host/keyspage.h"
#include "host/logdock.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QScreen>
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
    void theFirstWindowFitsTheScreen();
    void aPictureHasItsOwnSize();
    void hasAnIcon();
    void listsEveryKey();
    void listsKeysThatComeLater();

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
    QTRY_COMPARE(host->window().windowTitle(), // until the first line has come it says that it waits for it
                 QStringLiteral("simulation: default — %1").arg(QGuiApplication::applicationDisplayName()));
    action("disconnectAction")->trigger();
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("simulation: default — ")));
    host->window().setStateInTitle(QStringLiteral("(frozen 3 s) "));
    QVERIFY(host->window().windowTitle().startsWith(QStringLiteral("(frozen 3 s) simulation: default — ")));
    const QString spoken = host->window().accessibleName();
    QVERIFY(spoken.startsWith(QStringLiteral("(frozen) simulation: default — ")));
    host->window().setStateInTitle(QStringLiteral("(picture frozen 10:32:07) (frozen 2 min 5 s) "));
    QCOMPARE(host->window().accessibleName(), QStringLiteral("(picture frozen) ") + spoken);
    QVERIFY(host->window().backendMenu()->choose({QStringLiteral("heads"), {}}));
    QVERIFY(host->window().windowTitle().contains(QStringLiteral(") simulation: heads — "))); // it waits for its lines
    QTRY_VERIFY(host->window().windowTitle().startsWith(QStringLiteral("simulation: heads — ")));
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

void WindowTest::theFirstWindowFitsTheScreen()
{
    const QSize screen = host->window().screen()->availableSize();
    QVERIFY2(screen.width() < 1280, "the window would fit anyway");
    startAnew();
    const QSize first = host->window().size();
    QVERIFY2(first.width() < screen.width() && first.width() > screen.width() - 20,
             qPrintable(QString::number(first.width())));
    QVERIFY(first.height() < screen.height());
    QCOMPARE(first.height(), 560); // there is room for it
}

void WindowTest::aPictureHasItsOwnSize()
{
    HostOptions options;
    options.screenshotFile = home->filePath(QStringLiteral("picture.png"));
    start(panelModule(), options);
    QCOMPARE(host->window().size(), QSize(1280, 560));
}

void WindowTest::hasAnIcon()
{
    const QIcon icon = host->window().windowIcon();
    for (const int size : {16, 32, 64, 256}) {
        const QImage picture = icon.pixmap(size, size).toImage();
        QCOMPARE(picture.size(), QSize(size, size));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 0); // round corners
        QVERIFY(picture.pixelColor(size / 2, size - size / 8).alpha() == 255);
    }
}

void WindowTest::listsEveryKey()
{
    const QVector<KeyEntry> entries = keysOf(host->window());
    QStringList lines;
    for (const KeyEntry &entry : entries)
        lines << entry.keys + QStringLiteral(": ") + entry.text;
    const QString all = lines.join(QLatin1Char('\n'));
    for (const char *line : {"Ctrl+O: File > Open Recording", "Ctrl+Q: File > Quit", "F10: View > ",
                             "Ctrl+R: Backend > Reconnect", "Shift+F1: Help > What's This?", "F6: "})
        QVERIFY2(all.contains(QLatin1String(line)), qPrintable(all));
    // What has a key is there, whoever made it.
    const QList<QAction *> actions = host->window().findChildren<QAction *>();
    for (const QAction *each : actions) {
        if (each->shortcut().isEmpty() || each->associatedWidgets().isEmpty())
            continue;
        const QString keys = each->shortcut().toString(QKeySequence::NativeText);
        QVERIFY2(all.contains(keys), qPrintable(keys));
    }
    QCOMPARE(lines.removeDuplicates(), 0);
}

void WindowTest::listsKeysThatComeLater()
{
    auto *added = new QAction(QStringLiteral("Later..."), &host->window());
    added->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_J), QKeySequence(Qt::Key_F7)});
    host->window().addViewAction(added);
    action("keysAction")->trigger();
    auto *page = host->window().findChild<KeysPage *>();
    QVERIFY(page && page->isVisible());
    const auto *table = page->findChild<QTableWidget *>();
    QVERIFY(!table->accessibleName().isEmpty());
    QCOMPARE(table->rowCount(), keysOf(host->window()).size());
    const QList<QTableWidgetItem *> found = table->findItems(QStringLiteral("View > Later"), Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    QCOMPARE(table->item(found.first()->row(), 0)->text(), QStringLiteral("Ctrl+J; F7"));
    QTRY_COMPARE(table->columnViewportPosition(1) + table->columnWidth(1), table->viewport()->width());
    QTest::keyClick(page, Qt::Key_Escape);
    QVERIFY(!page->isVisible());
}

QTEST_MAIN(WindowTest)
#include "tst_window.moc"
