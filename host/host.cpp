// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"

#include "host/backendmenu.h"
#include "host/journaldock.h"
#include "host/lineaccount.h"
#include "host/slowquestions.h"
#include "host/standarderror.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QStatusBar>
#include <QTimer>

#include <cstdio>
#include <utility>

namespace host {

namespace {

constexpr int failedWhileRunning = 1;
constexpr int toldFor = 10000; // in the status bar [ms]

BackendVersions ownVersions()
{
    BackendVersions versions;
    versions.hostMajor = VORNAK_VERSION_MAJOR;
    versions.hostMinor = VORNAK_VERSION_MINOR;
    versions.hostPatch = VORNAK_VERSION_PATCH;
    return versions;
}

QTimer *startOnce(QObject *parent, std::chrono::milliseconds delay)
{
    auto *timer = new QTimer(parent);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // a coarse one may come seconds early in a run of a minute
    timer->start(delay);
    return timer;
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
    , modules(hostLog)
{
    mainWindow.backendMenu()->showChoice(options.choice);
    addTools();
    session.setWrap([this](auto opened) { return watch.wrap(std::move(opened)); });
    session.open(std::move(backend)); // modules ask for first facts while they make their entries
    modules.load(moduleFolders, {&ioManager, &mainWindow, &versions, options.observer});
    hasModules = modules.count() > 0;
    hostLog.flush(); // without a module the reason is told at once
    mainWindow.addEntries(modules.entries());
    // A picture shows the same on every machine, and taking one does not touch the operator's window.
    if (options.screenshotFile.isEmpty())
        mainWindow.restoreLayout();
    session.start();
}

Host::~Host()
{
    shutDown();
}

int Host::run()
{
    mainWindow.show();
    scheduleEnd();
    QApplication::exec();
    if (options.screenshotFile.isEmpty())
        mainWindow.saveLayout();
    const QString summary = shutDown();
    std::printf("%s\n", qPrintable(summary));
    std::fflush(stdout);
    if (options.screenshotFile.isEmpty() || pictureSaved)
        return hasModules ? 0 : failedWhileRunning;
    printError(tr("The picture could not be saved in %1.").arg(options.screenshotFile));
    return failedWhileRunning;
}

QString Host::shutDown()
{
    if (isDown)
        return {};
    isDown = true;
    modules.aboutToUnload(); // while lines still flow, as modules have to expect
    session.stopOutput();
    QString summary = LineAccount::text(session.counts(), panelLineCounts(modules.entries()));
    mainWindow.removeEntries(modules.entries());
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
    // The panel shows whether a filter is enabled, and reads it with the configuration alone.
    QObject::connect(journal, &JournalDock::putBack, &mainWindow, [this](const QString &setting) {
        if (setting == QLatin1String("enabled"))
            ioManager.announceConfiguration();
    });

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

void Host::scheduleEnd()
{
    if (!options.screenshotFile.isEmpty()) {
        QTimer *timer = startOnce(&mainWindow, options.screenshotDelay);
        QObject::connect(timer, &QTimer::timeout, &mainWindow, [this] { takeScreenshot(); });
    }
    if (options.duration) {
        QTimer *timer = startOnce(&mainWindow, *options.duration);
        QObject::connect(timer, &QTimer::timeout, qApp, &QCoreApplication::quit);
    }
}

void Host::takeScreenshot()
{
    pictureSaved = mainWindow.grab().save(options.screenshotFile, "PNG");
    QCoreApplication::quit();
}

} // namespace host
