#include "bench/ReadListing.h"
#include "bench/readers/Readers.h"

bool kzn::bench::readByWideParser(std::string_view reply, Listing& listing)
{
    return readListing(reply, listing);
}
