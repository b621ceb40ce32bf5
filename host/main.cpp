// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"
#include "host/standarderror.h"

#include <QApplication>

#include <csignal>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int badInput = 2; // command line, scenario or file to replay

void print(std::FILE *stream, const QString &text)
{
    std::fprintf(stream, "%s\n", qPrintable(text));
}

QtMessageHandler printMessage = nullptr; // Qt's own

/// Leaves out what Qt warns about at every start without a display, where it means nothing; prints the rest.
void printWithoutPlatformNoise(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool isNoise = text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))
        || text == QLatin1String("This plugin does not support propagateSizeHints()");
    if (!isNoise)
        printMessage(type, context, text);
}

/// Fills the standard files that the caller has closed: the next file opened would take their numbers, and a log file
/// get what is meant for standard output.
void keepStandardFilesTaken()
{
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (::fcntl(file, F_GETFD) == -1)
            ::open("/dev/null", O_RDWR); // takes the lowest number that is free
    }
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads our output may go; the window stays
    keepStandardFilesTaken();
    QCoreApplication::setOrganizationName(QStringLiteral("VORNAK"));
    QCoreApplication::setApplicationName(QStringLiteral("trackhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORNAK_VERSION));
    {
        // Texts are printed without a display, so that --help works on a server. Complaints wait for the application
        // with a display, which takes Qt's own options such as -platform out of the arguments.
        const QCoreApplication withoutDisplay(argc, argv);
        const host::OptionsResult result = host::OptionsResult::read(QCoreApplication::arguments());
        if (result.kind == host::OptionsResult::Kind::Answer) {
            print(stdout, result.text);
            return 0;
        }
    }
    if (qgetenv("QT_QPA_PLATFORM").startsWith("offscreen"))
        printMessage = qInstallMessageHandler(printWithoutPlatformNoise);
    const QApplication application(argc, argv);
    const host::OptionsResult result = host::OptionsResult::read(QCoreApplication::arguments());
    if (result.kind == host::OptionsResult::Kind::Answer) {
        print(stdout, result.text);
        return 0;
    }
    if (result.kind == host::OptionsResult::Kind::Error) {
        host::printError(result.text);
        return badInput;
    }
    const host::HostOptions &options = result.options;
    std::unique_ptr<host::LogFile> logFile;
    if (!options.logFile.isEmpty()) {
        QString reason;
        logFile = host::LogFile::open(options.logFile, &reason);
        if (!logFile) {
            host::printError(
                host::OptionsResult::tr("The log file %1 can't be written: %2.").arg(options.logFile, reason));
            return badInput;
        }
    }
    const host::BackendResult made = host::makeBackend(options.choice, options.settings);
    if (!made.backend) {
        host::printError(made.error);
        return badInput;
    }
    host::Host host(options, made.backend, host::ModuleLoader::folders(options.modulesFolder), std::move(logFile));
    for (const QString &warning : made.warnings)
        host.log().warning(warning);
    return host.run();
}
