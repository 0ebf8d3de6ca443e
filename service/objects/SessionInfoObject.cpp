#include "service/base/Clock.h"
#include "service/objects/ObjectTypes.h"

namespace service::objects {

namespace {

std::vector<xml::Node> listSession(const Context& context, const script::Selection& /*wanted*/)
{
    xml::Node info("sessionInfo");
    info.add("sessionDuration", std::to_string(context.session.duration));
    info.add("userID", context.session.userID);
    info.add("workspaceID", context.session.workspaceID);
    info.add("expires", timeText(context.now + context.session.duration));
    return {info};
}

// There is one session to be asked about, whatever name it is given.
std::optional<xml::Node> findSession(const Context& context, const std::string& /*id*/, const script::Selection& wanted)
{
    return listSession(context, wanted).front();
}

}  // namespace

ObjectType sessionInfoType()
{
    return {"sessionInfo", {"sessionInfo"}, listSession, findSession};
}

}  // namespace service::objects
