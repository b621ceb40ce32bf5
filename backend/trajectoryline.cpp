// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/trajectoryline.h"

#include "backend/texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace backend {

namespace {

constexpr int fieldCount = 8;
constexpr double farthestPosition = 1.0e6; // [m]
constexpr double latest = 1.0e18; // [s] from 0, so that differences of times stay finite
constexpr qint64 latestNanoseconds = Q_INT64_C(4000000000000000000); // likewise, in 64 bits; the year 2096
constexpr double millimetresPerMetre = 1000.0;

bool isBlank(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

/// A part of a line that the line outlives.
struct Field {
    const char *start = nullptr;
    const char *end = nullptr;

    QByteArray text() const { return QByteArray::fromRawData(start, static_cast<int>(end - start)); }
};

Field withoutBlanks(const char *start, const char *end)
{
    while (start != end && isBlank(*start))
        ++start;
    while (start != end && isBlank(end[-1]))
        --end;
    return {start, end};
}

struct Fields {
    std::array<Field, fieldCount> first;
    int count = 0; ///< of all

    void append(const Field &field)
    {
        if (count < fieldCount)
            first[static_cast<std::size_t>(count)] = field;
        ++count;
    }
};

Fields fieldsBetweenBlanks(const Field &line)
{
    Fields fields;
    for (const char *start = line.start; start != line.end;) {
        const char *const end = std::find_if(start, line.end, isBlank);
        fields.append({start, end});
        start = std::find_if_not(end, line.end, isBlank);
    }
    return fields;
}

Fields fieldsBetweenCommas(const Field &line)
{
    Fields fields;
    for (const char *start = line.start;;) {
        const char *const end = std::find(start, line.end, ',');
        fields.append(withoutBlanks(start, end));
        if (end == line.end)
            return fields;
        start = end + 1;
    }
}

/// Whether the first comma follows the first word: in the other layout one may still stand in a comment at the end.
bool looksLikeCommas(const Field &line)
{
    const char *const comma = std::find(line.start, line.end, ',');
    const Field word = withoutBlanks(line.start, comma);
    return comma != line.end && std::none_of(word.start, word.end, isBlank);
}

TrajectoryLine refused(const QString &reason)
{
    TrajectoryLine line;
    line.reason = reason;
    return line;
}

QString quoted(const Field &field)
{
    return QString::fromUtf8(field.text().left(40));
}

TrajectoryLine parse(const Fields &fields, TrajectoryLayout layout)
{
    if (fields.count < fieldCount)
        return refused(Backend::tr("%1 instead of 8 fields").arg(fields.count));
    const bool hasCommas = layout == TrajectoryLayout::Commas;
    TrajectoryLine line;
    std::array<double, fieldCount> numbers{};
    for (std::size_t i = 0; i < fieldCount; ++i) {
        bool ok = false;
        if (hasCommas && i == 0) {
            line.time.nanoseconds = fields.first[i].text().toLongLong(&ok);
            if (!ok)
                return refused(Backend::tr("\"%1\" is not a whole number of nanoseconds").arg(quoted(fields.first[i])));
            continue;
        }
        numbers[i] = fields.first[i].text().toDouble(&ok);
        if (!ok || !std::isfinite(numbers[i]))
            return refused(Backend::tr("\"%1\" is not a number").arg(quoted(fields.first[i])));
    }
    if (hasCommas) // w comes first
        std::rotate(numbers.begin() + 4, numbers.begin() + 5, numbers.end());
    const auto [time, x, y, z, qx, qy, qz, qw] = numbers;
    if (std::max({std::abs(x), std::abs(y), std::abs(z)}) > farthestPosition)
        return refused(Backend::tr("the place is more than 1000 km away"));
    const qint64 nanoseconds = line.time.nanoseconds;
    if (std::abs(time) > latest || nanoseconds > latestNanoseconds || nanoseconds < -latestNanoseconds)
        return refused(Backend::tr("the time is out of range"));
    const double length = std::hypot(std::hypot(qx, qy), std::hypot(qz, qw));
    if (!std::isnormal(length)) // denormal numbers are too coarse to be divided to length 1
        return refused(Backend::tr("the quaternion has no direction"));

    line.usable = true;
    line.time.seconds = time;
    line.pose.position = {x * millimetresPerMetre, y * millimetresPerMetre, z * millimetresPerMetre};
    line.pose.rotation = rotationOfQuaternion({qx / length, qy / length, qz / length, qw / length});
    return line;
}

} // namespace

double FileTime::since(const FileTime &start) const
{
    return seconds - start.seconds + static_cast<double>(nanoseconds - start.nanoseconds) * 1.0e-9;
}

TrajectoryLine parseTrajectoryLine(const QByteArray &text, TrajectoryLayout *layout)
{
    const Field whole = withoutBlanks(text.constData(), text.constData() + text.size());
    if (whole.start == whole.end || *whole.start == '#')
        return {};
    TrajectoryLayout ofLine = *layout;
    if (ofLine == TrajectoryLayout::Unknown)
        ofLine = looksLikeCommas(whole) ? TrajectoryLayout::Commas : TrajectoryLayout::Blanks;
    const bool hasCommas = ofLine == TrajectoryLayout::Commas;
    TrajectoryLine line = parse(hasCommas ? fieldsBetweenCommas(whole) : fieldsBetweenBlanks(whole), ofLine);
    if (line.usable)
        *layout = ofLine;
    return line;
}

QString wantedColumns()
{
    return Backend::tr("Columns wanted: timestamp tx ty tz qx qy qz qw [s, m, quaternion] with blanks between them, or "
                       "timestamp,px,py,pz,qw,qx,qy,qz [ns, m, quaternion].");
}

} // namespace backend
