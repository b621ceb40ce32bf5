// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

#include <optional>

namespace backend {

/// Cuts the bytes of a source into lines at each line feed. A carriage return in front of one belongs to the line, and
/// any other byte is as good as any. Keeps no more than the longest line.
class LineSplitter {
public:
    static constexpr int longestLine = 1024 * 1024; ///< [bytes], the line feed not counted

    struct Line {
        QByteArray text; ///< without the line feed; empty where it is too long
        bool isTooLong = false;
    };

    /// The lines that \a size bytes from \a bytes on complete, in their order.
    QVector<Line> add(const char *bytes, int size);
    /// What follows the last line feed, at the end of the source; nothing when nothing does.
    std::optional<Line> rest();

private:
    void append(const char *bytes, int size);
    Line takeLine();

    Line pending;
};

} // namespace backend
