// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"

#include "host/backendmenu.h"
#include "host/lineaccount.h"
#include "host/standarderror.h"

#include <QApplication>
#include <QPixmap>
#include <QTimer>

#include <cstdio>
#include <utility>

namespace host {

namespace {

constexpr int failedWhileRunning = 1;

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
    , versions(ownVersions())
    , ioManager(hostLog)
    , session(ioManager, versions, hostLog)
    , mainWindow(session, hostLog, options.settings)
    , modules(hostLog)
{
    mainWindow.backendMenu()->showChoice(options.choice);
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
