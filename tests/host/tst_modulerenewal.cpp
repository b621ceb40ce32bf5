// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "host/versionlimits.h"
#include "tests/host/hostfixture.h"

#include <QApplication>
#include <QDockWidget>
#include <QPointer>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace backend;
using namespace host;

namespace {

constexpr int filterColumn = 2;

/// A simulation that may come back in another version.
class ChangingBackend : public SimulatedBackend {
public:
    ChangingBackend(const Scenario &scenario, ProtocolVersion version)
        : SimulatedBackend(scenario)
        , current(version)
    {
    }
    ProtocolVersion version() const override { return current; }

    ProtocolVersion current;
};

std::shared_ptr<ChangingBackend> backendOf(ProtocolVersion version)
{
    ScenarioResult loaded = loadScenario(QStringLiteral("default"));
    if (!loaded.scenario)
        qFatal("%s", qPrintable(loaded.error));
    loaded.scenario->version = version;
    return std::make_shared<ChangingBackend>(*loaded.scenario, version);
}

} // namespace

/// Modules that are made anew for a backend whose version they can't follow.
class ModuleRenewalTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

    void knowsTheLimits_data();
    void knowsTheLimits();
    void loadsInOrder();
    void leavesModulesThatFit();
    void loadsForABackendThatComesBack();
    void keepsTheLayout();
    void accountsForTheLinesOfAll();
    void deliversNothingToModulesThatAreGone();
    void showsTheFilterColumnWhereThereIsOne();
    void survivesAnOpenDialog();

private:
    void startWith(const QStringList &folders, ProtocolVersion version);
    QTableWidget *table() const { return host->window().findChild<QTableWidget *>(QStringLiteral("tableWidget6d")); }
    QDockWidget *dock() const
    {
        auto *panel = host->window().findChild<QWidget *>(QStringLiteral("countingPanel"));
        return panel ? qobject_cast<QDockWidget *>(panel->parentWidget()) : nullptr;
    }

    static QStringList dataDisplay() { return {QStringLiteral(MODULES)}; }
};

void ModuleRenewalTest::startWith(const QStringList &folders, ProtocolVersion version)
{
    host.reset();
    host = std::make_unique<Host>(HostOptions(), backendOf(version), folders);
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    takeCalls();
}

void ModuleRenewalTest::knowsTheLimits_data()
{
    QTest::addColumn<QVector<int>>("before");
    QTest::addColumn<QVector<int>>("after");
    QTest::addColumn<bool>("anew");
    const auto row = [](const char *sentence, const QVector<int> &before, const QVector<int> &after, bool anew) {
        QTest::newRow(sentence) << before << after << anew;
    };
    row("the same version", {2, 0, 1}, {2, 0, 1}, false);
    row("both beyond the limit", {1, 12, 0}, {2, 0, 0}, false);
    row("both below the limit", {0, 12, 0}, {1, 11, 99}, false);
    row("from below to the limit", {1, 11, 0}, {1, 12, 0}, true);
    row("from beyond to below", {2, 0, 0}, {0, 16, 0}, true);
    row("a patch that is not known is that of the limit", {1, 12, -1}, {1, 12, 0}, false);
    row("and not below it", {1, 11, 5}, {1, 12, -1}, true);
}

void ModuleRenewalTest::knowsTheLimits()
{
    QFETCH(const QVector<int>, before);
    QFETCH(const QVector<int>, after);
    BackendVersions present;
    present.backendMajor = before[0];
    present.backendMinor = before[1];
    present.backendPatch = before[2];
    QTEST(needsNewModules(present, {after[0], after[1], after[2]}), "anew");
}

void ModuleRenewalTest::loadsInOrder()
{
    startWith(testModule(), {2, 0, 0});
    host->backendSession().change(backendOf({1, 11, 0}));
    QCOMPARE(takeCalls(),
             (QStringList{QStringLiteral("aboutToUnload"), QStringLiteral("releaseWidgets"),
                          QStringLiteral("destroyed"), QStringLiteral("created"),
                          QStringLiteral("CommandManager: a command channel"), QStringLiteral("ModuleParent: a widget"),
                          QStringLiteral("BackendVersions: backend 1"), QStringLiteral("ObserverMode: false"),
                          QStringLiteral("moduleEntries"), QStringLiteral("configurationChanged")}));
    QVERIFY(dock()->isVisible());
    QCOMPARE(menuTexts("viewMenu").mid(0, 2), (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
    QTRY_VERIFY(logText().contains(QStringLiteral("The modules are loaded anew")));
    const quint64 sent = host->backendSession().counts().sent;
    QTRY_VERIFY(host->backendSession().counts().sent > sent);
    host->backendSession().change(backendOf({1, 12, 0}));
    QCOMPARE(takeCalls().count(QStringLiteral("created")), 1);
}

void ModuleRenewalTest::leavesModulesThatFit()
{
    startWith(testModule(), {2, 0, 0});
    host->backendSession().change(backendOf({1, 12, 0}));
    host->backendSession().disconnectBackend();
    host->backendSession().reconnect();
    QCOMPARE(takeCalls(),
             (QStringList{QStringLiteral("clearData"), QStringLiteral("configurationChanged"),
                          QStringLiteral("clearData"), QStringLiteral("configurationChanged")}));
}

void ModuleRenewalTest::loadsForABackendThatComesBack()
{
    startWith(testModule(), {2, 0, 0});
    const auto backend = backendOf({2, 0, 0});
    host->backendSession().change(backend);
    host->backendSession().disconnectBackend();
    takeCalls();
    backend->current = {1, 11, 0};
    host->backendSession().reconnect();
    const QStringList calls = takeCalls();
    QCOMPARE(calls.first(), QStringLiteral("aboutToUnload"));
    QVERIFY(calls.contains(QStringLiteral("BackendVersions: backend 1")));
    QCOMPARE(calls.last(), QStringLiteral("configurationChanged"));
}

void ModuleRenewalTest::keepsTheLayout()
{
    startWith(testModule(), {2, 0, 0});
    host->window().addDockWidget(Qt::TopDockWidgetArea, dock());
    QCoreApplication::processEvents();
    const int heightBefore = dock()->height();
    host->window().resizeDocks({dock()}, {heightBefore + 60}, Qt::Vertical);
    const QString name = dock()->objectName();
    QTRY_VERIFY(dock()->height() > heightBefore);
    const int height = dock()->height();
    host->backendSession().change(backendOf({1, 11, 0}));
    QCOMPARE(dock()->objectName(), name);
    QCOMPARE(host->window().dockWidgetArea(dock()), Qt::TopDockWidgetArea);
    QTRY_COMPARE(dock()->height(), height);
    dock()->close();
    host->backendSession().change(backendOf({2, 0, 0}));
    QCoreApplication::processEvents();
    QVERIFY(dock());
    QVERIFY(!dock()->isVisible());
    dock()->show();
    dock()->setFloating(true);
    host->backendSession().change(backendOf({1, 11, 0}));
    QVERIFY(dock()->isFloating());
    QVERIFY(dock()->isVisible());
}

void ModuleRenewalTest::accountsForTheLinesOfAll()
{
    startWith(testModule(), {2, 0, 0});
    for (const ProtocolVersion version : {ProtocolVersion{1, 11, 0}, ProtocolVersion{2, 0, 0}}) {
        const quint64 sent = host->backendSession().counts().sent;
        QTRY_VERIFY(host->backendSession().counts().sent > sent + 20);
        host->backendSession().change(backendOf(version));
    }
    const QString summary = host->shutDown();
    static const QRegularExpression account(
        QStringLiteral("\\Alines: (\\d+) sent, (\\d+) stored, (\\d+) dropped while the display was drawing, "
                       "0 refused, (\\d+) ignored\\z"));
    const QRegularExpressionMatch match = account.match(summary);
    QVERIFY2(match.hasMatch(), qPrintable(summary));
    QVERIFY(match.captured(1).toInt() > 40);
    QCOMPARE(match.captured(1).toInt(),
             match.captured(2).toInt() + match.captured(3).toInt() + match.captured(4).toInt());
}

/// Neither to one that has not unregistered: its memory is another's by then.
void ModuleRenewalTest::deliversNothingToModulesThatAreGone()
{
    startWith(testModule(), {2, 0, 0});
    qApp->setProperty("staysRegistered", true);
    host->backendSession().change(backendOf({1, 11, 0}));
    qApp->setProperty("staysRegistered", QVariant());
    QCOMPARE(takeCalls().count(QStringLiteral("configurationChanged")), 1);
    const quint64 sent = host->backendSession().counts().sent;
    QTRY_VERIFY(host->backendSession().counts().sent > sent + 20);
}

void ModuleRenewalTest::showsTheFilterColumnWhereThereIsOne()
{
    startWith(dataDisplay(), {1, 11, 0});
    QVERIFY(table()->isColumnHidden(filterColumn));
    host->backendSession().change(backendOf({2, 0, 0}));
    QVERIFY(!table()->isColumnHidden(filterColumn));
    QTRY_COMPARE(table()->item(0, filterColumn)->text(), QStringLiteral("active"));
    QTRY_VERIFY(table()->isVisible());
    host->backendSession().change(backendOf({1, 11, 0}));
    QVERIFY(table()->isColumnHidden(filterColumn));
    QTRY_VERIFY(table()->rowCount() > 0);
}

void ModuleRenewalTest::survivesAnOpenDialog()
{
    startWith(dataDisplay(), {2, 0, 0});
    QTRY_VERIFY(table()->rowCount() > 0);
    const QPointer<QTableWidget> before(table());
    bool changed = false;
    QTimer poll; // menu and dialog run event loops of their own
    connect(&poll, &QTimer::timeout, &poll, [&] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        } else if (QApplication::activeModalWidget() && !changed) {
            changed = true;
            host->backendSession().change(backendOf({1, 11, 0}));
        }
    });
    poll.start(5);
    table()->setFocus();
    table()->setCurrentCell(0, filterColumn);
    QTest::keyClick(table(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY(changed && !before);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(table()->isColumnHidden(filterColumn));
    QTRY_VERIFY(table()->rowCount() > 0);
}

QTEST_MAIN(ModuleRenewalTest)
#include "tst_modulerenewal.moc"
