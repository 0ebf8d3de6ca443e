#include "bench/Listing.h"

#include <algorithm>
#include <cstddef>

namespace kzn::bench {

bool isWhole(const Listing& listing, int spaces)
{
    const auto filled = [](const SpaceForList& space) {
        return space.role != 0 && !space.workspaceID.empty() && !space.workspaceName.empty() && !space.userID.empty() &&
               !space.userName.empty() && !space.namespaceID.empty() && !space.description.empty() &&
               !space.spaceIconURL.empty();
    };
    const auto wanted = static_cast<std::size_t>(spaces);
    return listing.spaces.size() == wanted && listing.invitations.size() == wanted / 10 &&
           std::all_of(listing.spaces.begin(), listing.spaces.end(), filled);
}

}  // namespace kzn::bench
