// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/liveness/liveness.h"

#include <QVector>

namespace host {

/// What can be said of a body now, whatever the streams that it comes in.
struct BodyState {
    Q_DECLARE_TR_FUNCTIONS(BodyState)

public:
    enum class Kind {
        Tracked, ///< by one stream at least
        Lost,
        NotYetTracked,
        Unknown, ///< the source is not live
    };

    qint32 id = 0; ///< as in the lines
    Kind kind = Kind::Unknown;
    std::optional<std::chrono::nanoseconds> sinceTracked; ///< none when it never was

    /// "tracked", "lost for 4 s", "unknown, last tracked 12 s ago"; an age of less than 1 s is no part of "tracked".
    QString words() const;
};

/// One for each body, by their ids.
QVector<BodyState> bodyStates(const HealthSnapshot &snapshot, const Liveness &liveness);

} // namespace host
