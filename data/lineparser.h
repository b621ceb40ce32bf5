// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "data/stores.h"

/// The kinds of lines that are read.
enum class LineFormat {
    Bodies, ///< "6d"
    InertialBodies, ///< "6di"
    Markers ///< "3d"
};

/// How the reading of a line ended.
struct ParsedLine {
    bool isComplete = false; ///< no count, block or number was missing
    bool isSensorBack = false; ///< complete, and a body of one of the absent sensors' rows has inertial data again
};

/// Reads \a line, zero-terminated, into the store of its format. What was read before a fault stays; a missing count
/// leaves the bodies as they are, and deletes all markers. Allocates only where a store grows beyond its memory, or
/// where it gives back what a far larger frame has left. Throws std::bad_alloc for more than a million bodies or where
/// memory runs out: the bodies are as they were then, and markers made by then stay.
ParsedLine parseLine(LineFormat format, const char *line, Stores &stores);
