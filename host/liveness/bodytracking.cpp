// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/liveness/bodytracking.h"

#include <algorithm>

namespace host {

namespace {

using namespace std::chrono_literals;

} // namespace

void BodyTracking::add(const BodyList &list, Time time)
{
    advance(time);
    const auto slot = static_cast<std::size_t>(second % seconds);
    ++lines;
    ++linesOfMinute;
    ++linesBySecond[slot];
    for (std::size_t i = 0; i < list.count; ++i) {
        const BodySighting &sighting = list.sightings[i];
        Body *body = find(sighting.id, i, time);
        if (!body || body->lastLine == lines) // one that comes twice in a line counts once
            continue;
        body->lastLine = lines;
        body->tracked = sighting.tracked;
        if (!sighting.tracked)
            continue;
        ++body->trackedLines;
        ++body->trackedBySecond[slot];
        body->longestGap = std::max(body->longestGap, time - body->lastTracked.value_or(body->firstSeen));
        body->lastTracked = time;
    }
}

void BodyTracking::figures(const QByteArray &tag, Time now, QVector<BodyFigures> &figures)
{
    advance(now);
    const quint64 beforeMinute = lines - linesOfMinute;
    for (const Body &body : bodies) {
        BodyFigures figure;
        figure.tag = tag;
        figure.id = body.id;
        figure.tracked = body.tracked && body.lastLine == lines;
        const quint64 possible = lines - std::max(beforeMinute, body.linesBefore);
        if (possible > 0)
            figure.lossPercent = 100.0 * (1.0 - static_cast<double>(body.trackedLines) / static_cast<double>(possible));
        const Time untracked = std::max(Time(0), now - body.lastTracked.value_or(body.firstSeen));
        figure.longestGap = std::max(body.longestGap, untracked);
        if (body.lastTracked)
            figure.sinceTracked = untracked;
        figures.append(figure);
    }
}

void BodyTracking::advance(Time time)
{
    const long long newest = time / 1s;
    const long long steps = std::min<long long>(newest - second, seconds);
    for (long long step = 0; step < steps; ++step) {
        const auto slot = static_cast<std::size_t>((newest - step) % seconds);
        linesOfMinute -= linesBySecond[slot];
        linesBySecond[slot] = 0;
        for (Body &body : bodies) {
            body.trackedLines -= body.trackedBySecond[slot];
            body.trackedBySecond[slot] = 0;
        }
    }
    second = std::max(second, newest);
}

BodyTracking::Body *BodyTracking::find(qint32 id, std::size_t index, Time time)
{
    if (index < bodies.size() && bodies[index].id == id)
        return &bodies[index];
    const auto place = places.constFind(id);
    if (place != places.constEnd())
        return &bodies[*place];
    if (bodies.size() == mostBodies)
        return nullptr;
    Body body;
    body.id = id;
    body.linesBefore = lines - 1;
    body.firstSeen = time;
    places.insert(id, bodies.size());
    bodies.push_back(body);
    return &bodies.back();
}

} // namespace host
