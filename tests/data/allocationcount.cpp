// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "allocationcount.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>

namespace {

std::atomic<quint64> allocations{0};

} // namespace

quint64 allocationCount()
{
    return allocations;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The sanitizers bring their own heap and report from it. GCC has the function, but not its header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void *, std::size_t),
                                                         void (*released)(const volatile void *));

namespace {

void countAllocation(const volatile void *, std::size_t)
{
    ++allocations;
}

void ignoreRelease(const volatile void *) { }

[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(countAllocation, ignoreRelease);

} // namespace

#else

// The executable's definitions replace those of the C library for every library of the process; operator new and
// Qt's containers come here too.
extern "C" {

void *__libc_malloc(std::size_t size) noexcept;
void *__libc_calloc(std::size_t count, std::size_t size) noexcept;
void *__libc_realloc(void *block, std::size_t size) noexcept;

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    ++allocations;
    return __libc_malloc(size);
}

Q_DECL_EXPORT void *calloc(std::size_t count, std::size_t size) noexcept
{
    ++allocations;
    return __libc_calloc(count, size);
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    ++allocations;
    return __libc_realloc(block, size);
}
}

#endif
