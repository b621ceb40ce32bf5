// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/pose.h"

#include <QByteArray>
#include <QString>

namespace backend {

/// What the columns of a trajectory file are.
enum class TrajectoryLayout {
    Unknown, ///< no line could be used yet
    Blanks, ///< "timestamp tx ty tz qx qy qz qw" [s, m, quaternion]: the layout of the TUM RGB-D benchmark
    Commas ///< "timestamp,px,py,pz,qw,qx,qy,qz" [ns, m, quaternion]: the ASL layout of the EuRoC data sets
};

/// A time as it stands in a file, of which one part is always 0: nanoseconds since 1970 do not fit into a double.
struct FileTime {
    double seconds = 0.0;
    qint64 nanoseconds = 0;

    double since(const FileTime &start) const; ///< [s]
};

/// What a line holds: a time and a pose, or a reason why not, or neither for a comment.
struct TrajectoryLine {
    bool usable = false;
    FileTime time;
    Pose pose; ///< [mm]
    QString reason;
};

/// Reads one line, which ends with its line feed or without. \a layout is told by the first line that can be used, and
/// left alone from then on.
TrajectoryLine parseTrajectoryLine(const QByteArray &text, TrajectoryLayout *layout);

/// Both layouts in words, for whoever has neither.
QString wantedColumns();

} // namespace backend
