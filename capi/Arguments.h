// What a host hands over, as the class takes it. Whatever cannot be read ends the call before it begins.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "capi/Records.h"

namespace capi {

/// Leaves a function of the interface with a 0.
struct Refused {};

inline CStringT textOf(pvw_text text)
{
    if (text.units == nullptr && text.length != 0) throw Refused();
    if (text.units == nullptr) return {};
    const auto* const units = reinterpret_cast<const CStringT::value_type*>(text.units);
    return text.length == PVW_ZERO_TERMINATED ? CStringT(units) : CStringT(units, text.length);
}

/// As many could stand one behind the other.
inline void expectCount(std::size_t count, std::size_t step)
{
    if (count > static_cast<std::size_t>(PTRDIFF_MAX) / step) throw Refused();
}

/// A record of this interface, of a later one, whose further members are not known here, or of an earlier one, which
/// has not all of them.
template <typename Record>
Record recordOf(const CRecord<Record>* record)
{
    using InC = CRecord<Record>;
    if (record == nullptr || record->size < CTypes<Record>::kLeast) throw Refused();
    if (record->size % alignof(InC) != 0) throw Refused();
    InC whole{};
    std::memcpy(&whole, record, std::min(record->size, sizeof whole));
    Record copy;
    fromC(whole, copy);
    return copy;
}

/// The items stand as far apart as the first one says.
template <typename Record>
std::vector<Record> recordsOf(const CRecord<Record>* first, std::size_t count)
{
    std::vector<Record> records;
    if (count == 0) return records;
    if (first == nullptr) throw Refused();
    const std::size_t step = first->size;
    if (step < CTypes<Record>::kLeast) throw Refused();
    expectCount(count, step);
    const auto* at = reinterpret_cast<const std::byte*>(first);
    for (; records.size() < count; at += step) {
        const auto* const item = reinterpret_cast<const CRecord<Record>*>(at);
        if (item->size != step) throw Refused();
        records.push_back(recordOf<Record>(item));
    }
    return records;
}

inline std::vector<CStringT> textsOf(const pvw_text* first, std::size_t count)
{
    if (first == nullptr && count != 0) throw Refused();
    expectCount(count, sizeof *first);
    std::vector<CStringT> texts;
    for (std::size_t at = 0; at < count; ++at) texts.push_back(textOf(first[at]));
    return texts;
}

/// There is a place for each output.
template <typename... Outputs>
void expectPlaces(const Outputs*... outputs)
{
    const bool oneIsMissing = ((outputs == nullptr) || ...);
    if (oneIsMissing) throw Refused();
}

}  // namespace capi
