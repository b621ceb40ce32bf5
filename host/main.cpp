// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/backendmenu.h"
#include "host/commandline.h"
#include "host/endsignals.h"
#include "host/host.h"
#include "host/platformstart.h"
#include "host/qtarguments.h"
#include "host/standarderror.h"
#include "host/startbackend.h"

#include <QApplication>
#include <QFileInfo>

#include <csignal>
#include <cstdio>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int badInput = 2; // command line, scenario, file to replay, no display

/// Fills the standard files that the caller has closed: the next file opened would take their numbers, and a log file
/// get what is meant for standard output.
void keepStandardFilesTaken()
{
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (::fcntl(file, F_GETFD) == -1)
            ::open("/dev/null", O_RDWR); // takes the lowest number that is free
    }
}

int refuse(const QString &complaint)
{
    host::printError(complaint);
    std::fprintf(stderr, "%s\n", qPrintable(host::Host::tr("Try 'trackhost --help' for the options.")));
    return badInput;
}

/// What the program needs of the machine before it shows a window. Without a backend, complaint says why.
struct Means {
    std::unique_ptr<host::LogFile> logFile;
    host::StartBackend start;
    QString complaint;
};

Means meansFor(const host::HostOptions &options)
{
    Means means;
    if (!options.modulesFolder.isEmpty() && !QFileInfo(options.modulesFolder).isDir()) {
        means.complaint = host::Host::tr("--modules takes a folder, which \"%1\" is not.").arg(options.modulesFolder);
        return means;
    }
    if (!options.logFile.isEmpty()) {
        QString reason;
        means.logFile = host::LogFile::open(options.logFile, &reason);
        if (!means.logFile) {
            means.complaint = host::Host::tr("The log file %1 can't be written: %2.").arg(options.logFile, reason);
            return means;
        }
    }
    means.start = host::startBackend(options);
    means.complaint = means.start.made.error;
    return means;
}

/// The options are read once, before there is a QApplication: it takes options such as "-session" for its own, with one
/// dash or two, and is given the arguments that are not ours.
struct ReadArguments {
    QStringList qts;
    host::OptionsResult result;
};

ReadArguments read(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // needs no display
    const host::ProgramArguments arguments = host::takeApart(QCoreApplication::arguments());
    return {arguments.qts, host::OptionsResult::read(arguments.own)};
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads our output may go; the window stays
    keepStandardFilesTaken();
    host::EndSignals::catchThem();
    QCoreApplication::setOrganizationName(QStringLiteral("VORNAK"));
    QCoreApplication::setApplicationName(QStringLiteral("trackhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORNAK_VERSION));
    QGuiApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const auto [qts, result] = read(argc, argv);
    if (result.kind == host::OptionsResult::Kind::Answer) {
        std::printf("%s\n", qPrintable(result.text));
        return 0;
    }
    if (result.kind == host::OptionsResult::Kind::Error)
        return refuse(result.text);
    Means means = meansFor(result.options);
    if (!means.start.made.backend)
        return refuse(means.complaint);

    host::QtArguments qtArguments(qts);
    std::optional<host::PlatformStart> platform(qts);
    const QApplication application(qtArguments.count(), qtArguments.values());
    platform.reset();
    host::HostOptions options = result.options;
    options.choice = means.start.choice;
    host::Host host(options, means.start.made.backend, host::ModuleLoader::folders(result.options.modulesFolder),
                    std::move(means.logFile));
    for (const QString &warning : qAsConst(means.start.made.warnings))
        host.log().warning(warning);
    if (means.start.made.isPlaceholder)
        host.window().backendMenu()->replacePlaceholder(options.choice);
    const host::EndSignals endSignals;
    QObject::connect(&endSignals, &host::EndSignals::endRequested, &host.window(), [&host] { host.end(); });
    return host.run();
}
