// The C heap of this program, before the C library's own: it lets a program put its own functions in the place of its
// own, for all that is linked to it, and the originals stay within reach under names of their own. The labels keep both
// apart from the language's own names.
#include <cerrno>
#include <cstddef>

#include "tests/memory/FailingHeap.h"

extern "C" {
void* systemAllocate(std::size_t bytes) noexcept __asm__("__libc_malloc");
void* systemAllocateZeroed(std::size_t count, std::size_t bytes) noexcept __asm__("__libc_calloc");
void* systemResize(void* block, std::size_t bytes) noexcept __asm__("__libc_realloc");
void* systemAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept __asm__("__libc_memalign");
void systemRelease(void* block) noexcept __asm__("__libc_free");

#define PV_SHOWN [[gnu::visibility("default")]]
PV_SHOWN void* ownAllocate(std::size_t bytes) noexcept __asm__("malloc");
PV_SHOWN void* ownAllocateZeroed(std::size_t count, std::size_t bytes) noexcept __asm__("calloc");
PV_SHOWN void* ownResize(void* block, std::size_t bytes) noexcept __asm__("realloc");
PV_SHOWN void* ownResizeArray(void* block, std::size_t count, std::size_t bytes) noexcept __asm__("reallocarray");
PV_SHOWN void* ownAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept __asm__("aligned_alloc");
PV_SHOWN void* ownAllocateAlignedOld(std::size_t alignment, std::size_t bytes) noexcept __asm__("memalign");
PV_SHOWN int ownAllocateAlignedInto(void** block, std::size_t alignment, std::size_t bytes) noexcept
    __asm__("posix_memalign");
PV_SHOWN void ownRelease(void* block) noexcept __asm__("free");
#undef PV_SHOWN
}

using namespace kzn::test;

namespace {

bool mayHave() noexcept
{
    if (heap::gives()) return true;
    errno = ENOMEM;
    return false;
}

}  // namespace

void* ownAllocate(std::size_t bytes) noexcept
{
    return mayHave() ? heap::taken(systemAllocate(bytes), bytes) : nullptr;
}

void* ownAllocateZeroed(std::size_t count, std::size_t bytes) noexcept
{
    return mayHave() ? heap::taken(systemAllocateZeroed(count, bytes), count * bytes) : nullptr;
}

void* ownResize(void* block, std::size_t bytes) noexcept
{
    if (!mayHave()) return nullptr;
    // Told first: once the block is the system's, another thread may have got it.
    heap::givenBack(block);
    return heap::taken(systemResize(block, bytes), bytes);
}

void* ownResizeArray(void* block, std::size_t count, std::size_t bytes) noexcept
{
    std::size_t whole = 0;
    if (!__builtin_mul_overflow(count, bytes, &whole)) return ownResize(block, whole);
    errno = ENOMEM;
    return nullptr;
}

void* ownAllocateAligned(std::size_t alignment, std::size_t bytes) noexcept
{
    return mayHave() ? heap::taken(systemAllocateAligned(alignment, bytes), bytes) : nullptr;
}

void* ownAllocateAlignedOld(std::size_t alignment, std::size_t bytes) noexcept
{
    return ownAllocateAligned(alignment, bytes);
}

int ownAllocateAlignedInto(void** block, std::size_t alignment, std::size_t bytes) noexcept
{
    void* const aligned = ownAllocateAligned(alignment, bytes);
    if (aligned == nullptr) return ENOMEM;
    *block = aligned;
    return 0;
}

void ownRelease(void* block) noexcept
{
    heap::givenBack(block);
    systemRelease(block);
}
