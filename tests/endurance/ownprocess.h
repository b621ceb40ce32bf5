// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endurance/crashreport.h"

#include <cstdio>
#include <new>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#if defined(COUNTS_COVERAGE)
extern "C" void __gcov_reset();
extern "C" void __gcov_dump();
#endif

/// Calls \a act with a Result in a process of its own, as Qt may not survive it, for at most 20 seconds. Returns that
/// result as far as it came; its member crash says how the process ended. GUI thread.
template<typename Result, typename Act> Result inOwnProcess(const Act &act)
{
    void *const memory = ::mmap(nullptr, sizeof(Result), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto *const shared = new (memory) Result;
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(20);
        reportCrashTo(shared->crash);
        std::fclose(stdout);
        std::fclose(stderr);
#if defined(COUNTS_COVERAGE) // which only the parent would write to its files
        __gcov_reset();
        act(*shared);
        __gcov_dump();
#else
        act(*shared);
#endif
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    const Result result = *shared;
    ::munmap(memory, sizeof(Result));
    return result;
}
