// The C heap of this program, before the runtime's own: the linker leads here what the program, the library's objects
// and the compiler's runtime ask for. What the system's DLLs take for themselves goes its own ways.
#include <cerrno>
#include <cstddef>

#include "tests/memory/FailingHeap.h"

extern "C" {
void* systemAllocate(std::size_t bytes) noexcept __asm__("___real_malloc");
void* systemAllocateZeroed(std::size_t count, std::size_t bytes) noexcept __asm__("___real_calloc");
void* systemResize(void* block, std::size_t bytes) noexcept __asm__("___real_realloc");
void systemRelease(void* block) noexcept __asm__("___real_free");

void* ownAllocate(std::size_t bytes) noexcept __asm__("___wrap_malloc");
void* ownAllocateZeroed(std::size_t count, std::size_t bytes) noexcept __asm__("___wrap_calloc");
void* ownResize(void* block, std::size_t bytes) noexcept __asm__("___wrap_realloc");
void ownRelease(void* block) noexcept __asm__("___wrap_free");
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

void ownRelease(void* block) noexcept
{
    heap::givenBack(block);
    systemRelease(block);
}
