// From the bytes of a listing to the caller's records, as the listing operation does it.
#pragma once

#include <string_view>

#include "bench/Listing.h"

namespace kzn::bench {

/// False where the reply is none of success.
bool readListing(std::string_view reply, Listing& listing);

}  // namespace kzn::bench
