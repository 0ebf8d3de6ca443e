// The people of a workspace, and invitations to send.
#pragma once

#include "pvutil/StringEx.h"
#include "records/Roles.h"

class CZelMember {
public:
    CZelMember() = default;
    CZelMember(const CZelMember&) = default;
    CZelMember(CZelMember&&) = default;
    CZelMember& operator=(const CZelMember&) = default;
    CZelMember& operator=(CZelMember&&) = default;
    virtual ~CZelMember() = default;

    CStringT userID;
    CStringT userName;
    CStringT status;  ///< always "accepted" for a member read from a workspace
    int reserved = 0;
    CStringT email;
    int role = 0;  ///< 1 member, 2 administrator; 0 while unknown
};

/// One invitation to send; the last five are the reply's own.
struct SPACEINVT {
    CStringT workspaceID;
    CStringT user;          ///< a user ID or an e-mail address
    CStringT inviteMethod;  ///< "EMAIL" for one that carries a personal message
    CStringT status;
    CStringT isproviderID;  ///< the invitee's instant-messaging provider
    WAPI_INVITEAS_TYPE inviteAs = WAPI_INVITEAS_TYPE{};
    CStringT userID;
    CStringT userName;
    CStringT inviteType;
    CStringT emailSent;
    CStringT email;
};
