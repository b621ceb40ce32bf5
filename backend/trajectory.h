// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "backend/pose.h"

#include <QString>
#include <QVector>

#include <memory>

namespace backend {

struct ReadingProgress;

/// A recorded motion of one body. Sampled by time; it is repeated from the start when it is over.
class Trajectory {
public:
    struct Sample {
        double time = 0.0; ///< [s] since the first sample
        Pose pose;
    };

    /// \a samples are at least one, their times increasing from 0.
    explicit Trajectory(QVector<Sample> samples);

    const QVector<Sample> &samples() const { return all; }
    /// [s] from the first sample to its repetition: the recording and one more median step. 0 for a single sample.
    double duration() const { return loop; }
    /// Samples a second while it was recorded, by the median distance of their times; 0 for a single sample.
    double rate() const { return samplesPerSecond; }
    /// The last sample recorded at or before \a seconds since the start of the recording; nothing is interpolated,
    /// so that what is shown is what was measured.
    const Pose &poseAt(double seconds) const;

private:
    QVector<Sample> all;
    double loop = 0.0;
    double samplesPerSecond = 0.0;
};

/// A line of a trajectory file that could not be used.
struct SkippedLine {
    int number = 0; ///< counted from 1
    QString reason;
};

/// What came of reading a trajectory file. Without a trajectory, error says why.
struct TrajectoryResult {
    std::shared_ptr<const Trajectory> trajectory;
    QString error; ///< names the file
    QVector<SkippedLine> skipped; ///< the first hundred of them
    int skippedCount = 0; ///< all of them

    /// One text per entry of \a skipped and one for the rest, each naming \a fileName.
    QStringList warnings(const QString &fileName) const;
};

enum class ReadTrajectory { All, FirstSample };

/// Reads lines "timestamp tx ty tz qx qy qz qw" [s, m, quaternion] with blanks between the fields, or, if the first
/// line that can be used is one, lines "timestamp,px,py,pz,qw,qx,qy,qz" [ns, m, quaternion], with numbers in the C
/// locale. Empty lines and lines that start with '#' are comments, more fields than eight are ignored. A line with too
/// few fields, something that is no finite number, a place more than 1000 km away, a time that does not increase or a
/// quaternion of length 0 is skipped and reported. Quaternions are normalised; a denormal length counts as 0.
///
/// Adds what it has read to \a progress, if there is one, and gives up when that is cancelled. With FirstSample it
/// stops at the first usable line.
TrajectoryResult loadTrajectory(const QString &fileName, ReadingProgress *progress = nullptr,
                                ReadTrajectory part = ReadTrajectory::All);

} // namespace backend
