// The C heap of this program, before the runtime's own: the linker leads here what the program, the library's objects
// and the compiler's runtime ask for. What the system's DLLs take for themselves goes its own ways.
#include <cerrno>
#include <cstddef>

#include "tests/memory/FailingHeap.h"

// What this word size's compiler puts before the name of a function.
#define PV_TEXT_OF(prefix) #prefix
#define PV_TEXT(prefix) PV_TEXT_OF(prefix)
#define PV_LINKED_AS(name) __asm__(PV_TEXT(__USER_LABEL_PREFIX__) name)

extern "C" {
void* systemAllocate(std::size_t bytes) noexcept PV_LINKED_AS("__real_malloc");
void* systemAllocateZeroed(std::size_t count, std::size_t bytes) noexcept PV_LINKED_AS("__real_calloc");
void* systemResize(void* block, std::size_t bytes) noexcept PV_LINKED_AS("__real_realloc");
void systemRelease(void* block) noexcept PV_LINKED_AS("__real_free");

void* ownAllocate(std::size_t bytes) noexcept PV_LINKED_AS("__wrap_malloc");
void* ownAllocateZeroed(std::size_t count, std::size_t bytes) noexcept PV_LINKED_AS("__wrap_calloc");
void* ownResize(void* block, std::size_t bytes) noexcept PV_LINKED_AS("__wrap_realloc");
void ownRelease(void* block) noexcept PV_LINKED_AS("__wrap_free");
}

#undef PV_LINKED_AS
#undef PV_TEXT
#undef PV_TEXT_OF

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
