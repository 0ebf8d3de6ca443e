// One workspace in full in a reply.
#pragma once

#include <vector>

#include "access/MemberList.h"
#include "client/CommonResponse.h"
#include "records/SpaceDetails.h"
#include "spaces/TabList.h"

namespace wapi {

/// The texts, members and tabs of a workspace.
class SpacePart {
public:
    SpacePart(CXMLWapiCommonResponse& reply, PathPiece at);

    /// Moves what was read into `space` and is empty afterwards. Where type and template flag name no kind that hosts
    /// know, the kind in `space` stays.
    void moveTo(space_t& space);

private:
    space_t space_;
    MemberListPart members_;
    TabListPart tabs_;
};

}  // namespace wapi
