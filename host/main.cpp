// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/host.h"

#include <QApplication>

#include <cstdio>

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

} // namespace

int main(int argc, char **argv)
{
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
        print(stderr, result.text);
        return badInput;
    }
    const host::BackendResult made = host::makeBackend(result.options.choice, result.options.settings);
    for (const QString &warning : made.warnings)
        print(stderr, warning);
    if (!made.backend) {
        print(stderr, made.error);
        return badInput;
    }
    return host::Host(result.options, made.backend, host::ModuleLoader::folders(result.options.modulesFolder)).run();
}
