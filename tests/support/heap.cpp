// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "tests/support/heap.h"

#include "tests/support/sanitizers.h"

#include <QStringList>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <malloc.h>

namespace {

std::atomic<quint64> allocations{0};

thread_local bool isFailing = false;
thread_local long tries = 0;
thread_local long firstFailure = 0;
thread_local long lastFailure = 0;

} // namespace

quint64 allocationCount()
{
    return allocations;
}

FailingHeap::FailingHeap(long first, long last)
{
    tries = 0;
    firstFailure = first;
    lastFailure = last;
    isFailing = true;
}

FailingHeap::~FailingHeap()
{
    isFailing = false;
}

long FailingHeap::count()
{
    return tries;
}

bool FailingHeap::isToFail()
{
    if (!isFailing)
        return false;
    ++tries;
    return tries >= firstFailure && tries <= lastFailure;
}

QString HeapSnapshot::changesSince(const HeapSnapshot &earlier) const
{
    QStringList changes;
    for (std::size_t size = 0; size < sizeCount; ++size) {
        const qint64 more = blocksOfSize[size] - earlier.blocksOfSize[size];
        if (more != 0)
            changes << QString::asprintf("%+lld of %zu bytes", static_cast<long long>(more), size * stepOfSize);
    }
    return changes.join(QLatin1String(", "));
}

#if UNDER_ADDRESS_SANITIZER || UNDER_THREAD_SANITIZER

// GCC has these functions, but not their headers.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
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

HeapSnapshot HeapSnapshot::now()
{
    HeapSnapshot heap;
    heap.liveBytes = static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    return heap;
}

#else

namespace {

std::atomic<qint64> bytesInUse{0};
std::array<std::atomic<qint64>, HeapSnapshot::sizeCount> counts{};

/// Behind each block, at the end of what the C library gave for it: the size that was asked for. The size given depends
/// on which remainder was at hand.
constexpr std::size_t footer = sizeof(std::size_t);

char *footerOf(void *block)
{
    return static_cast<char *>(block) + ::malloc_usable_size(block) - footer;
}

void count(std::size_t size, qint64 sign)
{
    const std::size_t place =
        std::min((size + HeapSnapshot::stepOfSize - 1) / HeapSnapshot::stepOfSize, HeapSnapshot::sizeCount - 1);
    bytesInUse.fetch_add(sign * static_cast<qint64>(size), std::memory_order_relaxed);
    counts[place].fetch_add(sign, std::memory_order_relaxed);
}

/// Counts a \a block, which has room for its footer.
void *counted(void *block, std::size_t size)
{
    if (!block)
        return nullptr;
    std::memcpy(footerOf(block), &size, footer);
    count(size, 1);
    return block;
}

std::size_t sizeOf(void *block)
{
    std::size_t size = 0;
    std::memcpy(&size, footerOf(block), footer);
    return size;
}

/// Notes that a block is asked for. Returns whether there is none.
bool isRefused()
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (!FailingHeap::isToFail())
        return false;
    errno = ENOMEM;
    return true;
}

} // namespace

HeapSnapshot HeapSnapshot::now()
{
    HeapSnapshot heap;
    heap.liveBytes = bytesInUse;
    for (std::size_t size = 0; size < sizeCount; ++size) {
        heap.blocksOfSize[size] = counts[size];
        heap.liveBlocks += heap.blocksOfSize[size];
    }
    return heap;
}

extern "C" {

void *__libc_malloc(std::size_t size) noexcept;
void *__libc_calloc(std::size_t number, std::size_t each) noexcept;
void *__libc_realloc(void *block, std::size_t size) noexcept;
void *__libc_memalign(std::size_t alignment, std::size_t size) noexcept;
void __libc_free(void *block) noexcept;

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    return isRefused() ? nullptr : counted(__libc_malloc(size + footer), size);
}

Q_DECL_EXPORT void *calloc(std::size_t number, std::size_t each) noexcept
{
    std::size_t size = 0;
    if (isRefused() || __builtin_mul_overflow(number, each, &size))
        return nullptr;
    return counted(__libc_calloc(1, size + footer), size);
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    if (!block)
        return malloc(size);
    if (isRefused())
        return nullptr;
    const std::size_t sizeBefore = sizeOf(block);
    void *const moved = __libc_realloc(block, size + footer);
    if (moved)
        count(sizeBefore, -1);
    return counted(moved, size);
}

Q_DECL_EXPORT void *memalign(std::size_t alignment, std::size_t size) noexcept
{
    return counted(__libc_memalign(alignment, size + footer), size);
}

Q_DECL_EXPORT void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return memalign(alignment, size);
}

Q_DECL_EXPORT int posix_memalign(void **block, std::size_t alignment, std::size_t size) noexcept
{
    void *const made = memalign(alignment, size);
    if (!made)
        return ENOMEM;
    *block = made;
    return 0;
}

Q_DECL_EXPORT void free(void *block) noexcept
{
    if (!block)
        return;
    count(sizeOf(block), -1);
    __libc_free(block);
}
}

#endif
