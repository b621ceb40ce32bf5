// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

namespace host {

/// What became of all lines since the start of the program.
struct LineTotals {
    quint64 sent = 0; ///< deliveries to requesters, and lines that went to none: ignored ones, and too long ones
    quint64 refused = 0; ///< of these, the ones that could not be read
    quint64 ignored = 0; ///< of these, the lines that nobody had subscribed to
    quint64 late = 0; ///< lines that waited too long to be sent
    std::optional<quint64> unknown; ///< lines of the source that are none of output; nothing if it has no such lines
    quint64 skippedFrames = 0; ///< frames left out because the host was late
};

} // namespace host
