// The answers to questions of right.
#pragma once

#include <vector>

#include "client/CommonResponse.h"
#include "records/Access.h"

namespace wapi {

/// The rights on workspaces, of a direct reply and of a script's step.
class SpaceAccessPart {
public:
    SpaceAccessPart(CXMLWapiCommonResponse& reply, PathPiece at);
    SpaceAccessPart(const SpaceAccessPart&) = delete;  // the reply holds the addresses of its texts
    SpaceAccessPart& operator=(const SpaceAccessPart&) = delete;

    SPACE_ACCESS access;
};

/// The answers to "get" and "set" tests, in the order of the reply.
class RoleItemPart final : public CWapiReplyPart {
public:
    RoleItemPart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    std::vector<RoleItem> roles;

private:
    RoleItem item_;
    CStringT type_;
    CStringT reason_;
};

}  // namespace wapi
