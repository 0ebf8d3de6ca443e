// What a list of roles amounts to.
#pragma once

#include <vector>

#include "records/Roles.h"

namespace wapi {

/// 2 (administrator) where a role is that of an administrator or of the creator, else 1 (member), also for no role at
/// all.
int roleValue(const std::vector<MemberRole>& roles) noexcept;

}  // namespace wapi
