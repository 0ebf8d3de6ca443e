#include "tests/memory/FailingHeap.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "pvutil/ShortLock.h"
#include "tests/support/TestSystem.h"

namespace kzn::test {

namespace {

// Nobody's thread.
constexpr unsigned long kNone = 0;

constinit std::atomic<unsigned long> theFailingThread = kNone;
constinit std::size_t theAsked = 0;
constinit std::size_t theNth = 0;
constinit Failing theFailing = Failing::once;

constinit std::atomic<unsigned long> theNotedThread = kNone;

// Blocks by address, in a table that needs no memory itself. Every thread may give a block back.
class Table {
public:
    void put(const void* address, std::size_t bytes) noexcept
    {
        const std::lock_guard turn(lock_);
        std::size_t at = slotOf(address);
        while (blocks_[at].address != nullptr && blocks_[at].address != &theGap) at = next(at);
        if (blocks_[at].address == nullptr && ++used_ > kSlots * 7 / 8) {
            std::fputs("more blocks than the table of the failing heap holds\n", stderr);
            std::abort();
        }
        blocks_[at] = {address, bytes, ++number_};
        ++held_;
    }

    void take(const void* address) noexcept
    {
        if (held_ == 0) return;
        const std::lock_guard turn(lock_);
        std::size_t at = slotOf(address);
        while (blocks_[at].address != nullptr && blocks_[at].address != address) at = next(at);
        if (blocks_[at].address == nullptr) return;
        blocks_[at].address = &theGap;
        --held_;
    }

    void clear() noexcept
    {
        const std::lock_guard turn(lock_);
        blocks_.fill({});
        used_ = 0;
        held_ = 0;
    }

    std::vector<NotedHeap::Block> all()
    {
        std::vector<NotedHeap::Block> all;
        all.reserve(held_);
        const std::lock_guard turn(lock_);
        for (const NotedHeap::Block& block : blocks_)
            if (block.address != nullptr && block.address != &theGap) all.push_back(block);
        return all;
    }

private:
    static constexpr std::size_t kSlots = std::size_t{1} << 15;
    static constexpr char theGap = 0;  // its address stands where a block was

    static std::size_t slotOf(const void* address) noexcept
    {
        return reinterpret_cast<std::uintptr_t>(address) / 16 * 0x9E3779B1U % kSlots;
    }
    static std::size_t next(std::size_t at) noexcept { return (at + 1) % kSlots; }

    kzn::pvutil::ShortLock lock_;
    std::array<NotedHeap::Block, kSlots> blocks_{};
    std::size_t used_ = 0;  // gaps included
    std::atomic<std::size_t> held_ = 0;
    std::uint32_t number_ = 0;
};

constinit Table theTable;

bool isThisThread(const std::atomic<unsigned long>& thread) noexcept
{
    const unsigned long meant = thread.load(std::memory_order_relaxed);
    return meant != kNone && meant == currentThreadId();
}

}  // namespace

FailingHeap::FailingHeap(std::size_t nth, Failing failing) noexcept
{
    theAsked = 0;
    theNth = nth;
    theFailing = failing;
    theFailingThread = currentThreadId();
}

FailingHeap::~FailingHeap()
{
    theFailingThread = kNone;
}

std::size_t FailingHeap::asked() noexcept
{
    return theAsked;
}

NotedHeap::NotedHeap() noexcept
{
    theNotedThread = currentThreadId();
}

NotedHeap::~NotedHeap()
{
    theNotedThread = kNone;
}

std::vector<NotedHeap::Block> NotedHeap::held()
{
    std::vector<Block> blocks = theTable.all();
    std::sort(blocks.begin(), blocks.end(),
              [](const Block& left, const Block& right) { return left.number < right.number; });
    return blocks;
}

void NotedHeap::forget() noexcept
{
    theTable.clear();
}

namespace heap {

bool gives() noexcept
{
    if (!isThisThread(theFailingThread)) return true;
    ++theAsked;
    const bool fails = theNth != 0 && (theFailing == Failing::once ? theAsked == theNth : theAsked >= theNth);
    return !fails;
}

void* taken(void* block, std::size_t bytes) noexcept
{
    if (block != nullptr && isThisThread(theNotedThread)) theTable.put(block, bytes);
    return block;
}

void givenBack(const void* block) noexcept
{
    if (block != nullptr) theTable.take(block);
}

}  // namespace heap

}  // namespace kzn::test
