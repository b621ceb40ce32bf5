// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/scenario.h"

namespace backend {

/// The words of a text, blanks between them removed.
using Words = QList<QByteArray>;
using Answer = std::optional<QByteArray>;

/// What queries are answered from.
struct QueryContext {
    const Scenario &scenario;
    double seconds = 0.0; ///< since the start of the backend
};

/// A query that backends know from a version on. In the pattern, "*" stands for one word and "..." for all the rest;
/// they are the arguments, in their order.
struct QueryEntry {
    const char *pattern = "";
    int major = 0;
    int minor = 0;
    Answer (*answer)(const QueryContext &context, const Words &arguments) = nullptr;
};

/// A command, described like a query. \a execute returns whether it was accepted.
struct CommandEntry {
    const char *pattern = "";
    int major = 0;
    int minor = 0;
    bool (*execute)(Scenario &scenario, const Words &arguments) = nullptr;
};

const QVector<QueryEntry> &bodyQueries();
const QVector<QueryEntry> &deviceQueries(); ///< wandors, outputs, sensors, configuration
const QVector<QueryEntry> &filterQueries();
const QVector<CommandEntry> &allCommands();

/// The answer to \a query, of any of the tables. A query that the scenario's version does not know yet has none, like
/// an unknown one.
Answer answerTo(const QByteArray &query, const QueryContext &context);

Words wordsOf(const QByteArray &text);

/// The arguments that \a words give to \a pattern; nothing when they don't fit.
std::optional<Words> matchWords(const char *pattern, const Words &words);

/// The number of a text such as "b07" or "t12" that starts with \a letter; 0 for anything else.
int numberAfter(char letter, const QByteArray &text);

QByteArray yesNo(bool yes);
QByteArray numberText(double number);

/// The filter of a body given by the words "standard" or "wandor" and "b01" or so; nullptr: there is none.
const FilterSettings *filterOf(const Scenario &scenario, const QByteArray &kind, const QByteArray &number);

} // namespace backend
