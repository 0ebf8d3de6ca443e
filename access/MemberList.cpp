#include "access/MemberList.h"

#include <utility>

#include "access/RoleValue.h"
#include "client/Text.h"

namespace wapi {

namespace {

enum ListID : unsigned { kMember = 4, kMemberRole = 7 };

}  // namespace

MemberListPart::MemberListPart(CXMLWapiCommonResponse& reply, PathPiece at)
{
    reply.add(*this);
    reply.listen(kMember, at, "workspace/members/member/",
                 {{"userID/", &member_.userID}, {"userName/", &member_.userName}, {"email/", &member_.email}});
    reply.listen(kMemberRole, at, "workspace/members/member/roles/role/",
                 {{"roleID/", &role_.roleID}, {"roleName/", &role_.roleName}});
}

void MemberListPart::onEnd(unsigned id)
{
    if (id == kMemberRole) pending_.push_back(std::exchange(role_, {}));
    if (id != kMember) return;
    member_.status = wide("accepted");
    member_.role = roleValue(pending_);
    members.push_back(std::exchange(member_, {}));
    pending_.clear();
}

}  // namespace wapi
