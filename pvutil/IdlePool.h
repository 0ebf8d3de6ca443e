// What is dear to make and waits for its next user.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>

namespace kzn::pvutil {

/// Keeps a few of a kind, without a lock. Has nothing to run when it comes into being or goes; whoever has one empties
/// it with `drop` before the library is unloaded.
template <typename Thing>
class IdlePool {
public:
    constexpr IdlePool() noexcept = default;
    IdlePool(const IdlePool&) = delete;
    IdlePool& operator=(const IdlePool&) = delete;

    /// One that waits; null where none does.
    std::unique_ptr<Thing> take() noexcept
    {
        const std::size_t first = firstSlot();
        std::unique_ptr<Thing> thing;
        for (std::size_t step = 0; step < slots_.size() && !thing; ++step)
            thing.reset(slot(first + step).exchange(nullptr));
        return thing;
    }

    /// What there is no room for goes.
    void giveBack(std::unique_ptr<Thing> thing) noexcept
    {
        const std::size_t first = firstSlot();
        for (std::size_t step = 0; step < slots_.size() && thing; ++step)
            thing.reset(slot(first + step).exchange(thing.release()));
    }

    void drop() noexcept
    {
        for (auto& each : slots_) std::unique_ptr<Thing>(each.exchange(nullptr)).reset();
    }

private:
    // A thread begins its search at a slot of its own, so that one that works alone finds again what it gave back.
    std::size_t firstSlot() const noexcept { return std::hash<std::thread::id>{}(std::this_thread::get_id()); }

    std::atomic<Thing*>& slot(std::size_t number) noexcept { return slots_[number % slots_.size()]; }

    std::array<std::atomic<Thing*>, 16> slots_{};
};

}  // namespace kzn::pvutil
