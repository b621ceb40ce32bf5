// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

/// The words of a text, blanks between them removed.
using Words = QList<QByteArray>;
using Answer = std::optional<QByteArray>;

/// What queries are answered from.
struct Situation {
    const Scenario &scenario;
    double seconds = 0.0; ///< since the start of the backend
};

/// A query that backends know from a version on. In the pattern, "*" stands for one word and "..." for all that are
/// left; they are the arguments, in their order.
struct Query {
    const char *pattern = "";
    int major = 0;
    int minor = 0;
    Answer (*answer)(const Situation &situation, const Words &arguments) = nullptr;
};

/// A command, described like a query. Returns whether it was carried out.
struct Command {
    const char *pattern = "";
    int major = 0;
    int minor = 0;
    bool (*carryOut)(Scenario &scenario, const Words &arguments) = nullptr;
};

const QVector<Query> &bodyQueries();
const QVector<Query> &deviceQueries(); ///< wandors, outputs, sensors, configuration
const QVector<Query> &filterQueries();
const QVector<Command> &allCommands();

Words wordsOf(const QByteArray &text);

/// The arguments that \a words give to \a pattern; nothing when they don't fit.
std::optional<Words> matchWords(const char *pattern, const Words &words);

/// The number of a text such as "b07" or "t12" that begins with \a letter; 0 for anything else.
int numberAfter(char letter, const QByteArray &text);

/// "standard b07" for the word "standard" and number 7.
QByteArray bodyText(const QByteArray &kind, int number);

QByteArray yesNo(bool yes);
QByteArray numberText(double number);

/// The flags of the output \a tag in \a scenario; nullptr: there is no such output in its version.
const OutputFlags *outputFlags(const Scenario &scenario, const QByteArray &tag);

/// The filter of a body given by the words "standard" or "wandor" and "b01" or so; nullptr: there is none.
const FilterSettings *filterOf(const Scenario &scenario, const QByteArray &kind, const QByteArray &number);

/// Whether something offered to \a bodies is offered to \a body, a text such as "standard b01".
bool isOffered(const QVector<QByteArray> &bodies, const QByteArray &body);

/// The preset or mode of that id; nullptr: unknown.
const FilterPreset *presetOf(const FilterOffer &filter, const QByteArray &id);
const FilterMode *modeOf(const FilterOffer &filter, const QByteArray &id);
