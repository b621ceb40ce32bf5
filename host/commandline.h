// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace host {

/// The names of the options.
namespace option {
inline constexpr QLatin1String help("help");
inline constexpr QLatin1String version("version");
inline constexpr QLatin1String simulate("simulate");
inline constexpr QLatin1String list("list-scenarios");
inline constexpr QLatin1String replay("replay");
inline constexpr QLatin1String standardInput("stdin");
inline constexpr QLatin1String rate("rate");
inline constexpr QLatin1String backendVersion("backend-version");
inline constexpr QLatin1String modules("modules");
inline constexpr QLatin1String fail("fail");
inline constexpr QLatin1String latency("latency");
inline constexpr QLatin1String screenshot("screenshot");
inline constexpr QLatin1String saveTables("save-tables");
inline constexpr QLatin1String after("after");
inline constexpr QLatin1String duration("duration");
inline constexpr QLatin1String observer("observer");
inline constexpr QLatin1String log("log");
} // namespace option

/// The parser that knows the options of the program. There must be an application object.
struct CommandLine {
    Q_DECLARE_TR_FUNCTIONS(OptionsResult)

public:
    CommandLine();

    /// What is wrong with options standing beside others, whatever their values; empty when nothing is.
    QString contradiction() const;
    static QList<QCommandLineOption> options();

    QCommandLineParser parser;
};

/// The arguments of the program, taken apart; both lists start with its name.
struct ProgramArguments {
    QStringList own;
    QStringList qts; ///< Qt's own options, such as "-platform offscreen", with one or two dashes
};

/// Options of ours, which have two dashes, come before Qt's of the same name. An option's value stays with it; behind
/// "--" everything is ours.
ProgramArguments takeApart(const QStringList &arguments);

} // namespace host
