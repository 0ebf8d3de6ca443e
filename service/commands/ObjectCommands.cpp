#include "service/base/Refusal.h"
#include "service/base/Secret.h"
#include "service/base/Text.h"
#include "service/commands/Commands.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Libraries.h"
#include "service/rules/Roles.h"
#include "service/rules/Spaces.h"
#include "service/script/Query.h"
#include "service/store/Things.h"
#include "service/xml/Writer.h"

namespace service::commands {

namespace {

constexpr std::string_view kMeetingRecord = "MeetingRecording";

// A favourite, or any other named thing of the caller's that points to a workspace.
void createWorkspaceThing(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "workspaceThing");
    store::WorkspaceThing thing;
    thing.thingID = newID("wtng");
    thing.userID = context.session.userID;
    thing.name = requiredName(xml, "thingName");
    thing.type = requiredName(xml, "thingType");
    thing.workspaceID = requiredID(xml, "workspaceID");
    rules::requireMember(context, thing.workspaceID);
    if (!store::insertWorkspaceThing(context.database, thing)) {
        throw Refusal(exceptionid::kConflict, "you have this " + inQuotes(thing.type) + " already");
    }
    reply.payload.add("workspaceThing").add("thingID", thing.thingID);
}

// A meeting's record belongs to a workspace, any other thing to nobody but its owner.
void createThing(Context& context, const xml::Node& xml, Reply& reply)
{
    expectElement(xml, "thing");
    store::Thing thing;
    thing.thingID = newID("thng");
    thing.userID = context.session.userID;
    thing.name = requiredName(xml, "thingName");
    if (thing.name == kMeetingRecord || xml.at("ext/KZN/meetingRecording") != nullptr) {
        thing.workspaceID = requiredID(xml, "ext/KZN/meetingRecording/workspaceID");
        rules::requireMember(context, thing.workspaceID);
    }
    const xml::Node* const extension = xml.child("ext");
    xml::append(thing.extension, extension == nullptr ? xml::Node("ext") : *extension);
    thing.created = context.now;
    store::insertThing(context.database, thing);
    reply.payload.add("thing").add("thingID", thing.thingID);
}

// The ID in "workspace/members/member[userID='...']" or the like. It stands between the outer quotes as it is, whatever
// it holds.
std::string idInPath(std::string_view path, std::string_view start)
{
    constexpr std::string_view kEnd = "']";
    if (path.size() <= start.size() + kEnd.size() || !path.starts_with(start) || !path.ends_with(kEnd)) {
        throw Refusal(exceptionid::kBadRequest, "nothing can be removed at " + inQuotes(path));
    }
    return std::string(path.substr(start.size(), path.size() - start.size() - kEnd.size()));
}

void removeMember(Context& context, const std::string& workspaceID, const std::string& path)
{
    const std::string userID = idInPath(path, "workspace/members/member[userID='");
    if (userID == context.session.userID) {
        rules::requireMember(context, workspaceID);
    } else {
        rules::requireAdministrator(context, workspaceID);
    }
    rules::takeOut(context, workspaceID, userID);
}

// The workspace that is the template stays.
void removeTemplate(Context& context, const std::string& libraryID, const std::string& path)
{
    const store::Library library = rules::requireWritable(context, libraryID);
    const std::string workspaceID = idInPath(path, "group/templates/template[templateID='");
    if (!store::deleteTemplate(context.database, library.libraryID, workspaceID)) {
        throw Refusal(exceptionid::kNoSuchObject, "the library has no template " + inQuotes(workspaceID));
    }
}

}  // namespace

void get(Context& context, const http::Form& form, Reply& reply)
{
    script::Query query{objects::objectType(form.required("type")), form.text("id"), {}};
    if (form.has("where")) query.where = script::Condition::read(form.xml("where"), context, query.type.element);
    if (form.has("select")) query.select = script::Selection(form.text("select"), query.type.element);
    if (query.id.empty() && !query.where) throw Refusal(exceptionid::kBadRequest, "the request names no object");
    reply.payload.children = script::answer(context, query);
    if (reply.payload.children.empty() && !query.id.empty()) {
        throw Refusal(exceptionid::kNoSuchObject, "there is no " + std::string(query.type.element) + " " +
                                                      inQuotes(query.id) + " that you can see");
    }
}

void execute(Context& context, const http::Form& form, Reply& reply)
{
    const std::string task = form.required("task");
    runTask(context, task, form.xml("xml"), reply);
}

void create(Context& context, const http::Form& form, Reply& reply)
{
    const std::string type = form.required("type");
    const xml::Node xml = form.xml("xml");
    if (type == "wtng") return createWorkspaceThing(context, xml, reply);
    if (type == "thng") return createThing(context, xml, reply);
    throw Refusal(exceptionid::kUnknownType, "objects of type " + inQuotes(type) + " cannot be created");
}

// Adds templates to a library, which the protocol calls a group.
void add(Context& context, const http::Form& form, Reply& /*reply*/)
{
    const std::string type = form.required("type");
    if (type != "grp") throw Refusal(exceptionid::kUnknownType, "nothing can be added to type " + inQuotes(type));
    const store::Library library = rules::requireWritable(context, form.required("id"));
    const xml::Node xml = form.xml("xml");
    expectElement(xml, "group");
    const std::string workspaceID = requiredID(xml, "templates/template/templateID");
    const store::Workspace workspace = rules::requireReadable(context, workspaceID);
    if (!workspace.isTemplate) {
        throw Refusal(exceptionid::kBadRequest, "the workspace " + inQuotes(workspace.name) + " is no template");
    }
    if (!store::insertTemplate(context.database, library.libraryID, workspaceID)) {
        throw Refusal(exceptionid::kConflict, "the library has this template already");
    }
}

void remove(Context& context, const http::Form& form, Reply& /*reply*/)
{
    const std::string type = form.required("type");
    const std::string id = form.required("id");
    const std::string path = form.required("select");
    if (type == "workspace") return removeMember(context, id, path);
    if (type == "grp") return removeTemplate(context, id, path);
    throw Refusal(exceptionid::kUnknownType, "nothing can be removed from type " + inQuotes(type));
}

}  // namespace service::commands
