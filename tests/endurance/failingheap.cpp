// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/endurance/failingheap.h"

#include <QtGlobal>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local bool watching = false;
thread_local long allocations = 0;
thread_local long firstFailure = 0;
thread_local long lastFailure = 0;

bool isToFail()
{
    if (!watching)
        return false;
    ++allocations;
    return allocations >= firstFailure && allocations <= lastFailure;
}

} // namespace

FailingHeap::FailingHeap(long first, long last)
{
    allocations = 0;
    firstFailure = first;
    lastFailure = last;
    watching = true;
}

FailingHeap::~FailingHeap()
{
    watching = false;
}

long FailingHeap::count()
{
    return allocations;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

void *operator new(std::size_t size)
{
    void *const block = isToFail() ? nullptr : std::malloc(size);
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

#else

// The executable's definitions replace those of the C library for every library of the process; operator new and
// Qt's containers come here too.
extern "C" {

void *__libc_malloc(std::size_t size) noexcept;
void *__libc_calloc(std::size_t count, std::size_t size) noexcept;
void *__libc_realloc(void *block, std::size_t size) noexcept;

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    if (!isToFail())
        return __libc_malloc(size);
    errno = ENOMEM;
    return nullptr;
}

Q_DECL_EXPORT void *calloc(std::size_t count, std::size_t size) noexcept
{
    if (!isToFail())
        return __libc_calloc(count, size);
    errno = ENOMEM;
    return nullptr;
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    if (!isToFail())
        return __libc_realloc(block, size);
    errno = ENOMEM;
    return nullptr;
}
}

#endif
