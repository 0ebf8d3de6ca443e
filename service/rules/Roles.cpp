#include "service/rules/Roles.h"

#include <algorithm>

#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/store/Libraries.h"
#include "service/store/Members.h"
#include "service/store/Organisations.h"

namespace service::rules {

std::string_view roleName(std::string_view roleID)
{
    if (roleID == kCreator) return "Creator";
    if (roleID == kSpaceAdmin) return "Administrator";
    if (roleID == kSpaceMember) return "Member";
    return roleID;
}

bool isAdministratorRole(std::string_view roleID)
{
    return roleID == kCreator || roleID == kSpaceAdmin;
}

std::string strongestRole(const Context& context, const std::string& workspaceID, const std::string& userID)
{
    const std::vector<std::string> roles = store::rolesOf(context.database, workspaceID, userID);
    for (const char* const role : {kCreator, kSpaceAdmin}) {
        if (std::ranges::find(roles, role) != roles.end()) return role;
    }
    return kSpaceMember;
}

bool isAdministrator(const Context& context, const std::string& workspaceID, const std::string& userID)
{
    const std::vector<std::string> roles = store::rolesOf(context.database, workspaceID, userID);
    return std::any_of(roles.begin(), roles.end(), isAdministratorRole);
}

int administratorCount(const Context& context, const std::string& workspaceID)
{
    int count = 0;
    for (const store::Member& member : store::membersOf(context.database, workspaceID)) {
        if (isAdministrator(context, workspaceID, member.userID)) ++count;
    }
    return count;
}

bool sessionMayChange(const Context& context, const std::string& workspaceID)
{
    return context.session.workspaceID.empty() || context.session.workspaceID == workspaceID;
}

void requireSessionFor(const Context& context, const std::string& workspaceID)
{
    if (!sessionMayChange(context, workspaceID)) {
        throw Refusal(exceptionid::kAccessDenied, "this session was cloned for another workspace");
    }
}

store::Workspace requireVisible(const Context& context, const std::string& workspaceID)
{
    std::optional<store::Workspace> workspace;
    if (store::isMember(context.database, workspaceID, context.session.userID)) {
        workspace = store::findWorkspace(context.database, workspaceID);
    }
    if (!workspace) {
        throw Refusal(exceptionid::kNoSuchObject, "there is no workspace " + inQuotes(workspaceID) + " of yours");
    }
    return std::move(*workspace);
}

store::Workspace requireMember(const Context& context, const std::string& workspaceID)
{
    store::Workspace workspace = requireVisible(context, workspaceID);
    requireSessionFor(context, workspaceID);
    return workspace;
}

store::Workspace requireAdministrator(const Context& context, const std::string& workspaceID)
{
    store::Workspace workspace = requireMember(context, workspaceID);
    if (!isAdministrator(context, workspaceID, context.session.userID)) {
        throw Refusal(exceptionid::kAccessDenied, "only an administrator of the workspace may do this");
    }
    return workspace;
}

store::Workspace requireReadable(const Context& context, const std::string& workspaceID)
{
    if (store::isTemplateFor(context.database, workspaceID, context.session.userID, context.session.orgID)) {
        if (auto workspace = store::findWorkspace(context.database, workspaceID)) return std::move(*workspace);
    }
    return requireVisible(context, workspaceID);
}

void requirePolicy(const Context& context, const std::string& feature)
{
    if (!store::policyAllows(context.database, context.session.orgID, feature)) {
        throw Refusal(exceptionid::kAccessDenied, "your organisation does not allow " + feature);
    }
}

}  // namespace service::rules
