// Libraries of templates and applications.
#include "host/Call.h"
#include "host/Topics.h"

namespace host {

namespace {

int flag(const Call& call, const char* name)
{
    return call.given(name) ? 1 : 0;
}

void list(Call& call)
{
    std::vector<library_t> libraries;
    call.check(call.client().getLibraries(call.cred(), flag(call, "--templates"), flag(call, "--widgets"),
                                          flag(call, "--read-only"), libraries));
    call.show(libraries, {"ID", "name", "type", "templates"});
}

void apps(Call& call)
{
    std::vector<library2_t> libraries;
    call.check(call.client().getUserLibrariesWithApps(call.cred(), flag(call, "--read-only"), flag(call, "--top-level"),
                                                      libraries));
    call.show(libraries, {"ID", "name", "type", "apps"});
}

void addTemplate(Call& call)
{
    call.check(call.client().addTemplateToLibrary(call.cred(), call.text("library"), call.xml("template")));
}

}  // namespace

Commands librariesCommands()
{
    const Argument readOnly{"--read-only", "Those too that you can only read", Kind::flag};
    return {
        {"libraries", "Libraries of templates and applications", {}, nullptr},
        {"libraries list",
         "List the libraries, with how many templates came along",
         {{"--templates", "With their templates", Kind::flag},
          {"--widgets", "With their applications, which the listing leaves out", Kind::flag},
          readOnly},
         list,
         {"getLibraries"},
         {},
         membersOf<library_t>},
        {"libraries apps",
         "List the libraries, with how many applications came along",
         {{"--top-level", "With their top-level applications", Kind::flag}, readOnly},
         apps,
         {"getUserLibrariesWithApps"},
         {},
         membersOf<library2_t>},
        {"libraries add-template",
         "Put a template into a library",
         {{"library", "The library's ID"}, {"template", "The template's ID"}},
         addTemplate,
         {"addTemplateToLibrary"}},
    };
}

}  // namespace host
