// A list while it comes in: nobody knows its length yet.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace wapi {

/// Items in blocks, which stay where they are as further ones come; a vector would need room for all of them twice.
template <typename Item>
class Gathered {
public:
    void add(Item&& item)
    {
        if (blocks_.empty() || blocks_.back().size() == blocks_.back().capacity()) addBlock();
        blocks_.back().push_back(std::move(item));
        ++size_;
    }

    std::size_t size() const noexcept { return size_; }

    template <typename Step>
    void forEach(Step step) const
    {
        for (const auto& block : blocks_) std::ranges::for_each(block, step);
    }

    /// Moves all of them behind the list's own, which stays as it is where there is no memory.
    void appendTo(std::vector<Item>& list)
    {
        list.reserve(list.size() + size_);
        for (auto& block : std::exchange(blocks_, {})) {
            std::ranges::move(block, std::back_inserter(list));
            block = {};
        }
        size_ = 0;
    }

private:
    void addBlock()
    {
        constexpr std::size_t kFew = 16;
        constexpr std::size_t kMany = 256;
        std::vector<Item> block;
        block.reserve(std::clamp(size_, kFew, kMany));
        blocks_.push_back(std::move(block));
    }

    std::vector<std::vector<Item>> blocks_;
    std::size_t size_ = 0;
};

}  // namespace wapi
