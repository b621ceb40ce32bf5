// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

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

/// Whether the program runs many times slower than it is: the environment variable VORNAK_SLOW is 1, as valgrind's
/// script sets it.
inline bool isSlowRun()
{
    return qEnvironmentVariableIntValue("VORNAK_SLOW") == 1;
}

/// How often something is repeated: \a perChange, a tenth of it (at least 1) under a sanitizer or in a slow run,
/// \a whole in a long run.
inline qint64 amount(qint64 perChange, qint64 whole)
{
    if (isLongRun())
        return whole;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return qMax<qint64>(perChange / 10, 1);
#else
    return isSlowRun() ? qMax<qint64>(perChange / 10, 1) : perChange;
#endif
}

/// The end of a run by the clock: \a milliseconds per change, VORNAK_LONG_MINUTES minutes (5 unless set) in a long run.
class TimeLimit {
public:
    explicit TimeLimit(qint64 milliseconds)
        : limit(isLongRun() ? longMilliseconds() : milliseconds)
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
