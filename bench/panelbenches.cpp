// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "bench/livelines.h"
#include "bench/naivetables.h"
#include "bench/stopwatch.h"
#include "tests/support/panelfixture.h"

#include <malloc.h>

namespace {

qint64 heapBytes()
{
    return static_cast<qint64>(mallinfo2().uordblks);
}

/// The panel from nothing, its answers from the host included.
void startUp(benchmark::State &state)
{
    PanelFixture fixture;
    timeEach(
        state, [&] { fixture.panel.reset(); }, [&] { fixture.createPanel(); });
}

void reconfiguration(benchmark::State &state)
{
    PanelFixture fixture;
    fixture.answerBodies(200);
    fixture.createConfiguredPanel();
    timeEach(
        state, [&] { fixture.takeCalls(); }, [&] { fixture.panel->configurationChanged(); });
}

/// What a row of bodies costs on the heap, its record included, after it was drawn with two different frames.
void rowMemoryOfBodies(benchmark::State &state, bool naive)
{
    constexpr int rows = 1000;
    LiveLines lines("6di", rows);
    double bytes = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        PanelFixture fixture;
        fixture.answerBodies(rows);
        fixture.createPanel();
        std::unique_ptr<NaiveTables> tables;
        if (naive)
            fixture.panel->configurationChanged();
        fixture.takeCalls();
        const qint64 before = heapBytes();
        if (naive)
            tables = std::make_unique<NaiveTables>(fixture.table6d(), fixture.table3d());
        else
            fixture.panel->configurationChanged();
        fixture.takeCalls();
        for (int frame = 0; frame < 2; ++frame) {
            if (naive) {
                tables->data.useInertialFormat = true;
                QByteArray line(lines.next().constData());
                tables->data.receive("6di", line.data());
                tables->updateView6d();
            } else {
                fixture.send("6di", lines.next());
                fixture.panel->updateView6d();
            }
        }
        bytes = static_cast<double>(heapBytes() - before) / rows;
    }
    state.counters["bytes_per_row"] = bytes;
}

void rowMemoryOfMarkers(benchmark::State &state, bool naive)
{
    constexpr int rows = 300;
    LiveLines lines("3d", rows);
    double bytes = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        PanelFixture fixture;
        fixture.createPanel();
        NaiveTables tables(fixture.table6d(), fixture.table3d());
        const qint64 before = heapBytes();
        if (naive) {
            QByteArray line(lines.next().constData());
            tables.data.receive("3d", line.data());
            tables.updateView3d();
        } else {
            fixture.send("3d", lines.next());
            fixture.panel->updateView3d();
        }
        bytes = static_cast<double>(heapBytes() - before) / rows;
    }
    state.counters["bytes_per_row"] = bytes;
}

BENCHMARK(startUp)->Name("panel/startup/ours")->UseManualTime();
BENCHMARK(reconfiguration)->Name("panel/reconfiguration200/ours")->UseManualTime();
BENCHMARK_CAPTURE(rowMemoryOfBodies, ours, false)->Name("memory/body/ours")->Iterations(1);
BENCHMARK_CAPTURE(rowMemoryOfBodies, naive, true)->Name("memory/body/naive")->Iterations(1);
BENCHMARK_CAPTURE(rowMemoryOfMarkers, ours, false)->Name("memory/marker/ours")->Iterations(1);
BENCHMARK_CAPTURE(rowMemoryOfMarkers, naive, true)->Name("memory/marker/naive")->Iterations(1);

} // namespace
