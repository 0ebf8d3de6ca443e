// One and the same reader of listings over two builds of the parser, each in a library of its own.
#pragma once

#include <string_view>

#include "bench/Listing.h"

namespace kzn::bench {

/// The 16-bit build, which takes the reply's text and gives the records' texts as they are.
__attribute__((visibility("default"))) bool readWide(const CStringT& reply, Listing& listing);

/// The 8-bit build, with the reply converted on the way in and each text on the way out.
__attribute__((visibility("default"))) bool readNarrow(const CStringT& reply, Listing& listing);

}  // namespace kzn::bench
