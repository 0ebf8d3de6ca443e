#include "access/RoleValue.h"

#include <algorithm>

#include "client/Text.h"

int wapi::roleValue(const std::vector<MemberRole>& roles) noexcept
{
    const bool admin = std::any_of(roles.begin(), roles.end(), [](const MemberRole& role) {
        return equals(role.roleID, "KZN:SpaceAdmin") || equals(role.roleID, "KZN:Creator");
    });
    return admin ? WAPI_INVITEAS_ADMIN : WAPI_INVITEAS_MEMBER;
}
