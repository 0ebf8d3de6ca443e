#include "bench/ReadListing.h"
#include "bench/parsers/Readers.h"

bool kzn::bench::readWide(const CStringT& reply, Listing& listing)
{
    return readListing(reply, listing);
}
