// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/textansweringhost.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QSet>

#include <functional>

/// A command channel in front of another one, whose queries and commands fail as wished. It keeps the book of who is
/// registered and subscribed, as a host does. GUI thread.
class FaultyHost final : public TextAnsweringHost {
public:
    explicit FaultyHost(TextAnsweringHost &answeringHost)
        : inner(answeringHost)
    {
    }

    int failFrom = 0; ///< the number of the first query or command that fails, 1 being the next; 0: none
    int failTo = 0; ///< the number of the last one
    /// When set, a query that is to fail is answered all the same, from the text that this makes of its command.
    std::function<QByteArray(const QByteArray &)> substitute;
    /// Called before every query and command.
    std::function<void()> beforeCall;

    int count = 0; ///< queries and commands since the faults were set
    QByteArrayList record; ///< "FAILED <command>" and "log <text>", in order
    QSet<Requester *> registered;
    QSet<QByteArray> outputs; ///< tags that go to the registered requesters

    /// Fails the queries and commands from number \a first to number \a last, counted from the next one, and forgets
    /// the record.
    void fail(int first, int last);
    void failNothing() { fail(0, 0); }

    Answer answerTo(const Call &call) override;
    void callReserved(int number) override { inner.callReserved(number); }
    void startOutput(const char *tag, Requester *requester) override;
    void stopOutput(const char *tag, Requester *requester) override;
    void registerRequester(Requester *requester) override;
    void unregisterRequester(Requester *requester) override;
    void logMessage(const char *category, const char *sender, qint32 level, const char *text) override;

private:
    bool isToFail(const QByteArray &command);

    TextAnsweringHost &inner;
};
