// The members of a workspace in a reply, with what their roles amount to.
#pragma once

#include <vector>

#include "client/CommonResponse.h"
#include "records/Members.h"
#include "records/Roles.h"

namespace wapi {

/// The members in the order of the reply, of a direct reply and of a script's step.
class MemberListPart final : public CWapiReplyPart {
public:
    MemberListPart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    std::vector<CZelMember> members;

private:
    CZelMember member_;
    MemberRole role_;
    std::vector<MemberRole> pending_;
};

}  // namespace wapi
