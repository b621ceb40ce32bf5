// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/linestatistics.h"

#include "backend/linestream.h"

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t mostTags = 8;
constexpr std::chrono::nanoseconds shortestSilence = 1s;

} // namespace

void LineStatistics::add(const backend::ReceivedLine &line)
{
    // A sequence that starts again belongs to a source that has.
    if (lastSequence && line.sequence > *lastSequence)
        missing += line.sequence - *lastSequence - 1;
    lastSequence = line.sequence;
    if (lastTime && line.time - *lastTime >= shortestSilence)
        lastSilence = line.time - *lastTime;
    lastTime = std::max(line.time, lastTime.value_or(line.time));

    Stream *stream = streamOf(line.line.tag);
    if (!stream)
        return;
    stream->arrivals.add(line.time);
    readBodies(line.line.tag, line.line.text, bodies);
    stream->bodies.add(bodies, line.time);
}

HealthSnapshot LineStatistics::snapshot(Time now)
{
    HealthSnapshot snapshot;
    snapshot.missing = missing;
    snapshot.lastSilence = lastSilence;
    if (lastTime)
        snapshot.age = std::max(Time(0), now - *lastTime);
    for (const std::unique_ptr<Stream> &stream : streams) {
        const ArrivalTimes &arrivals = stream->arrivals;
        StreamFigures figures;
        figures.tag = stream->tag;
        figures.lines = arrivals.count();
        figures.rate1 = arrivals.rate(1s, now);
        figures.rate10 = arrivals.rate(10s, now);
        figures.age = std::max(Time(0), now - arrivals.last());
        figures.longestGap = arrivals.longestGap(now);
        figures.frameTime = arrivals.frameTime();
        if (figures.frameTime)
            snapshot.frameTime = std::max(*figures.frameTime, snapshot.frameTime.value_or(Time(0)));
        snapshot.streams.append(figures);
        stream->bodies.figures(stream->tag, now, snapshot.bodies);
    }
    return snapshot;
}

LineStatistics::Stream *LineStatistics::streamOf(const QByteArray &tag)
{
    for (const std::unique_ptr<Stream> &stream : streams) {
        if (stream->tag == tag)
            return stream.get();
    }
    if (streams.size() == mostTags)
        return nullptr;
    streams.push_back(std::make_unique<Stream>());
    streams.back()->tag = tag;
    return streams.back().get();
}

} // namespace host
