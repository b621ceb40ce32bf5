// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/sanitizers.h"

#include <QElapsedTimer>
#include <QtGlobal>

#include <cstdlib>

/// Whether the long variant of the tests is asked for: the environment variable VORNAK_LONG is 1.
inline bool isLongRun()
{
    return qEnvironmentVariableIntValue("VORNAK_LONG") == 1;
}

/// Qt Test ends a function after five minutes, unless told otherwise before the first one runs.
inline const bool watchdogIsTold =
    isLongRun() && ::setenv("QTEST_FUNCTION_TIMEOUT", "2000000000", /*overwrite*/ 0) == 0; // [ms]

/// Whether the program runs many times slower than it is: under a sanitizer, or with the environment variable
/// VORNAK_SLOW at 1, as valgrind's script sets it.
inline bool isSlowRun()
{
#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER
    return true;
#else
    return qEnvironmentVariableIntValue("VORNAK_SLOW") == 1;
#endif
}

/// How often something is repeated while there is time.
struct Repetitions {
    qint64 wanted = 1;
    qint64 least = 1; ///< with fewer a test fails: it has shown too little
};

/// Wanted are \a perChange, a tenth of it in a slow run, \a whole in a long run. The least is a
/// tenth of what is wanted; in a long run, whose time somebody has chosen, as many as are wanted for each change.
inline Repetitions repetitions(qint64 perChange, qint64 whole)
{
    const qint64 usual = isSlowRun() ? qMax<qint64>(perChange / 10, 1) : perChange;
    if (isLongRun())
        return {whole, usual};
    return {usual, qMax<qint64>(usual / 10, 1)};
}

/// The end of a run by the clock: \a milliseconds per change; in a long run one of \a parts equal parts of
/// VORNAK_LONG_MINUTES minutes (5 unless set).
class TimeLimit {
public:
    explicit TimeLimit(qint64 milliseconds, int parts = 1)
        : limit(isLongRun() ? longMilliseconds() / parts : milliseconds)
    {
        timer.start();
    }

    bool isOver() const { return timer.elapsed() >= limit; }

    /// The minutes that are left, rounded up.
    qint64 minutesLeft() const { return qMax<qint64>(limit - timer.elapsed() + 59'999, 0) / 60'000; }

private:
    static qint64 longMilliseconds()
    {
        bool isNumber = false;
        const int minutes = qEnvironmentVariableIntValue("VORNAK_LONG_MINUTES", &isNumber);
        return (isNumber ? minutes : 5) * qint64{60'000};
    }

    QElapsedTimer timer;
    qint64 limit; ///< [ms]
};
