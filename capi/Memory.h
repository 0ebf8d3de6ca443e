// What one call brings back: the memory of its texts, records and lists, which is given back in one piece.
#pragma once

#include <memory_resource>
#include <utility>
#include <vector>

#include "capi/Records.h"

namespace capi {

class Memory {
public:
    /// The text with a zero behind it.
    pvw_text of(const CStringT& text);

    int of(int number) { return number; }
    unsigned int of(unsigned int number) { return number; }

    template <IsRecord Record>
    const CRecord<Record>* of(const Record& record)
    {
        auto* const copy = allocator_.template new_object<CRecord<Record>>();
        *copy = toC(*this, record);
        return copy;
    }

    template <IsRecord Record>
    CList<Record> of(const std::vector<Record>& records)
    {
        auto** const items = allocator_.template allocate_object<const CRecord<Record>*>(records.size());
        for (std::size_t at = 0; at < records.size(); ++at) items[at] = of(records[at]);
        return {items, records.size()};
    }

    /// Writes each output, and is true from then on. By then everything is here, so that none is written without the
    /// others.
    template <typename... Outputs>
    int give(std::pair<Outputs*, Outputs>... outputs)
    {
        ((*outputs.first = outputs.second), ...);
        given_ = true;
        return 1;
    }

    explicit operator bool() const { return given_; }

private:
    std::pmr::monotonic_buffer_resource memory_;
    std::pmr::polymorphic_allocator<> allocator_{&memory_};
    bool given_ = false;
};

}  // namespace capi
