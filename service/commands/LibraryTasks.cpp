#include <initializer_list>

#include "service/base/Text.h"
#include "service/commands/Fields.h"
#include "service/commands/Handlers.h"
#include "service/rules/Libraries.h"
#include "service/store/Apps.h"
#include "service/store/Libraries.h"
#include "service/store/Workspaces.h"

namespace service::commands {

namespace {

// With "readonly" true come all the libraries that the caller can read, else only those that the caller may change.
std::vector<store::Library> wantedLibraries(const Context& context, const xml::Node& xml)
{
    std::vector<store::Library> libraries =
        store::librariesFor(context.database, context.session.userID, context.session.orgID);
    if (!truthField(xml, "readonly")) {
        std::erase_if(libraries, [&](const store::Library& library) { return !rules::mayWrite(context, library); });
    }
    return libraries;
}

// The misspelt name is the protocol's own.
void addTemplates(const Context& context, const store::Library& from, xml::Node& library)
{
    for (const store::Template& item : store::templatesOf(context.database, from.libraryID)) {
        xml::Node& element = library.add("template");
        element.add("templateName", item.name);
        element.add("templateID", item.workspaceID);
        element.add("tempalteType", std::to_string(item.type));
        xml::Node& description = element.add("description");
        for (const std::string& text : store::descriptionOf(context.database, item.workspaceID)) {
            description.add("text", text);
        }
    }
}

void addCommonFields(const store::App& app, xml::Node& element)
{
    element.add("widgetName", app.name);
    element.add("widgetID", app.appID);
    element.add("currentDir", app.currentDir);
    element.add("status", app.status);
    element.add("appConsPackage", app.package);
}

void addWidgets(const Context& context, const store::Library& from, xml::Node& library)
{
    for (const store::App& app : store::appsOf(context.database, from.libraryID)) {
        if (!app.topLevel) addCommonFields(app, library.add("widget"));
    }
}

void addTopLevelApps(const Context& context, const store::Library& from, xml::Node& library)
{
    for (const store::App& app : store::appsOf(context.database, from.libraryID)) {
        if (!app.topLevel) continue;
        xml::Node& element = library.add("topLevelApp");
        addCommonFields(app, element);
        element.add("appType", app.appType);
        xml::Node& identity = element.add("identity");
        identity.add("name", app.identityName);
        identity.add("description", app.identityDescription);
    }
}

struct Content {
    std::string_view wanted;  // the field that asks for it
    void (*add)(const Context& context, const store::Library& from, xml::Node& library);
};

void answerLibraries(const Context& context, const xml::Node& xml, std::string_view typeElement,
                     std::initializer_list<Content> contents, Reply& reply)
{
    expectElement(xml, "library");
    xml::Node& libraries = reply.payload.add("libraries");
    for (const store::Library& item : wantedLibraries(context, xml)) {
        xml::Node& library = libraries.add("library");
        library.add("libraryName", item.name);
        library.add("libraryID", item.libraryID);
        library.add(typeElement, std::to_string(item.type));
        for (const Content& content : contents) {
            if (truthField(xml, content.wanted)) content.add(context, item, library);
        }
    }
}

}  // namespace

// The protocol spells the library's type in two ways.
void getUserLibraries(Context& context, const xml::Node& xml, Reply& reply)
{
    answerLibraries(context, xml, "librayType", {{"with/template", addTemplates}, {"with/widget", addWidgets}}, reply);
}

void getUserLibrariesWithApps(Context& context, const xml::Node& xml, Reply& reply)
{
    answerLibraries(context, xml, "libraryType", {{"with/widget", addWidgets}, {"with/topLevelApp", addTopLevelApps}},
                    reply);
}

}  // namespace service::commands
