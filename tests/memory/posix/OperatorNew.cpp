// The C++ heap of this program, above the C heap of a sanitizer, which nobody can stand before. The labels are the
// names that the compiler gives to the operators.
#include <cstddef>
#include <new>

#include "tests/memory/FailingHeap.h"

#define PV_SHOWN [[gnu::visibility("default")]]
void* systemAllocate(std::size_t bytes) noexcept __asm__("malloc");
void systemRelease(void* block) noexcept __asm__("free");

PV_SHOWN void* ownNew(std::size_t bytes) __asm__("_Znwm");
PV_SHOWN void* ownNewArray(std::size_t bytes) __asm__("_Znam");
PV_SHOWN void* ownNewOrNull(std::size_t bytes, const std::nothrow_t&) noexcept __asm__("_ZnwmRKSt9nothrow_t");
PV_SHOWN void* ownNewArrayOrNull(std::size_t bytes, const std::nothrow_t&) noexcept __asm__("_ZnamRKSt9nothrow_t");
PV_SHOWN void ownRelease(void* block) noexcept __asm__("_ZdlPv");
PV_SHOWN void ownReleaseArray(void* block) noexcept __asm__("_ZdaPv");
PV_SHOWN void ownReleaseSized(void* block, std::size_t) noexcept __asm__("_ZdlPvm");
PV_SHOWN void ownReleaseArraySized(void* block, std::size_t) noexcept __asm__("_ZdaPvm");
#undef PV_SHOWN

using namespace kzn::test;

void* ownNewOrNull(std::size_t bytes, const std::nothrow_t&) noexcept
{
    return heap::gives() ? heap::taken(systemAllocate(bytes), bytes) : nullptr;
}

void* ownNewArrayOrNull(std::size_t bytes, const std::nothrow_t& none) noexcept
{
    return ownNewOrNull(bytes, none);
}

void* ownNew(std::size_t bytes)
{
    void* const block = ownNewOrNull(bytes, std::nothrow);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void* ownNewArray(std::size_t bytes)
{
    return ownNew(bytes);
}

void ownRelease(void* block) noexcept
{
    heap::givenBack(block);
    systemRelease(block);
}

void ownReleaseArray(void* block) noexcept
{
    ownRelease(block);
}

void ownReleaseSized(void* block, std::size_t) noexcept
{
    ownRelease(block);
}

void ownReleaseArraySized(void* block, std::size_t) noexcept
{
    ownRelease(block);
}
