// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/scenarios.h"
#include "backend/simulatedbackend.h"
#include "tests/host/hostfixture.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QStatusBar>
#include <QTest>
#include <QWindow>

#include <functional>

using namespace backend;
using namespace host;

namespace {

/// A simulation that lets the test look when it is asked for the first time.
class PeekedBackend : public SimulatedBackend {
public:
    PeekedBackend(const Scenario &scenario, std::function<void()> firstAsked)
        : SimulatedBackend(scenario)
        , firstAsked(std::move(firstAsked))
    {
    }
    std::optional<QByteArray> request(const QByteArray &query) override
    {
        if (const std::function<void()> look = std::exchange(firstAsked, {}))
            look();
        return SimulatedBackend::request(query);
    }

private:
    std::function<void()> firstAsked;
};

/// What the status bar said when it was painted last.
class PaintedStatus : public QObject {
public:
    PaintedStatus() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (const auto *bar = qobject_cast<QStatusBar *>(watched); bar && event->type() == QEvent::Paint)
            text = bar->currentMessage();
        return false;
    }

    QString text;
};

QMainWindow *shownWindow()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<QMainWindow *>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

} // namespace

/// What is on the screen while the backend has not answered yet.
class StartupTest : public QObject, private HostFixture {
    Q_OBJECT

private slots:
    void init() { startAnew(); }
    void cleanup() { end(); }

    void showsTheWindowBeforeTheFirstQuestion_data();
    void showsTheWindowBeforeTheFirstQuestion();
    void saysWhatItConnectsToWhileItRuns();
    void restoresPlaceAndDocks();
    void keepsAPanelClosedThatItsModuleClosed();

private:
    std::shared_ptr<TrackingBackend> peekedBackend(std::function<void()> look);
};

std::shared_ptr<TrackingBackend> StartupTest::peekedBackend(std::function<void()> look)
{
    const ScenarioResult loaded = loadScenario(QStringLiteral("default"));
    if (!loaded.scenario)
        qFatal("%s", qPrintable(loaded.error));
    return std::make_shared<PeekedBackend>(*loaded.scenario, std::move(look));
}

void StartupTest::showsTheWindowBeforeTheFirstQuestion_data()
{
    QTest::addColumn<QString>("module");
    QTest::newRow("of a module that asks with the configuration") << QStringLiteral(TEST_MODULES "/testmodule");
    QTest::newRow("of the data display, which asks before") << QStringLiteral(MODULES);
}

void StartupTest::showsTheWindowBeforeTheFirstQuestion()
{
    QFETCH(const QString, module);
    host.reset();
    QVERIFY(!shownWindow());
    const PaintedStatus painted;
    bool looked = false;
    QString paintedText;
    const auto backend = peekedBackend([&] {
        looked = true;
        paintedText = painted.text;
        QVERIFY(shownWindow());
        QVERIFY(shownWindow()->windowHandle()->isExposed());
    });
    host = std::make_unique<Host>(HostOptions(), backend, QStringList(module));
    QVERIFY(looked);
    QCOMPARE(paintedText, QStringLiteral("Connecting to simulation: default..."));
    QCOMPARE(host->window().statusBar()->currentMessage(), QString());
}

void StartupTest::saysWhatItConnectsToWhileItRuns()
{
    QVERIFY(QTest::qWaitForWindowActive(&host->window()));
    const PaintedStatus painted;
    QString paintedText;
    host->backendSession().change(peekedBackend([&] { paintedText = painted.text; }));
    QCOMPARE(paintedText, QStringLiteral("Connecting to simulation: default..."));
    QCOMPARE(host->window().statusBar()->currentMessage(), QString());
}

void StartupTest::restoresPlaceAndDocks()
{
    auto *dock = host->window().findChild<QDockWidget *>(QStringLiteral("moduleDock3"));
    if (!dock)
        dock = host->window().findChild<QDockWidget *>(QStringLiteral("moduleDock1"));
    QVERIFY(dock);
    const QString name = dock->objectName();
    host->window().addDockWidget(Qt::TopDockWidgetArea, dock);
    host->window().resize(900, 500);
    host->window().saveLayout();
    bool wasInPlace = false;
    host.reset();
    const auto backend = peekedBackend([&] { wasInPlace = shownWindow() && shownWindow()->size() == QSize(900, 500); });
    host = std::make_unique<Host>(HostOptions(), backend, testModule());
    QVERIFY(wasInPlace); // a window that jumps after it was shown would be worse than a late one
    dock = host->window().findChild<QDockWidget *>(name);
    QCOMPARE(host->window().dockWidgetArea(dock), Qt::TopDockWidgetArea);
}

void StartupTest::keepsAPanelClosedThatItsModuleClosed()
{
    qApp->setProperty("closedPanel", true);
    start(testModule());
    qApp->setProperty("closedPanel", QVariant());
    auto *panel = host->window().findChild<QWidget *>(QStringLiteral("countingPanel"));
    QVERIFY(panel);
    QCoreApplication::processEvents();
    QVERIFY(!panel->isVisible());
}

QTEST_MAIN(StartupTest)
#include "tst_startup.moc"
