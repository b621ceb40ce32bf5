// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <cstddef>

namespace host {

/// The names of the options.
namespace option {
/// \a text with its length: QLatin1String's own way to find it is no constant expression for clang.
template<std::size_t size> constexpr QLatin1String named(const char (&text)[size])
{
    return QLatin1String(text, static_cast<int>(size) - 1);
}

inline constexpr QLatin1String help = named("help");
inline constexpr QLatin1String version = named("version");
inline constexpr QLatin1String simulate = named("simulate");
inline constexpr QLatin1String list = named("list-scenarios");
inline constexpr QLatin1String replay = named("replay");
inline constexpr QLatin1String standardInput = named("stdin");
inline constexpr QLatin1String rate = named("rate");
inline constexpr QLatin1String backendVersion = named("backend-version");
inline constexpr QLatin1String modules = named("modules");
inline constexpr QLatin1String fail = named("fail");
inline constexpr QLatin1String latency = named("latency");
inline constexpr QLatin1String screenshot = named("screenshot");
inline constexpr QLatin1String saveTables = named("save-tables");
inline constexpr QLatin1String after = named("after");
inline constexpr QLatin1String duration = named("duration");
inline constexpr QLatin1String observer = named("observer");
inline constexpr QLatin1String log = named("log");
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
