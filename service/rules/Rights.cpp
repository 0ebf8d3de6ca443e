#include "service/rules/Rights.h"

#include <array>
#include <optional>

#include "service/base/Text.h"
#include "service/rules/Roles.h"
#include "service/store/Members.h"
#include "service/store/Organisations.h"
#include "service/store/Workspaces.h"

namespace service::rules {

namespace {

enum class Place { workspace, document, chatRoom };
enum class Needs { member, administrator };

struct ObjectTest {
    std::string_view name;
    Place place;
    Needs needs;
};

constexpr std::array kObjectTests{
    ObjectTest{"get", Place::workspace, Needs::member},
    ObjectTest{"set", Place::workspace, Needs::administrator},
    ObjectTest{"get-workspace", Place::workspace, Needs::member},
    ObjectTest{"set-workspace", Place::workspace, Needs::administrator},
    ObjectTest{"delete-workspace", Place::workspace, Needs::administrator},
    ObjectTest{"set-doc", Place::document, Needs::member},
    ObjectTest{"delete-doc", Place::document, Needs::administrator},
    ObjectTest{"set-chatRoom", Place::chatRoom, Needs::administrator},
    ObjectTest{"delete-chatRoom", Place::chatRoom, Needs::administrator},
    ObjectTest{"create-chatEntry", Place::chatRoom, Needs::member},
};

Right refused(std::string reason)
{
    return {false, std::move(reason)};
}

// The workspace that decides about the object of a test.
std::optional<std::string> workspaceOf(const Context& context, Place place, const std::string& id)
{
    if (place == Place::document) return store::workspaceOfDocument(context.database, id);
    if (place == Place::chatRoom) return store::workspaceOfChatRoom(context.database, id);
    return id;
}

Right objectRight(const Context& context, const ObjectTest& test, const std::string& id)
{
    const std::optional<std::string> workspaceID = workspaceOf(context, test.place, id);
    const std::string& userID = context.session.userID;
    if (!workspaceID || !store::isMember(context.database, *workspaceID, userID)) {
        return refused("there is no " + quoted(id) + " that you can see");
    }
    if (test.needs == Needs::administrator && !isAdministrator(context, *workspaceID, userID)) {
        return refused("only an administrator of the workspace may do this");
    }
    return {true, {}};
}

Right policyRight(const Context& context, const std::string& feature)
{
    if (store::policyAllows(context.database, context.session.orgID, feature)) return {true, {}};
    return refused("your organisation does not allow " + feature);
}

}  // namespace

Right rightOf(const Context& context, const xml::Node& test)
{
    const std::string id(trimmed(test.textAt("id")));
    for (const ObjectTest& known : kObjectTests) {
        if (known.name == test.name) return objectRight(context, known, id);
    }
    return policyRight(context, test.name);
}

}  // namespace service::rules
