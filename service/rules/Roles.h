#pragma once

#include <string>
#include <string_view>

#include "service/Context.h"
#include "service/store/Workspaces.h"

namespace service::rules {

inline constexpr const char* kCreator = "KZN:Creator";
inline constexpr const char* kSpaceAdmin = "KZN:SpaceAdmin";
inline constexpr const char* kSpaceMember = "KZN:SpaceMember";

// The name that people read.
std::string_view roleName(std::string_view roleID);

// A creator administers the workspace like an administrator.
bool isAdministratorRole(std::string_view roleID);

// Of several roles of a member the one that allows most.
std::string strongestRole(const Context& context, const std::string& workspaceID, const std::string& userID);

bool isAdministrator(const Context& context, const std::string& workspaceID, const std::string& userID);
int administratorCount(const Context& context, const std::string& workspaceID);

// A session that was cloned for a workspace changes no other.
bool sessionMayChange(const Context& context, const std::string& workspaceID);
void requireSessionFor(const Context& context, const std::string& workspaceID);

// The workspace, for a caller who is in it. Everyone else learns no more than that there is no such workspace.
store::Workspace requireVisible(const Context& context, const std::string& workspaceID);

// The same for a caller whose session may change it.
store::Workspace requireMember(const Context& context, const std::string& workspaceID);
store::Workspace requireAdministrator(const Context& context, const std::string& workspaceID);

// As for a member; a template in a library of the caller's may be read by anyone who sees the library.
store::Workspace requireReadable(const Context& context, const std::string& workspaceID);

// Refuses a caller whose organisation does not allow the feature.
void requirePolicy(const Context& context, const std::string& feature);

}  // namespace service::rules
