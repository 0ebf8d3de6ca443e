#include "capi/Memory.h"

#include <algorithm>

namespace capi {

pvw_text Memory::of(const CStringT& text)
{
    auto* const units = allocator_.allocate_object<CStringT::value_type>(text.size() + 1);
    std::copy_n(text.c_str(), text.size() + 1, units);
    return {reinterpret_cast<const pvw_char*>(units), text.size()};
}

}  // namespace capi
