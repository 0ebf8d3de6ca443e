#include "bench/HeapMeter.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

// The C library lets a program put its own allocation functions in the place of its five, for all that is linked to it;
// the originals stay within reach under names of their own. The labels keep both apart from the language's own names.
extern "C" {
void* systemAllocate(std::size_t bytes) noexcept __asm__("__libc_malloc");
void* systemAllocateZeroed(std::size_t count, std::size_t bytes) noexcept __asm__("__libc_calloc");
void* systemResize(void* block, std::size_t bytes) noexcept __asm__("__libc_realloc");
void* systemAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept __asm__("__libc_memalign");
void systemRelease(void* block) noexcept __asm__("__libc_free");

[[gnu::visibility("default")]] void* meteredAllocate(std::size_t bytes) noexcept __asm__("malloc");
[[gnu::visibility("default")]] void* meteredAllocateZeroed(std::size_t count, std::size_t bytes) noexcept
    __asm__("calloc");
[[gnu::visibility("default")]] void* meteredResize(void* block, std::size_t bytes) noexcept __asm__("realloc");
[[gnu::visibility("default")]] void* meteredAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept
    __asm__("aligned_alloc");
[[gnu::visibility("default")]] void* meteredAllocateAlignedOld(std::size_t alignment, std::size_t bytes) noexcept
    __asm__("memalign");
[[gnu::visibility("default")]] int meteredAllocateAlignedInto(void** block, std::size_t alignment,
                                                              std::size_t bytes) noexcept __asm__("posix_memalign");
[[gnu::visibility("default")]] void meteredRelease(void* block) noexcept __asm__("free");
}

namespace {

constinit std::atomic<std::size_t> theAllocations = 0;
constinit std::atomic<std::size_t> theTaken = 0;
constinit std::atomic<std::size_t> theBytes = 0;
constinit std::atomic<std::size_t> thePeak = 0;
constinit std::atomic<std::size_t> theStart = 0;

void* taken(void* block) noexcept
{
    if (!block) return nullptr;
    const std::size_t size = malloc_usable_size(block);
    const std::size_t held = theBytes.fetch_add(size, std::memory_order_relaxed) + size;
    theAllocations.fetch_add(1, std::memory_order_relaxed);
    theTaken.fetch_add(size, std::memory_order_relaxed);
    if (held > thePeak.load(std::memory_order_relaxed)) thePeak.store(held, std::memory_order_relaxed);
    return block;
}

void givenBack(std::size_t size) noexcept
{
    theBytes.fetch_sub(size, std::memory_order_relaxed);
}

}  // namespace

void* meteredAllocate(std::size_t bytes) noexcept
{
    return taken(systemAllocate(bytes));
}

void* meteredAllocateZeroed(std::size_t count, std::size_t bytes) noexcept
{
    return taken(systemAllocateZeroed(count, bytes));
}

void* meteredResize(void* block, std::size_t bytes) noexcept
{
    const std::size_t before = block ? malloc_usable_size(block) : 0;
    void* const resized = systemResize(block, bytes);
    if (!resized && bytes != 0) return nullptr;
    // The old block may still stand while the new one is filled: both count for the peak.
    taken(resized);
    givenBack(before);
    return resized;
}

void* meteredAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept
{
    return taken(systemAllocateAligned(alignment, bytes));
}

void* meteredAllocateAlignedOld(std::size_t alignment, std::size_t bytes) noexcept
{
    return taken(systemAllocateAligned(alignment, bytes));
}

int meteredAllocateAlignedInto(void** block, std::size_t alignment, std::size_t bytes) noexcept
{
    void* const aligned = taken(systemAllocateAligned(alignment, bytes));
    if (!aligned) return ENOMEM;
    *block = aligned;
    return 0;
}

void meteredRelease(void* block) noexcept
{
    if (!block) return;
    givenBack(malloc_usable_size(block));
    systemRelease(block);
}

namespace kzn::bench {

void resetHeapUse() noexcept
{
    theAllocations = 0;
    theTaken = 0;
    theStart = theBytes.load();
    thePeak = theBytes.load();
}

HeapUse heapUse() noexcept
{
    const std::size_t start = theStart;
    const auto beyondStart = [start](std::size_t bytes) { return bytes - std::min(bytes, start); };
    return {theAllocations, theTaken, beyondStart(thePeak), beyondStart(theBytes)};
}

}  // namespace kzn::bench
