// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/livelines.h"
#include "bench/naivereader.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using Reader = bool (*)(TrackingData &, const QByteArray &, const QByteArray &);

/// As the panel does it when the host hands it a line.
bool readOurWay(TrackingData &data, const QByteArray &tag, const QByteArray &line)
{
    QByteArray copy(line.constData());
    return data.receive(tag.constData(), copy.data()) == LineOutcome::Stored;
}

bool readFloor(TrackingData &, const QByteArray &, const QByteArray &line)
{
    return readNothing(line) > 0;
}

void readLines(benchmark::State &state, Reader reader, const QByteArray &tag, int count)
{
    LiveLines lines(tag, count);
    TrackingData data;
    data.useInertialFormat = tag == "6di";
    bool read = true;
    for ([[maybe_unused]] auto iteration : state)
        read = reader(data, tag, lines.next()) && read;
    if (!read)
        state.SkipWithError("a line was not read");
    state.SetBytesProcessed(state.iterations() * lines.bytes() / static_cast<qint64>(lines.size()));
}

const bool registered = [] {
    const struct {
        const char *name;
        Reader read;
    } readers[] = {
        {"ours", readOurWay}, {"naive", readNaively}, {"fast_float", readWithFastFloat}, {"floor", readFloor}};
    for (const char *const tag : {"6d", "6di", "3d"}) {
        const int most = qstrcmp(tag, "3d") == 0 ? 300 : 200;
        for (const int count : {10, 50, most}) {
            for (const auto &reader : readers) {
                const std::string name = std::string("read/") + tag + '/' + std::to_string(count) + '/' + reader.name;
                benchmark::RegisterBenchmark(name.c_str(), readLines, reader.read, QByteArray(tag), count);
            }
        }
    }
    return true;
}();

} // namespace
