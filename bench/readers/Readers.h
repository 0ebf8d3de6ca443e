// Readers of one and the same listing, from the bytes of its reply to the caller's records, each in a library of its
// own: several builds of one parser cannot stand beside one another in a program.
#pragma once

#include <string_view>

#include "bench/Listing.h"

namespace kzn::bench {

/// The library's own: what its listing operation does, without the exchange around it. False where the reply is none of
/// success.
bool readByLibrary(std::string_view reply, Listing& listing);

/// The same with the parser built for 16-bit text, and the reply made that first.
bool readByWideParser(std::string_view reply, Listing& listing);

/// What a careful engineer writes for this one reply: the system's parser, a cursor in a table of element names, texts
/// converted in one pass.
bool readByHand(std::string_view reply, Listing& listing);

/// The least: the system's parser, one final call, and nobody who listens.
bool readBare(std::string_view reply);

}  // namespace kzn::bench
