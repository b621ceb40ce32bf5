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

StreamFigures figuresOf(const QByteArray &tag, const ArrivalTimes &arrivals, std::chrono::nanoseconds now)
{
    StreamFigures figures;
    figures.tag = tag;
    figures.lines = arrivals.count();
    figures.rate1 = arrivals.rate(1s, now);
    figures.rate10 = arrivals.rate(10s, now);
    figures.age = std::max(std::chrono::nanoseconds(0), now - arrivals.last());
    figures.longestGap = arrivals.longestGap(now);
    figures.frameTime = arrivals.frameTime();
    return figures;
}

} // namespace

void LineStatistics::add(const backend::ReceivedLine &line)
{
    // A sequence that starts again belongs to a source that has.
    if (lastSequence && line.sequence > *lastSequence)
        missing += line.sequence - *lastSequence - 1;
    lastSequence = line.sequence;
    if (!all.isEmpty() && line.time - all.last() >= shortestSilence)
        lastSilence = line.time - all.last();
    all.add(line.time);

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
    if (all.isEmpty())
        return snapshot;
    snapshot.all = figuresOf({}, all, now);
    snapshot.age = snapshot.all.age;
    for (const std::unique_ptr<Stream> &stream : streams) {
        const StreamFigures figures = figuresOf(stream->tag, stream->arrivals, now);
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
