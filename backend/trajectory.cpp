// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trajectory.h"

#include "backend/plainfile.h"
#include "backend/texts.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace backend {

namespace {

constexpr int fieldCount = 8;
constexpr int longestLine = 4096; // [bytes]
constexpr int reportedLines = 100;
constexpr double farthestPosition = 1.0e6; // [m]
constexpr double latest = 1.0e18; // [s] from 0, so that differences of times stay finite
constexpr double millimetresPerMetre = 1000.0;

/// What a line holds: a time [s] and a pose, or a reason why not, or neither for a comment.
struct Line {
    bool usable = false;
    double time = 0.0;
    Pose pose;
    QString reason;
};

Line refused(const QString &reason)
{
    Line line;
    line.reason = reason;
    return line;
}

Line parseLine(const QByteArray &text)
{
    const QByteArray plain = text.simplified();
    if (plain.isEmpty() || plain.startsWith('#'))
        return {};
    const QList<QByteArray> fields = plain.split(' ');
    if (fields.size() < fieldCount)
        return refused(Backend::tr("%1 instead of 8 fields").arg(fields.size()));

    std::array<double, fieldCount> numbers{};
    for (int i = 0; i < fieldCount; ++i) {
        bool ok = false;
        const double number = fields[i].toDouble(&ok);
        if (!ok || !std::isfinite(number))
            return refused(Backend::tr("\"%1\" is not a number").arg(QString::fromUtf8(fields[i].left(40))));
        numbers[static_cast<std::size_t>(i)] = number;
    }
    const auto [time, x, y, z, qx, qy, qz, qw] = numbers;
    if (std::max({std::abs(x), std::abs(y), std::abs(z)}) > farthestPosition)
        return refused(Backend::tr("the place is more than 1000 km away"));
    if (std::abs(time) > latest)
        return refused(Backend::tr("the time is out of range"));
    const double length = std::hypot(std::hypot(qx, qy), std::hypot(qz, qw));
    if (!std::isnormal(length)) // denormal numbers are too coarse to be divided to length 1
        return refused(Backend::tr("the quaternion has no direction"));

    Line line;
    line.usable = true;
    line.time = time;
    line.pose.position = {x * millimetresPerMetre, y * millimetresPerMetre, z * millimetresPerMetre};
    line.pose.rotation = rotationOfQuaternion({qx / length, qy / length, qz / length, qw / length});
    return line;
}

/// The next line of \a file, without the part beyond the longest line. Returns whether the line was whole.
bool readLine(QFile &file, QByteArray &text)
{
    text = file.readLine(longestLine);
    bool whole = true;
    QByteArray rest = text;
    while (!rest.endsWith('\n') && !file.atEnd()) {
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
    loop = all.last().time + *middle;
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

TrajectoryResult loadTrajectory(const QString &fileName)
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

    QVector<Trajectory::Sample> samples;
    double start = 0.0;
    QByteArray text;
    for (int number = 1; !file.atEnd(); ++number) {
        const bool whole = readLine(file, text);
        if (number == 1 && text.startsWith("\xEF\xBB\xBF"))
            text.remove(0, 3);
        Line line = whole ? parseLine(text) : refused(Backend::tr("it is too long"));
        if (line.usable && samples.isEmpty())
            start = line.time;
        if (line.usable && !samples.isEmpty() && !(line.time - start > samples.last().time))
            line = refused(Backend::tr("its time is not later than that of the line before"));
        if (line.usable)
            samples.append({line.time - start, line.pose});
        if (line.reason.isEmpty())
            continue;
        ++result.skippedCount;
        if (result.skipped.size() < reportedLines)
            result.skipped.append({number, line.reason});
    }
    if (file.error() != QFileDevice::NoError)
        result.error = Backend::tr("%1 cannot be read: %2.").arg(fileName, file.errorString());
    else if (samples.isEmpty())
        result.error = Backend::tr("%1 holds no usable line of a trajectory.").arg(fileName);
    else
        result.trajectory = std::make_shared<const Trajectory>(std::move(samples));
    return result;
}

} // namespace backend
