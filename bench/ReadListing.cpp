#include "bench/ReadListing.h"

#include "access/SpaceListReply.h"
#include "pvutil/Utf.h"

namespace kzn::bench {

bool readListing(std::string_view reply, Listing& listing)
{
    if (!pvutil::utf::isWellFormed(reply)) return false;
    wapi::list_space_library_resp parser;
    parser.ParseUtf8(reply);
    if (!parser.succeeded()) return false;

    parser.moveInto(listing.spaces, listing.invitations);
    return true;
}

}  // namespace kzn::bench
