// The caller's side of a listing.
#pragma once

#include <vector>

#include "pvutil/StringEx.h"
#include "records/Spaces.h"

namespace kzn::bench {

struct Listing {
    std::vector<SpaceForList> spaces;
    std::vector<CZelSpaceInvite> invitations;
};

/// Whether this is what the reply of so many workspaces says: a reader that drops records would look fast.
bool isWhole(const Listing& listing, int spaces);

}  // namespace kzn::bench
