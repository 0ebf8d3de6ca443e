#include "bench/ReadListing.h"

#include "access/SpaceListReply.h"

namespace kzn::bench {

bool readListing(const CStringT& text, Listing& listing)
{
    wapi::list_space_library_resp reply;
    reply.ParseXML(text);
    if (!reply.succeeded()) return false;

    reply.moveInto(listing.spaces, listing.invitations);
    return true;
}

}  // namespace kzn::bench
