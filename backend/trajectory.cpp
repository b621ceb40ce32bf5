// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trajectory.h"

#include "backend/plainfile.h"
#include "backend/readingprogress.h"
#include "backend/texts.h"
#include "backend/trajectoryline.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace backend {

namespace {

constexpr int longestLine = 4096; // [bytes]
constexpr double usualDeviation = 0.2; // of the median step
constexpr int reportedLines = 100;

bool isCancelled(const ReadingProgress *progress)
{
    return progress && progress->cancelled;
}

/// The next line of \a file, without the part beyond the longest line. Returns whether the line was whole.
bool readLine(QFile &file, QByteArray &text, const ReadingProgress *progress)
{
    text = file.readLine(longestLine);
    bool whole = true;
    QByteArray rest = text;
    while (!rest.endsWith('\n') && !file.atEnd() && !isCancelled(progress)) {
        whole = false;
        rest = file.readLine(longestLine);
        if (rest.isEmpty())
            break;
    }
    return whole;
}

} // namespace

Trajectory::Trajectory(QVector<Sample> samples)
    : all(std::move(samples))
{
    QVector<double> steps;
    for (int i = 1; i < all.size(); ++i)
        steps.append(all[i].time - all[i - 1].time);
    if (steps.isEmpty())
        return;
    auto *const middle = steps.begin() + steps.size() / 2;
    std::nth_element(steps.begin(), middle, steps.end());
    const double median = *middle;
    loop = all.last().time + median;
    // A file that writes few decimals rounds its times, and the median is one of two steps that both are a bit off:
    // the mean of the steps like it is exact. Gaps are none of them.
    const auto *const usual = std::partition(steps.begin(), steps.end(), [median](double step) {
        return std::abs(step - median) <= usualDeviation * median;
    });
    samplesPerSecond = static_cast<double>(usual - steps.begin()) / std::accumulate(steps.cbegin(), usual, 0.0);
}

const Pose &Trajectory::poseAt(double seconds) const
{
    if (!(loop > 0.0) || !(seconds > 0.0))
        return all.first().pose;
    const double time = std::fmod(seconds, loop);
    const auto *const later = std::upper_bound(all.cbegin(), all.cend(), time,
                                               [](double value, const Sample &sample) { return value < sample.time; });
    return std::prev(later)->pose;
}

QStringList TrajectoryResult::warnings(const QString &fileName) const
{
    QStringList texts;
    for (const SkippedLine &line : skipped)
        texts += Backend::tr("%1: line %2 is skipped: %3.").arg(fileName).arg(line.number).arg(line.reason);
    if (skippedCount > skipped.size())
        texts += Backend::tr("%1: %2 more lines are skipped.").arg(fileName).arg(skippedCount - skipped.size());
    return texts;
}

namespace {

/// Collects the usable lines of a file.
class TrajectoryReader {
public:
    explicit TrajectoryReader(TrajectoryResult &result)
        : result(result)
    {
    }

    void add(const QByteArray &text, bool isWhole)
    {
        ++number;
        TrajectoryLine line;
        if (isWhole)
            line = parseTrajectoryLine(text, &layout);
        else
            line.reason = Backend::tr("it is too long");
        if (line.usable && samples.isEmpty())
            start = line.time;
        if (line.usable && !samples.isEmpty() && !(line.time.since(start) > samples.last().time)) {
            line.usable = false;
            line.reason = Backend::tr("its time is not later than that of the line before");
        }
        if (line.usable)
            samples.append({line.time.since(start), line.pose});
        if (line.reason.isEmpty())
            return;
        ++result.skippedCount;
        if (result.skipped.size() < reportedLines)
            result.skipped.append({number, line.reason});
    }

    void finish(const QString &fileName)
    {
        if (!samples.isEmpty()) {
            result.trajectory = std::make_shared<const Trajectory>(std::move(samples));
            return;
        }
        result.error = Backend::tr("%1 holds no usable line of a trajectory.").arg(fileName) + QLatin1Char(' ');
        if (!result.skipped.isEmpty()) {
            const SkippedLine &first = result.skipped.first();
            result.error += Backend::tr("Line %1: %2.").arg(first.number).arg(first.reason) + QLatin1Char(' ');
        }
        result.error += wantedColumns();
    }

    bool hasSample() const { return !samples.isEmpty(); }

private:
    TrajectoryResult &result;
    TrajectoryLayout layout = TrajectoryLayout::Unknown;
    int number = 0; // of the last line
    FileTime start;
    QVector<Trajectory::Sample> samples;
};

} // namespace

TrajectoryResult loadTrajectory(const QString &fileName, ReadingProgress *progress, ReadTrajectory part)
{
    TrajectoryResult result;
    if (isPipeOrDevice(fileName)) {
        result.error = Backend::tr("%1 cannot be read: it is a pipe or a device.").arg(fileName);
        return result;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        result.error = Backend::tr("%1 cannot be read: %2.").arg(fileName, file.errorString());
        return result;
    }

    TrajectoryReader reader(result);
    const qint64 readBefore = progress ? progress->read.load() : 0;
    QByteArray text;
    while (!file.atEnd() && !(part == ReadTrajectory::FirstSample && reader.hasSample())) {
        const bool isFirst = file.pos() == 0;
        const bool isWhole = readLine(file, text, progress);
        if (isCancelled(progress)) {
            result.error = Backend::tr("The reading of %1 was cancelled.").arg(fileName);
            return result;
        }
        if (isFirst && text.startsWith("\xEF\xBB\xBF"))
            text.remove(0, 3);
        reader.add(text, isWhole);
        if (progress)
            progress->read = readBefore + file.pos();
    }
    if (file.error() != QFileDevice::NoError)
        result.error = Backend::tr("%1 cannot be read: %2.").arg(fileName, file.errorString());
    else
        reader.finish(fileName);
    return result;
}

} // namespace backend
