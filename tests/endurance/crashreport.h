// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// Where a process came to its end. Lies in memory that it shares with its parent.
struct CrashReport {
    enum Place { Alive, InOurCode, InQt, Elsewhere };

    Place place = Alive;
    std::array<char, 300> text{}; ///< the function, as far as it is known, and the next of ours that called it
};

/// From now on a crash or an exception that nobody may let pass is written to \a report, and ends the process. The
/// place is that of the function which crashed, or which does not let the exception pass; functions of the system
/// count as those that called them. All of this executable is our code.
void reportCrashTo(CrashReport &report);
