// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>

/// The time that this thread has had of a processor [s]: other programs on the machine don't count. A call takes half
/// a microsecond, since it asks the kernel.
inline double threadSeconds()
{
    std::timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The time on the wall [s]. A call takes some 20 ns.
inline double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Times \a measured once per iteration, and \a prepared before it not at all. For benchmarks with UseManualTime().
template<typename Prepare, typename Measure> void timeEach(benchmark::State &state, Prepare prepared, Measure measured)
{
    for ([[maybe_unused]] auto iteration : state) {
        prepared();
        const double start = threadSeconds();
        measured();
        state.SetIterationTime(threadSeconds() - start);
    }
}
