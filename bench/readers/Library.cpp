#include "bench/ReadListing.h"
#include "bench/readers/Readers.h"

bool kzn::bench::readByLibrary(std::string_view reply, Listing& listing)
{
    return readListing(reply, listing);
}
