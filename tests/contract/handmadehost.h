// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QHash>
#include <QSet>

#include <functional>

/// A host's command channel without a class: the object that the plug-in takes for an IOManager is this record, whose
/// first member leads to a table of 17 functions laid out by hand. It records every call and answers from a script.
/// GUI thread only; a call from another thread ends the test.
struct HandMadeHost {
    using Entry = void (*)();

    const Entry *table; ///< must stay first: it is what a compiler calls the object's table of virtual operations
    QByteArrayList calls; ///< "requestInt: standard number_of_bodies", in the order of the calls
    QByteArrayList violations; ///< what no caller may do: an unknown format, a foreign requester
    QHash<QByteArray, QByteArray> answers; ///< by question; a question without an answer fails
    QSet<QByteArray> refusedCommands; ///< these fail, every other command is accepted
    int failure = -1; ///< the result of whatever fails; never 0
    void *requester = nullptr; ///< as registered; kept after it is unregistered
    bool isRequesterRegistered = false;
    std::function<void()> onCall; ///< runs inside each call, after it was recorded

    HandMadeHost();

    /// Script: two active bodies, the first one calibrated and named, its filter on; no head, no sensors, no reference.
    void answerAsSmallSetup();
    /// "question=answer" sets an answer, "question!" makes it fail, "command~" makes the command fail; one per line.
    void changeScript(const char *changes);

    /// The calls since the last take, without the polling of the sensors.
    QByteArrayList takeCalls();
    /// Of takeCalls, those to logMessage, shortened to "category sender level text".
    QByteArrayList takeLog();
};

/// The lines of a text that are not blank, without the blanks around them.
QByteArrayList linesOf(const char *text);
