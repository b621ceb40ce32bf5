// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "backend/linestream.h"
#include "bench/livelines.h"
#include "data/trackingdata.h"
#include "host/liveness/streamhealth.h"

#include <benchmark/benchmark.h>

#include <QString>
#include <QStringList>

#include <string>

namespace {

using namespace std::chrono_literals;

/// What a line costs the thread that receives it: counted, and each body's state read.
void watchLines(benchmark::State &state, const QByteArray &tag, int count)
{
    LiveLines lines(tag, count);
    host::StreamHealth health;
    backend::ReceivedLine line;
    line.line.tag = tag;
    for ([[maybe_unused]] auto iteration : state) {
        line.line.text = lines.next();
        line.time += 200us;
        ++line.sequence;
        health.add(line);
    }
    const host::HealthSnapshot snapshot = health.snapshot(line.time);
    if (snapshot.bodies.size() != (tag == "3d" ? 0 : count))
        state.SkipWithError("a body was not read");
}

/// The same from the whole line, as the panel reads it.
void readLikeThePanel(benchmark::State &state, const QByteArray &tag, int count)
{
    LiveLines lines(tag, count);
    TrackingData data;
    data.useInertialFormat = tag == "6di";
    for ([[maybe_unused]] auto iteration : state) {
        if (data.receive(tag.constData(), QByteArray(lines.next().constData()).data()) == LineOutcome::Malformed)
            state.SkipWithError("a line was not read");
    }
}

/// The same with the means at hand in Qt: split at the brackets, numbers out of strings.
void splitStrings(benchmark::State &state, const QByteArray &tag, int count)
{
    LiveLines lines(tag, count);
    const int place = tag == "6di" ? 2 : 1;
    for ([[maybe_unused]] auto iteration : state) {
        int bodies = 0;
        const QStringList blocks = QString::fromLatin1(lines.next()).split(QLatin1Char('['));
        for (int block = 1; block < blocks.size(); block += 3) {
            QString header = blocks.at(block);
            header.truncate(header.indexOf(QLatin1Char(']')));
            const QStringList numbers = header.split(QLatin1Char(' '));
            bool isId = false;
            bool isQuality = false;
            benchmark::DoNotOptimize(numbers.value(0).toInt(&isId));
            benchmark::DoNotOptimize(numbers.value(place).toDouble(&isQuality));
            bodies += static_cast<int>(isId && isQuality);
        }
        if (bodies != count)
            state.SkipWithError("a body was not read");
    }
}

const bool registered = [] {
    for (const char *const tag : {"6d", "6di"}) {
        for (const int count : {10, 50, 200}) {
            const std::string name = std::string("watch/") + tag + '/' + std::to_string(count) + '/';
            benchmark::RegisterBenchmark((name + "ours").c_str(), watchLines, QByteArray(tag), count);
            benchmark::RegisterBenchmark((name + "panel").c_str(), readLikeThePanel, QByteArray(tag), count);
            benchmark::RegisterBenchmark((name + "strings").c_str(), splitStrings, QByteArray(tag), count);
        }
    }
    benchmark::RegisterBenchmark("watch/3d/100/ours", watchLines, QByteArray("3d"), 100);
    return true;
}();

} // namespace
