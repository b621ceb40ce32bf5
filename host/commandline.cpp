// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/commandline.h"

#include <algorithm>

namespace host {

namespace {

/// Options that Qt 5.15 takes out of the arguments, for the application and the platform "xcb".
const QStringList &optionsOfQt(bool withValue)
{
    static const QStringList valued{QStringLiteral("platform"),        QStringLiteral("platformpluginpath"),
                                    QStringLiteral("platformtheme"),   QStringLiteral("plugin"),
                                    QStringLiteral("qwindowgeometry"), QStringLiteral("geometry"),
                                    QStringLiteral("qwindowicon"),     QStringLiteral("icon"),
                                    QStringLiteral("qwindowtitle"),    QStringLiteral("title"),
                                    QStringLiteral("style"),           QStringLiteral("stylesheet"),
                                    QStringLiteral("session"),         QStringLiteral("display"),
                                    QStringLiteral("fontengine"),      QStringLiteral("name")};
    static const QStringList bare{QStringLiteral("reverse"),     QStringLiteral("widgetcount"),
                                  QStringLiteral("testability"), QStringLiteral("qdebug"),
                                  QStringLiteral("qdevel"),      QStringLiteral("nograb"),
                                  QStringLiteral("dograb"),      QStringLiteral("sync")};
    return withValue ? valued : bare;
}

/// Returns whether \a argument is an option of Qt's. \a takesNext says whether the next argument is its value, or that
/// of an option of ours.
bool isQts(const QString &argument, const QList<QCommandLineOption> &ownOptions, bool *takesNext)
{
    *takesNext = false;
    if (!argument.startsWith(QLatin1Char('-')))
        return false;
    const bool hasTwoDashes = argument.startsWith(QLatin1String("--"));
    const QString text = argument.mid(hasTwoDashes ? 2 : 1);
    const QString name = text.section(QLatin1Char('='), 0, 0);
    const bool hasValue = text.size() > name.size();
    const auto own = std::find_if(ownOptions.begin(), ownOptions.end(), [&](const QCommandLineOption &each) {
        return (hasTwoDashes || name.size() == 1) && each.names().contains(name);
    });
    if (own != ownOptions.end()) {
        *takesNext = !hasValue && !own->valueName().isEmpty();
        return false;
    }
    if (optionsOfQt(true).contains(name)) {
        *takesNext = !hasValue;
        return true;
    }
    return optionsOfQt(false).contains(name);
}

} // namespace

CommandLine::CommandLine()
{
    parser.setApplicationDescription(tr("Shows live tracking data in the modules that it finds."));
    parser.addOptions(options());
    parser.addPositionalArgument(QStringLiteral("scenario"), tr("Scenario to simulate (default: default)."),
                                 tr("[SCENARIO]"));
}

QList<QCommandLineOption> CommandLine::options()
{
    return {
        {{QStringLiteral("h"), option::help}, tr("Shows this help.")},
        {{QStringLiteral("v"), option::version}, tr("Shows the version.")},
        {option::simulate,
         tr("Simulates a backend (default). SCENARIO is a name from --list-scenarios or a JSON file.")},
        {option::list, tr("Lists the scenarios that come with the program.")},
        {option::replay, tr("Replays a trajectory file as a body; may be given several times."), tr("FILE")},
        {option::standardInput,
         tr("Shows the lines \"6d ...\", \"6di ...\" and \"3d ...\" of standard input as they come. With --simulate "
            "the scenario answers the modules' questions.")},
        {option::rate, tr("Output frames per second, of a scenario or a trajectory."), tr("HZ")},
        {option::backendVersion, tr("Version that the simulated backend has."), tr("X.Y.Z")},
        {option::modules, tr("Looks for modules in DIR first."), tr("DIR")},
        {option::fail,
         tr("Lets matching queries and commands fail; '*' stands for any text, RATE is from 0 to 1 (default 1)."),
         tr("PATTERN[=RATE]")},
        {option::latency, tr("Lets the backend answer MS ms late."), tr("MS")},
        {option::screenshot,
         tr("Saves a picture of the window in FILE and quits. The end of the name says in which format."), tr("FILE")},
        {option::saveTables,
         tr("Saves what each table shows as a CSV file in DIR, which is made if needed, and quits."), tr("DIR")},
        {option::after, tr("Saves picture and tables MS ms after the start (default 2000)."), tr("MS")},
        {option::duration, tr("Quits after MS ms."), tr("MS")},
        {option::observer, tr("Runs the modules in observer mode.")},
        {option::log, tr("Writes every entry of the log to FILE, too."), tr("FILE")},
    };
}

QString CommandLine::contradiction() const
{
    const QStringList scenarios = parser.positionalArguments();
    const bool simulates = parser.isSet(option::simulate) || !scenarios.isEmpty();
    if (scenarios.size() > 1)
        return tr("There is more than one scenario: %1.").arg(scenarios.join(QStringLiteral(", ")));
    if (parser.isSet(option::replay) && simulates)
        return tr("A scenario and --replay exclude each other.");
    if (parser.isSet(option::replay) && parser.isSet(option::standardInput))
        return tr("--stdin and --replay exclude each other.");
    if (parser.isSet(option::rate) && parser.isSet(option::standardInput))
        return tr("--rate is for scenarios and trajectories: lines of --stdin come when they come.");
    if (parser.isSet(option::backendVersion) && parser.isSet(option::standardInput) && !simulates)
        return tr("--backend-version is for scenarios and trajectories; with --stdin it needs --simulate.");
    if (parser.isSet(option::after) && !parser.isSet(option::screenshot) && !parser.isSet(option::saveTables))
        return tr("--after needs --screenshot or --save-tables.");
    for (const QLatin1String file : {option::screenshot, option::log}) {
        if (parser.isSet(file) && parser.value(file).isEmpty())
            return tr("--%1 takes the name of a file.").arg(file);
    }
    for (const QLatin1String folder : {option::modules, option::saveTables}) {
        if (parser.isSet(folder) && parser.value(folder).isEmpty())
            return tr("--%1 takes the name of a folder.").arg(folder);
    }
    return {};
}

ProgramArguments takeApart(const QStringList &arguments)
{
    const QList<QCommandLineOption> ownOptions = CommandLine::options();
    ProgramArguments result;
    bool isProgram = true;
    QStringList *valueOf = nullptr; // where the value that comes next belongs
    bool optionsEnded = false;
    for (const QString &argument : arguments) {
        QStringList *const list = valueOf;
        valueOf = nullptr;
        if (isProgram) {
            result = {{argument}, {argument}};
            isProgram = false;
        } else if (list || optionsEnded) {
            (list ? list : &result.own)->append(argument);
        } else {
            bool takesNext = false;
            QStringList *const owner = isQts(argument, ownOptions, &takesNext) ? &result.qts : &result.own;
            owner->append(argument);
            valueOf = takesNext ? owner : nullptr;
            optionsEnded = argument == QLatin1String("--");
        }
    }
    return result;
}

} // namespace host
