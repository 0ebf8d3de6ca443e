// Workspaces as listings show them, and invitations to them.
#pragma once

#include "pvutil/StringEx.h"
#include "records/Number.h"
#include "records/Roles.h"

/// One line of the list of the user's workspaces.
struct SpaceForList {
    CStringT workspaceID;
    CStringT workspaceName;
    CStringT status;  ///< always "accepted": the user is a member of what is listed
    CStringT userID;  ///< the owner's
    CStringT userName;
    CStringT type;
    CStringT isTemplate;  ///< "true" or "false", as the service sent it
    CStringT namespaceID;
    CStringT description;
    CStringT spaceIconURL;
    int role = 0;  ///< 1 member, 2 administrator; 0 while unknown
};

/// An invitation to a workspace.
class CZelSpaceInvite {
public:
    CZelSpaceInvite() = default;
    CZelSpaceInvite(const CZelSpaceInvite&) = default;
    CZelSpaceInvite(CZelSpaceInvite&&) = default;
    CZelSpaceInvite& operator=(const CZelSpaceInvite&) = default;
    CZelSpaceInvite& operator=(CZelSpaceInvite&&) = default;
    virtual ~CZelSpaceInvite() = default;

    /// Empties the texts and zeroes both codes.
    void clear() { *this = CZelSpaceInvite(); }

    /// The number in the text.
    void SetInviteType(const CStringT& text) { inviteType = toInt(text); }

    /// 2 for the texts that make an administrator, 1 for any other.
    void SetInviteAsType(const CStringT& text)
    {
        using kzn::pvutil::stringex::FromUtf8;
        const bool admin =
            text == FromUtf8("2") || text == FromUtf8("KZN:SpaceAdmin") || text == FromUtf8("KZN:Creator");
        inviteAsType = admin ? WAPI_INVITEAS_ADMIN : WAPI_INVITEAS_MEMBER;
    }

    CStringT spaceInviteID;
    CStringT expires;
    CStringT lastModifiedTime;
    CStringT status;
    CStringT workspaceID;
    CStringT createTime;
    CStringT statusChanged;
    CStringT userDescriptor;  ///< the invitee: a user ID, a user name or an e-mail address
    CStringT userName;
    CStringT workspaceName;
    CStringT ownerID;
    CStringT ownerName;
    int inviteType = 0;
    int inviteAsType = 0;  ///< a WAPI_INVITEAS_TYPE
};
