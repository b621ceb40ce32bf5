// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"

#include "host/backendmenu.h"
#include "host/bodiesdock.h"
#include "host/journaldock.h"
#include "host/lineaccount.h"
#include "host/livenessmonitor.h"
#include "host/logdock.h"
#include "host/oncetimer.h"
#include "host/readabletexts.h"
#include "host/savetablesaction.h"
#include "host/slowquestions.h"
#include "host/standarderror.h"

#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>
#include <QMenu>
#include <QStatusBar>
#include <QThread>
#include <QWindow>

#include <cstdio>
#include <utility>

namespace host {

namespace {

constexpr int failedWhileRunning = 1;
constexpr int journalHeight = 190; // [pixels], some entries and the button
constexpr int toldFor = 10000; // in the status bar [ms]

BackendVersions ownVersions()
{
    BackendVersions versions;
    versions.hostMajor = VORNAK_VERSION_MAJOR;
    versions.hostMinor = VORNAK_VERSION_MINOR;
    versions.hostPatch = VORNAK_VERSION_PATCH;
    return versions;
}

/// Returns when the window system shows \a window, or after a second: it may never do so.
void waitUntilExposed(QWidget &window)
{
    const QDeadlineTimer deadline(1000);
    while (!window.windowHandle()->isExposed() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
}

} // namespace

Host::Host(const HostOptions &options, std::shared_ptr<backend::TrackingBackend> backend,
           const QStringList &moduleFolders, std::unique_ptr<LogFile> logFile)
    : options(options)
    , logOutput(hostLog, std::move(logFile))
    , watch(hostLog)
    , versions(ownVersions())
    , ioManager(hostLog)
    , session(ioManager, versions, hostLog)
    , mainWindow(session, hostLog, options.settings)
    , modules(hostLog, mainWindow, ioManager.subscriptions())
    , saving(this->options, mainWindow, [this] { return modules.entries(); })
{
    mainWindow.backendMenu()->showChoice(options.choice);
    addTools();
    new ReadableTexts(&mainWindow); // of what is the host's own
    session.setWrap([this](auto opened) { return watch.wrap(std::move(opened)); });
    // A picture shows the same on every machine, and taking one does not touch the operator's window.
    const bool keepsLayout = !options.savesAndQuits();
    if (keepsLayout)
        mainWindow.restorePlace();
    showConnection(); // before the first question: a backend may take long to answer
    session.open(std::move(backend)); // modules ask for first facts while they make their entries
    modules.load(moduleFolders, {&ioManager, &mainWindow, &versions, options.observer, &ioManager.subscriptions()});
    hostLog.flush(); // without a module the reason is told at once
    if (keepsLayout)
        mainWindow.restoreLayout();
    session.start();
}

Host::~Host()
{
    shutDown();
}

int Host::run()
{
    const bool hadModules = modules.count() > 0;
    mainWindow.show();
    saving.schedule();
    if (options.duration)
        QObject::connect(startOnce(&mainWindow, *options.duration), &QTimer::timeout, qApp, &QCoreApplication::quit);
    if (!isEnding)
        QApplication::exec();
    if (!options.savesAndQuits())
        mainWindow.saveLayout();
    const QString summary = shutDown();
    std::printf("%s\n", qPrintable(summary));
    std::fflush(stdout);
    return result(hadModules);
}

void Host::end()
{
    isEnding = true; // where no event loop of ours runs yet, there is nothing to quit
    QCoreApplication::quit();
}

QString Host::shutDown()
{
    if (isDown)
        return {};
    isDown = true;
    modules.aboutToUnload(); // while lines still flow, as modules have to expect
    session.stopOutput();
    const LineTotals counts = session.counts();
    const std::optional<PanelLineCounts> panels = modules.lineCounts();
    QString summary = LineAccount::text(counts, panels, uncountedLines(counts, panels));
    modules.unload();
    hostLog.flush();
    return summary;
}

void Host::addTools()
{
    auto *journal = new JournalDock(watch, session, options.observer, &mainWindow);
    mainWindow.addDockWidget(Qt::BottomDockWidgetArea, journal);
    journal->hide();
    mainWindow.addViewAction(journal->toggleViewAction());
    // Beside the log, which is low, it would open with a row or two.
    QObject::connect(journal->toggleViewAction(), &QAction::triggered, journal, [this, journal](bool isShown) {
        if (!isShown || journal->isFloating() || journal->height() >= journalHeight)
            return;
        mainWindow.resizeDocks({journal}, {journalHeight}, Qt::Vertical);
        const int half = mainWindow.width() / 2;
        mainWindow.resizeDocks({mainWindow.findChild<LogDock *>(), journal}, {half, half}, Qt::Horizontal);
    });
    // The panel shows whether a filter is enabled, and reads it with the configuration alone.
    QObject::connect(journal, &JournalDock::putBack, &mainWindow, [this](const QString &setting) {
        if (setting == QLatin1String("enabled"))
            ioManager.announceConfiguration();
    });

    auto *bodies = new BodiesDock(ioManager.bodyNames(), &mainWindow);
    mainWindow.addDockWidget(Qt::RightDockWidgetArea, bodies);
    bodies->hide();
    mainWindow.addViewAction(bodies->toggleViewAction());
    const auto *monitor = mainWindow.findChild<LivenessMonitor *>();
    QObject::connect(monitor, &LivenessMonitor::looked, bodies,
                     [bodies, monitor] { bodies->refresh(monitor->snapshot(), monitor->liveness()); });

    mainWindow.addFileAction(new SaveTablesAction([this] { return modules.entries(); }, hostLog, mainWindow));

    auto *slow = new SlowQuestions(watch.times(), &mainWindow);
    auto *action = new QAction(tr("&Slow Questions"), &mainWindow);
    action->setObjectName(QStringLiteral("slowQuestionsAction"));
    action->setStatusTip(tr("Show the questions that took the backend long"));
    QObject::connect(action, &QAction::triggered, slow, [slow] {
        slow->show();
        slow->raise();
        slow->activateWindow();
    });
    mainWindow.helpMenu()->insertAction(mainWindow.helpMenu()->actions().constLast(), action);
    // Queued: what is said while the window stands still would be over before it can be read.
    QObject::connect(
        &watch, &BackendWatch::stoodStill, mainWindow.statusBar(),
        [bar = mainWindow.statusBar()](const QString &text) { bar->showMessage(text, toldFor); }, Qt::QueuedConnection);
}

void Host::showConnection()
{
    mainWindow.show();
    waitUntilExposed(mainWindow);
    QObject::connect(&session, &BackendSession::aboutToConnect, &mainWindow,
                     [this](const QString &name, const backend::ProtocolVersion &version) {
                         mainWindow.statusBar()->showMessage(tr("Connecting to %1...").arg(name));
                         mainWindow.repaint(); // the event loop comes too late
                         modules.unloadUnlessFit(version);
                     });
    QObject::connect(&session, &BackendSession::connectionChanged, &mainWindow, [this] {
        if (session.isConnected())
            modules.loadAgain();
    });
    QObject::connect(&session, &BackendSession::configured, mainWindow.statusBar(), &QStatusBar::clearMessage);
}

int Host::result(bool hadModules) const
{
    const QStringList failures = saving.failures();
    for (const QString &failure : failures)
        printError(failure);
    if (!hadModules)
        return failedWhileRunning;
    return failures.isEmpty() || isEnding ? 0 : failedWhileRunning;
}

} // namespace host
