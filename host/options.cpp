// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/options.h"

#include "backend/scenarios.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace host {

namespace {

const QLatin1String simulateName("simulate");
const QLatin1String listName("list-scenarios");

constexpr double lowestRate = 0.1;
constexpr double highestRate = 1000.0;
constexpr int longestLatency = 60 * 1000; // [ms]
constexpr int longestTime = 7 * 24 * 60 * 60 * 1000; // [ms]; a week, well within an int

/// The parser has no optional values, so "--simulate=NAME" is taken apart: the name of the scenario is a positional
/// argument.
QStringList withScenarioApart(const QStringList &arguments)
{
    const QString prefix = QStringLiteral("--") + simulateName + QLatin1Char('=');
    QStringList result;
    for (const QString &argument : arguments) {
        if (argument.startsWith(prefix))
            result << prefix.chopped(1) << argument.mid(prefix.size());
        else
            result << argument;
    }
    return result;
}

/// Reads one value of an option after another and keeps the first complaint.
class ValueReader {
    Q_DECLARE_TR_FUNCTIONS(ValueReader)

public:
    explicit ValueReader(const QCommandLineParser &parser)
        : parser(parser)
    {
    }

    std::optional<std::chrono::milliseconds> milliseconds(const QCommandLineOption &option, int highest)
    {
        if (!parser.isSet(option))
            return std::nullopt;
        bool valid = false;
        const int value = parser.value(option).toInt(&valid);
        if (valid && value >= 0 && value <= highest)
            return std::chrono::milliseconds(value);
        complain(tr("--%1 takes milliseconds from 0 to %2, not \"%3\".")
                     .arg(option.names().constLast(), QString::number(highest), parser.value(option)));
        return std::nullopt;
    }

    std::optional<double> rate(const QCommandLineOption &option)
    {
        if (!parser.isSet(option))
            return std::nullopt;
        bool valid = false;
        const double value = parser.value(option).toDouble(&valid);
        if (valid && value >= lowestRate && value <= highestRate)
            return value;
        complain(tr("--%1 takes frames per second from %2 to %3, not \"%4\".")
                     .arg(option.names().constLast(), QString::number(lowestRate), QString::number(highestRate),
                          parser.value(option)));
        return std::nullopt;
    }

    std::optional<backend::ProtocolVersion> version(const QCommandLineOption &option)
    {
        if (!parser.isSet(option))
            return std::nullopt;
        static const QRegularExpression threeNumbers(QStringLiteral(R"(\A(\d{1,4})\.(\d{1,4})(?:\.(-1|\d{1,4}))?\z)"));
        const QRegularExpressionMatch match = threeNumbers.match(parser.value(option));
        if (match.hasMatch()) {
            const QString patch = match.captured(3);
            return backend::ProtocolVersion{match.captured(1).toInt(), match.captured(2).toInt(),
                                            patch.isEmpty() ? -1 : patch.toInt()};
        }
        complain(tr("--%1 takes a version such as 1.21.0, not \"%2\".")
                     .arg(option.names().constLast(), parser.value(option)));
        return std::nullopt;
    }

    QVector<backend::FaultRule> faults(const QCommandLineOption &option)
    {
        QVector<backend::FaultRule> rules;
        const QStringList texts = parser.values(option);
        for (const QString &text : texts) {
            if (const std::optional<backend::FaultRule> rule = backend::parseFaultRule(text))
                rules.append(*rule);
            else
                complain(tr("--%1 takes a pattern, or a pattern and a rate from 0 to 1, not \"%2\".")
                             .arg(option.names().constLast(), text));
        }
        return rules;
    }

    void complain(const QString &text)
    {
        if (complaint.isEmpty())
            complaint = text;
    }

    QString firstComplaint() const { return complaint; }

private:
    const QCommandLineParser &parser;
    QString complaint;
};

QString scenarioList()
{
    QStringList lines;
    const QStringList names = backend::scenarioNames();
    for (const QString &name : names)
        lines << QStringLiteral("%1  %2").arg(name, -16).arg(backend::scenarioDescription(name));
    return lines.join(QLatin1Char('\n'));
}

/// The options of the program, and the parser that knows them.
struct CommandLine {
    Q_DECLARE_TR_FUNCTIONS(OptionsResult)

public:
    CommandLine()
    {
        parser.setApplicationDescription(tr("Shows live tracking data in the modules that it finds."));
        parser.addOptions({help, version, simulate, list, replay, rate, backendVersion, modules, fail, latency,
                           screenshot, after, duration, observer, log});
        parser.addPositionalArgument(QStringLiteral("scenario"), tr("Scenario to simulate (default: default)."),
                                     tr("[SCENARIO]"));
    }

    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, tr("Shows this help.")};
    const QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")}, tr("Shows the version.")};
    const QCommandLineOption simulate{
        simulateName, tr("Simulates a backend (default). SCENARIO is a name from --%1 or a JSON file.").arg(listName)};
    const QCommandLineOption list{listName, tr("Lists the scenarios that come with the program.")};
    const QCommandLineOption replay{QStringLiteral("replay"),
                                    tr("Replays a trajectory file as a body; may be given several times."), tr("FILE")};
    const QCommandLineOption rate{QStringLiteral("rate"), tr("Output frames per second."), tr("HZ")};
    const QCommandLineOption backendVersion{QStringLiteral("backend-version"),
                                            tr("Version that the simulated backend has."), tr("X.Y.Z")};
    const QCommandLineOption modules{QStringLiteral("modules"), tr("Looks for modules in DIR first."), tr("DIR")};
    const QCommandLineOption fail{
        QStringLiteral("fail"),
        tr("Lets matching queries and commands fail; '*' stands for any text, RATE is from 0 to 1 (default 1)."),
        tr("PATTERN[=RATE]")};
    const QCommandLineOption latency{QStringLiteral("latency"), tr("Lets the backend answer MS ms late."), tr("MS")};
    const QCommandLineOption screenshot{QStringLiteral("screenshot"),
                                        tr("Saves a picture of the window in FILE and quits."), tr("FILE")};
    const QCommandLineOption after{QStringLiteral("after"), tr("Takes the picture after MS ms (default 2000)."),
                                   tr("MS")};
    const QCommandLineOption duration{QStringLiteral("duration"), tr("Quits after MS ms."), tr("MS")};
    const QCommandLineOption log{QStringLiteral("log"), tr("Writes every entry of the log to FILE, too."), tr("FILE")};
    const QCommandLineOption observer{QStringLiteral("observer"), tr("Runs the modules in observer mode.")};

    QCommandLineParser parser;
};

/// The text that the command line asks for instead of a run; empty when it asks for none.
QString answerTo(const CommandLine &line)
{
    if (line.parser.isSet(line.help))
        return line.parser.helpText().trimmed();
    if (line.parser.isSet(line.version))
        return QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    if (line.parser.isSet(line.list))
        return scenarioList();
    return {};
}

/// Contradictory options, whatever their values; empty when there are none.
QString contradictionIn(const CommandLine &line)
{
    const QCommandLineParser &parser = line.parser;
    const QStringList scenarios = parser.positionalArguments();
    if (scenarios.size() > 1)
        return CommandLine::tr("There is more than one scenario: %1.").arg(scenarios.join(QStringLiteral(", ")));
    if (parser.isSet(line.replay) && (parser.isSet(line.simulate) || !scenarios.isEmpty()))
        return CommandLine::tr("A scenario and --replay exclude each other.");
    if (parser.isSet(line.after) && !parser.isSet(line.screenshot))
        return CommandLine::tr("--after needs --screenshot.");
    if (parser.isSet(line.screenshot) && parser.value(line.screenshot).isEmpty())
        return CommandLine::tr("--screenshot takes the name of a file.");
    if (parser.isSet(line.log) && parser.value(line.log).isEmpty())
        return CommandLine::tr("--log takes the name of a file.");
    return {};
}

HostOptions optionsOf(const CommandLine &line, ValueReader *values)
{
    const QCommandLineParser &parser = line.parser;
    HostOptions options;
    options.choice.scenario = parser.positionalArguments().value(0, QStringLiteral("default"));
    options.choice.replayFiles = parser.values(line.replay);
    options.settings.rate = values->rate(line.rate);
    options.settings.version = values->version(line.backendVersion);
    options.settings.faults = values->faults(line.fail);
    options.settings.latency = values->milliseconds(line.latency, longestLatency).value_or(options.settings.latency);
    options.modulesFolder = parser.value(line.modules);
    options.observer = parser.isSet(line.observer);
    options.screenshotFile = parser.value(line.screenshot);
    options.screenshotDelay = values->milliseconds(line.after, longestTime).value_or(options.screenshotDelay);
    options.duration = values->milliseconds(line.duration, longestTime);
    options.logFile = parser.value(line.log);
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
    const QString contradiction = contradictionIn(line);
    if (!contradiction.isEmpty())
        return {Kind::Error, {}, contradiction};
    ValueReader values(line.parser);
    const HostOptions options = optionsOf(line, &values);
    if (!values.firstComplaint().isEmpty())
        return {Kind::Error, {}, values.firstComplaint()};
    return {Kind::Run, options, {}};
}

} // namespace host
