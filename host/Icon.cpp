// The picture of a workspace.
#include <filesystem>
#include <fstream>

#include "host/Call.h"
#include "host/Errors.h"
#include "host/Network.h"
#include "host/Progress.h"
#include "host/Text.h"
#include "host/Topics.h"

namespace host {

namespace {

/// The path stands between quotation marks in the head of the upload, where nothing can be escaped.
CStringT fileOf(const Call& call)
{
    CStringT file = call.asTyped("file");
    for (const auto unit : file) {
        if (unit == '"' || unit < ' ') {
            throw LocalProblem("file: an upload cannot carry a name with a quotation mark or a control character");
        }
    }
    // The library would say the same of it, but as if the service had refused.
    const std::filesystem::path path(file);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored) || !std::ifstream(path, std::ios::binary)) {
        throw LocalProblem("Unable to read the picture: " + ToUtf8(file));
    }
    return file;
}

void set(Call& call)
{
    const CStringT file = fileOf(call);
    const CStringT& cred = call.cred();
    CStringT url;
    const Progress progress(call.client(), call.wire());
    call.check(call.client().SetSpaceIcon(cred, call.xml("workspace"), file, url));
    call.show({{"url", url}});
}

void get(Call& call)
{
    const CStringT url = call.text("url");
    if (!call.given("--any-host") && !haveOneOrigin(url, call.client().getOpURL())) {
        throw LocalProblem("the credential would go to another host than the service's; --any-host sends it there");
    }
    const CStringT cred = call.formCred();
    CStringT localPath;
    const Progress progress(call.client(), call.wire());
    call.check(call.client().GetSpaceIcon(cred, url, localPath));
    call.show({{"localPath", localPath}});
}

}  // namespace

Commands iconCommands()
{
    return {
        {"icon", "The picture of a workspace", {}, nullptr},
        {"icon set",
         "Send a picture, and print the address that it is kept under",
         {{"workspace", "The workspace's ID"}, {"file", "The picture's file, at most 64 MiB", Kind::file}},
         set,
         {"SetSpaceIcon"}},
        {"icon get",
         "Fetch a picture into the temporary folder, and print the file's name",
         {{"url", "Its address, such as spaceIconURL of the workspace"},
          {"--any-host", "Send the credential to that address even if it is not the service's own host", Kind::flag}},
         get,
         {"GetSpaceIcon"}},
    };
}

}  // namespace host
