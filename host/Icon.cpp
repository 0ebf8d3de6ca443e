// The picture of a workspace.
#include "host/Call.h"
#include "host/Progress.h"
#include "host/Topics.h"

namespace host {

namespace {

void set(Call& call)
{
    const CStringT& cred = call.cred();
    CStringT url;
    const Progress progress(call.client());
    call.check(call.client().SetSpaceIcon(cred, call.text("workspace"), call.text("file"), url));
    call.show({{"url", url}});
}

void get(Call& call)
{
    const CStringT& cred = call.cred();
    CStringT localPath;
    const Progress progress(call.client());
    call.check(call.client().GetSpaceIcon(cred, call.text("url"), localPath));
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
         {{"url", "Its address, such as spaceIconURL of the workspace"}},
         get,
         {"GetSpaceIcon"}},
    };
}

}  // namespace host
