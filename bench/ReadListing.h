// From the text of a listing to the caller's records, as the listing operation does it, without the exchange around it.
#pragma once

#include "bench/Listing.h"

namespace kzn::bench {

/// False where the reply is none of success.
bool readListing(const CStringT& text, Listing& listing);

}  // namespace kzn::bench
