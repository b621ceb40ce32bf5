// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/textansweringhost.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QRegularExpression>

#include <functional>

/// A command channel that answers from a script and writes down every call, one readable line each:
///
///     requestString body desc standard b01
///     sendCommand body filter6d_enabled standard b01 no
///     log Error: Unable to get number of bodies
///     startOutput 6d
///     registerRequester
///
/// A query without an answer in the script fails. A command is accepted, and where the script has an answer to the
/// command without its last word, that word is the answer from then on, as with a backend that keeps its settings. Not
/// for several threads.
class ScriptedHost final : public TextAnsweringHost {
public:
    QHash<QByteArray, QByteArray> answers; ///< by the whole command text; numbers, flags and lists as text, too
    QRegularExpression failing; ///< queries and commands whose text matches somewhere fail; an empty pattern: none
    int failCall = 0; ///< this one of the next queries and commands fails, 1 being the next; 0: none

    std::function<void()> onCall; ///< runs at the start of each call, where set

    QByteArrayList calls; ///< all calls, in order
    QByteArrayList formats; ///< the formats of the queries and commands among them

    /// The calls since the last time, which are forgotten with their formats.
    QByteArrayList takeCalls();
    /// The calls that begin with \a operation ("log", "sendCommand"), without that word.
    QByteArrayList callsOf(const QByteArray &operation) const;

    Answer answerTo(const Call &call) override;
    void callReserved(int number) override;
    void startOutput(const char *tag, Requester *requester) override;
    void stopOutput(const char *tag, Requester *requester) override;
    void registerRequester(Requester *requester) override;
    void unregisterRequester(Requester *requester) override;
    void logMessage(const char *category, const char *sender, qint32 level, const char *text) override;

private:
    void note(const QByteArray &call);
    bool isToFail(const QByteArray &command);
};
