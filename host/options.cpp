// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/options.h"

#include "backend/scenarios.h"
#include "host/commandline.h"
#include "host/optionvalues.h"

namespace host {

namespace {

constexpr std::chrono::minutes longestLatency(1);
constexpr std::chrono::hours longestTime(7 * 24); // well within an int of milliseconds

/// The parser has no optional values, so "--simulate=NAME" is taken apart: the name of the scenario is a positional
/// argument.
QStringList withScenarioApart(const QStringList &arguments)
{
    const QString prefix = QStringLiteral("--simulate=");
    QStringList result;
    for (const QString &argument : arguments) {
        if (argument.startsWith(prefix))
            result << prefix.chopped(1) << argument.mid(prefix.size());
        else
            result << argument;
    }
    return result;
}

QString scenarioList()
{
    QStringList lines;
    const QStringList names = backend::scenarioNames();
    for (const QString &name : names)
        lines << QStringLiteral("%1  %2").arg(name, -16).arg(backend::scenarioDescription(name));
    return lines.join(QLatin1Char('\n'));
}

/// The text that the command line asks for instead of a run; empty when it asks for none.
QString answerTo(const CommandLine &line)
{
    if (line.parser.isSet(option::help))
        return line.parser.helpText().trimmed();
    if (line.parser.isSet(option::version))
        return QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    if (line.parser.isSet(option::list))
        return scenarioList();
    return {};
}

BackendChoice choiceOf(const CommandLine &line)
{
    const QStringList scenarios = line.parser.positionalArguments();
    BackendChoice choice;
    choice.standardInput = line.parser.isSet(option::standardInput);
    choice.replayFiles = line.parser.values(option::replay);
    if (!choice.standardInput || line.parser.isSet(option::simulate) || !scenarios.isEmpty())
        choice.scenario = scenarios.value(0, QStringLiteral("default"));
    return choice;
}

HostOptions optionsOf(const CommandLine &line, OptionValues *values)
{
    const QCommandLineParser &parser = line.parser;
    HostOptions options;
    options.choice = choiceOf(line);
    options.isSourceNamed = options.choice.standardInput || !options.choice.replayFiles.isEmpty()
        || parser.isSet(option::simulate) || !parser.positionalArguments().isEmpty();
    options.settings.rate = values->rate(option::rate);
    options.settings.version = values->version(option::backendVersion);
    options.settings.faults = values->faults(option::fail);
    options.settings.latency = values->milliseconds(option::latency, longestLatency).value_or(options.settings.latency);
    options.modulesFolder = parser.value(option::modules);
    options.observer = parser.isSet(option::observer);
    options.screenshotFile = values->picture(option::screenshot);
    options.tablesFolder = parser.value(option::saveTables);
    options.saveAfter = values->milliseconds(option::after, longestTime).value_or(options.saveAfter);
    options.duration = values->milliseconds(option::duration, longestTime);
    options.logFile = parser.value(option::log);
    return options;
}

} // namespace

OptionsResult OptionsResult::read(const QStringList &arguments)
{
    CommandLine line;
    if (!line.parser.parse(withScenarioApart(arguments)))
        return {Kind::Error, {}, line.parser.errorText()};
    const QString answer = answerTo(line);
    if (!answer.isEmpty())
        return {Kind::Answer, {}, answer};
    const QString contradiction = line.contradiction();
    if (!contradiction.isEmpty())
        return {Kind::Error, {}, contradiction};
    OptionValues values(line.parser);
    const HostOptions options = optionsOf(line, &values);
    if (!values.firstComplaint().isEmpty())
        return {Kind::Error, {}, values.firstComplaint()};
    return {Kind::Run, options, {}};
}

} // namespace host
