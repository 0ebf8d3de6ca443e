// The parts of a scripted listing: workspaces, invitations, and the user's role in each workspace.
#pragma once

#include <compare>
#include <cstdint>
#include <span>
#include <vector>

#include "access/AccessReply.h"
#include "client/CommonResponse.h"
#include "client/Gathered.h"
#include "records/Roles.h"
#include "records/Spaces.h"

namespace wapi {

/// The listed workspaces, in the order of the reply.
class SpaceListPart final : public CWapiReplyPart {
public:
    SpaceListPart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    Gathered<SpaceForList> spaces;

private:
    SpaceForList space_;
};

/// The invitations, in the order of the reply.
class InvitationPart final : public CWapiReplyPart {
public:
    InvitationPart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    std::vector<CZelSpaceInvite> invitations;

private:
    CZelSpaceInvite invite_;
    CStringT inviteType_;
    CStringT inviteAs_;
};

/// The user's own role by workspace ID; the first that is told of a workspace stays.
class SpaceRolePart final : public CWapiReplyPart {
public:
    SpaceRolePart(CXMLWapiCommonResponse& reply, PathPiece at);
    void onEnd(unsigned id) override;

    /// Gives each workspace its role; one that is not told of keeps its own. To be made ready before.
    void assignTo(std::span<SpaceForList> spaces) const noexcept;
    void makeReady();

private:
    struct SpaceRole {
        CStringT workspaceID;
        int role;
    };

    /// By the end of the ID at first, where IDs differ; most are told apart without a look at the text itself.
    struct Entry {
        explicit Entry(const CStringT& workspaceID, int ofRole = 0) noexcept;
        std::weak_ordering operator<=>(const Entry& other) const noexcept;
        bool operator==(const Entry& other) const noexcept { return std::is_eq(*this <=> other); }

        std::uint64_t end = 0;
        const CStringT* id;
        int role;
    };

    Gathered<SpaceRole> roles_;
    std::vector<Entry> entries_;
    CStringT workspaceID_;
    MemberRole role_;
    std::vector<MemberRole> pending_;
};

/// The reply to a script that lists workspaces.
class list_space_library_resp : public CXMLWapiCommonResponse {
public:
    /// Appends the workspaces, each with the user's role where one is told of it, and replaces the invitations.
    void moveInto(std::vector<SpaceForList>& listed, std::vector<CZelSpaceInvite>& invited);

    SpaceListPart spaces{*this, kScriptReply};
    InvitationPart invitations{*this, kScriptReply};
    SpaceRolePart roles{*this, kScriptReply};
    RoleItemPart tests{*this, kScriptReply};
};

}  // namespace wapi
