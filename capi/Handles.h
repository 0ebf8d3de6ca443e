// What a host holds by handle: the clients and the results that are alive.
#pragma once

#include <atomic>
#include <bit>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace capi {

/// The number of the handle that came last, of whatever kind: one that is handed over as another kind is none there.
inline std::atomic<std::uintptr_t> lastHandle = 0;

/// A handle is a number and never an address: the same one does not come again, so that one that was freed, or made up,
/// is told from every other. Where 32 bits have all been used they begin anew, past what is alive.
template <typename Handle, typename Object>
class Handles {
public:
    Handle* add(std::shared_ptr<Object> object)
    {
        const std::lock_guard lock(mutex_);
        std::uintptr_t number = ++lastHandle;
        while (number == 0 || alive_.contains(number)) number = ++lastHandle;
        alive_.emplace(number, std::move(object));
        return std::bit_cast<Handle*>(number);
    }

    /// The object for as long as the caller holds it, even where another thread frees its handle meanwhile.
    std::shared_ptr<Object> find(const Handle* handle) const
    {
        const std::lock_guard lock(mutex_);
        const auto found = alive_.find(std::bit_cast<std::uintptr_t>(handle));
        return found == alive_.end() ? nullptr : found->second;
    }

    /// The object, whose handle is no longer one.
    std::shared_ptr<Object> take(const Handle* handle) noexcept
    {
        const std::lock_guard lock(mutex_);
        const auto found = alive_.find(std::bit_cast<std::uintptr_t>(handle));
        if (found == alive_.end()) return nullptr;
        std::shared_ptr<Object> object = std::move(found->second);
        alive_.erase(found);
        return object;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::uintptr_t, std::shared_ptr<Object>> alive_;
};

}  // namespace capi
