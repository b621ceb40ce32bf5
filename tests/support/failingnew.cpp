// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/heap.h"
#include "tests/support/sanitizers.h"

// A file of its own, as under a sanitizer it costs the check that a block goes back as it came.
#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER

#include <cstdlib>
#include <new>

void *operator new(std::size_t size)
{
    void *const block = FailingHeap::isToFail() ? nullptr : std::malloc(size);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t) noexcept
{
    std::free(block);
}

#endif
