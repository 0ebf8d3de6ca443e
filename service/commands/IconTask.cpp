#include "service/base/Clock.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/commands/Commands.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Icons.h"
#include "service/rules/Roles.h"
#include "service/store/Icons.h"

namespace service::commands {

// The address that the request names for the pictures is not believed: the service knows where it is reached.
void manageSpaceIcon(Context& context, const xml::Node& xml, Reply& reply)
{
    if (context.upload == nullptr) throw Refusal(exceptionid::kBadRequest, "the picture is missing");
    expectElement(xml, "code");
    const std::string workspaceID = requiredID(xml, "workspaceID");
    rules::requireAdministrator(context, workspaceID);
    const std::string_view content = context.upload->content;
    if (content.empty()) throw Refusal(exceptionid::kBadRequest, "the picture is empty");
    if (content.size() > context.settings.maxUpload) {
        throw Refusal(exceptionid::kLimitExceeded,
                      "the picture is larger than " + std::to_string(context.settings.maxUpload) + " bytes");
    }
    const std::string iconName = rules::newIconName(context.upload->fileName);
    store::putIcon(context.database, workspaceID, iconName, content);
    store::touchWorkspace(context.database, workspaceID, context.now);
    reply.payload.add("url", rules::iconURL(context.settings, iconName));
}

std::string iconContent(store::Database& database, const Settings& settings, const std::string& iconName,
                        const std::string& cred, std::string* caller)
{
    Context context{database, settings, settings.clock.now(), {}, nullptr};
    context.session = liveSession(context, cred);
    if (caller != nullptr) *caller = context.session.userName;
    std::optional<store::Icon> icon = store::findIcon(database, iconName);
    if (!icon) throw Refusal(exceptionid::kNoSuchObject, "there is no icon " + inQuotes(iconName));
    rules::requireVisible(context, icon->workspaceID);
    return std::move(icon->content);
}

}  // namespace service::commands
