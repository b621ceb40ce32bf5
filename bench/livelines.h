// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <vector>

/// Lines like those of a running system: signs and digit counts as random as the data, and many different ones, since a
/// line that comes again flatters the branch predictor.
class LiveLines {
public:
    /// \a tag: "6d", "6di" or "3d".
    LiveLines(const QByteArray &tag, int count);

    const QByteArray &next();
    qint64 bytes() const; ///< of all lines together
    std::size_t size() const { return lines.size(); }

private:
    std::vector<QByteArray> lines;
    std::size_t place = 0;
};
